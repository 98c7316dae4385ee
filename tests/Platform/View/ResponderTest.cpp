#include "Platform/NotificationCenter.h"
#include "Platform/View/UIInputViewController.h"
#include "Platform/View/UITextField.h"
#include "tests/Platform/View/ViewSupport.h"

namespace korvane {
namespace {

using Tell = std::function<void(const std::string&)>;

struct Keyboard : UIInputViewController {
    explicit Keyboard(Tell told) : tell(std::move(told)) {}
    void viewWillAppear(UIAnimated /*animated*/) override { tell("keyboard comes"); }
    void viewDidDisappear(UIAnimated /*animated*/) override { tell("keyboard gone"); }
    Tell tell;
};

struct Delegate : UITextFieldDelegate {
    bool textFieldShouldBeginEditing(UITextField& field) override {
        field.setInputView(input);
        return true;
    }
    std::shared_ptr<UIView> input;
};

class Responder : public ViewTest {
protected:
    Responder() { field->setDelegate(delegate); }
    NotificationObserver observe(std::string_view name, const std::string& word) {
        return NotificationCenter::defaultCenter().addObserver(name, [this, word](const Notification& news) {
            tell(word);
            frame = news.keyboardFrameEnd;
        });
    }

    CGRect frame;
    std::shared_ptr<UITextField> field = add<UITextField>(rootView(), {{10, 10}, {100, 30}});
    std::shared_ptr<Keyboard> keyboard =
        std::make_shared<Keyboard>([this](const std::string& what) { tell(what); });
    std::shared_ptr<Delegate> delegate = std::make_shared<Delegate>();
    NotificationObserver shows = observe(UIResponder::keyboardWillShowNotification, "shows");
    NotificationObserver hides = observe(UIResponder::keyboardWillHideNotification, "hides");
};

TEST_F(Responder, ATapShowsTheInputViewUntilEditingEnds) {
    delegate->input = keyboard->view();
    window->setSafeAreaInsets({0, 0, 34, 0});
    window->sendTouch({1, UITouchPhase::began, {20, 20}});
    window->sendTouch({1, UITouchPhase::ended, {20, 20}});
    EXPECT_EQ(taken(), "keyboard comes, shows");
    EXPECT_TRUE(field->isFirstResponder());
    EXPECT_EQ(frame, (CGRect{{0, 186}, {320, 294}}));
    platform.script().bounds = {{0, 0}, {480, 320}};
    UIApplication::shared().deviceDidRotate();
    EXPECT_EQ(keyboard->view()->frame(), (CGRect{{0, 80}, {480, 240}}));
    root->present(std::make_shared<UIViewController>(), UIAnimated::no);
    EXPECT_EQ(taken(), "keyboard gone, hides") << "its field has left the window";
    EXPECT_EQ(UIApplication::shared().firstResponder(), nullptr);
}

TEST_F(Responder, AKeyboardTypesCharactersIntoTheFirstResponder) {
    UITextDocumentProxy& proxy = keyboard->textDocumentProxy();
    proxy.insertText("lost");
    field->becomeFirstResponder();
    for (const char* text : {"1", "2", "\n"})
        proxy.insertText(text);
    EXPECT_EQ(field->text(), "12\n");
    const std::pair<const char*, const char*> rows[] = {
        {"", ""},
        {"a\u00E9", "a"},
        {"ae\u0301", "a"},
        {"x\U0001F468\u200D\U0001F469\u200D\U0001F467", "x"}, // one picture
        {"\U0001F1E8\U0001F1ED\U0001F1E6\U0001F1F9", "\U0001F1E8\U0001F1ED"},
    };
    for (const auto& [text, afterDelete] : rows) {
        field->setText(text);
        proxy.deleteBackward();
        EXPECT_EQ(field->text(), afterDelete);
    }
}

TEST(TextField, ShowsEveryLineBreakOnItsOneLine) {
    const std::pair<const char*, const char*> rows[] = {
        {"12\n34", "12\u21B534"},
        {"1\r\n\n", "1\u21B5\u21B5"},
        {"\r1\v2\f", "\u21B51\u21B52\u21B5"},
        {"\u00851\u2028\u2029\u2030", "\u21B51\u21B5\u21B5\u2030"}};
    for (const auto& [text, line] : rows) {
        EXPECT_EQ(onOneLine(text), line);
    }
}

TEST_F(Responder, ObserversComeAndGoAndHearOfTheirOwnAlone) {
    NotificationObserver second, third;
    auto& center = NotificationCenter::defaultCenter();
    const auto first = center.addObserver("a", [&](const Notification&) {
        tell("first");
        second.reset();
        third = observe("a", "third");
    });
    second = observe("a", "second");
    const auto elsewhere = observe("b", "b");
    center.post({"a"});
    center.post({"b"});
    EXPECT_EQ(taken(), "first, b") << "who left is not called, who came waits";
}

} // namespace
} // namespace korvane
