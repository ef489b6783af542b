#include "console.h"
#include "desktop.h"
#include "fenapropos.h"
#include "preparerwindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
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

int runInWindow(int argc, char **argv)
{
    QApplication app(argc, argv);
    prepareApplication();
    // The companion has an icon and a desktop file of its own.
    const QIcon icon(u":/icones/ico/logo_varlune-preparer.ico"_s);
    QApplication::setWindowIcon(icon);
    QGuiApplication::setDesktopFileName(u"varlune-preparer"_s);

    QCommandLineParser parser;
    const bool isParsed = parser.parse(QCoreApplication::arguments());
    const QStringList files = parser.positionalArguments();
    if (!isParsed || files.size() > 1) {
        const QString text = QCoreApplication::translate(
            "PreparerWindow", "La fenêtre prend un fichier et pas d'option ; "
                              "ajoutez --console, ou voyez --help.\n");
        std::fputs(text.toLocal8Bit().constData(), stderr);
        return NotPossible;
    }
    PreparerWindow window;
    fitOnScreen(&window);
    window.show();
    if (!files.isEmpty())
        window.open(files.constFirst());
    return QApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    return asksForConsole(argc, argv) ? runInConsole(argc, argv) : runInWindow(argc, argv);
}
