#include "tests/keyboard/ThumbDriver.h"

#include <algorithm>
#include <array>
#include <optional>
#include <sstream>

namespace korvane {
namespace {

struct PageRow {
    const char* name;
    State state;
    const char* keys; // from top left to bottom right
};

constexpr std::array kPages{
    PageRow{"uppercase", kOnce,
            "Q W E R T Y U I O P A S D F G H J K L ShiftOnce Z X C V B N M Backspace Numbers Space Return"},
    PageRow{"uppercase toggled", kOn,
            "Q W E R T Y U I O P A S D F G H J K L ShiftOn Z X C V B N M Backspace Numbers Space Return"},
    PageRow{"lowercase", kOff,
            "q w e r t y u i o p a s d f g h j k l ShiftOff z x c v b n m Backspace Numbers Space Return"},
    PageRow{"numbers", State::Numbers(),
            "1 2 3 4 5 6 7 8 9 0 - / : ; ( ) $ & @ \" Symbols . , ? ! ' Backspace Letters Space Return"},
    PageRow{"symbols", State::Symbols(),
            "[ ] { } # % ^ * + = _ \\ | ~ < > € £ ¥ • Numbers . , ? ! ' Backspace Letters Space Return"},
    PageRow{"number pad", State::NumberPad(), "1 2 3 4 5 6 7 8 9 - 0 Backspace"}};

/// A screen and how high the keyboard is on it: as it likes where nothing is told.
struct ScreenRow {
    CGSize screen;
    std::optional<double> height = std::nullopt;
};

/// Telephones upright and turned, tablets, and sizes that no device has.
const std::array kScreens{ScreenRow{{320, 568}},           ScreenRow{{360, 640}},
                          ScreenRow{{375, 667}},           ScreenRow{{390, 844}},
                          ScreenRow{{393, 852}},           ScreenRow{{414, 896}},
                          ScreenRow{{430, 932}},           ScreenRow{{568, 320}},
                          ScreenRow{{667, 375}},           ScreenRow{{844, 390}},
                          ScreenRow{{932, 430}},           ScreenRow{{768, 1024}},
                          ScreenRow{{834, 1194}},          ScreenRow{{1024, 768}},
                          ScreenRow{{1366, 1024}},         ScreenRow{{361.3, 700.7}, 233.3},
                          ScreenRow{{701.9, 333.1}, 171.7}};

std::string text(CGSize size) {
    std::ostringstream stream;
    stream << size.width << "x" << size.height;
    return stream.str();
}

/// The pages of a keyboard that fits a screen.
class Pages : public Device {
public:
    explicit Pages(CGSize screen, std::optional<double> height = std::nullopt)
        : Device(screen), keyboard(CustomKeyboard::make()) {
        const CGSize liked = keyboard->sizeThatFits(screen);
        keyboard->setFrame({{0, 0}, {liked.width, height.value_or(liked.height)}});
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
    CGRect touches;
    CGRect frame;
};

std::vector<Area> areas(const KeyboardLayout& page) {
    std::vector<Area> areas;
    for (const auto& key : keysOf(page))
        areas.push_back({key, touchArea(*key, page), key->convertTo(&page, key->bounds())});
    return areas;
}

/// Holds a point of the keyboard against what is told of it: at exactly one key, and that is the one that a
/// finger there presses; at the pad's hidden key, none.
/// @return what is wrong, or nothing.
std::string fault(KeyboardLayout& page, const std::vector<Area>& areas, CGPoint point) {
    const KeyboardButton* told = nullptr;
    for (const Area& area : areas) {
        if (!CGRectContainsPoint(area.touches, point)) continue;
        if (told) return "two keys, " + nameOf(*told) + " and " + nameOf(*area.key);
        told = area.key.get();
    }
    if (!told) return "no key";
    const auto pressed = page.keyboardButton(point);
    if (told->isHidden()) return pressed ? "a hidden key's place presses " + nameOf(*pressed) : "";
    if (!pressed) return "presses nothing";
    return pressed.get() == told ? "" : "presses " + nameOf(*pressed) + " in place of " + nameOf(*told);
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

class EveryPoint : public testing::TestWithParam<ScreenRow> {};

TEST_P(EveryPoint, PressesExactlyOneKey) {
    Pages pages(GetParam().screen, GetParam().height);
    for (const PageRow& row : kPages) {
        SCOPED_TRACE(row.name);
        KeyboardLayout& page = pages.show(row.state);
        const auto all = areas(page);
        std::vector<double> columns;
        std::vector<double> rows;
        for (const Area& area : all)
            for (const CGRect& rect : {area.touches, area.frame}) {
                columns.insert(columns.end(), {rect.origin.x, CGRectGetMaxX(rect)});
                if (area.touches.origin.x <= 0) rows.insert(rows.end(), {rect.origin.y, CGRectGetMaxY(rect)});
            }
        const CGSize size = page.bounds().size;
        const auto xs = scanned(size.width, columns);
        for (const double y : scanned(size.height, rows))
            for (const double x : xs) {
                const std::string wrong = fault(page, all, {x, y});
                ASSERT_EQ(wrong, "") << "at " << x << ", " << y;
            }
    }
}

TEST_P(EveryPoint, OfAFrameIsTheKeysOwn) {
    Pages pages(GetParam().screen, GetParam().height);
    for (const PageRow& row : kPages) {
        SCOPED_TRACE(row.name);
        KeyboardLayout& page = pages.show(row.state);
        const auto all = areas(page);
        for (const Area& area : all) {
            const CGRect frame = area.frame;
            EXPECT_GE(frame.size.width, 20) << nameOf(*area.key);
            EXPECT_GE(frame.size.height, 24) << nameOf(*area.key);
            EXPECT_GE(frame.origin.x, 0);
            EXPECT_LE(CGRectGetMaxX(frame), page.bounds().size.width) << nameOf(*area.key);
            EXPECT_GE(frame.origin.y, 0);
            EXPECT_LE(CGRectGetMaxY(frame), page.bounds().size.height) << nameOf(*area.key);
            for (const Area& other : all) {
                if (other.key == area.key) continue;
                EXPECT_FALSE(frame.origin.x < CGRectGetMaxX(other.touches) &&
                             other.touches.origin.x < CGRectGetMaxX(frame) &&
                             frame.origin.y < CGRectGetMaxY(other.touches) &&
                             other.touches.origin.y < CGRectGetMaxY(frame))
                    << nameOf(*area.key) << " and " << nameOf(*other.key);
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(KeyboardGeometry, EveryPoint, testing::ValuesIn(kScreens), [](const auto& screen) {
    std::string name = text(screen.param.screen);
    std::ranges::replace(name, '.', '_');
    return name;
});

TEST(KeyboardGeometry, PagesHaveTheirKeysInOrder) {
    Pages pages({375, 667});
    for (const PageRow& row : kPages) {
        SCOPED_TRACE(row.name);
        std::string names;
        for (const auto& key : keysOf(pages.show(row.state)))
            names += (names.empty() ? "" : " ") + nameOf(*key);
        EXPECT_EQ(names, row.keys);
    }
}

/// As people know it: the letters of all rows are equally wide but for a hair, the second row stands in by
/// half a key, and the third row's letters stand under it.
TEST(KeyboardGeometry, LettersOfATelephoneStandAsPeopleKnowThem) {
    for (double width = 320; width <= 430; width += 1) {
        SCOPED_TRACE(width);
        Pages pages({width, 2 * width});
        KeyboardLayout& page = pages.show(kOff);
        const auto frame = [&](const char* name) {
            for (const Area& area : areas(page))
                if (nameOf(*area.key) == name) return area.frame;
            return CGRect{};
        };
        const double letter = frame("q").size.width;
        EXPECT_NEAR(frame("a").size.width, letter, 1.5);
        EXPECT_NEAR(frame("z").size.width, letter, 2.5);
        EXPECT_NEAR(frame("a").origin.x - frame("q").origin.x, letter / 2, 7);
        EXPECT_NEAR(frame("a").origin.x, width - CGRectGetMaxX(frame("l")), 1);
        EXPECT_NEAR(frame("z").origin.x, width - CGRectGetMaxX(frame("m")), 1);
        EXPECT_NEAR(frame("ShiftOff").size.width, frame("Backspace").size.width, 0.51);
        for (const auto& [left, right] :
             {std::pair("q", "w"), std::pair("z", "x"), std::pair("ShiftOff", "z")}) {
            const double middle = (CGRectGetMaxX(frame(left)) + frame(right).origin.x) / 2;
            EXPECT_EQ(CGRectGetMaxX(touchArea(*page.keyboardButton(frame(left).origin), page)), middle)
                << left;
        }
    }
}

TEST(KeyboardGeometry, KeyTypesWhatItShows) {
    for (const CGSize screen : {CGSize{320, 568}, CGSize{844, 390}, CGSize{768, 1024}}) {
        for (const PageRow& row : kPages) {
            SCOPED_TRACE(text(screen) + " " + row.name);
            ThumbDriver thumbs(UIKeyboardType::defaultType, screen);
            for (const auto& key : keysOf(*thumbs.keyboard().getKeyboardLayout(row.state))) {
                if (key->type().kind() != KeyboardButtonType::Kind::Key || key->isHidden()) continue;
                thumbs.keyboard().setKeyboardLayoutState(row.state);
                thumbs.field->setText("");
                thumbs.play(nameOf(*key));
                EXPECT_EQ(thumbs.text(), key->textLabel()->text());
            }
        }
    }
}

/// A row of a key of each kind of width, with a row within it.
TEST(KeyboardGeometry, WidthsShareWhatTheOthersLeave) {
    const Device device;
    const auto key = [](KeyboardButtonWidth width) {
        return std::make_shared<KeyboardButton>(KeyboardButtonType::Key("x"), std::nullopt, width);
    };
    KeyboardRowStyle innerStyle;
    innerStyle.leadingPadding = 1;
    innerStyle.trailingPadding = 2;
    innerStyle.buttonsPadding = 4;
    const auto free = key(KeyboardButtonWidth::Dynamic());
    const auto first = key(KeyboardButtonWidth::Dynamic());
    const auto inner = std::make_shared<KeyboardRow>(
        innerStyle, KeyboardRow::Characters{first, key(KeyboardButtonWidth::Dynamic())});
    const auto fixed = key(KeyboardButtonWidth::Static(30));
    const auto share = key(KeyboardButtonWidth::Relative(0.1));
    const auto row =
        std::make_shared<KeyboardRow>(KeyboardRowStyle{}, KeyboardRow::Characters{free, inner, fixed, share});
    row->setPortrait(true);
    row->setFrame({{0, 0}, {224, 40}});
    row->layoutIfNeeded();
    // 224 less three gaps of 6 and 3 at each end is 200; a tenth of it is 20. What is left, less the inner
    // row's own 7, is three shares of 143 / 3.
    EXPECT_DOUBLE_EQ(row->getRelativeWidthForPercent(0.1), 20);
    EXPECT_DOUBLE_EQ(row->getOptimumButtonWidth(), 143.0 / 3);
    EXPECT_DOUBLE_EQ(row->getWidthForKeyboardButton(*fixed), 30);
    EXPECT_EQ(free->frame(), (CGRect{{3, 0}, {47.5, 40}}));
    EXPECT_NEAR(first->bounds().size.width, free->bounds().size.width, 0.5);
    EXPECT_EQ(fixed->bounds().size.width, 30);
    EXPECT_EQ(CGRectGetMaxX(share->frame()), 221);
    EXPECT_EQ(inner->parentRow(), row);

    KeyboardRow empty(std::nullopt, std::nullopt);
    empty.layoutIfNeeded();
    EXPECT_EQ(empty.getOptimumButtonWidth(), 0);
    EXPECT_EQ(empty.keyboardButton({0, 0}), nullptr);
}

} // namespace
} // namespace korvane
