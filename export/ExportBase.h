#pragma once

#include "model/ContactInfo.h"

#include <QObject>

/// Writes a list of devices to a file. Each file has an exporter of its own, on any thread.
class ExportBase : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// Writes `devices` to `filePath` and returns whether that succeeded. `devices` is the
    /// exporter's own copy and may be modified by it.
    virtual bool exportFile(const QString &codecName, const QString &filePath,
                            QList<ContactInfo> &devices) = 0;

    /// Why the file could not be written, for the user. Empty when the reason is not known, and for
    /// a provisioning document, whose failure is not shown to the user.
    QString reason() const { return m_reason; }

protected:
    QString m_reason;
};
