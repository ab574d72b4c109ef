#pragma once

#include "model/WholeFile.h"

#include <QCoreApplication>

class QWidget;

/// Tells the user that a file or an entry cannot be written.
class NotWritten
{
    Q_DECLARE_TR_FUNCTIONS(NotWritten)

public:
    /// One sentence that names `place`, a path, and says why.
    static QString text(const QString &place, const QString &reason);
    /// The same in a box over `parent`, which may be null. Returns when the box is answered.
    static void tell(QWidget *parent, const QString &title, const QString &place,
                     const WriteResult &result);
};
