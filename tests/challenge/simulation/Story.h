#pragma once

#include "Platform/LetterCase.h"
#include "tests/challenge/simulation/Cardholder.h"

namespace korvane::simulation {

/// One plan, played on a simulation of its own and compared with what the model says.
class Story {
public:
    explicit Story(const Plan& plan) : plan_(plan), application_(plan.seed, plan.heldAtFirst) {
        UIApplication::shared().setPlaysAnimations(plan.playsAnimations);
        application_.hear = [this](const std::string& ending) { hear(ending); };
        application_.acs.imageAnswer = {toBytes("GIF89a\x01\x01"), std::nullopt, Seconds(plan.imageDelay)};
        application_.acs.answer = [this](SimulatedAcs& acs) {
            record(describe(acs.requests().back()));
            const Reply& reply = plan_.reply(acs.requests().size() - 1);
            tell("reply: " + describe(reply, acs));
            return simulation::play(reply, acs);
        };
        application_.acs.errorAnswer = [this](const Erro& erro) {
            record(describeErro(erro.errorCode.value_or("none"), erro.errorDetail.value_or("none")));
            const auto delay = plan_.erroDelay ? std::optional<Seconds>(*plan_.erroDelay) : std::nullopt;
            return ScriptedAnswer{Bytes{}, std::nullopt, delay};
        };
    }

    /// What the application heard, the ACS received, and the cardholder did, and what must not be of it.
    struct Told {
        Record lines;
        std::vector<std::string> faults;
    };
    static Told play(const Plan& plan) {
        Story story(plan);
        story.play();
        return std::move(story.told_);
    }

private:
    void play() {
        application_.create(plan_.messageVersion);
        upperId_ =
            uppercased(application_.transaction->getAuthenticationRequestParameters().getSDKTransactionID());
        if (plan_.hasRequestorURL) application_.parameters->setTreeDSRequestorAppURL(kRequestorURL);
        goodParameters_ = std::make_shared<ChallengeParameters>(*application_.parameters);
        plan_.startFault->spoil(*application_.parameters);
        application_.start(plan_.minutes);
        if (!plan_.keepsTransaction) application_.transaction = nullptr;
        scheduleTurnsAndDismissal();
        cardholder_.lookLater();
        application_.platform.runUntilIdle();
        model_.runToTheEnd();
        end();
    }

    void hear(const std::string& ending) {
        record("application: " + ending);
        if (!plan_.triesAgain || !goodParameters_ || !ending.starts_with("runtimeError")) return;
        application_.parameters = std::exchange(goodParameters_, nullptr);
        application_.start(plan_.minutes);
    }

    /// At its time, whatever the main queue does.
    void at(Time time, const DispatchQueue::Work& work) {
        application_.platform.dispatch().globalQueue().asyncAfter(Seconds(time),
                                                                  std::make_shared<DispatchWorkItem>(work));
    }

    void scheduleTurnsAndDismissal() {
        DispatchQueue& main = application_.platform.dispatch().mainQueue();
        for (const Turn& turn : plan_.turns)
            at(turn.at, [this, &turn, &main] {
                application_.hold(turn.to);
                tell("device: turned to " + std::to_string(static_cast<int>(turn.to)));
                main.async([] { UIApplication::shared().deviceDidRotate(); });
            });
        const auto dismiss = [this] {
            tell("application takes the screens away");
            application_.host->dismiss(UIAnimated::no);
        };
        if (plan_.dismissal) at(*plan_.dismissal, [&main, dismiss] { main.async(dismiss); });
    }

    /// Whatever happened, nothing of the challenge lives on once the application has let go of it.
    void end() {
        application_.transaction = nullptr;
        application_.host->dismiss(UIAnimated::no);
        application_.platform.runUntilIdle();
        model_.leave();
        findDifference();
        const LeftAlive left = application_.platform.leftAlive();
        const std::pair<const char*, std::size_t> counts[] = {
            {"changes of the screens beside the main queue", application_.strayChanges},
            {"pieces of work left alive", left.items + left.timers + left.tasks + left.blocked},
            {"controllers left alive", cardholder_.seenAlive()},
            {"challenges left alive", application_.receiver.expired() ? 0 : 1}};
        for (const auto& [name, count] : counts)
            if (count > 0) fault(std::to_string(count) + " " + name);
    }

    void findDifference() {
        const auto textAt = [](const Record& record, auto line) {
            return line == record.end() ? "nothing" : textOf(*line);
        };
        const auto [one, other] = std::ranges::mismatch(record_, model_.record());
        if (one != record_.end() || other != model_.record().end())
            fault("record: " + textAt(record_, one) + " instead of " + textAt(model_.record(), other));
    }

    /// Each transaction has another identifier, which is told by a name.
    void tell(std::string text) {
        for (const auto& [id, name] :
             {std::pair(upperId_, kUpperId), std::pair(lowercased(upperId_), kLowerId)})
            if (const auto at = text.find(id); at != std::string::npos) text.replace(at, id.size(), name);
        told_.lines.push_back({std::chrono::round<Time>(application_.platform.now()), std::move(text)});
    }
    void record(const std::string& text) {
        tell(text);
        record_.push_back(told_.lines.back());
    }
    void fault(const std::string& text) {
        told_.faults.push_back(text);
        tell("FAULT " + text);
    }

    const Plan& plan_;
    Told told_;
    /// Those of its lines that the model has as well.
    Record record_;
    SimulatedApplication application_;
    std::string upperId_;
    Model model_{plan_};
    Cardholder cardholder_{plan_, application_, model_,
                           [this](const std::string& text) { fault("screen: " + text); },
                           [this](const std::string& text) { tell(text); }};
    std::shared_ptr<ChallengeParameters> goodParameters_;
};

} // namespace korvane::simulation
