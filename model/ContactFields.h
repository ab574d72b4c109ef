#pragma once

#include "model/ContactInfo.h"

#include <array>
#include <cstddef>

/// One text field of a device: the name of its table column, its titles in an English and in a
/// Chinese device list file (UTF-8), the record's member, and its places, counted from 0, among the
/// text columns of the table and among the columns of a file.
struct ContactField
{
    const char *column;
    const char *csvLabel;
    const char *chineseCsvLabel;
    QString ContactInfo::*member;
    int tablePlace;
    int filePlace;
};

/// The number of texts in a record: all its members but the id, which takes the space of one text.
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

/// The text with each run of line breaks inside it replaced by one blank, and without those at its
/// ends. A device list file is read line by line; quoting does not preserve a line break.
QString inOneLine(const QString &text);
