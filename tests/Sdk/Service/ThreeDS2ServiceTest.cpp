#include "Sdk/Service/ThreeDS2Service.h"

#include "Crypt/Decrypter.h"
#include "Crypt/JWE.h"
#include "Sdk/Events/SdkError.h"
#include "tests/support/Failures.h"
#include "tests/support/PlayedAcs.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/SimulatedPlatform.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using enum SdkErrorCase;
using testing::ElementsAre;

constexpr const char* kNotInitialized = "Can not get ConfigParameters.";

/// A directory server whose private key the test holds.
class PlayedDirectoryServer : public TransactionCertsProducerProtocol {
public:
    [[nodiscard]] TransactionCerts getCerts(const std::string& directoryServerID) override {
        asked.push_back(directoryServerID);
        if (directoryServerID == "unknown") throw std::runtime_error("the application's own words");
        return {identity.der, identity.der, CertAlgorithm::RSA};
    }

    [[nodiscard]] DeviceInfo open(const Transaction& transaction) const {
        const JWE jwe(transaction.getAuthenticationRequestParameters().getDeviceData());
        const auto decrypter =
            Decrypter::make(KeyManagementAlgorithm::RSAOAEP256, ContentEncryptionAlgorithm::A128CBCHS256,
                            identity.privateKey());
        return DeviceInfo::decode(jwe.decrypt(decrypter.value()).data());
    }

    TestIdentity identity = selfSigned({.key = TestKeyType::rsa2048});
    std::vector<std::string> asked;
};

class ThreeDS2ServiceTest : public testing::Test {
protected:
    void initialize(const std::string& locale = "fr_CA") {
        service_.initialize(std::make_shared<ConfigParameters>(), nullptr, nullptr, Locale{locale});
    }

    SimulatedPlatform platform_;
    ThreeDS2Service service_;
    std::shared_ptr<PlayedDirectoryServer> directoryServer_ = std::make_shared<PlayedDirectoryServer>();
};

TEST_F(ThreeDS2ServiceTest, ServiceAnswersBetweenInitializeAndCleanupOnly) {
    const auto isRefused = [this] {
        const RecordingLogger log;
        EXPECT_RAISES_SAYING(SDKNotInitializedException, kNotInitialized, service_.getSDKVersion());
        EXPECT_RAISES_SAYING(SDKNotInitializedException, kNotInitialized, service_.getWarnings());
        EXPECT_RAISES_SAYING(SDKNotInitializedException, kNotInitialized, service_.createTransaction("", ""));
        const std::string site = "Sdk/Service/ThreeDS2Service.cpp ";
        const std::string text = ": Can not get ConfigParameters.";
        EXPECT_THAT(log.lines(),
                    ElementsAre(site + "getSDKVersion()" + text, site + "getWarnings()" + text,
                                site + "createTransaction(directoryServerID:messageVersion:)" + text));
    };
    isRefused();
    initialize();
    EXPECT_EQ(service_.getSDKVersion(), "1.0.0");
    EXPECT_TRUE(service_.getWarnings().empty());
    service_.cleanup();
    isRefused();
}

TEST_F(ThreeDS2ServiceTest, WarningsGrowWithEachInitialize) {
    platform_.script().isDebuggerAttached = true;
    const Warning debugger(Severity::MEDIUM, "SW4", "A debugger is attached to the App.");
    initialize();
    EXPECT_THAT(service_.getWarnings(), ElementsAre(debugger));
    service_.cleanup();
    platform_.script().isDebuggerAttached = false;
    platform_.script().isOSVersionSupported = false;
    initialize();
    EXPECT_THAT(
        service_.getWarnings(),
        ElementsAre(debugger, Warning(Severity::HIGH, "SW5", "The OS or the OS version is not supported.")));
    service_.setCertProducer(directoryServer_);
    const auto transaction = service_.createTransaction("any", "2.2.0");
    EXPECT_THAT(directoryServer_->open(*transaction).securityWarning.value(), ElementsAre("SW4", "SW5"));
}

