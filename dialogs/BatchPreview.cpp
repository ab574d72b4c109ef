#include "dialogs/BatchPreview.h"

#include "dialogs/ContactsDialog.h"
#include "dialogs/DeviceBatch.h"

#include <QFontMetricsF>
#include <QtMath>

namespace {

constexpr int lineCount = 3;
constexpr int airPx = 2;

QString macs(const BatchOutlook &outlook)
{
    if (outlook.firstMac.isEmpty())
        return BatchPreview::tr("the first MAC is not complete yet");
    return outlook.count == 1 ? outlook.firstMac
                              : BatchPreview::tr("%1 to %2", "first and last of a range")
                                    .arg(outlook.firstMac, outlook.lastMac);
}

QString userIds(const BatchOutlook &outlook)
{
    if (outlook.firstUserId.isEmpty())
        return BatchPreview::tr("no user IDs");
    if (outlook.firstUserId == outlook.lastUserId)
        return BatchPreview::tr("user ID %1").arg(outlook.firstUserId);
    return BatchPreview::tr("user IDs %1 to %2").arg(outlook.firstUserId, outlook.lastUserId);
}

QString summary(const BatchOutlook &outlook)
{
    if (outlook.count == 0)
        return BatchPreview::tr("No devices");
    if (outlook.count == 1)
        return BatchPreview::tr("1 device: %1, %2").arg(macs(outlook), userIds(outlook));
    return BatchPreview::tr("%1 devices: %2, %3")
        .arg(QString::number(outlook.count), macs(outlook), userIds(outlook));
}

/// The labels of the fields whose text is not usable.
QString unusableFields(const BatchOutlook &outlook)
{
    QStringList fields;
    if (outlook.unusable & BatchOutlook::Count)
        fields.append(ContactsDialog::tr("Product Count"));
    if (outlook.unusable & BatchOutlook::MacStep)
        fields.append(ContactsDialog::tr("Law of increasing MAC"));
    if (outlook.unusable & BatchOutlook::UserIdStep)
        fields.append(ContactsDialog::tr("Law of increasing User ID"));
    if (outlook.unusable & BatchOutlook::FirstUserId)
        fields.append(ContactsDialog::tr("First SIP User ID"));
    return fields.join(BatchPreview::tr(", ", "between the names of fields"));
}

QStringList oddities(const BatchOutlook &outlook)
{
    QStringList odd;
    if (outlook.unusable)
        odd.append(
            BatchPreview::tr("No usable number, counts as none: %1.").arg(unusableFields(outlook)));
    if (outlook.end != BatchOutlook::End::AsWanted)
        odd.append(BatchPreview::tr("The numbers end at %1.")
                       .arg(outlook.end == BatchOutlook::End::Highest
                                ? QLatin1String("FF:FF:FF:FF:FF:FF")
                                : QLatin1String("00:00:00:00:00:00")));
    if (outlook.differentMacs < outlook.count && !outlook.firstMac.isEmpty())
        odd.append(
            BatchPreview::tr("The MACs repeat from device %1 on.").arg(outlook.differentMacs + 1));
    if (outlook.count == 1 && outlook.listed == 1)
        odd.append(BatchPreview::tr("It is in the list already."));
    else if (outlook.listed == 1)
        odd.append(BatchPreview::tr("1 of them is in the list already."));
    else if (outlook.listed > 1)
        odd.append(BatchPreview::tr("%1 of them are in the list already.").arg(outlook.listed));
    return odd;
}

} // namespace

BatchPreview::BatchPreview(QWidget *parent)
    : QLabel(parent)
{
    setObjectName(QStringLiteral("batchPreview"));
    setWordWrap(true);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
    ensurePolished(); // sets the font of the style sheet
    // Without the extra pixels, rounding at a fractional screen scale cuts off the last line.
    setFixedHeight(qCeil(lineCount * QFontMetricsF(font()).lineSpacing()) + airPx);
}

QString BatchPreview::textOf(const BatchOutlook &outlook)
{
    if (outlook.count > maxBatchDevices)
        return ContactsDialog::tr("At most %1 devices can be created in one step.")
            .arg(maxBatchDevices);
    QStringList lines = {summary(outlook)};
    const QStringList odd = oddities(outlook);
    if (!odd.isEmpty())
        lines.append(odd.join(QLatin1Char(' ')));
    return lines.join(QLatin1Char('\n'));
}

void BatchPreview::showOutlook(const BatchOutlook &outlook)
{
    setText(textOf(outlook));
    // The tool tip has the text that does not fit.
    setToolTip(heightForWidth(width()) > height() ? text() : QString());
}
