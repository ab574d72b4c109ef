#pragma once

#include <QAbstractEventDispatcher>

/// The event dispatcher of a thread without an event loop. It wakes nothing, so it costs neither a
/// descriptor for each thread nor system calls for each socket.
class NoEventDispatcher : public QAbstractEventDispatcher
{
public:
    bool processEvents(QEventLoop::ProcessEventsFlags) override { return false; }
    bool hasPendingEvents() override { return false; }
    void registerSocketNotifier(QSocketNotifier *) override {}
    void unregisterSocketNotifier(QSocketNotifier *) override {}
    void registerTimer(int, int, Qt::TimerType, QObject *) override {}
    bool unregisterTimer(int) override { return true; }
    bool unregisterTimers(QObject *) override { return true; }
    QList<TimerInfo> registeredTimers(QObject *) const override { return {}; }
    int remainingTime(int) override { return 0; }
#ifdef Q_OS_WIN
    bool registerEventNotifier(QWinEventNotifier *) override
    {
        return false;
    }
    void unregisterEventNotifier(QWinEventNotifier *) override {}
#endif
    void wakeUp() override {}
    void interrupt() override {}
    void flush() override {}
};
