#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <string_view>

namespace korvane::tools {

// Exit codes.
constexpr int kDone = 0;
constexpr int kNotDone = 1;
constexpr int kWrongUsage = 2;

/// Runs a tool from its command line to its exit code: `--help` and `--version`, and what every tool says of
/// errors. Nothing that is thrown gets past it: a `UsageError` or a `FaultyText` is wrong usage, anything else a job not done.
/// A standard stream that is closed becomes one that fails, and a reader that goes is no signal any more.
/// @param run  does the job, and gives the exit code.
[[nodiscard]] int runTool(CLI::App& app, int argc, char** argv, const std::function<int()>& run);

/// Says on stderr why something was not done.
void complain(std::string_view tool, std::string_view reason);

/// For an option whose value must not be empty: a script's variable that is not set must not pass for an
/// option that is absent.
[[nodiscard]] CLI::Validator notEmpty();

/// For an option that names a server.
[[nodiscard]] CLI::Validator isHTTP();

} // namespace korvane::tools
