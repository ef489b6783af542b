#include "rows.h"
#include "table.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr int MinLines = 20000; // below, nothing can be told from the start of a process

void registerRow(const Row &row, const QString &inputs)
{
    benchmark::RegisterBenchmark(row.name.toUtf8().constData(),
                                 [=](benchmark::State &state) {
                                     const QString input = inputFile(inputs, row);
                                     qint64 count = 0;
                                     for (auto _ : state) {
                                         row.run(input, [&](const std::function<qint64()> &work) {
                                             QElapsedTimer timer;
                                             timer.start();
                                             count = work();
                                             QCoreApplication::processEvents();
                                             state.SetIterationTime(double(timer.nsecsElapsed())
                                                                    / 1e9);
                                         });
                                     }
                                     state.counters["count"] = double(count);
                                 })
        ->Iterations(1)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int argc, char *argv[])
{
    // The window is drawn as on a screen, without one.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    benchmark::Initialize(&argc, argv); // takes its own options out
    QApplication app(argc, argv);
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &text) {
        if (type == QtFatalMsg)
            std::fprintf(stderr, "%s\n", qPrintable(text));
    });

    QCommandLineParser parser;
    parser.setApplicationDescription(u"Measures Varlune beside the least a program must do."_s);
    parser.addHelpOption();
    const QCommandLineOption linesOption(u"lines"_s, u"Lines of the greatest file."_s, u"N"_s,
                                         u"1000000"_s);
    const QCommandLineOption quickOption(u"quick"_s, u"A fifth of the lines, in one minute."_s);
    // How the program starts itself, for a process of its own for each row.
    const QCommandLineOption rowOption(u"row"_s, u"Runs this row alone."_s, u"name"_s);
    const QCommandLineOption inputsOption(u"inputs"_s, u"The folder of its file."_s, u"folder"_s);
    parser.addOptions({linesOption, quickOption, rowOption, inputsOption});
    parser.process(app);
    const int lines = parser.isSet(quickOption) ? 200000 : parser.value(linesOption).toInt();
    if (!parser.isSet(rowOption)) {
        if (lines < MinLines)
            qFatal("at least %d lines are needed", MinLines);
        const QTemporaryDir inputs;
        return printTable(lines, inputs.path());
    }
    const QList<Row> rows = floorRows(lines) + programRows(lines) + awkwardRows(lines);
    for (const Row &row : rows) {
        if (row.name == parser.value(rowOption))
            registerRow(row, parser.value(inputsOption));
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
