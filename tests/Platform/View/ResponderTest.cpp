#include "Platform/NotificationCenter.h"
#include "Platform/View/UIInputViewController.h"
#include "Platform/View/UITextField.h"
#include "tests/Platform/View/ViewSupport.h"

namespace korvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A keyboard that tells when it appears.
class Keyboard : public UIInputViewController {
public:
    explicit Keyboard(Log& log) : log_(log) {}
    void viewWillAppear(UIAnimated /*animated*/) override { log_.emplace_back("keyboard appears"); }
    void viewDidDisappear(UIAnimated /*animated*/) override { log_.emplace_back("keyboard is gone"); }

private:
    Log& log_;
};

class Delegate : public UITextFieldDelegate {
public:
    explicit Delegate(Log& log) : log_(log) {}
    bool textFieldShouldBeginEditing(UITextField& field) override {
        log_.emplace_back("may begin?");
        if (givenInput) field.setInputView(givenInput);
        return mayBegin;
    }
    void textFieldDidBeginEditing(UITextField& /*field*/) override { log_.emplace_back("began"); }
    bool textFieldShouldEndEditing(UITextField& /*field*/) override { return mayEnd; }
    void textFieldDidEndEditing(UITextField& /*field*/) override { log_.emplace_back("ended"); }
    bool textField(UITextField& /*field*/, UITextRange /*range*/, const std::string& text) override {
        return text != "!";
    }
    std::shared_ptr<UIView> givenInput;
    bool mayBegin = true;
    bool mayEnd = true;

private:
    Log& log_;
};

class Responder : public ViewTest {
protected:
    Responder() {
        field = add<UITextField>(rootView(), {{10, 10}, {100, 30}});
        other = add<UITextField>(rootView(), {{10, 60}, {100, 30}});
        keyboard = std::make_shared<Keyboard>(log);
        delegate = std::make_shared<Delegate>(log);
        field->setDelegate(delegate);
        shows = observe(UIResponder::keyboardWillShowNotification, "shows");
        hides = observe(UIResponder::keyboardWillHideNotification, "hides");
    }
    NotificationObserver observe(std::string_view name, const std::string& word) {
        return NotificationCenter::defaultCenter().addObserver(name, [this, word](const Notification& news) {
            log.push_back(word);
            frame = news.keyboardFrameEnd;
        });
    }

    Log log;
    CGRect frame;
    std::shared_ptr<UITextField> field, other;
    std::shared_ptr<Keyboard> keyboard;
    std::shared_ptr<Delegate> delegate;
    NotificationObserver shows, hides;
};

TEST_F(Responder, ATapShowsTheInputViewThatTheDelegateGives) {
    delegate->givenInput = keyboard->view();
    tap({20, 20});
    EXPECT_THAT(log, ElementsAre("may begin?", "keyboard appears", "shows", "began"));
    EXPECT_EQ(frame, (CGRect{{0, 220}, {320, 260}}));
    EXPECT_EQ(keyboard->view()->frame(), frame);
    EXPECT_TRUE(field->isFirstResponder());
    log.clear();
    rootView().endEditing();
    EXPECT_THAT(log, ElementsAre("keyboard is gone", "hides", "ended"));
    EXPECT_EQ(keyboard->view()->superview(), nullptr);
    EXPECT_EQ(UIApplication::shared().firstResponder(), nullptr);
}

TEST_F(Responder, TheInputViewKeepsItsPlaceAtTheFoot) {
    window->setSafeAreaInsets({0, 0, 34, 0});
    field->setInputView(keyboard->view());
    field->becomeFirstResponder();
    EXPECT_EQ(frame.size.height, 294);
    platform.script().bounds = {{0, 0}, {480, 320}};
    UIApplication::shared().deviceDidRotate();
    EXPECT_EQ(keyboard->view()->frame(), (CGRect{{0, 80}, {480, 240}}));
    root->present(std::make_shared<UIViewController>(), UIAnimated::no);
    EXPECT_EQ(keyboard->view()->superview(), nullptr) << "its field has left the window";
}

TEST_F(Responder, OneFieldGivesWayToAnother) {
    field->setInputView(keyboard->view());
    field->becomeFirstResponder();
    log.clear();
    EXPECT_TRUE(other->becomeFirstResponder());
    EXPECT_THAT(log, ElementsAre("keyboard is gone", "hides", "ended")) << "the other one has no input view";
    log.clear();
    other->setInputView(keyboard->view()); // while it is being typed into
    EXPECT_THAT(log, ElementsAre("keyboard appears", "shows"));
}

