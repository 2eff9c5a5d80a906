#include "core/model/Formatters.hpp"

#include "core/model/JSON.hpp"

#include <boost/describe/class.hpp>
#include <gtest/gtest.h>

#include <array>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <limits>
#include <locale>
#include <random>

namespace ostrivane {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double mebibyte = 1024 * 1024;

/// Each case begins and ends with the settings as the program starts.
class FormattersTest : public testing::Test {
protected:
    FormattersTest() { restore(); }
    ~FormattersTest() override { restore(); }

private:
    static void restore() {
        Formatters::temperatureUnit = TemperatureUnit::celsius;
        Formatters::rateUnit = RateUnit::bytes;
        Formatters::cpuScale = CPUScale::perCore;
        Formatters::logicalCores = 1;
    }
};

struct ByteCount {
    std::uint64_t bytes = 0;
    std::string text;
};
BOOST_DESCRIBE_STRUCT(ByteCount, (), (bytes, text))

std::vector<ByteCount> recordedByteCounts() {
    std::ifstream file(OSTRIVANE_FIXTURES "/bytecount-file.json", std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    const auto document = JSON::parse(text);
    return document ? JSON::read<std::vector<ByteCount>>(*document).value_or(std::vector<ByteCount>())
                    : std::vector<ByteCount>();
}

std::string printed(int decimals, double value) {
    std::array<char, 400> text;
    const int size = std::snprintf(text.data(), text.size(), "%.*f", decimals, value);
    return std::string(text.data(), static_cast<std::size_t>(size));
}

} // namespace

TEST_F(FormattersTest, showsProcessorUseOnEitherScale) {
    EXPECT_EQ(Formatters::cpu(0), "0.0%");
    EXPECT_EQ(Formatters::cpu(0.05), "5.0%");
    EXPECT_EQ(Formatters::cpu(0.1), "10%");
    EXPECT_EQ(Formatters::cpu(8), "800%");
    Formatters::cpuScale = CPUScale::perMac;
    Formatters::logicalCores = 8;
    EXPECT_EQ(Formatters::cpu(8), "100%");
    EXPECT_EQ(Formatters::cpu(0.4), "5.0%");
    for (const std::int64_t unknown : {0, -4}) {
        Formatters::logicalCores = unknown;
        EXPECT_EQ(Formatters::cpu(0.5), "50%");
    }
}

TEST_F(FormattersTest, showsFractionsAsPercent) {
    EXPECT_EQ(Formatters::percent(0.425, 0), "42%"); // 42.5 is a tie
    EXPECT_EQ(Formatters::percent(0.1234, 1), "12.3%");
    EXPECT_EQ(Formatters::percent(0.0, 2), "0.00%"); // a reading, unlike
    EXPECT_EQ(Formatters::percent(std::nullopt), "—");
    EXPECT_EQ(Formatters::percent(0.5, -3), "50%");
    EXPECT_LT(Formatters::percent(0.5, std::numeric_limits<int>::max()).size(), 30U);
}

TEST_F(FormattersTest, showsMemoryInPowersOf1024) {
    const std::pair<double, const char*> cases[] = {{-5, "0 B"},
                                                    {0, "0 B"},
                                                    {1023, "1023 B"},
                                                    {1024, "1 KB"},
                                                    {1536 * 1024, "1.50 MB"},
                                                    {10.5 * mebibyte, "10.5 MB"},
                                                    {150 * mebibyte, "150 MB"},
                                                    {16 * 1024 * mebibyte, "16.0 GB"},
                                                    {1.5 * mebibyte * mebibyte, "1.50 TB"},
                                                    {2.0 * 1024 * mebibyte * mebibyte, "2.00 PB"},
                                                    {5000.0 * 1024 * mebibyte * mebibyte, "5000 PB"}};
    for (const auto& [bytes, text] : cases)
        EXPECT_EQ(Formatters::bytes(bytes), text);
    EXPECT_EQ(Formatters::bytes(std::uint64_t{1} << 30), "1.00 GB");
    EXPECT_EQ(Formatters::bytes(-1), "0 B");
    EXPECT_EQ(Formatters::bytes(std::numeric_limits<std::uint64_t>::max()), "16384 PB");
    EXPECT_EQ(Formatters::bytes(1536, 1), "1.5 KB");
    EXPECT_EQ(Formatters::bytes(150.25 * mebibyte, 2), "150.25 MB");
    EXPECT_EQ(Formatters::bytes(1536, -1), "2 KB");
}

TEST_F(FormattersTest, showsRatesInPowersOf1000) {
    EXPECT_EQ(Formatters::rate(std::nullopt), "Unavailable");
    EXPECT_EQ(Formatters::rate(0.0), "0 B/s");
    EXPECT_EQ(Formatters::rate(-7.0), "0 B/s");
    EXPECT_EQ(Formatters::rate(999.0), "999 B/s");
    EXPECT_EQ(Formatters::rate(1500.0), "1.5 KB/s");
    EXPECT_EQ(Formatters::rate(150'000.0), "150 KB/s");
    EXPECT_EQ(Formatters::rate(2.5e12), "2500 GB/s");
    Formatters::rateUnit = RateUnit::bits;
    EXPECT_EQ(Formatters::rate(124.0), "992 bps");
    EXPECT_EQ(Formatters::rate(125.0), "1.0 Kbps");
    EXPECT_EQ(Formatters::rate(125e6), "1.0 Gbps");
    EXPECT_EQ(Formatters::rate(125.0, RateUnit::bytes), "125 B/s");
    EXPECT_EQ(Formatters::diskRate(125.0), "125 B/s"); // drives are told in bytes whatever is chosen
    EXPECT_EQ(Formatters::diskRate(std::nullopt), "Unavailable");
}

TEST_F(FormattersTest, showsPowerAndTemperature) {
    EXPECT_EQ(Formatters::power(std::nullopt), "Unavailable");
    EXPECT_EQ(Formatters::power(0.0), "0 mW");
    EXPECT_EQ(Formatters::power(0.5), "500 mW");
    EXPECT_EQ(Formatters::power(1.0), "1.00 W");
    EXPECT_EQ(Formatters::power(9.999), "10.00 W");
    EXPECT_EQ(Formatters::power(10.0), "10.0 W");
    EXPECT_EQ(Formatters::energy(0.5), "500 mWh");
    EXPECT_EQ(Formatters::energy(999.0), "999.0 Wh");
    EXPECT_EQ(Formatters::energy(1250.0), "1.25 kWh");
    EXPECT_EQ(Formatters::energy(std::nullopt), "Unavailable");
    EXPECT_EQ(Formatters::temperature(std::nullopt), "Unavailable");
    EXPECT_EQ(Formatters::temperature(41.6), "42 °C");
    Formatters::temperatureUnit = TemperatureUnit::fahrenheit;
    EXPECT_EQ(Formatters::temperature(100.0), "212 °F");
    EXPECT_EQ(Formatters::temperature(-40.0), "-40 °F");
}

TEST_F(FormattersTest, showsDurationsInTheirTwoLargestUnits) {
    const std::pair<double, const char*> cases[] = {{-1, "0s"},
                                                    {0.9, "0s"},
                                                    {59.9, "59s"},
                                                    {60, "1 min"},
                                                    {3599.9, "59 min"},
                                                    {3600, "1h"},
                                                    {3659, "1h"},
                                                    {3661, "1h 1m"},
                                                    {86399, "23h 59m"},
                                                    {86400, "1 days"},
                                                    {86400 + 3599, "1 days"},
                                                    {90000, "1d 1h"},
                                                    {30 * 86400, "30 days"}};
    for (const auto& [seconds, text] : cases)
        EXPECT_EQ(Formatters::duration(seconds), text);
    EXPECT_EQ(Formatters::minutes(std::nullopt), "—");
    EXPECT_EQ(Formatters::minutes(0), "0 min");
    EXPECT_EQ(Formatters::minutes(59), "59 min");
    EXPECT_EQ(Formatters::minutes(60), "1h 0m");
    EXPECT_EQ(Formatters::minutes(600), "10h 0m");
}

TEST_F(FormattersTest, showsNoFigureThatIsNone) {
    for (const double value : {notANumber, infinity, -infinity}) {
        EXPECT_EQ(Formatters::cpu(value), "—");
        EXPECT_EQ(Formatters::percent(value), "—");
        EXPECT_EQ(Formatters::bytes(value), "—");
        EXPECT_EQ(Formatters::duration(value), "—");
        EXPECT_EQ(Formatters::rate(value), "Unavailable");
        EXPECT_EQ(Formatters::power(value), "Unavailable");
        EXPECT_EQ(Formatters::temperature(value), "Unavailable");
    }
    // What overflows on the way is none either; what is only huge is told, and never leaves an integer's range.
    constexpr double huge = std::numeric_limits<double>::max();
    EXPECT_EQ(Formatters::percent(huge), "—");
    EXPECT_EQ(Formatters::rate(huge, RateUnit::bits), "Unavailable");
    EXPECT_TRUE(Formatters::bytes(huge).ends_with(" PB"));
    EXPECT_EQ(Formatters::duration(huge), Formatters::duration(1e18));
}

TEST_F(FormattersTest, showsFileSizesAsRecorded) {
    const auto counts = recordedByteCounts();
    ASSERT_GT(counts.size(), 30U);
    for (const auto& [bytes, text] : counts)
        EXPECT_EQ(Formatters::storage(bytes), text) << bytes;
}

TEST_F(FormattersTest, roundsFileSizesAtTheEdgesOfTheirUnits) {
    const std::pair<std::uint64_t, const char*> cases[] = {{1500, "2 KB"}, // ties go to the even neighbour
                                                           {2500, "2 KB"},
                                                           {3500, "4 KB"},
                                                           {1'250'000, "1.2 MB"},
                                                           {999'499, "999 KB"},
                                                           {999'500, "1 MB"},
                                                           {999'949'999, "999.9 MB"},
                                                           {999'950'000, "1 GB"},
                                                           {999'994'999'999, "999.99 GB"},
                                                           {999'995'000'000, "1 TB"},
                                                           {1'050'000'000, "1.05 GB"},
                                                           {1'500'000'000'000'000, "1.5 PB"},
                                                           {999'995'000'000'000'000, "1 EB"}};
    for (const auto& [bytes, text] : cases)
        EXPECT_EQ(Formatters::storage(bytes), text) << bytes;
    EXPECT_EQ(Formatters::storage(std::numeric_limits<std::uint64_t>::max()), "9.22 EB"); // the largest signed number
}

TEST_F(FormattersTest, roundsAsPrintfDoes) {
    std::mt19937_64 random(1853);
    std::uniform_int_distribution<int> eighths(-8000, 8000); // many of them ties
    std::uniform_real_distribution<double> any(-1e6, 1e6);
    for (int turn = 0; turn < 2000; ++turn) {
        const int decimals = turn % 4;
        const double value = turn % 2 == 0 ? eighths(random) / 8.0 : any(random);
        ASSERT_EQ(Formatters::percent(value, decimals), printed(decimals, value * 100) + "%");
        ASSERT_EQ(Formatters::temperature(value), printed(0, value) + " °C");
    }
}

TEST_F(FormattersTest, writesAPointInEveryLanguage) {
    struct German : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    const std::string before = std::setlocale(LC_ALL, nullptr);
    const std::locale plain = std::locale::global(std::locale(std::locale::classic(), new German));
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "C"}) // whichever is installed
        if (std::setlocale(LC_ALL, name))
            break;
    EXPECT_EQ(Formatters::percent(12.3456, 1), "1234.6%");
    EXPECT_EQ(Formatters::bytes(1.5 * mebibyte), "1.50 MB");
    EXPECT_EQ(Formatters::storage(1'230'000'000), "1.23 GB");
    EXPECT_EQ(Formatters::duration(5000.0 * 86400), "5000 days");
    std::locale::global(plain);
    std::setlocale(LC_ALL, before.c_str());
}

} // namespace ostrivane
