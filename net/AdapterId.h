#pragma once

#include <QString>

class QNetworkInterface;

/// The system's own name for this network card: on Windows the adapter's GUID in braces, elsewhere
/// the name of its interface. Each platform has its own source.
QString adapterId(const QNetworkInterface &card);
