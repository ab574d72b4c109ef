#include "model/SettingsFile.h"

#include <QDomDocument>
#include <QFile>
#include <QXmlStreamReader>

namespace {

/// A settings document is a few lines; anything larger is something else.
constexpr qint64 maxFileSize = qint64(64) * 1024;
constexpr int maxDepth = 8;
constexpr int indentation = 4;

/// The document classes unfold entities without a limit, go down into nested elements by recursion,
/// and take characters that they could not read again. So the content is walked by a reader that
/// does none of these before they see it.
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

/// A byte more than a settings document can have tells that the file is larger.
std::optional<QByteArray> startOf(const QString &filePath, QIODevice::OpenMode mode)
{
    QFile file(filePath);
    // Opened for writing, a missing file would be made.
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

/// It names the encoding in which the file was, and the file is written in UTF-8.
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
