#pragma once

#include <string>
#include <utility>

namespace korvane {

/// The error that a party of the protocol reported. Immutable.
class ErrorMessage {
public:
    ErrorMessage(std::string errorCode, std::string errorDescription, std::string errorDetails,
                 std::string transactionID)
        : errorCode_(std::move(errorCode)), errorDescription_(std::move(errorDescription)),
          errorDetails_(std::move(errorDetails)), transactionID_(std::move(transactionID)) {}

    [[nodiscard]] const std::string& getErrorCode() const noexcept { return errorCode_; }
    [[nodiscard]] const std::string& getErrorDescription() const noexcept { return errorDescription_; }
    [[nodiscard]] const std::string& getErrorDetails() const noexcept { return errorDetails_; }
    /// The ACS's transaction identifier.
    [[nodiscard]] const std::string& getTransactionID() const noexcept { return transactionID_; }

private:
    std::string errorCode_;
    std::string errorDescription_;
    std::string errorDetails_;
    std::string transactionID_;
};

/// A challenge ended by a failure that is none of the protocol's. Immutable.
class RuntimeErrorEvent {
public:
    RuntimeErrorEvent(std::string errorCode, std::string errorMessage)
        : errorCode_(std::move(errorCode)), errorMessage_(std::move(errorMessage)) {}

    [[nodiscard]] const std::string& getErrorCode() const noexcept { return errorCode_; }
    [[nodiscard]] const std::string& getErrorMessage() const noexcept { return errorMessage_; }

private:
    std::string errorCode_;
    std::string errorMessage_;
};

/// A challenge ended by an error of the protocol. Immutable.
class ProtocolErrorEvent {
public:
    ProtocolErrorEvent(std::string sdkTransactionID, ErrorMessage errorMessage)
        : sdkTransactionID_(std::move(sdkTransactionID)), errorMessage_(std::move(errorMessage)) {}

    [[nodiscard]] const std::string& getSdkTransactionID() const noexcept { return sdkTransactionID_; }
    [[nodiscard]] const ErrorMessage& getErrorMessage() const noexcept { return errorMessage_; }

private:
    std::string sdkTransactionID_;
    ErrorMessage errorMessage_;
};

/// A challenge that came to its end. Immutable.
class CompletionEvent {
public:
    CompletionEvent(std::string sdkTransactionID, std::string transactionStatus)
        : sdkTransactionID_(std::move(sdkTransactionID)), transactionStatus_(std::move(transactionStatus)) {}

    [[nodiscard]] const std::string& getSdkTransactionID() const noexcept { return sdkTransactionID_; }
    /// One letter: "Y", "N" or another of the protocol's results.
    [[nodiscard]] const std::string& getTransactionStatus() const noexcept { return transactionStatus_; }

private:
    std::string sdkTransactionID_;
    std::string transactionStatus_;
};

} // namespace korvane
