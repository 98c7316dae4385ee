#pragma once

#include "Platform/JSON.h"
#include "Platform/NSBundle.h"
#include "Platform/View/Geometry.h"
#include "Platform/View/UIColor.h"
#include "Platform/View/UIFont.h"
#include "Platform/View/UIImage.h"

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace korvane {

/// What a storyboard's names stand for.
struct StoryboardResources {
    explicit StoryboardResources(std::shared_ptr<const NSBundle> of)
        : bundle(std::move(of)), colors(*bundle) {}

    std::shared_ptr<const NSBundle> bundle;
    UIColorTable colors;
};

/// What a storyboard says of one property. Reads of another type than the value's throw `Mismatch`.
class StoryboardValue {
public:
    struct Mismatch {};

    StoryboardValue(const JSON& json, const StoryboardResources& resources)
        : json_(json), resources_(resources) {}

    [[nodiscard]] const std::string& string() const;
    [[nodiscard]] double number() const;
    [[nodiscard]] int integer() const;
    [[nodiscard]] bool boolean() const;
    /// A shade, a colour of the system by its name, or one of the bundle by its name.
    [[nodiscard]] UIColor color() const;
    /// An object of `size`, perhaps `weight` and `name`.
    [[nodiscard]] UIFont font() const;
    /// An image of the bundle.
    [[nodiscard]] UIImagePtr image() const;
    /// Top, left, bottom, right.
    [[nodiscard]] UIEdgeInsets insets() const;

    template <class Value>
    [[nodiscard]] Value oneOf(std::initializer_list<std::pair<std::string_view, Value>> choices) const {
        for (const auto& [name, value] : choices)
            if (name == string()) return value;
        throw Mismatch{};
    }

private:
    [[nodiscard]] StoryboardValue member(std::string_view name) const;
    [[nodiscard]] StoryboardValue element(std::size_t index) const;

    const JSON& json_;
    const StoryboardResources& resources_;
};

} // namespace korvane
