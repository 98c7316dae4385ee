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

using Case = UIStoryboardErrorCase;

class PayController : public UIViewController {
public:
    UIOutlet<UILabel> amount{*this, "amount"};
    UIOutlet<NSLayoutConstraint> amountHeight{*this, "amountHeight"};
    UIOutlet<UIButton> pay{*this, "pay"};
    UIOutlet<UITableView> list{*this, "list"};

    void viewDidLoad() override { isLoaded = true; }
    bool isLoaded = false;
};

/// A button that looks at itself when it comes from a storyboard.
class AwakeButton : public UIButton {
public:
    void awakeFromNib() override { titleWhenAwake = currentTitle(); }
    std::string titleWhenAwake;
};

constexpr const char* kPay = R"({"scenes": {"pay": {
  "class": "PayController", "orientation": "landscape",
  "view": {"class": "UIScrollView", "backgroundColor": "tone", "subviews": [
    {"class": "UILabel", "id": "amount", "outlet": "amount", "text": "12", "numberOfLines": 0,
     "font": {"size": 10, "weight": 0.3}, "textAlignment": "center"},
    {"class": "AwakeButton", "id": "pay", "outlet": "pay", "title": "Pay", "image": "dot",
     "titleEdgeInsets": [1, 2, 3, 4], "tag": 7, "hidden": true},
    {"class": "UITableView", "id": "list", "outlet": "list", "rowHeight": 30, "cells": {
      "row": {"class": "UITableViewCell", "subviews": [{"id": "box", "tag": 1000}],
              "constraints": ["box.leading = self.leading + 5", "box.width = 20"]}}}],
   "constraints": ["amount.top = safeArea.top + 8", "amount.leading = self.leading",
     "amount.trailing = self.trailing - 20", {"constraint": "amount.height = 50", "outlet": "amountHeight"},
     "pay.top = amount.bottom", {"constraint": "pay.height = 9", "active": false}]}}}})";

