#pragma once

#include <QString>

/// The look-up form of an address, the same for all its spellings: when twelve hexadecimal digits
/// remain without "-", ".", ":" and blanks, these in lower case; otherwise the text without ":" in
/// lower case. Nothing is validated.
QString bareMac(const QString &mac);

/// Whether the text is an address by which a phone can ask for its document: twelve hexadecimal
/// digits, with or without "-", ".", ":" and blanks.
bool isMac(const QString &mac);

/// An address from an imported file, in the form that the device list has: pairs separated by ":",
/// letter case unchanged. A text that is no address stays as it is.
QString importedMac(const QString &mac);
