#pragma once

#include "Crypt/Algorithms.h"
#include "Crypt/AnyKey.h"
#include "Crypt/EC.h"
#include "Crypt/JWSHeader.h"
#include "Crypt/Payload.h"
#include "Crypt/RSA.h"

#include <memory>
#include <optional>

namespace korvane {

/// Verifies with one key and one algorithm.
class VerifierProtocol {
public:
    virtual ~VerifierProtocol() = default;
    [[nodiscard]] virtual SignatureAlgorithm algorithm() const = 0;
    /// @throws RSAError, ECError
    [[nodiscard]] virtual bool verify(ByteView verifyingInput, ByteView signature) const = 0;
};

/// Verifies through a family of platform keys.
template <class Family>
class FamilyVerifier : public VerifierProtocol {
public:
    FamilyVerifier(SignatureAlgorithm algorithm, SecKey publicKey)
        : algorithm_(algorithm), publicKey_(std::move(publicKey)) {}

    [[nodiscard]] SignatureAlgorithm algorithm() const override { return algorithm_; }
    [[nodiscard]] bool verify(ByteView verifyingInput, ByteView signature) const override {
        return Family::verify(verifyingInput, signature, publicKey_, algorithm_);
    }

private:
    SignatureAlgorithm algorithm_;
    SecKey publicKey_;
};

using RSAVerifier = FamilyVerifier<RSA>;
using ECVerifier = FamilyVerifier<EC>;

/// The verifier of an algorithm and a public platform key. A value, immutable.
class Verifier {
public:
    /// @return no value when the key is no `SecKey`.
    [[nodiscard]] static std::optional<Verifier> make(SignatureAlgorithm verifyingAlgorithm,
                                                      const AnyKey& publicKey);

    [[nodiscard]] SignatureAlgorithm algorithm() const { return verifier_->algorithm(); }

    /// Verifies a signature on the JWS Signing Input of header and payload, computed anew from their bytes.
    /// @throws JWSError algorithmMismatch; RSAError; ECError
    [[nodiscard]] bool verify(const JWSHeader& header, const Payload& payload, ByteView signature) const;

private:
    explicit Verifier(std::shared_ptr<const VerifierProtocol> verifier) : verifier_(std::move(verifier)) {}

    std::shared_ptr<const VerifierProtocol> verifier_;
};

} // namespace korvane
