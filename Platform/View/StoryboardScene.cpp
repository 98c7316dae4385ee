#include "Platform/View/StoryboardScene.h"

#include "Platform/View/LayoutPlan.h"
#include "Platform/View/StoryboardProperties.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <sstream>

namespace korvane {

namespace {

using Case = UIStoryboardErrorCase;

/// What `makeView` reads by itself.
constexpr std::array<std::string_view, 7> kStructure{"class",       "id",    "outlet", "subviews",
                                                     "constraints", "cells", "items"};

const JSON* member(const JSON& object, std::string_view name) {
    const auto found = object.find(name);
    return found == object.end() ? nullptr : &*found;
}

std::optional<double> number(std::string_view text) {
    double value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && stop == end ? std::optional(value) : std::nullopt;
}

} // namespace

void StoryboardScene::fail(Case kind, const std::string& what) const {
    throw UIStoryboardError(kind, Description{what + " (scene \"" + identifier_ + "\")"});
}

const std::string& StoryboardScene::text(const JSON& value, std::string_view what) const {
    if (!value.is_string()) fail(Case::propertyInvalid, std::string(what) + " is no text");
    return value.get_ref<const std::string&>();
}

std::shared_ptr<UIView> StoryboardScene::makeView(const JSON& description) {
    if (!description.is_object()) fail(Case::propertyInvalid, "a view is no object");
    const JSON* const named = member(description, "class");
    const std::string className = named ? text(*named, "class") : "UIView";
    const auto view = std::dynamic_pointer_cast<UIView>(makeRegistered(className));
    if (!view) fail(Case::classUnknown, "no view is registered as \"" + className + "\"");

    for (const auto& [name, value] : description.items())
        if (std::ranges::find(kStructure, name) == kStructure.end()) setMember(view, name, value);
    if (const JSON* const id = member(description, "id")) view->setAccessibilityIdentifier(text(*id, "id"));
    if (const JSON* const outlet = member(description, "outlet"))
        outlets_.emplace_back(text(*outlet, "outlet"), view);

    const auto cell = std::dynamic_pointer_cast<UITableViewCell>(view);
    UIView& content = cell ? *cell->contentView() : *view;
    if (description.contains("subviews"))
        fill(content, description);
    else if (description.contains("constraints"))
        fail(Case::constraintInvalid, "constraints without subviews");
    if (const JSON* const cells = member(description, "cells")) {
        const auto table = std::dynamic_pointer_cast<UITableView>(view);
        if (!table) fail(Case::propertyInvalid, "\"cells\" of what is no table");
        registerCells(*table, *cells);
    }
    if (const JSON* const barItems = member(description, "items")) {
        const auto bar = std::dynamic_pointer_cast<UINavigationBar>(view);
        if (!bar) fail(Case::propertyInvalid, "\"items\" of what is no bar");
        setItems(*bar, *barItems);
    }
    view->awakeFromNib();
    return view;
}

void StoryboardScene::setMember(const std::shared_ptr<UIView>& view, const std::string& name,
                                const JSON& value) {
    try {
        if (setStoryboardProperty(*view, name, {value, content_->resources})) return;
    } catch (const StoryboardValue::Mismatch&) {
        fail(Case::propertyInvalid, "\"" + name + "\" cannot be " + value.dump());
    }
    fail(Case::propertyInvalid, "\"" + name + "\" is no property of its view");
}

void StoryboardScene::fill(UIView& view, const JSON& description) {
    Items items{{"self", view.shared_from_this()},
                {"safeArea", view.safeAreaLayoutGuide()},
                {"readable", view.readableContentGuide()}};
    addSubviews(view, *member(description, "subviews"), items);
    if (const JSON* const constraints = member(description, "constraints"))
        addConstraints(view, *constraints, items);
}

void StoryboardScene::addSubviews(UIView& to, const JSON& descriptions, Items& items) {
    if (!descriptions.is_array()) fail(Case::propertyInvalid, "\"subviews\" are no list");
    for (const JSON& description : descriptions) {
        const auto view = makeView(description);
        to.addSubview(view);
        const std::string& id = view->accessibilityIdentifier();
        if (!id.empty() && !items.emplace(id, view).second)
            fail(Case::propertyInvalid, "two views have the id \"" + id + "\"");
    }
}

void StoryboardScene::addConstraints(UIView& to, const JSON& descriptions, const Items& items) {
    if (!descriptions.is_array()) fail(Case::constraintInvalid, "\"constraints\" are no list");
    for (const JSON& description : descriptions) {
        const JSON* const equation =
            description.is_object() ? member(description, "constraint") : &description;
        if (!equation || !equation->is_string()) fail(Case::constraintInvalid, "a constraint is no text");
        const auto constraint = makeConstraint(equation->get_ref<const std::string&>(), items);
        if (description.is_object()) {
            if (const JSON* const outlet = member(description, "outlet"))
                outlets_.emplace_back(text(*outlet, "outlet"), constraint);
            constraint->setActive(description.value("active", JSON(true)) != JSON(false));
        }
        to.addConstraint(constraint);
    }
    try {
        to.makePlan();
    } catch (const LayoutPlan::Fault& fault) {
        fail(Case::constraintInvalid, fault.text);
    }
}

/// "a.top = b.bottom", "a.top = b.bottom + 8", "a.top = b.bottom - 8" or "a.height = 44".
std::shared_ptr<NSLayoutConstraint> StoryboardScene::makeConstraint(const std::string& text,
                                                                    const Items& items) const {
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    const bool hasOffset = words.size() == 5 && (words[3] == "+" || words[3] == "-");
    if ((words.size() != 3 && !hasOffset) || words[1] != "=")
        fail(Case::constraintInvalid, "\"" + text + "\" is no constraint");

    const auto first = side(words[0], text, items);
    if (const auto length = number(words[2]); length && !hasOffset)
        return NSLayoutConstraint::make(first, *length);
    const auto offset = hasOffset ? number(words[4]) : std::optional(0.0);
    if (!offset) fail(Case::constraintInvalid, "\"" + text + "\" has no number at its end");
    return NSLayoutConstraint::make(first, side(words[2], text, items),
                                    hasOffset && words[3] == "-" ? -*offset : *offset);
}

NSLayoutConstraint::Side StoryboardScene::side(std::string_view text, const std::string& in,
                                               const Items& items) const {
    const std::size_t dot = text.rfind('.');
    const auto item = dot == std::string_view::npos ? items.end() : items.find(text.substr(0, dot));
    const auto attribute = item == items.end() ? std::nullopt : layoutAttributeNamed(text.substr(dot + 1));
    if (!attribute)
        fail(Case::constraintInvalid, "\"" + std::string(text) + "\" of \"" + in + "\" is not there");
    return {item->second, *attribute};
}

/// One cell of each kind is made at once, so that its faults show now.
void StoryboardScene::registerCells(UITableView& table, const JSON& descriptions) {
    if (!descriptions.is_object()) fail(Case::propertyInvalid, "\"cells\" are no object");
    for (const auto& [identifier, description] : descriptions.items()) {
        const auto make = [content = content_, scene = identifier_,
                           &description = description]() -> std::shared_ptr<UITableViewCell> {
            StoryboardScene own(content, scene);
            auto cell = std::dynamic_pointer_cast<UITableViewCell>(own.makeView(description));
            if (!own.outlets_.empty())
                own.fail(Case::outletUnknown, "\"" + own.outlets_.front().first + "\" is in a cell");
            return cell;
        };
        if (!make()) fail(Case::classUnknown, "the cell \"" + identifier + "\" is no cell");
        table.registerCell(make, identifier);
    }
}

void StoryboardScene::setItems(UINavigationBar& bar, const JSON& descriptions) {
    if (!descriptions.is_array()) fail(Case::propertyInvalid, "\"items\" are no list");
    std::vector<std::shared_ptr<UINavigationItem>> items;
    for (const JSON& description : descriptions) {
        if (!description.is_object()) fail(Case::propertyInvalid, "an item is no object");
        const auto item = std::make_shared<UINavigationItem>();
        if (const JSON* const title = member(description, "title")) item->setTitle(text(*title, "title"));
        if (const JSON* const right = member(description, "right"))
            item->setRightBarButtonItem(std::make_shared<UIBarButtonItem>(makeView(*right)));
        items.push_back(item);
    }
    bar.setItems(std::move(items));
}

} // namespace korvane
