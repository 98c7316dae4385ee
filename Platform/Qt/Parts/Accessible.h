#pragma once

namespace korvane {

/// While it lives, assistive technology hears of `ViewItem`s as their views are: a control is one thing,
/// whatever it is made of, texts and images cannot be pressed, and what opens a section says whether that is
/// open. One at a time. Main queue only.
class AccessibleItems {
public:
    AccessibleItems();
    AccessibleItems(const AccessibleItems&) = delete;
    AccessibleItems& operator=(const AccessibleItems&) = delete;
    ~AccessibleItems();
};

} // namespace korvane
