#include "tests/Ui/Gallery.h"

#include <sstream>

namespace korvane {

namespace {

struct Leaf {
    const UIView* view;
    CGRect frame; ///< in the screen's coordinates
};

/// A control or a text counts as one view, whatever it is made of.
void collectLeaves(const UIView& view, const UIView& screen, std::vector<Leaf>& leaves) {
    for (const auto& inner : view.subviews()) {
        const CGRect frame = inner->convertTo(&screen, CGRect{{0, 0}, inner->bounds().size});
        if (inner->isHidden()) continue;
        const bool isLeaf = inner->subviews().empty() || dynamic_cast<const UIControl*>(inner.get()) ||
                            dynamic_cast<const UITextView*>(inner.get());
        if (!isLeaf)
            collectLeaves(*inner, screen, leaves);
        else if (frame.size.width > 0 && frame.size.height > 0)
            leaves.push_back({inner.get(), frame});
    }
}

bool overlap(const CGRect& a, const CGRect& b) {
    return a.origin.x < CGRectGetMaxX(b) && b.origin.x < CGRectGetMaxX(a) && a.origin.y < CGRectGetMaxY(b) &&
           b.origin.y < CGRectGetMaxY(a);
}

std::string written(const Leaf& leaf) {
    const auto& [origin, size] = leaf.frame;
    std::ostringstream text;
    text << leaf.view->accessibilityIdentifier() << '(' << origin.x << ' ' << origin.y << ' ' << size.width
         << ' ' << size.height << ')';
    return text.str();
}

/// In height, and for one line in width.
bool hasRoom(const UILabel& label) {
    if (label.text().empty()) return true;
    const CGSize own = label.bounds().size;
    const double width = label.intrinsicContentSize().width * label.scaleFactor();
    return label.fittingSize(own.width).height <= own.height &&
           (label.numberOfLines() != 1 || width <= own.width + 0.01);
}

/// Title and image lie in the button and apart.
bool hasRoom(const UIButton& button) {
    if (button.currentTitle().empty()) return true;
    const auto isInside = [own = button.bounds().size](const CGRect& part) {
        return part.origin.x >= 0 && CGRectGetMaxX(part) <= own.width && part.origin.y >= 0 &&
               CGRectGetMaxY(part) <= own.height;
    };
    const CGRect title = button.titleLabel()->frame();
    const bool hasImage = button.imageView() && button.imageView()->image();
    const CGRect image = hasImage ? button.imageView()->frame() : CGRect{};
    return hasRoom(*button.titleLabel()) && isInside(title) && isInside(image) && !overlap(title, image);
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
    static const std::vector<GalleryScreen> screens{{"320 x 568", {320, 568}, {20, 0, 0, 0}},
                                                    {"390 x 844", {390, 844}, {47, 0, 34, 0}},
                                                    {"568 x 320", {568, 320}, {}},
                                                    {"844 x 390", {844, 390}, {0, 47, 21, 47}}};
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

std::vector<std::string> geometryFaults(const UIView& screen) {
    std::vector<Leaf> leaves;
    collectLeaves(screen, screen, leaves);
    std::vector<std::string> faults;
    for (auto leaf = leaves.begin(); leaf != leaves.end(); ++leaf) {
        if (leaf->frame.origin.x < 0 || CGRectGetMaxX(leaf->frame) > screen.bounds().size.width)
            faults.push_back(written(*leaf) + " lies beyond the screen's sides");
        if (!hasRoom(*leaf->view)) faults.push_back(written(*leaf) + " has not room for its text");
        for (auto other = leaves.begin(); other != leaf; ++other)
            if (overlap(leaf->frame, other->frame))
                faults.push_back(written(*leaf) + " overlaps " + written(*other));
    }
    if (leaves.empty()) faults.emplace_back("the screen is empty");
    return faults;
}

} // namespace korvane
