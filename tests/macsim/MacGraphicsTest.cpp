#include "core/sampling/platform/macos/MacGraphics.hpp"

#include "tests/macsim/MacSimTest.hpp"

#include <boost/json.hpp>

using namespace ostrivane;

namespace {

class MacGraphicsTest : public MacSimTest {
protected:
    static boost::json::object& accelerator() {
        for (auto& service : macsim::registry().at("services").as_array())
            if (service.at("class") == "AGXAcceleratorG14G")
                return service.as_object();
        throw std::logic_error("no accelerator in the fixture");
    }
    static boost::json::array& clients() { return accelerator().at("children").as_array(); }

    MacGraphics graphics;
};

} // namespace

TEST_F(MacGraphicsTest, readsTheFiguresOfAnAccelerator) {
    const std::vector<AcceleratorReading> want{{.name = "Apple M2 Pro",
                                                .statistics = AcceleratorStatistics{.devicePercent = 23,
                                                                                    .rendererPercent = 21,
                                                                                    .tilerPercent = 20,
                                                                                    .memoryInUse = 731054080,
                                                                                    .memoryAllocated = 6262898688}}};
    EXPECT_EQ(graphics.accelerators(), want);
}

TEST_F(MacGraphicsTest, readsNamesInDataAndMemoryOfTheChipsOwn) {
    macsim::registry() = macsim::fixture("ioregistry-two-gpus.json").as_object();
    const auto found = graphics.accelerators();
    ASSERT_EQ(found.size(), 3u);
    EXPECT_EQ(found[0].name, "Intel UHD Graphics 630");
    ASSERT_TRUE(found[0].statistics);
    EXPECT_EQ(found[0].statistics->devicePercent, 10.0);
    EXPECT_EQ(found[0].statistics->memoryInUse, 1048576u);
    EXPECT_FALSE(found[0].statistics->memoryAllocated);
    EXPECT_EQ(found[1].name, "AMD Radeon Pro 5500M");
    EXPECT_EQ(found[2], AcceleratorReading{}) << "neither name nor figures";
}

TEST_F(MacGraphicsTest, takesNoFigureOfAnotherType) {
    auto& properties = accelerator().at("properties").as_object();
    properties["model"] = 5;
    auto& statistics = properties.at("PerformanceStatistics").as_object();
    statistics["Device Utilization %"] = "23";
    statistics["Renderer Utilization %"] = true;
    statistics["Tiler Utilization %"] = 0.5;
    statistics["In use system memory"] = -1;
    statistics["Alloc system memory"] = boost::json::array{1};
    const std::vector<AcceleratorReading> hollow{{.name = std::nullopt, .statistics = AcceleratorStatistics{}}};
    EXPECT_EQ(graphics.accelerators(), hollow);
    properties["model"] = "";
    properties["PerformanceStatistics"] = boost::json::array{};
    EXPECT_EQ(graphics.accelerators(), std::vector{AcceleratorReading{}});
}

// 640 has clients that never drew; the others in the fixture name no process.
TEST_F(MacGraphicsTest, addsUpTheClientsOfEachProcess) {
    const PidMap<std::uint64_t> want{{341, 1931047000000}, {812, 26000000}, {640, 0}};
    EXPECT_EQ(graphics.processTimes(), want);
}

TEST_F(MacGraphicsTest, addsUpOverAcceleratorsAndSkipsDamagedUsage) {
    auto again = accelerator();
    macsim::registry().at("services").as_array().push_back(again);
    auto& usage = clients()[0].at("properties").at("AppUsage").as_array();
    usage.push_back("no dictionary");
    usage.push_back(boost::json::object{{"accumulatedGPUTime", -5}});
    usage.push_back(boost::json::object{{"accumulatedGPUTime", "7"}});
    clients()[1].at("properties").as_object()["AppUsage"] = 9;
    clients()[3].at("properties").as_object().erase("AppUsage");
    const PidMap<std::uint64_t> want{{341, 2 * 1931047000000}, {812, 26000000 + 1000000}, {640, 0}};
    EXPECT_EQ(graphics.processTimes(), want);
}

TEST_F(MacGraphicsTest, isEmptyWhereAllIsRefused) {
    for (const char* call : {"IOServiceMatching", "IOServiceGetMatchingServices"}) {
        macsim::reset();
        macsim::refuse(call);
        EXPECT_TRUE(graphics.accelerators().empty()) << call;
        EXPECT_TRUE(graphics.processTimes().empty()) << call;
    }
    for (const char* call : {"IORegistryEntryGetChildIterator", "IORegistryEntryCreateCFProperty"}) {
        macsim::reset();
        macsim::refuse(call);
        EXPECT_TRUE(graphics.processTimes().empty()) << call;
    }
    EXPECT_EQ(graphics.accelerators(), std::vector{AcceleratorReading{}}) << "its properties are refused";
    macsim::registry().at("services").as_array().clear();
    EXPECT_TRUE(graphics.accelerators().empty());
}
