#include "model/ContactFields.h"

#include <QStringList>

#include <algorithm>
#include <iterator>

namespace {

using Fields = std::array<ContactField, contactFieldCount>;

/// The only list of the fields, in record order. Each row has the field's place among the text
/// columns of the table and among the columns of a file.
constexpr ContactField table[] = {
    {"mac", "MAC", "MAC", &ContactInfo::mac, 0, 0},
    {"product", "Product Model", "设备型号", &ContactInfo::product, 1, 1},
    {"sip_server", "SIP Server", "SIP服务器", &ContactInfo::sip_server, 2, 3},
    {"sip_user_id", "SIP User ID", "用户ID", &ContactInfo::sip_user_id, 3, 4},
    {"first_account", "Primary Account", "分机号", &ContactInfo::first_account, 4, 2},
    {"ip", "IP", "IP", &ContactInfo::ip, 7, 13},
    {"username", "Username", "用户名", &ContactInfo::username, 5, 9},
    {"password", "Password", "密码", &ContactInfo::password, 6, 6},
    {"city", "City", "城市", &ContactInfo::city, 8, 20},
    {"company", "Company", "公司", &ContactInfo::company, 9, 21},
    {"department", "Department", "部门", &ContactInfo::department, 10, 22},
    {"auth_id", "Authentication ID", "鉴权ID", &ContactInfo::auth_id, 11, 5},
    {"proxy_server", "Proxy Server", "代理服务器", &ContactInfo::proxy_server, 12, 23},
    {"speech_coding1", "Speech Coding1", "语言编码1", &ContactInfo::speech_coding1, 13, 7},
    {"speech_coding2", "Speech Coding2", "语言编码2", &ContactInfo::speech_coding2, 14, 8},
    {"dial_plan", "Dial Plan", "拨号规则", &ContactInfo::dial_plan, 15, 19},
    {"language", "language", "语言", &ContactInfo::language, 16, 10},
    {"random_port", "Random Port", "随机端口", &ContactInfo::random_port, 17, 11},
    {"keep_alive", "Keep-Alive", "Keep-Alive", &ContactInfo::keep_alive, 18, 12},
    {"subnet", "Subnet", "子网", &ContactInfo::subnet, 19, 14},
    {"gateway_ip", "Gateway IP", "网关IP", &ContactInfo::gateway_ip, 20, 15},
    {"dns_server1", "DNS Server 1", "DNS服务器1", &ContactInfo::dns_server1, 21, 16},
    {"dns_server2", "DNS Server 2", "DNS服务器2", &ContactInfo::dns_server2, 22, 17},
    {"phonebook_path", "Enterprise Directory Path", "通讯录路径", &ContactInfo::phonebook_path, 23,
     18},
};

constexpr bool isEveryMemberOnce()
{
    for (const ContactField &field : table) {
        int count = 0;
        for (const ContactField &other : table)
            count += field.member == other.member ? 1 : 0;
        if (count != 1)
            return false;
    }
    return true;
}

constexpr bool isEveryPlaceOnce(int ContactField::*place)
{
    for (int wanted = 0; wanted < static_cast<int>(std::size(table)); ++wanted) {
        int count = 0;
        for (const ContactField &field : table)
            count += field.*place == wanted ? 1 : 0;
        if (count != 1)
            return false;
    }
    return true;
}

static_assert(std::size(table) == contactFieldCount, "each text of a record needs a row, once");
static_assert(isEveryMemberOnce(), "two rows name the same text of a record");
static_assert(isEveryPlaceOnce(&ContactField::tablePlace), "the table's columns need a row each");
static_assert(isEveryPlaceOnce(&ContactField::filePlace), "a file's columns need a row each");

constexpr Fields inOrder(int ContactField::*place)
{
    Fields fields = {};
    for (const ContactField &field : table)
        fields[static_cast<std::size_t>(field.*place)] = field;
    return fields;
}

constexpr Fields inRecordOrder()
{
    Fields fields = {};
    for (std::size_t i = 0; i < fields.size(); ++i)
        fields[i] = table[i];
    return fields;
}

constexpr Fields recordOrder = inRecordOrder();
constexpr Fields tableOrder = inOrder(&ContactField::tablePlace);
constexpr Fields fileOrder = inOrder(&ContactField::filePlace);

QString csvHeader(const char *ContactField::*title)
{
    QStringList titles;
    for (const ContactField &field : fileOrder)
        titles.append(QString::fromUtf8(field.*title));
    return titles.join(QLatin1Char(','));
}

} // namespace

const std::array<ContactField, contactFieldCount> &contactFields()
{
    return recordOrder;
}

const std::array<ContactField, contactFieldCount> &contactTableFields()
{
    return tableOrder;
}

const std::array<ContactField, contactFieldCount> &contactCsvFields()
{
    return fileOrder;
}

QString englishCsvHeader()
{
    return csvHeader(&ContactField::csvLabel);
}

QString chineseCsvHeader()
{
    return csvHeader(&ContactField::chineseCsvLabel);
}

QString inOneLine(const QString &text)
{
    const auto isBreak = [](QChar character) {
        return character == QLatin1Char('\r') || character == QLatin1Char('\n');
    };
    if (std::none_of(text.begin(), text.end(), isBreak))
        return text;
    QString line;
    bool broken = false;
    for (const QChar character : text) {
        if (isBreak(character)) {
            broken = !line.isEmpty();
            continue;
        }
        if (broken)
            line += QLatin1Char(' ');
        broken = false;
        line += character;
    }
    return line;
}
