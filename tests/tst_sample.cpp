#include "boxes.h"
#include "currentfolder.h"
#include "document.h"
#include "testmain.h"
#include "window.h"

#include <QDir>
#include <QGroupBox>
#include <QRegularExpression>
#include <QTest>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString Samples = QStringLiteral(SAMPLES "/");
const QString Kept = QStringLiteral(TEST_DATA "/exemple/");

/// The window with the sample files in its folder, which is the current one while it lives. The
/// folder "medias_a_garder" is there and empty.
class FamilySession : public Session
{
public:
    FamilySession() : Session(readBytes(Samples + "PARAM.INI"_L1)), m_current(folder())
    {
        QStringList names = medias();
        names.replaceInStrings(QRegularExpression(u"^"_s), u"medias/"_s);
        names += {u"famille.ged"_s, u"correspondance.csv"_s};
        for (const QString &sub : {u"medias"_s, u"medias_a_garder"_s})
            QVERIFY(QDir(folder()).mkdir(sub));
        for (const QString &name : std::as_const(names))
            writeBytes(path(name), readBytes(Samples + name));
        window->show();
        open(path(u"famille.ged"_s));
    }
    static QStringList medias()
    {
        return QDir(Samples + "medias"_L1).entryList(QDir::Files, QDir::Name);
    }

private:
    CurrentFolder m_current;
};

} // namespace

/// The sample family with its parameter and sequence files, as a user would try them.
class TstSample : public QObject
{
    Q_OBJECT

private slots:
    void parametersPresetTheForm();
    void parametersFitTheFamily();
    void mediasOfTheFamily();
    void sequenceOnTheFamily();
};

void TstSample::parametersPresetTheForm()
{
    const AnsweredBoxes boxes;
    const Session session(readBytes(Samples + "PARAM.INI"_L1));
    QCOMPARE(boxes.texts(), QStringList());
    QCOMPARE(session.text(u"leTagsToDel"_s), u"_UID;CHAN"_s);
    QCOMPARE(session.text(u"leStrPlitCsv"_s), u",https://partage.test/"_s);
    QCOMPARE(session.text(u"leExtractMediasSource"_s), u"medias"_s);
    QCOMPARE(session.text(u"leExtractMediasToKeep"_s), u"medias_a_garder"_s);
    QVERIFY(session.isChecked(u"rbMarkdown"_s));
    QVERIFY(session.isChecked(u"cbDelMediaPath"_s));
    // Nothing runs before the user has chosen it.
    const QList<QGroupBox *> groups = session.window->findChildren<QGroupBox *>();
    for (const QGroupBox *group : groups)
        QVERIFY2(!group->isCheckable() || !group->isChecked(), qPrintable(group->objectName()));
}

void TstSample::parametersFitTheFamily()
{
    const AnsweredBoxes boxes;
    const FamilySession session;
    const qsizetype loaded = session.journal().size();
    session.set({u"gbSetURLLinks"_s});
    session.click(u"pbApply"_s);

    QCOMPARE(boxes.texts(), QStringList());
    static const QRegularExpression told(
        uR"(^INFO : (Chargement|\d+ correspondances|Ajout de \d+ balises SOUR))"_s);
    QCOMPARE(session.journal().mid(loaded).filter(told),
             (QStringList{
                 u"INFO : Chargement du fichier de correspondance correspondance.csv"_s,
                 u"INFO : 55 correspondances à ajouter."_s,
                 u"INFO : Ajout de 51 balises SOUR.WWW"_s,
             }));
    QCOMPARE(session.status(), u"51 URL médias ajoutées."_s);
}

void TstSample::mediasOfTheFamily()
{
    // One image for each name in the family, and no other.
    static const QRegularExpression record(uR"(^0 @O\d+@ OBJE$)"_s);
    static const QRegularExpression path(uR"(^1 FILE (?:.*[/\\])?)"_s);
    QStringList names;
    bool inMedia = false;
    const QStringList lines = readLines(Samples + "famille.ged"_L1);
    for (QString line : lines) {
        if (line.startsWith(u'0'))
            inMedia = record.match(line).hasMatch();
        else if (inMedia && line.contains(path))
            names += line.remove(path);
    }
    names.removeDuplicates();
    names.sort();
    QCOMPARE(FamilySession::medias(), names);
    QCOMPARE(names.size(), 60);
}

void TstSample::sequenceOnTheFamily()
{
    const AnsweredBoxes boxes;
    const FamilySession session;
    session.play(readBytes(Samples + "SEQUENCE.INI"_L1));

    QCOMPARE(boxes.texts(),
             (QStringList{
                 u"Erreur dans le nom pour l'entrée 1 NAME Jeanne/LE GOFF"_s,
                 u"Erreur dans le nom pour l'entrée 1 NAME Pierre/MOREL/ dit Laviolette"_s,
             }));
    QCOMPARE(readLines(session.path(u"famille.ged"_s)), readLines(Kept + "famille.apres.ged"_L1));
    static const QRegularExpression saved(uR"(ARCH/\d{4}\.\d\d\.\d\d/\d\d\.\d\d\.\d\d\.)"_s);
    QStringList journal = session.journal();
    journal.replaceInStrings(session.folder(), u"DOSSIER"_s);
    journal.replaceInStrings(saved, u"ARCH/DATE/HEURE."_s);
    QCOMPARE(journal, readLines(Kept + "famille.journal.txt"_L1));

    // What no link stands for is copied, and only that.
    const QStringList kept =
        QDir(session.path(u"medias_a_garder"_s)).entryList(QDir::Files, QDir::Name);
    QCOMPARE(kept, (QStringList{
                       u"Famille Quéméner été 1932.jpg"_s,
                       u"acte_007.jpg"_s,
                       u"cahier_oral.JPG"_s,
                       u"livret_p1.jpg"_s,
                       u"livret_p2.jpg"_s,
                       u"monument_aux_morts.png"_s,
                       u"portrait_famille_01.jpg"_s,
                       u"portrait_groupe.jpg"_s,
                       u"Église de Saint-Thégonnec.jpg"_s,
                   }));
    for (const QString &name : kept)
        QCOMPARE(readBytes(session.path("medias_a_garder/"_L1 + name)),
                 readBytes(Samples + "medias/"_L1 + name));
    QCOMPARE(QDir(session.path(u"medias"_s)).entryList(QDir::Files, QDir::Name),
             FamilySession::medias());
}

VARLUNE_TEST_MAIN(TstSample)
#include "tst_sample.moc"
