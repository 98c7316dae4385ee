#include "tools/challenge/play/Follower.h"

namespace korvane::challenge {

namespace {

/// An event as a text: "completed {...}".
std::string described(const JSON& event) {
    JSON rest = event;
    rest.erase("event");
    const std::string name = event.value("event", "nothing");
    return rest.empty() ? name : name + " " + rest.dump(-1, ' ', false, JSON::error_handler_t::replace);
}

} // namespace

std::string Follower::place() const {
    return step_ < plan_.steps.size() ? "screen " + std::to_string(step_ + 1) : "ending";
}

std::string Follower::cause() const {
    if (step_ == 0) return "start";
    return "screen " + std::to_string(step_) + ", " +
           plan_.steps[step_ - 1].action["action"].get<std::string>();
}

std::optional<JSON> Follower::take(const JSON& event) {
    const std::string name = event.value("event", "");
    if (name == "authenticationRequest") {
        outcome_.sdkTransactionID = event.value("sdkTransId", "");
        begin_ = PlayClock::now();
        return std::nullopt;
    }
    if (hasLeftPlan()) return std::nullopt;
    if (name == "screen") return takeScreen(event);
    if (name == "error" || name == "sdkError")
        differ(cause() + ": " + event.value("message", ""));
    else
        takeEnding(event);
    return std::nullopt;
}

std::optional<JSON> Follower::takeScreen(const JSON& event) {
    if (step_ == plan_.steps.size()) {
        differ(place() + ": expected " + described(plan_.ending) + ", got " + described(event));
        return std::nullopt;
    }
    const PlannedStep& step = plan_.steps[step_];
    for (const std::string& difference : differences(step.screen, event))
        differ(place() + ": " + difference);
    if (hasLeftPlan()) return std::nullopt;
    ++step_;
    return step.action;
}

void Follower::takeEnding(const JSON& event) {
    hasEnded_ = true;
    stopTime();
    const bool isEarly = step_ < plan_.steps.size();
    if (isEarly) differ(place() + ": expected a screen, got " + described(event));
    // Of another ending the members say nothing.
    else if (plan_.ending["event"] != event["event"])
        differ(place() + ": expected " + described(plan_.ending) + ", got " + described(event));
    else
        for (const std::string& difference : differences(plan_.ending, event))
            differ(place() + ": " + difference);
}

void Follower::end(const std::string& manner) {
    if (hasEnded_) return;
    stopTime();
    if (!hasLeftPlan()) differ(cause() + ": got no event any more: " + manner);
}

void Follower::stopTime() {
    if (begin_) outcome_.time = PlayClock::now() - *begin_;
}

} // namespace korvane::challenge
