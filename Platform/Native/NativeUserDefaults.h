#pragma once

#include "Platform/NSUserDefaults.h"

#include <filesystem>
#include <map>
#include <mutex>

namespace korvane {

/// User defaults in one JSON file, which all processes of the user share. A write replaces the file in one
/// step, and processes take turns under a lock file beside it, so that none undoes another's keys and none
/// reads half a file. A file that is torn, empty or of another kind counts as empty.
class NativeUserDefaults final : public NSUserDefaults {
public:
    /// @param file  where the values lie; its folders are made when they are needed. An empty path keeps all
    /// in memory.
    explicit NativeUserDefaults(std::filesystem::path file);
    NativeUserDefaults(const NativeUserDefaults&) = delete;
    NativeUserDefaults& operator=(const NativeUserDefaults&) = delete;
    /// Tries once more to save what could not be saved.
    ~NativeUserDefaults() override;

    /// `korvane/defaults.json` under XDG_CONFIG_HOME or ~/.config; empty where the environment names no home.
    [[nodiscard]] static std::filesystem::path defaultFile();

    [[nodiscard]] std::optional<JSON> valueForKey(const std::string& key) const override;
    void setObject(const JSON& object, const std::string& key) override;
    bool synchronize() override;

private:
    bool save();

    const std::filesystem::path file_;
    mutable std::mutex mutex_;
    std::map<std::string, JSON> unsaved_;
};

} // namespace korvane
