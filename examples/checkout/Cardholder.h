#pragma once

#include "Platform/Qt/KorvaneHost.h"
#include "examples/checkout/Hand.h"

#include <QImage>
#include <QQuickWindow>

#include <functional>
#include <stdexcept>
#include <string>

namespace korvane::checkout {

/// The cardholder waited for something that did not come; `what()` says for what.
class Stuck : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Somebody who pays: finds what the screen shows by what a screen reader would read out, and acts with the
/// hand. Each act waits until its control can be reached, scrolling if need be. Main thread.
class Cardholder {
public:
    /// @param shots  the folder for pictures; it exists.
    Cardholder(QQuickWindow& window, QString shots);

    /// Begins a new payment, whose pictures have that name.
    void beginPayment(const QString& name);

    // On the shop's pages, by the names of their items.

    void tapItem(const QString& name);
    /// Goes there by the tabulator alone and presses Enter.
    void enterItem(const QString& name);
    void typeInto(const QString& name, const QString& text);
    /// As above, by keys alone.
    void typeIntoByKeys(const QString& name, const QString& text);

    // On the library's screens.

    /// Taps a button, a key or a choice, by its label.
    void tap(const std::string& label);
    /// Waits for a text that contains this and is drawn in sight: neither collapsed nor scrolled away.
    void see(const std::string& text);
    /// Types by the keys of the secure keyboard.
    void typeCode(const std::string& code);
    /// Puts the secure keyboard away.
    void closeKeyboard();
    /// Scrolls to the end and back.
    void lookAround();
    /// Enters a code into the field of the bank's page and presses its button, at the places
    /// where that page has them.
    void fillPage(const QString& code);

    // Either.

    /// Writes a picture of the device, once it stands still.
    void shoot(const QString& step);
    /// As above, of something that moves.
    void shootMoving(const QString& step);
    /// The whole window.
    void shootWindow(const QString& step);

    /// @throws Stuck when the time is over.
    static void waitUntil(const std::string& what, const std::function<bool()>& isTrue,
                          std::chrono::milliseconds limit = kPatience);

    static constexpr std::chrono::milliseconds kPatience{20000};

    [[nodiscard]] KorvaneHost& host() const noexcept { return host_; }

private:
    void goTo(const QString& name);
    [[nodiscard]] QQuickItem* item(const QString& name) const;
    [[nodiscard]] std::shared_ptr<UIView> reachable(const std::string& label) const;
    [[nodiscard]] QPointF placeOf(const UIView& view) const;
    /// What of a view's rectangle in the host is left by the items around it; empty if it is not drawn.
    [[nodiscard]] QRectF partInSight(const UIView& view) const;
    void tapView(const std::string& what, const std::function<std::shared_ptr<UIView>()>& find);
    void reveal(const std::string& what, const std::function<bool()>& isReached,
                const std::function<double()>& distance);
    void scroll(double distance);
    QImage grab() const;
    [[nodiscard]] QColor colourAt(QPointF place) const;
    void waitForStillness() const;
    /// Acts, and waits until the window looks otherwise and stands still again.
    void seeChange(const std::string& what, const std::function<void()>& act);
    void repaint() const;
    void save(const QImage& picture, const QString& step);

    QQuickWindow& window_;
    const QString shots_;
    KorvaneHost& host_;
    Hand hand_;
    QString payment_;
    int picture_ = 0;
};

} // namespace korvane::checkout
