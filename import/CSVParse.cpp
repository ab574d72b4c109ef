#include "import/CSVParse.h"

#include "import/DeviceHeader.h"
#include "import/TextConversion.h"
#include "import/TextSource.h"
#include "model/DebugLog.h"
#include "model/ImportTarget.h"

#include <QLocale>
#include <QTextCodec>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace {

/// The most that one step reads: more than a millisecond's work.
constexpr std::size_t bytesInStep = 131072;
constexpr int rowsInStep = 500;

void removeLineEnd(std::string &field)
{
    if (field.find('\r') != std::string::npos) {
        qCDebug(debugLog) << "row data str contain r, remove it.";
        field.erase(std::remove(field.begin(), field.end(), '\r'), field.end());
    }
    // A field with an unclosed quote keeps the line end, which is not part of its text.
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
    return TextSource::encodingOf(sourcePath, legacyEncodingName());
}

bool CSVParse::convert(const QString &path, const QString &fromEncoding, const QString &toEncoding)
{
    TextConversion conversion(path, fromEncoding, TextSource::workFiles(m_workFolder).at(1),
                              toEncoding);
    while (conversion.readOn() == TextConversion::State::Converting) {
    }
    return conversion.readOn() == TextConversion::State::Done;
}

bool CSVParse::import(const QString &sourcePath, const QString &encodingName)
{
    start(sourcePath, encodingName);
    while (readOn() == Reading::More) {
    }
    if (reading() == Reading::Failed)
        return false;
    // The old list is given up only after the whole file was read without a fault.
    if (!m_target.clearOld()) {
        qCDebug(debugLog) << "return false because clearOld";
        return false;
    }
    m_target.addContacts(takeDevices());
    return true;
}

void CSVParse::begin(const QString &sourcePath)
{
    start(sourcePath, {});
}

void CSVParse::start(const QString &sourcePath, const QString &encodingName)
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    finish(Phase::Text, ImportFault::None);
    m_encoding.clear();
    m_text =
        std::make_unique<TextSource>(sourcePath, m_workFolder, encodingName, legacyEncodingName());
}

/// Ends a reading and frees what it holds; only Phase::Done keeps the devices.
void CSVParse::finish(Phase phase, ImportFault fault)
{
    m_phase = phase;
    m_fault = fault;
    m_text.reset();
    m_reader.reset();
    m_header.reset();
    m_row.clear();
    m_rowAbove.clear();
    m_fields.clear();
    if (phase != Phase::Done)
        m_devices.clear();
}

ParseBase::Reading CSVParse::readOn()
{
    switch (m_phase) {
    case Phase::Text:
        readText();
        break;
    case Phase::Titles:
        readTitles();
        break;
    case Phase::Rows:
        readRows();
        break;
    case Phase::Idle:
    case Phase::Done:
    case Phase::Failed:
        break;
    }
    return reading();
}

ParseBase::Reading CSVParse::reading() const
{
    switch (m_phase) {
    case Phase::Done:
        return Reading::Done;
    case Phase::Idle:
    case Phase::Failed:
        return Reading::Failed;
    default:
        return Reading::More;
    }
}

QList<ContactInfo> CSVParse::takeDevices()
{
    return std::exchange(m_devices, {});
}

void CSVParse::readText()
{
    const TextSource::State state = m_text->readOn();
    if (state == TextSource::State::Failed)
        finish(Phase::Failed, m_text->fault());
    if (state != TextSource::State::Done)
        return;
    m_encoding = m_text->encoding();
    m_phase = Phase::Titles;
}

void CSVParse::readTitles()
{
    if (m_text->isTitleBroken()) {
        finish(Phase::Failed, ImportFault::OtherTitles);
        return;
    }
    m_reader = std::make_unique<csv_parser>();
    // start() set the locale codec, so the name is in UTF-8 on every system.
    const QByteArray name = QFile::encodeName(TextSource::workFiles(m_workFolder).last());
    if (!m_reader->open_file(name.constData())) {
        finish(Phase::Failed, ImportFault::NoWorkFiles);
        return;
    }
    m_reader->set_enclosure('"', csv_parser::enclosure_optional);
    m_reader->set_field_term(',');
    m_reader->set_line_term('\n');
    readRow();
    m_header = std::make_unique<DeviceHeader>(fields());
    if (m_header->fault() != ImportFault::None)
        finish(Phase::Failed, m_header->fault());
    else
        m_phase = Phase::Rows;
}

void CSVParse::readRows()
{
    std::size_t bytes = 0;
    for (int rows = 0; rows < rowsInStep && bytes < bytesInStep; ++rows) {
        if (!m_reader->more_rows()) {
            finish(Phase::Done, ImportFault::None);
            return;
        }
        readRow();
        for (const std::string &field : m_row)
            bytes += field.size();
        qCDebug(debugLog) << "strList = " << fields();
        if (isBlank())
            continue;
        m_devices.append(ContactInfo()); // filled in place: copying one costs as much as reading it
        m_header->fill(m_devices.last(), m_fields);
    }
}

/// A field equal to the one above it shares its text. In most columns of a list that is every
/// field, and texts take most of an import's time and memory.
void CSVParse::readRow()
{
    std::swap(m_row, m_rowAbove);
    m_reader->next_row(m_row);
    m_fields.resize(m_row.size());
    for (std::size_t i = 0; i < m_row.size(); ++i) {
        std::string &bytes = m_row[i];
        const auto repeats = [&] { return i < m_rowAbove.size() && bytes == m_rowAbove[i]; };
        if (repeats())
            continue;
        removeLineEnd(bytes);
        if (!repeats())
            m_fields[i] = QString::fromUtf8(bytes.data(), static_cast<int>(bytes.size()));
    }
}

QStringList CSVParse::fields() const
{
    return QStringList(m_fields.begin(), m_fields.end());
}

/// Whether the row is empty or holds only the control character with which old systems end a text
/// file. A backup's rows have more fields, so none of its devices is taken for that character.
bool CSVParse::isBlank() const
{
    if (m_fields.size() == 1 && m_fields.front().size() == 1 &&
        m_fields.front().at(0).category() == QChar::Other_Control)
        return true;
    return std::all_of(m_fields.begin(), m_fields.end(),
                       [](const QString &field) { return field.trimmed().isEmpty(); });
}

void CSVParse::removeWorkFiles()
{
    if (reading() == Reading::More)
        finish(Phase::Idle, ImportFault::None);
    const QStringList files = TextSource::workFiles(m_workFolder);
    for (const QString &file : files)
        QFile::remove(file);
}
