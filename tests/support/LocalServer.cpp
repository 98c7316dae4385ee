#include "tests/support/LocalServer.h"

#include "Platform/LetterCase.h"
#include "tests/support/Files.h"

#include <httplib.h>

#include <atomic>
#include <cstdlib>
#include <mutex>
#include <thread>

namespace korvane {

namespace {

constexpr const char* kCertificate = KORVANE_SERVER_CERTIFICATE;
constexpr const char* kKey = KORVANE_SERVER_KEY;

/// An open connection holds a thread, and a server's end waits for connections that idle.
constexpr std::size_t kThreads = 48;

std::unique_ptr<httplib::Server> makeServer(bool isTls) {
    if (isTls) return std::make_unique<httplib::SSLServer>(kCertificate, kKey);
    return std::make_unique<httplib::Server>();
}

} // namespace

struct LocalServer::State {
    explicit State(bool itsTls) : isTls(itsTls) {}

    void answer(const httplib::Request& request, httplib::Response& response);

    const bool isTls;
    const std::unique_ptr<httplib::Server> server = makeServer(isTls);
    const int port = server->bind_to_any_port("127.0.0.1");
    std::mutex mutex;
    std::vector<ReceivedRequest> received; // under the mutex
    std::atomic_bool isSilent = false;
    std::atomic_bool isOver = false;
    std::thread thread;
};

void LocalServer::State::answer(const httplib::Request& request, httplib::Response& response) {
    ReceivedRequest got{request.method, request.path, {}, request.body, request.remote_port};
    for (const auto& [name, value] : request.headers)
        got.headers[lowercased(name)] = value;
    {
        const std::lock_guard lock(mutex);
        received.push_back(std::move(got));
    }
    const auto parameter = [&request](const char* name) { return request.get_param_value(name); };
    const std::string& path = request.path;
    if (path == "/echo") response.set_content(request.body.empty() ? "nothing" : request.body, "text/plain");
    if (path == "/broken") response.set_content("broken", "text/plain");
    if (path == "/broken") response.status = 500;
    if (path == "/redirect") response.set_redirect(parameter("to"), std::stoi(parameter("status")));
    if (path == "/size") response.set_content(std::string(std::stoul(parameter("bytes")), 'x'), "text/plain");
    if (path == "/silence") {
        isSilent = true;
        isSilent.notify_all();
        isOver.wait(false);
    }
    if (path != "/cut") return;
    response.set_content_provider(100, "text/plain", [](std::size_t, std::size_t, httplib::DataSink& sink) {
        return sink.write("0123456789", 10) && false;
    });
}

LocalServer::LocalServer(Transport transport) : state_(new State(transport == Transport::tls)) {
    httplib::Server& server = *state_->server;
    if (state_->port <= 0) std::abort();
    const auto handler = [this](const auto& request, auto& response) { state_->answer(request, response); };
    server.Get(".*", handler).Post(".*", handler);
    server.new_task_queue = [] { return new httplib::ThreadPool(kThreads); };
    server.set_keep_alive_timeout(kKeepAlive.count());
    state_->thread = std::thread([&server] { server.listen_after_bind(); });
    while (!server.is_running())
        std::this_thread::yield();
}

LocalServer::~LocalServer() {
    state_->isOver = true;
    state_->isOver.notify_all();
    state_->server->stop();
    state_->thread.join();
}

std::string LocalServer::url(const std::string& path, const std::string& host) const {
    return (state_->isTls ? "https://" : "http://") + host + ":" + std::to_string(state_->port) + path;
}

std::vector<ReceivedRequest> LocalServer::received() const {
    const std::lock_guard lock(state_->mutex);
    return state_->received;
}

std::string LocalServer::redirectingUrl(const std::string& to, int status) const {
    return url("/redirect?status=" + std::to_string(status) +
               "&to=" + httplib::detail::encode_query_param(to));
}

void LocalServer::awaitSilence() {
    state_->isSilent.wait(false);
}

std::string LocalServer::authority() {
    return readFile(kCertificate);
}

} // namespace korvane
