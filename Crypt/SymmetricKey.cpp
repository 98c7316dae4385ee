#include "Crypt/SymmetricKey.h"

#include "Crypt/DataExtensions.h"

namespace korvane {

namespace {

constexpr std::array<std::string_view, 1> kNumbers{SymmetricKeyParameter::key};
constexpr JWKForm kForm{JWKKeyType::OCT, kNumbers, "", "Wrong parameter: key type", false};

} // namespace

SymmetricKey::SymmetricKey(ByteView key, const StringMap& additionalParameters)
    : JWKOf(kForm, std::array{base64URLEncodedString(key)}, additionalParameters) {}

SymmetricKey::SymmetricKey(const JSONField& object) : JWKOf(kForm, object) {
    // The one type whose number is looked at when it is decoded. The text becomes the canonical one.
    const SecretBytes key = components();
    setNumber(SymmetricKeyParameter::key, base64URLEncodedString(key));
}

SymmetricKeyComponents SymmetricKey::components() const {
    return decodedSecret(SymmetricKeyParameter::key, JOSEErrorCase::symmetricKeyNotBase64URLEncoded);
}

} // namespace korvane
