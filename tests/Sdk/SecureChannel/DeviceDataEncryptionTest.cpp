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

TEST(DeviceData, HeadersHaveNoFurtherMemberAndKeysAreNewEachTime) {
    const TransactionCerts rsa = certsFor(selfSigned({.key = TestKeyType::rsa2048}), CertAlgorithm::RSA);
    const JWE jwe(sealed(rsa));
    EXPECT_EQ(jwe.header().parameters(), JSON({{"alg", "RSA-OAEP-256"}, {"enc", "A128CBC-HS256"}}));
    EXPECT_NE(JWE(sealed(rsa)).encryptedKey(), jwe.encryptedKey());

    const TransactionCerts ec = certsFor(selfSigned({}), CertAlgorithm::EC);
    const JSON header = JWE(sealed(ec)).header().parameters();
    EXPECT_THAT(namesOf(header), ElementsAre("alg", "enc", "epk"));
    EXPECT_THAT(namesOf(header["epk"]), ElementsAre("crv", "d", "kid", "kty", "x", "y"));
    EXPECT_NE(JWE(sealed(ec)).header().parameters()["epk"], header["epk"]);
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

TEST(DeviceData, FailuresAreLoggedAndRaised) {
    const TestIdentity ec = selfSigned({});
    const TestIdentity keyless = selfSigned({.key = TestKeyType::ed25519});
    TransactionCerts nameless = certsFor(ec, CertAlgorithm::EC);
    nameless.directoryServerIDAkaRID.reset();
    TransactionCerts misnamed = nameless;
    misnamed.directoryServerIDAkaRID = "\xFF";
    TransactionCerts damaged = certsFor(ec, CertAlgorithm::EC);
    damaged.deviceInfoEncCertDerBytes.pop_back();

    const char* const rsaSite = "encryptDevInfoWithRsa(deviceInfo:)";
    const char* const ecSite = "encryptDevInfoWithEc(deviceInfo:)";
    const std::tuple<TransactionCerts, const char*, const char*> rows[] = {
        {damaged, "Can not load certificate for device info encryption.", "getEncryptedDeviceInfo(_:)"},
        {certsFor(keyless, CertAlgorithm::RSA), "Can not get dePublicKey", rsaSite},
        {certsFor(keyless, CertAlgorithm::EC), "Can not get dePublicKey.", ecSite},
        {nameless, "Can not calculate partyVInfo.", ecSite},
        {misnamed, "Can not calculate partyVInfo.", ecSite},
    };
    for (const auto& row : rows)
        expectRaised(InvalidInputException, std::get<1>(row),
                     std::string("DeviceDataEncryption.cpp ") + std::get<2>(row),
                     [&] { return sealed(std::get<0>(row)); });
}

TEST(DeviceData, FailuresOfTheJoseLayerPassThroughUnlogged) {
    const TestIdentity wide = selfSigned({.key = TestKeyType::p384});
    const TestIdentity rsa = selfSigned({.key = TestKeyType::rsa2048});
    const RecordingLogger log;
    EXPECT_RAISES(JOSEErrorCase::couldNotConstructJWK, sealed(certsFor(rsa, CertAlgorithm::EC)));
    EXPECT_RAISES(JOSEErrorCase::encryptingFailed, sealed(certsFor(wide, CertAlgorithm::RSA)));
    EXPECT_RAISES(ECErrorCase::deriveKeyFail, sealed(certsFor(wide, CertAlgorithm::EC)));
    EXPECT_THAT(log.lines(), testing::Not(testing::Contains(testing::StartsWith("Sdk/"))));
}

} // namespace
} // namespace korvane
