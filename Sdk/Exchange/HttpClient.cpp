#include "Sdk/Exchange/HttpClient.h"

#include "Platform/Platform.h"
#include "Sdk/Events/SdkError.h"

#include <utility>

namespace korvane {

namespace {

constexpr Seconds kResourceLimit{60.0};
constexpr Seconds kRequestLimit{60.0};
constexpr Seconds kLongestWait{12.0};
constexpr const char* kContentType = "application/jose;charset=UTF-8";

/// Shared by a call and its completion, which may come after the call has gone.
struct Cells {
    std::shared_ptr<DispatchSemaphore> filled;
    HttpAnswer answer;
};

URLSessionConfiguration sessionConfiguration() {
    URLSessionConfiguration configuration;
    configuration.timeoutIntervalForResource = kResourceLimit;
    configuration.requestCachePolicy = URLRequestCachePolicy::reloadIgnoringLocalCacheData;
    return configuration;
}

} // namespace

HttpClient::HttpClient(std::string acsURL)
    : session_(Platform::current().makeURLSession(sessionConfiguration())), acsURL_(std::move(acsURL)) {}

HttpAnswer HttpClient::sendCReqData(const Bytes& body) const {
    const auto request = createAcsRequest(body);
    return request ? sendSynchroniousRequest(*request) : HttpAnswer{};
}

void HttpClient::sendErroData(const Bytes& body) const {
    static_cast<void>(sendCReqData(body));
}

HttpAnswer HttpClient::loadImage(const std::string& url) const {
    return sendSynchroniousRequest(createLoadImageRequest(url));
}

std::optional<URLRequest> HttpClient::createAcsRequest(const Bytes& body) const {
    const auto url = URL::make(acsURL_);
    if (!url) return std::nullopt;
    URLRequest request{*url};
    request.timeoutInterval = kRequestLimit;
    request.httpMethod = "POST";
    request.httpHeaderFields = {{"Content-Type", kContentType}};
    request.httpBody = body;
    return request;
}

URLRequest HttpClient::createLoadImageRequest(const std::string& url) {
    const auto imageUrl = URL::make(url);
    if (!imageUrl)
        KORVANE_RAISE("createLoadImageRequest(_:)", SdkErrorCase::InvalidInputException,
                      "Can not create imageUrl.");
    URLRequest request{*imageUrl};
    request.httpMethod = "GET";
    return request;
}

/// After a wait that ran out the cells belong to the completion alone and are not read.
HttpAnswer HttpClient::sendSynchroniousRequest(const URLRequest& request) const {
    const auto cells = std::make_shared<Cells>(Cells{Platform::current().dispatch().makeSemaphore(0), {}});
    const auto task = session_->dataTask(request, [cells](auto body, auto error) {
        cells->answer = {std::move(body), std::move(error)};
        cells->filled->signal();
    });
    task->resume();
    const auto result = cells->filled->wait(kLongestWait);
    task->cancel();
    if (result == DispatchTimeoutResult::timedOut) return {};
    if (cells->answer.errorDescription) return {std::nullopt, std::move(cells->answer.errorDescription)};
    return {std::move(cells->answer.data), std::nullopt};
}

} // namespace korvane
