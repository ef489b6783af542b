#include "boxes.h"
#include "currentfolder.h"
#include "document.h"
#include "testmain.h"
#include "twitem.h"
#include "window.h"

#include <QAbstractButton>
#include <QDir>
#include <QGroupBox>
#include <QRegularExpression>
#include <QTest>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString Samples = QStringLiteral(SAMPLES "/");
const QString Kept = QStringLiteral(TEST_DATA "/exemple/");

/// The window with the sample files in its folder, which is the current one meanwhile. The folder
/// "medias_a_garder" exists and is empty.
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

    /// The records with red rows, and behind each the dates that its tool tip tells.
    QStringList disagreements() const
    {
        QStringList list;
        for (QTreeWidgetItemIterator it(tree()); *it; ++it) {
            if ((*it)->background(0) == QBrush())
                continue;
            QString dates = (*it)->toolTip(0);
            dates.remove(u"Date évènement : "_s).replace(u"\r\nDate source : "_s, u" / "_s);
            const QTreeWidgetItem *record = *it;
            while (record->parent()->parent())
                record = record->parent();
            list += record->text(1) + u": "_s + dates;
        }
        return list;
    }

    /// The sources that the red rows cite. Where the husband's link to a family is red, these are
    /// the sources of that family.
    QStringList flaggedSources() const
    {
        QStringList list;
        for (QTreeWidgetItemIterator it(tree()); *it; ++it) {
            if ((*it)->background(0) == QBrush())
                continue;
            if ((*it)->text(1) != "FAMS"_L1) {
                list += (*it)->text(2);
                continue;
            }
            const QList<TwItem *> entries =
                row("0 "_L1 + (*it)->text(2) + " FAM"_L1)->getTabTwiChilds(true);
            for (const TwItem *entry : entries) {
                if (entry->text(0) == "2"_L1 && entry->text(1) == "SOUR"_L1)
                    list += entry->text(2);
            }
        }
        return list;
    }

private:
    CurrentFolder m_current;
};

/// The numbers that the guide tells in a sentence, which is a pattern with one group for each.
QStringList toldInTheGuide(const QString &sentence)
{
    static const QRegularExpression breaks(uR"(\s+)"_s);
    const QString guide =
        QString::fromUtf8(readBytes(Samples + "LISEZMOI.md"_L1)).replace(breaks, u" "_s);
    return QRegularExpression(sentence).match(guide).capturedTexts().mid(1);
}

/// The sources of the family whose date is a period.
QStringList registersOfAPeriod()
{
    static const QRegularExpression record(uR"(^0 (@\S+@) (\w+))"_s);
    static const QRegularExpression period(u"^\\d DATE FROM .+ TO "_s);
    QStringList sources;
    QString source; // empty in other records
    const QStringList lines = readLines(Samples + "famille.ged"_L1);
    for (const QString &line : lines) {
        const QRegularExpressionMatch match = record.match(line);
        if (match.hasMatch())
            source = match.captured(2) == "SOUR"_L1 ? match.captured(1) : QString();
        else if (!source.isEmpty() && period.match(line).hasMatch())
            sources += source;
    }
    return sources;
}

/// How many lines of the family match.
QString countLines(const QString &pattern)
{
    const QStringList lines = readLines(Samples + "famille.ged"_L1);
    return QString::number(lines.filter(QRegularExpression(pattern)).size());
}

} // namespace

/// The sample family with its parameter and sequence files, as a user would try them first.
class TstSample : public QObject
{
    Q_OBJECT

private slots:
    void parametersPresetTheForm();
    void parametersFitTheFamily();
    void mediasOfTheFamily();
    void guideCountsTheFamily();
    void guideTellsOfTheNote();
    void filtersOnTheFamily();
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
    // Nothing runs before the user chooses it.
    const QList<QGroupBox *> groups = session.window->findChildren<QGroupBox *>();
    for (const QGroupBox *group : groups)
        QVERIFY2(!group->isCheckable() || !group->isChecked(), qPrintable(group->objectName()));
}

