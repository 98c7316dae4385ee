#pragma once

#include "Platform/JSON.h"
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

    /// What there is to say of an ending beside its own members: an answer that was no JWE, and the names of
    /// failures that its texts number. Empty for nothing.
    [[nodiscard]] std::string hintAt(const JSON& ending) const;

private:
    mutable std::mutex mutex_;
    int lastStatus_ = 0;
    /// Of the last answer to a JWE, if it was none itself; else empty.
    std::string complaint_;
};

} // namespace korvane::challenge
