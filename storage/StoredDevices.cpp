#include "storage/StoredDevices.h"

#include "model/DebugLog.h"
#include "storage/ListStore.h"

ListSource::Step StoredDevices::step()
{
    switch (m_store.readOn(m_list)) {
    case ListStore::Step::More:
    case ListStore::Step::Pause:
        return Step::More;
    case ListStore::Step::Done:
        qCDebug(debugLog) << "queryData contact list size = " << m_list.size();
        return Step::Done;
    case ListStore::Step::Failed:
        break;
    }
    return Step::Failed;
}

QString StoredDevices::reason() const
{
    return m_store.reason();
}