TEST_F(Responder, TheDelegateMayRefuse) {
    delegate->mayBegin = false;
    EXPECT_FALSE(field->becomeFirstResponder());
    delegate->mayBegin = true;
    delegate->mayEnd = false;
    field->becomeFirstResponder();
    log.clear();
    EXPECT_FALSE(other->becomeFirstResponder());
    EXPECT_FALSE(field->resignFirstResponder());
    EXPECT_TRUE(field->isFirstResponder());
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(Responder, OnlyAnEnabledFieldInAWindowIsTypedInto) {
    field->setEnabled(false);
    EXPECT_FALSE(field->becomeFirstResponder());
    EXPECT_FALSE(std::make_shared<UITextField>()->becomeFirstResponder());
    other->becomeFirstResponder();
    other->removeFromSuperview();
    EXPECT_EQ(UIApplication::shared().firstResponder(), nullptr);
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
    EXPECT_EQ(field->text(), "12");
    EXPECT_EQ(changes, 4);
    field->setText("new");
    EXPECT_EQ(changes, 4) << "what the program does is no event";
}

TEST_F(Responder, EditingGoesByWhatAUserTakesForCharacters) {
    struct Row {
        const char* name;
        const char* text;
        UITextRange selection;
        bool isAllowed;
        const char* afterDelete;
    };
    const std::vector<Row> rows{
        {"at the end", "abc", {3, 0}, true, "ab"},
        {"in the middle", "abc", {1, 0}, true, "bc"},
        {"at the start", "abc", {0, 0}, true, "abc"},
        {"a selection", "abcd", {1, 2}, true, "ad"},
        {"two bytes", "a\u00E9", {3, 0}, true, "a"},
        {"a letter with a mark of its own", "ae\u0301", {4, 0}, true, "a"},
        {"a family is one picture", "x\U0001F468\u200D\U0001F469\u200D\U0001F467", {19, 0}, true, "x"},
        {"a flag", "\U0001F1E8\U0001F1ED\U0001F1E6\U0001F1F9", {16, 0}, true, "\U0001F1E8\U0001F1ED"},
        {"past the end", "abc", {4, 0}, false, "ab"},
        {"overflow", "abc", {2, ~std::size_t{0}}, false, "ab"},
        {"within two bytes", "\u00E9x", {1, 0}, false, "\u00E9"},
        {"before a mark", "e\u0301x", {1, 0}, false, "e\u0301"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        field->setText(row.text);
        EXPECT_EQ(field->setSelectedRange(row.selection), row.isAllowed);
        field->deleteBackward();
        EXPECT_EQ(field->text(), row.afterDelete);
    }
}

TEST_F(Responder, TypingReplacesTheSelectionAndGoesOnBehindIt) {
    field->setText("1234");
    field->setSelectedRange({1, 2});
    field->insertText("ab");
    field->insertText("c");
    EXPECT_EQ(field->text(), "1abc4");
    EXPECT_EQ(field->selectedRange(), (UITextRange{4, 0}));
}

TEST(NotificationCentre, ObserversComeAndGo) {
    NotificationCenter center;
    Log log;
    NotificationObserver second, third;
    const auto first = center.addObserver("a", [&](const Notification&) {
        log.emplace_back("first");
        second.reset();
        third = center.addObserver("a", [&](const Notification&) { log.emplace_back("third"); });
    });
    second = center.addObserver("a", [&](const Notification&) { log.emplace_back("second"); });
    const auto elsewhere = center.addObserver("b", [&](const Notification&) { log.emplace_back("b"); });
    center.post({"a"});
    EXPECT_THAT(log, ElementsAre("first")) << "who left is not called, who came waits";
    center.post({"b"});
    EXPECT_THAT(log, ElementsAre("first", "b"));
}

TEST(NotificationCentre, AnObserverMayOutliveIt) {
    NotificationObserver observer;
    {
        NotificationCenter center;
        observer = center.addObserver("a", [](const Notification&) {});
    }
    EXPECT_TRUE(observer);
    observer.reset();
    EXPECT_FALSE(observer);
}

class Activity : public ViewTest {};

TEST_F(Activity, LeavingAndComingBackAreToldOnceEach) {
    Log log;
    auto& center = NotificationCenter::defaultCenter();
    const auto leaves = center.addObserver(UIApplication::willResignActiveNotification,
                                           [&](const Notification&) { log.emplace_back("leaves"); });
    const auto returns = center.addObserver(UIApplication::didBecomeActiveNotification,
                                            [&](const Notification&) { log.emplace_back("returns"); });
    auto& application = UIApplication::shared();
    application.didBecomeActive();
    application.willResignActive();
    application.willResignActive();
    application.didBecomeActive();
    EXPECT_THAT(log, ElementsAre("leaves", "returns"));
}

} // namespace
} // namespace korvane
