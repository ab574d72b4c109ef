#pragma once

#include <QString>

/// Why a file could not be read as a list of devices.
enum class ImportFault {
    None,
    Unreadable,     ///< the file cannot be opened, or reading it fails
    OwnWorkFile,    ///< one of the copies that an import works on
    NoWorkFiles,    ///< the copies cannot be written: a full disk, a folder without the right to
    Empty,          ///< no bytes at all
    NotText,        ///< zero bytes where a text has none
    DamagedUnicode, ///< the mark at the start says UTF-8 or UTF-16, and some bytes are not
    OtherEncoding,  ///< neither UTF-8 nor in the encoding that it was to be read with
    Semicolons,     ///< the columns are parted by semicolons
    Tabs,           ///< the columns are parted by tabs, in a file that is not UTF-16
    PhoneBook,      ///< the titles of a phone book
    NoMacColumn,    ///< titles of ours, but none of them "MAC"
    NoTitles,       ///< the first line is a device already
    OtherTitles,    ///< titles that are not ours
};

/// What is wrong with the file and what can be done about it, for the user; empty for None.
QString importFaultText(ImportFault fault);
