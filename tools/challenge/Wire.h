#pragma once

#include "Platform/Bytes.h"
#include "Platform/URLSession.h"

#include <mutex>
#include <string>

namespace korvane::challenge {

/// What a server answered, in words: status and first bytes.
[[nodiscard]] std::string describeAnswer(int status, ByteView body);

/// Looks at what servers answer, since the library's endings do not tell. Any thread.
class Wire {
public:
    /// For `SystemPlatform::watchAnswers`.
    void watch(const URLRequest& request, int status, ByteView body);

    /// The status of the last answer to a request that is no JWE.
    [[nodiscard]] int lastStatus() const;

    /// What is to be said of the last answer to a JWE, if it was none itself; else empty.
    [[nodiscard]] std::string complaint() const;

private:
    mutable std::mutex mutex_;
    int lastStatus_ = 0;
    std::string complaint_;
};

} // namespace korvane::challenge
