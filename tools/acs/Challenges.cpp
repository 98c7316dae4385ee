#include "tools/acs/Challenges.h"

namespace korvane::acs {

void Challenges::add(std::shared_ptr<Challenge> challenge) {
    const std::lock_guard lock(mutex_);
    forgetOld();
    const std::string& id = challenge->ids.acsTransID;
    births_.emplace_back(Clock::now(), id);
    challenges_.emplace(id, std::move(challenge));
}

std::shared_ptr<Challenge> Challenges::find(std::string_view acsTransID) {
    const std::lock_guard lock(mutex_);
    forgetOld();
    const auto found = challenges_.find(acsTransID);
    return found == challenges_.end() ? nullptr : found->second;
}

void Challenges::forgetOld() {
    const Clock::time_point oldest = Clock::now() - lifetime_;
    for (; !births_.empty() && births_.front().first <= oldest; births_.pop_front())
        challenges_.erase(births_.front().second);
}

} // namespace korvane::acs
