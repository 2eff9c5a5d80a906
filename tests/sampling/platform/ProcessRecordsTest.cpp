#include "core/sampling/platform/ProcessRecords.hpp"

#include "tests/sampling/platform/KernelSamples.hpp"

#include <algorithm>
#include <cstring>
#include <limits>

using namespace ostrivane;

namespace {

ProcessInfo expected(const KernelSample& sample) {
    return {.pid = sample.expect.at("pid").to_number<std::int32_t>(),
            .ppid = sample.expect.at("ppid").to_number<std::int32_t>(),
            .uid = sample.expect.at("uid").to_number<std::uint32_t>(),
            .name = std::string(sample.expect.at("name").as_string()),
            .status = sample.expect.at("status").to_number<std::uint32_t>()};
}

Date start(const KernelSample& sample) {
    return Date{sample.expect.at("start").to_number<double>()};
}

template <class Value>
void put(std::vector<std::byte>& record, std::size_t offset, const Value& value) {
    ASSERT_LE(offset + sizeof(value), record.size());
    std::memcpy(record.data() + offset, &value, sizeof(value));
}

std::span<const std::byte> bytesOf(std::string_view text) {
    return std::as_bytes(std::span(text));
}

/// A value of `KERN_PROCARGS2`.
std::vector<std::byte> region(std::int32_t count, std::string_view rest) {
    std::vector<std::byte> value(sizeof(count));
    std::memcpy(value.data(), &count, sizeof(count));
    value.insert(value.end(), bytesOf(rest).begin(), bytesOf(rest).end());
    return value;
}

using Arguments = std::vector<std::string>;

} // namespace

TEST(ProcessRecords, readsTheWholeRecord) {
    const KernelSample user = kernelSample("proc_bsdinfo_user");
    ProcessInfo node = expected(user);
    node.startTime = start(user);
    node.hasTerminal = true;
    EXPECT_EQ(ProcessRecords::info(user.record), node);
    expectNeedsAllOf(user.record, ProcessRecords::info);
    const auto zombie = ProcessRecords::info(kernelSample("proc_bsdinfo_zombie").record);
    ASSERT_TRUE(zombie);
    EXPECT_EQ(zombie->status, ProcessInfo::zombie);
    EXPECT_EQ(zombie->name, "sh") << "the short name where the long one is empty";
}

TEST(ProcessRecords, takesTheLongNameToTheEndOfItsField) {
    KernelSample browser = kernelSample("proc_bsdinfo_longname");
    ProcessInfo helper = expected(browser);
    helper.startTime = start(browser);
    EXPECT_EQ(ProcessRecords::info(browser.record), helper);
    put(browser.record, 95, 'X'); // no zero: the field that follows is no part of the name
    EXPECT_EQ(ProcessRecords::info(browser.record)->name, helper.name + 'X');
    put(browser.record, 64, '\0');
    put(browser.record, 63, 'X');
    EXPECT_EQ(ProcessRecords::info(browser.record)->name, "Google Chrome HX");
    put(browser.record, 48, '\xFF');
    EXPECT_EQ(ProcessRecords::info(browser.record)->name, "\uFFFDoogle Chrome HX");
    put(browser.record, 48, '\0');
    EXPECT_EQ(ProcessRecords::info(browser.record)->name, "");
}

TEST(ProcessRecords, knowsATerminalFromNone) {
    auto record = kernelSample("proc_bsdinfo_user").record;
    for (const std::int32_t none : {0, -1}) {
        put(record, 108, none);
        EXPECT_FALSE(ProcessRecords::info(record)->hasTerminal) << none;
    }
    put(record, 108, std::int32_t{1});
    EXPECT_TRUE(ProcessRecords::info(record)->hasTerminal);
}

