#pragma once

#include "model/ContactInfo.h"

#include <QSet>

#include <vector>

/// Makes devices share equal texts, so that a long list keeps each model, server and company once,
/// whatever its source. A field whose texts rarely repeat is soon skipped. One thread at a time.
class TextPool
{
public:
    TextPool();

    /// Replaces each text of `info` by an equal one of an earlier device, if there is one.
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

    ContactInfo m_last; ///< a device usually has most texts of the one before it
    std::vector<Field> m_fields;
};
