#include "Platform/Logger.h"

namespace korvane {

Logger& Logger::shared() {
    static Logger logger;
    return logger;
}

std::shared_ptr<IKorvaneLogger> Logger::debug() const {
    if (!present_.load(std::memory_order_acquire)) return nullptr;
    const std::lock_guard lock(mutex_);
    return debug_;
}

/// The old logger goes with the parameter, after the lock: its end may log.
void Logger::setDebug(std::shared_ptr<IKorvaneLogger> logger) {
    const std::lock_guard lock(mutex_);
    debug_.swap(logger);
    present_.store(debug_ != nullptr, std::memory_order_release);
}

} // namespace korvane
