#pragma once

#include "Platform/JSON.h"
#include "Platform/NSUserDefaults.h"

#include <filesystem>
#include <map>
#include <mutex>
#include <utility>

namespace korvane {

/// User defaults in one JSON file, which all processes of one program and user share. A write replaces the
/// file in one step, and processes take turns under a lock file beside it, so that none undoes another's keys
/// and none reads half a file. A file that is torn, empty or of another kind counts as empty.
class NativeUserDefaults final : public NSUserDefaults {
public:
    /// Where the values lie.
    struct Place {
        /// Its folders are made when they are needed. An empty path keeps all in memory.
        std::filesystem::path file;

        /// The file that all programs of the user had in common once. The first program that asks and has no
        /// file of its own takes it over, and the others begin anew.
        std::filesystem::path usersFile = {};
    };

    explicit NativeUserDefaults(Place place);
    explicit NativeUserDefaults(std::filesystem::path file) : NativeUserDefaults(Place{std::move(file)}) {}
    NativeUserDefaults(const NativeUserDefaults&) = delete;
    NativeUserDefaults& operator=(const NativeUserDefaults&) = delete;
    /// Tries once more to save what could not be saved.
    ~NativeUserDefaults() override;

    /// `korvane/PROGRAM/defaults.json` under XDG_CONFIG_HOME or ~/.config, which once was
    /// `korvane/defaults.json`; empty where the environment names no home. PROGRAM is the name of the
    /// program's file, wherever that lies, so that the values outlast an update.
    [[nodiscard]] static Place usualPlace();

    [[nodiscard]] std::optional<std::string> valueForKey(const std::string& key) const override;
    void setObject(const std::string& object, const std::string& key) override;
    bool synchronize() override;

private:
    bool save();
    [[nodiscard]] std::optional<JSON> storedValues() const;

    const Place place_;
    mutable std::mutex mutex_;
    std::map<std::string, std::string> unsaved_;
};

} // namespace korvane
