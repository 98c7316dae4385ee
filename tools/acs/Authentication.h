#pragma once

#include "tools/acs/Challenges.h"
#include "tools/acs/Faults.h"
#include "tools/acs/Sealing.h"

#include <memory>
#include <string>
#include <string_view>

namespace korvane::acs {

/// What an app's server sends on behalf of the app, checked and opened.
struct AuthenticationRequest {
    /// As JSON where it is JSON, else as text.
    JSON deviceData;
    std::string sdkTransID;
    std::string sdkReferenceNum;
    std::string messageVersion;
    ECPublicKey ephemeralPublic;

    /// @param body  a JSON object with the members of an authentication request and no others.
    /// @throws ProtocolFault 101 for no JSON object, 201 and 203 naming members, 204 for repeated ones, 302
    ///         for device data that does not open.
    [[nodiscard]] static AuthenticationRequest read(std::string_view body, const KeyRing& keys);
};

/// Starts the challenge of a request and tells its key from the fresh ephemeral one.
struct Authentication {
    std::shared_ptr<Challenge> challenge;
    Answer answer;

    /// @param url  of the service.
    /// @throws ProtocolFault 203 for an ephemeral key that does not agree.
    [[nodiscard]] static Authentication make(const AuthenticationRequest& request,
                                             const std::shared_ptr<const Scenario>& scenario,
                                             const KeyRing& keys, const std::string& url);
};

} // namespace korvane::acs
