#include "tests/keyboard/ThumbDriver.h"

#include <array>

namespace korvane {
namespace {

constexpr std::array kPages{kOnce, kOff, kOn, State::Numbers(), State::Symbols(), State::NumberPad()};

/// Telephones upright and turned, tablets, and sizes that no device has.
constexpr CGSize kScreens[] = {{320, 568},     {360, 640},    {375, 667},  {390, 844},  {393, 852},
                               {414, 896},     {430, 932},    {568, 320},  {667, 375},  {844, 390},
                               {932, 430},     {768, 1024},   {834, 1194}, {1024, 768}, {1366, 1024},
                               {361.3, 700.7}, {701.9, 333.1}};

/// The pages of a keyboard that fits a screen.
class Pages : public Device {
public:
    explicit Pages(CGSize screen) : Device(screen), keyboard(CustomKeyboard::make()) {
        keyboard->setFrame({{0, 0}, keyboard->sizeThatFits(screen)});
    }

    KeyboardLayout& show(State state) {
        keyboard->setKeyboardLayoutState(state);
        keyboard->layoutIfNeeded();
        return *keyboard->getCurrentKeyboardLayout();
    }

    std::shared_ptr<CustomKeyboard> keyboard;
};

struct Area {
    Button key;
    CGRect touches, frame;
};

std::vector<Area> areas(const KeyboardLayout& page) {
    std::vector<Area> areas;
    for (const auto& key : keysOf(page))
        areas.push_back({key, touchArea(*key, page), key->convertTo(&page, key->bounds())});
    return areas;
}

/// Every point in steps of one, and close to both sides of every edge.
std::vector<double> scanned(double length, const std::vector<double>& edges) {
    constexpr double kClose = 1e-9;
    std::vector<double> places;
    for (double place = 0; place < length; place += 1)
        places.push_back(place);
    for (const double edge : edges)
        for (const double place : {edge - kClose, edge, edge + kClose})
            if (place >= 0 && place < length) places.push_back(place);
    places.push_back(length - kClose);
    return places;
}

class EveryPoint : public testing::TestWithParam<CGSize> {};

/// At exactly one key, and that is the one that a finger there presses; at the pad's hidden key, none.
TEST_P(EveryPoint, PressesExactlyOneKeyWhichHasItsWholeFrame) {
    Pages pages(GetParam());
    for (const State state : kPages) {
        SCOPED_TRACE(State::compactForm(state));
        KeyboardLayout& page = pages.show(state);
        const CGSize size = page.bounds().size;
        const auto all = areas(page);
        std::vector<double> columns, rows;
        for (const Area& area : all) {
            for (const CGRect& rect : {area.touches, area.frame}) {
                columns.insert(columns.end(), {rect.origin.x, CGRectGetMaxX(rect)});
                if (area.touches.origin.x <= 0) rows.insert(rows.end(), {rect.origin.y, CGRectGetMaxY(rect)});
            }
            const auto& [origin, extent] = area.frame;
            EXPECT_TRUE(extent.width >= 20 && extent.height >= 24 && origin.x >= 0 && origin.y >= 0 &&
                        CGRectGetMaxX(area.frame) <= size.width && CGRectGetMaxY(area.frame) <= size.height &&
                        CGRectContainsPoint(area.touches, origin) &&
                        CGRectGetMaxX(area.frame) <= CGRectGetMaxX(area.touches) &&
                        CGRectGetMaxY(area.frame) <= CGRectGetMaxY(area.touches))
                << nameOf(*area.key);
        }
        const auto xs = scanned(size.width, columns);
        for (const double y : scanned(size.height, rows))
            for (const double x : xs) {
                const KeyboardButton* told = nullptr;
                for (const Area& area : all)
                    if (CGRectContainsPoint(area.touches, {x, y})) {
                        ASSERT_FALSE(told) << "two keys at " << x << ", " << y;
                        told = area.key.get();
                    }
                ASSERT_TRUE(told) << "no key at " << x << ", " << y;
                ASSERT_EQ(page.keyboardButton({x, y}).get(), told->isHidden() ? nullptr : told)
                    << x << ", " << y;
            }
    }
}

INSTANTIATE_TEST_SUITE_P(KeyboardGeometry, EveryPoint, testing::ValuesIn(kScreens));

/// As people know it: the letters of all rows are equally wide but for a hair, the second row stands in by
/// half a key, and the third row's letters stand under it.
TEST(KeyboardGeometry, LettersOfATelephoneStandAsPeopleKnowThem) {
    for (double width = 320; width <= 430; width += 1) {
        SCOPED_TRACE(width);
        Pages pages({width, 2 * width});
        std::map<std::string, CGRect> frames, touches;
        for (const Area& area : areas(pages.show(kOff))) {
            frames[nameOf(*area.key)] = area.frame;
            touches[nameOf(*area.key)] = area.touches;
        }
        const double letter = frames["q"].size.width;
        EXPECT_NEAR(frames["a"].size.width, letter, 1.5);
        EXPECT_NEAR(frames["z"].size.width, letter, 2.5);
        EXPECT_NEAR(frames["a"].origin.x - frames["q"].origin.x, letter / 2, 7);
        EXPECT_NEAR(frames["a"].origin.x, width - CGRectGetMaxX(frames["l"]), 1);
        EXPECT_NEAR(frames["z"].origin.x, width - CGRectGetMaxX(frames["m"]), 1);
        EXPECT_NEAR(frames["ShiftOff"].size.width, frames["Backspace"].size.width, 0.51);
        for (const auto& [left, right] :
             {std::pair("q", "w"), std::pair("z", "x"), std::pair("ShiftOff", "z")})
            EXPECT_EQ(CGRectGetMaxX(touches[left]),
                      (CGRectGetMaxX(frames[left]) + frames[right].origin.x) / 2)
                << "a gap belongs to both by halves";
    }
}

TEST(KeyboardGeometry, KeyTypesWhatItShows) {
    ThumbDriver thumbs;
    for (const State state : kPages)
        for (const auto& key : keysOf(*thumbs.keyboard().getKeyboardLayout(state))) {
            EXPECT_EQ(key->type().kind() == KeyboardButtonType::Kind::Image, key->type().image() != nullptr);
            if (key->type().kind() != KeyboardButtonType::Kind::Key || key->isHidden()) continue;
            thumbs.keyboard().setKeyboardLayoutState(state);
            thumbs.field->setText("");
            thumbs.play(nameOf(*key));
            EXPECT_EQ(thumbs.text(), key->textLabel()->text());
        }
}

} // namespace
} // namespace korvane
