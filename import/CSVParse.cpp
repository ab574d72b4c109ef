#include "import/CSVParse.h"

#include "import/DeviceHeader.h"
#include "import/csv_parser.h"
#include "model/DebugLog.h"
#include "model/ImportTarget.h"

#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QTextCodec>

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr std::array<const char *, 3> workFiles = {"tmp.csv", "tmp1.csv", "tmp2.csv"};
constexpr int lineBufferSize = 2048;
constexpr unsigned rowsBetweenBreaths = 100;
constexpr qint64 blockSize = 65536;

const QString utf8Name = QStringLiteral("UTF-8");
constexpr std::array<char, 3> byteOrderMark = {'\xef', '\xbb', '\xbf'};

/// These files hold passwords.
bool openPrivate(QFile &file, QIODevice::OpenMode mode)
{
    return file.open(mode) && file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
}

/// Whether there are characters that a codec gives to bytes that stand for nothing: private ones,
/// which some codecs have for every such byte or pair, or controls of the upper half. What a
/// private character shows is known to the machine alone that the text was written on.
bool hasUnassigned(const QString &text)
{
    for (int i = 0; i < text.size(); ++i) {
        uint character = text.at(i).unicode();
        if (QChar::isHighSurrogate(character) && i + 1 < text.size() &&
            text.at(i + 1).isLowSurrogate()) {
            character = QChar::surrogateToUcs4(ushort(character), text.at(i + 1).unicode());
            ++i;
        }
        const QChar::Category category = QChar::category(character);
        if (category == QChar::Other_PrivateUse || category == QChar::Other_NotAssigned ||
            category == QChar::Other_Surrogate || (character >= 0x80 && character < 0xa0))
            return true;
    }
    return false;
}

/// The text of `bytes`; null when they are not wholly in this encoding.
///
/// Not every codec counts what it cannot read: those that Qt takes from ICU put U+FFFD or, for a
/// single byte, SUB in its place, and drop a character that the end cuts off. A line end behind it
/// brings that to light as well. Whether the text gives the same bytes again tells nothing: several
/// codecs know some characters by two codes, and give private ones back faithfully.
QString decoded(const QTextCodec &codec, const QByteArray &bytes)
{
    constexpr QChar substitute(0x1a);
    const QChar lineEnd(QLatin1Char('\n'));
    QTextCodec::ConverterState end(QTextCodec::IgnoreHeader);
    const QByteArray probe = bytes + codec.fromUnicode(&lineEnd, 1, &end);
    QTextCodec::ConverterState state;
    QString text = codec.toUnicode(probe.constData(), probe.size(), &state);
    if (state.invalidChars > 0 || state.remainingChars > 0 || !text.endsWith(lineEnd) ||
        text.contains(QChar::ReplacementCharacter) ||
        text.count(substitute) > bytes.count('\x1a') || hasUnassigned(text))
        return {};
    text.chop(1);
    return text.isNull() ? QLatin1String("") : text;
}

bool isUtf8(const QString &path, ImportTarget &target)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return true; // for the import to fail on
    QTextCodec *const codec = QTextCodec::codecForName("UTF-8");
    QTextCodec::ConverterState state;
    while (!file.atEnd() && state.invalidChars == 0) {
        const QByteArray block = file.read(blockSize);
        if (block.isEmpty())
            break;
        codec->toUnicode(block.constData(), block.size(), &state);
        target.keepAlive();
    }
    // What remains is the start of a character that never ended.
    return state.invalidChars == 0 && state.remainingChars == 0;
}

/// Nothing in it, or the mark alone with which old systems end a text file. A backup's rows have
/// more fields, so that no device in it is taken for either.
bool isBlank(const QStringList &row)
{
    if (row.size() == 1 && row.first().size() == 1 &&
        row.first().at(0).category() == QChar::Other_Control)
        return true;
    return std::all_of(row.begin(), row.end(),
                       [](const QString &field) { return field.trimmed().isEmpty(); });
}

/// Whether the byte stands in the file.
bool contains(const QString &path, char byte)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    while (!file.atEnd()) {
        const QByteArray block = file.read(blockSize);
        if (block.isEmpty() || block.contains(byte))
            return !block.isEmpty();
    }
    return false;
}

void removeLineEnd(std::string &field)
{
    if (field.find('\r') != std::string::npos) {
        qCDebug(debugLog) << "row data str contain r, remove it.";
        field.erase(std::remove(field.begin(), field.end(), '\r'), field.end());
    }
    // A field whose quote is never closed keeps the line's end, which is none of its text.
    if (field.find('\n') != std::string::npos)
        field.erase(std::remove(field.begin(), field.end(), '\n'), field.end());
}

} // namespace

CSVParse::CSVParse(ImportTarget &target, const QString &workFolder)
    : m_target(target)
    , m_workFolder(workFolder)
{
}

CSVParse::~CSVParse() = default;

QString CSVParse::legacyEncodingName() const
{
    switch (QLocale().country()) {
    case QLocale::China:
        return QStringLiteral("GBK");
    case QLocale::Taiwan:
        return QStringLiteral("Big5");
    case QLocale::HongKong:
        return QStringLiteral("Big5-HKSCS");
    case QLocale::Japan:
        return QStringLiteral("Shift-JIS");
    case QLocale::RussianFederation:
        return QStringLiteral("KOI8-R");
    default:
        return QStringLiteral("EUC-KR");
    }
}

QString CSVParse::encodingOf(const QString &sourcePath) const
{
    return isUtf8(sourcePath, m_target) ? utf8Name : legacyEncodingName();
}

