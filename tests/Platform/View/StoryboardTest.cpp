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
    {"class": "UILabel", "id": "amount", "outlet": "amount", "text": "12", "font": {"size": 10, "weight": 0.3}},
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

/// Whoever changes the file is told where its fault is; nothing of it is shown.
TEST_F(Storyboard, FaultsAreToldByName) {
    using enum UIStoryboardErrorCase;
    const auto scene = [](const std::string& view) {
        return R"({"scenes": {"pay": {"class": "PayController", "view": )" + view + "}}}";
    };
    const auto constrained = [&](const std::string& constraint) {
        return scene(R"({"subviews": [{"id": "a"}, {"id": "b"}], "constraints": [")" + constraint + "\"]}");
    };
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
        {constrained("c.top = self.top"), constraintInvalid, "pay"},
        {constrained("a.top = self.top + b"), constraintInvalid, "self.top + b"},
        {constrained(R"(a.top = b.bottom", "b.top = a.bottom)"), constraintInvalid, "circle"},
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
