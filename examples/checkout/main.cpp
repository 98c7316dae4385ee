#include "Platform/NSBundle.h"
#include "Platform/Qt/QtPlatform.h"
#include "Platform/Security/SecKey.h"
#include "Ui/Screens/PreventScreenRecording.h"
#include "examples/checkout/Player.h"
#include "examples/checkout/Shop.h"
#include "examples/checkout/Terminal.h"
#include "examples/checkout/Themes.h"

#include <CLI/CLI.hpp>

#include <QFontDatabase>
#include <QGuiApplication>
#include <QQmlError>
#include <QQuickView>
#include <QTimer>

#include <iostream>

namespace {

using namespace korvane;
using namespace korvane::checkout;

constexpr int kDone = 0;
constexpr int kNotDone = 1;
constexpr int kWrongUsage = 2;

struct Options {
    bool isOffscreen = false;
    std::string shots = "shots";
    std::vector<std::string> plays;
    bool isQuick = false;
    std::vector<std::size_t> part{1, 1};
    std::vector<int> size;
    std::string look = "default";
    std::string acs = KORVANE_ACS;
};

void define(CLI::App& app, Options& options) {
    app.add_flag("--offscreen", options.isOffscreen,
                 "Needs no display: plays the payments below and writes a picture of every screen.");
    app.add_option("--shots", options.shots, "The folder for the pictures.")->capture_default_str();
    app.add_option("--play", options.plays, "Only these payments.")->check(CLI::IsMember(playNames()));
    app.add_flag("--quick", options.isQuick, "Without the payment that waits for a minute.");
    app.add_option("--part", options.part,
                   "Of the payments those of one part: \"2 4\" is the second of four.")
        ->expected(2)
        ->check(CLI::PositiveNumber);
    app.add_option("--size", options.size,
                   "Width and height of the window; a small one is a phone itself. Payments are then played "
                   "as it stands.")
        ->expected(2)
        ->check(CLI::PositiveNumber);
    app.add_option("--look", options.look, "How it looks at first.")
        ->capture_default_str()
        ->check(CLI::IsMember(themeNames()));
    app.add_option("--acs", options.acs, "The program that plays the bank.")
        ->capture_default_str()
        ->check(CLI::ExistingFile);
    app.footer("Payments that are played: " + playList() +
               "\n\nExit: 0 when all ended as they should, 1 when not, 2 on wrong usage.");
}

/// Before Qt reads them.
void goOffscreen() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
}

/// The window with the shop, and what happens in it.
class Session {
public:
    Session(QtPlatform& platform, const Options& options)
        : platform_(platform), options_(options), acs_(QString::fromStdString(options.acs)), shop_(acs_) {}

    /// The first ACS makes the certificates, without which nothing can be asked.
    void begin() {
        acs_.open("code", [this](const std::optional<AcsSite>& site, const QString& error) {
            if (!site) {
                giveUp(error);
                return;
            }
            try {
                open(*site);
            } catch (const CFError& failure) {
                giveUp(QString::fromStdString(failure.localizedDescription()));
            }
        });
    }

private:
    void open(const AcsSite& site) {
        platform_.addCertificateAuthorities(std::string(asText(contentsOfFile(site.tlsRoot.toStdString()))));
        shop_.setTheme(themeNamed(QString::fromStdString(options_.look)));
        view_.setInitialProperties({{"shop", QVariant::fromValue(&shop_)}});
        view_.setResizeMode(QQuickView::SizeRootObjectToView);
        view_.setTitle("Kettle & Pine");
        view_.setSource(QUrl("qrc:/qml/Main.qml"));
        if (view_.status() != QQuickView::Ready) {
            giveUp(view_.errors().isEmpty() ? "The pages do not load." : view_.errors().front().toString());
            return;
        }
        constexpr QSize kWindow{1220, 940};
        view_.resize(options_.size.empty() ? kWindow : QSize(options_.size[0], options_.size[1]));
        view_.show();
        if (options_.isOffscreen) QTimer::singleShot(0, &view_, [this] { play(); });
    }

    void play() {
        try {
            const Setting setting = options_.size.empty() ? Setting::asThePlay : Setting::asItStands;
            Player player(view_, shop_, QString::fromStdString(options_.shots), setting);
            QCoreApplication::exit(player.play(wanted()) ? kDone : kNotDone);
        } catch (const Stuck& stuck) {
            giveUp("This is missing: " + QString(stuck.what()));
        }
    }

    /// The names of the payments to play.
    [[nodiscard]] std::vector<std::string> wanted() const {
        std::vector<std::string> names = options_.plays.empty() ? playNames() : options_.plays;
        if (options_.isQuick) std::erase(names, slowPlay());
        std::size_t place = 0;
        std::erase_if(names,
                      [&](const std::string&) { return place++ % options_.part[1] != options_.part[0] - 1; });
        return names;
    }

    static void giveUp(const QString& reason) {
        std::cerr << "korvane-checkout: " << reason.toStdString() << '\n';
        QMetaObject::invokeMethod(
            qApp, [] { QCoreApplication::exit(kNotDone); }, Qt::QueuedConnection);
    }

    QtPlatform& platform_;
    const Options& options_;
    Acs acs_;
    Shop shop_;
    QQuickView view_;
};

int run(int& argc, char** argv, const Options& options) {
    quietenTerminal();
    if (options.isOffscreen) goOffscreen();
    QtPlatform::prepare();
    const QGuiApplication application(argc, argv);
    // A calmer face than most systems' own, for the shop and the library's screens alike.
    if (QFontDatabase::hasFamily("Inter")) QGuiApplication::setFont(QFont("Inter"));
    // Pictures of the screens are what this run is for.
    isEnablePreventScreenCapture = !options.isOffscreen;
    isEnablePreventScreenRecording = !options.isOffscreen;
    QtPlatform platform;
    Session session(platform, options);
    session.begin();
    return QGuiApplication::exec();
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    CLI::App app("A shop's checkout that pays through Korvane, with a bank that it starts itself.",
                 "korvane-checkout");
    define(app, options);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kDone : kWrongUsage;
    }
    return run(argc, argv, options);
}
