#pragma once

#include "tools/acs/Challenges.h"
#include "tools/acs/Faults.h"

#include <functional>
#include <string>
#include <string_view>

namespace korvane::acs {

/// What came to the URL of a challenge.
struct Received {
    /// The message, opened.
    JSON message;
    /// An error of the library's, sealed or in the clear; else a CReq whose fields have their types.
    bool isErro = false;
};

/// Opens one body.
/// @throws ProtocolFault 101 for what is neither a JWE nor an Erro and for a message of another type, 302 for
///         what does not open, 301 for a JWE whose "kid" is not this challenge's, 201, 203 and 204 naming
///         fields.
[[nodiscard]] Received receive(const Challenge& challenge, std::string_view body);

/// A message without the members that are null, which count as absent.
[[nodiscard]] JSON withoutNulls(const JSON& message);

/// Checks a CReq against its challenge: whether it has ended, counter, identifiers,
/// version, critical extensions.
/// @throws ProtocolFault 301, 302, 203, 202
void requireInStep(const Challenge& challenge, const JSON& creq);

/// The CRes of a cue up to its text, with what its fault spoils of that.
[[nodiscard]] Answer makeCRes(const Challenge& challenge, const Cue& cue, const JSON& members);

/// Seals the text of a CRes, with what a fault spoils of the body. Needs nothing that the challenge's mutex
/// guards.
void sealCRes(const Challenge& challenge, const std::optional<Fault>& fault, Answer& answer);

/// The message of a challenge that is no CRes: an error in the clear.
[[nodiscard]] Answer plainAnswer(int status, const Erro& erro);

} // namespace korvane::acs
