#include "tests/keyboard/ThumbDriver.h"
#include "tests/support/TemporaryFolder.h"

#include "keyboard/KeyboardStyles.h"

namespace korvane {
namespace {

TEST(SecKeyboardInput, PageFollowsTheFieldsKeyboardType) {
    for (int type = 0; type <= 11; ++type) {
        ThumbDriver thumbs(static_cast<UIKeyboardType>(type));
        EXPECT_EQ(thumbs.state(), type == 11 ? State::NumberPad() : kOnce) << type;
        thumbs.field->setKeyboardType(UIKeyboardType::asciiCapableNumberPad);
        thumbs.editAgain();
        EXPECT_EQ(thumbs.state(), State::NumberPad()) << "after " << type;
    }
}

TEST(SecKeyboardInput, EachEditingBeginsWithOneCapital) {
    ThumbDriver thumbs;
    thumbs.play("ShiftOnce +0.6 ShiftOff ShiftOnce A B");
    ASSERT_EQ(thumbs.state(), kOn);
    thumbs.editAgain();
    thumbs.play("C d Numbers 1");
    thumbs.editAgain();
    thumbs.turn(); // the device is typed on at once
    thumbs.play("E f");
    EXPECT_EQ(thumbs.text(), "ABCd1Ef");
    EXPECT_EQ(thumbs.keyboard().bounds().size, (CGSize{667, 162}));
}

TEST(SecKeyboardInput, KeysChangeTheEndOfTheField) {
    ThumbDriver thumbs;
    thumbs.play("O k Space Numbers 1 Return Symbols € • Backspace");
    EXPECT_EQ(thumbs.text(), "Ok 1\n€");
    EXPECT_TRUE(thumbs.field->isFirstResponder()) << "return does not end editing";
}

struct DoneDelegate final : SecKeyboardInputDelegate {
    void keyboardDonePressed() override { ++presses; }

    int presses = 0;
};

TEST(SecKeyboardInput, CloseButtonEndsEditing) {
    ThumbDriver thumbs;
    const auto delegate = std::make_shared<DoneDelegate>();
    thumbs.controller->setDelegate(delegate);
    thumbs.tap(thumbs.controller->customToolBar()->buttonClose()->middleInWindow());
    EXPECT_EQ(delegate->presses, 1);
    EXPECT_FALSE(thumbs.field->isFirstResponder());
    EXPECT_EQ(thumbs.controller->view()->window(), nullptr);
    // A field that went away is skipped.
    thumbs.field->removeFromSuperview();
    thumbs.field.reset();
    thumbs.controller->customKeyboardKeyButtonPressed(thumbs.keyboard(), "x");
    thumbs.controller->customKeyboardBackspaceButtonPressed(thumbs.keyboard());
    thumbs.controller->customToolBarCloseButtonPressed(*thumbs.controller->customToolBar());
    EXPECT_EQ(delegate->presses, 2);
}

TEST(SecKeyboardInput, BarAndKeysLieAboveWhatTheSystemCovers) {
    struct Row {
        CGSize screen;
        double covered, keys;
    };
    const Row rows[] = {{{320, 568}, 0, 216}, // telephones, upright and turned
                        {{390, 844}, 34, 216},
                        {{844, 390}, 21, 162},
                        {{768, 1024}, 0, 264}, // tablets
                        {{1024, 768}, 20, 352}};
    const auto onScreen = [](const auto& view) { return view->convertTo(nullptr, view->bounds()); };
    for (const auto& [screen, covered, keys] : rows) {
        SCOPED_TRACE(screen.width);
        ThumbDriver thumbs(UIKeyboardType::defaultType, screen);
        thumbs.window->setSafeAreaInsets({0, 0, covered, 0});
        thumbs.window->layoutIfNeeded();
        const double top = screen.height - covered - keys - 44;
        const auto& controller = *thumbs.controller;
        EXPECT_EQ(onScreen(controller.customToolBar()), (CGRect{{0, top}, {screen.width, 44}}));
        EXPECT_EQ(onScreen(controller.customKeyboard()), (CGRect{{0, top + 44}, {screen.width, keys}}));
        EXPECT_EQ(onScreen(controller.blackView()), (CGRect{{0, top}, {screen.width, screen.height - top}}));
    }
}

TEST(SecKeyboardInput, HiddenKeyOfThePadKeepsItsPlaceAndDoesNotReact) {
    ThumbDriver thumbs(UIKeyboardType::asciiCapableNumberPad);
    EXPECT_EQ(thumbs.key("0")->frame().origin.x, thumbs.key("8")->frame().origin.x);
    thumbs.play("1:- 1:0 1^");
    EXPECT_EQ(thumbs.text(), "");
}

TEST(SecKeyboardInputDeathTest, MissingResourcesEndTheProcess) {
    const TemporaryFolder empty, framework("Frameworks/Korvane.framework");
    Device device;
    device.platform.script().mainBundlePath = empty.path();
    EXPECT_DEATH(static_cast<void>(keyboardImage("x")), "Cannot access KorvaneResources.bundle!");
    device.platform.script().mainBundlePath = framework.path();
    EXPECT_DEATH(static_cast<void>(keyboardImage("x")), "KorvaneResources.bundle not found!");
}

} // namespace
} // namespace korvane
