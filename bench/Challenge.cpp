#include "bench/Challenge.h"

#include "Crypt/DataExtensions.h"
#include "Platform/View/UINavigationController.h"
#include "Platform/View/UIWindow.h"
#include "Sdk/Service/ThreeDS2Service.h"
#include "Ui/Screens/ChallengeOobNativeViewController.h"
#include "Ui/Screens/ChallengeSelectNativeViewController.h"
#include "Ui/Screens/ChallengeTextNativeViewController.h"
#include "Ui/Screens/VCFactory.h"
#include "bench/Allocations.h"
#include "bench/LoopPlatform.h"
#include "bench/Silence.h"
#include "bench/Timing.h"
#include "tests/support/Messages.h"
#include "tests/support/PlayedAcs.h"

#include <algorithm>
#include <cstdio>
#include <optional>

#include <malloc.h>

namespace korvane::bench {

namespace {

constexpr const char* kDirectoryServerID = "A000000999";
constexpr std::size_t kExchanges = 4;

std::size_t heapNow() {
    const struct mallinfo2 heap = ::mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

JSON messageWithScreen(const std::string& uiType) {
    JSON message = validCResJSON();
    message["acsUiType"] = uiType;
    message.update(JSON::object({{"resendInformationLabel", "Send again"},
                                 {"oobContinueLabel", "Continue"},
                                 {"whitelistingInfoText", "Trust this shop?"},
                                 {"whyInfoLabel", "Why?"},
                                 {"whyInfoText", "Your bank has to know that it is you who pays."},
                                 {"expandInfoLabel", "More"},
                                 {"expandInfoText", "You find more about this on the pages of your bank."},
                                 {"challengeSelectInfo", JSON::array({JSON::object({{"phone", "Phone"}}),
                                                                      JSON::object({{"mail", "Mail"}})})}}));
    const std::string page(2000, 'p');
    if (uiType == "05") message["acsHTML"] = base64URLEncodedString(asBytes(page));
    return message;
}

/// An application's window, with nothing on it.
struct Application {
    std::shared_ptr<UIWindow> window = std::make_shared<UIWindow>();
    std::shared_ptr<UIViewController> host = std::make_shared<UIViewController>();

    Application() {
        window->setRootViewController(host);
        window->makeKeyAndVisible();
    }

    template <class Screen>
    [[nodiscard]] std::shared_ptr<Screen> top() const {
        const auto root = std::dynamic_pointer_cast<UINavigationController>(host->presentedViewController());
        auto screen = root ? std::dynamic_pointer_cast<Screen>(root->topViewController()) : nullptr;
        if (!screen) fatalError("The challenge shows another screen than it should.");
        return screen;
    }
};

void printScreens() {
    constexpr double kContainerTarget = 1000;
    constexpr double kLayoutTarget = 100;
    const struct {
        const char* container;
        const char* layout;
        const char* uiType;
    } kinds[] = {{"container of a text", "layout pass of a text", "01"},
                 {"container of a single choice", "layout pass of a single choice", "02"},
                 {"container of choices", "layout pass of choices", "03"},
                 {"container out of band", "layout pass out of band", "04"},
                 {"container of a page", "layout pass of a page", "05"}};
    std::printf("\n%-32s %12s %12s\n", "screens", "korvane us", "target us");
    const VCFactory factory(nullptr, nullptr, nullptr);
    for (const auto& kind : kinds) {
        const CRes cRes = CRes::decode(messageWithScreen(kind.uiType).dump());
        printLine(kind.container, medianOf([&] {
                      return microsecondsOf(
                          [&] { static_cast<void>(factory.getViewControllerContainer(cRes)); });
                  }),
                  kContainerTarget);
        const auto container = factory.getViewControllerContainer(cRes);
        const auto view = container.controllersMap().at(Orientation::PORTRAIT)->view();
        double width = 390;
        // Another width each time, so that every text breaks anew.
        printLine(kind.layout, medianOf([&] {
                      width = width == 390 ? 380 : 390;
                      return microsecondsOf([&] {
                          view->setFrame({{0, 0}, {width, 844}});
                          view->layoutIfNeeded();
                      });
                  }),
                  kLayoutTarget);
    }
}

/// One session's values: what the application gives the challenge, and the ACS's answers, sealed before.
struct Session {
    ChallengeParameters parameters;
    std::vector<Bytes> answers;
};

Session makeSession(const PlayedAcs& acs, const std::string& sdkKey, const std::string& sdkTransID) {
    const SecretBytes key =
        peerKey(acs.ephemeral, ECPublicKey::decode(JSON::parse(sdkKey)), kReferenceNumber);
    Session session{validParameters(), {}};
    session.parameters.setAcsSignedContent(acs.signedContent());
    const char* const kinds[kExchanges] = {"01", "02", "04", nullptr};
    for (std::size_t index = 0; index < kExchanges; ++index) {
        JSON message = kinds[index] ? messageWithScreen(kinds[index]) : finalCResJSON();
        message["acsCounterAtoS"] = "00" + std::to_string(index);
        message["sdkTransID"] = sdkTransID;
        session.answers.push_back(toBytes(PlayedAcs::sealed(message.dump(), key)));
    }
    return session;
}

class Endings final : public ChallengeStatusReceiver {
public:
    void completed(const CompletionEvent&) override { ++completed_; }
    void cancelled() override {}
    void timedout() override {}
    void protocolError(const ProtocolErrorEvent&) override {}
    void runtimeError(const RuntimeErrorEvent&) override {}

    [[nodiscard]] int completedCount() const { return completed_; }

private:
    int completed_ = 0;
};

/// Challenges one after the other, each on a transaction of its own.
class Challenges {
public:
    explicit Challenges(LoopPlatform& platform) : platform_(platform) {
        struct Producer : TransactionCertsProducerProtocol {
            explicit Producer(TransactionCerts given) : certs(std::move(given)) {}
            TransactionCerts getCerts(const std::string&) override { return certs; }
            const TransactionCerts certs;
        };
        service_.setCertProducer(std::make_shared<Producer>(certificates()));
        service_.initialize(std::make_shared<ConfigParameters>(), nullptr, nullptr, Locale{"en_GB"});
        platform_.answer = [this](const URLRequest&) {
            noteHeap();
            return session_.answers.at(next_++);
        };
    }

    /// All that comes before the challenge.
    void prepare() {
        transaction_ = service_.createTransaction(kDirectoryServerID, "2.2.0");
        const auto request = transaction_->getAuthenticationRequestParameters();
        session_ = makeSession(acs_, request.getSDKEphemeralPublicKey(), request.getSDKTransactionID());
        next_ = 0;
    }

    /// From the application's call to its end, with all screens.
    void play() {
        const int before = endings_->completedCount();
        transaction_->doChallenge(std::make_shared<ChallengeParameters>(session_.parameters), endings_, 5);
        goOn();
        const auto text = application_.top<ChallengeTextNativeViewController>();
        text->otp->setText("123456");
        press(*text->submitButton.get());
        const auto list = application_.top<ChallengeSingleSelectNativeViewController>();
        press(*std::static_pointer_cast<ChallengeTableViewCell>(list->tableView->visibleCells().at(1))
                   ->button());
        press(*list->nextButton.get());
        press(*application_.top<ChallengeOobNativeViewController>()->continueButton.get());
        transaction_ = nullptr;
        if (endings_->completedCount() != before + 1) fatalError("The challenge did not come to its end.");
    }

    /// The same challenge's cryptography alone, on a channel of its own.
    [[nodiscard]] double cryptography() const {
        KeysContainer keys(certificates());
        const std::string sdkKey = keys.getEphemeralPublicKey().value();
        const Session session = makeSession(acs_, sdkKey, kSdkTransID);
        const Bytes request(300, 'r');
        return microsecondsOf([&] {
            keys.parseAcsSignedContent(session.parameters.getAcsSignedContent(), kReferenceNumber);
            for (const Bytes& answer : session.answers) {
                static_cast<void>(keys.encryptCReq(request, kAcsTransID));
                static_cast<void>(keys.decryptCRes(answer));
            }
        });
    }

    /// The most that the heap holds beyond what it held before, in bytes.
    [[nodiscard]] std::size_t mostHeap() {
        prepare();
        const std::size_t before = heapNow();
        mostHeap_ = before;
        play();
        return mostHeap_ - before;
    }

private:
    [[nodiscard]] TransactionCerts certificates() const {
        return {acs_.leaf.der, acs_.root.der, CertAlgorithm::EC, kDirectoryServerID};
    }
    void press(UIControl& control) {
        control.sendActions(ControlEvent::touchUpInside);
        goOn();
    }
    /// Past the spinner and the answer, and not to the end of the time.
    void goOn() {
        platform_.runFor(Seconds{3});
        noteHeap();
    }
    void noteHeap() { mostHeap_ = std::max(mostHeap_, heapNow()); }

    LoopPlatform& platform_;
    PlayedAcs acs_;
    ThreeDS2Service service_;
    Application application_;
    std::shared_ptr<Endings> endings_ = std::make_shared<Endings>();
    std::shared_ptr<Transaction> transaction_;
    Session session_;
    std::size_t next_ = 0;
    std::size_t mostHeap_ = 0;
};

void printWholeChallenge(LoopPlatform& platform) {
    Challenges challenges(platform);
    std::optional<Silence> silence(std::in_place);
    const double whole = medianOf([&] {
        challenges.prepare();
        return microsecondsOf([&] { challenges.play(); });
    });
    const double cryptography = medianOf([&] { return challenges.cryptography(); });
    const Allocations both = allocationsOf([&] {
        challenges.prepare();
        challenges.play();
    });
    const Allocations before = allocationsOf([&] { challenges.prepare(); });
    const std::size_t most = challenges.mostHeap();
    silence.reset();
    std::printf(
        "\na challenge of %zu exchanges: %.0f us of CPU, of which its cryptography is %.0f us (%.0f %%); "
        "%zu heap allocations and %zu of OpenSSL; %.0f KiB of heap at the most\n",
        kExchanges, whole, cryptography, 100 * cryptography / whole, both.ours - before.ours,
        both.openssl - before.openssl, static_cast<double>(most) / 1024);
}

} // namespace

void printChallenge() {
    LoopPlatform platform;
    platform.script().mainBundlePath = KORVANE_MAIN_BUNDLE;
    platform.script().bounds = {{0, 0}, {390, 844}};
    printScreens();
    printWholeChallenge(platform);
}

} // namespace korvane::bench
