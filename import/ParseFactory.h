#pragma once

#include <QObject>

class ImportTarget;
class ParseBase;

/// Makes the importer of device list files.
class ParseFactory : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// A new importer without parent, owned by the caller. `workFolder` is the start of its work
    /// files' paths: a folder with "/" at its end, and optionally the start of their names.
    /// `target` must outlive the importer.
    ParseBase *createParser(ImportTarget &target, const QString &workFolder);
};
