#include "model/MacAddress.h"

QString bareMac(const QString &mac)
{
    QString bare = mac;
    bare.remove(QLatin1Char(':'));
    return bare.toLower();
}
