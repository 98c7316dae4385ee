#pragma once

#include "Crypt/JWK.h"
#include "Platform/Bytes.h"
#include "Platform/Failure.h"
#include "Platform/JSON.h"
#include "Platform/URL.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

enum class HeaderParsingErrorCase {
    requiredHeaderParameterMissing, // std::string: the parameter
    headerIsNotValidJSONObject,
};

[[nodiscard]] constexpr std::string_view rawValue(HeaderParsingErrorCase value) {
    switch (value) {
    case HeaderParsingErrorCase::requiredHeaderParameterMissing: return "requiredHeaderParameterMissing";
    case HeaderParsingErrorCase::headerIsNotValidJSONObject: return "headerIsNotValidJSONObject";
    }
    return kNoRawValue;
}

template <>
struct FailureTraits<HeaderParsingErrorCase> {
    static constexpr std::string_view domain = "HeaderParsingError";
    using Value = FailureValue;
};

using HeaderParsingError = TypedFailure<HeaderParsingErrorCase>;

/// The parameters of JWS and JWE headers (RFC 7515 section 4.1, RFC 7516 section 4.1).
namespace HeaderParameter {
inline constexpr std::string_view alg = "alg";
inline constexpr std::string_view enc = "enc";
inline constexpr std::string_view zip = "zip";
inline constexpr std::string_view epk = "epk";
inline constexpr std::string_view apu = "apu";
inline constexpr std::string_view apv = "apv";
inline constexpr std::string_view jku = "jku";
inline constexpr std::string_view jwk = "jwk";
inline constexpr std::string_view kid = "kid";
inline constexpr std::string_view x5u = "x5u";
inline constexpr std::string_view x5c = "x5c";
inline constexpr std::string_view x5t = "x5t";
inline constexpr std::string_view x5tS256 = "x5t#S256";
inline constexpr std::string_view typ = "typ";
inline constexpr std::string_view cty = "cty";
inline constexpr std::string_view crit = "crit";
} // namespace HeaderParameter

/// A protected header, held twice: as a JSON object that parameters are read from, and as the exact bytes of
/// its serialization. The bytes are the truth: a header from the wire keeps those it came with, whatever
/// their white space and order, so that no signature or tag is disturbed. A value.
///
/// A read gives no value for an absent parameter and for one of another shape. A write serialises anew, and
/// the bytes that came from the wire are lost; a write of no value does nothing.
class JOSEHeader {
public:
    [[nodiscard]] const Bytes& headerData() const noexcept { return contents_->data; }
    [[nodiscard]] const JSON& parameters() const noexcept { return contents_->parameters; }

    /// The bytes, unchanged.
    [[nodiscard]] const Bytes& data() const noexcept { return contents_->data; }

    /// The Base64URL text of the bytes. Only short headers keep it, and such as hold texts alone: a key, which
    /// could be a private one, is an object. Of any other header it is empty.
    [[nodiscard]] std::string_view keptText() const noexcept { return contents_->keptText; }

    /// Replaces the parameters. A value that is no valid JSON object is stored, but the
    /// bytes stay as they were.
    void setParameters(JSON parameters);

    /// Whether the bytes say what the parameters say: not so after a write that JSON cannot hold, as of a
    /// text that is not UTF-8. Such a header is neither signed nor sealed with.
    [[nodiscard]] bool isWritten() const noexcept { return contents_->isWritten; }

    [[nodiscard]] std::optional<URL> jku() const { return url(HeaderParameter::jku); }
    [[nodiscard]] std::optional<std::string> jwk() const { return text(HeaderParameter::jwk); }
    /// The "jwk" object as a public EC, symmetric or RSA key; a private key is never made of it.
    [[nodiscard]] std::shared_ptr<const JWK> jwkTyped() const;
    [[nodiscard]] std::optional<std::string> kid() const { return text(HeaderParameter::kid); }
    [[nodiscard]] std::optional<URL> x5u() const { return url(HeaderParameter::x5u); }
    [[nodiscard]] std::optional<std::vector<std::string>> x5c() const { return texts(HeaderParameter::x5c); }
    [[nodiscard]] std::optional<std::string> x5t() const { return text(HeaderParameter::x5t); }
    [[nodiscard]] std::optional<std::string> x5tS256() const { return text(HeaderParameter::x5tS256); }
    [[nodiscard]] std::optional<std::string> typ() const { return text(HeaderParameter::typ); }
    [[nodiscard]] std::optional<std::string> cty() const { return text(HeaderParameter::cty); }
    [[nodiscard]] std::optional<std::vector<std::string>> crit() const {
        return texts(HeaderParameter::crit);
    }

