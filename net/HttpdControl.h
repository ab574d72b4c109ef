#pragma once

#include "net/HttpdService.h"

#include <QObject>
#include <QStringList>

#include <memory>

class ProvisioningSource;
struct RequestEnd;

/// Opens and closes the HTTP service, and alone knows whether it is open. Makes a new service for
/// each opening. GUI thread.
class HttpdControl : public QObject
{
    Q_OBJECT
public:
    enum class State {
        Closed,
        Opening, ///< the user is being asked, in the event loop of a modal box or dialog
        Open,
        Closing ///< close() was called while opening; lasts until that event loop has ended
    };

    /// `source` must outlive this object. `baseDir` ends in "/".
    HttpdControl(ProvisioningSource &source, const QString &baseDir, QObject *parent = nullptr);
    /// Closes the service and waits for its connections. Must not be called while it is opening.
    ~HttpdControl() override;

    State state() const { return m_state; }
    /// Asks the user for the network card and starts the service; true when it runs. A failure has
    /// been shown to the user. Does nothing, and returns false, while an opening is under way.
    bool open();
    /// Ends the service and every open connection.
    void close();

    /// Addresses on which the open service can be reached; empty when none is.
    QStringList addresses() const;
    /// Port of the open service; 80 when none is.
    quint16 port() const;

    /// Makes the open service remove all its documents, at a time that suits it; false when none is
    /// open.
    bool clearDocuments();

    /// Replaces where the machine's interfaces come from. For tests.
    void setInterfaceSource(const HttpdService::InterfaceSource &source) { m_interfaces = source; }

signals:
    /// A report of the service for the user.
    void httpdMsg(const QString &text);
    /// See HttpdServer.
    void requestEnded(const RequestEnd &request);
    /// The service was closed before it had removed the documents, see clearDocuments().
    void documentsLeft();
    /// Where phones find the service, after each successful start.
    void httpdAddressChanged(const QString &address, const QString &port);

private:
    ProvisioningSource &m_source;
    QString m_baseDir;
    State m_state = State::Closed;
    std::unique_ptr<HttpdService> m_service;
    HttpdService::InterfaceSource m_interfaces;
};
