#pragma once

#include <QDebug>
#include <QLoggingCategory>

/// Qt's default logging category, for use as qCDebug(debugLog). The arguments are built only when
/// debug messages are printed, which matters where whole records are dumped.
inline QLoggingCategory &debugLog()
{
    return *QLoggingCategory::defaultCategory();
}
