#include "tools/acs/Scenarios.h"

#include "tools/acs/Embedded.h"
#include "tools/common/InputFile.h"
#include "tools/common/UsageError.h"

#include <filesystem>

namespace korvane::acs {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kShipped = "scenarios/";

/// The name of a scenario's file without its folder and ".json"; empty for another file.
std::string nameOf(const fs::path& file) {
    return file.extension() == ".json" ? file.stem().string() : std::string();
}

} // namespace

Play Play::read(std::string name, std::string text) {
    auto scenario = std::make_shared<const Scenario>(readScenario(text, name));
    return {std::move(name), std::move(text), std::move(scenario)};
}

Play Play::load(const std::string& file) {
    return read(file, tools::readInputFile(file));
}

Scenarios::Scenarios(const std::string& folder) {
    for (const EmbeddedFile& file : embeddedFiles())
        if (file.name.starts_with(kShipped))
            plays_.emplace(nameOf(file.name), Play::read(nameOf(file.name), std::string(file.text)));
    if (folder.empty()) return;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
        if (nameOf(entry.path()).empty()) continue;
        Play play = Play::load(entry.path().string());
        play.name = nameOf(entry.path());
        plays_.insert_or_assign(play.name, std::move(play));
    }
    if (error) throw tools::UsageError("--scenarios: " + folder + ": " + error.message() + ".");
}

const Play* Scenarios::find(std::string_view name) const {
    const auto found = plays_.find(name);
    return found == plays_.end() ? nullptr : &found->second;
}

} // namespace korvane::acs
