#include "Ui/Customisation/Theme.h"

#include "Platform/JSON.h"
#include "tests/Ui/ScreenSupport.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <set>

namespace korvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// The schema, and the reader held against it: what follows of the one must show of the other.
class Themes : public ScreenTest {
protected:
    Themes() {
        for (const char* file : {"Text.svg", "Text/Text.svg"})
            folder.write(file, asBytes(R"(<svg xmlns="http://www.w3.org/2000/svg" width="4" height="4"/>)"));
    }

    [[nodiscard]] std::vector<std::string> faultsOf(const JSON& theme) const {
        std::vector<std::string> faults;
        try {
            static_cast<void>(readTheme(theme.dump(), {"theme", folder.path()}));
        } catch (const FaultyText& error) {
            std::istringstream lines(error.what());
            for (std::string line; std::getline(lines, line);)
                faults.push_back(line);
        }
        return faults;
    }

    [[nodiscard]] const JSON& resolved(const JSON& rule) const {
        const auto reference = rule.find("$ref");
        if (reference == rule.end()) return rule;
        return schema.at(JSON::json_pointer(reference->get<std::string>().substr(1)));
    }

    /// Values that the rule takes; the last has every member.
    [[nodiscard]] std::vector<JSON> good(const JSON& reference) const {
        const JSON& rule = resolved(reference);
        if (rule.contains("enum")) return rule["enum"].get<std::vector<JSON>>();
        if (rule.contains("oneOf")) return {good(rule["oneOf"][0])[1], good(rule["oneOf"][1])[0]};
        if (rule.contains("pattern")) return {"#12AbEF", "#12abEF80"};
        if (rule["type"] == "boolean") return {false, true};
        if (rule["type"] == "string") return {"Text"};
        if (rule.contains("minimum"))
            return {rule["minimum"], rule["maximum"], rule["maximum"].get<double>()};
        JSON whole = JSON::object();
        if (rule.contains("properties"))
            for (const auto& [name, member] : rule["properties"].items())
                whole[name] = good(member).back();
        return {whole};
    }

    [[nodiscard]] std::vector<JSON> bad(const JSON& reference) const {
        const JSON& rule = resolved(reference);
        if (rule.contains("enum")) return {"Letters", 1};
        if (rule.contains("oneOf")) return {"#12345", "123456", "#12345G", 7, {{"light", "#000000"}}};
        if (rule.contains("pattern")) return {"#12345", 7};
        if (rule["type"] == "boolean") return {"true", 1};
        if (rule["type"] == "string") return {1, nullptr};
        if (!rule.contains("minimum")) return {JSON::array(), "text", nullptr};
        const double least = rule["minimum"];
        const double most = rule["maximum"];
        std::vector<JSON> values{least - 1, most + 1, "1"};
        if (rule["type"] == "integer") values.push_back(1.5);
        return values;
    }

    /// Holds the reader against each member below a rule.
    /// @param place  puts a value of the rule into a whole theme.
    void compare(const JSON& reference, const std::string& path,
                 const std::function<JSON(const JSON&)>& place) {
        SCOPED_TRACE(path);
        const JSON& rule = resolved(reference);
        ++compared;
        for (const JSON& value : good(reference))
            EXPECT_THAT(faultsOf(place(value)), testing::IsEmpty()) << value;
        for (const JSON& value : bad(reference))
            EXPECT_THAT(faultsOf(place(value)), ElementsAre(HasSubstr(path + ": "))) << value;
        if (!rule.contains("properties")) return;
        compareNames(rule, path, place);
        for (const auto& item : rule["properties"].items()) {
            const auto placeMember = [&](const JSON& value) {
                JSON record = JSON::object();
                for (const auto& name : rule.value("required", std::vector<std::string>()))
                    record[name] = good(rule["properties"][name]).back();
                record[item.key()] = value;
                return place(record);
            };
            compare(item.value(), path.empty() ? item.key() : path + "." + item.key(), placeMember);
        }
    }

    /// A name that is not known is refused with all that are.
    void compareNames(const JSON& rule, const std::string& path,
                      const std::function<JSON(const JSON&)>& place) const {
        std::string known;
        for (const auto& item : rule["properties"].items())
            known += (known.empty() ? "" : ", ") + item.key();
        EXPECT_THAT(faultsOf(place({{"other", 1}})),
                    testing::Contains(HasSubstr((path.empty() ? "" : path + ".") +
                                                "other: is not known here; known are " + known + ".")));
    }

    /// Every text of a theme whose members are all there is the name of an image.
    const TemporaryFolder folder{"Text"};
    const JSON schema = JSON::parse(readFile(KORVANE_THEME_SCHEMA));
    int compared = 0;
};

TEST_F(Themes, ReaderAndSchemaAgreeOnEveryMember) {
    compare(schema, "", [](const JSON& theme) { return theme; });
    EXPECT_GT(compared, 300);
}

TEST_F(Themes, EveryMemberReachesItsField) {
    const Theme theme = readTheme(R"({
        "toolbar": {"font": {"size": 11}, "headerText": "T", "buttonText": "B", "hideShadowImage": true},
        "background": {"backgroundColor": "#FF0000"},
        "labels": {"font": {"size": 12}, "headingFont": {"name": "H", "size": 13, "weight": 14},
                   "headingTextColor": "#0000FF"},
        "textBox": {"borderWidth": 1, "cornerRadius": 2, "cursorColor": "#FF0000", "errorColor": "#0000FF",
                    "keyboardPage": "numberPad"},
        "buttons": {"next": {"cornerRadius": 1, "borderWidth": 2, "highlightedColor": "#FF0000",
                             "highlightedTextColor": "#0000FF", "rightImageInset": 3.5, "leftImageInset": 4,
                             "leftTitleInset": 5, "textColor": {"light": "#000000", "dark": "#FFFFFF"}}},
        "texts": {"whyInfo": {"replacements": {"From. here": "to"}}},
        "warning": {"showIndicator": false, "textColor": "#FF0000", "topConstraint": 6},
        "showErrorDataEntry": true,
        "constraints": {"otp": {"leading": 1, "trailing": -2, "top": 3, "bottom": 4, "height": 5, "width": 6}}
    })");
    const auto& it = *theme.customization;
    const UIColor red = UIColor::red();
    const UIColor blue = UIColor::blue();
    EXPECT_EQ(it.toolbarCusomization->textFont(), (FontValues{"System", 11, {}}));
    EXPECT_EQ(it.toolbarCusomization->headerText, "T");
    EXPECT_EQ(it.toolbarCusomization->buttonText, "B");
    EXPECT_TRUE(it.toolbarCusomization->isHideShadowImage);
    EXPECT_EQ(it.backgroundCustomization->backgroundColor, red);
    EXPECT_EQ(it.labelCustomization->textFont(), (FontValues{"System", 12, {}}));
    EXPECT_EQ(it.labelCustomization->headingFont(), (FontValues{"H", 13, 14}));
    EXPECT_EQ(it.labelCustomization->headingTextColor, blue);
    EXPECT_EQ(it.textBoxCustomization->borderWidth, 1);
    EXPECT_EQ(it.textBoxCustomization->cornerRadius, 2);
    EXPECT_EQ(it.textBoxCustomization->cursorColor, red);
    EXPECT_EQ(it.textBoxCustomization->errorColor, blue);
    EXPECT_EQ(it.textBoxCustomization->keyboardPage, KeyboardPage::numberPad);
    const auto& button = *it.getButtonCustomization(ButtonType::NEXT);
    EXPECT_EQ(button.cornerRadius, 1);
    EXPECT_EQ(button.borderWidth, 2);
    EXPECT_EQ(button.highlitedColor, red);
    EXPECT_EQ(button.highlitedTextColor, blue);
    EXPECT_EQ(button.rightImageInset, 3.5);
    EXPECT_EQ(button.leftImageInset, 4);
    EXPECT_EQ(button.leftTitleInset, 5);
    EXPECT_EQ(button.textColor, UIColor::label());
    EXPECT_EQ(it.getCustTextCustomization(CustTextViewType::WHY_INFO_TEXT)->getCustomText("From. here"),
              "to");
    EXPECT_FALSE(it.custWarning->isShowIndicator);
    EXPECT_EQ(it.custWarning->textColor, red);
    EXPECT_EQ(it.custWarning->topConstraint, 6);
    EXPECT_TRUE(it.isShowErrorDataEntry);
    EXPECT_EQ(theme.constraints->getConstraints(UiObject::otp), (UiConstraints{1, -2, 3, 4, 5, 6}));
    EXPECT_EQ(readTheme("{}").constraints, nullptr);
}

TEST_F(Themes, AFileTellsAllItsFaultsByLineAndFindsItsImages) {
    const std::string file = folder.path() + "/theme.json";
    folder.write("theme.json", asBytes(R"({"images": {"arrowUp": {"folder": "Text", "name": "Text"}}})"));
    const auto image = readThemeFile(file).customization->getCustImageCustomization(CustImageType::ARROW_UP);
    EXPECT_TRUE(UIImage::named(image->imageName, *image->imageBundle));

    folder.write("theme.json", asBytes("{\n\"buttons\": {\"sumbit\": {}},\n\"background\":\n"
                                       "{\"backgroundColor\": \"red\"},\n"
                                       "\"images\": {\"arrowUp\": {\"name\": \"Up\"}},\n\"buttons\": {}}"));
    const auto fault = [&] { return readThemeFile(file); };
    EXPECT_THAT(fault, testing::ThrowsMessage<FaultyText>(testing::AllOf(
                           HasSubstr(file + ":4: background.backgroundColor: must be a colour"),
                           HasSubstr(file + ":5: images.arrowUp.name: is no image"),
                           HasSubstr(file + ":6: buttons: stands twice."))));
    folder.write("theme.json", asBytes("{\n\"buttons\": }"));
    EXPECT_THAT(fault, testing::ThrowsMessage<FaultyText>(file + ":2: This is not JSON."));
    folder.write("theme.json", asBytes("\xEF\xBB\xBF{\"buttons\": {}}"));
    EXPECT_NO_THROW(fault()) << "after a byte order mark";
    EXPECT_THAT(
        [&] { return readThemeFile(folder.path() + "/none.json"); },
        testing::ThrowsMessage<FaultyText>(HasSubstr("none.json: The file cannot be read: No such file")));
}

} // namespace
} // namespace korvane
