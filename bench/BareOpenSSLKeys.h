#pragma once

#include "Platform/Bytes.h"

#include <array>
#include <cstddef>
#include <memory>
#include <string_view>

/// RSA and P-256 as bare OpenSSL calls: platform keys, contexts and results are kept. One thread only.
namespace korvane::bench::bare {

/// RSA-OAEP-256 (RFC 7518 section 4.3).
class KeyEncryption {
public:
    /// @param publicKey  DER RSAPublicKey.
    explicit KeyEncryption(ByteView publicKey);
    ~KeyEncryption();

    /// A fresh content key, and that key encrypted. Views, until the next call.
    struct Result {
        ByteView contentKey;
        ByteView encryptedKey;
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

    /// @param header  the Base64URL text that the message must begin with.
    /// @return the payload, until the next call; a bad signature ends the process.
    [[nodiscard]] ByteView verify(std::string_view header, std::string_view compact);

private:
    struct State;
    std::unique_ptr<State> state_;
};

/// The numbers of a P-256 key; `d` is empty for a public one.
struct KeyNumbers {
    ByteView x;
    ByteView y;
    ByteView d;
};

class PublicKey {
public:
    explicit PublicKey(const KeyNumbers& numbers);
    ~PublicKey();

private:
    friend class KeyPair;
    struct State;
    std::unique_ptr<State> state_;
};

class KeyPair {
public:
    explicit KeyPair(const KeyNumbers& numbers);
    ~KeyPair();

    /// Takes a fresh pair in place of the one that it holds.
    void generate();

    /// ECDH with the Concat KDF over one SHA-256 (RFC 7518 section 4.6).
    /// @param otherInfo  all that is hashed behind the shared secret.
    [[nodiscard]] std::array<std::uint8_t, 32> agree(const PublicKey& peer, ByteView otherInfo);

    /// The public half as JWK text, until the next call.
    [[nodiscard]] std::string_view publicJwk();
    /// The pair as JWK text, until the next call.
    [[nodiscard]] std::string_view privateJwk();

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace korvane::bench::bare
