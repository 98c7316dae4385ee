#pragma once

#include "Platform/JSON.h"
#include "Platform/Security/Secret.h"
#include "tools/acs/Sealing.h"

#include <chrono>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace korvane::acs {

enum class Delivery { send, withhold, closeConnection };

/// A field of an HTTP header.
struct HeaderField {
    const char* name;
    const char* value;
};

class HeldAnswer;

/// An answer on its way out. It is built stage by stage; each stage reads what the one before it left.
struct Answer {
    /// Of `/authenticate`: the chain in "x5c", another that a fault may put there, and the compact JWS.
    Chain chain;
    Chain foreignChain;
    std::string signedContent;

    /// Of `/challenge`: the members of the message, its text, the key that seals it, the body.
    JSON message;
    std::string text;
    SecretBytes key;
    std::string body;

    int status = 200;
    std::string_view contentType = "application/json;charset=UTF-8";
    std::span<const HeaderField> headers;
    Delivery delivery = Delivery::send;
    std::chrono::milliseconds delay{};
    /// Where a person decides first: the rest is what that brings.
    std::shared_ptr<HeldAnswer> held;
};

/// Where a fault strikes: what has just been made when it is let loose.
enum class Stage { chain, signedContent, message, text, key, body };

/// Which answers a fault can spoil.
enum class Place { authentication, step };

struct FaultParameter {
    enum class Type { text, any, seconds, object };
    enum class Presence { required, optional };

    std::string_view name;
    Type type;
    Presence presence;
};

struct FaultRow {
    std::string_view name;
    Stage stage;
    std::span<const FaultParameter> parameters;
    void (*strike)(Answer& answer, const JSON& parameters);
    /// For the help text.
    std::string_view effect;
};

[[nodiscard]] std::span<const FaultRow> allFaults();

/// The row of a name, or null.
[[nodiscard]] const FaultRow* findFault(std::string_view name);

[[nodiscard]] Place placeOf(const FaultRow& row);

/// A fault as a scenario asks for it: a row and the parameters that it takes.
struct Fault {
    const FaultRow* row;
    JSON parameters;
};

/// Lets a fault loose on an answer when its stage has come.
void strike(const std::optional<Fault>& fault, Stage stage, Answer& answer);

} // namespace korvane::acs
