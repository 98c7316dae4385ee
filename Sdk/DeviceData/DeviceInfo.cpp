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

} // namespace korvane
