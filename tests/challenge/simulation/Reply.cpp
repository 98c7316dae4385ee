#include "tests/challenge/simulation/Reply.h"

#include "Platform/Failure.h"

#include <array>

namespace korvane::simulation {

namespace {

using Kind = Verdict::Kind;
using Maker = std::string (*)(const Reply&, SimulatedAcs&);

constexpr const char* kNoSuchTransaction = "The Transaction ID received was invalid.";
constexpr const char* kCanNotBuild = "Can not build CRes from decrypted data.";
constexpr const char* kNotDecrypted =
    "The operation couldn\u2019t be completed. (Korvane.JOSEError error 3.)";

/// Whether a body is a response, whose counter is looked at before anything else of it.
enum class Judged { no, yes };

/// One kind of reply: how it is made, and what must come of it.
struct Row {
    ReplyKind kind;
    const char* name;
    Judged judged;
    Kind outcome;
    const char* code;
    const char* text;
    Maker make;
};

std::string sealed(SimulatedAcs& acs, const JSON& message) {
    return acs.sealed(message.dump());
}

/// A response with a screen of which one member is another.
template <class Value>
std::string sealedWith(const Reply& reply, SimulatedAcs& acs, const char* member, Value value) {
    JSON message = acs.screen(reply.screen.uiType);
    message[member] = value;
    return sealed(acs, message);
}

std::string withoutLabel(const Reply& /*reply*/, SimulatedAcs& acs) {
    JSON message = acs.screen("01");
    message.erase("submitAuthenticationLabel");
    return sealed(acs, message);
}

std::string withRepeatedKey(const Reply& reply, SimulatedAcs& acs) {
    std::string text = acs.screen(reply.screen.uiType).dump();
    text.insert(1, R"("acsUiType":"01",)");
    return acs.sealed(text);
}

std::string withoutField(const Reply& reply, SimulatedAcs& acs) {
    JSON message = acs.screen(reply.screen.uiType);
    message.erase("acsTransID");
    return sealed(acs, message);
}

std::string withCriticalExtension(const Reply& reply, SimulatedAcs& acs) {
    return sealedWith(reply, acs, "messageExtension",
                      JSON::array({JSON::object({{"criticalityIndicator", true},
                                                 {"data", JSON::object({})},
                                                 {"id", "ext-1"},
                                                 {"name", "extension"}})}));
}

std::string underStrangersKey(const Reply& reply, SimulatedAcs& acs) {
    const SecretBytes key(32, 7);
    return PlayedAcs::sealed(acs.screen(reply.screen.uiType).dump(), key);
}

JSON imageURLs(const char* high) {
    return JSON::object({{"medium", ""}, {"high", high}, {"extraHigh", ""}});
}

void addLogos(const PlannedScreen& screen, JSON& message) {
    if (screen.logos > 0) message["psImage"] = imageURLs(screen.hasBadLogo ? "no address" : kPsLogo);
    if (screen.logos > 1) message["issuerImage"] = imageURLs(kBankLogo);
}

std::string theScreen(const Reply& reply, SimulatedAcs& acs) {
    const PlannedScreen& screen = reply.screen;
    JSON message = acs.screen(screen.uiType);
    if (screen.isUndecodable) message["acsHTML"] = "A";
    if (screen.isPage()) message["acsHTMLRefresh"] = "PHA-YmFjazwvcD4";
    if (screen.asksForWhitelisting) message["whitelistingInfoText"] = "Trust this shop?";
    if (!screen.hasResend && message.contains("resendInformationLabel"))
        message.erase("resendInformationLabel");
    if (screen.hasWarning) message["challengeInfoTextIndicator"] = "Y";
    if (screen.hasSections)
        message.update(JSON::object({{"whyInfoLabel", "Why?"},
                                     {"whyInfoText", "Since the law wants it."},
                                     {"expandInfoLabel", "More"},
                                     {"expandInfoText", "There is more to say, and here it is said."}}));
    addLogos(screen, message);
    return sealed(acs, message);
}

constexpr std::array<Row, kReplyKinds> kRows{{
    {ReplyKind::screen, "screen", Judged::yes, Kind::screen, "", "", theScreen},
    {ReplyKind::status, "status", Judged::yes, Kind::status, "", "",
     [](const Reply& reply, SimulatedAcs& acs) { return sealed(acs, acs.ending(reply.status)); }},
    {ReplyKind::unknownStatus, "status X", Judged::yes, Kind::failure, "",
     "Can not recognize transStatus. Got value X.",
     [](const Reply&, SimulatedAcs& acs) { return sealed(acs, acs.ending("X")); }},
    {ReplyKind::noConnection, "no connection", Judged::no, Kind::failure, "", kNoConnection, nullptr},
    {ReplyKind::silence, "silence", Judged::no, Kind::madeErro, "101", "Invalid Message Type", nullptr},
    {ReplyKind::rubbish, "rubbish", Judged::no, Kind::madeErro, "101", "JWE parse error",
     [](const Reply&, SimulatedAcs&) { return std::string("<html>busy</html>"); }},
    {ReplyKind::emptyBody, "empty body", Judged::no, Kind::madeErro, "101", "JWE parse error",
     [](const Reply&, SimulatedAcs&) { return std::string(); }},
    {ReplyKind::plainErro, "plain Erro", Judged::no, Kind::receivedErro, "305", "No details",
     [](const Reply&, SimulatedAcs&) { return std::string(R"({"messageType":"Erro","errorCode":"305"})"); }},
    {ReplyKind::plainErroOfNumbers, "plain Erro with a number", Judged::no, Kind::failure, "",
     "Can not decode Erro from received data.",
     [](const Reply&, SimulatedAcs&) { return std::string(R"({"messageType":"Erro","errorCode":305})"); }},
    {ReplyKind::sealedErro, "sealed Erro", Judged::no, Kind::receivedErro, "403", "busy",
     [](const Reply&, SimulatedAcs& acs) {
         return acs.sealed(R"({"messageType":"Erro","errorCode":"403","errorDetail":"busy"})");
     }},
    {ReplyKind::strangersKey, "stranger's key", Judged::no, Kind::madeErro, "302", kNotDecrypted,
     underStrangersKey},
    {ReplyKind::noJSON, "no JSON", Judged::no, Kind::failure, "", kCanNotBuild,
     [](const Reply&, SimulatedAcs& acs) { return acs.sealed(R"({"messageType":"CRes",)"); }},
    {ReplyKind::unknownType, "unknown type", Judged::no, Kind::madeErro, "101", "Invalid Message Type",
     [](const Reply& reply, SimulatedAcs& acs) { return sealedWith(reply, acs, "messageType", "PRes"); }},
    {ReplyKind::repeatedKey, "repeated key", Judged::no, Kind::madeErro, "204", "acsUiType", withRepeatedKey},
    {ReplyKind::missingField, "missing field", Judged::no, Kind::madeErro, "201", "acsTransID", withoutField},
    {ReplyKind::numberForText, "number for a text", Judged::no, Kind::madeErro, "203", "challengeInfoHeader",
     [](const Reply& reply, SimulatedAcs& acs) { return sealedWith(reply, acs, "challengeInfoHeader", 7); }},
    {ReplyKind::wrongCounter, "wrong counter", Judged::yes, Kind::madeErro, "302", "acsCounterAtoS",
     [](const Reply& reply, SimulatedAcs& acs) { return sealedWith(reply, acs, "acsCounterAtoS", "099"); }},
    {ReplyKind::missingLabel, "missing label", Judged::yes, Kind::madeErro, "201",
     "submitAuthenticationLabel", withoutLabel},
    {ReplyKind::foreignTransaction, "foreign transaction", Judged::yes, Kind::madeErro, "301",
     kNoSuchTransaction,
     [](const Reply& reply, SimulatedAcs& acs) {
         return sealedWith(reply, acs, "acsTransID", "d7c1ee99-9478-44a6-b1f2-391e29c6b341");
     }},
    {ReplyKind::otherVersion, "other version", Judged::yes, Kind::madeErro, "203", "messageVersion",
     [](const Reply& reply, SimulatedAcs& acs) { return sealedWith(reply, acs, "messageVersion", "2.3.1"); }},
    {ReplyKind::unknownScreen, "unknown screen", Judged::yes, Kind::madeErro, "203", "acsUiType",
     [](const Reply& reply, SimulatedAcs& acs) { return sealedWith(reply, acs, "acsUiType", "09"); }},
    {ReplyKind::criticalExtension, "critical extension", Judged::yes, Kind::madeErro, "202", "ext-1",
     withCriticalExtension},
}};

const Row& rowOf(ReplyKind kind) {
    const Row& row = kRows.at(static_cast<std::size_t>(kind));
    if (row.kind != kind) fatalError("The table of replies is out of order.");
    return row;
}

Verdict verdictOf(const Row& row) {
    return {row.outcome, row.code, row.text};
}

} // namespace

Verdict verdictOn(const Reply& reply, bool isFirst, bool isCounterRight) {
    const Row& row = rowOf(reply.kind);
    if (row.judged == Judged::yes && !isCounterRight) return verdictOf(rowOf(ReplyKind::wrongCounter));
    const bool isEnding = reply.kind == ReplyKind::status || reply.kind == ReplyKind::unknownStatus;
    if (isFirst && isEnding) return {Kind::madeErro, "203", "transStatus"};
    return verdictOf(row);
}

ScriptedAnswer play(const Reply& reply, SimulatedAcs& acs) {
    const Seconds delay = reply.delay;
    if (reply.kind == ReplyKind::silence) return {std::nullopt, std::nullopt, std::nullopt};
    if (reply.kind == ReplyKind::noConnection) return {std::nullopt, kNoConnection, delay};
    return {toBytes(rowOf(reply.kind).make(reply, acs)), std::nullopt, delay};
}

std::string describe(const Reply& reply) {
    std::string text = rowOf(reply.kind).name;
    if (reply.kind == ReplyKind::screen) text += " " + reply.screen.uiType;
    if (reply.kind == ReplyKind::status) text += " " + reply.status;
    if (reply.screen.asksForWhitelisting) text += ", whitelisting";
    if (!reply.screen.hasResend) text += ", no resend";
    if (reply.screen.hasSections) text += ", sections";
    if (reply.screen.hasWarning) text += ", warning";
    if (reply.screen.isUndecodable) text += ", undecodable";
    if (reply.screen.logos > 0) text += ", logos " + std::to_string(reply.screen.logos);
    if (reply.screen.hasBadLogo) text += ", bad address";
    if (reply.kind != ReplyKind::silence)
        text += ", after " + std::to_string(Seconds(reply.delay).count()) + " s";
    return text;
}

} // namespace korvane::simulation