bool CSVParse::convert(const QString &path, const QString &fromEncoding, const QString &toEncoding)
{
    QTextCodec *const from = QTextCodec::codecForName(fromEncoding.toUtf8());
    QTextCodec *const to = QTextCodec::codecForName(toEncoding.toUtf8());
    QFile source(path);
    if (fromEncoding.isEmpty() || !from || !to || !source.open(QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = source.readAll();
    if (source.error() != QFile::NoError)
        return false;
    const QString text = decoded(*from, bytes);
    if (text.isNull())
        return false;

    QFile target(workFile("tmp1.csv"));
    target.remove();
    return openPrivate(target, QIODevice::WriteOnly) && target.write(to->fromUnicode(text)) >= 0 &&
           target.flush();
}

bool CSVParse::import(const QString &sourcePath, const QString &encodingName)
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    if (!prepare(sourcePath, encodingName))
        return false;

    csv_parser reader;
    // Since the locale codec was set above, the name is in UTF-8 on every system.
    if (!reader.open_file(QFile::encodeName(workFile("tmp2.csv")).constData()))
        return false;
    reader.set_enclosure('"', csv_parser::enclosure_optional);
    reader.set_field_term(',');
    reader.set_line_term('\n');
    QStringList titles = readRow(reader);
    for (QString &title : titles)
        title = title.simplified();
    qCDebug(debugLog) << "title is" << titles;

    // Whatever can go wrong goes wrong before the old list is given up.
    const DeviceHeader header(titles);
    if (!header.isDeviceList())
        return false;
    const QList<ContactInfo> devices = readDevices(reader, header);
    if (!m_target.clearOld()) {
        qCDebug(debugLog) << "return false because clearOld";
        return false;
    }
    m_target.addContacts(devices);
    return true;
}

/// Makes "tmp2.csv", UTF-8 without a byte-order mark, of the file.
bool CSVParse::prepare(const QString &sourcePath, const QString &encodingName)
{
    const bool isOurs = std::any_of(workFiles.begin(), workFiles.end(), [&](const char *name) {
        return QFileInfo(sourcePath) == QFileInfo(workFile(name));
    });
    if (isOurs)
        return false; // it would be removed before it is read
    removeWorkFiles();
    const QString copy = workFile("tmp.csv");
    if (!QFile::copy(sourcePath, copy))
        return false;
    QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
    if (encodingName == utf8Name)
        return encodingOf(copy) == utf8Name && copyText(copy, workFile("tmp2.csv"));
    if (!convert(copy, encodingName, utf8Name)) {
        qCDebug(debugLog) << "return false because encode";
        return false;
    }
    return copyText(workFile("tmp1.csv"), workFile("tmp2.csv"));
}

bool CSVParse::copyText(const QString &from, const QString &to) const
{
    // Where nothing but carriage returns ends the lines, they are no part of the fields: the whole
    // list would be read as one title row.
    const bool endsInReturns = !contains(from, '\n');
    QFile source(from);
    QFile target(to);
    // Written with LF alone on every system: the reader takes bytes as they are, and a CR would
    // stand between the last field's closing quote and its end. Not read in Qt's text mode, which
    // leaves the CR of a pair that the end of the buffer parts.
    if (!source.open(QIODevice::ReadOnly) || !openPrivate(target, QIODevice::WriteOnly))
        return false;
    bool first = true;
    unsigned pieces = 0;
    std::array<char, lineBufferSize> buffer;
    qint64 length = 0;
    while ((length = source.readLine(buffer.data(), lineBufferSize)) > 0) {
        char *start = buffer.data();
        if (endsInReturns) {
            std::replace(start, start + length, '\r', '\n');
        } else if (length > 1 && start[length - 1] == '\r') {
            source.ungetChar(start[--length]);
        } else if (length > 1 && start[length - 1] == '\n' && start[length - 2] == '\r') {
            start[--length - 1] = '\n';
        }
        if (first && length >= qint64(byteOrderMark.size()) &&
            std::equal(byteOrderMark.begin(), byteOrderMark.end(), start)) {
            start += byteOrderMark.size();
            length -= qint64(byteOrderMark.size());
        }
        first = false;
        // The reader would take a zero byte for the end of a field, and no list of texts has one.
        if (std::find(start, start + length, '\0') != start + length ||
            target.write(start, length) != length)
            return false;
        if (++pieces % rowsBetweenBreaths == 0)
            m_target.keepAlive();
    }
    return source.error() == QFile::NoError && target.flush();
}

/// A field that says the same as the one above it shares its text: in most columns of a list that
/// is every field, and texts are what an import spends its time and memory on.
QStringList CSVParse::readRow(csv_parser &reader)
{
    csv_row row = reader.next_row();
    QStringList fields;
    fields.reserve(static_cast<int>(row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) {
        std::string &bytes = row[i];
        const auto repeats = [&] { return i < m_rowAbove.size() && bytes == m_rowAbove[i]; };
        if (!repeats())
            removeLineEnd(bytes);
        fields.append(repeats() ? m_fieldsAbove.at(static_cast<int>(i))
                                : QString::fromStdString(bytes));
    }
    m_rowAbove = std::move(row);
    m_fieldsAbove = fields;
    return fields;
}

QList<ContactInfo> CSVParse::readDevices(csv_parser &reader, const DeviceHeader &header)
{
    QList<ContactInfo> devices;
    while (reader.more_rows()) {
        if (reader.record_count() % rowsBetweenBreaths == 0)
            m_target.keepAlive();
        const QStringList row = readRow(reader);
        qCDebug(debugLog) << "strList = " << row;
        if (!isBlank(row))
            devices.append(header.device(row));
    }
    return devices;
}

QString CSVParse::workFile(const char *name) const
{
    return m_workFolder + QLatin1String(name);
}

void CSVParse::removeWorkFiles()
{
    for (const char *const name : workFiles)
        QFile::remove(workFile(name));
}
