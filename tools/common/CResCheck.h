#pragma once

#include "Platform/CheckedText.h"
#include "Platform/JSON.h"
#include "Sdk/Messages/CRes.h"

#include <string>

namespace korvane::tools {

// Messages in files, looked at with the library's own eyes, so that a slip shows there and not in a challenge.

/// Decodes a message, and gathers every member that cannot be.
/// @param path  of the object in the file that has the members.
/// @return the message without those members.
CRes decodeChecked(CheckedText& text, const std::string& path, JSON message);

/// Whether it answers the first request of a challenge: that must be a screen.
enum class MessagePlace { first, anywhere };

/// Gathers the members for which the library would end the challenge.
void judgeMessage(CheckedText& text, Remark::Kind kind, const std::string& path, const CRes& message,
                  MessagePlace place);

/// Reads a file's CRes: what is wrong with it is a fault, what the library does not know a warning.
/// @return the message without the members that cannot be decoded.
CRes checkCRes(CheckedText& text);

} // namespace korvane::tools
