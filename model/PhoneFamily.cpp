#include "model/PhoneFamily.h"

#include <algorithm>

namespace {

template <typename Predicate>
const PhoneFamily &familyWhere(Predicate predicate)
{
    const auto *const family = std::find_if(families.begin(), families.end(), predicate);
    return family == families.end() ? otherPhones : *family;
}

/// The only model of its family that adds nothing to the address. Letter case counts.
const QLatin1String withoutUrlEnd("KTP2200");

} // namespace

const PhoneFamily &familyOfWord(const QString &word)
{
    return familyWhere([&](const PhoneFamily &one) { return word == QLatin1String(one.word); });
}

const PhoneFamily &familyOfModel(const QString &model)
{
    return familyWhere([&](const PhoneFamily &one) {
        return model.startsWith(QLatin1String(one.word), Qt::CaseInsensitive);
    });
}

QString urlEnd(const QString &model)
{
    return model == withoutUrlEnd ? QString() : QLatin1String(familyOfModel(model).urlEnd);
}

bool isFamilyDocument(int type)
{
    return type == otherPhones.document ||
           std::any_of(families.begin(), families.end(),
                       [type](const PhoneFamily &one) { return one.document == type; });
}
