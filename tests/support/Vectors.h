#pragma once

#include "Platform/Bytes.h"
#include "Platform/JSON.h"

#include <cstddef>
#include <functional>
#include <string>

namespace korvane {

/// A JSON file below `tests/vectors`.
[[nodiscard]] JSON readVectors(const std::string& path);

/// The bytes of the hexadecimal member `name`.
[[nodiscard]] Bytes hexMember(const JSON& object, const char* name);

/// What one published test must come to here.
enum class VectorOutcome {
    accept,
    reject,
    either,
    emptyPlaintext, // cannot be sealed; what others sealed opens to zero bytes
    messageHidden,  // refused, or bytes that are not the message
    pinned,         // accepted under the header's algorithm, refused under the key's own
};

/// One test of a Wycheproof file, its group, and its outcome.
struct WycheproofTest {
    const JSON& group;
    const JSON& test;
    VectorOutcome outcome = VectorOutcome::reject;
    std::string why; // the reason of the overrides, or an empty text

    /// A text member of the test.
    [[nodiscard]] const std::string& text(const char* member) const {
        return test.at(member).get_ref<const std::string&>();
    }

    /// A hexadecimal member of the test, as bytes.
    [[nodiscard]] Bytes bytes(const char* member) const { return hexMember(test, member); }
};

/// Performs one test and tells whether its input was taken; a raised `Failure` is a refusal.
using WycheproofCheck = std::function<bool(const WycheproofTest&)>;

/// Makes the check of one group, with what its tests share, such as a key. A failure here is no refusal of
/// anything. Where they share nothing, one check does for all groups.
using WycheproofGroup = std::function<WycheproofCheck(const JSON& group)>;

/// Runs all tests of a file of `wycheproof/`, with the outcomes that `overrides.json` changes, save those
/// that it calls vacuous, and expects the outcomes and that the file has as many tests as it says. The checks
/// themselves answer for what accepting must yield.
void runWycheproof(const std::string& file, const WycheproofGroup& makeCheck);
inline void runWycheproof(const std::string& file, const WycheproofCheck& check) {
    runWycheproof(file, [&check](const JSON&) { return check; });
}

/// Runs `check` over the rows of a file of `rfc/`, which has exactly `count`.
void runRFC(const std::string& file, std::size_t count, const std::function<void(const JSON& row)>& check);

} // namespace korvane
