#pragma once

#include "Crypt/JWK.h"

#include <initializer_list>
#include <memory>
#include <vector>

namespace korvane {

/// What a JSON object is, by its "kty" and whether it has a "d".
enum class JWKTypeErrorCase {
    typeIsECPrivate,
    typeIsECPublic,
    typeIsRSAPublic,
    typeIsRSAPrivate,
    typeIsSymmetric,
    typeIsUnknown,
};

[[nodiscard]] constexpr std::string_view rawValue(JWKTypeErrorCase value) {
    using enum JWKTypeErrorCase;
    switch (value) {
    case typeIsECPrivate: return "typeIsECPrivate";
    case typeIsECPublic: return "typeIsECPublic";
    case typeIsRSAPublic: return "typeIsRSAPublic";
    case typeIsRSAPrivate: return "typeIsRSAPrivate";
    case typeIsSymmetric: return "typeIsSymmetric";
    case typeIsUnknown: return "typeIsUnknown";
    }
    return kNoRawValue;
}

template <>
struct FailureTraits<JWKTypeErrorCase> {
    static constexpr std::string_view domain = "JWKTypeError";
    using Value = FailureValue;
};

using JWKTypeError = TypedFailure<JWKTypeErrorCase>;

/// Classifies a JSON object as a type of key, by failing.
class JWKBase {
public:
    /// Always throws.
    /// @throws JWKTypeError naming the type; DecodingError for an object without a "kty" of text
    /// or with a foreign "d".
    [[noreturn]] static void make(const JSON& object);
};

/// A JWK set (RFC 7517 section 5): the keys of a JSON array, in order. Keys are shared and never change.
class JWKSet {
public:
    using Key = std::shared_ptr<const JWK>;

    explicit JWKSet(std::vector<Key> keys) : keys_(std::move(keys)) {}
    JWKSet(std::initializer_list<Key> keys) : keys_(keys) {}

    /// Decodes JSON.
    /// @throws DecodingError, dataCorrupted when an element is no key of a known type.
    [[nodiscard]] static JWKSet make(ByteView data);

    [[nodiscard]] const std::vector<Key>& keys() const noexcept { return keys_; }

    [[nodiscard]] std::size_t size() const noexcept { return keys_.size(); }
    [[nodiscard]] const JWK& operator[](std::size_t index) const { return *keys_[index]; }
    [[nodiscard]] auto begin() const noexcept { return keys_.begin(); }
    [[nodiscard]] auto end() const noexcept { return keys_.end(); }

    /// @return no value when a text of a key is not UTF-8.
    [[nodiscard]] std::optional<std::string> jsonString() const;
    [[nodiscard]] std::optional<Bytes> jsonData() const;

private:
    std::vector<Key> keys_;
};

} // namespace korvane
