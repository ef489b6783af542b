#include "table.h"

#include "process.h"
#include "rows.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr double MaxExponent = 1.1;
constexpr double MaxMemory = 1.10; // of the floor, for the load
constexpr double MaxPrepared = 5; // of the file, for the process that prepares it

struct Figures
{
    double seconds = 0; // of what the row is about
    double processSeconds = 0;
    double peakMegabytes = 0; // of the process
};

/// The median of some runs, each a process of its own.
Figures measure(const Row &row, int lines, const QString &inputs, int runs)
{
    inputFile(inputs, row);
    QList<Figures> all;
    for (int i = 0; i < runs; ++i) {
        const ProcessCost cost = runProcess(
            {QCoreApplication::applicationFilePath(), u"--benchmark_format=json"_s, u"--lines"_s,
             QString::number(lines), u"--row"_s, row.name, u"--inputs"_s, inputs},
            true);
        const QJsonArray results =
            QJsonDocument::fromJson(cost.output).object().value("benchmarks"_L1).toArray();
        if (!cost.succeeded || results.isEmpty())
            qFatal("the row \"%s\" failed", qPrintable(row.name));
        const QJsonObject result = results.at(0).toObject();
        const bool nothing = row.name.endsWith(", none"_L1) || row.name.contains(", none,"_L1);
        if (row.counts && (result.value("count"_L1).toDouble() == 0) != nothing)
            qFatal("the row \"%s\" has not done what it says", qPrintable(row.name));
        all.append({result.value("real_time"_L1).toDouble() / 1000, cost.seconds,
                    result.value("peak"_L1).toDouble()});
    }
    std::sort(all.begin(), all.end(),
              [](const Figures &a, const Figures &b) { return a.seconds < b.seconds; });
    return all.at(all.size() / 2);
}

/// The value, marked if it is over its target.
QByteArray judged(double value, double target)
{
    QByteArray text = QByteArray::number(value, 'f', 2);
    if (target > 0)
        text += (value > target ? " **> " : " ≤ ") + QByteArray::number(target, 'f', 2)
              + (value > target ? "**" : "");
    return text;
}

void print(const QByteArray &text)
{
    std::fputs(text.constData(), stdout);
    std::fflush(stdout);
}

/// \p base is what the floor takes for \p baseLines lines.
void printRow(const Row &row, const Figures &small, const Figures &large, const Figures &base,
              int baseLines, double memoryBase)
{
    const double baseSeconds = base.seconds * row.lines / baseLines;
    // Below a hundredth of a second the clock and the process weigh more than the row.
    const QByteArray exponent = small.seconds < 0.01
                                  ? QByteArray("-")
                                  : judged(std::log10(large.seconds / small.seconds), MaxExponent);
    const QByteArray memory =
        row.lines != baseLines
            ? QByteArray("-")
            : judged(large.peakMegabytes / memoryBase, row.name == "load"_L1 ? MaxMemory : 0);
    print("| " + row.name.toUtf8() + " | " + QByteArray::number(row.lines) + " | "
          + QByteArray::number(small.seconds, 'f', 3) + " | "
          + QByteArray::number(large.seconds, 'f', 3) + " | "
          + QByteArray::number(row.lines / std::max(large.seconds, 0.001), 'f', 0) + " | "
          + QByteArray::number(large.peakMegabytes, 'f', 0) + " | " + memory + " | "
          + judged(large.seconds / baseSeconds, row.target) + " | " + exponent + " |\n");
}

/// What users have for such files besides.
struct Peer
{
    QString name;
    QStringList probe; // succeeds where the peer is installed
    QStringList command;
    int lines; // of the file, since some take minutes for a million
    QString does;
};

void printProcess(const QByteArray &name, int lines, double seconds, double peakMegabytes,
                  const QByteArray &does)
{
    print("| " + name + " | " + QByteArray::number(lines) + " | "
          + QByteArray::number(seconds, 'f', 2) + " | " + QByteArray::number(peakMegabytes, 'f', 0)
          + " | " + does + " |\n");
}

