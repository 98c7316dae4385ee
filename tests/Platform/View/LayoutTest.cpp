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
    char second; // 'S': the holder, 'G': its safe area, ' ': none
    NSLayoutAttribute secondAttribute;
    double constant;
};

struct SolvedRow {
    const char* name;
    std::vector<Equation> equations;
    CGRect a;
    CGRect b;
};

class Layout : public ViewTest {
protected:
    /// Two views of 30 by 20 at (5, 6) in a holder of 300 by 400.
    Layout() {
        holder = add<UIView>(rootView(), {{10, 20}, {300, 400}});
        a = add<UIView>(*holder, {{5, 6}, {30, 20}});
        b = add<UIView>(*holder, {{5, 6}, {30, 20}});
    }

    std::shared_ptr<NSObject> item(char name) {
        switch (name) {
        case 'a': return a;
        case 'b': return b;
        case 'S': return holder;
        case 'G': return holder->safeAreaLayoutGuide();
        default: return nullptr;
        }
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
    const std::vector<SolvedRow> rows{
        {"both edges give the length",
         {{'a', leading, 'S', leading, 8},
          {'a', trailing, 'S', trailing, -8},
          {'a', top, 'S', top, 4},
          {'a', bottom, 'S', bottom, -10}},
         {{8, 4}, {284, 386}},
         {{5, 6}, {30, 20}}},
        {"far edge and length give the near edge",
         {{'a', trailing, 'S', trailing, 0},
          {'a', width, ' ', notAnAttribute, 50},
          {'a', bottom, 'S', bottom, -1},
          {'a', height, ' ', notAnAttribute, 9}},
         {{250, 390}, {50, 9}},
         {{5, 6}, {30, 20}}},
        {"a chain told from its end",
         {{'b', top, 'a', bottom, 7},
          {'b', height, 'a', width, 1},
          {'b', leading, 'a', trailing, 2},
          {'a', top, 'S', top, 3},
          {'a', width, 'a', height, 0},
          {'a', height, ' ', notAnAttribute, 60},
          {'a', leading, 'S', leading, 1}},
         {{1, 3}, {60, 60}},
         {{63, 70}, {30, 61}}},
        {"an unconstrained view is a source, and stays",
         {{'b', leading, 'a', trailing, 10}, {'b', top, 'a', bottom, 0}},
         {{5, 6}, {30, 20}},
         {{45, 26}, {30, 20}}},
        {"a length alone keeps the place",
         {{'a', height, ' ', notAnAttribute, 90}},
         {{5, 6}, {30, 90}},
         {{5, 6}, {30, 20}}},
        {"of three the far edge gives way",
         {{'a', top, 'S', top, 10}, {'a', bottom, 'S', bottom, 0}, {'a', height, ' ', notAnAttribute, 44}},
         {{5, 10}, {30, 44}},
         {{5, 6}, {30, 20}}},
        {"nothing gets a negative length",
         {{'a', leading, 'S', leading, 200}, {'a', trailing, 'S', trailing, -200}},
         {{200, 6}, {0, 20}},
         {{5, 6}, {30, 20}}},
        // The holder spans 20 to 420 of a window that is free from 40 to 400.
        {"the safe area counts from the holder's own place",
         {{'a', top, 'G', top, 1}, {'b', bottom, 'G', bottom, 0}, {'b', height, 'G', height, 0}},
         {{5, 21}, {30, 20}},
         {{5, 20}, {30, 360}}},
    };
    for (const SolvedRow& row : rows) {
        SCOPED_TRACE(row.name);
        a->setFrame({{5, 6}, {30, 20}});
        b->setFrame({{5, 6}, {30, 20}});
        std::vector<std::shared_ptr<NSLayoutConstraint>> added;
        for (const Equation& equation : row.equations)
            added.push_back(constrain(equation));
        window->layoutIfNeeded();
        EXPECT_EQ(a->frame(), row.a);
        EXPECT_EQ(b->frame(), row.b);
        for (const auto& constraint : added)
            holder->removeConstraint(constraint);
    }
}

TEST_F(Layout, FaultsOfTheConstraintsAreTold) {
    const std::vector<std::pair<const char*, std::vector<Equation>>> rows{
        {"circle", {{'a', top, 'b', bottom, 0}, {'b', top, 'a', bottom, 0}}},
        {"itself", {{'a', width, 'a', height, 0}, {'a', height, 'a', width, 0}}},
        {"moves the holder", {{'S', width, 'a', width, 0}}},
        {"no attribute", {{'a', notAnAttribute, 'S', width, 0}}},
    };
    for (const auto& [name, equations] : rows) {
        SCOPED_TRACE(name);
        std::vector<std::shared_ptr<NSLayoutConstraint>> added;
        for (const Equation& equation : equations)
            added.push_back(constrain(equation));
        EXPECT_THROW(LayoutPlan{*holder}, LayoutPlan::Fault);
        for (const auto& constraint : added)
            holder->removeConstraint(constraint);
    }
    const auto stranger = std::make_shared<UIView>();
    holder->addConstraint(NSLayoutConstraint::make({stranger, width}, 10));
    EXPECT_THROW(LayoutPlan{*holder}, LayoutPlan::Fault);
}

TEST_F(Layout, ConstraintsCanBeWaitedWithAndGoWithTheirView) {
    const auto constraint = constrain({'a', top, 'S', top, 50});
    constraint->setActive(false);
    window->layoutIfNeeded();
    EXPECT_EQ(a->frame().origin.y, 6);
    constraint->setActive(true);
    window->layoutIfNeeded();
    EXPECT_EQ(a->frame().origin.y, 50);

    constrain({'b', top, 'a', bottom, 0});
    a->removeFromSuperview();
    EXPECT_TRUE(holder->constraints().empty());
    window->layoutIfNeeded(); // the old order would reach for the view that is gone
    EXPECT_EQ(b->frame().size.height, 20);
}

TEST_F(Layout, TextHasTheHeightThatItsWidthAsksFor) {
    const auto label = add<UILabel>(*holder, {});
    label->setFont(UIFont::systemFont(10));
    label->setNumberOfLines(0);
    label->setText("xxxxxxxxxxxxxxxxxxxx yyyyyyyyyyyyyyyyyyyy"); // 110 points, a blank, 110 points
    NSLayoutConstraint::activate({label, leading}, {holder, leading}, 0);
    NSLayoutConstraint::activate({label, top}, {holder, top}, 0);
    const auto wide = NSLayoutConstraint::activate({label, width}, 226);
    NSLayoutConstraint::activate({a, top}, {label, bottom}, 3);
    window->layoutIfNeeded();
    EXPECT_EQ(label->frame(), (CGRect{{0, 0}, {226, 12}}));
    EXPECT_EQ(a->frame().origin.y, 15);

    wide->setConstant(225); // one point less than both words need
    window->layoutIfNeeded();
    EXPECT_EQ(label->frame().size.height, 24);
    EXPECT_EQ(a->frame().origin.y, 27);

    label->setText("z");
    window->layoutIfNeeded();
    EXPECT_EQ(a->frame().origin.y, 15);
}

TEST_F(Layout, ScrollingMovesNoSubview) {
    const auto scroll = add<UIScrollView>(rootView(), {{0, 100}, {100, 100}});
    const auto inside = add<UIView>(*scroll, {{0, 0}, {10, 10}});
    NSLayoutConstraint::activate({inside, top}, {scroll, top}, 150);
    scroll->setContentOffset({0, 60});
    window->layoutIfNeeded();
    EXPECT_EQ(inside->frame().origin.y, 150);
    EXPECT_EQ(inside->convertTo(nullptr, CGPoint{0, 0}), (CGPoint{0, 190}));
    EXPECT_EQ(rootView().convertFrom(inside.get(), CGPoint{1, 2}), (CGPoint{1, 192}));
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

TEST_F(Layout, WhatAControllerChangesInAPassIsDoneInTheSameCall) {
    const auto controller = std::make_shared<AdjustingController>();
    window->setRootViewController(controller);
    const auto view = add<UIView>(*controller->view(), {});
    controller->height = NSLayoutConstraint::activate({view, height}, 1);
    controller->passes = 0;
    window->layoutIfNeeded();
    EXPECT_EQ(view->frame().size.height, 33);
    EXPECT_EQ(controller->passes, 2);
    window->layoutIfNeeded();
    EXPECT_EQ(controller->passes, 2) << "nothing asked for a pass";
}

TEST_F(Layout, AWindowLaysItselfOutByOnePieceOfWork) {
    window->layoutIfNeeded();
    platform.runUntilIdle();
    const auto constraint = constrain({'a', top, 'S', top, 11});
    constraint->setConstant(12);
    a->setNeedsLayout();
    EXPECT_EQ(platform.leftAlive().items, 1U);
    platform.runUntilIdle();
    EXPECT_EQ(a->frame().origin.y, 12);
    EXPECT_EQ(platform.leftAlive(), LeftAlive{});
}

} // namespace
} // namespace korvane
