#pragma once

namespace korvane {

/// Tells storyboards of the keyboard's classes. A `CustomKeyboard` can stand in a scene. `CustomToolBar` and
/// `SecKeyboardInputViewController` are made by their users only: a scene that names one ends the process
/// (`fatalError`). Any thread.
void registerKeyboardClasses();

} // namespace korvane
