#include "model/ContactInfo.h"

#include "model/ContactFields.h"

#include <algorithm>

bool hasSameTexts(const ContactInfo &left, const ContactInfo &right)
{
    const auto &fields = contactFields();
    return std::all_of(fields.begin(), fields.end(), [&](const ContactField &field) {
        return left.*field.member == right.*field.member;
    });
}

bool operator==(const ContactInfo &left, const ContactInfo &right)
{
    return left.id == right.id && hasSameTexts(left, right);
}

void registerContactTypes()
{
    qRegisterMetaType<ContactInfo>("ContactInfo");
    qRegisterMetaType<ContactInfo *>("ContactInfo*");
    qRegisterMetaType<QList<ContactInfo>>("QList<ContactInfo>");
}
