#include "Platform/View/UIButton.h"
#include "Platform/View/UILabel.h"
#include "Platform/View/UIScrollView.h"
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
     "amount.trailing = self.trailing - 20", {"constraint": "amount.height = 50", "outlet": "amountHeight"},
     "pay.top = amount.bottom", {"constraint": "pay.height = 9", "active": false}]}}}})";

class Storyboard : public ViewTest {
protected:
    Storyboard() { UIStoryboard::registerClass<PayController>("PayController"); }

    void write(const std::string& name, const std::string& text) { folder.write(name, asBytes(text)); }
    UIStoryboard storyboard(const std::string& json) {
        write("Screens.json", json);
        return UIStoryboard("Screens", bundle);
    }
    std::shared_ptr<PayController> pay(const std::string& json) {
        return std::dynamic_pointer_cast<PayController>(storyboard(json).instantiateViewController("pay"));
    }

    const TemporaryFolder folder;
    const std::shared_ptr<NSBundle> bundle = NSBundle::bundleWithPath(folder.path());
};

std::string scene(const std::string& view) {
    return R"({"scenes": {"pay": {"class": "PayController", "view": )" + view + "}}}";
}

TEST_F(Storyboard, AControllerComesWithItsViewsOutletsAndConstraints) {
    const auto controller = pay(kPay);
    EXPECT_FALSE(controller->isViewLoaded());
    EXPECT_EQ(controller->amount->font(), UIFont::systemFont(10, 0.3));
    EXPECT_EQ(controller->amount->frame(), (CGRect{{0, 8}, {460, 50}})) << "laid out for the screen, turned";
    EXPECT_EQ(controller->amountHeight->constant(), 50);
    EXPECT_EQ(controller->pay->tag(), 7);
    EXPECT_EQ(controller->pay->titleEdgeInsets(), (UIEdgeInsets{1, 2, 3, 4}));
    EXPECT_EQ(controller->pay->frame().size.height, 0) << "its constraint waits";
    EXPECT_EQ(controller->view()->kind(), UIViewKind::scroll);
    const auto cell = controller->list->dequeueReusableCell("row");
    EXPECT_NE(cell, controller->list->dequeueReusableCell("row"));
    cell->layoutIfNeeded();
    EXPECT_EQ(cell->viewWithTag(1000)->superview(), cell->contentView());
    EXPECT_EQ(cell->viewWithTag(1000)->frame().size.width, 20);

    EXPECT_FALSE(storyboard(R"({"scenes": {"another": {}}})").hasIdentifier("pay")) << "the file is another";
    const auto bare = pay(scene("{}"));
    EXPECT_FALSE(bare->amount);
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(bare->amount->setText(""), "amount");
}

