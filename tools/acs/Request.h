#pragma once

#include <string>
#include <string_view>

namespace korvane::acs {

/// A request as it came. Borrows the body.
struct Request {
    std::string method;
    /// Without a query.
    std::string path;
    std::string_view body;

    /// Fields of the header; empty where they are absent.
    std::string host;
    std::string origin;
    std::string token;
    std::string scenario;

    /// Whether it comes from this machine.
    bool isLocal = false;
};

/// Fields of this tool's own.
inline constexpr const char* kTokenField = "Korvane-Token";
inline constexpr const char* kScenarioField = "Korvane-Scenario";

} // namespace korvane::acs
