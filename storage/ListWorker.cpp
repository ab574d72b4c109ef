#include "storage/ListWorker.h"

#include <utility>

namespace {
// Short enough for animations; long enough for the event loop's own cost to be small.
constexpr int sliceMilliseconds = 15;
// While the window comes up, which takes some turns of the event loop.
constexpr int loadSliceMilliseconds = 2;
} // namespace

ListWorker::ListWorker(Ask ask, Tell tell, QObject *parent)
    : QObject(parent)
    , m_ask(std::move(ask))
    , m_tell(std::move(tell))
    , m_slice(sliceMilliseconds)
{
    m_turn.setSingleShot(true);
    connect(&m_turn, &QTimer::timeout, this, &ListWorker::turn);
    m_idle.setSingleShot(true);
    connect(&m_idle, &QTimer::timeout, this, [this] {
        if (isIdle())
            emit idle();
    });
}

void ListWorker::start(std::unique_ptr<ListJob> job)
{
    Q_ASSERT(!m_job);
    m_job = std::move(job);
    m_phase = Phase::Working;
    workOn();
}

bool ListWorker::putOff(const std::function<void()> &change)
{
    const bool inTurn = m_phase == Phase::CatchingUp || isIdle();
    if (!inTurn)
        m_waiting.push_back(change);
    return !inTurn;
}

void ListWorker::workOn()
{
    const std::shared_ptr<ListJob> job = m_job;
    const bool isLoad = job->kind() == ListJob::Kind::Load && m_slice >= 0;
    job->work(QDeadlineTimer(isLoad ? loadSliceMilliseconds : m_slice));
    while (job->phase() == ListJob::Phase::Asking) {
        m_phase = Phase::Asking;
        const ListJob::Answer answer = m_ask(job->question());
        if (m_job != job)
            return; // given up while the box was open
        m_phase = Phase::Working;
        job->answer(answer);
        job->work(QDeadlineTimer(m_slice));
    }
    if (job->isOver())
        end();
    else
        m_turn.start();
}

void ListWorker::end()
{
    const std::shared_ptr<ListJob> job = std::exchange(m_job, nullptr);
    m_phase = Phase::Idle;
    emit ended(*job);
    if (!m_waiting.empty())
        m_turn.start();
    m_idle.start();
    m_tell(*job);
}

void ListWorker::turn()
{
    if (m_job)
        workOn();
    else
        catchUp();
}

void ListWorker::catchUp()
{
    while (m_phase == Phase::Idle && !m_waiting.empty()) {
        const std::function<void()> change = std::move(m_waiting.front());
        m_waiting.pop_front();
        m_phase = Phase::CatchingUp;
        change();
        if (m_phase == Phase::CatchingUp)
            m_phase = Phase::Idle;
    }
    m_idle.start();
}

void ListWorker::finish()
{
    const int slice = std::exchange(m_slice, -1); // no limit
    m_turn.stop();
    while (m_phase == Phase::Working || (m_phase == Phase::Idle && !m_waiting.empty()))
        turn();
    m_slice = slice;
}

void ListWorker::giveUp()
{
    m_turn.stop();
    m_phase = Phase::Idle;
    if (const std::shared_ptr<ListJob> job = std::exchange(m_job, nullptr))
        job->giveUp();
}

void ListWorker::stop()
{
    m_waiting.clear();
    giveUp();
}
