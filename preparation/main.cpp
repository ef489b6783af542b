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

#ifdef Q_OS_WIN
#include <qt_windows.h>
#endif

using namespace Qt::StringLiterals;

namespace {

#ifdef Q_OS_WIN

/// The console from which the program has been started: Windows gives it to no program that has a
/// window. A standard stream that leads into a file, a pipe or nowhere by name stays as it is.
class ParentConsole
{
public:
    ParentConsole()
    {
        const bool isOutputSet = isRedirected(STD_OUTPUT_HANDLE); // the console would set both
        const bool areErrorsSet = isRedirected(STD_ERROR_HANDLE);
        if (isOutputSet && areErrorsSet)
            return;
        AttachConsole(ATTACH_PARENT_PROCESS); // if there is none, all of it does nothing
        m_codePage = GetConsoleOutputCP();
        SetConsoleOutputCP(CP_UTF8);
        if (!isOutputSet)
            lead(stdout);
        if (!areErrorsSet)
            lead(stderr);
    }
    ~ParentConsole()
    {
        std::fflush(nullptr);
        if (m_codePage != 0)
            SetConsoleOutputCP(m_codePage);
    }
    Q_DISABLE_COPY_MOVE(ParentConsole)

private:
    static bool isRedirected(DWORD stream)
    {
        const HANDLE handle = GetStdHandle(stream);
        DWORD mode;
        return GetFileType(handle) != FILE_TYPE_UNKNOWN && !GetConsoleMode(handle, &mode);
    }

    /// Without a console nobody reads the stream, which is no reason to fail.
    static void lead(std::FILE *stream)
    {
        if (std::freopen("CONOUT$", "w", stream) || std::freopen("NUL", "w", stream))
            std::setvbuf(stream, nullptr, _IOFBF, 1 << 16); // no letter in halves
    }

    UINT m_codePage = 0; // of the console, for those who use it afterwards
};

#else

/// Elsewhere every program has the console.
struct ParentConsole
{
};

#endif

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
    [[maybe_unused]] const ParentConsole console;
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
        [[maybe_unused]] const ParentConsole console;
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
