#include "Platform/View/UILabel.h"
#include "tests/Platform/View/ViewSupport.h"

#include <sstream>

namespace korvane {
namespace {

using enum NSLayoutAttribute;

class Layout : public ViewTest {
protected:
    /// Two views of 30 by 20 at (5, 6) in a holder of 300 by 400.
    Layout() {
        holder = add(rootView(), {{10, 20}, {300, 400}});
        a = add(*holder, kPlace);
        b = add(*holder, kPlace);
    }

    /// An attribute as a test writes it: 'a' and 'b' are the views, 'S' is the holder and 'G' its safe area.
    NSLayoutConstraint::Side side(const std::string& text) {
        const char name = text[0];
        const std::shared_ptr<NSObject> view = name == 'a' ? a : name == 'b' ? b : holder;
        return {name == 'G' ? holder->safeAreaLayoutGuide() : view, *layoutAttributeNamed(text.substr(2))};
    }
    /// "a.top = S.top + 5, b.width = 7"
    void constrain(const std::string& equations) {
        std::istringstream text(equations);
        for (std::string one; std::getline(text >> std::ws, one, ',');) {
            std::istringstream words(one);
            std::string first, sign, second;
            double constant = 0;
            words >> first >> sign >> second;
            const bool isNumber = second.find('.') == std::string::npos;
            if (isNumber) constant = std::stod(second);
            if (words >> sign >> constant && sign == "-") constant = -constant;
            holder->addConstraint(NSLayoutConstraint::make(
                side(first), isNumber ? NSLayoutConstraint::Side{} : side(second), constant));
        }
    }

    static constexpr CGRect kPlace{{5, 6}, {30, 20}};
    std::shared_ptr<UIView> holder, a, b;
};

TEST_F(Layout, EquationsPlaceViewsInWhateverOrderTheyAreGiven) {
    window->setSafeAreaInsets({40, 0, 80, 0}); // the holder spans 20 to 420 of a window that is free to 400
    const struct {
        const char* equations;
        CGRect a, b = kPlace;
    } rows[] = {
        // Both edges give the length; of two equations for one edge the later counts.
        {"a.leading = S.leading + 7, a.leading = S.leading + 8, a.trailing = S.trailing - 8",
         {{8, 6}, {284, 20}}},
        {"a.trailing = S.trailing, a.width = 50, a.bottom = S.bottom - 1, a.height = 9",
         {{250, 390}, {50, 9}}},
        {"b.top = a.bottom + 7, b.height = a.width + 1, b.leading = a.trailing + 2, a.top = S.top + 3, "
         "a.width = a.height, a.height = 60",
         {{5, 3}, {60, 60}},
         {{67, 70}, {30, 61}}},
        {"b.leading = a.trailing + 10", kPlace, {{45, 6}, {30, 20}}},
        {"a.height = 90", {{5, 6}, {30, 90}}},
        {"a.leading = S.leading + 200, a.trailing = S.trailing - 200", {{200, 6}, {0, 20}}},
        {"a.top = G.top + 1, b.bottom = G.bottom, b.height = G.height",
         {{5, 21}, {30, 20}},
         {{5, 20}, {30, 360}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.equations);
        a->setFrame(kPlace);
        b->setFrame(kPlace);
        constrain(row.equations);
        window->layoutIfNeeded();
        EXPECT_EQ(a->frame(), row.a);
        EXPECT_EQ(b->frame(), row.b);
        while (!holder->constraints().empty())
            holder->removeConstraint(holder->constraints().back());
    }
}

TEST_F(Layout, ConstraintsGoWithTheirView) {
    constrain("a.top = S.top + 50, b.top = a.bottom");
    window->layoutIfNeeded();
    EXPECT_EQ(b->frame().origin.y, 70);
    a->removeFromSuperview();
    EXPECT_TRUE(holder->constraints().empty());
    window->layoutIfNeeded(); // the old order would reach for the view that is gone
}

class Tree : public ViewTest {};

TEST_F(Tree, SubviewsOutliveTheirSuperview) {
    auto outer = add(rootView(), {});
    const auto inner = add(*outer, {});
    const auto guide = outer->safeAreaLayoutGuide();
    const auto constraint = NSLayoutConstraint::activate({inner, width}, 5);
    outer->removeFromSuperview();
    outer.reset();
    EXPECT_EQ(inner->superview(), nullptr);
    EXPECT_EQ(guide->owner(), nullptr);
    constraint->setConstant(6); // has nobody to tell
}

TEST_F(Tree, OnlyChangesAreNewAndAskForOneFrame) {
    const auto inner = add<UILabel>(*add(rootView(), {{0, 0}, {10, 10}}), {{0, 0}, {5, 5}});
    int requests = 0;
    window->setFrameRequest([&] { ++requests; });
    const std::function<void()> changes[] = {
        [&] { inner->setText("a"); },
        [&] {
            inner->setFrame({{1, 1}, {5, 5}});
        },
        [&] {
            inner->setBounds({{0, 3}, {5, 5}});
        },
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
