#include "fuzz/support/Fuzz.h"

#include "Crypt/DataExtensions.h"
#include "fuzz/support/ReferenceBase64.h"

#include <algorithm>
#include <cstdlib>

namespace korvane::fuzzing {

namespace {

/// Calls `visit` with each piece of a text between separators.
template <class Visit>
void forEachPiece(std::string_view text, char separator, Visit visit) {
    for (;;) {
        const std::size_t end = std::min(text.find(separator), text.size());
        visit(text.substr(0, end));
        if (end == text.size()) return;
        text.remove_prefix(end + 1);
    }
}

} // namespace

std::string compactText(ByteView input) {
    const std::string_view text = asText(input);
    if (!text.starts_with('{')) return std::string(text);
    std::string compact;
    bool isFirst = true;
    forEachPiece(text, '\n', [&](std::string_view line) {
        if (!isFirst) compact += '.';
        compact += referenceEncode(asBytes(line), Alphabet::url);
        isFirst = false;
    });
    return compact;
}

bool isCanonical(std::string_view compactText) {
    bool result = true;
    forEachPiece(compactText, '.', [&](std::string_view part) {
        const auto bytes = referenceDecode(part, Alphabet::url);
        result = result && bytes && referenceEncode(*bytes, Alphabet::url) == part;
    });
    return result;
}

Bytes withTurnedBit(Bytes bytes, std::size_t seed) {
    bytes[seed / 8 % bytes.size()] ^= static_cast<std::uint8_t>(1U << (seed % 8));
    return bytes;
}

} // namespace korvane::fuzzing

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    korvane::fuzzing::run({data, size});
    return 0;
}
