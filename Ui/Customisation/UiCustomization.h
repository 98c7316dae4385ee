#pragma once

#include "Platform/Export.h"
#include "Ui/Customisation/Customizations.h"

#include <map>
#include <memory>

namespace korvane {

/// The buttons that have a look of their own.
enum class ButtonType { VERIFY, CONTINUE, NEXT, CANCEL, RESEND, SUBMIT, CUST_WHY_INFO, CUST_EXT_INFO };

/// The images that can be replaced.
enum class CustImageType {
    WARNING,
    ARROW_UP,
    ARROW_DOWN,
    CHECKBOX_WHITELISTING_CHECKED,
    CHECKBOX_WHITELISTING_UNCHECKED
};

/// The longer texts that have a look of their own.
enum class CustTextViewType { CHALLENGE_INFO_TEXT, WHY_INFO_TEXT, EXT_INFO_TEXT, WHITELISTING_TEXT };

/// How an application wants the challenge screens to look: handed to `ThreeDS2Service::initialize`, shared
/// with the screens and read by them when they are built. What is absent stays as the library has it. No
/// lock: to be filled before. Getters give null for what is not set.
class KORVANE_EXPORT UiCustomization {
public:
    void setButtonCustomization(std::shared_ptr<ButtonCustomization> buttonCustomization,
                                ButtonType buttonType) {
        buttonCustomizations[buttonType] = std::move(buttonCustomization);
    }
    [[nodiscard]] std::shared_ptr<ButtonCustomization> getButtonCustomization(ButtonType buttonType) const {
        return found(buttonCustomizations, buttonType);
    }

    void setCustImageCustomization(std::shared_ptr<CustImageCustomization> imageCustomization,
                                   CustImageType imageType) {
        custImageCustomizations[imageType] = std::move(imageCustomization);
    }
    [[nodiscard]] std::shared_ptr<CustImageCustomization>
    getCustImageCustomization(CustImageType imageType) const {
        return found(custImageCustomizations, imageType);
    }

    void setCustTextCustomization(std::shared_ptr<CustTextCustomization> textCustomization,
                                  CustTextViewType textType) {
        custTextCustomizations[textType] = std::move(textCustomization);
    }
    [[nodiscard]] std::shared_ptr<CustTextCustomization>
    getCustTextCustomization(CustTextViewType textType) const {
        return found(custTextCustomizations, textType);
    }

    void setToolbarCusomization(std::shared_ptr<ToolbarCustomization> customization) {
        toolbarCusomization = std::move(customization);
    }
    [[nodiscard]] const std::shared_ptr<ToolbarCustomization>& getToolbarCusomization() const noexcept {
        return toolbarCusomization;
    }

    void setBackgroundCustomization(std::shared_ptr<BackgroundCustomization> customization) {
        backgroundCustomization = std::move(customization);
    }
    [[nodiscard]] const std::shared_ptr<BackgroundCustomization>&
    getBackgroundCustomization() const noexcept {
        return backgroundCustomization;
    }

    void setLabelCustomization(std::shared_ptr<LabelCustomization> customization) {
        labelCustomization = std::move(customization);
    }
    [[nodiscard]] const std::shared_ptr<LabelCustomization>& getLabelCustomization() const noexcept {
        return labelCustomization;
    }

    void setTextBoxCustomization(std::shared_ptr<TextBoxCustomization> customization) {
        textBoxCustomization = std::move(customization);
    }
    [[nodiscard]] const std::shared_ptr<TextBoxCustomization>& getTextBoxCustomization() const noexcept {
        return textBoxCustomization;
    }

    void setCustWarning(std::shared_ptr<CustWarning> warning) { custWarning = std::move(warning); }
    [[nodiscard]] const std::shared_ptr<CustWarning>& getCustWarning() const noexcept { return custWarning; }

    /// Kept for the application alone: an empty field that is submitted is not marked.
    void setShowErrorDataEntry(bool isShown) { isShowErrorDataEntry = isShown; }
    [[nodiscard]] bool showErrorDataEntry() const noexcept { return isShowErrorDataEntry; }

    std::map<ButtonType, std::shared_ptr<ButtonCustomization>> buttonCustomizations;
    std::shared_ptr<BackgroundCustomization> backgroundCustomization;
    std::shared_ptr<ToolbarCustomization> toolbarCusomization;
    std::shared_ptr<LabelCustomization> labelCustomization;
    std::shared_ptr<TextBoxCustomization> textBoxCustomization;
    std::map<CustImageType, std::shared_ptr<CustImageCustomization>> custImageCustomizations;
    std::map<CustTextViewType, std::shared_ptr<CustTextCustomization>> custTextCustomizations;
    std::shared_ptr<CustWarning> custWarning;
    bool isShowErrorDataEntry = false;

private:
    template <class Key, class Value>
    static std::shared_ptr<Value> found(const std::map<Key, std::shared_ptr<Value>>& customizations,
                                        Key key) {
        const auto entry = customizations.find(key);
        return entry == customizations.end() ? nullptr : entry->second;
    }
};

} // namespace korvane
