#pragma once

#include "model/DeviceList.h"
#include "model/ImportTarget.h"
#include "model/RowIndex.h"

#include <QBitArray>
#include <QObject>
#include <QTimer>
#include <QVector>

#include <memory>

class ParseBase;

/// What an import of a file would do.
struct ImportOutlook
{
    enum class State {
        Nothing, ///< no file is looked at
        Looking,
        Ready,  ///< the numbers below are those of the whole file
        Refused ///< an import would fail, for `reason`
    };

    State state = State::Nothing;
    QString reason;    ///< for the user
    QString encoding;  ///< codec name
    int rows = 0;      ///< devices in the file
    int added = 0;     ///< of these: their MAC is not in the list
    int replacing = 0; ///< of these: their MAC is in the list
    int repeated = 0;  ///< of these: a device further up in the file has their MAC
    int listed = 0;    ///< devices in the list
    int missing = 0;   ///< of these: their MAC is not in the file
};

/// Looks ahead at a file that may be imported, and changes nothing. Works in slices; between them
/// the event loop handles events. Reads as an import does, but through work files of its own, so
/// that the two do not disturb each other. GUI thread.
class ImportLook : public QObject
{
    Q_OBJECT
public:
    /// Compares files with `devices`, which must outlive this object. The work files are in
    /// `folder`, which ends in "/".
    ImportLook(const DeviceList &devices, const QString &folder, QObject *parent = nullptr);
    ~ImportLook() override;

    const ImportOutlook &outlook() const { return m_outlook; }

    /// Compares this file with the present list. Forgets the file before.
    void look(const QString &path);
    /// Forgets the file, and removes the work files.
    void stop();

    /// Removes the work files that a killed program left.
    static void removeWorkFiles(const QString &folder);

signals:
    /// The outlook's state may have changed.
    void changed();

private:
    void turn();
    void step();
    void count(const QList<ContactInfo> &devices);
    int missing() const;
    /// False when a device further up in the file has the MAC.
    bool add(const QString &mac);
    void end(ImportOutlook::State state);
    void letGo();

    const DeviceList &m_devices;
    QString m_folder;
    ImportOutlook m_outlook;
    std::unique_ptr<ImportTarget> m_nobody;
    std::unique_ptr<ParseBase> m_parser; ///< while a file is looked at
    DeviceListSnapshot m_list;           ///< the list when the look began
    QBitArray m_found;                   ///< the rows of m_list whose MAC is in the file
    QVector<QString> m_added;            ///< the file's MACs that the list does not have
    RowIndex m_addedIndex;               ///< of m_added; faster than a set to fill and to free
    QTimer m_turn;
};
