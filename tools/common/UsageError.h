#pragma once

#include <stdexcept>

namespace korvane::tools {

/// What the person who started a tool can mend: an option, a file, a folder, an address.
/// The text is for stderr.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace korvane::tools
