#include "Platform/Native/CurlTransfer.h"

#include "Platform/Failure.h"

#include <algorithm>
#include <cmath>

namespace korvane {

namespace {

constexpr const char* kProtocols = "http,https";
constexpr long kMostRedirects = 20;
constexpr Seconds kLongestLimit{30.0 * 24 * 3600};

/// A connection that has idled for longer than these seconds is not used for what may not be repeated:
/// servers close idle connections after a few seconds, and under TLS libcurl does not always notice before it
/// has sent.
constexpr long kFreshEnough = 1;

bool hasPrefix(std::string_view text, std::string_view lowerCasePrefix) {
    const auto isSame = [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a + ('a' - 'A') : a) == b; };
    return text.size() >= lowerCasePrefix.size() &&
           std::equal(lowerCasePrefix.begin(), lowerCasePrefix.end(), text.begin(),
                      [&](char prefix, char character) { return isSame(character, prefix); });
}

bool hasControl(std::string_view text) {
    return std::any_of(text.begin(), text.end(), [](char c) { return c == '\r' || c == '\n' || c == '\0'; });
}

/// A span in the units of a libcurl option, at least 1: 0 would be no limit.
long asLimit(Seconds span, double unitsPerSecond) {
    const double units = std::clamp(span, Seconds{0}, kLongestLimit).count() * unitsPerSecond;
    return std::max(1L, static_cast<long>(std::ceil(units)));
}

} // namespace

std::optional<std::string> refusal(const URLRequest& request) {
    const std::string& url = request.url.absoluteString();
    if (!hasPrefix(url, "http://") && !hasPrefix(url, "https://")) return "unsupported URL";
    bool isBroken = request.httpMethod.empty() || hasControl(request.httpMethod);
    for (const auto& [name, value] : request.httpHeaderFields)
        isBroken = isBroken || name.empty() || hasControl(name) || hasControl(value);
    return isBroken ? std::optional<std::string>("malformed request") : std::nullopt;
}

CurlTransfer::CurlTransfer(const URLRequest& request, const URLSessionConfiguration& configuration,
                           std::string_view authorities) {
    if (!easy_) fatalError("libcurl makes no handle.");
    CURL* easy = easy_.get();
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, error_.data());
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, kProtocols);
    curl_easy_setopt(easy, CURLOPT_REDIR_PROTOCOLS_STR, kProtocols);
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(easy, CURLOPT_MAXREDIRS, kMostRedirects);
    curl_easy_setopt(easy, CURLOPT_URL, request.url.absoluteString().c_str());
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &CurlTransfer::receive);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
    setMethod(request);
    setHeaders(request);
    setLimits(request, configuration);
    setTrust(authorities);
}

/// A POST is told as such, and not as a method of that name, so that a redirect may turn it into a GET.
void CurlTransfer::setMethod(const URLRequest& request) {
    CURL* easy = easy_.get();
    const bool isPost = request.httpMethod == "POST";
    isRepeatable_ = request.httpMethod == "GET" || request.httpMethod == "HEAD";
    if (!isRepeatable_) curl_easy_setopt(easy, CURLOPT_MAXAGE_CONN, kFreshEnough);
    curl_easy_setopt(easy, CURLOPT_PREREQFUNCTION, &CurlTransfer::permit);
    curl_easy_setopt(easy, CURLOPT_PREREQDATA, this);
    if (isPost || request.httpBody) {
        static constexpr std::uint8_t kNothing = 0;
        const ByteView body = request.httpBody ? ByteView(*request.httpBody) : ByteView();
        curl_easy_setopt(easy, CURLOPT_POST, 1L);
        curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
        curl_easy_setopt(easy, CURLOPT_POSTFIELDS, body.empty() ? &kNothing : body.data());
    }
    if (!isPost && (request.httpMethod != "GET" || request.httpBody))
        curl_easy_setopt(easy, CURLOPT_CUSTOMREQUEST, request.httpMethod.c_str());
}

/// A header without a value is written with a semicolon for libcurl. Large bodies are sent without asking
/// first.
void CurlTransfer::setHeaders(const URLRequest& request) {
    const auto append = [this](const std::string& line) {
        curl_slist* const longer = curl_slist_append(headers_.get(), line.c_str());
        if (!longer) fatalError("No memory for a request's headers.");
        static_cast<void>(headers_.release());
        headers_.reset(longer);
    };
    for (const auto& [name, value] : request.httpHeaderFields)
        append(value.empty() ? name + ";" : name + ": " + value);
    append("Expect:");
    curl_easy_setopt(easy_.get(), CURLOPT_HTTPHEADER, headers_.get());
}

void CurlTransfer::setLimits(const URLRequest& request, const URLSessionConfiguration& configuration) {
    CURL* easy = easy_.get();
    curl_easy_setopt(easy, CURLOPT_TIMEOUT_MS, asLimit(configuration.timeoutIntervalForResource, 1000));
    curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS, asLimit(request.timeoutInterval, 1000));
    curl_easy_setopt(easy, CURLOPT_LOW_SPEED_LIMIT, 1L);
    curl_easy_setopt(easy, CURLOPT_LOW_SPEED_TIME, asLimit(request.timeoutInterval, 1));
}

void CurlTransfer::setTrust(std::string_view authorities) {
    CURL* easy = easy_.get();
    curl_easy_setopt(easy, CURLOPT_SSL_VERIFYPEER, 1L);
    curl_easy_setopt(easy, CURLOPT_SSL_VERIFYHOST, 2L);
    if (authorities.empty()) return;
    curl_blob blob{const_cast<char*>(authorities.data()), authorities.size(), CURL_BLOB_NOCOPY};
    curl_easy_setopt(easy, CURLOPT_CAINFO_BLOB, &blob);
}

std::size_t CurlTransfer::receive(char* bytes, std::size_t size, std::size_t count, void* transfer) {
    auto& self = *static_cast<CurlTransfer*>(transfer);
    const std::size_t length = size * count;
    self.isTooLarge_ = length > kMostResponseBytes - self.body_.size();
    if (self.isTooLarge_) return 0;
    self.body_.insert(self.body_.end(), bytes, bytes + length);
    return length;
}

/// libcurl sends a request once more where a kept connection ends without an answer. The server may have
/// acted on it all the same, so that only what changes nothing there is repeated (RFC 9110 section 9.2.2).
int CurlTransfer::permit(void* transfer, char*, char*, int, int) {
    auto& self = *static_cast<CurlTransfer*>(transfer);
    long redirects = 0;
    curl_easy_getinfo(self.easy_.get(), CURLINFO_REDIRECT_COUNT, &redirects);
    const bool isFirst = self.sendings_++ <= redirects;
    return isFirst || self.isRepeatable_ ? CURL_PREREQFUNC_OK : CURL_PREREQFUNC_ABORT;
}

TransferOutcome CurlTransfer::outcome(CURLcode code) {
    if (code == CURLE_OK) return {std::move(body_), std::nullopt};
    if (code == CURLE_ABORTED_BY_CALLBACK) return {std::nullopt, "The connection ended without an answer."};
    if (isTooLarge_) return {std::nullopt, "The answer is larger than 16 MiB."};
    return {std::nullopt, error_.front() ? error_.data() : curl_easy_strerror(code)};
}

} // namespace korvane
