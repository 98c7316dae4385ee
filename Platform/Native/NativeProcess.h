#pragma once

#include "Platform/IntegrityChecks.h"
#include "Platform/NSProcessInfo.h"

#include <filesystem>

namespace korvane {

/// The file of the program that runs; empty where the system does not tell. A program that was replaced since
/// it started has the name that it had.
[[nodiscard]] std::filesystem::path programFile();

class NativeProcessInfo final : public NSProcessInfo {
public:
    [[nodiscard]] std::string machine() const override;
    [[nodiscard]] std::optional<std::string> environmentVariable(const std::string& name) const override;
};

/// A machine whose owner is its administrator cannot be jailbroken, nothing here can tell an emulator from a
/// virtual machine that is somebody's daily desktop, and no version of the system is known to be too old. So
/// only the debugger is looked for; the other checks report nothing, because nothing was examined.
class NativeIntegrityChecks final : public IntegrityChecks {
public:
    [[nodiscard]] bool isJailbroken() const override { return false; }
    [[nodiscard]] bool isEmulator() const override { return false; }
    /// Whether another process traces this one (/proc/self/status).
    [[nodiscard]] bool isDebuggerAttached() const override;
    [[nodiscard]] bool isOSVersionSupported() const override { return true; }
};

} // namespace korvane
