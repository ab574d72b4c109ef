#pragma once

#include "model/DeviceList.h"
#include "model/ProgramFolder.h"
#include "storage/DatabaseLayer.h"

#include <QObject>

#include <functional>

/// Owns the store and converts between the device list and stored records. GUI thread only.
class DBOperator : public QObject
{
    Q_OBJECT
public:
    /// The program's own, over the program's folder; created on first use, lives until the exit.
    static DBOperator *instance();

    /// `directory` is where the store keeps its file; it ends in "/".
    explicit DBOperator(const QString &directory = programFolder(), QObject *parent = nullptr);

    /// The store, created on the first call and owned by this object.
    DatabaseLayer *database();

    /// Hands the whole list to the store as new rows whose id is the running number, in one
    /// transaction. Nothing is deleted first. `breathe` is called from time to time meanwhile; it
    /// must not come back here.
    bool save(const DeviceListSnapshot &list, const std::function<void()> &breathe = {});

    /// Every stored record. Whether reading failed, the store's lastErrorText() tells.
    /// See DatabaseLayer::queryContacts() for `onTheWay`.
    QList<ContactInfo> load(const ContactsRead &onTheWay = {});

private:
    bool saveRows(const QVector<DeviceNode> &nodes, int first, int count);

    QString m_directory;
    DatabaseLayer *m_database = nullptr;
};
