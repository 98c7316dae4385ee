#include "Platform/View/StoryboardValue.h"

#include <array>
#include <cmath>

namespace korvane {

namespace {

struct SystemColor {
    std::string_view name;
    UIColor (*make)();
};

constexpr std::array kSystemColors{SystemColor{"clear", UIColor::clear},
                                   SystemColor{"black", UIColor::black},
                                   SystemColor{"white", UIColor::white},
                                   SystemColor{"label", UIColor::label},
                                   SystemColor{"secondaryLabel", UIColor::secondaryLabel},
                                   SystemColor{"systemBackground", UIColor::systemBackground},
                                   SystemColor{"separator", UIColor::separator},
                                   SystemColor{"systemBlue", UIColor::systemBlue}};

} // namespace

const std::string& StoryboardValue::string() const {
    if (!json_.is_string()) throw Mismatch{};
    return json_.get_ref<const std::string&>();
}

double StoryboardValue::number() const {
    if (!json_.is_number()) throw Mismatch{};
    return json_.get<double>();
}

int StoryboardValue::integer() const {
    constexpr double kMost = 1e6;
    const double value = number();
    if (value != std::floor(value) || std::abs(value) > kMost) throw Mismatch{};
    return static_cast<int>(value);
}

bool StoryboardValue::boolean() const {
    if (!json_.is_boolean()) throw Mismatch{};
    return json_.get<bool>();
}

UIColor StoryboardValue::color() const {
    const std::string& text = string();
    if (const auto shade = UIColor::fromHex(text)) return *shade;
    for (const SystemColor& known : kSystemColors)
        if (known.name == text) return known.make();
    if (const auto named = resources_.colors.color(text)) return *named;
    throw Mismatch{};
}

UIFont StoryboardValue::font() const {
    const double size = member("size").number();
    const auto font = json_.contains("name") ? UIFont::make(member("name").string(), size)
                                             : std::optional(UIFont::systemFont(size));
    if (!font) throw Mismatch{};
    return json_.contains("weight") ? font->withWeight(member("weight").number()) : *font;
}

UIImagePtr StoryboardValue::image() const {
    auto image = UIImage::named(string(), *resources_.bundle);
    if (!image) throw Mismatch{};
    return image;
}

UIEdgeInsets StoryboardValue::insets() const {
    return {element(0).number(), element(1).number(), element(2).number(), element(3).number()};
}

StoryboardValue StoryboardValue::member(std::string_view name) const {
    const auto found = json_.is_object() ? json_.find(name) : json_.end();
    if (found == json_.end()) throw Mismatch{};
    return {*found, resources_};
}

StoryboardValue StoryboardValue::element(std::size_t index) const {
    if (!json_.is_array() || json_.size() != 4) throw Mismatch{};
    return {json_[index], resources_};
}

} // namespace korvane
