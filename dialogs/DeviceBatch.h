#pragma once

#include "model/ContactInfo.h"

#include <QList>

/// A row of new devices whose addresses and user IDs rise by fixed steps.
struct DeviceBatch
{
    qint32 count = 0;       ///< devices wanted; none when zero or negative
    qint32 macStep = 0;     ///< added to the address from one device to the next
    qint32 userIdStep = 0;  ///< added to the user ID from one device to the next
    QString firstMac;       ///< hexadecimal digits without separators
    qint32 firstUserId = 0; ///< with 0 all user IDs are empty
    ContactInfo common;     ///< every other text
};

/// More than any site has telephones, and still made in a moment. The steps alone do not end every
/// batch: with step 0, or as far as the 32-bit product wraps, the addresses never leave the range.
constexpr int maxBatchDevices = 100000;

/// How many devices makeDevices() makes of the batch. Counts no further than
/// maxBatchDevices + 1, which stands for "too many".
int deviceCount(const DeviceBatch &batch);

/// The devices in rising order, at most maxBatchDevices. Addresses are upper case, in groups joined
/// by ":"; SIP user ID, authentication ID and account all carry the user ID. The first address
/// that has no room in twelve digits ends the batch.
QList<ContactInfo> makeDevices(const DeviceBatch &batch);
