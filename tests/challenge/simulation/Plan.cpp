#include "tests/challenge/simulation/Plan.h"

#include <algorithm>
#include <array>

namespace korvane::simulation {

namespace {

constexpr std::array kStartFaultNames{"none",          "no content",       "content that is no JWS",
                                      "bad signature", "stranger's chain", "no acsTransID"};
constexpr std::array kTemperNames{"patient", "hasty", "assisted", "absent", "cancelling"};

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
    screen.hasResend = chance.percent(80);
    screen.hasSections = chance.percent(30);
    screen.hasWarning = chance.percent(10);
    screen.isUndecodable = isPage && chance.percent(3);
    return screen;
}

ReplyKind faultyKind(Chance& chance) {
    constexpr auto kFirst = static_cast<std::size_t>(ReplyKind::unknownStatus);
    return static_cast<ReplyKind>(kFirst + chance.below(kReplyKinds - kFirst));
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
        reply.kind = index < screens ? ReplyKind::screen : ReplyKind::status;
        if (chance.percent(screens > 4 ? 1 : 8)) reply.kind = faultyKind(chance);
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

std::string after(Time time) {
    return std::to_string(Seconds(time).count()) + " s";
}

const char* yesOrNo(bool yes) {
    return yes ? "yes" : "no";
}

} // namespace

Plan::Plan(std::uint64_t itsSeed) : seed(itsSeed) {
    Chance chance(seed);
    messageVersion = chance.oneOf<const char*>({"2.1.0", "2.2.0"});
    minutes = chance.oneOf({0, 1, 1, 1, 1, 5, 5, 5, 5, 5});
    hasRequestorURL = chance.percent(30);
    playsAnimations = chance.percent(25);
    keepsTransaction = chance.percent(60);
    if (chance.percent(6)) startFault = static_cast<StartFault>(1 + chance.below(5));
    replies = makeReplies(chance);
    imageDelay = networkDelay(chance);
    if (!chance.percent(10)) erroDelay = networkDelay(chance);
    if (chance.percent(20)) heldAtFirst = anyOrientation(chance);
    turns = makeTurns(chance);
    if (chance.percent(4)) dismissal = chance.between(0.5, 40);
    temper = static_cast<Temper>(chance.below(kTemperNames.size()));
    typesOnKeys = chance.percent(4);
    triesAgain = chance.percent(50) && keepsTransaction && startFault != StartFault::none;
}

std::vector<std::string> Plan::lines() const {
    std::vector<std::string> all{
        "version " + messageVersion + ", time-out " + std::to_string(minutes) +
            " min, requestor URL: " + yesOrNo(hasRequestorURL),
        std::string("animations: ") + yesOrNo(playsAnimations) +
            ", transaction kept: " + yesOrNo(keepsTransaction) +
            ", fault at the start: " + kStartFaultNames.at(static_cast<std::size_t>(startFault)) +
            ", tries again: " + yesOrNo(triesAgain),
        "images after " + after(imageDelay) + ", answer to an Erro " +
            (erroDelay ? "after " + after(*erroDelay) : std::string("never")),
        std::string("cardholder: ") + kTemperNames.at(static_cast<std::size_t>(temper)) +
            ", types on keys: " + yesOrNo(typesOnKeys) + ", held " + nameOf(heldAtFirst)};
    for (std::size_t index = 0; index < replies.size(); ++index)
        all.push_back("reply " + std::to_string(index) + ": " + describe(replies[index]));
    for (const Turn& turn : turns)
        all.push_back("turned at " + after(turn.at) + " to " + nameOf(turn.to));
    if (dismissal) all.push_back("screens taken away by the application at " + after(*dismissal));
    return all;
}

const char* nameOf(UIDeviceOrientation orientation) {
    switch (orientation) {
    case UIDeviceOrientation::portrait: return "portrait";
    case UIDeviceOrientation::portraitUpsideDown: return "upside down";
    case UIDeviceOrientation::landscapeLeft: return "landscape left";
    case UIDeviceOrientation::landscapeRight: return "landscape right";
    case UIDeviceOrientation::faceUp: return "face up";
    case UIDeviceOrientation::faceDown: return "face down";
    case UIDeviceOrientation::unknown: break;
    }
    return "unknown";
}

} // namespace korvane::simulation
