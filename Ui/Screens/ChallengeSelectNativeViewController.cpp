#include "Ui/Screens/ChallengeSelectNativeViewController.h"

#include "Platform/Failure.h"
#include "Platform/Text.h"
#include "Ui/Screens/Later.h"

#include <algorithm>
#include <array>

namespace korvane {

namespace {

constexpr std::array kChain{
    UiObject::challengeInfoText, UiObject::challengeInfoLabel, UiObject::tableView,
    UiObject::nextButton,        UiObject::whitelistingInfo,   UiObject::whyInfoButton,
    UiObject::whyInfo,           UiObject::extInfoButton,      UiObject::extInfo};

} // namespace

std::shared_ptr<ChallengeSelectButton> ChallengeTableViewCell::button() const {
    auto found = std::dynamic_pointer_cast<ChallengeSelectButton>(viewWithTag(kButtonTag));
    if (!found) fatalError("The cell \"" + reuseIdentifier() + "\" has no button with the tag 1000.");
    return found;
}

// The list.

void ChallengeSelectNativeViewController::viewDidLoad() {
    ChallengeNativeViewController::viewDidLoad();
    tableView->setSeparatorStyle(UITableViewCellSeparatorStyle::none);
    tableView->setRowHeight(rowHeight());
    tableView->setDataSource(weakFrom(this));
    selectorHeihgtConstraint->setConstant(numberOfRowsInSection(*tableView.get(), 0) * rowHeight());
    connect(*nextButton.get(), &ChallengeSelectNativeViewController::processSelection);
}

int ChallengeSelectNativeViewController::numberOfRowsInSection(UITableView& /*ofTable*/, int /*section*/) {
    return data ? static_cast<int>(data->size()) : 0;
}

std::shared_ptr<UITableViewCell> ChallengeSelectNativeViewController::cellForRowAt(UITableView& ofTable,
                                                                                   IndexPath indexPath) {
    const auto cell =
        std::dynamic_pointer_cast<ChallengeTableViewCell>(ofTable.dequeueReusableCell(cellIdentifier()));
    if (!cell) fatalError("The cell \"" + cellIdentifier() + "\" is no ChallengeTableViewCell.");
    const StringTable& option = data->at(static_cast<std::size_t>(indexPath.row));
    const auto button = cell->button();
    // An option without an entry is one without a name.
    button->key = option.empty() ? std::string() : option.begin()->first;
    setOptionTitle(*button, option.empty() ? std::string() : option.begin()->second);
    button->removeTargets(ControlEvent::touchUpInside);
    button->addTarget(ControlEvent::touchUpInside, [weak = weakFrom(this)](UIControl& sender) {
        if (const auto self = weak.lock()) self->optionSelected(static_cast<ChallengeSelectButton&>(sender));
    });
    return cell;
}

std::vector<std::shared_ptr<ChallengeSelectButton>>
ChallengeSelectNativeViewController::visibleButtons() const {
    std::vector<std::shared_ptr<ChallengeSelectButton>> buttons;
    for (const auto& cell : tableView->visibleCells())
        buttons.push_back(std::static_pointer_cast<ChallengeTableViewCell>(cell)->button());
    return buttons;
}

void ChallengeSelectNativeViewController::showChecked(ChallengeSelectButton& button, bool isChecked) {
    button.setChecked(isChecked);
    button.setImage(isChecked ? checkedCheckBox.get() : uncheckedCheckBox.get(), ControlState::normal);
}

void ChallengeSelectNativeViewController::sendAfterDelay(const std::string& choice) {
    const auto actions = transaction();
    if (!actions) return;
    onGlobalQueueAfter(kActionDelay, [actions, choice, whitelisting = getWhitelistingDataEntry()] {
        actions->sendChallengeDataToAcs(choice, whitelisting);
    });
}

std::span<const UiObject> ChallengeSelectNativeViewController::chain() const {
    return kChain;
}

std::shared_ptr<UIView> ChallengeSelectNativeViewController::control(UiObject object) const {
    if (object == UiObject::tableView) return tableView.get();
    if (object == UiObject::nextButton) return nextButton.get();
    return ChallengeNativeViewController::control(object);
}

// One option.

void ChallengeSingleSelectNativeViewController::applyCustomization(
    const std::shared_ptr<const UiCustomization>& customization) {
    ChallengeSelectNativeViewController::applyCustomization(customization);
    customizeButton(*nextButton.get(), ButtonType::NEXT, "next");
}

void ChallengeSingleSelectNativeViewController::radioButtonSelected(ChallengeSelectButton& sender) {
    for (const auto& button : visibleButtons())
        showChecked(*button, button->key == sender.key);
}

void ChallengeSingleSelectNativeViewController::processSingleSelect() {
    showSpinner();
    const auto buttons = visibleButtons();
    const auto chosen = std::ranges::find_if(buttons, [](const auto& button) { return button->isChecked(); });
    if (chosen != buttons.end()) sendAfterDelay((*chosen)->key.value());
}

// Several options.

void ChallengeMultiSelectNativeViewController::applyCustomization(
    const std::shared_ptr<const UiCustomization>& customization) {
    ChallengeSelectNativeViewController::applyCustomization(customization);
    if (const auto& label = customization->getLabelCustomization())
        applyCustomization(*challengeInfoLabel.get(), *label, "multiselect challengeInfoLabel");
    customizeButton(*nextButton.get(), ButtonType::NEXT, "next");
}

void ChallengeMultiSelectNativeViewController::multiSelectChecked(ChallengeSelectButton& sender) {
    showChecked(sender, !sender.isChecked());
}

void ChallengeMultiSelectNativeViewController::processMultiSelect() {
    showSpinner();
    std::vector<std::string> keys;
    for (const auto& button : visibleButtons())
        if (button->isChecked()) keys.push_back(button->key.value());
    sendAfterDelay(joined(keys));
}

} // namespace korvane
