#include "Platform/Native/NativeUserDefaults.h"

#include "Platform/Native/FileAccess.h"

#include <cstdlib>

namespace korvane {

namespace {

namespace fs = std::filesystem;

/// The values in the file, or no value where the file is there and cannot be read: then it must not be
/// replaced either.
std::optional<JSON> readValues(const fs::path& file) {
    const FileContents contents = readContents(file);
    if (contents.state == FileState::unreadable) return std::nullopt;
    std::optional<JSON> values = JSONSerialization::jsonObject(contents.text);
    return values && values->is_object() ? *std::move(values) : JSON::object();
}

/// Whether the file could be written with this member in it, and read back.
bool isStorable(const JSON& object, const std::string& key) {
    const std::optional<std::string> text = JSONSerialization::data(JSON::object({{key, object}}));
    return text && JSONSerialization::jsonObject(*text);
}

fs::path absoluteFolder(const char* variable) {
    const char* value = std::getenv(variable);
    const fs::path folder = value ? value : "";
    return folder.is_absolute() ? folder : fs::path();
}

} // namespace

NativeUserDefaults::NativeUserDefaults(fs::path file) : file_(std::move(file)) {}

NativeUserDefaults::~NativeUserDefaults() {
    synchronize();
}

fs::path NativeUserDefaults::defaultFile() {
    fs::path folder = absoluteFolder("XDG_CONFIG_HOME");
    if (folder.empty()) {
        const fs::path home = absoluteFolder("HOME");
        if (home.empty()) return {};
        folder = home / ".config";
    }
    return folder / "korvane" / "defaults.json";
}

std::optional<JSON> NativeUserDefaults::valueForKey(const std::string& key) const {
    {
        const std::lock_guard lock(mutex_);
        const auto unsaved = unsaved_.find(key);
        if (unsaved != unsaved_.end()) return unsaved->second;
    }
    const std::optional<JSON> values = readValues(file_);
    if (!values || !values->contains(key)) return std::nullopt;
    return values->at(key);
}

void NativeUserDefaults::setObject(const JSON& object, const std::string& key) {
    if (!isStorable(object, key)) return;
    const std::lock_guard lock(mutex_);
    unsaved_.insert_or_assign(key, object);
    save();
}

bool NativeUserDefaults::synchronize() {
    const std::lock_guard lock(mutex_);
    return save();
}

bool NativeUserDefaults::save() {
    if (unsaved_.empty()) return true;
    if (file_.empty() || !makeFolders(file_.parent_path())) return false;
    const FileLock turn(fs::path(file_) += ".lock");
    if (!turn.isHeld()) return false;
    std::optional<JSON> values = readValues(file_);
    if (!values) return false;
    for (const auto& [key, object] : unsaved_)
        (*values)[key] = object;
    const std::optional<std::string> text = JSONSerialization::data(*values);
    if (!text || !replaceContents(file_, *text)) return false;
    unsaved_.clear();
    return true;
}

} // namespace korvane
