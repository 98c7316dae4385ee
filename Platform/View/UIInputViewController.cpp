#include "Platform/View/UIInputViewController.h"

#include "Platform/View/UIApplication.h"

namespace korvane {

namespace {

class FirstResponderProxy final : public UITextDocumentProxy {
public:
    void insertText(const std::string& text) override {
        if (const auto input = target()) input->insertText(text);
    }
    void deleteBackward() override {
        if (const auto input = target()) input->deleteBackward();
    }
    [[nodiscard]] bool hasText() const override {
        const auto input = target();
        return input && input->hasText();
    }

private:
    static std::shared_ptr<UIKeyInput> target() {
        return std::dynamic_pointer_cast<UIKeyInput>(UIApplication::shared().firstResponder());
    }
};

} // namespace

UIInputViewController::UIInputViewController() : proxy_(std::make_unique<FirstResponderProxy>()) {}

void UIInputViewController::loadView() {
    setView(std::make_shared<UIView>());
}

} // namespace korvane
