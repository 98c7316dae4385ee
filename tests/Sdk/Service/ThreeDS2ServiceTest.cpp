#include "Sdk/Service/ThreeDS2Service.h"

#include "Crypt/JWE.h"
#include "Sdk/DeviceData/DeviceInfo.h"
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
        const SecKey key = identity.privateKey();
        return DeviceInfo::decode(jwe.decrypt(key).data());
    }

    TestIdentity identity = selfSigned({.key = TestKeyType::rsa2048});
    std::vector<std::string> asked;
};

class ThreeDS2ServiceTest : public testing::Test {
protected:
    ThreeDS2ServiceTest() { service_.setCertProducer(directoryServer_); }

    void initialize(const char* locale = "fr_CA") {
        service_.initialize(std::make_shared<ConfigParameters>(), nullptr, nullptr, Locale{locale});
    }

    SimulatedPlatform platform_;
    ThreeDS2Service service_;
    std::shared_ptr<PlayedDirectoryServer> directoryServer_ = std::make_shared<PlayedDirectoryServer>();
};

TEST_F(ThreeDS2ServiceTest, ServiceAnswersBetweenInitializeAndCleanupOnly) {
    const auto isRefused = [this] {
        const std::string text = "Can not get ConfigParameters.";
        EXPECT_RAISES_SAYING(SDKNotInitializedException, text, service_.getSDKVersion());
        EXPECT_RAISES_SAYING(SDKNotInitializedException, text, service_.getWarnings());
        EXPECT_RAISES_SAYING(SDKNotInitializedException, text, service_.createTransaction("", ""));
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
    EXPECT_EQ(service_.getWarnings().size(), 3U);
    const DeviceInfo info = directoryServer_->open(*service_.createTransaction("any", "2.1.0"));
    EXPECT_THAT(info.securityWarning.value(), ElementsAre("SW4", "SW4", "SW5"));
    EXPECT_EQ(info.deviceData.at("C005"), "de");
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
        EXPECT_EQ(directoryServer_->open(*transaction).deviceData.at("C014"), request.getSDKAppID());
        return request.getSDKAppID();
    };
    EXPECT_EQ(identifierUnder("2.1.0"), identifierUnder("2.2.0"));
    platform_.script().identifierForVendor = "AB";
    EXPECT_EQ(identifierUnder("2.2.0"), "ab");
    EXPECT_THAT(directoryServer_->asked, ElementsAre("any", "any", "any"));
}

TEST_F(ThreeDS2ServiceTest, RefusedTransactionsTellTheFirstReason) {
    initialize();
    for (const std::string version : {"2.1", "2.2.0 ", "2.3.0", ""})
        EXPECT_RAISES_SAYING(InvalidInputException, "Message version " + version + " not supported",
                             service_.createTransaction("any", version));
    EXPECT_THROW(static_cast<void>(service_.createTransaction("unknown", "9")), std::runtime_error);
    const std::string noData = "Can not create DeviceInfo Jwe";
    directoryServer_->identity.der = toBytes("no certificate");
    EXPECT_RAISES_SAYING(SDKRuntimeException, noData, service_.createTransaction("any", "2.2.0"));

    // Of the test directory servers, whose files lie in no bundle here.
    service_.setCertProducer(nullptr);
    EXPECT_RAISES_SAYING(SDKRuntimeException, noData, service_.createTransaction("F070738365", "2.2.0"));
    EXPECT_RAISES_SAYING(InvalidInputException, "Missing DevInfoCert for A0",
                         service_.createTransaction("A0", "9"));
}

} // namespace
} // namespace korvane
