#pragma once

#include "C/korvane_c.h"
#include "Platform/Bytes.h"

#include <cstddef>
#include <cstring>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace korvane::c {

// How each function of the interface is carried out: what is handed in is looked at, and whatever is thrown
// becomes a number and a text.

/// What a caller did wrong, as the result of the call.
class CallError : public std::runtime_error {
public:
    CallError(korvane_result result, const std::string& text) : std::runtime_error(text), result_(result) {}
    [[nodiscard]] korvane_result result() const noexcept { return result_; }

private:
    korvane_result result_;
};

/// Fills in an error, if there is one to be filled in; the text is cut to its room between two characters.
korvane_result report(korvane_error* error, korvane_result result, std::string_view text) noexcept;

/// The same for the exception that is being handled.
korvane_result reportException(korvane_error* error) noexcept;

/// Carries out a function's body.
template <class Body>
korvane_result call(korvane_error* error, const Body& body) noexcept {
    try {
        body();
        return report(error, KORVANE_OK, {});
    } catch (...) {
        return reportException(error);
    }
}

/// @throws CallError where there is nothing; here and below `name` is what the header calls the parameter.
template <class Pointer>
void require(Pointer pointer, const char* name) {
    if (!pointer) throw CallError(KORVANE_BAD_ARGUMENT, std::string(name) + " is null.");
}

/// A copy of a caller's structure.
/// @throws CallError for null, and for one of another size.
template <class Structure>
[[nodiscard]] Structure copyOf(const Structure* given, const char* name) {
    require(given, name);
    if (given->size != sizeof(Structure))
        throw CallError(KORVANE_BAD_ARGUMENT, std::string(name) + " has another size than this library's.");
    return *given;
}

/// A copy of a caller's text.
/// @throws CallError for null, for more than `KORVANE_LONGEST_TEXT` bytes and for what is no UTF-8.
[[nodiscard]] std::string textOf(const char* text, const char* name);
[[nodiscard]] std::optional<std::string> textIfPresent(const char* text, const char* name);

/// A copy of a caller's bytes.
/// @throws CallError for null with a length, and for more than `most`.
[[nodiscard]] Bytes bytesOf(const std::uint8_t* bytes, std::size_t length, std::size_t most,
                            const char* name);

/// A text for the caller, who frees it.
[[nodiscard]] char* givenAway(const std::string& text);

/// A text as the library lends it; null where there is none.
[[nodiscard]] inline const char* lent(const std::optional<std::string>& text) {
    return text ? text->c_str() : nullptr;
}

} // namespace korvane::c
