#pragma once

#include "Cardholder/Cardholder.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "Sdk/Service/ThreeDS2Service.h"
#include "tools/challenge/Authentication.h"
#include "tools/challenge/EventWriter.h"
#include "tools/challenge/LineReader.h"
#include "tools/challenge/Options.h"

#include <deque>
#include <memory>
#include <string>

namespace korvane::challenge {

/// One transaction and its challenge: tells of everything by events, and takes lines when it has use for
/// them. Main queue only.
class Session final : public std::enable_shared_from_this<Session> {
public:
    /// @param wire  hears of the platform's answers.
    Session(HeadlessPlatform& platform, Options options, TransactionCerts certificates, EventWriter& events,
            std::shared_ptr<const Wire> wire);

    /// Creates the transaction, asks the 3DS server if it is to, and begins to read lines. At its end the platform's main loop is stopped.
    void begin();

    /// Whether the challenge came to an ending.
    [[nodiscard]] bool hasEnded() const noexcept { return cardholder_ && cardholder_->hasEnded(); }

private:
    /// Who is expected to say something.
    enum class Turn { application, library, nobody };

    void takeLine(InputLine line);
    void serveLines();
    void serve(const InputLine& line);
    void authenticate(const JSON& request);
    void takeReply(const ServerReply& reply);
    void startChallenge(const JSON& values);
    void inputEnded();
    void tell(JSON event);
    void stop();

    HeadlessPlatform& platform_;
    const Options options_;
    const TransactionCerts certificates_;
    EventWriter& events_;
    const std::shared_ptr<const Wire> wire_;
    ThreeDS2Service service_;
    std::shared_ptr<Transaction> transaction_;
    std::shared_ptr<cardholder::Cardholder> cardholder_;
    std::unique_ptr<LineReader> reader_;
    std::deque<InputLine> lines_;
    std::string signedContent_;
    Turn turn_ = Turn::application;
};

} // namespace korvane::challenge
