#include "tools/acs/Desk.h"

#include <utility>

namespace korvane::acs {

void Desk::setNext(std::optional<Play> play) {
    const std::lock_guard lock(mutex_);
    next_ = std::move(play);
}

std::optional<Play> Desk::takeNext() {
    const std::lock_guard lock(mutex_);
    return std::exchange(next_, std::nullopt);
}

void Desk::setHolding(bool isHolding) {
    const std::lock_guard lock(mutex_);
    isHolding_ = isHolding;
    if (isHolding) return;
    for (const auto& [number, answer] : std::exchange(held_, {}))
        if (const auto held = answer.lock()) held->decide(std::nullopt);
}

std::shared_ptr<HeldAnswer> Desk::hold(const std::string& transaction, const std::string& text,
                                       HeldAnswer::Ends ends) {
    const std::lock_guard lock(mutex_);
    forgetGone();
    if (!isHolding_ || held_.size() >= kMostHeld) return nullptr;
    auto held = std::make_shared<HeldAnswer>(transaction, text, std::move(ends));
    held_.emplace(++lastNumber_, held);
    return held;
}

bool Desk::letGo(std::size_t number, std::optional<std::string> edited) {
    const std::lock_guard lock(mutex_);
    const auto found = held_.find(number);
    if (found == held_.end()) return false;
    const auto held = found->second.lock();
    held_.erase(found);
    return held && held->decide(std::move(edited));
}

/// Who waits for an answer owns it.
void Desk::forgetGone() {
    std::erase_if(held_, [](const auto& entry) { return entry.second.expired(); });
}

JSON Desk::state() {
    const std::lock_guard lock(mutex_);
    forgetGone();
    JSON held = JSON::array();
    for (const auto& [number, answer] : held_)
        if (const auto waiting = answer.lock())
            held.push_back(
                {{"number", number}, {"transaction", waiting->transaction()}, {"text", waiting->text()}});
    return {{"next", next_ ? JSON(next_->name) : JSON()}, {"holding", isHolding_}, {"held", std::move(held)}};
}

} // namespace korvane::acs
