#include "boxes.h"
#include "document.h"
#include "testmain.h"
#include "window.h"

#include <QGroupBox>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString Samples = QStringLiteral(SAMPLES "/");
const QString Kept = QStringLiteral(TEST_DATA "/exemple/");

} // namespace

/// The sample family with its parameter and sequence files, as a user would try them.
class TstSample : public QObject
{
    Q_OBJECT

private slots:
    void parametersPresetTheForm();
    void sequenceOnTheFamily();
};

void TstSample::parametersPresetTheForm()
{
    const AnsweredBoxes boxes;
    const Session session(readBytes(Samples + "PARAM.INI"_L1));
    QCOMPARE(boxes.texts(), QStringList());
    QCOMPARE(session.text(u"leTagsToDel"_s), u"_UID;CHAN"_s);
    QCOMPARE(session.text(u"leStrPlitCsv"_s), u",https://www.dropbox.com/"_s);
    QVERIFY(session.isChecked(u"rbMarkdown"_s));
    QVERIFY(session.isChecked(u"cbDelMediaPath"_s));
    // Nothing runs before the user has chosen it.
    const QList<QGroupBox *> groups = session.window->findChildren<QGroupBox *>();
    for (const QGroupBox *group : groups)
        QVERIFY2(!group->isCheckable() || !group->isChecked(), qPrintable(group->objectName()));
}

void TstSample::sequenceOnTheFamily()
{
    const AnsweredBoxes boxes;
    const Session session(readBytes(Samples + "PARAM.INI"_L1));
    session.window->show();
    const QString file = session.path(u"famille.ged"_s);
    writeBytes(file, readBytes(Samples + "famille.ged"_L1));
    session.open(file);
    session.play(readBytes(Samples + "SEQUENCE.INI"_L1));

    QCOMPARE(boxes.texts(),
             (QStringList{
                 u"Erreur dans le nom pour l'entrée 1 NAME Jeanne/LE GOFF"_s,
                 u"Erreur dans le nom pour l'entrée 1 NAME Pierre/MOREL/ dit Laviolette"_s,
             }));
    QCOMPARE(readLines(file), readLines(Kept + "famille.apres.ged"_L1));
    static const QRegularExpression saved(uR"(ARCH/\d{4}\.\d\d\.\d\d/\d\d\.\d\d\.\d\d\.)"_s);
    QStringList journal = session.journal();
    journal.replaceInStrings(session.folder(), u"DOSSIER"_s);
    journal.replaceInStrings(saved, u"ARCH/DATE/HEURE."_s);
    QCOMPARE(journal, readLines(Kept + "famille.journal.txt"_L1));
}

VARLUNE_TEST_MAIN(TstSample)
#include "tst_sample.moc"
