#pragma once

#include "Crypt/JWK.h"
#include "Crypt/SecKeyRSAPublicKey.h"

namespace korvane {

/// An RSA public key (RFC 7518 section 6.3.1).
class RSAPublicKey : public JWKOf<RSAPublicKey> {
public:
    /// @param modulus, exponent  Base64URL texts of big-endian numbers; they are not looked at.
    RSAPublicKey(std::string modulus, std::string exponent, const StringMap& additionalParameters = {});

    /// @throws JOSEError couldNotConstructJWK for a key that does not yield its numbers.
    template <ExpressibleAsRSAPublicKeyComponents Key>
    explicit RSAPublicKey(const Key& publicKey, const StringMap& additionalParameters = {})
        : RSAPublicKey(componentsFrom([&] { return rsaPublicKeyComponents(publicKey); }),
                       additionalParameters) {}

    [[nodiscard]] const std::string& modulus() const { return number(RSAParameter::modulus); }
    [[nodiscard]] const std::string& exponent() const { return number(RSAParameter::exponent); }

    /// @throws JOSEError modulusNotBase64URLUIntEncoded, exponentNotBase64URLUIntEncoded, or what the
    ///         target's `representing` throws.
    template <ExpressibleAsRSAPublicKeyComponents Key>
    [[nodiscard]] Key converted() const {
        return representing(std::type_identity<Key>{}, components());
    }

private:
    friend JWKOf<RSAPublicKey>;

    explicit RSAPublicKey(const JSONField& object);
    RSAPublicKey(const RSAPublicKeyComponents& components, const StringMap& additionalParameters);

    [[nodiscard]] RSAPublicKeyComponents components() const;
};

} // namespace korvane
