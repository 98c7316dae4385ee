#include "tools/acs/HttpServer.h"

#include "tools/acs/HeldAnswer.h"
#include "tools/common/UsageError.h"

#include <httplib.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace korvane::acs {

using tools::UsageError;

namespace {

constexpr int kBacklog = 256;
/// The longest path that is looked at: the library matches paths by a regular expression, whose
/// depth grows with them.
constexpr std::size_t kLongestPath = 1024;

/// A body that is too long is read on up to here, so that its sender comes to read the answer.
constexpr std::size_t kMostDiscarded = std::size_t{16} * 1024 * 1024;

constexpr int kNotInTime = -1;
/// A person who went away keeps no app waiting for longer.
constexpr int kHeldMilliseconds = 10 * 60 * 1000;

/// What a wait comes to.
enum class Wake { time, decision, cut };

/// The library's server with a queue of connections that a burst does not overrun.
class Listener : public httplib::SSLServer {
public:
    using SSLServer::SSLServer;

    /// The library asks for a backlog of 5; the second call replaces it.
    void widenBacklog() { ::listen(svr_sock_, kBacklog); }
};

bool isNetworkSocket(int file) {
    sockaddr_storage address{};
    socklen_t length = sizeof address;
    const bool isSocket = ::getsockname(file, reinterpret_cast<sockaddr*>(&address), &length) == 0;
    return isSocket && (address.ss_family == AF_INET || address.ss_family == AF_INET6);
}

/// Every network socket of this process, but for what it was started with, is the listening
/// one or a connection.
void shutDownEverySocket() {
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd", error)) {
        const int file = std::stoi(entry.path().filename().string());
        if (file > STDERR_FILENO && isNetworkSocket(file)) ::shutdown(file, SHUT_RDWR);
    }
}

/// The library would share the port with any other process that asks for it.
void claimPort(int socket) {
    const int isOn = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &isOn, sizeof isOn);
}

int socketOf(const httplib::Request& request) {
    return SSL_get_fd(request.ssl);
}

Request readRequest(const httplib::Request& request, std::string_view body) {
    const auto field = [&](const char* name) { return request.get_header_value(name); };
    const bool isLocal = request.remote_addr.starts_with("127.") || request.remote_addr == "::1";
    return {request.method,     request.path,          body,   field("Host"), field("Origin"),
            field(kTokenField), field(kScenarioField), isLocal};
}

} // namespace

struct HttpServer::Parts {
    Parts(const std::filesystem::path& certificate, const std::filesystem::path& key)
        : listener(certificate.c_str(), key.c_str()), stopping(::eventfd(0, EFD_CLOEXEC)),
          ended(::eventfd(0, EFD_CLOEXEC)) {}
    Parts(const Parts&) = delete;
    Parts& operator=(const Parts&) = delete;
    ~Parts() {
        ::close(stopping);
        ::close(ended);
    }

    void configure();
    void serve(const httplib::Request& request, httplib::Response& response, std::string_view body);
    void send(const Answer& answer, int socket, httplib::Response& response) const;
    [[nodiscard]] Wake wait(int socket, int milliseconds, int decided = -1) const;

    Listener listener;
    /// Readable from the moment that the server is to stop, and that it has.
    const int stopping;
    const int ended;
    Handler handler;
};

