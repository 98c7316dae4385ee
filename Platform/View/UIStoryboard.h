#pragma once

#include "Platform/Failure.h"
#include "Platform/JSON.h"
#include "Platform/NSBundle.h"
#include "Platform/View/UIViewController.h"

#include <functional>
#include <memory>
#include <string>

namespace korvane {

struct StoryboardContent;

/// Why a screen could not be made from a storyboard.
enum class UIStoryboardErrorCase {
    resourceMissing,
    resourceBroken,
    identifierMissing,
    classUnknown,
    propertyInvalid,
    outletUnknown,
    constraintInvalid
};

[[nodiscard]] constexpr std::string_view rawValue(UIStoryboardErrorCase value) {
    using enum UIStoryboardErrorCase;
    switch (value) {
    case resourceMissing: return "resourceMissing";
    case resourceBroken: return "resourceBroken";
    case identifierMissing: return "identifierMissing";
    case classUnknown: return "classUnknown";
    case propertyInvalid: return "propertyInvalid";
    case outletUnknown: return "outletUnknown";
    case constraintInvalid: return "constraintInvalid";
    }
    return kNoRawValue;
}

template <>
struct FailureTraits<UIStoryboardErrorCase> {
    static constexpr std::string_view domain = "UIStoryboardError";
    using Value = FailureValue;
};

/// Its description names what is missing or broken, and the scene where there is one.
using UIStoryboardError = TypedFailure<UIStoryboardErrorCase>;

/// Screens as a resource, which is read when the storyboard is made. Making the storyboard and registering classes: any thread;
/// screens: main queue only.
///
/// The file `<name>.json` of a bundle:
/// `{"scenes": {"<identifier>": {"class": "<controller>", "view": <view>}}}`, perhaps with an `orientation`,
/// "portrait" or "landscape"; a view is an object of
/// - `class` (`UIView` where it is left out), `id` (for constraints), `outlet` (of the controller);
/// - properties by the names that StoryboardProperties.cpp lists, as in `"text"`, `"hidden"`, `"font"`;
/// - `subviews`: views, in the order of drawing;
/// - `constraints`, which place these subviews: texts as in `"otp.top = label.bottom + 8"`,
///   `"otp.height = 44"`, where `self` is the view that holds them and `safeArea` its safe area; or objects
///   of `constraint`, that text, with `outlet`, the controller's name for it, or `active`, false for one that
///   waits. Of a view's edges and length along one axis two are enough: of three the far edge is left out;
///   a length without any is what the content would like;
/// - for a table `cells`: objects of identifiers to views whose class is a cell's; for a bar `items`: objects
///   of `title`, `left` and `right`, the latter two views.
class UIStoryboard {
public:
    /// @throws UIStoryboardError resourceMissing or resourceBroken.
    UIStoryboard(std::string name, std::shared_ptr<const NSBundle> bundle);

    /// A new controller of the scene: its outlets are set, and its view, which is not loaded yet, is laid out
    /// once, for the main screen or for that screen turned as the scene has it.
    /// @throws UIStoryboardError in every case but the first two; nothing has been made then.
    [[nodiscard]] std::shared_ptr<UIViewController>
    instantiateViewController(const std::string& withIdentifier) const;

    [[nodiscard]] const std::string& name() const noexcept { return name_; }
    [[nodiscard]] bool hasIdentifier(const std::string& identifier) const;

    using Factory = std::function<std::shared_ptr<NSObject>()>;

    /// Lets storyboards name a class: a controller's or a view's. A later one of the same name replaces it.
    static void registerClass(const std::string& name, Factory factory);
    template <class Class>
    static void registerClass(const std::string& name) {
        registerClass(name, [] { return std::make_shared<Class>(); });
    }

private:
    std::string name_;
    std::shared_ptr<const StoryboardContent> content_;
};

} // namespace korvane
