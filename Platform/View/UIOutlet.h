#pragma once

#include "Platform/Export.h"
#include "Platform/Failure.h"
#include "Platform/View/NSObject.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

class UIOutletBase;

/// An object whose outlets a storyboard sets by name.
class KORVANE_EXPORT UIOutletOwner {
public:
    UIOutletOwner(const UIOutletOwner&) = delete;
    UIOutletOwner& operator=(const UIOutletOwner&) = delete;

    /// The outlet of that name, or null.
    [[nodiscard]] UIOutletBase* outlet(std::string_view named) const;

protected:
    UIOutletOwner() = default;
    ~UIOutletOwner() = default;

private:
    friend class UIOutletBase;

    std::vector<UIOutletBase*> outlets_;
};

/// An outlet of any type.
class KORVANE_EXPORT UIOutletBase {
public:
    UIOutletBase(UIOutletOwner& owner, std::string_view name) : name_(name) {
        owner.outlets_.push_back(this);
    }
    UIOutletBase(const UIOutletBase&) = delete;
    UIOutletBase& operator=(const UIOutletBase&) = delete;

    /// @return false if the object is of another type than the outlet; nothing has changed then.
    [[nodiscard]] virtual bool connect(const std::shared_ptr<NSObject>& object) = 0;

    [[nodiscard]] std::string_view name() const noexcept { return name_; }

protected:
    ~UIOutletBase() = default;

private:
    std::string_view name_;
};

/// A weak reference to an object that the storyboard holds. A member of its owner, which it joins by itself:
/// `UIOutlet<UITextField> otp{*this, "otp"};`
template <class Object>
class UIOutlet final : public UIOutletBase {
public:
    /// @param name  a literal.
    UIOutlet(UIOutletOwner& owner, std::string_view name) : UIOutletBase(owner, name) {}

    [[nodiscard]] bool connect(const std::shared_ptr<NSObject>& object) override {
        auto typed = std::dynamic_pointer_cast<Object>(object);
        if (!typed) return false;
        object_ = typed;
        return true;
    }

    /// Null where nothing is connected, or what was is gone.
    [[nodiscard]] std::shared_ptr<Object> lock() const { return object_.lock(); }
    explicit operator bool() const { return !object_.expired(); }

    /// The object; an outlet without one is a fault of the storyboard and ends the process (`fatalError`).
    [[nodiscard]] std::shared_ptr<Object> get() const {
        auto object = object_.lock();
        if (!object) fatalError("The outlet \"" + std::string(name()) + "\" is not connected.");
        return object;
    }
    std::shared_ptr<Object> operator->() const { return get(); }

    UIOutlet& operator=(const std::shared_ptr<Object>& object) {
        object_ = object;
        return *this;
    }

private:
    std::weak_ptr<Object> object_;
};

} // namespace korvane
