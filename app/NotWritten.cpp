#include "app/NotWritten.h"

#include "widgets/Modal.h"

#include <QDir>

QString NotWritten::text(const QString &place, const QString &reason)
{
    return tr("%1 can not be written: %2.").arg(QDir::toNativeSeparators(place), reason);
}

void NotWritten::tell(QWidget *parent, const QString &title, const QString &place,
                      const WriteResult &result)
{
    Modal::message(parent, QMessageBox::Warning, title, text(place, result.reason()));
}
