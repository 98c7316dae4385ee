#include "examples/checkout/Player.h"

#include "examples/checkout/Themes.h"

#include <QDir>

#include <algorithm>
#include <cstdio>

namespace korvane::checkout {

namespace {

/// A challenge of a minute, and what surrounds it.
constexpr std::chrono::milliseconds kLongestPayment{80000};

QString made(QString folder) {
    if (!QDir().mkpath(folder)) throw Stuck("a folder for pictures: " + folder.toStdString());
    return folder;
}

} // namespace

std::vector<std::string> playNames() {
    std::vector<std::string> names;
    for (const Play& play : allPlays())
        names.emplace_back(play.name);
    return names;
}

std::string slowPlay() {
    const auto isSlow = [](const Play& play) { return findCardNamed(play.card)->minutes == 1; };
    return std::ranges::find_if(allPlays(), isSlow)->name;
}

std::string playList() {
    std::string list;
    for (const std::string& name : playNames())
        list.append(list.empty() ? "" : ", ").append(name);
    return list;
}

Player::Player(QQuickWindow& window, Shop& shop, QString shots, Setting setting)
    : shop_(shop), setting_(setting), cardholder_(window, made(std::move(shots))) {}

void Player::say(const Play& play, const std::string& how) {
    std::printf("%-14s%-24s%-9s%-9s%s\n", play.name, play.kind, play.theme,
                play.hold == Hold::lying ? "lying" : "upright", how.c_str());
    std::fflush(stdout);
}

bool Player::play(const std::vector<std::string>& names) {
    const bool isFromTheFirst = std::ranges::find(names, allPlays().front().name) != names.end();
    cardholder_.beginPayment("window");
    if (isFromTheFirst) cardholder_.shootWindow("shop");
    bool isGood = true;
    for (const Play& play : allPlays()) {
        const bool isWanted = std::ranges::find(names, play.name) != names.end();
        if (!isWanted) continue;
        try {
            pay(play);
        } catch (const Stuck& stuck) {
            // What follows would find an unknown page.
            const bool hasEnded = shop_.page() == Shop::ResultPage;
            say(play, std::string("STUCK, waiting for ") + stuck.what() +
                          (hasEnded ? "; it ended: " + shop_.outcome().ending.toStdString() : ""));
            cardholder_.shootMoving("stuck");
            return false;
        }
        const std::string ending = shop_.outcome().ending.toStdString();
        const bool isExpected = ending == play.ending;
        isGood = isGood && isExpected;
        say(play, isExpected ? ending + ", as expected" : ending + ", NOT " + play.ending);
    }
    return isGood;
}

void Player::pay(const Play& play) {
    prepare(play);
    use(play, "toCard");
    fillForm(play);
    use(play, "pay");
    play.act(cardholder_);
    Cardholder::waitUntil(
        "the result", [this] { return shop_.page() == Shop::ResultPage; }, kLongestPayment);
    Cardholder::waitUntil("the screens to go", [this] { return !cardholder_.host().isActive(); });
    cardholder_.shoot("result");
    use(play, "startOver");
    Cardholder::waitUntil("the cart", [this] { return shop_.page() == Shop::CartPage; });
}

bool Player::isByKeys(const Play& play) {
    return findCardNamed(play.card)->flow == Flow::frictionless;
}

void Player::use(const Play& play, const QString& name) {
    isByKeys(play) ? cardholder_.enterItem(name) : cardholder_.tapItem(name);
}

/// By the panel's own buttons.
void Player::prepare(const Play& play) {
    cardholder_.beginPayment(play.name);
    if (setting_ == Setting::asThePlay) {
        if (shop_.isLandscape() != (play.hold == Hold::lying)) use(play, "turn");
        use(play, "theme:" + QString::number(themeNamed(play.theme)));
        Cardholder::waitUntil("the theme", [this, &play] { return shop_.theme() == themeNamed(play.theme); });
    }
    cardholder_.shoot("cart");
}

/// A card without a challenge is typed, so that the form's fields are played too; the others are chosen.
void Player::fillForm(const Play& play) {
    if (isByKeys(play)) {
        fillFormByKeys(*findCardNamed(play.card));
    } else {
        cardholder_.tapItem("card:" + QString(play.card));
    }
    Cardholder::waitUntil("a form that can be paid", [this] { return shop_.canPay(); });
    cardholder_.shoot("card");
}

/// What is no month and no year does not get into the field.
void Player::fillFormByKeys(const Card& card) {
    cardholder_.typeIntoByKeys("number", card.number);
    cardholder_.typeIntoByKeys("expiry", "90/00a9b39");
    Cardholder::waitUntil("the expiry 09/39", [this] { return shop_.expiry() == "09/39"; });
}

} // namespace korvane::checkout
