#pragma once

#include "Platform/Bytes.h"
#include "Platform/URLSession.h"

#include <memory>
#include <optional>
#include <string>

namespace korvane {

/// What a request came to: a body, or the text of a transport failure, or neither if no answer came in time.
struct HttpAnswer {
    std::optional<Bytes> data;
    std::optional<std::string> errorDescription;

    friend bool operator==(const HttpAnswer&, const HttpAnswer&) = default;
};

/// Talks to one ACS. Each call blocks its thread for 12.0 seconds at most; status codes are not
/// looked at. Any thread.
class HttpClient {
public:
    /// Makes a session of its own on the current platform.
    /// @param acsURL  where all POST requests go; looked at when the first is made.
    explicit HttpClient(std::string acsURL);

    /// Posts a sealed CReq.
    /// @return both members absent, and nothing is sent, if the ACS URL is none.
    [[nodiscard]] HttpAnswer sendCReqData(const Bytes& body) const;

    /// Posts an Erro. Whatever comes of it is dropped.
    void sendErroData(const Bytes& body) const;

    /// Fetches an image.
    /// @throws SdkError InvalidInputException if `url` is no URL; nothing is sent then.
    [[nodiscard]] HttpAnswer loadImage(const std::string& url) const;

    /// @return no value if the ACS URL is none.
    [[nodiscard]] std::optional<URLRequest> createAcsRequest(const Bytes& body) const;

    /// @throws SdkError InvalidInputException if `url` is no URL.
    [[nodiscard]] static URLRequest createLoadImageRequest(const std::string& url);

    [[nodiscard]] HttpAnswer sendSynchroniousRequest(const URLRequest& request) const;

private:
    const std::shared_ptr<URLSession> session_;
    const std::string acsURL_;
};

} // namespace korvane
