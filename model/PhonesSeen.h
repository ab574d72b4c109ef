#pragma once

#include "model/RequestEnd.h"

#include <QHash>
#include <QObject>
#include <QTimer>

class DeviceList;

/// Which devices of the list a telephone has asked the document of in this run: when, from where,
/// and how that went, of each the last time. Of others only some are kept, for a deletion that is
/// taken back: the list is the bound. GUI thread.
class PhonesSeen : public QObject
{
    Q_OBJECT

public:
    /// `list` must outlive this object.
    explicit PhonesSeen(const DeviceList &list, QObject *parent = nullptr);

    /// A request by HTTP is over.
    void note(const RequestEnd &request);

    /// For the user: how the last request for the document of this device went, or that there was
    /// none.
    QString text(const QString &mac) const;
    /// Another list, or the same changed.
    void onListChanged();

signals:
    /// How many devices of the list have been asked for, by now. At most twice a second.
    void counted(int seen);

private:
    struct Visit
    {
        qint64 time;
        qint64 bytes;
        quint32 peer;
        RequestOutcome outcome;
    };

    void forgetUnlisted();
    void count();

    const DeviceList &m_list;
    QHash<QString, Visit> m_visits; ///< by the look-up form of the MAC
    QTimer m_countTimer;
};
