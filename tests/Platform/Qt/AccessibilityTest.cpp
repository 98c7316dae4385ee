#include "Ui/Screens/ChallengeSelectNativeViewController.h"
#include "tests/Platform/Qt/QtScreenTest.h"

#include <QAccessible>
#include <QAccessibleActionInterface>

#include <algorithm>
#include <set>

namespace korvane {
namespace {

using Interface = QAccessibleInterface;
using Action = QAccessibleActionInterface;

/// What a screen reader is told of, which cannot but see it.
void listen(Interface& from, std::vector<Interface*>& all) {
    for (int index = 0; index < from.childCount(); ++index) {
        Interface* const child = from.child(index);
        if (!child || child->state().invisible) continue;
        all.push_back(child);
        listen(*child, all);
    }
}

std::string nameOf(const Interface& one) {
    return one.text(QAccessible::Name).toStdString();
}

QStringList actionsOf(Interface& one) {
    return one.actionInterface() ? one.actionInterface()->actionNames() : QStringList();
}

bool canBePressed(Interface& one) {
    const QStringList names = actionsOf(one);
    return names.contains(Action::pressAction()) || names.contains(Action::toggleAction());
}

QAccessible::Role expectedRole(const UIView& view) {
    if (dynamic_cast<const UITextField*>(&view)) return QAccessible::EditableText;
    switch (view.accessibilityRole()) {
    case UIAccessibilityRole::checkBox: return QAccessible::CheckBox;
    case UIAccessibilityRole::radioButton: return QAccessible::RadioButton;
    default: return QAccessible::Button;
    }
}

class ScreenReader : public QtScreenTest {
protected:
    ScreenReader() { QAccessible::setActive(true); }
    ~ScreenReader() override { QAccessible::setActive(false); }

