#include "Sdk/DeviceData/IntegrityWarnings.h"

#include "Platform/Logger.h"

#include <array>
#include <string>
#include <string_view>

namespace korvane {

namespace {

struct CheckRow {
    SevurityWarning::Constant constant;
    bool (*isPositive)(const IntegrityChecks&);
    std::string_view message;
    std::string_view logLine;
};

constexpr std::array<CheckRow, 4> kChecks{{
    {SevurityWarning::DEVICE_JAILBROKEN, [](const IntegrityChecks& checks) { return checks.isJailbroken(); },
     "Device is jailbroken", "Device is jailbroken."},
    {SevurityWarning::APP_RUN_IN_EMULATOR, [](const IntegrityChecks& checks) { return checks.isEmulator(); },
     "An emulator is being used to run the App.", "An emulator is being used to run the App."},
    {SevurityWarning::DEBUGGER_ATTACHED,
     [](const IntegrityChecks& checks) { return checks.isDebuggerAttached(); },
     "A debugger is attached to the App.", "A debugger is attached to the App."},
    {SevurityWarning::OS_VERSION_NOT_SUPPORTED,
     [](const IntegrityChecks& checks) { return !checks.isOSVersionSupported(); },
     "The OS or the OS version is not supported.", "The OS or the OS version is not supported."},
}};

} // namespace

std::vector<Warning> findIntegrityWarnings(const IntegrityChecks& checks) {
    std::vector<Warning> warnings;
    for (const CheckRow& row : kChecks) {
        if (!row.isPositive(checks)) continue;
        KORVANE_LOG("findIntegrityWarnings(_:)", std::string(row.logLine));
        warnings.emplace_back(row.constant.severity, std::string(row.constant.id), std::string(row.message));
    }
    return warnings;
}

} // namespace korvane
