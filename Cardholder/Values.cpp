#include "Cardholder/Values.h"

#include "Input/Arguments.h"

namespace korvane::cardholder {

namespace {

using input::Arguments;
using input::Member;
using input::MemberType;
using input::Presence;

constexpr Member kValues[] = {
    {"threeDSServerTransID", MemberType::text, Presence::optional},
    {"acsTransID", MemberType::text, Presence::optional},
    {"acsRefNumber", MemberType::text, Presence::optional},
    {"acsSignedContent", MemberType::text, Presence::optional},
    {"threeDSRequestorAppURL", MemberType::text, Presence::optional},
    // What the directory server read of the device: the test ACS shows it, and no challenge needs it.
    {"deviceData", MemberType::object, Presence::optional},
};

} // namespace

JSON requestValues(const AuthenticationRequestParameters& request) {
    return JSON::object({{"deviceData", request.getDeviceData()},
                         {"sdkTransId", request.getSDKTransactionID()},
                         {"sdkAppID", request.getSDKAppID()},
                         {"sdkReferenceNum", request.getSDKReferenceNumber()},
                         {"ephemeralPublic", JSON::parse(request.getSDKEphemeralPublicKey())},
                         {"messageVersion", request.getMessageVersion()}});
}

JSON knownValues(const JSON& answer) {
    JSON values = JSON::object();
    for (const Member& member : kValues)
        if (const auto found = answer.find(member.name); found != answer.end() && member.name != "deviceData")
            values[std::string(member.name)] = *found;
    return values;
}

std::shared_ptr<ChallengeParameters> challengeParameters(const JSON& values) {
    const Arguments arguments(values, kValues);
    auto parameters = std::make_shared<ChallengeParameters>();
    parameters->tdsServerTransactionId = arguments.textIfPresent("threeDSServerTransID");
    parameters->acsTransactionId = arguments.textIfPresent("acsTransID");
    parameters->acsRefNumber = arguments.textIfPresent("acsRefNumber");
    parameters->acsSignedContent = arguments.textIfPresent("acsSignedContent");
    parameters->tdsRequestorAppURL = arguments.textIfPresent("threeDSRequestorAppURL");
    return parameters;
}

} // namespace korvane::cardholder
