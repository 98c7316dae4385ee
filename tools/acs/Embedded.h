#pragma once

#include <span>
#include <string_view>

namespace korvane::acs {

/// A file of the source tree that the program carries with it.
struct EmbeddedFile {
    /// From the tool's own folder: `page/page.js`.
    std::string_view name;
    std::string_view text;
};

/// All of them: `page/` and `scenarios/`.
[[nodiscard]] std::span<const EmbeddedFile> embeddedFiles();

/// The text of a file that is there.
[[nodiscard]] std::string_view embeddedText(std::string_view name);

} // namespace korvane::acs
