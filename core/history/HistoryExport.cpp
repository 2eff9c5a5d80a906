#include "core/history/HistoryExport.hpp"

#include "core/history/RowRate.hpp"
#include "core/model/DateText.hpp"

#include <fmt/format.h>

#include <cmath>
#include <iterator>
#include <optional>

namespace ostrivane::HistoryExport {

namespace {

void writeField(std::string& out, std::optional<double> value) {
    out += ',';
    if (value && std::isfinite(*value))
        fmt::format_to(std::back_inserter(out), "{}", *value);
}

} // namespace

std::string text(const std::vector<SystemRow>& rows) {
    std::string out(columns);
    out += '\n';
    for (const SystemRow& row : rows) {
        const auto rate = [&row](double bytes) { return perSecond(bytes, row.res); };
        out += DateText::iso8601(row.date()).value_or("");
        for (const std::optional<double>& value :
             {std::optional(row.cpu), std::optional(row.memUsed), std::optional(row.pressure),
              std::optional(row.swapUsed), row.gpu, rate(row.diskRead), rate(row.diskWrite), rate(row.netIn),
              rate(row.netOut), row.batteryPct, row.powerW, row.cpuTemp, row.fanRPM})
            writeField(out, value);
        out += '\n';
    }
    return out;
}

} // namespace ostrivane::HistoryExport