    [[nodiscard]] std::vector<Interface*> heard() {
        std::vector<Interface*> all;
        if (Interface* const root = QAccessible::queryAccessibleInterface(&scene)) listen(*root, all);
        return all;
    }
    /// What is called so and can be done something with first, since a label names its field.
    [[nodiscard]] Interface* named(const std::string& name) {
        Interface* found = nullptr;
        for (Interface* const one : heard())
            if (nameOf(*one) == name && (!found || !found->actionInterface())) found = one;
        return found;
    }
    [[nodiscard]] Interface* heardAs(QAccessible::Role role) {
        for (Interface* const one : heard())
            if (one->role() == role) return one;
        return nullptr;
    }
};

TEST_F(ScreenReader, HearsEveryTextAndEveryControlOfEveryScreenWithRoleAndAction) {
    using enum UiType;
    for (const auto& [kind, least] :
         {std::pair(TEXT, 30), {SINGLE_SELECT, 6}, {MULTI_SELECT, 6}, {OOB, 5}, {HTML_OTHER, 1}}) {
        SCOPED_TRACE(rawValue(kind));
        const auto shown = show(screenCRes(kind));
        if (kind == TEXT) {
            std::static_pointer_cast<ChallengeTextNativeViewController>(shown)->otp->becomeFirstResponder();
            settle();
        }
        const auto all = heard();
        int controls = 0, texts = 0;
        for (const UIView* const view : leavesOf(*host->uiWindow())) {
            const bool isControl = isAny<UIControl, KeyboardButton>(*view);
            if (!isControl && !isAny<UILabel, UITextView>(*view)) continue;
            ++(isControl ? controls : texts);
            const std::string name = view->accessibilityLabel();
            EXPECT_TRUE(!name.empty() || !isControl) << view->accessibilityIdentifier();
            const bool isHeard = std::ranges::any_of(all, [&](Interface* one) {
                return nameOf(*one) == name &&
                       (!isControl || (one->role() == expectedRole(*view) && canBePressed(*one)));
            });
            const CGSize size = view->bounds().size;
            EXPECT_EQ(isHeard, size.width > 0 && size.height > 0) << name;
        }
        EXPECT_GE(controls, least);
        EXPECT_GE(texts, 1);
        for (Interface* const one : all) {
            const bool isText = one->role() == QAccessible::StaticText || one->role() == QAccessible::Heading;
            const bool isSeenOnly = isText || one->role() == QAccessible::Graphic;
            EXPECT_TRUE(!isSeenOnly || actionsOf(*one).isEmpty()) << nameOf(*one);
            EXPECT_TRUE(one->role() != QAccessible::Button || one->childCount() == 0) << nameOf(*one);
            EXPECT_TRUE(nameOf(*one).empty() || !one->rect().isEmpty()) << nameOf(*one);
        }
    }
}

TEST_F(ScreenReader, HearsOfNoPictureThatIsNotThereAndWhetherASectionIsOpen) {
    for (const bool isWarning : {true, false}) {
        CRes cRes = screenCRes(UiType::OOB);
        cRes.challengeInfoTextIndicator = isWarning ? "Y" : "N";
        show(cRes);
        EXPECT_EQ(named("Warning") != nullptr, isWarning);
        EXPECT_FALSE(named("Bank") || named("Card scheme")) << "no logo has come";
    }
    for (const bool isOpen : {true, false}) {
        ASSERT_TRUE(named("Why?") && named("Why?")->state().expandable);
        named("Why?")->actionInterface()->doAction(Action::pressAction());
        settle();
        EXPECT_EQ(named("Why?")->state().expanded, isOpen);
        EXPECT_EQ(named("Why?")->state().collapsed, !isOpen);
        EXPECT_EQ(named("Because your bank asks for it.") != nullptr, isOpen);
    }
}

/// A whole code, from what is told alone; the focus is told, and stays with the key that is pressed.
TEST_F(ScreenReader, PlaysACodeFromWhatItHearsAlone) {
    CRes cRes = screenCRes(UiType::TEXT);
    cRes.challengeInfoLabel = "Your code";
    const auto text = showAs<ChallengeTextNativeViewController>(cRes);
    text->secureKeyboard->setFirstPage(CustomKeyboardLayoutState::Numbers());
    std::vector<std::string> focused;
    for (const char* name : {"Your code", "1", "ABC", "shift", "shift", "C", "caps lock", "d", "delete",
                             "123", "symbols", "#", "Close"}) {
        if (const auto keyboard = text->secureKeyboard->customKeyboard())
            keyboard->shiftToggleInterval = Seconds{60};
        ASSERT_TRUE(named(name)) << name;
        named(name)->actionInterface()->doAction(Action::pressAction());
        settle();
        for (Interface* const one : heard())
            if (one->state().focused) focused.push_back(nameOf(*one));
    }
    EXPECT_EQ(text->otp->text(), "1C#");
    EXPECT_FALSE(text->otp->isFirstResponder());
    EXPECT_THAT(focused, testing::ElementsAre("Your code", "1", "123", "shift", "caps lock", "C", "shift",
                                              "d", "delete", "ABC", "123", "#", "Your code"));
    named(text->submitButton->currentTitle())->actionInterface()->doAction(Action::pressAction());
    EXPECT_TRUE(waitFor([&] { return !actions->calls.empty(); }));
    EXPECT_THAT(actions->calls, testing::ElementsAre("data(1C#/N) on main"));
}

TEST_F(ScreenReader, PressesAndHearsOfTheChange) {
    const auto native = showAs<ChallengeNativeViewController>(screenCRes(UiType::TEXT));
    ASSERT_TRUE(heardAs(QAccessible::CheckBox));
    EXPECT_FALSE(heardAs(QAccessible::CheckBox)->state().checked);
    heardAs(QAccessible::CheckBox)->actionInterface()->doAction(Action::pressAction());
    settle();
    EXPECT_TRUE(native->whitelistingInfo->isChecked());
    EXPECT_TRUE(heardAs(QAccessible::CheckBox)->state().checked);
}

TEST_F(ScreenReader, TurnsThePagesOfALongListToItsEndAndBack) {
    CRes cRes = screenCRes(UiType::MULTI_SELECT);
    cRes.challengeSelectInfo.emplace();
    for (int row = 0; row < 300; ++row)
        cRes.challengeSelectInfo->push_back({{std::to_string(row), "Option " + std::to_string(row)}});
    const auto screen = showAs<ChallengeSelectNativeViewController>(cRes);
    std::set<std::string> options;
    for (int page = 0; page < 32; ++page) {
        for (Interface* const one : heard())
            if (nameOf(*one).starts_with("Option ")) options.insert(nameOf(*one));
        EXPECT_TRUE(page != 16 || options.size() == 300U);
        const QString action = page < 16 ? Action::scrollDownAction() : Action::scrollUpAction();
        Interface* const list = heardAs(QAccessible::List);
        ASSERT_TRUE(list && list->actionInterface()->actionNames().contains(action));
        list->actionInterface()->doAction(action);
        settle();
    }
    EXPECT_TRUE(screen->tableView->cellForRow({0, 0}));
}

TEST_F(ScreenReader, NeverHearsWhatIsTyped) {
    const auto text = showAs<ChallengeTextNativeViewController>(screenCRes(UiType::TEXT));
    text->otp->becomeFirstResponder();
    text->otp->setText("83cd91");
    settle();
    for (const Interface* const one : heard())
        for (const auto part : {QAccessible::Name, QAccessible::Value, QAccessible::Description})
            EXPECT_FALSE(one->text(part).contains(QLatin1String("83cd91")));
}

} // namespace
} // namespace korvane
