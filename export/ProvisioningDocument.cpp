#include "export/ProvisioningDocument.h"

#include "model/DebugLog.h"
#include "model/MacAddress.h"
#include "model/PhoneFamily.h"
#include "model/WholeFile.h"

#include <QFile>
#include <QStringList>
#include <QXmlStreamWriter>

#include <algorithm>
#include <iterator>

namespace {

/// One parameter element of a document and the field that it carries.
struct Element
{
    const char *name;
    QString ContactInfo::*field;
};

/// The account settings in document order. Only their names differ between the families of phones;
/// the rest of the document is common to all.
constexpr Element deskPhone[] = {
    {"P47", &ContactInfo::sip_server},     {"P35", &ContactInfo::sip_user_id},
    {"P270", &ContactInfo::first_account}, {"P3", &ContactInfo::username},
    {"P36", &ContactInfo::auth_id},        {"P34", &ContactInfo::password},
    {"P48", &ContactInfo::proxy_server},   {"P290", &ContactInfo::dial_plan},
    {"P1362", &ContactInfo::language},     {"P78", &ContactInfo::random_port},
    {"P84", &ContactInfo::keep_alive},     {"P331", &ContactInfo::phonebook_path},
};
constexpr Element cordless[] = {
    {"P47", &ContactInfo::sip_server},     {"P4060", &ContactInfo::sip_user_id},
    {"P270", &ContactInfo::first_account}, {"P4180", &ContactInfo::username},
    {"P4090", &ContactInfo::auth_id},      {"P4120", &ContactInfo::password},
    {"P48", &ContactInfo::proxy_server},   {"P4200", &ContactInfo::dial_plan},
    {"P342", &ContactInfo::language},      {"P78", &ContactInfo::random_port},
    {"P84", &ContactInfo::keep_alive},     {"P331", &ContactInfo::phonebook_path},
};

struct FamilyElements
{
    template <std::size_t size>
    constexpr FamilyElements(ExportType type, const Element (&elements)[size])
        : document(type)
        , first(elements)
        , end(elements + size)
    {
    }

    ExportType document;
    const Element *first;
    const Element *end;
};

constexpr FamilyElements familyElements[] = {
    {DeskPhoneXml, deskPhone},
    {CordlessXml, cordless},
};

constexpr bool hasElements(const PhoneFamily &family)
{
    for (const FamilyElements &elements : familyElements) {
        if (elements.document == family.document)
            return true;
    }
    return false;
}

constexpr bool haveAllElements()
{
    for (const PhoneFamily &family : families) {
        if (!hasElements(family))
            return false;
    }
    return hasElements(otherPhones);
}
static_assert(haveAllElements(), "a family's document has no elements");

struct CodecNumber
{
    const char *name;
    const char *number;
};

constexpr std::array<CodecNumber, 8> codecNumbers = {{
    {"PCMU", "0"},
    {"PCMA", "8"},
    {"G722", "9"},
    {"G729A/B", "18"},
    {"G723.1", "4"},
    {"G726-32", "2"},
    {"GSM", "3"},
    {"L16-256", "98"},
}};

struct AddressGroup
{
    QString ContactInfo::*field;
    int firstElement; ///< number of the first of four consecutive elements
};

/// Real settings make no larger document. Reserving it spares growing the text piece by piece.
constexpr int usualSize = 4096;

/// Written by us: the writer names no encoding when it writes to a text.
constexpr char declaration[] = R"(<?xml version="1.0" encoding="UTF-8"?>)";

constexpr int staticIpElement = 8;
constexpr AddressGroup ipGroup = {&ContactInfo::ip, 9};
constexpr std::array<AddressGroup, 5> addressGroups = {{
    ipGroup,
    {&ContactInfo::subnet, 13},
    {&ContactInfo::gateway_ip, 17},
    {&ContactInfo::dns_server1, 21},
    {&ContactInfo::dns_server2, 25},
}};

constexpr auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner;

bool isXmlCharacter(uint codePoint)
{
    return codePoint == 0x9 || codePoint == 0xA || codePoint == 0xD ||
           (codePoint >= 0x20 && codePoint <= 0xD7FF) ||
           (codePoint >= 0xE000 && codePoint <= 0xFFFD) ||
           (codePoint >= 0x10000 && codePoint <= 0x10FFFF);
}

QString xmlText(const QString &text)
{
    const auto isPlain = [](QChar c) { return c.unicode() >= 0x20 && c.unicode() < 0xD800; };
    if (std::all_of(text.begin(), text.end(), isPlain))
        return text;
    QString kept;
    kept.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            kept += c;
            kept += text.at(++i);
        } else if (isXmlCharacter(c.unicode())) {
            kept += c;
        }
    }
    return kept;
}

