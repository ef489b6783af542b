#include "preparation.h"

#include "boxes.h"
#include "brokenged.h"
#include "document.h"
#include "gedreading.h"
#include "proof.h"
#include "testmain.h"

#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QMap>
#include <QRandomGenerator>
#include <QTest>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

/// The lines that Varlune will write of those of a copy.
QStringList keptLines(const QByteArray &copy)
{
    QStringList lines = QString::fromUtf8(copy).split(u'\n');
    lines.removeLast(); // nothing behind the last line end
    lines.removeLast(); // the trailer
    for (QString &line : lines) {
        // The one blank in front of no value, and the digits of a level after the first.
        if (line.indexOf(u' ', 2) == line.size() - 1)
            line.chop(1);
        if (line.size() > 1 && line.at(1) != u' ')
            line[1] = u' ';
    }
    return lines;
}

/// The first place in which the lists differ, or nothing.
QString difference(const QStringList &actual, const QStringList &expected)
{
    for (qsizetype i = 0; i < std::max(actual.size(), expected.size()); ++i) {
        if (actual.value(i, u"(none)"_s) != expected.value(i, u"(none)"_s))
            return u"%1: %2, not %3"_s.arg(QString::number(i + 1), actual.value(i, u"(none)"_s),
                                           expected.value(i, u"(none)"_s));
    }
    return {};
}

/// What is wrong with the outcome of a preparation, or nothing: it is refused in a sentence, or
/// Varlune opens its copy if that is said, and another one does not change the copy. The lines that
/// Varlune would save go into \p saved.
QString faultOf(const Preparation &preparation, Options options, QStringList *saved = nullptr)
{
    if (!preparation.isDone())
        return preparation.refusal.endsWith(u'.') && preparation.copy.isEmpty() ? QString()
                                                                                : u"no refusal"_s;
    const AnsweredBoxes boxes;
    Document doc;
    writeBytes(doc.path(), preparation.copy);
    if (doc.loadFile() != preparation.proof.opens())
        return u"Varlune does not agree: "_s + preparation.verdict();
    if (doc.gedcom.getTabTwItemsRoot().size() != preparation.proof.records)
        return u"another number of records"_s;
    if (saved)
        *saved = doc.lines();

    options.encoding.reset();
    const Preparation again = prepare(preparation.copy, options);
    if (again.copy != preparation.copy)
        return "prepared again "_L1
             + difference(QString::fromUtf8(again.copy).split(u'\n'),
                          QString::fromUtf8(preparation.copy).split(u'\n'));
    return {};
}

/// The same for one by default: the copy must have the values of the file, and open with every line
/// of it.
QString faultByDefault(const Preparation &preparation)
{
    QStringList saved;
    const QString fault = faultOf(preparation, {}, &saved);
    if (!fault.isEmpty() || !preparation.isDone())
        return fault;
    if (!preparation.proof.opens())
        return preparation.verdict();
    const QString values = difference(valuesOf(preparation.copy), valuesOf(preparation.source));
    if (!values.isEmpty())
        return "values "_L1 + values;
    const QString lines = difference(saved, keptLines(preparation.copy));
    return lines.isEmpty() ? QString() : "lines "_L1 + lines;
}

/// Switches that a user may have chosen. The same ones for the same number.
Options drawnOptions(quint32 number, const BrokenFile &file)
{
    QRandomGenerator random(number);
    Options options;
    for (const FindingType &type : findingTypes()) {
        if (type.kind != FindingKind::Warning && random.bounded(3) == 0)
            options.repairs.set(type.finding, type.kind == FindingKind::RepairOnRequest);
    }
    if (random.bounded(2) == 0)
        options.encoding = encodingFromName(file.encoding);
    return options;
}

/// The number that an environment variable has, or \p number.
int numberFrom(const char *variable, int number)
{
    return qEnvironmentVariableIsSet(variable) ? qEnvironmentVariableIntValue(variable) : number;
}

} // namespace

/// Prepares many files, and holds each copy against the file. PREPARATION_FILES is the number of
/// those that are made up; PREPARATION_FOLDER names a folder of real ones.
class TstPreparedFiles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void madeUp();
    void drawnSwitches();
    void whatIsMadeUp();
    void real();
};

