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
/// milliseconds. Until it hands the new list over, as a whole, the program has the old one. Every
/// question comes before something is written. GUI thread.
///
/// A job shows no boxes: when it is `Asking`, somebody else puts question() to the user and gives
/// the answer.
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
        Undo,   ///< the last change is taken back
        Redo,   ///< a change that was taken back is made again
        Save    ///< the list stays as it is
    };
    enum class Phase {
        Reading,   ///< the new list is being made aside
        BackingUp, ///< what the new list drops is being put into backups
        Writing,   ///< the list is handed over; it is being saved
        Asking,    ///< work stands still until answer()
        Done,      ///< handed over, and saved unless the store says why not
        GivenUp,   ///< by the user or the end of the program
        Failed     ///< the list is as it was, for reason()
    };
    enum class Questions {
        Allowed,
        Refused ///< nobody is there to answer: as if the answer were "No"
    };

    struct Order
    {
        Kind kind = Kind::Save;
        std::unique_ptr<ListSource> source; ///< none: the list stays
        bool dropsList = false;             ///< the list before is backed up
        bool replacesStore = false;         ///< a store that cannot be used gives way to a new one
        Questions questions = Questions::Allowed;
        QString refusal; ///< why it fails before anything is done; mostly empty
    };

    enum class About {
        ListedDevice, ///< replace it?
        MissingBackup ///< go on without?
    };
    struct Question
    {
        About about;
        QString mac;          ///< ListedDevice
        bool several = false; ///< ListedDevice: more questions like it are to come
        QString reason;       ///< MissingBackup: why it cannot be written
    };
    enum class Answer { Yes, No, YesToAll, NoToAll };

    /// What the job does to the program. `handOver` adopts the new list and tells everybody;
    /// `removeStore` removes what is left of a store that was put aside.
    struct Effects
    {
        std::function<void(DeviceList &made)> handOver;
        std::function<void()> removeStore;
    };

    /// `devices` is the program's list; it, `store` and what `effects` calls must outlive the job.
    ListJob(const DeviceList &devices, ListStore &store, Effects effects, Order order);
    ~ListJob();
    ListJob(const ListJob &) = delete;
    ListJob &operator=(const ListJob &) = delete;

    Kind kind() const { return m_order.kind; }
    Questions questions() const { return m_order.questions; }
    Phase phase() const { return m_phase; }
    bool isOver() const;
    /// Whether there is another list than before.
    bool hasChangedList() const { return m_handedOver; }
    /// Why the job failed, for the user; empty when there is nothing to add to that it did.
    QString reason() const { return m_reason; }
    /// Whether reason() is the store's, made to stand inside a sentence, and not the source's,
    /// which is a sentence.
    bool isStoreAtFault() const { return m_isStoreAtFault; }

    /// Works until there is nothing to do, a question to be answered, or the time is over; also
    /// until a long list was handed over and before it is committed, unless there is no limit. At
    /// least one step is made.
    void work(const QDeadlineTimer &until);

    const Question &question() const { return m_question; }
    void answer(Answer answer);
    /// Ends the job where it is. What was handed over stays, what is not yet saved is not.
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
    std::unique_ptr<ListBackup> m_listBackup; ///< of the list that is dropped
};
