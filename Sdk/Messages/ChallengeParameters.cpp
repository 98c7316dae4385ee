#include "Sdk/Messages/ChallengeParameters.h"

#include "Sdk/Events/SdkError.h"

namespace korvane {

namespace {

const std::string& require(const std::optional<std::string>& field, const char* function, const char* text) {
    if (!field) KORVANE_RAISE(function, SdkErrorCase::InvalidInputException, text);
    return *field;
}

} // namespace

const std::string& ChallengeParameters::get3DSServerTransactionId() const {
    return require(tdsServerTransactionId, "get3DSServerTransactionId()", "tdssTransId is empty.");
}

const std::string& ChallengeParameters::getAcsTransactionId() const {
    return require(acsTransactionId, "getAcsTransactionId()", "acsTransactionId is empty.");
}

const std::string& ChallengeParameters::getAcsRefNumber() const {
    return require(acsRefNumber, "getAcsRefNumber()", "acsRefNumber is empty.");
}

const std::string& ChallengeParameters::getAcsSignedContent() const {
    return require(acsSignedContent, "getAcsSignedContent()", "acsSignedContent is empty.");
}

const std::string& ChallengeParameters::getTreeDSRequestorAppURL() const {
    return require(tdsRequestorAppURL, "getTreeDSRequestorAppURL()", "tdsRequestorAppURL is empty.");
}

} // namespace korvane
