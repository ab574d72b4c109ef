#include "model/SettingsFile.h"

#include <QDomDocument>
#include <QFile>
#include <QXmlStreamReader>

namespace {

/// A settings document has a few lines; a larger file is no settings document.
constexpr qint64 maxFileSize = qint64(64) * 1024;
constexpr int maxDepth = 8;
constexpr int indentation = 4;

/// QDomDocument expands entities without a limit, recurses into nested elements, and accepts
/// characters that it cannot read again. So a stream reader, which does none of these, checks the
/// content first.
bool isSettingsDocument(const QByteArray &content)
{
    QXmlStreamReader xml(content);
    xml.setNamespaceProcessing(false);
    int depth = 0;
    while (!xml.atEnd()) {
        switch (xml.readNext()) {
        case QXmlStreamReader::DTD:
            return false;
        case QXmlStreamReader::StartElement:
            if (++depth > maxDepth)
                return false;
            break;
        case QXmlStreamReader::EndElement:
            --depth;
            break;
        default:
            break;
        }
    }
    return !xml.hasError();
}

/// Reads at most one byte more than a settings document may have, which shows a larger file.
std::optional<QByteArray> startOf(const QString &filePath, QIODevice::OpenMode mode)
{
    QFile file(filePath);
    // Opening for writing would create a missing file.
    if (!file.exists() || !file.open(mode))
        return std::nullopt;
    return file.read(maxFileSize + 1);
}

bool parse(const QByteArray &content, QDomDocument &document)
{
    return content.size() <= maxFileSize && isSettingsDocument(content) &&
           document.setContent(content);
}

void setText(QDomDocument &document, QDomElement element, const QString &text)
{
    while (element.hasChildNodes())
        element.removeChild(element.firstChild());
    element.appendChild(document.createTextNode(text));
}

/// The declaration names the encoding that the file had; the file is written in UTF-8.
void removeDeclaration(QDomDocument &document)
{
    const QDomNode first = document.firstChild();
    if (first.isProcessingInstruction() && first.nodeName() == QLatin1String("xml"))
        document.removeChild(first);
}

} // namespace

namespace SettingsFile {

bool read(const QString &filePath, QIODevice::OpenMode mode, QDomDocument &document)
{
    const std::optional<QByteArray> content = startOf(filePath, mode);
    return content && parse(*content, document);
}

std::optional<Values> readTexts(const QString &filePath)
{
    const std::optional<QByteArray> content =
        startOf(filePath, QIODevice::ReadOnly | QIODevice::Text);
    if (!content)
        return std::nullopt;
    Values values;
    QXmlStreamReader xml(*content);
    while (!xml.atEnd()) {
        const QString element = xml.isStartElement() ? xml.name().toString() : QString();
        xml.readNext();
        if (!element.isEmpty() && xml.isCharacters())
            values.append({element, xml.text().toString()});
    }
    return values;
}

WriteResult create(const QString &filePath, const Values &values)
{
    QDomDocument document;
    QDomElement root = document.createElement(QStringLiteral("root"));
    document.appendChild(root);
    for (const Value &value : values) {
        const QDomElement element = document.createElement(value.element);
        setText(document, element, value.text);
        root.appendChild(element);
    }
    return writeWholeFile(filePath, document.toByteArray(indentation));
}

WriteResult update(const QString &filePath, const Values &values,
                   const std::function<bool(const QDomDocument &)> &holdsValues)
{
    QDomDocument document;
    if (!read(filePath, QIODevice::ReadOnly, document))
        return create(filePath, values);
    removeDeclaration(document);
    for (const Value &value : values) {
        QDomElement element = document.documentElement().firstChildElement(value.element);
        for (; !element.isNull(); element = element.nextSiblingElement(value.element))
            setText(document, element, value.text);
    }
    const QByteArray content = document.toByteArray(indentation);
    QDomDocument written;
    return parse(content, written) && holdsValues(written) ? writeWholeFile(filePath, content)
                                                           : create(filePath, values);
}

} // namespace SettingsFile
