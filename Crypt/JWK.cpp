#include "Crypt/JWK.h"

#include "Crypt/Algorithms.h"
#include "Crypt/DataExtensions.h"

#include <algorithm>

namespace korvane {

namespace {

bool isJWKParameter(std::string_view name) {
    return std::find(JWKParameter::allCases.begin(), JWKParameter::allCases.end(), name) !=
           JWKParameter::allCases.end();
}

bool holdsArray(std::string_view name) {
    return std::find(JWKParameter::nonStringParameters.begin(), JWKParameter::nonStringParameters.end(),
                     name) != JWKParameter::nonStringParameters.end();
}

/// The members that are asked for, whose names are the library's, in the order of these names.
/// @return no value when a text of them is not UTF-8.
template <class Predicate>
std::optional<std::string> jsonObject(const StringMap& members, Predicate isAskedFor) {
    // Room for all of it, so that no half-written copy of a private number is left behind by growth.
    std::size_t length = 2;
    for (const auto& [name, value] : members)
        length += name.size() + value.text().size() + 6;
    JSONObjectWriter writer(length);
    for (const auto& [name, value] : members) {
        if (!isAskedFor(name)) continue;
        if (!isUtf8(value)) return std::nullopt;
        writer.addString(name, value);
    }
    return std::move(writer).finish();
}

} // namespace

void JWK::addBeside(const StringMap& additional) {
    parameters_.emplace(JWKParameter::keyType, rawValue(form_->keyType));
    parameters_.insert(additional.begin(), additional.end());
}

bool JWK::isNumber(std::string_view name) const {
    return std::find(form_->numbers.begin(), form_->numbers.end(), name) != form_->numbers.end();
}

JWK::JWK(const JWKForm& form, const JSONField& object) : form_(&form) {
    if (object.member(JWKParameter::keyType).string() != rawValue(form.keyType))
        throw DecodingError(DecodingErrorCase::keyNotFound, std::string(form.wrongKeyTypeText),
                            {std::string(JWKParameter::keyType)});
    for (const std::string_view name : JWKParameter::allCases) {
        const bool isPassedOver = form.skipsArrays && holdsArray(name);
        if (!isPassedOver && object.value().contains(name))
            parameters_.emplace(name, object.member(name).string());
    }
    for (const std::string_view name : form.numbers)
        parameters_.insert_or_assign(std::string(name),
                                     SecretString(std::string_view(object.member(name).string())));
}

StringMap JWK::requiredParameters() const {
    StringMap required{{std::string(JWKParameter::keyType), SecretString(rawValue(form_->keyType))}};
    for (const std::string_view name : form_->numbers)
        if (name != form_->privateNumber) required.emplace(name, number(name));
    return required;
}

std::optional<std::string> JWK::operator[](std::string_view parameter) const {
    const auto found = parameters_.find(parameter);
    return found == parameters_.end() ? std::nullopt : std::optional(found->second.text());
}

std::optional<std::string> JWK::jsonString() const {
    return jsonObject(parameters_,
                      [this](std::string_view name) { return isNumber(name) || isJWKParameter(name); });
}

std::optional<Bytes> JWK::jsonData() const {
    std::optional<std::string> json = jsonString();
    if (!json) return std::nullopt;
    Bytes data = toBytes(*json);
    cleanse(*json);
    return data;
}

std::string JWK::thumbprint(JWKThumbprintAlgorithm algorithm) const {
    // The map is sorted by name, as RFC 7638 section 3.3 wants its input.
    std::optional<std::string> json = jsonObject(requiredParameters(), [](std::string_view) { return true; });
    if (!json) throw JOSEError(JOSEErrorCase::thumbprintSerialization);
    const SecretString input(std::move(*json));
    return Thumbprint::calculate(asBytes(input.text()), algorithm);
}

Bytes JWK::decodedNumber(std::string_view name, JOSEErrorCase failure) const {
    std::optional<Bytes> bytes = fromBase64URL(number(name));
    if (!bytes) throw JOSEError(failure);
    return std::move(*bytes);
}

SecretBytes JWK::decodedSecret(std::string_view name, JOSEErrorCase failure) const {
    Bytes bytes = decodedNumber(name, failure);
    SecretBytes secret = toSecretBytes(bytes);
    cleanse(bytes);
    return secret;
}

void JWK::setNumber(std::string_view name, std::string value) {
    parameters_.insert_or_assign(std::string(name), SecretString(std::move(value)));
}

void JWK::setKeyIdentifier(std::string kid) {
    setNumber(JWKParameter::keyIdentifier, std::move(kid));
}

void JWK::requireCurve() const {
    if (fromRawValue<ECCurveType>(number(ECParameter::curve))) return;
    throw DecodingError(DecodingErrorCase::dataCorrupted, "\"crv\" names no curve.",
                        {std::string(ECParameter::curve)});
}

std::string Thumbprint::calculate(ByteView input, JWKThumbprintAlgorithm algorithm) {
    if (input.empty()) throw ThumbprintError(ThumbprintErrorCase::inputMustBeGreaterThanZero);
    return base64URLEncodedString(ByteView(digest(Hash::SHA256, input)).first(outputLenght(algorithm)));
}

} // namespace korvane
