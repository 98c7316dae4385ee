// How long people wait for what they see: from an event to the frame that shows it, drawn in software without
// a display, and the memory of ten challenges one after the other.

#include "Platform/Qt/KorvaneWindow.h"
#include "Platform/Qt/QtPlatform.h"
#include "Ui/Screens/ChallengeRootNavigationController.h"
#include "Ui/Screens/ChallengeTextNativeViewController.h"
#include "Ui/Screens/PreventScreenRecording.h"
#include "Ui/Screens/VCFactory.h"
#include "tests/support/Messages.h"

#include <QElapsedTimer>
#include <QGuiApplication>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include <unistd.h>

namespace korvane::bench {

namespace {

constexpr int kRounds = 15;

/// A telephone's screen that counts its frames.
class Stage {
public:
    Stage() {
        QObject::connect(&scene_, &QQuickWindow::frameSwapped, &scene_, [this] { ++frames_; });
        scene_.show();
        runFor(300);
    }
    ~Stage() { clear(); }
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    [[nodiscard]] KorvaneHost& host() { return scene_.host(); }
    [[nodiscard]] int frames() const noexcept { return frames_; }
    [[nodiscard]] const std::shared_ptr<ChallengeTextNativeViewController>& screen() const { return screen_; }

    void show(const CRes& cRes) {
        const auto container = VCFactory(nullptr, nullptr, nullptr, nullptr).getViewControllerContainer(cRes);
        const auto controller = container.controllersMap().at(Orientation::PORTRAIT);
        screen_ = std::dynamic_pointer_cast<ChallengeTextNativeViewController>(controller);
        stack_ = std::make_shared<ChallengeRootNavigationController>(controller);
        scene_.host().uiWindow()->rootViewController()->present(stack_, UIAnimated::no);
    }
    void clear() {
        if (stack_) scene_.host().uiWindow()->rootViewController()->dismiss(UIAnimated::no);
        stack_.reset();
        screen_.reset();
        runFor(50);
    }

    /// Wall time, in milliseconds, from the begin of something to the end of the first frame after it.
    template <class Work>
    double toFrame(Work work) {
        QElapsedTimer clock;
        clock.start();
        work();
        const int before = frames_;
        while (frames_ == before)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return static_cast<double>(clock.nsecsElapsed()) / 1e6;
    }
    void runFor(qint64 milliseconds) {
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < milliseconds)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    void resize(QSize size) { scene_.resize(size); }

private:
    KorvaneWindow scene_;
    std::shared_ptr<ChallengeTextNativeViewController> screen_;
    std::shared_ptr<ChallengeRootNavigationController> stack_;
    int frames_ = 0;
};

void print(const char* name, std::vector<double> samples) {
    std::ranges::sort(samples);
    std::printf("%-44s %8.2f ms median %8.2f ms most\n", name, samples[samples.size() / 2], samples.back());
}

std::string message() {
    JSON cRes = validCResJSON();
    cRes["whyInfoLabel"] = "Why?";
    cRes["whyInfoText"] = "Because your bank asks for it.";
    return cRes.dump();
}

double residentMegabytes() {
    std::ifstream file("/proc/self/statm");
    std::size_t all = 0, resident = 0;
    file >> all >> resident;
    return static_cast<double>(resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE))) /
           (1024.0 * 1024.0);
}

void measureFrames(Stage& stage) {
    const std::string text = message();
    std::vector<double> screens, keys, turns;
    for (int round = 0; round < kRounds; ++round) {
        screens.push_back(stage.toFrame([&] { stage.show(CRes::decode(text)); }));
        stage.runFor(50);
        stage.screen()->otp->becomeFirstResponder();
        stage.runFor(400);
        const CGRect keyboard = stage.host().uiWindow()->inputFrame();
        const CGPoint place{keyboard.size.width / 2, keyboard.origin.y + keyboard.size.height / 2};
        keys.push_back(stage.toFrame([&] {
            stage.host().uiWindow()->sendTouch({1, UITouchPhase::began, place});
            stage.host().uiWindow()->sendTouch({1, UITouchPhase::ended, place});
        }));
        stage.runFor(300);
        turns.push_back(stage.toFrame([&] { stage.resize({844, 390}); }));
        stage.runFor(50);
        stage.resize({390, 844});
        stage.clear();
    }
    print("CRes to first frame", screens);
    print("key press to frame", keys);
    print("rotation to frame", turns);
}

