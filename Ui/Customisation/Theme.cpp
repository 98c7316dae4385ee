#include "Ui/Customisation/Theme.h"

#include "Platform/CheckedText.h"
#include "Platform/Failure.h"
#include "Platform/Platform.h"
#include "Platform/View/UIImage.h"
#include "Ui/Customisation/ThemeNames.h"

#include <array>
#include <filesystem>

namespace korvane {

namespace {

using std::filesystem::path;

constexpr const char* kSystemFont = "System";

// Values.

constexpr Bounds kFontSize{1, 200};
constexpr Bounds kFontWeight{-1000, 1000};
constexpr Bounds kLength{0, 1000};
constexpr Bounds kOffset{-10000, 10000};

std::string text(const CheckedValue& value) {
    return value.string();
}

bool flag(const CheckedValue& value) {
    return value.boolean();
}

/// In whole points.
int length(const CheckedValue& value) {
    return value.wholeNumber(kLength);
}

/// In points.
double offset(const CheckedValue& value) {
    return value.number(kOffset);
}

int fontSize(const CheckedValue& value) {
    return value.wholeNumber(kFontSize);
}

double fontWeight(const CheckedValue& value) {
    return value.number(kFontWeight);
}

KeyboardPage keyboardPage(const CheckedValue& value) {
    if (const auto page = fromRawValue<KeyboardPage>(value.string())) return *page;
    std::string known;
    for (const auto& row : EnumTable<KeyboardPage>::rows)
        known += (known.empty() ? "" : ", ") + std::string(row.text);
    value.fail("must be one of " + known + ".");
}

UIColor shade(const CheckedValue& value) {
    if (const auto color = UIColor::fromHex(value.string())) return *color;
    value.fail("must be a colour, \"#RRGGBB\" or \"#RRGGBBAA\".");
}

/// One shade, or one for light surroundings and one for dark.
UIColor color(const CheckedValue& value) {
    if (value.json().is_string()) return shade(value);
    if (!value.json().is_object())
        value.fail("must be a colour, \"#RRGGBB\" or \"#RRGGBBAA\", or an object of light and dark.");
    value.requireKnown(std::array<std::string_view, 2>{"light", "dark"});
    return {shade(value.member("light")).resolved(UIUserInterfaceStyle::light),
            shade(value.member("dark")).resolved(UIUserInterfaceStyle::dark)};
}

// Records, each by a table of its members.

template <class Record>
struct Member {
    std::string_view name;
    void (*read)(Record&, const CheckedValue&);
};

/// Reads a member's value into a field of its record.
template <auto Value, auto Field, class Record>
void into(Record& record, const CheckedValue& value) {
    record.*Field = Value(value);
}

template <class Record, std::size_t Count>
void readMembers(Record& record, const CheckedValue& value,
                 const std::array<Member<Record>, Count>& members) {
    std::array<std::string_view, Count> names;
    std::transform(members.begin(), members.end(), names.begin(),
                   [](const auto& member) { return member.name; });
    value.requireKnown(names);
    for (const auto& member : members)
        value.readIfPresent(member.name, [&](const CheckedValue& it) { member.read(record, it); });
}

/// Reads a member for each case of an enumeration that has one.
template <class Case, class Read>
void readCases(const CheckedValue& value, const Read& read) {
    const auto& rows = EnumTable<Case>::rows;
    std::array<std::string_view, EnumTable<Case>::size> names;
    std::transform(rows.begin(), rows.end(), names.begin(), [](const auto& row) { return row.text; });
    value.requireKnown(names);
    for (const auto& row : rows)
        value.readIfPresent(row.text, [&](const CheckedValue& it) { read(row.value, it); });
}

constexpr std::array<Member<FontValues>, 3> kFont{{
    {"name", into<text, &FontValues::name>},
    {"size", into<fontSize, &FontValues::size>},
    {"weight", into<fontWeight, &FontValues::weight>},
}};

/// A font is the system's unless it has a name: without any, the screens would leave size and weight aside.
FontValues font(const CheckedValue& value) {
    FontValues font{.name = kSystemFont};
    readMembers(font, value, kFont);
    return font;
}

template <class Record>
void textFont(Record& record, const CheckedValue& value) {
    record.setTextFont(font(value));
}

void headingFont(LabelCustomization& label, const CheckedValue& value) {
    const FontValues values = font(value);
    label.headingTextFontName = values.name;
    label.headingTextFontSize = values.size;
    label.headingTextFontWeight = values.weight;
}

constexpr std::array<Member<ButtonCustomization>, 11> kButton{{
    {"font", textFont},
    {"textColor", into<color, &ButtonCustomization::textColor>},
    {"backgroundColor", into<color, &ButtonCustomization::backgroundColor>},
    {"cornerRadius", into<length, &ButtonCustomization::cornerRadius>},
    {"borderWidth", into<length, &ButtonCustomization::borderWidth>},
    {"borderColor", into<color, &ButtonCustomization::borderColor>},
    {"highlightedColor", into<color, &ButtonCustomization::highlitedColor>},
    {"highlightedTextColor", into<color, &ButtonCustomization::highlitedTextColor>},
    {"rightImageInset", into<offset, &ButtonCustomization::rightImageInset>},
    {"leftImageInset", into<offset, &ButtonCustomization::leftImageInset>},
    {"leftTitleInset", into<offset, &ButtonCustomization::leftTitleInset>},
}};

constexpr std::array<Member<BackgroundCustomization>, 3> kBackground{{
    {"font", textFont},
    {"textColor", into<color, &BackgroundCustomization::textColor>},
    {"backgroundColor", into<color, &BackgroundCustomization::backgroundColor>},
}};

constexpr std::array<Member<ToolbarCustomization>, 6> kToolbar{{
    {"font", textFont},
    {"textColor", into<color, &ToolbarCustomization::textColor>},
    {"backgroundColor", into<color, &ToolbarCustomization::backgroundColor>},
    {"headerText", into<text, &ToolbarCustomization::headerText>},
    {"buttonText", into<text, &ToolbarCustomization::buttonText>},
    {"hideShadowImage", into<flag, &ToolbarCustomization::isHideShadowImage>},
}};

constexpr std::array<Member<LabelCustomization>, 4> kLabel{{
    {"font", textFont},
    {"textColor", into<color, &LabelCustomization::textColor>},
    {"headingFont", headingFont},
    {"headingTextColor", into<color, &LabelCustomization::headingTextColor>},
}};

constexpr std::array<Member<TextBoxCustomization>, 9> kTextBox{{
    {"font", textFont},
    {"textColor", into<color, &TextBoxCustomization::textColor>},
    {"backgroundColor", into<color, &TextBoxCustomization::backgroundColor>},
    {"cornerRadius", into<length, &TextBoxCustomization::cornerRadius>},
    {"borderWidth", into<length, &TextBoxCustomization::borderWidth>},
    {"borderColor", into<color, &TextBoxCustomization::borderColor>},
    {"cursorColor", into<color, &TextBoxCustomization::cursorColor>},
    {"errorColor", into<color, &TextBoxCustomization::errorColor>},
    {"keyboardPage", into<keyboardPage, &TextBoxCustomization::keyboardPage>},
}};

/// Texts of the ACS's, with what stands in their place.
void replacements(CustTextCustomization& paragraph, const CheckedValue& value) {
    for (const auto& item : value.object().items()) {
        const auto read = [&](const CheckedValue& it) { paragraph.setCustomText(item.key(), it.string()); };
        value.readIfPresent(item.key(), read);
    }
}

constexpr std::array<Member<CustTextCustomization>, 4> kParagraph{{
    {"font", textFont},
    {"textColor", into<color, &CustTextCustomization::textColor>},
    {"backgroundColor", into<color, &CustTextCustomization::backgroundColor>},
    {"replacements", replacements},
}};

void warningLabel(CustWarning& warning, const CheckedValue& value) {
    readMembers(*warning.labelCustomization, value, kLabel);
}

constexpr std::array<Member<CustWarning>, 5> kWarning{{
    {"showIndicator", into<flag, &CustWarning::isShowIndicator>},
    {"textColor", into<color, &CustWarning::textColor>},
    {"backgroundColor", into<color, &CustWarning::backgroundColor>},
    {"label", warningLabel},
    {"topConstraint", into<offset, &CustWarning::topConstraint>},
}};

constexpr std::array<Member<UiConstraints>, 6> kConstraints{{
    {"leading", into<offset, &UiConstraints::leading>},
    {"trailing", into<offset, &UiConstraints::trailing>},
    {"top", into<offset, &UiConstraints::top>},
    {"bottom", into<offset, &UiConstraints::bottom>},
    {"height", into<offset, &UiConstraints::height>},
    {"width", into<offset, &UiConstraints::width>},
}};

struct ImageValues {
    std::string folder;
    std::string name;
    std::optional<UIColor> tint;
};

constexpr std::array<Member<ImageValues>, 3> kImage{{
    {"folder", into<text, &ImageValues::folder>},
    {"name", into<text, &ImageValues::name>},
    {"tintColor", into<color, &ImageValues::tint>},
}};

// The whole.

/// A theme on its way out of its text.
struct Draft {
    const ThemeOrigin& origin;
    Theme theme;

