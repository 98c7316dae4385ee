#include "Crypt/Verifier.h"

#include "Crypt/Signer.h"

namespace korvane {

std::optional<Verifier> Verifier::make(SignatureAlgorithm verifyingAlgorithm, const AnyKey& publicKey) {
    const auto* key = publicKey.cast<SecKey>();
    if (!key) return std::nullopt;
    if (curveType(verifyingAlgorithm))
        return Verifier(std::make_shared<ECVerifier>(verifyingAlgorithm, *key));
    return Verifier(std::make_shared<RSAVerifier>(verifyingAlgorithm, *key));
}

bool Verifier::verify(const JWSHeader& header, const Payload& payload, ByteView signature) const {
    return verifier_->verify(SigningInput(header, payload, algorithm()).view(), signature);
}

} // namespace korvane
