#include "core/sampling/GPUProcessSampler.hpp"
#include "core/sampling/NettopSampler.hpp"
#include "core/sampling/SystemProcessSampler.hpp"

#include "core/sampling/platform/NettopParser.hpp"
#include "core/sampling/platform/PSParser.hpp"
#include "tests/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <limits>

using namespace ostrivane;

namespace {

struct FakeSockets final : Sockets {
    std::optional<PidMap<TrafficTotals>> traffic() override { return answer; }
    std::optional<PidMap<TrafficTotals>> answer;
};

struct FakeProcesses final : SystemProcesses {
    std::optional<PidMap<SystemProcessTotals>> totals() override { return answer; }
    std::optional<PidMap<SystemProcessTotals>> answer;
};

std::string recorded(const std::string& name) {
    return contentOf(std::string(OSTRIVANE_FIXTURES) + "/macos/" + name);
}

TEST(NettopSampler, comparesTwoSamplesOfAMac) {
    FakeSockets source;
    NettopSampler sampler(source);
    source.answer = NettopParser::parse(recorded("nettop.txt"));
    sampler.sample(100);
    source.answer = NettopParser::parse(recorded("nettop-later.txt"));
    EXPECT_EQ(sampler.sample(104), (PidMap<TrafficRates>{{1, {0, 0}},
                                                         {291, {500, 100}},
                                                         {812, {0, 0}},
                                                         {1234, {0, 0}},
                                                         {1834, {1'000'000, 2500}},
                                                         {4312, {5000, 0}}}));
}

TEST(SystemProcessSampler, comparesTwoSamplesOfAMac) {
    FakeProcesses source;
    SystemProcessSampler sampler(source);
    source.answer = PSParser::parse(recorded("ps.txt"));
    sampler.sample(100);
    source.answer = PSParser::parse(recorded("ps-later.txt"));
    const auto& entries = sampler.sample(104);
    EXPECT_EQ(entries.size(), 6U);
    EXPECT_DOUBLE_EQ(entries.at(341).cpu, 1);
    EXPECT_DOUBLE_EQ(entries.at(1).cpu, 0.01);
    EXPECT_EQ(entries.at(4312), (SystemProcessSampler::Entry{0, 98304 * 1024})) << "its time fell";
    EXPECT_EQ(entries.at(5121).cpu, 0) << "new";
}

TEST(NettopSampler, turnsTotalsIntoRatesForEachDirection) {
    FakeSockets source;
    NettopSampler sampler(source);
    EXPECT_TRUE(sampler.isAvailable());
    source.answer = {{1, {100, 1000}}, {2, {50, 50}}, {3, {7, 7}}};
    EXPECT_TRUE(sampler.sample(10).empty()) << "no rate from one sample";

    source.answer = {{1, {500, 1000}}, {2, {10, 90}}, {4, {9000, 0}}};
    const PidMap<TrafficRates> want = {{1, {200, 0}}, {2, {0, 20}}}; // 2 fell in one direction, 3 is gone, 4 is new
    EXPECT_EQ(sampler.sample(12), want);
    EXPECT_EQ(sampler.lastRates(), want);
    EXPECT_EQ(sampler.lastTotals(), source.answer);
}

TEST(NettopSampler, keepsWhatItHadWhileTheSourceIsSilent) {
    FakeSockets source;
    NettopSampler sampler(source);
    source.answer = {{1, {0, 0}}};
    sampler.sample(10);
    source.answer = {{1, {100, 0}}};
    sampler.sample(11);

    source.answer = std::nullopt;
    EXPECT_EQ(sampler.sample(12), (PidMap<TrafficRates>{{1, {100, 0}}}));
    EXPECT_FALSE(sampler.isAvailable());
    EXPECT_EQ(sampler.lastTotals(), (PidMap<TrafficTotals>{{1, {100, 0}}}));

    source.answer = {{1, {400, 0}}}; // since second 11, not since the silence
    EXPECT_EQ(sampler.sample(13), (PidMap<TrafficRates>{{1, {150, 0}}}));
    EXPECT_TRUE(sampler.isAvailable());

    source.answer = PidMap<TrafficTotals>{}; // nothing to tell is an answer
    EXPECT_TRUE(sampler.sample(14).empty());
    EXPECT_TRUE(sampler.isAvailable());
}

TEST(SystemProcessSampler, givesCoresAndBytesFromTheFirstSampleOn) {
    FakeProcesses source;
    SystemProcessSampler sampler(source);
    source.answer = {{1, {1000, 4}}, {2, {500, std::numeric_limits<std::uint64_t>::max()}}};
    sampler.sample(10);
    EXPECT_EQ(sampler.last().at(1), (SystemProcessSampler::Entry{0, 4096})) << "memory needs no second sample";
    EXPECT_EQ(sampler.last().at(2).rss, std::numeric_limits<std::uint64_t>::max());

    source.answer = {{1, {1300, 8}}, {2, {490, 1}}, {3, {700, 1}}};
    const PidMap<SystemProcessSampler::Entry> want = {{1, {1.5, 8192}}, {2, {0, 1024}}, {3, {0, 1024}}};
    EXPECT_EQ(sampler.sample(12), want);
    source.answer = std::nullopt;
    EXPECT_EQ(sampler.sample(14), want);
    EXPECT_EQ(sampler.last(), want);
}

TEST(SystemProcessSampler, anIdThatWasReusedHasNoRate) {
    FakeProcesses source;
    SystemProcessSampler sampler(source);
    source.answer = {{1, {1000, 4, 500}}, {2, {100, 4, 500}}};
    sampler.sample(10);
    source.answer = {{1, {1300, 4, 501}}, {2, {300, 4, 500}}};
    sampler.sample(12);
    EXPECT_EQ(sampler.last().at(1), (SystemProcessSampler::Entry{0, 4096})) << "300 of two processes";
    EXPECT_EQ(sampler.last().at(2).cpu, 1);
    source.answer = {{1, {1400, 4, 501}}};
    EXPECT_EQ(sampler.sample(14).at(1).cpu, 0.5);
}

TEST(GPUProcessSampler, givesAShareThatNeverPassesTheWhole) {
    PidMap<std::uint64_t> times = {{1, 0}, {2, 0}, {3, 500}};
    GPUProcessSampler sampler([&] { return times; });
    EXPECT_TRUE(sampler.sample(10).empty());
    times = {{1, 500'000'000}, {2, 9'000'000'000}, {3, 400}};
    EXPECT_EQ(sampler.sample(12), (PidMap<double>{{1, 0.25}, {2, 1}}));
    EXPECT_EQ(sampler.last().size(), 2U);
    times.clear();
    EXPECT_TRUE(sampler.sample(14).empty());
}

} // namespace