void TstSample::parametersFitTheFamily()
{
    const AnsweredBoxes boxes;
    const FamilySession session;
    const qsizetype loaded = session.journal().size();
    session.apply({u"gbSetURLLinks"_s});

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
    // One image for each name in the family, and no others.
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
    // The folder of those to keep is there, and holds nothing yet.
    const QDir kept(Samples + "medias_a_garder"_L1);
    QVERIFY(kept.exists());
    QCOMPARE(kept.entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
}

void TstSample::guideCountsTheFamily()
{
    QCOMPARE(toldInTheGuide(uR"(compte (\d+) lignes : (\d+) personnes, (\d+) familles, )"
                            uR"((\d+) sources, (\d+) médias, (\d+) dépôts, (\d+) notes)"_s),
             (QStringList{
                 countLines(u"."_s),
                 countLines(uR"(^0 @I\d+@ INDI$)"_s),
                 countLines(uR"(^0 @F\d+@ FAM$)"_s),
                 countLines(uR"(^0 @S\d+@ SOUR$)"_s),
                 countLines(uR"(^0 @O\d+@ OBJE$)"_s),
                 countLines(uR"(^0 @R\d+@ REPO$)"_s),
                 countLines(uR"(^0 @N\d+@ NOTE)"_s),
             }));
}

void TstSample::guideTellsOfTheNote()
{
    const QStringList lines = readLines(Samples + "famille.ged"_L1);
    const qsizetype note = lines.indexOf(u"0 @N13@ NOTE"_s);
    QVERIFY(note > 0);
    const QString text = u"1 CONC Cahiers de l'abbé"_s;
    QCOMPARE(lines.at(note + 1).left(text.size()), text);
    // What becomes of it, and both remedies.
    QCOMPARE(toldInTheGuide(u"la fiche devient `0 @N13@ (NOTECahiers de l'abbé)"_s),
             QStringList{u"NOTECahiers de l'abbé"_s});
    QCOMPARE(toldInTheGuide(u"mettre le texte de la première ligne `CONC` derrière la balise "
                            "\\(`0 @N13@ (NOTE Cahiers de l'abbé)…`\\), "
                            "ou remplacer ce premier `CONC` par `(\\w+)`"_s),
             (QStringList{u"NOTE Cahiers de l'abbé"_s, u"CONT"_s}));
}

void TstSample::filtersOnTheFamily()
{
    const FamilySession session;
    const QString citations = countLines(u"^2 SOUR @S"_s);
    clickIndicator(session.find<QAbstractButton>(u"cbSourceDateDiff"_s));
    QCOMPARE(session.disagreements(), (QStringList{
                                          u"@I3@: 25 MAR 1977 / 0"_s,
                                          u"@I26@: 21 JAN 1806 / 1840"_s,
                                          u"@I34@: ABT 1805 / 0"_s,
                                          u"@I36@: BET 1800 AND 1810 / 1820"_s,
                                          u"@I40@: 10 OCT 1802 / 1805"_s,
                                          u"@I43@: 15 DEC 1744 / 1774"_s,
                                          u"@I43@: BET 1800 AND 1810 / 0"_s,
                                          u"@I52@: 22 MAY 1754 / 0"_s,
                                          u"@I66@: BEF 1810 / 1840"_s,
                                          u"@I105@: 15 DEC 1744 / 1774"_s,
                                          u"@I153@: 5 JUL 1788 / 0"_s,
                                          u"@I154@: 22 JAN 1810 / 1811"_s,
                                          u"@I158@: FROM 1800 TO 1810 / 1795"_s,
                                          u"@I161@: 8 FEB 1798 / 0"_s,
                                          u"@I162@: 7 MAR 1801 / 0"_s,
                                          u"@I179@: 22 AUG 1814 / 0"_s,
                                          u"@I185@: 12 MAR 1805 / 1840"_s,
                                          u"@I197@: 13 APR 1915 / 0"_s,
                                          u"@I219@: 16 SEP 1855 / 0"_s,
                                          u"@I223@: 31 JAN 1917 / 0"_s,
                                          u"@I239@: 2 AUG 1873 / 0"_s,
                                          u"@I239@: 7 DEC 1937 / 0"_s,
                                          u"@F51@: 10 FEB 1818 / 1840"_s,
                                      }));
    QCOMPARE(session.status(), u"23 incohérences sources / évènements détectées."_s);
    QCOMPARE(toldInTheGuide(uR"((\d+) désaccords pour (\d+) citations)"_s),
             (QStringList{u"23"_s, citations}));
    // Enough to look through, and three of them show that no period is read.
    QStringList flagged = session.flaggedSources();
    QVERIFY(session.disagreements().size() >= 20 && session.disagreements().size() <= 30);
    const QStringList registers = registersOfAPeriod();
    flagged.removeIf([&registers](const QString &source) { return !registers.contains(source); });
    flagged.sort();
    QCOMPARE(flagged, (QStringList{u"@S71@"_s, u"@S84@"_s, u"@S85@"_s}));
    QCOMPARE(toldInTheGuide(uR"(; (\w+) viennent de registres qui portent leur période)"_s),
             QStringList{u"trois"_s});

    clickIndicator(session.find<QAbstractButton>(u"cbSourceMultiUse"_s));
    QCOMPARE(session.status(), u"Recherche terminée. 24 occurences dédoublées."_s);
    QCOMPARE(toldInTheGuide(uR"(« Sources utilisées plusieurs fois » en compte (\d+))"_s),
             QStringList{u"24"_s});
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

    // Exactly the media without a link are copied.
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
