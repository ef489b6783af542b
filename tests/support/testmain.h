#ifndef TESTMAIN_H
#define TESTMAIN_H

#include <QTest>

class QTemporaryDir;

/// Cuts the program off from the machine, before there is an application: offscreen, with \p home
/// as the home directory and none of the user's settings of Qt. Only the locale stays.
void isolate(const QTemporaryDir &home);

/// Runs the test offscreen, whatever the display of the machine, with a temporary home directory
/// and non-native file dialogs.
int runTest(int argc, char **argv, QObject *(*makeTest)());

/// The main function of a test class. The source file must include its .moc.
#define VARLUNE_TEST_MAIN(TestClass)                                                               \
    int main(int argc, char **argv)                                                                \
    {                                                                                              \
        return runTest(argc, argv, []() -> QObject * { return new TestClass; });                   \
    }

/// Skips the rest of the function on Windows, and says why.
#ifdef Q_OS_WIN
#define SKIP_ON_WINDOWS(reason) QSKIP(reason)
#else
#define SKIP_ON_WINDOWS(reason) static_cast<void>(reason)
#endif

#endif // TESTMAIN_H
