#pragma once

#include "Platform/JSONDecoding.h"
#include "Platform/Platform.h"
#include "Sdk/DeviceData/DeviceInfo.h"
#include "Sdk/DeviceData/DeviceInfoParameter.h"
#include "Sdk/Events/Warning.h"

#include <optional>
#include <string>
#include <vector>

namespace korvane {

/// What is known of the device so far, and why the rest is not. Keys are raw values of `DeviceInfoParameter`.
struct DeviceData {
    StringTable deviceData{{std::string(rawValue(DeviceInfoParameter::PLATFORM)), "iOS"}};
    StringTable notAvailableDeviceParameters;
};

/// What the collection is told by the service, beside what it reads from the device.
struct CollectionInput {
    /// The application's locale, from `initialize`.
    std::optional<Locale> locale;
    std::string sdkVersion;
};

/// Reads all parameters but `PLATFORM` from the device, in their fixed order, into `data`: what an earlier
/// collection found stays where this one has nothing to put in its place. Does not fail. Main queue only.
void collectDeviceData(Platform& platform, const CollectionInput& input, DeviceData& data);

/// The `LOCALE` parameter of an application's locale: "language-region", or "en-US" where
/// there is no such form.
[[nodiscard]] std::string localeParameter(const std::optional<Locale>& locale);

/// The document of one transaction. Empty reasons and empty warnings are left out of it.
[[nodiscard]] DeviceInfo makeDeviceInfo(const DeviceData& data, const std::vector<Warning>& warnings);

} // namespace korvane
