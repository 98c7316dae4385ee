#include "examples/checkout/Themes.h"

#include "Platform/Platform.h"

#include <algorithm>
#include <array>

namespace korvane::checkout {

namespace {

constexpr int kBarSize = 17;
constexpr int kHeadingSize = 20;
constexpr int kButtonSize = 17;
constexpr int kCodeSize = 22;
constexpr const char* kCancel = "Cancel";
constexpr double kRegular = 0;
constexpr double kMedium = 230;
constexpr double kSemibold = 300;

constexpr Palette kTarnbeck{.bar = "#0F4C46",
                            .onBar = "#FFFFFF",
                            .page = "#F4F8F6",
                            .heading = "#0F3B37",
                            .text = "#24393A",
                            .quiet = "#4F6466",
                            .accent = "#1F7A6D",
                            .onAccent = "#FFFFFF",
                            .pressed = "#165A50",
                            .field = "#FFFFFF",
                            .border = "#748985",
                            .headingFont = "System",
                            .cornerRadius = 14,
                            .title = "Tarnbeck Bank",
                            .boxChecked = "BoxChecked",
                            .boxUnchecked = "BoxUnchecked"};

constexpr Palette kNight{.bar = "#15191E",
                         .onBar = "#E8C27A",
                         .page = "#0C0F12",
                         .heading = "#F3EEE4",
                         .text = "#D9D5CC",
                         .quiet = "#A49F95",
                         .accent = "#E8C27A",
                         .onAccent = "#1B1508",
                         .pressed = "#C9A55F",
                         .field = "#15191E",
                         .border = "#7A7365",
                         .headingFont = nullptr,
                         .cornerRadius = 10,
                         .title = "Confirm payment"};

constexpr std::array<Theme, 4> kThemes{{
    {.name = "default", .label = "Default"},
    {.name = "bank", .label = "A bank's brand", .palette = &kTarnbeck, .isBarDark = true},
    {.name = "dark", .label = "Dark", .palette = &kNight, .isDark = true, .isBarDark = true},
    {.name = "large", .label = "Large text", .textScale = 1.4, .barTitle = "Confirm"},
}};

std::optional<UIColor> colour(const char* hex) {
    return hexStringToUIColor(hex);
}

FontValues system(int size, double weight) {
    return {.name = "System", .size = size, .weight = weight};
}

/// The library takes a font only with a name.
FontValues heading(const Palette& palette, int size) {
    if (!palette.headingFont) return {};
    return {.name = palette.headingFont, .size = size, .weight = kSemibold};
}

/// A button on a surface of its own.
std::shared_ptr<ButtonCustomization> filled(const Palette& palette) {
    auto button =
        std::make_shared<ButtonCustomization>(system(kButtonSize, kSemibold), colour(palette.onAccent),
                                              colour(palette.accent), palette.cornerRadius);
    button->highlitedColor = colour(palette.pressed);
    button->highlitedTextColor = colour(palette.onAccent);
    return button;
}

/// A button that is only text; without a surface, what lies below shows.
std::shared_ptr<ButtonCustomization> plain(const char* text, const char* surface, double weight) {
    return std::make_shared<ButtonCustomization>(system(kButtonSize, weight), colour(text),
                                                 surface ? colour(surface) : std::nullopt, std::nullopt);
}

std::shared_ptr<CustTextCustomization> paragraph(const char* text) {
    auto look = std::make_shared<CustTextCustomization>();
    look->setTextColor(colour(text));
    return look;
}

void setButtons(UiCustomization& look, const Palette& palette) {
    for (const ButtonType type : {ButtonType::SUBMIT, ButtonType::CONTINUE, ButtonType::NEXT})
        look.setButtonCustomization(filled(palette), type);
    for (const ButtonType type : {ButtonType::RESEND, ButtonType::CUST_WHY_INFO, ButtonType::CUST_EXT_INFO})
        look.setButtonCustomization(plain(palette.accent, palette.page, kMedium), type);
    look.setButtonCustomization(plain(palette.onBar, nullptr, kRegular), ButtonType::CANCEL);
}

void setTexts(UiCustomization& look, const Palette& palette) {
    look.setLabelCustomization(std::make_shared<LabelCustomization>(
        FontValues{}, colour(palette.quiet), heading(palette, kHeadingSize), colour(palette.heading)));
    look.setCustTextCustomization(paragraph(palette.text), CustTextViewType::CHALLENGE_INFO_TEXT);
    look.setCustTextCustomization(paragraph(palette.text), CustTextViewType::WHITELISTING_TEXT);
    look.setCustTextCustomization(paragraph(palette.quiet), CustTextViewType::WHY_INFO_TEXT);
    look.setCustTextCustomization(paragraph(palette.quiet), CustTextViewType::EXT_INFO_TEXT);
}

void setField(UiCustomization& look, const Palette& palette) {
    auto field = std::make_shared<TextBoxCustomization>();
    field->setTextFont(system(kCodeSize, kMedium));
    field->setTextColor(colour(palette.text));
    field->backgroundColor = colour(palette.field);
    field->setBorderColor(colour(palette.border));
    field->setBorderWidth(1);
    field->setCornerRadius(palette.cornerRadius);
    field->setCustCursorColor(colour(palette.accent));
    look.setTextBoxCustomization(std::move(field));
}

void setImages(UiCustomization& look, const Palette& palette) {
    const auto folder = NSBundle::bundleWithPath(Platform::current().mainBundle().bundlePath() + "/images");
    const auto set = [&](CustImageType type, const char* name, std::optional<UIColor> tint) {
        if (!name) return;
        look.setCustImageCustomization(
            std::make_shared<CustImageCustomization>(CustImageCustomization{folder, name, tint}), type);
    };
    set(CustImageType::ARROW_UP, "ArrowUp", colour(palette.accent));
    set(CustImageType::ARROW_DOWN, "ArrowDown", colour(palette.accent));
    set(CustImageType::CHECKBOX_WHITELISTING_CHECKED, palette.boxChecked, std::nullopt);
    set(CustImageType::CHECKBOX_WHITELISTING_UNCHECKED, palette.boxUnchecked, std::nullopt);
}

void setBar(UiCustomization& look, const Palette& palette) {
    look.setToolbarCusomization(std::make_shared<ToolbarCustomization>(
        heading(palette, kBarSize), colour(palette.onBar), colour(palette.bar), palette.title, kCancel));
    auto page = std::make_shared<BackgroundCustomization>();
    page->setBackgroundColor(colour(palette.page));
    look.setBackgroundCustomization(std::move(page));
}

std::shared_ptr<const UiCustomization> onlyTitle(const char* title) {
    auto bar = std::make_shared<ToolbarCustomization>();
    bar->setHeaderText(title);
    auto look = std::make_shared<UiCustomization>();
    look->setToolbarCusomization(std::move(bar));
    return look;
}

} // namespace

std::span<const Theme> allThemes() {
    return kThemes;
}

std::vector<std::string> themeNames() {
    std::vector<std::string> names;
    for (const Theme& theme : kThemes)
        names.emplace_back(theme.name);
    return names;
}

int themeNamed(const QString& name) {
    const auto* found = std::ranges::find_if(
        kThemes, [&name](const Theme& theme) { return name == QLatin1String(theme.name); });
    return found == kThemes.end() ? -1 : static_cast<int>(found - kThemes.begin());
}

std::shared_ptr<const UiCustomization> customizationOf(const Theme& theme) {
    if (!theme.palette) return theme.barTitle ? onlyTitle(theme.barTitle) : nullptr;
    auto look = std::make_shared<UiCustomization>();
    setButtons(*look, *theme.palette);
    setTexts(*look, *theme.palette);
    setField(*look, *theme.palette);
    setImages(*look, *theme.palette);
    setBar(*look, *theme.palette);
    return look;
}

} // namespace korvane::checkout
