#include "Sdk/DeviceData/DeviceDataCollection.h"

#include "Platform/DecimalText.h"
#include "Sdk/DeviceData/IntegrityWarnings.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/ScriptedDevice.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsSupersetOf;
using testing::Pair;
using testing::UnorderedElementsAre;

class Collecting : public testing::Test {
protected:
    DeviceScript& script() { return device_.script(); }

    const DeviceData& collect(std::optional<Locale> locale = Locale{"fr_CA"}) {
        collectDeviceData(device_, {std::move(locale), "1.0.0"}, data);
        return data;
    }

    DeviceData data;

private:
    ScriptedDevice device_;
};

TEST_F(Collecting, AllParametersOfADeviceThatWithholdsNothing) {
    script().advertisingIdentifier = "9f1b7c3e-0000-4000-8000-00000000abcd";
    script().interfaces = {{"en0", AddressFamily::kIPv4, "192.0.2.7"}};
    script().locationStatus = 3;
    script().location = CLLocation{{-33.856784, 151.215297}};
    script().receiptURL = "file:///app/StoreKit/receipt";
    script().userInterfaceIdiom = UIUserInterfaceIdiom::pad;
    script().bounds = {{0, 0}, {1024, 768.5}};
    script().systemFontSize = 14.5;
    script().fonts = {{"Zapfino", {"Zapfino"}}, {"Empty", {}}, {"Arial", {"ArialMT", "Arial-BoldMT"}}};

    const JSON expected = JSON::parse(R"({
        "C001": "iOS", "C002": "iPhone 11", "C003": "iOS", "C004": "14.4", "C005": "fr-CA", "C006": "CET",
        "C007": "9F1B7C3E-0000-4000-8000-00000000ABCD", "C008": "1024.0x768.5", "C009": "Ada's phone",
        "C010": "192.0.2.7", "C011": "-33.856784", "C012": "151.215297",
        "C014": "6ba7b810-9dad-41d1-80b4-00c04fd430c8", "C015": "1.0.0",
        "I001": "6BA7B810-9DAD-41D1-80B4-00C04FD430C8", "I002": "1", "I003": "Zapfino,Empty,Arial",
        "I004": "Zapfino: ZapfinoEmpty: Arial: ArialMT,Arial-BoldMT", "I005": "system font of size 15",
        "I006": "17.0", "I007": "18.0", "I008": "12.0", "I009": "14.5", "I010": "en_GB", "I011": "en_GB,fr",
        "I012": "en-GB,fr-CA", "I013": "CET", "I014": "file:///app/StoreKit/receipt"})");
    EXPECT_EQ(JSON(collect().deviceData), expected);
    EXPECT_THAT(data.notAvailableDeviceParameters, ElementsAre(Pair("C013", "RE04")));
}

TEST_F(Collecting, WhatIsAbsentHasItsReasonOrItsDefaultOrIsSilent) {
    script().identifierForVendor.reset();
    script().timeZoneAbbreviation.reset();
    EXPECT_THAT(collect().deviceData,
                IsSupersetOf({Pair("C006", ""), Pair("I013", ""), Pair("C010", "127.0.0.1")}));
    EXPECT_THAT(data.notAvailableDeviceParameters,
                UnorderedElementsAre(Pair("C011", "RE03"), Pair("C012", "RE03"), Pair("C013", "RE04"),
                                     Pair("I014", "RE04")));
    for (const char* key : {"C011", "C012", "C013", "I001", "I014"})
        EXPECT_EQ(data.deviceData.count(key), 0U) << key;
}

TEST_F(Collecting, LocationIsReadOnceAndOnlyWithPermission) {
    for (int status = 0; status < 6; ++status) {
        SCOPED_TRACE(status);
        const bool isOpen = status == 3 || status == 4;
        script().locationStatus = status;
        script().location = CLLocation{{48.0, 1e-7}};
        script().locationReads = 0;
        data = DeviceData();
        collect();
        EXPECT_EQ(script().locationReads, isOpen ? 1 : 0);
        EXPECT_EQ(data.deviceData["C011"] + data.deviceData["C012"], isOpen ? "48.01e-07" : "");
        for (const char* key : {"C011", "C012"})
            EXPECT_EQ(data.notAvailableDeviceParameters[key], isOpen ? "" : "RE03") << key;
    }
}

