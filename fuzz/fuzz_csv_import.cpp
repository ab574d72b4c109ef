// Imports any bytes into a device list, writes the list to a backup and imports the backup, which
// must give the same list. The first byte chooses the encoding; the rest is the file.
#include "fuzz/FuzzTarget.h"
#include "import/CSVParse.h"
#include "model/ContactFields.h"
#include "model/DeviceList.h"
#include "model/ImportTarget.h"
#include "storage/DeviceBackup.h"

#include <QDebug>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <array>

namespace {

// An empty name stands for the result of encodingOf().
constexpr std::array<const char *, 10> encodings = {
    "UTF-8", "GBK", "Big5", "Big5-HKSCS", "Shift-JIS", "EUC-KR", "KOI8-R", "unknown", "UTF-16", ""};

/// Answers "Yes" to every question about a MAC that is in the list already.
class Target : public ImportTarget
{
public:
    bool clearOld() override
    {
        devices.clear();
        return true;
    }
    void addContacts(const QList<ContactInfo> &contacts) override
    {
        for (const ContactInfo &contact : contacts) {
            const int row = devices.rowOfMac(contact.mac);
            if (row < 0)
                devices.append(contact);
            else
                devices.replaceAt(row, contact);
        }
    }

    DeviceList devices;
};

/// The import skips a blank row, so a blank device does not come back.
bool isBlank(const ContactInfo &device)
{
    const auto &fields = contactFields();
    return std::all_of(fields.begin(), fields.end(), [&](const ContactField &field) {
        return (device.*field.member).trimmed().isEmpty();
    });
}

QList<ContactInfo> listed(const Target &target)
{
    QList<ContactInfo> contacts = target.devices.snapshot().contacts();
    contacts.erase(std::remove_if(contacts.begin(), contacts.end(), isBlank), contacts.end());
    for (int row = 0; row < contacts.size(); ++row)
        contacts[row].id = row;
    return contacts;
}

/// Reports where the two lists differ.
bool isSame(const QList<ContactInfo> &devices, const QList<ContactInfo> &again)
{
    for (int row = 0; row < std::max(devices.size(), again.size()); ++row) {
        const ContactInfo left = devices.value(row);
        const ContactInfo right = again.value(row);
        for (const ContactField &field : contactFields()) {
            if (left.*field.member != right.*field.member)
                qCritical() << "row" << row << field.column << left.*field.member << "came back as"
                            << right.*field.member;
        }
    }
    return devices == again;
}

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QTemporaryDir folder;
    static const QString source = folder.filePath(QStringLiteral("list.csv"));
    if (size == 0)
        return 0;
    write(source, QByteArray(reinterpret_cast<const char *>(data) + 1, static_cast<int>(size - 1)));

    Target target;
    CSVParse parser(target, folder.path() + QLatin1Char('/'));
    const QString name = QString::fromLatin1(encodings.at(data[0] % encodings.size()));
    const bool imported = parser.import(source, name.isEmpty() ? parser.encodingOf(source) : name);
    require(imported || target.devices.version() == 0);
    if (!imported)
        return 0;

    const QList<ContactInfo> devices = listed(target);
    write(source, DeviceBackup::csv(devices));
    Target again;
    CSVParse reader(again, folder.path() + QLatin1Char('/'));
    require(reader.encodingOf(source) == QLatin1String("UTF-8"));
    require(reader.import(source, QStringLiteral("UTF-8")));
    require(isSame(devices, listed(again)));
    return 0;
}
