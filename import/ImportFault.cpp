#include "import/ImportFault.h"

#include <QCoreApplication>

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(ImportFault)
};

} // namespace

QString importFaultText(ImportFault fault)
{
    switch (fault) {
    case ImportFault::None:
        break;
    case ImportFault::Unreadable:
        return Texts::tr("The file cannot be read. Check that it is there, that you may read it "
                         "and that no other program keeps it to itself.");
    case ImportFault::OwnWorkFile:
        return Texts::tr("The file is a copy that the import itself writes and removes. Copy it "
                         "to another folder and import it from there.");
    case ImportFault::NoWorkFiles:
        return Texts::tr("The import cannot write its work files beside the program. Check that "
                         "the disk is not full and that you may write to the folder.");
    case ImportFault::Empty:
        return Texts::tr("The file is empty. Choose another one.");
    case ImportFault::NotText:
        return Texts::tr("The file is not a text file. If it comes from a spreadsheet program, "
                         "save it there as \"CSV UTF-8\".");
    case ImportFault::DamagedUnicode:
        return Texts::tr("The file says that it is Unicode text, but some of its bytes are not. It "
                         "is damaged or cut off. Save it again as \"CSV UTF-8\".");
    case ImportFault::OtherEncoding:
        return Texts::tr("The text is neither in UTF-8 nor in the encoding that is usual in your "
                         "region. Save the file again as \"CSV UTF-8\".");
    case ImportFault::Semicolons:
        return Texts::tr("The columns are separated by semicolons. Save the file again with "
                         "commas between the columns.");
    case ImportFault::Tabs:
        return Texts::tr("The columns are separated by tabs. Save the file again with commas "
                         "between the columns.");
    case ImportFault::PhoneBook:
        return Texts::tr("The first line has the column titles of a phone book, not of a device "
                         "list. Export a device list to see the titles that are needed.");
    case ImportFault::NoMacColumn:
        return Texts::tr("No column has the title \"MAC\". Add it to the first line, above the "
                         "MAC addresses.");
    case ImportFault::NoTitles:
        return Texts::tr("The first line is a device. Put a line with the column titles above it, "
                         "as in an exported device list.");
    case ImportFault::OtherTitles:
        return Texts::tr("The first line has no column titles of a device list. It needs \"MAC\" "
                         "and at least one more title that an exported device list has.");
    }
    return {};
}
