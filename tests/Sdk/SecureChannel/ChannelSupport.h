#pragma once

#include "Sdk/Events/SdkError.h"
#include "tests/support/Failures.h"
#include "tests/support/PlayedAcs.h"
#include "tests/support/RecordingLogger.h"

#include <string>
#include <vector>

namespace korvane {

/// Expects that `action` raises `kind` with `text`, and that the one line logged meanwhile is
/// "Sdk/SecureChannel/<site>: <text>", or has the text `logged` instead.
template <class Action>
void expectRaised(SdkErrorCase kind, const std::string& text, const std::string& site, Action action,
                  const std::string& logged = {}) {
    const RecordingLogger log;
    const auto failure = raisedBy<SdkErrorCase>(action);
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->kind(), kind);
    EXPECT_EQ(failure->description(), text);
    const std::string line = "Sdk/SecureChannel/" + site + ": " + (logged.empty() ? text : logged);
    EXPECT_EQ(log.lines(), std::vector{line});
}

} // namespace korvane
