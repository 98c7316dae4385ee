#include "Platform/View/LayoutPlan.h"
#include "Platform/View/UILabel.h"
#include "Platform/View/UIScrollView.h"
#include "tests/Platform/View/ViewSupport.h"

namespace korvane {
namespace {

using enum NSLayoutAttribute;

struct Equation {
    char first;
    NSLayoutAttribute attribute;
    double constant;
    char second = ' '; // 'S': the holder, 'G': its safe area, ' ': none
    NSLayoutAttribute secondAttribute = notAnAttribute;
};

class Layout : public ViewTest {
protected:
    /// Two views of 30 by 20 at (5, 6) in a holder of 300 by 400.
    Layout() {
        holder = add(rootView(), {{10, 20}, {300, 400}});
        a = add(*holder, {{5, 6}, {30, 20}});
        b = add(*holder, {{5, 6}, {30, 20}});
    }

    std::shared_ptr<NSObject> item(char name) {
        if (name == 'G') return holder->safeAreaLayoutGuide();
        return name == 'a' ? a : name == 'b' ? b : name == 'S' ? holder : nullptr;
    }
    std::shared_ptr<NSLayoutConstraint> constrain(const Equation& e) {
        auto constraint = NSLayoutConstraint::make({item(e.first), e.attribute},
                                                   {item(e.second), e.secondAttribute}, e.constant);
        holder->addConstraint(constraint);
        return constraint;
    }

