// Raw DEFLATE: foreign bytes inflate to a bounded result or fail, and whatever is compressed comes back.

#include "Crypt/DeflateWrapper.h"
#include "Crypt/JOSEError.h"
#include "fuzz/support/Fuzz.h"

namespace korvane::fuzzing {

namespace {

constexpr std::size_t kLargestInflated = std::size_t{16} << 20U;

void checkInflating(ByteView input) {
    const auto inflated = attempt<JOSEError>([&] { return DeflateCompressor().decompress(input); });
    require(!inflated || (inflated->size() <= kLargestInflated && !input.empty()), "Too much is inflated.");
    if (input.empty()) return;
    require(perform(CompressionOperation::decode, input, input.size()) == inflated,
            "Two ways to inflate differ.");

    constexpr std::size_t kSteppedLimit = 65536;
    if (inflated && inflated->size() > kSteppedLimit) return;
    constexpr std::size_t kOddStep = 7;
    auto stepped = perform(CompressionOperation::decode, input, kOddStep, Bytes{1, 2, 3});
    require(stepped.has_value() == inflated.has_value(), "Inflation depends on its steps.");
    if (!stepped) return;
    require(stepped->size() >= 3 && (*stepped)[0] == 1 && (*stepped)[1] == 2 && (*stepped)[2] == 3,
            "The front of the result is lost.");
    stepped->erase(stepped->begin(), stepped->begin() + 3);
    require(*stepped == *inflated, "What is inflated depends on the steps.");
}

void checkRoundTrip(ByteView input) {
    const auto deflated = attempt<JOSEError>([&] { return DeflateCompressor().compress(input); });
    require(deflated.has_value() == !input.empty(), "Something cannot be compressed, or nothing can.");
    if (!deflated) return;
    require(DeflateCompressor().decompress(*deflated) == toBytes(input),
            "What was compressed does not come back.");
    const ByteView unfinished = ByteView(*deflated).first(deflated->size() - 1);
    require(unfinished.empty() || !perform(CompressionOperation::decode, unfinished, input.size()),
            "An unfinished stream inflates.");
}

} // namespace

void run(ByteView input) {
    checkInflating(input);
    checkRoundTrip(input);
    require(NoneCompressor().decompress(NoneCompressor().compress(input)) == toBytes(input),
            "Nothing changes bytes.");
}

} // namespace korvane::fuzzing
