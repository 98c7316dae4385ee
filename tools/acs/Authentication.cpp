#include "tools/acs/Authentication.h"

#include "tools/acs/Messages.h"

#include <algorithm>
#include <array>

namespace korvane::acs {

namespace {

constexpr std::array<std::string_view, 6> kRequired{"deviceData",      "sdkTransId",      "sdkAppID",
                                                    "sdkReferenceNum", "ephemeralPublic", "messageVersion"};
/// The library's own tools write the request as an event; it may be posted as it is.
constexpr std::string_view kEvent = "event";
constexpr std::array<std::string_view, 2> kVersions{"2.1.0", "2.2.0"};
constexpr std::string_view kReferenceNumber = "KORVANE-TEST-ACS";

bool contains(std::span<const std::string_view> names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// Collects the names at fault, so that one error lists them all.
class Names {
public:
    explicit Names(int code) : code_(code) {}

    void addIf(bool isAtFault, std::string_view name) {
        if (isAtFault) list_ += (list_.empty() ? "" : ",") + std::string(name);
    }

    void raise() const {
        if (!list_.empty()) throw ProtocolFault(code_, list_);
    }

private:
    int code_;
    std::string list_;
};

void requireMembers(const JSON& request) {
    Names missing(201);
    for (const std::string_view name : kRequired)
        missing.addIf(!request.contains(name), name);
    missing.raise();
    Names unknown(203);
    for (const auto& [name, value] : request.items())
        unknown.addIf(name != kEvent && !contains(kRequired, name), name);
    unknown.raise();
}

void requireValues(const JSON& request) {
    Names wrong(203);
    const auto check = [&](std::string_view name, auto isRight) {
        const auto found = request.find(name);
        wrong.addIf(!found->is_string() || !isRight(found->template get_ref<const std::string&>()), name);
    };
    const auto isFilled = [](const std::string& text) { return !text.empty(); };
    check("deviceData", isFilled);
    check("sdkTransId", isTransactionID);
    check("sdkAppID", isFilled);
    check("sdkReferenceNum", isFilled);
    check("messageVersion", [](const std::string& text) { return contains(kVersions, text); });
    wrong.raise();
}

ECPublicKey readEphemeralKey(const JSON& value) {
    constexpr std::string_view kName = "ephemeralPublic";
    try {
        // Apps hand the key over as they got it from the library: as the text of a JWK.
        const JSON key = value.is_string() ? decodeObject(value.get_ref<const std::string&>()) : value;
        ECPublicKey made = ECPublicKey::decode(key);
        if (made.crv() == ECCurveType::P256) return made;
    } catch (const Failure&) {
        throw ProtocolFault(203, std::string(kName));
    }
    throw ProtocolFault(203, std::string(kName));
}

JSON openDeviceData(const std::string& compact, const KeyRing& keys) {
    try {
        std::string opened = keys.openDeviceData(compact);
        if (auto document = JSONSerialization::jsonObject(opened)) return std::move(*document);
        return opened;
    } catch (const Failure& failure) {
        throw ProtocolFault(302, "deviceData: " + failure.localizedDescription());
    }
}

SecretBytes sessionKey(const ECPrivateKey& own, const AuthenticationRequest& request) {
    try {
        return agreedKey(own, request.ephemeralPublic, request.sdkReferenceNum);
    } catch (const Failure&) {
        throw ProtocolFault(203, "ephemeralPublic");
    }
}

JSON jwkOf(const ECPublicKey& key) {
    return JSON::parse(key.jsonString().value());
}

/// Signs what the challenge starts from, with what the scenario spoils of it.
std::string signContent(const JSON& content, const Scenario& scenario, const KeyRing& keys) {
    const SigningIdentity& identity = keys.signingIdentity(scenario.signature);
    Answer answer;
    answer.chain = identity.chain;
    answer.foreignChain = identity.foreignChain;
    strike(scenario.authenticationFault, Stage::chain, answer);
    answer.signedContent = sign(content.dump(), scenario.signature, identity.key, answer.chain);
    strike(scenario.authenticationFault, Stage::signedContent, answer);
    return answer.signedContent;
}

} // namespace

AuthenticationRequest AuthenticationRequest::read(std::string_view body, const KeyRing& keys) {
    const JSON request = readObject(body);
    requireMembers(request);
    requireValues(request);
    const auto text = [&](const char* name) { return request[name].get<std::string>(); };
    ECPublicKey key = readEphemeralKey(request["ephemeralPublic"]);
    return {openDeviceData(text("deviceData"), keys), text("sdkTransId"), text("sdkReferenceNum"),
            text("messageVersion"), std::move(key)};
}

Authentication Authentication::make(const AuthenticationRequest& request,
                                    const std::shared_ptr<const Scenario>& scenario, const KeyRing& keys,
                                    const std::string& url) {
    const ECPrivateKey own = ECPrivateKey::generateWithoutParametersWith(ECCurveType::P256);
    TransactionIDs ids{makeTransactionID(), makeTransactionID(), request.sdkTransID, request.messageVersion};
    const JSON content = {{"acsEphemPubKey", jwkOf(own.getPublic())},
                          {"sdkEphemPubKey", jwkOf(request.ephemeralPublic)},
                          {"acsURL", url + "/challenge/" + ids.acsTransID}};
    JSON members = {{"threeDSServerTransID", ids.threeDSServerTransID},
                    {"acsTransID", ids.acsTransID},
                    {"acsRefNumber", kReferenceNumber}};
    auto challenge = std::make_shared<Challenge>(std::move(ids), sessionKey(own, request), scenario);
    members["acsSignedContent"] = signContent(content, *scenario, keys);
    if (const auto& appURL = scenario->threeDSRequestorAppURL) members["threeDSRequestorAppURL"] = *appURL;
    members["deviceData"] = request.deviceData;
    Answer answer;
    answer.body = members.dump(-1, ' ', false, JSON::error_handler_t::replace);
    return {std::move(challenge), std::move(answer)};
}

} // namespace korvane::acs
