#pragma once

#include <QString>

#include <cstdint>
#include <span>

namespace korvane::checkout {

/// Whether the bank lets a payment pass on the card's data alone, or asks the cardholder.
enum class Flow { frictionless, challenge };

/// A test card: its number decides what the bank does.
struct Card {
    /// For scripts and file names.
    const char* name;
    /// 16 digits with a check digit (ISO/IEC 7812-1). The leading 9 keeps them out of every scheme's range.
    const char* number;
    /// What happens, and what the cardholder has to know.
    const char* title;
    const char* advice;
    /// The file that the ACS plays.
    const char* scenario;
    Flow flow = Flow::challenge;
    /// How long the whole challenge may take.
    std::int64_t minutes = 5;
};

[[nodiscard]] std::span<const Card> allCards();

/// The card of a number, in which anything but digits is passed over. Null for a number that is none of ours.
[[nodiscard]] const Card* findCard(const QString& number);

/// As above, by `Card::name`.
[[nodiscard]] const Card* findCardNamed(const QString& name);

/// A number as it stands on a card: four digits a group.
[[nodiscard]] QString groupedNumber(const QString& number);

/// The digits of a text.
[[nodiscard]] QString digitsOf(const QString& text);

} // namespace korvane::checkout
