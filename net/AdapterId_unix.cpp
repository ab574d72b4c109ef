#include "net/AdapterId.h"

#include <QNetworkInterface>

QString adapterId(const QNetworkInterface &card)
{
    return card.name();
}
