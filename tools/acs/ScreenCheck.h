#pragma once

#include "Platform/CheckedText.h"
#include "Platform/JSON.h"
#include "Sdk/Messages/CRes.h"

#include <string>
#include <string_view>
#include <vector>

namespace korvane::acs {

// Messages in files, looked at with the library's own eyes, so that a slip shows there and not in a challenge.

/// The members of a CRes that make a screen; those that every CRes has, the ACS sets itself.
[[nodiscard]] std::vector<std::string_view> screenMembers();

/// A screen's members as a whole CRes. What the ACS adds is good; HTML is sealed as Base64URL.
[[nodiscard]] JSON messageOf(const JSON& screen);

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
void checkCRes(CheckedText& text);

} // namespace korvane::acs
