#pragma once

#include "Platform/JSONDecoding.h"
#include "Platform/View/UITableView.h"
#include "Ui/Screens/ChallengeNativeViewController.h"

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace korvane {

/// A row of the list of options: a button under the tag `kButtonTag`.
class ChallengeTableViewCell final : public UITableViewCell {
public:
    static constexpr int kButtonTag = 1000;

    /// A cell without the button is a fault of the storyboard and ends the process (`fatalError`).
    [[nodiscard]] std::shared_ptr<ChallengeSelectButton> button() const;
};

/// What the two screens share that let the cardholder choose among options: the list, as long as its rows,
/// and the button to go on, which acts on the global queue. The screen knows what is chosen, whichever rows
/// have a cell. Main queue only.
class ChallengeSelectNativeViewController : public ChallengeNativeViewController,
                                            public UITableViewDataSource {
public:
    static constexpr double kRowHeight = 40;
    static constexpr double kLandscapeRowHeight = 30;

    void viewDidLoad() override;

    /// What a row of the list stands for; both empty for an option without an entry.
    struct Option {
        std::string key;
        std::string label;
    };
    [[nodiscard]] std::size_t optionCount() const { return data ? data->size() : 0; }
    [[nodiscard]] Option option(std::size_t row) const;
    [[nodiscard]] virtual bool isChosen(std::size_t row) const = 0;

    int numberOfRowsInSection(UITableView& tableView, int section) override;
    std::shared_ptr<UITableViewCell> cellForRowAt(UITableView& tableView, IndexPath indexPath) override;

    UIOutlet<UITableView> tableView{*this, "tableView"};
    UIOutlet<ChallengeButton> nextButton{*this, "nextButton"};
    UIOutlet<NSLayoutConstraint> selectorHeihgtConstraint{*this, "selectorHeihgtConstraint"};
    /// The options: of each the first entry counts, from key to label. To be set before the view is loaded.
    std::optional<std::vector<StringTable>> data;
    ResourceImage checkedCheckBox{"CheckedCheckbox", UIImageRenderingMode::alwaysTemplate};
    ResourceImage uncheckedCheckBox{"UncheckedCheckbox"};

protected:
    [[nodiscard]] std::span<const UiObject> chain() const override;
    [[nodiscard]] std::shared_ptr<UIView> control(UiObject object) const override;
    /// Rows are higher than usual where an option takes several lines.
    void fitHeights() override;
    [[nodiscard]] virtual double rowHeight() const { return kRowHeight; }
    [[nodiscard]] virtual std::string cellIdentifier() const = 0;
    virtual void optionSelected(ChallengeSelectButton& sender) = 0;
    virtual void processSelection() = 0;
    virtual void setOptionTitle(ChallengeSelectButton& button, const std::string& title) = 0;

    /// The row that a button shows now, or no value.
    [[nodiscard]] std::optional<std::size_t> rowOf(const ChallengeSelectButton& button) const;
    /// Every cell that there is shows whether its option is chosen.
    void showChoice();
    void sendAfterDelay(const std::string& choice);

private:
    /// What the rows' height follows from.
    struct RowFit {
        double width = -1;
        double textScale = 0;
        friend bool operator==(const RowFit&, const RowFit&) = default;
    };

    [[nodiscard]] std::vector<std::size_t> rowsOfLongestLabels() const;
    [[nodiscard]] double neededRowHeight(double width);
    void showChoice(const UITableViewCell& cell, std::size_t row);

    RowFit rowFit_;
    std::shared_ptr<ChallengeTableViewCell> measured_; // shows no row
};

/// The screen on which one option can be chosen.
class ChallengeSingleSelectNativeViewController : public ChallengeSelectNativeViewController {
public:
    void applyCustomization(const std::shared_ptr<const UiCustomization>& customization) override;
    using ChallengeNativeViewController::applyCustomization;

    [[nodiscard]] bool isChosen(std::size_t row) const override { return option(row).key == chosenKey_; }
    /// Chooses all options with the sender's key, and no others.
    void radioButtonSelected(ChallengeSelectButton& sender);
    /// Sends the key that is chosen. Without one the spinner stays and nothing is sent.
    void processSingleSelect();

protected:
    [[nodiscard]] std::string cellIdentifier() const override { return "SingleSelectCell"; }
    void optionSelected(ChallengeSelectButton& sender) override { radioButtonSelected(sender); }
    void processSelection() override { processSingleSelect(); }
    void setOptionTitle(ChallengeSelectButton& button, const std::string& title) override {
        setTitles(button, title);
    }

private:
    std::optional<std::string> chosenKey_;
};

/// The screen on which several options can be chosen, or none.
class ChallengeMultiSelectNativeViewController : public ChallengeSelectNativeViewController {
public:
    void applyCustomization(const std::shared_ptr<const UiCustomization>& customization) override;
    using ChallengeNativeViewController::applyCustomization;

    [[nodiscard]] bool isChosen(std::size_t row) const override { return chosenRows_.contains(row); }
    void multiSelectChecked(ChallengeSelectButton& sender);
    /// Sends the chosen options in the list's order with commas between them; an empty text for none.
    void processMultiSelect();

protected:
    [[nodiscard]] std::string cellIdentifier() const override { return "MultiSelectCell"; }
    void optionSelected(ChallengeSelectButton& sender) override { multiSelectChecked(sender); }
    void processSelection() override { processMultiSelect(); }
    void setOptionTitle(ChallengeSelectButton& button, const std::string& title) override {
        button.setTitle(title, ControlState::normal);
    }

private:
    std::set<std::size_t> chosenRows_;
};

/// The same with lower rows, for screens that lie on their side.
class LandscapeChallengeSingleSelectNativeViewController final
    : public ChallengeSingleSelectNativeViewController {
protected:
    [[nodiscard]] double rowHeight() const override { return kLandscapeRowHeight; }
};

class LandscapeChallengeMultiSelectNativeViewController final
    : public ChallengeMultiSelectNativeViewController {
protected:
    [[nodiscard]] double rowHeight() const override { return kLandscapeRowHeight; }
};

} // namespace korvane
