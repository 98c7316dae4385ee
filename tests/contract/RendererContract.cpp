#include "Platform/View/DrawnPart.h"
#include "Platform/View/UIButton.h"
#include "Platform/View/UILabel.h"
#include "Platform/View/UIScrollView.h"
#include "Platform/View/UITextField.h"
#include "Platform/View/UITextView.h"
#include "Platform/View/UIViewController.h"
#include "tests/contract/Filling.h"

namespace korvane {
namespace {

constexpr unsigned kRed = 0xFF0000, kGreen = 0x00FF00, kBlue = 0x0000FF, kWhite = 0xFFFFFF;

/// A white screen of 390 by 844 points that stands over the root of the window.
class Drawn : public Contract {
protected:
    Drawn() : Contract(Part::renderer) {}

    void SetUp() override {
        Contract::SetUp();
        if (IsSkipped()) return;
        filling().setScreen({390, 844});
        const auto shown = std::make_shared<UIViewController>();
        glass().window().rootViewController()->present(shown, UIAnimated::no);
        screen = shown->view();
        screen->setBackgroundColor(UIColor::white());
        ASSERT_EQ(glass().colourAt({200, 400}), kWhite);
    }

    [[nodiscard]] Glass& glass() { return *filling().glass(); }
    template <class View = UIView>
    std::shared_ptr<View> add(UIView& to, const CGRect& frame, std::optional<UIColor> color = {}) {
        auto view = std::make_shared<View>();
        view->setFrame(frame);
        view->setBackgroundColor(color);
        to.addSubview(view);
        return view;
    }

