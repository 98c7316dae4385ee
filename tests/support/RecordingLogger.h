#pragma once

#include "Platform/Logger.h"

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace korvane {

/// Keeps the log lines of its lifetime, each as "file function: message".
class RecordingLogger {
public:
    RecordingLogger() : lines_(std::make_shared<Lines>()) { Logger::shared().setDebug(lines_); }
    RecordingLogger(const RecordingLogger&) = delete;
    RecordingLogger& operator=(const RecordingLogger&) = delete;
    ~RecordingLogger() { Logger::shared().setDebug(nullptr); }

    [[nodiscard]] std::vector<std::string> lines() const {
        const std::lock_guard lock(lines_->mutex);
        return lines_->texts;
    }

private:
    struct Lines : IKorvaneLogger {
        void log(const std::string& message, const char* file, const char* function, unsigned) override {
            const std::lock_guard lock(mutex);
            texts.push_back(std::string(file) + " " + function + ": " + message);
        }

        std::mutex mutex;
        std::vector<std::string> texts;
    };

    std::shared_ptr<Lines> lines_;
};

} // namespace korvane