void HttpServer::Parts::configure() {
    listener.new_task_queue = [] { return new httplib::ThreadPool(kConnections); };
    listener.set_payload_max_length(kLongestBody);
    listener.set_socket_options(claimPort);
    listener.set_tcp_nodelay(true);
    listener.set_keep_alive_max_count(1000);
    listener.set_pre_routing_handler([](const httplib::Request& request, httplib::Response& response) {
        if (request.path.size() <= kLongestPath) return httplib::Server::HandlerResponse::Unhandled;
        response.status = 414;
        response.set_header("Connection", "close");
        return httplib::Server::HandlerResponse::Handled;
    });
    listener.Get(".*", [this](const auto& request, auto& response) { serve(request, response, {}); });
    listener.Post(".*", [this](const auto& request, auto& response, const auto& reader) {
        std::string body;
        std::size_t size = 0;
        const bool isRead = reader([&](const char* data, std::size_t more) {
            size += more;
            if (size <= kLongestBody) body.append(data, more);
            return size <= kMostDiscarded;
        });
        if (isRead && size <= kLongestBody) return serve(request, response, body);
        // The library has set 413 for a length that was announced, and 400 for a body that breaks off.
        if (size > kLongestBody) response.status = 413;
        response.set_header("Connection", "close");
    });
}

/// Waits until the peer goes, the server stops, something is decided, or the time is over.
Wake HttpServer::Parts::wait(int socket, int milliseconds, int decided) const {
    std::array<pollfd, 3> waited{{{stopping, POLLIN, 0}, {socket, POLLRDHUP, 0}, {decided, POLLIN, 0}}};
    int changed = 0;
    do
        changed = ::poll(waited.data(), waited.size(), milliseconds);
    while (changed < 0 && errno == EINTR);
    if (changed == 0) return Wake::time;
    return waited[0].revents == 0 && waited[1].revents == 0 ? Wake::decision : Wake::cut;
}

void HttpServer::Parts::serve(const httplib::Request& request, httplib::Response& response,
                              std::string_view body) {
    const int socket = socketOf(request);
    const Answer answer = handler(readRequest(request, body));
    if (!answer.held) return send(answer, socket, response);
    if (wait(socket, kHeldMilliseconds, answer.held->decided()) != Wake::cut)
        return send(answer.held->release(), socket, response);
    answer.held->abandon();
    ::shutdown(socket, SHUT_RDWR);
}

void HttpServer::Parts::send(const Answer& answer, int socket, httplib::Response& response) const {
    const bool isWithheld = answer.delivery == Delivery::withhold;
    const int patience = isWithheld ? kNotInTime : static_cast<int>(answer.delay.count());
    const bool isCut = (isWithheld || patience > 0) && wait(socket, patience) == Wake::cut;
    if (isCut || answer.delivery == Delivery::closeConnection) {
        ::shutdown(socket, SHUT_RDWR);
        return;
    }
    response.status = answer.status;
    for (const HeaderField& field : answer.headers)
        response.set_header(field.name, field.value);
    response.set_content(answer.body, std::string(answer.contentType));
}

HttpServer::HttpServer(const std::filesystem::path& certificate, const std::filesystem::path& key)
    : parts_(std::make_unique<Parts>(certificate, key)) {
    if (!parts_->listener.is_valid())
        throw UsageError(certificate.string() + " and " + key.string() + " are no certificate and its key.");
    parts_->configure();
}

HttpServer::~HttpServer() = default;

int HttpServer::bind(const std::string& host, int port) {
    Listener& listener = parts_->listener;
    const int bound = port == 0                           ? listener.bind_to_any_port(host)
                      : listener.bind_to_port(host, port) ? port
                                                          : -1;
    if (bound < 0)
        throw UsageError("Nothing can listen on " + host + ":" + std::to_string(port) + ": " +
                         std::generic_category().message(errno) + ".");
    listener.widenBacklog();
    return bound;
}

void HttpServer::run(Handler handler) {
    parts_->handler = std::move(handler);
    parts_->listener.listen_after_bind();
    ::eventfd_write(parts_->ended, 1);
}

void HttpServer::stop() {
    ::eventfd_write(parts_->stopping, 1);
    // Again and again: a connection may be accepted while the others are shut.
    constexpr int kPause = 20;
    pollfd ended{parts_->ended, POLLIN, 0};
    do
        shutDownEverySocket();
    while (::poll(&ended, 1, kPause) <= 0);
}

} // namespace korvane::acs
