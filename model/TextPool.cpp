#include "model/TextPool.h"

#include "model/ContactFields.h"

namespace {

/// The number of different texts of a field after which its share of repeats has to be worthwhile.
constexpr int textsOnTrial = 4096;
constexpr int worthwhileShare = 4;

} // namespace

TextPool::TextPool()
    : m_fields(contactFields().size())
{
}

void TextPool::clear()
{
    *this = TextPool();
}

void TextPool::share(ContactInfo &info)
{
    std::size_t position = 0;
    for (const ContactField &contactField : contactFields()) {
        QString &text = info.*contactField.member;
        QString &last = m_last.*contactField.member;
        Field &field = m_fields[position++];
        if (text.isEmpty() || text.isSharedWith(last))
            continue;
        if (text == last) {
            text = last;
            continue;
        }
        // An exact copy. The buffer that brought the text would leave holes between the texts that
        // stay, once its neighbours are freed.
        text = QString(text.constData(), text.size());
        if (!field.repeatsRarely) {
            const int known = field.texts.size();
            const auto kept = field.texts.insert(text);
            text = *kept;
            if (field.texts.size() == known)
                ++field.repeats;
            else if (known >= textsOnTrial && field.repeats * worthwhileShare < known)
                field = {{}, 0, true};
        }
        last = text;
    }
    // Most devices have the same name in all three fields.
    for (QString *const text : {&info.first_account, &info.auth_id}) {
        if (*text == info.sip_user_id)
            *text = info.sip_user_id;
    }
}
