#include "Platform/Qt/Parts/PartFactory.h"

#include "Platform/Failure.h"
#include "Platform/Qt/Parts/Picture.h"
#include "Platform/Qt/Parts/Values.h"
#include "Platform/Qt/Parts/ViewItem.h"
#include "Platform/Qt/Web/PageEngine.h"
#include "Platform/Security/Secret.h"
#include "Platform/View/UIActivityIndicatorView.h"
#include "Platform/View/UIImageView.h"
#include "Platform/View/UILabel.h"
#include "Platform/View/UINavigationBar.h"
#include "Platform/View/UITableView.h"
#include "Platform/View/UITextField.h"
#include "Platform/View/UITextView.h"
#include "Platform/View/UIVisualEffectView.h"
#include "Platform/View/UIWindow.h"
#include "Platform/View/WKWebView.h"

#include <QFontMetricsF>
#include <QQmlEngine>

#include <algorithm>
#include <array>
#include <cmath>

namespace korvane {

namespace {

// Over the item's subviews, which are numbered from 0.
constexpr double kContentLevel = -1;
constexpr double kOverlayLevel = 1e6;

UIUserInterfaceStyle styleOf(const UIView& view) {
    return view.traitCollection().userInterfaceStyle;
}

/// The text comes last, since each change of what it looks like has it laid out anew.
void setText(QQuickItem& part, const UIView& view, const std::string& text, const UIFont& font,
             const QColor& color, NSTextAlignment alignment) {
    part.setProperty("font", drawnFont(font));
    part.setProperty("color", color);
    switch (alignment) {
    case NSTextAlignment::natural:
        // By itself a text stands where its own direction begins, which is not always where the screen's does.
        if (view.isRightToLeft()) part.setProperty("horizontalAlignment", Qt::AlignRight);
        break;
    case NSTextAlignment::left: part.setProperty("horizontalAlignment", Qt::AlignLeft); break;
    case NSTextAlignment::center: part.setProperty("horizontalAlignment", Qt::AlignHCenter); break;
    case NSTextAlignment::right: part.setProperty("horizontalAlignment", Qt::AlignRight); break;
    }
    part.setProperty("text", drawnText(text));
}

void updateLabel(QQuickItem& part, const UIView& view) {
    const auto& label = static_cast<const UILabel&>(view);
    const UIFont font = label.shownFont();
    const double shrunk = label.scaleFactor();
    // Whole pixels: what is shrunk to fit must not be rounded up.
    const double size = shrunk < 1 ? std::floor(font.pointSize() * shrunk) : font.pointSize();
    part.setProperty("lines", label.numberOfLines());
    setText(part, view, label.text(), font.withSize(size), asColor(label.textColor(), styleOf(view)),
            label.textAlignment());
}

void updateExtent(QQuickItem& part, const UIScrollView& scroll) {
    part.setProperty("contentHeight", scroll.contentSize().height + scroll.contentInset().bottom);
    part.setProperty("viewHeight", scroll.bounds().size.height);
    part.setProperty("viewOffset", scroll.contentOffset().y);
}

/// The mark keeps out from under bars and what the system covers.
void updateScroll(QQuickItem& part, const UIView& view) {
    const auto& scroll = static_cast<const UIScrollView&>(view);
    const UIEdgeInsets covered = scroll.coveredInset();
    const UIEdgeInsets safe = view.safeAreaInsets();
    const bool isMirrored = view.isRightToLeft();
    updateExtent(part, scroll);
    part.setProperty("topCover", covered.top);
    part.setProperty("bottomCover", covered.bottom);
    part.setProperty("sideCover", isMirrored ? safe.left : safe.right);
    part.setProperty("mirrored", isMirrored);
    part.setProperty("color", asColor(UIColor::secondaryLabel(), styleOf(view)));
}

void updateTextView(QQuickItem& part, const UIView& view) {
    const auto& text = static_cast<const UITextView&>(view);
    const UIEdgeInsets& inset = text.textContainerInset();
    updateExtent(part, text);
    part.setProperty("topPadding", inset.top);
    part.setProperty("leftPadding", inset.left + text.lineFragmentPadding());
    part.setProperty("rightPadding", inset.right + text.lineFragmentPadding());
    part.setProperty("scrollColor", asColor(UIColor::secondaryLabel(), styleOf(view)));
    setText(part, view, text.text(), text.shownFont(), asColor(text.textColor(), styleOf(view)),
            text.textAlignment());
}

/// A field's text, or a part of it, on its one line.
QString drawnLine(std::string_view text) {
    std::string line = onOneLine(text);
    QString drawn = drawnText(line);
    cleanse(line);
    return drawn;
}

void updateTextField(QQuickItem& part, const UIView& view) {
    const auto& field = static_cast<const UITextField&>(view);
    const UIUserInterfaceStyle style = styleOf(view);
    const QString text = drawnLine(field.text());
    setText(part, view, {}, field.shownFont(), asColor(field.textColor(), style), field.textAlignment());
    part.setProperty("text", text);
    part.setProperty("caretColor", asColor(field.tintColor(), style));
    part.setProperty("caretPlace", QFontMetricsF(drawnFont(field.shownFont())).horizontalAdvance(text));
    part.setProperty("editing", field.isFirstResponder());
    part.setProperty("room", field.textInset());
    part.setProperty("corner", field.layer().cornerRadius());
    part.setProperty("bordered", field.borderStyle() != UITextBorderStyle::none);
    part.setProperty("lineColor", asColor(UIColor::separator(), style));
}

void updatePicture(QQuickItem& part, const UIView& view) {
    const auto& image = static_cast<const UIImageView&>(view);
    static_cast<Picture&>(part).show(image.image(), view.contentMode(), image.contentInset(),
                                     asColor(view.tintColor(), styleOf(view)), styleOf(view));
}

void updateBar(QQuickItem& part, const UIView& view) {
    const auto& bar = static_cast<const UINavigationBar&>(view);
    const UIUserInterfaceStyle style = styleOf(view);
    part.setProperty("color", asColor(bar.barTintColor().value_or(UIColor::systemBackground()), style));
    part.setProperty("coverage", bar.isTranslucent() && !bar.barTintColor() ? 0.96 : 1.0);
    const auto window = view.window();
    const CGRect place = view.convertTo(nullptr, view.bounds());
    part.setProperty("above", std::max(0.0, place.origin.y));
    part.setProperty("before", std::max(0.0, place.origin.x));
    part.setProperty("behind", window ? window->bounds().size.width - CGRectGetMaxX(place) : 0);
    part.setProperty("lineColor", asColor(UIColor::separator(), style));
}

void updateCell(QQuickItem& part, const UIView& view) {
    const auto table = std::dynamic_pointer_cast<UITableView>(view.superview());
    const bool hasLine = table && table->separatorStyle() == UITableViewCellSeparatorStyle::singleLine;
    part.setProperty("lineColor",
                     hasLine ? asColor(UIColor::separator(), styleOf(view)) : QColor(Qt::transparent));
}

void updateSpinner(QQuickItem& part, const UIView& view) {
    const auto& indicator = static_cast<const UIActivityIndicatorView&>(view);
    part.setProperty("color", asColor(indicator.color().value_or(UIColor::secondaryLabel()), styleOf(view)));
    part.setProperty("plateColor", asColor(indicator.plateColor(), styleOf(view)));
    part.setProperty("running", indicator.isAnimating());
}

/// Nothing of what lies behind may be read, so that the veil is whole.
void updateVeil(QQuickItem& part, const UIView& view) {
    part.setProperty("color", asColor(UIColor::systemBackground(), styleOf(view)));
}

void updatePage(QQuickItem& part, const UIView&) {
    static_cast<Page&>(part).synchronize();
}

struct Row {
    UIViewKind kind;
    /// The QML file; null for kinds that are made in C++.
    const char* file;
    double level;
    void (*update)(QQuickItem& part, const UIView& view);
};

constexpr std::array<Row, 11> kRows{{
    {UIViewKind::label, "Label", kContentLevel, updateLabel},
    {UIViewKind::textView, "TextView", kContentLevel, updateTextView},
    {UIViewKind::textField, "TextField", kContentLevel, updateTextField},
    {UIViewKind::image, nullptr, kContentLevel, updatePicture},
    {UIViewKind::scroll, "ScrollMark", kOverlayLevel, updateScroll},
    {UIViewKind::table, "ScrollMark", kOverlayLevel, updateScroll},
    {UIViewKind::tableCell, "Cell", kOverlayLevel, updateCell},
    {UIViewKind::navigationBar, "Bar", kContentLevel, updateBar},
    {UIViewKind::activityIndicator, "Spinner", kContentLevel, updateSpinner},
    {UIViewKind::visualEffect, "Veil", kContentLevel, updateVeil},
    {UIViewKind::webView, nullptr, kContentLevel, updatePage},
}};

const Row* rowOf(UIViewKind kind) {
    const auto row = std::ranges::find(kRows, kind, &Row::kind);
    return row == kRows.end() ? nullptr : &*row;
}

} // namespace

QQmlComponent& PartFactory::component(const std::string& file) {
    auto& component = components_[file];
    if (!component) {
        const QString address = QStringLiteral("qrc:/korvane/parts/%1.qml").arg(QString::fromStdString(file));
        component =
            std::make_unique<QQmlComponent>(&engine_, QUrl(address), QQmlComponent::PreferSynchronous);
    }
    if (!component->isReady()) fatalError(component->errorString().toStdString());
    return *component;
}

QQuickItem* PartFactory::create(const std::string& file) {
    auto* const item = qobject_cast<QQuickItem*>(component(file).create());
    if (!item) fatalError("The part " + file + " is no item.");
    QQmlEngine::setObjectOwnership(item, QQmlEngine::CppOwnership);
    return item;
}

QQuickItem* PartFactory::make(const std::string& file, QQuickItem& in) {
    auto* const part = create(file);
    part->setParent(&in);
    part->setParentItem(&in);
    return part;
}

ViewItem* PartFactory::makeItem(const UIView& view) {
    if (view.accessibilityRole() == UIAccessibilityRole::none) return new ViewItem;
    return static_cast<ViewItem*>(create("View"));
}

/// What QML makes has a class of its own.
bool PartFactory::suits(const ViewItem& item, const UIView& view) {
    const bool isHeard = item.metaObject() != &ViewItem::staticMetaObject;
    return isHeard == (view.accessibilityRole() != UIAccessibilityRole::none);
}

QQuickItem* PartFactory::makeContent(const UIView& view, ViewItem& in) {
    const Row* const row = rowOf(view.kind());
    const PageEngine* const pages = PageEngine::ofBuild();
    if (!row || (view.kind() == UIViewKind::webView && !pages)) return nullptr;
    QQuickItem* part = nullptr;
    if (view.kind() == UIViewKind::image) part = new Picture(pictures_, &in);
    if (view.kind() == UIViewKind::webView)
        part = pages->makePage(engine_, std::static_pointer_cast<WKWebView>(in.view()), in);
    if (!part) part = make(row->file, in);
    part->setZ(row->level);
    return part;
}

void PartFactory::updateContent(QQuickItem& content, const UIView& view) const {
    rowOf(view.kind())->update(content, view);
}

} // namespace korvane
