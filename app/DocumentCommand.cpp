#include "app/DocumentCommand.h"

#include "app/Console.h"
#include "net/PrintableText.h"
#include "storage/SqliteDatabase.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>

#include <algorithm>

namespace {

constexpr int rowsReadAtOnce = 1000;
constexpr int barLength = 40;
constexpr int lineLength = barLength + 30; ///< including the numbers after the bar
constexpr int progressSteps = 200;

QString numberText(qint64 number)
{
    return QLocale(QLocale::English).toString(number);
}

} // namespace

DocumentCommand::DocumentCommand(const QString &listFolder, const QString &folder)
    : m_listFolder(listFolder)
    , m_folder(folder)
    , m_isWatched(Console::isTerminal(Console::Stream::Error))
{
}

bool DocumentCommand::run(bool removeOthers)
{
    if (!QFileInfo(m_folder).isDir())
        return fail(tr("The folder %1 does not exist.").arg(QDir::toNativeSeparators(m_folder)));
    return readList() && writeDocuments(removeOthers);
}

/// Reads the whole list before anything is written: a running program cannot save meanwhile.
bool DocumentCommand::readList()
{
    SqliteDatabase database(m_listFolder);
    const QString path = QDir::toNativeSeparators(database.filePath());
    if (!QFileInfo::exists(database.filePath()))
        return fail(tr("There is no list: %1 does not exist.").arg(path));
    bool isRead = database.openReadOnly();
    if (isRead) {
        const auto reader = database.readContacts();
        QList<ContactInfo> contacts;
        bool isMore = true;
        while (isMore) {
            isMore = reader->readOn(rowsReadAtOnce, contacts);
            for (const ContactInfo &contact : qAsConst(contacts))
                m_list.append(contact);
            contacts.clear();
        }
        isRead = database.lastErrorText().isEmpty();
    }
    return isRead || fail(tr("%1 can not be read: %2.").arg(path, database.lastErrorText()));
}

bool DocumentCommand::writeDocuments(bool removeOthers)
{
    using Outcome = DocumentWriter::Outcome;
    DocumentWriter writer(m_folder, m_list.snapshot());
    const auto outcomes = writer.write([this](int begun) { showProgress(begun); });
    clearProgress();
    const auto count = [&outcomes](Outcome outcome) {
        return numberText(std::count(outcomes.begin(), outcomes.end(), outcome));
    };
    const int removed = removeOthers && writer.reason().isEmpty() ? writer.removeOthers() : 0;
    Console::write(
        Console::Stream::Output,
        tr("Documents written: %1, left as they were: %2, removed: %3.")
                .arg(count(Outcome::Written), count(Outcome::Unchanged), numberText(removed)) +
            QLatin1Char('\n'));
    tellOmitted(outcomes);
    return writer.reason().isEmpty() || fail(writer.reason());
}

void DocumentCommand::tellOmitted(const std::vector<DocumentWriter::Outcome> &outcomes) const
{
    QString lines;
    int omitted = 0;
    for (std::size_t row = 0; row < outcomes.size(); ++row) {
        const bool isRepeated = outcomes[row] == DocumentWriter::Outcome::Repeated;
        if (!isRepeated && outcomes[row] != DocumentWriter::Outcome::NoMac)
            continue;
        ++omitted;
        const DeviceNode device = m_list.at(static_cast<int>(row));
        const QString text = isRepeated ? tr("%1: an earlier device has the MAC \"%2\"")
                                        : tr("%1: \"%2\" is no MAC");
        lines += QStringLiteral("  ") +
                 text.arg(QString::number(device.number), printableText(device.info.mac)) +
                 QLatin1Char('\n');
    }
    if (omitted > 0)
        Console::write(Console::Stream::Error,
                       tr("Devices without a document of their own: %1").arg(numberText(omitted)) +
                           QLatin1Char('\n') + lines);
}

/// Draws a progress bar, if the output goes to a terminal.
void DocumentCommand::showProgress(int begun)
{
    const int total = m_list.size();
    if (!m_isWatched || begun < m_nextShown)
        return;
    m_nextShown = begun + std::max(1, total / progressSteps);
    const auto full = static_cast<int>(static_cast<qint64>(barLength) * begun / total);
    Console::write(Console::Stream::Error, QStringLiteral("\r[%1%2] %3/%4")
                                               .arg(QString(full, QLatin1Char('#')),
                                                    QString(barLength - full, QLatin1Char(' ')),
                                                    numberText(begun), numberText(total)));
}

void DocumentCommand::clearProgress() const
{
    if (m_isWatched)
        Console::write(Console::Stream::Error, QLatin1Char('\r') +
                                                   QString(lineLength, QLatin1Char(' ')) +
                                                   QLatin1Char('\r'));
}

bool DocumentCommand::fail(const QString &reason) const
{
    Console::write(Console::Stream::Error, reason + QLatin1Char('\n'));
    return false;
}
