#pragma once

#include "import/ImportFault.h"
#include "model/ContactInfo.h"

#include <QList>
#include <QObject>

/// Reads a list of devices from a file. GUI thread.
///
/// begin() and readOn() read in steps and leave the device list alone, so that the window stays
/// responsive while a long file is read; import() does everything at once.
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

    /// The codec name of the legacy encoding of the user's region, for files that are not in UTF-8.
    virtual QString legacyEncodingName() const { return {}; }
    /// The start of the work files' paths, see ParseFactory::createParser().
    virtual QString workFolder() const { return {}; }
    /// Writes the text of the file at `path` in another encoding to "tmp1.csv" in the work folder.
    /// False when a codec is unknown, the text is not in `fromEncoding` or a file fails.
    /// Part of the interface; nothing here calls it.
    virtual bool convert(const QString &path, const QString &fromEncoding,
                         const QString &toEncoding)
    {
        Q_UNUSED(path)
        Q_UNUSED(fromEncoding)
        Q_UNUSED(toEncoding)
        return false;
    }
    /// Imports the file in one go. False when it is no device list in this encoding, as fault()
    /// tells, or when the old list cannot be cleared (fault() is None then). The list is unchanged
    /// after a failure.
    /// Part of the interface; the program imports in steps, which begin() starts.
    virtual bool import(const QString &sourcePath, const QString &encodingName)
    {
        Q_UNUSED(sourcePath)
        Q_UNUSED(encodingName)
        return false;
    }
    /// The codec name to import this file with: "UTF-8" or "UTF-16" when its bytes say so,
    /// otherwise legacyEncodingName(). Reads the whole file.
    /// Part of the interface; the program learns the encoding() in steps.
    virtual QString encodingOf(const QString &sourcePath) const
    {
        Q_UNUSED(sourcePath)
        return {};
    }
    /// Removes the work files, if they exist. Ends a reading that is under way.
    virtual void removeWorkFiles() {}

    /// Starts to read the file and gives up a reading that is under way. The steps find out the
    /// file's encoding.
    virtual void begin(const QString &sourcePath) { Q_UNUSED(sourcePath) }
    /// Does the next piece of work, which takes a few milliseconds at most.
    virtual Reading readOn() { return Reading::Failed; }
    /// Takes the devices read since the last call, in file order. The last of them are there after
    /// Done.
    virtual QList<ContactInfo> takeDevices() { return {}; }
    /// The codec name of the file read last; empty until it is known.
    virtual QString encoding() const { return {}; }
    /// Why the last reading failed; None if it did not.
    virtual ImportFault fault() const { return ImportFault::None; }
};
