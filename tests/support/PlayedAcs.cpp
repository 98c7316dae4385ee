#include "tests/support/PlayedAcs.h"

#include "Crypt/ConcatKDF.h"
#include "Crypt/EC.h"
#include "Crypt/JWE.h"
#include "Crypt/JWS.h"

namespace korvane {

SecretBytes peerKey(const ECPrivateKey& own, const ECPublicKey& theirs, const std::string& partyVInfo) {
    const Bytes suppPubInfo{0, 0, 1, 0};
    return concatKDF(Hash::SHA256, ecdhDeriveBits(own, theirs), 256, {}, {}, asBytes(partyVInfo),
                     suppPubInfo);
}

TransactionCerts certsWithRoot(const TestIdentity& root) {
    return {{}, root.der, CertAlgorithm::EC};
}

JSON PlayedAcs::payload() const {
    const JSON key = JSON::parse(ephemeral.getPublic().jsonString().value());
    return {{"acsEphemPubKey", key}, {"sdkEphemPubKey", key}, {"acsURL", "https://acs.example/challenge"}};
}

std::string PlayedAcs::signedBy(const TestIdentity& signer, const std::vector<std::string>& x5c,
                                const JSON& payload, SignatureAlgorithm algorithm) {
    JWSHeader header(algorithm);
    header.setX5c(x5c);
    const auto maker = Signer::make(algorithm, signer.privateKey()).value();
    return JWS(header, Payload(toBytes(payload.dump())), maker).compactSerializedString();
}

std::string PlayedAcs::sealed(std::string_view text, const SecretBytes& key) {
    constexpr auto kDirect = KeyManagementAlgorithm::direct;
    constexpr auto kEnc = ContentEncryptionAlgorithm::A128CBCHS256;
    const auto encrypter = Encrypter::make(kDirect, kEnc, key);
    return JWE(JWEHeader(kDirect, kEnc), Payload(toBytes(text)), encrypter.value()).compactSerializedString();
}

} // namespace korvane
