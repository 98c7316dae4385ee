#include <korvane/QtPlatform.h>
#include <korvane/SdkError.h>
#include <korvane/ThreeDS2Service.h>

#include <QGuiApplication>
#include <QQmlApplicationEngine>

#include <cstdio>

using namespace korvane;

int main(int argc, char** argv) {
    QtPlatform::prepare();
    QGuiApplication application(argc, argv);
    QtPlatform platform;
    QQmlApplicationEngine scene;
    scene.loadData(
        "import QtQuick; import Korvane 1.0\n"
        "Window { width: 390; height: 844; visible: true; KorvaneHost { width: 390; height: 844 } }");
    const std::string server = "A999999999"; // whose certificates are DER files beside the program
    const DevInfoCert certificates{
        "scheme-device-data.cer", "scheme-root.cer", server, CertAlgorithm::RSA, {}};
    const ConfigParameters::DevInfoCerts servers{{server, certificates}};
    ThreeDS2Service service;
    service.initialize(std::make_shared<ConfigParameters>(servers), nullptr, nullptr, Locale{"en-GB"});
    try {
        const auto transaction = service.createTransaction(server, "2.2.0");
        const auto request = transaction->getAuthenticationRequestParameters();
        std::puts(request.getSDKTransactionID().c_str()); // goes through the 3DS server with the other values
        return scene.rootObjects().isEmpty() ? 1 : 0;     // a real application goes on: application.exec()
    } catch (const SdkError& error) {
        std::puts(error.localizedDescription().c_str());
        return 1;
    }
}
