#include "Sdk/DeviceData/DeviceIdentity.h"

#include "tests/support/ScriptedDevice.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using testing::MatchesRegex;

constexpr const char* kKey = "Korvane.SystemUtils.appID";
constexpr const char* kUpperCaseUUID = "[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}";

TEST(AppID, OfTheVendorIsLowerCaseAndNotStored) {
    ScriptedDevice device;
    EXPECT_EQ(appID(device), "6ba7b810-9dad-41d1-80b4-00c04fd430c8");
    EXPECT_TRUE(device.script().defaults.empty());
}

TEST(AppID, WithoutAVendorIsMadeOnceInUpperCaseAndSaved) {
    for (const std::optional<std::string>& vendor :
         {std::optional<std::string>(), std::optional<std::string>("")}) {
        ScriptedDevice device;
        device.script().identifierForVendor = vendor;
        const std::string first = appID(device);
        EXPECT_THAT(first, MatchesRegex(kUpperCaseUUID));
        EXPECT_EQ(device.script().defaults[kKey], first);
        EXPECT_EQ(device.script().synchronizations, 1);
        EXPECT_EQ(appID(device), first);
        EXPECT_EQ(device.script().synchronizations, 1);
    }
}

TEST(AppID, FollowsTheStoreAndTheVendorAtEachRead) {
    ScriptedDevice device;
    device.script().identifierForVendor.reset();
    device.script().defaults[kKey] = "kept as it is";
    EXPECT_EQ(appID(device), "kept as it is");
    device.script().identifierForVendor = "AB";
    EXPECT_EQ(appID(device), "ab");
}

TEST(AppID, AStoredValueOfAnotherTypeIsReplaced) {
    for (const JSON& foreign : {JSON(7), JSON(nullptr), JSON::array({"a"}), JSON::object({{"a", "b"}})}) {
        ScriptedDevice device;
        device.script().identifierForVendor.reset();
        device.script().defaults[kKey] = foreign;
        EXPECT_THAT(appID(device), MatchesRegex(kUpperCaseUUID)) << foreign;
        EXPECT_TRUE(device.script().defaults[kKey].is_string());
    }
}

TEST(WiFiAddress, IsTheLastInternetAddressOfTheOneInterface) {
    constexpr int kIPv4 = AddressFamily::kIPv4;
    constexpr int kIPv6 = AddressFamily::kIPv6;
    struct Row {
        const char* name;
        std::vector<NetworkInterface> interfaces;
        std::optional<std::string> expected;
    };
    const Row rows[] = {
        {"no interfaces", {}, std::nullopt},
        {"others only",
         {{"lo0", kIPv4, "127.0.0.1"}, {"en1", kIPv4, "192.0.2.1"}, {"en01", kIPv4, "192.0.2.2"}},
         std::nullopt},
        {"last wins, version 6", {{"en0", kIPv4, "192.0.2.1"}, {"en0", kIPv6, "fe80::1%en0"}}, "fe80::1%en0"},
        {"last wins, version 4",
         {{"en0", kIPv6, "fe80::1%en0"}, {"en0", kIPv4, "192.0.2.1"}, {"en1", kIPv4, "192.0.2.9"}},
         "192.0.2.1"},
        {"other families do not count",
         {{"en0", kIPv4, "192.0.2.1"}, {"en0", 18, "aa:bb"}, {"en0", 10, "::2"}},
         "192.0.2.1"},
        {"a text that could not be made", {{"en0", kIPv4, "192.0.2.1"}, {"en0", kIPv6, ""}}, ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        ScriptedDevice device;
        device.script().interfaces = row.interfaces;
        EXPECT_EQ(getWiFiAddress(device.networkInterfaces()), row.expected);
    }
}

std::string nameOf(std::string machine, std::map<std::string, std::string> environment = {}) {
    ScriptedDevice device;
    device.script().machine = std::move(machine);
    device.script().environment = std::move(environment);
    return computeModelName(device.processInfo());
}

TEST(ModelName, KnowsModelsExactly) {
    using namespace std::string_literals;
    const std::pair<std::string, const char*> rows[] = {
        {"iPod9,1", "iPod touch (7th generation)"},
        {"iPhone7,1", "iPhone 6 Plus"},
        {"iPhone7,2", "iPhone 6"},
        {"iPhone9,3", "iPhone 7"},
        {"iPhone13,4", "iPhone 12 Pro Max"},
        {"iPad2,4", "iPad 2"},
        {"iPad2,5", "iPad mini"},
        {"iPad7,12", "iPad (7th generation)"},
        {"iPad8,4", "iPad Pro (11-inch) (1st generation)"},
        {"iPad8,8", "iPad Pro (12.9-inch) (3rd generation)"},
        {"iPad8,12", "iPad Pro (12.9-inch) (4th generation)"},
        {"AudioAccessory5,1", "HomePod mini"},
        {"iPad8,13", "iPad8,13"},
        {"iphone12,1", "iphone12,1"},
        {"iPhone8,3", "iPhone8,3"},
        {"aarch64", "aarch64"},
        {"", ""},
        {"iPhone12,1\0\0\0\0"s, "iPhone 11"},
        {"iPhone12\0,1"s, "iPhone 11"},
        {"box\xE9", "box\u00E9"},
    };
    for (const auto& [machine, name] : rows)
        EXPECT_EQ(nameOf(machine), name) << machine;
}

TEST(ModelName, OfASimulatorTellsWhatItSimulates) {
    for (const char* machine : {"i386", "x86_64", "arm64"}) {
        EXPECT_EQ(nameOf(machine), "Simulator iOS") << machine;
        EXPECT_EQ(nameOf(machine, {{"SIMULATOR_MODEL_IDENTIFIER", "iPhone12,1"}}), "Simulator iPhone 11")
            << machine;
        EXPECT_EQ(nameOf(machine, {{"SIMULATOR_MODEL_IDENTIFIER", "x86_64"}}), "Simulator x86_64") << machine;
    }
}

TEST(ModelName, IsComputedOnceInAProcess) {
    ScriptedDevice device;
    const std::string first = modelName(device.processInfo());
    device.script().machine = "iPad2,1";
    EXPECT_EQ(modelName(device.processInfo()), first);
}

} // namespace
} // namespace korvane
