#include "model/PhonesSeen.h"

#include "model/DeviceList.h"
#include "model/MacAddress.h"

#include <iterator>

namespace {
constexpr int tellInterval = 500; // ms
}

PhonesSeen::PhonesSeen(const DeviceList &list, QObject *parent)
    : QObject(parent)
    , m_list(list)
{
    m_changed.setSingleShot(true);
    m_changed.setInterval(tellInterval);
    connect(&m_changed, &QTimer::timeout, this, &PhonesSeen::changed);
}

void PhonesSeen::note(const RequestEnd &request)
{
    const QString mac = bareMac(request.mac);
    if (m_list.rowOfBareMac(mac) < 0)
        return;
    if (m_visits.size() >= m_list.size())
        forgetUnlisted();
    m_visits.insert(mac, {request.time, request.bytes, request.peer, request.outcome});
    if (!m_changed.isActive())
        m_changed.start();
}

QString PhonesSeen::text(const QString &mac) const
{
    const auto found = m_visits.constFind(bareMac(mac));
    if (found == m_visits.constEnd())
        return tr("This phone has not asked for its file since the program was started.");
    return tr("This phone last asked for its file at %1 from %2: %3.")
        .arg(RequestEnd::timeText(found->time), RequestEnd::addressText(found->peer),
             RequestEnd::text(found->outcome, found->bytes));
}

int PhonesSeen::count()
{
    forgetUnlisted();
    return m_visits.size();
}

/// A device that was deleted and comes back has been seen only since.
void PhonesSeen::forgetUnlisted()
{
    const quint64 version = m_list.version();
    if (m_version == version)
        return;
    m_version = version;
    for (auto visit = m_visits.begin(); visit != m_visits.end();)
        visit = m_list.rowOfBareMac(visit.key()) < 0 ? m_visits.erase(visit) : std::next(visit);
}
