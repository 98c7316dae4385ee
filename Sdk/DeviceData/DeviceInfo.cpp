#include "Sdk/DeviceData/DeviceInfo.h"

namespace korvane {

namespace {

std::string jsonOf(const std::vector<std::string>& texts) {
    return JSON(texts).dump(-1, ' ', false, JSON::error_handler_t::replace);
}

} // namespace

std::string DeviceInfo::jsonString() const {
    JSONObjectWriter writer;
    writer.addString("DV", dataVersion);
    writer.addJSON("DD", jsonOf(deviceData));
    if (notAvailableDeviceParameters) writer.addJSON("DPNA", jsonOf(*notAvailableDeviceParameters));
    if (securityWarning) writer.addJSON("SW", jsonOf(*securityWarning));
    return std::move(writer).finish();
}

DeviceInfo DeviceInfo::decode(ByteView json) {
    const JSON value = decodeObject(asText(json));
    const JSONField object(value);
    DeviceInfo info;
    info.deviceData = object.member("DD").stringTable();
    if (const auto reasons = object.memberIfPresent("DPNA"))
        info.notAvailableDeviceParameters = reasons->stringTable();
    if (const auto warnings = object.memberIfPresent("SW")) {
        std::vector<std::string>& identifiers = info.securityWarning.emplace();
        for (const JSONField& warning : warnings->elements())
            identifiers.push_back(warning.string());
    }
    return info;
}

} // namespace korvane
