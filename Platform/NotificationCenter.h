#pragma once

#include "Platform/CGGeometry.h"
#include "Platform/Export.h"

#include <functional>
#include <memory>
#include <string_view>

namespace korvane {

/// News for whoever asked for it.
struct Notification {
    std::string_view name;
    /// Of a keyboard's coming and going: where it will lie then, in the screen's coordinates.
    CGRect keyboardFrameEnd = {};
};

/// An observer's place in a notification centre, which it leaves when this object dies or is reset. It may
/// outlive the centre. Any thread.
class KORVANE_EXPORT NotificationObserver {
public:
    NotificationObserver() = default;
    explicit NotificationObserver(std::shared_ptr<void> place) : place_(std::move(place)) {}

    void reset() { place_.reset(); }
    explicit operator bool() const { return place_ != nullptr; }

private:
    std::shared_ptr<void> place_;
};

/// Hands notifications on to observers of their name. Any thread.
class KORVANE_EXPORT NotificationCenter {
public:
    using Work = std::function<void(const Notification&)>;

    NotificationCenter();

    /// The one of the process's platform.
    [[nodiscard]] static NotificationCenter& defaultCenter();

    /// @param name  a literal.
    /// @param work  runs on the poster's thread; it must not hold the observer (see `weakly`).
    [[nodiscard]] NotificationObserver addObserver(std::string_view name, Work work);

    /// Runs the work of everybody who observes the name, in the order in which they came. One who leaves
    /// meanwhile is not called any more; one who comes waits for the next time.
    void post(const Notification& notification);

private:
    struct Places;

    std::shared_ptr<Places> places_;
};

} // namespace korvane
