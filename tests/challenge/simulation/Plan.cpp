#include "tests/challenge/simulation/Plan.h"

#include <algorithm>
#include <array>

namespace korvane::simulation {

namespace {

constexpr std::size_t kTempers = 5;

const std::string kNoContent = "Can not get acsURL from AcsSignedContent: ";
const std::string kNotVerified = "Can not verification AcsSignedContent: ";

void changeSignature(ChallengeParameters& parameters) {
    char& changed = parameters.acsSignedContent->end()[-9];
    changed = changed == 'A' ? 'B' : 'A';
}

const std::array kStartFaults{
    StartFault{[](ChallengeParameters&) {}, "", false},
    StartFault{[](ChallengeParameters& parameters) { parameters.acsSignedContent.reset(); },
               kNoContent + "InvalidInputException: acsSignedContent is empty.", false},
    StartFault{[](ChallengeParameters& parameters) { parameters.acsSignedContent = "a.b"; },
               kNoContent + generic("JOSEError error 5"), false},
    StartFault{changeSignature, kNotVerified + generic("JOSEError error 9"), true},
    StartFault{
        [](ChallengeParameters& parameters) { parameters.acsSignedContent = PlayedAcs{}.signedContent(); },
        kNotVerified + "SecTrust cert chain validation fail.", true},
    StartFault{[](ChallengeParameters& parameters) { parameters.acsTransactionId.reset(); },
               "Can not get init CReq data: " + generic("SdkError error 0"), false,
               kNoContent + "InvalidInputException: Can not get private key from ephemeral KeyPair."},
};

/// Most answers come soon, some too late.
Time networkDelay(Chance& chance) {
    const std::size_t draw = chance.below(10);
    if (draw < 6) return chance.between(0.001, 2);
    return draw < 9 ? chance.between(2, 10) : chance.between(10, 13);
}

PlannedScreen makeScreen(Chance& chance, bool isPage) {
    PlannedScreen screen;
    screen.uiType = isPage ? "05" : chance.oneOf<const char*>({"01", "01", "02", "03", "04"});
    screen.asksForWhitelisting = chance.percent(40);
    screen.isUndecodable = isPage && chance.percent(3);
    return screen;
}

/// Some screens, then the end; now and then something else in place of one.
std::vector<Reply> makeReplies(Chance& chance) {
    constexpr std::size_t kFurther = 5;
    // Now and then so many that the counter gets its fourth digit.
    const std::size_t screens = chance.percent(2) ? 12 : 1 + chance.below(4);
    const bool startsWithPage = chance.percent(30);
    std::vector<Reply> replies(screens + kFurther);
    for (std::size_t index = 0; index < replies.size(); ++index) {
        Reply& reply = replies[index];
        const bool switches = index > 0 && chance.percent(8);
        reply.screen = makeScreen(chance, startsWithPage != switches);
        reply.status = chance.oneOf<const char*>({"Y", "Y", "N", "U", "A", "C", "D", "R", "I"});
        reply.kind = index < screens ? kScreen : kStatus;
        if (chance.percent(screens > 4 ? 1 : 8))
            reply.kind = kUnknownStatus + chance.below(kReplyKinds - kUnknownStatus);
        reply.delay = networkDelay(chance);
    }
    replies[0].screen.logos = chance.oneOf({0, 0, 0, 1, 2});
    replies[0].screen.hasBadLogo = chance.percent(2);
    return replies;
}

UIDeviceOrientation anyOrientation(Chance& chance) {
    using enum UIDeviceOrientation;
    return chance.oneOf({portrait, portrait, landscapeLeft, landscapeLeft, landscapeRight, portraitUpsideDown,
                         faceUp, unknown});
}

std::vector<Turn> makeTurns(Chance& chance) {
    std::vector<Turn> turns(chance.percent(50) ? chance.below(7) : 0);
    for (Turn& turn : turns)
        turn = {chance.between(0.1, 40), anyOrientation(chance)};
    std::ranges::sort(turns, {}, &Turn::at);
    return turns;
}

} // namespace

Plan::Plan(std::uint64_t itsSeed) : seed(itsSeed), startFault(kStartFaults.data()) {
    Chance chance(seed);
    messageVersion = chance.oneOf<const char*>({"2.1.0", "2.2.0"});
    minutes = chance.oneOf({0, 1, 1, 1, 1, 5, 5, 5, 5, 5});
    hasRequestorURL = chance.percent(30);
    playsAnimations = chance.percent(25);
    keepsTransaction = chance.percent(60);
    if (chance.percent(6)) startFault += 1 + chance.below(kStartFaults.size() - 1);
    replies = makeReplies(chance);
    imageDelay = networkDelay(chance);
    if (!chance.percent(10)) erroDelay = networkDelay(chance);
    if (chance.percent(20)) heldAtFirst = anyOrientation(chance);
    turns = makeTurns(chance);
    if (chance.percent(4)) dismissal = chance.between(0.5, 40);
    temper = static_cast<Temper>(chance.below(kTempers));
    triesAgain = chance.percent(50) && keepsTransaction && !startFault->text.empty();
}

} // namespace korvane::simulation
