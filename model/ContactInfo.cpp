#include "model/ContactInfo.h"

#include "model/ContactFields.h"

#include <algorithm>

bool operator==(const ContactInfo &left, const ContactInfo &right)
{
    const auto &fields = contactFields();
    return left.id == right.id &&
           std::all_of(fields.begin(), fields.end(), [&](const ContactField &field) {
               return left.*field.member == right.*field.member;
           });
}

void registerContactTypes()
{
    qRegisterMetaType<ContactInfo>("ContactInfo");
    qRegisterMetaType<ContactInfo *>("ContactInfo*");
    qRegisterMetaType<QList<ContactInfo>>("QList<ContactInfo>");
}
