#include "tools/acs/Service.h"

#include "Crypt/DataExtensions.h"
#include "tools/acs/Authentication.h"
#include "tools/acs/Exchange.h"
#include "tools/acs/Logo.h"

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

Answer failed(int status) {
    Answer answer;
    answer.status = status;
    answer.contentType = "text/plain";
    answer.body = status == kNotFound ? "Nothing is served here.\n" : "This method is not served here.\n";
    return answer;
}

Answer logo(std::string_view name) {
    const auto image = makeLogo(name);
    if (!image) return failed(kNotFound);
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

Service::Service(Settings settings, const KeyRing& keys, EventLog& log)
    : settings_(std::move(settings)), keys_(keys), log_(log), challenges_(settings_.challengeLifetime) {}

Answer Service::answer(std::string_view method, std::string_view path, std::string_view body) {
    const bool isLogo = path.starts_with(kLogoPath);
    const bool isChallenge = path.starts_with(kChallengePath);
    if (!isLogo && !isChallenge && path != kAuthenticatePath) return failed(kNotFound);
    if (method != (isLogo ? "GET" : "POST")) return failed(kMethodNotAllowed);
    if (isLogo) return logo(path.substr(kLogoPath.size()));
    return isChallenge ? challenge(path, body) : authenticate(path, body);
}

Answer Service::authenticate(std::string_view path, std::string_view body) {
    try {
        const auto request = AuthenticationRequest::read(body, keys_);
        JSON shown = JSONSerialization::jsonObject(body).value();
        shown["deviceData"] = request.deviceData;
        logReceived(path, shown);
        Authentication made = Authentication::make(request, settings_.scenario, keys_, settings_.url);
        challenges_.add(std::move(made.challenge));
        logSent(path, made.answer, settings_.scenario.authenticationFault);
        return std::move(made.answer);
    } catch (const ProtocolFault& fault) {
        logRubbish(path, body);
        Answer answer = plainAnswer(kBadRequest, fault.erro("AReq", {}));
        logSent(path, answer);
        return answer;
    }
}

Answer Service::challenge(std::string_view path, std::string_view body) {
    const std::string_view id = path.substr(kChallengePath.size());
    if (const auto known = challenges_.find(id)) return exchange(*known, path, body);
    logRubbish(path, body);
    Answer answer = plainAnswer(kNotFound, ProtocolFault(301).erro("CReq", {}));
    logSent(path, answer);
    return answer;
}

Answer Service::exchange(Challenge& challenge, std::string_view path, std::string_view body) {
    const std::lock_guard lock(challenge.mutex);
    bool isLogged = false;
    try {
        const Received received = receive(challenge, body);
        logReceived(path, received.message);
        isLogged = true;
        if (received.isErro) {
            challenge.hasEnded = true;
            return {};
        }
        const JSON creq = withoutNulls(received.message);
        requireInStep(challenge, creq);
        const Cue cue = challenge.director.next(creq);
        Answer answer = sealCRes(challenge, cue, filledIn(cue.members));
        challenge.hasEnded = cue.isFinal;
        ++challenge.counter;
        logSent(path, answer, cue.fault);
        return answer;
    } catch (const ProtocolFault& fault) {
        if (!isLogged) logRubbish(path, body);
        challenge.hasEnded = true;
        Answer answer = plainAnswer(kFine, fault.erro("CReq", challenge.ids));
        logSent(path, answer);
        return answer;
    }
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

void Service::logSent(std::string_view path, const Answer& answer, const std::optional<Fault>& fault) {
    JSON event = {{"event", deliveryName(answer.delivery)}, {"path", path}, {"status", answer.status}};
    const bool isSealed = answer.contentType == kJOSEType && !answer.text.empty();
    const std::string& text = isSealed ? answer.text : answer.body;
    const auto message = JSONSerialization::jsonObject(text);
    // A text that its members do not give back, as one that repeats a member, is shown as it is.
    if (message && message->dump(-1, ' ', false, JSON::error_handler_t::replace) == text)
        event["message"] = *message;
    else
        event["text"] = text;
    if (isSealed) event["sealed"] = true;
    if (fault) event["fault"] = fault->row->name;
    if (answer.delay.count() > 0) event["afterMilliseconds"] = answer.delay.count();
    log_.write(event);
}

} // namespace korvane::acs
