#include "dialogs/DeviceBatch.h"

#include "model/DebugLog.h"

#include <QtAlgorithms>

#include <algorithm>
#include <limits>

namespace {

constexpr int macDigits = 12;
constexpr qint64 firstTooLargeMac = Q_INT64_C(1) << (4 * macDigits);

/// The product is a signed 32-bit number that wraps, so the addresses of a long batch jump back.
qint64 macAt(const DeviceBatch &batch, qint64 base, int index)
{
    const quint32 product = static_cast<quint32>(index) * static_cast<quint32>(batch.macStep);
    return base + static_cast<qint32>(product);
}

/// A negative number does not fit: it would be written with sixteen digits.
bool fits(qint64 mac)
{
    return mac >= 0 && mac < firstTooLargeMac;
}

qint64 baseOf(const DeviceBatch &batch)
{
    return batch.firstMac.toLongLong(nullptr, 16);
}

/// Written digit by digit for speed: the preview of a long batch does this at every key press.
QString macText(qint64 mac)
{
    constexpr int lastPlace = macDigits + macDigits / 2 - 2;
    QString text(lastPlace + 1, QLatin1Char(':'));
    for (int place = lastPlace; place >= 0; place -= place % 3 == 0 ? 2 : 1) {
        text[place] = QLatin1Char("0123456789ABCDEF"[mac & 0xf]);
        mac >>= 4;
    }
    return text;
}

QString userIdAt(const DeviceBatch &batch, int index)
{
    if (batch.firstUserId == 0)
        return QString();
    return QString::number(batch.firstUserId + qint64(index) * batch.userIdStep);
}

/// The number in `text`. If it is no integer from -largest - 1 to largest, marks `which` as
/// unusable and returns 0.
qint64 read(const QString &text, qint64 largest, BatchOutlook::Number which,
            QFlags<BatchOutlook::Number> &unusable)
{
    bool isNumber = false;
    const qint64 number = text.toLongLong(&isNumber);
    if (isNumber && number >= -largest - 1 && number <= largest)
        return number;
    unusable |= which;
    return 0;
}

DeviceBatch read(const BatchTexts &texts, QFlags<BatchOutlook::Number> &unusable)
{
    const auto number = [&unusable](const QString &text, BatchOutlook::Number which) {
        constexpr qint64 largest = std::numeric_limits<qint32>::max();
        return static_cast<qint32>(read(text, largest, which, unusable));
    };
    DeviceBatch batch;
    batch.count = number(texts.count, BatchOutlook::Count);
    batch.macStep = number(texts.macStep, BatchOutlook::MacStep);
    batch.userIdStep = number(texts.userIdStep, BatchOutlook::UserIdStep);
    batch.firstMac = QString(texts.firstMac).remove(QLatin1Char(':'));
    // No first user ID is a choice, not a mistake: the devices then have no user IDs.
    if (!texts.firstUserId.trimmed().isEmpty())
        batch.firstUserId = read(texts.firstUserId, maxUserId, BatchOutlook::FirstUserId, unusable);
    return batch;
}

/// The number of addresses before the first one comes again, as the 32-bit product wraps.
qint64 macsInRound(const DeviceBatch &batch)
{
    return (Q_INT64_C(1) << 32) >> qCountTrailingZeroBits(static_cast<quint32>(batch.macStep));
}

} // namespace

DeviceBatch readBatch(const BatchTexts &texts)
{
    QFlags<BatchOutlook::Number> unusable;
    return read(texts, unusable);
}

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

BatchOutlook outlookOf(const BatchTexts &texts,
                       const std::function<bool(const QString &mac)> &isListed)
{
    BatchOutlook outlook;
    const DeviceBatch batch = read(texts, outlook.unusable);
    const int wanted = std::max(std::min(batch.count, maxBatchDevices + 1), 0);
    const bool hasMac = !texts.firstMac.isEmpty();
    outlook.count = hasMac ? deviceCount(batch) : wanted;
    if (outlook.count == 0 || outlook.count > maxBatchDevices)
        return outlook;
    outlook.firstUserId = userIdAt(batch, 0);
    outlook.lastUserId = userIdAt(batch, outlook.count - 1);
    if (!hasMac)
        return outlook;

    const qint64 base = baseOf(batch);
    outlook.firstMac = macText(macAt(batch, base, 0));
    outlook.lastMac = macText(macAt(batch, base, outlook.count - 1));
    if (outlook.count < wanted)
        outlook.end = macAt(batch, base, outlook.count) < 0 ? BatchOutlook::End::Lowest
                                                            : BatchOutlook::End::Highest;
    outlook.differentMacs = static_cast<int>(std::min<qint64>(outlook.count, macsInRound(batch)));
    for (int i = 0; i < outlook.differentMacs; ++i)
        outlook.listed += isListed(macText(macAt(batch, base, i))) ? 1 : 0;
    return outlook;
}