    std::shared_ptr<UIView> screen;
};

KORVANE_CONTRACT(RendererContract, Drawn);

/// Each row changes what the one before it left; the places are looked at after each.
TEST_P(RendererContract, TheWindowFollowsEveryChangeOfTheTree) {
    const auto holder = add(*screen, {{20, 100}, {200, 200}});
    const auto one = add(*holder, {{0, 0}, {100, 100}}, UIColor::red());
    const auto other = add(*holder, {{50, 50}, {100, 100}}, UIColor(0, 1, 0, 1));
    const struct {
        const char* name;
        std::function<void()> change;
        unsigned first, second, third, fourth;
    } rows[] = {
        {"the last one lies on top", [] {}, kRed, kGreen, kGreen, kWhite},
        {"another order", [&] { holder->bringSubviewToFront(one); }, kRed, kRed, kGreen, kWhite},
        {"another colour", [&] { one->setBackgroundColor(UIColor::blue()); }, kBlue, kBlue, kGreen, kWhite},
        {"hidden", [&] { one->setHidden(true); }, kWhite, kGreen, kGreen, kWhite},
        {"no more", [&] { one->setHidden(false); }, kBlue, kBlue, kGreen, kWhite},
        {"transparent", [&] { other->setAlpha(0); }, kBlue, kBlue, kWhite, kWhite},
        {"no more", [&] { other->setAlpha(1); }, kBlue, kBlue, kGreen, kWhite},
        {"moved",
         [&] {
             one->setFrame({{100, 100}, {100, 100}});
         },
         kWhite, kGreen, kBlue, kBlue},
        {"around views that stay as they are",
         [&] {
             holder->setBounds({{100, 100}, {200, 200}});
         },
         kBlue, kBlue, kWhite, kWhite},
        {"in another one", [&] { other->addSubview(one); }, kGreen, kBlue, kBlue, kWhite},
        {"which clips", [&] { other->setClipsToBounds(true); }, kGreen, kWhite, kWhite, kWhite},
        {"gone, and back", [&] { holder->removeFromSuperview(); }, kWhite, kWhite, kWhite, kWhite},
        {"with all it holds", [&] { screen->addSubview(holder); }, kGreen, kWhite, kWhite, kWhite},
        {"without", [&] { other->removeFromSuperview(); }, kWhite, kWhite, kWhite, kWhite},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        row.change();
        EXPECT_EQ(glass().colourAt({40, 120}), row.first);
        EXPECT_EQ(glass().colourAt({95, 175}), row.second);
        EXPECT_EQ(glass().colourAt({150, 230}), row.third);
        EXPECT_EQ(glass().colourAt({190, 270}), row.fourth);
    }
}

TEST_P(RendererContract, EachKindShowsWhatIsItsOwn) {
    const auto label = add<UILabel>(*screen, {{0, 100}, {390, 30}});
    const auto text = add<UITextView>(*screen, {{0, 130}, {390, 60}});
    const auto field = add<UITextField>(*screen, {{0, 190}, {390, 30}});
    const auto button = add<UIButton>(*screen, {{0, 220}, {390, 30}});
    for (const std::string& shown : {std::string("first"), std::string("Zo\u00eb & <b>Co</b>")}) {
        label->setText(shown);
        text->setText(shown);
        field->setText(shown);
        button->setTitle(shown, ControlState::normal);
        for (const std::shared_ptr<UIView>& view :
             {std::shared_ptr<UIView>(label), {text}, {field}, {button}})
            EXPECT_EQ(glass().textOf(*view), shown) << static_cast<int>(view->kind());
    }
    const std::string endless(std::size_t{1} << 20, 'w');
    label->setText(endless);
    EXPECT_EQ(glass().textOf(*label), drawnPart(endless));

    const auto scroll = add<UIScrollView>(*screen, {{100, 300}, {50, 50}});
    scroll->setContentSize({50, 200});
    add(*scroll, {{0, 50}, {50, 50}}, UIColor::red());
    EXPECT_EQ(glass().colourAt({125, 325}), kWhite);
    EXPECT_EQ(glass().colourAt({125, 375}), kWhite) << "what is scrolled away is drawn";
    scroll->setContentOffset({0, 50});
    EXPECT_EQ(glass().colourAt({125, 325}), kRed);
}

TEST_P(RendererContract, AnimationsArePlayedToTheirEndAndItIsTold) {
    const auto view = add(*screen, {{0, 100}, {50, 50}}, UIColor::red());
    ASSERT_EQ(glass().colourAt({25, 125}), kRed);
    const Seconds start = dispatch().now();
    bool isTold = false;
    UIView::animate(
        Seconds{0.1},
        [&] {
            view->setFrame({{300, 100}, {50, 50}});
        },
        [&] {
            isTold = true;
            EXPECT_GE((dispatch().now() - start).count(), 0.1);
            EXPECT_TRUE(dispatch().mainQueue().isCurrent());
        });
    EXPECT_TRUE(runUntil([&] { return isTold; }));
    EXPECT_TRUE(runUntil([&] { return glass().colourAt({325, 125}) == kRed; }));
    EXPECT_EQ(glass().colourAt({25, 125}), kWhite);
}

/// Tells what its fingers do, and how far from its left side.
class TouchedView : public UIView {
public:
    void touchesBegan(const UITouches& touches) override { tell("began ", touches); }
    void touchesMoved(const UITouches& touches) override { tell("moved ", touches); }
    void touchesEnded(const UITouches& touches) override { tell("ended ", touches); }
    void touchesCancelled(const UITouches& touches) override { tell("cancelled ", touches); }

    std::string heard;

private:
    void tell(const std::string& what, const UITouches& touches) {
        for (const auto& touch : touches)
            heard += what + std::to_string(std::lround(touch->location(this).x)) + ". ";
    }
};

TEST_P(RendererContract, FingersReachTheViewThatTheyCameDownOn) {
    using enum UITouchPhase;
    const auto view = add<TouchedView>(*screen, {{100, 100}, {100, 100}}, UIColor::red());
    view->setMultipleTouchEnabled(true);
    const CGPoint beside{10, 120}, left{110, 120}, right{180, 120};
    const std::pair<std::vector<UIWindow::TouchPoint>, const char*> rows[] = {
        {{{1, began, left}, {1, moved, right}, {1, ended, beside}}, "began 10. moved 80. ended -90. "},
        {{{1, began, beside}, {1, moved, left}, {1, ended, left}}, ""},
        {{{1, began, left}, {2, began, right}, {1, ended, left}, {2, ended, right}},
         "began 10. began 80. ended 10. ended 80. "},
        {{{1, began, left}, {1, cancelled, left}, {1, ended, left}}, "began 10. cancelled 10. "},
        {{{1, began, left}, {1, ended, left}}, "began 10. ended 10. "},
    };
    ASSERT_EQ(glass().colourAt({150, 150}), kRed);
    for (const auto& [news, heard] : rows) {
        for (const auto& point : news)
            glass().touch(point);
        EXPECT_EQ(std::exchange(view->heard, {}), heard);
    }
}

} // namespace
} // namespace korvane
