#include "app/SingleApplication.h"

#include "app/Foreground.h"
#include "app/InstanceNames.h"

#include <QLocalServer>
#include <QLocalSocket>
#include <QRegularExpression>
#include <QSharedMemory>

#include <cstdlib>

namespace {

constexpr int segmentBytes = 1;
constexpr int knockTimeoutMs = 100;

} // namespace

class SingleApplicationPrivate
{
public:
    explicit SingleApplicationPrivate(SingleApplication *application)
        : q(application)
    {
    }

    bool claimKey(const QString &key);
    void listenForKnocks(const QString &key);
    void knock(const QString &key);

    std::unique_ptr<QSharedMemory> sharedMemory;
    SingleApplication *q;
    std::unique_ptr<QLocalServer> localServer;
    std::unique_ptr<QLocalSocket> localSocket;
};

bool SingleApplicationPrivate::claimKey(const QString &key)
{
    sharedMemory = std::make_unique<QSharedMemory>(InstanceNames::segment(key));
    // On some systems a segment outlives a killed process. The last process that detaches removes
    // it; the segment of a running copy stays.
    if (sharedMemory->attach())
        sharedMemory->detach();
    return sharedMemory->create(segmentBytes, QSharedMemory::ReadWrite);
}

void SingleApplicationPrivate::listenForKnocks(const QString &key)
{
    localServer = std::make_unique<QLocalServer>();
    const QString name = InstanceNames::server(key);
    QLocalServer::removeServer(name);
    // Without a listener, later copies still end but cannot wake this one.
    localServer->listen(name);
    QObject::connect(localServer.get(), &QLocalServer::newConnection, q,
                     &SingleApplication::slotConnectionEstablished);
}

void SingleApplicationPrivate::knock(const QString &key)
{
    letOthersComeToFront();
    localSocket = std::make_unique<QLocalSocket>();
    localSocket->connectToServer(InstanceNames::server(key), QIODevice::ReadWrite);
    if (!localSocket->waitForConnected(knockTimeoutMs))
        sharedMemory.reset();
}

SingleApplication::SingleApplication(int &argc, char **argv)
    : QApplication(argc, argv)
    , d(std::make_unique<SingleApplicationPrivate>(this))
{
    const QString key = instanceKey(applicationName(), organizationName());
    if (d->claimKey(key)) {
        d->listenForKnocks(key);
    } else {
        d->knock(key);
        // This copy ends at once: it has created nothing that needs to be taken down.
        std::_Exit(EXIT_SUCCESS);
    }
}

SingleApplication::~SingleApplication()
{
    d->sharedMemory.reset();
    d->localServer->close();
}

QString SingleApplication::instanceKey(const QString &applicationName,
                                       const QString &organizationName)
{
    static const QRegularExpression notAllowed(QStringLiteral("[^\\w\\-. ]"),
                                               QRegularExpression::UseUnicodePropertiesOption);
    QString key = applicationName + organizationName;
    return key.remove(notAllowed);
}

void SingleApplication::slotConnectionEstablished()
{
    // The connection itself is the message.
    std::unique_ptr<QLocalSocket> knock(d->localServer->nextPendingConnection());
    if (!knock)
        return;
    knock->close();
    knock.reset();
    emit showUp();
}
