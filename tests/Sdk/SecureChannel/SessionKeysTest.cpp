#include "Crypt/EC.h"
#include "Crypt/JWE.h"
#include "Sdk/Events/SdkError.h"
#include "tests/support/Failures.h"
#include "tests/support/PlayedAcs.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using enum SdkErrorCase;

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
    EXPECT_RAISES(InvalidInputException, session.container.encryptCReq(toBytes("{}"), "\xFF"));
}

TEST(Session, ResponsesOpenWhateverTheirKeyIdentifierAndStrangersDoNot) {
    Session session;
    const std::string good = session.sealedByAcs("{}");
    std::string damaged = good;
    damaged[damaged.size() - 10] = damaged[damaged.size() - 10] == 'A' ? 'B' : 'A';
    for (const std::string& sealed : {damaged, Session().sealedByAcs("{}")})
        EXPECT_RAISES(JOSEErrorCase::decryptingFailed, session.opened(sealed));
    const Bytes named = session.container.encryptCReq(toBytes("[]"), "anybody");
    EXPECT_EQ(session.opened(std::string(asText(named))), "[]");
    // A second signed content has no pair to agree with, and leaves the key.
    EXPECT_RAISES_SAYING(
        InvalidInputException, "Can not get private key from ephemeral KeyPair.",
        session.container.parseAcsSignedContent(session.acs.signedContent(), kReferenceNumber));
    EXPECT_EQ(session.opened(good), "{}");
}

} // namespace
} // namespace korvane
