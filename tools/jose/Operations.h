#pragma once

#include "Input/Arguments.h"
#include "Platform/JSON.h"

namespace korvane::jose {

// The operations of batch mode. Each takes the members that `kOperations` lists and gives the members of its
// answer. All of them throw InputError for what the input has wrong, and pass on what the library throws.

/// Seals a payload. The members of "header" stand behind "alg" and "enc" as they are.
[[nodiscard]] JSON encryptJWE(const input::Arguments& arguments);

/// Opens a JWE with the algorithms that its header names.
[[nodiscard]] JSON decryptJWE(const input::Arguments& arguments);

/// Signs a payload. The members of "header" stand behind "alg" as they are.
[[nodiscard]] JSON signJWS(const input::Arguments& arguments);

/// Verifies a JWS with the algorithm that its header names.
[[nodiscard]] JSON verifyJWS(const input::Arguments& arguments);

/// Verifies a bare signature: for the ES algorithms r and s at full length. A signature that does not verify
/// is an answer, one of a wrong length a failure.
[[nodiscard]] JSON verifySignature(const input::Arguments& arguments);

[[nodiscard]] JSON thumbprintJWK(const input::Arguments& arguments);

/// The X coordinate of the shared point.
[[nodiscard]] JSON deriveECDH(const input::Arguments& arguments);

/// The Concat KDF over SHA-256; the function itself puts the lengths in front of the first three values.
[[nodiscard]] JSON deriveConcatKDF(const input::Arguments& arguments);

} // namespace korvane::jose
