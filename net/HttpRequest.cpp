#include "net/HttpRequest.h"

#include "model/PhoneFamily.h"

#include <algorithm>

namespace {

/// The positions in a "?pro=" request line from which the file name and the product are looked for.
constexpr int queryNameStart = 3;
constexpr int queryProductStart = 20;

/// Length of "cfg", which stands before the MAC in a file name.
constexpr int prefixLength = 3;

/// The text after the first `opening` found from `from` on, up to the next `closing` or, without
/// one, to the end of the line. Empty without an `opening`.
QString between(const QString &line, int from, QLatin1Char opening, QLatin1Char closing)
{
    const int start = line.indexOf(opening, from);
    if (start < 0)
        return QString();
    const int end = line.indexOf(closing, start + 1);
    return end < 0 ? line.mid(start + 1) : line.mid(start + 1, end - start - 1);
}

QString withoutLineEnd(QString line)
{
    if (line.endsWith(QLatin1Char('\n')))
        line.chop(1);
    if (line.endsWith(QLatin1Char('\r')))
        line.chop(1);
    return line;
}

} // namespace

void HttpRequest::addLine(const QString &line)
{
    if (line.startsWith(QLatin1String("GET"))) {
        if (line.contains(QLatin1String("?pro=")))
            addQueryForm(withoutLineEnd(line));
        else
            addPlainForm(withoutLineEnd(line));
    } else if (line.startsWith(QLatin1String("User-Agent:"))) {
        const auto *const family =
            std::find_if(families.begin(), families.end(), [&line](const PhoneFamily &one) {
                return line.contains(QLatin1String(one.word));
            });
        if (family != families.end())
            product = QLatin1String(family->word);
    }
}

void HttpRequest::addQueryForm(const QString &line)
{
    fileName = between(line, queryNameStart, QLatin1Char('/'), QLatin1Char('?'));
    product = between(line, queryProductStart, QLatin1Char('='), QLatin1Char(' '));
    target = line.section(QLatin1Char(' '), 1, 1);
}

void HttpRequest::addPlainForm(const QString &line)
{
    const int start = line.indexOf(QLatin1String("cfg"));
    const int end = start < 0 ? -1 : line.indexOf(QLatin1Char(' '), start);
    fileName = start < 0 ? QString() : line.mid(start, end < 0 ? -1 : end - start);

    target = start < 0 ? line.section(QLatin1Char(' '), 1, 1) : QString();
    const int dot = fileName.indexOf(QLatin1Char('.'), prefixLength);
    mac = dot < 0 ? QString() : fileName.mid(prefixLength, dot - prefixLength);
}

bool HttpRequest::namesDocument() const
{
    return !mac.isEmpty() && fileName.contains(QLatin1String("xml"));
}

bool HttpRequest::hasSafeFileName() const
{
    // On some file systems a colon names a second stream of a file, and the other characters have
    // a special meaning or are forbidden. What is safe must not depend on the system.
    const auto isUnsafe = [](QChar c) {
        return c < QLatin1Char(' ') || QStringLiteral("/\\:*?\"<>|").contains(c);
    };
    return std::none_of(fileName.begin(), fileName.end(), isUnsafe) &&
           !fileName.contains(QLatin1String("..")) && !fileName.endsWith(QLatin1Char('.')) &&
           !fileName.endsWith(QLatin1Char(' '));
}
