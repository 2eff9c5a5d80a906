#include "core/history/HistoryExport.hpp"

#include "core/model/Text.hpp"

#include <gtest/gtest.h>

#include <clocale>
#include <limits>

namespace ostrivane {
namespace {

SystemRow row() {
    SystemRow row;
    row.bucket = 1795276800;
    row.res = 60;
    row.cpu = 0.1;
    row.memUsed = 8589934592;
    row.pressure = 43;
    row.diskRead = 90;
    row.netOut = 1e9;
    return row;
}

TEST(HistoryExport, writesRatesAndLeavesAbsentFieldsEmpty) {
    SystemRow coarse = row();
    coarse.res = 3600;
    coarse.gpu = 0;
    coarse.batteryPct = 80.5;
    coarse.powerW = 12.25;
    coarse.cpuTemp = 41;
    coarse.fanRPM = 2000;
    EXPECT_EQ(HistoryExport::text({row(), coarse}),
              "time,cpu,mem_used_bytes,mem_pressure_pct,swap_bytes,gpu,disk_read_Bps,disk_write_Bps,net_in_Bps,"
              "net_out_Bps,battery_pct,power_w,cpu_temp_c,fan_rpm\n"
              "2026-11-21T16:00:00Z,0.1,8589934592,43,0,,1.5,0,0,16666666.666666666,,,,\n"
              "2026-11-21T16:00:00Z,0.1,8589934592,43,0,0,0.025,0,0,277777.77777777775,80.5,12.25,41,2000\n");
}

TEST(HistoryExport, writesNoNumberThatIsNone) {
    SystemRow damaged = row();
    damaged.res = 0;
    damaged.cpu = std::numeric_limits<double>::infinity();
    damaged.bucket = std::numeric_limits<std::int64_t>::max();
    const std::string text = HistoryExport::text({damaged});
    EXPECT_EQ(Text::lines(text)[1], ",,8589934592,43,0,,,,,,,,,");
}

TEST(HistoryExport, isTheSameInEveryLocale) {
    const std::string text = HistoryExport::text({row()});
    const std::string before = std::setlocale(LC_ALL, nullptr);
    for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "C.UTF-8"}) // what is installed of them
        if (std::setlocale(LC_ALL, name)) {
            EXPECT_EQ(HistoryExport::text({row()}), text) << name;
        }
    std::setlocale(LC_ALL, before.c_str());
}

} // namespace
} // namespace ostrivane
