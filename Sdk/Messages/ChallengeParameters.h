#pragma once

#include "Platform/Export.h"

#include <optional>
#include <string>

namespace korvane {

/// The values of the authentication response that the application hands over to start a challenge. Each
/// getter tells an absent field only: an empty text passes.
class KORVANE_EXPORT ChallengeParameters {
public:
    void set3DSServerTransactionId(std::string value) { tdsServerTransactionId = std::move(value); }
    void setAcsTransactionId(std::string value) { acsTransactionId = std::move(value); }
    void setAcsRefNumber(std::string value) { acsRefNumber = std::move(value); }
    void setAcsSignedContent(std::string value) { acsSignedContent = std::move(value); }
    void setTreeDSRequestorAppURL(std::string value) { tdsRequestorAppURL = std::move(value); }

    /// @throws SdkError InvalidInputException in these five, where the field is absent.
    [[nodiscard]] const std::string& get3DSServerTransactionId() const;
    [[nodiscard]] const std::string& getAcsTransactionId() const;
    [[nodiscard]] const std::string& getAcsRefNumber() const;
    [[nodiscard]] const std::string& getAcsSignedContent() const;
    [[nodiscard]] const std::string& getTreeDSRequestorAppURL() const;

    std::optional<std::string> tdsServerTransactionId;
    std::optional<std::string> acsTransactionId;
    std::optional<std::string> acsRefNumber;
    std::optional<std::string> acsSignedContent;
    std::optional<std::string> tdsRequestorAppURL;
};

} // namespace korvane
