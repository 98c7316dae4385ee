#include "tests/support/CannedServer.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <string_view>
#include <utility>
#include <vector>

namespace korvane {

namespace {

constexpr int kBacklog = 512;

/// Whether a request has come with all of its body.
bool isWhole(const std::string& request) {
    constexpr std::string_view kLength = "Content-Length: ";
    const std::size_t head = request.find("\r\n\r\n");
    if (head == std::string::npos) return false;
    const std::size_t length = request.find(kLength);
    const unsigned long body = length < head ? std::stoul(request.substr(length + kLength.size())) : 0;
    return request.size() >= head + 4 + body;
}

/// @return false once the client has closed.
bool receive(int connection, std::string& text) {
    std::array<char, 4096> buffer{};
    const ssize_t count = recv(connection, buffer.data(), buffer.size(), 0);
    if (count > 0) text.append(buffer.data(), static_cast<std::size_t>(count));
    return count > 0;
}

void send(int connection, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = ::send(connection, text.data(), text.size(), MSG_NOSIGNAL);
        if (count <= 0) return;
        text.remove_prefix(static_cast<std::size_t>(count));
    }
}

} // namespace

CannedServer::CannedServer(std::string answer, std::size_t held)
    : answer_(std::move(answer)), held_(held), listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* const plain = reinterpret_cast<sockaddr*>(&address);
    if (bind(listener_, plain, length) != 0 || getsockname(listener_, plain, &length) != 0 ||
        listen(listener_, kBacklog) != 0)
        std::abort();
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { serve(); });
}

CannedServer::~CannedServer() {
    shutdown(listener_, SHUT_RDWR);
    thread_.join();
    close(listener_);
}

void CannedServer::serve() {
    std::vector<int> waiting;
    std::size_t accepted = 0;
    for (int connection = 0; (connection = accept(listener_, nullptr, nullptr)) >= 0;) {
        waiting.push_back(connection);
        if (++accepted < held_) continue;
        for (const int each : std::exchange(waiting, {}))
            this->answer(each);
    }
    for (const int each : waiting)
        close(each);
}

/// The request is read to its end: a connection that is closed before would take the answer with it.
void CannedServer::answer(int connection) const {
    std::string request;
    while (!isWhole(request) && receive(connection, request)) {
    }
    send(connection, answer_);
    close(connection);
}

} // namespace korvane
