#include "Platform/View/UIButton.h"
#include "Platform/View/UILabel.h"
#include "Platform/View/UIStoryboard.h"
#include "Platform/View/UITableView.h"
#include "tests/Platform/View/ViewSupport.h"
#include "tests/support/Failures.h"
#include "tests/support/TemporaryFolder.h"

namespace korvane {
namespace {

struct PayController : UIViewController {
    UIOutlet<UILabel> amount{*this, "amount"};
    UIOutlet<NSLayoutConstraint> amountHeight{*this, "amountHeight"};
    UIOutlet<UIButton> pay{*this, "pay"};
    UIOutlet<UITableView> list{*this, "list"};
};

constexpr const char* kPay = R"({"scenes": {"pay": {
  "class": "PayController", "orientation": "landscape",
  "view": {"class": "UIScrollView", "subviews": [
    {"class": "UILabel", "id": "amount", "outlet": "amount", "font": {"size": 10, "weight": 0.3}},
    {"class": "UIButton", "id": "pay", "outlet": "pay", "titleEdgeInsets": [1, 2, 3, 4], "tag": 7},
    {"class": "UITableView", "outlet": "list", "cells": {
      "row": {"class": "UITableViewCell", "subviews": [{"id": "box", "tag": 1000}],
              "constraints": ["box.leading = self.leading + 5", "box.width = 20"]}}}],
   "constraints": ["amount.top = safeArea.top + 8", "amount.leading = self.leading",
     "amount.trailing = self.trailing - 20", {"constraint": "amount.height = 50", "outlet": "amountHeight"}]}}}})";

class Storyboard : public ViewTest {
protected:
    Storyboard() { UIStoryboard::registerClass<PayController>("PayController"); }

    std::shared_ptr<PayController> pay(const std::string& json) {
        folder.write("Screens.json", asBytes(json));
        return std::dynamic_pointer_cast<PayController>(
            UIStoryboard("Screens", bundle).instantiateViewController("pay"));
    }

    const TemporaryFolder folder;
    const std::shared_ptr<NSBundle> bundle = NSBundle::bundleWithPath(folder.path());
};

std::string scene(const std::string& view) {
    return R"({"scenes": {"pay": {"class": "PayController", "view": )" + view + "}}}";
}

std::string constrained(const std::string& equations) {
    return scene(R"({"subviews": [{"id": "a", "tag": 1}, {"id": "b", "tag": 2}],
                     "constraints": [)" +
                 equations + "]}");
}

TEST_F(Storyboard, AControllerComesWithItsViewsOutletsAndConstraints) {
    const auto controller = pay(kPay);
    EXPECT_EQ(controller->amount->font(), UIFont::systemFont(10, 0.3));
    EXPECT_EQ(controller->amount->frame(), (CGRect{{0, 8}, {460, 50}})) << "laid out for the screen, turned";
    EXPECT_EQ(controller->amountHeight->constant(), 50);
    EXPECT_EQ(controller->pay->tag(), 7);
    EXPECT_EQ(controller->pay->titleEdgeInsets(), (UIEdgeInsets{1, 2, 3, 4}));
    const auto cell = controller->list->dequeueReusableCell("row");
    cell->layoutIfNeeded();
    EXPECT_EQ(cell->viewWithTag(1000)->frame().size.width, 20);
}

