#include "app/ExportPage.h"

ExportPage::ExportPage(QWidget *parent)
    : PathPage({QStringLiteral("export"), tr("Export file"), tr("Export to"), tr("Select path"),
                tr("Export")},
               parent)
{
}
