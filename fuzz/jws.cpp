// Compact JWSs: reading, writing back, verifying under RSA and EC keys, and signing anew
// under the header's row.

#include "Crypt/JWS.h"
#include "Crypt/JOSEError.h"
#include "fuzz/support/Fuzz.h"
#include "fuzz/support/Keys.h"

namespace korvane::fuzzing {

namespace {

using enum JOSEErrorCase;

void checkRewriting(const JWS& jws, std::string_view compact) {
    const std::string written = jws.compactSerializedString();
    require(!isCanonical(compact) || written == compact, "A canonical JWS changes when it is written back.");
    const JWS again(written);
    require(again.header() == jws.header() && again.payload() == jws.payload() &&
                again.signature() == jws.signature(),
            "A JWS differs from itself after writing and reading.");
}

void checkVerifying(const JWS& jws, const SecKey& key) {
    const auto validated = attempt<JOSEError>([&] {
        try {
            return jws.validate(key).payload();
        } catch (const JOSEError& error) {
            require(error.kind() == verifyingFailed || error.kind() == signatureInvalid, error.what());
            throw;
        }
    });
    require(jws.isValid(key) == validated.has_value(), "The two ways to verify a JWS differ.");
}

void checkSigning(const JWS& jws, std::size_t seed) {
    const auto algorithm = jws.header().algorithm();
    if (!algorithm) return;
    const bool isEc = curveType(*algorithm).has_value();
    const SecKey& privateKey = isEc ? keys().ecPrivateSecKey : keys().rsaPrivate;
    const SecKey& publicKey = isEc ? keys().ecPublicSecKey : keys().rsaPublic;
    const auto signer = Signer::make(*algorithm, privateKey).value();
    const auto signedJws = attempt<JOSEError>([&] { return JWS(jws.header(), jws.payload(), signer); });
    if (!signedJws) return;
    require(JWS(signedJws->compactSerializedString()).isValid(publicKey), "A signature is not its key's.");

    Bytes payload = jws.payload().data();
    Bytes signature = signedJws->signature();
    Bytes& changed = seed % 2 == 0 && !payload.empty() ? payload : signature;
    changed = withTurnedBit(std::move(changed), seed);
    const std::array<DataConvertible, 3> components{signedJws->header(), payload, signature};
    require(!JWS(joinedBase64URL(components)).isValid(publicKey), "A changed JWS is valid.");
}

} // namespace

void run(ByteView input) {
    const std::string compact = compactText(input);
    const auto jws = attempt<JOSEError>([&] { return JWS(asBytes(compact)); });
    if (!jws) return;
    checkRewriting(*jws, compact);
    for (const SecKey* key : {&keys().rsaPublic, &keys().ecPublicSecKey, &keys().ecPrivateSecKey})
        checkVerifying(*jws, *key);
    checkSigning(*jws, input.size());
}

} // namespace korvane::fuzzing
