#include "rows.h"
#include "table.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QFile>
#include <QMessageBox>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr int MinLines = 20000; // below, nothing can be told from the start of a process

/// The most resident memory that this process has taken.
double peakMegabytes()
{
    QFile status(u"/proc/self/status"_s);
    if (status.open(QIODevice::ReadOnly)) {
        const QList<QByteArray> lines = status.readAll().split('\n');
        for (const QByteArray &line : lines) {
            if (line.startsWith("VmHWM:"))
                return line.mid(6).trimmed().split(' ').constFirst().toDouble() / 1024;
        }
    }
    return 0;
}

void runRow(benchmark::State &state, const Row &row, const QString &inputs)
{
    const QString input = inputFile(inputs, row);
    qint64 count = 0;
    for (auto _ : state) {
        row.run(input, [&](const std::function<qint64()> &work) {
            QElapsedTimer timer;
            timer.start();
            count = work();
            // A layout asks for a paint, and this for the widths of the columns.
            for (int i = 0; i < 3; ++i)
                QCoreApplication::processEvents();
            state.SetIterationTime(double(timer.nsecsElapsed()) / 1e9);
        });
    }
    state.counters["count"] = double(count);
    state.counters["peak"] = peakMegabytes();
}

void registerRow(const Row &row, const QString &inputs)
{
    const auto run = [=](benchmark::State &state) { runRow(state, row, inputs); };
    benchmark::RegisterBenchmark(row.name.toUtf8().constData(), run)
        ->Iterations(1)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int argc, char *argv[])
{
    // The window is drawn as on a screen, without one.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QPA_PLATFORMTHEME", ""); // whose file dialog would not be ours to answer
    // Debug lines would be part of what is measured.
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &text) {
        if (type == QtFatalMsg)
            std::fprintf(stderr, "%s\n", qPrintable(text));
    });
    benchmark::Initialize(&argc, argv); // takes its own options out
    QApplication app(argc, argv);

    QCommandLineParser parser;
    parser.setApplicationDescription(u"Measures Varlune beside the least a program must do."_s);
    parser.addHelpOption();
    const QCommandLineOption linesOption(u"lines"_s, u"Lines of the greatest file."_s, u"N"_s,
                                         u"1000000"_s);
    const QCommandLineOption quickOption(u"quick"_s, u"200000 lines, in one minute."_s);
    // For the program itself, which runs each row in a process of its own.
    const QCommandLineOption rowOption(u"row"_s, u"Runs this row alone."_s, u"name"_s);
    const QCommandLineOption inputsOption(u"inputs"_s, u"The folder of the generated files."_s,
                                          u"folder"_s);
    parser.addOptions({linesOption, quickOption, rowOption, inputsOption});
    parser.process(app);
    const int lines = parser.isSet(quickOption) ? 200000 : parser.value(linesOption).toInt();
    if (!parser.isSet(rowOption)) {
        if (lines < MinLines) {
            std::fprintf(stderr, "at least %d lines are needed\n", MinLines);
            return 2;
        }
        return printTable(lines, parser.value(inputsOption));
    }
    // Nobody answers a box here.
    QTimer boxes;
    QObject::connect(&boxes, &QTimer::timeout, [] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
            qFatal("%s", qPrintable(box->text()));
    });
    boxes.start(100);
    const QList<Row> rows = floorRows(lines) + programRows(lines) + awkwardRows(lines);
    for (const Row &row : rows) {
        if (row.name == parser.value(rowOption))
            registerRow(row, parser.value(inputsOption));
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
