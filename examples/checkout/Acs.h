#pragma once

#include <QObject>
#include <QString>
#include <QTemporaryDir>

#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>

namespace korvane::checkout {

/// Where a running ACS is, and what its clients need: certificate files in DER, the TLS authority in PEM.
struct AcsSite {
    QString url;
    QString tlsRoot;
    QString directoryServerID;
    QString directoryServerRoot;
    QString deviceDataEC;
};

/// The bank's side of this example: one `korvane-acs` for each scenario, started when it is first asked for,
/// all with the same certificates, in a folder that goes with this object. Main thread.
class Acs final : public QObject {
    Q_OBJECT

public:
    /// Receives the site, or why there is none.
    using Opened = std::function<void(const std::optional<AcsSite>& site, const QString& error)>;

    /// @param program  the path of `korvane-acs`.
    explicit Acs(QString program);
    /// Ends the processes.
    ~Acs() override;

    /// Calls `opened` once, at once if the scenario is being played already. The first call also makes the
    /// certificates: let it finish before the next one.
    void open(const QString& scenario, Opened opened);

private:
    struct Server;

    [[nodiscard]] std::unique_ptr<Server> start(const QString& scenario);
    [[nodiscard]] QString scenarioFile(const QString& scenario) const;
    void readFirstLine(const QString& scenario);
    void fail(const QString& scenario, const QString& error);

    const QString program_;
    QTemporaryDir folder_;
    std::unordered_map<QString, std::unique_ptr<Server>> servers_;
};

} // namespace korvane::checkout