void printPeers(int lines, const QString &inputs)
{
    const int fewer = lines / 10;
    const auto file = [&inputs](int size) { return inputFile(inputs, programRows(size).at(0)); };
    const QString home = u"HOME="_s + inputs;
    const QString output = inputs + "/sortie_autre.ged"_L1;
    const QList<Peer> peers{
        {u"sed"_s,
         {u"sed"_s, u"--version"_s},
         {u"sed"_s, u"s/Hanvec/Plouha/"_s, file(lines)},
         lines,
         u"replaces a text in each line; knows no records, keeps no journal"_s},
        {u"Perl's Gedcom module"_s,
         {u"perl"_s, u"-MGedcom"_s, u"-e"_s, u"1"_s},
         {u"perl"_s, u"-MGedcom"_s, u"-e"_s,
          u"Gedcom->new(gedcom_file => $ARGV[0])->write($ARGV[1])"_s, file(fewer), output},
         fewer,
         u"reads the records against the grammar of the standard, writes them again"_s},
        {u"gramps"_s,
         {u"env"_s, home, u"gramps"_s, u"--version"_s},
         {u"env"_s, home, u"gramps"_s, u"-y"_s, u"-q"_s, u"-i"_s, file(fewer), u"-e"_s, output},
         fewer,
         u"imports into a database of its own model, and exports what that holds"_s},
    };
    print("\n| whole process | lines | s | peak MB | what it does |\n|---|---:|---:|---:|---|\n");
    for (const int size : {fewer, lines}) {
        const QList<Row> rows = programRows(size);
        const auto save = std::find_if(rows.begin(), rows.end(), [](const Row &row) {
            return row.name == "save, nothing to cut"_L1;
        });
        const Figures figures = measure(*save, size, inputs, 1);
        printProcess("Varlune", size, figures.processSeconds, figures.peakMegabytes,
                     "loads into the tree, looks for long lines, archives, saves, frees all of it");
    }
    const QString input = file(lines);
    const ProcessCost preparer = runProcess(
        {QStringLiteral(PREPARER), u"--console"_s, u"--ecraser"_s, u"-o"_s, output, input}, true);
    const double size = double(QFileInfo(input).size()) / 1024 / 1024;
    printProcess("varlune-preparer", lines, preparer.seconds, preparer.peakMegabytes,
                 preparer.succeeded
                     ? "prepares the file in " + judged(preparer.peakMegabytes / size, MaxPrepared)
                           + " times its size, and saves the copy"
                     : QByteArray("failed on this file"));
    QStringList missing;
    for (const Peer &peer : peers) {
        if (!runProcess(peer.probe, false).succeeded) {
            missing.append(peer.name);
            continue;
        }
        const ProcessCost cost = runProcess(peer.command, false);
        printProcess(peer.name.toUtf8(), peer.lines, cost.seconds, cost.peakMegabytes,
                     cost.succeeded ? peer.does.toUtf8() : "failed on this file");
    }
    if (!missing.isEmpty())
        print("\nNot installed: " + missing.join(", "_L1).toUtf8() + ".\n");
}

} // namespace

int printTable(int lines, const QString &inputs)
{
    constexpr int SmallRuns = 3;
    constexpr int RowsToAFloor = 6;
    const int fewer = lines / 10;
    print(
        "| row | lines | s, a tenth | s | lines/s | peak MB | memory, to the floor | time, to the "
        "floor | exponent |\n|---|---:|---:|---:|---:|---:|---:|---:|---:|\n");

    const QList<Row> floors = floorRows(lines);
    const QList<Row> fewerFloors = floorRows(fewer);
    QList<Figures> bases;
    for (qsizetype i = 0; i < floors.size(); ++i) {
        bases.append(measure(floors.at(i), lines, inputs, 3));
        const Figures small = measure(fewerFloors.at(i), fewer, inputs, SmallRuns);
        const Figures &base = floors.at(i).base == Base::Save ? bases.at(i) : bases.at(0);
        printRow(floors.at(i), small, bases.at(i), base, lines, bases.at(0).peakMegabytes);
    }

    const QList<Row> rows = programRows(lines) + awkwardRows(lines);
    const QList<Row> fewerRows = programRows(fewer) + awkwardRows(fewer);
    for (qsizetype i = 0; i < rows.size(); ++i) {
        // The machine may get faster or slower meanwhile.
        if (i > 0 && i % RowsToAFloor == 0)
            bases[0] = measure(floors.at(0), lines, inputs, 1);
        const Row &row = rows.at(i);
        const int runs = row.name == "load"_L1 ? 3 : 1;
        const Figures small = measure(fewerRows.at(i), fewer, inputs, SmallRuns);
        const Figures large = measure(row, lines, inputs, runs);
        printRow(row, small, large, bases.at(row.base == Base::Save ? 1 : 0), lines,
                 bases.at(0).peakMegabytes);
    }
    printPeers(lines, inputs);
    return 0;
}

QString inputFile(const QString &inputs, const Row &row)
{
    const QString path = inputs + u"/%1_%2.ged"_s.arg(int(row.shape)).arg(row.lines);
    if (!QFile::exists(path))
        writeInput(path, row.shape, row.lines);
    return path;
}
