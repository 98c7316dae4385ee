#include "examples/checkout/Acs.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <csignal>
#include <utility>
#include <vector>

#include <sys/prctl.h>

namespace korvane::checkout {

struct Acs::Server {
    QProcess process;
    std::optional<AcsSite> site;
    std::vector<Opened> waiting;

    void tell(const QString& error) {
        for (const Opened& opened : std::exchange(waiting, {}))
            opened(site, error);
    }
};

namespace {

std::optional<AcsSite> siteFrom(const QByteArray& line) {
    const QJsonObject event = QJsonDocument::fromJson(line).object();
    if (event["event"] != QStringLiteral("listening")) return std::nullopt;
    const auto text = [&event](const char* name) { return event[QLatin1String(name)].toString(); };
    return AcsSite{.url = text("url"),
                   .tlsRoot = text("tlsRoot"),
                   .directoryServerID = text("directoryServerID"),
                   .directoryServerRoot = text("directoryServerRoot"),
                   .deviceDataEC = text("deviceDataEC")};
}

} // namespace

Acs::Acs(QString program) : program_(std::move(program)) {}

Acs::~Acs() {
    constexpr int kPatience = 2000;
    for (auto& [scenario, server] : servers_) {
        server->process.disconnect(this);
        server->process.terminate();
    }
    for (auto& [scenario, server] : servers_)
        if (!server->process.waitForFinished(kPatience)) server->process.kill();
}

void Acs::open(const QString& scenario, Opened opened) {
    auto& server = servers_[scenario];
    if (server && server->site) {
        opened(server->site, {});
        return;
    }
    const bool isNew = !server;
    if (isNew) server = start(scenario);
    server->waiting.push_back(std::move(opened));
    if (isNew) server->process.start();
}

/// The process ends with this one, however this one ends.
std::unique_ptr<Acs::Server> Acs::start(const QString& scenario) {
    auto server = std::make_unique<Server>();
    QProcess& process = server->process;
    process.setProgram(program_);
    process.setArguments({"--pki", folder_.filePath("pki"), "--scenario", scenarioFile(scenario)});
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
    connect(&process, &QProcess::readyReadStandardOutput, this,
            [this, scenario] { readFirstLine(scenario); });
    connect(&process, &QProcess::errorOccurred, this, [this, scenario] {
        fail(scenario, program_ + ": " + servers_.at(scenario)->process.errorString());
    });
    connect(&process, &QProcess::finished, this,
            [this, scenario] { fail(scenario, program_ + " has ended."); });
    return server;
}

/// The scenarios are part of this program; the ACS reads files.
QString Acs::scenarioFile(const QString& scenario) const {
    const QString name = scenario + ".json";
    QFile::copy(":/scenarios/" + name, folder_.filePath(name));
    return folder_.filePath(name);
}

/// What follows the first line is the ACS's diary, which nobody reads here.
void Acs::readFirstLine(const QString& scenario) {
    Server& server = *servers_.at(scenario);
    if (server.site) {
        server.process.readAllStandardOutput();
        return;
    }
    if (!server.process.canReadLine()) return;
    server.site = siteFrom(server.process.readLine());
    if (server.site)
        server.tell({});
    else
        fail(scenario, program_ + " does not say where it listens.");
}

/// The next call starts another one. The present one goes later, since this may be its own signal.
void Acs::fail(const QString& scenario, const QString& error) {
    const auto found = servers_.find(scenario);
    if (found == servers_.end()) return;
    const std::shared_ptr<Server> server = std::move(found->second);
    servers_.erase(found);
    server->process.disconnect(this);
    server->site.reset();
    server->tell(error);
    QMetaObject::invokeMethod(
        this, [server] { server->process.kill(); }, Qt::QueuedConnection);
}

} // namespace korvane::checkout
