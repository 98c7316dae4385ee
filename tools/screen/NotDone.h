#pragma once

#include <stdexcept>

namespace korvane::screen {

/// Why nothing was drawn, other than by wrong usage: a CRes that shows no screen, a page that does not load, a
/// picture that cannot be written. `what()` tells the person.
class NotDone : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace korvane::screen
