#include "Sdk/DeviceData/DeviceIdentity.h"

#include "Platform/LetterCase.h"
#include "Platform/UUID.h"

namespace korvane {

std::string appID(Platform& platform) {
    const auto vendor = platform.device().identifierForVendor();
    if (vendor && !vendor->empty()) return lowercased(*vendor);

    const std::string key = "Korvane.SystemUtils.appID";
    NSUserDefaults& defaults = platform.userDefaults();
    if (auto stored = defaults.valueForKey(key)) return *std::move(stored);

    std::string made = makeUUIDString();
    defaults.setObject(made, key);
    defaults.synchronize();
    return made;
}

std::optional<std::string> getWiFiAddress(const NetworkInterfaces& interfaces) {
    std::optional<std::string> last;
    for (NetworkInterface& interface : interfaces.list()) {
        const bool isInternet =
            interface.family == AddressFamily::kIPv4 || interface.family == AddressFamily::kIPv6;
        if (isInternet && interface.name == "en0") last = std::move(interface.address);
    }
    return last;
}

} // namespace korvane
