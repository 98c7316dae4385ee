#pragma once

#include <string_view>

namespace korvane {

/// The kinds of message that an ACS answers with; `unknown` for every other text.
enum class MessageType { CRes, Erro, unknown };

/// Tells a message's type before it is parsed: by the first four word characters of the first "messageType"
/// member that the text seems to have, wherever it stands. Octets that are not UTF-8 are no word characters.
[[nodiscard]] MessageType recognizeMessageType(std::string_view text);

} // namespace korvane
