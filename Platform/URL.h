#pragma once

#include "Platform/Export.h"

#include <optional>
#include <string>
#include <string_view>

namespace korvane {

/// A text that can be a URI reference (RFC 3986): not empty, only characters that a URI may hold, and every
/// "%" followed by two hexadecimal digits. Immutable.
class KORVANE_EXPORT URL {
public:
    [[nodiscard]] static std::optional<URL> make(std::string_view text);

    [[nodiscard]] const std::string& absoluteString() const noexcept { return text_; }

    friend bool operator==(const URL&, const URL&) = default;

private:
    explicit URL(std::string_view text) : text_(text) {}

    std::string text_;
};

} // namespace korvane
