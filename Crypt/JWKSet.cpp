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
    std::string json = "{\"keys\":[";
    for (const Key& key : keys_) {
        std::optional<std::string> element = key->jsonString();
        if (!element) return std::nullopt;
        if (json.back() != '[') json += ',';
        json += *element;
        cleanse(*element);
    }
    return json + "]}";
}

std::optional<Bytes> JWKSet::jsonData() const {
    const std::optional<std::string> json = jsonString();
    return json ? std::optional(toBytes(*json)) : std::nullopt;
}

} // namespace korvane
