#include "Crypt/Signer.h"

#include "Crypt/DataExtensions.h"
#include "Crypt/JOSEError.h"

namespace korvane {

std::optional<Signer> Signer::make(SignatureAlgorithm signingAlgorithm, const AnyKey& privateKey) {
    const auto* key = privateKey.cast<SecKey>();
    if (!key) return std::nullopt;
    if (curveType(signingAlgorithm)) return Signer(std::make_shared<ECSigner>(signingAlgorithm, *key));
    return Signer(std::make_shared<RSASigner>(signingAlgorithm, *key));
}

Bytes Signer::sign(const JWSHeader& header, const Payload& payload) const {
    return signer_->sign(SigningInput(header, payload, algorithm()).view());
}

SigningInput::SigningInput(const JWSHeader& header, const Payload& payload, SignatureAlgorithm algorithm) {
    if (header.algorithm() != algorithm) throw JWSError(JWSErrorCase::algorithmMismatch);
    if (!header.isWritten()) throw JWSError(JWSErrorCase::cannotComputeSigningInput);
    const std::array<DataConvertible, 2> components{header, payload};
    const std::size_t length = joinedBase64URLLength(components);
    if (length > usual_.size()) {
        long_ = asJOSESigningInput(components);
        view_ = long_;
        return;
    }
    writeJoinedBase64URL(components, usual_.data());
    view_ = asBytes({usual_.data(), length});
}

} // namespace korvane
