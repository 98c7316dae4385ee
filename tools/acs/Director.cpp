#include "tools/acs/Director.h"

#include <algorithm>

namespace korvane::acs {

namespace {

bool isAccepted(const JSON& accepts, const JSON& creq) {
    return std::all_of(accepts.items().begin(), accepts.items().end(), [&](const auto& condition) {
        const auto found = creq.find(condition.key());
        const JSON& values = condition.value();
        return found != creq.end() && std::find(values.begin(), values.end(), *found) != values.end();
    });
}

} // namespace

Cue Director::next(const JSON& creq) {
    if (creq.contains("challengeCancel")) return end(scenario_.failure);
    if (!step_) return enter(0);
    const Step& step = scenario_.steps[*step_];
    return creq.value("resendChallenge", "N") == "Y" ? show(step) : judge(step, creq);
}

Cue Director::judge(const Step& step, const JSON& creq) {
    ++answers_;
    if (answers_ >= step.passesFrom && isAccepted(step.accepts, creq)) return enter(*step_ + 1);
    if (answers_ >= step.attempts) return end(scenario_.failure);
    Cue cue = show(step);
    for (const auto& [name, value] : step.retry.items())
        cue.members[name] = value;
    return cue;
}

Cue Director::enter(std::size_t step) {
    if (step == scenario_.steps.size()) return end(scenario_.success);
    step_ = step;
    answers_ = 0;
    return show(scenario_.steps[step]);
}

Cue Director::show(const Step& step) {
    return {step.screen, false, step.fault};
}

Cue Director::end(const Ending& ending) {
    return {JSON{{"transStatus", ending.transStatus}}, true, ending.fault};
}

} // namespace korvane::acs
