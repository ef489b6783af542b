#include "boxes.h"
#include "document.h"
#include "markingtranslator.h"
#include "progresslog.h"
#include "testmain.h"
#include "told.h"

#include "gedcom.h"
#include "twitem.h"

#include <QCoreApplication>
#include <QDir>
#include <QHash>
#include <QItemSelectionModel>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTest>
#include <QTreeWidgetItemIterator>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// The lines of an indented text.
QStringList linesOf(const QString &text)
{
    QStringList lines;
    const QStringList parts = text.split(u'\n');
    for (QString line : parts) {
        while (line.startsWith(u' '))
            line.remove(0, 1);
        if (!line.isEmpty())
            lines += line;
    }
    return lines;
}

/// A document and what a run makes of it, in file order: "+ " marks an added line, "- " a deleted
/// one, "~ " one that was deleted before.
class Rework
{
public:
    explicit Rework(QStringList lines) : m_lines(std::move(lines)) { }

    /// Loads the document as it is before the run.
    bool load(Document *doc)
    {
        QStringList before;
        QList<bool> deleted;
        for (const QString &line : std::as_const(m_lines)) {
            if (line.startsWith(u'+'))
                continue;
            before += textOf(line);
            deleted += line.startsWith(u'~');
        }
        if (!doc->load(before))
            return false;
        m_roots = doc->gedcom.getTabTwItemsRoot();
        const QList<TwItem *> entries = doc->gedcom.getTabTotalTwItems();
        for (qsizetype i = 0; i < entries.size(); ++i) {
            if (deleted.at(i))
                entries.at(i)->setDelete(true);
        }
        doc->newJournal();
        return entries.size() == deleted.size();
    }

    /// Compares the document with its expected state after the run.
    void compare(const Document &doc) const
    {
        QStringList inFile;
        QStringList inTree;
        for (TwItem *root : m_roots) {
            inFile += state(root);
            const QList<TwItem *> tabTwi = root->getTabTwiChilds(false);
            for (TwItem *twi : tabTwi)
                inFile += state(twi);
            appendTree(root, &inTree);
        }
        QCOMPARE(inFile, expectedInFile());
        QCOMPARE(inTree, expectedInTree());
        QCOMPARE(doc.lines(), expectedLines());
    }

    /// The number of added lines that begin with \p start.
    [[nodiscard]] int added(const QString &start = QString()) const
    {
        return int(m_lines.filter(u"+ "_s + start).size());
    }

private:
    static bool isDeleted(const QString &line)
    {
        return line.startsWith(u'-') || line.startsWith(u'~');
    }
    static QString textOf(const QString &line)
    {
        return line.startsWith(u'+') || isDeleted(line) ? line.mid(2) : line;
    }
    static QString state(TwItem *twi)
    {
        const QString mark = twi->isToDelete()                   ? u"- "_s
                           : twi->getNumLineGedFile() == "-1"_L1 ? u"+ "_s
                                                                 : QString();
        return mark + lineText(twi)
             + (twi->isHidden() == twi->isToDelete() ? ""_L1 : " (wrongly hidden or shown)"_L1);
    }
    static void appendTree(TwItem *twi, QStringList *lines)
    {
        *lines += state(twi);
        QList<TwItem *> children;
        for (int i = 0; i < twi->childCount(); ++i)
            children += static_cast<TwItem *>(twi->child(i));
        if (!twi->isRoot() && twi->getTabTwiChilds(false) != children)
            *lines += u"another child list"_s;
        for (TwItem *child : std::as_const(children))
            appendTree(child, lines);
    }

    [[nodiscard]] QStringList expectedInFile() const
    {
        QStringList lines;
        for (const QString &line : m_lines)
            lines += isDeleted(line) ? "- "_L1 + textOf(line) : line;
        return lines;
    }
    /// The new address of a source is its last child, wherever it is in the file.
    [[nodiscard]] QStringList expectedInTree() const
    {
        QStringList lines;
        QStringList addresses;
        const QStringList inFile = expectedInFile();
        for (const QString &line : inFile) {
            if (textOf(line).startsWith("0 "_L1))
                lines += std::exchange(addresses, {});
            if (line.startsWith("+ 1 WWW "_L1))
                addresses += line;
            else
                lines += line;
        }
        return lines + addresses;
    }
    [[nodiscard]] QStringList expectedLines() const
    {
        QStringList lines;
        bool rootDeleted = false;
        for (const QString &line : m_lines) {
            if (textOf(line).startsWith("0 "_L1))
                rootDeleted = isDeleted(line);
            if (!rootDeleted && !isDeleted(line))
                lines += textOf(line);
        }
        return lines;
    }

    QStringList m_lines;
    QList<TwItem *> m_roots;
};

/// Records that no run changes: a source without a medium and an event that cites it.
const QStringList Rest{u"0 @S999@ SOUR"_s, u"1 TITL Registre"_s,      u"0 @I999@ INDI"_s,
                       u"1 DEAT"_s,        u"2 NOTE Source : http"_s, u"3 CONC s://z.fr/9"_s,
                       u"2 SOUR @S999@"_s};

/// A correspondence for the medium "a.jpg".
const QStringList OneLink{u"a.jpg,http://a.fr/1"_s};

/// A medium in a source that an event cites, in seven lines.
const QStringList OneMedium{u"0 @O1@ OBJE"_s, u"1 FILE media/a.jpg"_s, u"0 @S1@ SOUR"_s,
                            u"1 OBJE @O1@"_s, u"0 @I1@ INDI"_s,        u"1 BIRT"_s,
                            u"2 SOUR @S1@"_s};

QString csvPath(const Document &doc)
{
    return doc.folder() + "/liens.csv"_L1;
}

/// Runs the operation for these correspondences. \p flags contains the words "sour", "evt", "del"
/// and "extract" for the options that are on.
int run(Document *doc, const QStringList &csv, const QString &flags,
        const QString &mediasSource = QString(), const QString &mediasDest = QString())
{
    if (csv.isEmpty())
        writeBytes(csvPath(*doc), {});
    else
        writeLines(csvPath(*doc), csv);
    return doc->gedcom.setMediaFileURL({csvPath(*doc)}, u","_s, flags.contains("sour"_L1),
                                       flags.contains("evt"_L1), flags.contains("del"_L1),
                                       flags.contains("extract"_L1), mediasSource, mediasDest);
}

/// The journal of a run over \p count correspondences. Lines without a level get "INFO"; "{}"
/// stands for the path of the document.
QStringList journalOf(const Document &doc, qsizetype count, const QStringList &lines)
{
    QStringList journal{"INFO : Chargement du fichier de correspondance "_L1 + csvPath(doc),
                        u"INFO : %1 correspondances à ajouter."_s.arg(count)};
    for (QString line : lines) {
        line.replace(u"{}"_s, doc.path());
        journal += line.startsWith("ERROR : "_L1) ? line : "INFO : "_L1 + line;
    }
    return journal;
}

/// \p count media, each in its own source, which the birth of one person cites, with the marks of
/// what a run with every flag makes of them.
QStringList manyMedia(int count)
{
    QStringList lines;
    for (int i = 1; i <= count; ++i)
        lines += {u"- 0 @O%1@ OBJE"_s.arg(i), u"- 1 FILE media/%1.jpg"_s.arg(i)};
    for (int i = 1; i <= count; ++i)
        lines += {u"0 @S%1@ SOUR"_s.arg(i), u"- 1 OBJE @O%1@"_s.arg(i),
                  u"+ 1 WWW http://a.fr/%1"_s.arg(i)};
    for (int i = 1; i <= count; ++i)
        lines += {u"0 @I%1@ INDI"_s.arg(i), u"1 BIRT"_s, u"2 SOUR @S%1@"_s.arg(i),
                  u"+ 2 NOTE Source : http://a.fr/%1"_s.arg(i)};
    return lines;
}

/// A correspondence for each of them.
QStringList manyLinks(int count)
{
    QStringList csv;
    for (int i = 1; i <= count; ++i)
        csv += u"%1.jpg,http://a.fr/%1"_s.arg(i);
    return csv;
}

/// The journal lines about medium \p i of \p count, with every flag.
QStringList manyTold(int i, int count)
{
    const int file = 2 * i;
    const int source = 2 * count + 2 * i - 1;
    return {
        u"Ajout de la balise SOUR.WWW http://a.fr/%1 référençant la balise OBJE.FILE %1.jpg "
        u"(l.%2)"_s.arg(i)
            .arg(file),
        u"Ajout de la balise INDI.BIRT 2 NOTE Source : http://a.fr/%1 référençant la source "
        u"@S%1@ (l.%2)"_s.arg(i)
            .arg(source),
        u"Suppression de l'enregistrement : SOUR.OBJE 1 OBJE @O%1@ (l.%2)"_s.arg(i).arg(source + 1),
        u"Suppression de l'entrée : OBJE.FILE 1 FILE media/%1.jpg (l.%2)"_s.arg(i).arg(file),
        u"Suppression de l'enregistrement : OBJE 0 @O%1@ OBJE (l.%2)"_s.arg(i).arg(file - 1)};
}

/// Makes the files; a name that ends in "/" becomes a folder with a file in it. Each file contains
/// \p content and its name.
void makeFiles(const QString &folder, const QStringList &names, const QString &content)
{
    QVERIFY(QDir().mkpath(folder));
    for (const QString &name : names) {
        const QString path = folder + u'/' + name;
        if (name.endsWith(u'/')) {
            QVERIFY(QDir().mkpath(path));
            writeBytes(path + "dedans.jpg"_L1, "dedans");
        } else {
            writeBytes(path, QString(content + u' ' + name).toUtf8());
        }
    }
}

/// The names in a folder, sorted, each with its content.
QStringList filesIn(const QString &folder)
{
    QStringList files;
    const QStringList names = QDir(folder).entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &name : names)
        files += name + ": "_L1 + QString::fromUtf8(readBytes(folder + u'/' + name));
    return files;
}

void addLinkColumns()
{
    QTest::addColumn<QString>("flags");
    QTest::addColumn<QStringList>("csv");
    QTest::addColumn<QStringList>("changes");
    QTest::addColumn<QStringList>("journal");
}

void linkRow(const QString &name, const QString &flags, const QStringList &csv,
             const QString &changes, const QString &journal)
{
    QTest::newRow(qPrintable(name)) << flags << csv << linesOf(changes) << linesOf(journal);
}

void addNoteColumns()
{
    QTest::addColumn<QStringList>("event");
    QTest::addColumn<QString>("parent"); // of the new line
}

void noteRow(const QString &name, const QString &parent, const QString &event)
{
    QTest::newRow(qPrintable(name)) << linesOf(event) << parent;
}

} // namespace

/// Links to media in sources, events and both: where the new lines come, what is deleted with them
/// and what is copied.
class TstMedialinks : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void links_data();
    void links();
    void linksInEvents_data();
    void linksInEvents();
    void deletionNeedsALink_data();
    void deletionNeedsALink();
    void deletedEntries_data();
    void deletedEntries();
    void placeOfTheAddress_data();
    void placeOfTheAddress();
    void textOfTheAddress_data();
    void textOfTheAddress();
    void linkNotes_data();
    void linkNotes();
    void placeInALinkNote_data();
    void placeInALinkNote();
    void noRecordWithinARecord();
    void manyLinksInOneNote();
    void noteThatIsAnEventToo();
    void severalLinkNotes_data();
    void severalLinkNotes();
    void flags_data();
    void flags();
    void newEntries();
    void levels();
    void levelOfACitation();
    void copying_data();
    void copying();
    void orderOfTheSummaries();
    void secondRun();
    void saved();
    void longRun();
    void progress_data();
    void progress();
    void rowsStayAsTheyWere_data();
    void rowsStayAsTheyWere();
    void eventsDuringTheRun();
    void textsAreTranslated();

private:
    /// Imports the correspondences of a linkRow() and compares.
    void compareLinks();
    /// Imports one link into the event of a noteRow() and compares.
    void compareLinkNote();

    AnsweredBoxes m_boxes; // none is expected; an unanswered one would block the test for ever
};

