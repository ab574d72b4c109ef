#pragma once

#include "model/DeviceList.h"
#include "model/ProgramFolder.h"
#include "storage/DatabaseLayer.h"

#include <QObject>

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

    /// Inserts the whole list into the store as new rows whose id is the running number, in one
    /// transaction. Deletes nothing first.
    /// Part of the interface; nothing here calls it.
    bool save(const DeviceListSnapshot &list);
    /// The same for up to `count` devices from row `first` on.
    bool saveRows(const DeviceListSnapshot &list, int first, int count);

    /// Every stored record. After a failed read, none; the store's lastErrorText() is then set.
    /// Part of the interface; the program reads the records in steps.
    QList<ContactInfo> load();

    /// Devices handed to the store at once: few enough for the window not to wait, and for their
    /// values to stay in the processor's cache.
    static constexpr int rowsAtOnce = 250;

private:
    QString m_directory;
    DatabaseLayer *m_database = nullptr;
};
