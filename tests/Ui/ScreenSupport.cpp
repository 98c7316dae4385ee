#include "tests/Ui/ScreenSupport.h"

#include "Crypt/DataExtensions.h"
#include "tests/support/Messages.h"

#include <stdexcept>

namespace korvane {

std::string encodedPage(std::string_view page) {
    return base64URLEncodedString(asBytes(page));
}

UIView& viewNamed(const UIView& screen, std::string_view name) {
    for (const auto& view : screen.subviews())
        if (view->accessibilityIdentifier() == name) return *view;
    throw std::out_of_range(std::string(name));
}

CRes screenCRes(UiType kind) {
    CRes cRes = validCRes();
    cRes.acsUiType = std::string(rawValue(kind));
    cRes.resendInformationLabel = "Another code";
    cRes.whyInfoLabel = "Why?";
    cRes.whyInfoText = "Because your bank asks for it.";
    cRes.expandInfoLabel = "More";
    cRes.expandInfoText = "Codes are valid for ten minutes. Never tell anybody a code.";
    cRes.oobContinueLabel = "Go on";
    cRes.challengeAddInfo = "You may go on now.";
    cRes.challengeSelectInfo = {{{"phone", "Phone *** 12"}}, {{"mail", "Mail a***@b.c"}}, {{"app", "App"}}};
    cRes.acsHTML = encodedPage("<p>page</p>");
    cRes.whitelistingInfoText = "Ask less often when I pay in this shop";
    cRes.challengeInfoTextIndicator = "Y";
    return cRes;
}

CRes longCRes(UiType kind) {
    std::string words;
    while (words.size() < 350)
        words += "words of a bank ";
    const auto text = [&words](std::size_t length) { return words.substr(0, length - 1) + "."; };
    CRes cRes = screenCRes(kind);
    for (auto label :
         {&CRes::challengeInfoHeader, &CRes::challengeInfoLabel, &CRes::whyInfoLabel, &CRes::expandInfoLabel,
          &CRes::submitAuthenticationLabel, &CRes::resendInformationLabel, &CRes::oobContinueLabel})
        cRes.*label = text(45);
    cRes.challengeInfoText = text(350);
    cRes.whyInfoText = cRes.expandInfoText = text(256);
    cRes.whitelistingInfoText = text(64);
    cRes.challengeSelectInfo.emplace(8, StringTable{{"key", text(45)}});
    return cRes;
}

ScreenTest::ScreenTest() {
    platform.script().mainBundlePath = KORVANE_MAIN_BUNDLE;
    platform.script().bounds = {{0, 0}, {390, 844}};
    window = std::make_shared<UIWindow>();
    host = std::make_shared<UIViewController>();
    window->setRootViewController(host);
    window->makeKeyAndVisible();
    platform.runUntilIdle();
}

ScreenTest::~ScreenTest() {
    if (stack) stack->transaction = nullptr;
}

void ScreenTest::resize(CGSize screen, UIEdgeInsets safeArea) {
    platform.script().bounds = {{0, 0}, screen};
    UIApplication::shared().deviceDidRotate();
    window->setSafeAreaInsets(safeArea);
    settle();
}

void ScreenTest::present(const std::shared_ptr<UIViewController>& screen) {
    ASSERT_TRUE(screen);
    if (host->presentedViewController()) host->dismiss(UIAnimated::no);
    settle();
    stack = std::make_shared<ChallengeRootNavigationController>(screen);
    stack->transaction = actions;
    host->present(stack, UIAnimated::no);
    settle();
}

void ScreenTest::settle() {
    platform.runFor(Seconds(2));
    window->layoutIfNeeded();
}

} // namespace korvane
