#pragma once

#include "Platform/Security/OpenSSLHandles.h"
#include "Platform/Security/SecKey.h"

#include <array>
#include <atomic>

namespace korvane {

/// One curve under its names.
struct SecCurve {
    std::size_t bits;
    std::size_t coordinateLength;
    const char* groupName;
};

/// What a key handle shares: the OpenSSL key, what is known of it, and contexts that are ready for use.
struct SecKey::Material {
    Material(openssl::Key ownedKey, SecKeyAttributes itsAttributes, const SecCurve* itsCurve)
        : key(std::move(ownedKey)), attributes(itsAttributes), curve(itsCurve) {}
    Material(const Material&) = delete;
    Material& operator=(const Material&) = delete;
    ~Material();

    const openssl::Key key;
    const SecKeyAttributes attributes;
    /// Null for RSA.
    const SecCurve* const curve;

    /// A context that is set up for an algorithm, taken for one use: to set one up costs a fifth of an RSA
    /// verification, to copy one a tenth of an ECDSA verification. They keep nothing of what they were used
    /// for but a peer's public key.
    class Context {
    public:
        /// @throws CFError when OpenSSL cannot do this with this key.
        Context(Material& material, SecKeyOperationType operation, SecKeyAlgorithm algorithm);
        Context(const Context&) = delete;
        Context& operator=(const Context&) = delete;
        /// Gives it back for the next use.
        ~Context();

        [[nodiscard]] EVP_PKEY_CTX* get() const noexcept { return context_.get(); }

    private:
        /// Where it comes from and goes back to.
        std::atomic<EVP_PKEY_CTX*>& place_;
        openssl::KeyContext context_;
    };

private:
    static constexpr std::size_t kAlgorithms =
        static_cast<std::size_t>(SecKeyAlgorithm::kSecKeyAlgorithmECDHKeyExchangeStandard) + 1;

    /// Owned, of each algorithm: with a public or with a private key there is one operation that it is for.
    std::array<std::atomic<EVP_PKEY_CTX*>, kAlgorithms> idle_{};
};

/// The curve of a field size in bits, or null.
[[nodiscard]] const SecCurve* secCurve(std::size_t bits);

/// Wraps a key that OpenSSL has parsed.
/// @throws CFError for a key that is neither RSA nor on one of the three curves by name.
[[nodiscard]] SecKey adoptParsedKey(openssl::Key key, SecKeyClass keyClass);

/// Whether the public exponent of an RSA key is odd and at least 3 (RFC 8017 section 3.1).
[[nodiscard]] bool hasUsableExponent(const EVP_PKEY* key);

/// A failure that tells OpenSSL's newest reason.
[[nodiscard]] CFError platformError(int code, const std::string& what);

} // namespace korvane
