#include "Platform/View/UIColor.h"

#include "Platform/JSON.h"
#include "Platform/View/FileCache.h"

#include <charconv>
#include <cstdint>
#include <exception>

namespace korvane {

namespace {

using Colors = std::map<std::string, UIColor>;

std::optional<RGBA> shadeFromHex(std::string_view text) {
    if (text.size() != 7 && text.size() != 9) return std::nullopt;
    if (text.front() != '#') return std::nullopt;
    text.remove_prefix(1);
    std::uint32_t number = 0;
    const char* const end = text.data() + text.size();
    if (std::from_chars(text.data(), end, number, 16).ptr != end) return std::nullopt;
    if (text.size() == 6) number = (number << 8U) | 0xFFU;
    const auto part = [number](unsigned shift) {
        return static_cast<double>((number >> shift) & 0xFFU) / 255;
    };
    return RGBA{part(24), part(16), part(8), part(0)};
}

std::optional<RGBA> shade(const JSON& value) {
    return value.is_string() ? shadeFromHex(value.get_ref<const std::string&>()) : std::nullopt;
}

std::optional<UIColor> color(const JSON& value) {
    if (!value.is_object()) {
        const auto plain = shade(value);
        return plain ? std::optional(UIColor(*plain)) : std::nullopt;
    }
    const auto light = shade(value.value("light", JSON()));
    const auto dark = shade(value.value("dark", JSON()));
    return light && dark ? std::optional(UIColor(*light, *dark)) : std::nullopt;
}

std::shared_ptr<const Colors> colorsIn(const Bytes& file) {
    const auto json = JSONSerialization::jsonObject(asText(file));
    auto table = std::make_shared<Colors>();
    if (!json || !json->is_object()) return table;
    for (const auto& [name, value] : json->items())
        if (const auto one = color(value)) table->emplace(name, *one);
    return table;
}

} // namespace

std::optional<UIColor> UIColor::named(const std::string& name, const NSBundle& bundle) {
    return UIColorTable(bundle).color(name);
}

std::optional<UIColor> UIColor::fromHex(std::string_view text) {
    const auto plain = shadeFromHex(text);
    return plain ? std::optional(UIColor(*plain)) : std::nullopt;
}

UIColor UIColor::secondaryLabel() {
    return {RGBA{0.24, 0.24, 0.26, 0.7}, RGBA{0.92, 0.92, 0.96, 0.7}};
}

UIColor UIColor::separator() {
    return {RGBA{0.24, 0.24, 0.26, 0.3}, RGBA{0.33, 0.33, 0.35, 0.6}};
}

UIColor UIColor::systemBlue() {
    return {RGBA{0, 0.48, 1, 1}, RGBA{0.04, 0.52, 1, 1}};
}

UIColor UIColor::withAlphaComponent(double alpha) const {
    UIColor copy = *this;
    copy.light_.alpha = alpha;
    copy.dark_.alpha = alpha;
    return copy;
}

UIColorTable::UIColorTable(const NSBundle& bundle) {
    static FileCache<Colors> tables;
    const auto path = bundle.URLForResource("Colors", "json");
    if (!path) return;
    try {
        colors_ = tables.get(*path, colorsIn);
    } catch (const std::exception&) {
        colors_ = nullptr; // a table that cannot be read is as good as none
    }
}

std::optional<UIColor> UIColorTable::color(const std::string& named) const {
    if (!colors_) return std::nullopt;
    const auto found = colors_->find(named);
    return found == colors_->end() ? std::nullopt : std::optional(found->second);
}

} // namespace korvane
