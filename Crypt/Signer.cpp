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
    return signer_->sign(requireSigningInput(header, payload, algorithm()));
}

Bytes requireSigningInput(const JWSHeader& header, const Payload& payload, SignatureAlgorithm algorithm) {
    if (header.algorithm() != algorithm) throw JWSError(JWSErrorCase::algorithmMismatch);
    if (!header.isWritten()) throw JWSError(JWSErrorCase::cannotComputeSigningInput);
    return asJOSESigningInput(std::array<DataConvertible, 2>{header, payload});
}

} // namespace korvane
