#include "tests/support/Messages.h"

namespace korvane {

namespace {

JSON identifiers(const char* completion) {
    return JSON::object({{"threeDSServerTransID", kServerTransID},
                         {"acsCounterAtoS", "001"},
                         {"acsTransID", kAcsTransID},
                         {"challengeCompletionInd", completion},
                         {"messageType", "CRes"},
                         {"messageVersion", "2.2.0"},
                         {"sdkTransID", kSdkTransID}});
}

} // namespace

JSON validCResJSON() {
    JSON json = identifiers("N");
    json.update(JSON::object({{"acsUiType", "01"},
                              {"challengeInfoHeader", "Confirm your payment"},
                              {"challengeInfoLabel", "Code"},
                              {"challengeInfoText", "We have sent you a code."},
                              {"submitAuthenticationLabel", "Next"}}));
    return json;
}

CRes validCRes() {
    return CRes::decode(validCResJSON().dump());
}

JSON finalCResJSON() {
    JSON json = identifiers("Y");
    json["transStatus"] = "Y";
    return json;
}

ChallengeParameters validParameters() {
    ChallengeParameters parameters;
    parameters.set3DSServerTransactionId(kServerTransID);
    parameters.setAcsTransactionId(kAcsTransID);
    parameters.setAcsRefNumber("3DS_LOA_ACS_TEST");
    parameters.setAcsSignedContent("signed");
    return parameters;
}

} // namespace korvane
