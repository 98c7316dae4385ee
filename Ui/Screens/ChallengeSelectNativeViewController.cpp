#include "Ui/Screens/ChallengeSelectNativeViewController.h"

#include "Platform/Failure.h"
#include "Platform/Text.h"
#include "Platform/View/UIApplication.h"
#include "Ui/Screens/Later.h"

#include <algorithm>
#include <array>
#include <functional>
#include <numeric>

namespace korvane {

namespace {

/// The room above and below an option that is taller than its row, in points: two of two lines each must not read
/// as one of four.
constexpr double kRoom = 6;

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

void ChallengeSelectNativeViewController::fitHeights() {
    ChallengeNativeViewController::fitHeights();
    const RowFit fit{tableView->bounds().size.width, UIApplication::shared().textScale()};
    if (fit == rowFit_) return;
    // On no screen, it does not hear that texts have another size.
    if (fit.textScale != rowFit_.textScale) measured_.reset();
    rowFit_ = fit;
    const double height = neededRowHeight(fit.width);
    tableView->setRowHeight(height);
    setHeight(UiObject::tableView, *selectorHeihgtConstraint.get(),
              static_cast<double>(optionCount()) * height);
}

/// As many as there is time to measure, however many options an ACS sends.
std::vector<std::size_t> ChallengeSelectNativeViewController::rowsOfLongestLabels() const {
    constexpr std::size_t kMost = 32;
    const auto length = [this](std::size_t row) {
        const StringTable& entries = data->at(row);
        return entries.empty() ? 0 : entries.begin()->second.size();
    };
    std::vector<std::size_t> rows(optionCount());
    std::iota(rows.begin(), rows.end(), std::size_t{0});
    const auto end = rows.begin() + static_cast<std::ptrdiff_t>(std::min(kMost, rows.size()));
    std::ranges::partial_sort(rows, end, std::ranges::greater{}, length);
    rows.erase(end, rows.end());
    return rows;
}

double ChallengeSelectNativeViewController::neededRowHeight(double width) {
    if (!measured_)
        measured_ = std::dynamic_pointer_cast<ChallengeTableViewCell>(
            tableView->dequeueReusableCell(cellIdentifier()));
    const auto button = measured_->button();
    double tallest = 0;
    for (const std::size_t row : rowsOfLongestLabels()) {
        button->setTitle(option(row).label, ControlState::normal);
        tallest = std::max(tallest, button->fittingSize(width).height);
    }
    return tallest + kRoom <= rowHeight() ? rowHeight() : tallest + 2 * kRoom;
}

ChallengeSelectNativeViewController::Option
ChallengeSelectNativeViewController::option(std::size_t row) const {
    const StringTable& entries = data->at(row);
    if (entries.empty()) return {};
    return {entries.begin()->first, entries.begin()->second};
}

int ChallengeSelectNativeViewController::numberOfRowsInSection(UITableView& /*ofTable*/, int /*section*/) {
    return static_cast<int>(optionCount());
}

std::shared_ptr<UITableViewCell> ChallengeSelectNativeViewController::cellForRowAt(UITableView& ofTable,
                                                                                   IndexPath indexPath) {
    const auto cell =
        std::dynamic_pointer_cast<ChallengeTableViewCell>(ofTable.dequeueReusableCell(cellIdentifier()));
    if (!cell) fatalError("The cell \"" + cellIdentifier() + "\" is no ChallengeTableViewCell.");
    const auto row = static_cast<std::size_t>(indexPath.row);
    const Option shown = option(row);
    const auto button = cell->button();
    button->key = shown.key;
    setOptionTitle(*button, shown.label);
    showChoice(*cell, row);
    button->removeTargets(ControlEvent::touchUpInside);
    button->addTarget(ControlEvent::touchUpInside, [weak = weakFrom(this)](UIControl& sender) {
        if (const auto self = weak.lock()) self->optionSelected(static_cast<ChallengeSelectButton&>(sender));
    });
    return cell;
}

std::optional<std::size_t>
ChallengeSelectNativeViewController::rowOf(const ChallengeSelectButton& button) const {
    for (auto view = button.superview(); view; view = view->superview())
        if (const auto* cell = dynamic_cast<const UITableViewCell*>(view.get())) {
            const auto path = tableView->indexPath(*cell);
            return path ? std::optional(static_cast<std::size_t>(path->row)) : std::nullopt;
        }
    return std::nullopt;
}

void ChallengeSelectNativeViewController::showChoice(const UITableViewCell& cell, std::size_t row) {
    const auto button = static_cast<const ChallengeTableViewCell&>(cell).button();
    button->setChecked(isChosen(row));
    button->setImage(button->isChecked() ? checkedCheckBox.get() : uncheckedCheckBox.get(),
                     ControlState::normal);
}

void ChallengeSelectNativeViewController::showChoice() {
    for (const auto& cell : tableView->visibleCells())
        showChoice(*cell, static_cast<std::size_t>(tableView->indexPath(*cell)->row));
}

void ChallengeSelectNativeViewController::sendAfterDelay(const std::string& choice) {
    const auto actions = transaction();
    if (!actions) return;
    onGlobalQueueAfter(kActionDelay, [actions, choice, whitelisting = latestWhitelistingDataEntry()] {
        actions->sendChallengeDataToAcs(choice, whitelisting());
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
    chosenKey_ = sender.key;
    showChoice();
}

void ChallengeSingleSelectNativeViewController::processSingleSelect() {
    showSpinner();
    if (chosenKey_) sendAfterDelay(*chosenKey_);
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
    const auto row = rowOf(sender);
    if (!row) return;
    if (chosenRows_.erase(*row) == 0) chosenRows_.insert(*row);
    showChoice();
}

void ChallengeMultiSelectNativeViewController::processMultiSelect() {
    showSpinner();
    std::vector<std::string> keys;
    for (const std::size_t row : chosenRows_)
        keys.push_back(option(row).key);
    sendAfterDelay(joined(keys));
}

} // namespace korvane
