#pragma once

#include "Platform/URLSession.h"

#include <optional>
#include <string>
#include <string_view>

namespace korvane {

// What holds of every request, whoever carries it.

/// Why a request cannot be sent at all: its URL's scheme, or a line break in its method or headers.
[[nodiscard]] std::optional<std::string> refusal(const URLRequest& request);

/// Whether asking once more changes nothing on the server (RFC 9110 section 9.2.2): what may be repeated and
/// redirected.
[[nodiscard]] bool isRepeatable(const URLRequest& request);

/// Whether the URL's scheme is https.
[[nodiscard]] bool isOverTLS(std::string_view url);

inline constexpr long kMostRedirects = 20;
inline constexpr const char* kUserRefusal = "A URL must not name a user.";
inline constexpr const char* kBodyRefusal = "The answer is larger than 16 MiB.";

} // namespace korvane
