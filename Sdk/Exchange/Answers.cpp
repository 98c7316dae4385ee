#include "Sdk/Exchange/Exchange.h"

#include "Crypt/Payload.h"
#include "Platform/JSON.h"
#include "Platform/LetterCase.h"
#include "Platform/Logger.h"
#include "Sdk/Events/SdkError.h"
#include "Sdk/Messages/MessageType.h"
#include "Sdk/Messages/UiUtils.h"
#include "Sdk/Messages/Validator.h"

namespace korvane {

namespace {

constexpr const char* kFunction = "sendCReq(_:_:)";

constexpr const char* kCanNotBuild = "Can not build CRes from decrypted data.";

CReqSendingResult failed(const char* text) {
    KORVANE_LOG(kFunction, text);
    return {.errorDescription = text};
}

/// @param erro  no value where none could be made: nothing is sent then.
CReqSendingResult rejected(std::optional<Erro> erro, const char* text) {
    KORVANE_LOG(kFunction, erro ? erro->jsonString() + ":" + text : text);
    return {.erro = std::move(erro), .errorDescription = text};
}

CReqSendingResult receivedErro(std::string_view message) {
    constexpr const char* kText = "Receive Erro message instead of CRes.";
    try {
        Erro erro = Erro::decode(asBytes(message));
        KORVANE_LOG(kFunction, erro.jsonString() + ":" + kText);
        return {.erro = std::move(erro), .receivedError = true, .errorDescription = kText};
    } catch (const std::exception&) {
        return failed("Can not decode Erro from received data.");
    }
}

/// Text that is no JSON at all, of which no field can be named.
bool isNoJSON(const DecodingError& error) {
    return error.kind() == DecodingErrorCase::dataCorrupted && error.codingPath().empty();
}

/// For the application's log; text that is no JSON is told by the decoding that follows.
void logMessage(std::string_view message) {
    if (!Logger::shared().debug()) return;
    constexpr int kIndent = 2;
    if (const auto json = JSONSerialization::jsonObject(message))
        KORVANE_LOG(kFunction, LogLines{json->dump(kIndent)});
}

} // namespace

/// A transport failure leaves the timer running, and so does an interruption; everything else ends it.
CReqSendingResult Exchange::sendCReq(const Bytes& data, CResPosition position) {
    startCResTimer();
    const auto client = httpClient_.get();
    if (!client) return failed("Http client not initiated.");
    KORVANE_LOG(kFunction, "send CReq Data");
    HttpAnswer answer = client->sendCReqData(data);
    if (challengeInterrupted_) return failed("Challenge interrupted.");
    if (answer.errorDescription) return {.errorDescription = std::move(answer.errorDescription)};
    cancelCResTimer();
    if (answer.data) return readAnswer(*answer.data, position);
    return rejected(
        createErroIfPossible(KorvaneError::getErrorByCode(ProtocolErrorCode::messageNotRecognised)),
        "Receive empty cRes Data.");
}

/// The form is looked at first, since nearly every answer is a JWE, and none is an Erro as
/// well: that has quotes.
CReqSendingResult Exchange::readAnswer(const Bytes& body, CResPosition position) const {
    const std::string_view text = asText(body);
    if (!validateJWE(text)) {
        if (isUtf8(text) && recognizeMessageType(text) == MessageType::Erro) return receivedErro(text);
        constexpr const char* kDetails = "JWE parse error";
        KORVANE_LOG(kFunction, kDetails);
        return {.erro = createErroIfPossible(
                    KorvaneError::withDetails(ProtocolErrorCode::messageNotRecognised, kDetails)),
                .errorDescription = "JWE parse error."};
    }
    std::optional<Payload> message;
    try {
        message.emplace(keysContainer_->decryptCRes(body));
    } catch (const std::exception& error) {
        return rejected(createErroIfPossible(KorvaneError::withDetails(ProtocolErrorCode::notDecrypted,
                                                                       genericDescription(error))),
                        "Can not decrypt CRes JWE.");
    }
    return readMessage(asText(message->data()), position);
}

CReqSendingResult Exchange::readMessage(std::string_view message, CResPosition position) const {
    switch (recognizeMessageType(message)) {
    case MessageType::CRes: return readCRes(message, position);
    case MessageType::Erro: return receivedErro(message);
    case MessageType::unknown: break;
    }
    return rejected(
        createErroIfPossible(KorvaneError::getErrorByCode(ProtocolErrorCode::messageNotRecognised)),
        "Can not recognize messageType.");
}

CReqSendingResult Exchange::readCRes(std::string_view message, CResPosition position) const {
    logMessage(message);
    std::optional<CRes> cRes;
    try {
        cRes = CRes::decode(message);
    } catch (const ParsingError& repeated) {
        return rejected(createErroIfPossible(KorvaneError::withDetails(ProtocolErrorCode::elementRepeated,
                                                                       repeated.description())),
                        "Duplicate keys found.");
    } catch (const DecodingError& error) {
        if (isNoJSON(error)) return failed(kCanNotBuild);
        return rejected(error.kind() == DecodingErrorCase::keyNotFound
                            ? createErroFromCodingPathForRequiredFields(error.codingPath())
                            : createErroFromCodingPath(error.codingPath()),
                        kCanNotBuild);
    }
    return judgeCRes(std::move(*cRes), position);
}

CReqSendingResult Exchange::judgeCRes(CRes cRes, CResPosition position) const {
    std::shared_ptr<ChallengeParameters> parameters;
    try {
        parameters = requireChallengeParameters("createValidationContainer(for:initCRes:)");
    } catch (const SdkError&) {
        return failed("Can not create validation container.");
    }
    const auto error = Validator::validateCRes(createValidationContainer(cRes, *parameters, position));
    if (error) return rejected(createErroIfPossible(*error), "Got error on CRes validation.");
    return {.cres = std::move(cRes)};
}

ValidationContainer Exchange::createValidationContainer(const CRes& cRes,
                                                        const ChallengeParameters& parameters,
                                                        CResPosition position) const {
    return {.cRes = cRes,
            .counter = sdkToAcsCounter_,
            .messageVersion = messageVersion_,
            .challengeParameters = parameters,
            .sdkTransactionID = lowercased(sdkTransactionID_),
            .initCRes = position == CResPosition::initial};
}

} // namespace korvane
