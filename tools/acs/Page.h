#pragma once

#include "tools/acs/Desk.h"
#include "tools/acs/Faults.h"
#include "tools/acs/Journal.h"
#include "tools/acs/Request.h"
#include "tools/acs/Scenarios.h"

#include <optional>
#include <string>
#include <vector>

namespace korvane::acs {

/// The page at `/`, for a person at this machine, and what it asks for under `/control/`. It shows messages of
/// strangers and steers the tool, so it answers no other machine, no name of a foreign site that leads here, and
/// no script of another page: requests under `/control/` carry a token that stands in the page alone.
/// Any thread.
class Page {
public:
    /// @param port  that the service listens on.
    /// @param standing  what is played where nothing else is asked for.
    Page(int port, const Play& standing, const Scenarios& scenarios, const Journal& journal, Desk& desk);

    /// No value for a path that is not the page's.
    [[nodiscard]] std::optional<Answer> answer(const Request& request);

private:
    struct Route;

    [[nodiscard]] const char* objection(const Request& request, const Route& route) const;
    [[nodiscard]] Answer index(std::string_view rest, const Request& request);
    [[nodiscard]] Answer file(std::string_view rest, const Request& request);
    [[nodiscard]] Answer choices(std::string_view rest, const Request& request);
    [[nodiscard]] Answer events(std::string_view rest, const Request& request);
    [[nodiscard]] Answer log(std::string_view rest, const Request& request);
    [[nodiscard]] Answer next(std::string_view rest, const Request& request);
    [[nodiscard]] Answer hold(std::string_view rest, const Request& request);
    [[nodiscard]] Answer letGo(std::string_view rest, const Request& request);

    const std::vector<std::string> hosts_;
    const std::string token_;
    const Play& standing_;
    const Scenarios& scenarios_;
    const Journal& journal_;
    Desk& desk_;
};

} // namespace korvane::acs
