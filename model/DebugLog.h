#pragma once

#include <QDebug>
#include <QLoggingCategory>

/// Qt's default logging category, for use as qCDebug(debugLog): the arguments are built only when
/// debug messages will be printed, which matters where whole records are dumped.
inline QLoggingCategory &debugLog()
{
    return *QLoggingCategory::defaultCategory();
}
