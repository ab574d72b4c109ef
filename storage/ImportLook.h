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
    int repeated = 0;  ///< of these: their MAC stands further up in the file
    int listed = 0;    ///< devices in the list
    int missing = 0;   ///< of these: the file has no device for them
};

/// Looks at a file that may be imported, in slices between which the program's event loop handles
/// its events, and changes nothing. It reads as an import does, through work files of its own, so
/// that neither disturbs the other. GUI thread.
class ImportLook : public QObject
{
    Q_OBJECT
public:
    /// Compares with `devices`, which must outlive this object; makes its work files in `folder`,
    /// which ends in "/".
    ImportLook(const DeviceList &devices, const QString &folder, QObject *parent = nullptr);
    ~ImportLook() override;

    const ImportOutlook &outlook() const { return m_outlook; }

    /// Looks at the file, beside the list as it is now. What was looked at before is forgotten.
    void look(const QString &path);
    /// Forgets the file, and removes the work files.
    void stop();

    /// Removes what a program that was killed left.
    static void removeWorkFiles(const QString &folder);

signals:
    /// The outlook's state is another one.
    void changed();

private:
    void turn();
    void step();
    void count(const QList<ContactInfo> &devices);
    int missing() const;
    /// False when the MAC stood further up in the file.
    bool add(const QString &mac);
    void end(ImportOutlook::State state);
    void letGo();

    const DeviceList &m_devices;
    QString m_folder;
    ImportOutlook m_outlook;
    std::unique_ptr<ImportTarget> m_nobody;
    std::unique_ptr<ParseBase> m_parser; ///< while a file is looked at
    DeviceListSnapshot m_list;           ///< the list when the look began
    QBitArray m_found;                   ///< which rows of it the file has
    QVector<QString> m_added;            ///< the MACs of the file that the list has not
    RowIndex m_addedIndex;               ///< of these; faster than a set to fill and to let go of
    QTimer m_turn;
};
