#pragma once

#include "tools/challenge/Certificates.h"
#include "tools/challenge/play/Play.h"

#include <cstdint>
#include <string>

namespace korvane::challenge {

/// What the tool is started with.
struct Options {
    DirectoryServer server;
    std::string messageVersion = "2.2.0";
    /// For the whole challenge, in minutes.
    std::int64_t timeout = 5;
    std::string locale = "en-US";
    /// Further authorities for HTTPS, as a file in DER or PEM; empty for none.
    std::string certificateAuthority;
    /// Where the authentication request goes; empty where the standard streams carry it.
    std::string authenticate;
    bool isLogging = false;
    PlayOptions play;
};

} // namespace korvane::challenge
