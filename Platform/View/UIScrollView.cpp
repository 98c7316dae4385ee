#include "Platform/View/UIScrollView.h"

#include <algorithm>

namespace korvane {

void UIScrollView::setContentOffset(CGPoint offset, UIAnimated animated) {
    constexpr Seconds kScroll{0.3};
    if (offset == contentOffset()) return;
    const auto move = [&] { setBounds({offset, bounds().size}); };
    if (animated == UIAnimated::yes)
        animate(kScroll, move);
    else
        move();
    didScroll();
    if (const auto delegate = delegate_.lock()) delegate->scrollViewDidScroll(*this);
}

void UIScrollView::scrollRectToVisible(const CGRect& rect, UIAnimated animated) {
    const auto moved = [](double from, double extent, double start, double end) {
        if (start < from) return start;
        return end > from + extent ? end - extent : from;
    };
    const CGRect seen = UIEdgeInsetsInsetRect(bounds(), coveredInset_);
    const CGPoint free{moved(seen.origin.x, seen.size.width, rect.origin.x, CGRectGetMaxX(rect)),
                       moved(seen.origin.y, seen.size.height, rect.origin.y, CGRectGetMaxY(rect))};
    const double least = std::min(-contentInset_.top, contentOffset().y);
    setContentOffset({free.x - coveredInset_.left, std::max(least, free.y - coveredInset_.top)}, animated);
}

double UIScrollView::mostOffset() const {
    return contentSize().height + contentInset_.bottom - bounds().size.height;
}

bool UIScrollView::canScroll() const {
    return isScrollEnabled_ && mostOffset() > -contentInset_.top;
}

void UIScrollView::scrollTo(double offset) {
    const double least = -contentInset_.top;
    setContentOffset({contentOffset().x, std::clamp(offset, least, std::max(least, mostOffset()))});
}

} // namespace korvane
