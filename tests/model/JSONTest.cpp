#include "core/model/JSON.hpp"

#include "core/model/SystemSnapshot.hpp"
#include "core/sampling/HostInfo.hpp"
#include "tests/model/FilledRecord.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <random>

namespace ostrivane {

namespace {

template <class T>
std::optional<T> readText(std::string_view text) {
    const auto document = JSON::parse(text);
    return document ? JSON::read<T>(*document) : std::nullopt;
}

template <class T>
std::optional<T> thereAndBack(const T& value) {
    return readText<T>(JSON::text(value));
}

std::string nested(std::size_t depth) {
    return std::string(depth, '[') + std::string(depth, ']');
}

} // namespace

TEST(JSON, carriesAWholeSnapshot) {
    const auto filled = filledRecord<SystemSnapshot>();
    EXPECT_EQ(thereAndBack(filled), filled);
    const auto empty = SystemSnapshot::empty(Date{1714724123.456789});
    EXPECT_EQ(thereAndBack(empty), empty);
}

TEST(JSON, tellsAbsenceFromZero) {
    const BluetoothDevice device{.name = "Mouse", .battery = 0};
    const std::string text = JSON::text(device);
    EXPECT_NE(text.find("\"battery\":0"), std::string::npos) << text;
    EXPECT_NE(text.find("\"batteryLeft\":null"), std::string::npos) << text;
    EXPECT_EQ(thereAndBack(device), device);
}

TEST(JSON, writesEnumerationsDatesAndMapsAsTheirRawValues) {
    EXPECT_EQ(JSON::text(CoreLoad::Kind::efficiency), "\"efficiency\"");
    EXPECT_EQ(JSON::text(ThermalLevel::serious), "2");
    EXPECT_EQ(JSON::text(std::optional(Date{1.5})), "1.5");
    const CoreKinds kinds{{0, CoreLoad::Kind::performance}, {11, CoreLoad::Kind::efficiency}};
    EXPECT_EQ(JSON::text(kinds), R"({"0":"performance","11":"efficiency"})");
    EXPECT_EQ(thereAndBack(kinds), kinds);
    const PidMap<std::uint64_t> times{{2147483647, 0}, {7, 18446744073709551615u}, {10, 1}, {-1, 2}};
    EXPECT_EQ(JSON::text(times), R"({"-1":2,"7":18446744073709551615,"10":1,"2147483647":0})") << "ascending";
    EXPECT_EQ(thereAndBack(times), times);
    EXPECT_FALSE(readText<PidMap<std::uint64_t>>(R"({"2147483648":0})"));
    for (const char* text : {R"({"x":"performance"})", R"({"1 ":"performance"})", R"({"0":"fast"})", "[]"})
        EXPECT_FALSE(readText<CoreKinds>(text)) << text;
}

TEST(JSON, readsOlderAndNewerRecords) {
    const auto load = readText<CoreLoad>(R"( {"id": 3, "colour": {"deep": [1, null]}, "usage": 1} )");
    EXPECT_EQ(load, (CoreLoad{.id = 3, .usage = 1}));
    EXPECT_EQ(readText<CoreLoad>("{}"), CoreLoad{});
    EXPECT_EQ(readText<ProcessSnapshot>(R"({"pid":1,"path":null})"), ProcessSnapshot{.pid = 1});
}

TEST(JSON, refusesWhatDoesNotFitTheRecord) {
    for (const char* text : {R"({"port":65536})", R"({"port":-1})", R"({"port":80.5})", R"({"port":"80"})",
                             R"({"port":null})", R"({"port":true})", R"({"port":1e30})", R"({"pid":2147483648})",
                             R"({"address":7})", R"([80,"::","tcp",1])", R"("80")", "null"})
        EXPECT_FALSE(readText<ListeningPort>(text)) << text;
    for (const char* text : {R"({"kind":"Performance"})", R"({"kind":1})", R"({"kind":null})", R"({"usage":"1"})",
                             R"({"usage":true})", R"({"usage":null})", R"({"usage":1e999})"})
        EXPECT_FALSE(readText<CoreLoad>(text)) << text;
    for (const char* text :
         {R"({"pressure":3})", R"({"pressure":-1})", R"({"pressure":"normal"})", R"({"total":18446744073709551616})",
          R"({"total":-1})", R"({"total":1.8446744073709552e19})", R"({"availablePercent":9223372036854775808})"})
        EXPECT_FALSE(readText<MemorySnapshot>(text)) << text;
    for (const char* text : {R"({"loadAverage":[1,2]})", R"({"loadAverage":[1,2,3,4]})", R"({"loadAverage":{}})",
                             R"({"cores":[{"id":1},{"id":"2"}]})", R"({"cores":{}})", R"({"cores":[null]})"})
        EXPECT_FALSE(readText<CPUSnapshot>(text)) << text;
    for (const char* text : {R"({"battery":1.5})", R"({"connected":0})", R"({"connected":"true"})"})
        EXPECT_FALSE(readText<BluetoothDevice>(text)) << text;
}

TEST(JSON, parsesOneDocumentAndNothingElse) {
    for (const char* text : {"",
                             " ",
                             "{",
                             "[1,]",
                             "{\"a\":1,}",
                             "{a:1}",
                             "nul",
                             "NaN",
                             "Infinity",
                             "-Infinity",
                             "01",
                             "+1",
                             ".5",
                             "1.",
                             "0x10",
                             "'a'",
                             "\"a",
                             "{} x",
                             "{}{}",
                             "1 2",
                             "[] // end",
                             "\"\\ud800\"",
                             "\"\\x41\"",
                             "\"line\nfeed\"",
                             "\"\xff\"",
                             "\"\xed\xa0\x80\"",
                             "\xef\xbb\xbf{}"})
        EXPECT_FALSE(JSON::parse(text)) << text;
    EXPECT_FALSE(JSON::parse(std::string_view("{}\0", 3)));
    EXPECT_TRUE(JSON::parse(" [1, 2]\r\n\t"));
    EXPECT_TRUE(JSON::parse(nested(32)));
    EXPECT_FALSE(JSON::parse(nested(33)));
    EXPECT_FALSE(JSON::parse(std::string(1'000'000, '[')));
}

TEST(JSON, keepsTheLimitsOfIntegers) {
    const MemorySnapshot extremes{.total = std::numeric_limits<std::uint64_t>::max(),
                                  .availablePercent = std::numeric_limits<std::int64_t>::min()};
    EXPECT_EQ(thereAndBack(extremes), extremes);
}

TEST(JSON, keepsEveryBitOfAFigure) {
    using Limits = std::numeric_limits<double>;
    std::vector<double> figures{0.0,
                                -0.0,
                                0.1,
                                1.0 / 3,
                                5e-324,
                                2.2250738585072011e-308,
                                Limits::min(),
                                -1e-310,
                                Limits::max(),
                                1e15,
                                1e16,
                                1e22,
                                1e23,
                                9007199254740993.0,
                                1e17,
                                18446744073709551616.0,
                                -9223372036854775808.0,
                                123456789012345680.0};
    std::mt19937_64 random(1815);
    while (figures.size() < 50'000)
        if (const double figure = std::bit_cast<double>(random()); std::isfinite(figure))
            figures.push_back(figure);
    const auto read = thereAndBack(figures);
    ASSERT_TRUE(read);
    ASSERT_EQ(read->size(), figures.size());
    for (std::size_t index = 0; index < figures.size(); ++index)
        ASSERT_EQ(std::bit_cast<std::uint64_t>((*read)[index]), std::bit_cast<std::uint64_t>(figures[index]))
            << figures[index];
}

TEST(JSON, readsFiguresThatOthersWroteToTheNearestDouble) {
    EXPECT_EQ(readText<double>("2.50"), 2.5);
    EXPECT_EQ(readText<double>("-0.0625E+2"), -6.25);
    EXPECT_EQ(readText<double>("8.41424161505282e-13"), 8.41424161505282e-13);
    EXPECT_EQ(readText<double>("0.1000000000000000055511151231257827021181583404541015625"), 0.1);
    EXPECT_EQ(readText<double>("9007199254740993.0"), 9007199254740992); // a tie, to the even neighbour
    EXPECT_EQ(readText<double>("9007199254740993.00000000000000000000000001"), 9007199254740994);
    EXPECT_EQ(readText<double>(std::string(400, '1') + ".5"), std::nullopt);
}

TEST(JSON, writesAFigureThatIsNoneAsNull) {
    for (const double none : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
                              -std::numeric_limits<double>::infinity()}) {
        EXPECT_EQ(JSON::text(none), "null");
        EXPECT_EQ(thereAndBack(GPUSnapshot{.utilization = none}), GPUSnapshot{}); // absent
        EXPECT_FALSE(thereAndBack(DiskSnapshot{.readBytesPerSec = none}));        // refused, not shown as zero
    }
}

TEST(JSON, carriesEveryText) {
    using namespace std::string_literals;
    for (const std::string& text :
         {""s, "plain"s, "say \"\\\" / twice"s, "\b\f\n\r\t\x01\x1f\x7f"s, "nul \0 inside"s,
          "caf\u00e9 \u2028\u202e \uffff"s, "\U0001F600\U0010FFFF"s, std::string(100'000, '"')}) {
        EXPECT_EQ(thereAndBack(text), text);
        EXPECT_EQ(JSON::text(text).find('\n'), std::string::npos); // one record stays one line
    }
    EXPECT_EQ(readText<std::string>(R"("\ud83d\ude00\u00e9\/")"), "\U0001F600\u00e9/");
    EXPECT_EQ(thereAndBack("a\xff"s
                           "b\xc3"s),
              "a\uFFFDb\uFFFD");
}

} // namespace ostrivane
