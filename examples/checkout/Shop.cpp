#include "examples/checkout/Shop.h"

#include "Platform/FaultyText.h"
#include "examples/checkout/Themes.h"

#include <QDate>
#include <QRegularExpression>

#include <array>
#include <numeric>

namespace korvane::checkout {

namespace {

/// Longer than an exchange with the bank and an error to it can take.
constexpr std::chrono::seconds kSilenceLimit{16};

struct Line {
    const char* name;
    const char* detail;
    int cents;
    /// A drawing's name.
    const char* picture;
};

constexpr std::array<Line, 4> kLines{{
    {"Stoneware teapot", "0.8 l, slate blue", 3850, "teapot"},
    {"Linen tea towel", "2 pieces, natural", 1920, "towel"},
    {"Assam, loose leaf", "250 g", 1400, "tea"},
    {"Delivery", "two working days", 490, "parcel"},
}};

QString price(int cents) {
    constexpr int kCents = 100;
    constexpr int kDigits = 2;
    constexpr int kDecimal = 10;
    return QStringLiteral("€ %1.%2").arg(cents / kCents).arg(cents % kCents, kDigits, kDecimal, QChar(u'0'));
}

/// A month and a year, "MM/YY", that are not over.
bool isFuture(const QString& expiry) {
    static const QRegularExpression form("^(0[1-9]|1[0-2])/([0-9]{2})$");
    constexpr int kCentury = 2000;
    const auto match = form.match(expiry);
    if (!match.hasMatch()) return false;
    const QDate last = QDate(kCentury + match.captured(2).toInt(), match.captured(1).toInt(), 1).addMonths(1);
    return last > QDate::currentDate();
}

constexpr qsizetype kNumberDigits = 16;
constexpr qsizetype kExpiryCharacters = 5;

/// No value for what no card number begins with.
std::optional<QString> numberFrom(const QString& typed) {
    static const QRegularExpression form("^[0-9 ]*$");
    const QString digits = digitsOf(typed);
    if (!form.match(typed).hasMatch() || digits.size() > kNumberDigits) return std::nullopt;
    return groupedNumber(digits);
}

/// With the slash behind the month; no value for what no month and year begin with.
std::optional<QString> expiryFrom(const QString& typed) {
    static const QRegularExpression form("^(?:[01]?|(0[1-9]|1[0-2])(/?[0-9]{0,2}))$");
    const auto match = form.match(typed);
    if (!match.hasMatch()) return std::nullopt;
    const QString year = digitsOf(match.captured(2));
    return year.isEmpty() ? typed : match.captured(1) + u'/' + year;
}

QString pictureOf(Mood mood) {
    switch (mood) {
    case Mood::paid: return "paid";
    case Mood::calm: return "calm";
    case Mood::refused: return "refused";
    }
    return {};
}

} // namespace

Shop::Shop(Acs& acs) : acs_(acs) {
    silence_.setSingleShot(true);
    silence_.setInterval(kSilenceLimit);
    connect(&silence_, &QTimer::timeout, this, [this] {
        if (payment_) payment_->giveUp();
    });
}

// What is shown.

QVariantList Shop::lines() const {
    QVariantList lines;
    for (const Line& line : kLines)
        lines.append(QVariantMap{{"name", line.name},
                                 {"detail", line.detail},
                                 {"price", price(line.cents)},
                                 {"picture", line.picture}});
    return lines;
}

QString Shop::total() const {
    return price(std::accumulate(kLines.begin(), kLines.end(), 0,
                                 [](int sum, const Line& line) { return sum + line.cents; }));
}

QVariantList Shop::cards() const {
    QVariantList cards;
    for (const Card& card : allCards())
        cards.append(QVariantMap{{"name", card.name},
                                 {"number", groupedNumber(card.number)},
                                 {"title", card.title},
                                 {"advice", card.advice}});
    return cards;
}

QString Shop::hint() const {
    if (digitsOf(number_).size() < kNumberDigits) return "Sixteen digits, as on the front of the card.";
    const Card* card = findCard(number_);
    if (!card) return "This shop takes its own test cards only.";
    if (isFuture(expiry_)) return card->advice;
    return expiry_.size() < kExpiryCharacters ? "Month and year that the card is good until, as in 12/39."
                                              : "This card is good no more.";
}

bool Shop::hintWarns() const {
    if (digitsOf(number_).size() < kNumberDigits) return false;
    return !findCard(number_) || (expiry_.size() == kExpiryCharacters && !isFuture(expiry_));
}

bool Shop::canPay() const {
    return findCard(number_) && isFuture(expiry_);
}

QVariantMap Shop::result() const {
    QVariantList facts;
    for (const auto& [name, value] : outcome_.facts)
        facts.append(QVariantMap{{"name", name}, {"value", value}});
    return {{"picture", pictureOf(outcome_.mood)},
            {"title", outcome_.title},
            {"words", outcome_.words},
            {"wayOn", outcome_.mood == Mood::paid ? "Back to the shop" : "Back to your cart"},
            {"facts", facts}};
}

QStringList Shop::themes() const {
    QStringList titles;
    for (const Theme& theme : allThemes())
        titles.append(theme.label);
    return titles;
}

bool Shop::isDark() const noexcept {
    return allThemes()[static_cast<std::size_t>(theme_)].isDark;
}

double Shop::textScale() const noexcept {
    return allThemes()[static_cast<std::size_t>(theme_)].textScale;
}

bool Shop::isChallengeBarDark() const noexcept {
    return allThemes()[static_cast<std::size_t>(theme_)].isBarDark;
}

// What is asked for.

void Shop::setNumber(const QString& number) {
    const auto taken = numberFrom(number);
    if (!taken || number_ == *taken) return;
    number_ = *taken;
    emit formChanged();
}

void Shop::setExpiry(const QString& expiry) {
    const auto taken = expiryFrom(expiry);
    if (!taken || expiry_ == *taken) return;
    expiry_ = *taken;
    emit formChanged();
}

void Shop::setTheme(int theme) {
    if (theme == theme_ || theme < 0 || theme >= static_cast<int>(allThemes().size())) return;
    theme_ = theme;
    emit themeChanged();
}

void Shop::choose(const QString& number) {
    setNumber(number);
    setExpiry("12/39");
}

void Shop::pay() {
    const Card* card = findCard(number_);
    if (!card || !canPay() || page_ == WaitingPage) return;
    show(WaitingPage);
    const auto& theme = allThemes()[static_cast<std::size_t>(theme_)];
    try {
        payment_ = std::make_shared<Payment>(*card, lookOf(theme),
                                             [this](const Outcome& outcome) { paymentEnded(outcome); });
        payment_->begin(acs_);
    } catch (const FaultyText& error) {
        paymentEnded(themeFailure(QString::fromUtf8(error.what())));
    }
}

void Shop::paymentEnded(const Outcome& outcome) {
    outcome_ = outcome;
    payment_ = nullptr;
    silence_.stop();
    show(ResultPage);
}

void Shop::startOver() {
    number_.clear();
    expiry_.clear();
    emit formChanged();
    show(CartPage);
}

void Shop::turn() {
    isLandscape_ = !isLandscape_;
    emit turned();
}

/// The library can take its last screen away without telling an ending.
void Shop::challengeStands(bool isStanding) {
    if (isStanding)
        silence_.stop();
    else if (payment_)
        silence_.start();
}

void Shop::show(Page page) {
    page_ = page;
    emit pageChanged();
}

} // namespace korvane::checkout
