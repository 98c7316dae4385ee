#include "Platform/Text.h"

#include "Platform/Failure.h"

#include <unicode/brkiter.h>
#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <memory>

namespace korvane {

namespace {

icu::UnicodeString toUtf16(std::string_view text) {
    return icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
}

std::string toUtf8(const icu::UnicodeString& text) {
    std::string result;
    return text.toUTF8String(result);
}

/// In ASCII only CR LF makes one character of two octets, so that anything without CR counts by octets.
bool countsByOctets(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char octet) { return octet > 0 && octet != '\r'; });
}

std::unique_ptr<icu::BreakIterator> makeCharacterIterator() {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::BreakIterator> made(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    if (U_FAILURE(status)) fatalError("ICU has no rules for characters.");
    return made;
}

} // namespace

std::size_t characterCount(std::string_view text) {
    if (countsByOctets(text)) return text.size();
    const icu::UnicodeString utf16 = toUtf16(text);
    thread_local const std::unique_ptr<icu::BreakIterator> characters = makeCharacterIterator();
    characters->setText(utf16);
    std::size_t count = 0;
    while (characters->next() != icu::BreakIterator::DONE)
        ++count;
    return count;
}

std::string repairedUtf8(std::string_view text) {
    return toUtf8(toUtf16(text));
}

std::string joined(const std::vector<std::string>& texts) {
    std::string result;
    for (const std::string& text : texts) {
        if (&text != &texts.front()) result += ',';
        result += text;
    }
    return result;
}

std::vector<std::vector<std::string>> regularExpressionMatches(std::string_view pattern,
                                                               std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString utf16 = toUtf16(text);
    icu::RegexMatcher matcher(toUtf16(pattern), utf16, 0, status);
    std::vector<std::vector<std::string>> matches;
    while (U_SUCCESS(status) && matcher.find(status)) {
        std::vector<std::string>& groups = matches.emplace_back();
        for (std::int32_t group = 0; group <= matcher.groupCount(); ++group)
            groups.push_back(toUtf8(matcher.group(group, status)));
    }
    return matches;
}

} // namespace korvane
