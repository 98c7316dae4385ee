#include "tools/acs/Page.h"

#include "Platform/FaultyText.h"
#include "Platform/UUID.h"
#include "tools/acs/Embedded.h"
#include "tools/acs/Messages.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace korvane::acs {

namespace {

/// The page runs its own script and nothing else, wherever a text of a message may end up.
constexpr std::array<HeaderField, 6> kFields{{
    {"Content-Security-Policy",
     "default-src 'none'; script-src 'self'; style-src 'self'; connect-src 'self'; "
     "img-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'"},
    {"X-Frame-Options", "DENY"},
    {"X-Content-Type-Options", "nosniff"},
    {"Referrer-Policy", "no-referrer"},
    {"Cross-Origin-Resource-Policy", "same-origin"},
    {"Cache-Control", "no-store"},
}};

constexpr std::string_view kTokenMark = "{token}";

Answer respond(int status, std::string_view contentType, std::string body) {
    Answer answer;
    answer.status = status;
    answer.contentType = contentType;
    answer.body = std::move(body);
    answer.headers = kFields;
    return answer;
}

Answer respond(const JSON& value, int status = 200) {
    return respond(status, kJSONType, value.dump(-1, ' ', false, JSON::error_handler_t::replace));
}

Answer refuse(int status, std::string_view reason) {
    return respond(JSON{{"error", reason}}, status);
}

std::optional<std::size_t> numberIn(std::string_view text) {
    std::size_t number = 0;
    const char* end = text.data() + text.size();
    const auto [read, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && read == end ? std::optional(number) : std::nullopt;
}

/// The names that this machine has for itself.
std::vector<std::string> hostsAt(int port) {
    std::vector<std::string> hosts;
    constexpr int kStandardPort = 443;
    for (const char* name : {"127.0.0.1", "localhost"})
        hosts.push_back(port == kStandardPort ? name : std::string(name) + ":" + std::to_string(port));
    return hosts;
}

JSON choiceOf(const Play& play) {
    return {{"name", play.name}, {"description", play.scenario->description}, {"text", play.text}};
}

JSON choiceOf(const FaultRow& row) {
    JSON required = JSON::array();
    for (const FaultParameter& parameter : row.parameters)
        if (parameter.presence == FaultParameter::Presence::required) required.push_back(parameter.name);
    return {{"name", row.name},
            {"effect", row.effect},
            {"place", placeOf(row) == Place::authentication ? "authentication" : "step"},
            {"required", std::move(required)}};
}

} // namespace

struct Page::Route {
    std::string_view method;
    std::string_view path;
    enum class Kind { whole, prefix } kind;
    Answer (Page::*respond)(std::string_view rest, const Request& request);
};

Page::Page(int port, const Play& standing, const Scenarios& scenarios, const Journal& journal, Desk& desk)
    : hosts_(hostsAt(port)), token_(makeUUIDString()), standing_(standing), scenarios_(scenarios),
      journal_(journal), desk_(desk) {}

std::optional<Answer> Page::answer(const Request& request) {
    using Kind = Route::Kind;
    static constexpr std::array<Route, 8> kRoutes{{
        {"GET", "/", Kind::whole, &Page::index},
        {"GET", "/page/", Kind::prefix, &Page::file},
        {"GET", "/control/choices", Kind::whole, &Page::choices},
        {"GET", "/control/events/", Kind::prefix, &Page::events},
        {"GET", "/control/log", Kind::whole, &Page::log},
        {"POST", "/control/next/", Kind::prefix, &Page::next},
        {"POST", "/control/hold", Kind::whole, &Page::hold},
        {"POST", "/control/held/", Kind::prefix, &Page::letGo},
    }};
    for (const Route& route : kRoutes) {
        const std::string_view path = request.path;
        if (route.kind == Kind::whole ? path != route.path : !path.starts_with(route.path)) continue;
        if (request.method != route.method) return refuse(405, "This method is not served here.");
        if (const char* reason = objection(request, route)) return refuse(403, reason);
        return (this->*route.respond)(path.substr(route.path.size()), request);
    }
    return std::nullopt;
}

/// Why a request is not answered, or null.
const char* Page::objection(const Request& request, const Route& route) const {
    const auto isOurs = [&](std::string_view host) { return std::ranges::count(hosts_, host) > 0; };
    if (!request.isLocal) return "The page is for the machine that korvane-acs runs on.";
    if (!isOurs(request.host)) return "The page is served under 127.0.0.1 and localhost alone.";
    constexpr std::string_view kScheme = "https://";
    const std::string_view origin = request.origin;
    const bool isForeign =
        !origin.empty() && (!origin.starts_with(kScheme) || !isOurs(origin.substr(kScheme.size())));
    if (isForeign) return "The page takes nothing from other pages.";
    const bool isControl = route.path.starts_with("/control/");
    if (isControl && request.token != token_) return "The page is an old one: load it again.";
    return nullptr;
}

Answer Page::index(std::string_view /*rest*/, const Request& /*request*/) {
    std::string text(embeddedText("page/index.html"));
    text.replace(text.find(kTokenMark), kTokenMark.size(), token_);
    return respond(200, "text/html;charset=UTF-8", std::move(text));
}

Answer Page::file(std::string_view rest, const Request& /*request*/) {
    const std::string name = "page/" + std::string(rest);
    const auto files = embeddedFiles();
    const auto found =
        std::ranges::find_if(files, [&](const EmbeddedFile& file) { return file.name == name; });
    const bool isScript = rest.ends_with(".js");
    if (found == files.end() || (!isScript && !rest.ends_with(".css")))
        return refuse(404, "Nothing is served here.");
    return respond(200, isScript ? "text/javascript;charset=UTF-8" : "text/css;charset=UTF-8",
                   std::string(found->text));
}

Answer Page::choices(std::string_view /*rest*/, const Request& /*request*/) {
    JSON scenarios = JSON::array({choiceOf(standing_)});
    for (const auto& [name, play] : scenarios_.all())
        scenarios.push_back(choiceOf(play));
    JSON faults = JSON::array();
    for (const FaultRow& row : allFaults())
        faults.push_back(choiceOf(row));
    return respond(JSON{{"scenarios", std::move(scenarios)}, {"faults", std::move(faults)}});
}

Answer Page::events(std::string_view rest, const Request& /*request*/) {
    const auto number = numberIn(rest);
    if (!number) return refuse(404, "This is no number of an event.");
    const Journal::Excerpt excerpt = journal_.from(*number);
    JSONObjectWriter writer(excerpt.lines.size());
    writer.addJSON("oldest", std::to_string(excerpt.oldest));
    writer.addJSON("upTo", std::to_string(excerpt.next));
    writer.addJSON("desk", desk_.state().dump(-1, ' ', false, JSON::error_handler_t::replace));
    writer.addJSON("events", excerpt.lines);
    return respond(200, kJSONType, std::move(writer).finish());
}

Answer Page::log(std::string_view /*rest*/, const Request& /*request*/) {
    return respond(200, "application/jsonl;charset=UTF-8", journal_.text());
}

Answer Page::next(std::string_view rest, const Request& request) {
    if (request.body.empty()) {
        desk_.setNext(std::nullopt);
        return respond(JSON::object());
    }
    try {
        desk_.setNext(Play::read(std::string(rest), std::string(request.body)));
    } catch (const FaultyText& error) {
        return refuse(400, error.what());
    }
    return respond(JSON::object());
}

Answer Page::hold(std::string_view /*rest*/, const Request& request) {
    if (request.body != "true" && request.body != "false") return refuse(400, "The body is true or false.");
    desk_.setHolding(request.body == "true");
    return respond(JSON::object());
}

Answer Page::letGo(std::string_view rest, const Request& request) {
    if (request.body.empty()) return refuse(400, "An empty text cannot be sealed.");
    const auto number = numberIn(rest);
    if (!number || !desk_.letGo(*number, std::string(request.body)))
        return refuse(409, "This answer does not wait any more: it was sent, or the app has gone.");
    return respond(JSON::object());
}

} // namespace korvane::acs
