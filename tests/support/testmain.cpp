#include "testmain.h"

#include <QApplication>
#include <QTemporaryDir>

#include <memory>

int runTest(int argc, char **argv, QObject *(*makeTest)())
{
    // File dialogs store settings below the home directory.
    const QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    qputenv("XDG_CONFIG_HOME", home.filePath(QStringLiteral("config")).toLocal8Bit());
    qputenv("XDG_RUNTIME_DIR", home.path().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LC_ALL", "C.UTF-8");

    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication app(argc, argv);
    const std::unique_ptr<QObject> test(makeTest());
    return QTest::qExec(test.get(), argc, argv);
}