void writeElement(QXmlStreamWriter &xml, int number, const QString &text)
{
    xml.writeTextElement(QLatin1Char('P') + QString::number(number), text);
}

void writeCodec(QXmlStreamWriter &xml, int element, const QString &codec)
{
    for (const CodecNumber &known : codecNumbers) {
        if (codec == QLatin1String(known.name))
            writeElement(xml, element, QLatin1String(known.number));
    }
}

void writeAddress(QXmlStreamWriter &xml, const AddressGroup &group, const QString &address)
{
    const QStringList parts = xmlText(address).split(QLatin1Char('.'));
    if (parts.size() != 4)
        return;
    if (group.field == ipGroup.field)
        writeElement(xml, staticIpElement, QStringLiteral("1"));
    for (int i = 0; i < parts.size(); ++i)
        writeElement(xml, group.firstElement + i, parts.at(i));
}

/// True when the file needs no writing; its permissions are then corrected.
bool holds(const QString &filePath, const QByteArray &content)
{
    QFile file(filePath);
    return file.open(QIODevice::ReadOnly) && file.size() == content.size() &&
           file.readAll() == content && file.setPermissions(ownerOnly);
}

bool written(const QString &filePath, const QByteArray &content)
{
    const WriteResult result =
        writeWholeFile(filePath, content, Durability::Replaced, Readers::OwnerOnly);
    if (!result)
        qCDebug(debugLog) << filePath << result.reason();
    return bool(result);
}

} // namespace

QString provisioningFileMac(const QString &filePath)
{
    const QString fileName = filePath.section(QLatin1Char('/'), -1);
    return fileName.contains(QLatin1String("cfg")) ? fileName.mid(3, 12) : QString();
}

QByteArray provisioningDocument(const ContactInfo &device, ExportType family)
{
    const QString version = QStringLiteral("version");
    const QString one = QStringLiteral("1");
    // A text: to bytes, the writer would write each piece through an I/O device.
    QString document;
    document.reserve(usualSize);
    document += QLatin1String(declaration);
    QXmlStreamWriter xml(&document);
    xml.setAutoFormatting(true);
    xml.writeStartElement(QStringLiteral("vl_provision"));
    xml.writeAttribute(version, one);
    xml.writeStartElement(QStringLiteral("config"));
    xml.writeAttribute(version, one);
    xml.writeTextElement(QStringLiteral("P271"), one); // the account is active
    const auto *const account =
        std::find_if(std::begin(familyElements), std::end(familyElements),
                     [family](const FamilyElements &known) { return known.document == family; });
    std::for_each(account->first, account->end, [&](const Element &element) {
        xml.writeTextElement(QLatin1String(element.name), xmlText(device.*element.field));
    });
    writeCodec(xml, 57, device.speech_coding1);
    writeCodec(xml, 58, device.speech_coding2);
    for (const AddressGroup &group : addressGroups)
        writeAddress(xml, group, device.*group.field);
    xml.writeEndDocument();
    return document.toUtf8();
}

bool exportProvisioningDocument(const QString &filePath, QList<ContactInfo> &devices,
                                ExportType family)
{
    const QString fileMac = provisioningFileMac(filePath);
    for (ContactInfo &device : devices) {
        device.mac.remove(QLatin1Char(':'));
        const QString recordMac = bareMac(device.mac);
        qCDebug(debugLog) << "tmpMac = " << recordMac << "; macInfo = " << fileMac;
        if (recordMac == fileMac) {
            const QByteArray document = provisioningDocument(device, family);
            return holds(filePath, document) || written(filePath, document);
        }
    }
    return false;
}
