#include "Ui/Screens/ChallengeWebViewController.h"
#include "tests/Ui/ScreenSupport.h"

namespace korvane {
namespace {

using Screen = ChallengeWebViewController;

class HtmlScreen : public ScreenTest {
protected:
    HtmlScreen() {
        cRes.acsHTMLRefresh = encodedPage("<p>back</p>");
        screen = show<Screen>(cRes);
    }

    /// What the screen decides about a navigation, asked through its web view.
    bool allows(const std::string& address, const std::string& method = "GET",
                std::optional<std::string> body = std::nullopt) {
        WKNavigationAction action;
        if (const auto url = URL::make(address)) {
            action.request = URLRequest{.url = *url, .httpMethod = method};
            if (body) action.request->httpBody = toBytes(*body);
        }
        std::optional<bool> isAllowed;
        screen->challengeWebView->decidePolicy(action, [&isAllowed](WKNavigationActionPolicy policy) {
            isAllowed = policy == WKNavigationActionPolicy::allow;
        });
        return isAllowed.value();
    }

    CRes cRes = screenCRes(UiType::HTML_OTHER);
    std::shared_ptr<Screen> screen;
};

TEST_F(HtmlScreen, NavigationsAreJudgedByTheirSchemeAndFormsAreTakenFromWhatTheySend) {
    for (const char* address :
         {"about:blank", "https://bank.example/terms", "https://emv3ds.example/challenge"})
        EXPECT_TRUE(allows(address)) << address;
    for (const char* address : {"http://bank.example", "mailto:a@bank.example", "javascript:alert(1)",
                                "file:///etc/passwd", "data:text/html,x", "", "no url at all", "challenge"})
        EXPECT_FALSE(allows(address)) << address;
    settle();
    EXPECT_THAT(actions->calls, testing::IsEmpty());
    const std::tuple<const char*, const char*, std::optional<std::string>, std::string> forms[] = {
        {"https://emv3ds/challenge?a=1&b=?", "GET", {}, "a=1&b=?"},
        {"https://emv3ds/challenge?a=1", "POST", "b=%202", "b=%202"},
        {"HTTPS://EMV3DS/Challenge", "POST", "a=1", "a=1"},
        {"https://emv3ds/challenge/next?a=1", "GET", "b=2", "a=1"}};
    for (const auto& [address, method, body, data] : forms) {
        EXPECT_FALSE(allows(address, method, body)) << address;
        settle();
        EXPECT_EQ(actions->calls.back(), "html(" + data + ") on global");
    }
}

TEST_F(HtmlScreen, APageIsLoadedAsItCameAndAReturnShowsTheReturnPageOnceIfItHasOne) {
    const auto& loaded = *screen->challengeWebView.get();
    const auto leaveAndComeBack = [] {
        UIApplication::shared().willResignActive();
        UIApplication::shared().didBecomeActive();
    };
    UIApplication::shared().didBecomeActive();
    EXPECT_EQ(loaded.htmlString(), "<p>page</p>") << "nobody has been away";
    EXPECT_EQ(loaded.baseURL(), std::nullopt);
    leaveAndComeBack();
    EXPECT_EQ(loaded.htmlString(), "<p>back</p>");
    stack->pushViewController(std::make_shared<UIViewController>(), UIAnimated::no);
    leaveAndComeBack();
    EXPECT_EQ(loaded.loadCount(), 2) << "it is not on the screen";
    cRes.acsHTMLRefresh = "PGI*";
    screen = show<Screen>(cRes);
    leaveAndComeBack();
    EXPECT_EQ(screen->challengeWebView->htmlString(), "<p>page</p>") << "the return page is broken";
}

} // namespace
} // namespace korvane
