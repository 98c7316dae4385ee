#pragma once

#include "Cardholder/Finger.h"
#include "Platform/CGGeometry.h"
#include "Platform/JSON.h"
#include "Platform/UIDevice.h"
#include "Platform/View/UIWindow.h"
#include "Sdk/Transaction/Transaction.h"
#include "Ui/Screens/ChallengeViewController.h"

#include <functional>
#include <memory>

namespace korvane::cardholder {

/// One challenge and its screens, in a window of its own: tells of everything by events, and takes actions. A
/// process has one at a time, since it is the platform's key window. Main queue only.
class Cardholder final : public ChallengeStatusReceiver, public std::enable_shared_from_this<Cardholder> {
    struct Private {};

public:
    /// Hears a `screen` event whenever an action is waited for, one ending, and an `error` event where the
    /// screens have gone and no ending was told. May call the cardholder back.
    using Tell = std::function<void(const JSON& event)>;
    /// Nothing more comes: the screens have gone, and the ACS has been told what it is to be told. Called once.
    using Finish = std::function<void()>;
    /// Holds the device in another way, as the platform does it.
    using Turn = std::function<void(UIDeviceOrientation orientation, CGSize screen)>;

    /// A platform whose screen has no size gets that of a phone.
    [[nodiscard]] static std::shared_ptr<Cardholder> make(Tell tell, Finish finish, Turn turn);

    Cardholder(Private, Tell tell, Finish finish, Turn turn);
    ~Cardholder() override;

    /// Starts the transaction's challenge, which holds this object until its end. Once.
    /// @param minutes  for the whole challenge.
    void begin(Transaction& transaction, std::shared_ptr<ChallengeParameters> parameters,
               std::int64_t minutes);

    /// Whether a screen waits for an action.
    [[nodiscard]] bool isWaiting() const noexcept { return turn_ == Whose::cardholders; }

    /// Whether an ending was told.
    [[nodiscard]] bool hasEnded() const noexcept { return hasEnded_; }

    /// Performs an action on the screen that waits.
    /// @throws InputError for what is no action; Refusal where the screen has no such control, and where none
    /// waits. Nothing has been done then.
    void act(const JSON& action);

    void completed(const CompletionEvent& event) override;
    void cancelled() override;
    void timedout() override;
    void protocolError(const ProtocolErrorEvent& event) override;
    void runtimeError(const RuntimeErrorEvent& event) override;

private:
    /// Who is expected to do something.
    enum class Whose { librarys, cardholders, nobodys };

    void openWindow();
    void look();
    void lookSoon();
    void showAgain();
    void watchForSilentEnd();
    [[nodiscard]] std::shared_ptr<ChallengeViewController> standingScreen() const;
    void turnDevice(UIDeviceOrientation orientation);
    void end(const JSON& event);
    void finishWhenScreensAreGone();
    void finish();

    const Tell tell_;
    Finish finish_;
    const Turn turnTo_;
    std::shared_ptr<UIWindow> window_;
    std::shared_ptr<UIViewController> host_;
    std::unique_ptr<Finger> finger_;
    Whose turn_ = Whose::nobodys;
    /// The screen that was told of last, and which of its pages.
    std::weak_ptr<ChallengeViewController> shown_;
    int shownPage_ = 0;
    bool hasEnded_ = false;
};

} // namespace korvane::cardholder
