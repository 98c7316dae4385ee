#pragma once

#include "Platform/Bytes.h"
#include "Platform/Dispatch.h"
#include "Platform/Export.h"
#include "Platform/URL.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace korvane {

/// How a request treats local copies of earlier answers. No platform of this library keeps any, so that both
/// reach the server.
enum class URLRequestCachePolicy { useProtocolCachePolicy, reloadIgnoringLocalCacheData };

/// What all requests of a session share. Every session is ephemeral: no cookies, no credentials and no cache
/// survive a request. TLS certificates are checked against the system's authorities, always.
struct URLSessionConfiguration {
    /// The longest time from `resume()` to the end of the answer.
    Seconds timeoutIntervalForResource{7 * 24 * 3600.0};

    URLRequestCachePolicy requestCachePolicy = URLRequestCachePolicy::useProtocolCachePolicy;

    /// PEM certificates of authorities that count beside the system's: those of a test bed.
    std::string additionalCertificateAuthorities;
};

struct URLRequest {
    URL url;
    std::string httpMethod = "GET";

    /// Names and values in the order in which they are sent.
    std::vector<std::pair<std::string, std::string>> httpHeaderFields = {};
    std::optional<Bytes> httpBody = std::nullopt;
    URLRequestCachePolicy cachePolicy = URLRequestCachePolicy::useProtocolCachePolicy;

    /// The longest time to wait for a connection, and for the next bytes.
    Seconds timeoutInterval{60.0};
};

/// One request on its way. Any thread.
class KORVANE_EXPORT URLSessionDataTask {
public:
    URLSessionDataTask(const URLSessionDataTask&) = delete;
    URLSessionDataTask& operator=(const URLSessionDataTask&) = delete;
    virtual ~URLSessionDataTask() = default;

    /// Sends the request. Only the first call counts. Whoever called it need not keep the task.
    virtual void resume() = 0;

    /// Ends the task at once with the error "cancelled"; an ended task stays as it is.
    virtual void cancel() = 0;

protected:
    URLSessionDataTask() = default;
};

/// Answers whose body is larger than this are a transport failure, in bytes.
inline constexpr std::size_t kMostResponseBytes = std::size_t{16} * 1024 * 1024;

/// The same for all the head and trailer lines of an answer together.
inline constexpr std::size_t kMostHeadBytes = std::size_t{64} * 1024;

/// An HTTP client for http and https. GET and HEAD follow redirects, but not from https to http; any other
/// request stays where it was sent, and the redirecting answer is its answer. A URL with a user or a password
/// is a transport failure, also where a redirect leads to it. Any thread.
class KORVANE_EXPORT URLSession {
public:
    /// Receives the body if an answer came, whatever its status code; it is empty then, not absent, if the
    /// answer had none. Receives the error's text if the transport failed.
    using Completion = std::function<void(std::optional<Bytes> body, std::optional<std::string> error)>;

    URLSession(const URLSession&) = delete;
    URLSession& operator=(const URLSession&) = delete;
    virtual ~URLSession() = default;

    /// A task that waits for its `resume()`. Once resumed or cancelled it calls `completion` exactly once, on
    /// a thread of the network on which other completions wait for their turn: it must not block. At the end
    /// of the platform it is an error, and may come on the thread that resumes or cancels. A URL of another
    /// scheme, or without one, is a transport failure.
    [[nodiscard]] virtual std::shared_ptr<URLSessionDataTask> dataTask(URLRequest request,
                                                                       Completion completion) = 0;

protected:
    URLSession() = default;
};

/// Makes sessions. Any thread. Belongs to its platform and lives as long.
class KORVANE_EXPORT URLSessionMaker {
public:
    URLSessionMaker(const URLSessionMaker&) = delete;
    URLSessionMaker& operator=(const URLSessionMaker&) = delete;
    virtual ~URLSessionMaker() = default;

    [[nodiscard]] virtual std::shared_ptr<URLSession>
    makeSession(const URLSessionConfiguration& configuration) = 0;

protected:
    URLSessionMaker() = default;
};

} // namespace korvane
