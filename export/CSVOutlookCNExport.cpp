#include "export/CSVOutlookCNExport.h"

#include "export/DeviceCsv.h"

bool CSVOutlookCNExport::exportFile(const QString &codecName, const QString &filePath,
                                    QList<ContactInfo> &devices)
{
    const QString header = QString::fromUtf8(
        "MAC,设备型号,分机号,SIP服务器,用户ID,鉴权ID,密码,语言编码1,语言编码2,用户名,语言,随机端口,"
        "Keep-Alive,IP,子网,网关IP,DNS服务器1,DNS服务器2,通讯录路径,拨号规则,城市,公司,部门,"
        "代理服务器");
    return writeDeviceCsv(codecName, filePath, devices, header, QStringLiteral("\r\n"));
}
