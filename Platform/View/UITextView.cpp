#include "Platform/View/UITextView.h"

namespace korvane {

CGSize UITextView::sizeThatFits(CGSize size) const {
    const UIEdgeInsets& inset = textContainerInset_;
    const double sides = inset.left + inset.right + 2 * lineFragmentPadding_;
    const double room = size.width == kUnbounded ? kUnbounded : size.width - sides;
    const CGSize lines = measuredText(text(), shownFont(), room, 0);
    return {lines.width + sides, lines.height + inset.top + inset.bottom};
}

} // namespace korvane
