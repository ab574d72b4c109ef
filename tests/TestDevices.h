#pragma once

#include "Literal.h"
#include "model/ContactFields.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

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

/// The devices with these stamps, which stand with a blank between them.
inline QList<ContactInfo> stampedDevices(const char *stamps)
{
    QList<ContactInfo> devices;
    const QStringList list = QString::fromLatin1(stamps).split(QLatin1Char(' '));
    for (const QString &stamp : list)
        devices.append(stampedDevice(stamp));
    return devices;
}

/// As many devices with the stamps "0", "1", "2", ...
inline QList<ContactInfo> manyDevices(int count)
{
    QList<ContactInfo> devices;
    for (int i = 0; i < count; ++i)
        devices.append(stampedDevice(QString::number(i)));
    return devices;
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

/// Makes a file of this content, whatever was there, and the folders that it needs.
inline QString writeFile(const QString &path, const QByteArray &content = {})
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("a test cannot write its file");
    return path;
}

/// The rows of a test that are told apart by their names alone, as QFETCH(QByteArray, row).
inline void addRows(std::initializer_list<const char *> names)
{
    QTest::addColumn<QByteArray>("row");
    for (const char *const name : names)
        QTest::newRow(name) << QByteArray(name);
}
