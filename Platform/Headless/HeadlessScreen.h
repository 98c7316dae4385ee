#pragma once

#include "Platform/UIScreen.h"

#include <mutex>

namespace korvane {

/// Empty, until it is given a size for screens that nobody looks at.
class HeadlessScreen final : public UIScreen {
public:
    [[nodiscard]] CGRect bounds() const override {
        const std::scoped_lock lock(mutex_);
        return bounds_;
    }
    void setBounds(const CGRect& bounds) {
        const std::scoped_lock lock(mutex_);
        bounds_ = bounds;
    }

private:
    mutable std::mutex mutex_;
    CGRect bounds_;
};

} // namespace korvane
