#include "tests/keyboard/ThumbDriver.h"

#include "Platform/View/UIApplication.h"

#include <cctype>
#include <sstream>

namespace korvane {

std::vector<Button> keysOf(const KeyboardLayout& layout) {
    std::vector<Button> keys;
    layout.forEachKey([&keys](const Button& key) { keys.push_back(key); });
    return keys;
}

std::string nameOf(const KeyboardButton& key) {
    return key.identifier() ? *key.identifier() : key.type().string();
}

CGRect touchArea(const KeyboardButton& key, const KeyboardLayout& layout) {
    return key.superview()->convertTo(&layout, UIEdgeInsetsInsetRect(key.frame(), key.hitRangeInsets()));
}

ThumbDriver::ThumbDriver(UIKeyboardType type, CGSize screen) : Device(screen) {
    const auto root = std::make_shared<UIViewController>();
    window->setRootViewController(root);
    window->makeKeyAndVisible();
    field->setFrame({{10, 20}, {200, 30}});
    field->setKeyboardType(type);
    root->view()->addSubview(field);
    edit();
}

ThumbDriver::~ThumbDriver() {
    UIApplication::shared().remove(window);
}

/// As the challenge's screen does.
void ThumbDriver::edit() {
    controller->set(field);
    EXPECT_TRUE(field->becomeFirstResponder());
}

void ThumbDriver::editAgain() {
    field->resignFirstResponder();
    edit();
}

void ThumbDriver::turn() {
    CGSize& screen = platform.script().bounds.size;
    std::swap(screen.width, screen.height);
    UIApplication::shared().deviceDidRotate();
}

Button ThumbDriver::key(std::string_view name) const {
    for (const auto& key : keysOf(page()))
        if (nameOf(*key) == name) return key;
    return nullptr;
}

CGPoint ThumbDriver::middle(std::string_view name) const {
    if (name == "above") return {100, 100};
    page().layoutIfNeeded();
    if (const auto found = key(name)) return found->middleInWindow();
    ADD_FAILURE() << "no key " << name << " on this page";
    return {};
}

void ThumbDriver::touch(Thumb thumb, CGPoint inWindow) {
    const bool isNew = thumbs_.insert_or_assign(thumb, inWindow).second;
    window->sendTouch({thumb, isNew ? UITouchPhase::began : UITouchPhase::moved, inWindow});
}

void ThumbDriver::end(const std::vector<Thumb>& thumbs, UITouchPhase phase) {
    std::vector<UIWindow::TouchPoint> points;
    for (const Thumb thumb : thumbs) {
        points.push_back({thumb, phase, thumbs_.at(thumb)});
        thumbs_.erase(thumb);
    }
    window->sendTouches(points);
}

void ThumbDriver::tap(CGPoint inWindow) {
    constexpr Thumb kTapping = 1000;
    touch(kTapping, inWindow);
    lift(kTapping);
}

void ThumbDriver::play(std::string_view steps) {
    std::istringstream stream{std::string(steps)};
    for (std::string step; stream >> step;) {
        if (step.size() > 1 && step.front() == '+')
            wait(std::stod(step.substr(1)));
        else if (step.size() > 1 && std::isdigit(step.front()) != 0)
            playThumbs(step);
        else
            tap(middle(step));
    }
}

void ThumbDriver::playThumbs(const std::string& step) {
    std::vector<Thumb> thumbs;
    for (const char digit : step.substr(0, step.find_first_of(":^!")))
        thumbs.push_back(static_cast<Thumb>(digit - '0'));
    const char what = step[thumbs.size()];
    if (what == ':')
        touch(thumbs.front(), middle(step.substr(2)));
    else
        end(thumbs, what == '^' ? UITouchPhase::ended : UITouchPhase::cancelled);
}

} // namespace korvane
