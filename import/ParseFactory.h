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

    /// A new importer without parent, owned by the caller. The paths of its work files begin
    /// with `workFolder`, a folder with "/" at its end, or also the start of their names; `target`
    /// must outlive it.
    ParseBase *createParser(ImportTarget &target, const QString &workFolder);
};