void TstMedialinks::cleanup()
{
    QCOMPARE(m_boxes.texts(), QStringList());
}

void TstMedialinks::compareLinks()
{
    QFETCH(QString, flags);
    QFETCH(QStringList, csv);
    QFETCH(QStringList, changes);
    QFETCH(QStringList, journal);

    Document doc;
    Rework rework(changes + Rest);
    QVERIFY(rework.load(&doc));
    QCOMPARE(run(&doc, csv, flags), rework.added());
    QCOMPARE(doc.newJournal(), journalOf(doc, csv.size(), journal));
    QCOMPARE(doc.status(), u"%1 URL médias ajoutées."_s.arg(rework.added(u"1 WWW "_s)));
    rework.compare(doc);
}

void TstMedialinks::links_data()
{
    addLinkColumns();

    linkRow(u"source, event, reference and record"_s, u"sour evt del"_s, OneLink, uR"(
        - 0 @O1@ OBJE
        - 1 FILE media/a.jpg
        0 @S1@ SOUR
        1 TITL Acte
        - 1 OBJE @O1@
        + 1 WWW http://a.fr/1
        0 @I1@ INDI
        1 BIRT
        2 SOUR @S1@
        + 2 NOTE Source : http://a.fr/1
        )"_s,
            uR"(
        Ajout de la balise SOUR.WWW http://a.fr/1 référençant la balise OBJE.FILE a.jpg (l.2)
        Ajout de la balise INDI.BIRT 2 NOTE Source : http://a.fr/1 référençant la source @S1@ (l.3)
        Suppression de l'enregistrement : SOUR.OBJE 1 OBJE @O1@ (l.5)
        Suppression de l'entrée : OBJE.FILE 1 FILE media/a.jpg (l.2)
        Suppression de l'enregistrement : OBJE 0 @O1@ OBJE (l.1)
        Ajout de 1 balises SOUR.WWW
        Ajout de 1 balises INDI.BIRT.NOTE
        Sppression de 1 enregistrements OBJE
        )"_s);
    linkRow(u"two media in two sources, with two events"_s, u"sour evt del"_s,
            {u"a.jpg,http://a.fr/1"_s, u"b.jpg,http://b.fr/2"_s}, uR"(
        - 0 @O1@ OBJE
        - 1 FILE media/a.jpg
        - 0 @O2@ OBJE
        - 1 FILE media/b.jpg
        0 @S1@ SOUR
        - 1 OBJE @O1@
        + 1 WWW http://a.fr/1
        0 @S2@ SOUR
        - 1 OBJE @O1@
        - 1 OBJE @O2@
        + 1 WWW http://a.fr/1
        + 1 WWW http://b.fr/2
        0 @I1@ INDI
        1 BIRT
        2 SOUR @S1@
        2 SOUR @S2@
        + 2 NOTE Source : http://a.fr/1
        + 3 CONT http://a.fr/1
        + 3 CONT http://b.fr/2
        1 DEAT
        2 SOUR @S2@
        + 2 NOTE Source : http://a.fr/1
        + 3 CONT http://b.fr/2
        )"_s,
            uR"(
        Ajout de la balise SOUR.WWW http://a.fr/1 référençant la balise OBJE.FILE a.jpg (l.2)
        Ajout de la balise INDI.BIRT 2 NOTE Source : http://a.fr/1 référençant la source @S1@ (l.5)
        Suppression de l'enregistrement : SOUR.OBJE 1 OBJE @O1@ (l.6)
        Ajout de la balise SOUR.WWW http://a.fr/1 référençant la balise OBJE.FILE a.jpg (l.2)
        Ajout de la balise INDI.BIRT.NOTE 3 CONT http://a.fr/1 référençant la source @S2@ (l.7)
        Ajout de la balise INDI.DEAT 2 NOTE Source : http://a.fr/1 référençant la source @S2@ (l.7)
        Suppression de l'enregistrement : SOUR.OBJE 1 OBJE @O1@ (l.8)
        Suppression de l'entrée : OBJE.FILE 1 FILE media/a.jpg (l.2)
        Suppression de l'enregistrement : OBJE 0 @O1@ OBJE (l.1)
        Ajout de la balise SOUR.WWW http://b.fr/2 référençant la balise OBJE.FILE b.jpg (l.4)
        Ajout de la balise INDI.BIRT.NOTE 3 CONT http://b.fr/2 référençant la source @S2@ (l.7)
        Ajout de la balise INDI.DEAT.NOTE 3 CONT http://b.fr/2 référençant la source @S2@ (l.7)
        Suppression de l'enregistrement : SOUR.OBJE 1 OBJE @O2@ (l.9)
        Suppression de l'entrée : OBJE.FILE 1 FILE media/b.jpg (l.4)
        Suppression de l'enregistrement : OBJE 0 @O2@ OBJE (l.3)
        Ajout de 3 balises SOUR.WWW
        Ajout de 1 balises INDI.BIRT.NOTE
        Ajout de 2 balises INDI.BIRT.NOTE.CONT
        Ajout de 1 balises INDI.DEAT.NOTE
        Ajout de 1 balises INDI.DEAT.NOTE.CONT
        Sppression de 2 enregistrements OBJE
        )"_s);
    linkRow(u"the lines decide on the order"_s, u"sour evt"_s,
            {u"b.jpg,http://b.fr/2"_s, u"a.jpg,http://a.fr/1"_s}, uR"(
        0 @O1@ OBJE
        1 FILE media/a.jpg
        0 @O2@ OBJE
        1 FILE media/b.jpg
        0 @S1@ SOUR
        1 OBJE @O1@
        1 OBJE @O2@
        + 1 WWW http://b.fr/2
        + 1 WWW http://a.fr/1
        0 @I1@ INDI
        1 BIRT
        2 SOUR @S1@
        + 2 NOTE Source : http://b.fr/2
        + 3 CONT http://a.fr/1
        )"_s,
            uR"(
        Ajout de la balise SOUR.WWW http://b.fr/2 référençant la balise OBJE.FILE b.jpg (l.4)
        Ajout de la balise INDI.BIRT 2 NOTE Source : http://b.fr/2 référençant la source @S1@ (l.5)
        Ajout de la balise SOUR.WWW http://a.fr/1 référençant la balise OBJE.FILE a.jpg (l.2)
        Ajout de la balise INDI.BIRT.NOTE 3 CONT http://a.fr/1 référençant la source @S1@ (l.5)
        Ajout de 2 balises SOUR.WWW
        Ajout de 1 balises INDI.BIRT.NOTE
        Ajout de 1 balises INDI.BIRT.NOTE.CONT
        )"_s);
    linkRow(u"the same file name on two lines"_s, u"sour evt del"_s,
            {u"a.jpg,http://a.fr/1"_s, u"a.jpg,http://a.fr/2"_s}, uR"(
        - 0 @O1@ OBJE
        - 1 FILE media/a.jpg
        0 @S1@ SOUR
        - 1 OBJE @O1@
        + 1 WWW http://a.fr/1
        + 1 WWW http://a.fr/2
        0 @I1@ INDI
        1 BIRT
        2 SOUR @S1@
        + 2 NOTE Source : http://a.fr/1
        + 3 CONT http://a.fr/2
        )"_s,
            uR"(
        Ajout de la balise SOUR.WWW http://a.fr/1 référençant la balise OBJE.FILE a.jpg (l.2)
        Ajout de la balise INDI.BIRT 2 NOTE Source : http://a.fr/1 référençant la source @S1@ (l.3)
        Suppression de l'enregistrement : SOUR.OBJE 1 OBJE @O1@ (l.4)
        Suppression de l'entrée : OBJE.FILE 1 FILE media/a.jpg (l.2)
        Suppression de l'enregistrement : OBJE 0 @O1@ OBJE (l.1)
        Ajout de la balise SOUR.WWW http://a.fr/2 référençant la balise OBJE.FILE a.jpg (l.2)
        Ajout de la balise INDI.BIRT.NOTE 3 CONT http://a.fr/2 référençant la source @S1@ (l.3)
        Ajout de 2 balises SOUR.WWW
        Ajout de 1 balises INDI.BIRT.NOTE
        Ajout de 1 balises INDI.BIRT.NOTE.CONT
        Sppression de 1 enregistrements OBJE
        )"_s);
    linkRow(u"two references of a source to one record"_s, u"sour evt del"_s, OneLink, uR"(
        - 0 @O1@ OBJE
        - 1 FILE media/a.jpg
        0 @S1@ SOUR
        - 1 OBJE @O1@
        - 1 OBJE @O1@
        + 1 WWW http://a.fr/1
        + 1 WWW http://a.fr/1
        0 @I1@ INDI
        1 BIRT
        2 SOUR @S1@
        + 2 NOTE Source : http://a.fr/1
        + 3 CONT http://a.fr/1
        )"_s,
            uR"(
        Ajout de la balise SOUR.WWW http://a.fr/1 référençant la balise OBJE.FILE a.jpg (l.2)
        Ajout de la balise INDI.BIRT 2 NOTE Source : http://a.fr/1 référençant la source @S1@ (l.3)
        Suppression de l'enregistrement : SOUR.OBJE 1 OBJE @O1@ (l.4)
        Ajout de la balise SOUR.WWW http://a.fr/1 référençant la balise OBJE.FILE a.jpg (l.2)
        Ajout de la balise INDI.BIRT.NOTE 3 CONT http://a.fr/1 référençant la source @S1@ (l.3)
        Suppression de l'enregistrement : SOUR.OBJE 1 OBJE @O1@ (l.5)
        Suppression de l'entrée : OBJE.FILE 1 FILE media/a.jpg (l.2)
        Suppression de l'enregistrement : OBJE 0 @O1@ OBJE (l.1)
        Ajout de 2 balises SOUR.WWW
        Ajout de 1 balises INDI.BIRT.NOTE
        Ajout de 1 balises INDI.BIRT.NOTE.CONT
        Sppression de 1 enregistrements OBJE
        )"_s);
}

void TstMedialinks::links()
{
    compareLinks();
}

