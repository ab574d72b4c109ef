#pragma once

#include <QObject>

/// Reads a list of devices from a file. GUI thread.
class ParseBase : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// The name of the codec in which files of the user's region are written when they are not in
    /// UTF-8.
    virtual QString legacyEncodingName() const { return {}; }
    /// The folder in which work files are made, ending in "/".
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
    /// Imports the file. False when it is no list of devices in this encoding; what was listed
    /// before is then as it was.
    virtual bool import(const QString &sourcePath, const QString &encodingName)
    {
        Q_UNUSED(sourcePath)
        Q_UNUSED(encodingName)
        return false;
    }
    /// The codec name to import this file with: "UTF-8" when its bytes are, otherwise
    /// legacyEncodingName().
    virtual QString encodingOf(const QString &sourcePath) const
    {
        Q_UNUSED(sourcePath)
        return {};
    }
    /// Removes the work files where they exist.
    virtual void removeWorkFiles() {}
};
