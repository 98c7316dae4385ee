#include "Sdk/Events/SdkError.h"
#include "Sdk/SecureChannel/CertificateMemo.h"
#include "Sdk/SecureChannel/KeysContainer.h"
#include "tests/support/Failures.h"
#include "tests/support/SimulatedPlatform.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestPki.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using enum SdkErrorCase;

DevInfoCert filesOf(std::shared_ptr<NSBundle> bundle) {
    return {"server.cer", "root.cer", "F170738365", CertAlgorithm::EC, std::move(bundle)};
}

SecretBytes keyOf(const SecCertificate& certificate) {
    return SecKeyCopyExternalRepresentation(*SecCertificateCopyKey(certificate));
}
SecretBytes keyOf(const TestIdentity& identity) {
    return SecKeyCopyExternalRepresentation(SecKeyCopyPublicKey(identity.privateKey()));
}

Bytes longer(const TestIdentity& identity) {
    Bytes bytes = identity.der;
    bytes.push_back(0);
    return bytes;
}

TEST(CertificateFile, IsFoundByTheFirstTwoPiecesOfItsNameInItsBundleOrTheMainOne) {
    const TemporaryFolder folder, main;
    const TestIdentity server = selfSigned({});
    const TestIdentity ofTheMainBundle = selfSigned({});
    folder.write("server.cer", server.der);
    folder.write("bare", server.der);
    main.write("server.cer", ofTheMainBundle.der);
    SimulatedPlatform device;
    device.script().mainBundlePath = main.path();
    const KeysContainer container(filesOf(NSBundle::bundleWithPath(folder.path())));
    for (const char* name : {"server.cer", "server.cer.old", ".server..cer.", "bare"})
        EXPECT_EQ(keyOf(container.loadCert(name)), keyOf(server)) << name;
    for (const KeysContainer& other : {KeysContainer(filesOf(nullptr)), KeysContainer(TransactionCerts())})
        EXPECT_EQ(keyOf(other.loadCert("server.cer")), keyOf(ofTheMainBundle));
}

TEST(CertificateFile, FailuresNameIt) {
    const TemporaryFolder folder;
    const TestIdentity identity = selfSigned({});
    std::filesystem::create_directory(folder.path() + "/folder.cer");
    folder.write("empty.cer", {});
    folder.write("pem.cer", asBytes("-----BEGIN CERTIFICATE-----\n" + identity.base64()));
    folder.write("longer.cer", longer(identity));
    const KeysContainer container(filesOf(NSBundle::bundleWithPath(folder.path())));
    for (const std::string name : {"missing.cer", "folder.cer", ""})
        EXPECT_RAISES_SAYING(InvalidInputException, "Can not get bundle url for cert file " + name,
                             container.loadCert(name));
    for (const std::string name : {"empty.cer", "pem.cer", "longer.cer"})
        EXPECT_RAISES_SAYING(SDKRuntimeException, "Can not create SecCertificate for file " + name,
                             container.loadCert(name));
}

/// More than are remembered, so that the second round finds some and makes some anew.
TEST(CertificateMemo, GivesEachOfManyCertificatesItsOwnKeyAndNoneForOtherBytes) {
    std::vector<TestIdentity> identities;
    for (int count = 0; count < 20; ++count)
        identities.push_back(selfSigned({}));
    for (const char* round : {"first", "second"}) {
        SCOPED_TRACE(round);
        for (auto identity = identities.rbegin(); identity != identities.rend(); ++identity) {
            EXPECT_EQ(keyOf(rememberedCertificate(identity->der).value()), keyOf(*identity));
            EXPECT_FALSE(rememberedCertificate(longer(*identity)));
            EXPECT_FALSE(rememberedCertificate(ByteView(identity->der).first(identity->der.size() - 1)));
        }
    }
}

} // namespace
} // namespace korvane
