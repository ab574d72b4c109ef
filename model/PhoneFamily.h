#pragma once

#include "model/ExportType.h"

#include <QString>

#include <array>
#include <string_view>

/// A family of phones: how it is recognised, and how it is provisioned.
struct PhoneFamily
{
    const char *word;    ///< names the family in requests; its product models begin with it
    ExportType document; ///< its elements are listed in export/ProvisioningDocument.cpp
    const char *urlEnd;  ///< what plug and play adds to the address of the service
};

/// The families that name themselves. The first one whose word occurs in a request counts.
constexpr std::array<PhoneFamily, 6> families = {{
    {"KTV3140", DeskPhoneXml, ""},
    {"KTV3175", DeskPhoneXml, ""},
    {"KTV3275", DeskPhoneXml, ""},
    {"KTV3240", DeskPhoneXml, ""},
    {"KTP", DeskPhoneXml, "/"},
    {"DK", CordlessXml, ""},
}};

/// Whether no word hides a later one, as the first word that occurs counts.
constexpr bool eachFamilyCanBeFound()
{
    for (std::size_t later = 1; later < families.size(); ++later) {
        for (std::size_t first = 0; first < later; ++first) {
            if (std::string_view(families[later].word).find(families[first].word) !=
                std::string_view::npos)
                return false;
        }
    }
    return true;
}
static_assert(eachFamilyCanBeFound(), "a word that contains another stands before it");

/// Every other phone.
constexpr PhoneFamily otherPhones = {"", DeskPhoneXml, ""};

/// The family with exactly this word, or otherPhones.
const PhoneFamily &familyOfWord(const QString &word);

/// The family that a product model belongs to, in any letter case.
const PhoneFamily &familyOfModel(const QString &model);

/// What plug and play adds to the address of the service for a phone of this product model.
QString urlEnd(const QString &model);

/// Whether an export of this type is the document of a family.
bool isFamilyDocument(int type);
