#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace korvane::tools {

// What a tool tells of itself beside `--help`, all of it made from its table of options.

/// What the value of an option is, for its `type_name`: the help shows it, and a shell completes it.
inline constexpr const char* kFile = "FILE";
inline constexpr const char* kFolder = "FOLDER";

/// A manual page of section 1, in the man macros of roff.
/// @param version  of the tool, for the page's foot.
[[nodiscard]] std::string manualPage(const CLI::App& app, const std::string& version);

/// A script for bash that completes options, their values and files.
[[nodiscard]] std::string bashCompletion(const CLI::App& app);

} // namespace korvane::tools
