#pragma once

#include "Platform/Headless/HeadlessPlatform.h"
#include "Platform/View/UIWindow.h"
#include "Sdk/Service/ThreeDS2Service.h"
#include "Ui/Screens/ChallengeViewController.h"
#include "tools/challenge/Authentication.h"
#include "tools/challenge/EventWriter.h"
#include "tools/challenge/Finger.h"
#include "tools/challenge/LineReader.h"
#include "tools/challenge/Options.h"

#include <deque>
#include <memory>
#include <optional>
#include <string>

namespace korvane::challenge {

/// One transaction and its challenge: tells of everything by events, and takes lines when it has use for
/// them. Main queue only.
class Session final : public ChallengeStatusReceiver, public std::enable_shared_from_this<Session> {
public:
    /// @param wire  hears of the platform's answers.
    Session(HeadlessPlatform& platform, Options options, TransactionCerts certificates, EventWriter& events,
            std::shared_ptr<const Wire> wire);

    /// Creates the transaction, asks the 3DS server if it is to, and begins to read lines. At its end the platform's main loop is stopped.
    void begin();

    /// Whether the challenge came to an ending.
    [[nodiscard]] bool hasEnded() const noexcept { return hasEnded_; }

    void completed(const CompletionEvent& event) override;
    void cancelled() override;
    void timedout() override;
    void protocolError(const ProtocolErrorEvent& event) override;
    void runtimeError(const RuntimeErrorEvent& event) override;

private:
    /// Who is expected to say something.
    enum class Turn { application, library, cardholder, nobody };

    void takeLine(InputLine line);
    void serveLines();
    void serve(const InputLine& line);
    void authenticate(const JSON& request);
    void takeReply(const ServerReply& reply);
    void startChallenge(const JSON& values);
    void act(const JSON& line);
    void inputEnded();

    void look();
    void lookSoon();
    void showAgain();
    void watchForSilentEnd();
    [[nodiscard]] std::shared_ptr<ChallengeViewController> standingScreen() const;
    void turnDevice(UIDeviceOrientation orientation);

    void end(JSON event);
    void stopWhenScreensAreGone();
    void stop();

    HeadlessPlatform& platform_;
    const Options options_;
    const TransactionCerts certificates_;
    EventWriter& events_;
    const std::shared_ptr<const Wire> wire_;
    ThreeDS2Service service_;
    std::shared_ptr<Transaction> transaction_;
    std::shared_ptr<UIWindow> window_;
    std::shared_ptr<UIViewController> host_;
    std::optional<Finger> finger_;
    std::unique_ptr<LineReader> reader_;
    std::deque<InputLine> lines_;
    std::string signedContent_;
    Turn turn_ = Turn::application;
    /// The screen that was written last, and which of its pages.
    std::weak_ptr<ChallengeViewController> shown_;
    int shownPage_ = 0;
    bool hasEnded_ = false;
};

} // namespace korvane::challenge
