#include "import/TextSource.h"

#include "model/DebugLog.h"

#include <QFileInfo>

#include <algorithm>

namespace {

constexpr qint64 pieceSize = 262144;

const QString utf8Name = QStringLiteral("UTF-8");
const QString utf16Name = QStringLiteral("UTF-16");

QString encodingFor(EncodingProbe::Kind kind, const QString &legacyEncoding)
{
    switch (kind) {
    case EncodingProbe::Kind::Other:
        return legacyEncoding;
    case EncodingProbe::Kind::Utf16:
        return utf16Name;
    default:
        return utf8Name; // the import fails on a damaged file
    }
}

} // namespace

TextSource::TextSource(const QString &path, const QString &folder, const QString &encoding,
                       const QString &legacyEncoding)
    : m_encoding(encoding)
    , m_legacyEncoding(legacyEncoding)
    , m_workFiles(workFiles(folder))
    , m_files(path, m_workFiles.first(), pieceSize)
{
    if (isWorkFile(path, folder)) {
        failed(ImportFault::OwnWorkFile); // it would be removed before it is read
        return;
    }
    for (const QString &left : qAsConst(m_workFiles))
        QFile::remove(left);
    const ImportFault fault = m_files.open();
    if (fault != ImportFault::None)
        failed(fault);
}

QStringList TextSource::workFiles(const QString &folder)
{
    return {folder + QLatin1String("tmp.csv"), folder + QLatin1String("tmp1.csv"),
            folder + QLatin1String("tmp2.csv")};
}

bool TextSource::isWorkFile(const QString &path, const QString &folder)
{
    const QFileInfo file(path);
    const QStringList ours = workFiles(folder);
    return file.exists() && std::any_of(ours.begin(), ours.end(),
                                        [&](const QString &one) { return file == QFileInfo(one); });
}

QString TextSource::encodingOf(const QString &path, const QString &legacyEncoding)
{
    EncodingProbe probe;
    QFile file(path);
    if (file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        QByteArray block;
        while (!(block = file.read(pieceSize)).isEmpty())
            probe.look(block);
    }
    return encodingFor(probe.end(), legacyEncoding);
}

TextSource::State TextSource::readOn()
{
    switch (m_state) {
    case State::Copying:
        return copyOn();
    case State::Converting:
        return convertOn();
    case State::Cleaning:
        return cleanOn();
    default:
        return m_state;
    }
}

TextSource::State TextSource::copyOn()
{
    QByteArray piece;
    const ImportFault unread = m_files.read(piece);
    if (unread != ImportFault::None)
        return failed(unread);
    if (piece.isEmpty())
        return encodingFound();
    m_probe.look(piece);
    if (m_probe.kind() == EncodingProbe::Kind::NotText)
        return failed(ImportFault::NotText);
    const ImportFault unwritten = m_files.write(piece);
    return unwritten == ImportFault::None ? m_state : failed(unwritten);
}

TextSource::State TextSource::encodingFound()
{
    if (m_files.written() == 0)
        return failed(ImportFault::Empty);
    const EncodingProbe::Kind kind = m_probe.end();
    if (m_encoding.isEmpty())
        m_encoding = encodingFor(kind, m_legacyEncoding);
    if (m_encoding == utf8Name) {
        if (kind == EncodingProbe::Kind::DamagedUtf8)
            return failed(ImportFault::DamagedUnicode);
        if (kind != EncodingProbe::Kind::Utf8)
            return failed(ImportFault::OtherEncoding);
        m_files.setFiles(m_workFiles.first(), m_workFiles.last());
        return m_state = State::Cleaning;
    }
    m_files.setFiles(m_workFiles.at(1), m_workFiles.last());
    m_conversion = std::make_unique<TextConversion>(m_workFiles.first(), m_encoding,
                                                    m_workFiles.at(1), utf8Name);
    return m_state = State::Converting;
}

TextSource::State TextSource::convertOn()
{
    switch (m_conversion->readOn()) {
    case TextConversion::State::Converting:
        return m_state;
    case TextConversion::State::Done:
        return m_state = State::Cleaning;
    case TextConversion::State::Failed:
        break;
    }
    qCDebug(debugLog) << "return false because encode";
    const bool isDamaged =
        m_encoding == utf16Name && m_conversion->fault() == ImportFault::OtherEncoding;
    return failed(isDamaged ? ImportFault::DamagedUnicode : m_conversion->fault());
}

TextSource::State TextSource::cleanOn()
{
    QByteArray piece;
    const ImportFault unread = m_files.read(piece);
    if (unread != ImportFault::None)
        return failed(unread);
    const bool isEnd = piece.isEmpty();
    QByteArray text = isEnd ? m_lineEnds.rest() : m_lineEnds.made(piece);
    // Spreadsheet programs separate the columns of their "Unicode text" by tabs.
    if (m_encoding == utf16Name)
        text = m_tabColumns.inCommas(text) + (isEnd ? m_tabColumns.rest() : QByteArray());
    const ImportFault unwritten = m_files.write(text);
    if (unwritten != ImportFault::None)
        return failed(unwritten);
    if (!isEnd)
        return m_state;
    m_files.close();
    return m_state = State::Done;
}

TextSource::State TextSource::failed(ImportFault fault)
{
    m_files.close();
    m_fault = fault;
    return m_state = State::Failed;
}
