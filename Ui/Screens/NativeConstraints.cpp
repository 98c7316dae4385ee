#include "Ui/Screens/ChallengeNativeViewController.h"

#include <array>

namespace korvane {

namespace {

/// A control with its neighbours; absent ones are the screen's own edges.
struct Place {
    UiObject object;
    std::optional<UiObject> top = std::nullopt;
    std::optional<UiObject> bottom = std::nullopt;
    std::optional<UiObject> left = std::nullopt;
    std::optional<UiObject> right = std::nullopt;
};

/// What stands above the chain, the same on all screens.
constexpr std::array<Place, 5> kHead{{
    {.object = UiObject::bankLogo},
    {.object = UiObject::psLogo},
    {.object = UiObject::challengeInfoHeader, .top = UiObject::bankLogo},
    {.object = UiObject::warningImage, .top = UiObject::challengeInfoHeader},
    {.object = UiObject::challengeInfoText,
     .top = UiObject::challengeInfoHeader,
     .left = UiObject::warningImage},
}};

} // namespace

void ChallengeNativeViewController::applyCustomConstraints() {
    if (!customConstraints) return;
    const auto viewOf = [this](std::optional<UiObject> object) {
        return object ? control(*object) : nullptr;
    };
    const auto apply = [&](const Place& place) {
        const auto view = control(place.object);
        const auto superview = view ? view->superview() : nullptr;
        if (!superview) return;
        applyConstraints(*superview, *view, viewOf(place.top).get(), viewOf(place.bottom).get(),
                         viewOf(place.left).get(), viewOf(place.right).get(),
                         customConstraints->getConstraints(place.object));
    };
    const auto below = chain();
    for (std::size_t index = 1; index < below.size(); ++index) {
        Place place{.object = below[index], .top = below[index - 1]};
        if (index + 1 < below.size()) place.bottom = below[index + 1];
        apply(place);
    }
    for (const Place& place : kHead)
        apply(place);
}

} // namespace korvane
