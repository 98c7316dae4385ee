#include "Crypt/RSAPublicKey.h"

#include "Crypt/DataExtensions.h"

namespace korvane {

namespace {

constexpr std::array<std::string_view, 2> kNumbers{RSAParameter::modulus, RSAParameter::exponent};
constexpr JWKForm kForm{JWKKeyType::RSA, kNumbers, "", "Key Type parameter wrong.", true};

} // namespace

RSAPublicKey::RSAPublicKey(std::string modulus, std::string exponent, const StringMap& additionalParameters)
    : JWKOf(kForm, std::array{std::move(modulus), std::move(exponent)}, additionalParameters) {}

RSAPublicKey::RSAPublicKey(const RSAPublicKeyComponents& components, const StringMap& additionalParameters)
    : RSAPublicKey(base64URLEncodedString(components.modulus), base64URLEncodedString(components.exponent),
                   additionalParameters) {}

RSAPublicKey::RSAPublicKey(const JSONField& object) : JWKOf(kForm, object) {}

RSAPublicKeyComponents RSAPublicKey::components() const {
    return {decodedNumber(RSAParameter::modulus, JOSEErrorCase::modulusNotBase64URLUIntEncoded),
            decodedNumber(RSAParameter::exponent, JOSEErrorCase::exponentNotBase64URLUIntEncoded)};
}

} // namespace korvane
