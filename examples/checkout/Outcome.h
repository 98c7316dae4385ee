#pragma once

#include "Sdk/Events/Events.h"
#include "Sdk/Events/SdkError.h"

#include <QString>

#include <utility>
#include <vector>

namespace korvane::checkout {

/// What a person feels about an ending: it went well, they wanted it so, or it went wrong.
enum class Mood { paid, calm, refused };

/// How a payment ended: for people, and for whoever compares.
struct Outcome {
    /// The library's own name of the ending, with what tells it from its kin: "completed
    /// Y", "protocolError 101".
    QString ending;
    Mood mood = Mood::refused;
    QString title;
    QString words;
    /// What the library reported, name by name.
    std::vector<std::pair<QString, QString>> facts = {};
};

/// The bank asked for no challenge.
[[nodiscard]] Outcome frictionlessOutcome();

// The endings of a challenge.
[[nodiscard]] Outcome outcomeOf(const CompletionEvent& event);
[[nodiscard]] Outcome cancelledOutcome();
[[nodiscard]] Outcome timedOutOutcome();
[[nodiscard]] Outcome outcomeOf(const ProtocolErrorEvent& event);
[[nodiscard]] Outcome outcomeOf(const RuntimeErrorEvent& event);

/// The screens went and no ending was told.
[[nodiscard]] Outcome unheardOutcome();

// Before a challenge.
[[nodiscard]] Outcome outcomeOf(const SdkError& error);
/// @param reason  why the shop's server gave no answer that could be used.
[[nodiscard]] Outcome serverFailure(const QString& reason);
/// @param reason  why the theme's file cannot be used.
[[nodiscard]] Outcome themeFailure(const QString& reason);

} // namespace korvane::checkout
