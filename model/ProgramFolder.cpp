#include "model/ProgramFolder.h"

#include <QCoreApplication>

QString programFolder()
{
    return QCoreApplication::applicationFilePath().section(QLatin1Char('/'), 0, -2) +
           QLatin1Char('/');
}
