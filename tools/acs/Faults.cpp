#include "tools/acs/Faults.h"

#include "Crypt/DataExtensions.h"
#include "Platform/UUID.h"
#include "tools/acs/Messages.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace korvane::acs {

namespace {

using Parameter = FaultParameter;
using Type = Parameter::Type;
using Presence = Parameter::Presence;

constexpr std::array<Parameter, 1> kMember{{{"member", Type::text, Presence::required}}};
constexpr std::array<Parameter, 1> kMemberOrDefault{{{"member", Type::text, Presence::optional}}};
constexpr std::array<Parameter, 2> kMemberAndValue{
    {{"member", Type::text, Presence::required}, {"value", Type::any, Presence::required}}};
constexpr std::array<Parameter, 1> kIdentifier{{{"id", Type::text, Presence::optional}}};
constexpr std::array<Parameter, 1> kErroMembers{{{"members", Type::object, Presence::optional}}};
constexpr std::array<Parameter, 1> kSeconds{{{"seconds", Type::seconds, Presence::required}}};

std::string textOr(const JSON& parameters, std::string_view name, std::string_view otherwise) {
    const auto found = parameters.find(name);
    return found == parameters.end() ? std::string(otherwise) : found->get<std::string>();
}

void takeForeignChain(Answer& answer, const JSON&) {
    answer.chain = answer.foreignChain;
}

void breakSignature(Answer& answer, const JSON&) {
    const std::size_t start = answer.signedContent.rfind('.') + 1;
    Bytes signature = fromBase64URL(std::string_view(answer.signedContent).substr(start)).value();
    signature.back() ^= 1;
    answer.signedContent.replace(start, std::string::npos, base64URLEncodedString(signature));
}

void miscount(Answer& answer, const JSON&) {
    answer.message["acsCounterAtoS"] =
        counterAtoS(std::stoi(answer.message["acsCounterAtoS"].get<std::string>()) + 1);
}

void takeForeignIdentifier(Answer& answer, const JSON& parameters) {
    answer.message[textOr(parameters, "member", "acsTransID")] = makeTransactionID();
}

void leaveOut(Answer& answer, const JSON& parameters) {
    answer.message.erase(parameters["member"].get<std::string>());
}

void replaceValue(Answer& answer, const JSON& parameters) {
    answer.message[parameters["member"].get<std::string>()] = parameters["value"];
}

void addCriticalExtension(Answer& answer, const JSON& parameters) {
    const JSON extension = {{"criticalityIndicator", true},
                            {"data", JSON::object()},
                            {"id", textOr(parameters, "id", "A000000000-1")},
                            {"name", "An extension that nobody knows"}};
    answer.message["messageExtension"].push_back(extension);
}

void repeatMember(Answer& answer, const JSON& parameters) {
    const std::string name = textOr(parameters, "member", "messageType");
    const auto found = answer.message.find(name);
    const std::string value = found == answer.message.end() ? "\"\"" : found->dump();
    // Twice, so that a member that the message lacks is repeated too.
    const std::string member = JSON(name).dump() + ":" + value + ",";
    answer.text.insert(1, found == answer.message.end() ? member + member : member);
}

void cutOff(Answer& answer, const JSON&) {
    answer.text.pop_back();
}

/// An error about the message at hand, with members that the scenario puts in place of its own;
/// null takes one away.
std::string erroText(const Answer& answer, const JSON& parameters) {
    JSON erro = erroOf(answer.message);
    const auto members = parameters.find("members");
    if (members != parameters.end()) erro.merge_patch(*members);
    return erro.dump();
}

void replaceByErro(Answer& answer, const JSON& parameters) {
    answer.text = erroText(answer, parameters);
}

void replaceByPlainErro(Answer& answer, const JSON& parameters) {
    answer.body = erroText(answer, parameters);
    answer.contentType = kJSONType;
}

void replaceKey(Answer& answer, const JSON&) {
    answer.key.front() ^= 1;
}

void replaceByWords(Answer& answer, const JSON&) {
    answer.body = "This is no message.";
}

void emptyBody(Answer& answer, const JSON&) {
    answer.body.clear();
}

void failInside(Answer& answer, const JSON&) {
    answer.status = 500;
    answer.body = "Internal Server Error";
}

void answerLate(Answer& answer, const JSON& parameters) {
    answer.delay = std::chrono::milliseconds(std::lround(parameters["seconds"].get<double>() * 1000));
}

void withhold(Answer& answer, const JSON&) {
    answer.delivery = Delivery::withhold;
}

void closeConnection(Answer& answer, const JSON&) {
    answer.delivery = Delivery::closeConnection;
}

constexpr std::array<FaultRow, 18> kFaults{{
    {"foreignRoot", Stage::chain, {}, takeForeignChain, "the chain ends in an unknown root"},
    {"badSignature", Stage::signedContent, {}, breakSignature, "a bit of the signature is flipped"},
    {"wrongCounter", Stage::message, {}, miscount, "acsCounterAtoS is one ahead"},
    {"foreignTransactionID", Stage::message, kMemberOrDefault, takeForeignIdentifier,
     "the identifier \"member\" (acsTransID) is another transaction's"},
    {"missingField", Stage::message, kMember, leaveOut, "\"member\" is left out"},
    {"badField", Stage::message, kMemberAndValue, replaceValue, "\"member\" has \"value\", of whatever type"},
    {"criticalExtension", Stage::message, kIdentifier, addCriticalExtension,
     "a critical message extension named \"id\" is added"},
    {"repeatedKey", Stage::text, kMemberOrDefault, repeatMember, "\"member\" (messageType) stands twice"},
    {"notJSON", Stage::text, {}, cutOff, "the sealed text lacks its last brace"},
    {"sealedErro", Stage::text, kErroMembers, replaceByErro,
     "an Erro is sealed; \"members\" replace its own, null removes"},
    {"wrongKey", Stage::key, {}, replaceKey, "it is sealed under another key"},
    {"notJWE", Stage::body, {}, replaceByWords, "the body is a sentence"},
    {"emptyBody", Stage::body, {}, emptyBody, "the body has no bytes"},
    {"plainErro", Stage::body, kErroMembers, replaceByPlainErro,
     "an Erro in the clear; \"members\" as above"},
    {"http500", Stage::body, {}, failInside, "status 500 with a sentence"},
    {"slowAnswer", Stage::body, kSeconds, answerLate, "the answer comes after \"seconds\""},
    {"noAnswer", Stage::body, {}, withhold, "the connection stays open and silent"},
    {"connectionClosed", Stage::body, {}, closeConnection, "the connection ends without an answer"},
}};

} // namespace

std::span<const FaultRow> allFaults() {
    return kFaults;
}

const FaultRow* findFault(std::string_view name) {
    const auto* found =
        std::find_if(kFaults.begin(), kFaults.end(), [&](const FaultRow& row) { return row.name == name; });
    return found == kFaults.end() ? nullptr : found;
}

Place placeOf(const FaultRow& row) {
    const bool isOfSigning = row.stage == Stage::chain || row.stage == Stage::signedContent;
    return isOfSigning ? Place::authentication : Place::step;
}

void strike(const std::optional<Fault>& fault, Stage stage, Answer& answer) {
    if (fault && fault->row->stage == stage) fault->row->strike(answer, fault->parameters);
}

} // namespace korvane::acs
