#pragma once

#include "model/ExportType.h"

#include <QString>

#include <array>

/// A family of telephones: what tells one from the others, and how it is provisioned.
struct PhoneFamily
{
    const char *word;    ///< in its requests; its product models begin with it
    ExportType document; ///< the elements of which export/ProvisioningDocument.cpp has
    const char *urlEnd;  ///< what plug and play adds to the address of the service
};

/// The families that say who they are. In a request the first whose word is found counts.
constexpr std::array<PhoneFamily, 6> families = {{
    {"KTV3140", DeskPhoneXml, ""},
    {"KTV3175", DeskPhoneXml, ""},
    {"KTV3275", DeskPhoneXml, ""},
    {"KTV3240", DeskPhoneXml, ""},
    {"KTP", DeskPhoneXml, "/"},
    {"DK", CordlessXml, ""},
}};

/// Every other telephone.
constexpr PhoneFamily otherPhones = {"", DeskPhoneXml, ""};

/// The family with just this word.
const PhoneFamily &familyOfWord(const QString &word);

/// The family that a product model belongs to, in any letter case.
const PhoneFamily &familyOfModel(const QString &model);

/// What plug and play adds to the address of the service for a telephone of this product model.
QString urlEnd(const QString &model);

/// Whether an export of this type is the document of a family.
bool isFamilyDocument(int type);
