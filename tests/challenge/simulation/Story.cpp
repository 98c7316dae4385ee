#include "tests/challenge/simulation/Story.h"

#include "Crypt/JWS.h"
#include "Platform/LetterCase.h"
#include "Platform/View/UIApplication.h"
#include "Sdk/Service/ThreeDS2Service.h"
#include "tests/challenge/EndingReceiver.h"
#include "tests/support/SimulatedAcs.h"
#include "tests/support/SimulatedPlatform.h"
#include "tests/support/TransactionPeer.h"

namespace korvane::simulation {

namespace {

class Certificates final : public TransactionCertsProducerProtocol {
public:
    [[nodiscard]] TransactionCerts getCerts(const std::string& /*directoryServerID*/) override {
        return SimulatedAcs::certificates();
    }
};

class Receiver final : public EndingReceiver {
public:
    explicit Receiver(std::function<void(std::string)> heard) : heard_(std::move(heard)) {}

private:
    void hear(std::string ending) override { heard_(std::move(ending)); }

    std::function<void(std::string)> heard_;
};

const TestIdentity& stranger() {
    static const TestIdentity identity = selfSigned({});
    return identity;
}

CGRect boundsOf(UIDeviceOrientation orientation, const CGRect& before) {
    constexpr CGSize kUpright{390, 844};
    switch (orientation) {
    case UIDeviceOrientation::portrait: return {{0, 0}, kUpright};
    case UIDeviceOrientation::landscapeLeft:
    case UIDeviceOrientation::landscapeRight: return {{0, 0}, {kUpright.height, kUpright.width}};
    default: return before;
    }
}

class Stage {
public:
    explicit Stage(const Plan& plan);

    void play();
    [[nodiscard]] StoryResult takeResult() { return std::move(result_); }

private:
    void createTransaction();
    void spoil(ChallengeParameters& parameters) const;
    void scheduleTurns();
    void scheduleDismissal();
    void hold(UIDeviceOrientation orientation);
    void note(const std::string& text, bool isOfRecord);
    void fault(const std::string& text);
    void end();
    [[nodiscard]] std::string anonymous(std::string text) const;

