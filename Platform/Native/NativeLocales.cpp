#include "Platform/Native/NativeLocales.h"

#include "Platform/Unicode.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <string_view>

namespace korvane {

namespace {

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

std::string withoutCodeSet(std::string_view name) {
    return std::string(name.substr(0, name.find_first_of(".@")));
}

/// The name of the user's locale, as setlocale(3) finds it, without code set and modifier;
/// empty for the C locale.
std::string localeName() {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const std::string value = environment(variable);
        if (value.empty()) continue;
        const std::string name = withoutCodeSet(value);
        return name == "C" || name == "POSIX" ? std::string() : name;
    }
    return {};
}

void appendTag(std::string_view name, std::vector<std::string>& tags) {
    if (name.empty() || name == "C" || name == "POSIX") return;
    if (std::string tag = unicode::languageTag(withoutCodeSet(name)); !tag.empty() && tag != "und")
        tags.push_back(std::move(tag));
}

} // namespace

Locale NativeLocales::current() const {
    const std::string name = localeName();
    return {name.empty() ? "en_US_POSIX" : unicode::localeIdentifier(name)};
}

std::vector<std::string> NativeLocales::availableIdentifiers() const {
    return unicode::localeIdentifiers();
}

std::vector<std::string> NativeLocales::preferredLanguages() const {
    std::vector<std::string> tags;
    const std::string list = environment("LANGUAGE");
    for (std::string_view rest = list; !rest.empty();) {
        const std::string_view name = rest.substr(0, rest.find(':'));
        rest.remove_prefix(std::min(name.size() + 1, rest.size()));
        appendTag(name, tags);
    }
    if (tags.empty()) appendTag(localeName(), tags);
    if (tags.empty()) tags.emplace_back("en-US");
    return tags;
}

std::optional<std::string> NativeTimeZone::abbreviation() const {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    tzset();
    if (!localtime_r(&now, &local) || !local.tm_zone || *local.tm_zone == '\0') return std::nullopt;
    return std::string(local.tm_zone);
}

} // namespace korvane
