#pragma once

#include "model/ContactInfo.h"

#include <QElapsedTimer>
#include <QObject>

#include <algorithm>
#include <cstddef>
#include <vector>

/// Times of many calls of one kind.
class Samples
{
public:
    /// Calls `work` and keeps how long it took.
    template <typename Work>
    void measure(Work &&work)
    {
        QElapsedTimer timer;
        timer.start();
        work();
        m_nanoseconds.push_back(timer.nsecsElapsed());
    }

    /// The time in microseconds that this share of the calls did not exceed.
    double quantile(double share) const
    {
        std::vector<qint64> sorted = m_nanoseconds;
        std::sort(sorted.begin(), sorted.end());
        const auto place = static_cast<std::size_t>(share * static_cast<double>(sorted.size() - 1));
        return static_cast<double>(sorted.at(place)) / 1000;
    }
    double median() const { return quantile(0.5); }
    double p99() const { return quantile(0.99); }

private:
    std::vector<qint64> m_nanoseconds;
};

/// Has a timer event that is due every millisecond. The time between two of them is the time for
/// which the window would have been blocked.
class Pulse : public QObject
{
public:
    Pulse()
    {
        m_timer.start();
        startTimer(1);
    }
    double longestGap() const { return m_longest; }

protected:
    void timerEvent(QTimerEvent *) override
    {
        m_longest = std::max(m_longest, double(m_timer.nsecsElapsed()) / 1e6);
        m_timer.start();
    }

private:
    QElapsedTimer m_timer;
    double m_longest = 0;
};

/// The device of this number, with realistic values.
inline ContactInfo benchDevice(int number)
{
    const QString digits = QStringLiteral("%1").arg(number, 6, 16, QLatin1Char('0'));
    const QString text = QString::number(number);
    ContactInfo device;
    device.mac = QStringLiteral("02:00:a7:%1:%2:%3")
                     .arg(digits.mid(0, 2), digits.mid(2, 2), digits.mid(4, 2));
    device.product = QStringLiteral("KTP16XX");
    device.sip_server = QStringLiteral("sip.example.com");
    device.sip_user_id = text;
    device.first_account = text;
    device.ip =
        QStringLiteral("10.%1.%2.%3").arg(number >> 16).arg(number >> 8 & 255).arg(number & 255);
    device.username = QStringLiteral("User ") + text;
    device.password = QStringLiteral("password") + text;
    device.city = QStringLiteral("Springfield");
    device.company = QStringLiteral("Example Limited");
    device.department = QStringLiteral("Sales");
    device.auth_id = text;
    device.proxy_server = QStringLiteral("proxy.example.com");
    device.speech_coding1 = QStringLiteral("PCMU");
    device.speech_coding2 = QStringLiteral("G722");
    device.dial_plan = QStringLiteral("{ x+ | *x+ | *xx*x+ }");
    device.language = QStringLiteral("en");
    device.random_port = QStringLiteral("0");
    device.keep_alive = QStringLiteral("1");
    device.subnet = QStringLiteral("255.0.0.0");
    device.gateway_ip = QStringLiteral("10.0.0.1");
    device.dns_server1 = QStringLiteral("10.0.0.2");
    device.dns_server2 = QStringLiteral("10.0.0.3");
    device.phonebook_path = QStringLiteral("http://10.0.0.4/phonebook.xml");
    return device;
}

inline QList<ContactInfo> benchDevices(int count)
{
    QList<ContactInfo> devices;
    devices.reserve(count);
    for (int number = 0; number < count; ++number)
        devices.append(benchDevice(number));
    return devices;
}

/// The name under which this device's phone asks for its document.
inline QString benchFileName(const ContactInfo &device)
{
    QString mac = device.mac;
    return QStringLiteral("cfg%1.xml").arg(mac.remove(QLatin1Char(':')));
}
