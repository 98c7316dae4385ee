#include "tests/support/CannedServer.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace korvane {

CannedServer::CannedServer(std::string answer)
    : answer_(std::move(answer)), listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* const plain = reinterpret_cast<sockaddr*>(&address);
    if (bind(listener_, plain, length) != 0 || getsockname(listener_, plain, &length) != 0 ||
        listen(listener_, SOMAXCONN) != 0)
        std::abort();
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { serve(); });
}

CannedServer::~CannedServer() {
    shutdown(listener_, SHUT_RDWR);
    thread_.join();
    close(listener_);
}

/// The request is read to its end: a connection that is closed before would take the answer with it.
void CannedServer::serve() const {
    for (int connection = 0; (connection = accept(listener_, nullptr, nullptr)) >= 0;) {
        std::FILE* const request = fdopen(connection, "r");
        std::array<char, 4096> line{};
        while (std::fgets(line.data(), line.size(), request) && line[0] != '\r') {
        }
        send(connection, answer_.data(), answer_.size(), MSG_NOSIGNAL);
        std::fclose(request);
    }
}

} // namespace korvane
