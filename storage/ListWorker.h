#pragma once

#include "storage/ListJob.h"

#include <QObject>
#include <QTimer>

#include <deque>
#include <functional>
#include <memory>

/// Does the jobs on the device list, one at a time, in slices; between them the program's event
/// loop handles events. Changes that come meanwhile wait here, in their order. GUI thread.
class ListWorker : public QObject
{
    Q_OBJECT
public:
    enum class Phase {
        Idle,
        Working,   ///< a job is being worked off
        Asking,    ///< a job waits for the user's answer to a box, which runs an event loop
        CatchingUp ///< a change that waited is being made
    };
    /// Puts a job's question to the user.
    using Ask = std::function<ListJob::Answer(const ListJob::Question &question)>;
    /// Called when a job is over, after ended(); may show boxes.
    using Tell = std::function<void(const ListJob &job)>;

    ListWorker(Ask ask, Tell tell, QObject *parent = nullptr);

    Phase phase() const { return m_phase; }
    /// The job under way, or nullptr.
    const ListJob *job() const { return m_job.get(); }
    /// True when no job is under way and no change waits.
    bool isIdle() const { return m_phase == Phase::Idle && m_waiting.empty(); }

    /// Starts a job and works off its first slice; no job may be under way. A short job is over
    /// when this returns.
    void start(std::unique_ptr<ListJob> job);
    /// True when a change cannot be made now: `change` is then called in its turn.
    bool putOff(const std::function<void()> &change);

    /// Works off the job under way and all changes that wait. Only a box's event loop runs.
    void finish();
    /// Gives up the job under way. The list is then the whole old one or the whole new one.
    void giveUp();
    /// The same, and discards the changes that wait.
    void stop();

    /// The length of a slice, in milliseconds; -1 is no limit: each job then ends within the call
    /// that starts it.
    void setSlice(int milliseconds) { m_slice = milliseconds; }

signals:
    /// A job is over. Do not connect queued: the job is destroyed soon after.
    void ended(const ListJob &job);
    /// No job is under way any more, and no change waits. Emitted from the event loop.
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
    QTimer m_idle; ///< emits idle() once, however many jobs have just ended
    int m_slice;
};
