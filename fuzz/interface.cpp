// The face for C, as a program calls it that means no good: any order of calls, with any texts, numbers and handles.

#include "C/korvane_c.h"
#include "fuzz/support/Certificates.h"
#include "fuzz/support/Fuzz.h"

#include <vector>

namespace korvane::fuzzing {

namespace {

constexpr const char* kServer = "A999999999";

/// One input, taken piece by piece; at its end all is nothing.
class Pieces {
public:
    explicit Pieces(ByteView input) : rest_(input) {}

    [[nodiscard]] bool isAtEnd() const { return rest_.empty(); }
    std::uint8_t byte() {
        if (rest_.empty()) return 0;
        const std::uint8_t first = rest_.front();
        rest_ = rest_.subspan(1);
        return first;
    }
    /// As long as its first byte says.
    std::string text() {
        const std::size_t length = std::min<std::size_t>(byte(), rest_.size());
        const std::string taken(asText(rest_.first(length)));
        rest_ = rest_.subspan(length);
        return taken;
    }

private:
    ByteView rest_;
};

/// What a program holds.
struct Program {
    std::vector<const void*> handles;
    korvane_platform* platform = nullptr;

    /// Mostly a handle that there is or was; of a type that need not be the right one.
    template <class Handle>
    [[nodiscard]] Handle* any(std::uint8_t number) const {
        const void* const handle = number < handles.size() ? handles[number] : nullptr;
        return static_cast<Handle*>(const_cast<void*>(handle));
    }
};

void send(void* context, const korvane_http_request* request) {
    korvane_http_answer answer{};
    answer.size = sizeof answer;
    answer.error = "no network";
    const auto result = korvane_platform_complete(static_cast<Program*>(context)->platform, request->number,
                                                  &answer, nullptr);
    require(result == KORVANE_OK, "An exchange is not waited for.");
}

void answer(void*, korvane_value value, korvane_answer* answer) {
    if (value == KORVANE_RESOURCES) korvane_answer_add(answer, KORVANE_MAIN_BUNDLE "/Frameworks", nullptr);
}

void makePlatform(Program& program) {
    korvane_host host{};
    host.size = sizeof host;
    host.context = &program;
    host.send = send;
    host.value = answer;
    host.load = [](void*, const char*, korvane_answer*) {};
    host.save = [](void*, const char*, const char*) { return true; };
    require(korvane_platform_create(&host, &program.platform, nullptr) == KORVANE_OK,
            "There is no platform.");
    program.handles.push_back(program.platform);
}

void keep(Program& program, korvane_result result, const void* handle) {
    require((result == KORVANE_OK) == (handle != nullptr), "A result and its handle disagree.");
    if (handle) program.handles.push_back(handle);
}

void makeService(Program& program, Pieces& pieces) {
    const std::string locale = pieces.text(), own = pieces.text(), theme = pieces.text();
    const Certificates& known = certificates();
    const bool isKnown = own.empty();
    const auto* const bytes = isKnown ? known.ecLeaf.data() : asBytes(own).data();
    const std::size_t length = isKnown ? known.ecLeaf.size() : own.size();
    const korvane_directory_server server{kServer, pieces.byte() % 3, bytes,
                                          length,  known.root.data(), known.root.size()};
    const korvane_configuration configuration{sizeof configuration, &server, 1, locale.c_str(),
                                              theme.empty() ? nullptr : theme.c_str()};
    korvane_service* made = nullptr;
    keep(program,
         korvane_service_create(program.any<korvane_platform>(pieces.byte()), &configuration, &made, nullptr),
         made);
}

void makeTransaction(Program& program, Pieces& pieces) {
    const std::string version = pieces.text();
    korvane_transaction* made = nullptr;
    keep(program,
         korvane_transaction_create(program.any<korvane_service>(pieces.byte()), kServer,
                                    version.empty() ? "2.2.0" : version.c_str(), &made, nullptr),
         made);
}

void makeCardholder(Program& program, Pieces& pieces) {
    const std::string values = pieces.text();
    korvane_cardholder* made = nullptr;
    keep(program,
         korvane_cardholder_create(
             program.any<korvane_transaction>(pieces.byte()), values.c_str(), pieces.byte(),
             [](void*, const char*) {}, nullptr, &made, nullptr),
         made);
}

void act(Program& program, Pieces& pieces) {
    const std::string action = pieces.text();
    korvane_error error{};
    korvane_cardholder_act(program.any<korvane_cardholder>(pieces.byte()), action.c_str(), &error);
    require((error.result == KORVANE_OK) == (error.text[0] == '\0'), "A failure has no text.");
}

void read(Program& program, Pieces& pieces) {
    char* text = nullptr;
    if (korvane_service_warnings(program.any<korvane_service>(pieces.byte()), &text, nullptr) == KORVANE_OK)
        korvane_free(text);
    korvane_authentication_request request{};
    auto* const transaction = program.any<korvane_transaction>(pieces.byte());
    if (korvane_transaction_authentication_request(transaction, &request, nullptr) == KORVANE_OK)
        require(request.device_data && request.sdk_ephemeral_public_key, "A request lacks a value.");
}

void count(Program& program, Pieces& pieces) {
    const void* const handle = program.any<void>(pieces.byte());
    if (handle == program.platform) return; // the last one's end is the run's
    korvane_release(handle, nullptr);
}

void turn(Program& program, Pieces& pieces) {
    korvane_platform_set_screen(program.any<korvane_platform>(pieces.byte()), pieces.byte() % 6,
                                pieces.byte() * 1000.0, 844, nullptr);
}

constexpr void (*kCalls[])(Program&,
                           Pieces&) = {makeService, makeTransaction, makeCardholder, act, read, count, turn};

} // namespace

void run(ByteView input) {
    constexpr int kMostCalls = 24;
    Program program;
    makePlatform(program);
    Pieces pieces(input);
    for (int calls = 0; calls < kMostCalls && !pieces.isAtEnd(); ++calls) {
        kCalls[pieces.byte() % std::size(kCalls)](program, pieces);
        korvane_platform_run(program.platform, 0, nullptr, nullptr);
    }
    for (const void* handle : program.handles)
        if (handle != program.platform) korvane_release(handle, nullptr);
    require(korvane_release(program.platform, nullptr) == KORVANE_OK, "The platform does not end.");
}

} // namespace korvane::fuzzing
