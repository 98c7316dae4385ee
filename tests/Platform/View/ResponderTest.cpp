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
    explicit Delegate(Tell told) : tell(std::move(told)) {}
    bool textFieldShouldBeginEditing(UITextField& field) override {
        if (givenInput) field.setInputView(givenInput);
        return mayBegin;
    }
    void textFieldDidBeginEditing(UITextField& /*field*/) override { tell("began"); }
    bool textFieldShouldEndEditing(UITextField& /*field*/) override { return mayEnd; }
    void textFieldDidEndEditing(UITextField& /*field*/) override { tell("ended"); }
    bool textField(UITextField& /*field*/, UITextRange /*range*/, const std::string& text) override {
        return text != "!";
    }
    Tell tell;
    std::shared_ptr<UIView> givenInput;
    bool mayBegin = true, mayEnd = true;
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

    const Tell telling = [this](const std::string& what) { tell(what); };
    CGRect frame;
    std::shared_ptr<UITextField> field = add<UITextField>(rootView(), {{10, 10}, {100, 30}});
    std::shared_ptr<UITextField> other = add<UITextField>(rootView(), {{10, 60}, {100, 30}});
    std::shared_ptr<Keyboard> keyboard = std::make_shared<Keyboard>(telling);
    std::shared_ptr<Delegate> delegate = std::make_shared<Delegate>(telling);
    NotificationObserver shows = observe(UIResponder::keyboardWillShowNotification, "shows");
    NotificationObserver hides = observe(UIResponder::keyboardWillHideNotification, "hides");
};

TEST_F(Responder, ATapShowsTheInputViewUntilEditingEnds) {
    delegate->givenInput = keyboard->view();
    window->setSafeAreaInsets({0, 0, 34, 0});
    window->sendTouch({1, UITouchPhase::began, {20, 20}});
    window->sendTouch({1, UITouchPhase::ended, {20, 20}});
    EXPECT_EQ(taken(), "keyboard comes, shows, began");
    EXPECT_TRUE(field->isFirstResponder());
    EXPECT_EQ(frame, (CGRect{{0, 186}, {320, 294}}));
    EXPECT_EQ(keyboard->view()->frame(), frame);
    platform.script().bounds = {{0, 0}, {480, 320}};
    UIApplication::shared().deviceDidRotate();
    EXPECT_EQ(keyboard->view()->frame(), (CGRect{{0, 80}, {480, 240}}));
    root->present(std::make_shared<UIViewController>(), UIAnimated::no);
    EXPECT_EQ(taken(), "keyboard gone, hides, ended") << "its field has left the window";
    EXPECT_EQ(UIApplication::shared().firstResponder(), nullptr);
}

TEST_F(Responder, OneFieldGivesWayToAnotherWhereTheDelegatesLetIt) {
    delegate->mayBegin = false;
    EXPECT_FALSE(field->becomeFirstResponder());
    delegate->mayBegin = true;
    delegate->mayEnd = false;
    field->setInputView(keyboard->view());
    EXPECT_TRUE(field->becomeFirstResponder());
    taken();
    EXPECT_FALSE(other->becomeFirstResponder());
    EXPECT_FALSE(field->resignFirstResponder());
    EXPECT_EQ(taken(), "");
    delegate->mayEnd = true;
    other->setEnabled(false);
    EXPECT_FALSE(other->becomeFirstResponder());
    other->setEnabled(true);
    EXPECT_TRUE(other->becomeFirstResponder());
    EXPECT_EQ(taken(), "keyboard gone, hides, ended") << "the other one has no input view";
    other->setInputView(keyboard->view());
    EXPECT_EQ(taken(), "keyboard comes, shows") << "while it is being typed into";
    EXPECT_FALSE(std::make_shared<UITextField>()->becomeFirstResponder()) << "it is in no window";
}

TEST_F(Responder, AKeyboardTypesIntoTheFirstResponder) {
    UITextDocumentProxy& proxy = keyboard->textDocumentProxy();
    int changes = 0;
    field->addTarget(ControlEvent::editingChanged, [&] { ++changes; });
    proxy.insertText("lost");
    field->becomeFirstResponder();
    for (const char* text : {"1", "2", "!", "\n"})
        proxy.insertText(text);
    EXPECT_EQ(field->text(), "12\n") << "the delegate let no \"!\" through";
    proxy.deleteBackward();
    EXPECT_EQ(changes, 4);
    field->setText("1234");
    EXPECT_EQ(changes, 4) << "what the program does is no event";
    field->setSelectedRange({1, 2});
    proxy.insertText("ab");
    proxy.insertText("c");
    EXPECT_EQ(field->text(), "1abc4");
}

TEST_F(Responder, EditingGoesByWhatAUserTakesForCharacters) {
    const struct {
        const char* text;
        UITextRange selection;
        const char* afterDelete;
        bool isAllowed = true;
    } rows[] = {
        {"abc", {1, 0}, "bc"},
        {"abc", {0, 0}, "abc"},
        {"abcd", {1, 2}, "ad"},
        {"a\u00E9", {3, 0}, "a"},
        {"ae\u0301", {4, 0}, "a"},
        {"x\U0001F468\u200D\U0001F469\u200D\U0001F467", {19, 0}, "x"}, // one picture
        {"\U0001F1E8\U0001F1ED\U0001F1E6\U0001F1F9", {16, 0}, "\U0001F1E8\U0001F1ED"},
        {"abc", {4, 0}, "ab", false},
        {"abc", {2, ~std::size_t{0}}, "ab", false},
        {"\u00E9x", {1, 0}, "\u00E9", false},
        {"e\u0301x", {1, 0}, "e\u0301", false},
    };
    for (const auto& row : rows) {
        field->setText(row.text);
        EXPECT_EQ(field->setSelectedRange(row.selection), row.isAllowed) << row.text;
        field->deleteBackward();
        EXPECT_EQ(field->text(), row.afterDelete);
    }
}

TEST_F(Responder, ShowsEveryLineBreakOnItsOneLine) {
    const std::pair<const char*, const char*> rows[] = {
        {"", ""},
        {"12\n34", "12\u21B534"},
        {"1\r\n\n", "1\u21B5\u21B5"},
        {"\r1", "\u21B51"},
        {"1\v2\f", "1\u21B52\u21B5"},
        {"\u00851\u2028\u2029\u2030", "\u21B51\u21B5\u21B5\u2030"}};
    for (const auto& [text, line] : rows) {
        EXPECT_EQ(onOneLine(text), line);
        field->setText(text);
        other->setText(line);
        EXPECT_EQ(field->intrinsicContentSize(), other->intrinsicContentSize());
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

    const auto leaves = observe(UIApplication::willResignActiveNotification, "leaves");
    const auto returns = observe(UIApplication::didBecomeActiveNotification, "returns");
    auto& application = UIApplication::shared();
    application.didBecomeActive();
    application.willResignActive();
    application.willResignActive();
    application.didBecomeActive();
    EXPECT_EQ(taken(), "leaves, returns") << "once each";
}

} // namespace
} // namespace korvane
