#include "Platform/Native/NativeDevice.h"

#include <sys/utsname.h>
#include <unistd.h>

#include <array>
#include <fstream>
#include <iterator>

namespace korvane {

namespace {

std::optional<std::string> readWholeFile(const char* path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(file), {});
}

/// The first of the two places is the administrator's, the second the distribution's.
std::string osRelease() {
    if (auto file = readWholeFile("/etc/os-release")) return *std::move(file);
    return readWholeFile("/usr/lib/os-release").value_or("");
}

/// Takes the shell's quotes and backslashes off.
std::string unquoted(std::string_view value) {
    const bool isQuoted =
        value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
    const bool isLiteral = isQuoted && value.front() == '\'';
    if (isQuoted) value = value.substr(1, value.size() - 2);
    std::string text;
    for (std::size_t index = 0; index < value.size(); ++index) {
        const bool isEscape = value[index] == '\\' && !isLiteral && index + 1 < value.size();
        if (isEscape) ++index;
        text += value[index];
    }
    return text;
}

} // namespace

std::optional<std::string> osReleaseValue(std::string_view file, std::string_view name) {
    while (!file.empty()) {
        const std::string_view line = file.substr(0, file.find('\n'));
        file.remove_prefix(std::min(line.size() + 1, file.size()));
        if (line.size() > name.size() && line.substr(0, name.size()) == name && line[name.size()] == '=')
            return unquoted(line.substr(name.size() + 1));
    }
    return std::nullopt;
}

std::string NativeDevice::systemName() const {
    if (auto name = osReleaseValue(osRelease(), "NAME")) return *std::move(name);
    utsname system{};
    return uname(&system) == 0 ? std::string(system.sysname) : std::string();
}

std::string NativeDevice::systemVersion() const {
    return osReleaseValue(osRelease(), "VERSION_ID").value_or("");
}

std::string NativeDevice::name() const {
    std::array<char, 257> name{};
    return gethostname(name.data(), name.size() - 1) == 0 ? std::string(name.data()) : std::string();
}

std::optional<std::string> NativeDevice::identifierForVendor() const {
    return std::nullopt;
}

UIUserInterfaceIdiom NativeDevice::userInterfaceIdiom() const {
    return UIUserInterfaceIdiom::unspecified;
}

} // namespace korvane