void TstMedialinks::linksInEvents_data()
{
    addLinkColumns();

    linkRow(u"an event that cites the source three times"_s, u"evt"_s, OneLink, uR"(
        0 @O1@ OBJE
        1 FILE media/a.jpg
        0 @S1@ SOUR
        1 OBJE @O1@
        0 @I1@ INDI
        1 BIRT
        2 SOUR @S1@
        2 SOUR @S1@
        2 SOUR @S1@
        + 2 NOTE Source : http://a.fr/1
        + 3 CONT http://a.fr/1
        + 3 CONT http://a.fr/1
        )"_s,
            uR"(
        Ajout de la balise INDI.BIRT 2 NOTE Source : http://a.fr/1 référençant la source @S1@ (l.3)
        Ajout de la balise INDI.BIRT.NOTE 3 CONT http://a.fr/1 référençant la source @S1@ (l.3)
        Ajout de la balise INDI.BIRT.NOTE 3 CONT http://a.fr/1 référençant la source @S1@ (l.3)
        Ajout de 1 balises INDI.BIRT.NOTE
        Ajout de 2 balises INDI.BIRT.NOTE.CONT
        )"_s);
    linkRow(u"links of several lines in front of other rows of a note"_s, u"evt"_s,
            {u"a.jpg,http://a.fr/1"_s, u"a.jpg,http://a.fr/2"_s}, uR"(
        0 @O1@ OBJE
        1 FILE media/a.jpg
        0 @S1@ SOUR
        1 OBJE @O1@
        0 @I1@ INDI
        1 BIRT
        2 SOUR @S1@
        2 NOTE Source : http://z.fr/1
        + 3 CONT http://a.fr/1
        + 3 CONT http://a.fr/1
        + 3 CONT http://a.fr/2
        + 3 CONT http://a.fr/2
        3 CONC /suite
        3 SOUR @S9@
        4 PAGE 3
        3 DATE 1900
        2 SOUR @S1@
        )"_s,
            uR"(
        Ajout de la balise INDI.BIRT.NOTE 3 CONT http://a.fr/1 référençant la source @S1@ (l.3)
        Ajout de la balise INDI.BIRT.NOTE 3 CONT http://a.fr/1 référençant la source @S1@ (l.3)
        Ajout de la balise INDI.BIRT.NOTE 3 CONT http://a.fr/2 référençant la source @S1@ (l.3)
        Ajout de la balise INDI.BIRT.NOTE 3 CONT http://a.fr/2 référençant la source @S1@ (l.3)
        Ajout de 4 balises INDI.BIRT.NOTE.CONT
        )"_s);
    linkRow(u"events of persons, then of families; summaries by tag"_s, u"evt"_s, OneLink, uR"(
        0 @O1@ OBJE
        1 FILE media/a.jpg
        0 @S1@ SOUR
        1 OBJE @O1@
        0 @F1@ FAM
        1 MARR
        2 SOUR @S1@
        + 2 NOTE Source : http://a.fr/1
        0 @I1@ INDI
        1 _MED
        2 SOUR @S1@
        + 2 NOTE Source : http://a.fr/1
        1 DEAT
        2 SOUR @S1@
        2 SOUR @S1@
        + 2 NOTE Source : http://a.fr/1
        + 3 CONT http://a.fr/1
        1 BAPM
        2 SOUR @S1@
        + 2 NOTE Source : http://a.fr/1
        1 BAP
        2 SOUR @S1@
        + 2 NOTE Source : http://a.fr/1
        0 @I2@ INDI
        1 DEAT
        2 SOUR @S1@
        + 2 NOTE Source : http://a.fr/1
        )"_s,
            uR"(
        Ajout de la balise INDI._MED 2 NOTE Source : http://a.fr/1 référençant la source @S1@ (l.3)
        Ajout de la balise INDI.DEAT 2 NOTE Source : http://a.fr/1 référençant la source @S1@ (l.3)
        Ajout de la balise INDI.DEAT.NOTE 3 CONT http://a.fr/1 référençant la source @S1@ (l.3)
        Ajout de la balise INDI.BAPM 2 NOTE Source : http://a.fr/1 référençant la source @S1@ (l.3)
        Ajout de la balise INDI.BAP 2 NOTE Source : http://a.fr/1 référençant la source @S1@ (l.3)
        Ajout de la balise INDI.DEAT 2 NOTE Source : http://a.fr/1 référençant la source @S1@ (l.3)
        Ajout de la balise FAM.MARR 2 NOTE Source : http://a.fr/1 référençant la source @S1@ (l.3)
        Ajout de 1 balises FAM.MARR.NOTE
        Ajout de 1 balises INDI.BAP.NOTE
        Ajout de 1 balises INDI.BAPM.NOTE
        Ajout de 2 balises INDI.DEAT.NOTE
        Ajout de 1 balises INDI.DEAT.NOTE.CONT
        Ajout de 1 balises INDI._MED.NOTE
        )"_s);
    linkRow(u"an event without a tag, and one that is a note itself"_s, u"evt"_s, OneLink, uR"(
        0 @O1@ OBJE
        1 FILE media/a.jpg
        0 @S1@ SOUR
        1 OBJE @O1@
        0 @I1@ INDI
        1 EV
        2 SOUR @S1@
        2 SOUR @S1@
        + 2 NOTE Source : http://a.fr/1
        + 3 CONT http://a.fr/1
        1 NOTE Source : http://z.fr/1
        2 SOUR @S1@
        + 2 NOTE Source : http://a.fr/1
        )"_s,
            uR"(
        Ajout de la balise  2 NOTE Source : http://a.fr/1 référençant la source @S1@ (l.3)
        Ajout de la balise NOTE 3 CONT http://a.fr/1 référençant la source @S1@ (l.3)
        Ajout de la balise INDI.NOTE 2 NOTE Source : http://a.fr/1 référençant la source @S1@ (l.3)
        Ajout de 1 balises INDI.NOTE.NOTE
        Ajout de 1 balises NOTE
        Ajout de 1 balises NOTE.CONT
        )"_s);
}

void TstMedialinks::linksInEvents()
{
    compareLinks();
}

void TstMedialinks::deletionNeedsALink_data()
{
    addLinkColumns();

    linkRow(u"no link, no deletion"_s, u"evt del"_s, OneLink, uR"(
        0 @O1@ OBJE
        1 FILE media/a.jpg
        0 @S1@ SOUR
        1 OBJE @O1@
        0 @I1@ INDI
        1 BIRT
        )"_s,
            u"Sppression de 0 enregistrements OBJE"_s);
    linkRow(u"the link of an earlier source of the line counts for a later one"_s, u"evt del"_s,
            OneLink, uR"(
        - 0 @O1@ OBJE
        - 1 FILE media/a.jpg
        0 @S1@ SOUR
        1 OBJE @O1@
        0 @S2@ SOUR
        - 1 OBJE @O1@
        0 @S3@ SOUR
        - 1 OBJE @O1@
        0 @I1@ INDI
        1 BIRT
        2 SOUR @S2@
        + 2 NOTE Source : http://a.fr/1
        )"_s,
            uR"(
        Ajout de la balise INDI.BIRT 2 NOTE Source : http://a.fr/1 référençant la source @S2@ (l.5)
        Suppression de l'enregistrement : SOUR.OBJE 1 OBJE @O1@ (l.6)
        Suppression de l'enregistrement : SOUR.OBJE 1 OBJE @O1@ (l.8)
        Suppression de l'entrée : OBJE.FILE 1 FILE media/a.jpg (l.2)
        Suppression de l'enregistrement : OBJE 0 @O1@ OBJE (l.1)
        Ajout de 1 balises INDI.BIRT.NOTE
        Sppression de 1 enregistrements OBJE
        )"_s);
    linkRow(u"the link of an earlier line does not count"_s, u"evt del"_s,
            {u"a.jpg,http://a.fr/1"_s, u"b.jpg,http://b.fr/2"_s}, uR"(
        - 0 @O1@ OBJE
        - 1 FILE media/a.jpg
        0 @O2@ OBJE
        1 FILE media/b.jpg
        0 @S1@ SOUR
        - 1 OBJE @O1@
        0 @S2@ SOUR
        1 OBJE @O2@
        0 @I1@ INDI
        1 BIRT
        2 SOUR @S1@
        + 2 NOTE Source : http://a.fr/1
        )"_s,
            uR"(
        Ajout de la balise INDI.BIRT 2 NOTE Source : http://a.fr/1 référençant la source @S1@ (l.5)
        Suppression de l'enregistrement : SOUR.OBJE 1 OBJE @O1@ (l.6)
        Suppression de l'entrée : OBJE.FILE 1 FILE media/a.jpg (l.2)
        Suppression de l'enregistrement : OBJE 0 @O1@ OBJE (l.1)
        Ajout de 1 balises INDI.BIRT.NOTE
        Sppression de 1 enregistrements OBJE
        )"_s);
    linkRow(u"no source shows the record"_s, u"sour evt del"_s, OneLink, uR"(
        0 @O1@ OBJE
        1 FILE media/a.jpg
        0 @S1@ SOUR
        1 TITL Acte
        0 @I1@ INDI
        1 BIRT
        2 SOUR @S1@
        )"_s,
            u"Sppression de 0 enregistrements OBJE"_s);
    linkRow(u"lines that fail count for nothing"_s, u"sour evt del"_s,
            {u",http://x.fr/1"_s, u"b.jpg,http://b.fr/1"_s, u"a.jpg,http://a.fr/1"_s}, uR"(
        - 0 @O1@ OBJE
        - 1 FILE media/a.jpg
        0 @S1@ SOUR
        - 1 OBJE @O1@
        + 1 WWW http://a.fr/1
        )"_s,
            uR"(
        ERROR : Erreur dans la ligne ,http://x.fr/1
        ERROR : b.jpg référençant http://b.fr/1 non détecté dans {}
        Ajout de la balise SOUR.WWW http://a.fr/1 référençant la balise OBJE.FILE a.jpg (l.2)
        Suppression de l'enregistrement : SOUR.OBJE 1 OBJE @O1@ (l.4)
        Suppression de l'entrée : OBJE.FILE 1 FILE media/a.jpg (l.2)
        Suppression de l'enregistrement : OBJE 0 @O1@ OBJE (l.1)
        Ajout de 1 balises SOUR.WWW
        Sppression de 1 enregistrements OBJE
        )"_s);
}

void TstMedialinks::deletionNeedsALink()
{
    compareLinks();
}

void TstMedialinks::deletedEntries_data()
{
    addLinkColumns();

    linkRow(u"reference and record with lines below"_s, u"sour evt del"_s, OneLink, uR"(
        - 0 @O1@ OBJE
        - 1 FILE media/a.jpg
        - 2 FORM jpg
        - 3 TYPE photo
        - 1 TITL Vue
        0 @S1@ SOUR
        - 1 OBJE @O1@
        + 1 WWW http://a.fr/1
        - 2 TITL Page
        - 3 CONC  suite
        - 2 NOTE Verso
        )"_s,
            uR"(
        Ajout de la balise SOUR.WWW http://a.fr/1 référençant la balise OBJE.FILE a.jpg (l.2)
        Suppression de l'entrée : SOUR.OBJE.TITL 2 TITL Page (l.8)
        Suppression de l'entrée : SOUR.OBJE.TITL.CONC 3 CONC  suite (l.9)
        Suppression de l'entrée : SOUR.OBJE.NOTE 2 NOTE Verso (l.10)
        Suppression de l'enregistrement : SOUR.OBJE 1 OBJE @O1@ (l.7)
        Suppression de l'entrée : OBJE.FILE 1 FILE media/a.jpg (l.2)
        Suppression de l'entrée : OBJE.FILE.FORM 2 FORM jpg (l.3)
        Suppression de l'entrée : OBJE.FILE.FORM.TYPE 3 TYPE photo (l.4)
        Suppression de l'entrée : OBJE.TITL 1 TITL Vue (l.5)
        Suppression de l'enregistrement : OBJE 0 @O1@ OBJE (l.1)
        Ajout de 1 balises SOUR.WWW
        Sppression de 1 enregistrements OBJE
        )"_s);
    // Below a reference whose own lines are all deleted nothing is checked.
    linkRow(u"lines deleted before"_s, u"sour evt del"_s, OneLink, uR"(
        - 0 @O1@ OBJE
        - 1 FILE media/a.jpg
        ~ 2 FORM jpg
        - 3 TYPE photo
        0 @S1@ SOUR
        - 1 OBJE @O1@
        + 1 WWW http://a.fr/1
        ~ 2 TITL Page
        3 CONC suite
        0 @S2@ SOUR
        - 1 OBJE @O1@
        + 1 WWW http://a.fr/1
        ~ 2 TITL Page
        - 3 CONC suite
        - 2 NOTE Verso
        )"_s,
            uR"(
        Ajout de la balise SOUR.WWW http://a.fr/1 référençant la balise OBJE.FILE a.jpg (l.2)
        Suppression de l'enregistrement : SOUR.OBJE 1 OBJE @O1@ (l.6)
        Ajout de la balise SOUR.WWW http://a.fr/1 référençant la balise OBJE.FILE a.jpg (l.2)
        Suppression de l'entrée : SOUR.OBJE.TITL.CONC 3 CONC suite (l.12)
        Suppression de l'entrée : SOUR.OBJE.NOTE 2 NOTE Verso (l.13)
        Suppression de l'enregistrement : SOUR.OBJE 1 OBJE @O1@ (l.10)
        Suppression de l'entrée : OBJE.FILE 1 FILE media/a.jpg (l.2)
        Suppression de l'entrée : OBJE.FILE.FORM.TYPE 3 TYPE photo (l.4)
        Suppression de l'enregistrement : OBJE 0 @O1@ OBJE (l.1)
        Ajout de 2 balises SOUR.WWW
        Sppression de 1 enregistrements OBJE
        )"_s);
    linkRow(u"two files of one record"_s, u"sour evt del"_s,
            {u"a.jpg,http://a.fr/1"_s, u"b.jpg,http://b.fr/2"_s}, uR"(
        - 0 @O1@ OBJE
        - 1 FILE media/a.jpg
        - 1 FILE media/b.jpg
        0 @S1@ SOUR
        - 1 OBJE @O1@
        + 1 WWW http://a.fr/1
        + 1 WWW http://b.fr/2
        )"_s,
            uR"(
        Ajout de la balise SOUR.WWW http://a.fr/1 référençant la balise OBJE.FILE a.jpg (l.2)
        Suppression de l'enregistrement : SOUR.OBJE 1 OBJE @O1@ (l.5)
        Suppression de l'entrée : OBJE.FILE 1 FILE media/a.jpg (l.2)
        Suppression de l'entrée : OBJE.FILE 1 FILE media/b.jpg (l.3)
        Suppression de l'enregistrement : OBJE 0 @O1@ OBJE (l.1)
        Ajout de la balise SOUR.WWW http://b.fr/2 référençant la balise OBJE.FILE b.jpg (l.3)
        Ajout de 2 balises SOUR.WWW
        Sppression de 1 enregistrements OBJE
        )"_s);

    linkRow(u"a citation below a deleted event"_s, u"evt"_s, OneLink, uR"(
        0 @O1@ OBJE
        1 FILE media/a.jpg
        0 @S1@ SOUR
        1 OBJE @O1@
        0 @I1@ INDI
        ~ 1 BIRT
        2 SOUR @S1@
        + 2 NOTE Source : http://a.fr/1
        )"_s,
            uR"(
        Ajout de la balise INDI.BIRT 2 NOTE Source : http://a.fr/1 référençant la source @S1@ (l.3)
        Ajout de 1 balises INDI.BIRT.NOTE
        )"_s);
}

