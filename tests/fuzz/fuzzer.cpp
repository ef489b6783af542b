#include "scenario.h"

#include <QApplication>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

// The two functions that libFuzzer calls.
extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv);
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LC_ALL", "C.UTF-8");
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &text) {
        if (type != QtFatalMsg)
            return; // the platform warns at each box
        std::fprintf(stderr, "%s\n", qPrintable(text));
        std::abort();
    });
    static int arguments = 1; // those of libFuzzer are not for Qt
    new QApplication(arguments, *argv);
    Q_UNUSED(argc)
    return 0;
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QStringList faults =
        playScenario(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    if (!faults.isEmpty())
        qFatal("%s", qPrintable(faults.join(u'\n')));
    return 0;
}
