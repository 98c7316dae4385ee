#include "tools/acs/Exchange.h"

#include "Crypt/JWE.h"
#include "Platform/JSONDecoding.h"
#include "Platform/Text.h"
#include "Sdk/Messages/CReq.h"
#include "Sdk/Messages/UiUtils.h"
#include "tools/acs/Sealing.h"

namespace korvane::acs {

namespace {

std::string typeOf(const JSON& message) {
    const auto found = message.find("messageType");
    return found != message.end() && found->is_string() ? found->get<std::string>() : std::string();
}

/// @throws ProtocolFault as `receive`
std::string opened(const Challenge& challenge, std::string_view body) {
    if (!validateJWE(body)) throw ProtocolFault(101, "The body is neither a JWE nor an Erro.");
    try {
        const JWE jwe(body);
        if (jwe.header().kid() != challenge.ids.acsTransID) throw ProtocolFault(301, "kid");
        const auto decrypter = Decrypter::make(KeyManagementAlgorithm::direct,
                                               ContentEncryptionAlgorithm::A128CBCHS256, challenge.key);
        return std::string(asText(jwe.decrypt(decrypter.value()).data()));
    } catch (const Failure& failure) {
        throw ProtocolFault(302, failure.localizedDescription());
    }
}

/// @throws ProtocolFault as `receive`
void requireFields(const std::string& text) {
    try {
        static_cast<void>(CReq::decode(asBytes(text)));
    } catch (const DecodingError& error) {
        const bool isMissing = error.kind() == DecodingErrorCase::keyNotFound ||
                               error.kind() == DecodingErrorCase::valueNotFound;
        throw ProtocolFault(isMissing ? 201 : 203, joined(error.codingPath()));
    }
}

void requireErroFields(std::string_view text) {
    try {
        static_cast<void>(Erro::decode(asBytes(text)));
    } catch (const DecodingError& error) {
        throw ProtocolFault(203, joined(error.codingPath()));
    }
}

std::string criticalExtensions(const JSON& creq) {
    std::vector<std::string> critical;
    for (const JSON& extension : creq.value("messageExtension", JSON::array()))
        if (extension.value("criticalityIndicator", false)) critical.push_back(extension.value("id", ""));
    return joined(critical);
}

} // namespace

Received receive(const Challenge& challenge, std::string_view body) {
    const bool isPlain = JSONSerialization::jsonObject(body).has_value();
    const std::string text = isPlain ? std::string(body) : opened(challenge, body);
    JSON message = readObject(text);
    if (typeOf(message) == "Erro") {
        requireErroFields(text);
        return {std::move(message), true};
    }
    if (isPlain || typeOf(message) != "CReq") throw ProtocolFault(101);
    requireFields(text);
    return {std::move(message), false};
}

JSON withoutNulls(const JSON& message) {
    JSON::object_t rest;
    for (const auto& [name, value] : message.items())
        if (!value.is_null()) rest.emplace_back(name, value);
    return JSON(std::move(rest));
}

void requireInStep(const Challenge& challenge, const JSON& creq) {
    const auto differs = [&](const char* name, const std::string& wanted) { return creq[name] != wanted; };
    if (challenge.hasEnded) throw ProtocolFault(301, "The challenge has ended.");
    if (differs("sdkCounterStoA", counterText(challenge.counter))) throw ProtocolFault(302, "sdkCounterStoA");
    const bool isForeign = differs("threeDSServerTransID", challenge.ids.threeDSServerTransID) ||
                           differs("acsTransID", challenge.ids.acsTransID) ||
                           differs("sdkTransID", challenge.ids.sdkTransID);
    if (isForeign) throw ProtocolFault(301);
    if (differs("messageVersion", challenge.ids.messageVersion)) throw ProtocolFault(203, "messageVersion");
    if (const std::string critical = criticalExtensions(creq); !critical.empty())
        throw ProtocolFault(202, critical);
}

Answer makeCRes(const Challenge& challenge, const Cue& cue, const JSON& members) {
    Answer answer;
    answer.contentType = kJOSEType;
    answer.message = {{"threeDSServerTransID", challenge.ids.threeDSServerTransID},
                      {"acsCounterAtoS", counterAtoS(challenge.counter)},
                      {"acsTransID", challenge.ids.acsTransID},
                      {"challengeCompletionInd", cue.isFinal ? "Y" : "N"},
                      {"messageType", "CRes"},
                      {"messageVersion", challenge.ids.messageVersion},
                      {"sdkTransID", challenge.ids.sdkTransID}};
    answer.message.update(members);
    strike(cue.fault, Stage::message, answer);
    answer.text = answer.message.dump(-1, ' ', false, JSON::error_handler_t::replace);
    strike(cue.fault, Stage::text, answer);
    return answer;
}

void sealCRes(const Challenge& challenge, const std::optional<Fault>& fault, Answer& answer) {
    answer.key = challenge.key;
    strike(fault, Stage::key, answer);
    answer.body = seal(answer.text, answer.key, challenge.ids.acsTransID);
    strike(fault, Stage::body, answer);
}

Answer plainAnswer(int status, const Erro& erro) {
    Answer answer;
    answer.status = status;
    answer.body = erro.jsonString();
    return answer;
}

} // namespace korvane::acs