void TstMedialinks::deletedEntries()
{
    compareLinks();
}

void TstMedialinks::placeOfTheAddress_data()
{
    addLinkColumns();

    // The address comes into the file as many lines below the root as there are lines of level 1.
    const auto address = [](const QString &name, const QString &source) {
        linkRow(name, u"sour evt"_s, OneLink,
                u"0 @O1@ OBJE\n1 FILE media/a.jpg\n0 @S1@ SOUR\n"_s + source, uR"(
            Ajout de la balise SOUR.WWW http://a.fr/1 référençant la balise OBJE.FILE a.jpg (l.2)
            Ajout de 1 balises SOUR.WWW
            )"_s);
    };
    address(u"address of a source without deeper lines"_s, uR"(
        1 OBJE @O1@
        1 TITL Acte
        1 AUTH Curé
        + 1 WWW http://a.fr/1
        )"_s);
    address(u"address of a source with a deeper line"_s, uR"(
        1 TITL Acte
        2 CONC suite
        + 1 WWW http://a.fr/1
        1 OBJE @O1@
        )"_s);
    address(u"address among deeper lines"_s, uR"(
        1 TITL Acte
        2 CONC suite
        + 1 WWW http://a.fr/1
        2 CONC fin
        1 OBJE @O1@
        )"_s);
    address(u"address of a source with many deeper lines"_s, uR"(
        1 TITL Acte
        1 DATA
        2 EVEN BIRT
        + 1 WWW http://a.fr/1
        3 DATE 1900
        3 PLAC Lyon
        1 OBJE @O1@
        2 TITL Page
        )"_s);
    address(u"deleted lines count for the place of the address"_s, uR"(
        ~ 1 TITL Acte
        ~ 2 CONC suite
        1 AUTH Curé
        + 1 WWW http://a.fr/1
        1 OBJE @O1@
        )"_s);
    address(u"an address that is there is not looked at"_s, uR"(
        1 WWW http://a.fr/1
        1 OBJE @O1@
        + 1 WWW http://a.fr/1
        )"_s);
    linkRow(u"two addresses of a source with deeper lines"_s, u"sour evt"_s,
            {u"a.jpg,http://a.fr/1"_s, u"a.jpg,http://a.fr/2"_s}, uR"(
        0 @O1@ OBJE
        1 FILE media/a.jpg
        0 @S1@ SOUR
        1 TITL Acte
        2 CONC suite
        + 1 WWW http://a.fr/1
        + 1 WWW http://a.fr/2
        2 CONC fin
        1 OBJE @O1@
        )"_s,
            uR"(
        Ajout de la balise SOUR.WWW http://a.fr/1 référençant la balise OBJE.FILE a.jpg (l.2)
        Ajout de la balise SOUR.WWW http://a.fr/2 référençant la balise OBJE.FILE a.jpg (l.2)
        Ajout de 2 balises SOUR.WWW
        )"_s);
}

void TstMedialinks::placeOfTheAddress()
{
    compareLinks();
}

void TstMedialinks::textOfTheAddress_data()
{
    addLinkColumns();

    linkRow(u"a blank in front of the address hides the link note"_s, u"sour evt"_s,
            {u"a.jpg, http://a.fr/1"_s}, uR"(
        0 @O1@ OBJE
        1 FILE media/a.jpg
        0 @S1@ SOUR
        1 OBJE @O1@
        + 1 WWW  http://a.fr/1
        0 @I1@ INDI
        1 BIRT
        2 SOUR @S1@
        2 SOUR @S1@
        + 2 NOTE Source :  http://a.fr/1
        + 2 NOTE Source :  http://a.fr/1
        )"_s,
            uR"(
        Ajout de la balise SOUR.WWW  http://a.fr/1 référençant la balise OBJE.FILE a.jpg (l.2)
        Ajout de la balise INDI.BIRT 2 NOTE Source :  http://a.fr/1 référençant la source @S1@ (l.3)
        Ajout de la balise INDI.BIRT 2 NOTE Source :  http://a.fr/1 référençant la source @S1@ (l.3)
        Ajout de 1 balises SOUR.WWW
        Ajout de 2 balises INDI.BIRT.NOTE
        )"_s);
    linkRow(u"an address of another kind makes no link note"_s, u"evt"_s, {u"a.jpg,ftp://a.fr/1"_s},
            uR"(
        0 @O1@ OBJE
        1 FILE media/a.jpg
        0 @S1@ SOUR
        1 OBJE @O1@
        0 @I1@ INDI
        1 BIRT
        2 SOUR @S1@
        2 SOUR @S1@
        + 2 NOTE Source : ftp://a.fr/1
        + 2 NOTE Source : ftp://a.fr/1
        )"_s,
            uR"(
        Ajout de la balise INDI.BIRT 2 NOTE Source : ftp://a.fr/1 référençant la source @S1@ (l.3)
        Ajout de la balise INDI.BIRT 2 NOTE Source : ftp://a.fr/1 référençant la source @S1@ (l.3)
        Ajout de 2 balises INDI.BIRT.NOTE
        )"_s);
    linkRow(u"blanks and percent signs in the address and in the name"_s, u"sour evt del"_s,
            {u"a %1 %2.jpg,https://a.fr/%1 %2%20é,x"_s}, uR"(
        - 0 @O1@ OBJE
        - 1 FILE media/a %1 %2.jpg
        0 @S1@ SOUR
        - 1 OBJE @O1@
        + 1 WWW https://a.fr/%1 %2%20é,x
        0 @I1@ INDI
        1 BIRT
        2 SOUR @S1@
        2 SOUR @S1@
        + 2 NOTE Source : https://a.fr/%1 %2%20é,x
        + 3 CONT https://a.fr/%1 %2%20é,x
        )"_s,
            uR"(
        Ajout de la balise SOUR.WWW https://a.fr/%1 %2%20é,x référençant la balise OBJE.FILE a %1 %2.jpg (l.2)
        Ajout de la balise INDI.BIRT 2 NOTE Source : https://a.fr/%1 %2%20é,x référençant la source @S1@ (l.3)
        Ajout de la balise INDI.BIRT.NOTE 3 CONT https://a.fr/%1 %2%20é,x référençant la source @S1@ (l.3)
        Suppression de l'enregistrement : SOUR.OBJE 1 OBJE @O1@ (l.4)
        Suppression de l'entrée : OBJE.FILE 1 FILE media/a %1 %2.jpg (l.2)
        Suppression de l'enregistrement : OBJE 0 @O1@ OBJE (l.1)
        Ajout de 1 balises SOUR.WWW
        Ajout de 1 balises INDI.BIRT.NOTE
        Ajout de 1 balises INDI.BIRT.NOTE.CONT
        Sppression de 1 enregistrements OBJE
        )"_s);
}

void TstMedialinks::textOfTheAddress()
{
    compareLinks();
}

void TstMedialinks::compareLinkNote()
{
    QFETCH(QStringList, event);
    QFETCH(QString, parent);

    Document doc;
    Rework rework(OneMedium.first(6) + event + Rest);
    QVERIFY(rework.load(&doc));
    QCOMPARE(run(&doc, OneLink, u"evt"_s), 1);
    const QString line = event.filter(u"+ "_s).constFirst().mid(2);
    QCOMPARE(
        doc.newJournal(),
        journalOf(doc, 1,
                  {u"Ajout de la balise %1 %2 référençant la source @S1@ (l.3)"_s.arg(parent, line),
                   u"Ajout de 1 balises %1.%2"_s.arg(parent, line.mid(2, 4))}));
    QCOMPARE(doc.status(), u"0 URL médias ajoutées."_s);
    rework.compare(doc);
}

void TstMedialinks::linkNotes_data()
{
    addNoteColumns();

    noteRow(u"a new note is the last child of the event"_s, u"INDI.BIRT"_s, uR"(
        2 SOUR @S1@
        3 PAGE 12
        2 DATE 1900
        2 PLAC Lyon
        3 MAP
        4 LATI N45
        + 2 NOTE Source : http://a.fr/1
        )"_s);
    noteRow(u"link note without children"_s, u"INDI.BIRT.NOTE"_s, uR"(
        2 NOTE Source : http://z.fr/1
        + 3 CONT http://a.fr/1
        2 SOUR @S1@
        )"_s);
    noteRow(u"link note to a secure address, behind the citation"_s, u"INDI.BIRT.NOTE"_s, uR"(
        2 SOUR @S1@
        2 DATE 1900
        2 NOTE Source : https://z.fr/1
        + 3 CONT http://a.fr/1
        2 PLAC Lyon
        )"_s);
    noteRow(u"link note with the same address"_s, u"INDI.BIRT.NOTE"_s, uR"(
        2 SOUR @S1@
        2 NOTE Source : http://a.fr/1
        + 3 CONT http://a.fr/1
        )"_s);
    noteRow(u"how the text goes on behind http does not matter"_s, u"INDI.BIRT.NOTE"_s, uR"(
        2 NOTE Source : httpx
        + 3 CONT http://a.fr/1
        2 SOUR @S1@
        )"_s);
    noteRow(u"notes with other texts and texts under other tags"_s, u"INDI.BIRT"_s, uR"(
        2 SOUR @S1@
        2 NOTE Source : ftp://z.fr/1
        2 NOTE Source : HTTP://z.fr/1
        2 NOTE source : http://z.fr/1
        2 NOTE Source: http://z.fr/1
        2 NOTE Source :  http://z.fr/1
        2 NOTE  Source : http://z.fr/1
        2 NOTE Vue, Source : http://z.fr/1
        2 NOTE Source : htt
        2 NOTE http://z.fr/1
        2 NOTE
        3 CONT Source : http://z.fr/1
        2 NOTES Source : http://z.fr/1
        2 _NOTE Source : http://z.fr/1
        2 TEXT Source : http://z.fr/1
        2 note Source : http://z.fr/1
        + 2 NOTE Source : http://a.fr/1
        )"_s);
    noteRow(u"link notes that are not children of the event"_s, u"INDI.BIRT"_s, uR"(
        2 SOUR @S1@
        3 NOTE Source : http://z.fr/1
        + 2 NOTE Source : http://a.fr/1
        1 NOTE Source : http://z.fr/1
        1 DEAT
        2 NOTE Source : http://z.fr/1
        )"_s);
}

void TstMedialinks::linkNotes()
{
    compareLinkNote();
}

