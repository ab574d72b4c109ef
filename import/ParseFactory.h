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

    /// A new importer without parent, owned by the caller. It makes its work files in `workFolder`,
    /// which ends in "/"; `target` must outlive it.
    ParseBase *createParser(ImportTarget &target, const QString &workFolder);
};
