#include "Ui/Customisation/Customizations.h"

namespace korvane {

void CustTextCustomization::setCustomText(const std::string& fromString, const std::string& toString) {
    if (!textCustomization) textCustomization.emplace();
    textCustomization->insert_or_assign(fromString, toString);
}

std::optional<std::string> CustTextCustomization::getCustomText(const std::string& fromString) const {
    if (!textCustomization) return std::nullopt;
    const auto replacement = textCustomization->find(fromString);
    if (replacement == textCustomization->end()) return std::nullopt;
    return replacement->second;
}

std::shared_ptr<CustTextCustomization> CustTextCustomization::copy() const {
    return std::make_shared<CustTextCustomization>(textFont(), textColor, backgroundColor);
}

CustWarning::CustWarning(bool itsIsShowIndicator, bool /*isOwnFiled*/, std::optional<UIColor> itsTextColor,
                         std::optional<UIColor> itsBackgroundColor, std::optional<double> itsTopConstraint)
    : isShowIndicator(itsIsShowIndicator), textColor(itsTextColor), backgroundColor(itsBackgroundColor),
      topConstraint(itsTopConstraint.value_or(5)) {
    labelCustomization->textColor = itsTextColor.value_or(UIColor::black());
}

} // namespace korvane