void TstMedialinks::placeInALinkNote_data()
{
    addNoteColumns();

    noteRow(u"behind the last continuation"_s, u"INDI.BIRT.NOTE"_s, uR"(
        2 NOTE Source : http://z.fr/1
        3 CONT http://z.fr/2
        3 CONT suite
        + 3 CONT http://a.fr/1
        2 SOUR @S1@
        )"_s);
    noteRow(u"between the last continuation and what follows it"_s, u"INDI.BIRT.NOTE"_s, uR"(
        2 NOTE Source : http://z.fr/1
        3 CONC /suite
        3 CONT http://z.fr/2
        + 3 CONT http://a.fr/1
        3 CONC /suite
        3 SOUR @S2@
        2 SOUR @S1@
        )"_s);
    noteRow(u"behind the last continuation, whatever stands before it"_s, u"INDI.BIRT.NOTE"_s, uR"(
        2 NOTE Source : http://z.fr/1
        3 CONT http://z.fr/2
        3 CONC /suite
        3 SOUR @S2@
        4 PAGE 3
        3 CONT http://z.fr/3
        4 CONC /suite
        4 CONT suite
        + 3 CONT http://a.fr/1
        2 SOUR @S1@
        )"_s);
    noteRow(u"in front of all children if none is a continuation"_s, u"INDI.BIRT.NOTE"_s, uR"(
        2 NOTE Source : http://z.fr/1
        + 3 CONT http://a.fr/1
        3 CONC /suite
        4 CONT suite
        3 _CONT suite
        3 CONTS suite
        3 cont suite
        2 SOUR @S1@
        )"_s);
    noteRow(u"a deleted continuation decides as well"_s, u"INDI.BIRT.NOTE"_s, uR"(
        2 NOTE Source : http://z.fr/1
        3 CONT http://z.fr/2
        3 CONC /suite
        ~ 3 CONT http://z.fr/3
        + 3 CONT http://a.fr/1
        3 CONC /suite
        2 SOUR @S1@
        )"_s);
    noteRow(u"a deleted link note takes the link"_s, u"INDI.BIRT.NOTE"_s, uR"(
        ~ 2 NOTE Source : http://z.fr/1
        ~ 3 CONT http://z.fr/2
        + 3 CONT http://a.fr/1
        2 SOUR @S1@
        )"_s);
}

void TstMedialinks::placeInALinkNote()
{
    compareLinkNote();
}

/// A replacement can give a line within a record the form of a source. It begins no record.
void TstMedialinks::noRecordWithinARecord()
{
    const QStringList lines{u"0 @O1@ OBJE"_s, u"1 FILE media/a.jpg"_s, u"0 @I1@ INDI"_s,
                            u"1 @S1@ SOUR"_s, u"2 OBJE @O1@"_s,        u"1 BIRT"_s,
                            u"2 SOUR @S1@"_s};
    Document doc;
    QVERIFY(doc.load(lines));
    doc.entry(u"1 @S1@ SOUR"_s)->setText(0, u"0"_s);
    doc.entry(u"2 OBJE @O1@"_s)->setText(0, u"1"_s);
    QCOMPARE(run(&doc, OneLink, u"sour evt del"_s), 0);
    QCOMPARE(doc.lines().mid(3),
             (QStringList{u"0 @S1@ SOUR"_s, u"1 OBJE @O1@"_s, u"1 BIRT"_s, u"2 SOUR @S1@"_s}));
}

/// More lines than between two refreshes; the first and the last CONT of the note frame the others.
void TstMedialinks::manyLinksInOneNote()
{
    constexpr int Count = 250;
    QStringList csv;
    QStringList added{u"+ 2 NOTE Source : http://a.fr/0"_s};
    for (int i = 0; i < Count; ++i) {
        csv += u"a.jpg,http://a.fr/%1"_s.arg(i);
        if (i > 0)
            added += u"+ 3 CONT http://a.fr/%1"_s.arg(i);
    }
    Rework rework(OneMedium + added + Rest);
    Document doc;
    QVERIFY(rework.load(&doc));
    QCOMPARE(run(&doc, csv, u"evt"_s), Count);
    rework.compare(doc);
    QCOMPARE(doc.journal().last(),
             u"INFO : Ajout de %1 balises INDI.BIRT.NOTE.CONT"_s.arg(Count - 1));
}

/// A citation below a link note makes an event of it: the note that it gets is the next link note
/// for the event above, which has been given a link already.
void TstMedialinks::noteThatIsAnEventToo()
{
    Document doc;
    QVERIFY(doc.load({u"0 @O1@ OBJE"_s, u"1 FILE media/a.jpg"_s, u"0 @S1@ SOUR"_s, u"1 OBJE @O1@"_s,
                      u"0 @I1@ INDI"_s, u"1 NAME Jean /DUPONT/"_s, u"1 SOUR @S1@"_s,
                      u"1 NOTE Source : http://z.fr/1"_s, u"2 SOUR @S1@"_s,
                      u"2 CONT http://z.fr/2"_s}));
    // Now the record itself is the event of a citation.
    QCOMPARE(doc.gedcom.searchAndReplace(u"1"_s, u"2"_s, u"INDI.SOUR"_s, true, false), 1);
    QCOMPARE(run(&doc, {u"a.jpg,http://a.fr/1"_s, u"a.jpg,http://a.fr/2"_s}, u"evt"_s), 4);
    QCOMPARE(doc.lines().mid(6),
             (QStringList{u"2 SOUR @S1@"_s, u"1 NOTE Source : http://z.fr/1"_s, u"2 SOUR @S1@"_s,
                          u"2 CONT http://z.fr/2"_s, u"2 CONT http://a.fr/1"_s,
                          u"2 NOTE Source : http://a.fr/1"_s, u"3 CONT http://a.fr/2"_s,
                          u"3 CONT http://a.fr/2"_s}));
}

void TstMedialinks::severalLinkNotes_data()
{
    addNoteColumns();

    noteRow(u"a second link note is not reached"_s, u"INDI.BIRT.NOTE"_s, uR"(
        2 SOUR @S1@
        2 NOTE Source : http://z.fr/1
        + 3 CONT http://a.fr/1
        2 NOTE Source : http://z.fr/2
        3 CONT http://z.fr/3
        )"_s);
    noteRow(u"nor is one behind a deleted link note"_s, u"INDI.BIRT.NOTE"_s, uR"(
        ~ 2 NOTE Source : http://z.fr/1
        + 3 CONT http://a.fr/1
        2 NOTE Source : http://z.fr/2
        2 SOUR @S1@
        )"_s);
    noteRow(u"a link note behind another note"_s, u"INDI.BIRT.NOTE"_s, uR"(
        2 NOTE Vue
        3 CONT suite
        2 NOTE Source : http://z.fr/1
        + 3 CONT http://a.fr/1
        2 SOUR @S1@
        )"_s);

    // The search goes on among the children of the note, from the index after the note's own.
    noteRow(u"a link note below the link note"_s, u"INDI.BIRT.NOTE.NOTE"_s, uR"(
        2 NOTE Source : http://z.fr/1
        3 CONT http://z.fr/2
        3 NOTE Source : http://z.fr/3
        + 4 CONT http://a.fr/1
        3 CONT http://z.fr/4
        2 SOUR @S1@
        )"_s);
    noteRow(u"a link note below, with children"_s, u"INDI.BIRT.NOTE.NOTE"_s, uR"(
        2 NOTE Source : http://z.fr/1
        3 CONC /suite
        ~ 3 NOTE Source : http://z.fr/3
        4 CONT http://z.fr/4
        + 4 CONT http://a.fr/1
        4 CONC /suite
        2 SOUR @S1@
        )"_s);
    noteRow(u"a link note below, at an index already passed"_s, u"INDI.BIRT.NOTE"_s, uR"(
        2 NOTE Source : http://z.fr/1
        + 3 CONT http://a.fr/1
        3 NOTE Source : http://z.fr/3
        3 CONC /suite
        2 SOUR @S1@
        )"_s);
    noteRow(u"a link note below a second child, at its own index"_s, u"INDI.BIRT.NOTE"_s, uR"(
        2 SOUR @S1@
        2 NOTE Source : http://z.fr/1
        3 CONT http://z.fr/2
        + 3 CONT http://a.fr/1
        3 NOTE Source : http://z.fr/3
        )"_s);
    noteRow(u"a link note below a second child, behind its index"_s, u"INDI.BIRT.NOTE.NOTE"_s, uR"(
        2 SOUR @S1@
        2 NOTE Source : http://z.fr/1
        3 CONT http://z.fr/2
        3 NOTE Vue
        3 NOTE Source : http://z.fr/3
        + 4 CONT http://a.fr/1
        )"_s);
    noteRow(u"three link notes, each below the other"_s, u"INDI.BIRT.NOTE.NOTE.NOTE"_s, uR"(
        2 NOTE Source : http://z.fr/1
        3 CONT http://z.fr/2
        3 NOTE Source : http://z.fr/3
        4 CONT http://z.fr/4
        4 NOTE Source : http://z.fr/5
        4 NOTE Source : http://z.fr/6
        + 5 CONT http://a.fr/1
        2 SOUR @S1@
        )"_s);
    noteRow(u"another note below the link note"_s, u"INDI.BIRT.NOTE"_s, uR"(
        2 NOTE Source : http://z.fr/1
        + 3 CONT http://a.fr/1
        3 CONC /suite
        3 NOTE Vue
        4 CONT suite
        2 SOUR @S1@
        )"_s);
}

void TstMedialinks::severalLinkNotes()
{
    compareLinkNote();
}

void TstMedialinks::flags_data()
{
    QTest::addColumn<QString>("flags");

    for (int i = 0; i < 16; ++i) {
        QStringList flags;
        const QStringList names{u"sour"_s, u"evt"_s, u"del"_s, u"extract"_s};
        for (int j = 0; j < 4; ++j) {
            if (i & (1 << j))
                flags += names.at(j);
        }
        const QString name = flags.isEmpty() ? u"none"_s : flags.join(u", "_s);
        QTest::newRow(qPrintable(name)) << flags.join(u' ');
    }
}

void TstMedialinks::flags()
{
    QFETCH(QString, flags);

    const bool sour = flags.contains("sour"_L1);
    const bool evt = flags.contains("evt"_L1);
    const bool gone = flags.contains("del"_L1) && (sour || evt);
    const QString mark = gone ? u"- "_s : QString();

    QStringList changes{mark + "0 @O1@ OBJE"_L1, mark + "1 FILE media/a.jpg"_L1, u"0 @S1@ SOUR"_s,
                        mark + "1 OBJE @O1@"_L1};
    if (sour)
        changes += u"+ 1 WWW http://a.fr/1"_s;
    changes += {u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"2 SOUR @S1@"_s};
    if (evt)
        changes += u"+ 2 NOTE Source : http://a.fr/1"_s;

    Document doc;
    Rework rework(changes + Rest);
    QVERIFY(rework.load(&doc));
    const QString medias = doc.folder() + "/medias"_L1;
    const QString local = doc.folder() + "/local"_L1;
    makeFiles(medias, {u"a.jpg"_s, u"b.jpg"_s}, u"image"_s);
    makeFiles(local, {}, {});
    QCOMPARE(run(&doc, OneLink, flags, medias, local), (sour ? 1 : 0) + (evt ? 1 : 0));

    QStringList journal;
    if (sour)
        journal += u"Ajout de la balise SOUR.WWW http://a.fr/1 référençant la balise OBJE.FILE "
                   u"a.jpg (l.2)"_s;
    if (evt)
        journal += u"Ajout de la balise INDI.BIRT 2 NOTE Source : http://a.fr/1 référençant la "
                   u"source @S1@ (l.3)"_s;
    if (gone)
        journal += {u"Suppression de l'enregistrement : SOUR.OBJE 1 OBJE @O1@ (l.4)"_s,
                    u"Suppression de l'entrée : OBJE.FILE 1 FILE media/a.jpg (l.2)"_s,
                    u"Suppression de l'enregistrement : OBJE 0 @O1@ OBJE (l.1)"_s};
    if (flags.contains("extract"_L1))
        journal += (gone ? u"Copie de 1 objets média dans le dossier "_s
                         : u"Copie de 2 objets média dans le dossier "_s)
                 + local;
    if (sour)
        journal += u"Ajout de 1 balises SOUR.WWW"_s;
    if (evt)
        journal += u"Ajout de 1 balises INDI.BIRT.NOTE"_s;
    if (flags.contains("del"_L1))
        journal += gone ? u"Sppression de 1 enregistrements OBJE"_s
                        : u"Sppression de 0 enregistrements OBJE"_s;
    QCOMPARE(doc.newJournal(), journalOf(doc, 1, journal));
    QCOMPARE(doc.status(), sour ? u"1 URL médias ajoutées."_s : u"0 URL médias ajoutées."_s);

    QStringList copied;
    if (flags.contains("extract"_L1))
        copied = gone ? QStringList{u"b.jpg: image b.jpg"_s}
                      : QStringList{u"a.jpg: image a.jpg"_s, u"b.jpg: image b.jpg"_s};
    QCOMPARE(filesIn(local), copied);
    QCOMPARE(filesIn(medias),
             QStringList({u"a.jpg: image a.jpg"_s, u"b.jpg: image b.jpg"_s})); // copied, not moved
    rework.compare(doc);
}

