#include "Platform/Native/NativeUserDefaults.h"

#include "Platform/Native/FileAccess.h"
#include "Platform/Native/NativeProcess.h"

#include <cstdlib>

namespace korvane {

namespace {

namespace fs = std::filesystem;

/// What the program's own file holds, which is the user's from now on if there was none. Where that cannot be
/// moved it is read where it lies.
FileContents readOrTakeOver(const NativeUserDefaults::Place& place) {
    FileContents own = readContents(place.file);
    if (own.state != FileState::missing || place.usersFile.empty()) return own;
    FileContents users = readContents(place.usersFile);
    if (users.state != FileState::read || place.file.empty()) return own;
    const bool isOurs = makeFolders(place.file.parent_path()) && moveFile(place.usersFile, place.file);
    own = readContents(place.file);
    return isOurs || own.state != FileState::missing ? own : users;
}

fs::path absoluteFolder(const char* variable) {
    const char* value = std::getenv(variable);
    const fs::path folder = value ? value : "";
    return folder.is_absolute() ? folder : fs::path();
}

} // namespace

NativeUserDefaults::NativeUserDefaults(Place place) : place_(std::move(place)) {}

NativeUserDefaults::~NativeUserDefaults() {
    synchronize();
}

NativeUserDefaults::Place NativeUserDefaults::usualPlace() {
    fs::path folder = absoluteFolder("XDG_CONFIG_HOME");
    if (folder.empty()) {
        const fs::path home = absoluteFolder("HOME");
        if (home.empty()) return {};
        folder = home / ".config";
    }
    folder /= "korvane";
    constexpr const char* kFile = "defaults.json";
    return {folder / programFile().filename() / kFile, folder / kFile};
}

/// The values in the file, or no value where the file is there and cannot be read: then it must
/// not be replaced either.
std::optional<JSON> NativeUserDefaults::storedValues() const {
    const FileContents contents = readOrTakeOver(place_);
    if (contents.state == FileState::unreadable) return std::nullopt;
    std::optional<JSON> values = JSONSerialization::jsonObject(contents.text);
    return values && values->is_object() ? *std::move(values) : JSON::object();
}

std::optional<std::string> NativeUserDefaults::valueForKey(const std::string& key) const {
    {
        const std::lock_guard lock(mutex_);
        const auto unsaved = unsaved_.find(key);
        if (unsaved != unsaved_.end()) return unsaved->second;
    }
    const std::optional<JSON> values = storedValues();
    if (!values || !values->contains(key) || !values->at(key).is_string()) return std::nullopt;
    return values->at(key).get<std::string>();
}

void NativeUserDefaults::setObject(const std::string& object, const std::string& key) {
    if (!isUtf8(object) || !isUtf8(key)) return;
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
    if (place_.file.empty() || !makeFolders(place_.file.parent_path())) return false;
    const FileLock turn(fs::path(place_.file) += ".lock");
    if (!turn.isHeld()) return false;
    std::optional<JSON> values = storedValues();
    if (!values) return false;
    for (const auto& [key, object] : unsaved_)
        (*values)[key] = object;
    const std::optional<std::string> text = JSONSerialization::data(*values);
    if (!text || !replaceContents(place_.file, *text)) return false;
    unsaved_.clear();
    return true;
}

} // namespace korvane
