#pragma once

#include "Input/InputError.h"
#include "Platform/Bytes.h"
#include "Platform/JSON.h"
#include "Platform/Security/Secret.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace korvane::input {

enum class MemberType { text, number, object, boolean, list };
enum class Presence { required, optional };

/// One member that a JSON object of the input may have.
struct Member {
    std::string_view name;
    MemberType type = MemberType::text;
    Presence presence = Presence::required;
};

/// A JSON object of the input that has the members of a table and no others. Borrows both.
class Arguments {
public:
    /// @param path  what stands before the members' names in descriptions: "key." for members of "key".
    /// @throws InputError unknownMember, missingMember or wrongType for the first member that does not suit.
    Arguments(const JSON& object, std::span<const Member> members, std::string_view path = {});

    /// A text of the table; it must be present.
    [[nodiscard]] const std::string& text(std::string_view name) const;

    /// A text of the table, or no value where it is absent.
    [[nodiscard]] std::optional<std::string> textIfPresent(std::string_view name) const;

    /// A yes or no of the table, or no value where it is absent.
    [[nodiscard]] std::optional<bool> booleanIfPresent(std::string_view name) const;

    /// A list of texts; it must be present.
    /// @throws InputError wrongType for an element that is no text.
    [[nodiscard]] std::vector<std::string> texts(std::string_view name) const;

    /// The value of a member that must be present.
    [[nodiscard]] const JSON& value(std::string_view name) const { return *object_.find(name); }

    /// The value of a member, or null where it is absent.
    [[nodiscard]] const JSON* valueIfPresent(std::string_view name) const;

    /// The bytes of a Base64URL text without padding; empty where an optional member is absent.
    /// @throws InputError notBase64
    [[nodiscard]] Bytes bytes(std::string_view name) const;

    /// As `bytes`, for key material.
    [[nodiscard]] SecretBytes secret(std::string_view name) const;

    /// A number from 0 to `largest`.
    /// @throws InputError wrongType for anything but an integer, outOfRange
    [[nodiscard]] std::size_t count(std::string_view name, std::size_t largest) const;

    /// The algorithm that a text names.
    /// @param find  the table to look in: no value for a name that it does not have.
    /// @throws InputError unknownAlgorithm
    template <class Algorithm>
    [[nodiscard]] Algorithm algorithm(std::string_view name,
                                      std::optional<Algorithm> (*find)(std::string_view)) const {
        const std::optional<Algorithm> found = find(text(name));
        if (!found)
            throw memberError(InputErrorCase::unknownAlgorithm, name, "names no algorithm: " + text(name));
        return *found;
    }

private:
    [[nodiscard]] std::string pathOf(std::string_view name) const {
        return std::string(path_) + std::string(name);
    }
    void requireKnown(std::span<const Member> members) const;
    void require(const Member& member) const;

    const JSON& object_;
    std::string_view path_;
};

} // namespace korvane::input
