#include "tests/challenge/simulation/Fingers.h"

#include <algorithm>

namespace korvane::simulation {

namespace {

using Keys = std::vector<std::shared_ptr<KeyboardButton>>;

/// The keys of a row that type what they show.
void collect(const KeyboardRow& row, Keys& keys) {
    for (const auto& element : *row.characters()) {
        if (const auto* inner = std::get_if<std::shared_ptr<KeyboardRow>>(&element)) {
            collect(**inner, keys);
            continue;
        }
        const auto& key = std::get<std::shared_ptr<KeyboardButton>>(element);
        if (key->type().kind() == KeyboardButtonType::Kind::Key && !key->identifier()) keys.push_back(key);
    }
}

Keys typingKeys(const KeyboardLayout& page) {
    Keys keys;
    for (const auto& row : *page.rows())
        collect(*row, keys);
    return keys;
}

} // namespace

bool Fingers::reaches(const UIView& view) const {
    const auto hit = window_.hitTest(view.middleInWindow());
    return hit && hit->isDescendant(view);
}

/// Puts the view halfway down the screen, as far as the content goes.
void Fingers::scrollTo(const UIView& view, UIScrollView& scroll) const {
    const CGRect frame = view.convertTo(&scroll, view.bounds());
    const double height = scroll.bounds().size.height;
    const double lowest = std::max(0.0, std::max(scroll.contentSize().height, CGRectGetMaxY(frame)) - height);
    scroll.setContentOffset({0, std::clamp(frame.origin.y - height / 2, 0.0, lowest)});
    window_.layoutIfNeeded();
}

void Fingers::tap(CGPoint point) {
    ++finger_;
    window_.sendTouch({finger_, UITouchPhase::began, point});
    window_.sendTouch({finger_, UITouchPhase::ended, point});
}

bool Fingers::touch(UIView& view, ChallengeViewController& on) {
    window_.layoutIfNeeded();
    if (!reaches(view))
        if (const auto scroll = std::dynamic_pointer_cast<UIScrollView>(on.view()))
            if (view.isDescendant(*scroll)) scrollTo(view, *scroll);
    const bool isReached = reaches(view);
    tap(view.middleInWindow());
    return isReached;
}

std::string Fingers::typeKeys(ChallengeTextNativeViewController& on, Chance& chance, std::size_t count) {
    std::string typed;
    if (!touch(*on.otp.get(), on)) return typed;
    for (std::size_t index = 0; index < count; ++index) {
        window_.layoutIfNeeded();
        // A page can give way to another one after each key.
        const Keys keys = typingKeys(*on.secureKeyboard->customKeyboard()->getCurrentKeyboardLayout());
        const KeyboardButton& key = *keys[chance.below(keys.size())];
        typed += key.type().string();
        tap(key.middleInWindow());
    }
    on.view()->endEditing();
    return typed;
}

} // namespace korvane::simulation
