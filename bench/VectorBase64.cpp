#include "bench/BareBase64.h"

#include "Platform/Failure.h"

// Compiled for AVX2 where the compiler can do so; anywhere else the tables stand in.
#ifdef __AVX2__

#include <immintrin.h>

namespace korvane::bench::bare {

namespace {

__m256i all(int octet) {
    return _mm256_set1_epi8(static_cast<char>(octet));
}

/// `addend` where an octet of `values` is above `limit`.
__m256i whereAbove(__m256i values, int limit, int addend) {
    return _mm256_and_si256(_mm256_cmpgt_epi8(values, all(limit)), all(addend));
}

__m256i isBetween(__m256i values, int first, int last) {
    return _mm256_and_si256(_mm256_cmpgt_epi8(values, all(first - 1)),
                            _mm256_cmpgt_epi8(all(last + 1), values));
}

__m256i twoHalves(const void* low, const void* high) {
    return _mm256_set_m128i(_mm_loadu_si128(static_cast<const __m128i*>(high)),
                            _mm_loadu_si128(static_cast<const __m128i*>(low)));
}

/// 24 octets, twelve in each half, to 32 characters.
__m256i encoded(__m256i octets) {
    const __m256i order = _mm256_setr_epi8(2, 1, 0, -1, 5, 4, 3, -1, 8, 7, 6, -1, 11, 10, 9, -1, //
                                           2, 1, 0, -1, 5, 4, 3, -1, 8, 7, 6, -1, 11, 10, 9, -1);
    const __m256i bits = _mm256_shuffle_epi8(octets, order);
    const auto place = [](__m256i moved, int mask) {
        return _mm256_and_si256(moved, _mm256_set1_epi32(mask));
    };
    const __m256i upper =
        _mm256_or_si256(_mm256_srli_epi32(bits, 18), place(_mm256_srli_epi32(bits, 4), 0x3F00));
    const __m256i lower = _mm256_or_si256(place(_mm256_slli_epi32(bits, 10), 0x3F0000),
                                          place(_mm256_slli_epi32(bits, 24), 0x3F000000));
    const __m256i values = _mm256_or_si256(upper, lower);
    const __m256i letters = _mm256_add_epi8(all('A'), whereAbove(values, 25, 'a' - 26 - 'A'));
    const __m256i digits = _mm256_add_epi8(whereAbove(values, 51, '0' - 52 - ('a' - 26)),
                                           whereAbove(values, 61, '-' - 62 - ('0' - 52)));
    const __m256i offset =
        _mm256_add_epi8(_mm256_add_epi8(letters, digits), whereAbove(values, 62, '_' - 63 - ('-' - 62)));
    return _mm256_add_epi8(values, offset);
}

/// The six bits of each character; `known` loses the octets of foreign ones.
__m256i valuesOf(__m256i characters, __m256i& known) {
    const __m256i upper = isBetween(characters, 'A', 'Z');
    const __m256i lower = isBetween(characters, 'a', 'z');
    const __m256i digits = isBetween(characters, '0', '9');
    const __m256i hyphen = _mm256_cmpeq_epi8(characters, all('-'));
    const __m256i line = _mm256_cmpeq_epi8(characters, all('_'));
    known = _mm256_and_si256(known, _mm256_or_si256(_mm256_or_si256(_mm256_or_si256(upper, lower), digits),
                                                    _mm256_or_si256(hyphen, line)));
    const __m256i letters =
        _mm256_or_si256(_mm256_and_si256(upper, all(-'A')), _mm256_and_si256(lower, all(26 - 'a')));
    const __m256i others =
        _mm256_or_si256(_mm256_and_si256(hyphen, all(62 - '-')), _mm256_and_si256(line, all(63 - '_')));
    const __m256i offset =
        _mm256_or_si256(_mm256_or_si256(letters, others), _mm256_and_si256(digits, all(52 - '0')));
    return _mm256_add_epi8(characters, offset);
}

/// Four values in each 32 bits to three octets, twelve at the front of each half.
__m256i packed(__m256i values) {
    const __m256i pairs = _mm256_maddubs_epi16(values, _mm256_set1_epi16(0x0140));
    const __m256i quartets = _mm256_madd_epi16(pairs, _mm256_set1_epi32(0x00011000));
    const __m256i order = _mm256_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1, //
                                           2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1);
    return _mm256_shuffle_epi8(quartets, order);
}

} // namespace

bool hasVectors() {
    return __builtin_cpu_supports("avx2") != 0;
}

char* encodeBase64URLByVectors(ByteView octets, char* text) {
    // Each half is loaded with four octets more than it has.
    for (; octets.size() >= 28; octets = octets.subspan(24), text += 32)
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(text),
                            encoded(twoHalves(octets.data(), octets.data() + 12)));
    return encodeBase64URL(octets, text);
}

std::uint8_t* decodeBase64URLByVectors(std::string_view text, std::uint8_t* octets) {
    __m256i known = all(-1);
    // Each half is stored with four octets more than it has.
    for (; text.size() >= 40; text.remove_prefix(32), octets += 24) {
        const __m256i out = packed(valuesOf(twoHalves(text.data(), text.data() + 16), known));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(octets), _mm256_castsi256_si128(out));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(octets + 12), _mm256_extracti128_si256(out, 1));
    }
    if (_mm256_movemask_epi8(known) != -1) fatalError("A text of the benchmark is not Base64URL.");
    return decodeBase64URL(text, octets);
}

} // namespace korvane::bench::bare

#else

namespace korvane::bench::bare {

bool hasVectors() {
    return false;
}

char* encodeBase64URLByVectors(ByteView octets, char* text) {
    return encodeBase64URL(octets, text);
}

std::uint8_t* decodeBase64URLByVectors(std::string_view text, std::uint8_t* octets) {
    return decodeBase64URL(text, octets);
}

} // namespace korvane::bench::bare

#endif