TEST_F(ThreeDS2ServiceTest, SecondInitializeReplacesConfigurationLoggerAndLocale) {
    const RecordingLogger log;
    initialize("fr_CA");
    EXPECT_EQ(Logger::shared().debug(), nullptr);
    service_.setCertProducer(directoryServer_);
    const auto before = service_.createTransaction("any", "2.1.0");
    service_.initialize(std::make_shared<ConfigParameters>(), nullptr, nullptr, Locale{"de"});
    const auto after = service_.createTransaction("any", "2.1.0");
    EXPECT_EQ(directoryServer_->open(*before).deviceData.at("C005"), "fr-CA");
    EXPECT_EQ(directoryServer_->open(*after).deviceData.at("C005"), "de");
    EXPECT_EQ(directoryServer_->open(*after).deviceData.at("C001"), "iOS");
    EXPECT_EQ(directoryServer_->open(*after).deviceData.at("C015"), "1.0.0");
    EXPECT_EQ(directoryServer_->open(*after).securityWarning, std::nullopt);
}

TEST_F(ThreeDS2ServiceTest, TransactionCarriesApplicationReferenceAndVersion) {
    initialize();
    service_.setCertProducer(directoryServer_);
    for (const std::string version : {"2.1.0", "2.2.0"}) {
        const auto request = service_.createTransaction("any", version)->getAuthenticationRequestParameters();
        EXPECT_EQ(request.getMessageVersion(), version);
        EXPECT_EQ(request.getSDKAppID(), "6ba7b810-9dad-41d1-80b4-00c04fd430c8");
        EXPECT_EQ(request.getSDKReferenceNumber(), "3DS_LOA_SDK_QXRV_020200_00417");
    }
    EXPECT_THAT(directoryServer_->asked, ElementsAre("any", "any"));
}

TEST_F(ThreeDS2ServiceTest, IdentifierOfTheInstallationIsReadForEachTransactionAndIsTheOneInItsDeviceData) {
    platform_.script().identifierForVendor.reset();
    initialize();
    service_.setCertProducer(directoryServer_);
    const auto identifier = [this] {
        const auto transaction = service_.createTransaction("any", "2.2.0");
        std::string read = transaction->getAuthenticationRequestParameters().getSDKAppID();
        EXPECT_EQ(directoryServer_->open(*transaction).deviceData.at("C014"), read);
        return read;
    };
    const std::string made = identifier();
    EXPECT_EQ(identifier(), made);
    platform_.script().identifierForVendor = "AB";
    EXPECT_EQ(identifier(), "ab");
}

TEST_F(ThreeDS2ServiceTest, RefusedTransactionsTellTheFirstReason) {
    initialize();
    const auto create = [this](const std::string& server, const std::string& version) {
        return [=, this] { return service_.createTransaction(server, version); };
    };
    EXPECT_RAISES_SAYING(InvalidInputException, "Missing DevInfoCert for A0", create("A0", "9")());
    EXPECT_RAISES_SAYING(SDKRuntimeException, "Can not create DeviceInfo Jwe",
                         create("F070738365", "2.2.0")())
        << "the test directory servers' files lie in no bundle here";

    service_.setCertProducer(directoryServer_);
    for (const std::string version : {"2.1", "2.0.1", " 2.1.0", "2.2.0 ", "2.3.0", ""})
        EXPECT_RAISES_SAYING(InvalidInputException, "Message version " + version + " not supported",
                             create("F070738365", version)());
    EXPECT_THROW(static_cast<void>(create("unknown", "2.2.0")()), std::runtime_error);

    const RecordingLogger log;
    directoryServer_->identity.der = toBytes("no certificate");
    EXPECT_RAISES_SAYING(SDKRuntimeException, "Can not create DeviceInfo Jwe", create("any", "2.2.0")());
    EXPECT_EQ(log.lines().back(), "Sdk/Service/ThreeDS2Service.cpp createTransaction("
                                  "directoryServerID:messageVersion:): Can not create DeviceInfo Jwe");
}

} // namespace
} // namespace korvane
