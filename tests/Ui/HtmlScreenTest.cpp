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
        cRes = screenCRes(UiType::HTML_OTHER);
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

    CRes cRes;
    std::shared_ptr<Screen> screen;
};

TEST_F(HtmlScreen, NavigationsThatAreNoFormsAreJudgedByTheirScheme) {
    struct Row {
        const char* address;
        bool isAllowed;
    };
    const Row rows[] = {
        {"about:blank", true},
        {"https://bank.example/terms", true},
        {"http://bank.example", false},
        {"mailto:a@bank.example", false},
        {"javascript:alert(1)", false},
        {"file:///etc/passwd", false},
        {"data:text/html,x", false},
        {"", false},
        {"no url at all", false},
        {"challenge", false},
        {"https://emv3ds.example/challenge", true},
    };
    for (const Row& row : rows)
        EXPECT_EQ(allows(row.address), row.isAllowed) << row.address;
    settle();
    EXPECT_THAT(actions->calls, IsEmpty());
    EXPECT_EQ(screen->spinner, nullptr);
}

TEST_F(HtmlScreen, TheFormIsTakenFromWhatItSends) {
    struct Row {
        const char* name;
        const char* address;
        const char* method;
        std::optional<std::string> body;
        std::vector<std::string> calls;
    };
    const std::string error = "runtimeError(Html form made incorrect call.) on main";
    const Row rows[] = {
        {"GET", "https://emv3ds/challenge?a=1&b=2", "GET", std::nullopt, {"html(a=1&b=2) on global"}},
        {"GET with a second mark",
         "https://emv3ds/challenge?a=?",
         "GET",
         std::nullopt,
         {"html(a=?) on global"}},
        {"GET with a body", "https://emv3ds/challenge?a=1", "GET", "b=2", {"html(a=1) on global"}},
        {"POST", "https://emv3ds/challenge", "POST", "otp=12%2034", {"html(otp=12%2034) on global"}},
        {"POST with a query", "https://emv3ds/challenge?a=1", "POST", "b=2", {"html(b=2) on global"}},
        {"empty POST", "https://emv3ds/challenge", "POST", "", {"html() on global"}},
        {"capital letters", "HTTPS://EMV3DS/Challenge", "POST", "a=1", {"html(a=1) on global"}},
        {"longer path", "https://emv3ds/challenge/next?a=1", "GET", std::nullopt, {"html(a=1) on global"}},
        {"another method", "https://emv3ds/challenge?a=1", "PUT", "a=1", {}},
        {"GET without a query", "https://emv3ds/challenge", "GET", std::nullopt, {error}},
        {"POST without anything", "https://emv3ds/challenge", "POST", std::nullopt, {error}},
        {"POST that is not UTF-8", "https://emv3ds/challenge?a=1", "POST", "\xFF", {error}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        screen = show<Screen>(cRes);
        actions->calls.clear();
        EXPECT_FALSE(allows(row.address, row.method, row.body));
        EXPECT_EQ(screen->spinner == nullptr, row.calls.empty());
        platform.runFor(Seconds(0.99));
        EXPECT_THAT(actions->calls, IsEmpty());
        settle();
        EXPECT_EQ(actions->calls, row.calls);
        const bool isError = row.calls == std::vector{error};
        EXPECT_EQ(host->presentedViewController() == nullptr, isError) << "only an error dismisses";
    }
}

TEST_F(HtmlScreen, AReturnShowsTheReturnPageOnce) {
    UIApplication& application = UIApplication::shared();
    screen->replaceText({UIApplication::didBecomeActiveNotification});
    EXPECT_EQ(screen->challengeWebView->htmlString(), "<p>page</p>") << "nobody has been away";
    application.willResignActive();
    application.didBecomeActive();
    EXPECT_EQ(screen->challengeWebView->htmlString(), "<p>back</p>");
    EXPECT_EQ(screen->challengeWebView->loadCount(), 2);
    stack->pushViewController(std::make_shared<UIViewController>(), UIAnimated::no);
    application.willResignActive();
    application.didBecomeActive();
    EXPECT_EQ(screen->challengeWebView->loadCount(), 2) << "it is not on the screen";
}

TEST_F(HtmlScreen, ThePageFillsTheScreenBelowTheBar) {
    window->setSafeAreaInsets({47, 0, 34, 0});
    settle();
    EXPECT_EQ(screen->toolBar->frame(), (CGRect{{0, 47}, {390, 44}}));
    EXPECT_EQ(screen->challengeWebView->frame(), (CGRect{{0, 91}, {390, 844 - 91}}));
    EXPECT_EQ(screen->vTopArea->frame(), (CGRect{{0, -47}, {390, 47}}));
}

TEST(ScalingHeader, ComesBeforeThePage) {
    EXPECT_EQ(addScalingHeader("<p>x</p>"), "<header><meta name='viewport' content='initial-scale=1.0, "
                                            "minimum-scale=1.0'></header><p>x</p>");
}

} // namespace
} // namespace korvane
