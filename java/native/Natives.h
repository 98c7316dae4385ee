#pragma once

#include "java/native/Jvm.h"

namespace korvane::java {

/// Gives `korvane.Native` its functions.
/// @throws Pending where its declarations are others than these.
void registerNatives(JNIEnv* env, jclass self);

} // namespace korvane::java
