#pragma once

#include <QApplication>

#include <memory>

class SingleApplicationPrivate;

/// The application object, of which a user's session has one running copy. A later copy wakes the
/// first one and ends inside the constructor, with exit status 0. GUI thread.
class SingleApplication : public QApplication
{
    Q_OBJECT
public:
    SingleApplication(int &argc, char **argv);
    /// Releases the key, so that the next start is the first copy again.
    ~SingleApplication() override;

    /// What names the shared-memory segment and the local server of this program: both names
    /// joined, without what is neither a word character nor "-", "." or a blank.
    static QString instanceKey(const QString &applicationName, const QString &organizationName);

signals:
    /// Another start was attempted. Once per attempt.
    void showUp();

public slots:
    void slotConnectionEstablished();

private:
    std::unique_ptr<SingleApplicationPrivate> d;
};
