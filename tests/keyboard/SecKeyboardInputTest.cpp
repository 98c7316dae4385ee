#include "tests/keyboard/ThumbDriver.h"

#include "Platform/View/UIApplication.h"
#include "Platform/View/UIStoryboard.h"
#include "keyboard/KeyboardClasses.h"
#include "keyboard/KeyboardStyles.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <stdlib.h>

namespace korvane {
namespace {

using State = CustomKeyboardLayoutState;
using Shift = CustomKeyboardShiftState;

TEST(SecKeyboardInput, PageFollowsTheFieldsKeyboardType) {
    for (int type = 0; type <= 11; ++type) {
        ThumbDriver thumbs(static_cast<UIKeyboardType>(type));
        EXPECT_EQ(thumbs.keyboard().keyboardLayoutState(),
                  type == 11 ? State::NumberPad() : State::Letters(Shift::Once))
            << type;
        thumbs.field->setKeyboardType(UIKeyboardType::asciiCapableNumberPad);
        thumbs.editAgain();
        EXPECT_EQ(thumbs.keyboard().keyboardLayoutState(), State::NumberPad()) << type;
        EXPECT_EQ(thumbs.field->inputView(), thumbs.controller->view());
    }
}

TEST(SecKeyboardInput, EachEditingBeginsWithOneCapital) {
    ThumbDriver thumbs;
    thumbs.play("ShiftOnce +0.6 ShiftOff ShiftOnce A B");
    ASSERT_EQ(thumbs.keyboard().keyboardLayoutState(), State::Letters(Shift::On));
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
    thumbs.tap("]");
    EXPECT_EQ(thumbs.text(), "O] 1\n€");
}

class DoneDelegate final : public SecKeyboardInputDelegate {
public:
    void keyboardDonePressed() override { ++presses; }

