#pragma once

#include <memory>
#include <mutex>
#include <utility>

namespace korvane {

/// A shared pointer that one thread replaces while others read it. Any thread. (`std::atomic` of shared
/// pointers is not in every standard library that we build with.)
template <class T>
class SharedField {
public:
    [[nodiscard]] std::shared_ptr<T> get() const {
        const std::lock_guard lock(mutex_);
        return pointer_;
    }

    /// @return what stood there before.
    std::shared_ptr<T> exchange(std::shared_ptr<T> pointer) {
        const std::lock_guard lock(mutex_);
        return std::exchange(pointer_, std::move(pointer));
    }

    void set(std::shared_ptr<T> pointer) { exchange(std::move(pointer)); }

private:
    mutable std::mutex mutex_;
    std::shared_ptr<T> pointer_;
};

} // namespace korvane
