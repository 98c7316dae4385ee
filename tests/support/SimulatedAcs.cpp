#include "tests/support/SimulatedAcs.h"

#include "Crypt/DataExtensions.h"
#include "Crypt/JWE.h"
#include "tests/support/Messages.h"

namespace korvane {

namespace {

/// Made once in a process, which takes long.
const PlayedAcs& played() {
    static const PlayedAcs acs;
    return acs;
}

/// What a screen of a kind says.
JSON screenMembers(const std::string& uiType) {
    JSON all = JSON::object({{"acsUiType", uiType}});
    const auto add = [&all](const char* members) { all.update(JSON::parse(members)); };
    if (uiType == "05") {
        const std::string page = "<form action='https://emv3ds/challenge' method='POST'></form>";
        all["acsHTML"] = base64URLEncodedString(asBytes(page));
        return all;
    }
    add(R"({"challengeInfoHeader":"Confirm your payment",
            "challengeInfoText":"Your bank wants to know that it is you."})");
    if (uiType == "04") add(R"({"oobContinueLabel":"Continue","challengeAddInfo":"Welcome back."})");
    if (uiType < "04") add(R"({"challengeInfoLabel":"Your answer","submitAuthenticationLabel":"Submit"})");
    if (uiType == "01") add(R"({"resendInformationLabel":"Send again"})");
    if (uiType == "02" || uiType == "03")
        add(R"({"challengeSelectInfo":[{"phone":"Phone"},{"mail":"Mail"},{"letter":"Letter"}]})");
    return all;
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

JSON SimulatedAcs::ending(const std::string& transStatus) const {
    JSON json = finalCResJSON();
    json["acsCounterAtoS"] = requests_.back().sdkCounterStoA;
    json["messageVersion"] = messageVersion_;
    json["sdkTransID"] = sdkTransID_;
    json["transStatus"] = transStatus;
    return json;
}

JSON SimulatedAcs::screen(const std::string& uiType) const {
    JSON json = ending("");
    json.erase("transStatus");
    json["challengeCompletionInd"] = "N";
    json.update(screenMembers(uiType));
    return json;
}

} // namespace korvane
