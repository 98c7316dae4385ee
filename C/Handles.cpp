#include "C/Handles.h"

#include <utility>

namespace korvane::c {

namespace {

std::uintptr_t numberOf(const void* handle) {
    return reinterpret_cast<std::uintptr_t>(handle);
}

} // namespace

Handles& Handles::shared() {
    static Handles& handles = *new Handles; // handles may be used until the very end of the process
    return handles;
}

std::uintptr_t Handles::addNumber(std::shared_ptr<Object> object) {
    const std::lock_guard lock(mutex_);
    const std::uintptr_t number = last_ + 1;
    entries_.emplace(number, Entry{std::move(object)});
    return last_ = number;
}

std::shared_ptr<Object> Handles::findObject(const void* handle) {
    const std::lock_guard lock(mutex_);
    const auto found = entries_.find(numberOf(handle));
    return found == entries_.end() ? nullptr : found->second.object;
}

bool Handles::retain(const void* handle) {
    const std::lock_guard lock(mutex_);
    const auto found = entries_.find(numberOf(handle));
    if (found == entries_.end()) return false;
    ++found->second.references;
    return true;
}

bool Handles::release(const void* handle) {
    std::unique_lock lock(mutex_);
    const auto found = entries_.find(numberOf(handle));
    if (found == entries_.end()) return false;
    if (found->second.references > 1) {
        --found->second.references;
        return true;
    }
    found->second.object->requireMayGo(entries_.size() - 1);
    auto object = entries_.extract(found).mapped().object;
    lock.unlock();
    Object& going = *object;
    going.go(std::move(object));
    return true;
}

} // namespace korvane::c
