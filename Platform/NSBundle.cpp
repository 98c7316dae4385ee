#include "Platform/NSBundle.h"

#include "Platform/Security/SecKey.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace korvane {

namespace {

constexpr std::uintmax_t kLargestFile = std::uintmax_t{16} << 20U;

[[noreturn]] void raise(const std::error_code& error) {
    throw CFError(error.value(), error.message(), "NSPOSIXErrorDomain");
}

/// The newest error of the system, or `otherwise` where it left none.
std::error_code systemError(std::errc otherwise) {
    return errno != 0 ? std::error_code(errno, std::generic_category()) : std::make_error_code(otherwise);
}

} // namespace

std::shared_ptr<NSBundle> NSBundle::bundleWithPath(const std::string& folder) {
    return std::make_shared<FolderBundle>(folder);
}

std::optional<std::string> FolderBundle::URLForResource(const std::string& name,
                                                        const std::string& extension) const {
    if (name.empty()) return std::nullopt;
    const std::filesystem::path file =
        std::filesystem::path(folder_) / (extension.empty() ? name : name + "." + extension);
    std::error_code error;
    // A pipe or a device under the file's name would hold the reader up.
    if (!std::filesystem::is_regular_file(file, error)) return std::nullopt;
    return file.string();
}

Bytes contentsOfFile(const std::string& path) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (error) raise(error);
    if (size > kLargestFile) raise(std::make_error_code(std::errc::file_too_large));

    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file) raise(systemError(std::errc::permission_denied));
    Bytes bytes(static_cast<std::size_t>(size));
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size));
    if (static_cast<std::uintmax_t>(file.gcount()) != size) raise(systemError(std::errc::io_error));
    return bytes;
}

} // namespace korvane
