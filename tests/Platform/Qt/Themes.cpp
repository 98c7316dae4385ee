#include "tests/Platform/Qt/Themes.h"

namespace korvane {

namespace {

/// A shade in light surroundings and one in dark ones.
struct Shades {
    const char* light;
    const char* dark;
};

struct Palette {
    Shades ground;
    Shades bar;
    Shades text;
    Shades accent;
    Shades onAccent;
    int corner;
    int textSize;
};

UIColor shade(const Shades& shades) {
    const auto resolved = [](const char* hex) {
        return UIColor::fromHex(hex).value().resolved(UIUserInterfaceStyle::light);
    };
    return {resolved(shades.light), resolved(shades.dark)};
}

std::shared_ptr<UiCustomization> painted(const Palette& palette) {
    auto look = std::make_shared<UiCustomization>();
    const FontValues body{"System", palette.textSize, 0};
    const FontValues heavy{"System", palette.textSize + 3, 400};

    const auto filled = std::make_shared<ButtonCustomization>(body, shade(palette.onAccent),
                                                              shade(palette.accent), palette.corner);
    for (const ButtonType type :
         {ButtonType::SUBMIT, ButtonType::NEXT, ButtonType::CONTINUE, ButtonType::VERIFY})
        look->setButtonCustomization(filled, type);
    const auto plain =
        std::make_shared<ButtonCustomization>(body, shade(palette.accent), std::nullopt, palette.corner);
    for (const ButtonType type : {ButtonType::RESEND, ButtonType::CUST_WHY_INFO, ButtonType::CUST_EXT_INFO})
        look->setButtonCustomization(plain, type);
    look->setButtonCustomization(
        std::make_shared<ButtonCustomization>(body, shade(palette.text), std::nullopt, 0),
        ButtonType::CANCEL);

    const auto ground = std::make_shared<BackgroundCustomization>();
    ground->setBackgroundColor(shade(palette.ground));
    look->setBackgroundCustomization(ground);
    look->setToolbarCusomization(std::make_shared<ToolbarCustomization>(
        heavy, shade(palette.text), shade(palette.bar), "Secure checkout", "Cancel"));
    look->setLabelCustomization(
        std::make_shared<LabelCustomization>(body, shade(palette.text), heavy, shade(palette.text)));
    for (const CustTextViewType type :
         {CustTextViewType::CHALLENGE_INFO_TEXT, CustTextViewType::WHY_INFO_TEXT,
          CustTextViewType::EXT_INFO_TEXT, CustTextViewType::WHITELISTING_TEXT})
        look->setCustTextCustomization(
            std::make_shared<CustTextCustomization>(body, shade(palette.text), std::nullopt), type);
    const auto box = std::make_shared<TextBoxCustomization>();
    box->setTextColor(shade(palette.text));
    box->setBorderColor(shade(palette.accent));
    box->setBorderWidth(2);
    box->setCornerRadius(palette.corner);
    look->setTextBoxCustomization(box);
    return look;
}

} // namespace

const std::vector<Theme>& themes() {
    static const std::vector<Theme> all{
        {"plain", [] { return std::shared_ptr<UiCustomization>(); }},
        {"brand",
         [] {
             return painted({{"#F4F7FB", "#0E1624"},
                             {"#FFFFFF", "#152033"},
                             {"#12263F", "#E8EDF5"},
                             {"#0B5FFF", "#7FB0FF"},
                             {"#FFFFFF", "#0A1220"},
                             12,
                             16});
         }},
        {"forest",
         [] {
             return painted({{"#FFFFFF", "#10160F"},
                             {"#E7F1E4", "#1A2418"},
                             {"#1D2B1A", "#E6EFE2"},
                             {"#2E7D32", "#8BD48F"},
                             {"#FFFFFF", "#0C140B"},
                             22,
                             15});
         }},
        {"loud",
         [] {
             return painted({{"#FFF6E5", "#22131A"},
                             {"#FFD166", "#5A2438"},
                             {"#3B1F2B", "#FFE9D2"},
                             {"#DB3069", "#FF8FB1"},
                             {"#FFFFFF", "#2A0E18"},
                             0,
                             18});
         }},
    };
    return all;
}

} // namespace korvane
