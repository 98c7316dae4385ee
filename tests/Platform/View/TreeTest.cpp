#include "Platform/View/UILabel.h"
#include "tests/Platform/View/ViewSupport.h"

namespace korvane {
namespace {

using testing::ElementsAre;

/// Tells when it comes into a window and leaves it, and of new traits.
class MovingView : public UIView {
public:
    void didMoveToWindow() override { log.push_back(window() ? "in" : "out"); }
    void traitCollectionDidChange(const UITraitCollection& previous) override {
        log.push_back(previous.userInterfaceStyle == UIUserInterfaceStyle::light ? "was light" : "was dark");
    }
    Log log;
};

class Tree : public ViewTest {};

TEST_F(Tree, SubviewsHaveOnePlaceInOrder) {
    const auto a = std::make_shared<UIView>();
    const auto b = std::make_shared<UIView>();
    const auto c = std::make_shared<UIView>();
    UIView& view = rootView();
    for (const auto& one : {a, b, c})
        view.addSubview(one);
    view.insertSubview(c, 0);
    EXPECT_THAT(view.subviews(), ElementsAre(c, a, b));
    view.addSubview(a);
    EXPECT_THAT(view.subviews(), ElementsAre(c, b, a));
    view.sendSubviewToBack(b);
    EXPECT_THAT(view.subviews(), ElementsAre(b, c, a));
    c->addSubview(a);
    EXPECT_THAT(view.subviews(), ElementsAre(b, c));
    EXPECT_EQ(a->superview(), c);
    EXPECT_TRUE(a->isDescendant(view));
    EXPECT_FALSE(b->isDescendant(*c));
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(a->addSubview(c), "into itself");
}

TEST_F(Tree, WhatIsBelowHearsOfTheWindow) {
    const auto outer = std::make_shared<UIView>();
    const auto inner = add<MovingView>(*outer, {});
    rootView().addSubview(outer);
    window->setTraits(
        {UIUserInterfaceStyle::dark, UIUserInterfaceSizeClass::compact, UIUserInterfaceSizeClass::regular});
    window->setTraits(window->traits());
    EXPECT_EQ(inner->traitCollection().userInterfaceStyle, UIUserInterfaceStyle::dark);
    outer->removeFromSuperview();
    EXPECT_THAT(inner->log, ElementsAre("in", "was light", "out"));
}

TEST_F(Tree, ATagIsFoundDepthFirst) {
    const auto first = add<UIView>(rootView(), {});
    const auto deep = add<UIView>(*first, {});
    const auto second = add<UIView>(rootView(), {});
    deep->setTag(1000);
    second->setTag(1000);
    EXPECT_EQ(rootView().viewWithTag(1000), deep);
    EXPECT_EQ(rootView().viewWithTag(7), nullptr);
    EXPECT_EQ(second->viewWithTag(1000), second);
}

TEST_F(Tree, ASubviewOutlivesItsSuperviewAlone) {
    auto outer = std::make_shared<UIView>();
    const auto inner = add<UIView>(*outer, {});
    const auto guide = outer->safeAreaLayoutGuide();
    const auto constraint = NSLayoutConstraint::activate({inner, NSLayoutAttribute::width}, 5);
    outer.reset();
    EXPECT_EQ(inner->superview(), nullptr);
    EXPECT_EQ(guide->owner(), nullptr);
    constraint->setConstant(6); // has nobody to tell
    inner->setFrame({{0, 0}, {1, 1}});
}

TEST_F(Tree, OnlyChangesAreNew) {
    const auto outer = add<UIView>(rootView(), {{0, 0}, {10, 10}});
    const auto inner = add<UILabel>(*outer, {{0, 0}, {5, 5}});
    const auto beside = add<UIView>(rootView(), {});
    const std::vector<std::pair<const char*, std::function<void()>>> changes{
        {"text", [&] { inner->setText("a"); }},
        {"colour", [&] { inner->setTextColor(UIColor::red()); }},
        {"background", [&] { inner->setBackgroundColor(UIColor::white()); }},
        {"frame",
         [&] {
             inner->setFrame({{1, 1}, {5, 5}});
         }},
        {"bounds",
         [&] {
             inner->setBounds({{0, 3}, {5, 5}});
         }},
        {"hidden", [&] { inner->setHidden(true); }},
        {"layer", [&] { inner->layer().setCornerRadius(4); }},
        {"capture", [&] { inner->hideFromCapture(true); }},
        {"subview",
         [&] {
             if (inner->subviews().empty()) add<UIView>(*inner, {});
         }},
        {"label for a reader", [&] { inner->setAccessibilityLabel("b"); }},
    };
    for (const auto& [name, change] : changes) {
        SCOPED_TRACE(name);
        const auto before = window->treeRevision();
        change();
        EXPECT_GT(inner->treeRevision(), before);
        EXPECT_EQ(window->treeRevision(), inner->treeRevision());
        EXPECT_LE(outer->revision(), before);
        EXPECT_LE(beside->treeRevision(), before);
        const auto after = window->treeRevision();
        change();
        EXPECT_EQ(window->treeRevision(), after) << "the same value again is no change";
    }
}

TEST_F(Tree, AFrameIsAskedForOnceUntilItIsTaken) {
    int requests = 0;
    window->setFrameRequest([&] { ++requests; });
    rootView().setAlpha(0.5);
    rootView().setAlpha(0.6);
    EXPECT_EQ(requests, 1);
    window->frameTaken();
    rootView().setAlpha(0.6);
    EXPECT_EQ(requests, 1);
    rootView().setAlpha(0.7);
    EXPECT_EQ(requests, 2);
}

TEST_F(Tree, WhatIsAnimatedSaysHow) {
    const auto view = add<UIView>(rootView(), {});
    const auto moved = add<UIView>(*view, {});
    NSLayoutConstraint::activate({moved, NSLayoutAttribute::height}, 5);
    bool isDone = false;
    UIView::animate(
        UIViewAnimation{Seconds{0.3}, Seconds{0.1}},
        [&] {
            view->setAlpha(0.5);
            rootView().layoutIfNeeded();
        },
        [&] { isDone = true; });
    EXPECT_EQ(view->alpha(), 0.5) << "the tree has the end at once";
    EXPECT_EQ(moved->animation(), (UIViewAnimation{Seconds{0.3}, Seconds{0.1}})) << "by the layout";
    EXPECT_FALSE(isDone);
    const Seconds start = platform.now();
    ASSERT_TRUE(platform.runUntil([&] { return isDone; }));
    EXPECT_EQ(platform.now(), start) << "nobody plays it";
    view->setAlpha(1);
    EXPECT_EQ(view->animation(), std::nullopt);
}

TEST_F(Tree, TintIsTheNearestOneAbove) {
    const auto view = add<UIView>(rootView(), {});
    EXPECT_EQ(view->tintColor(), UIColor::systemBlue());
    rootView().setTintColor(UIColor::red());
    EXPECT_EQ(view->tintColor(), UIColor::red());
    view->setTintColor(UIColor::black());
    EXPECT_EQ(view->tintColor(), UIColor::black());
}

TEST_F(Tree, ALayerKnowsItsCaptureMaskAlone) {
    CALayer& layer = rootView().layer();
    EXPECT_TRUE(layer.responds("disableUpdateMask"));
    EXPECT_FALSE(layer.responds("somethingElse"));
    rootView().hideFromCapture(true);
    EXPECT_EQ(layer.value("disableUpdateMask"), 18);
    rootView().hideFromCapture(false);
    EXPECT_EQ(layer.value("disableUpdateMask"), 0);
    EXPECT_EQ(layer.value("somethingElse"), std::nullopt);
}

} // namespace
} // namespace korvane
