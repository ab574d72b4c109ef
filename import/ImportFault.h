#pragma once

#include <QString>

/// Why a file could not be read as a list of devices.
enum class ImportFault {
    None,
    Unreadable,     ///< the file cannot be opened, or reading it fails
    OwnWorkFile,    ///< the file is one of the import's own work files
    NoWorkFiles,    ///< the work files cannot be written: a full disk, a write-protected folder
    Empty,          ///< no bytes at all
    NotText,        ///< zero bytes where a text has none
    DamagedUnicode, ///< the byte-order mark says UTF-8 or UTF-16, but some bytes are not
    OtherEncoding,  ///< neither UTF-8 nor the encoding that it was to be read with
    Semicolons,     ///< the columns are separated by semicolons
    Tabs,           ///< the columns are separated by tabs, in a file that is not UTF-16
    PhoneBook,      ///< the titles of a phone book
    NoMacColumn,    ///< titles of a device list, but none of them is "MAC"
    NoTitles,       ///< the first line is a device already
    OtherTitles,    ///< no titles of a device list
};

/// What is wrong with the file and what can be done about it, for the user; empty for None.
QString importFaultText(ImportFault fault);
