#include "keyboard/KeyMenu.h"
#include "keyboard/KeyPop.h"
#include "keyboard/KeyboardButton.h"
#include "keyboard/KeyboardRow.h"

#include <algorithm>
#include <array>
#include <string>

namespace korvane {

namespace {

constexpr double kPopAlpha = 0.95;
constexpr double kMenuGap = 5; // between a key and its menu

/// What pop-ups and menus stay within, from left to right: the whole width of the row that the key is in, or
/// of the holder of a key that is in none. In the holder's coordinates.
CGRect widthAround(const KeyboardButton& key, const UIView& holder) {
    const UIView* widest = nullptr;
    for (auto row = std::dynamic_pointer_cast<KeyboardRow>(key.superview()); row;
         row = std::dynamic_pointer_cast<KeyboardRow>(row->superview()))
        widest = row.get();
    return widest ? widest->convertTo(&holder, widest->bounds()) : holder.bounds();
}

/// The pictures behind the bubbles; a pressed key has none. Like the styles they are found once, since every
/// press shows one.
UIImagePtr backgroundImage(KeyPopType type, UIUserInterfaceStyle style) {
    using Images = std::array<UIImagePtr, 3>;
    const auto found = [](const std::string& surroundings) {
        return Images{keyboardImage("velka_sdk_kb_press_bg" + surroundings),
                      keyboardImage("velka_sdk_kb_press_bg_left" + surroundings),
                      keyboardImage("velka_sdk_kb_press_bg_right" + surroundings)};
    };
    static const Images light = found("");
    static const Images dark = found("_dark");
    const Images& images = style == UIUserInterfaceStyle::dark ? dark : light;
    switch (type) {
    case KeyPopType::Default: return images[0];
    case KeyPopType::Left: return images[1];
    case KeyPopType::Right: return images[2];
    case KeyPopType::Press: break;
    }
    return nullptr;
}

/// The style of a key's own pop-up: the picture, or a darker key, is all there is behind the content.
KeyPopStyle popStyle(const KeyboardButtonStyle& style, KeyPopType type) {
    static const KeyPopStyle usual;
    static const std::optional<UIColor> pressed = keyboardColor("velka_sdk_kb_keytap");
    KeyPopStyle pop = usual;
    pop.backgroundColor = type == KeyPopType::Press ? pressed : std::optional(UIColor::clear());
    if (style.keyPopBackgroundColor) pop.backgroundColor = style.keyPopBackgroundColor;
    pop.widthMultiplier = style.keyPopWidthMultiplier;
    pop.heightMultiplier = style.keyPopHeightMultiplier;
    pop.borderWidth = 0;
    return pop;
}

} // namespace

std::shared_ptr<UIView> KeyboardButton::popUpHolder() const {
    if (style_)
        if (auto container = style_->keyPopContainerView.lock()) return container;
    return superview();
}

/// Several keys of one row can be pressed at once, and so the tag alone does not tell whose pop-up it is.
std::shared_ptr<KeyPop> KeyboardButton::shownKeyPop() const {
    const bool isOverKey = style_->keyPopType == KeyPopType::Press;
    const auto holder = isOverKey ? nullptr : popUpHolder();
    if (!isOverKey && !holder) return nullptr;
    for (const auto& view : isOverKey ? subviews() : holder->subviews()) {
        if (view->tag() != KeyboardButtonPopupViewTag) continue;
        auto pop = std::dynamic_pointer_cast<KeyPop>(view);
        if (pop && pop->keyboardButton().get() == this) return pop;
    }
    return nullptr;
}

void KeyboardButton::showKeyPop(bool show) {
    if (!style_ || !style_->keyPopType) return;
    const auto shown = shownKeyPop();
    // The pop-up lets a little through, which the key's own glyph would spoil.
    for (const auto& glyph :
         {std::static_pointer_cast<UIView>(textLabel_), std::static_pointer_cast<UIView>(imageView_)})
        if (glyph) glyph->setHidden(show);
    if (!show) {
        if (shown) shown->removeFromSuperview();
        return;
    }
    if (shown) return;
    const bool isOverKey = style_->keyPopType == KeyPopType::Press;
    const auto holder = isOverKey ? std::static_pointer_cast<UIView>(shared_from_this()) : popUpHolder();
    if (!holder) return;
    const auto pop = createKeyPop(*style_->keyPopType);
    pop->setTag(KeyboardButtonPopupViewTag);
    holder->addSubview(pop);
}

std::shared_ptr<KeyPop> KeyboardButton::createKeyPop(KeyPopType type) {
    const auto self = std::static_pointer_cast<KeyboardButton>(shared_from_this());
    auto pop = std::make_shared<KeyPop>(self, popStyle(*style_, type));
    pop->setAlpha(kPopAlpha);
    if (type == KeyPopType::Press) {
        pop->layer().setCornerRadius(style_->cornerRadius);
        pop->setFrame(KeyPop::frame(*style_, bounds(), bounds()));
        return pop;
    }
    pop->setBackgroundImage(backgroundImage(type, traitCollection().userInterfaceStyle));
    const auto holder = popUpHolder();
    pop->setFrame(KeyPop::frame(*style_, convertTo(holder.get(), bounds()), widthAround(*this, *holder)));
    return pop;
}

void KeyboardButton::showKeyMenu(bool show) {
    const auto holder = popUpHolder();
    if (!holder) return;
    const auto shown = holder->viewWithTag(KeyboardButtonMenuViewTag);
    if (!show) {
        if (shown) shown->removeFromSuperview();
        return;
    }
    if (keyMenu_ && !shown) holder->addSubview(createKeyMenu(keyMenu_));
}

std::shared_ptr<KeyMenu> KeyboardButton::createKeyMenu(const std::shared_ptr<KeyMenu>& menu) {
    menu->setTag(KeyboardButtonMenuViewTag);
    if (menu->type() == KeyMenuType::Horizontal)
        menu->generateHorizontalMenu();
    else
        menu->generateVerticalMenu();
    const auto holder = popUpHolder();
    const CGRect key = convertTo(holder.get(), bounds());
    const CGRect across = widthAround(*this, *holder);
    const CGSize size = menu->bounds().size;
    const double least = across.origin.x;
    const double most = std::max(least, CGRectGetMaxX(across) - size.width);
    const double middle = key.origin.x + (key.size.width - size.width) / 2;
    menu->setFrame({{std::clamp(middle, least, most), key.origin.y - kMenuGap - size.height}, size});
    return menu;
}

} // namespace korvane
