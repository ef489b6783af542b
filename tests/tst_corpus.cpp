#include "fuzz/scenario.h"

#include "document.h"
#include "testmain.h"

#include <QDir>
#include <QLoggingCategory>
#include <QTest>

using namespace Qt::StringLiterals;

/// Replays the inputs that the fuzzer has kept.
class TstCorpus : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void inputs_data();
    void inputs();
};

void TstCorpus::initTestCase()
{
    QLoggingCategory::setFilterRules(u"*.debug=false"_s);
}

void TstCorpus::inputs_data()
{
    QTest::addColumn<QString>("path");

    const QFileInfoList files = QDir(QStringLiteral(FUZZ_CORPUS)).entryInfoList(QDir::Files);
    QVERIFY(!files.isEmpty());
    for (const QFileInfo &file : files)
        QTest::newRow(qPrintable(file.fileName())) << file.filePath();
}

void TstCorpus::inputs()
{
    QFETCH(QString, path);

    QCOMPARE(playScenario(readBytes(path)), QStringList());
}

VARLUNE_TEST_MAIN(TstCorpus)
#include "tst_corpus.moc"
