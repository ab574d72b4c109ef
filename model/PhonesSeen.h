#pragma once

#include "model/RequestEnd.h"

#include <QHash>
#include <QObject>
#include <QTimer>

class DeviceList;

/// The last request for each device's document in this run: when, from where, and how it ended.
/// Some removed devices are kept too, in case the deletion is undone; the length of the list bounds
/// the memory. GUI thread.
class PhonesSeen : public QObject
{
    Q_OBJECT

public:
    /// `list` must outlive this object.
    explicit PhonesSeen(const DeviceList &list, QObject *parent = nullptr);

    /// Notes an HTTP request that has ended.
    void note(const RequestEnd &request);

    /// For the user: how the last request for this device's document ended, or that there was none.
    QString text(const QString &mac) const;
    /// Counts again soon. To be called after every change of the list.
    void onListChanged();

signals:
    /// How many devices in the list have been asked for so far. At most twice a second.
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
