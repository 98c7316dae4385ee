#pragma once

#include "Platform/Export.h"
#include "Platform/View/UIView.h"

namespace korvane {

class UIScrollView;

class KORVANE_EXPORT UIScrollViewDelegate {
public:
    virtual ~UIScrollViewDelegate() = default;

    virtual void scrollViewDidScroll(UIScrollView& /*scrollView*/) {}
};

/// A view that shows a part of something larger. A renderer moves it by `setContentOffset`. Main queue only.
///
/// For constraints it is as large as its frame and begins at the content's top left corner; `contentSize` is
/// its user's to set.
class KORVANE_EXPORT UIScrollView : public UIView {
public:
    using UIView::UIView;

    [[nodiscard]] UIViewKind kind() const noexcept override { return UIViewKind::scroll; }

    void setScrollDelegate(std::weak_ptr<UIScrollViewDelegate> delegate) { delegate_ = std::move(delegate); }

    /// The point of the content that is at the top left: the origin of `bounds()`.
    [[nodiscard]] CGPoint contentOffset() const noexcept { return bounds().origin; }
    void setContentOffset(CGPoint offset, UIAnimated animated = UIAnimated::no);
    [[nodiscard]] virtual CGSize contentSize() const { return contentSize_; }
    void setContentSize(CGSize size) { assign(contentSize_, size, UIViewChange::paint); }
    [[nodiscard]] const UIEdgeInsets& contentInset() const noexcept { return contentInset_; }
    void setContentInset(const UIEdgeInsets& insets) { assign(contentInset_, insets, UIViewChange::content); }
    /// How much of what is seen lies under things that stay in their place, as a bar does: what is scrolled
    /// into sight comes out from under them.
    [[nodiscard]] const UIEdgeInsets& coveredInset() const noexcept { return coveredInset_; }
    void setCoveredInset(const UIEdgeInsets& insets) { assign(coveredInset_, insets, UIViewChange::paint); }
    [[nodiscard]] bool isScrollEnabled() const noexcept { return isScrollEnabled_; }
    void setScrollEnabled(bool isEnabled) { assign(isScrollEnabled_, isEnabled, UIViewChange::paint); }
    /// Moves as little as shows the rectangle of the content.
    void scrollRectToVisible(const CGRect& rect, UIAnimated animated);
    /// Whether a user can scroll, and has something to scroll.
    [[nodiscard]] bool canScroll() const;
    /// Scrolls as a user does, to an offset from the top or by so many points, as far as the content goes.
    void scrollTo(double offset);
    void scrollBy(double points) { scrollTo(contentOffset().y + points); }

protected:
    virtual void didScroll() {}

private:
    [[nodiscard]] double mostOffset() const;

    std::weak_ptr<UIScrollViewDelegate> delegate_;
    CGSize contentSize_;
    UIEdgeInsets contentInset_;
    UIEdgeInsets coveredInset_;
    bool isScrollEnabled_ = true;
};

} // namespace korvane
