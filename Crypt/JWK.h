#pragma once

#include "Crypt/JOSEError.h"
#include "Crypt/JWKParameters.h"
#include "Platform/Bytes.h"
#include "Platform/JSONDecoding.h"
#include "Platform/Security/Secret.h"

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace korvane {

/// What tells one type of key from another: its "kty", the names of its numbers, and how it is decoded.
struct JWKForm {
    JWKKeyType keyType;
    std::span<const std::string_view> numbers;
    /// The number that a thumbprint leaves out, or an empty text.
    std::string_view privateNumber;
    std::string_view wrongKeyTypeText;
    /// Whether decoding passes over members whose value is an array, or fails on them.
    bool skipsArrays;
};

/// A key as a JSON object (RFC 7517). Its numbers are kept as the Base64URL texts of the JSON,
/// unchecked; they turn into bytes or platform keys when `converted` is asked. A value; its texts are
/// cleansed when it dies.
class JWK {
public:
    virtual ~JWK() = default;

    [[nodiscard]] JWKKeyType keyType() const noexcept { return form_->keyType; }

    /// Everything that the key holds, "kty" and its numbers included.
    [[nodiscard]] const StringMap& parameters() const noexcept { return parameters_; }

    /// What a thumbprint is made of (RFC 7638 section 3.2).
    [[nodiscard]] StringMap requiredParameters() const;

    /// A look-up in `parameters`.
    [[nodiscard]] std::optional<std::string> operator[](std::string_view parameter) const;

    /// The key as JSON: "kty", those of its `parameters` that any JWK may have, and the numbers of its type.
    /// @return no value when a text of the key is not UTF-8.
    [[nodiscard]] std::optional<std::string> jsonString() const;
    [[nodiscard]] std::optional<Bytes> jsonData() const;

    /// The Base64URL text of the digest (RFC 7638).
    /// @throws JOSEError thumbprintSerialization when a text of the key is not UTF-8.
    [[nodiscard]] std::string
    thumbprint(JWKThumbprintAlgorithm algorithm = JWKThumbprintAlgorithm::SHA256) const;

    friend bool operator==(const JWK& left, const JWK& right) {
        return left.form_ == right.form_ && left.parameters_ == right.parameters_;
    }

protected:
    /// The key's own parameters win over additional ones of the same name.
    /// @param numbers  as the form names them, in its order.
    template <std::size_t Count>
    JWK(const JWKForm& form, std::array<std::string, Count> numbers, const StringMap& additional)
        : form_(&form) {
        for (std::size_t index = 0; index < Count; ++index)
            parameters_.emplace(form.numbers[index], std::move(numbers[index]));
        addBeside(additional);
    }
    JWK(const JWKForm& form, const JSONField& object);
    JWK(const JWK&) = default;
    JWK(JWK&&) = default;
    JWK& operator=(const JWK&) = default;
    JWK& operator=(JWK&&) = default;

    [[nodiscard]] const std::string& number(std::string_view name) const {
        return parameters_.find(name)->second;
    }

    /// Takes a foreign key apart.
    /// @throws JOSEError couldNotConstructJWK in place of any failure.
    template <class TakeApart>
    [[nodiscard]] static auto componentsFrom(TakeApart takeApart) {
        try {
            return takeApart();
        } catch (const Failure&) {
            throw JOSEError(JOSEErrorCase::couldNotConstructJWK);
        }
    }

    /// The number as bytes.
    /// @throws JOSEError `failure` when it is not Base64URL.
    [[nodiscard]] Bytes decodedNumber(std::string_view name, JOSEErrorCase failure) const;
    [[nodiscard]] SecretBytes decodedSecret(std::string_view name, JOSEErrorCase failure) const;

    void setNumber(std::string_view name, std::string value);
    void setKeyIdentifier(std::string kid);

    /// @throws DecodingError dataCorrupted when "crv" names no curve.
    void requireCurve() const;

private:
    void addBeside(const StringMap& additional);
    [[nodiscard]] bool isNumber(std::string_view name) const;

    const JWKForm* form_;
    StringMap parameters_;
};

/// What each type of key has in its own type.
template <class Key>
class JWKOf : public JWK {
public:
    /// Decodes JSON text.
    /// @throws DecodingError naming the member; JOSEError symmetricKeyNotBase64URLEncoded
    /// for a symmetric key.
    [[nodiscard]] static Key make(ByteView data) {
        const SecretJSON object(decodeObject(asText(data)));
        return decode(*object);
    }

    /// Decodes a value, or a field inside a record, whose path failures then tell. As above.
    [[nodiscard]] static Key decode(const JSON& object) { return Key(JSONField(object)); }
    [[nodiscard]] static Key decodeField(const JSONField& field) { return Key(field); }

    /// The same key with its thumbprint as "kid".
    /// @throws JOSEError as `thumbprint`
    [[nodiscard]] Key
    withThumbprintAsKeyId(JWKThumbprintAlgorithm algorithm = JWKThumbprintAlgorithm::SHA256) const {
        Key key = static_cast<const Key&>(*this);
        key.setKeyIdentifier(thumbprint(algorithm));
        return key;
    }

protected:
    using JWK::JWK;
};

/// RFC 7638, over the JSON text of the required parameters.
struct Thumbprint {
    /// @throws ThumbprintError inputMustBeGreaterThanZero
    [[nodiscard]] static std::string calculate(ByteView input, JWKThumbprintAlgorithm algorithm);
};

enum class ThumbprintErrorCase { inputMustBeGreaterThanZero };

[[nodiscard]] constexpr std::string_view rawValue(ThumbprintErrorCase value) {
    switch (value) {
    case ThumbprintErrorCase::inputMustBeGreaterThanZero: return "inputMustBeGreaterThanZero";
    }
    return kNoRawValue;
}

template <>
struct FailureTraits<ThumbprintErrorCase> {
    static constexpr std::string_view domain = "ThumbprintError";
    using Value = FailureValue;
};

using ThumbprintError = TypedFailure<ThumbprintErrorCase>;

} // namespace korvane
