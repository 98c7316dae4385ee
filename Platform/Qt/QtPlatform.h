#pragma once

#include "Platform/Export.h"
#include "Platform/Native/SystemPlatform.h"

#include <memory>

namespace korvane {

/// The platform of a Qt application: the Qt event loop is the main queue, a `KorvaneHost` is the screen.
/// While it lives it is the platform of the process. Made after the `QGuiApplication`, on its thread, and
/// gone before it. Its end drops the work that is still queued.
class KORVANE_EXPORT QtPlatform final : public SystemPlatform {
public:
    /// Prepares Qt for screens with web pages. Before the `QGuiApplication` is made. No page of this process
    /// can send by UDP then: a flag is added to `QTWEBENGINE_CHROMIUM_FLAGS`. Built without Qt WebEngine it does
    /// nothing, and banks' pages end their challenges in `runtimeError`.
    static void prepare();

    /// Makes the QML type `KorvaneHost` known, in the module `Korvane` 1.0.
    QtPlatform();
    ~QtPlatform() override;

private:
    friend class KorvaneHost;

    struct Parts;

    /// From the host: what the screen measures, and so how the device is held.
    void setScreenSize(CGSize size);

    std::unique_ptr<Parts> parts_;
    Installation installation_;
};

} // namespace korvane
