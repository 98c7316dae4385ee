// The messages of the challenge: decoding of all three, judging a response, and writing back
// what the library writes.

#include "Sdk/Messages/CRes.h"
#include "Platform/JSONDecoding.h"
#include "Sdk/Messages/CReq.h"
#include "Sdk/Messages/Erro.h"
#include "Sdk/Messages/Validator.h"
#include "fuzz/support/Fuzz.h"

namespace korvane::fuzzing {

namespace {

ChallengeParameters validParameters() {
    ChallengeParameters parameters;
    parameters.set3DSServerTransactionId("8a880dc0-d2d2-4067-bcb1-b08d1690b26e");
    parameters.setAcsTransactionId("d7c1ee99-9478-44a6-b1f2-391e29c6b340");
    return parameters;
}

void checkResponse(ByteView input) {
    const auto cRes = attempt<ParsingError, DecodingError>([&] { return CRes::decode(asText(input)); });
    if (!cRes) return;
    static const ChallengeParameters kParameters = validParameters();
    for (const bool isFirst : {true, false}) {
        const auto finding = Validator::validateCRes(
            {*cRes, 1, "2.2.0", kParameters, "b2385523-a66c-4907-ac3c-91848e8c0067", isFirst});
        require(!finding || finding->code >= 101, "A finding has no code.");
    }
}

/// What is read and written back is read as the same.
template <class Message>
void checkRewriting(ByteView input) {
    const auto message = attempt<DecodingError>([&] { return Message::decode(input); });
    if (!message) return;
    const std::string written = message->jsonString();
    require(Message::decode(asBytes(written)) == *message, "A message changes when it is written back.");
}

} // namespace

void run(ByteView input) {
    checkResponse(input);
    checkRewriting<CReq>(input);
    checkRewriting<Erro>(input);
}

} // namespace korvane::fuzzing