TEST_F(Storyboard, FaultsAreToldByName) {
    using enum UIStoryboardErrorCase;
    write("Colors.json", R"({"broken": 1})");
    const struct {
        std::string json;
        UIStoryboardErrorCase kind;
        const char* named;
    } files[] = {
        {"{", resourceBroken, "Screens"},
        {R"({"scenes": []})", resourceBroken, "Screens"},
        {R"({"scenes": {"other": {}}})", identifierMissing, "pay"},
        {R"({"scenes": {"pay": 1}})", resourceBroken, "pay"},
        {R"({"scenes": {"pay": {"class": "UILabel"}}})", classUnknown, "UILabel"},
        {R"({"scenes": {"pay": {"class": 5}}})", classUnknown, "5"},
        {scene(R"({"class": "PayController"})"), classUnknown, "PayController"},
        {scene("[]"), propertyInvalid, "pay"},
        {scene(R"({"colour": "red"})"), propertyInvalid, "colour"},
        {scene(R"({"title": "a plain view has none"})"), propertyInvalid, "title"},
        {scene(R"({"hidden": "yes"})"), propertyInvalid, "hidden"},
        {scene(R"({"backgroundColor": "mauve"})"), propertyInvalid, "mauve"},
        {scene(R"({"backgroundColor": "broken"})"), propertyInvalid, "broken"},
        {scene(R"({"frame": [1, 2, 3]})"), propertyInvalid, "frame"},
        {scene(R"({"tag": 1.5})"), propertyInvalid, "tag"},
        {scene(R"({"class": "UIImageView", "image": "nowhere"})"), propertyInvalid, "nowhere"},
        {scene(R"({"class": "UILabel", "font": {"name": "None", "size": 3}})"), propertyInvalid, "None"},
        {scene(R"({"class": "UITextField", "keyboardType": 12})"), propertyInvalid, "keyboardType"},
        {scene(R"({"subviews": {}})"), propertyInvalid, "subviews"},
        {scene(R"({"subviews": [{"id": "twice"}, {"id": "twice"}]})"), propertyInvalid, "twice"},
        {scene(R"({"cells": {}})"), propertyInvalid, "cells"},
        {scene(R"({"items": []})"), propertyInvalid, "items"},
        {scene(R"({"class": "UITableView", "cells": {"row": {"class": "UILabel"}}})"), classUnknown, "row"},
        {scene(R"({"outlet": "unknown"})"), outletUnknown, "unknown"},
        {scene(R"({"class": "UILabel", "outlet": "pay"})"), outletUnknown, "pay"},
    };
    for (const auto& row : files) {
        SCOPED_TRACE(row.json);
        const auto failure = raisedBy<UIStoryboardErrorCase>([&] { return pay(row.json); });
        ASSERT_TRUE(failure.has_value());
        EXPECT_EQ(failure->kind(), row.kind) << failure->what();
        EXPECT_THAT(failure->localizedDescription(), testing::HasSubstr(row.named));
    }
    const std::pair<std::string, const char*> constraints[] = {
        {"c.top = self.top", "pay"},
        {"a.top = self.top + b", "self.top + b"},
        {"a.top = self.middle", "self.middle"},
        {"a.top == self.top", "=="},
        {"self.height = a.height", "move the view itself"},
        {R"(a.top = b.bottom", "b.top = a.bottom)", "circle"},
    };
    for (const auto& [constraint, named] : constraints) {
        const std::string view =
            R"({"subviews": [{"id": "a"}, {"id": "b"}], "constraints": [")" + constraint + "\"]}";
        const auto failure = raisedBy<UIStoryboardErrorCase>([&] { return pay(scene(view)); });
        ASSERT_TRUE(failure && failure->kind() == constraintInvalid) << constraint;
        EXPECT_THAT(failure->localizedDescription(), testing::HasSubstr(named));
    }
    EXPECT_RAISES(resourceMissing, UIStoryboard("Nothing", bundle));
}

TEST_F(Storyboard, NamedColoursAndImagesComeFromTheBundle) {
    write("Colors.json", R"({"plain": "#FF0000", "both": {"light": "#0000FF", "dark": "#00FF0000"},
                            "a": "FF00801", "b": "#GG0000", "c": "#-12345", "d": "#12345", "e": "#1234567"})");
    write("dot.svg", "<svg width='12' height='6'/>");
    write("fine@2x.png", std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\0\x28\0\0\0\x14", 24));
    write("bad.png", "no image");
    EXPECT_EQ(UIColor::named("plain", *bundle), UIColor::red());
    EXPECT_EQ(UIColor::named("both", *bundle)->resolved(UIUserInterfaceStyle::dark), (RGBA{0, 1, 0, 0}));
    for (const char* bad : {"a", "b", "c", "d", "e", "none"})
        EXPECT_EQ(UIColor::named(bad, *bundle), std::nullopt) << bad;
    const auto dot = UIImage::named("dot", *bundle);
    EXPECT_EQ(UIImage::named("dot", *bundle), dot) << "the same image each time";
    EXPECT_EQ(UIImage::named("fine", *bundle)->size(), (CGSize{20, 10}));
    EXPECT_EQ(UIImage::named("bad", *bundle), nullptr);
}

} // namespace
} // namespace korvane
