#include "tools/acs/ReadyFile.h"

#include "tools/common/UsageError.h"

#include <fstream>
#include <system_error>

#include <unistd.h>

namespace korvane::acs {

namespace fs = std::filesystem;
using tools::UsageError;

ReadyFile::ReadyFile(const std::string& path) : path_(path) {
    std::error_code error;
    const fs::file_type type = fs::symlink_status(path_, error).type();
    if (path.empty() || type == fs::file_type::not_found) return;
    if (type != fs::file_type::regular || !fs::remove(path_, error))
        throw UsageError("--ready-file: " + path + " is there, and is no file that can be replaced.");
}

ReadyFile::~ReadyFile() {
    std::error_code ignored;
    if (isWritten_) fs::remove(path_, ignored);
}

void ReadyFile::write(std::string_view text) {
    if (path_.empty()) return;
    // Who waits for the file must not find a part of it.
    const fs::path beside = path_.string() + "." + std::to_string(::getpid()) + ".new";
    std::ofstream file(beside, std::ios::binary);
    file << text << std::flush;
    std::error_code error = file ? std::error_code() : std::make_error_code(std::errc::io_error);
    if (!error) fs::rename(beside, path_, error);
    if (!error) {
        isWritten_ = true;
        return;
    }
    std::error_code ignored;
    fs::remove(beside, ignored);
    throw UsageError("--ready-file: " + path_.string() + " cannot be written.");
}

} // namespace korvane::acs
