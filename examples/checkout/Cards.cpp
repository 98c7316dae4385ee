#include "examples/checkout/Cards.h"

#include <algorithm>
#include <array>

namespace korvane::checkout {

namespace {

constexpr std::array<Card, 11> kCards{{
    {"frictionless", "9000120000000007", "Passes without a question", "The bank knows enough.", "code",
     Flow::frictionless},
    {"code", "9000120000000106", "A code by text message", "The code is 4721.", "code"},
    {"choice", "9000120000000205", "A choice, then a code", "Choose any; the code is 4721.", "choice"},
    {"choices", "9000120000000304", "Several choices", "The book shop and the train ticket are yours.",
     "choices"},
    {"app", "9000120000000403", "The bank's own app", "It has confirmed at the second look.", "app"},
    {"page", "9000120000000502", "A page of the bank's", "The digits are 472100.", "page"},
    {"declined", "9000120000000601", "Declined", "Enter wrong codes: after two the bank declines.",
     "wrongCode"},
    {"bankError", "9000120000000700", "The bank breaks down", "It answers the code 4721 with an error.",
     "bankError"},
    {"silent", "9000120000000809", "The bank says nothing", "The library waits for twelve seconds.",
     "silent"},
    {"forged", "9000120000000908", "A forged answer", "The library does not trust it.", "forged"},
    {"slow", "9000120000001005", "Too slow", "Wait for a minute: that is all the time there is.", "code",
     Flow::challenge, 1},
}};

template <class Predicate>
const Card* firstCard(Predicate isWanted) {
    const auto* found = std::ranges::find_if(kCards, isWanted);
    return found == kCards.end() ? nullptr : found;
}

} // namespace

std::span<const Card> allCards() {
    return kCards;
}

const Card* findCard(const QString& number) {
    const QString digits = digitsOf(number);
    return firstCard([&digits](const Card& card) { return digits == QLatin1String(card.number); });
}

const Card* findCardNamed(const QString& name) {
    return firstCard([&name](const Card& card) { return name == QLatin1String(card.name); });
}

QString groupedNumber(const QString& number) {
    constexpr qsizetype kGroup = 4;
    QString grouped = digitsOf(number);
    for (qsizetype place = kGroup; place < grouped.size(); place += kGroup + 1)
        grouped.insert(place, u' ');
    return grouped;
}

QString digitsOf(const QString& text) {
    QString digits;
    std::ranges::copy_if(text, std::back_inserter(digits),
                         [](QChar character) { return character >= u'0' && character <= u'9'; });
    return digits;
}

} // namespace korvane::checkout
