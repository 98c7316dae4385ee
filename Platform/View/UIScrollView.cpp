#include "Platform/View/UIScrollView.h"

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
    const CGRect& seen = bounds();
    setContentOffset({moved(seen.origin.x, seen.size.width, rect.origin.x, CGRectGetMaxX(rect)),
                      moved(seen.origin.y, seen.size.height, rect.origin.y, CGRectGetMaxY(rect))},
                     animated);
}

} // namespace korvane
