import QtQuick
import QtWebEngine

// A page that may do nothing but be shown, run its scripts and ask to go elsewhere.
WebEngineView {
    id: page

    // Run in every frame before its page, in this order.
    required property var scripts
    // A page is laid out anew for larger text, as in a narrower window.
    property real textScale: 1
    // What any script of the page says to its developer.
    signal spoken(string text)

    function sendAgain() {
        runJavaScript("sendAgain()", WebEngineScript.ApplicationWorld);
    }

    anchors.fill: parent
    zoomFactor: textScale
    // The engine gives a page that it loads its own factor.
    onLoadingChanged: zoomFactor = Qt.binding(() => textScale)
    activeFocusOnPress: true

    profile: WebEngineProfile {
        offTheRecord: true
        httpCacheType: WebEngineProfile.NoCache
        persistentCookiesPolicy: WebEngineProfile.NoPersistentCookies
        spellCheckEnabled: false
        // A view's own scripts get lost when the engine gives its page another frame in the same process.
        Component.onCompleted: page.scripts.forEach(script => userScripts.insert(script))
        onDownloadRequested: download => download.cancel()
        onPresentNotification: notification => notification.close()
    }

    settings {
        javascriptEnabled: true
        javascriptCanOpenWindows: false
        javascriptCanAccessClipboard: false
        javascriptCanPaste: false
        localStorageEnabled: false
        localContentCanAccessFileUrls: false
        localContentCanAccessRemoteUrls: false
        allowRunningInsecureContent: false
        allowGeolocationOnInsecureOrigins: false
        allowWindowActivationFromJavaScript: false
        hyperlinkAuditingEnabled: false
        errorPageEnabled: false
        pluginsEnabled: false
        pdfViewerEnabled: false
        fullScreenSupportEnabled: false
        screenCaptureEnabled: false
        webGLEnabled: false
        webRTCPublicInterfacesOnly: true
        autoLoadIconsForPage: false
        touchIconsEnabled: false
        dnsPrefetchEnabled: false
        navigateOnDropEnabled: false
        focusOnNavigationEnabled: false
        playbackRequiresUserGesture: true
        // Asked about like any other navigation, which refuses them; nothing outside is opened.
        unknownUrlSchemePolicy: WebEngineSettings.AllowAllUnknownUrlSchemes
    }

    // Stays out of the application's log.
    onJavaScriptConsoleMessage: (level, text) => spoken(text)
    onFeaturePermissionRequested: (origin, feature) => grantFeaturePermission(origin, feature, false)
    onFileSystemAccessRequested: request => request.reject()
    onFullScreenRequested: request => request.reject()
    onQuotaRequested: request => request.reject()
    onRegisterProtocolHandlerRequested: request => request.reject()
    onCertificateError: error => error.rejectCertificate()
    onSelectClientCertificate: selection => selection.selectNone()
    onContextMenuRequested: request => request.accepted = true
    onTooltipRequested: request => request.accepted = true
    onAuthenticationDialogRequested: request => {
        request.accepted = true;
        request.dialogReject();
    }
    onColorDialogRequested: request => {
        request.accepted = true;
        request.dialogReject();
    }
    onFileDialogRequested: request => {
        request.accepted = true;
        request.dialogReject();
    }
    // Answered at once: as if dismissed, except that a page cannot hold its user back.
    onJavaScriptDialogRequested: request => {
        request.accepted = true;
        if (request.type === JavaScriptDialogRequest.DialogTypeBeforeUnload)
            request.dialogAccept();
        else
            request.dialogReject();
    }
}
