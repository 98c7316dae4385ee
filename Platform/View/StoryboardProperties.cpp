#include "Platform/View/StoryboardProperties.h"

#include "Platform/View/UIButton.h"
#include "Platform/View/UIImageView.h"
#include "Platform/View/UINavigationBar.h"
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

void addViewProperties(Table& table) {
    add<UIView>(table, "tag", [](UIView& view, const Value& value) { view.setTag(value.integer()); });
    add<UIView>(table, "clipsToBounds",
                [](UIView& view, const Value& value) { view.setClipsToBounds(value.boolean()); });
    add<UIView>(table, "backgroundColor",
                [](UIView& view, const Value& value) { view.setBackgroundColor(value.color()); });
    add<UIView>(table, "contentMode",
                [](UIView& view, const Value& value) { view.setContentMode(contentMode(value)); });
    add<UIView>(table, "collapses",
                [](UIView& view, const Value& value) { view.setCollapses(value.boolean()); });
    add<UIView>(table, "readableWidth",
                [](UIView& view, const Value& value) { view.setReadableWidth(value.number()); });
    add<UIView>(table, "tintColor",
                [](UIView& view, const Value& value) { view.setTintColor(value.color()); });
    add<UIView>(table, "cornerRadius",
                [](UIView& view, const Value& value) { view.layer().setCornerRadius(value.number()); });
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
    add<Text>(table, "font", [](Text& view, const Value& value) { view.setFont(value.font()); });
    add<Text>(table, "textColor", [](Text& view, const Value& value) { view.setTextColor(value.color()); });
    add<Text>(table, "textAlignment",
              [](Text& view, const Value& value) { view.setTextAlignment(alignment(value)); });
}

void addContentProperties(Table& table) {
    add<UILabel>(table, "numberOfLines",
                 [](UILabel& view, const Value& value) { view.setNumberOfLines(value.integer()); });
    add<UIScrollView>(table, "scrollEnabled",
                      [](UIScrollView& view, const Value& value) { view.setScrollEnabled(value.boolean()); });
    add<UIImageView>(table, "image",
                     [](UIImageView& view, const Value& value) { view.setImage(value.image()); });
    add<UITextField>(table, "textInset",
                     [](UITextField& view, const Value& value) { view.setTextInset(value.number()); });
    add<UINavigationBar>(table, "barTintColor", [](UINavigationBar& view, const Value& value) {
        view.setBarTintColor(value.color());
    });
    add<UINavigationBar>(table, "translucent", [](UINavigationBar& view, const Value& value) {
        view.setTranslucent(value.boolean());
    });
}

void addButtonProperties(Table& table) {
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
