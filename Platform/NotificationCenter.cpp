#include "Platform/NotificationCenter.h"

#include "Platform/Platform.h"

#include <mutex>
#include <vector>

namespace korvane {

namespace {

/// Held by its observer alone.
struct Place {
    std::string_view name;
    NotificationCenter::Work work;
};

} // namespace

struct NotificationCenter::Places {
    std::mutex mutex;
    std::vector<std::weak_ptr<Place>> list;
};

NotificationCenter::NotificationCenter() : places_(std::make_shared<Places>()) {}

NotificationCenter& NotificationCenter::defaultCenter() {
    return Platform::current().notificationCenter();
}

NotificationObserver NotificationCenter::addObserver(std::string_view name, Work work) {
    auto place = std::make_shared<Place>(Place{name, std::move(work)});
    const std::scoped_lock lock(places_->mutex);
    std::erase_if(places_->list, [](const auto& other) { return other.expired(); });
    places_->list.push_back(place);
    return NotificationObserver(std::move(place));
}

void NotificationCenter::post(const Notification& notification) {
    std::vector<std::weak_ptr<Place>> present;
    {
        const std::scoped_lock lock(places_->mutex);
        present = places_->list;
    }
    for (const auto& weak : present) {
        const auto place = weak.lock();
        if (place && place->name == notification.name) place->work(notification);
    }
}

} // namespace korvane
