#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace korvane::jose {

/// What is wrong with a text that is no JWE or JWS, in words for a person.
class Complaint : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Describes a compact JWE or JWS to a person: its kind, its header and the size of each part. Needs no key,
/// decrypts and verifies nothing.
/// @throws Complaint
[[nodiscard]] std::string inspect(std::string_view compact);

} // namespace korvane::jose
