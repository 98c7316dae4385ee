#pragma once

#include "tools/acs/Scenario.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace korvane::acs {

/// A scenario under the name that a person knows it by.
struct Play {
    std::string name;
    std::string text;
    std::shared_ptr<const Scenario> scenario;

    /// @throws UsageError as `readScenario`.
    [[nodiscard]] static Play read(std::string name, std::string text);
    /// Of a file, whose path is the name.
    /// @throws UsageError as `readScenario`, and for one that cannot be read.
    [[nodiscard]] static Play load(const std::string& file);
};

/// The scenarios that a transaction can ask for by name. Immutable. Any thread.
class Scenarios {
public:
    using ByName = std::map<std::string, Play, std::less<>>;

    /// Those that come with the tool, and each `NAME.json` of a folder, which goes before one of the same name.
    /// @param folder  empty for none.
    /// @throws UsageError for a folder that cannot be read or a file that is no scenario.
    explicit Scenarios(const std::string& folder);

    /// Null for an unknown name.
    [[nodiscard]] const Play* find(std::string_view name) const;
    [[nodiscard]] const ByName& all() const noexcept { return plays_; }

private:
    ByName plays_;
};

} // namespace korvane::acs
