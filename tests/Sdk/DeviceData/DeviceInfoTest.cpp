#include "Sdk/DeviceData/DeviceInfo.h"

#include "Sdk/DeviceData/DeviceDataCollection.h"
#include "tests/support/Failures.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

TEST(DeviceInfo, WritesWhatIsThereInTheDocumentsOrder) {
    DeviceInfo info;
    EXPECT_EQ(info.jsonString(), R"({"DV":"1.4","DD":{}})");
    info.securityWarning = {"SW1", "SW4"};
    info.notAvailableDeviceParameters = StringTable{{"C013", "RE04"}};
    info.deviceData = {{"C009", "a \"quoted\"\nname \u00E9"}};
    EXPECT_EQ(info.jsonString(), "{\"DV\":\"1.4\",\"DD\":{\"C009\":\"a \\\"quoted\\\"\\nname \u00E9\"},"
                                 R"("DPNA":{"C013":"RE04"},"SW":["SW1","SW4"]})");
}

TEST(DeviceInfo, IsMadeOfWhatIsNotEmpty) {
    DeviceData data;
    EXPECT_EQ(makeDeviceInfo(data, {}).jsonString(), R"({"DV":"1.4","DD":{"C001":"iOS"}})");
    data.notAvailableDeviceParameters = {{"C013", "RE04"}};
    const Warning warning(Severity::HIGH, "SW3", "");
    EXPECT_EQ(makeDeviceInfo(data, {warning, warning}).jsonString(),
              R"({"DV":"1.4","DD":{"C001":"iOS"},"DPNA":{"C013":"RE04"},"SW":["SW3","SW3"]})");
}

TEST(DeviceInfo, OctetsThatAreNoTextDoNotSpoilTheDocument) {
    DeviceInfo info;
    info.deviceData = {{"C009", "host\xFF"}};
    const DeviceInfo read = DeviceInfo::decode(asBytes(info.jsonString()));
    EXPECT_EQ(read.deviceData.at("C009"), "host\uFFFD");
}

TEST(DeviceInfo, IsReadBackAndItsVersionIsNotLookedAt) {
    const DeviceInfo info =
        DeviceInfo::decode(asBytes(R"({"SW":["SW5"],"DD":{"C001":"iOS"},"DPNA":null,"DV":9})"));
    EXPECT_EQ(info, (DeviceInfo{{{"C001", "iOS"}}, std::nullopt, {{"SW5"}}}));
    EXPECT_EQ(info.jsonString(), R"({"DV":"1.4","DD":{"C001":"iOS"},"SW":["SW5"]})");
}

TEST(DeviceInfo, ReadingRefusesOtherForms) {
    using enum DecodingErrorCase;
    const std::pair<const char*, DecodingErrorCase> rows[] = {
        {R"({"DV":"1.4"})", keyNotFound},          {R"({"DD":null})", valueNotFound},
        {R"({"DD":{"C001":1}})", typeMismatch},    {R"({"DD":{},"DPNA":[]})", typeMismatch},
        {R"({"DD":{},"SW":"SW1"})", typeMismatch}, {R"({"DD":{})", dataCorrupted},
    };
    for (const auto& [json, kind] : rows)
        EXPECT_TRUE(raises(kind, [text = json] { return DeviceInfo::decode(asBytes(text)); })) << json;
}

} // namespace
} // namespace korvane
