#include "Crypt/EC.h"
#include "Crypt/JWE.h"
#include "tests/Sdk/SecureChannel/ChannelSupport.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using enum SdkErrorCase;

constexpr const char* kAcsTransactionId = "d7c1ee99-9478-44a6-b1f2-391e29c6b340";
constexpr const char* kDecryptSite = "SessionKeys.cpp decryptAcsSignedContent(_:sdkReferenceNumber:)";
constexpr const char* kNoPair = "Can not get private key from ephemeral KeyPair.";

/// Both sides after a key agreement, and the key of the ACS's side.
struct Session {
    PlayedAcs acs;
    KeysContainer container{certsWithRoot(acs.root)};
    SecretBytes key;

    Session() {
        const std::string published = container.getEphemeralPublicKey().value();
        container.parseAcsSignedContent(acs.signedContent(), kReferenceNumber);
        key = peerKey(acs.ephemeral, ECPublicKey::make(asBytes(published)), kReferenceNumber);
    }

    [[nodiscard]] std::string sealedByAcs(std::string_view text) const {
        return PlayedAcs::sealed(text, key);
    }
};

TEST(EphemeralPublicKey, IsOnePublicJwkUntilItIsUsedUp) {
    const PlayedAcs acs;
    KeysContainer container(certsWithRoot(acs.root));
    const auto first = container.getEphemeralPublicKey();
    EXPECT_THAT(first.value(), testing::MatchesRegex(R"re(\{("(crv|kty|x|y)":"[A-Za-z0-9_-]+",?){4}\})re"));
    EXPECT_EQ(container.getEphemeralPublicKey(), first);
    container.parseAcsSignedContent(acs.signedContent(), kReferenceNumber);
    EXPECT_NE(container.getEphemeralPublicKey(), first);
}

TEST(EphemeralPublicKey, DiffersBetweenContainers) {
    const TestIdentity root = selfSigned(authority("Root"));
    EXPECT_NE(KeysContainer(certsWithRoot(root)).getEphemeralPublicKey(),
              KeysContainer(certsWithRoot(root)).getEphemeralPublicKey());
}

TEST(Session, RequestIsOpenedByTheAcs) {
    const Session session;
    const Bytes sealed = session.container.encryptCReq(toBytes("{\"a\":1}"), kAcsTransactionId);
    const JWE jwe(sealed);
    EXPECT_EQ(jwe.header().parameters(),
              JSON({{"alg", "dir"}, {"enc", "A128CBC-HS256"}, {"kid", kAcsTransactionId}}));
    EXPECT_TRUE(jwe.encryptedKey().empty());
    EXPECT_EQ(asText(jwe.decrypt(session.key).data()), "{\"a\":1}");
    EXPECT_NE(session.container.encryptCReq(toBytes("{\"a\":1}"), kAcsTransactionId), sealed);
}

TEST(Session, ResponseOfTheAcsIsOpenedWithOrWithoutAKeyIdentifier) {
    const Session session;
    EXPECT_EQ(asText(session.container.decryptCRes(asBytes(session.sealedByAcs("{}")))), "{}");
    const Bytes named = session.container.encryptCReq(toBytes("[]"), "anybody");
    EXPECT_EQ(asText(session.container.decryptCRes(named)), "[]");
}

TEST(Session, ResponsesOfStrangersDoNotOpenAndLeaveTheKey) {
    const Session session;
    const Session another;
    const std::string good = session.sealedByAcs("{}");
    std::string damaged = good;
    damaged[damaged.size() - 10] = damaged[damaged.size() - 10] == 'A' ? 'B' : 'A';
    for (const std::string& sealed : {damaged, another.sealedByAcs("{}")})
        EXPECT_RAISES(JOSEErrorCase::decryptingFailed, session.container.decryptCRes(asBytes(sealed)));
    EXPECT_EQ(asText(session.container.decryptCRes(asBytes(good))), "{}");
}

TEST(Session, KeyDependsOnTheReferenceNumber) {
    PlayedAcs acs;
    KeysContainer container(certsWithRoot(acs.root));
    const ECPublicKey published = ECPublicKey::make(asBytes(container.getEphemeralPublicKey().value()));
    container.parseAcsSignedContent(acs.signedContent(), "another");
    const JWE jwe(container.encryptCReq(toBytes("{}"), kAcsTransactionId));
    EXPECT_RAISES(JOSEErrorCase::decryptingFailed,
                  jwe.decrypt(peerKey(acs.ephemeral, published, kReferenceNumber)));
    EXPECT_EQ(asText(jwe.decrypt(peerKey(acs.ephemeral, published, "another")).data()), "{}");
}

TEST(Session, SecondSignedContentIsRefusedAndLeavesTheKey) {
    Session session;
    expectRaised(InvalidInputException, kNoPair, kDecryptSite, [&] {
        return session.container.parseAcsSignedContent(session.acs.signedContent(), kReferenceNumber);
    });
    EXPECT_EQ(asText(session.container.decryptCRes(asBytes(session.sealedByAcs("{}")))), "{}");
}

TEST(Session, WithoutAKeyNothingIsSealedOrOpened) {
    const Session other;
    const KeysContainer container(certsWithRoot(other.acs.root));
    const std::string text = "Can not get CEK.";
    expectRaised(InvalidInputException, text, "SessionKeys.cpp encryptCReq(_:_:)",
                 [&] { return container.encryptCReq(toBytes("{}"), kAcsTransactionId); });
    expectRaised(InvalidInputException, text, "SessionKeys.cpp decryptCRes(_:)",
                 [&] { return container.decryptCRes(asBytes(other.sealedByAcs("{}"))); });
    EXPECT_RAISES(JOSEErrorCase::invalidCompactSerializationComponentCount,
                  container.decryptCRes(asBytes("{}")));
}

TEST(Session, TextsThatAreNotUtf8AreRefused) {
    const PlayedAcs acs;
    KeysContainer container(certsWithRoot(acs.root));
    static_cast<void>(container.getEphemeralPublicKey());
    expectRaised(SDKRuntimeException, "Can not get partyVInfo.", kDecryptSite,
                 [&] { return container.parseAcsSignedContent(acs.signedContent(), "\xFF"); });
    expectRaised(InvalidInputException, "Can not get serialize JWE.", "SessionKeys.cpp encryptCReq(_:_:)",
                 [] { return Session().container.encryptCReq(toBytes("{}"), "\xFF"); });
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
    EXPECT_RAISES(InvalidInputException, container.encryptCReq(toBytes("{}"), kAcsTransactionId));
    EXPECT_EQ(container.parseAcsSignedContent(acs.signedContent(), kReferenceNumber),
              "https://acs.example/challenge");
}

} // namespace
} // namespace korvane
