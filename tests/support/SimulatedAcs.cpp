#include "tests/support/SimulatedAcs.h"

#include "Crypt/DataExtensions.h"
#include "Crypt/JWE.h"
#include "Crypt/JWS.h"
#include "tests/support/Messages.h"

#include <map>

namespace korvane {

namespace {

struct Certificates {
    TestIdentity root = selfSigned(authority("Root"));
    TestIdentity acs = root.issue({});
    TestIdentity directoryServer = root.issue({});
};

const Certificates& allCertificates() {
    static const Certificates certificates;
    return certificates;
}

/// With the ACS's key, which is decoded once: that takes longer than a signature.
std::string signedByAcs(const JSON& payload) {
    constexpr auto kAlgorithm = SignatureAlgorithm::ES256;
    static const Signer signer = Signer::make(kAlgorithm, allCertificates().acs.privateKey()).value();
    JWSHeader header(kAlgorithm);
    header.setX5c(std::vector{allCertificates().acs.base64()});
    return JWS(header, Payload(toBytes(payload.dump())), signer).compactSerializedString();
}

JSON options() {
    return JSON::array({JSON::object({{"phone", "Phone"}}), JSON::object({{"mail", "Mail"}}),
                        JSON::object({{"letter", "Letter"}})});
}

/// What a screen of each kind says.
JSON screenMembers(const std::string& uiType) {
    const JSON texts = JSON::object({{"challengeInfoHeader", "Confirm your payment"},
                                     {"challengeInfoText", "Your bank wants to know that it is you."}});
    const JSON question =
        JSON::object({{"challengeInfoLabel", "Your answer"}, {"submitAuthenticationLabel", "Submit"}});
    const JSON resend = JSON::object({{"resendInformationLabel", "Send again"}});
    const JSON choice = JSON::object({{"challengeSelectInfo", options()}});
    const JSON away = JSON::object({{"oobContinueLabel", "Continue"}, {"challengeAddInfo", "Welcome back."}});
    const std::string page = "<form action='https://emv3ds/challenge' method='POST'></form>";
    const JSON html = JSON::object({{"acsHTML", base64URLEncodedString(asBytes(page))}});
    const std::map<std::string, std::vector<const JSON*>> members{
        {"01", {&texts, &question, &resend}},
        {"02", {&texts, &question, &choice}},
        {"03", {&texts, &question, &choice}},
        {"04", {&texts, &away}},
        {"05", {&html}},
    };
    JSON all = JSON::object({{"acsUiType", uiType}});
    for (const JSON* some : members.at(uiType))
        all.update(*some);
    return all;
}

} // namespace

SimulatedAcs::SimulatedAcs(SimulatedPlatform& platform)
    : platform_(platform), acs_{.root = allCertificates().root, .leaf = allCertificates().acs} {
    platform_.network().answer = [this](const URLRequest& request) { return answer(request); };
}

TransactionCerts SimulatedAcs::certificates() {
    return {allCertificates().directoryServer.der, allCertificates().root.der, CertAlgorithm::EC,
            "A999999999"};
}

ChallengeParameters SimulatedAcs::accept(const AuthenticationRequestParameters& request) {
    sdkTransID_ = request.getSDKTransactionID();
    messageVersion_ = request.getMessageVersion();
    key_ = peerKey(acs_.ephemeral, ECPublicKey::make(asBytes(request.getSDKEphemeralPublicKey())),
                   request.getSDKReferenceNumber());
    ChallengeParameters parameters = validParameters();
    JSON content = acs_.payload();
    content["acsURL"] = kURL;
    parameters.setAcsSignedContent(signedByAcs(content));
    return parameters;
}

ScriptedAnswer SimulatedAcs::answer(const URLRequest& request) {
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
    requestTimes_.push_back(platform_.now());
    if (!answers.empty()) {
        const Answer next = std::move(answers.front());
        answers.pop_front();
        return next(*this);
    }
    return furtherAnswers ? furtherAnswers(*this) : ScriptedAnswer{std::nullopt, std::nullopt, std::nullopt};
}

JSON SimulatedAcs::identifiers(const char* completion) const {
    return JSON::object({{"threeDSServerTransID", kServerTransID},
                         {"acsCounterAtoS", requests_.back().sdkCounterStoA},
                         {"acsTransID", kAcsTransID},
                         {"challengeCompletionInd", completion},
                         {"messageType", "CRes"},
                         {"messageVersion", messageVersion_},
                         {"sdkTransID", sdkTransID_}});
}

JSON SimulatedAcs::screen(const std::string& uiType) const {
    JSON json = identifiers("N");
    json.update(screenMembers(uiType));
    return json;
}

JSON SimulatedAcs::ending(const std::string& transStatus) const {
    JSON json = identifiers("Y");
    json["transStatus"] = transStatus;
    return json;
}

SimulatedAcs::Answer SimulatedAcs::showing(std::string uiType) {
    return [uiType = std::move(uiType)](SimulatedAcs& acs) { return acs.respond(acs.screen(uiType)); };
}

SimulatedAcs::Answer SimulatedAcs::endingWith(std::string transStatus) {
    return [status = std::move(transStatus)](SimulatedAcs& acs) { return acs.respond(acs.ending(status)); };
}

} // namespace korvane
