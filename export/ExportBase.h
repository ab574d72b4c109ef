#pragma once

#include "model/ContactInfo.h"

#include <QObject>

/// Writes a list of devices to a file. Exporters hold no state between calls; one is made for each
/// call and may run on any thread.
class ExportBase : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// Writes `devices` to `filePath` and returns whether that succeeded. `devices` is the
    /// exporter's own copy and may be modified by it.
    virtual bool exportFile(const QString &codecName, const QString &filePath,
                            QList<ContactInfo> &devices) = 0;
};
