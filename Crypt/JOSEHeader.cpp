#include "Crypt/JOSEHeader.h"

#include "Crypt/ECPublicKey.h"
#include "Crypt/RSAPublicKey.h"
#include "Crypt/SymmetricKey.h"

#include <algorithm>

namespace korvane {

namespace {

bool isText(const JSON& value) {
    return value.is_string();
}

std::shared_ptr<const JWK> publicKey(JWKKeyType type, const JSON& object) {
    switch (type) {
    case JWKKeyType::EC: return std::make_shared<const ECPublicKey>(ECPublicKey::decode(object));
    case JWKKeyType::OCT: return std::make_shared<const SymmetricKey>(SymmetricKey::decode(object));
    case JWKKeyType::RSA: return std::make_shared<const RSAPublicKey>(RSAPublicKey::decode(object));
    }
    return nullptr;
}

} // namespace

JOSEHeader::JOSEHeader(JSON parameters, std::optional<Bytes> headerData,
                       std::initializer_list<std::string_view> required)
    : parameters_(std::move(parameters)) {
    if (!isWritten()) throw HeaderParsingError(HeaderParsingErrorCase::headerIsNotValidJSONObject);
    for (const std::string_view name : required)
        if (!rawText(name))
            throw HeaderParsingError(HeaderParsingErrorCase::requiredHeaderParameterMissing,
                                     std::string(name));
    headerData_ = headerData ? std::move(*headerData) : serialized();
}

bool JOSEHeader::isWritten() const {
    return parameters_.is_object() && JSONSerialization::isValidJSONObject(parameters_);
}

Bytes JOSEHeader::serialized() const {
    const std::optional<std::string> text = JSONSerialization::data(parameters_);
    if (!text) fatalError("A valid header cannot be written.");
    return toBytes(*text);
}

void JOSEHeader::setParameters(JSON parameters) {
    parameters_ = std::move(parameters);
    if (isWritten()) headerData_ = serialized();
}

std::shared_ptr<const JWK> JOSEHeader::jwkTyped() const {
    const JSON* object = textMap(HeaderParameter::jwk);
    if (!object) return nullptr;
    const auto kty = object->find(JWKParameter::keyType);
    if (kty == object->end()) return nullptr;
    const auto type = fromRawValue<JWKKeyType>(kty->get_ref<const std::string&>());
    try {
        return type ? publicKey(*type, *object) : nullptr;
    } catch (const Failure&) {
        return nullptr;
    }
}

const std::string* JOSEHeader::rawText(std::string_view name) const {
    if (!parameters_.is_object()) return nullptr;
    const auto member = parameters_.find(name);
    if (member == parameters_.end() || !member->is_string()) return nullptr;
    return &member->get_ref<const std::string&>();
}

std::optional<std::string> JOSEHeader::text(std::string_view name) const {
    const std::string* raw = rawText(name);
    return raw ? std::optional(*raw) : std::nullopt;
}

std::optional<std::vector<std::string>> JOSEHeader::texts(std::string_view name) const {
    if (!parameters_.is_object()) return std::nullopt;
    const auto member = parameters_.find(name);
    const bool isTextArray = member != parameters_.end() && member->is_array() &&
                             std::all_of(member->begin(), member->end(), isText);
    return isTextArray ? std::optional(member->get<std::vector<std::string>>()) : std::nullopt;
}

std::optional<URL> JOSEHeader::url(std::string_view name) const {
    const std::string* raw = rawText(name);
    return raw ? URL::make(*raw) : std::nullopt;
}

const JSON* JOSEHeader::textMap(std::string_view name) const {
    if (!parameters_.is_object()) return nullptr;
    const auto member = parameters_.find(name);
    const bool isTextMap = member != parameters_.end() && member->is_object() &&
                           std::all_of(member->begin(), member->end(), isText);
    return isTextMap ? &*member : nullptr;
}

void JOSEHeader::setUrl(std::string_view name, const std::optional<URL>& value) {
    if (value) setMember(name, JSON(value->absoluteString()));
}

void JOSEHeader::setKey(std::string_view name, const JWK* value) {
    if (value) setMember(name, jsonOf(value->parameters()));
}

void JOSEHeader::setMember(std::string_view name, JSON value) {
    JSON parameters = parameters_;
    parameters[std::string(name)] = std::move(value);
    setParameters(std::move(parameters));
}

JSON jsonOf(const StringMap& parameters) {
    JSON object = JSON::object();
    for (const auto& [name, value] : parameters)
        object[name] = value.text();
    return object;
}

} // namespace korvane
