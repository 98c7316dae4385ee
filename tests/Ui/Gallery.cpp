#include "tests/Ui/Gallery.h"

#include <algorithm>
#include <array>
#include <sstream>

namespace korvane {

namespace {

constexpr std::array kKinds{"view",      "window",       "label",         "textView",
                            "textField", "button",       "image",         "scroll",
                            "table",     "tableCell",    "navigationBar", "activityIndicator",
                            "webView",   "visualEffect", "snapshot"};

std::string written(const CGRect& rect) {
    std::ostringstream text;
    text << '(' << rect.origin.x << ' ' << rect.origin.y << ' ' << rect.size.width << ' ' << rect.size.height
         << ')';
    return text.str();
}

struct Leaf {
    const UIView* view;
    CGRect frame; ///< in the screen's coordinates
};

/// Whether a view counts as one, whatever it is made of.
bool isLeaf(const UIView& view) {
    return view.subviews().empty() || dynamic_cast<const UIControl*>(&view) ||
           dynamic_cast<const UITextView*>(&view);
}

void collectLeaves(const UIView& view, const UIView& screen, std::vector<Leaf>& leaves) {
    for (const auto& inner : view.subviews()) {
        const CGRect frame = inner->convertTo(&screen, CGRect{{0, 0}, inner->bounds().size});
        if (inner->isHidden()) continue;
        if (!isLeaf(*inner))
            collectLeaves(*inner, screen, leaves);
        else if (frame.size.width > 0 && frame.size.height > 0)
            leaves.push_back({inner.get(), frame});
    }
}

bool overlap(const CGRect& a, const CGRect& b) {
    return a.origin.x < CGRectGetMaxX(b) && b.origin.x < CGRectGetMaxX(a) && a.origin.y < CGRectGetMaxY(b) &&
           b.origin.y < CGRectGetMaxY(a);
}

std::string nameOf(const UIView& view) {
    const std::string& identifier = view.accessibilityIdentifier();
    return identifier.empty() ? kKinds[static_cast<std::size_t>(view.kind())] : identifier;
}

/// The room that a label has for its text, and that the text needs: in height, and for one line in width.
bool hasRoom(const UILabel& label) {
    if (label.text().empty()) return true;
    const CGSize needed = label.fittingSize(label.bounds().size.width);
    if (needed.height > label.bounds().size.height) return false;
    const double width = label.intrinsicContentSize().width * label.scaleFactor();
    return label.numberOfLines() != 1 || width <= label.bounds().size.width + 0.01;
}

/// Title and image lie in the button and apart.
bool hasRoom(const UIButton& button) {
    if (button.currentTitle().empty()) return true;
    const CGRect own{{0, 0}, button.bounds().size};
    const CGRect title = button.titleLabel()->frame();
    const auto inside = [&own](const CGRect& part) {
        return part.origin.x >= own.origin.x && CGRectGetMaxX(part) <= CGRectGetMaxX(own) &&
               part.origin.y >= own.origin.y && CGRectGetMaxY(part) <= CGRectGetMaxY(own);
    };
    const bool hasImage = button.imageView() && button.imageView()->image();
    return hasRoom(*button.titleLabel()) && inside(title) &&
           (!hasImage ||
            (inside(button.imageView()->frame()) && !overlap(title, button.imageView()->frame())));
}

bool hasRoom(const UIView& view) {
    if (const auto* label = dynamic_cast<const UILabel*>(&view)) return hasRoom(*label);
    if (const auto* button = dynamic_cast<const UIButton*>(&view)) return hasRoom(*button);
    if (const auto* text = dynamic_cast<const UITextView*>(&view))
        return text->contentSize().height <= text->bounds().size.height;
    return true;
}

} // namespace

const std::vector<GalleryScreen>& galleryScreens() {
    static const std::vector<GalleryScreen> screens{
        {"320 x 568", {320, 568}, {20, 0, 0, 0}},
        {"390 x 844", {390, 844}, {47, 0, 34, 0}},
        {"568 x 320", {568, 320}, {}},
        {"844 x 390", {844, 390}, {0, 47, 21, 47}},
    };
    return screens;
}

CRes fullCRes(UiType kind) {
    CRes cRes = screenCRes(kind);
    cRes.whitelistingInfoText = "Ask less often when I pay in this shop";
    cRes.challengeInfoTextIndicator = "Y";
    return cRes;
}

CRes longCRes(UiType kind) {
    const auto text = [](std::size_t length) {
        std::string words;
        while (words.size() < length)
            words += "words of a bank ";
        words.resize(length, '.');
        words.back() = '.';
        return words;
    };
    CRes cRes = fullCRes(kind);
    for (auto label :
         {&CRes::challengeInfoHeader, &CRes::challengeInfoLabel, &CRes::whyInfoLabel, &CRes::expandInfoLabel,
          &CRes::submitAuthenticationLabel, &CRes::resendInformationLabel, &CRes::oobContinueLabel})
        cRes.*label = text(45);
    cRes.challengeInfoText = text(350);
    cRes.whyInfoText = text(256);
    cRes.expandInfoText = text(256);
    cRes.whitelistingInfoText = text(64);
    cRes.challengeSelectInfo.emplace(8, StringTable{{"key", text(45)}});
    return cRes;
}

CRes bareCRes(UiType kind) {
    CRes cRes = screenCRes(kind);
    for (auto part : {&CRes::challengeInfoHeader, &CRes::challengeInfoLabel, &CRes::whyInfoLabel,
                      &CRes::expandInfoLabel, &CRes::resendInformationLabel})
        (cRes.*part).reset();
    return cRes;
}

std::vector<std::string> geometryFaults(const UIView& screen) {
    std::vector<Leaf> leaves;
    collectLeaves(screen, screen, leaves);
    std::vector<std::string> faults;
    for (std::size_t index = 0; index < leaves.size(); ++index) {
        const auto& [view, frame] = leaves[index];
        const std::string name = nameOf(*view) + " " + written(frame);
        if (frame.origin.x < 0 || CGRectGetMaxX(frame) > screen.bounds().size.width)
            faults.push_back(name + " lies beyond the screen's sides");
        if (!hasRoom(*view)) faults.push_back(name + " has not room for its text");
        for (std::size_t other = 0; other < index; ++other)
            if (overlap(frame, leaves[other].frame))
                faults.push_back(name + " overlaps " + nameOf(*leaves[other].view) + " " +
                                 written(leaves[other].frame));
    }
    if (leaves.empty()) faults.push_back("the screen is empty");
    return faults;
}

} // namespace korvane
