#include "Cardholder/Cardholder.h"

#include "C/Objects.h"
#include "Cardholder/Actions.h"
#include "Cardholder/Values.h"
#include "Input/InputError.h"
#include "Platform/JSONBreak.h"
#include "Platform/View/UIApplication.h"

using namespace korvane;
using namespace korvane::c;
using cardholder::Cardholder;

namespace {

/// What a `korvane_cardholder` names.
class CardholderObject final : public Object {
public:
    explicit CardholderObject(std::shared_ptr<Cardholder> cardholder) : cardholder_(std::move(cardholder)) {}

    [[nodiscard]] Cardholder& cardholder() const noexcept { return *cardholder_; }

    /// Its window is the main thread's, which may be in it.
    void go(std::shared_ptr<Object>&& self) override {
        static_cast<void>(call(nullptr, [&] {
            Visit().platform().dispatch().mainQueue().async(
                [held = std::move(self)] { static_cast<void>(held); });
        }));
    }

private:
    const std::shared_ptr<Cardholder> cardholder_;
};

/// A program's function, until it has been told that nothing more comes.
struct Program {
    korvane_event_function function;
    void* context;

    void tell(const JSON& event) const {
        function(context, event.dump(-1, ' ', false, JSON::error_handler_t::replace).c_str());
    }
    void finish() const { function(context, nullptr); }
};

/// A caller's JSON object.
JSON objectOf(const char* text, const char* name) {
    const std::string copy = textOf(text, name);
    const auto object = JSONSerialization::jsonObject(copy);
    if (!object || !object->is_object())
        throw CallError(KORVANE_BAD_ARGUMENT, std::string(name) + ": " + complaintAboutLine(copy));
    return *object;
}

/// Carries out what reads a caller's JSON.
template <class Body>
auto reading(const Body& body) {
    try {
        return body();
    } catch (const input::InputError& error) {
        throw CallError(KORVANE_BAD_ARGUMENT, error.description());
    } catch (const cardholder::Refusal& refusal) {
        throw CallError(KORVANE_REFUSED, refusal.what());
    }
}

std::shared_ptr<Cardholder> makeCardholder(HostedPlatform& platform, Program program) {
    return Cardholder::make(
        [program](const JSON& event) { program.tell(event); }, [program] { program.finish(); },
        [&platform](UIDeviceOrientation orientation, CGSize screen) { platform.turn(orientation, screen); });
}

} // namespace

korvane_result korvane_cardholder_create(korvane_transaction* transaction, const char* values_json,
                                         int64_t minutes, korvane_event_function event, void* context,
                                         korvane_cardholder** cardholder, korvane_error* error) {
    return call(error, [&] {
        const Visit visit;
        visit.requireMain();
        const auto found = visit.find<TransactionObject>(transaction, "transaction");
        require(event, "event");
        require(cardholder, "cardholder");
        const JSON values = objectOf(values_json, "values_json");
        auto parameters = reading([&] { return cardholder::challengeParameters(values); });
        requireReadyForChallenge(visit, minutes);
        if (UIApplication::shared().keyWindow())
            throw CallError(KORVANE_BAD_STATE, "Another cardholder has the screen.");
        found->takeStart();
        const auto made = makeCardholder(visit.platform(), {event, context});
        *cardholder = Handles::shared().add<korvane_cardholder>(std::make_shared<CardholderObject>(made));
        made->begin(*found->transaction, std::move(parameters), minutes);
    });
}

korvane_result korvane_cardholder_act(korvane_cardholder* cardholder, const char* action_json,
                                      korvane_error* error) {
    return call(error, [&] {
        const Visit visit;
        visit.requireMain();
        const auto found = visit.find<CardholderObject>(cardholder, "cardholder");
        const JSON action = objectOf(action_json, "action_json");
        if (!found->cardholder().isWaiting())
            throw CallError(KORVANE_BAD_STATE, "No screen waits for an action.");
        reading([&] { found->cardholder().act(action); });
    });
}
