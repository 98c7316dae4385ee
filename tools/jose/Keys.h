#pragma once

#include "Crypt/AnyKey.h"
#include "Crypt/ECPrivateKey.h"
#include "Crypt/ECPublicKey.h"
#include "Platform/JSON.h"
#include "Platform/Security/SecKey.h"
#include "Platform/Security/Secret.h"

#include <string>
#include <string_view>
#include <variant>

namespace korvane::jose {

/// A key of the input in the form that the library's operations take: a symmetric key as bytes, an RSA key as
/// the platform's, an EC key as a JWK.
using Key = std::variant<SecretBytes, SecKey, ECPublicKey, ECPrivateKey>;

/// Reads a key: a JWK, `{"pem": ...}` (PKCS#8 or SubjectPublicKeyInfo) or `{"cert": ...}`
/// (ordinary Base64 of DER).
/// @param member  the key's name in the line, for descriptions.
/// @throws InputError unknownMember, wrongType, notBase64, wrongKey; DecodingError,
/// JOSEError, JWKError, CFError
[[nodiscard]] Key readKey(const JSON& key, std::string_view member);

/// The RFC 7638 thumbprint of a key; of a JWK it is made of the texts as they stand.
/// @throws as `readKey`
[[nodiscard]] std::string thumbprint(const JSON& key, std::string_view member);

[[nodiscard]] AnyKey asAnyKey(const Key& key);

/// The key that seals: a private key gives its public half.
[[nodiscard]] Key sealingKey(const JSON& key, std::string_view member);

/// The key that opens.
/// @throws InputError wrongKey for a public key; as `readKey`
[[nodiscard]] Key openingKey(const JSON& key, std::string_view member);

/// The platform's private key that signs.
/// @throws InputError wrongKey for any other key; as `readKey`
[[nodiscard]] SecKey signingKey(const JSON& key, std::string_view member);

/// The platform's public key that verifies: a private key gives its public half.
/// @throws InputError wrongKey for a symmetric key; as `readKey`
[[nodiscard]] SecKey verifyingKey(const JSON& key, std::string_view member);

/// @throws InputError wrongKey for any other key; as `readKey`
[[nodiscard]] ECPrivateKey agreementPrivateKey(const JSON& key, std::string_view member);

/// A private key gives its public half.
/// @throws InputError wrongKey for a key that is not EC; as `readKey`
[[nodiscard]] ECPublicKey agreementPublicKey(const JSON& key, std::string_view member);

} // namespace korvane::jose
