#include "Crypt/JWKSet.h"

#include "Crypt/ECPrivateKey.h"
#include "Crypt/ECPublicKey.h"
#include "Crypt/RSAPrivateKey.h"
#include "Crypt/RSAPublicKey.h"
#include "Crypt/SymmetricKey.h"

namespace korvane {

namespace {

using enum JWKTypeErrorCase;

constexpr std::string_view kNoKeyText =
    "No valid RSAPrivateKey, RSAPublicKey, SymmetricKey, ECPrivateKey, or ECPublicKey\nJSON found to decode.";

DecodingError noKey() {
    return DecodingError(DecodingErrorCase::dataCorrupted, std::string(kNoKeyText),
                         {std::string(JWKSetParameter::keys)});
}

JWKTypeErrorCase classify(std::string_view kty, bool hasD) {
    const auto type = fromRawValue<JWKKeyType>(kty);
    if (!type) return typeIsUnknown;
    switch (*type) {
    case JWKKeyType::RSA: return hasD ? typeIsRSAPrivate : typeIsRSAPublic;
    case JWKKeyType::OCT: return typeIsSymmetric;
    case JWKKeyType::EC: return hasD ? typeIsECPrivate : typeIsECPublic;
    }
    return typeIsUnknown;
}

template <class Key>
JWKSet::Key shared(const JSON& object) {
    return std::make_shared<const Key>(Key::decode(object));
}

JWKSet::Key decodeAs(JWKTypeErrorCase type, const JSON& object) {
    switch (type) {
    case typeIsECPrivate: return shared<ECPrivateKey>(object);
    case typeIsECPublic: return shared<ECPublicKey>(object);
    case typeIsRSAPublic: return shared<RSAPublicKey>(object);
    case typeIsRSAPrivate: return shared<RSAPrivateKey>(object);
    case typeIsSymmetric: return shared<SymmetricKey>(object);
    case typeIsUnknown: throw noKey();
    }
    throw noKey();
}

JWKSet::Key decodeElement(const JSON& element) {
    try {
        JWKBase::make(element);
    } catch (const JWKTypeError& type) {
        return decodeAs(type.kind(), element);
    }
}

} // namespace

void JWKBase::make(const JSON& object) {
    const JSONField key(object);
    const std::string& kty = key.member(JWKBaseParameter::kty).string();
    const auto d = key.memberIfPresent(JWKBaseParameter::d);
    if (d) static_cast<void>(d->string());
    throw JWKTypeError(classify(kty, d.has_value()));
}

JWKSet JWKSet::make(ByteView data) {
    const SecretJSON object(decodeObject(asText(data)));
    const JSONField root(*object);
    const JSONField keys = root.member(JWKSetParameter::keys);
    std::vector<Key> decoded;
    for (const JSONField& element : keys.elements()) {
        try {
            decoded.push_back(decodeElement(element.value()));
        } catch (const Failure&) {
            throw noKey();
        }
    }
    return JWKSet(std::move(decoded));
}

std::optional<std::string> JWKSet::jsonString() const {
    constexpr std::string_view kStart = "{\"keys\":[";
    constexpr std::string_view kEnd = "]}";
    std::vector<SecretString> elements;
    std::size_t length = kStart.size() + kEnd.size();
    for (const Key& key : keys_) {
        std::optional<std::string> element = key->jsonString();
        if (!element) return std::nullopt;
        length += element->size() + 1;
        elements.emplace_back(std::move(*element));
    }
    // Room for all of it, so that growth leaves no half-written private key behind.
    std::string json;
    json.reserve(length);
    json += kStart;
    for (const SecretString& element : elements) {
        if (json.size() > kStart.size()) json += ',';
        json += element.text();
    }
    json += kEnd;
    return json;
}

std::optional<Bytes> JWKSet::jsonData() const {
    std::optional<std::string> json = jsonString();
    if (!json) return std::nullopt;
    Bytes data = toBytes(*json);
    cleanse(*json);
    return data;
}

} // namespace korvane
