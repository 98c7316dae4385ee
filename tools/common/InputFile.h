#pragma once

#include <string>

namespace korvane::tools {

/// The content of a file that an option names: an ordinary file, a pipe or a device, of at most 16 MiB.
/// @throws UsageError naming the file and why it cannot be read: a folder, no rights, nothing in it.
[[nodiscard]] std::string readInputFile(const std::string& path);

} // namespace korvane::tools
