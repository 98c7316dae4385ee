#include "Platform/View/UINavigationBar.h"

#include "Platform/View/UIButton.h"

#include <algorithm>
#include <cmath>

namespace korvane {

namespace {

/// The room between what is at the end and the bar's edge, and beside the title.
constexpr double kMargin = 8;

/// How much a long title shrinks before it is cut short.
constexpr double kSmallestTitle = 0.7;

/// A button follows its title; another view may bring a size of its own.
CGSize sizeOf(const UIView& view, double most) {
    const bool isSized = view.kind() != UIViewKind::button && view.bounds().size.width > 0;
    const CGSize own = isSized ? view.bounds().size : view.intrinsicContentSize();
    return {own.width, std::min(own.height, most)};
}

} // namespace

void UINavigationItem::changed() {
    const auto tell = onChange_;
    if (tell) tell();
}

void UINavigationItem::setTitle(std::string title) {
    if (title == title_) return;
    title_ = std::move(title);
    changed();
}

void UINavigationItem::setRightBarButtonItem(std::shared_ptr<UIBarButtonItem> item) {
    if (item == right_) return;
    right_ = std::move(item);
    changed();
}

UINavigationBar::UINavigationBar() : titleLabel_(std::make_shared<UILabel>()) {
    titleLabel_->setFont(UIFont::systemFont(17, UIFontWeight::semibold));
    titleLabel_->setTextAlignment(NSTextAlignment::center);
    titleLabel_->setAccessibilityRole(UIAccessibilityRole::header);
    titleLabel_->setAdjustsFontForContentSizeCategory(false);
    titleLabel_->setAdjustsFontSizeToFitWidth(true);
    titleLabel_->setMinimumScaleFactor(kSmallestTitle);
    addSubview(titleLabel_);
}

UINavigationBar::~UINavigationBar() {
    for (const auto& item : items_)
        item->onChange_ = nullptr;
}

void UINavigationBar::setItems(std::vector<std::shared_ptr<UINavigationItem>> items) {
    if (items == items_) return;
    for (const auto& item : items_)
        item->onChange_ = nullptr;
    items_ = std::move(items);
    for (const auto& item : items_)
        item->onChange_ = [this] { showTopItem(); };
    showTopItem();
}

std::shared_ptr<UINavigationItem> UINavigationBar::topItem() const {
    return items_.empty() ? nullptr : items_.back();
}

void UINavigationBar::setTitleTextAttributes(const UITitleTextAttributes& attributes) {
    attributes_ = attributes;
    if (attributes.font) titleLabel_->setFont(*attributes.font);
    if (attributes.foregroundColor) titleLabel_->setTextColor(*attributes.foregroundColor);
}

void UINavigationBar::showTopItem() {
    const auto item = topItem();
    titleLabel_->setText(item ? item->title() : "");
    showAtEnd(item && item->rightBarButtonItem() ? item->rightBarButtonItem()->customView() : nullptr);
    setNeedsLayout();
}

void UINavigationBar::showAtEnd(const std::shared_ptr<UIView>& view) {
    if (view == rightView_) return;
    if (rightView_ && rightView_->superview().get() == this) rightView_->removeFromSuperview();
    rightView_ = view;
    if (view) addSubview(view);
    // A bar has one height, whatever the user's size of text.
    if (const auto* control = dynamic_cast<const UIButton*>(view.get()))
        control->titleLabel()->setAdjustsFontForContentSizeCategory(false);
}

/// A button at the end is touched up to the bar's edges.
std::shared_ptr<UIView> UINavigationBar::hitTest(CGPoint point) {
    const auto hit = UIView::hitTest(point);
    if (!hit || !rightView_ || hit == rightView_) return hit;
    const CGRect place = rightView_->frame();
    const CGRect reach{{place.origin.x - kMargin, 0}, {place.size.width + 2 * kMargin, bounds().size.height}};
    const CGPoint middle{place.size.width / 2, place.size.height / 2};
    return CGRectContainsPoint(reach, point) ? rightView_->hitTest(middle) : hit;
}

/// The end comes first. The title stands in the bar's middle as long as it has room there, and beside it rather
/// than small.
void UINavigationBar::layoutSubviews() {
    UIView::layoutSubviews();
    const CGSize bar = bounds().size;
    const bool isMirrored = isRightToLeft();
    double taken = kMargin;
    if (rightView_) {
        const CGSize size = sizeOf(*rightView_, bar.height);
        const double x = isMirrored ? kMargin : bar.width - kMargin - size.width;
        rightView_->setFrame({{x, (bar.height - size.height) / 2}, size});
        taken = size.width + 2 * kMargin;
    }
    const double most = std::max(0.0, bar.width - taken - kMargin);
    const double own = std::ceil(titleLabel_->intrinsicContentSize().width);
    const double width = std::clamp(own, std::clamp(bar.width - 2 * taken, 0.0, most), most);
    const double start = std::min((bar.width - width) / 2, bar.width - taken - width);
    titleLabel_->setFrame({{isMirrored ? bar.width - start - width : start, 0}, {width, bar.height}});
}

} // namespace korvane
