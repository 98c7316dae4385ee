#include "Crypt/DataExtensions.h"
#include "Crypt/JWS.h"
#include "Sdk/SecureChannel/AcsSignedContent.h"
#include "tests/Sdk/SecureChannel/ChannelSupport.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using enum SdkErrorCase;
using enum SignatureAlgorithm;

constexpr const char* kUrl = "https://acs.example/challenge";
constexpr const char* kParse = "SignedContent.cpp parseAcsSignedContent(_:sdkReferenceNumber:)";
constexpr const char* kValidate = "SignedContent.cpp validateCertChain(_:)";
constexpr const char* kNotValid = "AcsSignedContent JWS is not valid.";
constexpr const char* kChainFailure = "SecTrust cert chain validation fail.";

/// What a container with this root, whose key has been published, makes of a signed content.
std::string parsed(const std::string& content, const TestIdentity& root) {
    KeysContainer container(certsWithRoot(root));
    static_cast<void>(container.getEphemeralPublicKey());
    return container.parseAcsSignedContent(content, kReferenceNumber);
}

TEST(SignedContent, GivesTheUrlUnderEachAllowedAlgorithm) {
    const PlayedAcs acs;
    PlayedAcs rsaAcs = acs;
    rsaAcs.leaf = acs.root.issue({.key = TestKeyType::rsa2048});
    EXPECT_EQ(parsed(acs.signedContent(acs.payload(), ES256), acs.root), kUrl);
    EXPECT_EQ(parsed(rsaAcs.signedContent(acs.payload(), RS256), acs.root), kUrl);
    EXPECT_EQ(parsed(rsaAcs.signedContent(acs.payload(), PS256), acs.root), kUrl);
}

TEST(SignedContent, IsVerifiedThroughIntermediatesUpToTheRootOfAFile) {
    const auto line = authorities(2);
    const TestIdentity leaf = line[2].issue({});
    const PlayedAcs acs;
    const TemporaryFolder folder;
    folder.write("root.cer", line[0].der);
    KeysContainer container(DevInfoCert{"", "root.cer", "F170738365", CertAlgorithm::EC,
                                        NSBundle::bundleWithPath(folder.path())});
    static_cast<void>(container.getEphemeralPublicKey());
    const std::vector<std::string> x5c{leaf.base64(), line[1].base64(), line[2].base64()};
    EXPECT_EQ(
        container.parseAcsSignedContent(PlayedAcs::signedBy(leaf, x5c, acs.payload()), kReferenceNumber),
        kUrl);
}

TEST(SignedContent, WithAGoodChainUnderAnotherAlgorithmIsRejected) {
    const PlayedAcs acs;
    const TestIdentity wide = acs.root.issue({.key = TestKeyType::p384});
    const TestIdentity rsa = acs.root.issue({.key = TestKeyType::rsa2048});
    JWSHeader unknown(JSON{{"alg", "none"}, {"x5c", {acs.leaf.base64()}}});
    const Bytes payload = toBytes(acs.payload().dump());
    const std::array<DataConvertible, 3> unsignedParts{unknown, payload, Bytes()};

    struct Row {
        const char* name;
        std::string content;
    };
    const std::vector<Row> rows{
        {"ES384", PlayedAcs::signedBy(wide, {wide.base64()}, acs.payload(), ES384)},
        {"PS512", PlayedAcs::signedBy(rsa, {rsa.base64()}, acs.payload(), PS512)},
        {"RS384", PlayedAcs::signedBy(rsa, {rsa.base64()}, acs.payload(), RS384)},
        {"none", joinedBase64URL(unsignedParts)},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        expectRaised(InvalidAcsResponseException, kNotValid, kParse,
                     [&] { return parsed(row.content, acs.root); });
    }
}

TEST(SignedContent, WithoutAListOfCertificateTextsIsRejected) {
    const PlayedAcs acs;
    const Bytes payload = toBytes(acs.payload().dump());
    const Bytes signature(64);
    for (const JSON& header : {JSON{{"alg", "ES256"}}, JSON{{"alg", "ES256"}, {"x5c", "MA=="}},
                               JSON{{"alg", "ES256"}, {"x5c", JSON::array({acs.leaf.base64(), 1})}}}) {
        SCOPED_TRACE(header.dump());
        const JWSHeader jwsHeader(header);
        const std::array<DataConvertible, 3> parts{jwsHeader, payload, signature};
        expectRaised(InvalidAcsResponseException, kNotValid, kParse,
                     [&] { return parsed(joinedBase64URL(parts), acs.root); });
    }
}

