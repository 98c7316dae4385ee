#pragma once

#include "tools/challenge/Certificates.h"

#include <QSize>

#include <string>

namespace korvane::screen {

/// How the device is held and set.
struct Setting {
    /// In points; wider than high lies on its side.
    QSize size{390, 844};
    bool isDark = false;
    double textScale = 1;
    bool hasKeyboard = false;
};

/// A running ACS, and what its chain of certificates is judged by.
struct AcsOptions {
    /// Of the 3DS server that takes the authentication request.
    std::string url;
    challenge::DirectoryServer server{.identifier = {}, .algorithm = "EC", .certificate = {}, .root = {}};
    /// Further authorities for HTTPS, as a file in DER or PEM.
    std::string authorities;
};

/// What the tool is started with. Empty texts stand for absent options.
struct Options {
    std::string cres;
    std::string theme;
    std::string output;
    bool isSheet = false;
    Setting setting;
    /// In place of a CRes.
    AcsOptions acs;
};

} // namespace korvane::screen
