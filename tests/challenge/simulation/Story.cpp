#include "tests/challenge/simulation/Story.h"

#include "Crypt/JWS.h"
#include "Platform/LetterCase.h"
#include "Platform/View/UIApplication.h"
#include "tests/challenge/EndingReceiver.h"
#include "tests/challenge/SimulatedApplication.h"

namespace korvane::simulation {

namespace {

const TestIdentity& stranger() {
    static const TestIdentity identity = selfSigned({});
    return identity;
}

class Stage {
public:
    explicit Stage(const Plan& plan);

    void play();
    [[nodiscard]] StoryResult takeResult() { return std::move(result_); }

private:
    void createTransaction();
    void spoil(ChallengeParameters& parameters) const;
    void startChallenge(std::shared_ptr<ChallengeParameters> parameters);
    void hear(const std::string& ending);
    void scheduleTurns();
    void scheduleDismissal();
    void note(const std::string& text, bool isOfRecord);
    void fault(const std::string& text);
    void end();
    [[nodiscard]] std::string anonymous(std::string text) const;

    const Plan& plan_;
    StoryResult result_;
    SimulatedApplication application_;
    std::string upperId_;
    Model model_;
    std::unique_ptr<Cardholder> cardholder_;
    std::size_t replies_ = 0;
    ChallengeParameters goodParameters_;
    bool hasTriedAgain_ = false;
};

Stage::Stage(const Plan& plan) : plan_(plan), application_(plan.seed, plan.heldAtFirst), model_(plan) {
    UIApplication::shared().setPlaysAnimations(plan.playsAnimations);
    cardholder_ = std::make_unique<Cardholder>(plan, application_.platform, model_, *application_.window);
    cardholder_->complain = [this](const std::string& text) { fault("screen: " + text); };
    cardholder_->tell = [this](const std::string& text) { note(text, false); };
    application_.acs.imageAnswer = {toBytes("GIF89a\x01\x01"), std::nullopt, Seconds(plan.imageDelay)};
    application_.acs.furtherAnswers = [this](SimulatedAcs& acs) {
        CReq cReq = acs.requests().back();
        if (cReq.sdkTransID == lowercased(upperId_)) cReq.sdkTransID = kLowerId;
        note(describe(cReq), true);
        return simulation::play(plan_.reply(replies_++), acs);
    };
    application_.acs.errorAnswer = [this](const Erro& erro) {
        note(describeErro(erro.errorCode.value_or("none"), erro.errorDetail.value_or("none")), true);
        std::optional<Seconds> delay;
        if (plan_.erroDelay) delay = *plan_.erroDelay;
        return ScriptedAnswer{Bytes{}, std::nullopt, delay};
    };
}

void Stage::createTransaction() {
    application_.create(plan_.messageVersion);
    upperId_ = application_.peer.sdkTransactionID();
    if (plan_.hasRequestorURL) application_.parameters->setTreeDSRequestorAppURL(kRequestorURL);
    goodParameters_ = *application_.parameters;
    spoil(*application_.parameters);
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

/// The device is turned whatever the main queue does; the application hears of it when that is free.
void Stage::scheduleTurns() {
    Dispatch& dispatch = application_.platform.dispatch();
    for (const Turn& turn : plan_.turns)
        dispatch.globalQueue().asyncAfter(
            Seconds(turn.at), std::make_shared<DispatchWorkItem>([this, &turn, &dispatch] {
                application_.hold(turn.to);
                note(std::string("device: turned to ") + nameOf(turn.to), false);
                dispatch.mainQueue().async([] { UIApplication::shared().deviceDidRotate(); });
            }));
}

void Stage::scheduleDismissal() {
    if (!plan_.dismissal) return;
    Dispatch& dispatch = application_.platform.dispatch();
    dispatch.globalQueue().asyncAfter(Seconds(*plan_.dismissal),
                                      std::make_shared<DispatchWorkItem>([this, &dispatch] {
                                          dispatch.mainQueue().async([this] {
                                              note("application takes the screens away", false);
                                              application_.host->dismiss(UIAnimated::no);
                                          });
                                      }));
}

void Stage::startChallenge(std::shared_ptr<ChallengeParameters> parameters) {
    const auto receiver =
        std::make_shared<EndingReceiver>([this](const std::string& ending) { hear(ending); });
    application_.peer.transaction->doChallenge(std::move(parameters), receiver, plan_.minutes);
}

void Stage::hear(const std::string& ending) {
    note("application: " + anonymous(ending), true);
    const bool isFailure = ending.starts_with("runtimeError");
    if (!plan_.triesAgain || !isFailure || std::exchange(hasTriedAgain_, true)) return;
    startChallenge(std::make_shared<ChallengeParameters>(goodParameters_));
}

void Stage::play() {
    createTransaction();
    startChallenge(application_.parameters);
    const std::weak_ptr<Transaction> transaction = application_.peer.transaction;
    if (!plan_.keepsTransaction) application_.peer.transaction = nullptr;
    scheduleTurns();
    scheduleDismissal();
    cardholder_->begin();
    application_.platform.runUntilIdle();
    model_.runToTheEnd();
    end();
    if (!transaction.expired()) fault("left alive: the transaction");
}

/// Whatever happened, nothing of the challenge lives on once the application has let go of it.
void Stage::end() {
    application_.peer.transaction = nullptr;
    application_.host->dismiss(UIAnimated::no);
    application_.platform.runUntilIdle();
    model_.leave();
    for (const std::string& text : differences(result_.record, model_.record()))
        fault(text);
    for (const std::string& text : brokenRules(result_.record, model_.allowedEndings()))
        fault(text);
    if (application_.strayChanges > 0)
        fault("queue: " + std::to_string(application_.strayChanges) +
              " changes of the screens beside the main queue");
    const LeftAlive left = application_.platform.leftAlive();
    if (left != LeftAlive{})
        fault("left alive: " + std::to_string(left.items) + " items, " + std::to_string(left.timers) +
              " timers, " + std::to_string(left.tasks) + " requests, " + std::to_string(left.blocked) +
              " blocked");
    if (const std::size_t screens = cardholder_->seenAlive())
        fault("left alive: " + std::to_string(screens) + " controllers");
}

void Stage::note(const std::string& text, bool isOfRecord) {
    Line line{std::chrono::round<Time>(application_.platform.now()), text};
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
