#pragma once

#include "Platform/Export.h"
#include "Platform/Failure.h"
#include "Platform/Logger.h"

#include <string>
#include <string_view>

namespace korvane {

enum class SdkErrorCase {
    InvalidInputException,
    InvalidAcsResponseException,
    httpRequestException,
    SDKAlreadyInitializedException,
    SDKNotInitializedException,
    SDKRuntimeException,
};

[[nodiscard]] constexpr std::string_view rawValue(SdkErrorCase value) {
    using enum SdkErrorCase;
    switch (value) {
    case InvalidInputException: return "InvalidInputException";
    case InvalidAcsResponseException: return "InvalidAcsResponseException";
    case httpRequestException: return "httpRequestException";
    case SDKAlreadyInitializedException: return "SDKAlreadyInitializedException";
    case SDKNotInitializedException: return "SDKNotInitializedException";
    case SDKRuntimeException: return "SDKRuntimeException";
    }
    return kNoRawValue;
}

template <>
struct FailureTraits<SdkErrorCase> {
    static constexpr std::string_view domain = "SdkError";
    using Value = FailureValue;
};

/// What the library's public operations raise. `httpRequestException` and `SDKAlreadyInitializedException`
/// are there for applications that match on the whole family; nothing raises them.
class KORVANE_EXPORT SdkError : public TypedFailure<SdkErrorCase> {
public:
    SdkError(SdkErrorCase kind, std::string message) : TypedFailure(kind, Description{std::move(message)}) {}

    [[nodiscard]] std::string message() const { return description(); }

    /// The case's name, ": " and the message.
    [[nodiscard]] std::string localizedDescription() const override;
};

} // namespace korvane

/// Logs a text and raises it, so that the application's log holds each failure before the failure reaches it.
#define KORVANE_RAISE(function, kind, text)                                                                  \
    do {                                                                                                     \
        const std::string korvaneText = (text);                                                              \
        KORVANE_LOG(function, korvaneText);                                                                  \
        throw ::korvane::SdkError(kind, korvaneText);                                                        \
    } while (false)
