#pragma once

#include "model/ContactInfo.h"

#include <QObject>

/// Writes a list of devices to a file. An exporter is made for each file and may run on any thread.
class ExportBase : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// Writes `devices` to `filePath` and returns whether that succeeded. `devices` is the
    /// exporter's own copy and may be modified by it.
    virtual bool exportFile(const QString &codecName, const QString &filePath,
                            QList<ContactInfo> &devices) = 0;

    /// Why the file could not be written, for the user. Empty where that is not known, and for a
    /// provisioning document, of which no user is told.
    QString reason() const { return m_reason; }

protected:
    QString m_reason;
};
