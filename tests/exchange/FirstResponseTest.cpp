#include "Sdk/DeviceData/DeviceInfoParameter.h"
#include "tests/exchange/AcsProcess.h"
#include "tests/exchange/AppSide.h"

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

namespace korvane {
namespace {

struct RoadRow {
    const char* name;
    AppSide::Options options;
    /// The scenarios differ in the signature of the content, in the screen and in the URL of the requestor.
    const char* scenario;
    const char* uiType;
};

constexpr auto kFiles = CertificateSource::configuredFiles;
constexpr auto kProducer = CertificateSource::producer;

const RoadRow kRoads[]{
    {"RSA 2.1.0", {CertAlgorithm::RSA, "2.1.0", kFiles}, "text", "01"},
    {"RSA 2.2.0", {CertAlgorithm::RSA, "2.2.0", kProducer}, "oob", "04"},
    {"EC 2.1.0", {CertAlgorithm::EC, "2.1.0", kProducer}, "oob", "04"},
    {"EC 2.2.0", {CertAlgorithm::EC, "2.2.0", kFiles}, "singleSelect", "02"},
};

JSON expectedCReq(const RoadRow& row, const JSON& answer, const AuthenticationRequestParameters& request) {
    JSON cReq = {{"threeDSServerTransID", answer["threeDSServerTransID"]},
                 {"acsTransID", answer["acsTransID"]},
                 {"messageType", "CReq"},
                 {"messageVersion", row.options.messageVersion},
                 {"sdkTransID", request.getSDKTransactionID()},
                 {"sdkCounterStoA", "000"}};
    if (answer.contains("threeDSRequestorAppURL"))
        cReq["threeDSRequestorAppURL"] = answer["threeDSRequestorAppURL"];
    return cReq;
}

/// What does not depend on the machine.
void expectDeviceDocument(const JSON& document) {
    const auto parameter = [&](DeviceInfoParameter name) {
        return document["DD"].value(std::string(rawValue(name)), "");
    };
    EXPECT_EQ(document["DV"], "1.4");
    EXPECT_EQ(parameter(DeviceInfoParameter::LOCALE), "fr-CA");
    EXPECT_NE(parameter(DeviceInfoParameter::OS_NAME), "");
}

/// As sets of members: the order in which they are written does not count.
bool isSameMessage(const JSON& left, const JSON& right) {
    return nlohmann::json(left) == nlohmann::json(right);
}

/// The main thread asks while the agreement uses the pair up on another.
TEST(AcsExchange, ValuesOfTheRequestStayTheSameBesideTheAgreement) {
    const TemporaryFolder pki;
    AcsProcess acs(pki.path(), "text");
    AppSide app(acs.listening(), {});
    app.authenticate();
    const Transaction& transaction = *app.transaction().transaction;
    const std::string key = app.request().getSDKEphemeralPublicKey();
    std::atomic<bool> isOpen{false};
    std::thread asking([&] {
        do EXPECT_EQ(transaction.getAuthenticationRequestParameters().getSDKEphemeralPublicKey(), key);
        while (!isOpen);
    });
    app.openSecureChannel();
    isOpen = true;
    asking.join();
    acs.stop();
}

TEST(AcsExchange, TheFirstResponseIsAcceptedAfterTheWholeRoadFromTheService) {
    const TemporaryFolder pki;
    for (const RoadRow& row : kRoads) {
        SCOPED_TRACE(row.name);
        AcsProcess acs(pki.path(), row.scenario);
        AppSide app(acs.listening(), row.options);
        const JSON answer = app.authenticate();
        app.openSecureChannel();
        const CReqSendingResult result = app.sendFirstCReq();
        EXPECT_FALSE(app.transaction().hasCResTimer());

        const AcsEnding ending = acs.stop();
        EXPECT_EQ(ending.exitCode, 0);
        expectDeviceDocument(answer["deviceData"]);
        const auto received = ending.messages("received");
        const auto sent = ending.messages("sent");
        ASSERT_EQ(received.size(), 2U);
        ASSERT_EQ(sent.size(), 2U);
        const JSON cReq = expectedCReq(row, answer, app.request());
        EXPECT_TRUE(isSameMessage(received[1], cReq)) << received[1] << "\ninstead of\n" << cReq;
        ASSERT_TRUE(result.cres) << result.errorDescription.value_or("no error");
        EXPECT_EQ(result, CReqSendingResult{.cres = CRes::decode(sent[1].dump())});
        EXPECT_EQ(result.cres->acsUiType, row.uiType);
    }
}

} // namespace
} // namespace korvane
