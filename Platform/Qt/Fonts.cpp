#include "Platform/Qt/Fonts.h"

#include "Platform/View/DrawnPart.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QTextLayout>

#include <algorithm>
#include <array>
#include <cmath>
#include <deque>
#include <map>
#include <mutex>
#include <utility>

namespace korvane {

namespace {

struct Weight {
    double atLeast;
    QFont::Weight weight;
};

/// From the heaviest, each from the middle between its neighbours on.
constexpr std::array<Weight, 9> kWeights{{{0.6, QFont::Black},
                                          {0.48, QFont::ExtraBold},
                                          {0.35, QFont::Bold},
                                          {0.27, QFont::DemiBold},
                                          {0.12, QFont::Medium},
                                          {-0.2, QFont::Normal},
                                          {-0.5, QFont::Light},
                                          {-0.7, QFont::ExtraLight},
                                          {-1e9, QFont::Thin}}};

/// What Qt's text layout can hold, in points.
constexpr double kWidest = 8e6;

/// Texts of so many bytes are measured once for each width, since a layout asks for the same again and again;
/// so many answers are kept. What people type is shorter, and is not kept.
constexpr std::size_t kLongText = 256;
constexpr std::size_t kMostAnswers = 48;

/// What a measurer is asked.
struct Question {
    QString text;
    QFont font;
    double maximumWidth;
    int maximumLines;
    friend bool operator==(const Question&, const Question&) = default;
};

CGSize measured(const Question& question) {
    QTextLayout layout(question.text, question.font);
    const bool isBroken = question.maximumWidth < kWidest && question.maximumLines != 1;
    QTextOption option;
    option.setWrapMode(isBroken ? QTextOption::WrapAtWordBoundaryOrAnywhere : QTextOption::ManualWrap);
    layout.setTextOption(option);
    CGSize size;
    int lines = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(std::min(question.maximumWidth, kWidest));
        size.width = std::max(size.width, std::min(line.naturalTextWidth(), question.maximumWidth));
        size.height += std::ceil(line.height());
        if (++lines == question.maximumLines) break;
    }
    layout.endLayout();
    return size;
}

std::vector<std::string> asTexts(const QStringList& list) {
    std::vector<std::string> texts;
    texts.reserve(static_cast<std::size_t>(list.size()));
    for (const QString& text : list)
        texts.push_back(text.toStdString());
    return texts;
}

/// A name is a family's, or a family's with a style behind it.
QFont findNamed(const QString& name) {
    const QStringList families = QFontDatabase::families();
    if (families.contains(name, Qt::CaseInsensitive)) return QFont(name);
    for (const QString& family : families) {
        if (!name.startsWith(family + u' ', Qt::CaseInsensitive)) continue;
        const QString style = name.mid(family.size() + 1);
        if (!QFontDatabase::styles(family).contains(style, Qt::CaseInsensitive)) continue;
        QFont font(family);
        font.setStyleName(style);
        return font;
    }
    return QFont(name);
}

/// As of the first question about a name: every text that is measured asks.
QFont named(const QString& name) {
    static std::mutex mutex;
    static std::map<QString, QFont> found;
    const std::scoped_lock lock(mutex);
    const auto known = found.find(name);
    return known == found.end() ? found.emplace(name, findNamed(name)).first->second : known->second;
}

} // namespace

std::vector<std::string> QtFonts::familyNames() const {
    return asTexts(QFontDatabase::families());
}

std::vector<std::string> QtFonts::fontNamesForFamilyName(const std::string& family) const {
    const QString name = QString::fromStdString(family);
    QStringList names;
    for (const QString& style : QFontDatabase::styles(name))
        names.append(name + u' ' + style);
    names.sort();
    return asTexts(names);
}

std::string QtFonts::systemFontDescription(double size) const {
    return QGuiApplication::font().family().toStdString() + " " + std::to_string(std::lround(size));
}

QFont drawnFont(const UIFont& font) {
    QFont drawn =
        font.fontName().empty() ? QGuiApplication::font() : named(QString::fromStdString(font.fontName()));
    drawn.setPixelSize(std::max(1, static_cast<int>(std::lround(font.pointSize()))));
    const auto weight =
        std::ranges::find_if(kWeights, [&font](const Weight& row) { return font.weight() >= row.atLeast; });
    if (drawn.styleName().isEmpty()) drawn.setWeight(weight->weight);
    return drawn;
}

QString drawnText(std::string_view text) {
    QString drawn = QString::fromStdString(drawnPart(text));
    drawn.replace(u'\n', QChar::LineSeparator);
    return drawn;
}

CGSize QtTextMeasurer::size(std::string_view text, const UIFont& font, double maximumWidth,
                            int maximumLines) const {
    const Question question{drawnText(text), drawnFont(font), maximumWidth, maximumLines};
    if (text.size() < kLongText) return measured(question);
    thread_local std::deque<std::pair<Question, CGSize>> answers;
    const auto known = std::ranges::find(answers, question, &std::pair<Question, CGSize>::first);
    if (known != answers.end()) return known->second;
    const CGSize size = measured(question);
    answers.emplace_front(question, size);
    if (answers.size() > kMostAnswers) answers.pop_back();
    return size;
}

} // namespace korvane
