#include "Sdk/DeviceData/DeviceInfo.h"

#include "Sdk/DeviceData/DeviceDataCollection.h"
#include "tests/support/Failures.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

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

TEST(DeviceInfo, ReadingTakesAnyVersionAndRefusesOtherForms) {
    EXPECT_EQ(DeviceInfo::decode(asBytes(R"({"SW":["SW5"],"DD":{"C001":"iOS"},"DPNA":null,"DV":9})")),
              (DeviceInfo{{{"C001", "iOS"}}, std::nullopt, {{"SW5"}}}));
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
