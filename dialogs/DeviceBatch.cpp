#include "dialogs/DeviceBatch.h"

#include "model/DebugLog.h"

#include <algorithm>

namespace {

constexpr int macDigits = 12;
constexpr qint64 firstTooLargeMac = Q_INT64_C(1) << (4 * macDigits);

/// The product keeps 32 bits and its sign, so a long enough batch turns back.
qint64 macAt(const DeviceBatch &batch, qint64 base, int index)
{
    const quint32 product = static_cast<quint32>(index) * static_cast<quint32>(batch.macStep);
    return base + static_cast<qint32>(product);
}

/// A negative number would be written with all sixteen digits.
bool fits(qint64 mac)
{
    return mac >= 0 && mac < firstTooLargeMac;
}

qint64 baseOf(const DeviceBatch &batch)
{
    return batch.firstMac.toLongLong(nullptr, 16);
}

QString macText(qint64 mac)
{
    QString text = QString::number(mac, 16).rightJustified(macDigits, QLatin1Char('0')).toUpper();
    for (int position = macDigits - 2; position > 0; position -= 2)
        text.insert(position, QLatin1Char(':'));
    return text;
}

QString userIdAt(const DeviceBatch &batch, int index)
{
    if (batch.firstUserId == 0)
        return QString();
    return QString::number(qint64(batch.firstUserId) + qint64(index) * batch.userIdStep);
}

} // namespace

int deviceCount(const DeviceBatch &batch)
{
    const qint64 base = baseOf(batch);
    const int wanted = std::min(batch.count, maxBatchDevices + 1);
    int count = 0;
    while (count < wanted && fits(macAt(batch, base, count)))
        ++count;
    return count;
}

QList<ContactInfo> makeDevices(const DeviceBatch &batch)
{
    const qint64 base = baseOf(batch);
    const int count = std::min(deviceCount(batch), maxBatchDevices);
    QList<ContactInfo> devices;
    devices.reserve(count);
    for (int i = 0; i < count; ++i) {
        qCDebug(debugLog) << "firstUserId == " << batch.firstUserId;
        ContactInfo device = batch.common;
        device.mac = macText(macAt(batch, base, i));
        device.sip_user_id = userIdAt(batch, i);
        device.auth_id = device.sip_user_id;
        device.first_account = device.sip_user_id;
        devices.append(device);
    }
    return devices;
}
