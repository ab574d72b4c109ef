#pragma once

#include "net/RequestLogFile.h"
#include "net/RequestRows.h"

#include <QObject>

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

/// The request log: a row for each request, written by a thread of its own, so that neither a phone
/// nor the window ever waits for the disk. See RequestRows for the limits of its size and
/// RequestLogFile for its files.
///
/// note() may be called on any thread, the others on the owner's.
class RequestLog : public QObject
{
    Q_OBJECT

public:
    explicit RequestLog(const QString &folder, QObject *parent = nullptr);
    /// As stop().
    ~RequestLog() override;

    /// Starts to log requests. Does nothing when that has started.
    void start();
    /// Writes what was noted and ends the logging. Waits for that.
    void stop();
    /// Has what was noted written soon, including the remainder of this second.
    void flush();

    /// Notes a request. Costs the caller next to nothing; does nothing before start().
    void note(const RequestEnd &request);

signals:
    /// Requests are left out from here on, for this reason, which is a part of a sentence. Emitted
    /// once until a write succeeds, on the log's thread.
    void failed(const QString &reason);

private:
    enum class Work {
        None,  ///< nothing to write
        Some,  ///< rows are there, and more may come before they are written
        Flush, ///< they are to be written at once
        End,   ///< they are to be written, and the thread to end
    };

    void run();
    bool write(const std::vector<LogRow> &rows);

    std::mutex m_mutex; ///< guards the four below; a leaf
    std::condition_variable m_call;
    RequestRows m_rows;
    Work m_work = Work::None;
    bool m_isOn = false;

    RequestLogFile m_file;    ///< the log thread's while it runs
    bool m_hasFailed = false; ///< the log thread's while it runs
    std::thread m_thread;
};
