#include "Platform/View/UIButton.h"

#include <algorithm>

namespace korvane {

UIButton::UIButton() : titleLabel_(std::make_shared<UILabel>()) {
    titleLabel_->setFont(UIFont::systemFont(18));
    addSubview(titleLabel_);
}

const std::string& UIButton::title(ControlState forState) const {
    const std::string& own = look(forState).title;
    return own.empty() ? look(ControlState::normal).title : own;
}

UIColor UIButton::titleColor(ControlState forState) const {
    const auto& own = look(forState).titleColor;
    return own ? *own : look(ControlState::normal).titleColor.value_or(tintColor());
}

UIImagePtr UIButton::image(ControlState forState) const {
    const UIImagePtr& own = look(forState).image;
    return own ? own : look(ControlState::normal).image;
}

template <class Value>
void UIButton::setLook(Value Look::*part, Value value, ControlState state) {
    Value& stored = looks_[static_cast<std::size_t>(state)].*part;
    if (assign(stored, std::move(value), UIViewChange::paint)) stateDidChange();
}

void UIButton::setTitle(std::string title, ControlState forState) {
    setLook(&Look::title, std::move(title), forState);
}

void UIButton::setTitleColor(std::optional<UIColor> color, ControlState forState) {
    setLook(&Look::titleColor, std::move(color), forState);
}

void UIButton::setImage(UIImagePtr image, ControlState forState) {
    setLook(&Look::image, std::move(image), forState);
}

/// What is shown follows the state; a change of its size asks for layout by itself.
void UIButton::stateDidChange() {
    titleLabel_->setText(currentTitle());
    titleLabel_->setTextColor(titleColor(state()));
    const UIImagePtr shown = currentImage();
    if (shown && !imageView_) {
        imageView_ = std::make_shared<UIImageView>();
        imageView_->setContentMode(UIViewContentMode::scaleAspectFit);
        insertSubview(imageView_, 0);
    }
    if (imageView_) imageView_->setImage(shown);
}

void UIButton::setInsets(UIEdgeInsets& insets, const UIEdgeInsets& value) {
    if (assign(insets, value, UIViewChange::content)) setNeedsLayout();
}

void UIButton::setContentEdgeInsets(const UIEdgeInsets& insets) {
    setInsets(contentEdgeInsets_, insets);
}

void UIButton::setTitleEdgeInsets(const UIEdgeInsets& insets) {
    setInsets(titleEdgeInsets_, insets);
}

void UIButton::setImageEdgeInsets(const UIEdgeInsets& insets) {
    setInsets(imageEdgeInsets_, insets);
}

void UIButton::setContentHorizontalAlignment(UIControlContentHorizontalAlignment alignment) {
    assign(alignment_, alignment, UIViewChange::layout);
}

/// A touch of the title's colour: the title stays as clear as it is.
std::optional<UIColor> UIButton::pressedTint() const {
    constexpr double kTouch = 0.12;
    if (!isHighlighted()) return std::nullopt;
    return titleLabel_->textColor().withAlphaComponent(kTouch);
}

CGSize UIButton::imageSize() const {
    return imageView_ ? imageView_->intrinsicContentSize() : CGSize{};
}

double UIButton::titleRoom(double width) const {
    return std::max(0.0, width - contentEdgeInsets_.left - contentEdgeInsets_.right - imageSize().width -
                             std::max(0.0, titleEdgeInsets_.left) - std::max(0.0, titleEdgeInsets_.right));
}

/// The shift that insets give to something of that alignment.
double UIButton::shift(const UIEdgeInsets& insets) const {
    switch (alignment_) {
    case UIControlContentHorizontalAlignment::center: return (insets.left - insets.right) / 2;
    case UIControlContentHorizontalAlignment::right: return -insets.right;
    case UIControlContentHorizontalAlignment::left:
    case UIControlContentHorizontalAlignment::fill: break;
    }
    return insets.left;
}

void UIButton::layoutSubviews() {
    const CGRect content = UIEdgeInsetsInsetRect(CGRect{{0, 0}, bounds().size}, contentEdgeInsets_);
    const CGSize image = imageSize();
    const double room = titleRoom(bounds().size.width);
    const CGSize fitting = titleLabel_->fittingSize(room);
    const CGSize title{std::min(fitting.width, room), std::min(fitting.height, content.size.height)};

    const double free = content.size.width - image.width - title.width;
    double x = content.origin.x;
    if (alignment_ == UIControlContentHorizontalAlignment::center) x += free / 2;
    if (alignment_ == UIControlContentHorizontalAlignment::right) x += free;
    const bool isMirrored = isRightToLeft();
    const auto place = [&](UIView& view, double left, CGSize size, const UIEdgeInsets& insets) {
        const double middle = content.origin.y + (content.size.height - size.height) / 2;
        const double leading = left + shift(insets);
        view.setFrame({{isMirrored ? bounds().size.width - leading - size.width : leading,
                        middle + (insets.top - insets.bottom) / 2},
                       size});
    };
    if (imageView_) place(*imageView_, x, image, imageEdgeInsets_);
    place(*titleLabel_, x + image.width, title, titleEdgeInsets_);
}

CGSize UIButton::sizeThatFits(CGSize size) const {
    const double sides = contentEdgeInsets_.left + contentEdgeInsets_.right;
    const CGSize image = imageSize();
    const double room = size.width == kUnbounded ? kUnbounded : titleRoom(size.width);
    const CGSize title = titleLabel_->fittingSize(room);
    const double titleInsets = std::max(0.0, titleEdgeInsets_.left) + std::max(0.0, titleEdgeInsets_.right);
    return {image.width + title.width + titleInsets + sides,
            std::max(image.height, title.height) + contentEdgeInsets_.top + contentEdgeInsets_.bottom};
}

} // namespace korvane
