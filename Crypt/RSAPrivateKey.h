#pragma once

#include "Crypt/JWK.h"
#include "Platform/Security/Secret.h"

#include <concepts>
#include <type_traits>

namespace korvane {

/// The numbers of an RSA private key, big-endian and unsigned.
struct RSAPrivateKeyComponents {
    Bytes modulus;
    Bytes exponent;
    SecretBytes privateExponent;
};

/// Nothing in the library conforms to this one: an RSA private key has no road from a JWK to a platform key.
template <class Key>
concept ExpressibleAsRSAPrivateKeyComponents = requires(const Key& key,
                                                        const RSAPrivateKeyComponents& components) {
    { rsaPrivateKeyComponents(key) } -> std::same_as<RSAPrivateKeyComponents>;
    { representing(std::type_identity<Key>{}, components) } -> std::same_as<Key>;
};

/// An RSA private key without its primes (RFC 7518 section 6.3.2): "n", "e" and "d" only.
class RSAPrivateKey : public JWKOf<RSAPrivateKey> {
public:
    /// @param modulus, exponent, privateExponent  Base64URL texts of big-endian numbers;
    /// they are not looked at.
    RSAPrivateKey(std::string modulus, std::string exponent, std::string privateExponent,
                  const StringMap& additionalParameters = {});

    /// @throws JOSEError couldNotConstructJWK for a key that does not yield its numbers.
    template <ExpressibleAsRSAPrivateKeyComponents Key>
    explicit RSAPrivateKey(const Key& privateKey, const StringMap& additionalParameters = {})
        : RSAPrivateKey(componentsFrom([&] { return rsaPrivateKeyComponents(privateKey); }),
                        additionalParameters) {}

    [[nodiscard]] const std::string& modulus() const { return number(RSAParameter::modulus); }
    [[nodiscard]] const std::string& exponent() const { return number(RSAParameter::exponent); }
    [[nodiscard]] const std::string& privateExponent() const { return number(RSAParameter::privateExponent); }

    /// @throws JOSEError modulusNotBase64URLUIntEncoded, exponentNotBase64URLUIntEncoded,
    ///         privateExponentNotBase64URLUIntEncoded, or what the target's `representing` throws.
    template <ExpressibleAsRSAPrivateKeyComponents Key>
    [[nodiscard]] Key converted() const {
        return representing(std::type_identity<Key>{}, components());
    }

private:
    friend JWKOf<RSAPrivateKey>;

    explicit RSAPrivateKey(const JSONField& object);
    RSAPrivateKey(const RSAPrivateKeyComponents& components, const StringMap& additionalParameters);

    [[nodiscard]] RSAPrivateKeyComponents components() const;
};

} // namespace korvane
