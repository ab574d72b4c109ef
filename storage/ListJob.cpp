#include "storage/ListJob.h"

#include "storage/ListStore.h"
#include "storage/LongList.h"

#include <utility>

namespace {

DuplicateAnswer duplicateAnswer(ListJob::Answer answer)
{
    switch (answer) {
    case ListJob::Answer::Yes:
        return DuplicateAnswer::Replace;
    case ListJob::Answer::YesToAll:
        return DuplicateAnswer::ReplaceAll;
    case ListJob::Answer::NoToAll:
        return DuplicateAnswer::KeepAll;
    case ListJob::Answer::No:
        break;
    }
    return DuplicateAnswer::Keep;
}

} // namespace

ListJob::ListJob(const DeviceList &devices, ListStore &store, Effects effects, Order order)
    : m_devices(devices)
    , m_store(store)
    , m_effects(std::move(effects))
    , m_order(std::move(order))
{
    if (!m_order.source)
        m_phase = Phase::Writing;
}

ListJob::~ListJob()
{
    if (!isOver())
        giveUp();
}

bool ListJob::isOver() const
{
    return m_phase == Phase::Done || m_phase == Phase::GivenUp || m_phase == Phase::Failed;
}

void ListJob::work(const QDeadlineTimer &until)
{
    do {
        m_pause = false;
        step();
    } while (!isOver() && m_phase != Phase::Asking && !until.hasExpired() &&
             (!m_pause || until.isForever()));
}

void ListJob::step()
{
    switch (m_phase) {
    case Phase::Reading:
        m_phase = read();
        break;
    case Phase::BackingUp:
        m_phase = backUp();
        break;
    case Phase::Writing:
        m_phase = write();
        break;
    case Phase::Asking:
    case Phase::Done:
    case Phase::GivenUp:
    case Phase::Failed:
        break;
    }
}

ListJob::Phase ListJob::read()
{
    if (!m_order.refusal.isEmpty())
        return fail(m_order.refusal);
    switch (m_order.source->step()) {
    case ListSource::Step::More:
        return Phase::Reading;
    case ListSource::Step::Ask:
        return ask({About::ListedDevice, m_order.source->listedMac(),
                    m_order.source->hasSeveralListed(), QString()});
    case ListSource::Step::Failed:
        m_isStoreAtFault = false;
        return fail(m_order.source->reason());
    case ListSource::Step::Done:
        break;
    }
    if (!m_order.dropsList && !m_order.source->hasChanged())
        return Phase::Done;
    if (m_order.dropsList && m_devices.size() > 0)
        m_listBackup = m_store.backUp(m_devices.snapshot());
    return Phase::BackingUp;
}

/// Hands the list over once there is nothing more to back up.
ListJob::Phase ListJob::backUp()
{
    if (m_listBackup)
        return backUpList();
    if (m_order.replacesStore && !m_store.isUsable())
        return replaceStore();
    if (m_order.dropsList && m_store.hasToKeep())
        return keepRows();
    m_effects.handOver(m_order.source->list());
    m_handedOver = true;
    m_pause = isLongList(m_devices.size()); // the views need the time
    if (m_order.kind != Kind::Load)
        return Phase::Writing;
    m_store.setRead(m_devices.version());
    return Phase::Done;
}

ListJob::Phase ListJob::backUpList()
{
    switch (m_listBackup->step()) {
    case ListBackup::Step::More:
        break;
    case ListBackup::Step::Done:
        m_listBackup.reset();
        break;
    case ListBackup::Step::Failed:
        return ask({About::MissingBackup, QString(), false, m_store.backupError()});
    }
    return Phase::BackingUp;
}

ListJob::Phase ListJob::replaceStore()
{
    const DeviceListSnapshot present = m_devices.snapshot();
    if (m_store.replace(present)) {
        if (m_store.isUsable())
            return Phase::BackingUp; // it opened this time
        m_effects.removeStore();
        return m_store.open(present) ? Phase::BackingUp : fail(m_store.reason());
    }
    if (m_store.isHeld())
        return fail(m_store.reason());
    return ask({About::MissingBackup, QString(), false, m_store.reason()});
}

ListJob::Phase ListJob::keepRows()
{
    if (m_store.keepOn() != ListStore::Step::Failed)
        return m_phase;
    // A store that cannot be read now can be neither kept nor saved over.
    if (!m_store.isUsable() || m_store.isHeld())
        return m_phase == Phase::Writing ? notSaved() : fail(m_store.reason());
    return ask({About::MissingBackup, QString(), false, m_store.reason()});
}

ListJob::Phase ListJob::write()
{
    if (!m_store.isUsable() || !m_store.needsSave(m_devices.version()))
        return Phase::Done;
    if (!m_store.isWriting() && m_store.hasToKeep())
        return keepRows();
    switch (m_store.writeOn(m_devices.snapshot())) {
    case ListStore::Step::Pause:
        m_pause = true;
        return Phase::Writing;
    case ListStore::Step::More:
        return Phase::Writing;
    case ListStore::Step::Done:
    case ListStore::Step::Failed:
        break;
    }
    return Phase::Done;
}

ListJob::Phase ListJob::notSaved()
{
    if (m_store.isUsable())
        m_store.setBehind();
    return Phase::Done;
}

ListJob::Phase ListJob::ask(const Question &question)
{
    m_question = question;
    m_askedIn = m_phase;
    m_phase = Phase::Asking;
    if (m_order.questions == Questions::Refused)
        answer(Answer::No);
    return m_phase;
}

void ListJob::answer(Answer answer)
{
    Q_ASSERT(m_phase == Phase::Asking);
    m_phase = m_askedIn;
    if (m_question.about == About::ListedDevice)
        m_order.source->answer(duplicateAnswer(answer));
    else if (answer == Answer::Yes)
        m_phase = goOnWithoutBackup();
    else
        m_phase = m_askedIn == Phase::Writing ? notSaved() : Phase::GivenUp;
}

ListJob::Phase ListJob::goOnWithoutBackup()
{
    if (m_listBackup) {
        m_listBackup.reset();
    } else if (m_store.isUsable()) {
        m_store.skipKeeping();
    } else if (!m_store.open(m_devices.snapshot())) { // it may have changed while the box was open
        if (m_store.isHeld())
            return fail(m_store.reason());
        m_store.close();
        m_effects.removeStore();
        if (!m_store.open(m_devices.snapshot()))
            return fail(m_store.reason());
    }
    return m_askedIn;
}

ListJob::Phase ListJob::fail(const QString &reason)
{
    m_reason = reason;
    return Phase::Failed;
}

void ListJob::giveUp()
{
    m_store.stop();
    m_phase = Phase::GivenUp;
}