class Storyboard : public ViewTest {
protected:
    Storyboard() {
        write("Colors.json",
              R"({"tone": {"light": "#FFFFFF", "dark": "#000000"}, "plain": "#FF0000", "broken": 1})");
        write("dot.svg", "<svg width='12' height='6'/>");
        UIStoryboard::registerClass<PayController>("PayController");
        UIStoryboard::registerClass<AwakeButton>("AwakeButton");
    }

    void write(const std::string& name, const std::string& text) { temporary.write(name, asBytes(text)); }
    UIStoryboard storyboard(const std::string& json) {
        write("Screens.json", json);
        return UIStoryboard("Screens", NSBundle::bundleWithPath(folder));
    }
    std::shared_ptr<UIViewController> pay(const std::string& json) {
        return storyboard(json).instantiateViewController("pay");
    }

    const TemporaryFolder temporary;
    const std::string folder = temporary.path();
};

TEST_F(Storyboard, AControllerComesWithItsViewsOutletsAndConstraints) {
    const auto controller = std::dynamic_pointer_cast<PayController>(pay(kPay));
    ASSERT_NE(controller, nullptr);
    EXPECT_FALSE(controller->isViewLoaded());
    EXPECT_EQ(controller->amount->text(), "12");
    EXPECT_EQ(controller->amount->font(), UIFont::systemFont(10, 0.3));
    EXPECT_EQ(controller->amount->frame(), (CGRect{{0, 8}, {460, 50}})) << "laid out for the screen, turned";
    EXPECT_EQ(controller->amountHeight->constant(), 50);
    EXPECT_EQ(controller->pay->tag(), 7);
    EXPECT_TRUE(controller->pay->isHidden());
    EXPECT_EQ(controller->pay->titleEdgeInsets(), (UIEdgeInsets{1, 2, 3, 4}));
    EXPECT_EQ(controller->pay->currentImage()->size(), (CGSize{12, 6}));
    EXPECT_EQ(std::dynamic_pointer_cast<AwakeButton>(controller->pay.get())->titleWhenAwake, "Pay");
    EXPECT_FALSE(controller->isLoaded);

    const auto view = controller->view();
    EXPECT_TRUE(controller->isLoaded);
    EXPECT_EQ(view->kind(), UIViewKind::scroll);
    EXPECT_EQ(view->backgroundColor()->resolved(UIUserInterfaceStyle::dark), (RGBA{0, 0, 0, 1}));
    window->setRootViewController(controller);
    window->setSafeAreaInsets({20, 0, 0, 0});
    window->layoutIfNeeded();
    EXPECT_EQ(controller->amount->frame(), (CGRect{{0, 28}, {300, 50}}));
    EXPECT_EQ(controller->pay->frame().origin.y, 78);
}

TEST_F(Storyboard, ScenesAreMadeAnewAndCellsFromTheirDescription) {
    const auto board = storyboard(kPay);
    const auto first = std::dynamic_pointer_cast<PayController>(board.instantiateViewController("pay"));
    const auto second = std::dynamic_pointer_cast<PayController>(board.instantiateViewController("pay"));
    first->amount->setText("99");
    EXPECT_EQ(second->amount->text(), "12");
    const auto cell = first->list->dequeueReusableCell("row");
    const auto other = first->list->dequeueReusableCell("row");
    EXPECT_NE(cell, other);
    cell->setFrame({{0, 0}, {100, 30}});
    cell->layoutIfNeeded();
    const auto box = cell->viewWithTag(1000);
    EXPECT_EQ(box->superview(), cell->contentView());
    EXPECT_EQ(box->frame().origin.x, 5);
    EXPECT_EQ(box->frame().size.width, 20);
}

TEST_F(Storyboard, AChangedFileIsReadAnew) {
    static_cast<void>(storyboard(R"({"scenes": {"pay": {}}})"));
    EXPECT_FALSE(storyboard(R"({"scenes": {"another": {}}})").hasIdentifier("pay"));
}

std::string scene(const std::string& view) {
    return R"({"scenes": {"pay": {"class": "PayController", "view": )" + view + "}}}";
}

TEST_F(Storyboard, FaultsAreToldByName) {
    struct Row {
        std::string json;
        Case kind;
        const char* named;
    };
    const std::vector<Row> rows{
        {"{", Case::resourceBroken, "Screens"},
        {"[]", Case::resourceBroken, "Screens"},
        {R"({"scenes": []})", Case::resourceBroken, "Screens"},
        {R"({"scenes": {"other": {}}})", Case::identifierMissing, "pay"},
        {R"({"scenes": {"pay": 1}})", Case::resourceBroken, "pay"},
        {R"({"scenes": {"pay": {"class": "Unheard"}}})", Case::classUnknown, "Unheard"},
        {R"({"scenes": {"pay": {"class": "UILabel"}}})", Case::classUnknown, "UILabel"},
        {R"({"scenes": {"pay": {"class": 5}}})", Case::classUnknown, "5"},
        {scene(R"({"class": "Unseen"})"), Case::classUnknown, "Unseen"},
        {scene(R"({"class": "PayController"})"), Case::classUnknown, "PayController"},
        {scene(R"([])"), Case::propertyInvalid, "pay"},
        {scene(R"({"colour": "red"})"), Case::propertyInvalid, "colour"},
        {scene(R"({"title": "a plain view has none"})"), Case::propertyInvalid, "title"},
        {scene(R"({"hidden": "yes"})"), Case::propertyInvalid, "hidden"},
        {scene(R"({"backgroundColor": "mauve"})"), Case::propertyInvalid, "mauve"},
        {scene(R"({"backgroundColor": "broken"})"), Case::propertyInvalid, "broken"},
        {scene(R"({"frame": [1, 2, 3]})"), Case::propertyInvalid, "frame"},
        {scene(R"({"tag": 1.5})"), Case::propertyInvalid, "tag"},
        {scene(R"({"class": "UIImageView", "image": "nowhere"})"), Case::propertyInvalid, "nowhere"},
        {scene(R"({"class": "UILabel", "font": {"name": "NoSuchFont", "size": 3}})"), Case::propertyInvalid,
         "NoSuchFont"},
        {scene(R"({"class": "UITextField", "keyboardType": 12})"), Case::propertyInvalid, "keyboardType"},
        {scene(R"({"subviews": {}})"), Case::propertyInvalid, "subviews"},
        {scene(R"({"subviews": [{"id": "twice"}, {"id": "twice"}]})"), Case::propertyInvalid, "twice"},
        {scene(R"({"cells": {}})"), Case::propertyInvalid, "cells"},
        {scene(R"({"items": []})"), Case::propertyInvalid, "items"},
        {scene(R"({"class": "UITableView", "cells": {"row": {"class": "UILabel"}}})"), Case::classUnknown,
         "row"},
        {scene(
             R"({"class": "UITableView", "cells": {"row": {"class": "UITableViewCell", "outlet": "pay"}}})"),
         Case::outletUnknown, "pay"},
        {scene(R"({"outlet": "unknown"})"), Case::outletUnknown, "unknown"},
        {scene(R"({"class": "UILabel", "outlet": "pay"})"), Case::outletUnknown, "pay"},
        {scene(R"({"constraints": ["a.top = self.top"]})"), Case::constraintInvalid, "pay"},
        {scene(R"({"subviews": [{"id": "a"}], "constraints": ["a.top = self.top + b"]})"),
         Case::constraintInvalid, "self.top + b"},
        {scene(R"({"subviews": [{"id": "a"}], "constraints": ["a.top = self.middle"]})"),
         Case::constraintInvalid, "self.middle"},
        {scene(R"({"subviews": [{"id": "a"}], "constraints": ["a.top = gone.top"]})"),
         Case::constraintInvalid, "gone.top"},
        {scene(R"({"subviews": [{"id": "a"}], "constraints": ["a.top == self.top"]})"),
         Case::constraintInvalid, "=="},
        {scene(R"({"subviews": [{"id": "a"}], "constraints": ["self.height = a.height"]})"),
         Case::constraintInvalid, "move the view itself"},
        {scene(
             R"({"subviews": [{"id": "a"}, {"id": "b"}], "constraints": ["a.top = b.bottom", "b.top = a.bottom"]})"),
         Case::constraintInvalid, "circle"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.json);
        const auto failure = raisedBy<Case>([&] { return pay(row.json); });
        ASSERT_TRUE(failure.has_value());
        EXPECT_EQ(failure->kind(), row.kind) << failure->what();
        EXPECT_THAT(failure->localizedDescription(), testing::HasSubstr(row.named));
    }
}

TEST_F(Storyboard, AMissingFileIsNamed) {
    const auto failure =
        raisedBy<Case>([&] { return UIStoryboard("Nothing", NSBundle::bundleWithPath(folder)); });
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->kind(), Case::resourceMissing);
    EXPECT_THAT(failure->localizedDescription(), testing::HasSubstr("Nothing"));
}

