#pragma once

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

/// What the tool is started with. Empty texts stand for absent options.
struct Options {
    std::string cres;
    std::string theme;
    std::string output;
    bool isSheet = false;
    Setting setting;
};

} // namespace korvane::screen
