#include "net/HttpdControl.h"

#include <QTime>

#include <cstdlib>

namespace {
constexpr quint16 defaultPort = 80;
}

HttpdControl::HttpdControl(ProvisioningSource &source, const QString &baseDir, QObject *parent)
    : QObject(parent)
    , m_source(source)
    , m_baseDir(baseDir)
{
}

HttpdControl::~HttpdControl() = default;

bool HttpdControl::open()
{
    if (m_state != State::Closed)
        return m_state == State::Open;
    m_state = State::Opening;
    m_service = std::make_unique<HttpdService>(m_source, m_baseDir);
    if (m_interfaces)
        m_service->setInterfaceSource(m_interfaces);
    connect(m_service.get(), &HttpdService::httpdMsg, this, &HttpdControl::httpdMsg);
    connect(m_service.get(), &HttpdService::requestEnded, this, &HttpdControl::requestEnded);
    connect(m_service.get(), &HttpdService::httpdAddressChanged, this,
            &HttpdControl::httpdAddressChanged);
    const bool started = m_service->start();
    if (!started || m_state == State::Closing) {
        m_service.reset();
        m_state = State::Closed;
        return false;
    }
    m_state = State::Open;
    std::srand(static_cast<unsigned>(QTime(0, 0).secsTo(QTime::currentTime())));
    return true;
}

void HttpdControl::close()
{
    switch (m_state) {
    case State::Opening:
        m_state = State::Closing;
        m_service->stop(); // open(), up the stack, still uses it
        break;
    case State::Open: {
        const bool documentsAreLeft = m_service->hasDocumentsToClear();
        m_service.reset();
        m_state = State::Closed;
        if (documentsAreLeft)
            emit documentsLeft();
        break;
    }
    case State::Closed:
    case State::Closing:
        break;
    }
}

bool HttpdControl::clearDocuments()
{
    if (m_state != State::Open)
        return false;
    m_service->clearDocuments();
    return true;
}

QStringList HttpdControl::addresses() const
{
    return m_service ? m_service->addresses() : QStringList();
}

quint16 HttpdControl::port() const
{
    return m_service ? m_service->port() : defaultPort;
}
