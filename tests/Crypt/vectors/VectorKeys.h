#pragma once

#include "Crypt/Algorithms.h"
#include "Crypt/AnyKey.h"
#include "Crypt/ECPrivateKey.h"
#include "Platform/Bytes.h"
#include "Platform/JSON.h"
#include "Platform/Security/SecKey.h"
#include "Platform/Security/Secret.h"

#include <optional>
#include <string>
#include <variant>

namespace korvane {

/// A decryption key of any type that suits an algorithm, owned.
using OwnedKey = std::variant<SecretBytes, SecKey, ECPrivateKey>;

/// The key that a JWK with its private number opens messages with. RSA keys are made of their numbers, since
/// no JWK converts to one.
[[nodiscard]] OwnedKey decryptionKey(const JSON& jwk);

[[nodiscard]] AnyKey asAnyKey(const OwnedKey& key);

/// The platform's public key of an RSA or EC JWK, through the JWK types.
[[nodiscard]] SecKey publicKey(const JSON& jwk);

/// The platform's private key of an RSA or EC JWK.
[[nodiscard]] SecKey privateKey(const JSON& jwk);

/// The signature algorithm that a JWK is pinned to; the vectors write ES512 as "ES521" too.
[[nodiscard]] std::optional<SignatureAlgorithm> algorithmOf(const JSON& jwk);

/// The platform's key of an uncompressed point, whose length tells the curve.
[[nodiscard]] SecKey publicKeyOfPoint(ByteView point);

/// The bytes of a Base64URL text; anything else throws.
[[nodiscard]] Bytes decoded(const std::string& base64URL);

} // namespace korvane
