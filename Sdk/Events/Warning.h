#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace korvane {

enum class Severity { LOW, MEDIUM, HIGH };

/// What a check of the device's integrity found. The fields may be written; readers use the getters.
class Warning {
public:
    Warning(Severity itsSeverity, std::string itsId, std::string itsMessage)
        : severity(itsSeverity), id(std::move(itsId)), message(std::move(itsMessage)) {}

    [[nodiscard]] Severity getSeverity() const noexcept { return severity; }
    [[nodiscard]] const std::string& getId() const noexcept { return id; }
    [[nodiscard]] const std::string& getMessage() const noexcept { return message; }

    friend bool operator==(const Warning&, const Warning&) = default;

    Severity severity;
    std::string id;
    std::string message;
};

/// The warnings that there are, by name: identifier and severity.
namespace SevurityWarning {

struct Constant {
    std::string_view id;
    Severity severity;
};

inline constexpr Constant DEVICE_JAILBROKEN{"SW1", Severity::HIGH};
/// No check raises this one.
inline constexpr Constant TAMPERED_SDK_INTEGRITY{"SW2", Severity::HIGH};
inline constexpr Constant APP_RUN_IN_EMULATOR{"SW3", Severity::HIGH};
inline constexpr Constant DEBUGGER_ATTACHED{"SW4", Severity::MEDIUM};
inline constexpr Constant OS_VERSION_NOT_SUPPORTED{"SW5", Severity::HIGH};

} // namespace SevurityWarning

} // namespace korvane
