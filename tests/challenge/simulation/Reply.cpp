#include "tests/challenge/simulation/Reply.h"

namespace korvane::simulation {

namespace {

using enum Verdict::Kind;

constexpr const char* kNoConnectionText = "The connection was lost.";

/// What a reply is made of: nothing; a text, plain or sealed; an ending or a screen as a response, whose
/// counter is looked at before anything else of it; a screen that is broken so that it is no response; or one
/// under a key that is not the challenge's. The body of all but texts is a patch (RFC 7396).
enum class Form { none, plain, sealed, ending, response, broken, foreign };

/// One kind of reply: how it is made, and what must come of it.
struct Row {
    const char* name;
    Form form;
    const char* body;
    Verdict::Kind outcome;
    std::string code = {};
    std::string text = {};
};

using enum Form;

const Row kRows[] = {
    {"screen", response, "{}", screen},
    {"status", ending, "{}", status},
    {"status X", ending, R"({"transStatus":"X"})", failure, "",
     "Can not recognize transStatus. Got value X."},
    {"no connection", none, "", failure, "", kNoConnectionText},
    {"silence", none, "", madeErro, "101", "Invalid Message Type"},
    {"rubbish", plain, "<html>busy</html>", madeErro, "101", "JWE parse error"},
    {"empty body", plain, "", madeErro, "101", "JWE parse error"},
    {"plain Erro", plain, R"({"messageType":"Erro","errorCode":"305"})", receivedErro, "305", "No details"},
    {"Erro with a number", plain, R"({"messageType":"Erro","errorCode":305})", failure, "",
     "Can not decode Erro from received data."},
    {"sealed Erro", sealed, R"({"messageType":"Erro","errorCode":"403","errorDetail":"busy"})", receivedErro,
     "403", "busy"},
    {"stranger's key", foreign, "{}", madeErro, "302", generic("JOSEError error 3")},
    {"no JSON", sealed, R"({"messageType":"CRes",)", failure, "", "Can not build CRes from decrypted data."},
    {"unknown type", broken, R"({"messageType":"PRes"})", madeErro, "101", "Invalid Message Type"},
    {"repeated key", sealed, R"({"messageType":"CRes","acsUiType":"01","acsUiType":"01"})", madeErro, "204",
     "acsUiType"},
    {"missing field", broken, R"({"acsTransID":null})", madeErro, "201", "acsTransID"},
    {"number for a text", broken, R"({"challengeInfoHeader":7})", madeErro, "203", "challengeInfoHeader"},
    {"wrong counter", response, R"({"acsCounterAtoS":"099"})", madeErro, "302", "acsCounterAtoS"},
    {"missing label", response, R"({"acsUiType":"01","submitAuthenticationLabel":null})", madeErro, "201",
     "submitAuthenticationLabel"},
    {"foreign transaction", response, R"({"acsTransID":"d7c1ee99-9478-44a6-b1f2-391e29c6b341"})", madeErro,
     "301", "The Transaction ID received was invalid."},
    {"other version", response, R"({"messageVersion":"2.3.1"})", madeErro, "203", "messageVersion"},
    {"unknown screen", response, R"({"acsUiType":"09"})", madeErro, "203", "acsUiType"},
    {"critical extension", response,
     R"({"messageExtension":[{"criticalityIndicator":true,"data":{},"id":"ext-1","name":"extension"}]})",
     madeErro, "202", "ext-1"},
};

constexpr std::size_t kWrongCounter = 16;

JSON imageURLs(const char* high) {
    return JSON::object({{"medium", ""}, {"high", high}, {"extraHigh", ""}});
}

JSON messageOf(const PlannedScreen& screen, const SimulatedAcs& acs) {
    JSON message = acs.screen(screen.uiType);
    if (screen.isUndecodable) message["acsHTML"] = "A";
    if (screen.isPage()) message["acsHTMLRefresh"] = "PHA-YmFjazwvcD4";
    if (screen.asksForWhitelisting) message["whitelistingInfoText"] = "Trust this shop?";
    if (screen.logos > 0)
        message["psImage"] = imageURLs(screen.hasBadLogo ? "no address" : "https://acs.example/scheme.png");
    if (screen.logos > 1) message["issuerImage"] = imageURLs("https://acs.example/bank.png");
    return message;
}

std::string bodyOf(const Reply& reply, const SimulatedAcs& acs) {
    const Row& row = kRows[reply.kind];
    if (row.form == plain) return row.body;
    if (row.form == sealed) return acs.sealed(row.body);
    JSON message = row.form == ending ? acs.ending(reply.status) : messageOf(reply.screen, acs);
    message.merge_patch(JSON::parse(row.body));
    return row.form == foreign ? PlayedAcs::sealed(message.dump(), SecretBytes(32, 7))
                               : acs.sealed(message.dump());
}

} // namespace

const std::size_t kReplyKinds = std::size(kRows);

std::string generic(const std::string& failure) {
    return "The operation couldn\u2019t be completed. (Korvane." + failure + ".)";
}

Verdict verdictOn(const Reply& reply, bool isFirst, bool isCounterRight) {
    const Form form = kRows[reply.kind].form;
    const bool isMiscounted = !isCounterRight && (form == response || form == ending);
    if (isFirst && form == ending && !isMiscounted) return {madeErro, "203", "transStatus"};
    const Row& row = kRows[isMiscounted ? kWrongCounter : reply.kind];
    return {row.outcome, row.code, row.text};
}

ScriptedAnswer play(const Reply& reply, SimulatedAcs& acs) {
    const Seconds delay = reply.delay;
    if (reply.kind == kSilence) return {std::nullopt, std::nullopt, std::nullopt};
    if (reply.kind == kNoConnection) return {std::nullopt, kNoConnectionText, delay};
    return {toBytes(bodyOf(reply, acs)), std::nullopt, delay};
}

std::string describe(const Reply& reply, const SimulatedAcs& acs) {
    return std::string(kRows[reply.kind].name) + " after " + std::to_string(Seconds(reply.delay).count()) +
           " s; " + (kRows[reply.kind].form == ending ? reply.status : messageOf(reply.screen, acs).dump());
}

} // namespace korvane::simulation
