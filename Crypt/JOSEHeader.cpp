#include "Crypt/JOSEHeader.h"

#include "Crypt/DataExtensions.h"
#include "Crypt/ECPublicKey.h"
#include "Crypt/RSAPublicKey.h"
#include "Crypt/SymmetricKey.h"

#include <algorithm>

namespace korvane {

namespace {

bool isText(const JSON& value) {
    return value.is_string();
}

Bytes serialized(const JSON& parameters) {
    const std::optional<std::string> text = JSONSerialization::data(parameters);
    if (!text) fatalError("A valid header cannot be written.");
    return toBytes(*text);
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

JOSEHeader::Contents::Contents(JSON given)
    : parameters(std::move(given)),
      isWritten(parameters.is_object() && JSONSerialization::isValidJSONObject(parameters)) {}

JOSEHeader::Contents::~Contents() {
    if (auto* members = parameters.get_ptr<JSON::object_t*>()) members->clear();
}

void JOSEHeader::Contents::setData(Bytes bytes) {
    constexpr std::size_t kLongestKept = 256;
    data = std::move(bytes);
    const bool isKept =
        data.size() <= kLongestKept && std::all_of(parameters.begin(), parameters.end(), isText);
    keptText = isKept ? base64URLEncodedString(data) : std::string();
}

JOSEHeader::JOSEHeader(JSON parameters, std::optional<Bytes> headerData,
                       std::initializer_list<std::string_view> required)
    : contents_(std::make_shared<Contents>(std::move(parameters))) {
    if (!isWritten()) throw HeaderParsingError(HeaderParsingErrorCase::headerIsNotValidJSONObject);
    for (const std::string_view name : required)
        if (!rawText(name))
            throw HeaderParsingError(HeaderParsingErrorCase::requiredHeaderParameterMissing,
                                     std::string(name));
    contents_->setData(headerData ? std::move(*headerData) : serialized(contents_->parameters));
}

void JOSEHeader::setParameters(JSON parameters) {
    auto changed = std::make_shared<Contents>(std::move(parameters));
    changed->setData(changed->isWritten ? serialized(changed->parameters) : data());
    contents_ = std::move(changed);
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
    if (!parameters().is_object()) return nullptr;
    const auto member = parameters().find(name);
    if (member == parameters().end() || !member->is_string()) return nullptr;
    return &member->get_ref<const std::string&>();
}

std::optional<std::string> JOSEHeader::text(std::string_view name) const {
    const std::string* raw = rawText(name);
    return raw ? std::optional(*raw) : std::nullopt;
}

std::optional<std::vector<std::string>> JOSEHeader::texts(std::string_view name) const {
    if (!parameters().is_object()) return std::nullopt;
    const auto member = parameters().find(name);
    const bool isTextArray = member != parameters().end() && member->is_array() &&
                             std::all_of(member->begin(), member->end(), isText);
    return isTextArray ? std::optional(member->get<std::vector<std::string>>()) : std::nullopt;
}

std::optional<URL> JOSEHeader::url(std::string_view name) const {
    const std::string* raw = rawText(name);
    return raw ? URL::make(*raw) : std::nullopt;
}

const JSON* JOSEHeader::textMap(std::string_view name) const {
    if (!parameters().is_object()) return nullptr;
    const auto member = parameters().find(name);
    const bool isTextMap = member != parameters().end() && member->is_object() &&
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
    // Copied only where others hold it too: a header is often given its members one by one.
    const bool isTaken = contents_.use_count() == 1 && parameters().is_object();
    JSON changed = isTaken ? std::move(contents_->parameters) : parameters();
    changed[std::string(name)] = std::move(value);
    setParameters(std::move(changed));
}

JSON jsonOf(const StringMap& parameters) {
    JSON object = JSON::object();
    for (const auto& [name, value] : parameters)
        object[name] = value.text();
    return object;
}

} // namespace korvane