TEST(SignedContent, ChainsThatDoNotHoldAreRaisedWithoutTheReasonAndLoggedWithIt) {
    const PlayedAcs acs;
    const auto line = authorities(1);
    const TestIdentity foreign = selfSigned(authority("Foreign root"));
    const TestIdentity foreignLeaf = foreign.issue({});
    const TestIdentity late = acs.root.issue({.firstDay = -9, .lastDay = -1});
    const TestIdentity deep = line[1].issue({});
    const TestIdentity wide = selfSigned({.key = TestKeyType::p384});
    const TestIdentity keyless = acs.root.issue({.key = TestKeyType::ed25519});
    const TestIdentity intruder = acs.leaf.issue({.commonName = "Intruder"});
    const auto detail = [](const std::string& text) {
        return "SecTrust cert chain validation fail: " + text + ")";
    };

    struct Row {
        const char* name;
        std::vector<const TestIdentity*> chain;
        const TestIdentity* root;
        std::string logged;
    };
    const std::vector<Row> rows{
        {"expired", {&late}, &acs.root, detail("certificate has expired")},
        {"foreign root",
         {&foreignLeaf, &foreign},
         &acs.root,
         detail("self-signed certificate in certificate chain")},
        {"missing intermediate", {&deep}, &line[0], detail("unable to get local issuer certificate")},
        {"issuer first", {&line[1], &deep}, &deep, detail("unable to get local issuer certificate")},
        {"leaf as issuer", {&intruder, &acs.leaf}, &acs.root, detail("invalid CA certificate")},
        {"untrusted chain and bad algorithm", {&wide}, &acs.root, detail("self-signed certificate")},
        {"good chain to a key of no known type", {&keyless}, &acs.root, kChainFailure},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        std::vector<std::string> x5c;
        for (const TestIdentity* each : row.chain)
            x5c.push_back(each->base64());
        const bool isWide = row.chain.front() == &wide;
        const TestIdentity& signer = row.chain.front() == &keyless ? acs.leaf : *row.chain.front();
        const std::string content = PlayedAcs::signedBy(signer, x5c, acs.payload(), isWide ? ES384 : ES256);
        expectRaised(
            SDKRuntimeException, kChainFailure, kValidate, [&] { return parsed(content, *row.root); },
            row.logged);
    }
}

TEST(SignedContent, EmptyListOfCertificatesAndUnusableRootAreInputErrors) {
    const PlayedAcs acs;
    const std::string empty = PlayedAcs::signedBy(acs.leaf, {}, acs.payload());
    expectRaised(InvalidInputException, "No certificates found in JWS header.", kValidate,
                 [&] { return parsed(empty, acs.root); });
    TestIdentity damaged = acs.root;
    damaged.der.pop_back();
    expectRaised(InvalidInputException, "Can not load root CA certificate for cert chain validation.",
                 kValidate, [&] { return parsed(acs.signedContent(), damaged); });
}

TEST(SignedContent, BadCertificateTextIsReportedBeforeAnUnusableRoot) {
    const PlayedAcs acs;
    TestIdentity damaged = acs.root;
    damaged.der.pop_back();
    const std::string content = PlayedAcs::signedBy(acs.leaf, {acs.leaf.base64(), "?"}, acs.payload());
    expectRaised(SDKRuntimeException, "Can not decode base64 cert ?",
                 "KeysContainer.cpp convertStringsToCerts(_:)", [&] { return parsed(content, damaged); });
}

TEST(SignedContent, BadSignaturesAndFormsRaiseTheJoseLayersFailures) {
    const PlayedAcs acs;
    const TestIdentity another = acs.root.issue({});
    const std::string content = acs.signedContent();
    const std::string foreign = PlayedAcs::signedBy(another, {acs.leaf.base64()}, acs.payload());
    const RecordingLogger log;
    EXPECT_RAISES(JOSEErrorCase::signatureInvalid, parsed(foreign, acs.root));
    EXPECT_RAISES(JOSEErrorCase::verifyingFailed, parsed(content.substr(0, content.size() - 4), acs.root));
    EXPECT_RAISES(JOSEErrorCase::invalidCompactSerializationComponentCount, parsed(content + ".", acs.root));
    EXPECT_THAT(log.lines(), testing::Not(testing::Contains(testing::StartsWith("Sdk/"))));
}

TEST(SignedContent, PayloadOfTheWrongShapeRaisesTheDecodersFailure) {
    const PlayedAcs acs;
    using enum DecodingErrorCase;
    struct Row {
        const char* name;
        JSON change;
        DecodingErrorCase kind;
    };
    const std::vector<Row> rows{
        {"no ACS key", {{"acsEphemPubKey", nullptr}}, valueNotFound},
        {"SDK key is a text", {{"sdkEphemPubKey", "key"}}, typeMismatch},
        {"URL is a number", {{"acsURL", 1}}, typeMismatch},
        {"key of another type", {{"acsEphemPubKey", {{"kty", "RSA"}}}}, keyNotFound},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        JSON payload = acs.payload();
        payload.update(row.change);
        EXPECT_RAISES(row.kind, parsed(acs.signedContent(payload), acs.root));
    }
    EXPECT_RAISES(keyNotFound, parsed(acs.signedContent(JSON::object()), acs.root));
    EXPECT_RAISES(typeMismatch, parsed(acs.signedContent(JSON::array()), acs.root));
}

TEST(SignedContent, RecordSurvivesItsOwnJson) {
    const PlayedAcs acs;
    const AcsSignedContent content = AcsSignedContent::decode(asBytes(acs.payload().dump()));
    const std::string written = content.jsonString().value();
    EXPECT_EQ(AcsSignedContent::decode(asBytes(written)), content);
    EXPECT_EQ(JSON::parse(written), acs.payload());
}

} // namespace
} // namespace korvane
