#include "Ui/Screens/ChallengeSelectNativeViewController.h"
#include "tests/Platform/Qt/QtScreenTest.h"

#include <QAccessible>
#include <QAccessibleActionInterface>

#include <set>
#include <tuple>

namespace korvane {
namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::Not;

/// What a screen reader is told of one thing.
struct Heard {
    QAccessible::Role role;
    std::string name;
    bool canBePressed;
    QAccessibleInterface* interface;
};

void listen(QAccessibleInterface& from, std::vector<Heard>& all) {
    for (int index = 0; index < from.childCount(); ++index) {
        QAccessibleInterface* const child = from.child(index);
        if (!child || child->state().invisible) continue;
        const auto* actions = child->actionInterface();
        const QStringList names = actions ? actions->actionNames() : QStringList();
        all.push_back({child->role(), child->text(QAccessible::Name).toStdString(),
                       names.contains(QAccessibleActionInterface::pressAction()) ||
                           names.contains(QAccessibleActionInterface::toggleAction()),
                       child});
        listen(*child, all);
    }
}

class ScreenReader : public QtScreenTest {
protected:
    ScreenReader() { QAccessible::setActive(true); }
    ~ScreenReader() override { QAccessible::setActive(false); }

    [[nodiscard]] std::vector<Heard> heard() {
        std::vector<Heard> all;
        QAccessibleInterface* const root = QAccessible::queryAccessibleInterface(&scene);
        if (root) listen(*root, all);
        return all;
    }
    [[nodiscard]] static QAccessible::Role expected(const UIView& view) {
        if (dynamic_cast<const UITextField*>(&view)) return QAccessible::EditableText;
        switch (view.accessibilityRole()) {
        case UIAccessibilityRole::checkBox: return QAccessible::CheckBox;
        case UIAccessibilityRole::radioButton: return QAccessible::RadioButton;
        default: return QAccessible::Button;
        }
    }
};

/// Controls and keys that are seen, and can be reached by touch.
void collectControls(const UIView& view, std::vector<const UIView*>& controls) {
    for (const auto& inner : view.subviews()) {
        if (inner->isHidden() || inner->alpha() == 0) continue;
        if (dynamic_cast<const UIControl*>(inner.get()) || dynamic_cast<const KeyboardButton*>(inner.get()))
            controls.push_back(inner.get());
        else
            collectControls(*inner, controls);
    }
}

TEST_F(ScreenReader, HearsEveryControlOfEveryScreenWithRoleNameAndAction) {
    using Row = std::tuple<UiType, std::size_t, const char*>;
    for (const auto& [kind, leastControls, alsoHeard] :
         {Row(UiType::TEXT, 30, "Confirm your payment"),
          Row(UiType::SINGLE_SELECT, 6, "Confirm your payment"),
          Row(UiType::MULTI_SELECT, 6, "Confirm your payment"), Row(UiType::OOB, 5, "Confirm your payment"),
          Row(UiType::HTML_OTHER, 1, "Confirm payment")}) {
        SCOPED_TRACE(rawValue(kind));
        const auto shown = show(fullCRes(kind));
        if (const auto text = std::dynamic_pointer_cast<ChallengeTextNativeViewController>(shown)) {
            text->otp->becomeFirstResponder();
            settle();
        }
        std::vector<const UIView*> controls;
        collectControls(*host->uiWindow(), controls);
        EXPECT_GE(controls.size(), leastControls);
        const auto all = heard();
        for (const UIView* control : controls) {
            EXPECT_THAT(control->accessibilityLabel(), Not(IsEmpty())) << control->accessibilityIdentifier();
            EXPECT_THAT(all,
                        Contains(testing::AllOf(testing::Field(&Heard::role, expected(*control)),
                                                testing::Field(&Heard::name, control->accessibilityLabel()),
                                                testing::Field(&Heard::canBePressed, true))));
        }
        EXPECT_THAT(all, Contains(testing::Field(&Heard::name, alsoHeard)));
    }
}

TEST_F(ScreenReader, PressesAndHearsOfTheChange) {
    const auto native = showAs<ChallengeNativeViewController>(fullCRes(UiType::TEXT));
    const auto box = [this] {
        for (const Heard& one : heard())
            if (one.role == QAccessible::CheckBox) return one.interface;
        return static_cast<QAccessibleInterface*>(nullptr);
    };
    ASSERT_TRUE(box());
    EXPECT_FALSE(box()->state().checked);
    box()->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    settle();
    EXPECT_TRUE(native->whitelistingInfo->isChecked());
    EXPECT_TRUE(box()->state().checked);
}

TEST_F(ScreenReader, TurnsThePagesOfALongListToItsEndAndBack) {
    CRes cRes = fullCRes(UiType::MULTI_SELECT);
    cRes.challengeSelectInfo.emplace();
    for (int row = 0; row < 300; ++row)
        cRes.challengeSelectInfo->push_back({{std::to_string(row), "Option " + std::to_string(row)}});
    const auto screen = showAs<ChallengeSelectNativeViewController>(cRes);
    std::set<std::string> options;
    const auto turn = [&](const QString& action) {
        QAccessibleInterface* list = nullptr;
        for (const Heard& one : heard()) {
            if (one.role == QAccessible::List) list = one.interface;
            if (one.name.starts_with("Option ")) options.insert(one.name);
        }
        ASSERT_TRUE(list && list->actionInterface()->actionNames().contains(action));
        list->actionInterface()->doAction(action);
        settle();
    };
    for (int page = 0; page < 16; ++page)
        turn(QAccessibleActionInterface::scrollDownAction());
    EXPECT_EQ(options.size(), 300U);
    for (int page = 0; page < 16; ++page)
        turn(QAccessibleActionInterface::scrollUpAction());
    EXPECT_TRUE(screen->tableView->cellForRow({0, 0}));
}

TEST_F(ScreenReader, NeverHearsWhatIsTyped) {
    const auto text = showAs<ChallengeTextNativeViewController>(fullCRes(UiType::TEXT));
    text->otp->becomeFirstResponder();
    text->otp->setText("83cd91");
    settle();
    for (const Heard& one : heard())
        for (const auto part : {QAccessible::Name, QAccessible::Value, QAccessible::Description})
            EXPECT_THAT(one.interface->text(part).toStdString(), Not(testing::HasSubstr("83cd91")));
}

} // namespace
} // namespace korvane
