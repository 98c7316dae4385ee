#pragma once

#include <stdexcept>

namespace korvane::acs {

/// What the person who started the tool can mend: a scenario, a folder, an address. The text is for stderr.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace korvane::acs
