#pragma once

#include <QString>

/// The form under which addresses are looked up, so that one that somebody wrote in another way is
/// found as well: when twelve hexadecimal digits remain without "-", ".", ":" and blanks, these in
/// lower case; otherwise the text without ":" in lower case. Nothing is validated.
QString bareMac(const QString &mac);

/// Whether the text is an address under which a telephone can ask for its document: twelve
/// hexadecimal digits, with or without "-", ".", ":" and blanks.
bool isMac(const QString &mac);

/// An address from somebody else's list, as the list of devices has it: in pairs with ":" between
/// them, the letters as they were. A text that is no address stays as it is.
QString importedMac(const QString &mac);
