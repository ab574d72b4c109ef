#pragma once

#include "model/RequestEnd.h"

#include <QHash>
#include <QObject>
#include <QTimer>

class DeviceList;

/// Which devices of the list a telephone has asked the document of in this run: when, from where,
/// and how that went, of each the last time. Others are not kept, so the list is the bound.
/// GUI thread.
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
    /// How many devices of the list have been asked for.
    int count();

signals:
    /// Others have been seen, or the same anew. Told at most twice a second.
    void changed();

private:
    struct Visit
    {
        qint64 time;
        qint64 bytes;
        quint32 peer;
        RequestOutcome outcome;
    };

    void forgetUnlisted();

    const DeviceList &m_list;
    QHash<QString, Visit> m_visits; ///< by the look-up form of the MAC
    quint64 m_version = 0;          ///< of the list in which all of them are
    QTimer m_changed;
};
