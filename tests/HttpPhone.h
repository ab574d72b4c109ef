#pragma once

#include "Literal.h"
#include "model/ExportType.h"
#include "model/ProvisioningSource.h"
#include "model/WholeFile.h"
#include "net/RequestLog.h"
#include "net/SocketPlatform.h"

#include <QByteArray>
#include <QSemaphore>
#include <QStringList>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#ifdef Q_OS_WIN
#include <winsock2.h>
using SocketSize = int;
constexpr int sendQuietly = 0;
constexpr int endOfSending = SD_SEND;
#else
#include <netinet/in.h>
#include <sys/socket.h>
using SocketSize = std::size_t;
constexpr int sendQuietly = MSG_NOSIGNAL;
constexpr int endOfSending = SHUT_WR;
#endif

/// Stands for the data manager. Its documents name their type and their file.
class FakeSource : public ProvisioningSource
{
public:
    void saveList() override {}
    int deviceCount() const override { return 0; }
    quint64 listVersion() const override { return version; }
    bool hasDevice(const QString &mac) const override { return !mac.contains("unk"_s); }
    bool exportDevices(int type, const QString &codecName, const QString &fileName,
                       const QString &folder) override
    {
        {
            std::unique_lock<std::mutex> guard(m_mutex);
            m_exports.append("%1 %2 %3"_s.arg(type).arg(codecName, fileName));
            m_released.wait(guard, [&] { return fileName != m_held; });
        }
        if (fileName.contains("unknown"_s))
            return false;
        if (isDiskSlow)
            disk.acquire();
        const QString path = folder + QLatin1Char('/') + fileName;
        return bool(writeWholeFile(path, document(type, fileName.toUtf8()), Durability::Replaced));
    }
    void requestEnded(const RequestEnd &request) override
    {
        if (log)
            log->note(request);
        const std::lock_guard<std::mutex> guard(m_mutex);
        m_ends.append(
            "%1 %2"_s.arg(QLatin1String(RequestEnd::word(request.outcome))).arg(request.bytes));
    }

    static QByteArray document(int type, const QByteArray &fileName)
    {
        return QByteArray::number(type) + ' ' + fileName + " \xc3\xa9\n" +
               QByteArray(fileName.contains("huge") ? 16 * 1024 * 1024 : 0, 'x');
    }

    /// Exports of this file wait until another (or no) file is held.
    void hold(const QString &fileName)
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        m_held = fileName;
        m_released.notify_all();
    }
    QStringList exports() const { return locked(m_exports); }
    /// The outcome of each request, with the bytes sent.
    QStringList ends() const { return locked(m_ends); }

    std::atomic<quint64> version{0};
    QSemaphore disk; ///< how many documents a slow disk writes until it stands still again
    // Set these before the first request.
    bool isDiskSlow = false;
    RequestLog *log = nullptr; ///< the requests are logged there as well

private:
    QStringList locked(const QStringList &list) const
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        return list;
    }

    mutable std::mutex m_mutex;
    std::condition_variable m_released;
    QStringList m_exports;
    QStringList m_ends;
    QString m_held;
};

/// A client's end of a connection, on plain sockets so that each byte and each kind of end shows.
class Phone
{
public:
    /// `host` is the last number of the phone's address, 127.0.0.x.
    explicit Phone(quint16 port, int host = 1)
        : m_socket(new Handle(::socket(AF_INET, SOCK_STREAM, 0)), [](const Handle *socket) {
            SocketPlatform::close(std::intptr_t(*socket));
            delete socket;
        })
    {
        const auto local = address(0, host);
        ::bind(*m_socket, &local, sizeof local);
        const auto server = address(port, 1);
        m_connected = ::connect(*m_socket, &server, sizeof server) == 0;
    }

    bool isConnected() const { return m_connected; }

    /// False when the server has closed its end.
    bool send(const QByteArray &bytes)
    {
        return ::send(*m_socket, bytes.constData(), SocketSize(bytes.size()), sendQuietly) ==
               bytes.size();
    }

    void endInput() { ::shutdown(*m_socket, endOfSending); }

    /// Receives until the connection ends; `reset` tells whether it ended badly.
    QByteArray receiveAll(bool *reset = nullptr)
    {
        QByteArray result;
        char buffer[4096];
        int count = 0;
        while ((count = static_cast<int>(::recv(*m_socket, buffer, sizeof buffer, 0))) > 0)
            result.append(buffer, count);
        if (reset)
            *reset = count < 0;
        return result;
    }

    /// True once the server has closed the connection or sent something, within the time.
    bool hasNews(std::chrono::milliseconds time = std::chrono::milliseconds(0)) const
    {
        return SocketPlatform::hasInput(std::intptr_t(*m_socket), time);
    }

private:
    using Handle = decltype(::socket(0, 0, 0));

    static sockaddr address(quint16 port, int host)
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl((INADDR_LOOPBACK & ~255U) | static_cast<unsigned>(host));
        sockaddr generic{};
        memcpy(&generic, &address, sizeof address);
        return generic;
    }

    std::shared_ptr<const Handle> m_socket;
    bool m_connected = false;
};

inline QByteArray request(const QByteArray &name, const QByteArray &agent)
{
    return "GET /" + name + " HTTP/1.1\r\nHost: pc\r\nUser-Agent: " + agent + "\r\n\r\n";
}

/// The server's answer to these bytes. This thread stands still meanwhile: phones are served also
/// when the GUI thread is busy.
inline QByteArray ask(quint16 port, const QByteArray &bytes, bool *reset = nullptr)
{
    Phone phone(port);
    phone.send(bytes);
    return phone.receiveAll(reset);
}

inline QByteArray bodyOf(const QByteArray &answer)
{
    return answer.mid(answer.indexOf("\r\n\r\n") + 4);
}
