#pragma once

#include "Sdk/Messages/CReq.h"
#include "Sdk/Messages/ChallengeParameters.h"
#include "Sdk/Messages/Erro.h"
#include "Sdk/SecureChannel/TransactionCerts.h"
#include "Sdk/Transaction/AuthenticationRequestParameters.h"
#include "tests/support/PlayedAcs.h"
#include "tests/support/SimulatedPlatform.h"

#include <functional>
#include <string>
#include <vector>

namespace korvane {

/// The ACS of one challenge on a simulation's network: it agrees on the key, opens requests, and answers them
/// by a script. Its certificates are made once in a process.
class SimulatedAcs {
public:
    explicit SimulatedAcs(SimulatedPlatform& platform);
    SimulatedAcs(const SimulatedAcs&) = delete;
    SimulatedAcs& operator=(const SimulatedAcs&) = delete;

    /// The directory server's, under whose root the ACS signs.
    [[nodiscard]] static TransactionCerts certificates();

    /// Takes an authentication request, and forgets what came before.
    /// @return what the application starts the challenge with.
    [[nodiscard]] ChallengeParameters accept(const AuthenticationRequestParameters& request);

    /// The key that both sides derive.
    [[nodiscard]] const SecretBytes& key() const noexcept { return key_; }

    /// Answers one request; empty for no answer, ever. The body is sealed text, or anything else.
    std::function<ScriptedAnswer(SimulatedAcs& acs)> answer;
    /// Asked when an error comes in; empty for an answer at once.
    std::function<ScriptedAnswer(const Erro& erro)> errorAnswer;

    /// What came in: requests opened, and errors.
    [[nodiscard]] const std::vector<CReq>& requests() const noexcept { return requests_; }
    [[nodiscard]] const std::vector<Erro>& errors() const noexcept { return errors_; }
    /// The addresses of the images that were asked for.
    [[nodiscard]] const std::vector<std::string>& images() const noexcept { return images_; }
    /// What an image's request gets.
    ScriptedAnswer imageAnswer;

    /// The members of a response to the request that is being answered, with a valid screen of a
    /// kind ("01" to "05").
    [[nodiscard]] JSON screen(const std::string& uiType) const;
    /// The same with the challenge's end.
    [[nodiscard]] JSON ending(const std::string& transStatus) const;
    [[nodiscard]] std::string sealed(const std::string& text) const { return PlayedAcs::sealed(text, key_); }

private:
    [[nodiscard]] ScriptedAnswer respond(const URLRequest& request);
    /// The message as one that answers the latest request.
    [[nodiscard]] JSON addressed(JSON message) const;

    std::string sdkTransID_;
    std::string messageVersion_;
    SecretBytes key_;
    std::vector<CReq> requests_;
    std::vector<Erro> errors_;
    std::vector<std::string> images_;
};

} // namespace korvane
