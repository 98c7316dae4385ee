#include "Input/Arguments.h"

#include "Crypt/DataExtensions.h"

#include <algorithm>

namespace korvane::input {

namespace {

using enum InputErrorCase;

struct TypeRow {
    bool (JSON::*holds)() const noexcept;
    std::string_view complaint;
};

TypeRow rowOf(MemberType type) {
    switch (type) {
    case MemberType::text: return {&JSON::is_string, "must be a string."};
    case MemberType::number: return {&JSON::is_number, "must be a number."};
    case MemberType::object: return {&JSON::is_object, "must be an object."};
    case MemberType::boolean: return {&JSON::is_boolean, "must be true or false."};
    case MemberType::list: return {&JSON::is_array, "must be a list."};
    }
    fatalError("A member has no type.");
}

} // namespace

Arguments::Arguments(const JSON& object, std::span<const Member> members, std::string_view path)
    : object_(object), path_(path) {
    requireKnown(members);
    for (const Member& member : members)
        require(member);
}

void Arguments::requireKnown(std::span<const Member> members) const {
    for (const auto& [name, value] : object_.items()) {
        const bool isKnown =
            std::any_of(members.begin(), members.end(),
                        [&wanted = name](const Member& member) { return member.name == wanted; });
        if (!isKnown) throw memberError(unknownMember, pathOf(name), "is not known here.");
    }
}

void Arguments::require(const Member& member) const {
    const JSON* found = valueIfPresent(member.name);
    if (!found && member.presence == Presence::required)
        throw memberError(missingMember, pathOf(member.name), "is missing.");
    const TypeRow row = rowOf(member.type);
    if (found && !(found->*row.holds)()) throw memberError(wrongType, pathOf(member.name), row.complaint);
}

const std::string& Arguments::text(std::string_view name) const {
    return value(name).get_ref<const std::string&>();
}

std::optional<std::string> Arguments::textIfPresent(std::string_view name) const {
    return valueIfPresent(name) ? std::optional(text(name)) : std::nullopt;
}

std::optional<bool> Arguments::booleanIfPresent(std::string_view name) const {
    const JSON* found = valueIfPresent(name);
    return found ? std::optional(found->get<bool>()) : std::nullopt;
}

std::vector<std::string> Arguments::texts(std::string_view name) const {
    std::vector<std::string> texts;
    for (const JSON& element : value(name)) {
        if (!element.is_string()) throw memberError(wrongType, pathOf(name), "must be a list of strings.");
        texts.push_back(element.get<std::string>());
    }
    return texts;
}

const JSON* Arguments::valueIfPresent(std::string_view name) const {
    const auto found = object_.find(name);
    return found == object_.end() ? nullptr : &*found;
}

Bytes Arguments::bytes(std::string_view name) const {
    if (!valueIfPresent(name)) return {};
    // The library takes padding and the ordinary alphabet too; who checks a peer with this tool must not.
    const bool isStrict = text(name).find_first_of("+/=") == std::string::npos;
    std::optional<Bytes> decoded = isStrict ? fromBase64URL(text(name)) : std::nullopt;
    if (!decoded) throw memberError(notBase64, pathOf(name), "is not Base64URL without padding.");
    return std::move(*decoded);
}

SecretBytes Arguments::secret(std::string_view name) const {
    Bytes decoded = bytes(name);
    SecretBytes copy = toSecretBytes(decoded);
    cleanse(decoded.data(), decoded.size());
    return copy;
}

std::size_t Arguments::count(std::string_view name, std::size_t largest) const {
    const JSON& number = value(name);
    if (!number.is_number_integer()) throw memberError(wrongType, pathOf(name), "must be an integer.");
    const bool isInRange = number >= 0 && number <= largest;
    if (!isInRange)
        throw memberError(outOfRange, pathOf(name),
                          "must lie between 0 and " + std::to_string(largest) + ".");
    return number.get<std::size_t>();
}

} // namespace korvane::input