TEST_F(Storyboard, AnOutletThatIsNotConnectedEndsTheProcessWithItsName) {
    const auto controller = std::dynamic_pointer_cast<PayController>(pay(scene("{}")));
    EXPECT_FALSE(controller->amount);
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(controller->amount->setText(""), "amount");
}

TEST_F(Storyboard, NamedColoursAndImagesComeFromTheBundle) {
    const auto bundle = NSBundle::bundleWithPath(folder);
    EXPECT_EQ(UIColor::named("plain", *bundle), UIColor::red());
    EXPECT_EQ(UIColor::named("broken", *bundle), std::nullopt);
    EXPECT_EQ(UIColor::named("none", *bundle), std::nullopt);
    const auto dot = UIImage::named("dot", *bundle);
    EXPECT_EQ(dot->name(), "dot");
    EXPECT_EQ(UIImage::named("dot", *bundle), dot) << "the same image each time";
    EXPECT_EQ(dot->withRenderingMode(UIImageRenderingMode::alwaysTemplate)->size(), dot->size());
    write("fine@2x.png", std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\0\x28\0\0\0\x14", 24));
    EXPECT_EQ(UIImage::named("fine", *bundle)->size(), (CGSize{20, 10}));
    write("bad.png", "no image");
    EXPECT_EQ(UIImage::named("bad", *bundle), nullptr);
    EXPECT_EQ(UIColor::named("plain", *NSBundle::bundleWithPath(folder + "/none")), std::nullopt);
}

} // namespace
} // namespace korvane
