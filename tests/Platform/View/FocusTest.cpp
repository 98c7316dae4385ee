#include "Platform/View/UIButton.h"
#include "Platform/View/UINavigationBar.h"
#include "Platform/View/UITableView.h"
#include "Platform/View/UITextField.h"
#include "tests/Platform/View/ViewSupport.h"

#include <sstream>

namespace korvane {
namespace {

using Key = UIKeyboardKey;

/// Rows of one button each, "0" to "99".
struct Hundred final : UITableViewDataSource {
    int numberOfRowsInSection(UITableView&, int) override { return 100; }
    std::shared_ptr<UITableViewCell> cellForRowAt(UITableView&, IndexPath at) override {
        auto cell = std::make_shared<UITableViewCell>();
        auto button = std::make_shared<UIButton>();
        button->setFrame({{0, 0}, {300, 40}});
        button->setAccessibilityLabel(std::to_string(at.row));
        button->setSelected(at.row == chosen);
        cell->contentView()->addSubview(button);
        return cell;
    }
    int chosen = -1;
};

class Focus : public ViewTest {
protected:
    template <class Control = UIButton>
    std::shared_ptr<Control> control(const std::string& name, const CGRect& frame) {
        auto made = add<Control>(rootView(), frame);
        made->setAccessibilityLabel(name);
        made->addTarget(ControlEvent::touchUpInside, [this, name] { tell("pressed " + name); });
        return made;
    }
    [[nodiscard]] std::string name() const {
        const auto view = window->focusSystem().focusedView();
        return view ? view->accessibilityLabel() : "";
    }
    /// Where keys lead, one after another: "> < . e x u v l r" are Tab, back, Space, Enter, Escape, arrows.
    std::string way(const std::string& keys) {
        constexpr std::string_view kSigns = "><.exuvlr";
        constexpr Key kKeys[] = {Key::tab, Key::backTab, Key::space, Key::enter, Key::escape,
                                 Key::up,  Key::down,    Key::left,  Key::right};
        std::string seen;
        for (const char sign : keys) {
            EXPECT_TRUE(window->focusSystem().press(kKeys[kSigns.find(sign)]));
            seen += (seen.empty() ? "" : " ") + name();
        }
        return seen;
    }
};

TEST_F(Focus, GoesThroughWhatIsShownByPlaceAndRound) {
    const auto low = control("low", {{0, 200}, {50, 40}});
    control("right", {{100, 104}, {50, 30}});
    control("left", {{0, 100}, {50, 40}});
    control("hidden", {{0, 0}, {50, 40}})->setHidden(true);
    control("disabled", {{0, 0}, {50, 40}})->setEnabled(false);
    control("empty", {{0, 0}, {50, 0}});
    EXPECT_EQ(way("<>>>>"), "low left right low left");
    EXPECT_EQ(way(".e"), "left left");
    EXPECT_EQ(taken(), "pressed left, pressed left");
    low->setHidden(true);
    EXPECT_EQ(way("<"), "right");
    low->setHidden(false);
    rootView().setRightToLeft(true);
    EXPECT_EQ(way(">>"), "left low");
}

TEST_F(Focus, AFingerHidesItAndTabGoesOnFromThere) {
    control("one", {{0, 0}, {50, 40}});
    control("two", {{0, 50}, {50, 40}});
    control("three", {{0, 100}, {50, 40}});
    way(">");
    EXPECT_TRUE(window->focusSystem().isShown());
    window->sendTouch({1, UITouchPhase::began, {10, 60}});
    EXPECT_FALSE(window->focusSystem().isShown());
    EXPECT_EQ(name(), "");
    EXPECT_EQ(way(">"), "three");
    window->focusSystem().focusedView()->removeFromSuperview();
    EXPECT_EQ(name(), "");
    EXPECT_EQ(way(">"), "one");
}

TEST_F(Focus, StaysOnTheTopmostScreenAndBeforeWhatIsModal) {
    control("below", {{0, 0}, {50, 40}});
    const auto screen = std::make_shared<UIViewController>();
    root->present(screen, UIAnimated::no);
    const auto put = [&](const std::string& label) {
        add<UIButton>(*screen->view(), {{0, 50}, {50, 40}})->setAccessibilityLabel(label);
    };
    put("covered");
    EXPECT_EQ(way(">>"), "covered covered");
    const auto veil = add(*screen->view(), {{0, 0}, {320, 480}});
    veil->setAccessibilityViewIsModal(true);
    put("above");
    EXPECT_EQ(way(">>"), "above above");
    veil->setHidden(true);
    EXPECT_EQ(way(">"), "covered");
}

TEST_F(Focus, AListIsOneStopInWhichArrowsMoveAndScroll) {
    const auto table = add<UITableView>(rootView(), {{0, 100}, {300, 80}});
    const auto rows = std::make_shared<Hundred>();
    table->setRowHeight(40);
    table->setDataSource(rows);
    control("before", {{0, 0}, {50, 40}});
    control("after", {{0, 300}, {50, 40}});
    EXPECT_EQ(way(">>vvvvuu>>"), "before 0 1 2 3 4 3 2 after before");
    EXPECT_EQ(table->contentOffset().y, 80);
    rows->chosen = 3;
    table->setDataSource(rows);
    EXPECT_EQ(way(">"), "3");
    for (int row = 3; row < 99; ++row)
        way("v");
    EXPECT_EQ(name(), "99");
    EXPECT_EQ(way("v<"), "99 before");
}

TEST_F(Focus, AFieldIsTypedIntoWhileTheFocusIsOnItOrItsKeys) {
    struct Return : UITextFieldDelegate {
        void textFieldShouldReturn(UITextField& field) override { entered = field.text(); }
        std::string entered;
    };
    const auto ending = std::make_shared<Return>();
    const auto field = control<UITextField>("field", {{0, 100}, {50, 40}});
    const auto keys = std::make_shared<UIView>(CGRect{{0, 0}, {320, 200}});
    add<UIButton>(*keys, {{0, 0}, {50, 40}})->setAccessibilityLabel("key");
    field->setInputView(keys);
    field->setDelegate(ending);
    control("covered", {{0, 400}, {50, 40}});
    UIFocusSystem& focus = window->focusSystem();
    EXPECT_FALSE(focus.type("a") || focus.press(Key::backspace));
    EXPECT_EQ(way(">"), "field");
    EXPECT_TRUE(field->isFirstResponder());
    EXPECT_TRUE(focus.type("ab"));
    EXPECT_EQ(way(".>"), "field key");
    EXPECT_TRUE(focus.type("c") && focus.press(Key::backspace) && focus.paste(" \t12 34\r\n"));
    EXPECT_EQ(way("xe"), "field field");
    EXPECT_FALSE(field->isFirstResponder());
    EXPECT_EQ(ending->entered, "ab 12 34");
    EXPECT_TRUE(focus.type("!"));
    EXPECT_TRUE(field->isFirstResponder());
    EXPECT_EQ(way(">>"), "key covered");
    EXPECT_FALSE(field->isFirstResponder());
}

TEST_F(Focus, ComesOutFromUnderABarThatStaysAndComesFirst) {
    const auto scroll = add<UIScrollView>(rootView(), {{0, 0}, {320, 480}});
    const auto put = [&](UIView& in, const std::string& label, double y) {
        add<UIButton>(in, {{0, y}, {50, 40}})->setAccessibilityLabel(label);
    };
    put(*scroll, "first", 50);
    put(*scroll, "last", 900);
    put(*add<UINavigationBar>(*scroll, {{0, 0}, {320, 44}}), "bar", 0);
    scroll->setContentSize({320, 1000});
    scroll->setCoveredInset({44, 0, 10, 0});
    EXPECT_EQ(way("<"), "last");
    EXPECT_EQ(scroll->contentOffset().y, 470);
    EXPECT_EQ(way("<"), "first");
    EXPECT_EQ(scroll->contentOffset().y, 6);
    EXPECT_EQ(way("<"), "bar");
    EXPECT_EQ(scroll->contentOffset().y, 6);
    const std::pair<Key, double> scrolled[] = {{Key::down, 66}, {Key::pageDown, 506}, {Key::pageDown, 520},
                                               {Key::up, 460},  {Key::pageUp, 20},    {Key::pageUp, 0}};
    for (const auto& [key, offset] : scrolled) {
        EXPECT_TRUE(window->focusSystem().press(key));
        EXPECT_EQ(scroll->contentOffset().y, offset);
    }
}

} // namespace
} // namespace korvane
