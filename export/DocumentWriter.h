#pragma once

#include "model/DeviceList.h"
#include "model/WholeFile.h"

#include <QString>

#include <functional>
#include <vector>

/// Writes the provisioning documents of a list into a folder from which another server hands them
/// out. Each document has the name that its phone asks for, and the form for the family of the
/// device's product model.
///
/// The documents hold passwords: only the owner of the process may read them, and the folder's
/// group where the folder hands its group on. Any thread, one at a time.
class DocumentWriter
{
    Q_DECLARE_TR_FUNCTIONS(DocumentWriter)

public:
    /// What happened to a device's document.
    enum class Outcome : char {
        None,      ///< the run stopped before it
        Written,   ///< it is new, or its content has changed
        Unchanged, ///< the folder had it already
        NoMac,     ///< the device has no MAC by which a phone can ask for it
        Repeated,  ///< an earlier device in the list has the MAC
        Failed     ///< it could not be written; a file that was there is unchanged
    };

    /// `folder` must exist; without "/" at the end.
    DocumentWriter(const QString &folder, const DeviceListSnapshot &list);

    /// Writes the documents on one thread for each processor, up to eight, including this one.
    /// Calls `progress` on this thread with the row that it begins. Stops at the first failure.
    /// Returns the outcome for each row. Removes what a killed run left behind.
    std::vector<Outcome> write(const std::function<void(int)> &progress);
    /// Removes the documents of devices that are not in the list, and no other file. Stops at the
    /// first that cannot be removed. Returns how many it removed.
    int removeOthers();

    /// What failed and why, as a sentence for the user; empty when nothing failed.
    QString reason() const { return m_reason; }

private:
    class Run;

    Outcome writeRow(int row, QString &reason) const;
    bool holds(const QString &path, const QByteArray &document) const;

    QString m_folder;
    DeviceListSnapshot m_list;
    Readers m_readers;
    uint m_group; ///< of the folder
    QString m_reason;
};
