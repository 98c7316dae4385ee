#include "Sdk/Exchange/Exchange.h"

#include "Platform/LetterCase.h"
#include "Platform/Text.h"
#include "Sdk/Events/SdkError.h"

namespace korvane {

namespace {

/// A field is told by its path, outermost name first, and not by a sentence.
std::string extractFieldFromCodingPath(const std::vector<std::string>& path) {
    return joined(path);
}

} // namespace

Erro Exchange::createErro(const KorvaneError& error) const {
    const auto parameters = requireChallengeParameters("createErro(_:)");
    return {.threeDSServerTransID = parameters->get3DSServerTransactionId(),
            .acsTransID = parameters->getAcsTransactionId(),
            .errorCode = std::to_string(error.code),
            .errorComponent = "C",
            .errorDescription = error.description,
            .errorDetail = error.details,
            .errorMessageType = "CRes",
            .messageType = "Erro",
            .messageVersion = messageVersion_,
            .sdkTransID = lowercased(sdkTransactionID_)};
}

std::optional<Erro> Exchange::createErroIfPossible(const KorvaneError& error) const {
    try {
        return createErro(error);
    } catch (const SdkError&) {
        return std::nullopt;
    }
}

std::optional<Erro> Exchange::createErroFromCodingPath(const std::vector<std::string>& path) const {
    return createErroIfPossible(
        KorvaneError::withDetails(ProtocolErrorCode::elementInvalid, extractFieldFromCodingPath(path)));
}

std::optional<Erro>
Exchange::createErroFromCodingPathForRequiredFields(const std::vector<std::string>& path) const {
    return createErroIfPossible(
        KorvaneError::withDetails(ProtocolErrorCode::elementMissing, extractFieldFromCodingPath(path)));
}

void Exchange::sendErroToAcs(const Erro& erro) const {
    if (const auto client = httpClient_.get()) client->sendErroData(toBytes(erro.jsonString()));
}

void Exchange::sendErroIfPossible(const std::optional<Erro>& erro) const {
    if (erro) sendErroToAcs(*erro);
}

} // namespace korvane