TEST(ProcessRecords, takesNoImpossibleStart) {
    auto record = kernelSample("proc_bsdinfo_user").record;
    put(record, 128, std::uint64_t{999'999});
    EXPECT_EQ(ProcessRecords::info(record)->startTime, Date{1714725296.999999});
    for (const std::uint64_t wrong : {std::uint64_t{1'000'000}, std::uint64_t{1} << 32}) {
        put(record, 128, wrong);
        EXPECT_FALSE(ProcessRecords::info(record)) << wrong;
    }
}

TEST(ProcessRecords, readsTheShortRecord) {
    KernelSample service = kernelSample("proc_bsdshortinfo_root");
    EXPECT_EQ(ProcessRecords::shortInfo(service.record), expected(service));
    expectNeedsAllOf(service.record, ProcessRecords::shortInfo);
    for (std::size_t offset = 16; offset < 32; ++offset)
        put(service.record, offset, 'x');
    EXPECT_EQ(ProcessRecords::shortInfo(service.record)->name, std::string(16, 'x'));
}

TEST(ProcessRecords, readsTheStartThatAnybodyMayKnow) {
    KernelSample service = kernelSample("kinfo_proc");
    EXPECT_EQ(ProcessRecords::startTime(service.record), start(service));
    expectNeedsAllOf(service.record, ProcessRecords::startTime);
    put(service.record, 8, std::int32_t{1'000'000});
    EXPECT_FALSE(ProcessRecords::startTime(service.record));
}

TEST(ProcessRecords, readsUsage) {
    KernelSample used = kernelSample("rusage_info_v6");
    const auto usage = ProcessRecords::usage(used.record);
    EXPECT_EQ(usage, (ProcessUsage{.cpuTicks = used.value("cpuTicks"),
                                   .footprint = used.value("footprint"),
                                   .diskRead = used.value("diskRead"),
                                   .diskWritten = used.value("diskWritten"),
                                   .energyNJ = used.value("energyNJ"),
                                   .wakeups = used.value("wakeups")}));
    expectNeedsAllOf(used.record, ProcessRecords::usage);
    constexpr auto most = std::numeric_limits<std::uint64_t>::max();
    put(used.record, 16, most);
    put(used.record, 32, most);
    EXPECT_EQ(ProcessRecords::usage(used.record)->cpuTicks, most) << "a sum never starts again at 0";
    EXPECT_EQ(ProcessRecords::usage(used.record)->wakeups, most);
}

TEST(ProcessRecords, countsThreads) {
    KernelSample task = kernelSample("proc_taskinfo");
    EXPECT_EQ(ProcessRecords::threads(task.record), task.expect.at("threads").to_number<std::int64_t>());
    expectNeedsAllOf(task.record, ProcessRecords::threads);
    put(task.record, 84, std::int32_t{-1});
    EXPECT_FALSE(ProcessRecords::threads(task.record));
}

TEST(ProcessRecords, readsTheWorkingDirectory) {
    KernelSample paths = kernelSample("proc_vnodepathinfo");
    EXPECT_EQ(ProcessRecords::currentDirectory(paths.record), paths.expect.at("cdir").as_string());
    expectNeedsAllOf(paths.record, ProcessRecords::currentDirectory);
    std::fill_n(paths.record.begin() + 152, 1024, std::byte{'d'});
    EXPECT_EQ(ProcessRecords::currentDirectory(paths.record), std::string(1024, 'd')) << "no zero within the field";
    put(paths.record, 152, '\0');
    EXPECT_FALSE(ProcessRecords::currentDirectory(paths.record));
}

TEST(ProcessArguments, areThoseOfTheSamplesAndOfEachBeginningOfThem) {
    std::size_t compared = 0;
    const auto samples = fixtureJSON("procargs2.json");
    for (const auto& sample : samples.as_array()) {
        SCOPED_TRACE(sample.at("name").as_string().c_str());
        const auto value = fromHex(sample.at("hex").as_string());
        const auto whole = ProcessRecords::arguments(value);
        ASSERT_EQ(whole.has_value(), sample.at("expect").is_object());
        if (!whole)
            continue;
        if (const auto* list = sample.at("expect").as_object().if_contains("arguments")) {
            EXPECT_EQ(whole, boost::json::value_to<Arguments>(*list));
            ++compared;
        }
        for (std::size_t length = 0; length < value.size(); ++length) {
            const std::vector<std::byte> cut(value.begin(), value.begin() + static_cast<std::ptrdiff_t>(length));
            const auto some = ProcessRecords::arguments(cut);
            ASSERT_EQ(some.has_value(), length >= 5) << length;
            if (!some || some->empty())
                continue;
            ASSERT_LE(some->size(), whole->size()) << length;
            EXPECT_TRUE(std::equal(some->begin(), some->end() - 1, whole->begin())) << length;
            EXPECT_TRUE((*whole)[some->size() - 1].starts_with(some->back())) << length;
        }
    }
    EXPECT_EQ(compared, 4u);
}

TEST(ProcessArguments, areNoMoreThanThereAre) {
    using namespace std::string_view_literals;
    const auto parse = [](std::int32_t count, std::string_view rest) {
        return ProcessRecords::arguments(region(count, rest));
    };
    constexpr auto most = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(parse(9, "/bin/sleep\0\0\0sleep\0"
                       "1\0\0\0\0"sv),
              (Arguments{"sleep", "1"}))
        << "padding is no argument";
    EXPECT_EQ(parse(most, "/a\0b\0\0c\0\0\0"sv), (Arguments{"b", "", "c"}));
    EXPECT_EQ(parse(3, "/a\0b\0\0\0HOME=/\0"sv), (Arguments{"b", "", ""})) << "empty arguments at the end are real";
    EXPECT_EQ(parse(1, "/a\0b\0HOME=/\0"sv), Arguments{"b"});
    EXPECT_EQ(parse(2, "/a\0b\0cut"sv), (Arguments{"b", "cut"}));
    EXPECT_EQ(parse(1, "/a\0caf\xE9\0"sv), Arguments{"caf\uFFFD"});
    EXPECT_EQ(parse(1, "\0\0\0\0\0"sv), Arguments{});
    EXPECT_EQ(parse(0, "/a\0b\0"sv), Arguments{});
    EXPECT_EQ(parse(-1, "/a\0b\0"sv), Arguments{});
    EXPECT_EQ(parse(std::numeric_limits<std::int32_t>::min(), "/a\0b\0"sv), Arguments{});
    EXPECT_FALSE(parse(1, ""));
}
