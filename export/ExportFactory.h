#pragma once

#include <QObject>

class ExportBase;

/// Makes exporters by type code (see ExportType). One instance serves the whole program, on any
/// thread.
class ExportFactory : public QObject
{
    Q_OBJECT
public:
    /// The single instance, created on first use and never destroyed.
    static ExportFactory *instance();

    /// A new exporter without parent, owned by the caller, or null for an unknown code.
    ExportBase *createExporter(int type);

private:
    ExportFactory() = default;
};
