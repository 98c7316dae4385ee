#include "Ui/Screens/Later.h"

#include "Platform/Platform.h"

namespace korvane {

namespace {

Dispatch& dispatch() {
    return Platform::current().dispatch();
}

} // namespace

void onMainQueue(DispatchQueue::Work work) {
    dispatch().mainQueue().async(std::move(work));
}

void onMainQueueAfter(Seconds delay, DispatchQueue::Work work) {
    dispatch().mainQueue().asyncAfter(delay, std::make_shared<DispatchWorkItem>(std::move(work)));
}

void onGlobalQueueAfter(Seconds delay, DispatchQueue::Work work) {
    dispatch().globalQueue().asyncAfter(delay, std::make_shared<DispatchWorkItem>(std::move(work)));
}

} // namespace korvane
