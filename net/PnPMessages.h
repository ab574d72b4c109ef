#pragma once

#include <QByteArray>
#include <QString>

struct PnPRequest;

/// The three messages that the plug-and-play responder sends, as texts. Their branch, tags, Call-ID
/// and CSeq are constants for every telephone and every boot: part of the protocol as telephones
/// see it.
namespace PnPMessages {

/// The port on which telephones are heard.
constexpr quint16 requestPort = 5060;
/// The port that replies leave from and that the NOTIFY names.
constexpr quint16 replyPort = 5080;

/// To a telephone that is not in the list. `localAddress` is the address published for the HTTP
/// service.
QString notImplemented(const PnPRequest &request, const QString &localAddress);

/// To a telephone that is; the NOTIFY follows it.
QString accepted(const PnPRequest &request);

/// Tells the telephone where its file is. `httpdUrl` is the HTTP service's, without a "/" at its
/// end; models that need one get it.
QString notify(const PnPRequest &request, const QString &localAddress, const QString &httpdUrl);

} // namespace PnPMessages
