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
    [[nodiscard]] bool isScrollEnabled() const noexcept { return isScrollEnabled_; }
    void setScrollEnabled(bool isEnabled) { assign(isScrollEnabled_, isEnabled, UIViewChange::paint); }
    /// Moves as little as shows the rectangle of the content.
    void scrollRectToVisible(const CGRect& rect, UIAnimated animated);

protected:
    virtual void didScroll() {}

private:
    std::weak_ptr<UIScrollViewDelegate> delegate_;
    CGSize contentSize_;
    UIEdgeInsets contentInset_;
    bool isScrollEnabled_ = true;
};

} // namespace korvane
