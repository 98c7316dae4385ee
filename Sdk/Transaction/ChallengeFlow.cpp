#include "Sdk/Transaction/ChallengeFlow.h"

#include "Platform/Platform.h"

#include <cstdio>

namespace korvane {

std::shared_ptr<ChallengeFlow> ChallengeFlow::make(std::shared_ptr<Exchange> exchange, ChallengeLook look) {
    auto flow = std::make_shared<ChallengeFlow>(Private{}, std::move(exchange), std::move(look));
    const std::weak_ptr<ChallengeFlow> weak = flow;
    flow->screens_ = std::make_shared<ScreenStack>([weak] {
        const auto self = weak.lock();
        return self && self->mayTurn();
    });
    flow->exchange_->setTimedOut([weak] {
        if (const auto self = weak.lock()) self->cResTimedOut();
    });
    return flow;
}

ChallengeFlow::ChallengeFlow(Private, std::shared_ptr<Exchange> exchange, ChallengeLook look)
    : exchange_(std::move(exchange)), look_(std::move(look)),
      initCReqErrorSendCompletetionSemaphore_(Platform::current().dispatch().makeSemaphore(0)) {}

ChallengeFlow::~ChallengeFlow() {
    std::puts("Transaction deinit");
}

std::optional<std::string> ChallengeFlow::challengeData() const {
    const auto data = challengeData_.get();
    return data ? std::optional(data->text()) : std::nullopt;
}

/// Screens on their way off may still turn.
bool ChallengeFlow::mayTurn() const noexcept {
    const State state = state_;
    return state == State::standing || state == State::ended;
}

} // namespace korvane
