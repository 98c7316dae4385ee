#pragma once

#include "Platform/Export.h"

#include <functional>
#include <memory>
#include <utility>

namespace korvane {

/// The root of everything in the view layer that has an identity and is held by `shared_ptr`.
class KORVANE_EXPORT NSObject : public std::enable_shared_from_this<NSObject> {
public:
    NSObject(const NSObject&) = delete;
    NSObject& operator=(const NSObject&) = delete;
    virtual ~NSObject() = default;

    /// A storyboard has made this object and set its properties; outlets of its controller are not set yet.
    virtual void awakeFromNib() {}

protected:
    NSObject() = default;
};

/// A weak reference to an object from inside it. Not in its constructor (`std::bad_weak_ptr`).
template <class Self>
[[nodiscard]] std::weak_ptr<Self> weakFrom(Self* self) {
    return std::static_pointer_cast<Self>(self->shared_from_this());
}

/// A method as a stored callback: it does not keep the object alive, and does nothing once it is gone.
template <class Self, class Class, class Result, class... Arguments>
[[nodiscard]] std::function<void(Arguments...)> weakly(Self* self, Result (Class::*method)(Arguments...)) {
    return [weak = weakFrom(self), method](Arguments... arguments) {
        if (const auto object = weak.lock()) (object.get()->*method)(std::forward<Arguments>(arguments)...);
    };
}

} // namespace korvane
