#include "Crypt/EC.h"
#include "Crypt/JWE.h"
#include "tests/Sdk/SecureChannel/ChannelSupport.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using enum SdkErrorCase;
using testing::ElementsAre;

constexpr const char* kDirectoryServer = "F170738365";
constexpr const char* kDocument = R"({"DV":"1.4","DD":{"C001":"iOS"}})";
constexpr auto kEnc = ContentEncryptionAlgorithm::A128CBCHS256;

TransactionCerts certsFor(const TestIdentity& identity, CertAlgorithm algorithm) {
    return {identity.der, {}, algorithm, kDirectoryServer};
}

std::string sealed(const TransactionCerts& certs) {
    return KeysContainer(certs).getEncryptedDeviceInfo(asBytes(kDocument));
}

std::vector<std::string> namesOf(const JSON& object) {
    std::vector<std::string> names;
    for (const auto& [name, value] : object.items())
        names.push_back(name);
    std::sort(names.begin(), names.end());
    return names;
}

TEST(RsaDeviceData, IsOpenedByTheDirectoryServersPrivateKey) {
    const TestIdentity server = selfSigned({.key = TestKeyType::rsa2048});
    const TransactionCerts certs = certsFor(server, CertAlgorithm::RSA);
    const JWE jwe(sealed(certs));
    EXPECT_EQ(jwe.header().parameters(), JSON({{"alg", "RSA-OAEP-256"}, {"enc", "A128CBC-HS256"}}));
    EXPECT_EQ(jwe.encryptedKey().size(), 256U);
    const auto decrypter = Decrypter::make(KeyManagementAlgorithm::RSAOAEP256, kEnc, server.privateKey());
    EXPECT_EQ(asText(jwe.decrypt(*decrypter).data()), kDocument);
    EXPECT_NE(JWE(sealed(certs)).encryptedKey(), jwe.encryptedKey());
}

TEST(EcDeviceData, IsOpenedByADirectoryServerThatKnowsItsIdentifier) {
    const TestIdentity server = selfSigned({});
    const TransactionCerts certs = certsFor(server, CertAlgorithm::EC);
    const JWE jwe(sealed(certs));
    const JSON& header = jwe.header().parameters();
    EXPECT_THAT(namesOf(header), ElementsAre("alg", "enc", "epk"));
    EXPECT_EQ(header["alg"], "dir");
    EXPECT_EQ(header["enc"], "A128CBC-HS256");
    EXPECT_THAT(namesOf(header["epk"]), ElementsAre("crv", "d", "kid", "kty", "x", "y"));
    EXPECT_TRUE(ECPrivateKey::decode(header["epk"]).isCorrespondWith(*jwe.header().epk()));
    EXPECT_TRUE(jwe.encryptedKey().empty());

    const ECPrivateKey serverKey(server.privateKey());
    const SecretBytes key = peerKey(serverKey, *jwe.header().epk(), kDirectoryServer);
    EXPECT_EQ(asText(jwe.decrypt(key).data()), kDocument);
    const SecretBytes another = peerKey(serverKey, *jwe.header().epk(), "F170738366");
    EXPECT_RAISES(JOSEErrorCase::decryptingFailed, jwe.decrypt(another));
    EXPECT_NE(JWE(sealed(certs)).header().parameters()["epk"], header["epk"]);
}

TEST(DeviceData, IsSealedForTheCertificateOfAFile) {
    const TestIdentity server = selfSigned({});
    const TemporaryFolder folder;
    folder.write("server.cer", server.der);
    KeysContainer container(DevInfoCert{"server.cer", "", kDirectoryServer, CertAlgorithm::EC,
                                        NSBundle::bundleWithPath(folder.path())});
    const JWE jwe(container.getEncryptedDeviceInfo(asBytes(kDocument)));
    const SecretBytes key = peerKey(ECPrivateKey(server.privateKey()), *jwe.header().epk(), kDirectoryServer);
    EXPECT_EQ(asText(jwe.decrypt(key).data()), kDocument);
}

TEST(DeviceData, FailuresAreLoggedAndRaised) {
    const TestIdentity ec = selfSigned({});
    const TestIdentity keyless = selfSigned({.key = TestKeyType::ed25519});
    TransactionCerts nameless = certsFor(ec, CertAlgorithm::EC);
    nameless.directoryServerIDAkaRID.reset();
    TransactionCerts misnamed = nameless;
    misnamed.directoryServerIDAkaRID = "\xFF";
    TransactionCerts damaged = certsFor(ec, CertAlgorithm::EC);
    damaged.deviceInfoEncCertDerBytes.pop_back();

    const std::string file = "DeviceDataEncryption.cpp ";
    const std::string rsa = file + "encryptDevInfoWithRsa(deviceInfo:)";
    const std::string ecSite = file + "encryptDevInfoWithEc(deviceInfo:)";
    struct Row {
        const char* name;
        TransactionCerts certs;
        std::string text;
        std::string site;
    };
    const std::vector<Row> rows{
        {"bytes that are no certificate", damaged, "Can not load certificate for device info encryption.",
         file + "getEncryptedDeviceInfo(_:)"},
        {"RSA, key of no known type", certsFor(keyless, CertAlgorithm::RSA), "Can not get dePublicKey", rsa},
        {"EC, key of no known type", certsFor(keyless, CertAlgorithm::EC), "Can not get dePublicKey.",
         ecSite},
        {"EC, no identifier", nameless, "Can not calculate partyVInfo.", ecSite},
        {"EC, identifier that is no text", misnamed, "Can not calculate partyVInfo.", ecSite},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        expectRaised(InvalidInputException, row.text, row.site, [&] { return sealed(row.certs); });
    }
}

TEST(DeviceData, FailuresOfTheJoseLayerPassThroughUnlogged) {
    const TestIdentity ec = selfSigned({});
    const TestIdentity wide = selfSigned({.key = TestKeyType::p384});
    const TestIdentity rsa = selfSigned({.key = TestKeyType::rsa2048});
    const RecordingLogger log;
    EXPECT_RAISES(JOSEErrorCase::couldNotConstructJWK, sealed(certsFor(rsa, CertAlgorithm::EC)));
    EXPECT_RAISES(JOSEErrorCase::encryptingFailed, sealed(certsFor(ec, CertAlgorithm::RSA)));
    EXPECT_RAISES(ECErrorCase::deriveKeyFail, sealed(certsFor(wide, CertAlgorithm::EC)));
    EXPECT_THAT(log.lines(), testing::Not(testing::Contains(testing::StartsWith("Sdk/"))));
}

} // namespace
} // namespace korvane
