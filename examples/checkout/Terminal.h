#pragma once

namespace korvane::checkout {

/// Keeps the terminal for what this program has to say: the library's line at the end of each transaction does not
/// reach standard output, and of Qt's messages only failures and what concerns a page reach standard error. Who sets
/// QT_LOGGING_RULES gets all of Qt's. Everything else passes. Before the application is made.
void quietenTerminal();

} // namespace korvane::checkout
