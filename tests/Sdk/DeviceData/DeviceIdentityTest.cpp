#include "Sdk/DeviceData/DeviceIdentity.h"

#include "tests/support/SimulatedPlatform.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

TEST(AppID, IsTheVendorsInLowerCaseOrTheStoredOneOrMadeOnceAndSaved) {
    SimulatedPlatform device;
    DeviceScript& script = device.script();
    const std::string key = "Korvane.SystemUtils.appID";
    EXPECT_EQ(appID(device), "6ba7b810-9dad-41d1-80b4-00c04fd430c8");
    EXPECT_TRUE(script.defaults.empty());
    script.identifierForVendor = "";
    script.defaults[key] = "kept as it is";
    EXPECT_EQ(appID(device), "kept as it is");
    EXPECT_EQ(script.synchronizations, 0);

    script.identifierForVendor.reset();
    script.defaults.clear();
    const std::string made = appID(device);
    EXPECT_THAT(made, testing::MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-"
                                            "[0-9A-F]{12}"));
    EXPECT_EQ(script.defaults[key], made);
    EXPECT_EQ(appID(device), made);
    EXPECT_EQ(script.synchronizations, 1);
}

TEST(WiFiAddress, IsTheLastInternetAddressOfTheOneInterface) {
    constexpr int kIPv4 = AddressFamily::kIPv4;
    const NetworkInterface v4{"en0", kIPv4, "192.0.2.1"};
    const NetworkInterface v6{"en0", AddressFamily::kIPv6, "fe80::1%en0"};
    const std::pair<std::vector<NetworkInterface>, std::optional<std::string>> rows[] = {
        {{{"lo0", kIPv4, "127.0.0.1"}, {"en1", kIPv4, "192.0.2.1"}, {"en01", kIPv4, "::1"}}, std::nullopt},
        {{v4, v6}, "fe80::1%en0"},
        {{v6, v4, {"en1", kIPv4, "192.0.2.9"}, {"en0", 18, "aa:bb"}}, "192.0.2.1"}};
    for (const auto& [interfaces, expected] : rows) {
        SimulatedPlatform device;
        device.script().interfaces = interfaces;
        EXPECT_EQ(getWiFiAddress(device.networkInterfaces()), expected);
    }
}

TEST(ModelName, IsKnownExactlyOrTheIdentifierItselfAndASimulatorTellsWhatItSimulates) {
    using namespace std::string_literals;
    const std::tuple<std::string, const char*, const char*> rows[] = {
        {"iPhone7,1", "", "iPhone 6 Plus"},
        {"iPad8,12", "", "iPad Pro (12.9-inch) (4th generation)"},
        {"iPad8,13", "", "iPad8,13"},
        {"iphone12,1", "", "iphone12,1"},
        {"iPhone12\0,1\0\0"s, "", "iPhone 11"},
        {"box\xE9", "", "box\u00E9"},
        {"i386", "", "Simulator iOS"},
        {"x86_64", "iPhone12,1", "Simulator iPhone 11"},
        {"arm64", "x86_64", "Simulator x86_64"},
    };
    for (const auto& [machine, simulated, name] : rows) {
        SimulatedPlatform device;
        device.script().machine = machine;
        if (*simulated) device.script().environment["SIMULATOR_MODEL_IDENTIFIER"] = simulated;
        EXPECT_EQ(computeModelName(device.processInfo()), name) << machine;
    }
}

} // namespace
} // namespace korvane