void TstMedialinks::newEntries()
{
    Document doc;
    QVERIFY(doc.load(OneMedium + QStringList{u"2 SOUR @S1@"_s}));
    QCOMPARE(run(&doc, {u"a.jpg,http://a.fr/une photo"_s}, u"sour evt"_s), 3);

    TwItem *www = doc.entry(u"1 WWW http://a.fr/une photo"_s);
    TwItem *note = doc.entry(u"2 NOTE Source : http://a.fr/une photo"_s);
    TwItem *cont = doc.entry(u"3 CONT http://a.fr/une photo"_s);
    QVERIFY(www && note && cont);
    QCOMPARE(www->getTwiValuesList(), QStringList({u"1"_s, u"WWW"_s, u"http://a.fr/une photo"_s}));
    QCOMPARE(note->getTwiValuesList(),
             QStringList({u"2"_s, u"NOTE"_s, u"Source : http://a.fr/une photo"_s}));
    QCOMPARE(cont->getTwiValuesList(),
             QStringList({u"3"_s, u"CONT"_s, u"http://a.fr/une photo"_s}));
    QCOMPARE(www->getParent(), doc.entry(u"0 @S1@ SOUR"_s));
    QCOMPARE(note->getParent(), doc.entry(u"1 BIRT"_s));
    QCOMPARE(cont->getParent(), note);
    QCOMPARE(www->getThisTwiIndexParent(www), 1);
    QCOMPARE(note->getThisTwiIndexParent(note), 2);
    QCOMPARE(cont->getThisTwiIndexParent(cont), 0);
    for (TwItem *twi : {www, note, cont}) {
        QCOMPARE(twi->getNumLineGedFile(), u"-1"_s);
        QCOMPARE(twi->toolTip(0), u"ligne -1"_s);
        QCOMPARE(twi->toolTip(1), u"ligne -1"_s);
        QVERIFY(!twi->isToDelete());
        QVERIFY(!twi->isHidden());
    }
}

