#pragma once

#include "model/DeviceList.h"
#include "model/WholeFile.h"

#include <QString>

#include <functional>
#include <vector>

/// Writes the provisioning documents of a list into a folder from which another server hands them
/// out, each under the name that its telephone asks for and for the family that the device's
/// product model belongs to.
///
/// Only the owner of the process may read them, as they hold passwords, and the folder's group
/// where the folder hands that on. Any thread, one at a time.
class DocumentWriter
{
    Q_DECLARE_TR_FUNCTIONS(DocumentWriter)

public:
    /// What became of a device's document.
    enum class Outcome : char {
        None,      ///< it was not reached
        Written,   ///< it is new, or has another content
        Unchanged, ///< it was there
        NoMac,     ///< no telephone can ask for it
        Repeated,  ///< an earlier device of the list has the MAC
        Failed     ///< it could not be written; what was there is as it was
    };

    /// `folder` must exist; without "/" at the end.
    DocumentWriter(const QString &folder, const DeviceListSnapshot &list);

    /// Writes the documents on a thread for each processor, up to eight, this one among them, on
    /// which `progress` is called with the number of the devices begun. Stops at the first that
    /// fails. Returns the outcome for each row. What a run that was killed left is removed.
    std::vector<Outcome> write(const std::function<void(int)> &progress);
    /// Removes the documents of devices that are not in the list, and no other file, until one
    /// cannot be removed. Returns how many were.
    int removeOthers();

    /// What failed and why, a sentence for the user; empty when nothing did.
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
