#include "Crypt/DataExtensions.h"
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

TEST(CertificateFile, IsFoundByTheFirstTwoPiecesOfItsName) {
    const TemporaryFolder folder;
    const TestIdentity identity = selfSigned({});
    folder.write("server.cer", identity.der);
    folder.write("bare", identity.der);
    const KeysContainer container(filesOf(NSBundle::bundleWithPath(folder.path())));
    for (const char* name : {"server.cer", "server.cer.old", ".server..cer.", "bare", "bare."}) {
        SCOPED_TRACE(name);
        EXPECT_NO_THROW(static_cast<void>(container.loadCert(name)));
    }
}

TEST(CertificateFile, WithoutABundleComesFromTheMainBundle) {
    const TemporaryFolder folder;
    folder.write("server.cer", selfSigned({}).der);
    ScriptedDevice device;
    device.script().mainBundlePath = folder.path();
    EXPECT_NO_THROW(static_cast<void>(KeysContainer(filesOf(nullptr)).loadCert("server.cer")));
    EXPECT_NO_THROW(static_cast<void>(KeysContainer(TransactionCerts()).loadCert("server.cer")));
}

TEST(CertificateFile, FailuresAreLoggedAndRaised) {
    const TemporaryFolder folder;
    const TestIdentity identity = selfSigned({});
    std::filesystem::create_directory(folder.path() + "/folder.cer");
    folder.write("empty.cer", {});
    folder.write("pem.cer", asBytes("-----BEGIN CERTIFICATE-----\n" + identity.base64()));
    Bytes longer = identity.der;
    longer.push_back(0);
    folder.write("longer.cer", longer);
    const auto bundle = NSBundle::bundleWithPath(folder.path());
    const std::string noUrl = "Can not get bundle url for cert file ";
    const std::string noCertificate = "Can not create SecCertificate for file ";

    struct Row {
        std::string name;
        std::shared_ptr<NSBundle> bundle;
        SdkErrorCase kind;
        std::string text;
    };
    const std::vector<Row> rows{
        {"missing.cer", bundle, InvalidInputException, noUrl + "missing.cer"},
        {"folder.cer", bundle, InvalidInputException, noUrl + "folder.cer"},
        {"", bundle, InvalidInputException, noUrl},
        {"..", bundle, InvalidInputException, noUrl + ".."},
        {"lost.cer", std::make_shared<BrokenBundle>(), InvalidInputException,
         "Can not load cert file lost.cer : No such file or directory"},
        {"empty.cer", bundle, SDKRuntimeException, noCertificate + "empty.cer"},
        {"pem.cer", bundle, SDKRuntimeException, noCertificate + "pem.cer"},
        {"longer.cer", bundle, SDKRuntimeException, noCertificate + "longer.cer"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        expectRaised(row.kind, row.text, "KeysContainer.cpp loadCert(_:)",
                     [&] { return KeysContainer(filesOf(row.bundle)).loadCert(row.name); });
    }
}

TEST(CertificateTexts, KeepTheirOrder) {
    const std::vector<TestIdentity> line = authorities(1);
    const auto certificates = KeysContainer::convertStringsToCerts({line[1].base64(), line[0].base64()});
    ASSERT_EQ(certificates.size(), 2U);
    for (const std::size_t index : {0U, 1U})
        EXPECT_EQ(SecKeyCopyExternalRepresentation(*SecCertificateCopyKey(certificates[index])),
                  SecKeyCopyExternalRepresentation(SecKeyCopyPublicKey(line[1 - index].privateKey())));
}

TEST(CertificateTexts, FirstBadOneIsLoggedAndRaised) {
    const TestIdentity identity = selfSigned({});
    const std::string good = identity.base64();
    Bytes longer = identity.der;
    longer.push_back(0);
    const std::string notBase64 = "Can not decode base64 cert ";
    const std::string noCertificate = "Can not create cert from data for certString ";
    struct Row {
        const char* name;
        std::string text;
        std::string failure;
        /// How the text is quoted and logged, where that differs.
        std::string quoted = text;
        std::string logged = quoted;
    };
    const std::vector<Row> rows{
        {"line feed behind", "MAAA\n", notBase64, "MAAA\n", "MAAA\\u000a"},
        {"blank inside", "MA ==", notBase64},
        {"the other alphabet", "-_-_", notBase64},
        {"no padding", "MA", notBase64},
        {"more than is quoted", std::string(1001, '*'), notBase64, std::string(1000, '*')},
        {"nothing", "", noCertificate},
        {"no certificate", "MAAA", noCertificate},
        {"bytes behind the certificate", base64EncodedString(longer), noCertificate},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        expectRaised(
            SDKRuntimeException, row.failure + row.quoted, "KeysContainer.cpp convertStringsToCerts(_:)",
            [&] {
                return KeysContainer::convertStringsToCerts({good, row.text, "later"});
            },
            row.failure + row.logged);
    }
}

} // namespace
} // namespace korvane
