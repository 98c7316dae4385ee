#include "Cardholder/Finger.h"

#include "Platform/Text.h"

#include <array>
#include <optional>

namespace korvane::cardholder {

namespace {

using Identifier = CustomKeyboardIdentifier;

/// The pages of the keyboard, as far as keys lead from one to another.
enum class Page { capitals, small, numbers, symbols, pad };
constexpr std::size_t kReachablePages = 4;

/// The key that brings a finger from a page (row) nearer to another one (column). Small letters are reached
/// from capitals by way of the numbers, since shift has times of its own.
constexpr std::array<std::array<Identifier, kReachablePages>, kReachablePages> kWays{{
    {Identifier::ShiftOn, Identifier::Numbers, Identifier::Numbers, Identifier::Numbers},
    {Identifier::ShiftOff, Identifier::ShiftOff, Identifier::Numbers, Identifier::Numbers},
    {Identifier::Letters, Identifier::Letters, Identifier::Numbers, Identifier::Symbols},
    {Identifier::Letters, Identifier::Letters, Identifier::Numbers, Identifier::Symbols},
}};

Page pageOf(CustomKeyboardLayoutState state) {
    using State = CustomKeyboardLayoutState;
    if (state == State::Letters(CustomKeyboardShiftState::Off)) return Page::small;
    if (state == State::Numbers()) return Page::numbers;
    if (state == State::Symbols()) return Page::symbols;
    return state == State::NumberPad() ? Page::pad : Page::capitals;
}

constexpr std::array<CustomKeyboardLayoutState, kReachablePages> kPages{
    CustomKeyboardLayoutState::Letters(CustomKeyboardShiftState::Once),
    CustomKeyboardLayoutState::Letters(CustomKeyboardShiftState::Off), CustomKeyboardLayoutState::Numbers(),
    CustomKeyboardLayoutState::Symbols()};

/// The key of a page, in any row, that types a character.
std::shared_ptr<KeyboardButton> keyOf(const KeyboardLayout& page, const std::string& character) {
    if (character == " ") return page.getKeyboardButton(rawValue(Identifier::Space));
    std::shared_ptr<KeyboardButton> found;
    page.forEachKey([&](const auto& key) {
        const KeyboardButtonType& type = key->type();
        if (!found && type.kind() == KeyboardButtonType::Kind::Key && type.string() == character) found = key;
    });
    return found;
}

/// The first page that has a character, or no value.
std::optional<Page> pageWith(const CustomKeyboard& keyboard, const std::string& character) {
    for (std::size_t page = 0; page < kReachablePages; ++page)
        if (keyOf(*keyboard.getKeyboardLayout(kPages[page]), character)) return static_cast<Page>(page);
    return std::nullopt;
}

/// The user-perceived characters of a text.
std::vector<std::string> charactersOf(const std::string& text) {
    std::vector<std::string> characters;
    for (auto& match : regularExpressionMatches("\\X", text))
        characters.push_back(std::move(match.front()));
    return characters;
}

} // namespace

void Finger::tap(UIView& view) {
    window_->layoutIfNeeded();
    view.scrollIntoSight();
    window_->layoutIfNeeded();
    const CGPoint middle = view.middleInWindow();
    const auto hit = window_->hitTest(middle);
    if (!hit || !hit->isDescendant(view)) throw Refusal("The control is covered or out of sight.");
    touch(middle);
}

std::shared_ptr<UITableViewCell> Finger::reach(UITableView& table, IndexPath row) {
    window_->layoutIfNeeded();
    table.scrollToRow(row);
    window_->layoutIfNeeded();
    auto cell = table.cellForRow(row);
    if (!cell) throw Refusal("The row is out of reach.");
    return cell;
}

void Finger::touch(CGPoint place) {
    constexpr std::uint64_t kFinger = 1;
    window_->sendTouch({kFinger, UITouchPhase::began, place});
    window_->sendTouch({kFinger, UITouchPhase::ended, place});
}

void Finger::type(const std::string& text, ChallengeTextNativeViewController& screen) {
    if (!screen.otp->isFirstResponder()) tap(*screen.otp.get());
    const auto keyboard = screen.secureKeyboard->customKeyboard();
    if (!keyboard || !screen.otp->isFirstResponder()) throw Refusal("The keyboard does not open.");
    for (const std::string& character : charactersOf(text))
        if (!pressKeyFor(character, *keyboard)) screen.otp->insertText(character);
}

bool Finger::pressKeyFor(const std::string& character, CustomKeyboard& keyboard) {
    constexpr int kMostTurns = 4;
    for (int turn = 0; turn < kMostTurns; ++turn) {
        const auto& page = keyboard.getCurrentKeyboardLayout();
        if (const auto key = keyOf(*page, character)) {
            pressKey(*key);
            return true;
        }
        const Page from = pageOf(keyboard.keyboardLayoutState());
        const auto to = pageWith(keyboard, character);
        if (from == Page::pad || !to) return false;
        const Identifier way = kWays[static_cast<std::size_t>(from)][static_cast<std::size_t>(*to)];
        const auto key = page->getKeyboardButton(rawValue(way));
        if (!key) return false;
        pressKey(*key);
    }
    return false;
}

void Finger::pressKey(const KeyboardButton& key) {
    window_->layoutIfNeeded();
    touch(key.middleInWindow());
}

void Finger::closeKeyboard(ChallengeTextNativeViewController& screen) {
    const auto bar = screen.secureKeyboard->customToolBar();
    if (screen.otp->isFirstResponder() && bar) tap(*bar->buttonClose());
}

} // namespace korvane::cardholder
