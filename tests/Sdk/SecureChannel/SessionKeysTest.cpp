#include "Crypt/EC.h"
#include "Crypt/JWE.h"
#include "tests/Sdk/SecureChannel/ChannelSupport.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using enum SdkErrorCase;

constexpr const char* kDecryptSite = "SessionKeys.cpp decryptAcsSignedContent(_:sdkReferenceNumber:)";
constexpr const char* kEncryptSite = "SessionKeys.cpp encryptCReq(_:_:)";

/// Both sides after a key agreement, and the key of the ACS's side.
struct Session {
    PlayedAcs acs;
    KeysContainer container{certsWithRoot(acs.root)};
    std::string published;
    SecretBytes key;

    explicit Session(const char* referenceNumber = kReferenceNumber) {
        published = container.getEphemeralPublicKey().value();
        EXPECT_EQ(container.getEphemeralPublicKey(), published);
        container.parseAcsSignedContent(acs.signedContent(), referenceNumber);
        key = peerKey(acs.ephemeral, ECPublicKey::make(asBytes(published)), referenceNumber);
    }

    [[nodiscard]] std::string sealedByAcs(std::string_view text) const {
        return PlayedAcs::sealed(text, key);
    }
    [[nodiscard]] std::string opened(const std::string& body) const {
        return std::string(asText(container.decryptCRes(asBytes(body))));
    }
};

TEST(EphemeralPublicKey, IsAPublicJwkForOneAgreement) {
    Session session;
    EXPECT_THAT(session.published,
                testing::MatchesRegex(R"re(\{("(crv|kty|x|y)":"[A-Za-z0-9_-]+",?){4}\})re"));
    EXPECT_NE(session.container.getEphemeralPublicKey(), session.published);
    EXPECT_NE(Session().published, session.published);
}

TEST(Session, RequestIsSealedAnewUnderTheKeyOfThisReferenceNumber) {
    const Session session("another");
    const Bytes sealed = session.container.encryptCReq(toBytes("{\"a\":1}"), "acs-id");
    EXPECT_EQ(JWE(sealed).header().parameters(),
              JSON({{"alg", "dir"}, {"enc", "A128CBC-HS256"}, {"kid", "acs-id"}}));
    EXPECT_EQ(asText(JWE(sealed).decrypt(session.key).data()), "{\"a\":1}");
    EXPECT_NE(session.container.encryptCReq(toBytes("{\"a\":1}"), "acs-id"), sealed);
}

TEST(Session, ResponsesOpenWhateverTheirKeyIdentifierAndStrangersDoNot) {
    const Session session;
    const std::string good = session.sealedByAcs("{}");
    std::string damaged = good;
    damaged[damaged.size() - 10] = damaged[damaged.size() - 10] == 'A' ? 'B' : 'A';
    for (const std::string& sealed : {damaged, Session().sealedByAcs("{}")})
        EXPECT_RAISES(JOSEErrorCase::decryptingFailed, session.opened(sealed));
    EXPECT_EQ(session.opened(good), "{}") << "and the key stays";
    const Bytes named = session.container.encryptCReq(toBytes("[]"), "anybody");
    EXPECT_EQ(session.opened(std::string(asText(named))), "[]");
}

TEST(Session, SecondSignedContentIsRefusedAndLeavesTheKey) {
    Session session;
    expectRaised(InvalidInputException, "Can not get private key from ephemeral KeyPair.", kDecryptSite, [&] {
        return session.container.parseAcsSignedContent(session.acs.signedContent(), kReferenceNumber);
    });
    EXPECT_EQ(session.opened(session.sealedByAcs("{}")), "{}");
}

TEST(Session, WithoutAKeyNothingIsSealedOrOpened) {
    const Session other;
    const KeysContainer container(certsWithRoot(other.acs.root));
    const std::string text = "Can not get CEK.";
    expectRaised(InvalidInputException, text, kEncryptSite,
                 [&] { return container.encryptCReq(toBytes("{}"), "acs-id"); });
    expectRaised(InvalidInputException, text, "SessionKeys.cpp decryptCRes(_:)",
                 [&] { return container.decryptCRes(asBytes(other.sealedByAcs("{}"))); });
    EXPECT_RAISES(JOSEErrorCase::invalidCompactSerializationComponentCount,
                  container.decryptCRes(asBytes("{}")));
}

TEST(Session, TextsThatAreNotUtf8AreRefused) {
    expectRaised(SDKRuntimeException, "Can not get partyVInfo.", kDecryptSite,
                 [] { return Session("\xFF"); });
    const Session session;
    expectRaised(InvalidInputException, "Can not get serialize JWE.", kEncryptSite,
                 [&] { return session.container.encryptCReq(toBytes("{}"), "\xFF"); });
}

TEST(Session, UnusableKeyOfTheAcsDerivesNothingAndKeepsTheKeyPair) {
    const PlayedAcs acs;
    KeysContainer container(certsWithRoot(acs.root));
    const auto published = container.getEphemeralPublicKey();
    const auto parse = [&](const JSON& key) {
        JSON payload = acs.payload();
        payload["acsEphemPubKey"].update(key);
        return container.parseAcsSignedContent(acs.signedContent(payload), kReferenceNumber);
    };
    EXPECT_RAISES(JWKErrorCase::cannotConvertToSecKeyChildClasses, parse({{"x", std::string(43, 'A')}}));
    EXPECT_RAISES(JOSEErrorCase::yNotBase64URLUIntEncoded, parse({{"y", "?"}}));
    EXPECT_RAISES(ECErrorCase::deriveKeyFail, parse({{"crv", "P-384"}}));
    EXPECT_EQ(container.getEphemeralPublicKey(), published);
    EXPECT_RAISES(InvalidInputException, container.encryptCReq(toBytes("{}"), "acs-id"));
    EXPECT_EQ(parse(JSON::object()), "https://acs.example/challenge");
}

} // namespace
} // namespace korvane
