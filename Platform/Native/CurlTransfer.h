#pragma once

#include "Platform/Native/CurlHandles.h"
#include "Platform/URLSession.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace korvane {

/// What a request came to: a body or an error's text.
struct TransferOutcome {
    std::optional<Bytes> body;
    std::optional<std::string> error;
};

/// One request in libcurl's terms. One thread.
class CurlTransfer {
public:
    /// @param request      outlives this object; `refusal` has nothing against it.
    /// @param authorities  the authorities to trust as PEM texts; empty for the system's.
    /// Outlives this object.
    CurlTransfer(const URLRequest& request, const URLSessionConfiguration& configuration,
                 std::string_view authorities);
    CurlTransfer(const CurlTransfer&) = delete;
    CurlTransfer& operator=(const CurlTransfer&) = delete;

    [[nodiscard]] CURL* handle() const noexcept { return easy_.get(); }

    /// Once libcurl has ended the transfer.
    [[nodiscard]] TransferOutcome outcome(CURLcode code);

    /// The answer's status code, or 0 where none has come.
    [[nodiscard]] int status() const;

private:
    static std::size_t receive(char* bytes, std::size_t size, std::size_t count, void* transfer);
    static std::size_t receiveHead(char* bytes, std::size_t size, std::size_t count, void* transfer);
    static int permit(void* transfer, char*, char*, int, int);

    void setRoads();
    void setMethod(const URLRequest& request);
    void setHeaders(const URLRequest& request);
    void setLimits(const URLRequest& request, const URLSessionConfiguration& configuration);
    void setTrust(std::string_view authorities);

    CurlEasy easy_{curl_easy_init()};
    CurlList headers_;
    Bytes body_;
    std::size_t headBytes_ = 0;
    /// Why the answer was refused, or null.
    const char* excess_ = nullptr;
    bool isRepeatable_ = false;
    bool isSent_ = false;
    std::array<char, CURL_ERROR_SIZE> error_{};
};

} // namespace korvane