    [[nodiscard]] UiCustomization& look() const { return *theme.customization; }

    [[nodiscard]] path folder() const {
        return origin.folder.empty() ? path(Platform::current().mainBundle().bundlePath())
                                     : path(origin.folder);
    }
};

template <const auto& Members, class Record>
std::shared_ptr<Record> made(const CheckedValue& value, std::shared_ptr<Record> record) {
    readMembers(*record, value, Members);
    return record;
}

template <const auto& Members, auto Field>
void part(Draft& draft, const CheckedValue& value) {
    using Record = typename std::remove_reference_t<decltype(draft.look().*Field)>::element_type;
    draft.look().*Field = made<Members>(value, std::make_shared<Record>());
}

void buttons(Draft& draft, const CheckedValue& value) {
    readCases<ButtonType>(value, [&](ButtonType type, const CheckedValue& it) {
        draft.look().setButtonCustomization(made<kButton>(it, std::make_shared<ButtonCustomization>()), type);
    });
}

void texts(Draft& draft, const CheckedValue& value) {
    readCases<CustTextViewType>(value, [&](CustTextViewType type, const CheckedValue& it) {
        draft.look().setCustTextCustomization(made<kParagraph>(it, std::make_shared<CustTextCustomization>()),
                                              type);
    });
}

/// A name that no file has would leave the screen without the image, and only the log would tell.
void images(Draft& draft, const CheckedValue& value) {
    readCases<CustImageType>(value, [&](CustImageType type, const CheckedValue& it) {
        ImageValues values;
        readMembers(values, it, kImage);
        const CheckedValue name = it.member("name");
        const auto folder = it.memberIfPresent("folder");
        const path place = draft.folder() / (folder ? folder->string() : std::string());
        const auto bundle = NSBundle::bundleWithPath(place.lexically_normal().string());
        if (!UIImage::named(name.string(), *bundle))
            name.fail("is no image (SVG, PNG or JPEG) in " + bundle->bundlePath() + ".");
        draft.look().setCustImageCustomization(std::make_shared<CustImageCustomization>(
                                                   CustImageCustomization{bundle, values.name, values.tint}),
                                               type);
    });
}

/// A warning without a colour of its own is written in the look's label.
void warning(Draft& draft, const CheckedValue& value) {
    draft.look().setCustWarning(made<kWarning>(
        value, std::make_shared<CustWarning>(true, false, std::nullopt, std::nullopt, std::nullopt)));
}

void constraints(Draft& draft, const CheckedValue& value) {
    draft.theme.constraints = std::make_shared<UiCustomizationConstraints>();
    readCases<UiObject>(value, [&](UiObject object, const CheckedValue& it) {
        UiConstraints places;
        readMembers(places, it, kConstraints);
        draft.theme.constraints->setConstraints(object, places);
    });
}

void showErrorDataEntry(Draft& draft, const CheckedValue& value) {
    draft.look().setShowErrorDataEntry(flag(value));
}

/// For editors: which schema the file keeps to.
void schema(Draft& /*draft*/, const CheckedValue& value) {
    static_cast<void>(value.string());
}

constexpr std::array<Member<Draft>, 11> kTheme{{
    {"$schema", schema},
    {"toolbar", part<kToolbar, &UiCustomization::toolbarCusomization>},
    {"background", part<kBackground, &UiCustomization::backgroundCustomization>},
    {"labels", part<kLabel, &UiCustomization::labelCustomization>},
    {"textBox", part<kTextBox, &UiCustomization::textBoxCustomization>},
    {"buttons", buttons},
    {"texts", texts},
    {"images", images},
    {"warning", warning},
    {"showErrorDataEntry", showErrorDataEntry},
    {"constraints", constraints},
}};

Bytes contentsOf(const std::string& file) {
    try {
        return contentsOfFile(file);
    } catch (const Failure& error) {
        throw FaultyText(file + ": The file cannot be read: " + error.localizedDescription() + ".");
    }
}

} // namespace

Theme readTheme(std::string_view json, const ThemeOrigin& origin) {
    CheckedText checked(json, origin.name);
    Draft draft{origin, {std::make_shared<UiCustomization>(), nullptr}};
    checked.attempt([&] { readMembers(draft, checked.root(), kTheme); });
    checked.requireNoFault();
    return std::move(draft.theme);
}

Theme readThemeFile(const std::string& file) {
    const path folder = path(file).parent_path();
    return readTheme(asText(contentsOf(file)), {file, folder.empty() ? "." : folder.string()});
}

} // namespace korvane
