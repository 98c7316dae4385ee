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
    ThreeDS2ServiceTest() { service_.setCertProducer(directoryServer_); }

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
        const std::string text = "Can not get ConfigParameters.";
        EXPECT_RAISES_SAYING(SDKNotInitializedException, text, service_.getSDKVersion());
        EXPECT_RAISES_SAYING(SDKNotInitializedException, text, service_.getWarnings());
        EXPECT_RAISES_SAYING(SDKNotInitializedException, text, service_.createTransaction("", ""));
        const std::string site = "Sdk/Service/ThreeDS2Service.cpp ";
        EXPECT_THAT(log.lines(),
                    ElementsAre(site + "getSDKVersion(): " + text, site + "getWarnings(): " + text,
                                site + "createTransaction(directoryServerID:messageVersion:): " + text));
    };
    isRefused();
    initialize();
    EXPECT_EQ(service_.getSDKVersion(), "1.0.0");
    EXPECT_TRUE(service_.getWarnings().empty());
    service_.cleanup();
    isRefused();
}

TEST_F(ThreeDS2ServiceTest, WhatAnInitializeFindsIsAddedAndWhatItIsGivenReplaces) {
    platform_.script().isDebuggerAttached = true;
    const RecordingLogger log;
    initialize("fr_CA");
    EXPECT_EQ(Logger::shared().debug(), nullptr);
    const auto before = service_.createTransaction("any", "2.1.0");
    service_.cleanup();
    platform_.script().isOSVersionSupported = false;
    initialize("de");
    const Warning debugger(Severity::MEDIUM, "SW4", "A debugger is attached to the App.");
    const Warning system(Severity::HIGH, "SW5", "The OS or the OS version is not supported.");
    EXPECT_THAT(service_.getWarnings(), ElementsAre(debugger, debugger, system));
    const DeviceInfo info = directoryServer_->open(*service_.createTransaction("any", "2.1.0"));
    EXPECT_THAT(info.securityWarning.value(), ElementsAre("SW4", "SW4", "SW5"));
    EXPECT_EQ(info.deviceData.at("C005"), "de");
    EXPECT_EQ(info.deviceData.at("C015"), "1.0.0");
    EXPECT_EQ(directoryServer_->open(*before).deviceData.at("C005"), "fr-CA");
}

/// The identifier of the installation is read anew for each.
TEST_F(ThreeDS2ServiceTest, TransactionCarriesVersionReferenceAndTheIdentifierOfItsDeviceData) {
    platform_.script().identifierForVendor.reset();
    initialize();
    const auto identifierUnder = [this](const std::string& version) {
        const auto transaction = service_.createTransaction("any", version);
        const auto request = transaction->getAuthenticationRequestParameters();
        EXPECT_EQ(request.getMessageVersion(), version);
        EXPECT_EQ(request.getSDKReferenceNumber(), "3DS_LOA_SDK_QXRV_020200_00417");
        const DeviceInfo info = directoryServer_->open(*transaction);
        EXPECT_EQ(info.deviceData.at("C014"), request.getSDKAppID());
        EXPECT_EQ(info.securityWarning, std::nullopt);
        return request.getSDKAppID();
    };
    EXPECT_EQ(identifierUnder("2.1.0"), identifierUnder("2.2.0"));
    platform_.script().identifierForVendor = "AB";
    EXPECT_EQ(identifierUnder("2.2.0"), "ab");
    EXPECT_THAT(directoryServer_->asked, ElementsAre("any", "any", "any"));
}

TEST_F(ThreeDS2ServiceTest, RefusedTransactionsTellTheFirstReason) {
    ThreeDS2Service withoutProducer;
    withoutProducer.initialize(std::make_shared<ConfigParameters>(), nullptr, nullptr, Locale{"de"});
    initialize();
    const std::string noData = "Can not create DeviceInfo Jwe";
    EXPECT_RAISES_SAYING(InvalidInputException, "Missing DevInfoCert for A0",
                         withoutProducer.createTransaction("A0", "9"));
    EXPECT_RAISES_SAYING(SDKRuntimeException, noData,
                         withoutProducer.createTransaction("F070738365", "2.2.0"))
        << "the test directory servers' files lie in no bundle here";
    for (const std::string version : {"2.1", " 2.1.0", "2.2.0 ", "2.3.0", ""})
        EXPECT_RAISES_SAYING(InvalidInputException, "Message version " + version + " not supported",
                             service_.createTransaction("F070738365", version));
    EXPECT_THROW(static_cast<void>(service_.createTransaction("unknown", "9")), std::runtime_error);

    const RecordingLogger log;
    directoryServer_->identity.der = toBytes("no certificate");
    EXPECT_RAISES_SAYING(SDKRuntimeException, noData, service_.createTransaction("any", "2.2.0"));
    EXPECT_EQ(log.lines().back(), "Sdk/Service/ThreeDS2Service.cpp createTransaction("
                                  "directoryServerID:messageVersion:): " +
                                      noData);
}

} // namespace
} // namespace korvane
