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
#include "Sdk/Service/ThreeDS2Service.h"
#include "tests/support/SimulatedPlatform.h"
#include "tests/support/TestPki.h"
#include "tests/support/TransactionPeer.h"

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
    Producer(const Identities& identities, CertAlgorithm algorithm)
        : certs_{identities.deviceData.der, identities.root.der, algorithm, kDirectoryServerID} {}

    TransactionCerts getCerts(const std::string&) override { return certs_; }

private:
    const TransactionCerts certs_;
};

std::shared_ptr<Transaction> createTransaction(const Identities& identities, CertAlgorithm algorithm) {
    ThreeDS2Service service;
    service.setCertProducer(std::make_shared<Producer>(identities, algorithm));
    service.initialize(std::make_shared<ConfigParameters>(), nullptr, nullptr, Locale{"en_GB"});
    return service.createTransaction(kDirectoryServerID, "2.2.0");
}

JSON requestLine(const AuthenticationRequestParameters& request, const Identities& identities) {
    return {{"deviceData", request.getDeviceData()},
            {"sdkTransId", request.getSDKTransactionID()},
            {"sdkReferenceNum", request.getSDKReferenceNumber()},
            {"ephemeralPublic", request.getSDKEphemeralPublicKey()},
            {"messageVersion", request.getMessageVersion()},
            {"directoryServerID", kDirectoryServerID},
            {"deviceDataKey", base64URLEncodedString(identities.deviceData.pkcs8)},
            {"signingKey", base64URLEncodedString(identities.signing.pkcs8)},
            {"x5c", {identities.signing.base64(), identities.intermediate.base64()}}};
}

void takeParameters(const TransactionPeer& peer, const JSON& answer) {
    ChallengeParameters parameters;
    parameters.set3DSServerTransactionId(answer["threeDSServerTransID"].get<std::string>());
    parameters.setAcsTransactionId(answer["acsTransID"].get<std::string>());
    parameters.setAcsSignedContent(answer["acsSignedContent"].get<std::string>());
    peer.setParameters(std::move(parameters));
}

void converse() {
    SimulatedPlatform platform;
    const JSON choice = readLine();
    const Identities identities(choice);
    const TransactionPeer peer{
        createTransaction(identities, choice["algorithm"] == "RSA" ? CertAlgorithm::RSA : CertAlgorithm::EC)};
    writeLine(requestLine(peer.transaction->getAuthenticationRequestParameters(), identities));

    takeParameters(peer, readLine());
    peer.openSecureChannel();
    const Bytes cReq = peer.getInitCReqData();
    writeLine({{"cReq", asText(cReq)}});

    const Bytes cRes = toBytes(readLine()["cRes"].get<std::string>());
    platform.network().answer = [&](const URLRequest&) { return ScriptedAnswer{.body = cRes}; };
    const CReqSendingResult result = peer.sendCReq(cReq);
    writeLine(result.cres ? JSON{{"header", result.cres->challengeInfoHeader.value_or("")}}
                          : JSON{{"error", result.errorDescription.value_or("")}});
}

} // namespace
} // namespace korvane

int main() {
    korvane::converse();
}
