#include <korvane/korvane.h>

#include <cstdio>
#include <stdexcept>

using namespace korvane;

namespace {

/// The certificates of korvane-acs; an application has those of its schemes.
class TestBed final : public TransactionCertsProducerProtocol {
public:
    explicit TestBed(std::string pki) : pki_(std::move(pki)) {}

    [[nodiscard]] TransactionCerts getCerts(const std::string& directoryServerID) override {
        return {.deviceInfoEncCertDerBytes = contentsOfFile(pki_ + "/device-data-ec.der"),
                .dsRootCADerBytes = contentsOfFile(pki_ + "/ds-root.der"),
                .algorithm = CertAlgorithm::EC,
                .directoryServerIDAkaRID = directoryServerID};
    }

private:
    std::string pki_;
};

struct Ending final : ChallengeStatusReceiver {
    void completed(const CompletionEvent& event) override {
        told = "completed " + event.getTransactionStatus();
    }
    void cancelled() override { told = "cancelled"; }
    void timedout() override { told = "timed out"; }
    void protocolError(const ProtocolErrorEvent& event) override {
        const auto message = event.getErrorMessage();
        told = "protocol error " + message.getErrorCode() + ", " + message.getErrorDetails();
    }
    void runtimeError(const RuntimeErrorEvent& event) override {
        told = "runtime error, " + event.getErrorMessage();
    }

    std::string told;
};

std::string jsonOf(const AuthenticationRequestParameters& request) {
    return R"({"deviceData":")" + request.getDeviceData() + R"(","sdkTransId":")" +
           request.getSDKTransactionID() + R"(","sdkAppID":")" + request.getSDKAppID() +
           R"(","sdkReferenceNum":")" + request.getSDKReferenceNumber() + R"(","messageVersion":")" +
           request.getMessageVersion() + R"(","ephemeralPublic":)" + request.getSDKEphemeralPublicKey() + "}";
}

/// A text of the answer. An application has a JSON library, and checks what it gets.
std::string member(const std::string& json, const std::string& name) {
    const std::string before = '"' + name + "\":\"";
    const std::size_t at = json.find(before);
    if (at == std::string::npos) throw std::runtime_error("The answer has no " + name + ": " + json);
    const std::size_t start = at + before.size();
    return json.substr(start, json.find('"', start) - start);
}

std::string post(HeadlessPlatform& platform, const std::string& address, const std::string& text) {
    const auto url = URL::make(address);
    if (!url) throw std::runtime_error(address + " is no address.");
    std::optional<std::string> answer;
    std::string failure;
    const auto task = platform.makeURLSession({})->dataTask(
        {.url = *url, .httpMethod = "POST", .httpBody = toBytes(text)}, [&](auto body, auto error) {
            platform.dispatch().mainQueue().async([&, body, error] {
                failure = error.value_or("");
                answer = body ? std::string(body->begin(), body->end()) : "";
            });
        });
    task->resume();
    platform.runMainUntil([&] { return answer.has_value(); });
    if (!failure.empty()) throw std::runtime_error(failure);
    return *answer;
}

void pay(HeadlessPlatform& platform, const std::string& server, const std::string& pki) {
    const Bytes root = contentsOfFile(pki + "/tls-root.pem");
    platform.addCertificateAuthorities(std::string(root.begin(), root.end()));
    ThreeDS2Service service;
    service.setCertProducer(std::make_shared<TestBed>(pki));
    service.initialize(std::make_shared<ConfigParameters>(), nullptr, nullptr, Locale{"en-GB"});

    const auto transaction = service.createTransaction("A999999999", "2.2.0");
    const std::string answer =
        post(platform, server + "/authenticate", jsonOf(transaction->getAuthenticationRequestParameters()));
    const auto parameters = std::make_shared<ChallengeParameters>();
    parameters->set3DSServerTransactionId(member(answer, "threeDSServerTransID"));
    parameters->setAcsTransactionId(member(answer, "acsTransID"));
    parameters->setAcsRefNumber(member(answer, "acsRefNumber"));
    parameters->setAcsSignedContent(member(answer, "acsSignedContent"));

    const auto ending = std::make_shared<Ending>();
    transaction->doChallenge(parameters, ending, 1);
    platform.runMainUntil([&] { return !ending->told.empty(); });
    std::puts(ending->told.c_str());
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: payment URL PKI, as the first line of korvane-acs names them\n", stderr);
        return 2;
    }
    try {
        HeadlessPlatform platform;
        pay(platform, argv[1], argv[2]);
        return 0;
    } catch (const Failure& error) { // of the library
        std::fprintf(stderr, "payment: %s\n", error.localizedDescription().c_str());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "payment: %s\n", error.what());
    }
    return 1;
}
