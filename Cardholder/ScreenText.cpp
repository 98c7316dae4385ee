#include "Cardholder/ScreenText.h"

#include "Platform/Platform.h"
#include "Ui/Screens/ChallengeOobNativeViewController.h"
#include "Ui/Screens/ChallengeSelectNativeViewController.h"
#include "Ui/Screens/ChallengeTextNativeViewController.h"
#include "Ui/Screens/ChallengeWebViewController.h"

namespace korvane::cardholder {

namespace {

constexpr std::string_view kPortrait = "PORTRAIT";
constexpr std::string_view kLandscape = "LANDSCAPE";

bool isShown(const UIView& view) {
    return !view.isHidden() && view.alpha() > 0;
}

/// A text under its name, if there is one to be seen.
void put(JSON& event, const char* name, const UIView& view, const std::string& text) {
    if (isShown(view) && !text.empty()) event[name] = text;
}

template <class TextView>
void putText(JSON& event, const char* name, const TextView& view) {
    put(event, name, *view.get(), view->text());
}

template <class Button>
void putTitle(JSON& event, const char* name, const Button& button) {
    put(event, name, *button.get(), button->currentTitle());
}

/// The body that all screens have which the library draws itself.
void putBody(JSON& event, ChallengeNativeViewController& screen) {
    putText(event, "header", screen.challengeInfoHeader);
    putText(event, "label", screen.challengeInfoLabel);
    putText(event, "text", screen.challengeInfoText);
    event["warning"] = screen.warningWidthConstraint->constant() > 0;
    putTitle(event, "whyLabel", screen.whyInfoButton);
    if (isShown(*screen.whyInfoButton.get())) putText(event, "whyText", screen.whyInfo);
    putTitle(event, "expandLabel", screen.extInfoButton);
    if (isShown(*screen.extInfoButton.get())) putText(event, "expandText", screen.extInfo);
    putTitle(event, "whitelisting", screen.whitelistingInfo);
}

void putOptions(JSON& event, const ChallengeSelectNativeViewController& screen) {
    JSON options = JSON::array();
    for (std::size_t row = 0; row < screen.optionCount(); ++row) {
        auto option = screen.option(row);
        options.push_back(JSON::object({{std::move(option.key), std::move(option.label)}}));
    }
    event["options"] = std::move(options);
    putTitle(event, "submit", screen.nextButton);
}

/// What one kind of screen shows beside the body. The first that fits describes the screen.
struct KindRow {
    std::string_view uiType;
    bool (*describe)(UIViewController& screen, JSON& event);
};

template <class Screen, void (*Put)(JSON&, const Screen&)>
bool describe(UIViewController& controller, JSON& event) {
    const auto* screen = dynamic_cast<Screen*>(&controller);
    if (!screen) return false;
    Put(event, *screen);
    return true;
}

void putSingle(JSON& event, const ChallengeSingleSelectNativeViewController& screen) {
    putOptions(event, screen);
}

void putMulti(JSON& event, const ChallengeMultiSelectNativeViewController& screen) {
    putOptions(event, screen);
}

void putCode(JSON& event, const ChallengeTextNativeViewController& screen) {
    event["typed"] = screen.otp->text();
    putTitle(event, "submit", screen.submitButton);
    putTitle(event, "resend", screen.resendButton);
}

void putOob(JSON& event, const ChallengeOobNativeViewController& screen) {
    putTitle(event, "continue", screen.continueButton);
}

void putPage(JSON& event, const ChallengeWebViewController& screen) {
    event["html"] = screen.challengeWebView->htmlString();
}

constexpr KindRow kKinds[] = {
    {"01", describe<ChallengeTextNativeViewController, putCode>},
    {"02", describe<ChallengeSingleSelectNativeViewController, putSingle>},
    {"03", describe<ChallengeMultiSelectNativeViewController, putMulti>},
    {"04", describe<ChallengeOobNativeViewController, putOob>},
    {"05", describe<ChallengeWebViewController, putPage>},
};

template <class... Screens>
bool isOneOf(const UIViewController& screen) {
    return ((dynamic_cast<const Screens*>(&screen) != nullptr) || ...);
}

} // namespace

std::string_view orientationOf(const ChallengeViewController& screen) {
    if (isOneOf<ChallengeWebViewController>(screen)) {
        const CGSize size = Platform::current().mainScreen().bounds().size;
        return size.width > size.height ? kLandscape : kPortrait;
    }
    return isOneOf<
               LandscapeChallengeTextNativeViewController, LandscapeChallengeSingleSelectNativeViewController,
               LandscapeChallengeMultiSelectNativeViewController, LandscapeChallengeOobNativeViewController>(
               screen)
               ? kLandscape
               : kPortrait;
}

JSON screenEvent(ChallengeViewController& screen) {
    JSON event{{"event", "screen"}, {"uiType", ""}, {"orientation", orientationOf(screen)}};
    if (auto* native = dynamic_cast<ChallengeNativeViewController*>(&screen)) putBody(event, *native);
    for (const KindRow& kind : kKinds)
        if (kind.describe(screen, event)) {
            event["uiType"] = kind.uiType;
            break;
        }
    return event;
}

} // namespace korvane::cardholder
