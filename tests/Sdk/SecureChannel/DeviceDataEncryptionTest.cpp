#include "Crypt/EC.h"
#include "Crypt/JWE.h"
#include "Sdk/Events/SdkError.h"
#include "tests/support/Failures.h"
#include "tests/support/PlayedAcs.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace korvane {
namespace {

using enum SdkErrorCase;

constexpr const char* kDirectoryServer = "F170738365";
constexpr const char* kDocument = R"({"DV":"1.4","DD":{"C001":"iOS"}})";

TransactionCerts certsFor(const TestIdentity& identity, CertAlgorithm algorithm) {
    return {identity.der, {}, algorithm, kDirectoryServer};
}

std::string sealed(const TransactionCerts& certs) {
    return KeysContainer(certs).getEncryptedDeviceInfo(asBytes(kDocument));
}

TEST(DeviceData, HeadersHaveNoFurtherMemberAndKeysAreNewEachTime) {
    const TransactionCerts rsa = certsFor(selfSigned({.key = TestKeyType::rsa2048}), CertAlgorithm::RSA);
    const JWE jwe(sealed(rsa));
    EXPECT_EQ(jwe.header().parameters(), JSON({{"alg", "RSA-OAEP-256"}, {"enc", "A128CBC-HS256"}}));
    EXPECT_NE(JWE(sealed(rsa)).encryptedKey(), jwe.encryptedKey());

    const TransactionCerts ec = certsFor(selfSigned({}), CertAlgorithm::EC);
    const JSON header = JWE(sealed(ec)).header().parameters();
    const JSON epk = header["epk"];
    EXPECT_EQ(header, JSON({{"alg", "dir"}, {"enc", "A128CBC-HS256"}, {"epk", epk}}));
    EXPECT_EQ(epk.size(), 6U) << "the whole pair";
    EXPECT_NE(JWE(sealed(ec)).header().parameters()["epk"], epk);
}

TEST(CertificateFiles, EachServesItsOwnPurpose) {
    const auto line = authorities(2);
    const TestIdentity server = selfSigned({});
    const TemporaryFolder folder;
    folder.write("server.cer", server.der);
    folder.write("root.cer", line[0].der);
    KeysContainer container(DevInfoCert{"server.cer", "root.cer", kDirectoryServer, CertAlgorithm::EC,
                                        NSBundle::bundleWithPath(folder.path())});
    const JWE jwe(container.getEncryptedDeviceInfo(asBytes(kDocument)));
    const auto keyFor = [&](const char* directoryServer) {
        return peerKey(ECPrivateKey(server.privateKey()), *jwe.header().epk(), directoryServer);
    };
    EXPECT_EQ(asText(jwe.decrypt(keyFor(kDirectoryServer)).data()), kDocument);
    EXPECT_RAISES(JOSEErrorCase::decryptingFailed, jwe.decrypt(keyFor("F170738366")));

    // Through the intermediates of the signed content, in any order, up to the root.
    const PlayedAcs acs;
    const TestIdentity leaf = line[2].issue({});
    const std::vector<std::string> x5c{leaf.base64(), line[1].base64(), line[2].base64()};
    static_cast<void>(container.getEphemeralPublicKey());
    EXPECT_EQ(
        container.parseAcsSignedContent(PlayedAcs::signedBy(leaf, x5c, acs.payload()), kReferenceNumber),
        "https://acs.example/challenge");
}

TEST(DeviceData, UnusableCertificatesAndNamesAreRefused) {
    const TransactionCerts good = certsFor(selfSigned({}), CertAlgorithm::EC);
    TransactionCerts nameless = good, misnamed = good, damaged = good;
    nameless.directoryServerIDAkaRID.reset();
    misnamed.directoryServerIDAkaRID = "\xFF";
    damaged.deviceInfoEncCertDerBytes.pop_back();
    const TransactionCerts keyless = certsFor(selfSigned({.key = TestKeyType::ed25519}), CertAlgorithm::EC);

    const std::pair<TransactionCerts, const char*> rows[] = {
        {damaged, "Can not load certificate for device info encryption."},
        {keyless, "Can not get dePublicKey."},
        {nameless, "Can not calculate partyVInfo."},
        {misnamed, "Can not calculate partyVInfo."},
    };
    for (const auto& row : rows)
        EXPECT_RAISES_SAYING(InvalidInputException, row.second, sealed(row.first));
}

} // namespace
} // namespace korvane
