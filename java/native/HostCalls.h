#pragma once

#include "java/native/Jvm.h"

namespace korvane::java {

/// Which services a host has beside its values, as `korvane.Native` counts them.
enum Services : jint { kNetwork = 1, kStore = 2, kLog = 4 };

/// The functions of the host that Java knows by a number.
[[nodiscard]] korvane_host hostOf(jlong number, jint services);

/// Tells Java an event of the challenge that it knows by a number.
void tellEvent(void* context, const char* json);

} // namespace korvane::java