void TstPreparedFiles::initTestCase()
{
    QLoggingCategory::setFilterRules(u"*.debug=false"_s);
}

void TstPreparedFiles::madeUp()
{
    const int files = numberFrom("PREPARATION_FILES", 2000);
    for (int i = 0; i < files; ++i) {
        const QByteArray file = brokenFile(quint32(i)).bytes;
        const QByteArray before(file.constData(), file.size());
        const QString fault = faultByDefault(prepare(file, {}));
        QVERIFY2(fault.isEmpty(), qPrintable(u"file %1: %2"_s.arg(QString::number(i), fault)));
        QVERIFY(file == before);
    }
}

/// Whatever is switched on and off; and what is decoded is what was written, if the encoding is the
/// right one.
void TstPreparedFiles::drawnSwitches()
{
    const int files = numberFrom("PREPARATION_FILES", 2000);
    for (int i = 0; i < files; ++i) {
        const BrokenFile file = brokenFile(quint32(i));
        const Options options = drawnOptions(quint32(i), file);
        const Preparation preparation = prepare(file.bytes, options);
        QString fault = faultOf(preparation, options);
        if (fault.isEmpty() && preparation.isDone() && file.isIntact
            && encodingName(preparation.encoding.encoding) == file.encoding)
            fault = difference(QString::fromUtf8(preparation.source).split(u'\n'),
                               file.text.split(u'\n'));
        QVERIFY2(fault.isEmpty(), qPrintable(u"file %1: %2"_s.arg(QString::number(i), fault)));
    }
}

/// The files are of many kinds: most are prepared, and each repair is needed.
void TstPreparedFiles::whatIsMadeUp()
{
    QMap<QString, int> counts;
    for (quint32 i = 0; i < 500; ++i) {
        const Preparation preparation = prepare(brokenFile(i).bytes, {});
        ++counts[preparation.isDone() ? u"done"_s : u"refused"_s];
        ++counts[encodingName(preparation.encoding.encoding)];
        for (const FindingType &type : findingTypes()) {
            if (preparation.count(type.finding) > 0)
                ++counts[type.name];
        }
    }
    QVERIFY2(counts.value(u"done"_s) > 450, qPrintable(QString::number(counts.value(u"done"_s))));
    for (const FindingType &type : findingTypes()) {
        if (type.kind == FindingKind::Repair)
            QVERIFY2(counts.value(type.name) > 20, qPrintable(type.name));
    }
    for (const QString &encoding :
         {u"UTF-16LE"_s, u"UTF-16BE"_s, u"ANSEL"_s, u"CP437"_s, u"MacRoman"_s})
        QVERIFY2(counts.value(encoding) > 10,
                 qPrintable(u"%1 %2"_s.arg(encoding).arg(counts.value(encoding))));
}

void TstPreparedFiles::real()
{
    const QString folder = qEnvironmentVariable("PREPARATION_FOLDER", QStringLiteral(SAMPLES));
    const QFileInfoList files = QDir(folder).entryInfoList({u"*.ged"_s}, QDir::Files);
    QVERIFY(!files.isEmpty());
    QStringList faults;
    for (const QFileInfo &file : files) {
        const Preparation preparation = prepareFile(file.filePath(), {});
        const QString fault = faultByDefault(preparation);
        if (!fault.isEmpty())
            faults += file.fileName() + ": "_L1 + fault;
        QStringList repairs;
        for (const FindingType &type : findingTypes()) {
            if (preparation.count(type.finding) > 0)
                repairs += u"%1 %2"_s.arg(type.name).arg(preparation.count(type.finding));
        }
        std::printf("| %s | %s | %s | %lld | %s |\n", qPrintable(file.fileName()),
                    qPrintable(encodingName(preparation.encoding.encoding)),
                    qPrintable(repairs.join(u", "_s)), qlonglong(preparation.proof.records),
                    preparation.isDone() ? fault.isEmpty() ? "equal" : qPrintable(fault)
                                         : qPrintable(preparation.refusal));
    }
    QCOMPARE(faults, QStringList());
}

VARLUNE_TEST_MAIN(TstPreparedFiles)
#include "tst_preparedfiles.moc"
