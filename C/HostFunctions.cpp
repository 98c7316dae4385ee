#include "C/HostFunctions.h"

#include "C/Call.h"
#include "C/Handles.h"

namespace korvane::c {

namespace {

constexpr std::size_t kMostTexts = 10'000;

/// What a `korvane_answer` names while a callback answers.
struct AnswerObject final : Object {
    std::vector<std::string> texts;
};

/// What a callback answers.
template <class Ask>
std::vector<std::string> answerOf(const Ask& ask) {
    const auto answer = std::make_shared<AnswerObject>();
    auto* const handle = Handles::shared().add<korvane_answer>(answer);
    ask(handle);
    Handles::shared().release(handle);
    return std::move(answer->texts);
}

std::optional<std::string> loaded(const korvane_host& host, const std::string& key) {
    auto texts = answerOf([&](korvane_answer* answer) { host.load(host.context, key.c_str(), answer); });
    return texts.size() == 1 ? std::optional(std::move(texts.front())) : std::nullopt;
}

void send(const korvane_host& host, const HostRequest& request) {
    std::vector<korvane_http_header> headers;
    for (const auto& [name, value] : request.headers)
        headers.push_back({name.c_str(), value.c_str()});
    static constexpr std::uint8_t kNothing = 0;
    const bool isEmpty = !request.body || request.body->empty();
    const korvane_http_request lentRequest{
        .number = request.number,
        .url = request.url.c_str(),
        .method = request.method.c_str(),
        .headers = headers.data(),
        .header_count = headers.size(),
        .body = !request.body ? nullptr : (isEmpty ? &kNothing : request.body->data()),
        .body_length = isEmpty ? 0 : request.body->size(),
        .authorities = request.authorities.c_str(),
        .patience = request.patience.count()};
    host.send(host.context, &lentRequest);
}

class ProgramsLogger final : public IKorvaneLogger {
public:
    explicit ProgramsLogger(const korvane_host& host) : host_(host) {}

    void log(const std::string& message, const char* file, const char* function, unsigned line) override {
        host_.log(host_.context, message.c_str(), file, function, line);
    }

private:
    const korvane_host host_;
};

} // namespace

Host hostOf(const korvane_host& functions) {
    if ((functions.load == nullptr) != (functions.save == nullptr))
        throw CallError(KORVANE_BAD_ARGUMENT, "Of load and save there are both or none.");
    Host host;
    if (functions.wake_main) host.wakeMain = [functions] { functions.wake_main(functions.context); };
    if (functions.value)
        host.values = [functions](HostValue value) {
            return answerOf([&](korvane_answer* answer) {
                functions.value(functions.context, static_cast<korvane_value>(value), answer);
            });
        };
    if (functions.send) host.send = [functions](const HostRequest& request) { send(functions, request); };
    if (functions.cancel)
        host.cancel = [functions](std::uint64_t number) { functions.cancel(functions.context, number); };
    if (functions.load) {
        host.load = [functions](const std::string& key) { return loaded(functions, key); };
        host.save = [functions](const std::string& key, const std::string& text) {
            return functions.save(functions.context, key.c_str(), text.c_str());
        };
    }
    return host;
}

std::shared_ptr<IKorvaneLogger> loggerOf(const korvane_host& functions) {
    return functions.log ? std::make_shared<ProgramsLogger>(functions) : nullptr;
}

// HostValue and korvane_value count alike.
static_assert(static_cast<int>(HostValue::systemName) == KORVANE_SYSTEM_NAME);
static_assert(static_cast<int>(HostValue::timeZone) == KORVANE_TIME_ZONE);
static_assert(static_cast<int>(HostValue::isSystemSupported) == KORVANE_IS_SYSTEM_SUPPORTED);
static_assert(static_cast<int>(HostValue::resources) == KORVANE_RESOURCES);

} // namespace korvane::c

using namespace korvane::c;

korvane_result korvane_answer_add(korvane_answer* answer, const char* text, korvane_error* error) {
    return call(error, [&] {
        require(answer, "answer");
        const auto found = Handles::shared().find<AnswerObject>(answer);
        if (!found) throw CallError(KORVANE_BAD_HANDLE, "answer is there within its callback only.");
        if (found->texts.size() == kMostTexts)
            throw CallError(KORVANE_TOO_LARGE, "The answer has too many texts.");
        found->texts.push_back(textOf(text, "text"));
    });
}
