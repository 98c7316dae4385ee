#pragma once

#include "Platform/UIScreen.h"

#include <mutex>

namespace korvane {

/// A screen as large as it was last told; empty before. Any thread.
class SizedScreen : public UIScreen {
public:
    [[nodiscard]] CGRect bounds() const override {
        const std::scoped_lock lock(mutex_);
        return bounds_;
    }
    void setSize(CGSize size) {
        const std::scoped_lock lock(mutex_);
        bounds_ = {{0, 0}, size};
    }

private:
    mutable std::mutex mutex_;
    CGRect bounds_;
};

} // namespace korvane
