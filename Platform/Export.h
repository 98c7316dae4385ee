#pragma once

/// What can be seen from outside the library where that is a shared one; all else is hidden.
#define KORVANE_EXPORT [[gnu::visibility("default")]]
