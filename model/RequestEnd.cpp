#include "model/RequestEnd.h"

#include <QDateTime>
#include <QLocale>

QString RequestEnd::addressText(quint32 peer)
{
    return QStringLiteral("%1.%2.%3.%4")
        .arg(peer >> 24)
        .arg((peer >> 16) & 0xff)
        .arg((peer >> 8) & 0xff)
        .arg(peer & 0xff);
}

QString RequestEnd::timeText(qint64 time)
{
    const QDateTime local = QDateTime::fromSecsSinceEpoch(time);
    const QString format = local.date() == QDate::currentDate()
                               ? QStringLiteral("HH:mm:ss")
                               : QStringLiteral("yyyy-MM-dd HH:mm:ss");
    return QLocale::c().toString(local, format);
}

qint64 RequestEnd::now()
{
    return QDateTime::currentSecsSinceEpoch();
}

const char *RequestEnd::word(RequestOutcome outcome)
{
    switch (outcome) {
    case RequestOutcome::Sent:
        return "sent";
    case RequestOutcome::GaveUp:
        return "gave up";
    case RequestOutcome::NotListed:
        return "not listed";
    case RequestOutcome::NotWritten:
        return "not written";
    case RequestOutcome::RefusedName:
        return "refused name";
    case RequestOutcome::NoName:
        return "no name";
    case RequestOutcome::NoRequest:
        return "no request";
    case RequestOutcome::TurnedAway:
        return "turned away";
    case RequestOutcome::Dropped:
        return "dropped";
    case RequestOutcome::Closed:
        return "closed";
    case RequestOutcome::Accepted:
        return "accepted";
    case RequestOutcome::Malformed:
        return "malformed";
    case RequestOutcome::Repeated:
        return "repeated";
    case RequestOutcome::FarAddress:
        return "far address";
    case RequestOutcome::OwnAddress:
        return "own address";
    case RequestOutcome::TooBrief:
        return "too brief";
    case RequestOutcome::TooMany:
        return "too many";
    case RequestOutcome::NotSent:
        return "not sent";
    }
    return "";
}

QString RequestEnd::text(RequestOutcome outcome, qint64 bytes)
{
    // Both languages of the interface separate thousands with a comma.
    const QString count = QLocale(QLocale::English, QLocale::UnitedStates).toString(bytes);
    switch (outcome) {
    case RequestOutcome::Sent:
        return tr("sent %1 bytes").arg(count);
    case RequestOutcome::GaveUp:
        return tr("the phone gave up after %1 bytes").arg(count);
    case RequestOutcome::NotListed:
        return tr("no answer, not in the list");
    case RequestOutcome::NotWritten:
        return tr("no answer, the document could not be written");
    case RequestOutcome::RefusedName:
        return tr("no answer, such a file name is refused");
    case RequestOutcome::NoName:
        return tr("no answer, no document was asked for");
    case RequestOutcome::NoRequest:
        return tr("no answer, nothing was asked");
    case RequestOutcome::TurnedAway:
    case RequestOutcome::Dropped:
        return tr("cut off after %1 bytes, to make room for other phones").arg(count);
    case RequestOutcome::Closed:
        return tr("cut off after %1 bytes, as the service was closed").arg(count);
    case RequestOutcome::Accepted:
        return tr("told where its file is");
    case RequestOutcome::Malformed:
        return tr("no answer, the request is malformed");
    case RequestOutcome::Repeated:
        return tr("no answer, the request was repeated at once");
    case RequestOutcome::FarAddress:
        return tr("no answer, it would go to another network");
    case RequestOutcome::OwnAddress:
        return tr("no answer, it would come back or go to everybody");
    case RequestOutcome::TooBrief:
        return tr("no answer, the request is too short for it");
    case RequestOutcome::TooMany:
        return tr("no answer, too many requests");
    case RequestOutcome::NotSent:
        return tr("the answer could not be sent");
    }
    return {};
}

QString RequestEnd::line() const
{
    const QString who = timeText(time) + QLatin1Char(' ') + addressText(peer);
    if (protocol == Protocol::Http)
        return tr("%1: %2").arg(who, text(outcome, bytes));
    const QString end = outcome == RequestOutcome::NotListed ? tr("refused, not in the list")
                                                             : text(outcome, bytes);
    return mac.isEmpty() ? tr("%1: plug and play, %2").arg(who, end)
                         : tr("%1: plug and play of %2, %3").arg(who, mac, end);
}
