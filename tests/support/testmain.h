#ifndef TESTMAIN_H
#define TESTMAIN_H

#include <QTest>

/// Runs the test offscreen, whatever the display of the machine, with a home of its own that goes
/// away at the end, and with the framework's own file dialogs.
int runTest(int argc, char **argv, QObject *(*makeTest)());

/// The main function of a test class, which stands in a source file with its .moc.
#define VARLUNE_TEST_MAIN(TestClass)                                                               \
    int main(int argc, char **argv)                                                                \
    {                                                                                              \
        return runTest(argc, argv, []() -> QObject * { return new TestClass; });                   \
    }

#endif // TESTMAIN_H
