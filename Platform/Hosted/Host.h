#pragma once

#include "Platform/Bytes.h"
#include "Platform/Dispatch.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace korvane {

/// What a host can tell of its machine, by one text each unless it says otherwise. A flag is "yes" or "no".
enum class HostValue {
    systemName,
    systemVersion,
    deviceName,
    vendorIdentifier,
    idiom, ///< "phone", "pad", "tv", "carPlay" or "mac"
    machine,
    locale,
    availableLocales,   ///< any number of texts
    preferredLanguages, ///< any number of texts, the most preferred first
    timeZone,
    locationPermission, ///< "notDetermined", "restricted", "denied", "authorizedAlways", "authorizedWhenInUse"
    location,           ///< two decimal numbers: degrees north and east
    advertisingIdentifier,
    fontFamilies, ///< any number of texts
    isJailbroken,
    isEmulator,
    isDebuggerAttached,
    isSystemSupported,
    supportedOrientations, ///< any number of texts, such as "UIInterfaceOrientationPortrait"
    receiptURL,
    resources ///< the folder that `Korvane.framework` lies in
};

/// One exchange that the host is to carry: as it stands, once, and without following redirects. It keeps
/// nothing of it: no cookies, no credentials, no cache.
struct HostRequest {
    /// Not given twice in the life of a platform.
    std::uint64_t number = 0;
    std::string url;
    std::string method;
    std::vector<std::pair<std::string, std::string>> headers;
    std::optional<Bytes> body;
    /// To be trusted beside the system's, in PEM; mostly empty. TLS certificates are always checked.
    std::string authorities;
    /// The longest time to wait for a connection, and for the next bytes.
    Seconds patience{0};
};

/// What came of an exchange: an answer, or why there is none.
struct HostAnswer {
    int status = 0;
    /// Where a redirecting answer leads to, as a whole URL.
    std::optional<std::string> location = std::nullopt;
    Bytes body = {};
    /// Not empty where no answer came.
    std::string error = {};
};

/// What a host hands in. An empty function leaves the operating system's own service in place. Called on any
/// thread, several at once, until the platform has ended; none may throw or call the library back, but for
/// `HostedPlatform::complete`.
struct Host {
    /// Asks the host to call `HostedPlatform::runMain` with 0 seconds on its main thread, once for each call
    /// and soon. Empty where the host's main thread waits in `runMain` itself.
    std::function<void()> wakeMain = {};

    /// Without an answer the system's value counts.
    std::function<std::vector<std::string>(HostValue)> values = {};

    /// Begins an exchange and returns at once; `HostedPlatform::complete` is told what came of it. Answers
    /// whose head has more than `kMostHeadBytes` or whose body has more than `kMostResponseBytes` are errors,
    /// and are not read to their end.
    std::function<void(const HostRequest&)> send = {};

    /// Nobody waits for this exchange any more. May be empty, and come before `send` has returned.
    std::function<void(std::uint64_t number)> cancel = {};

    /// The application's small texts that survive restarts. Both or none.
    std::function<std::optional<std::string>(const std::string& key)> load = {};
    /// @return whether the text is kept.
    std::function<bool(const std::string& key, const std::string& text)> save = {};
};

} // namespace korvane
