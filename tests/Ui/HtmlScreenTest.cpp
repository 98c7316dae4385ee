#include "Ui/Screens/ChallengeWebViewController.h"
#include "tests/Ui/ScreenSupport.h"

namespace korvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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
            EXPECT_FALSE(isAllowed) << "decided twice";
            isAllowed = policy == WKNavigationActionPolicy::allow;
        });
        return isAllowed.value();
    }

    CRes cRes = screenCRes(UiType::HTML_OTHER);
    std::shared_ptr<Screen> screen;
};

TEST_F(HtmlScreen, NavigationsThatAreNoFormsAreJudgedByTheirScheme) {
    for (const char* address :
         {"about:blank", "https://bank.example/terms", "https://emv3ds.example/challenge"})
        EXPECT_TRUE(allows(address)) << address;
    for (const char* address : {"http://bank.example", "mailto:a@bank.example", "javascript:alert(1)",
                                "file:///etc/passwd", "data:text/html,x", "", "no url at all", "challenge"})
        EXPECT_FALSE(allows(address)) << address;
    settle();
    EXPECT_THAT(actions->calls, IsEmpty());
    EXPECT_EQ(screen->spinner, nullptr);
}

TEST_F(HtmlScreen, TheFormIsTakenFromWhatItSends) {
    struct Row {
        const char* address;
        const char* method;
        std::optional<std::string> body;
        std::string call;
    };
    const std::string error = "runtimeError(Html form made incorrect call.) on main";
    const Row rows[] = {{"https://emv3ds/challenge?a=1&b=?", "GET", {}, "html(a=1&b=?) on global"},
                        {"https://emv3ds/challenge?a=1", "GET", "b=2", "html(a=1) on global"},
                        {"https://emv3ds/challenge?a=1", "POST", "b=%202", "html(b=%202) on global"},
                        {"HTTPS://EMV3DS/Challenge", "POST", "a=1", "html(a=1) on global"},
                        {"https://emv3ds/challenge/next?a=1", "GET", {}, "html(a=1) on global"},
                        {"https://emv3ds/challenge", "POST", {}, error},
                        {"https://emv3ds/challenge?a=1", "POST", "\xFF", error}};
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.method) + " " + row.address);
        screen = show<Screen>(cRes);
        EXPECT_FALSE(allows(row.address, row.method, row.body));
        settle();
        EXPECT_THAT(std::exchange(actions->calls, {}), ElementsAre(row.call));
        EXPECT_EQ(host->presentedViewController() == nullptr, row.call == error) << "an error dismisses";
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
