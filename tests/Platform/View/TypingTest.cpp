#include "Platform/NotificationCenter.h"
#include "Platform/View/UIInputViewController.h"
#include "Platform/View/UITextField.h"
#include "tests/Platform/View/ViewSupport.h"

namespace korvane {
namespace {

class Typing : public ViewTest {};
class Notifications : public ViewTest {};

TEST_F(Typing, ChangesCharactersOfTheFirstResponder) {
    const auto field = add<UITextField>(rootView(), {{10, 10}, {100, 30}});
    const auto keyboard = std::make_shared<UIInputViewController>();
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
    for (const auto& [text, line] : rows)
        EXPECT_EQ(onOneLine(text), line);
}

TEST_F(Notifications, ObserversComeAndGoAndHearOfTheirOwnAlone) {
    NotificationObserver second, third;
    auto& center = NotificationCenter::defaultCenter();
    const auto observe = [&](std::string_view name, const std::string& word) {
        return center.addObserver(name, [this, word](const Notification&) { tell(word); });
    };
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
