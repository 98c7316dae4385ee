#include "Crypt/DataExtensions.h"
#include "Crypt/JWS.h"
#include "Sdk/SecureChannel/AcsSignedContent.h"
#include "tests/Sdk/SecureChannel/ChannelSupport.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using enum SdkErrorCase;
using enum SignatureAlgorithm;

constexpr const char* kValidate = "SignedContent.cpp validateCertChain(_:)";

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
    const Bytes payload = toBytes(acs.payload().dump());
    const auto under = [&](const JSON& header) {
        const JWSHeader jwsHeader(header);
        const std::array<DataConvertible, 3> parts{jwsHeader, payload, Bytes(64)};
        return joinedBase64URL(parts);
    };
    const std::pair<const char*, std::string> rows[] = {
        {"ES384", PlayedAcs::signedBy(wide, {wide.base64()}, acs.payload(), ES384)},
        {"PS512", PlayedAcs::signedBy(rsa, {rsa.base64()}, acs.payload(), PS512)},
        {"RS384", PlayedAcs::signedBy(rsa, {rsa.base64()}, acs.payload(), RS384)},
        {"none", under({{"alg", "none"}, {"x5c", {acs.leaf.base64()}}})},
        {"no list", under({{"alg", "ES256"}})},
        {"a text for a list", under({{"alg", "ES256"}, {"x5c", "MA=="}})},
        {"a number in the list", under({{"alg", "ES256"}, {"x5c", JSON::array({acs.leaf.base64(), 1})}})},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.first);
        expectRaised(InvalidAcsResponseException, "AcsSignedContent JWS is not valid.",
                     "SignedContent.cpp parseAcsSignedContent(_:sdkReferenceNumber:)",
                     [&] { return parsed(row.second, acs.root); });
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
    const std::tuple<const char*, std::vector<const TestIdentity*>, const TestIdentity*, const char*> rows[] =
        {
            {"expired", {&late}, &acs.root, "certificate has expired"},
            {"foreign root",
             {&foreignLeaf, &foreign},
             &acs.root,
             "self-signed certificate in certificate chain"},
            {"missing intermediate", {&deep}, &line[0], "unable to get local issuer certificate"},
            {"issuer first", {&line[1], &deep}, &deep, "unable to get local issuer certificate"},
            {"leaf as issuer", {&intruder, &acs.leaf}, &acs.root, "invalid CA certificate"},
            {"untrusted chain and bad algorithm", {&wide}, &acs.root, "self-signed certificate"},
            {"good chain to a key of no known type", {&keyless}, &acs.root, nullptr},
        };
    for (const auto& [name, chain, root, reason] : rows) {
        SCOPED_TRACE(name);
        std::vector<std::string> x5c;
        for (const TestIdentity* each : chain)
            x5c.push_back(each->base64());
        const TestIdentity& signer = reason ? *chain.front() : acs.leaf;
        const std::string content =
            PlayedAcs::signedBy(signer, x5c, acs.payload(), &signer == &wide ? ES384 : ES256);
        const std::string text = "SecTrust cert chain validation fail";
        expectRaised(
            SDKRuntimeException, text + ".", kValidate,
            [&content, &anchor = *root] { return parsed(content, anchor); },
            reason ? text + ": " + reason + ")" : text + ".");
    }
}

TEST(SignedContent, ListsThatCannotBeCheckedAreToldBeforeAnUnusableRoot) {
    const PlayedAcs acs;
    TestIdentity damaged = acs.root;
    damaged.der.pop_back();
    const auto content = [&](const std::vector<std::string>& x5c) {
        return PlayedAcs::signedBy(acs.leaf, x5c, acs.payload());
    };
    expectRaised(InvalidInputException, "No certificates found in JWS header.", kValidate,
                 [&] { return parsed(content({}), damaged); });
    expectRaised(SDKRuntimeException, "Can not decode base64 cert ?",
                 "KeysContainer.cpp convertStringsToCerts(_:)", [&] {
                     return parsed(content({acs.leaf.base64(), "?"}), damaged);
                 });
    expectRaised(InvalidInputException, "Can not load root CA certificate for cert chain validation.",
                 kValidate, [&] { return parsed(acs.signedContent(), damaged); });
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
    const auto parsedWith = [&acs](const JSON& change) {
        JSON payload = acs.payload();
        payload.update(change);
        return parsed(acs.signedContent(payload), acs.root);
    };
    EXPECT_RAISES(valueNotFound, parsedWith({{"acsEphemPubKey", nullptr}}));
    EXPECT_RAISES(keyNotFound, parsedWith({{"acsEphemPubKey", {{"kty", "RSA"}}}}));
    EXPECT_RAISES(typeMismatch, parsedWith({{"sdkEphemPubKey", "key"}}));
    EXPECT_RAISES(typeMismatch, parsedWith({{"acsURL", 1}}));
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
