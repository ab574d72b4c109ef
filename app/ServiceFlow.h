#pragma once

#include <QObject>

class CommandBar;
class DataMgr;
class ReportBox;

/// Opens and closes the services, HTTP and plug and play, by their buttons, which show the state;
/// and shows what they report. Owns the boxes on the way; the window owns the buttons and the
/// report box. GUI thread.
class ServiceFlow : public QObject
{
    Q_OBJECT
public:
    /// `window` is the parent of this object and of its boxes. All others must outlive this object.
    ServiceFlow(DataMgr &dataMgr, CommandBar &commandBar, ReportBox &reportBox, QWidget &window);

    /// Opens the HTTP service, or closes it and plug and play. Does nothing while it is being
    /// opened or closed.
    void switchHttpd();
    /// Opens the HTTP service unless it is open.
    void openHttpd();
    /// Enables plug and play, or disables it.
    void switchPnp();
    /// Shows a report of the HTTP service.
    void addReport(const QString &message);

private:
    void startHttpd();
    void showServer();
    void closeHttpd();
    void enablePnp();

    DataMgr &m_dataMgr;
    CommandBar &m_commandBar;
    ReportBox &m_reportBox;
    QWidget &m_window;
};
