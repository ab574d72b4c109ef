#include "import/DeviceHeader.h"

#include "model/ContactFields.h"
#include "model/DebugLog.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

/// Titles any of which tells a type, in the order of testing. The first two stand in contact
/// lists of several types and are told apart by what else is there.
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

/// Device titles are tested after those of contact lists, and win over them.
HeaderType classify(const QStringList &titles)
{
    HeaderType type = PhonebookHeader;
    for (const KeyTitles &key : keyTitles()) {
        const bool found =
            std::any_of(key.titles.begin(), key.titles.end(), [&](const QString &title) {
                return titles.contains(title, Qt::CaseInsensitive);
            });
        const bool isDevice = key.type == EnglishDeviceHeader || key.type == ChineseDeviceHeader;
        if (found && (type == PhonebookHeader || isDevice))
            type = key.type;
    }
    return type;
}

} // namespace

DeviceHeader::DeviceHeader(const QStringList &titles)
    : m_type(classify(titles))
{
    const QString line = standardLine(m_type);
    qCDebug(debugLog) << "standardTitle = " << line;
    const QStringList columns = line.split(QLatin1Char(','));
    for (const QString &column : columns) {
        const QRegularExpression whole(QLatin1Char('^') + column + QLatin1Char('$'),
                                       QRegularExpression::CaseInsensitiveOption);
        m_positions.append(titles.indexOf(whole));
    }
}

bool DeviceHeader::isDeviceList() const
{
    const bool isDeviceType = m_type == EnglishDeviceHeader || m_type == ChineseDeviceHeader;
    return isDeviceType && m_positions.first() >= 0;
}

ContactInfo DeviceHeader::device(const QStringList &row) const
{
    ContactInfo contact;
    int column = 0;
    for (const ContactField &field : contactCsvFields())
        contact.*field.member = row.value(m_positions.at(column++));
    return contact;
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
