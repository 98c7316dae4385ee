#include "Crypt/SymmetricKey.h"

#include "Crypt/DataExtensions.h"

namespace korvane {

namespace {

constexpr std::array<std::string_view, 1> kNumbers{SymmetricKeyParameter::key};
constexpr JWKForm kForm{JWKKeyType::OCT, kNumbers, "", "Wrong parameter: key type", false};

} // namespace

SymmetricKey::SymmetricKey(ByteView key, const StringMap& additionalParameters)
    : JWK(kForm, {{std::string(SymmetricKeyParameter::key), base64URLEncodedString(key)}},
          additionalParameters) {}

SymmetricKey::SymmetricKey(const JSONField& object) : JWK(kForm, object) {
    // The one type whose number is looked at when it is decoded. The text becomes the canonical one.
    const SecretBytes key = components();
    setNumber(SymmetricKeyParameter::key, base64URLEncodedString(key));
}

SymmetricKey SymmetricKey::make(ByteView data) {
    return decode(*SecretJSON(decodeObject(asText(data))));
}

SymmetricKeyComponents SymmetricKey::components() const {
    return decodedSecret(SymmetricKeyParameter::key, JOSEErrorCase::symmetricKeyNotBase64URLEncoded);
}

SymmetricKey SymmetricKey::withThumbprintAsKeyId(JWKThumbprintAlgorithm algorithm) const {
    SymmetricKey result = *this;
    result.setKeyIdentifier(thumbprint(algorithm));
    return result;
}

} // namespace korvane