    void setJku(const std::optional<URL>& value) { setUrl(HeaderParameter::jku, value); }
    void setJwk(const std::optional<std::string>& value) { set(HeaderParameter::jwk, value); }
    /// Stores the key's whole `parameters`, private ones included.
    void setJwkTyped(const JWK* value) { setKey(HeaderParameter::jwk, value); }
    void setKid(const std::optional<std::string>& value) { set(HeaderParameter::kid, value); }
    void setX5u(const std::optional<URL>& value) { setUrl(HeaderParameter::x5u, value); }
    void setX5c(const std::optional<std::vector<std::string>>& value) { set(HeaderParameter::x5c, value); }
    void setX5t(const std::optional<std::string>& value) { set(HeaderParameter::x5t, value); }
    void setX5tS256(const std::optional<std::string>& value) { set(HeaderParameter::x5tS256, value); }
    void setTyp(const std::optional<std::string>& value) { set(HeaderParameter::typ, value); }
    void setCty(const std::optional<std::string>& value) { set(HeaderParameter::cty, value); }
    void setCrit(const std::optional<std::vector<std::string>>& value) { set(HeaderParameter::crit, value); }

    friend bool operator==(const JOSEHeader& left, const JOSEHeader& right) {
        return left.contents_ == right.contents_ ||
               (left.data() == right.data() && left.parameters() == right.parameters());
    }

protected:
    // Copied where it could be moved: what it holds is shared, and no header is ever without.
    JOSEHeader(const JOSEHeader&) = default;
    JOSEHeader& operator=(const JOSEHeader&) = default;
    ~JOSEHeader() = default;

    /// @param headerData  the bytes of `parameters`, or no value: then they are serialised here.
    /// @throws HeaderParsingError headerIsNotValidJSONObject, then requiredHeaderParameterMissing for the
    ///         first of `required` that is absent or no text.
    JOSEHeader(JSON parameters, std::optional<Bytes> headerData,
               std::initializer_list<std::string_view> required);

    /// A header of more bytes is no header: of all that a message is made of, it alone is parsed before
    /// anything is authenticated. A chain of 16 certificates has room in it.
    static constexpr std::size_t kLongestHeader = 65536;

    /// A header made by `Header`'s own constructor of the wire's bytes, which it takes, or no value.
    template <class Header>
    [[nodiscard]] static std::optional<Header> parse(Bytes&& data) {
        if (data.size() > kLongestHeader) return std::nullopt;
        std::optional<JSON> object = JSONSerialization::jsonObject(asText(data));
        if (!object || !object->is_object()) return std::nullopt;
        try {
            std::optional<Header> header(std::in_place, std::move(*object), Bytes());
            static_cast<JOSEHeader&>(*header).contents_->setData(std::move(data));
            return header;
        } catch (const HeaderParsingError&) {
            return std::nullopt;
        }
    }

    [[nodiscard]] const std::string* rawText(std::string_view name) const;
    [[nodiscard]] std::optional<std::string> text(std::string_view name) const;
    [[nodiscard]] std::optional<std::vector<std::string>> texts(std::string_view name) const;
    [[nodiscard]] std::optional<URL> url(std::string_view name) const;
    /// The member as an object whose values are all texts, or null.
    [[nodiscard]] const JSON* textMap(std::string_view name) const;

    template <class Value>
    void set(std::string_view name, const std::optional<Value>& value) {
        if (value) setMember(name, JSON(*value));
    }
    void setUrl(std::string_view name, const std::optional<URL>& value);
    void setKey(std::string_view name, const JWK* value);

private:
    /// What copies of a header share. It is complete before it is shared, and never changes then.
    struct Contents {
        explicit Contents(JSON given);
        Contents(const Contents&) = delete;
        Contents& operator=(const Contents&) = delete;
        /// Empties the object first: the JSON library's own destructor takes memory for an
        /// object that has members.
        ~Contents();

        void setData(Bytes bytes);

        JSON parameters;
        /// Whether the parameters are an object that JSON can hold.
        bool isWritten;
        Bytes data;
        std::string keptText;
    };

    void setMember(std::string_view name, JSON value);

    std::shared_ptr<Contents> contents_;
};

/// A key's `parameters` as a JSON object of texts: what a header holds of a key.
[[nodiscard]] JSON jsonOf(const StringMap& parameters);

} // namespace korvane
