#pragma once

#include "TestSocket.h"
#include "model/ExportType.h"
#include "model/ProvisioningSource.h"
#include "model/WholeFile.h"
#include "net/RequestLog.h"

#include <QByteArray>
#include <QFile>
#include <QStringList>
#include <QTest>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

/// Stands for the data manager: writes documents that tell for whom they were made.
class FakeSource : public ProvisioningSource
{
public:
    void saveList() override
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        ++m_saves;
    }

    bool exportDevices(int type, const QString &codecName, const QString &fileName,
                       const QString &folder) override
    {
        {
            std::unique_lock<std::mutex> guard(m_mutex);
            m_exports.append(QStringLiteral("%1 %2 %3").arg(type).arg(codecName, fileName));
            m_changed.notify_all();
            m_changed.wait(guard, [&] { return fileName != m_held; });
        }
        if (fileName.contains(QLatin1String("unknown")))
            return false;
        const QString path = folder + QLatin1Char('/') + fileName;
        const bool written =
            bool(writeWholeFile(path, document(type, fileName), Durability::Replaced));
        if (fileName.contains(QLatin1String("vanishing")))
            QFile::remove(path);
        const std::lock_guard<std::mutex> disk(m_disk);
        std::this_thread::sleep_for(m_writeTime);
        return written;
    }

    /// The disk takes so long for a document, one after the other. Before the first request.
    void setWriteTime(std::chrono::milliseconds time) { m_writeTime = time; }

    int deviceCount() const override { return 0; }
    quint64 listVersion() const override { return m_version; }
    void setListVersion(quint64 version) { m_version = version; }
    bool hasDevice(const QString &mac) const override
    {
        return !mac.contains(QLatin1String("unk"));
    }
    void requestEnded(const RequestEnd &request) override
    {
        if (m_log)
            m_log->note(request);
        const std::lock_guard<std::mutex> guard(m_mutex);
        m_ends.append(QStringLiteral("%1 %2")
                          .arg(QLatin1String(RequestEnd::word(request.outcome)))
                          .arg(request.bytes));
    }
    /// The requests are logged there as well. Before the first.
    void setLog(RequestLog *log) { m_log = log; }
    /// How requests ended, with the bytes sent.
    QStringList ends() const
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        return m_ends;
    }

    static QByteArray document(int type, const QString &fileName)
    {
        QByteArray text = QByteArray::number(type) + ' ' + fileName.toUtf8() + " \xc3\xa9\n";
        if (fileName.contains(QLatin1String("huge")))
            text += QByteArray(16 * 1024 * 1024, 'x');
        return text;
    }

    /// Exports of this file wait until another (or no) file is held.
    void hold(const QString &fileName)
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        m_held = fileName;
        m_changed.notify_all();
    }

    int saves() const
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        return m_saves;
    }

    QStringList exports() const
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        return m_exports;
    }

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_saves = 0;
    QStringList m_exports;
    QStringList m_ends;
    RequestLog *m_log = nullptr;
    QString m_held;
    std::atomic<quint64> m_version{0};
    std::mutex m_disk;
    std::chrono::milliseconds m_writeTime{0};
};

/// A client's end of a connection, on plain sockets so that each byte and each kind of end shows.
class Phone
{
public:
    /// The last number of its address, 127.0.0.x, tells the telephone's host.
    explicit Phone(quint16 port, int host = 1)
        : m_socket(TestSocket::open())
    {
        const auto local = address(0, host);
        ::bind(m_socket, &local, sizeof local);
        const auto server = address(port, 1);
        m_connected = ::connect(m_socket, &server, sizeof server) == 0;
    }
    ~Phone()
    {
        if (m_socket != TestSocket::none)
            TestSocket::close(m_socket);
    }
    Phone(Phone &&other) noexcept
        : m_socket(std::exchange(other.m_socket, TestSocket::none))
        , m_connected(other.m_connected)
    {
    }
    Phone(const Phone &) = delete;
    Phone &operator=(const Phone &) = delete;

    bool isConnected() const { return m_connected; }

    /// False when the server has closed its end.
    bool send(const QByteArray &bytes)
    {
        int sent = 0;
        while (sent < bytes.size()) {
            const auto count = ::send(m_socket, bytes.constData() + sent,
                                      TestSocket::Size(bytes.size() - sent), TestSocket::sendFlags);
            if (count <= 0)
                return false;
            sent += static_cast<int>(count);
        }
        return true;
    }

    void endInput() { ::shutdown(m_socket, TestSocket::endOfSending); }

    /// All that comes until the connection ends; `reset` tells whether it ended badly.
    QByteArray receiveAll(bool *reset = nullptr)
    {
        QByteArray result;
        char buffer[4096];
        int count = 0;
        while ((count = static_cast<int>(::recv(m_socket, buffer, sizeof buffer, 0))) > 0)
            result.append(buffer, count);
        if (reset)
            *reset = count < 0;
        return result;
    }

    /// True once the server has closed the connection or sent something.
    bool hasNews() const { return TestSocket::hasInput(m_socket); }

private:
    static sockaddr address(quint16 port, int host)
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl((INADDR_LOOPBACK & ~255U) | static_cast<unsigned>(host));
        sockaddr generic{};
        static_assert(sizeof generic == sizeof address);
        memcpy(&generic, &address, sizeof address);
        return generic;
    }

    TestSocket::Handle m_socket;
    bool m_connected = false;
};

inline QByteArray request(const QByteArray &name, const QByteArray &agent)
{
    return "GET /" + name + " HTTP/1.1\r\nHost: pc\r\nUser-Agent: " + agent + "\r\n\r\n";
}

/// What the server answers to these bytes, while nothing else happens on this thread: telephones
/// are served also when the GUI thread is busy.
inline QByteArray ask(quint16 port, const QByteArray &bytes, bool *reset = nullptr)
{
    Phone phone(port);
    phone.send(bytes);
    return phone.receiveAll(reset);
}

inline QByteArray bodyOf(const QByteArray &answer)
{
    const int end = answer.indexOf("\r\n\r\n");
    return end < 0 ? QByteArray() : answer.mid(end + 4);
}
