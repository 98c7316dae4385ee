#include "tests/exchange/AppSide.h"

#include "tests/support/Files.h"

#include <cstdlib>
#include <exception>
#include <filesystem>

namespace korvane {

namespace {

constexpr Seconds kLongest{60.0};

struct CertificateFiles {
    std::string deviceData;
    std::string root;
};

CertificateFiles filesOf(const JSON& listening, CertAlgorithm algorithm) {
    const char* const name = algorithm == CertAlgorithm::RSA ? "deviceDataRSA" : "deviceDataEC";
    return {listening[name].get<std::string>(), listening["directoryServerRoot"].get<std::string>()};
}

std::shared_ptr<const ConfigParameters> configuration(const JSON& listening, CertAlgorithm algorithm) {
    const auto [deviceData, root] = filesOf(listening, algorithm);
    const std::filesystem::path path(deviceData);
    const std::string id = listening["directoryServerID"].get<std::string>();
    const DevInfoCert cert{path.filename().string(), std::filesystem::path(root).filename().string(), id,
                           algorithm, NSBundle::bundleWithPath(path.parent_path().string())};
    return std::make_shared<ConfigParameters>(ConfigParameters::DevInfoCerts{{id, cert}});
}

class FileProducer : public TransactionCertsProducerProtocol {
public:
    FileProducer(CertificateFiles files, CertAlgorithm algorithm)
        : files_(std::move(files)), algorithm_(algorithm) {}

    TransactionCerts getCerts(const std::string& directoryServerID) override {
        return {toBytes(readFile(files_.deviceData)), toBytes(readFile(files_.root)), algorithm_,
                directoryServerID};
    }

private:
    const CertificateFiles files_;
    const CertAlgorithm algorithm_;
};

JSON requestMessage(const AuthenticationRequestParameters& request) {
    return {{"deviceData", request.getDeviceData()},
            {"sdkTransId", request.getSDKTransactionID()},
            {"sdkAppID", request.getSDKAppID()},
            {"sdkReferenceNum", request.getSDKReferenceNumber()},
            {"ephemeralPublic", request.getSDKEphemeralPublicKey()},
            {"messageVersion", request.getMessageVersion()}};
}

ChallengeParameters parametersFrom(const JSON& answer) {
    ChallengeParameters parameters;
    parameters.set3DSServerTransactionId(answer["threeDSServerTransID"].get<std::string>());
    parameters.setAcsTransactionId(answer["acsTransID"].get<std::string>());
    parameters.setAcsRefNumber(answer["acsRefNumber"].get<std::string>());
    parameters.setAcsSignedContent(answer["acsSignedContent"].get<std::string>());
    if (answer.contains("threeDSRequestorAppURL"))
        parameters.setTreeDSRequestorAppURL(answer["threeDSRequestorAppURL"].get<std::string>());
    return parameters;
}

} // namespace

AppSide::AppSide(const JSON& listening, const Options& options) : listening_(listening) {
    // Requests to this machine go to it, whatever proxies the environment names.
    ::setenv("no_proxy", "*", 1);
    ::setenv("XDG_CONFIG_HOME", settings_.path().c_str(), 1);
    platform_.emplace();
    platform_->addCertificateAuthorities(readFile(listening["tlsRoot"].get<std::string>()));
    auto configured = std::make_shared<const ConfigParameters>(ConfigParameters::DevInfoCerts{});
    if (options.source == CertificateSource::producer)
        service_.setCertProducer(
            std::make_shared<FileProducer>(filesOf(listening, options.algorithm), options.algorithm));
    else
        configured = configuration(listening, options.algorithm);
    onQueue(platform_->dispatch().mainQueue(), [&] {
        service_.initialize(configured, nullptr, nullptr, Locale{"fr_CA"});
        peer_.transaction = service_.createTransaction(listening["directoryServerID"].get<std::string>(),
                                                       options.messageVersion);
        request_ = peer_.transaction->getAuthenticationRequestParameters();
    });
}

JSON AppSide::authenticate() {
    const std::string url = listening_["url"].get<std::string>() + "/authenticate";
    const Bytes body = post(url, requestMessage(request()).dump());
    auto answer = JSONSerialization::jsonObject(asText(body));
    if (!answer || !answer->contains("acsSignedContent"))
        fatalError("The authentication request was not accepted: " + std::string(asText(body)));
    peer_.setParameters(parametersFrom(*answer));
    return std::move(*answer);
}

void AppSide::openSecureChannel() {
    onQueue(platform_->dispatch().globalQueue(), [&] { peer_.openSecureChannel(); });
}

CReqSendingResult AppSide::sendFirstCReq() {
    CReqSendingResult result;
    onQueue(platform_->dispatch().globalQueue(), [&] { result = peer_.sendCReq(peer_.getInitCReqData()); });
    return result;
}

void AppSide::sendErroToAcs(const Erro& erro) {
    onQueue(platform_->dispatch().globalQueue(), [&] { peer_.sendErroToAcs(erro); });
}

void AppSide::onQueue(DispatchQueue& queue, const std::function<void()>& work) {
    std::exception_ptr raised;
    bool isDone = false;
    queue.async([&] {
        try {
            work();
        } catch (...) {
            raised = std::current_exception();
        }
        platform_->dispatch().mainQueue().async([&] { isDone = true; });
    });
    platform_->runMainUntil([&] { return isDone; });
    if (raised) std::rethrow_exception(raised);
}

Bytes AppSide::post(const std::string& url, const std::string& body) {
    URLRequest request{URL::make(url).value()};
    request.httpMethod = "POST";
    request.httpHeaderFields = {{"Content-Type", "application/json"}};
    request.httpBody = toBytes(body);
    const auto ended = platform_->dispatch().makeSemaphore(0);
    std::optional<Bytes> answer;
    std::optional<std::string> failure;
    const auto task = platform_->makeURLSession({})->dataTask(request, [&](auto received, auto error) {
        answer = std::move(received);
        failure = std::move(error);
        ended->signal();
    });
    task->resume();
    if (ended->wait(kLongest) == DispatchTimeoutResult::timedOut || !answer)
        fatalError("No answer from " + url + ": " + failure.value_or("no time left"));
    return std::move(*answer);
}

} // namespace korvane
