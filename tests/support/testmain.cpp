#include "testmain.h"

#include <QApplication>
#include <QTemporaryDir>

#include <memory>

void isolate(const QTemporaryDir &home)
{
    // File dialogs store settings below the home directory.
    qputenv("HOME", home.path().toLocal8Bit());
    qputenv("XDG_CONFIG_HOME", home.filePath(QStringLiteral("config")).toLocal8Bit());
    qputenv("XDG_RUNTIME_DIR", home.path().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // What changes the look, the sizes, the texts or the folders of a Qt program.
    for (const char *name :
         {"QT_STYLE_OVERRIDE", "QT_QPA_PLATFORMTHEME", "QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS",
          "QT_AUTO_SCREEN_SCALE_FACTOR", "QT_ENABLE_HIGHDPI_SCALING", "QT_FONT_DPI",
          "QT_USE_PHYSICAL_DPI", "QT_IM_MODULE", "LANGUAGE", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        qunsetenv(name);
}

int runTest(int argc, char **argv, QObject *(*makeTest)())
{
    const QTemporaryDir home;
    isolate(home);
    qputenv("LC_ALL", "C.UTF-8");

    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication app(argc, argv);
    const std::unique_ptr<QObject> test(makeTest());
    return QTest::qExec(test.get(), argc, argv);
}
