#include "Crypt/JWS.h"
#include "Crypt/ASN1DER.h"
#include "Crypt/EC.h"
#include "tests/support/Failures.h"

#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

namespace korvane {
namespace {

using SA = SignatureAlgorithm;
using enum JOSEErrorCase;

constexpr SA kAlgorithms[] = {SA::RS256, SA::RS384, SA::RS512, SA::PS256, SA::PS384,
                              SA::PS512, SA::ES256, SA::ES384, SA::ES512};

const SecKey& privateKey(SA algorithm) {
    static const SecKey rsa = SecKeyCreateRandomKey(SecKeyType::kSecAttrKeyTypeRSA, 2048);
    static const SecKey p256 = SecKeyCreateRandomKey(SecKeyType::kSecAttrKeyTypeEC, 256);
    static const SecKey p384 = SecKeyCreateRandomKey(SecKeyType::kSecAttrKeyTypeEC, 384);
    static const SecKey p521 = SecKeyCreateRandomKey(SecKeyType::kSecAttrKeyTypeEC, 521);
    const auto curve = curveType(algorithm);
    if (!curve) return rsa;
    return *curve == ECCurveType::P256 ? p256 : *curve == ECCurveType::P384 ? p384 : p521;
}

SecKey publicKey(SA algorithm) {
    return SecKeyCopyPublicKey(privateKey(algorithm));
}

JWS signedWith(SA algorithm, const std::string& text) {
    return {JWSHeader(algorithm), Payload(toBytes(text)),
            Signer::make(algorithm, privateKey(algorithm)).value()};
}

RC_GTEST_PROP(JWSProperty, SignaturesVerifyAndNothingElseDoes,
              (const std::string& text, const std::string& other)) {
    RC_PRE(text != other);
    for (const SA algorithm : kAlgorithms) {
        const JWS jws(signedWith(algorithm, text).compactSerializedString());
        RC_ASSERT(jws.isValid(Verifier::make(algorithm, publicKey(algorithm)).value()));
        RC_ASSERT(jws.isValid(publicKey(algorithm)));
        RC_ASSERT(asText(jws.validate(publicKey(algorithm)).payload().data()) == text);
        const std::string header = base64URLEncodedString(jws.header().data());
        const JWS forged(header + "." + base64URLEncodedString(asBytes(other)) + "." +
                         base64URLEncodedString(jws.signature()));
        RC_ASSERT(!forged.isValid(publicKey(algorithm)));
    }
}

TEST(JWSValidation, FailuresSayWhatHappened) {
    const JWS ps256 = signedWith(SA::PS256, "text");
    const std::string mismatch = "JWS header algorithm does not match verifier algorithm.";
    const Verifier rs256 = Verifier::make(SA::RS256, publicKey(SA::RS256)).value();
    EXPECT_RAISES_SAYING(verifyingFailed, mismatch, ps256.validate(rs256));
    const JWS none(base64URLEncodedString(asBytes(R"({"alg":"none"})")) + ".eA.");
    EXPECT_RAISES_SAYING(verifyingFailed, mismatch, none.validate(rs256));
    EXPECT_RAISES_SAYING(verifyingFailed, mismatch, none.validate(publicKey(SA::ES256)));
    EXPECT_RAISES(verifyingFailed, ps256.validate(AnyKey(Bytes(32))));
    EXPECT_FALSE(ps256.isValid(AnyKey(Bytes(32))));
    EXPECT_FALSE(none.isValid(rs256));

    const JWS rs = signedWith(SA::RS256, "text");
    EXPECT_RAISES_SAYING(verifyingFailed,
                         "The operation couldn\u2019t be completed. (Korvane.RSAError error 4.)",
                         rs.validate(Verifier::make(SA::RS256, publicKey(SA::ES256)).value()));
    const std::string compact = rs.compactSerializedString();
    const std::string header = compact.substr(0, compact.find('.'));
    EXPECT_RAISES(signatureInvalid,
                  JWS(header + ".dGV4dA." + base64URLEncodedString(Bytes(256, 1))).validate(rs256));
    EXPECT_RAISES(signatureInvalid, JWS(header + ".dGV4dA.").validate(rs256));
    EXPECT_FALSE(Verifier::make(SA::ES256, AnyKey(Bytes(65))));
    EXPECT_FALSE(Signer::make(SA::ES256, AnyKey(Bytes(65))));
}

TEST(JWSValidation, ECSignaturesMustHaveTheirLength) {
    const JWS jws = signedWith(SA::ES256, "text");
    const std::string start = base64URLEncodedString(jws.header().data()) + ".dGV4dA.";
    for (const std::size_t length : {0U, 63U, 65U, 71U, 128U})
        EXPECT_RAISES_SAYING(
            verifyingFailed,
            "Signature is " + std::to_string(length) + " bytes long instead of the expected 64.",
            JWS(start + base64URLEncodedString(Bytes(length, 1))).validate(publicKey(SA::ES256)));
    EXPECT_RAISES(signatureInvalid,
                  JWS(start + base64URLEncodedString(Bytes(64))).validate(publicKey(SA::ES256)))
        << "r and s of zero are numbers, but no signature";
    EXPECT_RAISES(ECErrorCase::unknownOrUnsupportedAlgorithm,
                  EC::verify(Bytes(1), Bytes(64), publicKey(SA::ES256), SA::RS256));
}

TEST(JWSValidation, ASmallerCurveThanThatOfTheAlgorithmIsRefused) {
    // The numbers of P-256 fit into a signature of ES512, and are genuine by all but their length.
    const std::string input = base64URLEncodedString(JWSHeader(SA::ES512).data()) + ".dGV4dA";
    const Bytes x962 = SecKeyCreateSignature(privateKey(SA::ES256),
                                             SecKeyAlgorithm::kSecKeyAlgorithmECDSASignatureMessageX962SHA512,
                                             asBytes(input));
    const ByteView numbers = read(x962, ASN1Type::sequence);
    Bytes signature = Asn1IntegerConversion::toRaw(read(numbers, ASN1Type::integer), 66);
    const Bytes s =
        Asn1IntegerConversion::toRaw(read(skip(numbers, ASN1Type::integer), ASN1Type::integer), 66);
    signature.insert(signature.end(), s.begin(), s.end());
    const JWS jws(input + "." + base64URLEncodedString(signature));
    EXPECT_RAISES(verifyingFailed, jws.validate(publicKey(SA::ES256)));
    EXPECT_RAISES(verifyingFailed, jws.validate(Verifier::make(SA::ES512, publicKey(SA::ES256)).value()));
    EXPECT_RAISES(ECErrorCase::invalidKeySize,
                  EC::verify(asBytes(input), signature, publicKey(SA::ES256), SA::ES512));
}

TEST(JWSSigning, FailuresSayWhatHappened) {
    const auto signing = [](SA header, SA algorithm, const SecKey& key) {
        return
            [=] { return JWS(JWSHeader(header), Payload(Bytes(1)), Signer::make(algorithm, key).value()); };
    };
    EXPECT_RAISES_SAYING(signingFailed,
                         "The operation couldn\u2019t be completed. (Korvane.JWSError error 0.)",
                         signing(SA::ES256, SA::ES384, privateKey(SA::ES384))());
    EXPECT_RAISES_SAYING(signingFailed,
                         "The operation couldn\u2019t be completed. (Korvane.RSAError error 4.)",
                         signing(SA::RS256, SA::RS256, publicKey(SA::RS256))());
    JWSHeader unwritten(SA::ES256);
    unwritten.setKid("\xFF");
    EXPECT_RAISES_SAYING(
        signingFailed, "The operation couldn\u2019t be completed. (Korvane.JWSError error 1.)",
        JWS(unwritten, Payload(Bytes(1)), Signer::make(SA::ES256, privateKey(SA::ES256)).value()));
    const auto failure = raisedBy<JOSEErrorCase>(signing(SA::ES256, SA::ES256, publicKey(SA::ES256)));
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->kind(), signingFailed);
    EXPECT_THAT(failure->description(), testing::MatchesRegex("Error creating signature. \\(CFError: .+\\)"));
}

TEST(JWSSigning, TheLargerKeyOfAnotherCurveCannotSlipThrough) {
    // An ES256 signer may hold a P-521 key; its numbers do not fit into the signature of the algorithm.
    const SecKey p521 = privateKey(SA::ES512);
    EXPECT_RAISES(signingFailed,
                  JWS(JWSHeader(SA::ES256), Payload(Bytes(1)), Signer::make(SA::ES256, p521).value()));
}

} // namespace
} // namespace korvane