void TstMedialinks::levels()
{
    // The level is one more than the parent's current one.
    const auto linked = [](const QString &line, const QString &level) -> QStringList {
        Document doc;
        if (!doc.load(OneMedium.first(6)
                      + QStringList{u"2 NOTE Source : http://z.fr/1"_s, u"2 SOUR @S1@"_s,
                                    u"1 DEAT"_s, u"2 SOUR @S1@"_s}))
            return {};
        doc.entry(line)->setText(0, level);
        run(&doc, OneLink, u"evt"_s);
        return doc.lines().mid(5) + doc.newJournal().last(4);
    };
    QCOMPARE(linked(u"1 DEAT"_s, u"5"_s), linesOf(uR"(
        1 BIRT
        2 NOTE Source : http://z.fr/1
        3 CONT http://a.fr/1
        2 SOUR @S1@
        5 DEAT
        2 SOUR @S1@
        6 NOTE Source : http://a.fr/1
        INFO : Ajout de la balise INDI.BIRT.NOTE 3 CONT http://a.fr/1 référençant la source @S1@ (l.3)
        INFO : Ajout de la balise INDI.DEAT 6 NOTE Source : http://a.fr/1 référençant la source @S1@ (l.3)
        INFO : Ajout de 1 balises INDI.BIRT.NOTE.CONT
        INFO : Ajout de 1 balises INDI.DEAT.NOTE
        )"_s));
    QCOMPARE(linked(u"1 DEAT"_s, u"x"_s).mid(4, 3),
             QStringList({u"x DEAT"_s, u"2 SOUR @S1@"_s, u"1 NOTE Source : http://a.fr/1"_s}));
    // Only the first character of a line is a level.
    const QStringList ninth = linesOf(uR"(
        1 BIRT
        9 NOTE Source : http://z.fr/1
        1  CONT http://a.fr/1
        2 SOUR @S1@
        1 DEAT
        2 SOUR @S1@
        2 NOTE Source : http://a.fr/1
        INFO : Ajout de la balise INDI.BIRT.NOTE 1  CONT http://a.fr/1 référençant la source @S1@ (l.3)
        INFO : Ajout de la balise INDI.DEAT 2 NOTE Source : http://a.fr/1 référençant la source @S1@ (l.3)
        )"_s);
    const QStringList summaries{u"INFO : Ajout de 1 balises "_s, // the new line has no tag
                                u"INFO : Ajout de 1 balises INDI.DEAT.NOTE"_s};
    QCOMPARE(linked(u"2 NOTE Source : http://z.fr/1"_s, u"9"_s), ninth + summaries);
}

void TstMedialinks::levelOfACitation()
{
    // A citation that only looks like one of an event is at the top of its record. The note comes
    // into the file like the address of a source, until something is inserted further down.
    Document doc;
    QVERIFY(doc.load(OneMedium.first(4)
                     + QStringList{u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"2 DATE 1900"_s,
                                   u"2 PLAC Lyon"_s, u"1 SOUR @S1@"_s, u"1 DEAT"_s,
                                   u"2 SOUR @S2@"_s, u"0 @S2@ SOUR"_s, u"1 OBJE @O1@"_s}));
    doc.entry(u"1 SOUR @S1@"_s)->setText(0, u"2"_s);
    const auto person = [&doc] { return doc.entry(u"0 @I1@ INDI"_s)->getGedEntryList(); };

    TwItem *other = doc.entry(u"2 SOUR @S2@"_s);
    other->setText(2, u"@S3@"_s);
    QCOMPARE(run(&doc, OneLink, u"evt"_s), 1);
    QCOMPARE(person(), QStringList({u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"2 DATE 1900"_s,
                                    u"2 PLAC Lyon"_s, u"1 NOTE Source : http://a.fr/1"_s,
                                    u"2 SOUR @S1@"_s, u"1 DEAT"_s, u"2 SOUR @S3@"_s}));

    other->setText(2, u"@S2@"_s);
    QCOMPARE(run(&doc, {u"a.jpg,http://a.fr/2"_s}, u"evt"_s), 2);
    QCOMPARE(person(),
             QStringList({u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"2 DATE 1900"_s, u"2 PLAC Lyon"_s,
                          u"2 SOUR @S1@"_s, u"1 DEAT"_s, u"2 SOUR @S2@"_s,
                          u"2 NOTE Source : http://a.fr/2"_s, u"1 NOTE Source : http://a.fr/1"_s,
                          u"2 CONT http://a.fr/2"_s}));
}

void TstMedialinks::copying_data()
{
    QTest::addColumn<QStringList>("medias");
    QTest::addColumn<QStringList>("local"); // exists before the run
    QTest::addColumn<QStringList>("csv");
    QTest::addColumn<QString>("flags");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<int>("count"); // 0 if there is no journal line

    const QString all = u"sour evt del extract"_s;
    const QStringList none;
    const QStringList a{u"a.jpg,http://a.fr/1"_s};
    const QStringList twice{u"a.jpg,http://a.fr/1"_s, u"a.jpg,http://a.fr/2"_s};
    QTest::newRow("what has no link")
        << QStringList{u"a.jpg"_s, u"b.jpg"_s, u"a.jpg.bak"_s, u"xa.jpg"_s} << none << a << all
        << QStringList{u"a.jpg.bak: image a.jpg.bak"_s, u"b.jpg: image b.jpg"_s,
                       u"xa.jpg: image xa.jpg"_s}
        << 3;
    QTest::newRow("a folder and an existing file count, but are not copied")
        << QStringList{u"a.jpg"_s, u"b.jpg"_s, u"c.jpg"_s, u"sous/"_s}
        << QStringList{u"c.jpg"_s, u"d.jpg"_s} << a << all
        << QStringList{u"b.jpg: image b.jpg"_s, u"c.jpg: ancien c.jpg"_s, u"d.jpg: ancien d.jpg"_s}
        << 3;
    QTest::newRow("nothing but a folder")
        << QStringList{u"sous/"_s} << none << a << all << none << 1;
    QTest::newRow("nothing but a linked file")
        << QStringList{u"a.jpg"_s} << none << a << all << none << 0;
    QTest::newRow("an empty folder") << none << none << a << all << none << 0;
    QTest::newRow("files whose name begins with a dot are not listed")
        << QStringList{u".cache"_s, u"b.jpg"_s} << none << a << all
        << QStringList{u"b.jpg: image b.jpg"_s} << 1;
    QTest::newRow("the case counts")
        << QStringList{u"A.jpg"_s, u"b.jpg"_s} << none << a << all
        << QStringList{u"A.jpg: image A.jpg"_s, u"b.jpg: image b.jpg"_s} << 2;
    QTest::newRow("a linked file that is not there")
        << QStringList{u"b.jpg"_s} << none << a << all << QStringList{u"b.jpg: image b.jpg"_s} << 1;
    QTest::newRow("two lines for one file") << QStringList{u"a.jpg"_s, u"b.jpg"_s} << none << twice
                                            << all << QStringList{u"b.jpg: image b.jpg"_s} << 1;
    QTest::newRow("two linked files")
        << QStringList{u"a.jpg"_s, u"b.jpg"_s, u"c.jpg"_s} << none
        << QStringList{u"b.jpg,http://b.fr/1"_s, u"a.jpg,http://a.fr/1"_s} << all
        << QStringList{u"c.jpg: image c.jpg"_s} << 1;
    // The first line deletes the record; its other file still leaves the list.
    QTest::newRow("two files of one record, both linked")
        << QStringList{u"b.jpg"_s, u"b2.jpg"_s, u"c.jpg"_s} << none
        << QStringList{u"b.jpg,http://b.fr/1"_s, u"b2.jpg,http://b.fr/2"_s} << all
        << QStringList{u"c.jpg: image c.jpg"_s} << 1;
    QTest::newRow("two files of one record, one linked")
        << QStringList{u"b.jpg"_s, u"b2.jpg"_s, u"c.jpg"_s} << none
        << QStringList{u"b.jpg,http://b.fr/1"_s} << all
        << QStringList{u"b2.jpg: image b2.jpg"_s, u"c.jpg: image c.jpg"_s} << 2;
    QTest::newRow("a file that no source shows")
        << QStringList{u"a.jpg"_s, u"c.jpg"_s} << none << QStringList{u"c.jpg,http://c.fr/1"_s}
        << all << QStringList{u"a.jpg: image a.jpg"_s, u"c.jpg: image c.jpg"_s} << 2;
    QTest::newRow("a file that no record holds")
        << QStringList{u"z.jpg"_s} << none << QStringList{u"z.jpg,http://z.fr/1"_s} << all
        << QStringList{u"z.jpg: image z.jpg"_s} << 1;
    QTest::newRow("links in events alone")
        << QStringList{u"a.jpg"_s, u"b.jpg"_s} << none
        << QStringList{u"a.jpg,http://a.fr/1"_s, u"b.jpg,http://b.fr/1"_s} << u"evt del extract"_s
        << QStringList{u"b.jpg: image b.jpg"_s} << 1;
    QTest::newRow("records stay: all is copied")
        << QStringList{u"a.jpg"_s, u"b.jpg"_s} << none << twice << u"sour evt extract"_s
        << QStringList{u"a.jpg: image a.jpg"_s, u"b.jpg: image b.jpg"_s} << 2;
    QTest::newRow("no links wanted: all is copied")
        << QStringList{u"a.jpg"_s, u"b.jpg"_s} << none << a << u"del extract"_s
        << QStringList{u"a.jpg: image a.jpg"_s, u"b.jpg: image b.jpg"_s} << 2;
    QTest::newRow("no correspondences: all is copied")
        << QStringList{u"a.jpg"_s, u"b.jpg"_s} << none << none << all
        << QStringList{u"a.jpg: image a.jpg"_s, u"b.jpg: image b.jpg"_s} << 2;
    QTest::newRow("copying not wanted")
        << QStringList{u"a.jpg"_s, u"b.jpg"_s} << none << a << u"sour evt del"_s << none << 0;
}

void TstMedialinks::copying()
{
    QFETCH(QStringList, medias);
    QFETCH(QStringList, local);
    QFETCH(QStringList, csv);
    QFETCH(QString, flags);
    QFETCH(QStringList, expected);
    QFETCH(int, count);

    // The source with "b.jpg" is not cited, and "c.jpg" is in no source.
    Document doc;
    QVERIFY(doc.load(OneMedium
                     + QStringList{u"0 @O2@ OBJE"_s, u"1 FILE media/b.jpg"_s,
                                   u"1 FILE media/b2.jpg"_s, u"0 @S2@ SOUR"_s, u"1 OBJE @O2@"_s,
                                   u"0 @O3@ OBJE"_s, u"1 FILE media/c.jpg"_s}));
    const QString mediasSource = doc.folder() + u"/médias d'origine"_s;
    const QString mediasDest = doc.folder() + u"/médias %1"_s;
    makeFiles(mediasSource, medias, u"image"_s);
    makeFiles(mediasDest, local, u"ancien"_s);
    doc.newJournal();
    run(&doc, csv, flags, mediasSource, mediasDest);
    QCOMPARE(filesIn(mediasDest), expected);
    QStringList journal;
    if (count > 0)
        journal += u"INFO : Copie de %1 objets média dans le dossier "_s.arg(count) + mediasDest;
    QCOMPARE(doc.newJournal().filter(u"Copie"_s), journal);
}

void TstMedialinks::orderOfTheSummaries()
{
    Document doc;
    QVERIFY(doc.load(OneMedium + QStringList{u"2 SOUR @S1@"_s}));
    const QString local = doc.folder() + "/local"_L1;
    makeFiles(doc.folder() + "/medias"_L1, {u"a.jpg"_s, u"b.jpg"_s}, u"image"_s);
    makeFiles(local, {}, {});
    Told told(&doc);
    run(&doc, OneLink, u"sour evt del extract"_s, doc.folder() + "/medias"_L1, local);
    QCOMPARE(
        told.take(),
        QStringList{u"status: Ajout des URL médias en cours..."_s}
            + journalOf(
                doc, 1,
                {u"Ajout de la balise SOUR.WWW http://a.fr/1 référençant la balise OBJE.FILE a.jpg "
                 u"(l.2)"_s,
                 u"Ajout de la balise INDI.BIRT 2 NOTE Source : http://a.fr/1 référençant la "
                 u"source @S1@ (l.3)"_s,
                 u"Ajout de la balise INDI.BIRT.NOTE 3 CONT http://a.fr/1 référençant la source "
                 u"@S1@ (l.3)"_s,
                 u"Suppression de l'enregistrement : SOUR.OBJE 1 OBJE @O1@ (l.4)"_s,
                 u"Suppression de l'entrée : OBJE.FILE 1 FILE media/a.jpg (l.2)"_s,
                 u"Suppression de l'enregistrement : OBJE 0 @O1@ OBJE (l.1)"_s,
                 u"Copie de 1 objets média dans le dossier "_s + local,
                 u"Ajout de 1 balises SOUR.WWW"_s, u"Ajout de 1 balises INDI.BIRT.NOTE"_s,
                 u"Ajout de 1 balises INDI.BIRT.NOTE.CONT"_s,
                 u"Sppression de 1 enregistrements OBJE"_s})
            + QStringList{u"status: 1 URL médias ajoutées."_s});
}

void TstMedialinks::secondRun()
{
    Document doc;
    QVERIFY(doc.load(OneMedium));
    QCOMPARE(run(&doc, OneLink, u"sour evt"_s), 2);
    doc.newJournal();

    // The run does not check what exists already.
    QCOMPARE(run(&doc, OneLink, u"sour evt del"_s), 2);
    QCOMPARE(doc.lines(),
             QStringList({u"0 @S1@ SOUR"_s, u"1 WWW http://a.fr/1"_s, u"1 WWW http://a.fr/1"_s,
                          u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"2 SOUR @S1@"_s,
                          u"2 NOTE Source : http://a.fr/1"_s, u"3 CONT http://a.fr/1"_s}));
    QCOMPARE(doc.newJournal(), journalOf(doc, 1, linesOf(uR"(
        Ajout de la balise SOUR.WWW http://a.fr/1 référençant la balise OBJE.FILE a.jpg (l.2)
        Ajout de la balise INDI.BIRT.NOTE 3 CONT http://a.fr/1 référençant la source @S1@ (l.3)
        Suppression de l'enregistrement : SOUR.OBJE 1 OBJE @O1@ (l.4)
        Suppression de l'entrée : OBJE.FILE 1 FILE media/a.jpg (l.2)
        Suppression de l'enregistrement : OBJE 0 @O1@ OBJE (l.1)
        Ajout de 1 balises SOUR.WWW
        Ajout de 1 balises INDI.BIRT.NOTE.CONT
        Sppression de 1 enregistrements OBJE
        )"_s)));

    // A new run no longer finds what the previous one deleted.
    QCOMPARE(run(&doc, OneLink, u"sour evt del"_s), 0);
    QCOMPARE(doc.newJournal(),
             journalOf(doc, 1,
                       {u"ERROR : a.jpg référençant http://a.fr/1 non détecté dans {}"_s,
                        u"Sppression de 0 enregistrements OBJE"_s}));
    QCOMPARE(doc.status(), u"0 URL médias ajoutées."_s);
}

void TstMedialinks::saved()
{
    const QString title(300, u'x');
    Document doc;
    QVERIFY(doc.load({u"0 @O1@ OBJE"_s, u"1 FILE media/a.jpg"_s, u"0 @S1@ SOUR"_s, u"1 TITL Acte"_s,
                      u"2 DATE 1900"_s, u"1 OBJE @O1@"_s, u"2 TITL Page"_s, u"1 AUTH Curé"_s,
                      u"0 @S2@ SOUR"_s, "1 TITL "_L1 + title, u"2 DATE 1900"_s, u"1 OBJE @O1@"_s,
                      u"1 AUTH Curé"_s, u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"2 SOUR @S1@"_s,
                      u"2 NOTE Source : http://z.fr/1"_s, u"3 SOUR @S9@"_s}));
    const QByteArray before = readBytes(doc.path());
    QCOMPARE(run(&doc, {u"a.jpg,http://a.fr/été"_s}, u"sour evt del"_s), 3);
    QCOMPARE(readBytes(doc.path()), before);

    // Cutting a title inserts below a line of the source, whose lines then follow the tree.
    QVERIFY(doc.gedcom.writeGedFile(doc.path()));
    QCOMPARE(readLines(doc.path()),
             QStringList({u"0 @S1@ SOUR"_s, u"1 TITL Acte"_s, u"2 DATE 1900"_s,
                          u"1 WWW http://a.fr/été"_s, u"1 AUTH Curé"_s, u"0 @S2@ SOUR"_s,
                          "1 TITL "_L1 + title.first(248), "2 CONC "_L1 + title.first(52),
                          u"2 DATE 1900"_s, u"1 AUTH Curé"_s, u"1 WWW http://a.fr/été"_s,
                          u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"2 SOUR @S1@"_s,
                          u"2 NOTE Source : http://z.fr/1"_s, u"3 CONT http://a.fr/été"_s,
                          u"3 SOUR @S9@"_s, u"0 TRLR"_s}));
}

void TstMedialinks::longRun()
{
    constexpr int Count = 260;
    Document doc;
    Rework rework(manyMedia(Count) + Rest);
    QVERIFY(rework.load(&doc));

    QStringList expected{u"status: Ajout des URL médias en cours..."_s};
    expected += journalOf(doc, Count, {});
    for (int i = 1; i <= Count; ++i) {
        expected += journalOf(doc, Count, manyTold(i, Count)).mid(2);
        if (i % 100 == 0)
            expected += {u"bar: %1 of 260"_s.arg(i), u"events"_s};
    }
    expected +=
        {u"INFO : Ajout de 260 balises SOUR.WWW"_s, u"INFO : Ajout de 260 balises INDI.BIRT.NOTE"_s,
         u"INFO : Sppression de 260 enregistrements OBJE"_s, u"status: 260 URL médias ajoutées."_s};
    Told told(&doc);
    QCOMPARE(run(&doc, manyLinks(Count), u"sour evt del"_s), 2 * Count);
    QCOMPARE(told.take(), expected);
    QVERIFY(!doc.progress.isVisible());
    rework.compare(doc);
}

void TstMedialinks::progress_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<QStringList>("expected");

    const auto row = [](int size, const QStringList &expected) {
        QTest::addRow("%d lines", size) << size << expected;
    };
    row(0, {});
    row(99, {});
    row(100, {u"100 of 100"_s, u"events at 100"_s});
    row(101, {u"100 of 101"_s, u"events at 100"_s});
    row(255, {u"100 of 255"_s, u"events at 100"_s, u"200 of 255"_s, u"events at 200"_s});
}

void TstMedialinks::progress()
{
    QFETCH(int, size);
    QFETCH(QStringList, expected);

    // Lines that fail count for the bar as well.
    const QStringList kinds{u"a.jpg,http://a.fr/1"_s, u"b.jpg,http://b.fr/1"_s, u",http://a.fr/1"_s,
                            u"c.jpg,http://c.fr/1"_s};
    QStringList csv;
    for (int i = 0; i < size; ++i)
        csv += kinds.at(i % 4);
    Document doc;
    QVERIFY(doc.load(OneMedium + QStringList{u"0 @O2@ OBJE"_s, u"1 FILE c.jpg"_s} + Rest));
    const ProgressLog log(&doc.progress);
    QCOMPARE(run(&doc, csv, u"sour evt del"_s), 2 * ((size + 3) / 4));
    QCOMPARE(log.entries(), expected);
    QCOMPARE(doc.progress.minimum(), 0);
    QCOMPARE(doc.progress.maximum(), size);
    QCOMPARE(doc.progress.value(), -1);
}

void TstMedialinks::rowsStayAsTheyWere_data()
{
    QTest::addColumn<QString>("current");
    QTest::addColumn<bool>("selected");

    const auto row = [](const char *name, const QString &current, bool selected) {
        QTest::newRow(name) << current << selected;
    };
    row("no current row", QString(), false);
    row("current person", u"0 @I20@ INDI"_s, false);
    row("selected person", u"0 @I20@ INDI"_s, true);
    row("selected row that is deleted", u"1 OBJE @O30@"_s, true);
    row("current row of a deleted record", u"1 FILE media/8.jpg"_s, false);
    row("selected row below a collapsed one", u"2 SOUR @S41@"_s, true);
    row("selected hidden row", u"0 @I5@ INDI"_s, true);
    row("current hidden row behind a new one", u"3 CONC s://z.fr/9"_s, false);
    row("selected row behind a new one", u"3 SOUR @S9@"_s, true);
    row("current row below one behind a new one", u"4 PAGE 12"_s, false);
}

void TstMedialinks::rowsStayAsTheyWere()
{
    QFETCH(QString, current);
    QFETCH(bool, selected);

    constexpr int Count = 60;
    Document doc;
    doc.tree.setFocusPolicy(Qt::NoFocus); // focus would select a current row
    // One link is inserted before other rows of a note.
    Rework rework(manyMedia(Count)
                  + QStringList{u"0 @I61@ INDI"_s, u"1 DEAT"_s, u"2 NOTE Source : http"_s,
                                u"3 CONC s://z.fr/9"_s, u"3 SOUR @S9@"_s, u"4 PAGE 12"_s,
                                u"3 DATE 1900"_s, u"2 SOUR @S30@"_s});
    QVERIFY(rework.load(&doc));
    doc.tree.expandAll();
    for (const int i : {3, 8, 41})
        doc.entry(u"0 @I%1@ INDI"_s.arg(i))->setExpanded(false);
    for (const int i : {2, 8})
        doc.entry(u"0 @O%1@ OBJE"_s.arg(i))->setExpanded(false);
    sectionNode(doc.tree, u"en-tête"_s)->setExpanded(false);
    const QStringList hidden{u"0 @I5@ INDI"_s,  u"2 SOUR @S7@"_s,  u"0 @O9@ OBJE"_s,
                             u"1 OBJE @O11@"_s, u"0 @S13@ SOUR"_s, u"3 CONC s://z.fr/9"_s};
    for (const QString &line : hidden)
        doc.entry(line)->setTwiHidden(true);
    doc.entry(u"0 @I50@ INDI"_s)->setDelete(true);
    TwItem *currentItem = current.isEmpty() ? nullptr : doc.entry(current);
    TwItem *deletedItem = doc.entry(u"0 @O25@ OBJE"_s);
    QVERIFY(deletedItem && (currentItem || current.isEmpty()));
    if (currentItem)
        doc.tree.setCurrentItem(currentItem, 1,
                                selected ? QItemSelectionModel::ClearAndSelect
                                               | QItemSelectionModel::Rows
                                         : QItemSelectionModel::NoUpdate);
    doc.tree.resize(300, 200);
    doc.tree.show();
    QVERIFY(QTest::qWaitForWindowExposed(&doc.tree));
    QCoreApplication::processEvents();
    doc.entry(u"0 @I41@ INDI"_s)->setExpanded(false); // expanded for a current row below it
    doc.tree.verticalScrollBar()->setValue(45);
    doc.tree.horizontalScrollBar()->setValue(30);
    QCOMPARE(doc.tree.verticalScrollBar()->value(), 45);
    QCOMPARE(doc.tree.horizontalScrollBar()->value(), 30);

    const auto state = [](const QTreeWidgetItem *row, bool isHidden) -> QString {
        return u"%1 %2 %3%4%5%6"_s.arg(row->text(0), row->text(1), row->text(2),
                                       isHidden ? u", hidden"_s : QString(),
                                       row->isExpanded() ? u", expanded"_s : QString(),
                                       row->isSelected() ? u", selected"_s : QString());
    };
    QHash<const QTreeWidgetItem *, QString> asBefore; // except what will be deleted
    QStringList topLevel;
    for (QTreeWidgetItemIterator it(&doc.tree); *it; ++it) {
        const QString text = (*it)->text(0) + u' ' + (*it)->text(1) + u' ' + (*it)->text(2);
        const bool gone = text.contains("OBJE"_L1) || text.startsWith("1 FILE "_L1);
        asBefore[*it] = state(*it, (*it)->isHidden() || gone);
    }
    for (int i = 0; i < doc.tree.topLevelItemCount(); ++i)
        topLevel += doc.tree.topLevelItem(i)->text(0);
    const qsizetype rows = asBefore.size();

    // The birth of the deleted person gets no link.
    QCOMPARE(run(&doc, manyLinks(Count), u"sour evt del"_s), 2 * Count);

    QStringList actual;
    QStringList expected;
    for (QTreeWidgetItemIterator it(&doc.tree); *it; ++it) {
        actual += state(*it, (*it)->isHidden());
        const bool isNew =
            static_cast<TwItem *>(*it)->toolTip(0) == "ligne -1"_L1 && (*it)->parent();
        expected += isNew ? state(*it, false) : asBefore.value(*it);
        if (isNew)
            QVERIFY(!(*it)->isExpanded() && !(*it)->isSelected());
        QVERIFY(isNew || asBefore.remove(*it));
    }
    QCOMPARE(actual, expected);
    QCOMPARE(actual.size(), rows + 2 * Count);
    QVERIFY(asBefore.isEmpty());
    QCOMPARE(
        doc.entry(u"0 @I61@ INDI"_s)->getGedEntryList().mid(2, 6),
        QStringList({u"2 NOTE Source : http"_s, u"3 CONT http://a.fr/30"_s, u"3 CONC s://z.fr/9"_s,
                     u"3 SOUR @S9@"_s, u"4 PAGE 12"_s, u"3 DATE 1900"_s}));
    QStringList topLevelAfter;
    for (int i = 0; i < doc.tree.topLevelItemCount(); ++i)
        topLevelAfter += doc.tree.topLevelItem(i)->text(0);
    QCOMPARE(topLevelAfter, topLevel);

    QCOMPARE(doc.tree.currentItem(), currentItem);
    QCOMPARE(doc.tree.currentColumn(), currentItem ? 1 : -1);
    QVERIFY(doc.tree.updatesEnabled());
    QCoreApplication::processEvents();
    QCOMPARE(doc.tree.verticalScrollBar()->value(), 45);
    QCOMPARE(doc.tree.horizontalScrollBar()->value(), 30);
    // New rows are visible where their parent is expanded; deleted rows are not.
    QVERIFY(doc.tree.visualItemRect(doc.entry(u"1 WWW http://a.fr/25"_s)).isValid());
    QVERIFY(doc.tree.visualItemRect(doc.entry(u"2 NOTE Source : http://a.fr/25"_s)).isValid());
    QVERIFY(!doc.tree.visualItemRect(doc.entry(u"2 NOTE Source : http://a.fr/41"_s)).isValid());
    QVERIFY(!doc.tree.visualItemRect(deletedItem).isValid());
}

void TstMedialinks::eventsDuringTheRun()
{
    constexpr int Count = 150;
    Document doc;
    Rework rework(manyMedia(Count));
    QVERIFY(rework.load(&doc));
    const QString medias = doc.folder() + "/medias"_L1;
    const QString local = doc.folder() + "/local"_L1;
    makeFiles(medias, {u"1.jpg"_s, u"140.jpg"_s, u"reste.jpg"_s}, u"image"_s);
    makeFiles(local, {}, {});
    TwItem *record = doc.entry(u"0 @O110@ OBJE"_s);
    TwItem *reference = doc.entry(u"1 OBJE @O115@"_s);
    TwItem *citation = doc.entry(u"2 SOUR @S120@"_s);
    TwItem *source = doc.entry(u"0 @S130@ SOUR"_s);

    QStringList before;
    QStringList linesBefore;
    QMetaObject::invokeMethod(
        this,
        [&] {
            before = doc.newJournal();
            linesBefore = doc.lines();
            record->setDelete(true);
            reference->setDelete(true);
            citation->setDelete(true);
            source->setText(1, u"sans"_s);
            const auto replace = [&doc](const QString &from, const QString &to,
                                        const QString &tag) {
                QCOMPARE(doc.gedcom.searchAndReplace(from, to, tag, true, false), 1);
            };
            replace(u"/140.jpg"_s, u"/autre.jpg"_s, u"FILE"_s);
            replace(u"@S145@"_s, u"@S146@"_s, u"INDI.BIRT.SOUR"_s);
            replace(u"@O147@"_s, u"@O148@"_s, u"SOUR.OBJE"_s);
            QVERIFY(QDir(local).removeRecursively());
        },
        Qt::QueuedConnection);
    const QStringList csv = manyLinks(Count) + QStringList{u"autre.jpg,http://a.fr/151"_s};
    QCOMPARE(run(&doc, csv, u"sour evt del extract"_s, medias, local), 299);

    // By then the previous lines are done, and none of the following.
    QStringList expected;
    for (int i = 1; i <= 100; ++i)
        expected += manyTold(i, Count);
    QCOMPARE(before, journalOf(doc, Count + 1, expected));
    QCOMPARE(linesBefore.filter(u"1 WWW "_s).size(), 100);
    QCOMPARE(linesBefore.filter(u"2 NOTE "_s).size(), 100);
    QCOMPARE(linesBefore.filter(u" OBJE"_s).size(), 100); // 50 records and their references

    // The lists keep their entries, deleted or not; the current texts of the entries count.
    expected = linesOf(uR"(
        Remplacement de 'OBJE.FILE media/140.jpg' par 'media/autre.jpg' (l.280)
        1 remplacements effectués.
        Remplacement de 'INDI.BIRT.SOUR @S145@' par '@S146@' (l.1035)
        1 remplacements effectués.
        Remplacement de 'SOUR.OBJE @O147@' par '@O148@' (l.594)
        1 remplacements effectués.
        )"_s);
    for (int i = 101; i <= Count; ++i) {
        QStringList lines = manyTold(i, Count);
        if (i == 110)
            lines.removeAt(4); // the record
        else if (i == 115)
            lines.removeAt(2); // the reference
        else if (i == 130 || i == 145)
            lines.removeAt(1); // a source without an id, and one that is no longer cited
        else if (i == 140)
            lines = {u"ERROR : 140.jpg référençant http://a.fr/140 non détecté dans {}"_s};
        else if (i == 146)
            lines.insert(1, lines.at(1)); // now cited twice
        else if (i == 147)
            lines.clear(); // no source shows it any longer
        else if (i == 148)
            lines = linesOf(uR"(
                Ajout de la balise SOUR.WWW http://a.fr/148 référençant la balise OBJE.FILE 148.jpg (l.296)
                Ajout de la balise INDI.BIRT 2 NOTE Source : http://a.fr/148 référençant la source @S147@ (l.593)
                Suppression de l'enregistrement : SOUR.OBJE 1 OBJE @O148@ (l.594)
                )"_s)
                  + lines;
        expected += lines;
    }
    // A failed copy is not reported.
    expected +=
        linesOf(uR"(
        Ajout de la balise SOUR.WWW http://a.fr/151 référençant la balise OBJE.FILE autre.jpg (l.280)
        Ajout de la balise INDI.BIRT 2 NOTE Source : http://a.fr/151 référençant la source @S140@ (l.579)
        Suppression de l'enregistrement : SOUR.OBJE 1 OBJE @O140@ (l.580)
        Suppression de l'entrée : OBJE.FILE 1 FILE media/autre.jpg (l.280)
        Suppression de l'enregistrement : OBJE 0 @O140@ OBJE (l.279)
        )"_s)
        + QStringList{u"Copie de 2 objets média dans le dossier "_s + local,
                      u"Ajout de 150 balises SOUR.WWW"_s, u"Ajout de 149 balises INDI.BIRT.NOTE"_s,
                      u"Sppression de 148 enregistrements OBJE"_s};
    QCOMPARE(doc.newJournal(), journalOf(doc, 0, expected).mid(2));
    QCOMPARE(doc.status(), u"150 URL médias ajoutées."_s);
    QVERIFY(!QDir(local).exists());
}

void TstMedialinks::textsAreTranslated()
{
    Document doc;
    QVERIFY(doc.load(OneMedium + QStringList{u"2 SOUR @S1@"_s}));
    makeFiles(doc.folder() + "/medias"_L1, {u"b.jpg"_s}, u"image"_s);
    makeFiles(doc.folder() + "/local"_L1, {}, {});
    doc.newJournal();
    const MarkingTranslator translator;
    QCOMPARE(run(&doc, OneLink, u"sour evt del extract"_s, doc.folder() + "/medias"_L1,
                 doc.folder() + "/local"_L1),
             3);
    const QStringList journal = doc.newJournal();
    QCOMPARE(journal.size(), 13);
    QCOMPARE(journal.filter(QRegularExpression(u"^INFO : \\[(Gedcom|TwItem)\\]"_s)), journal);
    QCOMPARE(doc.status(), u"[Gedcom]1 URL médias ajoutées."_s);
}

VARLUNE_TEST_MAIN(TstMedialinks)
#include "tst_medialinks.moc"
