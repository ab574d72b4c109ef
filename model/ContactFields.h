#pragma once

#include "model/ContactInfo.h"

#include <array>
#include <cstddef>

/// One text field of a device: how the table column is called, how an English and a Chinese device
/// list title it (in UTF-8), where the record keeps it, and its place among the text columns of the
/// table and among the columns of a file, from 0.
struct ContactField
{
    const char *column;
    const char *csvLabel;
    const char *chineseCsvLabel;
    QString ContactInfo::*member;
    int tablePlace;
    int filePlace;
};

/// As many as a record has texts: all its members but the id, which takes the room of one.
constexpr std::size_t contactFieldCount = sizeof(ContactInfo) / sizeof(QString) - 1;

/// The text fields in record order, which is also the order in which rows are read.
const std::array<ContactField, contactFieldCount> &contactFields();

/// The same fields in the order of the table's columns, which puts user name and password before
/// the IP address; every write follows this order.
const std::array<ContactField, contactFieldCount> &contactTableFields();

/// The same fields in the order of the columns of a device list file.
const std::array<ContactField, contactFieldCount> &contactCsvFields();

/// The title row of a device list file, without a line end, in English and in Chinese.
QString englishCsvHeader();
QString chineseCsvHeader();

/// The text with one blank for each run of line breaks inside it and none at its ends. A device
/// list in a file is read line by line, and no quoting brings a break back.
QString inOneLine(const QString &text);
