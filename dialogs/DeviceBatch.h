#pragma once

#include "model/ContactInfo.h"

#include <QFlags>
#include <QList>

#include <functional>

/// What is typed into the fields by which the devices of a batch differ.
struct BatchTexts
{
    QString count;
    QString macStep;
    QString userIdStep;
    QString firstMac; ///< six groups joined by ":"; empty while it is incomplete
    QString firstUserId;
};

/// A row of new devices whose addresses and user IDs rise by fixed steps.
struct DeviceBatch
{
    qint32 count = 0;       ///< devices wanted; none when zero or negative
    qint32 macStep = 0;     ///< added to the address from one device to the next
    qint32 userIdStep = 0;  ///< added to the user ID from one device to the next
    QString firstMac;       ///< hexadecimal digits without separators
    qint64 firstUserId = 0; ///< with 0 all user IDs are empty
    ContactInfo common;     ///< every other text
};

/// More than any site has telephones, and still made in a moment. The steps alone do not end every
/// batch: with step 0, or as far as the 32-bit product wraps, the addresses never leave the range.
constexpr int maxBatchDevices = 100000;

/// The largest first user ID that is taken as a number. Numbers of telephones have 15 digits at
/// most, and with 18 no step leads out of 64 bits.
constexpr qint64 maxUserId = Q_INT64_C(999999999999999999);

/// Reads what was typed; a text that is no number, or one out of range, counts as 0. What all
/// devices share stays empty.
DeviceBatch readBatch(const BatchTexts &texts);

/// How many devices makeDevices() makes of the batch. Counts no further than
/// maxBatchDevices + 1, which stands for "too many".
int deviceCount(const DeviceBatch &batch);

/// The devices in rising order, at most maxBatchDevices. Addresses are upper case, in groups joined
/// by ":"; SIP user ID, authentication ID and account all carry the user ID. The first address
/// that has no room in twelve digits ends the batch.
QList<ContactInfo> makeDevices(const DeviceBatch &batch);

/// What makeDevices() will make of what is typed, and what is odd about it.
struct BatchOutlook
{
    enum Number { Count = 1, MacStep = 2, UserIdStep = 4, FirstUserId = 8 };
    enum class End {
        AsWanted, ///< the batch has as many devices as were asked for
        Highest,  ///< it ends at the highest address
        Lowest    ///< it ends at the lowest one
    };

    int count = 0;           ///< see deviceCount()
    QString firstMac;        ///< of the first device; empty while the first address is incomplete
    QString lastMac;         ///< of the last device
    QString firstUserId;     ///< of the first device; empty when none has one
    QString lastUserId;      ///< of the last device
    QFlags<Number> unusable; ///< these fields hold something that counts as 0 without being it
    End end = End::AsWanted;
    int differentMacs = 0; ///< fewer than count when they repeat
    int listed = 0;        ///< how many of these are in the list already
};

/// `isListed` tells whether a device of the list has this MAC; it is asked about each one at most
/// once, and not at all when there are too many.
BatchOutlook outlookOf(const BatchTexts &texts,
                       const std::function<bool(const QString &mac)> &isListed);
