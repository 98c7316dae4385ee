#include "Sdk/SecureChannel/CertificateMemo.h"

#include "tests/support/TestPki.h"

#include <gtest/gtest.h>

namespace korvane {
namespace {

/// More than are remembered, so that the second round finds some and makes some anew.
TEST(CertificateMemo, GivesEachOfManyCertificatesItsOwnKey) {
    std::vector<TestIdentity> identities;
    for (int count = 0; count < 20; ++count)
        identities.push_back(selfSigned({}));
    for (const char* round : {"first", "second"}) {
        SCOPED_TRACE(round);
        for (auto identity = identities.rbegin(); identity != identities.rend(); ++identity) {
            const auto certificate = rememberedCertificate(identity->der);
            ASSERT_TRUE(certificate);
            EXPECT_EQ(SecKeyCopyExternalRepresentation(SecCertificateCopyKey(*certificate).value()),
                      SecKeyCopyExternalRepresentation(SecKeyCopyPublicKey(identity->privateKey())));
        }
    }
}

TEST(CertificateMemo, WhatIsNoCertificateStaysNone) {
    const TestIdentity identity = selfSigned({});
    ASSERT_TRUE(rememberedCertificate(identity.der));
    const ByteView shorter = ByteView(identity.der).first(identity.der.size() - 1);
    Bytes longer = identity.der;
    longer.push_back(0);
    for (const ByteView bytes : {ByteView(), shorter, ByteView(longer)})
        for (int count = 0; count < 2; ++count)
            EXPECT_FALSE(rememberedCertificate(bytes)) << bytes.size();
}

} // namespace
} // namespace korvane
