#pragma once

#include <QByteArray>
#include <QString>

struct PnPRequest;

/// The three messages that the plug-and-play responder sends, as texts. Branch, tags, Call-ID and
/// CSeq are the request's, or constants for every phone and every boot: part of the protocol as
/// phones see it.
namespace PnPMessages {

/// The port on which the responder hears phones.
constexpr quint16 requestPort = 5060;
/// The port that replies leave from and that the NOTIFY names.
constexpr quint16 replyPort = 5080;

/// The reply to a phone that is not in the list. `localAddress` is the address published for the
/// HTTP service.
QString notImplemented(const PnPRequest &request, const QString &localAddress);

/// The reply to a phone that is in the list; the NOTIFY follows it.
QString accepted(const PnPRequest &request);

/// Tells the phone where its file is. `httpdUrl` is the HTTP service's address without a "/" at its
/// end; models that need the "/" get it.
QString notify(const PnPRequest &request, const QString &localAddress, const QString &httpdUrl);

} // namespace PnPMessages
