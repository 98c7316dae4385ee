#include "Sdk/Transaction/Transaction.h"

#include "Crypt/JWS.h"
#include "Platform/LetterCase.h"
#include "Sdk/Events/SdkError.h"
#include "Sdk/SecureChannel/AcsSignedContent.h"

namespace korvane {

namespace {

std::string signedContentText(const ChallengeParameters& parameters) {
    return "Acs signed content:\n" + parameters.acsSignedContent.value_or("nil");
}

} // namespace

/// The content is read twice: first for the URL alone, since an error about a signature that does not verify
/// has to be sent there.
void Transaction::openSecureChannel() {
    constexpr const char* kFunction = "innerDoTransaction()";
    const auto parameters = requireChallengeParameters(kFunction);
    KORVANE_LOG(kFunction, signedContentText(*parameters));
    const std::string& content = parameters->getAcsSignedContent();
    const AcsSignedContent signedContent = AcsSignedContent::decode(JWS(content).payload().data());
    httpClient_.set(std::make_shared<HttpClient>(signedContent.acsURL));
    keysContainer_->parseAcsSignedContent(content, sdkReferenceNum_);
}

CReq Transaction::makeCReq(const ChallengeParameters& parameters) const {
    CReq cReq;
    cReq.threeDSServerTransID = parameters.get3DSServerTransactionId();
    cReq.acsTransID = parameters.getAcsTransactionId();
    cReq.messageVersion = messageVersion_;
    cReq.sdkTransID = lowercased(sdkTransactionID_);
    cReq.sdkCounterStoA = counterText(sdkToAcsCounter_);
    if (parameters.tdsRequestorAppURL && !parameters.tdsRequestorAppURL->empty())
        cReq.threeDSRequestorAppURL = parameters.tdsRequestorAppURL;
    return cReq;
}

Bytes Transaction::getInitCReqData() const {
    constexpr const char* kFunction = "getInitCReqData()";
    const auto parameters = requireChallengeParameters(kFunction);
    const std::string json = makeCReq(*parameters).jsonString();
    KORVANE_LOG(kFunction, json);
    return keysContainer_->encryptCReq(toBytes(json), parameters->getAcsTransactionId());
}

} // namespace korvane
