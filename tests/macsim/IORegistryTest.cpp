#include "core/sampling/platform/macos/IORegistry.hpp"

#include "core/sampling/platform/macos/CFValue.hpp"
#include "tests/macsim/MacSimTest.hpp"

#include <boost/json.hpp>

using namespace ostrivane;

using IORegistryTest = MacSimTest;

TEST_F(IORegistryTest, findsSubclassesAndTheirChildren) {
    const auto accelerators = IORegistry::services("IOAccelerator");
    ASSERT_EQ(accelerators.size(), 1u);
    EXPECT_EQ(IORegistry::className(accelerators[0]), "AGXAcceleratorG14G");
    const auto clients = IORegistry::children(accelerators[0]);
    ASSERT_EQ(clients.size(), 6u);
    EXPECT_EQ(IORegistry::className(clients[5]), "IOSurfaceAcceleratorClient");
    EXPECT_EQ(CFValue::string(IORegistry::property(clients[1], "IOUserClientCreator").get()),
              "pid 812, Google Chrome He");
    EXPECT_TRUE(IORegistry::children(clients[0]).empty());
}

TEST_F(IORegistryTest, readsPropertiesByType) {
    const auto accelerators = IORegistry::services("IOAccelerator");
    ASSERT_EQ(accelerators.size(), 1u);
    const auto properties = IORegistry::properties(accelerators[0]);
    const CFTypeRef statistics = CFValue::member(properties.get(), "PerformanceStatistics");
    EXPECT_EQ(CFValue::integer(CFValue::member(statistics, "Alloc system memory")), 6262898688);
    EXPECT_FALSE(CFValue::integer(CFValue::member(statistics, "vramUsedBytes"))) << "not there";
    EXPECT_FALSE(CFValue::integer(CFValue::member(properties.get(), "model"))) << "a text";
    EXPECT_FALSE(CFValue::string(CFValue::member(properties.get(), "gpu-core-count"))) << "a number";
    EXPECT_FALSE(CFValue::data(CFValue::member(properties.get(), "model"))) << "a text";
    EXPECT_FALSE(CFValue::member(CFValue::member(properties.get(), "model"), "of a text"));
    EXPECT_EQ(CFValue::string(CFValue::member(properties.get(), "model")), "Apple M2 Pro");
}

TEST_F(IORegistryTest, keepsNumbersAndTextsWhole) {
    auto& entry = macsim::registry().at("services").as_array()[0].as_object();
    entry["properties"] = boost::json::object{{"negative", -1250}, {"fraction", 0.5}, {"whole", 2.0},
                                              {"flag", true},      {"text", "é€😀"},   {"none", ""}};
    const auto devices = IORegistry::services("IOPlatformDevice");
    const auto number = [&devices](const char* key) {
        return CFValue::integer(IORegistry::property(devices.at(0), key).get());
    };
    EXPECT_EQ(number("negative"), -1250);
    EXPECT_EQ(number("whole"), 2);
    EXPECT_FALSE(number("fraction")) << "would lose something";
    EXPECT_FALSE(number("flag")) << "a boolean";
    EXPECT_EQ(CFValue::string(IORegistry::property(devices.at(0), "text").get()), "é€😀");
    EXPECT_EQ(CFValue::string(IORegistry::property(devices.at(0), "none").get()), "");
}

TEST_F(IORegistryTest, isEmptyWhereNothingMatchesOrAllIsRefused) {
    EXPECT_TRUE(IORegistry::services("IONothing").empty());
    const auto accelerators = IORegistry::services("IOAccelerator");
    ASSERT_EQ(accelerators.size(), 1u);
    for (const char* call : {"IOServiceGetMatchingServices", "IORegistryEntryGetChildIterator", "IOObjectGetClass",
                             "IORegistryEntryCreateCFProperty", "IORegistryEntryCreateCFProperties"})
        macsim::refuse(call);
    EXPECT_TRUE(IORegistry::services("IOAccelerator").empty());
    EXPECT_TRUE(IORegistry::children(accelerators[0]).empty());
    EXPECT_FALSE(IORegistry::className(accelerators[0]));
    EXPECT_FALSE(IORegistry::properties(accelerators[0]));
    EXPECT_FALSE(IORegistry::property(accelerators[0], "model"));
    EXPECT_FALSE(IORegistry::productName());
    macsim::refuse("IOServiceMatching");
    EXPECT_TRUE(IORegistry::services("IOAccelerator").empty());
}

TEST_F(IORegistryTest, readsTheProductNameUpToItsFirstZero) {
    EXPECT_EQ(IORegistry::productName(), "MacBook Pro (14-inch, 2023)");
    auto& paths = macsim::registry().at("paths").as_object();
    auto& name = paths.at("IODeviceTree:/product").at("properties").at("product-name");
    name = "a text, no data";
    EXPECT_FALSE(IORegistry::productName());
    name = boost::json::object{{"$data", "00004d6163"}};
    EXPECT_FALSE(IORegistry::productName());
    paths.clear();
    EXPECT_FALSE(IORegistry::productName());
}
