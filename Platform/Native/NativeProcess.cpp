#include "Platform/Native/NativeProcess.h"

#include <sys/utsname.h>

#include <cstdlib>
#include <fstream>
#include <string_view>

namespace korvane {

std::filesystem::path programFile() {
    constexpr std::string_view kReplaced = " (deleted)";
    std::error_code error;
    std::string file = std::filesystem::read_symlink("/proc/self/exe", error).string();
    if (std::string_view(file).ends_with(kReplaced)) file.resize(file.size() - kReplaced.size());
    return file;
}

std::string NativeProcessInfo::machine() const {
    utsname system{};
    return uname(&system) == 0 ? std::string(system.machine, sizeof system.machine) : std::string();
}

std::optional<std::string> NativeProcessInfo::environmentVariable(const std::string& name) const {
    const char* value = std::getenv(name.c_str());
    return value ? std::optional<std::string>(value) : std::nullopt;
}

bool NativeIntegrityChecks::isDebuggerAttached() const {
    constexpr std::string_view kField = "TracerPid:";
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.compare(0, kField.size(), kField) == 0) return std::atol(line.c_str() + kField.size()) != 0;
    return false;
}

} // namespace korvane
