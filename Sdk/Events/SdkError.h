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

template <>
struct FailureTraits<SdkErrorCase> {
    static constexpr std::string_view domain = "SdkError";
    static constexpr std::array<std::string_view, 6> cases{
        "InvalidInputException",          "InvalidAcsResponseException", "httpRequestException",
        "SDKAlreadyInitializedException", "SDKNotInitializedException",  "SDKRuntimeException"};
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
