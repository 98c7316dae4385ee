#include "tools/acs/Service.h"

#include "Crypt/DataExtensions.h"
#include "Platform/JSONLines.h"
#include "tools/acs/Authentication.h"
#include "tools/acs/Exchange.h"
#include "tools/acs/Logo.h"
#include "tools/common/Terminal.h"

namespace korvane::acs {

namespace {

constexpr std::string_view kAuthenticatePath = "/authenticate";
constexpr std::string_view kChallengePath = "/challenge/";
constexpr std::string_view kLogoPath = "/logo/";

/// How much of a body that is no message the log shows, in bytes.
constexpr std::size_t kShownOfRubbish = 200;

/// Errors about requests for authentication are those of an app's server, which looks at the status.
constexpr int kBadRequest = 400;
constexpr int kNotFound = 404;
constexpr int kMethodNotAllowed = 405;
/// Errors inside a challenge are messages like any other.
constexpr int kFine = 200;

Answer failed(int status, std::string_view reason) {
    Answer answer;
    answer.status = status;
    answer.contentType = "text/plain;charset=UTF-8";
    answer.body = tools::printable(reason) + "\n";
    return answer;
}

std::string namesOf(const Scenarios& scenarios) {
    std::string names;
    for (const auto& [name, play] : scenarios.all())
        names += (names.empty() ? "" : ", ") + name;
    return names;
}

Answer logo(std::string_view name) {
    const auto image = makeLogo(name);
    if (!image) return failed(kNotFound, "Nothing is served here.");
    Answer answer;
    answer.contentType = "image/png";
    answer.body = std::string(asText(*image));
    return answer;
}

void replaceAll(std::string& text, std::string_view wanted, std::string_view replacement) {
    for (std::size_t at = 0; (at = text.find(wanted, at)) != std::string::npos; at += replacement.size())
        text.replace(at, wanted.size(), replacement);
}

/// Puts the service's address in place of `{url}` in every text of a value.
void replaceAddress(JSON& value, std::string_view url) {
    if (value.is_string()) replaceAll(value.get_ref<std::string&>(), "{url}", url);
    if (!value.is_structured()) return;
    for (JSON& element : value)
        replaceAddress(element, url);
}

std::string_view deliveryName(Delivery delivery) {
    switch (delivery) {
    case Delivery::send: return "sent";
    case Delivery::withhold: return "withheld";
    case Delivery::closeConnection: return "connectionClosed";
    }
    fatalError("An answer has no delivery.");
}

} // namespace

Service::Service(const Settings& settings, const KeyRing& keys, EventLog& log, Desk& desk)
    : settings_(settings), keys_(keys), log_(log), desk_(desk), challenges_(settings.challengeLifetime) {}

Answer Service::answer(const Request& request) {
    const std::string_view path = request.path;
    const bool isLogo = path.starts_with(kLogoPath);
    const bool isChallenge = path.starts_with(kChallengePath);
    if (!isLogo && !isChallenge && path != kAuthenticatePath)
        return failed(kNotFound, "Nothing is served here.");
    if (request.method != (isLogo ? "GET" : "POST"))
        return failed(kMethodNotAllowed, "This method is not served here.");
    if (isLogo) return logo(path.substr(kLogoPath.size()));
    return isChallenge ? challenge(path, request.body) : authenticate(request);
}

Answer Service::authenticate(const Request& request) {
    const Play* named = request.scenario.empty() ? nullptr : settings_.scenarios.find(request.scenario);
    if (!request.scenario.empty() && !named)
        return failed(kBadRequest, "There is no scenario of this name: " + request.scenario + ". There are " +
                                       namesOf(settings_.scenarios) + ".");
    try {
        const auto read = AuthenticationRequest::read(request.body, keys_);
        const Play play = named ? *named : desk_.takeNext().value_or(settings_.standing);
        Authentication made = Authentication::make(read, play.scenario, keys_, settings_.url);
        JSON shown = JSONSerialization::jsonObject(request.body).value();
        shown["deviceData"] = read.deviceData;
        const std::string& transaction = made.challenge->ids.acsTransID;
        log_.write({{"event", "received"},
                    {"path", request.path},
                    {"transaction", transaction},
                    {"message", std::move(shown)}});
        challenges_.add(made.challenge);
        logSent(request.path, made.answer, play.scenario->authenticationFault,
                {{"transaction", transaction}, {"scenario", play.name}});
        return std::move(made.answer);
    } catch (const ProtocolFault& fault) {
        logRubbish(request.path, request.body);
        Answer answer = plainAnswer(kBadRequest, fault.erro("AReq", {}));
        logSent(request.path, answer);
        return answer;
    }
}

Answer Service::challenge(std::string_view path, std::string_view body) {
    const std::string_view id = path.substr(kChallengePath.size());
    if (const auto known = challenges_.find(id)) return exchange(known, path, body);
    logRubbish(path, body);
    Answer answer = plainAnswer(kNotFound, ProtocolFault(301).erro("CReq", {}));
    logSent(path, answer);
    return answer;
}

Answer Service::exchange(const std::shared_ptr<Challenge>& challenge, std::string_view path,
                         std::string_view body) {
    const std::lock_guard lock(challenge->mutex);
    bool isLogged = false;
    try {
        const Received received = receive(*challenge, body);
        logReceived(path, received.message);
        isLogged = true;
        if (received.isErro) {
            challenge->hasEnded = true;
            return {};
        }
        const JSON creq = withoutNulls(received.message);
        requireInStep(*challenge, creq);
        const Cue cue = challenge->director.next(creq);
        const Answer made = makeCRes(*challenge, cue, filledIn(cue.members));
        challenge->hasEnded = cue.isFinal;
        ++challenge->counter;
        return sealOrHold(challenge, path, made, cue.fault);
    } catch (const ProtocolFault& fault) {
        if (!isLogged) logRubbish(path, body);
        challenge->hasEnded = true;
        Answer answer = plainAnswer(kFine, fault.erro("CReq", challenge->ids));
        logSent(path, answer);
        return answer;
    }
}

Answer Service::sealOrHold(const std::shared_ptr<const Challenge>& challenge, std::string_view path,
                           const Answer& made, const std::optional<Fault>& fault) {
    const auto send = [=, this, itsPath = std::string(path)](const std::optional<std::string>& edited) {
        Answer answer = made;
        const bool isOther = edited && *edited != made.text;
        if (isOther) answer.text = *edited;
        sealCRes(*challenge, fault, answer);
        logSent(itsPath, answer, fault, isOther ? JSON{{"edited", true}} : JSON::object());
        return answer;
    };
    const auto abandon = [this, itsPath = std::string(path)] {
        log_.write({{"event", "abandoned"}, {"path", itsPath}});
    };
    Answer waiting;
    waiting.held = desk_.hold(challenge->ids.acsTransID, made.text, {send, abandon});
    if (!waiting.held) return send(std::nullopt);
    log_.write({{"event", "held"}, {"path", path}});
    return waiting;
}

JSON Service::filledIn(JSON members) const {
    replaceAddress(members, settings_.url);
    for (const char* name : {"acsHTML", "acsHTMLRefresh"})
        if (const auto html = members.find(name); html != members.end() && html->is_string())
            *html = base64URLEncodedString(asBytes(html->get_ref<const std::string&>()));
    return members;
}

void Service::logReceived(std::string_view path, const JSON& message) {
    log_.write({{"event", "received"}, {"path", path}, {"message", message}});
}

void Service::logRubbish(std::string_view path, std::string_view body) {
    log_.write({{"event", "received"},
                {"path", path},
                {"bytes", body.size()},
                {"body", body.substr(0, kShownOfRubbish)}});
}

void Service::logSent(std::string_view path, const Answer& answer, const std::optional<Fault>& fault,
                      const JSON& more) {
    JSON event = {{"event", deliveryName(answer.delivery)}, {"path", path}, {"status", answer.status}};
    const bool isSealed = answer.contentType == kJOSEType && !answer.text.empty();
    const std::string& text = isSealed ? answer.text : answer.body;
    const auto message = JSONSerialization::jsonObject(text);
    // One that repeats a member has more in it than its value: it is shown as it is.
    if (message && JSONLines(text).repeated().empty())
        event["message"] = *message;
    else
        event["text"] = text;
    if (isSealed) event["sealed"] = true;
    if (fault) event["fault"] = fault->row->name;
    if (answer.delay.count() > 0) event["afterMilliseconds"] = answer.delay.count();
    event.update(more);
    log_.write(event);
}

} // namespace korvane::acs
