#include "Sdk/DeviceData/DeviceDataCollection.h"

#include "Platform/DecimalText.h"
#include "Sdk/DeviceData/IntegrityWarnings.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/SimulatedPlatform.h"

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
    SimulatedPlatform device_;
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
    const auto places = [this] { return data.deviceData.count("C011") + data.deviceData.count("C012"); };
    for (int status = 0; status < 6; ++status) {
        SCOPED_TRACE(status);
        const bool isOpen = status == 3 || status == 4;
        script().locationStatus = status;
        script().location = CLLocation{{48.0, 1e-7}};
        script().locationReads = 0;
        data = DeviceData();
        collect();
        EXPECT_EQ(script().locationReads, isOpen ? 1 : 0);
        EXPECT_EQ(places(), isOpen ? 2U : 0U);
        // Permission without a fix is silent, and the last place does not stay.
        script().location.reset();
        collect();
        EXPECT_EQ(places(), 0U);
        EXPECT_EQ(data.notAvailableDeviceParameters.count("C012"), isOpen ? 0U : 1U);
    }
}

TEST(DeviceInfo, IsWrittenInTheDocumentsOrderOfWhatIsNotEmpty) {
    DeviceData data;
    EXPECT_EQ(makeDeviceInfo(data, {}).jsonString(), R"({"DV":"1.4","DD":{"C001":"iOS"}})");
    data.deviceData = {{"C009", "a \"quoted\"\nname \u00E9, host\xFF"}};
    data.notAvailableDeviceParameters = {{"C013", "RE04"}};
    const Warning warning(Severity::HIGH, "SW3", "");
    const std::string json = R"({"DV":"1.4","DD":{"C009":"a \"quoted\"\nname )"
                             "\u00E9, host\uFFFD"
                             R"("},"DPNA":{"C013":"RE04"},"SW":["SW3","SW3"]})";
    EXPECT_EQ(makeDeviceInfo(data, {warning, warning}).jsonString(), json);
    EXPECT_EQ(DeviceInfo::decode(asBytes(json)).jsonString(), json);
}

TEST(LocaleParameter, IsLanguageAndRegionOrTheDefault) {
    EXPECT_EQ(localeParameter(std::nullopt), "en-US");
    const std::pair<const char*, const char*> rows[] = {
        {"fr-CA", "fr-CA"}, {"fr_CA", "fr-CA"}, {"zh_Hans_CN", "zh-Hans"}, {"zh-Hans_CN", "zh-Hans_CN"},
        {"de", "de"},       {"", "en-US"},      {"deu", "en-US"},          {"fr_", "en-US"},
        {"_", "en-US"}};
    for (const auto& [identifier, expected] : rows)
        EXPECT_EQ(localeParameter(Locale{identifier}), expected) << '"' << identifier << '"';
}

TEST(DecimalText, IsShortestWithAFractionalDigit) {
    const std::pair<double, const char*> rows[] = {
        {375, "375.0"},   {-0.0, "-0.0"},  {0.1 + 0.2, "0.30000000000000004"}, {1e15, "1000000000000000.0"},
        {1e-4, "0.0001"}, {9e-5, "9e-05"}, {0x1p54, "18014398509481984.0"},    {1.5e20, "1.5e+20"}};
    for (const auto& [value, expected] : rows)
        EXPECT_EQ(decimalText(value), expected);
}

TEST(IntegrityWarnings, AreFoundInTheirOrderAndLogged) {
    SimulatedPlatform device;
    EXPECT_TRUE(findIntegrityWarnings(device.integrityChecks()).empty());
    device.script().isJailbroken = device.script().isEmulator = device.script().isDebuggerAttached = true;
    device.script().isOSVersionSupported = false;
    const RecordingLogger logger;
    EXPECT_THAT(findIntegrityWarnings(device.integrityChecks()),
                ElementsAre(Warning(Severity::HIGH, "SW1", "Device is jailbroken"),
                            Warning(Severity::HIGH, "SW3", "An emulator is being used to run the App."),
                            Warning(Severity::MEDIUM, "SW4", "A debugger is attached to the App."),
                            Warning(Severity::HIGH, "SW5", "The OS or the OS version is not supported.")));
    EXPECT_THAT(logger.lines(), ElementsAre(EndsWith(": Device is jailbroken."), EndsWith("run the App."),
                                            EndsWith("attached to the App."), EndsWith("is not supported.")));
}

} // namespace
} // namespace korvane
