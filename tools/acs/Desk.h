#pragma once

#include "tools/acs/HeldAnswer.h"
#include "tools/acs/Scenarios.h"

#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace korvane::acs {

/// What a person has laid out for the transactions to come, and the answers that wait for a decision.
/// Any thread.
class Desk {
public:
    /// Lays out the scenario of the next transaction; no value takes it back.
    void setNext(std::optional<Play> play);
    /// Takes what was laid out.
    [[nodiscard]] std::optional<Play> takeNext();

    /// Whether answers wait from now on. Those that do go when it ends.
    void setHolding(bool isHolding);
    /// @return null where nothing is to wait, and where so many do that the page would find no connection.
    [[nodiscard]] std::shared_ptr<HeldAnswer> hold(const std::string& transaction, const std::string& text,
                                                   HeldAnswer::Ends ends);
    /// Lets an answer go, with another text where there is one.
    /// @return false for one that does not wait any more.
    bool letGo(std::size_t number, std::optional<std::string> edited);

    /// `{"next","holding","held":[{"number","transaction","text"}]}`
    [[nodiscard]] JSON state();

private:
    using ByNumber = std::map<std::size_t, std::weak_ptr<HeldAnswer>>;
    static constexpr std::size_t kMostHeld = 64;

    void forgetGone();

    std::mutex mutex_;
    std::optional<Play> next_;
    bool isHolding_ = false;
    std::size_t lastNumber_ = 0;
    ByNumber held_;
};

} // namespace korvane::acs
