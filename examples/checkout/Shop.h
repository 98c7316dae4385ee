#pragma once

#include "examples/checkout/Payment.h"

#include <QObject>
#include <QTimer>
#include <QVariant>

#include <memory>

namespace korvane::checkout {

/// The shop behind its pages: the cart, the card form, the payment under way and its result, and how the
/// device is held and set. Everything that pages show and ask for goes through here. Main thread.
class Shop final : public QObject {
    Q_OBJECT
    Q_PROPERTY(int page READ page NOTIFY pageChanged)
    /// The cart: `name`, `detail`, `price`, `picture` each.
    Q_PROPERTY(QVariantList lines READ lines CONSTANT)
    Q_PROPERTY(QString total READ total CONSTANT)
    /// The test cards: `name`, `number`, `title`, `advice` each.
    Q_PROPERTY(QVariantList cards READ cards CONSTANT)
    Q_PROPERTY(QString number READ number WRITE setNumber NOTIFY formChanged)
    Q_PROPERTY(QString expiry READ expiry WRITE setExpiry NOTIFY formChanged)
    /// What the card of the number does, or what is wrong with the form.
    Q_PROPERTY(QString hint READ hint NOTIFY formChanged)
    /// Whether the hint tells of something wrong that stands there in full.
    Q_PROPERTY(bool hintWarns READ hintWarns NOTIFY formChanged)
    Q_PROPERTY(bool canPay READ canPay NOTIFY formChanged)
    /// The result: `picture`, `title`, `words`, `wayOn` (its button's text), and `facts` with `name` and `value` each.
    Q_PROPERTY(QVariantMap result READ result NOTIFY pageChanged)
    Q_PROPERTY(QStringList themes READ themes CONSTANT)
    Q_PROPERTY(int theme READ theme WRITE setTheme NOTIFY themeChanged)
    Q_PROPERTY(bool dark READ isDark NOTIFY themeChanged)
    Q_PROPERTY(double textScale READ textScale NOTIFY themeChanged)
    Q_PROPERTY(bool challengeBarDark READ isChallengeBarDark NOTIFY themeChanged)
    Q_PROPERTY(bool landscape READ isLandscape NOTIFY turned)

public:
    enum Page { CartPage, CardPage, WaitingPage, ResultPage };

    explicit Shop(Acs& acs);

    [[nodiscard]] int page() const noexcept { return page_; }
    [[nodiscard]] QVariantList lines() const;
    [[nodiscard]] QString total() const;
    [[nodiscard]] QVariantList cards() const;
    [[nodiscard]] const QString& number() const noexcept { return number_; }
    /// Takes the digits of a number that is not too long, with blanks or without; refuses all else.
    void setNumber(const QString& number);
    [[nodiscard]] const QString& expiry() const noexcept { return expiry_; }
    /// Takes what a month and a year can begin with, with the slash or without; refuses all else.
    void setExpiry(const QString& expiry);
    [[nodiscard]] QString hint() const;
    [[nodiscard]] bool hintWarns() const;
    [[nodiscard]] bool canPay() const;
    [[nodiscard]] QVariantMap result() const;
    [[nodiscard]] const Outcome& outcome() const noexcept { return outcome_; }
    [[nodiscard]] QStringList themes() const;
    [[nodiscard]] int theme() const noexcept { return theme_; }
    void setTheme(int theme);
    [[nodiscard]] bool isDark() const noexcept;
    [[nodiscard]] double textScale() const noexcept;
    [[nodiscard]] bool isChallengeBarDark() const noexcept;
    [[nodiscard]] bool isLandscape() const noexcept { return isLandscape_; }

public slots:
    void toCart() { show(CartPage); }
    void toCard() { show(CardPage); }
    /// Fills the form with a test card.
    void choose(const QString& number);
    void pay();
    /// An empty form, and the cart.
    void startOver();
    void turn();
    /// Whether a screen of the library stands.
    void challengeStands(bool isStanding);

signals:
    void pageChanged();
    void formChanged();
    void themeChanged();
    void turned();

private:
    void show(Page page);
    void paymentEnded(const Outcome& outcome);

    Acs& acs_;
    Page page_ = CartPage;
    QString number_;
    QString expiry_;
    int theme_ = 0;
    bool isLandscape_ = false;
    std::shared_ptr<Payment> payment_;
    Outcome outcome_;
    QTimer silence_;
};

} // namespace korvane::checkout
