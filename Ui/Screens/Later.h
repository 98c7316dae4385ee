#pragma once

#include "Platform/Dispatch.h"

namespace korvane {

/// How long a screen shows its spinner before it has anything sent, so that the spinner stands by then.
inline constexpr Seconds kActionDelay{1.0};

/// Work of the screens for later, on the platform's queues. Any thread.
void onMainQueue(DispatchQueue::Work work);
void onMainQueueAfter(Seconds delay, DispatchQueue::Work work);
void onGlobalQueueAfter(Seconds delay, DispatchQueue::Work work);

} // namespace korvane
