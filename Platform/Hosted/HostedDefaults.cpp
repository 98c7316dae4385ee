#include "Platform/Hosted/HostedDefaults.h"

#include "Platform/JSON.h"

namespace korvane {

std::optional<std::string> HostedDefaults::valueForKey(const std::string& key) const {
    {
        const std::lock_guard lock(mutex_);
        if (const auto found = unsaved_.find(key); found != unsaved_.end()) return found->second;
    }
    auto stored = host_.load(key);
    return stored && isUtf8(*stored) ? std::move(stored) : std::nullopt;
}

/// It counts as unsaved until the host has it, so that no reader meets the older text in between.
void HostedDefaults::setObject(const std::string& object, const std::string& key) {
    if (!isUtf8(object) || !isUtf8(key)) return;
    {
        const std::lock_guard lock(mutex_);
        unsaved_.insert_or_assign(key, object);
    }
    synchronize();
}

bool HostedDefaults::synchronize() {
    std::map<std::string, std::string> waiting;
    {
        const std::lock_guard lock(mutex_);
        waiting = unsaved_;
    }
    for (const auto& [key, text] : waiting) {
        if (!host_.save(key, text)) continue;
        const std::lock_guard lock(mutex_);
        if (const auto found = unsaved_.find(key); found != unsaved_.end() && found->second == text)
            unsaved_.erase(found);
    }
    const std::lock_guard lock(mutex_);
    return unsaved_.empty();
}

} // namespace korvane
