// An application on the simulated platform, for a script that plays the other side. It makes all certificates
// itself and tells the keys behind them. One JSON object a line, in and out:
//   in  {"algorithm": "RSA" | "EC", "signingKey": "RSA" | "EC"}
//   out the authentication request, and the other side's keys (PKCS#8) and chain
//   in  {"threeDSServerTransID", "acsTransID", "acsSignedContent"}
//   out {"cReq"}: the first one, sealed
//   in  {"cRes"}: sealed
//   out {"header"} of the accepted response, or {"error"}
// Bytes are Base64URL without padding; "x5c" is as in a JWS header (RFC 7515 section 4.1.6).

#include "Crypt/DataExtensions.h"
#include "Platform/JSON.h"
#include "Platform/LetterCase.h"
#include "Sdk/Exchange/Exchange.h"
#include "Sdk/Service/ThreeDS2Service.h"
#include "tests/support/PlayedAcs.h"
#include "tests/support/SimulatedPlatform.h"

#include <iostream>

namespace korvane {
namespace {

constexpr const char* kDirectoryServerID = "A000000999";

JSON readLine() {
    std::string line;
    std::getline(std::cin, line);
    return JSON::parse(line);
}

void writeLine(const JSON& value) {
    std::cout << value.dump() << std::endl;
}

TestKeyType keyType(const JSON& name) {
    return name == "RSA" ? TestKeyType::rsa2048 : TestKeyType::p256;
}

/// The directory server's and the ACS's.
struct Identities {
    TestIdentity root = selfSigned(authority("Root"));
    TestIdentity intermediate = root.issue(authority("Intermediate"));
    TestIdentity deviceData;
    TestIdentity signing;

    explicit Identities(const JSON& choice)
        : deviceData(root.issue({.commonName = "Device data", .key = keyType(choice["algorithm"])})),
          signing(intermediate.issue({.key = keyType(choice["signingKey"])})) {}
};

class Producer : public TransactionCertsProducerProtocol {
public:
    explicit Producer(TransactionCerts certs) : certs_(std::move(certs)) {}

    TransactionCerts getCerts(const std::string&) override { return certs_; }

private:
    const TransactionCerts certs_;
};

/// One that has sealed what the library tells of this device. Its end is told on standard output.
std::shared_ptr<Transaction> createTransaction(const TransactionCerts& certs) {
    ThreeDS2Service service;
    service.setCertProducer(std::make_shared<Producer>(certs));
    service.initialize(std::make_shared<ConfigParameters>(), nullptr, nullptr, Locale{"en_GB"});
    return service.createTransaction(kDirectoryServerID, "2.2.0");
}

JSON requestLine(const std::string& sealedDevice, const Exchange& exchange, const Identities& identities) {
    return {{"deviceData", sealedDevice},
            {"sdkTransId", lowercased(exchange.sdkTransactionID())},
            {"sdkReferenceNum", exchange.sdkReferenceNum()},
            {"ephemeralPublic", exchange.ephemeralPublicKey().value()},
            {"messageVersion", exchange.messageVersion()},
            {"directoryServerID", kDirectoryServerID},
            {"deviceDataKey", base64URLEncodedString(identities.deviceData.pkcs8)},
            {"signingKey", base64URLEncodedString(identities.signing.pkcs8)},
            {"x5c", {identities.signing.base64(), identities.intermediate.base64()}}};
}

void takeParameters(Exchange& exchange, const JSON& answer) {
    ChallengeParameters parameters;
    parameters.set3DSServerTransactionId(answer["threeDSServerTransID"].get<std::string>());
    parameters.setAcsTransactionId(answer["acsTransID"].get<std::string>());
    parameters.setAcsSignedContent(answer["acsSignedContent"].get<std::string>());
    exchange.setChallengeParameters(std::make_shared<ChallengeParameters>(std::move(parameters)));
}

void converse() {
    SimulatedPlatform platform;
    const JSON choice = readLine();
    const Identities identities(choice);
    const TransactionCerts certs{identities.deviceData.der, identities.root.der,
                                 choice["algorithm"] == "RSA" ? CertAlgorithm::RSA : CertAlgorithm::EC,
                                 kDirectoryServerID};
    const auto exchange = std::make_shared<Exchange>(MessageVersion::v2_2_0, kReferenceNumber,
                                                     std::make_unique<KeysContainer>(certs));
    const auto transaction = createTransaction(certs);
    writeLine(requestLine(transaction->getAuthenticationRequestParameters().getDeviceData(), *exchange,
                          identities));

    takeParameters(*exchange, readLine());
    exchange->openSecureChannel();
    const Bytes cReq = exchange->getInitCReqData();
    writeLine({{"cReq", asText(cReq)}});

    const Bytes cRes = toBytes(readLine()["cRes"].get<std::string>());
    platform.network().answer = [&](const URLRequest&) { return ScriptedAnswer{.body = cRes}; };
    const CReqSendingResult result = exchange->sendCReq(cReq, CResPosition::initial);
    writeLine(result.cres ? JSON{{"header", result.cres->challengeInfoHeader.value_or("")}}
                          : JSON{{"error", result.errorDescription.value_or("")}});
}

} // namespace
} // namespace korvane

int main() {
    korvane::converse();
}
