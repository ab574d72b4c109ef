#pragma once

#include "model/ContactFields.h"

#include <QFile>

/// A device with its own text in every field: "<stamp>.<column>". Its MAC is "<stamp>.mac".
inline ContactInfo stampedDevice(const QString &stamp)
{
    ContactInfo device;
    for (const ContactField &field : contactFields())
        device.*field.member = stamp + QLatin1Char('.') + QLatin1String(field.column);
    return device;
}

/// True when every field was written by stampedDevice() from the stamp that its MAC bears.
inline bool isStampedDevice(const ContactInfo &device)
{
    ContactInfo expected = stampedDevice(device.mac.section(QLatin1Char('.'), 0, -2));
    expected.id = device.id;
    return device == expected;
}

inline ContactInfo deviceWithMac(const QString &mac)
{
    ContactInfo device;
    device.mac = mac;
    return device;
}

/// A list of 1,000 devices whose fields all bear the stamp.
inline QList<ContactInfo> thousandDevices(const QString &stamp)
{
    QList<ContactInfo> devices;
    for (int i = 0; i < 1000; ++i) {
        devices.append(stampedDevice(stamp));
        devices.last().mac = QString::number(i);
    }
    return devices;
}

inline QByteArray fileContent(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
