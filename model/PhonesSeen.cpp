#include "model/PhonesSeen.h"

#include "model/DeviceList.h"
#include "model/MacAddress.h"

#include <iterator>

namespace {

constexpr int countInterval = 500; // ms

/// How many visits are kept beyond the length of the list, for removed devices that may come back.
constexpr int keptUnlisted = 10000;

} // namespace

PhonesSeen::PhonesSeen(const DeviceList &list, QObject *parent)
    : QObject(parent)
    , m_list(list)
{
    m_countTimer.setSingleShot(true);
    m_countTimer.setInterval(countInterval);
    connect(&m_countTimer, &QTimer::timeout, this, &PhonesSeen::count);
}

void PhonesSeen::note(const RequestEnd &request)
{
    const QString mac = bareMac(request.mac);
    if (m_list.rowOfBareMac(mac) < 0)
        return;
    if (m_visits.size() >= m_list.size() + keptUnlisted)
        forgetUnlisted();
    m_visits.insert(mac, {request.time, request.bytes, request.peer, request.outcome});
    onListChanged();
}

void PhonesSeen::onListChanged()
{
    if (!m_countTimer.isActive())
        m_countTimer.start();
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

void PhonesSeen::count()
{
    int seen = 0;
    for (auto visit = m_visits.cbegin(); visit != m_visits.cend(); ++visit)
        seen += m_list.rowOfBareMac(visit.key()) >= 0 ? 1 : 0;
    emit counted(seen);
}

void PhonesSeen::forgetUnlisted()
{
    for (auto visit = m_visits.begin(); visit != m_visits.end();)
        visit = m_list.rowOfBareMac(visit.key()) < 0 ? m_visits.erase(visit) : std::next(visit);
}
