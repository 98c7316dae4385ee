#include "Sdk/DeviceData/DeviceIdentity.h"

#include "tests/support/ScriptedDevice.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

TEST(AppID, IsTheVendorsInLowerCaseOrTheStoredOneOrMadeOnceAndSaved) {
    ScriptedDevice device;
    DeviceScript& script = device.script();
    JSON& stored = script.defaults["Korvane.SystemUtils.appID"];
    EXPECT_EQ(appID(device), "6ba7b810-9dad-41d1-80b4-00c04fd430c8");
    EXPECT_EQ(stored, nullptr);
    script.identifierForVendor = "";
    stored = "kept as it is";
    EXPECT_EQ(appID(device), "kept as it is");
    EXPECT_EQ(script.synchronizations, 0);

    script.identifierForVendor.reset();
    int made = 0;
    for (const JSON& foreign : {JSON(7), JSON(nullptr), JSON::array({"a"}), JSON::object({{"a", "b"}})}) {
        stored = foreign;
        const std::string first = appID(device);
        EXPECT_THAT(first, testing::MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-"
                                                 "[0-9A-F]{12}"))
            << foreign;
        EXPECT_EQ(stored, first);
        EXPECT_EQ(appID(device), first);
        EXPECT_EQ(script.synchronizations, ++made);
    }
}

TEST(WiFiAddress, IsTheLastInternetAddressOfTheOneInterface) {
    constexpr int kIPv4 = AddressFamily::kIPv4;
    constexpr int kIPv6 = AddressFamily::kIPv6;
    const NetworkInterface v4{"en0", kIPv4, "192.0.2.1"};
    const NetworkInterface v6{"en0", kIPv6, "fe80::1%en0"};
    const std::pair<std::vector<NetworkInterface>, std::optional<std::string>> rows[] = {
        {{}, std::nullopt},
        {{{"lo0", kIPv4, "127.0.0.1"}, {"en1", kIPv4, "192.0.2.1"}, {"en01", kIPv4, "::1"}}, std::nullopt},
        {{v4, v6}, "fe80::1%en0"},
        {{v6, v4, {"en1", kIPv4, "192.0.2.9"}, {"en0", 18, "aa:bb"}, {"en0", 10, "::2"}}, "192.0.2.1"},
        {{v4, {"en0", kIPv6, ""}}, ""}, // a text that could not be made
    };
    for (const auto& [interfaces, expected] : rows) {
        ScriptedDevice device;
        device.script().interfaces = interfaces;
        EXPECT_EQ(getWiFiAddress(device.networkInterfaces()), expected);
    }
}

std::string nameOf(const std::string& machine, std::map<std::string, std::string> environment = {}) {
    ScriptedDevice device;
    device.script().machine = machine;
    device.script().environment = std::move(environment);
    return computeModelName(device.processInfo());
}

TEST(ModelName, IsKnownExactlyOrTheIdentifierItself) {
    using namespace std::string_literals;
    const std::pair<std::string, const char*> rows[] = {
        {"iPhone7,1", "iPhone 6 Plus"},
        {"iPhone7,2", "iPhone 6"},
        {"iPad2,4", "iPad 2"},
        {"iPad2,5", "iPad mini"},
        {"iPad8,8", "iPad Pro (12.9-inch) (3rd generation)"},
        {"iPad8,12", "iPad Pro (12.9-inch) (4th generation)"},
        {"iPad8,13", "iPad8,13"},
        {"iphone12,1", "iphone12,1"},
        {"", ""},
        {"iPhone12\0,1\0\0"s, "iPhone 11"},
        {"box\xE9", "box\u00E9"},
    };
    for (const auto& [machine, name] : rows)
        EXPECT_EQ(nameOf(machine), name) << machine;
}

TEST(ModelName, OfASimulatorTellsWhatItSimulates) {
    for (const char* machine : {"i386", "x86_64", "arm64"}) {
        EXPECT_EQ(nameOf(machine), "Simulator iOS");
        EXPECT_EQ(nameOf(machine, {{"SIMULATOR_MODEL_IDENTIFIER", "iPhone12,1"}}), "Simulator iPhone 11");
        EXPECT_EQ(nameOf(machine, {{"SIMULATOR_MODEL_IDENTIFIER", "x86_64"}}), "Simulator x86_64");
    }
}

TEST(ModelName, IsComputedOnceInAProcess) {
    ScriptedDevice device;
    const std::string name = modelName(device.processInfo());
    device.script().machine = "iPad2,1";
    EXPECT_EQ(modelName(device.processInfo()), name);
}

} // namespace
} // namespace korvane
