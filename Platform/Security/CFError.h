#pragma once

#include "Platform/Failure.h"

#include <string>
#include <string_view>
#include <utility>

namespace korvane {

/// A failure of the platform's key services: the domain of the failing service, its
/// number, and its own words.
class CFError : public Failure {
public:
    static constexpr std::string_view kOSStatusDomain = "NSOSStatusErrorDomain";
    static constexpr std::string_view kLocalAuthenticationDomain = "LocalAuthentication";

    /// Status numbers of the key services.
    static constexpr int errSecParam = -50;
    static constexpr int errSecDecode = -26275;
    static constexpr int errSecInternal = -26276;

    CFError(int code, std::string description, std::string_view domain = kOSStatusDomain)
        : domain_(domain), code_(code), description_(std::move(description)) {}

    [[nodiscard]] std::string_view domain() const noexcept override { return domain_; }
    [[nodiscard]] int caseIndex() const noexcept override { return code_; }
    [[nodiscard]] std::string localizedDescription() const override { return description_; }
    [[nodiscard]] const char* what() const noexcept override { return "CFError"; }

private:
    std::string domain_;
    int code_;
    std::string description_;
};

} // namespace korvane