TEST_F(Storyboard, EquationsPlaceViewsInWhateverOrderTheyAreGiven) {
    window->setSafeAreaInsets({40, 0, 80, 0}); // of 320 by 480
    static constexpr CGRect kPlace{{5, 6}, {30, 20}};
    const struct {
        const char* equations;
        CGRect a, b = kPlace;
    } rows[] = {
        // Both edges give the length; of two equations for one edge the later counts.
        {R"("a.leading = self.leading + 7", "a.leading = self.leading + 8", "a.trailing = self.trailing - 8")",
         {{8, 6}, {304, 20}}},
        {R"("a.trailing = self.trailing", "a.width = 50", "a.bottom = self.bottom - 1", "a.height = 9")",
         {{270, 470}, {50, 9}}},
        {R"("b.top = a.bottom + 7", "b.height = a.width + 1", "b.leading = a.trailing + 2",
            "a.top = self.top + 3", "a.width = a.height", "a.height = 60")",
         {{5, 3}, {60, 60}},
         {{67, 70}, {30, 61}}},
        {R"("b.leading = a.trailing + 10")", kPlace, {{45, 6}, {30, 20}}},
        {R"("a.height = 90")", {{5, 6}, {30, 90}}},
        {R"("a.leading = self.leading + 200", "a.trailing = self.trailing - 200")", {{200, 6}, {0, 20}}},
        {R"("a.top = safeArea.top + 1", "b.bottom = safeArea.bottom", "b.height = safeArea.height")",
         {{5, 41}, {30, 20}},
         {{5, 40}, {30, 360}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.equations);
        const auto controller = pay(constrained(row.equations));
        const auto a = controller->view()->viewWithTag(1), b = controller->view()->viewWithTag(2);
        a->setFrame(kPlace);
        b->setFrame(kPlace);
        window->setRootViewController(controller);
        window->layoutIfNeeded();
        EXPECT_EQ(a->frame(), row.a);
        EXPECT_EQ(b->frame(), row.b);
        a->removeFromSuperview();
        b->removeFromSuperview();
        EXPECT_TRUE(controller->view()->constraints().empty()) << "they go with their views";
    }
}

TEST_F(Storyboard, WideViewsKeepTheirLinesShortMirrorAndCloseTheGapsOfWhatIsNotThere) {
    const auto controller = pay(scene(R"({"readableWidth": 200,
        "subviews": [{"id": "a", "tag": 1, "collapses": true}, {"id": "b", "tag": 2, "collapses": true}],
        "constraints": ["a.leading = readable.leading + 10", "a.width = 30", "a.top = self.top + 5", "a.height = 20",
                        "b.leading = a.leading", "b.width = 40", "b.top = a.bottom + 8", "b.height = 9"]})"));
    window->setRootViewController(controller); // 320 wide
    const auto a = controller->view()->viewWithTag(1), b = controller->view()->viewWithTag(2);
    for (const bool isRightToLeft : {false, true})
        for (const bool isHidden : {true, false}) {
            controller->view()->setRightToLeft(isRightToLeft);
            b->setHidden(isHidden);
            window->layoutIfNeeded();
            EXPECT_EQ(a->frame(), (CGRect{{isRightToLeft ? 220.0 : 70.0, 5}, {30, 20}}));
            const double x = isRightToLeft ? 210 : 70;
            EXPECT_EQ(b->frame(), (isHidden ? CGRect{{x, 25}, {40, 0}} : CGRect{{x, 33}, {40, 9}}));
        }
}

/// Whoever changes the file is told where its fault is; nothing of it is shown.
TEST_F(Storyboard, FaultsAreToldByName) {
    using enum UIStoryboardErrorCase;
    const struct {
        std::string json;
        UIStoryboardErrorCase kind;
        const char* named;
    } rows[] = {
        {"{", resourceBroken, "Screens"},
        {R"({"scenes": {"other": {}}})", identifierMissing, "pay"},
        {scene(R"({"colour": "red"})"), propertyInvalid, "colour"},
        {scene(R"({"clipsToBounds": "yes"})"), propertyInvalid, "clipsToBounds"},
        {scene(R"({"backgroundColor": "mauve"})"), propertyInvalid, "mauve"},
        {scene(R"({"class": "UIImageView", "image": "nowhere"})"), propertyInvalid, "nowhere"},
        {scene(R"({"class": "UILabel", "outlet": "pay"})"), outletUnknown, "pay"},
        {constrained(R"("c.top = self.top")"), constraintInvalid, "pay"},
        {constrained(R"("a.top = self.top + b")"), constraintInvalid, "self.top + b"},
        {constrained(R"("a.top = b.bottom", "b.top = a.bottom")"), constraintInvalid, "circle"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.json);
        const auto failure = raisedBy<UIStoryboardErrorCase>([&] { return pay(row.json); });
        ASSERT_TRUE(failure.has_value());
        EXPECT_EQ(failure->kind(), row.kind) << failure->what();
        EXPECT_THAT(failure->localizedDescription(), testing::HasSubstr(row.named));
    }
    EXPECT_RAISES(resourceMissing, UIStoryboard("Nothing", bundle));
}

} // namespace
} // namespace korvane
