#include "model/ContactFields.h"

#include <QStringList>

#include <algorithm>

namespace {

using Fields = std::array<ContactField, contactFieldCount>;

constexpr Fields recordOrder = {{
    {"mac", "MAC", &ContactInfo::mac},
    {"product", "Product Model", &ContactInfo::product},
    {"sip_server", "SIP Server", &ContactInfo::sip_server},
    {"sip_user_id", "SIP User ID", &ContactInfo::sip_user_id},
    {"first_account", "Primary Account", &ContactInfo::first_account},
    {"ip", "IP", &ContactInfo::ip},
    {"username", "Username", &ContactInfo::username},
    {"password", "Password", &ContactInfo::password},
    {"city", "City", &ContactInfo::city},
    {"company", "Company", &ContactInfo::company},
    {"department", "Department", &ContactInfo::department},
    {"auth_id", "Authentication ID", &ContactInfo::auth_id},
    {"proxy_server", "Proxy Server", &ContactInfo::proxy_server},
    {"speech_coding1", "Speech Coding1", &ContactInfo::speech_coding1},
    {"speech_coding2", "Speech Coding2", &ContactInfo::speech_coding2},
    {"dial_plan", "Dial Plan", &ContactInfo::dial_plan},
    {"language", "language", &ContactInfo::language},
    {"random_port", "Random Port", &ContactInfo::random_port},
    {"keep_alive", "Keep-Alive", &ContactInfo::keep_alive},
    {"subnet", "Subnet", &ContactInfo::subnet},
    {"gateway_ip", "Gateway IP", &ContactInfo::gateway_ip},
    {"dns_server1", "DNS Server 1", &ContactInfo::dns_server1},
    {"dns_server2", "DNS Server 2", &ContactInfo::dns_server2},
    {"phonebook_path", "Enterprise Directory Path", &ContactInfo::phonebook_path},
}};

using Order = std::array<QString ContactInfo::*, contactFieldCount>;

constexpr Order tableOrder = {&ContactInfo::mac,
                              &ContactInfo::product,
                              &ContactInfo::sip_server,
                              &ContactInfo::sip_user_id,
                              &ContactInfo::first_account,
                              &ContactInfo::username,
                              &ContactInfo::password,
                              &ContactInfo::ip,
                              &ContactInfo::city,
                              &ContactInfo::company,
                              &ContactInfo::department,
                              &ContactInfo::auth_id,
                              &ContactInfo::proxy_server,
                              &ContactInfo::speech_coding1,
                              &ContactInfo::speech_coding2,
                              &ContactInfo::dial_plan,
                              &ContactInfo::language,
                              &ContactInfo::random_port,
                              &ContactInfo::keep_alive,
                              &ContactInfo::subnet,
                              &ContactInfo::gateway_ip,
                              &ContactInfo::dns_server1,
                              &ContactInfo::dns_server2,
                              &ContactInfo::phonebook_path};

constexpr Order csvOrder = {&ContactInfo::mac,
                            &ContactInfo::product,
                            &ContactInfo::first_account,
                            &ContactInfo::sip_server,
                            &ContactInfo::sip_user_id,
                            &ContactInfo::auth_id,
                            &ContactInfo::password,
                            &ContactInfo::speech_coding1,
                            &ContactInfo::speech_coding2,
                            &ContactInfo::username,
                            &ContactInfo::language,
                            &ContactInfo::random_port,
                            &ContactInfo::keep_alive,
                            &ContactInfo::ip,
                            &ContactInfo::subnet,
                            &ContactInfo::gateway_ip,
                            &ContactInfo::dns_server1,
                            &ContactInfo::dns_server2,
                            &ContactInfo::phonebook_path,
                            &ContactInfo::dial_plan,
                            &ContactInfo::city,
                            &ContactInfo::company,
                            &ContactInfo::department,
                            &ContactInfo::proxy_server};

Fields reordered(const Order &order)
{
    Fields fields = {};
    std::transform(order.begin(), order.end(), fields.begin(), [](QString ContactInfo::*member) {
        return *std::find_if(
            recordOrder.begin(), recordOrder.end(),
            [member](const ContactField &field) { return field.member == member; });
    });
    return fields;
}

} // namespace

const std::array<ContactField, contactFieldCount> &contactFields()
{
    return recordOrder;
}

const std::array<ContactField, contactFieldCount> &contactTableFields()
{
    static const Fields fields = reordered(tableOrder);
    return fields;
}

const std::array<ContactField, contactFieldCount> &contactCsvFields()
{
    static const Fields fields = reordered(csvOrder);
    return fields;
}

QString englishCsvHeader()
{
    QStringList titles;
    for (const ContactField &field : contactCsvFields())
        titles.append(QLatin1String(field.csvLabel));
    return titles.join(QLatin1Char(','));
}

QString chineseCsvHeader()
{
    return QStringLiteral(
        "MAC,设备型号,分机号,SIP服务器,用户ID,鉴权ID,密码,语言编码1,语言编码2,用户名,语言,随机端口,"
        "Keep-Alive,IP,子网,网关IP,DNS服务器1,DNS服务器2,通讯录路径,拨号规则,城市,公司,部门,"
        "代理服务器");
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
