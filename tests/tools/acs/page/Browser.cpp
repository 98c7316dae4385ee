#include <QApplication>
#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSocketNotifier>
#include <QWebEngineCertificateError>
#include <QWebEngineDownloadRequest>
#include <QWebEngineProfile>
#include <QWebEngineView>
#include <QtTest>

#include <array>
#include <cstdio>

#include <unistd.h>

namespace {

void say(const QJsonObject& line) {
    std::printf("%s\n", QJsonDocument(line).toJson(QJsonDocument::Compact).constData());
    std::fflush(stdout);
}

/// A browser with a person's hands, for a test in another language: reads one JSON object a line, does what its
/// member names, and answers with one.
class Browser {
public:
    explicit Browser(const QString& downloads) {
        view_.resize(1400, 900);
        view_.show();
        // The tool's authority is one of the tests' own.
        QObject::connect(view_.page(), &QWebEnginePage::certificateError, &view_,
                         [](QWebEngineCertificateError error) { error.acceptCertificate(); });
        QObject::connect(view_.page()->profile(), &QWebEngineProfile::downloadRequested, &view_,
                         [downloads](QWebEngineDownloadRequest* download) { save(*download, downloads); });
        QObject::connect(&view_, &QWebEngineView::loadFinished, [](bool isOk) { say({{"value", isOk}}); });
    }

    void act(const QJsonObject& command) {
        const auto text = [&](const char* name) { return command[QLatin1String(name)].toString(); };
        if (command.contains("open")) return view_.load(QUrl(text("open")));
        if (command.contains("run")) return view_.page()->runJavaScript(text("run"), tell);
        if (command.contains("click")) return click(text("click"));
        if (command.contains("type")) QTest::keyClicks(hands(), text("type"));
        if (command.contains("selectAll")) QTest::keyClick(hands(), Qt::Key_A, Qt::ControlModifier);
        if (command.contains("picture")) view_.grab().save(text("picture"));
        tell(true);
    }

private:
    static void tell(const QVariant& value) { say({{"value", QJsonValue::fromVariant(value)}}); }

    static void save(QWebEngineDownloadRequest& download, const QString& folder) {
        download.setDownloadDirectory(folder);
        QObject::connect(&download, &QWebEngineDownloadRequest::isFinishedChanged, [&download, folder] {
            say({{"downloaded", QDir(folder).filePath(download.downloadFileName())}});
        });
        download.accept();
    }

    void click(const QString& selector) {
        const QString middle =
            QStringLiteral("(() => { const element = document.querySelector(`%1`);"
                           "if (!element) return []; element.scrollIntoView({ block: 'center' });"
                           "const { x, y, width, height } = element.getBoundingClientRect();"
                           "return [x + width / 2, y + height / 2]; })()")
                .arg(selector);
        view_.page()->runJavaScript(middle, [this](const QVariant& place) {
            const QVariantList at = place.toList();
            if (at.size() == 2)
                QTest::mouseClick(hands(), Qt::LeftButton, {}, QPoint(at[0].toInt(), at[1].toInt()));
            tell(at.size() == 2);
        });
    }

    /// What takes mouse and keys within the view.
    [[nodiscard]] QWidget* hands() const { return view_.focusProxy(); }

    QWebEngineView view_;
};

} // namespace

/// usage: acs_page_browser DOWNLOADS
int main(int count, char** arguments) {
    const QApplication application(count, arguments);
    Browser browser(QString::fromLocal8Bit(arguments[1]));
    QByteArray pending;
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&] {
        std::array<char, 4096> chunk{};
        const ssize_t length = ::read(STDIN_FILENO, chunk.data(), chunk.size());
        if (length <= 0) return QCoreApplication::quit();
        pending.append(chunk.data(), length);
        for (qsizetype end = 0; (end = pending.indexOf('\n')) >= 0; pending.remove(0, end + 1))
            browser.act(QJsonDocument::fromJson(pending.left(end)).object());
    });
    return QApplication::exec();
}
