#include "tests/support/SimulatedAcs.h"

#include "Crypt/JWE.h"
#include "tests/support/Messages.h"

namespace korvane {

namespace {

/// Made once in a process, which takes long.
const PlayedAcs& played() {
    static const PlayedAcs acs;
    return acs;
}

/// What is other about a screen of a kind than about a text challenge, as a patch (RFC 7396). The page is
/// `<form action='https://emv3ds/challenge' method='POST'></form>`.
const char* screenPatch(const std::string& uiType) {
    if (uiType == "01") return R"({"resendInformationLabel":"Send again"})";
    if (uiType < "04")
        return R"({"challengeSelectInfo":[{"phone":"Phone"},{"mail":"Mail"},{"letter":"Letter"}]})";
    if (uiType == "04")
        return R"({"challengeInfoLabel":null,"submitAuthenticationLabel":null,
                   "oobContinueLabel":"Continue","challengeAddInfo":"Welcome back."})";
    return R"({"challengeInfoHeader":null,"challengeInfoLabel":null,"challengeInfoText":null,
               "submitAuthenticationLabel":null,"acsHTML":
               "PGZvcm0gYWN0aW9uPSdodHRwczovL2VtdjNkcy9jaGFsbGVuZ2UnIG1ldGhvZD0nUE9TVCc-PC9mb3JtPg"})";
}

} // namespace

SimulatedAcs::SimulatedAcs(SimulatedPlatform& platform) {
    platform.network().answer = [this](const URLRequest& request) { return respond(request); };
}

TransactionCerts SimulatedAcs::certificates() {
    return {played().leaf.der, played().root.der, CertAlgorithm::EC, "A999999999"};
}

ChallengeParameters SimulatedAcs::accept(const AuthenticationRequestParameters& request) {
    requests_.clear();
    errors_.clear();
    sdkTransID_ = request.getSDKTransactionID();
    messageVersion_ = request.getMessageVersion();
    key_ = peerKey(played().ephemeral, ECPublicKey::make(asBytes(request.getSDKEphemeralPublicKey())),
                   request.getSDKReferenceNumber());
    ChallengeParameters parameters = validParameters();
    parameters.setAcsSignedContent(played().signedContent());
    return parameters;
}

ScriptedAnswer SimulatedAcs::respond(const URLRequest& request) {
    if (request.httpMethod == "GET") {
        images_.push_back(request.url.absoluteString());
        return imageAnswer;
    }
    const Bytes& body = request.httpBody.value();
    if (asText(body).starts_with("{")) {
        errors_.push_back(Erro::decode(body));
        return errorAnswer ? errorAnswer(errors_.back()) : ScriptedAnswer{};
    }
    requests_.push_back(CReq::decode(JWE(ByteView(body)).decrypt(key_).data()));
    return answer ? answer(*this) : ScriptedAnswer{std::nullopt, std::nullopt, std::nullopt};
}

JSON SimulatedAcs::addressed(JSON message) const {
    message["acsCounterAtoS"] = requests_.back().sdkCounterStoA;
    message["messageVersion"] = messageVersion_;
    message["sdkTransID"] = sdkTransID_;
    return message;
}

JSON SimulatedAcs::ending(const std::string& transStatus) const {
    JSON json = addressed(finalCResJSON());
    json["transStatus"] = transStatus;
    return json;
}

JSON SimulatedAcs::screen(const std::string& uiType) const {
    JSON json = addressed(validCResJSON());
    json["acsUiType"] = uiType;
    json.merge_patch(JSON::parse(screenPatch(uiType)));
    return json;
}

} // namespace korvane
