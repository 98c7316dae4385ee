#pragma once

#include "Platform/Export.h"

#include <stdexcept>

namespace korvane {

/// A file that a person wrote cannot be used. `what()` tells all that is wrong with it, for that person: a line
/// for each fault, `FILE:LINE: MEMBER: what is wrong`.
class KORVANE_EXPORT FaultyText : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace korvane
