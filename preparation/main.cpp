#include "console.h"
#include "fenapropos.h"

#include <QCoreApplication>
#include <QTranslator>

#include <algorithm>
#include <cstdio>
#include <string_view>

using namespace Qt::StringLiterals;

namespace {

/// Whether the command line asks for the console, before there is an application: the window needs
/// another one, and a display.
bool asksForConsole(int argc, char **argv)
{
    return std::any_of(argv + 1, argv + argc, [](std::string_view argument) {
        return argument == "--console" || argument == "--help" || argument == "-h"
            || argument == "--aide" || argument == "--version" || argument == "-v";
    });
}

int runInConsole(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(u"varlune-preparer"_s);
    QCoreApplication::setApplicationVersion(FenAPropos::getVersion());
    QTranslator texts;
    if (texts.load(u":/qt/qtbase_fr.qm"_s)) // it is in the resources
        QCoreApplication::installTranslator(&texts);
    return runConsole(QCoreApplication::arguments());
}

} // namespace

int main(int argc, char **argv)
{
    if (asksForConsole(argc, argv))
        return runInConsole(argc, argv);
    std::fputs("varlune-preparer n'a pas encore de fenêtre : ajoutez --console.\n", stderr);
    return NotPossible;
}
