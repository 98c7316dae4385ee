#include "Platform/View/UILabel.h"
#include "tests/Platform/View/ViewSupport.h"

namespace korvane {
namespace {

class Tree : public ViewTest {};

TEST_F(Tree, SubviewsOutliveTheirSuperview) {
    auto outer = add(rootView(), {});
    const auto inner = add(*outer, {});
    const auto guide = outer->safeAreaLayoutGuide();
    const auto constraint = NSLayoutConstraint::activate({inner, NSLayoutAttribute::width}, 5);
    outer->removeFromSuperview();
    outer.reset();
    EXPECT_EQ(inner->superview(), nullptr);
    EXPECT_EQ(guide->owner(), nullptr);
    constraint->setConstant(6); // has nobody to tell
}

TEST_F(Tree, OnlyChangesAreNewAndAskForOneFrame) {
    const auto inner = add<UILabel>(*add(rootView(), {{0, 0}, {10, 10}}), {{0, 0}, {5, 5}});
    constexpr CGRect kMoved{{1, 1}, {5, 5}}, kScrolled{{0, 3}, {5, 5}};
    int requests = 0;
    window->setFrameRequest([&] { ++requests; });
    const std::function<void()> changes[] = {
        [&] { inner->setText("a"); },
        [&] { inner->setFrame(kMoved); },
        [&] { inner->setBounds(kScrolled); },
        [&] { inner->layer().setCornerRadius(4); },
        [&] { inner->setAccessibilityLabel("b"); },
    };
    for (const auto& change : changes) {
        window->frameTaken();
        requests = 0;
        const auto before = window->treeRevision();
        change();
        const auto after = window->treeRevision();
        EXPECT_GT(after, before);
        change();
        EXPECT_EQ(window->treeRevision(), after) << "the same value again is no change";
        EXPECT_EQ(requests, 1);
    }
}

} // namespace
} // namespace korvane
