#include "tools/challenge/Authentication.h"

#include "Platform/Platform.h"

namespace korvane::challenge {

namespace {

constexpr Seconds kTimeLimit{60.0};

URLRequest requestOf(const std::string& url, const JSON& values) {
    URLRequest request{URL::make(url).value()};
    request.httpMethod = "POST";
    request.httpHeaderFields = {{"Content-Type", "application/json;charset=UTF-8"}};
    request.httpBody = toBytes(values.dump());
    return request;
}

ServerReply replyOf(const std::optional<Bytes>& body, const std::optional<std::string>& error,
                    const Wire& wire) {
    if (!body) return {std::nullopt, "There is no answer: " + error.value_or("none came.")};
    const int status = wire.lastStatus();
    auto values = JSONSerialization::jsonObject(asText(*body));
    const bool isFit =
        status / 100 == 2 && values && values->is_object() && values->value("messageType", JSON()) != "Erro";
    if (!isFit)
        return {std::nullopt, "The answer has no values for a challenge: " + describeAnswer(status, *body)};
    return {std::move(values), {}};
}

} // namespace

void askServer(const std::string& url, const JSON& request, std::shared_ptr<const Wire> wire,
               std::function<void(const ServerReply&)> onReply) {
    DispatchQueue& queue = Platform::current().dispatch().mainQueue();
    URLSessionConfiguration configuration;
    configuration.timeoutIntervalForResource = kTimeLimit;
    const auto session = Platform::current().makeURLSession(configuration);
    session
        ->dataTask(requestOf(url, request),
                   [&queue, wire = std::move(wire), onReply = std::move(onReply)](auto body, auto error) {
                       queue.async([onReply, reply = replyOf(body, error, *wire)] { onReply(reply); });
                   })
        ->resume();
}

} // namespace korvane::challenge
