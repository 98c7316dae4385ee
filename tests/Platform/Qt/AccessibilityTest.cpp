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

bool canBePressed(Interface& one) {
    const QStringList names = one.actionInterface() ? one.actionInterface()->actionNames() : QStringList();
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
            EXPECT_TRUE(std::ranges::any_of(all, [&](Interface* one) {
                return nameOf(*one) == name &&
                       (!isControl || (one->role() == expectedRole(*view) && canBePressed(*one)));
            })) << name;
        }
        EXPECT_GE(controls, least);
        EXPECT_GE(texts, 1);
    }
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
