#include "app/CommandLine.h"

#include "app/Console.h"
#include "app/DocumentCommand.h"
#include "app/Language.h"
#include "app/LanguageFile.h"
#include "app/ProgramVersion.h"
#include "model/ProgramFolder.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QTextCodec>

#include <algorithm>
#include <cstdlib>

namespace {

class Texts
{
    Q_DECLARE_TR_FUNCTIONS(CommandLine)
};

/// Speaks the stored language of the interface; the window need never have been open.
void speakStoredLanguage(QCoreApplication &application)
{
    QString language;
    if (readLanguageFile(programFolder() + languageFileName, language))
        installTranslators(languageOf(language), programFolder() + languageFolder, &application);
}

int refuse(const QString &reason)
{
    Console::write(
        Console::Stream::Error,
        reason + QLatin1Char('\n') +
            Texts::tr("\"%1\" lists the options.").arg(QLatin1String("VlManager --help")) +
            QLatin1Char('\n'));
    return EXIT_FAILURE;
}

int tell(const QString &text)
{
    Console::write(Console::Stream::Output, text);
    return EXIT_SUCCESS;
}

} // namespace

bool CommandLine::isWanted(int argc, char *const *argv)
{
    return std::any_of(argv + std::min(argc, 1), argv + argc, [](const char *argument) {
        const QByteArray text =
            QByteArray::fromRawData(argument, static_cast<int>(qstrlen(argument)));
        return text.startsWith("--") || text == "-h" || text == "-v";
    });
}

int CommandLine::run(int &argc, char **argv)
{
    Console::open();
    // A scheduler often sets no locale; names are in UTF-8 all the same.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    QCoreApplication application(argc, argv);
    speakStoredLanguage(application);

    const QCommandLineOption write(
        QStringLiteral("write-documents"),
        Texts::tr("Writes every device's provisioning document into the folder, which must exist."),
        Texts::tr("folder"));
    const QCommandLineOption removeOthers(
        QStringLiteral("remove-others"),
        Texts::tr("With %1: removes the documents of devices that are not in the list.")
            .arg(QLatin1String("--write-documents")));
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  Texts::tr("Shows these options."));
    const QCommandLineOption version({QStringLiteral("v"), QStringLiteral("version")},
                                     Texts::tr("Shows the version."));
    QCommandLineParser parser;
    parser.setApplicationDescription(
        Texts::tr("Without options the window opens. With them the program needs no screen, and "
                  "reads the stored list also while the window is open."));
    parser.addOptions({write, removeOthers, help, version});

    if (!parser.parse(QCoreApplication::arguments()))
        return refuse(parser.errorText());
    if (parser.isSet(help))
        return tell(parser.helpText());
    if (parser.isSet(version))
        return tell(QStringLiteral("VlManager %1\n").arg(QLatin1String(programVersion)));
    const QStringList others = parser.positionalArguments();
    if (!others.isEmpty())
        return refuse(Texts::tr("\"%1\" is no option.").arg(others.first()));
    if (parser.value(write).isEmpty())
        return refuse(Texts::tr("The folder is missing."));
    DocumentCommand command(programFolder(), QDir(parser.value(write)).absolutePath());
    return command.run(parser.isSet(removeOthers)) ? EXIT_SUCCESS : EXIT_FAILURE;
}
