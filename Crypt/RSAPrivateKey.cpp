#include "Crypt/RSAPrivateKey.h"

#include "Crypt/DataExtensions.h"

namespace korvane {

namespace {

constexpr std::array<std::string_view, 3> kNumbers{RSAParameter::modulus, RSAParameter::exponent,
                                                   RSAParameter::privateExponent};
constexpr JWKForm kForm{JWKKeyType::RSA, kNumbers, RSAParameter::privateExponent, "Key Type parameter wrong.",
                        true};
static_assert(kForm.privateNumber == kNumbers.back());

} // namespace

RSAPrivateKey::RSAPrivateKey(std::string modulus, std::string exponent, std::string privateExponent,
                             const StringMap& additionalParameters)
    : JWKOf(kForm, std::array{std::move(modulus), std::move(exponent), std::move(privateExponent)},
            additionalParameters) {}

RSAPrivateKey::RSAPrivateKey(const RSAPrivateKeyComponents& components, const StringMap& additionalParameters)
    : RSAPrivateKey(base64URLEncodedString(components.modulus), base64URLEncodedString(components.exponent),
                    base64URLEncodedString(components.privateExponent), additionalParameters) {}

RSAPrivateKey::RSAPrivateKey(const JSONField& object) : JWKOf(kForm, object) {}

RSAPrivateKeyComponents RSAPrivateKey::components() const {
    return {
        decodedNumber(RSAParameter::modulus, JOSEErrorCase::modulusNotBase64URLUIntEncoded),
        decodedNumber(RSAParameter::exponent, JOSEErrorCase::exponentNotBase64URLUIntEncoded),
        decodedSecret(RSAParameter::privateExponent, JOSEErrorCase::privateExponentNotBase64URLUIntEncoded)};
}

} // namespace korvane
