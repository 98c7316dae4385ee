#pragma once

#include "Platform/Bytes.h"
#include "Platform/Security/Secret.h"

#include <string_view>

namespace korvane {

/// The key of A128CBC-HS256 that both sides of a key agreement derive: the Concat KDF with SHA-256, only the
/// receiver's identifier as party information, and the key's 256 bits as public information. The receiver has
/// to know the identifier, since no message carries it.
/// @param z           the shared secret.
/// @param partyVInfo  the identifier as it stands.
/// @return 32 bytes.
[[nodiscard]] SecretBytes deriveContentKey(ByteView z, std::string_view partyVInfo);

} // namespace korvane
