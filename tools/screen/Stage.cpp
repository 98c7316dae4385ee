#include "tools/screen/Stage.h"

#include "Platform/Platform.h"
#include "Sdk/Events/SdkError.h"
#include "Ui/Screens/ChallengeTextNativeViewController.h"
#include "Ui/Screens/VCFactory.h"
#include "tools/common/UsageError.h"
#include "tools/screen/Echo.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <QVariantAnimation>

#include <algorithm>

namespace korvane::screen {

namespace {

constexpr int kMoment = 20;      // milliseconds
constexpr qint64 kLimit = 10000; // milliseconds
constexpr int kEqualPicturesOfPage = 10;

void runEventsForAMoment() {
    QEventLoop loop;
    QTimer::singleShot(kMoment, &loop, &QEventLoop::quit);
    loop.exec();
}

void waitFor(const char* what, const std::function<bool()>& condition) {
    QElapsedTimer clock;
    clock.start();
    while (!condition()) {
        if (clock.elapsed() > kLimit)
            throw NotDone(std::string("The screen does not come to rest: ") + what + ".");
        runEventsForAMoment();
    }
}

bool isMoving(const KorvaneHost& host) {
    return std::ranges::any_of(
        host.findChildren<QVariantAnimation*>(),
        [](const QVariantAnimation* movement) { return movement->state() == QAbstractAnimation::Running; });
}

/// The engine's items of pages below an item.
std::vector<QQuickItem*> pagesIn(const QQuickItem& item) {
    std::vector<QQuickItem*> pages;
    for (QQuickItem* const child : item.childItems()) {
        if (child->inherits("QQuickWebEngineView")) pages.push_back(child);
        for (QQuickItem* const page : pagesIn(*child))
            pages.push_back(page);
    }
    return pages;
}

} // namespace

Stage::Stage() = default;

Stage::~Stage() = default;

void Stage::set(const Setting& setting) {
    window_.resize(setting.size);
    window_.host().setDark(setting.isDark);
    window_.host().setTextScale(setting.textScale);
    settle();
}

void Stage::show(const Script& script) {
    clear();
    stack_ = std::make_shared<ScreenStack>([] { return true; });
    try {
        const VCFactory factory(nullptr, nullptr, script.theme.customization, script.theme.constraints);
        stack_->hold(
            std::make_shared<ViewControllerContainer>(factory.getViewControllerContainer(script.cRes)));
        const auto echo = std::make_shared<Echo>([stack = std::weak_ptr(stack_)] {
            if (const auto standing = stack.lock()) standing->hideSpinner();
        });
        stack_->present(stack_->firstController(), echo);
    } catch (const SdkError& error) {
        throw NotDone("The library cannot show this CRes: " + error.message());
    }
}

void Stage::clear() {
    const auto root = window_.host().uiWindow()->rootViewController();
    if (root->presentedViewController()) root->dismiss(UIAnimated::no);
    stack_ = nullptr;
}

bool Stage::openKeyboard() {
    const auto screen = stack_ ? stack_->topController<ChallengeTextNativeViewController>() : nullptr;
    if (screen) screen->otp->becomeFirstResponder();
    return screen != nullptr;
}

QImage Stage::draw(const Script& script, const Setting& setting) {
    set(setting);
    show(script);
    settle();
    if (setting.hasKeyboard && !openKeyboard())
        throw tools::UsageError("--keyboard: This screen has no field for a code.");
    return picture();
}

/// What is posted behind all jobs runs after them, and then once more for what these posted.
void Stage::settle() {
    constexpr int kRounds = 3;
    for (int round = 0; round < kRounds; ++round) {
        const auto isReached = std::make_shared<bool>(false);
        Platform::current().dispatch().mainQueue().async([isReached] { *isReached = true; });
        waitFor("there is always more to do", [isReached] { return *isReached; });
    }
    window_.host().uiWindow()->layoutIfNeeded();
    static_cast<void>(window_.host().picture()); // takes what has changed over
    waitFor("something moves", [this] { return !isMoving(window_.host()); });
}

/// The engine tells when a page has loaded, and not when it is drawn.
QImage Stage::steadyPicture() {
    QImage last;
    int equal = 0;
    waitFor("the page changes all the time", [&] {
        QImage now = window_.host().picture();
        equal = now == last ? equal + 1 : 0;
        last = std::move(now);
        return equal >= kEqualPicturesOfPage;
    });
    return last;
}

QImage Stage::picture() {
    settle();
    const auto pages = pagesIn(window_.host());
    if (pages.empty()) return window_.host().picture();
    waitFor("the page loads", [&pages] {
        return std::ranges::all_of(pages, [](const QQuickItem* page) {
            return !page->property("loading").toBool() && page->property("loadProgress").toInt() == 100;
        });
    });
    return steadyPicture();
}

} // namespace korvane::screen
