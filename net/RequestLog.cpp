#include "net/RequestLog.h"

#include <chrono>

namespace {

/// How long rows are gathered before they are written together.
constexpr std::chrono::milliseconds gatherTime{200};
/// The same after a failed write.
constexpr std::chrono::seconds retryTime{5};

} // namespace

RequestLog::RequestLog(const QString &folder, QObject *parent)
    : QObject(parent)
    , m_file(folder)
{
}

RequestLog::~RequestLog()
{
    stop();
}

void RequestLog::start()
{
    if (m_thread.joinable())
        return;
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        m_isOn = true;
        m_work = Work::None;
    }
    m_thread = std::thread([this] { run(); });
}

void RequestLog::stop()
{
    if (!m_thread.joinable())
        return;
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        m_isOn = false;
        m_work = Work::End;
    }
    m_call.notify_one();
    m_thread.join();
}

void RequestLog::flush()
{
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        if (m_work != Work::Some)
            return;
        m_work = Work::Flush;
    }
    m_call.notify_one();
}

void RequestLog::note(const RequestEnd &request)
{
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        if (!m_isOn)
            return;
        m_rows.add(request);
        if (m_work != Work::None)
            return;
        m_work = Work::Some;
    }
    m_call.notify_one();
}

void RequestLog::run()
{
    std::vector<LogRow> rows;
    std::unique_lock<std::mutex> lock(m_mutex);
    for (bool goesOn = true; goesOn;) {
        m_call.wait(lock, [this] { return m_work != Work::None; });
        m_call.wait_for(lock, m_hasFailed ? retryTime : gatherTime,
                        [this] { return m_work != Work::Some; });
        goesOn = m_work != Work::End;
        m_rows.take(rows, RequestEnd::now(), m_work != Work::Some);
        if (goesOn)
            m_work = m_rows.isEmpty() ? Work::None : Work::Some;
        lock.unlock();
        if (!rows.empty() || (!goesOn && m_hasFailed))
            m_hasFailed = !write(rows);
        lock.lock();
    }
}

bool RequestLog::write(const std::vector<LogRow> &rows)
{
    const WriteResult result = m_file.add(rows);
    if (!result && !m_hasFailed)
        emit failed(result.reason());
    return bool(result);
}
