#pragma once

#include "model/ContactInfo.h"

#include <QFlags>
#include <QList>

#include <functional>

/// The typed texts of the fields in which the devices of a batch differ.
struct BatchTexts
{
    QString count;
    QString macStep;
    QString userIdStep;
    QString firstMac; ///< six groups joined by ":"; empty while it is incomplete
    QString firstUserId;
};

/// A series of new devices whose addresses and user IDs change by fixed steps.
struct DeviceBatch
{
    qint32 count = 0;       ///< devices wanted; none when zero or negative
    qint32 macStep = 0;     ///< added to the address from one device to the next
    qint32 userIdStep = 0;  ///< added to the user ID from one device to the next
    QString firstMac;       ///< hexadecimal digits without separators
    qint64 firstUserId = 0; ///< 0: all user IDs are empty
    ContactInfo common;     ///< the texts that all devices share
};

/// More than the phones of any site, and still created in a moment. The steps alone do not end
/// every batch: with step 0, or where the 32-bit product wraps, the addresses never leave the
/// range.
constexpr int maxBatchDevices = 100000;

/// The largest first user ID that is taken as a number. Phone numbers have at most 15 digits, and
/// from 18 digits no step leads beyond 64 bits.
constexpr qint64 maxUserId = Q_INT64_C(999999999999999999);

/// Reads the typed texts; one that is no number, or out of range, counts as 0. Leaves `common`
/// empty.
DeviceBatch readBatch(const BatchTexts &texts);

/// The number of devices that the batch has; maxBatchDevices + 1 stands for "too many".
int deviceCount(const DeviceBatch &batch);

/// The devices in the order of the batch, at most maxBatchDevices. Addresses are upper case, in
/// groups joined by ":"; SIP user ID, authentication ID and account all hold the user ID. The batch
/// ends before the first address that does not fit twelve digits.
QList<ContactInfo> makeDevices(const DeviceBatch &batch);

/// A preview of makeDevices() for the typed texts, and what is odd about them.
struct BatchOutlook
{
    enum Number { Count = 1, MacStep = 2, UserIdStep = 4, FirstUserId = 8 };
    enum class End {
        AsWanted, ///< the batch has as many devices as were asked for
        Highest,  ///< it ends at the highest address
        Lowest    ///< it ends at the lowest address
    };

    int count = 0;           ///< see deviceCount()
    QString firstMac;        ///< of the first device; empty while the first address is incomplete
    QString lastMac;         ///< of the last device
    QString firstUserId;     ///< of the first device; empty when none has one
    QString lastUserId;      ///< of the last device
    QFlags<Number> unusable; ///< their text is no usable number and counts as 0
    End end = End::AsWanted;
    int differentMacs = 0; ///< fewer than count when they repeat
    int listed = 0;        ///< how many of the different MACs are in the list
};

/// `isListed` tells whether a device of the list has this MAC. It is called at most once for each
/// MAC, and never if there are too many devices.
BatchOutlook outlookOf(const BatchTexts &texts,
                       const std::function<bool(const QString &mac)> &isListed);
