#pragma once

#include "examples/checkout/Plays.h"

#include <string>
#include <vector>

namespace korvane::checkout {

[[nodiscard]] std::vector<std::string> playNames();
/// The one that waits for a minute.
[[nodiscard]] std::string slowPlay();
/// The names, for people.
[[nodiscard]] std::string playList();

/// Whether the panel gives the device the hold and the look of each play; a small window has no panel.
enum class Setting { asThePlay, asItStands };

/// Plays payments in the shop's window, one after the other, and writes a line for each to standard output.
class Player {
public:
    /// @param shots  the folder for pictures; it is made if it is missing.
    /// @throws Stuck where it cannot be made; so does `play` where it cannot be written into.
    Player(QQuickWindow& window, Shop& shop, QString shots, Setting setting);

    /// @param names  of the payments.
    /// @return whether all ended as they should.
    [[nodiscard]] bool play(const std::vector<std::string>& names);

private:
    void pay(const Play& play);
    /// Whether a payment is made without a finger.
    [[nodiscard]] static bool isByKeys(const Play& play);
    /// Presses a control of the shop.
    void use(const Play& play, const QString& name);
    void prepare(const Play& play);
    void fillForm(const Play& play);
    void fillFormByKeys(const Card& card);
    void say(const Play& play, const std::string& how);

    Shop& shop_;
    const Setting setting_;
    Cardholder cardholder_;
};

} // namespace korvane::checkout
