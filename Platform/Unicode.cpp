#include "Platform/Unicode.h"

#include "Platform/Failure.h"

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/regex.h>
#include <unicode/ubidi.h>
#include <unicode/uchar.h>
#include <unicode/ucnv.h>
#include <unicode/ucnv_err.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <cstdint>
#include <memory>

namespace korvane::unicode {

namespace {

icu::UnicodeString toUtf16(std::string_view text) {
    return icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
}

std::string toUtf8(const icu::UnicodeString& text) {
    std::string result;
    return text.toUTF8String(result);
}

std::unique_ptr<icu::BreakIterator> makeCharacterIterator() {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::BreakIterator> made(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    if (U_FAILURE(status)) fatalError("ICU has no rules for characters.");
    return made;
}

using Converter = std::unique_ptr<UConverter, decltype(&ucnv_close)>;

/// Nothing for an unknown charset.
Converter makeConverter(const std::string& charset) {
    UErrorCode status = U_ZERO_ERROR;
    Converter converter(ucnv_open(charset.c_str(), &status), &ucnv_close);
    if (!converter) return converter;
    ucnv_setFallback(converter.get(), true);
    ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_ESCAPE, UCNV_ESCAPE_XML_DEC, nullptr, nullptr,
                          &status);
    return converter;
}

} // namespace

std::size_t clusterCount(std::string_view text) {
    const icu::UnicodeString utf16 = toUtf16(text);
    thread_local const std::unique_ptr<icu::BreakIterator> characters = makeCharacterIterator();
    characters->setText(utf16);
    std::size_t count = 0;
    while (characters->next() != icu::BreakIterator::DONE)
        ++count;
    return count;
}

std::string repaired(std::string_view text) {
    return toUtf8(toUtf16(text));
}

bool isRightToLeft(std::string_view text) {
    const icu::UnicodeString wide = toUtf16(text);
    return ubidi_getBaseDirection(wide.getBuffer(), wide.length()) == UBIDI_RTL;
}

CodePoint firstCodePoint(std::string_view text) {
    const auto* const octets = reinterpret_cast<const std::uint8_t*>(text.data());
    const auto size = static_cast<std::int32_t>(text.size());
    std::int32_t next = 0;
    UChar32 point = 0;
    U8_NEXT(octets, next, size, point);
    return {static_cast<std::size_t>(next), point >= 0 && u_getCombiningClass(point) != 0};
}

std::vector<std::vector<std::string>> matches(std::string_view pattern, std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString utf16 = toUtf16(text);
    icu::RegexMatcher matcher(toUtf16(pattern), utf16, 0, status);
    std::vector<std::vector<std::string>> found;
    while (U_SUCCESS(status) && matcher.find(status)) {
        std::vector<std::string>& groups = found.emplace_back();
        for (std::int32_t group = 0; group <= matcher.groupCount(); ++group)
            groups.push_back(toUtf8(matcher.group(group, status)));
    }
    return found;
}

std::string localeIdentifier(const std::string& posixName) {
    return icu::Locale(posixName.c_str()).getName();
}

std::string languageTag(const std::string& posixName) {
    UErrorCode status = U_ZERO_ERROR;
    std::string tag = icu::Locale(posixName.c_str()).toLanguageTag<std::string>(status);
    return U_SUCCESS(status) ? tag : std::string();
}

std::vector<std::string> localeIdentifiers() {
    std::int32_t count = 0;
    const icu::Locale* locales = icu::Locale::getAvailableLocales(count);
    std::vector<std::string> identifiers;
    identifiers.reserve(static_cast<std::size_t>(count));
    for (std::int32_t index = 0; index < count; ++index)
        identifiers.emplace_back(locales[index].getName());
    return identifiers;
}

std::string inCharset(const std::u16string& text, const std::string& charset) {
    const Converter converter = makeConverter(charset);
    const auto length = static_cast<std::int32_t>(text.size());
    if (!converter) return toUtf8(icu::UnicodeString(text.data(), length));
    UErrorCode status = U_ZERO_ERROR;
    const std::int32_t size = ucnv_fromUChars(converter.get(), nullptr, 0, text.data(), length, &status);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    status = U_ZERO_ERROR;
    ucnv_fromUChars(converter.get(), bytes.data(), size, text.data(), length, &status);
    return bytes;
}

} // namespace korvane::unicode
