#pragma once

#include "Platform/Bytes.h"
#include "Platform/URLSession.h"

#include <functional>

namespace korvane {

/// Hears of every answer that has come whole, before who asked does: the request, the status code (RFC 9110
/// section 15) and the body. On a thread of the network: it must not block.
using AnswerWatcher = std::function<void(const URLRequest& request, int status, ByteView body)>;

} // namespace korvane
