#include "Platform/Qt/QtPlatform.h"
#include "Platform/View/UIApplication.h"
#include "Ui/Screens/PreventScreenRecording.h"
#include "tools/challenge/EventWriter.h"
#include "tools/common/Manual.h"
#include "tools/common/Tool.h"
#include "tools/common/UsageError.h"
#include "tools/screen/Challenge.h"
#include "tools/screen/Sheet.h"
#include "tools/screen/Viewer.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>

#include <charconv>
#include <cstdlib>
#include <functional>

namespace {

using namespace korvane;
using namespace korvane::screen;

constexpr const char* kName = "korvane-screen";
constexpr int kSmallest = 200;
constexpr int kLargest = 4096;

/// A whole number of points at the front of a text, which it is taken from; 0 for none.
int takePoints(std::string_view& text) {
    int points = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), points);
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return error == std::errc() ? points : 0;
}

/// No value for anything but "390x844", within bounds.
std::optional<QSize> sizeFrom(std::string_view text) {
    const auto isFit = [](int points) { return points >= kSmallest && points <= kLargest; };
    const int width = takePoints(text);
    if (!text.starts_with('x')) return std::nullopt;
    text.remove_prefix(1);
    const int height = takePoints(text);
    if (!text.empty() || !isFit(width) || !isFit(height)) return std::nullopt;
    return QSize(width, height);
}

CLI::Validator isSize() {
    return CLI::Validator(
        [](std::string& text) {
            return sizeFrom(text) ? std::string()
                                  : "must be width and height in points, as in 390x844, from " +
                                        std::to_string(kSmallest) + " to " + std::to_string(kLargest) +
                                        " each, and is " + text;
        },
        "");
}

/// A challenge against a running ACS, with the names that korvane-challenge has.
void defineAcs(CLI::App& app, AcsOptions& options, std::initializer_list<CLI::Option*> others) {
    CLI::Option* acs = app.add_option("--acs", options.url,
                                      "In place of a CRes: a whole challenge in a window, from the "
                                      "authentication request to this URL on.")
                           ->type_name("URL")
                           ->check(tools::isHTTP());
    for (CLI::Option* other : others)
        acs->excludes(other);
    const auto add = [&](const char* name, std::string& value, const char* description, bool isNeeded) {
        CLI::Option* option = app.add_option(name, value, description)->needs(acs)->check(tools::notEmpty());
        if (isNeeded) acs->needs(option);
        return option;
    };
    add("--directory-server", options.server.identifier, "Identifier of the directory server.", true);
    add("--algorithm", options.server.algorithm, "Kind of key in its certificate.", false)
        ->capture_default_str()
        ->check(CLI::IsMember({"EC", "RSA"}));
    add("--ds-certificate", options.server.certificate, "Its certificate for device data, in DER or PEM.",
        true)
        ->type_name(tools::kFile);
    add("--ds-root", options.server.root, "The root of the ACS's chain, in DER or PEM.", true)
        ->type_name(tools::kFile);
    add("--ca", options.authorities, "Further authorities for HTTPS, in DER or PEM.", false)
        ->type_name(tools::kFile);
}

void define(CLI::App& app, Options& options) {
    CLI::Option* cres = app.add_option("cres", options.cres, "The CRes whose screen is drawn, as JSON.")
                            ->type_name(tools::kFile)
                            ->check(tools::notEmpty());
    app.add_option("--theme", options.theme, "The application's look, as JSON by theme.schema.json.")
        ->type_name(tools::kFile)
        ->check(tools::notEmpty());
    CLI::Option* output = app.add_option("-o,--output", options.output,
                                         "The picture to write, as PNG. Without it a window shows the "
                                         "screen, anew whenever a file changes.")
                              ->type_name(tools::kFile)
                              ->check(tools::notEmpty());
    CLI::Option* sheet =
        app.add_flag("--all", options.isSheet,
                     "A sheet of both orientations, light and dark, on three sizes, in place of one picture.")
            ->needs(output);
    app.add_option_function<std::string>(
           "--size", [&options](const std::string& text) { options.setting.size = sizeFrom(text).value(); },
           "Width and height in points; wider than high lies on its side.")
        ->type_name("WIDTHxHEIGHT")
        ->default_str("390x844")
        ->check(isSize())
        ->excludes(sheet);
    app.add_flag("--dark", options.setting.isDark, "Dark surroundings.")->excludes(sheet);
    app.add_option("--text-scale", options.setting.textScale, "Multiplies the size of texts.")
        ->capture_default_str()
        ->check(CLI::Range(0.5, 3.0));
    CLI::Option* keyboard = app.add_flag("--keyboard", options.setting.hasKeyboard,
                                         "With the keyboard open, on a screen with a code field.");
    defineAcs(app, options.acs, {cres, output, keyboard});
    app.footer("In the window controls work: what they would send to the ACS is a JSON object a line on "
               "standard output.\n"
               "With --acs that is the ending.\n\n"
               "A CRes that the library would refuse is told with the fields at fault, the error's code and "
               "the reason.\n\n"
               "Exit: 0 when it was drawn or the challenge came to an ending; 1 when not, a refused CRes "
               "included; 2 on\n"
               "wrong usage, a theme that cannot be used included.");
}

/// What the environment says already stands. Before Qt reads it.
void goOffscreen() {
    const auto set = [](const char* name, const char* value) {
        if (!qEnvironmentVariableIsSet(name)) qputenv(name, value);
    };
    set("QT_QPA_PLATFORM", "offscreen");
    set("QT_QUICK_BACKEND", "software");
}

