#include "Platform/Qt/Web/PageEngine.h"
#include "Platform/Qt/Web/WebPage.h"

#include <QtWebEngineQuick>

namespace korvane {

namespace {

/// What scripts take from a page's documents may have gaps; the engine itself has none, but knows no such
/// switch for one page, nor one for TCP.
void refuseUdpToPages() {
    constexpr const char* kFlags = "QTWEBENGINE_CHROMIUM_FLAGS";
    qputenv(kFlags, qgetenv(kFlags) + " --force-webrtc-ip-handling-policy=disable_non_proxied_udp");
}

class WebEngine final : public PageEngine {
public:
    void prepare() const override {
        refuseUdpToPages();
        QtWebEngineQuick::initialize();
    }

    [[nodiscard]] Page* makePage(QQmlEngine& engine, const std::shared_ptr<WKWebView>& view,
                                 QQuickItem& parent) const override {
        return new WebPage(engine, view, &parent);
    }
};

} // namespace

const PageEngine* PageEngine::ofBuild() {
    static const WebEngine engine;
    return &engine;
}

} // namespace korvane