    int presses = 0;
};

TEST(SecKeyboardInput, CloseButtonEndsEditing) {
    ThumbDriver thumbs;
    const auto delegate = std::make_shared<DoneDelegate>();
    thumbs.controller->setDelegate(delegate);
    const auto button = thumbs.controller->customToolBar()->buttonClose();
    const CGRect frame = button->frame();
    EXPECT_EQ(CGRectGetMaxX(frame), 370);
    EXPECT_EQ(frame.size.width, 34);
    thumbs.pressAt(1, button->convertTo(nullptr, CGPoint{10, 10}));
    thumbs.lift(1);
    EXPECT_EQ(delegate->presses, 1);
    EXPECT_FALSE(thumbs.field->isFirstResponder());
    EXPECT_EQ(thumbs.controller->view()->window(), nullptr);
}

TEST(SecKeyboardInput, FieldThatWentAwayIsSkipped) {
    ThumbDriver thumbs;
    const auto delegate = std::make_shared<DoneDelegate>();
    thumbs.controller->setDelegate(delegate);
    const auto controller = thumbs.controller;
    controller->customKeyboardKeyButtonPressed(*controller->customKeyboard(), "x");
    EXPECT_EQ(thumbs.text(), "x");
    thumbs.field->removeFromSuperview();
    thumbs.field.reset();
    controller->customKeyboardKeyButtonPressed(*controller->customKeyboard(), "x");
    controller->customKeyboardBackspaceButtonPressed(*controller->customKeyboard());
    controller->customToolBarCloseButtonPressed(*controller->customToolBar());
    EXPECT_EQ(delegate->presses, 1);
    EXPECT_EQ(controller->textField(), nullptr);
}

TEST(SecKeyboardInput, BarAndKeysLieAboveWhatTheSystemCovers) {
    struct Row {
        const char* name;
        CGSize screen;
        double covered;
        double keys;
    };
    constexpr std::array rows{Row{"small telephone", {320, 568}, 0, 216},
                              Row{"telephone with a sign below", {390, 844}, 34, 216},
                              Row{"telephone turned", {844, 390}, 21, 162},
                              Row{"tablet", {768, 1024}, 0, 264}, Row{"tablet turned", {1024, 768}, 20, 352}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        ThumbDriver thumbs(UIKeyboardType::defaultType, row.screen);
        thumbs.window->setSafeAreaInsets({0, 0, row.covered, 0});
        thumbs.window->layoutIfNeeded();
        const auto onScreen = [](const UIView& view) { return view.convertTo(nullptr, view.bounds()); };
        const double bottom = row.screen.height - row.covered;
        const double top = bottom - row.keys - 44;
        const double width = row.screen.width;
        const auto& controller = *thumbs.controller;
        EXPECT_EQ(onScreen(*controller.customToolBar()), (CGRect{{0, top}, {width, 44}}));
        EXPECT_EQ(onScreen(*controller.customKeyboard()), (CGRect{{0, top + 44}, {width, row.keys}}));
        EXPECT_EQ(onScreen(*controller.viewKeyboard()), (CGRect{{0, top}, {width, bottom - top}}));
        EXPECT_EQ(onScreen(*controller.blackView()), (CGRect{{0, top}, {width, row.screen.height - top}}));
        EXPECT_EQ(controller.blackView()->backgroundColor(), UIColor::black());
    }
}

TEST(SecKeyboardInput, TurnedDeviceIsTypedOnAtOnce) {
    ThumbDriver thumbs;
    thumbs.tap("H");
    thumbs.turn();
    EXPECT_EQ(thumbs.keyboard().bounds().size, (CGSize{667, 162}));
    EXPECT_FALSE(thumbs.page().rows()->front()->isPortrait());
    thumbs.play("o p");
    thumbs.turn();
    thumbs.tap("q");
    EXPECT_EQ(thumbs.text(), "Hopq");
}

/// A folder of this run's own, with a folder in it; gone at the end.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const std::filesystem::path& inside = {}) {
        std::string name = testing::TempDir() + "korvane-keyboard-XXXXXX";
        if (!mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
        path = name;
        std::filesystem::create_directories(path / inside);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() { std::filesystem::remove_all(path); }

    std::filesystem::path path;
};

TEST(SecKeyboardInputDeathTest, MissingResourcesEndTheProcess) {
    const TemporaryFolder empty;
    const TemporaryFolder framework("Frameworks/Korvane.framework");
    Device device;
    device.platform.script().mainBundlePath = empty.path.string();
    EXPECT_DEATH(static_cast<void>(keyboardImage("x")), "Cannot access KorvaneResources.bundle!");
    device.platform.script().mainBundlePath = framework.path.string();
    EXPECT_DEATH(static_cast<void>(keyboardImage("x")), "KorvaneResources.bundle not found!");
}

TEST(SecKeyboardInputDeathTest, ScenesMayHoldAKeyboardButNotItsParts) {
    const TemporaryFolder folder;
    std::ofstream(folder.path / "Keyboards.json") << R"({"scenes": {
        "keys": {"class": "UIViewController", "view": {"subviews": [{"class": "CustomKeyboard"}]}},
        "bar": {"class": "UIViewController", "view": {"subviews": [{"class": "CustomToolBar"}]}},
        "input": {"class": "SecKeyboardInputViewController", "view": {}}}})";
    const Device device;
    registerKeyboardClasses();
    const UIStoryboard storyboard("Keyboards", NSBundle::bundleWithPath(folder.path.string()));
    const auto load = [&storyboard](const char* scene) {
        return storyboard.instantiateViewController(scene)->view();
    };
    EXPECT_NE(std::dynamic_pointer_cast<CustomKeyboard>(load("keys")->subviews().front()), nullptr);
    EXPECT_DEATH(load("bar"), "init\\(coder:\\) has not been implemented");
    EXPECT_DEATH(load("input"), "init\\(coder:\\) has not been implemented");
}

} // namespace
} // namespace korvane
