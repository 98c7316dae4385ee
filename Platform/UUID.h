#pragma once

#include <string>

namespace korvane {

/// A fresh random UUID (RFC 4122 version 4) as text of 36 characters in upper case.
[[nodiscard]] std::string makeUUIDString();

} // namespace korvane
