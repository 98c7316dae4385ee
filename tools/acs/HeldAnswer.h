#pragma once

#include "tools/acs/Faults.h"

#include <functional>
#include <mutex>
#include <optional>
#include <string>

namespace korvane::acs {

/// An answer that waits for a person, who may give it another text. Any thread.
class HeldAnswer {
public:
    /// What becomes of it in the end.
    struct Ends {
        /// Seals what goes out: the person's text, or its own where there is none.
        std::function<Answer(const std::optional<std::string>& edited)> send;
        /// Nobody waits for it any more.
        std::function<void()> abandon;
    };

    HeldAnswer(std::string transaction, std::string text, Ends ends);
    HeldAnswer(const HeldAnswer&) = delete;
    HeldAnswer& operator=(const HeldAnswer&) = delete;
    ~HeldAnswer();

    [[nodiscard]] const std::string& transaction() const noexcept { return transaction_; }
    [[nodiscard]] const std::string& text() const noexcept { return text_; }

    /// Lets it go.
    /// @return false where that has been decided already.
    bool decide(std::optional<std::string> edited);
    /// A descriptor, readable once it has been let go.
    [[nodiscard]] int decided() const noexcept { return decided_; }

    /// For who waits: what goes out now, with or without a decision.
    [[nodiscard]] Answer release();
    /// For who waits: it will not go out.
    void abandon();

private:
    const std::string transaction_;
    const std::string text_;
    const Ends ends_;
    const int decided_;
    std::mutex mutex_;
    bool isOver_ = false;
    std::optional<std::string> edited_;
};

} // namespace korvane::acs
