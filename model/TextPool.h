#pragma once

#include "model/ContactInfo.h"

#include <QSet>

#include <vector>

/// Makes devices share the texts that they have in common, so that a long list keeps each model,
/// server and company once, however it came in. Fields in which hardly a text repeats are soon left
/// alone. Not for use by several threads.
class TextPool
{
public:
    TextPool();

    /// Replaces each text of `info` by an equal one that an earlier device brought.
    void share(ContactInfo &info);

    /// Forgets all texts.
    void clear();

private:
    struct Field
    {
        QSet<QString> texts;
        int repeats = 0;
        bool repeatsRarely = false;
    };

    ContactInfo m_last; ///< most devices of a list have most texts of the one before
    std::vector<Field> m_fields;
};
