#pragma once

#include "Crypt/ECPrivateKey.h"
#include "Crypt/ECPublicKey.h"
#include "Platform/Bytes.h"
#include "Platform/Security/SecKey.h"
#include "Platform/Security/Secret.h"

#include <concepts>
#include <variant>

namespace korvane {

/// A key of any type, seen by its dynamic type. Borrows the key. Algorithms work with bytes, `SecKey`,
/// `ECPublicKey` and `ECPrivateKey`; a key of any other type suits none.
class AnyKey {
public:
    AnyKey(ByteView key) : key_(key) {}
    AnyKey(const Bytes& key) : key_(ByteView(key)) {}
    AnyKey(const SecretBytes& key) : key_(ByteView(key)) {}
    AnyKey(const SecKey& key) : key_(&key) {}
    AnyKey(const ECPublicKey& key) : key_(&key) {}
    AnyKey(const ECPrivateKey& key) : key_(&key) {}
    AnyKey(const JWK&) {}

    /// The key as a `Key`, or null where it is of another type.
    template <class Key>
    [[nodiscard]] const Key* cast() const noexcept {
        const auto* held = std::get_if<const Key*>(&key_);
        return held ? *held : nullptr;
    }

    /// The key's bytes, or null where it is not bytes.
    [[nodiscard]] const ByteView* castToBytes() const noexcept { return std::get_if<ByteView>(&key_); }

private:
    std::variant<std::monostate, ByteView, const SecKey*, const ECPublicKey*, const ECPrivateKey*> key_;
};

} // namespace korvane
