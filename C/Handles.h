#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

namespace korvane::c {

/// What a handle can name.
class Object {
public:
    Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object() = default;

    /// Before its last handle goes, while no other thread can take one.
    /// @param others  how many other handles there are.
    /// @throws CallError if that may not be now.
    virtual void requireMayGo(std::size_t /*others*/) const {}
    /// Once its last handle has gone. A call that found the object before may still be in it.
    /// @param self  the handles' own reference, to be taken to where the object is to die.
    virtual void go(std::shared_ptr<Object>&& /*self*/) {}
};

/// What all handles of the process name, and how often each is held. A handle is a number that is not given
/// twice, in the guise of a pointer: nothing is read where it points. Any thread.
class Handles {
public:
    [[nodiscard]] static Handles& shared();

    /// A new handle with one reference.
    template <class Handle>
    [[nodiscard]] Handle* add(std::shared_ptr<Object> object) {
        return reinterpret_cast<Handle*>(addNumber(std::move(object)));
    }

    /// Null for a handle that names nothing, or something of another type.
    template <class SomeObject>
    [[nodiscard]] std::shared_ptr<SomeObject> find(const void* handle) {
        return std::dynamic_pointer_cast<SomeObject>(findObject(handle));
    }

    /// @return false for a handle that names nothing.
    bool retain(const void* handle);

    /// Takes a reference away; with the last one the object goes.
    /// @return false for a handle that names nothing.
    /// @throws CallError where the object says so; the reference stays then.
    bool release(const void* handle);

private:
    struct Entry {
        std::shared_ptr<Object> object;
        std::size_t references = 1;
    };

    [[nodiscard]] std::uintptr_t addNumber(std::shared_ptr<Object> object);
    [[nodiscard]] std::shared_ptr<Object> findObject(const void* handle);

    std::mutex mutex_;
    std::uintptr_t last_ = 0;
    std::map<std::uintptr_t, Entry> entries_;
};

} // namespace korvane::c
