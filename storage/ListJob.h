#pragma once

#include "model/DeviceList.h"
#include "storage/DuplicateAnswer.h"
#include "storage/ListBackup.h"
#include "storage/ListSource.h"

#include <QDeadlineTimer>
#include <QString>

#include <functional>
#include <memory>

class ListStore;

/// One change of the device list, from making the new list to saving it, in steps of a few
/// milliseconds. Until the job hands the new list over, as a whole, the program has the old one.
/// Every question comes before the stored list changes. GUI thread.
///
/// A job shows no boxes: while it is `Asking`, its owner puts question() to the user and calls
/// answer().
class ListJob
{
public:
    enum class Kind {
        Load,   ///< the stored list takes the place of the list; nothing is saved
        Insert, ///< one device is added
        Add,    ///< devices are added
        Edit,   ///< one device is edited
        Import, ///< the devices of a file are added, or take the place of the list
        Clear,  ///< the list is emptied
        Undo,   ///< the last change is undone
        Redo,   ///< an undone change is made again
        Save    ///< the list stays as it is
    };
    enum class Phase {
        Reading,   ///< the new list is being made aside
        BackingUp, ///< what the new list drops is being backed up
        Writing,   ///< the list, handed over if it is new, is being saved
        Asking,    ///< work stands still until answer()
        Done,      ///< handed over and saved, or unchanged; the store tells if the save failed
        GivenUp,   ///< by the user or the end of the program
        Failed     ///< the list stays as it was; reason() may tell why
    };
    enum class Questions {
        Allowed,
        Refused ///< nobody is there to answer: every answer is "No"
    };

    struct Order
    {
        Kind kind = Kind::Save;
        std::unique_ptr<ListSource> source; ///< null if the list stays
        bool dropsList = false;             ///< the old list is dropped, after a backup
        bool replacesStore = false;         ///< an unusable store is replaced by a new one
        Questions questions = Questions::Allowed;
        QString refusal; ///< if not empty, the job fails at once, for this reason
    };

    enum class About {
        ListedDevice, ///< replace it?
        MissingBackup ///< go on without?
    };
    struct Question
    {
        About about;
        QString mac;          ///< ListedDevice
        bool several = false; ///< ListedDevice: more such questions may follow
        QString reason;       ///< MissingBackup: why the backup cannot be written
    };
    enum class Answer { Yes, No, YesToAll, NoToAll };

    /// What the job does outside the store. `handOver` adopts the new list and announces it;
    /// `removeStore` removes what is left of a store that a new one replaces.
    struct Effects
    {
        std::function<void(DeviceList &made)> handOver;
        std::function<void()> removeStore;
    };

    /// `devices` is the program's list. It, `store` and what `effects` calls must outlive the job.
    ListJob(const DeviceList &devices, ListStore &store, Effects effects, Order order);
    ~ListJob();
    ListJob(const ListJob &) = delete;
    ListJob &operator=(const ListJob &) = delete;

    Kind kind() const { return m_order.kind; }
    Questions questions() const { return m_order.questions; }
    Phase phase() const { return m_phase; }
    bool isOver() const;
    /// Whether a new list was handed over.
    bool hasChangedList() const { return m_handedOver; }
    /// Why the job failed, for the user; may be empty.
    QString reason() const { return m_reason; }
    /// Whether reason() is the store's, which is a part of a sentence. Otherwise it is the
    /// source's; an import's is a sentence.
    bool isStoreAtFault() const { return m_isStoreAtFault; }

    /// Works until the job is over, a question is to be answered or the time is up, but makes at
    /// least one step. With a time limit, it also stops after a long list was handed over and
    /// before it is committed.
    void work(const QDeadlineTimer &until);

    const Question &question() const { return m_question; }
    void answer(Answer answer);
    /// Ends the job where it is. A list that was handed over stays; an unfinished save is undone.
    void giveUp();

private:
    void step();
    Phase read();
    Phase backUp();
    Phase backUpList();
    Phase replaceStore();
    Phase keepRows();
    Phase write();
    Phase notSaved();
    Phase ask(const Question &question);
    Phase goOnWithoutBackup();
    Phase fail(const QString &reason);

    const DeviceList &m_devices;
    ListStore &m_store;
    Effects m_effects;
    Order m_order;
    Phase m_phase = Phase::Reading;
    bool m_handedOver = false;
    bool m_pause = false; ///< events should be handled before the next step
    QString m_reason;
    bool m_isStoreAtFault = true;
    Question m_question = {};
    Phase m_askedIn = Phase::Reading;
    std::unique_ptr<ListBackup> m_listBackup; ///< of the list to be dropped
};
