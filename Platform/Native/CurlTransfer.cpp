#include "Platform/Native/CurlTransfer.h"

#include "Platform/Failure.h"
#include "Platform/Native/RequestRules.h"
#include "Platform/Security/TLSSecrets.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace korvane {

namespace {

constexpr const char* kProtocols = "http,https";
constexpr const char* kProtocolsAfterTLS = "https";
constexpr Seconds kLongestLimit{30.0 * 24 * 3600};

/// A connection that has idled for longer than these seconds is not used for what may not be
/// repeated: servers close idle connections after a few seconds, and under TLS libcurl does not
/// always notice before it has sent.
constexpr long kFreshEnough = 1;

/// libcurl would write the secrets of a connection to the file that SSLKEYLOGFILE names: whoever sets the
/// variable could read what the challenge keeps from all others.
CURLcode keepSecrets(CURL*, void* context, void*) {
    withholdSecrets(context);
    return CURLE_OK;
}

/// A span in the units of a libcurl option, at least 1: 0 would be no limit.
long asLimit(Seconds span, double unitsPerSecond) {
    const double units = std::clamp(span, Seconds{0}, kLongestLimit).count() * unitsPerSecond;
    return std::max(1L, static_cast<long>(std::ceil(units)));
}

} // namespace

CurlTransfer::CurlTransfer(const URLRequest& request, const URLSessionConfiguration& configuration,
                           std::string_view authorities) {
    if (!easy_) fatalError("libcurl makes no handle.");
    CURL* easy = easy_.get();
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, error_.data());
    // A name that is still looked up when the transfer is stopped would hold up all others.
    curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);
    curl_easy_setopt(easy, CURLOPT_URL, request.url.absoluteString().c_str());
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &CurlTransfer::receive);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &CurlTransfer::receiveHead);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
    setMethod(request);
    setRoads();
    setHeaders(request);
    setLimits(request, configuration);
    setTrust(authorities);
}

/// Where the request may go. What may not be repeated is not redirected either: a sealed message is for the
/// server that it was sealed for.
void CurlTransfer::setRoads() {
    CURL* easy = easy_.get();
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, kProtocols);
    curl_easy_setopt(easy, CURLOPT_REDIR_PROTOCOLS_STR, kProtocols);
    curl_easy_setopt(easy, CURLOPT_DISALLOW_USERNAME_IN_URL, 1L);
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, isRepeatable_ ? 1L : 0L);
    curl_easy_setopt(easy, CURLOPT_MAXREDIRS, kMostRedirects);
    if (!isRepeatable_) curl_easy_setopt(easy, CURLOPT_MAXAGE_CONN, kFreshEnough);
    curl_easy_setopt(easy, CURLOPT_PREREQFUNCTION, &CurlTransfer::permit);
    curl_easy_setopt(easy, CURLOPT_PREREQDATA, this);
}

void CurlTransfer::setMethod(const URLRequest& request) {
    CURL* easy = easy_.get();
    const bool isPost = request.httpMethod == "POST";
    isRepeatable_ = isRepeatable(request);
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

/// A header without a value is written with a semicolon for libcurl. Large bodies are sent
/// without asking first.
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
    if (curl_easy_setopt(easy, CURLOPT_SSL_CTX_FUNCTION, &keepSecrets) != CURLE_OK)
        fatalError("libcurl does not stand on OpenSSL.");
    if (authorities.empty()) return;
    curl_blob blob{const_cast<char*>(authorities.data()), authorities.size(), CURL_BLOB_NOCOPY};
    curl_easy_setopt(easy, CURLOPT_CAINFO_BLOB, &blob);
}

std::size_t CurlTransfer::receive(char* bytes, std::size_t size, std::size_t count, void* transfer) {
    auto& self = *static_cast<CurlTransfer*>(transfer);
    const std::size_t length = size * count;
    if (length > kMostResponseBytes - self.body_.size()) self.excess_ = kBodyRefusal;
    if (self.excess_) return 0;
    self.body_.insert(self.body_.end(), bytes, bytes + length);
    return length;
}

/// libcurl keeps all lines until the end of the transfer, those of interim answers and trailers too, and
/// passes each through here.
std::size_t CurlTransfer::receiveHead(char*, std::size_t size, std::size_t count, void* transfer) {
    auto& self = *static_cast<CurlTransfer*>(transfer);
    self.headBytes_ += size * count;
    if (self.headBytes_ > kMostHeadBytes) self.excess_ = "The head of the answer is larger than 64 KiB.";
    return self.excess_ ? 0 : size * count;
}

/// Before each sending of a request, redirected ones included. libcurl sends one once more where a kept
/// connection ends without an answer. The server may have acted on it all the same, so that only what changes
/// nothing there is repeated (RFC 9110 section 9.2.2). What was asked over TLS goes on over TLS.
int CurlTransfer::permit(void* transfer, char*, char*, int, int) {
    auto& self = *static_cast<CurlTransfer*>(transfer);
    if (std::exchange(self.isSent_, true) && !self.isRepeatable_) return CURL_PREREQFUNC_ABORT;
    const char* url = nullptr;
    curl_easy_getinfo(self.easy_.get(), CURLINFO_EFFECTIVE_URL, &url);
    if (!url || isOverTLS(url))
        curl_easy_setopt(self.easy_.get(), CURLOPT_REDIR_PROTOCOLS_STR, kProtocolsAfterTLS);
    self.headBytes_ = 0;
    return CURL_PREREQFUNC_OK;
}

TransferOutcome CurlTransfer::outcome(CURLcode code) {
    if (code == CURLE_OK) return {std::move(body_), std::nullopt};
    if (code == CURLE_ABORTED_BY_CALLBACK) return {std::nullopt, "The connection ended without an answer."};
    if (code == CURLE_LOGIN_DENIED) return {std::nullopt, kUserRefusal};
    if (excess_) return {std::nullopt, excess_};
    return {std::nullopt, error_.front() ? error_.data() : curl_easy_strerror(code)};
}

int CurlTransfer::status() const {
    long status = 0;
    curl_easy_getinfo(easy_.get(), CURLINFO_RESPONSE_CODE, &status);
    return static_cast<int>(status);
}

} // namespace korvane