    const Plan& plan_;
    StoryResult result_;
    SimulatedPlatform platform_;
    SimulatedAcs acs_{platform_};
    ThreeDS2Service service_;
    std::shared_ptr<UIWindow> window_;
    std::shared_ptr<UIViewController> host_;
    std::shared_ptr<ChallengeParameters> parameters_;
    TransactionPeer peer_;
    std::string upperId_;
    Model model_;
    std::unique_ptr<Cardholder> cardholder_;
    std::size_t replies_ = 0;
};

Stage::Stage(const Plan& plan) : plan_(plan), platform_(plan.seed), model_(plan) {
    platform_.script().mainBundlePath = KORVANE_MAIN_BUNDLE;
    hold(UIDeviceOrientation::portrait);
    hold(plan.heldAtFirst);
    UIApplication::shared().setPlaysAnimations(plan.playsAnimations);
    window_ = std::make_shared<UIWindow>();
    host_ = std::make_shared<UIViewController>();
    window_->setRootViewController(host_);
    window_->makeKeyAndVisible();
    service_.initialize(std::make_shared<ConfigParameters>(), nullptr, nullptr, Locale{"en-GB"});
    service_.setCertProducer(std::make_shared<Certificates>());
    cardholder_ = std::make_unique<Cardholder>(plan, platform_, model_, *window_);
    cardholder_->complain = [this](const std::string& text) { fault("screen: " + text); };
    cardholder_->tell = [this](const std::string& text) { note(text, false); };
    acs_.imageAnswer = {toBytes("GIF89a\x01\x01"), std::nullopt, Seconds(plan.imageDelay)};
    acs_.furtherAnswers = [this](SimulatedAcs& acs) {
        CReq cReq = acs.requests().back();
        if (cReq.sdkTransID == lowercased(upperId_)) cReq.sdkTransID = kLowerId;
        note(describe(cReq), true);
        return simulation::play(plan_.reply(replies_++), acs);
    };
    acs_.errorAnswer = [this](const Erro& erro) {
        note(describeErro(erro.errorCode.value_or("none"), erro.errorDetail.value_or("none")), true);
        std::optional<Seconds> delay;
        if (plan_.erroDelay) delay = *plan_.erroDelay;
        return ScriptedAnswer{Bytes{}, std::nullopt, delay};
    };
}

void Stage::createTransaction() {
    peer_.transaction = service_.createTransaction("any", plan_.messageVersion);
    upperId_ = peer_.sdkTransactionID();
    parameters_ = std::make_shared<ChallengeParameters>(
        acs_.accept(peer_.transaction->getAuthenticationRequestParameters()));
    if (plan_.hasRequestorURL) parameters_->setTreeDSRequestorAppURL(kRequestorURL);
    spoil(*parameters_);
}

void Stage::spoil(ChallengeParameters& parameters) const {
    switch (plan_.startFault) {
    case StartFault::none: break;
    case StartFault::noContent: parameters.acsSignedContent.reset(); break;
    case StartFault::noJWS: parameters.acsSignedContent = "a.b"; break;
    case StartFault::badSignature: {
        std::string& content = *parameters.acsSignedContent;
        char& changed = content[content.size() - 9];
        changed = changed == 'A' ? 'B' : 'A';
        break;
    }
    case StartFault::strangersChain: {
        const JWS jws(*parameters.acsSignedContent);
        parameters.acsSignedContent =
            PlayedAcs::signedBy(stranger(), {stranger().base64()}, JSON::parse(asText(jws.payload().data())));
        break;
    }
    case StartFault::noAcsTransID: parameters.acsTransactionId.reset(); break;
    }
}

void Stage::hold(UIDeviceOrientation orientation) {
    DeviceScript& script = platform_.script();
    script.orientation = orientation;
    script.bounds = boundsOf(orientation, script.bounds);
}

/// The device is turned whatever the main queue does; the application hears of it when that is free.
void Stage::scheduleTurns() {
    Dispatch& dispatch = platform_.dispatch();
    for (const Turn& turn : plan_.turns)
        dispatch.globalQueue().asyncAfter(
            Seconds(turn.at), std::make_shared<DispatchWorkItem>([this, &turn, &dispatch] {
                hold(turn.to);
                note(std::string("device: turned to ") + nameOf(turn.to), false);
                dispatch.mainQueue().async([] { UIApplication::shared().deviceDidRotate(); });
            }));
}

void Stage::scheduleDismissal() {
    if (!plan_.dismissal) return;
    Dispatch& dispatch = platform_.dispatch();
    dispatch.globalQueue().asyncAfter(Seconds(*plan_.dismissal),
                                      std::make_shared<DispatchWorkItem>([this, &dispatch] {
                                          dispatch.mainQueue().async([this] {
                                              note("application takes the screens away", false);
                                              host_->dismiss(UIAnimated::no);
                                          });
                                      }));
}

void Stage::play() {
    createTransaction();
    const auto receiver = std::make_shared<Receiver>(
        [this](std::string ending) { note("application: " + anonymous(std::move(ending)), true); });
    peer_.transaction->doChallenge(parameters_, receiver, plan_.minutes);
    const std::weak_ptr<Transaction> transaction = peer_.transaction;
    if (!plan_.keepsTransaction) peer_.transaction = nullptr;
    scheduleTurns();
    scheduleDismissal();
    cardholder_->begin();
    platform_.runUntilIdle();
    model_.runToTheEnd();
    end();
    if (!transaction.expired()) fault("left alive: the transaction");
}

/// Whatever happened, nothing of the challenge lives on once the application has let go of it.
void Stage::end() {
    peer_.transaction = nullptr;
    host_->dismiss(UIAnimated::no);
    platform_.runUntilIdle();
    model_.leave();
    for (const std::string& text : differences(result_.record, model_.record()))
        fault(text);
    for (const std::string& text : brokenRules(result_.record, model_.allowedEndings()))
        fault(text);
    const LeftAlive left = platform_.leftAlive();
    if (left != LeftAlive{})
        fault("left alive: " + std::to_string(left.items) + " items, " + std::to_string(left.timers) +
              " timers, " + std::to_string(left.tasks) + " requests, " + std::to_string(left.blocked) +
              " blocked");
    if (const std::size_t screens = cardholder_->seenAlive())
        fault("left alive: " + std::to_string(screens) + " controllers");
}

void Stage::note(const std::string& text, bool isOfRecord) {
    Line line{std::chrono::round<Time>(platform_.now()), text};
    result_.story.push_back(line);
    if (isOfRecord) result_.record.push_back(std::move(line));
}

void Stage::fault(const std::string& text) {
    result_.faults.push_back(text);
    note("FAULT " + text, false);
}

std::string Stage::anonymous(std::string text) const {
    for (const auto& [id, name] : {std::pair(upperId_, kUpperId), std::pair(lowercased(upperId_), kLowerId)})
        if (const auto at = text.find(id); at != std::string::npos) text.replace(at, id.size(), name);
    return text;
}

} // namespace

StoryResult playStory(const Plan& plan) {
    Stage stage(plan);
    stage.play();
    return stage.takeResult();
}

} // namespace korvane::simulation
