#include "keyboard/CustomKeyboardLayout.h"

#include "keyboard/CustomKeyboardStates.h"
#include "keyboard/CustomKeyboardStyles.h"

#include <array>
#include <string>
#include <string_view>
#include <utility>

namespace korvane {

namespace {

using Identifier = CustomKeyboardIdentifier;
using Style = const KeyboardButtonStyle& (*)();
using RowStyle = const KeyboardRowStyle& (*)();
using Width = KeyboardButtonWidth;

/// The looks of typing keys in a row: of the first one, the last one, and those between.
struct RowLooks {
    Style first;
    Style last;
    Style between;
};

/// A key that has an effect in place of a character.
struct EffectKey {
    KeyboardButtonType::Kind kind;
    std::string_view caption; // the text, or the image's name
    Style style;
    Width width;
    Identifier identifier;
};

/// A page of four rows; characters are parted by blanks. The third row has an inner one between two keys.
struct Page {
    std::string_view first;
    RowLooks firstLooks;
    std::string_view second;
    RowStyle secondStyle;
    RowLooks secondLooks;
    EffectKey left;
    std::string_view inner;
    Style innerStyle;
    EffectKey pageKey;
};

constexpr auto kText = KeyboardButtonType::Kind::Text;
constexpr auto kImage = KeyboardButtonType::Kind::Image;
constexpr Width kNarrow = Width::Relative(0.115);
constexpr Width kQuarter = Width::Relative(0.25);

constexpr RowLooks kEnds{CustomKeyboardLeftKeyButtonStyle, CustomKeyboardRightKeyButtonStyle,
                         CustomKeyboardKeyButtonStyle};
constexpr RowLooks kPlain{CustomKeyboardKeyButtonStyle, CustomKeyboardKeyButtonStyle,
                          CustomKeyboardKeyButtonStyle};
constexpr RowLooks kLowercaseEnds{CustomKeyboardLowercaseLeftKeyButtonStyle,
                                  CustomKeyboardLowercaseRightKeyButtonStyle,
                                  CustomKeyboardLowercaseKeyButtonStyle};
constexpr RowLooks kLowercasePlain{CustomKeyboardLowercaseKeyButtonStyle,
                                   CustomKeyboardLowercaseKeyButtonStyle,
                                   CustomKeyboardLowercaseKeyButtonStyle};
constexpr RowLooks kPad{CustomKeyboardKeyPadButtonStyle, CustomKeyboardKeyPadButtonStyle,
                        CustomKeyboardKeyPadButtonStyle};

constexpr EffectKey shift(std::string_view image, Identifier identifier) {
    return {kImage, image, CustomKeyboardShiftButtonStyle, kNarrow, identifier};
}

constexpr EffectKey pageKey(std::string_view text, Width width, Identifier identifier) {
    return {kText, text, CustomKeyboardNumbersButtonStyle, width, identifier};
}

constexpr EffectKey kBackspace{kImage, "velka_sdk_kb_Backspace", CustomKeyboardBackspaceButtonStyle, kNarrow,
                               Identifier::Backspace};
constexpr EffectKey kPadBackspace{kImage, "velka_sdk_kb_Backspace", CustomKeyboardBackspacePadButtonStyle,
                                  Width::Dynamic(), Identifier::Backspace};
constexpr EffectKey kSpace{kText, "space", CustomKeyboardSpaceButtonStyle, Width::Dynamic(),
                           Identifier::Space};
constexpr EffectKey kReturn{kText, "return", CustomKeyboardReturnButtonStyle, kQuarter, Identifier::Return};

constexpr std::string_view kCapitals1 = "Q W E R T Y U I O P";
constexpr std::string_view kCapitals2 = "A S D F G H J K L";
constexpr std::string_view kCapitals3 = "Z X C V B N M";
constexpr std::string_view kPunctuation = ". , ? ! '";
constexpr EffectKey kToNumbers = pageKey("123", kQuarter, Identifier::Numbers);
constexpr EffectKey kToLetters = pageKey("ABC", kQuarter, Identifier::Letters);

// The symbols' key to the numbers is wider than the numbers' key to the symbols.
constexpr std::array kPages{Page{kCapitals1, kEnds, kCapitals2, CustomKeyboardSecondRowStyle, kPlain,
                                 shift("velka_sdk_kb_ShiftOnce", Identifier::ShiftOnce), kCapitals3,
                                 CustomKeyboardKeyButtonStyle, kToNumbers},
                            Page{kCapitals1, kEnds, kCapitals2, CustomKeyboardSecondRowStyle, kPlain,
                                 shift("velka_sdk_kb_ShiftOn", Identifier::ShiftOn), kCapitals3,
                                 CustomKeyboardKeyButtonStyle, kToNumbers},
                            Page{"q w e r t y u i o p", kLowercaseEnds, "a s d f g h j k l",
                                 CustomKeyboardSecondRowStyle, kLowercasePlain,
                                 shift("velka_sdk_kb_ShiftOff", Identifier::ShiftOff), "z x c v b n m",
                                 CustomKeyboardLowercaseKeyButtonStyle, kToNumbers},
                            Page{"1 2 3 4 5 6 7 8 9 0", kEnds, "- / : ; ( ) $ & @ \"", CustomKeyboardRowStyle,
                                 kEnds, pageKey("#+=", kNarrow, Identifier::Symbols), kPunctuation,
                                 CustomKeyboardKeyButtonStyle, kToLetters},
                            Page{"[ ] { } # % ^ * + =", kEnds, "_ \\ | ~ < > € £ ¥ •", CustomKeyboardRowStyle,
                                 kEnds, pageKey("123", kQuarter, Identifier::Numbers), kPunctuation,
                                 CustomKeyboardKeyButtonStyle, kToLetters}};

constexpr std::array<std::string_view, 3> kPadDigits{"1 2 3", "4 5 6", "7 8 9"};

using Keys = KeyboardRow::Characters;

std::shared_ptr<KeyboardButton> typingKey(std::string_view character, Style style) {
    return std::make_shared<KeyboardButton>(KeyboardButtonType::Key(std::string(character)), style());
}

/// In the style's tint, so that it is seen in light and dark surroundings.
UIImagePtr tintedImage(const std::string& name) {
    const UIImagePtr image = keyboardImage(name);
    return image ? image->withRenderingMode(UIImageRenderingMode::alwaysTemplate) : nullptr;
}

std::shared_ptr<KeyboardButton> effectKey(const EffectKey& key) {
    const std::string caption(key.caption);
    auto type = key.kind == kText ? KeyboardButtonType::Text(caption)
                                  : KeyboardButtonType::Image(tintedImage(caption));
    return std::make_shared<KeyboardButton>(std::move(type), key.style(), key.width, nullptr,
                                            std::string(rawValue(key.identifier)));
}

Keys typingKeys(std::string_view characters, const RowLooks& looks) {
    Keys keys;
    while (!characters.empty()) {
        const std::size_t length = std::min(characters.find(' '), characters.size());
        const bool isLast = length == characters.size();
        const Style style = keys.empty() ? looks.first : isLast ? looks.last : looks.between;
        keys.emplace_back(typingKey(characters.substr(0, length), style));
        characters.remove_prefix(isLast ? length : length + 1);
    }
    return keys;
}

std::shared_ptr<KeyboardRow> row(RowStyle style, Keys keys) {
    return std::make_shared<KeyboardRow>(style(), std::move(keys));
}

std::shared_ptr<KeyboardLayout> layout(KeyboardLayout::Rows rows) {
    return std::make_shared<KeyboardLayout>(CustomKeyboardLayoutStyle(), std::move(rows));
}

std::shared_ptr<KeyboardLayout> layout(const Page& page) {
    const RowLooks inner{page.innerStyle, page.innerStyle, page.innerStyle};
    return layout({row(CustomKeyboardFirstRowStyle, typingKeys(page.first, page.firstLooks)),
                   row(page.secondStyle, typingKeys(page.second, page.secondLooks)),
                   row(CustomKeyboardThirdRowStyle,
                       {effectKey(page.left), row(CustomKeyboardChildRowStyle, typingKeys(page.inner, inner)),
                        effectKey(kBackspace)}),
                   row(CustomKeyboardFourthRowStyle,
                       {effectKey(page.pageKey), effectKey(kSpace), effectKey(kReturn)})});
}

/// The key in the last row's corner only keeps its place, so that 0 stands under 8.
std::shared_ptr<KeyboardLayout> padLayout() {
    KeyboardLayout::Rows rows;
    for (const std::string_view digits : kPadDigits)
        rows.push_back(row(CustomKeyboardPadRowStyle, typingKeys(digits, kPad)));
    const auto placeholder = typingKey("-", CustomKeyboardKeyButtonStyle);
    placeholder->setHidden(true);
    rows.push_back(
        row(CustomKeyboardPadRowStyle,
            {placeholder, typingKey("0", CustomKeyboardKeyPadButtonStyle), effectKey(kPadBackspace)}));
    return layout(std::move(rows));
}

} // namespace

CustomKeyboardLayout::CustomKeyboardLayout()
    : uppercase_(layout(kPages[0])), uppercaseToggled_(layout(kPages[1])), lowercase_(layout(kPages[2])),
      numbers_(layout(kPages[3])), symbols_(layout(kPages[4])), numberPad_(padLayout()) {}

} // namespace korvane
