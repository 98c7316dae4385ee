#include "Crypt/DataExtensions.h"
#include "Sdk/SecureChannel/CertificateMemo.h"
#include "tests/Sdk/SecureChannel/ChannelSupport.h"
#include "tests/support/ScriptedDevice.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using enum SdkErrorCase;

DevInfoCert filesOf(std::shared_ptr<NSBundle> bundle) {
    return {"server.cer", "root.cer", "F170738365", CertAlgorithm::EC, std::move(bundle)};
}

/// A bundle that promises a file which is not there.
struct BrokenBundle : FolderBundle {
    BrokenBundle() : FolderBundle("/nonexistent") {}
    [[nodiscard]] std::optional<std::string> URLForResource(const std::string& name,
                                                            const std::string& extension) const override {
        return "/nonexistent/" + name + "." + extension;
    }
};

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
    const TemporaryFolder folder;
    const TemporaryFolder main;
    const TestIdentity server = selfSigned({});
    const TestIdentity bare = selfSigned({});
    const TestIdentity ofTheMainBundle = selfSigned({});
    folder.write("server.cer", server.der);
    folder.write("bare", bare.der);
    main.write("server.cer", ofTheMainBundle.der);
    ScriptedDevice device;
    device.script().mainBundlePath = main.path();
    const KeysContainer container(filesOf(NSBundle::bundleWithPath(folder.path())));
    for (const char* name : {"server.cer", "server.cer.old", ".server..cer."})
        EXPECT_EQ(keyOf(container.loadCert(name)), keyOf(server)) << name;
    for (const char* name : {"bare", "bare."})
        EXPECT_EQ(keyOf(container.loadCert(name)), keyOf(bare)) << name;
    for (const KeysContainer& other : {KeysContainer(filesOf(nullptr)), KeysContainer(TransactionCerts())})
        EXPECT_EQ(keyOf(other.loadCert("server.cer")), keyOf(ofTheMainBundle));
}

TEST(CertificateFile, FailuresAreLoggedAndRaised) {
    const TemporaryFolder folder;
    const TestIdentity identity = selfSigned({});
    std::filesystem::create_directory(folder.path() + "/folder.cer");
    folder.write("empty.cer", {});
    folder.write("pem.cer", asBytes("-----BEGIN CERTIFICATE-----\n" + identity.base64()));
    folder.write("longer.cer", longer(identity));
    const auto bundle = NSBundle::bundleWithPath(folder.path());
    const auto fails = [](const auto& from, const std::string& name, SdkErrorCase kind,
                          const std::string& text) {
        SCOPED_TRACE(name);
        expectRaised(kind, text, "KeysContainer.cpp loadCert(_:)",
                     [&] { return KeysContainer(filesOf(from)).loadCert(name); });
    };
    for (const std::string name : {"missing.cer", "folder.cer", "", ".."})
        fails(bundle, name, InvalidInputException, "Can not get bundle url for cert file " + name);
    for (const std::string name : {"empty.cer", "pem.cer", "longer.cer"})
        fails(bundle, name, SDKRuntimeException, "Can not create SecCertificate for file " + name);
    fails(std::make_shared<BrokenBundle>(), "lost.cer", InvalidInputException,
          "Can not load cert file lost.cer : No such file or directory");
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

TEST(CertificateTexts, KeepTheirOrder) {
    const std::vector<TestIdentity> line = authorities(1);
    const auto certificates = KeysContainer::convertStringsToCerts({line[1].base64(), line[0].base64()});
    ASSERT_EQ(certificates.size(), 2U);
    for (const std::size_t index : {0U, 1U})
        EXPECT_EQ(keyOf(certificates[index]), keyOf(line[1 - index]));
}

TEST(CertificateTexts, FirstBadOneIsLoggedAndRaised) {
    const TestIdentity identity = selfSigned({});
    const auto fails = [&](const std::string& text, const std::string& says, const std::string& logged) {
        expectRaised(
            SDKRuntimeException, says, "KeysContainer.cpp convertStringsToCerts(_:)",
            [&] {
                return KeysContainer::convertStringsToCerts({identity.base64(), text, "later"});
            },
            logged);
    };
    const std::string notBase64 = "Can not decode base64 cert ";
    const std::string noCertificate = "Can not create cert from data for certString ";
    for (const std::string text : {"MA ==", "-_-_", "MA"})
        fails(text, notBase64 + text, notBase64 + text);
    for (const std::string& text :
         {std::string(), std::string("MAAA"), base64EncodedString(longer(identity))})
        fails(text, noCertificate + text, noCertificate + text);
    fails("MAAA\n", notBase64 + "MAAA\n", notBase64 + "MAAA\\u000a");
    const std::string quoted = notBase64 + std::string(1000, '*');
    fails(std::string(1001, '*'), quoted, quoted);
}

} // namespace
} // namespace korvane
