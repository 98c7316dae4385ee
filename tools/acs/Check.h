#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace korvane::acs {

/// Says of each file, a scenario or a CRes, all that is wrong with it, and what can be used and surely is not
/// what was meant, by line.
/// @return whether all can be used.
[[nodiscard]] bool checkFiles(const std::vector<std::string>& files, std::ostream& out);

} // namespace korvane::acs
