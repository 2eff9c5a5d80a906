#include "core/history/HistoryExport.hpp"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <cmath>
#include <ctime>
#include <iterator>
#include <optional>

namespace ostrivane::HistoryExport {

namespace {

void writeTime(std::string& out, std::int64_t bucket) {
    const auto seconds = static_cast<std::time_t>(bucket);
    std::tm utc{};
    if (gmtime_r(&seconds, &utc)) // null for a year that fits no number
        fmt::format_to(std::back_inserter(out), "{:%Y-%m-%dT%H:%M:%SZ}", utc);
}

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
        const auto perSecond = [&row](double bytes) {
            return row.res > 0 ? std::optional(bytes / static_cast<double>(row.res)) : std::nullopt;
        };
        writeTime(out, row.bucket);
        for (const std::optional<double>& value :
             {std::optional(row.cpu), std::optional(row.memUsed), std::optional(row.pressure),
              std::optional(row.swapUsed), row.gpu, perSecond(row.diskRead), perSecond(row.diskWrite),
              perSecond(row.netIn), perSecond(row.netOut), row.batteryPct, row.powerW, row.cpuTemp, row.fanRPM})
            writeField(out, value);
        out += '\n';
    }
    return out;
}

} // namespace ostrivane::HistoryExport
