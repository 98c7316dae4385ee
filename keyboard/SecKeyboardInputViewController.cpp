#include "keyboard/SecKeyboardInputViewController.h"

#include "Platform/Platform.h"
#include "Platform/View/UIWindow.h"
#include "keyboard/KeyboardStyles.h"

#include <utility>

namespace korvane {

namespace {

constexpr double kToolBarHeight = 44;

/// As high as the bar, the keys, and what the system covers below them.
class InputView final : public UIView {
public:
    void setKeyboard(const std::shared_ptr<CustomKeyboard>& keyboard) { keyboard_ = keyboard; }

    [[nodiscard]] CGSize sizeThatFits(CGSize size) const override {
        const auto keyboard = keyboard_.lock();
        const double keys = keyboard ? keyboard->sizeThatFits(size).height : 0;
        return {size.width, kToolBarHeight + keys + covered()};
    }

    void layoutSubviews() override {
        UIView::layoutSubviews();
        const double before = std::exchange(covered_, covered());
        if (before != covered_) invalidateIntrinsicContentSize();
    }

private:
    /// How far the system covers the window from below.
    [[nodiscard]] double covered() const {
        const auto shownIn = window();
        return shownIn ? shownIn->safeAreaInsets().bottom : 0;
    }

    std::weak_ptr<CustomKeyboard> keyboard_;
    double covered_ = 0;
};

} // namespace

void SecKeyboardInputViewController::set(const std::shared_ptr<UITextField>& textField) {
    textField_ = textField;
    if (customKeyboard_) customKeyboard_->reload(firstState());
    view()->setFocusColor(textField->focusColor());
    textField->setInputView(view());
}

CustomKeyboardLayoutState SecKeyboardInputViewController::firstState() const {
    const auto field = textField();
    const bool isPad = field && field->keyboardType() == UIKeyboardType::asciiCapableNumberPad;
    if (isPad) return CustomKeyboardLayoutState::NumberPad();
    return firstPage_.value_or(CustomKeyboardLayoutState::Letters(CustomKeyboardShiftState::Once));
}

void SecKeyboardInputViewController::loadView() {
    setView(std::make_shared<InputView>());
}

void SecKeyboardInputViewController::viewDidLoad() {
    UIInputViewController::viewDidLoad();
    setupKeyboard();
}

void SecKeyboardInputViewController::setupKeyboard() {
    customKeyboard_ = CustomKeyboard::make(firstState());
    customKeyboard_->setDelegate(weakFrom(this));
    customToolBar_ = CustomToolBar::make();
    customToolBar_->setDelegate(weakFrom(this));
    viewKeyboard_ = std::make_shared<UIView>();
    viewKeyboard_->setBackgroundColor(keyboardColor("velka_sdk_kb_bg"));
    viewKeyboard_->addSubview(customToolBar_);
    viewKeyboard_->addSubview(customKeyboard_);
    blackView_ = std::make_shared<UIView>();
    blackView_->setBackgroundColor(UIColor::black());
    blackView_->addSubview(viewKeyboard_);
    view()->addSubview(blackView_);
    placeViews();

    const auto input = std::static_pointer_cast<InputView>(view());
    input->setKeyboard(customKeyboard_);
    input->setFrame({{0, 0}, input->sizeThatFits(Platform::current().mainScreen().bounds().size)});
}

void SecKeyboardInputViewController::placeViews() {
    using Attribute = NSLayoutAttribute;
    const auto pin = [](const std::shared_ptr<UIView>& first, Attribute edge,
                        const std::shared_ptr<NSObject>& second, Attribute to) {
        NSLayoutConstraint::activate({first, edge}, {second, to});
    };
    const auto pinSides = [&pin](const std::shared_ptr<UIView>& inner, const std::shared_ptr<UIView>& outer) {
        pin(inner, Attribute::leading, outer, Attribute::leading);
        pin(inner, Attribute::trailing, outer, Attribute::trailing);
    };
    pinSides(blackView_, view());
    pin(blackView_, Attribute::top, view(), Attribute::top);
    pin(blackView_, Attribute::bottom, view(), Attribute::bottom);
    pinSides(viewKeyboard_, blackView_);
    pin(viewKeyboard_, Attribute::top, blackView_, Attribute::top);
    pin(viewKeyboard_, Attribute::bottom, blackView_->safeAreaLayoutGuide(), Attribute::bottom);
    pinSides(customToolBar_, viewKeyboard_);
    pin(customToolBar_, Attribute::top, viewKeyboard_, Attribute::top);
    NSLayoutConstraint::activate({customToolBar_, Attribute::height}, kToolBarHeight);
    pinSides(customKeyboard_, viewKeyboard_);
    pin(customKeyboard_, Attribute::top, customToolBar_, Attribute::bottom);
    pin(customKeyboard_, Attribute::bottom, viewKeyboard_, Attribute::bottom);
}

void SecKeyboardInputViewController::customKeyboardKeyButtonPressed(CustomKeyboard& /*keyboard*/,
                                                                    const std::string& key) {
    textDocumentProxy().insertText(key);
}

void SecKeyboardInputViewController::customKeyboardSpaceButtonPressed(CustomKeyboard& /*keyboard*/) {
    textDocumentProxy().insertText(" ");
}

void SecKeyboardInputViewController::customKeyboardBackspaceButtonPressed(CustomKeyboard& /*keyboard*/) {
    textDocumentProxy().deleteBackward();
}

void SecKeyboardInputViewController::customKeyboardReturnButtonPressed(CustomKeyboard& /*keyboard*/) {
    textDocumentProxy().insertText("\n");
}

void SecKeyboardInputViewController::customToolBarCloseButtonPressed(CustomToolBar& /*toolBar*/) {
    const auto self = shared_from_this();
    if (const auto field = textField()) field->resignFirstResponder();
    if (const auto listener = delegate_.lock()) listener->keyboardDonePressed();
}

} // namespace korvane
