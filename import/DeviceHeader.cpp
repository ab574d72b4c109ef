#include "import/DeviceHeader.h"

#include "model/ContactFields.h"
#include "model/DebugLog.h"
#include "model/MacAddress.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>

namespace {

/// Titles, any one of which identifies a type. The table below has them in the order of testing.
struct KeyTitles
{
    HeaderType type;
    QStringList titles;
};

const QVector<KeyTitles> &keyTitles()
{
    static const QVector<KeyTitles> keys = {
        {MailHeader,
         {QStringLiteral("Given Name"), QStringLiteral("Group Membership"),
          QStringLiteral("Phone 1 - Type"), QStringLiteral("Phone 1 - Value")}},
        {OfficeHeader, {QStringLiteral("Categories"), QStringLiteral("Company Main Phone")}},
        {BusinessHeader, {QStringLiteral("Business Phone"), QStringLiteral("Business Fax")}},
        {ChineseOfficeHeader,
         {QStringLiteral("单位主要电话"), QStringLiteral("主要电话"), QStringLiteral("商务传真")}},
        {ChineseBusinessHeader, {QStringLiteral("业务电话"), QStringLiteral("业务传真")}},
        {EnglishDeviceHeader,
         {QStringLiteral("Random Port"), QStringLiteral("Gateway IP"),
          QStringLiteral("Dial Plan")}},
        {ChineseDeviceHeader,
         {QStringLiteral("随机端口"), QStringLiteral("网关IP"), QStringLiteral("拨号规则")}},
    };
    return keys;
}

bool isDeviceType(HeaderType type)
{
    return type == EnglishDeviceHeader || type == ChineseDeviceHeader;
}

bool hasAny(const QStringList &titles, const QStringList &wanted)
{
    return std::any_of(wanted.begin(), wanted.end(), [&](const QString &title) {
        return titles.contains(title, Qt::CaseInsensitive);
    });
}

QStringList columnsOf(HeaderType type)
{
    return DeviceHeader::standardLine(type).split(QLatin1Char(','));
}

/// The first match wins, but a device title, tested after those of phone books, wins over them.
HeaderType typeByKeys(const QStringList &titles)
{
    HeaderType type = PhonebookHeader;
    for (const KeyTitles &key : keyTitles()) {
        if (hasAny(titles, key.titles) && (type == PhonebookHeader || isDeviceType(key.type)))
            type = key.type;
    }
    return type;
}

bool isPhoneBook(const QStringList &titles)
{
    constexpr std::array<HeaderType, 6> types = {PhonebookHeader,       OfficeHeader,
                                                 ChineseOfficeHeader,   BusinessHeader,
                                                 ChineseBusinessHeader, MailHeader};
    return std::any_of(types.begin(), types.end(),
                       [&](HeaderType type) { return hasAny(titles, columnsOf(type)); }) ||
           typeByKeys(titles) != PhonebookHeader;
}

/// How many columns of this kind of device list occur in `titles`.
int countOf(HeaderType type, const QStringList &titles)
{
    const QStringList columns = columnsOf(type);
    return int(std::count_if(columns.begin(), columns.end(), [&](const QString &column) {
        return titles.contains(column, Qt::CaseInsensitive);
    }));
}

/// A hand-made list may have none of the key titles of a device list. "MAC" and one more of its
/// titles then identify it, unless the other titles are those of a phone book.
HeaderType classify(const QStringList &titles)
{
    const HeaderType type = typeByKeys(titles);
    if (type != PhonebookHeader || isPhoneBook(titles) ||
        !titles.contains(QLatin1String("MAC"), Qt::CaseInsensitive))
        return type;
    const int english = countOf(EnglishDeviceHeader, titles);
    const int chinese = countOf(ChineseDeviceHeader, titles);
    if (std::max(english, chinese) < 2)
        return type;
    return chinese > english ? ChineseDeviceHeader : EnglishDeviceHeader;
}

ImportFault faultOf(HeaderType type, bool hasMac, const QStringList &titles)
{
    if (isDeviceType(type))
        return hasMac ? ImportFault::None : ImportFault::NoMacColumn;
    const QString line = titles.join(QLatin1Char(','));
    const int commas = line.count(QLatin1Char(','));
    if (line.count(QLatin1Char(';')) > commas)
        return ImportFault::Semicolons;
    if (line.count(QLatin1Char('\t')) > commas)
        return ImportFault::Tabs;
    if (isPhoneBook(titles))
        return ImportFault::PhoneBook;
    if (std::any_of(titles.begin(), titles.end(), isMac))
        return ImportFault::NoTitles;
    const bool isOurs =
        std::max(countOf(EnglishDeviceHeader, titles), countOf(ChineseDeviceHeader, titles)) >= 2;
    return isOurs ? ImportFault::NoMacColumn : ImportFault::OtherTitles;
}

QStringList simplified(QStringList titles)
{
    for (QString &title : titles)
        title = title.simplified();
    qCDebug(debugLog) << "title is" << titles;
    return titles;
}

} // namespace

DeviceHeader::DeviceHeader(const QStringList &titles)
{
    const QStringList clean = simplified(titles);
    m_type = classify(clean);
    const QString line = standardLine(m_type);
    qCDebug(debugLog) << "standardTitle = " << line;
    const QStringList columns = line.split(QLatin1Char(','));
    for (const QString &column : columns) {
        const QRegularExpression whole(QLatin1Char('^') + column + QLatin1Char('$'),
                                       QRegularExpression::CaseInsensitiveOption);
        m_positions.append(clean.indexOf(whole));
    }
    m_fault = faultOf(m_type, m_positions.first() >= 0, titles);
}

void DeviceHeader::fill(ContactInfo &device, const std::vector<QString> &row) const
{
    const int fieldCount = static_cast<int>(row.size());
    int column = 0;
    for (const ContactField &field : contactCsvFields()) {
        const int position = m_positions.at(column++);
        if (position >= 0 && position < fieldCount)
            device.*field.member = row[static_cast<std::size_t>(position)];
    }
    device.mac = importedMac(device.mac);
}

QString DeviceHeader::standardLine(HeaderType type)
{
    switch (type) {
    case OfficeHeader:
    case BusinessHeader:
        return QStringLiteral("First Name,Last Name,Company Main Phone,Home Phone,Mobile Phone,"
                              "Business Fax,E-mail Address,Primary Phone,Categories");
    case ChineseOfficeHeader:
        return QStringLiteral("名,姓,单位主要电话,住宅电话,移动电话,商务传真,电子邮件地址,主要电话,"
                              "类别");
    case ChineseBusinessHeader:
        return QStringLiteral("名,姓,业务电话,住宅电话,移动电话,业务传真,电子邮件地址");
    case MailHeader:
        return QStringLiteral("Given Name,Family Name,E-mail 1 - type,E-mail 1 - Value,"
                              "Group Membership,Phone 1 - Type,Phone 1 - Value,Phone 2 - Type,"
                              "Phone 2 - Value,Phone 3 - Type,Phone 3 - Value,Phone 4 - Type,"
                              "Phone 4 - Value,Phone 5 - Type");
    case EnglishDeviceHeader:
        return englishCsvHeader();
    case ChineseDeviceHeader:
        return chineseCsvHeader();
    default:
        return QStringLiteral("First Name,Last Name,Work Phone,Home Phone,Mobile Phone,Fax,"
                              "E-mail Address,Primary Phone,Group,Work account,Home account,"
                              "Mobile account,Fax account,Frequent,Photo,Ring index,Ring");
    }
}