/// What tells Qt of a display.
constexpr const char* kDisplayNames[] = {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"};

void requireDisplay() {
    for (const char* name : kDisplayNames)
        if (!qEnvironmentVariableIsEmpty(name)) return;
    throw tools::UsageError(
        "There is no display for a window. Run this on a desktop, or write a picture by -o.");
}

std::string displayComplaint() {
    std::string names;
    for (const char* name : kDisplayNames)
        if (!qEnvironmentVariableIsEmpty(name))
            names += (names.empty() ? "" : ", ") + std::string(name) + "=" + qgetenv(name).toStdString();
    return "No display answers (" + names + "). Run this on a desktop, or write a picture by -o.";
}

/// Set once Qt has its display.
bool hasDisplay = false;

/// Qt tells much of the machine that says nothing of the screen. After a fault that is fatal it would leave a
/// dump of the process, and where no display answers advice that helps nobody.
void hear(QtMsgType type, const QMessageLogContext&, const QString& text) {
    const bool isFatal = type == QtFatalMsg;
    if (isFatal || type == QtCriticalMsg)
        tools::complain(kName, isFatal && !hasDisplay ? displayComplaint() : text.toStdString());
    if (isFatal) std::_Exit(tools::kNotDone);
}

void quieten() {
    if (!qEnvironmentVariableIsSet("QT_LOGGING_RULES")) qInstallMessageHandler(hear);
}

/// A file that has no more room takes a part first, and tells why at the next.
bool writeAll(QFile& file, const QByteArray& bytes) {
    qint64 written = 0;
    for (qint64 count = 1; written < bytes.size() && count > 0; written += count)
        count = file.write(bytes.constData() + written, bytes.size() - written);
    return written == bytes.size();
}

/// What cannot be written whole is taken away again, unless it is a device or a link to one.
void write(const QImage& picture, const std::string& name) {
    QBuffer png;
    QFile file(QString::fromStdString(name));
    const bool isDone = png.open(QIODevice::WriteOnly) && picture.save(&png, "png") &&
                        file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && writeAll(file, png.data());
    if (isDone) return;
    const std::string reason = file.errorString().toStdString();
    const QFileInfo written(file);
    if (file.isOpen() && written.isFile() && !written.isSymLink()) file.remove();
    throw NotDone(name + ": The picture cannot be written: " + reason + ".");
}

int draw(const Options& options) {
    const Script script = readScript(options.cres, options.theme);
    Stage stage;
    UIApplication::shared().setPlaysAnimations(false);
    stage.window().show();
    write(options.isSheet ? sheetOf(stage, script, options.setting) : stage.draw(script, options.setting),
          options.output);
    return tools::kDone;
}

int open(const Options& options) {
    const Viewer viewer(options);
    return QGuiApplication::exec();
}

/// Once the last screen has gone, if any stands.
void exitWithoutScreens(KorvaneHost& host, int code) {
    const auto exitIfGone = [&host, code] {
        if (!host.isActive()) QCoreApplication::exit(code);
    };
    QObject::connect(&host, &KorvaneHost::activeChanged, &host, exitIfGone);
    QMetaObject::invokeMethod(&host, exitIfGone, Qt::QueuedConnection);
}

/// In one window until its ending, which is told on standard output.
int play(const Options& options, QtPlatform& platform) {
    if (!options.acs.authorities.empty())
        platform.addCertificateAuthorities(challenge::readAuthorities(options.acs.authorities));
    const auto wire = std::make_shared<challenge::Wire>();
    platform.watchAnswers(std::bind_front(&challenge::Wire::watch, wire));
    Stage stage;
    stage.window().setTitle(QString::fromStdString(options.acs.url));
    stage.set(options.setting);
    stage.window().show();
    // What the library says on standard output for its developers is no event.
    challenge::EventWriter events(challenge::StrayOutput::nowhere);
    bool hasEnded = false;
    const auto ended = [&](const Challenge::Ending& ending) {
        hasEnded = true;
        if (ending.event.empty())
            tools::complain(kName, ending.text);
        else
            events.write({{"event", ending.event}, {"message", ending.text}});
        exitWithoutScreens(stage.window().host(), ending.event.empty() ? tools::kNotDone : tools::kDone);
    };
    const auto challenge =
        std::make_shared<Challenge>(options.acs, readThemeIfAny(options.theme), wire, ended);
    challenge->begin();
    const int code = QGuiApplication::exec();
    if (!hasEnded) throw NotDone("The window was closed before the challenge ended.");
    return code;
}

int run(const Options& options, int argc, char** argv) {
    const bool isForPicture = !options.output.empty();
    if (options.cres.empty() && options.acs.url.empty())
        throw tools::UsageError("Name a CRes, or an ACS by --acs. Run with --help for more information.");
    if (isForPicture)
        goOffscreen();
    else
        requireDisplay();
    QtPlatform::prepare();
    quieten();
    const QGuiApplication application(argc, argv);
    hasDisplay = true;
    // Pictures are what this program is for.
    isEnablePreventScreenCapture = false;
    isEnablePreventScreenRecording = false;
    QtPlatform platform;
    try {
        if (!options.acs.url.empty()) return play(options, platform);
        return isForPicture ? draw(options) : open(options);
    } catch (const NotDone& error) {
        tools::complain(kName, error.what());
        return tools::kNotDone;
    }
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    CLI::App app("Draws the screen of a CRes as the library would show it.", kName);
    define(app, options);
    return tools::runTool(app, argc, argv, [&] { return run(options, 1, argv); });
}
