#pragma once

#include "import/ImportFault.h"
#include "model/ContactInfo.h"

#include <QList>
#include <QObject>

/// Reads a list of devices from a file. GUI thread.
///
/// begin() and readOn() read in steps and leave the list of devices alone, so that the window stays
/// alive while a long file is read; import() does all of it at once.
class ParseBase : public QObject
{
    Q_OBJECT
public:
    enum class Reading {
        More,   ///< readOn() has more to do
        Done,   ///< takeDevices() has the devices
        Failed, ///< fault() tells why
    };

    using QObject::QObject;

    /// The name of the codec in which files of the user's region are written when they are not in
    /// UTF-8.
    virtual QString legacyEncodingName() const { return {}; }
    /// What the paths of the work files begin with, see ParseFactory::createParser().
    virtual QString workFolder() const { return {}; }
    /// Writes the text of the file at `path` again, in another encoding, as "tmp1.csv" in the work
    /// folder. False when a codec is not known, the text does not fit it or a file fails.
    virtual bool convert(const QString &path, const QString &fromEncoding,
                         const QString &toEncoding)
    {
        Q_UNUSED(path)
        Q_UNUSED(fromEncoding)
        Q_UNUSED(toEncoding)
        return false;
    }
    /// Imports the file, in one go. False when it is no list of devices in this encoding, as
    /// fault() tells, or the old list cannot be cleared (fault() is None then); what was listed
    /// before is then as it was.
    virtual bool import(const QString &sourcePath, const QString &encodingName)
    {
        Q_UNUSED(sourcePath)
        Q_UNUSED(encodingName)
        return false;
    }
    /// The codec name to import this file with: "UTF-8" or "UTF-16" when its bytes are, otherwise
    /// legacyEncodingName(). Reads the whole file.
    virtual QString encodingOf(const QString &sourcePath) const
    {
        Q_UNUSED(sourcePath)
        return {};
    }
    /// Removes the work files where they exist. Ends a reading that is under way.
    virtual void removeWorkFiles() {}

    /// Starts to read the file; a reading that is under way is given up. In which encoding the file
    /// is will be found out in the steps.
    virtual void begin(const QString &sourcePath) { Q_UNUSED(sourcePath) }
    /// Does the next piece of work, which takes a few milliseconds at most.
    virtual Reading readOn() { return Reading::Failed; }
    /// The devices that were read and not taken before, in the order of the file; the last of them
    /// after Done.
    virtual QList<ContactInfo> takeDevices() { return {}; }
    /// The codec name of the file that is or was read; empty until it is known.
    virtual QString encoding() const { return {}; }
    /// Why the last reading failed; None unless it did.
    virtual ImportFault fault() const { return ImportFault::None; }
};
