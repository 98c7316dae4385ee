#pragma once

#include "Platform/Bytes.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

/// The operations of the library written down as bare OpenSSL calls: what a careful caller would do for the
/// same bytes, without a header to read, keys to choose, or failures to tell apart. A failure of OpenSSL ends
/// the process. One thread only.
namespace korvane::bench::bare {

/// Puts a counting allocator under OpenSSL; to be called before anything else of OpenSSL is.
void countAllocations();
[[nodiscard]] std::size_t allocationCount();

/// Compact JWEs with A128CBC-HS256 (RFC 7516, RFC 7518 section 5.2.3). The key is set for each message, as a
/// content key is one message's own.
class Sealing {
public:
    Sealing();
    ~Sealing();

    /// @param header  JSON. @param contentKey  32 bytes, MAC key first.
    [[nodiscard]] std::string seal(ByteView header, ByteView encryptedKey, ByteView contentKey,
                                   ByteView payload);

    /// The payload of a compact JWE whose second part is not looked at.
    [[nodiscard]] Bytes open(std::string_view compact, ByteView contentKey);

private:
    struct State;
    std::unique_ptr<State> state_;
};

/// RSA-OAEP-256 (RFC 7518 section 4.3).
class KeyEncryption {
public:
    /// @param publicKey  DER RSAPublicKey.
    explicit KeyEncryption(ByteView publicKey);
    ~KeyEncryption();

    /// A fresh content key, and that key encrypted.
    struct Result {
        Bytes contentKey;
        Bytes encryptedKey;
    };
    [[nodiscard]] Result encryptFreshKey();

private:
    struct State;
    std::unique_ptr<State> state_;
};

enum class Signature { RS256, PS256, ES256 };

/// Compact JWSs (RFC 7515 section 5.2).
class Verification {
public:
    /// @param publicKey  DER RSAPublicKey, or an uncompressed P-256 point.
    Verification(Signature signature, ByteView publicKey);
    ~Verification();

    /// The payload; a bad signature ends the process.
    [[nodiscard]] Bytes verify(std::string_view compact);

private:
    struct State;
    std::unique_ptr<State> state_;
};

/// The Base64URL texts of a P-256 key; `d` is empty for a public one.
struct KeyTexts {
    std::string x;
    std::string y;
    std::string d;
};

/// ECDH on P-256 with the Concat KDF over one SHA-256 (RFC 7518 section 4.6).
class Agreement {
public:
    Agreement();
    ~Agreement();

    /// Imports both keys and agrees.
    /// @param otherInfo  all that is hashed behind the shared secret.
    [[nodiscard]] Bytes agree(const KeyTexts& privateKey, const KeyTexts& publicKey, ByteView otherInfo);

private:
    struct State;
    std::unique_ptr<State> state_;
};

class KeyGeneration {
public:
    KeyGeneration();
    ~KeyGeneration();

    /// A fresh P-256 key pair.
    [[nodiscard]] KeyTexts generate();

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace korvane::bench::bare
