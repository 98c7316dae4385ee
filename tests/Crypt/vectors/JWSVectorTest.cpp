#include "Crypt/JWS.h"
#include "tests/Crypt/vectors/VectorKeys.h"
#include "tests/support/Vectors.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

/// Without an algorithm of the layer, only the reader can refuse a message, and must.
bool isReadable(const WycheproofTest& test) {
    const JWS jws(test.text("jws"));
    EXPECT_FALSE(jws.header().algorithm());
    return test.why != "alg";
}

bool isVerified(const WycheproofTest& test, const JSON& jwk, const SecKey& key) {
    const JWS jws(test.text("jws"));
    const auto algorithm = jwk.contains("alg") ? algorithmOf(jwk) : jws.header().algorithm();
    jws.validate(Verifier::make(algorithm.value(), key).value());
    EXPECT_TRUE(jws.isValid(key));
    return true;
}

TEST(JWSVectors, GenuineMessagesOfTheLayersAlgorithmsVerifyAndNoOthers) {
    runWycheproof("json_web_signature_odd.json", [](const JSON& group) -> WycheproofCheck {
        const JSON jwk = group.at(group.contains("public") ? "public" : "private");
        if (jwk.at("kty") == "oct") return isReadable;
        const SecKey key = publicKey(jwk);
        return [jwk, key](const WycheproofTest& test) { return isVerified(test, jwk, key); };
    });
}

} // namespace
} // namespace korvane
