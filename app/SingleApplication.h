#pragma once

#include <QApplication>

#include <memory>

class SingleApplicationPrivate;

/// The application object. A user's session has one running copy; a later one wakes it and ends
/// inside the constructor, with exit status 0. GUI thread.
class SingleApplication : public QApplication
{
    Q_OBJECT
public:
    SingleApplication(int &argc, char **argv);
    /// Releases the key, so that the next start is the first copy again.
    ~SingleApplication() override;

    /// The key of the shared-memory segment and the local server of this program: both names
    /// joined, without what is neither a word character nor "-", "." or a blank.
    static QString instanceKey(const QString &applicationName, const QString &organizationName);

signals:
    /// Another copy was started. Emitted once for each copy.
    void showUp();

public slots:
    void slotConnectionEstablished();

private:
    std::unique_ptr<SingleApplicationPrivate> d;
};
