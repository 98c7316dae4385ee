#include "Crypt/DataExtensions.h"
#include "Crypt/EC.h"
#include "Crypt/JWS.h"
#include "Sdk/Events/SdkError.h"
#include "tests/support/Failures.h"
#include "tests/support/PlayedAcs.h"
#include "tests/support/RecordingLogger.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using enum SdkErrorCase;
using enum SignatureAlgorithm;

/// What a container with this root, whose key has been published, makes of a signed content.
std::string parsed(const std::string& content, const TestIdentity& root) {
    KeysContainer container(certsWithRoot(root));
    static_cast<void>(container.getEphemeralPublicKey());
    return container.parseAcsSignedContent(content, kReferenceNumber);
}

TEST(SignedContent, WithoutCertificateTextsOrAnAllowedAlgorithmIsRejected) {
    const PlayedAcs acs;
    const TestIdentity wide = acs.root.issue({.key = TestKeyType::p384});
    const TestIdentity rsa = acs.root.issue({.key = TestKeyType::rsa2048});
    const Bytes payload = toBytes(acs.payload().dump()), signature(64);
    const auto under = [&](const JSON& header) {
        const JWSHeader jwsHeader(header);
        const std::array<DataConvertible, 3> parts{jwsHeader, payload, signature};
        return joinedBase64URL(parts);
    };
    const std::pair<const char*, std::string> rows[] = {
        {"ES384", PlayedAcs::signedBy(wide, {wide.base64()}, acs.payload(), ES384)},
        {"RS384", PlayedAcs::signedBy(rsa, {rsa.base64()}, acs.payload(), RS384)},
        {"none", under({{"alg", "none"}, {"x5c", {acs.leaf.base64()}}})},
        {"a number in the list", under({{"alg", "ES256"}, {"x5c", JSON::array({acs.leaf.base64(), 1})}})},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.first);
        EXPECT_RAISES_SAYING(InvalidAcsResponseException, "AcsSignedContent JWS is not valid.",
                             parsed(row.second, acs.root));
    }
}

TEST(SignedContent, ChainsThatDoNotHoldAreRaisedWithoutTheReasonAndLoggedWithIt) {
    const PlayedAcs acs;
    const auto line = authorities(1);
    const TestIdentity deep = line[1].issue({});
    const TestIdentity late = acs.root.issue({.firstDay = -9, .lastDay = -1});
    const TestIdentity wide = selfSigned({.key = TestKeyType::p384});
    const TestIdentity keyless = acs.root.issue({.key = TestKeyType::ed25519});
    const TestIdentity intruder = acs.leaf.issue({.commonName = "Intruder"});
    struct Row {
        const char* name;
        std::vector<const TestIdentity*> chain;
        const TestIdentity& root;
        const char* reason;
    };
    const Row rows[] = {
        {"expired", {&late}, acs.root, "certificate has expired"},
        {"another root of this name", {&deep, &line[1], &line[0]}, acs.root, "certificate signature failure"},
        {"issuer first", {&line[1], &deep}, deep, "unable to get local issuer certificate"},
        {"leaf as issuer", {&intruder, &acs.leaf}, acs.root, "invalid CA certificate"},
        {"untrusted chain and bad algorithm", {&wide}, acs.root, "self-signed certificate"},
        {"good chain to a key of no known type", {&keyless}, acs.root, nullptr},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        std::vector<std::string> x5c;
        for (const TestIdentity* each : row.chain)
            x5c.push_back(each->base64());
        const TestIdentity& signer = row.reason ? *row.chain.front() : acs.leaf;
        const std::string content =
            PlayedAcs::signedBy(signer, x5c, acs.payload(), &signer == &wide ? ES384 : ES256);
        const std::string text = "SecTrust cert chain validation fail";
        const RecordingLogger log;
        EXPECT_RAISES_SAYING(SDKRuntimeException, text + ".", parsed(content, row.root));
        const std::string logged = row.reason ? text + ": " + row.reason + ")" : text + ".";
        EXPECT_THAT(log.lines(), testing::ElementsAre(
                                     "Sdk/SecureChannel/SignedContent.cpp validateCertChain(_:): " + logged));
    }
}

TEST(SignedContent, ListsThatCannotBeCheckedAreToldBeforeAnUnusableRoot) {
    const PlayedAcs acs;
    TestIdentity damaged = acs.root;
    damaged.der.pop_back();
    const auto parsedWith = [&](const std::vector<std::string>& x5c) {
        return parsed(PlayedAcs::signedBy(acs.leaf, x5c, acs.payload()), damaged);
    };
    EXPECT_RAISES_SAYING(InvalidInputException, "No certificates found in JWS header.", parsedWith({}));
    for (const std::string text : {"?", "MA ==", "MA"})
        EXPECT_RAISES_SAYING(SDKRuntimeException, "Can not decode base64 cert " + text,
                             parsedWith({acs.leaf.base64(), text, "later"}));
    EXPECT_RAISES_SAYING(InvalidInputException, "Can not load root CA certificate for cert chain validation.",
                         parsedWith({acs.leaf.base64()}));
}

TEST(SignedContent, BadSignaturesAreRefused) {
    const PlayedAcs acs;
    const std::string content = acs.signedContent();
    const std::string foreign = PlayedAcs::signedBy(acs.root.issue({}), {acs.leaf.base64()}, acs.payload());
    EXPECT_RAISES(JOSEErrorCase::signatureInvalid, parsed(foreign, acs.root));
    EXPECT_RAISES(JOSEErrorCase::verifyingFailed, parsed(content.substr(0, content.size() - 4), acs.root));
}

TEST(SignedContent, UnusablePayloadDerivesNothingAndKeepsTheKeyPair) {
    const PlayedAcs acs;
    KeysContainer container(certsWithRoot(acs.root));
    const auto published = container.getEphemeralPublicKey();
    const auto parsedWith = [&](const char* place, const JSON& value) {
        JSON payload = acs.payload();
        payload[JSON::json_pointer(place)] = value;
        return container.parseAcsSignedContent(acs.signedContent(payload), kReferenceNumber);
    };
    using enum DecodingErrorCase;
    EXPECT_RAISES(typeMismatch, parsedWith("/acsURL", 1));
    EXPECT_RAISES(typeMismatch, parsedWith("/sdkEphemPubKey", "key"));
    EXPECT_RAISES(valueNotFound, parsedWith("/acsEphemPubKey", nullptr));
    EXPECT_RAISES(keyNotFound, parsedWith("/acsEphemPubKey/kty", "RSA"));
    EXPECT_RAISES(JWKErrorCase::cannotConvertToSecKeyChildClasses,
                  parsedWith("/acsEphemPubKey/x", std::string(43, 'A')));
    EXPECT_RAISES(JOSEErrorCase::yNotBase64URLUIntEncoded, parsedWith("/acsEphemPubKey/y", "?"));
    EXPECT_RAISES(ECErrorCase::deriveKeyFail, parsedWith("/acsEphemPubKey/crv", "P-384"));
    EXPECT_EQ(container.getEphemeralPublicKey(), published);
    EXPECT_RAISES(InvalidInputException, container.encryptCReq(toBytes("{}"), "acs-id"));
    EXPECT_EQ(parsedWith("/unknown", 1), "https://acs.example/challenge");
}

} // namespace
} // namespace korvane
