#include "C/Call.h"

#include "Platform/Failure.h"
#include "Platform/JSON.h"
#include "Sdk/Events/SdkError.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace korvane::c {

namespace {

korvane_result resultOf(SdkErrorCase kind) {
    using enum SdkErrorCase;
    switch (kind) {
    case InvalidInputException: return KORVANE_INVALID_INPUT;
    case InvalidAcsResponseException: return KORVANE_INVALID_ACS_RESPONSE;
    case httpRequestException: return KORVANE_HTTP_REQUEST;
    case SDKAlreadyInitializedException: return KORVANE_ALREADY_INITIALIZED;
    case SDKNotInitializedException: return KORVANE_NOT_INITIALIZED;
    case SDKRuntimeException: return KORVANE_RUNTIME;
    }
    return KORVANE_INTERNAL;
}

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

} // namespace

korvane_result report(korvane_error* error, korvane_result result, std::string_view text) noexcept {
    if (!error) return result;
    std::size_t length = std::min(text.size(), std::size_t{KORVANE_LONGEST_ERROR - 1});
    while (length > 0 && length < text.size() && isContinuation(text[length]))
        --length;
    error->result = result;
    std::memset(error->text, 0, sizeof error->text);
    std::copy_n(text.data(), length, error->text);
    return result;
}

/// A failure of the inside names its kind and nothing that it carries.
korvane_result reportException(korvane_error* error) noexcept {
    try {
        throw;
    } catch (const CallError& failure) {
        return report(error, failure.result(), failure.what());
    } catch (const SdkError& failure) {
        return report(error, resultOf(failure.kind()), failure.message());
    } catch (const std::bad_alloc&) {
        return report(error, KORVANE_NO_MEMORY, "There is no memory left.");
    } catch (const std::exception& failure) {
        return report(error, KORVANE_INTERNAL, genericDescription(failure));
    } catch (...) {
        return report(error, KORVANE_INTERNAL, "Something unknown went wrong.");
    }
}

std::string textOf(const char* text, const char* name) {
    require(text, name);
    const std::size_t length = ::strnlen(text, std::size_t{KORVANE_LONGEST_TEXT} + 1);
    if (length > KORVANE_LONGEST_TEXT)
        throw CallError(KORVANE_TOO_LARGE, std::string(name) + " is too long.");
    if (!isUtf8({text, length})) throw CallError(KORVANE_BAD_ARGUMENT, std::string(name) + " is no UTF-8.");
    return {text, length};
}

std::optional<std::string> textIfPresent(const char* text, const char* name) {
    return text ? std::optional(textOf(text, name)) : std::nullopt;
}

Bytes bytesOf(const std::uint8_t* bytes, std::size_t length, std::size_t most, const char* name) {
    if (length == 0) return {};
    require(bytes, name);
    if (length > most) throw CallError(KORVANE_TOO_LARGE, std::string(name) + " is too long.");
    return {bytes, bytes + length};
}

char* givenAway(const std::string& text) {
    auto* const copy = static_cast<char*>(std::malloc(text.size() + 1));
    if (!copy) throw std::bad_alloc();
    std::copy_n(text.c_str(), text.size() + 1, copy);
    return copy;
}

} // namespace korvane::c
