#pragma once

#include "Platform/JSON.h"
#include "Platform/View/StoryboardValue.h"
#include "Platform/View/UINavigationBar.h"
#include "Platform/View/UIStoryboard.h"
#include "Platform/View/UITableView.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace korvane {

/// What all scenes of a storyboard are made of.
struct StoryboardContent {
    std::shared_ptr<const JSON> scenes; // by their identifiers
    StoryboardResources resources;
};

/// A new object of a registered class, or null.
[[nodiscard]] std::shared_ptr<NSObject> makeRegistered(const std::string& className);

/// Makes the views of one scene. Main queue only.
class StoryboardScene {
public:
    using Outlets = std::vector<std::pair<std::string, std::shared_ptr<NSObject>>>;

    StoryboardScene(std::shared_ptr<const StoryboardContent> content, std::string identifier)
        : content_(std::move(content)), identifier_(std::move(identifier)) {}

    /// @throws UIStoryboardError
    [[nodiscard]] std::shared_ptr<UIView> makeView(const JSON& description);

    /// What `makeView` met that the controller has a name for.
    [[nodiscard]] const Outlets& outlets() const noexcept { return outlets_; }

    [[noreturn]] void fail(UIStoryboardErrorCase kind, const std::string& what) const;

private:
    using Items = std::map<std::string, std::shared_ptr<NSObject>, std::less<>>;

    void setMember(const std::shared_ptr<UIView>& view, const std::string& name, const JSON& value);
    void fill(UIView& view, const JSON& description);
    void addSubviews(UIView& to, const JSON& descriptions, Items& items);
    void addConstraints(UIView& to, const JSON& descriptions, const Items& items);
    [[nodiscard]] std::shared_ptr<NSLayoutConstraint> makeConstraint(const std::string& text,
                                                                     const Items& items) const;
    [[nodiscard]] NSLayoutConstraint::Side side(std::string_view text, const std::string& in,
                                                const Items& items) const;
    void registerCells(UITableView& table, const JSON& descriptions);
    void setItems(UINavigationBar& bar, const JSON& descriptions);
    [[nodiscard]] const std::string& text(const JSON& value, std::string_view what) const;

    std::shared_ptr<const StoryboardContent> content_;
    std::string identifier_;
    Outlets outlets_;
};

} // namespace korvane
