#include <korvane/QtPlatform.h>
#include <korvane/SdkError.h>
#include <korvane/ThreeDS2Service.h>

#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QSslCertificate>
#include <QSslConfiguration>

using namespace korvane;

namespace {

/// The certificates of korvane-acs; an application has those of its schemes.
class TestBed final : public TransactionCertsProducerProtocol {
public:
    explicit TestBed(std::string pki) : pki_(std::move(pki)) {}

    [[nodiscard]] TransactionCerts getCerts(const std::string& directoryServerID) override {
        return {.deviceInfoEncCertDerBytes = contentsOfFile(pki_ + "/device-data-ec.der"),
                .dsRootCADerBytes = contentsOfFile(pki_ + "/ds-root.der"),
                .algorithm = CertAlgorithm::EC,
                .directoryServerIDAkaRID = directoryServerID};
    }

private:
    std::string pki_;
};

class Ending final : public ChallengeStatusReceiver {
public:
    explicit Ending(std::function<void(const std::string&)> tell) : tell_(std::move(tell)) {}

    void completed(const CompletionEvent& event) override {
        tell_("completed " + event.getTransactionStatus());
    }
    void cancelled() override { tell_("cancelled"); }
    void timedout() override { tell_("timed out"); }
    void protocolError(const ProtocolErrorEvent& event) override {
        tell_("protocol error " + event.getErrorMessage().getErrorCode());
    }
    void runtimeError(const RuntimeErrorEvent& event) override {
        tell_("runtime error, " + event.getErrorMessage());
    }

private:
    std::function<void(const std::string&)> tell_;
};

/// What goes to the 3DS server, under the names that korvane-acs has for it.
QByteArray jsonOf(const AuthenticationRequestParameters& request) {
    const auto text = [](const std::string& value) { return QString::fromStdString(value); };
    return QJsonDocument(QJsonObject{{"deviceData", text(request.getDeviceData())},
                                     {"sdkTransId", text(request.getSDKTransactionID())},
                                     {"sdkAppID", text(request.getSDKAppID())},
                                     {"sdkReferenceNum", text(request.getSDKReferenceNumber())},
                                     {"ephemeralPublic", text(request.getSDKEphemeralPublicKey())},
                                     {"messageVersion", text(request.getMessageVersion())}})
        .toJson();
}

std::shared_ptr<ChallengeParameters> challengeOf(const QByteArray& answer) {
    const QJsonObject members = QJsonDocument::fromJson(answer).object();
    const auto text = [&](const char* name) { return members[QLatin1String(name)].toString().toStdString(); };
    const auto parameters = std::make_shared<ChallengeParameters>();
    parameters->set3DSServerTransactionId(text("threeDSServerTransID"));
    parameters->setAcsTransactionId(text("acsTransID"));
    parameters->setAcsRefNumber(text("acsRefNumber"));
    parameters->setAcsSignedContent(text("acsSignedContent"));
    return parameters;
}

} // namespace

int main(int argc, char** argv) {
    QtPlatform::prepare();
    QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 3) {
        qCritical("usage: shop URL PKI, as the first line of korvane-acs names them");
        return 2;
    }
    const QString server = arguments[1];
    const std::string pki = arguments[2].toStdString();

    QtPlatform platform;
    QQmlApplicationEngine scene(QUrl::fromLocalFile(QGuiApplication::applicationDirPath() + "/Shop.qml"));
    if (scene.rootObjects().isEmpty()) return 1;
    auto* const window = qobject_cast<QQuickWindow*>(scene.rootObjects().first());
    const auto show = [&](const std::string& status) {
        qInfo("%s", status.c_str());
        window->setProperty("status", QString::fromStdString(status));
    };

    ThreeDS2Service service;
    service.setCertProducer(std::make_shared<TestBed>(pki));
    QNetworkAccessManager network;
    std::shared_ptr<Transaction> transaction;
    const auto pay = [&] {
        const Bytes root = contentsOfFile(pki + "/tls-root.pem");
        platform.addCertificateAuthorities(std::string(root.begin(), root.end()));
        service.initialize(std::make_shared<ConfigParameters>(), nullptr, nullptr,
                           platform.locales().current());
        transaction = service.createTransaction("A999999999", "2.2.0");
        QNetworkRequest request(QUrl(server + "/authenticate"));
        QSslConfiguration trust = QSslConfiguration::defaultConfiguration();
        trust.setCaCertificates(QSslCertificate::fromPath(QString::fromStdString(pki) + "/tls-root.pem"));
        request.setSslConfiguration(trust);
        request.setHeader(QNetworkRequest::ContentTypeHeader, "application/json");
        auto* const reply = network.post(request, jsonOf(transaction->getAuthenticationRequestParameters()));
        QObject::connect(reply, &QNetworkReply::finished, window, [&, reply] {
            reply->deleteLater();
            if (reply->error() != QNetworkReply::NoError) return show(reply->errorString().toStdString());
            transaction->doChallenge(challengeOf(reply->readAll()), std::make_shared<Ending>(show), 5);
        });
    };
    // The host has its size once the window was drawn.
    QObject::connect(
        window, &QQuickWindow::frameSwapped, window,
        [&] {
            try {
                pay();
            } catch (const Failure& error) { // a file of the folder is missing, for instance
                show(error.localizedDescription());
            }
        },
        Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
    return QGuiApplication::exec();
}