TEST_F(Collecting, ASecondCollectionKeepsWhatItCannotReplace) {
    script().locationStatus = 3;
    script().location = CLLocation{{1, 2}};
    collect();
    EXPECT_EQ(data.notAvailableDeviceParameters.count("C012"), 0U);
    script().locationStatus = 2;
    script().identifierForVendor.reset();
    script().deviceName = "renamed";
    collect();
    EXPECT_THAT(data.deviceData,
                IsSupersetOf({Pair("C011", "1.0"), Pair("C012", "2.0"), Pair("C009", "renamed")}));
    EXPECT_EQ(data.deviceData.count("I001"), 0U);
    EXPECT_EQ(data.notAvailableDeviceParameters.at("C012"), "RE03");

    // Permission without a fix is silent.
    script().locationStatus = 3;
    script().location.reset();
    collect();
    EXPECT_EQ(data.deviceData.count("C011") + data.deviceData.count("C012"), 0U);
    EXPECT_EQ(data.notAvailableDeviceParameters.at("C011"), "RE03");
    data = DeviceData();
    EXPECT_THAT(collect().notAvailableDeviceParameters,
                UnorderedElementsAre(Pair("C013", "RE04"), Pair("I014", "RE04")));
}

TEST(LocaleParameter, IsLanguageAndRegionOrTheDefault) {
    EXPECT_EQ(localeParameter(std::nullopt), "en-US");
    const std::pair<const char*, const char*> rows[] = {
        {"fr-CA", "fr-CA"}, {"fr_CA", "fr-CA"}, {"zh_Hans_CN", "zh-Hans"}, {"zh-Hans_CN", "zh-Hans_CN"},
        {"de", "de"},       {"", "en-US"},      {"deu", "en-US"},          {"_CA", "en-US"},
        {"fr_", "en-US"},   {"_", "en-US"},     {"fr__CA", "fr-CA"},       {"\u00E9\u00E9", "\u00E9\u00E9"},
        {"\u00E9", "en-US"}};
    for (const auto& [identifier, expected] : rows)
        EXPECT_EQ(localeParameter(Locale{identifier}), expected) << '"' << identifier << '"';
}

TEST(DecimalText, IsShortestWithAFractionalDigit) {
    const std::pair<double, const char*> rows[] = {{375, "375.0"},
                                                   {-0.0, "-0.0"},
                                                   {0.1 + 0.2, "0.30000000000000004"},

                                                   {1e-4, "0.0001"},

                                                   {0.00009, "9e-05"},
                                                   {1e15, "1000000000000000.0"},
                                                   {0x1p54, "18014398509481984.0"},
                                                   {1.5e20, "1.5e+20"}};
    for (const auto& [value, expected] : rows)
        EXPECT_EQ(decimalText(value), expected);
}

TEST(IntegrityWarnings, AreFoundInTheirOrderAndLogged) {
    ScriptedDevice device;
    const IntegrityChecks& checks = device.integrityChecks();
    EXPECT_TRUE(findIntegrityWarnings(checks).empty());

    device.script().isJailbroken = device.script().isEmulator = device.script().isDebuggerAttached = true;
    device.script().isOSVersionSupported = false;
    const RecordingLogger logger;
    const std::vector<Warning> expected{
        {Severity::HIGH, "SW1", "Device is jailbroken"},
        {Severity::HIGH, "SW3", "An emulator is being used to run the App."},
        {Severity::MEDIUM, "SW4", "A debugger is attached to the App."},
        {Severity::HIGH, "SW5", "The OS or the OS version is not supported."}};
    EXPECT_EQ(findIntegrityWarnings(checks), expected);
    EXPECT_THAT(logger.lines().at(0), EndsWith(": Device is jailbroken."));
    for (const std::size_t index : {1U, 2U, 3U})
        EXPECT_THAT(logger.lines().at(index), EndsWith(": " + expected[index].getMessage()));
}

} // namespace
} // namespace korvane
