#pragma once

#include <string>
#include <utility>

namespace korvane {

/// What the application sends through its 3DS server to start an authentication. Immutable.
class AuthenticationRequestParameters {
public:
    /// The values by name, as the authentication request has them.
    struct Values {
        std::string deviceData;
        std::string sdkTransId;
        std::string sdkAppID;
        std::string sdkReferenceNum;
        std::string ephemeralPublic;
        std::string messageVersion;
    };

    explicit AuthenticationRequestParameters(Values values) : values_(std::move(values)) {}

    /// The device document, sealed for the directory server: a compact JWE.
    [[nodiscard]] const std::string& getDeviceData() const noexcept { return values_.deviceData; }
    /// A UUID in lower case.
    [[nodiscard]] const std::string& getSDKTransactionID() const noexcept { return values_.sdkTransId; }
    [[nodiscard]] const std::string& getSDKAppID() const noexcept { return values_.sdkAppID; }
    [[nodiscard]] const std::string& getSDKReferenceNumber() const noexcept {
        return values_.sdkReferenceNum;
    }
    /// The public key that the ACS is to agree with: a JWK as JSON text (RFC 7517).
    [[nodiscard]] const std::string& getSDKEphemeralPublicKey() const noexcept {
        return values_.ephemeralPublic;
    }
    [[nodiscard]] const std::string& getMessageVersion() const noexcept { return values_.messageVersion; }

private:
    Values values_;
};

} // namespace korvane
