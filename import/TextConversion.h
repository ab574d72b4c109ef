#pragma once

#include "import/FileRewrite.h"
#include "import/ImportFault.h"
#include "import/TextEncoding.h"

#include <memory>

/// Converts the text of a file to another encoding, in steps of a few milliseconds.
class TextConversion
{
public:
    enum class State { Converting, Done, Failed };

    TextConversion(const QString &from, const QString &fromEncoding, const QString &to,
                   const QString &toEncoding);

    /// Does the next piece.
    State readOn();
    /// Why it failed.
    ImportFault fault() const { return m_fault; }

private:
    State failed(ImportFault fault);

    State m_state = State::Converting;
    ImportFault m_fault = ImportFault::None;
    FileRewrite m_files;
    const QTextCodec *m_toCodec;
    std::unique_ptr<StrictDecoder> m_decoder;
    QTextCodec::ConverterState m_encoder;
};