    std::shared_ptr<UIView> holder, a, b;
};

TEST_F(Layout, EquationsPlaceViewsInWhateverOrderTheyAreGiven) {
    window->setSafeAreaInsets({40, 0, 80, 0});
    const CGRect stays{{5, 6}, {30, 20}};
    const struct {
        const char* name;
        std::vector<Equation> equations;
        CGRect a, b;
    } rows[] = {
        {"both edges give the length, the later equation counts",
         {{'a', leading, 7, 'S', leading},
          {'a', leading, 8, 'S', leading},
          {'a', trailing, -8, 'S', trailing}},
         {{8, 6}, {284, 20}},
         stays},
        {"far edge and length give the near edge",
         {{'a', trailing, 0, 'S', trailing},
          {'a', width, 50},
          {'a', bottom, -1, 'S', bottom},
          {'a', height, 9}},
         {{250, 390}, {50, 9}},
         stays},
        {"a chain told from its end",
         {{'b', top, 7, 'a', bottom},
          {'b', height, 1, 'a', width},
          {'b', leading, 2, 'a', trailing},
          {'a', top, 3, 'S', top},
          {'a', width, 0, 'a', height},
          {'a', height, 60}},
         {{5, 3}, {60, 60}},
         {{67, 70}, {30, 61}}},
        {"an unconstrained view is a source",
         {{'b', leading, 10, 'a', trailing}},
         stays,
         {{45, 6}, {30, 20}}},
        {"a length alone keeps the place", {{'a', height, 90}}, {{5, 6}, {30, 90}}, stays},
        {"nothing gets a negative length",
         {{'a', leading, 200, 'S', leading}, {'a', trailing, -200, 'S', trailing}},
         {{200, 6}, {0, 20}},
         stays},
        // The holder spans 20 to 420 of a window that is free from 40 to 400.
        {"the safe area counts from the holder's own place",
         {{'a', top, 1, 'G', top}, {'b', bottom, 0, 'G', bottom}, {'b', height, 0, 'G', height}},
         {{5, 21}, {30, 20}},
         {{5, 20}, {30, 360}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        a->setFrame(stays);
        b->setFrame(stays);
        for (const Equation& equation : row.equations)
            constrain(equation);
        window->layoutIfNeeded();
        EXPECT_EQ(a->frame(), row.a);
        EXPECT_EQ(b->frame(), row.b);
        while (!holder->constraints().empty())
            holder->removeConstraint(holder->constraints().back());
    }
    holder->addConstraint(NSLayoutConstraint::make({std::make_shared<UIView>(), width}, 10));
    EXPECT_THROW(LayoutPlan{*holder}, LayoutPlan::Fault) << "a stranger";
}

TEST_F(Layout, ConstraintsCanBeWaitedWithAndGoWithTheirView) {
    const auto constraint = constrain({'a', top, 50, 'S', top});
    constraint->setActive(false);
    window->layoutIfNeeded();
    EXPECT_EQ(a->frame().origin.y, 6);
    constraint->setActive(true);
    constrain({'b', top, 0, 'a', bottom});
    window->layoutIfNeeded();
    EXPECT_EQ(b->frame().origin.y, 70);
    a->removeFromSuperview();
    EXPECT_TRUE(holder->constraints().empty());
    window->layoutIfNeeded(); // the old order would reach for the view that is gone
    EXPECT_EQ(b->frame().origin.y, 70);
}

TEST_F(Layout, TextHasTheHeightThatItsWidthAsksFor) {
    const auto label = add<UILabel>(*holder, {});
    label->setFont(UIFont::systemFont(10));
    label->setNumberOfLines(0);
    label->setText("xxxxxxxxxxxxxxxxxxxx yyyyyyyyyyyyyyyyyyyy"); // 110 points, a blank, 110 points
    NSLayoutConstraint::activate({label, top}, {holder, top}, 0);
    const auto wide = NSLayoutConstraint::activate({label, width}, 226);
    NSLayoutConstraint::activate({a, top}, {label, bottom}, 3);
    window->layoutIfNeeded();
    EXPECT_EQ(a->frame().origin.y, 15);
    wide->setConstant(225); // one point less than both words need
    window->layoutIfNeeded();
    EXPECT_EQ(a->frame().origin.y, 27);
    label->setText("z");
    window->layoutIfNeeded();
    EXPECT_EQ(a->frame().origin.y, 15);
}

/// As a screen does that applies its customer's constants at every pass.
class AdjustingController : public UIViewController {
public:
    void viewDidLayoutSubviews() override {
        ++passes;
        if (height) height->setConstant(33);
    }
    std::shared_ptr<NSLayoutConstraint> height;
    int passes = 0;
};

TEST_F(Layout, OnePieceOfWorkDoesAllThatAPassChanges) {
    const auto controller = std::make_shared<AdjustingController>();
    window->setRootViewController(controller);
    platform.runUntilIdle();
    const auto view = add(*controller->view(), {});
    controller->height = NSLayoutConstraint::activate({view, height}, 1);
    controller->passes = 0;
    view->setNeedsLayout();
    EXPECT_EQ(platform.leftAlive().items, 1U);
    platform.runUntilIdle();
    EXPECT_EQ(view->frame().size.height, 33);
    EXPECT_EQ(controller->passes, 2);
    EXPECT_EQ(platform.leftAlive(), LeftAlive{});
}

class Tree : public ViewTest {};

TEST_F(Tree, SubviewsHaveOnePlaceAndOutliveTheirSuperview) {
    auto outer = add(rootView(), {});
    const auto first = add(*outer, {}), second = add(*outer, {});
    outer->insertSubview(second, 0);
    EXPECT_THAT(outer->subviews(), testing::ElementsAre(second, first));
    rootView().addSubview(first);
    EXPECT_EQ(first->superview(), root->view());
    EXPECT_THAT(outer->subviews(), testing::ElementsAre(second));
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(second->addSubview(outer), "into itself");

    const auto guide = outer->safeAreaLayoutGuide();
    const auto constraint = NSLayoutConstraint::activate({second, width}, 5);
    outer->removeFromSuperview();
    outer.reset();
    EXPECT_EQ(second->superview(), nullptr);
    EXPECT_EQ(guide->owner(), nullptr);
    constraint->setConstant(6); // has nobody to tell
}

TEST_F(Tree, OnlyChangesAreNewAndAskForOneFrame) {
    const auto beside = add(rootView(), {});
    const auto inner = add<UILabel>(*add(rootView(), {{0, 0}, {10, 10}}), {{0, 0}, {5, 5}});
    int requests = 0;
    window->setFrameRequest([&] { ++requests; });
    const std::function<void()> changes[] = {
        [&] { inner->setText("a"); },
        [&] { inner->setBackgroundColor(UIColor::white()); },
        [&] {
            inner->setFrame(CGRect{{1, 1}, {5, 5}});
        },
        [&] {
            inner->setBounds(CGRect{{0, 3}, {5, 5}});
        },
        [&] { inner->setHidden(true); },
        [&] { inner->layer().setCornerRadius(4); },
        [&] { inner->hideFromCapture(true); },
        [&] { inner->setAccessibilityLabel("b"); },
    };
    for (const auto& change : changes) {
        window->frameTaken();
        requests = 0;
        const auto before = window->treeRevision();
        change();
        const auto after = window->treeRevision();
        EXPECT_GT(after, before);
        EXPECT_EQ(after, inner->treeRevision());
        EXPECT_LE(beside->treeRevision(), before);
        change();
        EXPECT_EQ(window->treeRevision(), after) << "the same value again is no change";
        rootView().setAlpha(1 / static_cast<double>(after));
        EXPECT_EQ(requests, 1);
    }
}

TEST_F(Tree, WhatIsAnimatedSaysHow) {
    const auto view = add(rootView(), {});
    const auto moved = add(*view, {});
    NSLayoutConstraint::activate({moved, height}, 5);
    const UIViewAnimation animation{Seconds{0.3}, Seconds{0.1}};
    const auto changes = [&] {
        view->setAlpha(0.5);
        rootView().layoutIfNeeded();
    };
    UIView::animate(animation, changes, [this] { tell("done"); });
    EXPECT_EQ(view->alpha(), 0.5) << "the tree has the end at once";
    EXPECT_EQ(moved->animation(), animation) << "by the layout";
    EXPECT_EQ(taken(), "");
    platform.runUntilIdle();
    EXPECT_EQ(taken(), "done");
    view->setAlpha(1);
    EXPECT_EQ(view->animation(), std::nullopt);
    rootView().setTintColor(UIColor::red());
    EXPECT_EQ(view->tintColor(), UIColor::red()) << "the nearest one above";
}

} // namespace
} // namespace korvane
