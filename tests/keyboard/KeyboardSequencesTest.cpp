#include "tests/keyboard/ThumbDriver.h"

#include <optional>
#include <random>
#include <set>

namespace korvane {
namespace {

using Thumb = ThumbDriver::Thumb;

/// What a keyboard does, told without views and timers: a page is a list of areas, a thumb is a place, and
/// time is a number.
class Model {
public:
    /// Reads where the keys are from a keyboard that is nobody's.
    explicit Model(CGSize size) {
        const auto keyboard = CustomKeyboard::make(CGRect{{0, 0}, size});
        for (const State shown : {kOnce, kOff, kOn, State::Numbers(), State::Symbols()}) {
            keyboard->setKeyboardLayoutState(shown);
            keyboard->layoutIfNeeded();
            const auto& page = *keyboard->getCurrentKeyboardLayout();
            for (const auto& key : keysOf(page))
                pages_[number(shown)].push_back(
                    {touchArea(*key, page), nameOf(*key), key->identifier().has_value()});
        }
    }

    void wait(double seconds) {
        const double end = now_ + seconds;
        for (; holdSince_ && nextDeletion_ <= end; nextDeletion_ += 0.1)
            erase();
        now_ = end;
    }
    void press(Thumb thumb, CGPoint at) {
        thumbs_[thumb] = at;
        holdSince_.reset();
        if (name(at) != "Backspace") return;
        holdSince_ = now_;
        nextDeletion_ = now_ + 0.6;
    }
    void slide(Thumb thumb, CGPoint at) {
        if (thumbs_.contains(thumb)) thumbs_[thumb] = at;
    }
    void cancel(Thumb thumb) {
        if (thumbs_.erase(thumb) > 0) holdSince_.reset();
    }
    void lift(Thumb thumb) {
        const auto known = thumbs_.find(thumb);
        if (known == thumbs_.end()) return;
        const CGPoint at = known->second;
        cancel(thumb);
        const Key& key = keyAt(at);
        if (key.acts) return act(key.name);
        text += key.name;
        if (state == kOnce) state = kOff;
    }

    /// Those that a change of pages has not dropped.
    [[nodiscard]] std::size_t thumbsDown() const { return thumbs_.size(); }

    State state = kOnce;
    std::string text;

private:
    struct Key {
        CGRect area;
        std::string name;
        bool acts;
    };

    static std::size_t number(State of) { return static_cast<std::size_t>(State::compactForm(of)); }
    [[nodiscard]] const Key& keyAt(CGPoint at) const {
        for (const Key& key : pages_[number(state)])
            if (CGRectContainsPoint(key.area, at)) return key;
        throw std::logic_error("a place without a key");
    }
    [[nodiscard]] const std::string& name(CGPoint at) const { return keyAt(at).name; }

    /// One character: those of the pages have up to three bytes.
    void erase() {
        while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0U) == 0x80U)
            text.pop_back();
        if (!text.empty()) text.pop_back();
    }
    /// To a page of other characters.
    void turnTo(State page) {
        state = page;
        thumbs_.clear();
        holdSince_.reset();
    }
    void act(const std::string& name) {
        if (name == "Space") text += " ";
        if (name == "Return") text += "\n";
        if (name == "Backspace") erase();
        if (name == "Numbers") turnTo(State::Numbers());
        if (name == "Symbols") turnTo(State::Symbols());
        if (name == "Letters") turnTo(kOff);
        if (!name.starts_with("Shift")) return;
        const bool isTwice = now_ < shiftWindowEnd_;
        if (name == "ShiftOn") {
            if (!isTwice) state = kOff;
            return;
        }
        shiftWindowEnd_ = isTwice ? 0 : now_ + 0.5;
        state = isTwice ? kOn : name == "ShiftOff" ? kOnce : kOff;
    }

    std::array<std::vector<Key>, 5> pages_;
    std::map<Thumb, CGPoint> thumbs_;
    double now_ = 1; // past any window
    double shiftWindowEnd_ = 0;
    std::optional<double> holdSince_;
    double nextDeletion_ = 0;
};

