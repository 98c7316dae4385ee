#include "Platform/View/StoryboardProperties.h"

#include "Platform/View/UIActivityIndicatorView.h"
#include "Platform/View/UIButton.h"
#include "Platform/View/UINavigationBar.h"
#include "Platform/View/UITableView.h"
#include "Platform/View/UITextField.h"
#include "Platform/View/UITextView.h"

#include <functional>
#include <map>

namespace korvane {

namespace {

using Value = StoryboardValue;
/// False for a view of another class.
using Setter = std::function<bool(UIView&, const Value&)>;
using Table = std::multimap<std::string, Setter, std::less<>>;

template <class View>
void add(Table& table, const std::string& name, void (*set)(View&, const Value&)) {
    table.emplace(name, [set](UIView& view, const Value& value) {
        auto* const typed = dynamic_cast<View*>(&view);
        if (typed) set(*typed, value);
        return typed != nullptr;
    });
}

NSTextAlignment alignment(const Value& value) {
    return value.oneOf<NSTextAlignment>({{"natural", NSTextAlignment::natural},
                                         {"left", NSTextAlignment::left},
                                         {"center", NSTextAlignment::center},
                                         {"right", NSTextAlignment::right}});
}

UIAccessibilityRole role(const Value& value) {
    using enum UIAccessibilityRole;
    return value.oneOf<UIAccessibilityRole>({{"none", none},
                                             {"staticText", staticText},
                                             {"header", header},
                                             {"button", button},
                                             {"image", image},
                                             {"checkBox", checkBox},
                                             {"radioButton", radioButton},
                                             {"list", list}});
}

UIViewContentMode contentMode(const Value& value) {
    using enum UIViewContentMode;
    return value.oneOf<UIViewContentMode>({{"scaleToFill", scaleToFill},
                                           {"scaleAspectFit", scaleAspectFit},
                                           {"scaleAspectFill", scaleAspectFill},
                                           {"center", center}});
}

UIControlContentHorizontalAlignment contentAlignment(const Value& value) {
    using enum UIControlContentHorizontalAlignment;
    return value.oneOf<UIControlContentHorizontalAlignment>(
        {{"center", center}, {"left", left}, {"right", right}, {"fill", fill}});
}

UITextBorderStyle borderStyle(const Value& value) {
    using enum UITextBorderStyle;
    return value.oneOf<UITextBorderStyle>(
        {{"none", none}, {"line", line}, {"bezel", bezel}, {"roundedRect", roundedRect}});
}

void addViewProperties(Table& table) {
    add<UIView>(table, "frame", [](UIView& view, const Value& value) { view.setFrame(value.rect()); });
    add<UIView>(table, "tag", [](UIView& view, const Value& value) { view.setTag(value.integer()); });
    add<UIView>(table, "hidden", [](UIView& view, const Value& value) { view.setHidden(value.boolean()); });
    add<UIView>(table, "alpha", [](UIView& view, const Value& value) { view.setAlpha(value.number()); });
    add<UIView>(table, "clipsToBounds",
                [](UIView& view, const Value& value) { view.setClipsToBounds(value.boolean()); });
    add<UIView>(table, "backgroundColor",
                [](UIView& view, const Value& value) { view.setBackgroundColor(value.color()); });
    add<UIView>(table, "tintColor",
                [](UIView& view, const Value& value) { view.setTintColor(value.color()); });
    add<UIView>(table, "contentMode",
                [](UIView& view, const Value& value) { view.setContentMode(contentMode(value)); });
    add<UIView>(table, "userInteractionEnabled",
                [](UIView& view, const Value& value) { view.setUserInteractionEnabled(value.boolean()); });
    add<UIView>(table, "cornerRadius",
                [](UIView& view, const Value& value) { view.layer().setCornerRadius(value.number()); });
    add<UIView>(table, "borderWidth",
                [](UIView& view, const Value& value) { view.layer().setBorderWidth(value.number()); });
    add<UIView>(table, "borderColor",
                [](UIView& view, const Value& value) { view.layer().setBorderColor(value.color()); });
    add<UIView>(table, "accessibilityLabel",
                [](UIView& view, const Value& value) { view.setAccessibilityLabel(value.string()); });
    add<UIView>(table, "accessibilityRole",
                [](UIView& view, const Value& value) { view.setAccessibilityRole(role(value)); });
}

/// What labels, text views and text fields share.
template <class Base>
void addTextProperties(Table& table) {
    using Text = UITextContent<Base>;
    add<Text>(table, "text", [](Text& view, const Value& value) { view.setText(value.string()); });
    add<Text>(table, "font", [](Text& view, const Value& value) { view.setFont(value.font()); });
    add<Text>(table, "textColor", [](Text& view, const Value& value) { view.setTextColor(value.color()); });
    add<Text>(table, "textAlignment",
              [](Text& view, const Value& value) { view.setTextAlignment(alignment(value)); });
}

void addContentProperties(Table& table) {
    add<UILabel>(table, "numberOfLines",
                 [](UILabel& view, const Value& value) { view.setNumberOfLines(value.integer()); });
    add<UILabel>(table, "adjustsFontSizeToFitWidth", [](UILabel& view, const Value& value) {
        view.setAdjustsFontSizeToFitWidth(value.boolean());
    });
    add<UITextView>(table, "textContainerInset",
                    [](UITextView& view, const Value& value) { view.setTextContainerInset(value.insets()); });
    add<UIScrollView>(table, "scrollEnabled",
                      [](UIScrollView& view, const Value& value) { view.setScrollEnabled(value.boolean()); });
    add<UITextField>(table, "placeholder",
                     [](UITextField& view, const Value& value) { view.setPlaceholder(value.string()); });
    add<UITextField>(table, "secureTextEntry",
                     [](UITextField& view, const Value& value) { view.setSecureTextEntry(value.boolean()); });
    add<UITextField>(table, "borderStyle",
                     [](UITextField& view, const Value& value) { view.setBorderStyle(borderStyle(value)); });
    add<UITextField>(table, "keyboardType", [](UITextField& view, const Value& value) {
        const int number = value.integer();
        if (number < 0 || number > static_cast<int>(UIKeyboardType::asciiCapableNumberPad))
            throw Value::Mismatch{};
        view.setKeyboardType(static_cast<UIKeyboardType>(number));
    });
    add<UIImageView>(table, "image",
                     [](UIImageView& view, const Value& value) { view.setImage(value.image()); });
    add<UITableView>(table, "rowHeight",
                     [](UITableView& view, const Value& value) { view.setRowHeight(value.number()); });
    add<UIActivityIndicatorView>(table, "color", [](UIActivityIndicatorView& view, const Value& value) {
        view.setColor(value.color());
    });
    add<UINavigationBar>(table, "barTintColor", [](UINavigationBar& view, const Value& value) {
        view.setBarTintColor(value.color());
    });
    add<UINavigationBar>(table, "translucent", [](UINavigationBar& view, const Value& value) {
        view.setTranslucent(value.boolean());
    });
}

void addButtonProperties(Table& table) {
    add<UIControl>(table, "enabled",
                   [](UIControl& view, const Value& value) { view.setEnabled(value.boolean()); });
    add<UIButton>(table, "title", [](UIButton& view, const Value& value) {
        view.setTitle(value.string(), ControlState::normal);
    });
    add<UIButton>(table, "titleColor", [](UIButton& view, const Value& value) {
        view.setTitleColor(value.color(), ControlState::normal);
    });
    add<UIButton>(table, "image", [](UIButton& view, const Value& value) {
        view.setImage(value.image(), ControlState::normal);
    });
    add<UIButton>(table, "font",
                  [](UIButton& view, const Value& value) { view.titleLabel()->setFont(value.font()); });
    add<UIButton>(table, "numberOfLines", [](UIButton& view, const Value& value) {
        view.titleLabel()->setNumberOfLines(value.integer());
    });
    add<UIButton>(table, "contentEdgeInsets",
                  [](UIButton& view, const Value& value) { view.setContentEdgeInsets(value.insets()); });
    add<UIButton>(table, "titleEdgeInsets",
                  [](UIButton& view, const Value& value) { view.setTitleEdgeInsets(value.insets()); });
    add<UIButton>(table, "imageEdgeInsets",
                  [](UIButton& view, const Value& value) { view.setImageEdgeInsets(value.insets()); });
    add<UIButton>(table, "contentHorizontalAlignment", [](UIButton& view, const Value& value) {
        view.setContentHorizontalAlignment(contentAlignment(value));
    });
}

Table makeTable() {
    Table table;
    addViewProperties(table);
    addTextProperties<UIView>(table);
    addTextProperties<UIScrollView>(table);
    addTextProperties<UIControl>(table);
    addContentProperties(table);
    addButtonProperties(table);
    return table;
}

} // namespace

bool setStoryboardProperty(UIView& view, const std::string& name, const StoryboardValue& value) {
    static const Table table = makeTable();
    const auto [first, last] = table.equal_range(name);
    for (auto row = first; row != last; ++row)
        if (row->second(view, value)) return true;
    return false;
}

} // namespace korvane
