#include "examples/checkout/Terminal.h"

#include <QString>
#include <QtGlobal>

#include <cstdio>
#include <string_view>

namespace korvane::checkout {

namespace {

QtMessageHandler qtsOwn = nullptr;

ssize_t passOn(void* terminal, const char* text, std::size_t size) {
    constexpr std::string_view kFarewell = "Transaction deinit\n";
    auto* const file = static_cast<std::FILE*>(terminal);
    if (std::string_view(text, size) == kFarewell) return static_cast<ssize_t>(size);
    const std::size_t written = std::fwrite(text, 1, size, file);
    return std::fflush(file) == 0 ? static_cast<ssize_t>(written) : 0;
}

void tell(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    const bool isFailure = type == QtCriticalMsg || type == QtFatalMsg;
    if (isFailure || text.contains("qrc:/")) qtsOwn(type, context, text);
}

} // namespace

/// glibc lets a program exchange `stdout`. Its lines come whole, since it is flushed at each line's end.
void quietenTerminal() {
    if (std::FILE* const filtered = ::fopencookie(stdout, "w", {nullptr, passOn, nullptr, nullptr})) {
        std::setvbuf(filtered, nullptr, _IOLBF, BUFSIZ);
        stdout = filtered;
    }
    if (!qEnvironmentVariableIsSet("QT_LOGGING_RULES")) qtsOwn = qInstallMessageHandler(tell);
}

} // namespace korvane::checkout
