#pragma once

#include <QString>

/// The form under which addresses are looked up: every ":" removed, in lower case. Nothing is
/// validated.
QString bareMac(const QString &mac);
