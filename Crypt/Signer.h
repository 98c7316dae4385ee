#pragma once

#include "Crypt/Algorithms.h"
#include "Crypt/AnyKey.h"
#include "Crypt/EC.h"
#include "Crypt/JWSHeader.h"
#include "Crypt/Payload.h"
#include "Crypt/RSA.h"

#include <array>
#include <memory>
#include <optional>

namespace korvane {

/// Signs with one key and one algorithm.
class SignerProtocol {
public:
    virtual ~SignerProtocol() = default;
    [[nodiscard]] virtual SignatureAlgorithm algorithm() const = 0;
    /// @throws RSAError, ECError
    [[nodiscard]] virtual Bytes sign(ByteView signingInput) const = 0;
};

/// Signs through a family of platform keys.
template <class Family>
class FamilySigner : public SignerProtocol {
public:
    FamilySigner(SignatureAlgorithm algorithm, SecKey privateKey)
        : algorithm_(algorithm), privateKey_(std::move(privateKey)) {}

    [[nodiscard]] SignatureAlgorithm algorithm() const override { return algorithm_; }
    [[nodiscard]] Bytes sign(ByteView signingInput) const override {
        return Family::sign(signingInput, privateKey_, algorithm_);
    }

private:
    SignatureAlgorithm algorithm_;
    SecKey privateKey_;
};

using RSASigner = FamilySigner<RSA>;
using ECSigner = FamilySigner<EC>;

/// The signer of an algorithm and a private platform key. A value, immutable.
class Signer {
public:
    /// @return no value when the key is no `SecKey`.
    [[nodiscard]] static std::optional<Signer> make(SignatureAlgorithm signingAlgorithm,
                                                    const AnyKey& privateKey);

    [[nodiscard]] SignatureAlgorithm algorithm() const { return signer_->algorithm(); }

    /// Signs the JWS Signing Input of header and payload (RFC 7515 section 5.1).
    /// @throws JWSError algorithmMismatch; RSAError; ECError
    [[nodiscard]] Bytes sign(const JWSHeader& header, const Payload& payload) const;

private:
    explicit Signer(std::shared_ptr<const SignerProtocol> signer) : signer_(std::move(signer)) {}

    std::shared_ptr<const SignerProtocol> signer_;
};

/// The JWS Signing Input of header and payload, without the heap for those of usual length.
class SigningInput {
public:
    /// @param algorithm  which the header must name.
    /// @throws JWSError algorithmMismatch; cannotComputeSigningInput for a header whose bytes
    /// are not its parameters.
    SigningInput(const JWSHeader& header, const Payload& payload, SignatureAlgorithm algorithm);
    SigningInput(const SigningInput&) = delete;
    SigningInput& operator=(const SigningInput&) = delete;

    [[nodiscard]] ByteView view() const { return view_; }

private:
    static constexpr std::size_t kUsualLength = 4096;

    std::array<char, kUsualLength> usual_;
    Bytes long_;
    ByteView view_;
};

} // namespace korvane
