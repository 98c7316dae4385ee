#include "tests/keyboard/ThumbDriver.h"
#include "tests/support/TemporaryFolder.h"

#include "Platform/View/UIStoryboard.h"
#include "keyboard/KeyboardClasses.h"
#include "keyboard/KeyboardStyles.h"

namespace korvane {
namespace {

TEST(SecKeyboardInput, PageFollowsTheFieldsKeyboardType) {
    for (int type = 0; type <= 11; ++type) {
        SCOPED_TRACE(type);
        ThumbDriver thumbs(static_cast<UIKeyboardType>(type));
        EXPECT_EQ(thumbs.state(), type == 11 ? State::NumberPad() : kOnce);
        thumbs.field->setKeyboardType(UIKeyboardType::asciiCapableNumberPad);
        thumbs.editAgain();
        EXPECT_EQ(thumbs.state(), State::NumberPad());
        EXPECT_EQ(thumbs.field->inputView(), thumbs.controller->view());
    }
}

TEST(SecKeyboardInput, EachEditingBeginsWithOneCapital) {
    ThumbDriver thumbs;
    thumbs.play("ShiftOnce +0.6 ShiftOff ShiftOnce A B");
    ASSERT_EQ(thumbs.state(), kOn);
    thumbs.editAgain();
    thumbs.play("C d Numbers 1");
    thumbs.editAgain();
    thumbs.play("E f");
    EXPECT_EQ(thumbs.text(), "ABCd1Ef");
}

TEST(SecKeyboardInput, KeysChangeTheFieldAtItsInsertionPoint) {
    ThumbDriver thumbs;
    int changes = 0;
    thumbs.field->addTarget(ControlEvent::editingChanged, [&changes] { ++changes; });
    thumbs.play("O k Space Numbers 1 Return Symbols € • Backspace");
    EXPECT_EQ(thumbs.text(), "Ok 1\n€");
    EXPECT_EQ(changes, 8);
    EXPECT_TRUE(thumbs.field->isFirstResponder()) << "return does not end editing";
    thumbs.field->setSelectedRange({1, 1});
    thumbs.play("]");
    EXPECT_EQ(thumbs.text(), "O] 1\n€");
}

struct DoneDelegate final : SecKeyboardInputDelegate {
    void keyboardDonePressed() override { ++presses; }

    int presses = 0;
};

TEST(SecKeyboardInput, CloseButtonEndsEditing) {
    ThumbDriver thumbs;
    const auto delegate = std::make_shared<DoneDelegate>();
    thumbs.controller->setDelegate(delegate);
    const UIView& button = *thumbs.controller->customToolBar()->buttonClose();
    EXPECT_EQ(CGRectGetMaxX(button.frame()), 370);
    EXPECT_EQ(button.frame().size.width, 34);
    thumbs.tap(button.middleInWindow());
    EXPECT_EQ(delegate->presses, 1);
    EXPECT_FALSE(thumbs.field->isFirstResponder());
    EXPECT_EQ(thumbs.controller->view()->window(), nullptr);
}

TEST(SecKeyboardInput, FieldThatWentAwayIsSkipped) {
    ThumbDriver thumbs;
    const auto delegate = std::make_shared<DoneDelegate>();
    SecKeyboardInputViewController& controller = *thumbs.controller;
    controller.setDelegate(delegate);
    controller.customKeyboardKeyButtonPressed(thumbs.keyboard(), "x");
    EXPECT_EQ(thumbs.text(), "x");
    thumbs.field->removeFromSuperview();
    thumbs.field.reset();
    controller.customKeyboardKeyButtonPressed(thumbs.keyboard(), "x");
    controller.customKeyboardBackspaceButtonPressed(thumbs.keyboard());
    controller.customToolBarCloseButtonPressed(*controller.customToolBar());
    EXPECT_EQ(delegate->presses, 1);
    EXPECT_EQ(controller.textField(), nullptr);
}

TEST(SecKeyboardInput, BarAndKeysLieAboveWhatTheSystemCovers) {
    struct Row {
        const char* name;
        CGSize screen;
        double covered, keys;
    };
    const Row rows[] = {{"small telephone", {320, 568}, 0, 216},
                        {"telephone with a sign below", {390, 844}, 34, 216},
                        {"telephone turned", {844, 390}, 21, 162},
                        {"tablet", {768, 1024}, 0, 264},
                        {"tablet turned", {1024, 768}, 20, 352}};
    const auto onScreen = [](const auto& view) { return view->convertTo(nullptr, view->bounds()); };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        ThumbDriver thumbs(UIKeyboardType::defaultType, row.screen);
        thumbs.window->setSafeAreaInsets({0, 0, row.covered, 0});
        thumbs.window->layoutIfNeeded();
        const auto& [width, height] = row.screen;
        const double top = height - row.covered - row.keys - 44;
        const auto& controller = *thumbs.controller;
        EXPECT_EQ(onScreen(controller.customToolBar()), (CGRect{{0, top}, {width, 44}}));
        EXPECT_EQ(onScreen(controller.customKeyboard()), (CGRect{{0, top + 44}, {width, row.keys}}));
        EXPECT_EQ(onScreen(controller.viewKeyboard()), (CGRect{{0, top}, {width, row.keys + 44}}));
        EXPECT_EQ(onScreen(controller.blackView()), (CGRect{{0, top}, {width, height - top}}));
        EXPECT_EQ(controller.blackView()->backgroundColor(), UIColor::black());
    }
}

TEST(SecKeyboardInput, TurnedDeviceIsTypedOnAtOnce) {
    ThumbDriver thumbs;
    thumbs.play("H");
    thumbs.turn();
    EXPECT_EQ(thumbs.keyboard().bounds().size, (CGSize{667, 162}));
    EXPECT_FALSE(thumbs.page().rows()->front()->isPortrait());
    thumbs.play("o p");
    thumbs.turn();
    thumbs.play("q");
    EXPECT_EQ(thumbs.text(), "Hopq");
}

TEST(SecKeyboardInputDeathTest, MissingResourcesEndTheProcess) {
    const TemporaryFolder empty, framework("Frameworks/Korvane.framework");
    Device device;
    device.platform.script().mainBundlePath = empty.path();
    EXPECT_DEATH(static_cast<void>(keyboardImage("x")), "Cannot access KorvaneResources.bundle!");
    device.platform.script().mainBundlePath = framework.path();
    EXPECT_DEATH(static_cast<void>(keyboardImage("x")), "KorvaneResources.bundle not found!");
}

TEST(SecKeyboardInputDeathTest, ScenesMayHoldAKeyboardButNotItsParts) {
    const TemporaryFolder folder;
    folder.write("Keyboards.json", asBytes(R"({"scenes": {
        "keys": {"class": "UIViewController", "view": {"subviews": [{"class": "CustomKeyboard"}]}},
        "bar": {"class": "UIViewController", "view": {"subviews": [{"class": "CustomToolBar"}]}},
        "input": {"class": "SecKeyboardInputViewController", "view": {}}}})"));
    const Device device;
    registerKeyboardClasses();
    const UIStoryboard storyboard("Keyboards", NSBundle::bundleWithPath(folder.path()));
    const auto load = [&](const char* scene) { return storyboard.instantiateViewController(scene)->view(); };
    EXPECT_NE(std::dynamic_pointer_cast<CustomKeyboard>(load("keys")->subviews().front()), nullptr);
    for (const char* scene : {"bar", "input"})
        EXPECT_DEATH(load(scene), "init\\(coder:\\) has not been implemented");
}

} // namespace
} // namespace korvane