/// The keyboard turns to pages for the first time and comes back to them; a first letter turns capitals to small
/// letters.
void measurePages(Stage& stage) {
    using State = CustomKeyboardLayoutState;
    const std::string text = message();
    std::vector<double> first, again, letters;
    for (int round = 0; round < kRounds; ++round) {
        stage.show(CRes::decode(text));
        stage.runFor(50);
        stage.screen()->otp->becomeFirstResponder();
        stage.runFor(400);
        const auto keyboard = stage.screen()->secureKeyboard->customKeyboard();
        const auto turn = [&](State to) {
            const double time = stage.toFrame([&] { keyboard->setKeyboardLayoutState(to); });
            stage.runFor(50);
            return time;
        };
        first.push_back(turn(State::Letters(CustomKeyboardShiftState::Once)));
        const auto key = keyboard->getCurrentKeyboardLayout()->getKeyboardButton(1, 3);
        const CGPoint place = key->middleInWindow();
        letters.push_back(stage.toFrame([&] {
            stage.host().uiWindow()->sendTouch({1, UITouchPhase::began, place});
            stage.host().uiWindow()->sendTouch({1, UITouchPhase::ended, place});
        }));
        stage.runFor(50);
        first.push_back(turn(State::Symbols()));
        for (const State back : {State::Numbers(), State::Letters(CustomKeyboardShiftState::Off)})
            again.push_back(turn(back));
        stage.clear();
    }
    print("a page of the keyboard, for the first time", first);
    print("a page of the keyboard, once more", again);
    print("the first letter to frame", letters);
}

void measureFirstFrames(Stage& stage, const char* name, const CRes& cRes) {
    std::vector<double> frames;
    for (int round = 0; round < 3; ++round) {
        frames.push_back(stage.toFrame([&] { stage.show(cRes); }));
        stage.clear();
    }
    print(name, frames);
}

/// Texts that cost a layout more than others of their length, everywhere where a response may have one.
void measureHostileTexts(Stage& stage) {
    struct Row {
        const char* name;
        std::string_view piece;
        std::size_t times;
    };
    constexpr Row kRows[] = {{"one word of 128 KiB", "w", 128 << 10},
                             {"one character of 256 KiB: emoji", "\U0001F469\u200D", 37000},
                             {"one character of 256 KiB: marks", "\u0301", 128 << 10},
                             {"a million lines", "\n", 1 << 20},
                             {"two scripts in turn", "\u05D0\u0915", 64 << 10},
                             {"words of 2 MiB", "words of a bank ", 128 << 10}};
    for (const Row& row : kRows) {
        std::string text;
        for (std::size_t time = 0; time < row.times; ++time)
            text += row.piece;
        CRes cRes = CRes::decode(message());
        char letter = 'a'; // each text is another
        for (const auto field : {&CRes::challengeInfoLabel, &CRes::challengeInfoText, &CRes::whyInfoLabel,
                                 &CRes::whyInfoText, &CRes::expandInfoLabel, &CRes::expandInfoText})
            cRes.*field = std::string(1, letter++) + text;
        measureFirstFrames(stage, row.name, cRes);
    }
}

/// As many options, or as long ones, as a response of 16 MiB has room for.
void measureManyOptions(Stage& stage) {
    struct Row {
        const char* name;
        std::size_t count;
        std::size_t length;
    };
    for (const Row& row :
         {Row{"300,000 options", 300000, 20}, Row{"1,000 options of 16 KiB", 1000, 16 << 10}}) {
        CRes cRes = CRes::decode(message());
        cRes.acsUiType = "02";
        cRes.challengeSelectInfo.emplace();
        for (std::size_t option = 0; option < row.count; ++option)
            cRes.challengeSelectInfo->push_back(
                {{std::to_string(option), std::to_string(option) + std::string(row.length, 'w')}});
        measureFirstFrames(stage, row.name, cRes);
    }
}

void measureAnimation(Stage& stage) {
    stage.show(CRes::decode(message()));
    stage.runFor(300);
    const int before = stage.frames();
    QElapsedTimer clock;
    clock.start();
    stage.screen()->inverseWhyInfoDisplaying();
    stage.runFor(300);
    std::printf("%-44s %8d frames in %lld ms\n", "a section expands", stage.frames() - before,
                static_cast<long long>(clock.elapsed()));
    stage.clear();
}

void measureMemory(Stage& stage) {
    const auto challenge = [&stage] {
        stage.show(CRes::decode(message()));
        stage.runFor(50);
        stage.screen()->otp->becomeFirstResponder();
        stage.runFor(300);
        stage.clear();
    };
    challenge();
    const double before = residentMegabytes();
    double during = 0;
    for (int round = 0; round < 10; ++round) {
        challenge();
        during = std::max(during, residentMegabytes());
    }
    std::printf("%-44s %8.1f MiB before, %.1f during, %.1f after\n", "resident, ten challenges", before,
                during, residentMegabytes());
}

} // namespace

} // namespace korvane::bench

int main(int count, char** arguments) {
    using namespace korvane;
    // Without a display Qt waits 5 ms before each frame, which nobody waits for where there is one.
    if (!qEnvironmentVariableIsSet("QT_QPA_UPDATE_IDLE_TIME")) qputenv("QT_QPA_UPDATE_IDLE_TIME", "0");
    QtPlatform::prepare();
    const QGuiApplication application(count, arguments);
    isEnablePreventScreenCapture = false;
    const QtPlatform platform;
    bench::Stage stage;
    bench::measureFrames(stage);
    bench::measurePages(stage);
    bench::measureHostileTexts(stage);
    bench::measureManyOptions(stage);
    bench::measureAnimation(stage);
    bench::measureMemory(stage);
}
