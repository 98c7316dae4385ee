#include "tests/keyboard/ThumbDriver.h"

#include "Platform/View/UIApplication.h"

#include <gmock/gmock.h>

#include <sstream>

namespace korvane {

namespace {

void collect(const KeyboardRow& row, std::vector<std::shared_ptr<KeyboardButton>>& keys) {
    for (const auto& element : *row.characters()) {
        if (const auto* inner = std::get_if<std::shared_ptr<KeyboardRow>>(&element))
            collect(**inner, keys);
        else
            keys.push_back(std::get<std::shared_ptr<KeyboardButton>>(element));
    }
}

} // namespace

std::vector<std::shared_ptr<KeyboardButton>> keysOf(const KeyboardLayout& layout) {
    std::vector<std::shared_ptr<KeyboardButton>> keys;
    for (const auto& row : *layout.rows())
        collect(*row, keys);
    return keys;
}

std::string nameOf(const KeyboardButton& key) {
    return key.identifier() ? *key.identifier() : key.type().string();
}

CGRect touchArea(const KeyboardButton& key, const KeyboardLayout& layout) {
    CGRect area = UIEdgeInsetsInsetRect(key.frame(), key.hitRangeInsets());
    for (auto view = key.superview(); view && view.get() != &layout; view = view->superview())
        area = CGRectOffset(area, view->frame().origin.x, view->frame().origin.y);
    return area;
}

/// Begins editing as the challenge's screen does.
class ThumbDriver::FieldDelegate final : public UITextFieldDelegate {
public:
    explicit FieldDelegate(const std::shared_ptr<SecKeyboardInputViewController>& controller)
        : controller_(controller) {}

    bool textFieldShouldBeginEditing(UITextField& textField) override {
        controller_->set(std::static_pointer_cast<UITextField>(textField.shared_from_this()));
        return true;
    }

private:
    std::shared_ptr<SecKeyboardInputViewController> controller_;
};

ThumbDriver::ThumbDriver(UIKeyboardType type, CGSize screen)
    : Device(screen), window(std::make_shared<UIWindow>()), field(std::make_shared<UITextField>()),
      controller(std::make_shared<SecKeyboardInputViewController>()),
      delegate_(std::make_shared<FieldDelegate>(controller)) {
    const auto root = std::make_shared<UIViewController>();
    window->setRootViewController(root);
    window->makeKeyAndVisible();
    field->setFrame({{10, 20}, {200, 30}});
    field->setKeyboardType(type);
    field->setDelegate(delegate_);
    root->view()->addSubview(field);
    EXPECT_TRUE(field->becomeFirstResponder());
}

ThumbDriver::~ThumbDriver() {
    UIApplication::shared().remove(window);
}

void ThumbDriver::editAgain() {
    field->resignFirstResponder();
    field->becomeFirstResponder();
}

void ThumbDriver::turn() {
    CGSize& screen = platform.script().bounds.size;
    std::swap(screen.width, screen.height);
    UIApplication::shared().deviceDidRotate();
}

std::shared_ptr<KeyboardButton> ThumbDriver::key(std::string_view name) const {
    for (const auto& key : keysOf(page()))
        if (nameOf(*key) == name) return key;
    return nullptr;
}

CGPoint ThumbDriver::middle(std::string_view name) const {
    page().layoutIfNeeded();
    const auto found = key(name);
    if (!found) {
        ADD_FAILURE() << "no key " << name << " on this page";
        return {};
    }
    return found->middleInWindow();
}

void ThumbDriver::pressAt(int thumb, CGPoint inWindow) {
    thumbs_[thumb] = inWindow;
    send({{thumb, UITouchPhase::began}});
}

void ThumbDriver::slideTo(int thumb, CGPoint inWindow) {
    thumbs_[thumb] = inWindow;
    send({{thumb, UITouchPhase::moved}});
}

void ThumbDriver::send(const std::vector<std::pair<int, UITouchPhase>>& news) {
    std::vector<UIWindow::TouchPoint> points;
    for (const auto& [thumb, phase] : news)
        points.push_back({static_cast<std::uint64_t>(thumb), phase, thumbs_[thumb]});
    window->sendTouches(points);
}

void ThumbDriver::tap(std::string_view key) {
    constexpr int kTapping = 1000;
    press(kTapping, key);
    lift(kTapping);
}

void ThumbDriver::hold(std::string_view key, double seconds) {
    press(0, key);
    wait(seconds);
    lift(0);
}

void ThumbDriver::play(std::string_view steps) {
    std::istringstream stream{std::string(steps)};
    for (std::string step; stream >> step;) {
        if (step.size() > 1 && step.front() == '+' && step[1] != '=')
            wait(std::stod(step.substr(1)));
        else
            tap(step);
    }
}

} // namespace korvane
