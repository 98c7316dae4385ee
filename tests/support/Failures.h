#pragma once

#include "Platform/Failure.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <type_traits>

/// Expects that an expression, the last argument, raises `expected`: a case of a family, or a whole failure
/// with its value.
#define EXPECT_RAISES(expected, ...)                                                                         \
    EXPECT_TRUE(korvane::raises(expected, [&] { static_cast<void>(__VA_ARGS__); }))

/// Expects the same of a case and the description that goes with it.
#define EXPECT_RAISES_SAYING(kind, description, ...)                                                         \
    EXPECT_TRUE(korvane::raises(                                                                             \
        kind, [&] { static_cast<void>(__VA_ARGS__); }, description))

namespace korvane {

/// What `action` raises, where it is of the family of `Case`; a failure of the test for anything else.
template <class Case, class Action>
std::optional<TypedFailure<Case>> raisedBy(Action action) {
    try {
        static_cast<void>(action());
    } catch (const TypedFailure<Case>& failure) {
        return failure;
    } catch (const std::exception& other) {
        ADD_FAILURE() << "raised " << other.what();
        return std::nullopt;
    }
    ADD_FAILURE() << "raised nothing";
    return std::nullopt;
}

/// Whether `action` raises the case `kind`, and with this description where one is given.
template <class Case, class Action>
testing::AssertionResult raises(Case kind, Action action, const std::string& description = {}) {
    const auto failure = raisedBy<Case>(action);
    if (!failure) return testing::AssertionFailure() << "no failure of this family";
    if (failure->kind() != kind) return testing::AssertionFailure() << "raised " << failure->what();
    if (!description.empty() && failure->localizedDescription() != description)
        return testing::AssertionFailure() << "said \"" << failure->localizedDescription() << "\"";
    return testing::AssertionSuccess();
}

/// Whether `action` raises exactly this failure. A mismatch is told without the values: they may be secrets.
template <class Case, class Action>
testing::AssertionResult raises(const TypedFailure<Case>& expected, Action action) {
    const auto failure = raisedBy<Case>(action);
    if (failure == expected) return testing::AssertionSuccess();
    return testing::AssertionFailure() << (failure ? failure->what() : "no failure of this family");
}

} // namespace korvane
