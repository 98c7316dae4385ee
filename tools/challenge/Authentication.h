#pragma once

#include "Platform/JSON.h"
#include "tools/challenge/Wire.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace korvane::challenge {

/// What a 3DS server said to an authentication request.
struct ServerReply {
    /// What the challenge needs, or no value.
    std::optional<JSON> values;
    /// Why there is none.
    std::string complaint;
};

/// Sends an authentication request to a 3DS server, as the application would.
/// @param url      one that `URL::make` takes.
/// @param request  its values, as the application sends them.
/// @param onReply  runs on the main queue.
void askServer(const std::string& url, const JSON& request, std::shared_ptr<const Wire> wire,
               std::function<void(const ServerReply&)> onReply);

} // namespace korvane::challenge
