#include "tests/support/LocalServer.h"

#include "Platform/LetterCase.h"
#include "tests/support/Files.h"

#include <httplib.h>

#include <condition_variable>
#include <cstdlib>
#include <ctime>
#include <mutex>
#include <thread>

namespace korvane {

namespace {

constexpr const char* kCertificate = KORVANE_SERVER_CERTIFICATE;
constexpr const char* kKey = KORVANE_SERVER_KEY;

/// An open connection holds a thread, and a server's end waits for connections that idle.
constexpr std::size_t kThreads = 48;

std::unique_ptr<httplib::Server> makeServer(LocalServer::Transport transport) {
    if (transport == LocalServer::Transport::tls)
        return std::make_unique<httplib::SSLServer>(kCertificate, kKey);
    return std::make_unique<httplib::Server>();
}

ReceivedRequest asReceived(const httplib::Request& request) {
    ReceivedRequest received{request.method, request.path, {}, request.body, request.remote_port};
    for (const auto& [name, value] : request.headers)
        received.headers[lowercased(name)] = value;
    return received;
}

} // namespace

struct LocalServer::State {
    explicit State(Transport transport) : isTls(transport == Transport::tls), server(makeServer(transport)) {}

    void answer(const httplib::Request& request, httplib::Response& response);
    void beSilent();

    const bool isTls;
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<ReceivedRequest> received;
    bool isSilent = false;
    bool isOver = false;
    std::unique_ptr<httplib::Server> server;
    int port = 0;
    std::thread thread;
};

void LocalServer::State::answer(const httplib::Request& request, httplib::Response& response) {
    {
        const std::lock_guard lock(mutex);
        received.push_back(asReceived(request));
    }
    const auto parameter = [&request](const char* name) { return request.get_param_value(name); };
    const std::string& path = request.path;
    if (path == "/echo") response.set_content(request.body.empty() ? "nothing" : request.body, "text/plain");
    if (path == "/broken") response.set_content("broken", "text/plain");
    if (path == "/broken") response.status = 500;
    if (path == "/missing") response.status = 404;
    if (path == "/silence") beSilent();
    if (path == "/redirect") response.set_redirect(parameter("to"), std::stoi(parameter("status")));
    if (path == "/size") response.set_content(std::string(std::stoul(parameter("bytes")), 'x'), "text/plain");
    if (path != "/cut") return;
    response.set_content_provider(100, "text/plain", [](std::size_t, std::size_t, httplib::DataSink& sink) {
        return sink.write("0123456789", 10) && false;
    });
}

void LocalServer::State::beSilent() {
    std::unique_lock lock(mutex);
    isSilent = true;
    changed.notify_all();
    changed.wait(lock, [this] { return isOver; });
}

LocalServer::LocalServer(Transport transport) : state_(std::make_unique<State>(transport)) {
    const auto handler = [state = state_.get()](const httplib::Request& request,
                                                httplib::Response& response) {
        state->answer(request, response);
    };
    state_->server->Get(".*", handler).Post(".*", handler);
    state_->server->new_task_queue = [] { return new httplib::ThreadPool(kThreads); };
    state_->server->set_keep_alive_timeout(kKeepAlive.count());
    state_->port = state_->server->bind_to_any_port("127.0.0.1");
    if (state_->port <= 0) std::abort();
    state_->thread = std::thread([state = state_.get()] { state->server->listen_after_bind(); });
    while (!state_->server->is_running())
        std::this_thread::yield();
}

LocalServer::~LocalServer() {
    {
        const std::lock_guard lock(state_->mutex);
        state_->isOver = true;
        state_->changed.notify_all();
    }
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
    std::unique_lock lock(state_->mutex);
    state_->changed.wait(lock, [this] { return state_->isSilent; });
}

std::string LocalServer::authority() {
    return readFile(kCertificate);
}

} // namespace korvane
