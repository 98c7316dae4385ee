#include "Sdk/Transaction/Transaction.h"

#include "Platform/LetterCase.h"
#include "Platform/Text.h"
#include "Sdk/Events/SdkError.h"

namespace korvane {

namespace {

constexpr int kRequiredFieldMissing = 201;
constexpr int kFieldOfWrongForm = 203;

/// A field is told by its path, outermost name first, and not by a sentence.
std::string extractFieldFromCodingPath(const std::vector<std::string>& path) {
    return joined(path);
}

KorvaneError errorAboutField(int code, const std::vector<std::string>& path) {
    KorvaneError error = KorvaneError::getErrorByCode(code);
    error.details = extractFieldFromCodingPath(path);
    return error;
}

} // namespace

Erro Transaction::createErro(const KorvaneError& error) const {
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

std::optional<Erro> Transaction::createErroIfPossible(const KorvaneError& error) const {
    try {
        return createErro(error);
    } catch (const SdkError&) {
        return std::nullopt;
    }
}

std::optional<Erro> Transaction::createErroFromCodingPath(const std::vector<std::string>& path) const {
    return createErroIfPossible(errorAboutField(kFieldOfWrongForm, path));
}

std::optional<Erro>
Transaction::createErroFromCodingPathForRequiredFields(const std::vector<std::string>& path) const {
    return createErroIfPossible(errorAboutField(kRequiredFieldMissing, path));
}

void Transaction::sendErroToAcs(const Erro& erro) const {
    if (const auto client = httpClient_.get()) client->sendErroData(toBytes(erro.jsonString()));
}

void Transaction::sendErroIfPossible(const std::optional<Erro>& erro) const {
    if (erro) sendErroToAcs(*erro);
}

} // namespace korvane
