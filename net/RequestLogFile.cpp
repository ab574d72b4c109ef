#include "net/RequestLogFile.h"

#include "model/CsvField.h"

#include <QDateTime>
#include <QFileInfo>
#include <QLocale>
#include <QStringList>

#include <algorithm>

namespace {

/// The bytes written at a time.
constexpr int partSize = 256 * 1024;

/// The characters kept of what a phone sent; far more than a meaningful name has.
constexpr int longestField = 200;

const QLatin1String lineEnd("\r\n");

/// Writes backslashes and invisible characters as escapes. A text that a spreadsheet would take for
/// a formula gets an apostrophe in front, which marks it as text there.
QString escaped(const QString &text)
{
    QString result;
    for (const QChar c : text) {
        switch (c.category()) {
        case QChar::Other_Control:
        case QChar::Other_Format:
        case QChar::Other_Surrogate:
        case QChar::Separator_Line:
        case QChar::Separator_Paragraph:
            result += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
            break;
        default:
            if (c == QLatin1Char('\\'))
                result += c;
            result += c;
        }
    }
    if (!result.isEmpty() && QStringLiteral("=+-@").contains(result.front()))
        result.prepend(QLatin1Char('\''));
    return result;
}

/// The text without what follows an address or precedes the host in it, which may be a password.
/// Three dots stand for what was left out at the end.
QString withoutSecrets(const QString &text)
{
    const auto addition = std::find_if(text.begin(), text.end(), [](QChar c) {
        return c == QLatin1Char('?') || c == QLatin1Char('&') || c == QLatin1Char(';');
    });
    const int end = static_cast<int>(addition - text.begin());
    const QString address = text.left(end).left(longestField);
    QString shown = address.section(QLatin1Char('@'), -1);
    if (address.size() == end && end < text.size())
        shown += text.at(end);
    if (address.size() < text.size())
        shown += QLatin1String("...");
    return shown;
}

/// ISO 8601, with the offset from UTC.
QString timeText(qint64 time)
{
    const QDateTime local = QDateTime::fromSecsSinceEpoch(time);
    return local.toOffsetFromUtc(local.offsetFromUtc()).toString(Qt::ISODate);
}

QString severalText(const LogRow &row)
{
    const QString count = QLocale(QLocale::English, QLocale::UnitedStates).toString(row.several);
    return row.request.peer == 0 ? QStringLiteral("%1 more from others").arg(count)
                                 : QStringLiteral("%1 more from %2")
                                       .arg(count, RequestEnd::addressText(row.request.peer));
}

} // namespace

RequestLogFile::RequestLogFile(const QString &folder)
    : m_folder(folder)
{
}

QByteArray RequestLogFile::titleRow()
{
    return "time,protocol,address,asked for,product,outcome,bytes sent,requests\r\n";
}

QByteArray RequestLogFile::text(const LogRow &row)
{
    const RequestEnd &request = row.request;
    const bool isOne = row.several == 0;
    const QStringList fields = {
        timeText(request.time),
        request.protocol == RequestEnd::Protocol::Http ? QStringLiteral("http")
                                                       : QStringLiteral("sip"),
        request.peer == 0 ? QString() : RequestEnd::addressText(request.peer),
        csvField(isOne ? escaped(withoutSecrets(request.asked)) : severalText(row)),
        csvField(escaped(withoutSecrets(request.product))),
        isOne ? QLatin1String(RequestEnd::word(request.outcome)) : QStringLiteral("more"),
        QString::number(request.bytes),
        QString::number(row.requests()),
    };
    return (fields.join(QLatin1Char(',')) + lineEnd).toUtf8();
}

QString RequestLogFile::path(int number) const
{
    return m_folder + QLatin1String("/requests") +
           (number == 0 ? QString() : QLatin1Char('-') + QString::number(number)) +
           QLatin1String(".csv");
}

WriteResult RequestLogFile::add(const std::vector<LogRow> &rows)
{
    QByteArray part = m_leftOut.several > 0 ? text(m_leftOut) : QByteArray();
    FileCalls::Error error = 0;
    const auto writePart = [&] {
        error = write(part);
        part.clear();
        if (error == 0)
            m_leftOut = LogRow();
    };
    for (const LogRow &row : rows) {
        if (error == 0 && part.size() >= partSize)
            writePart();
        if (error == 0)
            part += text(row);
        m_leftOut.several += row.requests();
        m_leftOut.request.bytes += row.request.bytes;
        m_leftOut.request.time = row.request.time;
    }
    if (!part.isEmpty())
        writePart();
    return error == 0 ? WriteResult() : WriteResult::failed(WholeFile::reason(error));
}

/// Writes all of the text or nothing.
FileCalls::Error RequestLogFile::write(const QByteArray &text)
{
    FileCalls::Handle file = FileCalls::noFile;
    qint64 size = 0;
    FileCalls::Error error = open(text.size(), file, size);
    if (error != 0)
        return error;
    const QByteArray all = size == 0 ? titleRow() + text : text;
    error = FileCalls::write(file, all.constData(), all.size());
    if (error != 0)
        FileCalls::cut(file, size);
    const FileCalls::Error closeError = FileCalls::close(file);
    return error != 0 ? error : closeError;
}

/// Opens a file with room for `more` bytes; starts a new one when the present one is full.
FileCalls::Error RequestLogFile::open(qint64 more, FileCalls::Handle &file, qint64 &size)
{
    FileCalls::Error error = FileCalls::makeFolder(m_folder);
    if (error == 0)
        error = FileCalls::openToAdd(path(0), file, size);
    if (error != 0 || size == 0 || size + more <= fullSize)
        return error;
    FileCalls::close(file);
    error = makeRoom();
    // While another program holds one of the files, this one may grow to twice its size.
    if (error != 0 && size + more > 2 * fullSize)
        return error;
    return FileCalls::openToAdd(path(0), file, size);
}

FileCalls::Error RequestLogFile::makeRoom()
{
    FileCalls::Error error = 0;
    for (int number = files - 1; number > 0 && error == 0; --number) {
        if (QFileInfo::exists(path(number - 1)))
            error = FileCalls::replace(path(number - 1), path(number));
    }
    return error;
}
