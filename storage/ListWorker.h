#pragma once

#include "storage/ListJob.h"

#include <QObject>
#include <QTimer>

#include <deque>
#include <functional>
#include <memory>

/// Does the jobs on the device list, one at a time, in slices between which the program's event
/// loop handles its events. Changes that come meanwhile wait here, in their order. GUI thread.
class ListWorker : public QObject
{
    Q_OBJECT
public:
    enum class Phase {
        Idle,
        Working,   ///< a job is being worked off
        Asking,    ///< it waits for the user, whose box runs an event loop
        CatchingUp ///< a change that waited is being made
    };
    /// Puts a job's question to the user.
    using Ask = std::function<ListJob::Answer(const ListJob::Question &question)>;
    /// Called when a job is over, after ended(); may stop for the user.
    using Tell = std::function<void(const ListJob &job)>;

    ListWorker(Ask ask, Tell tell, QObject *parent = nullptr);

    Phase phase() const { return m_phase; }
    /// The job that is under way, or nullptr.
    const ListJob *job() const { return m_job.get(); }
    /// True when neither a job is under way nor a change waits for one.
    bool isIdle() const { return m_phase == Phase::Idle && m_waiting.empty(); }

    /// Starts a job, whose first slice is worked off at once; none may be under way. A short one is
    /// over when this returns.
    void start(std::unique_ptr<ListJob> job);
    /// True when a change cannot be made now; `change` is then called in its turn.
    bool putOff(const std::function<void()> &change);

    /// Works off what is under way and all that waits, without handling events.
    void finish();
    /// Gives up the job that is under way. The list is whole, the old one or the new one.
    void giveUp();
    /// The same, and forgets what waits.
    void stop();

    /// How long the event loop waits for a slice, in milliseconds. Tools without an event loop set
    /// it so high that every job ends where it is started.
    void setSlice(int milliseconds) { m_slice = milliseconds; }

signals:
    /// A job is over. Not for queued connections.
    void ended(const ListJob &job);
    /// Nothing is under way any more, and nothing waits. From the event loop.
    void idle();

private:
    void workOn();
    void end();
    void turn();
    void catchUp();

    Ask m_ask;
    Tell m_tell;
    Phase m_phase = Phase::Idle;
    std::shared_ptr<ListJob> m_job; ///< shared with the calls that work on it
    std::deque<std::function<void()>> m_waiting;
    QTimer m_turn;
    QTimer m_idle; ///< tells once, however many jobs have just ended
    int m_slice;
};