/// Moves up to three thumbs at random, the keyboard's and the model's alike.
class RandomThumbs {
public:
    RandomThumbs(std::uint64_t seed, CGSize screen)
        : random_(seed), thumbs_(UIKeyboardType::defaultType, screen),
          model_(thumbs_.keyboard().bounds().size) {}

    void step() {
        const Thumb thumb = below(3);
        const auto choice = below(10);
        if (!down_.contains(thumb)) {
            press(thumb);
        } else if (choice < 2) {
            const CGPoint at = place();
            thumbs_.touch(thumb, inWindow(at));
            model_.slide(thumb, at);
        } else if (choice < 3) {
            thumbs_.cancel(thumb);
            model_.cancel(thumb);
            down_.erase(thumb);
        } else {
            lift(thumb);
        }
        wait();
    }
    void liftAll() {
        while (!down_.empty())
            lift(*down_.begin());
    }

    void expectAgreement() {
        ASSERT_EQ(thumbs_.text(), model_.text);
        ASSERT_EQ(thumbs_.state(), model_.state);
        std::size_t touches = 0;
        thumbs_.keyboard().enumerateKeyboardLayouts(
            [&](KeyboardLayout& layout) { touches += layout.currentTouches().size(); });
        ASSERT_EQ(touches, model_.thumbsDown());
    }
    void expectRest() {
        thumbs_.keyboard().enumerateKeyboardLayouts([](KeyboardLayout& layout) {
            EXPECT_EQ(layout.viewWithTag(KeyboardButtonPopupViewTag), nullptr);
        });
        thumbs_.wait(0.51);
        EXPECT_EQ(thumbs_.platform.leftAlive(), LeftAlive{});
    }

private:
    std::uint64_t below(std::uint64_t limit) { return random_() % limit; }
    /// Anywhere on the keyboard; more often than not where shift, backspace and page keys are.
    CGPoint place() {
        const CGSize size = thumbs_.keyboard().bounds().size;
        const auto tenths = [&](double length) {
            return static_cast<double>(below(static_cast<std::uint64_t>(length * 10))) / 10;
        };
        if (below(2) == 0) return {tenths(size.width), tenths(size.height)};
        return {below(2) == 0 ? 20 : size.width - 20, size.height * (below(3) == 0 ? 0.9 : 0.6)};
    }
    CGPoint inWindow(CGPoint at) const { return thumbs_.keyboard().convertTo(nullptr, at); }

    void press(Thumb thumb) {
        const CGPoint at = place();
        model_.press(thumb, at);
        thumbs_.touch(thumb, inWindow(at));
        down_.insert(thumb);
    }
    void lift(Thumb thumb) {
        thumbs_.lift(thumb);
        model_.lift(thumb);
        down_.erase(thumb);
    }
    /// Of lengths that never add up to a timer's, so that both agree on what came first.
    void wait() {
        const double seconds = static_cast<double>(below(below(4) == 0 ? 900 : 120)) / 1000 + 0.0000137;
        model_.wait(seconds);
        thumbs_.wait(seconds);
    }

    std::mt19937_64 random_;
    ThumbDriver thumbs_;
    Model model_;
    std::set<Thumb> down_;
};

TEST(KeyboardSequences, TypeWhatASimpleModelTypes) {
    for (std::uint64_t seed = 1; seed <= 150; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomThumbs thumbs(seed, seed % 3 == 0 ? CGSize{844, 390} : CGSize{375, 667});
        for (int step = 0; step < 120; ++step) {
            thumbs.step();
            ASSERT_NO_FATAL_FAILURE(thumbs.expectAgreement()) << "step " << step;
        }
        thumbs.liftAll();
        ASSERT_NO_FATAL_FAILURE(thumbs.expectAgreement());
        thumbs.expectRest();
    }
}

} // namespace
} // namespace korvane
