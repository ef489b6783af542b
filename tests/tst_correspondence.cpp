#include "boxes.h"
#include "currentfolder.h"
#include "debuglistener.h"
#include "document.h"
#include "markingtranslator.h"
#include "nofiles.h"
#include "testmain.h"
#include "told.h"
#include "unprivileged.h"
#include "window.h"

#include "gedcom.h"
#include "journaltext.h"
#include "twitem.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QProgressBar>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QStatusBar>
#include <QStringEncoder>
#include <QTest>

#include <algorithm>
#include <functional>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QByteArray Utf8Mark("\xEF\xBB\xBF");
const QString Running = u"Ajout des URL médias en cours..."_s;

/// The arguments of a run after the files and the separator.
struct Options
{
    bool urlSour = true;
    bool urlEvt = false;
    bool delTagObjeFile = false;
    bool extractMedias = false;
    QString mediasSource = {};
    QString mediasDest = {};
};

QString loading(const QString &csvFile)
{
    return "INFO : Chargement du fichier de correspondance "_L1 + csvFile;
}

QString counted(qsizetype lines)
{
    return u"INFO : %1 correspondances à ajouter."_s.arg(lines);
}

/// A journal line of a link in a source. \p line is that of the FILE entry.
QString linked(const QString &name, const QString &url, const QString &line,
               const QString &fullTag = u"OBJE.FILE"_s)
{
    return "INFO : Ajout de la balise SOUR.WWW "_L1 + url + u" référençant la balise "_s + fullTag
         + u' ' + name + " (l."_L1 + line + u')';
}

/// A journal line of a link in an event. \p line is that of the source.
QString noted(const QString &fullTag, const QString &added, const QString &idSour,
              const QString &line)
{
    return "INFO : Ajout de la balise "_L1 + fullTag + u' ' + added + u" référençant la source "_s
         + idSour + " (l."_L1 + line + u')';
}

/// The count of links in sources at the end of the journal.
QStringList linkSum(qsizetype links)
{
    return links == 0 ? QStringList()
                      : QStringList{u"INFO : Ajout de %1 balises SOUR.WWW"_s.arg(links)};
}

QString linkStatus(qsizetype links)
{
    return u"%1 URL médias ajoutées."_s.arg(links);
}

QString notFound(const QString &name, const QString &url, const QString &pathGedFile)
{
    return "ERROR : "_L1 + name + u" référençant "_s + url + u" non détecté dans "_s + pathGedFile;
}

/// The bytes of a text file with these lines.
QByteArray bytesOf(const QStringList &lines)
{
    return (lines.join(u'\n') + u'\n').toUtf8();
}

/// A document with correspondence files beside it.
class Tree : public Document
{
public:
    explicit Tree(const QStringList &lines)
    {
        QVERIFY(load(lines));
        newJournal();
    }

    /// Writes a file into the folder of the document.
    QString write(const QString &name, const QByteArray &bytes) const
    {
        writeBytes(path(name), bytes);
        return path(name);
    }
    using Document::path;
    [[nodiscard]] QString path(const QString &name) const
    {
        return folder() + u'/' + name;
    }
    /// The correspondence file of importLines().
    [[nodiscard]] QString csv() const
    {
        return path(u"liens.csv"_s);
    }

    int import(const QStringList &csvFiles, const QString &splitStr, const Options &options = {})
    {
        return gedcom.setMediaFileURL(csvFiles, splitStr, options.urlSour, options.urlEvt,
                                      options.delTagObjeFile, options.extractMedias,
                                      options.mediasSource, options.mediasDest);
    }
    int importLines(const QStringList &lines, const QString &splitStr = u","_s,
                    const Options &options = {})
    {
        writeBytes(csv(), bytesOf(lines));
        return import({csv()}, splitStr, options);
    }
    /// The journal of importLines(), with these lines for the correspondences and the counts.
    [[nodiscard]] QStringList journalOf(qsizetype lines, const QStringList &changes) const
    {
        return QStringList{loading(csv()), counted(lines)} + changes;
    }

    /// Replaces texts, as the last operation of the form does.
    void replace(const QString &before, const QString &after, const QString &tags)
    {
        QVERIFY(gedcom.searchAndReplace(before, after, tags, true, false) > 0);
    }
};

/// Media records with one file each, then a source for each of them, which refers to it.
QStringList library(const QStringList &files)
{
    QStringList lines;
    for (int i = 1; i <= files.size(); ++i)
        lines += {u"0 @O%1@ OBJE"_s.arg(i), "1 FILE "_L1 + files.at(i - 1)};
    for (int i = 1; i <= files.size(); ++i)
        lines += {u"0 @S%1@ SOUR"_s.arg(i), u"1 OBJE @O%1@"_s.arg(i)};
    return lines;
}

/// The line number of a file of the library.
QString fileLine(qsizetype index)
{
    return QString::number(2 * index + 2);
}

/// The lines with a web address added to the source of that file.
void addLink(QStringList *lines, qsizetype index, const QString &url)
{
    qsizetype end = lines->indexOf(u"1 OBJE @O%1@"_s.arg(index + 1)) + 1;
    while (end < lines->size() && lines->at(end).startsWith(u'1'))
        ++end;
    lines->insert(end, "1 WWW "_L1 + url);
}

/// A person, a source cited by one of his events, a medium that the source shows, and one that no
/// source shows.
const QStringList Family{
    u"0 HEAD"_s,      u"1 CHAR UTF-8"_s,       u"0 @I1@ INDI"_s,
    u"1 BIRT"_s,      u"2 SOUR @S1@"_s,        u"0 @S1@ SOUR"_s,
    u"1 OBJE @O1@"_s, u"0 @O1@ OBJE"_s,        u"1 FILE media/a.jpg"_s,
    u"0 @O2@ OBJE"_s, u"1 FILE media/b.jpg"_s,
};
// The journal line when a.jpg of the family gets the address http://a.fr/1.
const QString FamilyWww = linked(u"a.jpg"_s, u"http://a.fr/1"_s, u"9"_s);
const QString FamilyNote =
    noted(u"INDI.BIRT"_s, u"2 NOTE Source : http://a.fr/1"_s, u"@S1@"_s, u"6"_s);

constexpr QFile::Permissions ForReading =
    QFile::ReadOwner | QFile::ReadUser | QFile::ReadGroup | QFile::ReadOther;
constexpr QFile::Permissions ForEntering =
    QFile::ExeOwner | QFile::ExeUser | QFile::ExeGroup | QFile::ExeOther;

/// The names in a folder, sorted; those of folders end in "/".
QStringList listing(const QString &folder)
{
    QStringList names;
    const QFileInfoList infos = QDir(folder).entryInfoList(
        QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo &info : infos)
        names += info.fileName() + (info.isDir() ? u"/"_s : QString());
    return names;
}

/// Calls functions as events, each when the bar first reaches a value. Moves of the bar by a run
/// that such a function starts do not count.
class AtProgress : public QObject
{
public:
    AtProgress(QProgressBar *bar, const QHash<int, std::function<void()>> &functions)
        : m_functions(functions)
    {
        connect(bar, &QProgressBar::valueChanged, this, [this](int value) {
            if (m_inside)
                return;
            const std::function<void()> function = m_functions.take(value);
            if (!function)
                return;
            QMetaObject::invokeMethod(
                this,
                [this, function] {
                    m_inside = true;
                    function();
                    m_inside = false;
                },
                Qt::QueuedConnection);
        });
    }

    /// Whether all functions have been called.
    [[nodiscard]] bool done() const
    {
        return m_functions.isEmpty();
    }

private:
    QHash<int, std::function<void()>> m_functions;
    bool m_inside = false;
};

/// The matching in its simplest form: each line tries all entries in turn, with their current
/// texts. Handles links in sources only.
class PlainImport
{
public:
    explicit PlainImport(Document *doc)
        : m_doc(doc),
          m_files(childs(uR"(^0 @O[0-9]+@ OBJE$)"_s, u"^1 FILE "_s)),
          m_references(childs(uR"(^0 @S[0-9]+@ SOUR$)"_s, u"^1 OBJE @O"_s))
    {
    }

    /// The entry with the file name, or null.
    [[nodiscard]] TwItem *find(const QString &name) const
    {
        for (TwItem *twi : m_files) {
            if (holds(twi, name))
                return twi;
        }
        return nullptr;
    }
    [[nodiscard]] QList<TwItem *> files() const
    {
        return m_files;
    }
    /// The journal of a line.
    [[nodiscard]] QStringList logs(const QString &line) const
    {
        const QString name = line.section(u'|', 0, 0);
        const QString url = line.section(u'|', 1);
        TwItem *twi = find(name);
        if (!twi)
            return {notFound(name, url, m_doc->path())};
        const QString id = twi->getParent()->text(1);
        QStringList logs;
        for (const TwItem *reference : m_references) {
            if (reference->getTwiValuesList().contains(id))
                logs += linked(name, url, twi->getNumLineGedFile(), fullTagText(twi));
        }
        return logs;
    }
    [[nodiscard]] QStringList logs(const QStringList &lines) const
    {
        QStringList all;
        for (const QString &line : lines)
            all += logs(line);
        return all;
    }

private:
    [[nodiscard]] QList<TwItem *> childs(const QString &record, const QString &line) const
    {
        QList<TwItem *> found;
        const QList<TwItem *> roots =
            m_doc->gedcom.getTabTwItemsRootMatch(QRegularExpression(record), true, false);
        for (TwItem *root : roots)
            found += root->getTabTwiChildsMatchReg(QRegularExpression(line));
        return found;
    }
    static bool holds(const TwItem *twi, const QString &name)
    {
        for (QString text : twi->getTwiValuesList()) {
            if (text.contains(name, Qt::CaseInsensitive))
                return text.replace(u'\\', u'/').split(u'/').constLast() == name;
        }
        return false;
    }

    Document *m_doc;
    QList<TwItem *> m_files;
    QList<TwItem *> m_references;
};

/// The window with a file opened from its menu, and a correspondence file beside it.
class ImportSession : public Session
{
public:
    explicit ImportSession(const QStringList &lines = Family)
    {
        window->show();
        load(lines + QStringList{u"0 TRLR"_s});
        m_journalSeen = journal().size();
    }

    [[nodiscard]] QString csv() const
    {
        return path(u"liens.csv"_s);
    }
    /// Writes the correspondence file and picks it. The group must be checked.
    void pickCsv(const QStringList &lines) const
    {
        writeBytes(csv(), bytesOf(lines));
        pick(u"pbImportCsvLinks"_s, csv());
    }
    /// The journal since the last call, without the line about folding that begins each run.
    QStringList runJournal()
    {
        const QStringList all = journal();
        QStringList news = all.mid(m_journalSeen);
        m_journalSeen = all.size();
        if (!news.isEmpty() && news.takeFirst() != u"INFO : 0 balises CONC reconcaténées."_s)
            QTest::qFail("the run does not begin with the fold", __FILE__, __LINE__);
        return news;
    }
    /// The lines that a save writes.
    [[nodiscard]] QStringList saved() const
    {
        trigger(u"actionEnregistrerFichier"_s);
        return readLines(path());
    }

private:
    qsizetype m_journalSeen = 0;
};

} // namespace

/// Links to media from correspondence files: how lines are read, matched with media and put into
/// sources, and what is copied. Links in events are in tst_medialinks.
class TstCorrespondence : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void bareFileName_data();
    void bareFileName();
    void fileOfAName();

    void cleanedLines_data();
    void cleanedLines();
    void longLines();
    void severalFiles_data();
    void severalFiles();
    void sameFileTwice();
    void unopened_data();
    void unopened();
    void refusedLines_data();
    void refusedLines();
    void textsAreTranslated();

    void matching_data();
    void matching();
    void shapes_data();
    void shapes();
    void deletedEntriesTakeNoPart();
    void hiddenEntriesTakePart();
    void placeholdersInPaths();
    void recordWithoutAnId();
    void idLostDuringTheRun_data();
    void idLostDuringTheRun();
    void idsInAnotherColumn();
    void rootThatReadsOtherwise();
    void rootThatReadsOtherwiseDuringTheRun_data();
    void rootThatReadsOtherwiseDuringTheRun();

    void missingFolders_data();
    void missingFolders();
    void foldersAreLookedAtFirst();
    void foldersWithoutExtraction();
    void listedNames();
    void listedOnce();
    void closedFolder();

    void frame();
    void told();
    void barKeepsItsVisibility();
    void eventsDuringTheRun_data();
    void eventsDuringTheRun();
    void generatedNames_data();
    void generatedNames();

    void formArguments_data();
    void formArguments();
    void formSeparator_data();
    void formSeparator();
    void formFolders();
    void formPickedFiles();
    void formMessages_data();
    void formMessages();
    void failureDoesNotEndTheRun();
    void thirdInTheOrder();
    void laterImport_data();
    void laterImport();

private:
    /// Compares the texts of the boxes since the last call.
    void compareBoxes(const QStringList &texts);

    std::optional<AnsweredBoxes> m_boxes; // an unanswered one would block the test for ever
    qsizetype m_boxesSeen = 0;
};

void TstCorrespondence::init()
{
    m_boxes.emplace();
    m_boxesSeen = 0;
}

void TstCorrespondence::cleanup()
{
    compareBoxes({});
    m_boxes.reset();
}

void TstCorrespondence::compareBoxes(const QStringList &texts)
{
    QCOMPARE(m_boxes->texts().mid(m_boxesSeen), texts);
    QCOMPARE(m_boxes->titles().mid(m_boxesSeen), QStringList(texts.size(), u"Erreur"_s));
    QVERIFY(m_boxes->allCritical(nullptr));
    m_boxesSeen = m_boxes->texts().size();
}

void TstCorrespondence::bareFileName_data()
{
    QTest::addColumn<QStringList>("columns");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *title, const QString &value, const QString &name,
                        const QString &expected) {
        QTest::newRow(title) << QStringList{u"1"_s, u"FILE"_s, value} << name << expected;
    };
    const QString file = u"media/a.jpg"_s;
    row("name at the end of a path", file, u"a.jpg"_s, u"a.jpg"_s);
    row("no folder", u"a.jpg"_s, u"a.jpg"_s, u"a.jpg"_s);
    row("name in another case", file, u"A.JPG"_s, u"a.jpg"_s);
    row("name with an accent in another case", u"media/é.jpg"_s, u"É"_s, u"é.jpg"_s);
    row("part of the name", file, u"jp"_s, u"a.jpg"_s);
    row("folder", file, u"MEDIA"_s, u"a.jpg"_s);
    row("folder and name", file, u"media/a.jpg"_s, u"a.jpg"_s);
    row("nowhere", file, u"b.jpg"_s, QString());
    row("backslashes", uR"(C:\media\a.jpg)"_s, u"a.jpg"_s, u"a.jpg"_s);
    row("backslash behind a slash", uR"(C:/media\a.jpg)"_s, u"a.jpg"_s, u"a.jpg"_s);
    row("slash behind a backslash", uR"(C:\media/a.jpg)"_s, u"a.jpg"_s, u"a.jpg"_s);
    row("backslash in the name", uR"(media\a.jpg)"_s, uR"(media\a.jpg)"_s, u"a.jpg"_s);
    row("slash in the name only", uR"(media\a.jpg)"_s, u"media/a.jpg"_s, QString());
    row("backslash in the name only", file, uR"(media\a.jpg)"_s, QString());
    row("slash at the end", u"media/"_s, u"media"_s, QString());
    row("backslash at the end", uR"(media\)"_s, u"media"_s, QString());
    row("level", u"media/1"_s, u"1"_s, u"1"_s);
    row("tag", u"media/FILE"_s, u"FILE"_s, u"FILE"_s);
    row("tag in another case", u"media/file"_s, u"file"_s, u"FILE"_s);
    row("letter of the tag", u"media/E"_s, u"E"_s, u"FILE"_s);
    row("no name", file, QString(), u"1"_s);
    row("dots stand for themselves", u"media/axjpg"_s, u"a.jpg"_s, QString());
    QTest::newRow("no value") << QStringList{u"1"_s, u"FILE"_s} << u"a.jpg"_s << QString();
    QTest::newRow("path in the tag column")
        << QStringList{u"1"_s, uR"(FILE x\yz)"_s, u"media/y"_s} << u"y"_s << u"yz"_s;
    QTest::newRow("path in the level column")
        << QStringList{u"1 FILE a/yz"_s, u"FILE"_s, u"media/y"_s} << u"y"_s << u"yz"_s;
    QTest::newRow("path in a further column")
        << QStringList{u"1"_s, u"FILE"_s, u"media/x"_s, u"media/y"_s} << u"y"_s << u"y"_s;
}

void TstCorrespondence::bareFileName()
{
    QFETCH(const QStringList, columns);
    QFETCH(const QString, name);
    QFETCH(const QString, expected);

    TwItem twi(1);
    for (int i = 0; i < int(columns.size()); ++i)
        twi.setText(i, columns.at(i));
    QCOMPARE(twi.getAbsolutFileName(name), expected);
    QCOMPARE(twi.getTwiValuesList(), columns); // the entry itself is only read
}

void TstCorrespondence::fileOfAName()
{
    Tree tree(library({u"x/a.jpg"_s, u"y/a.jpg"_s, u"b.jpg"_s, u"A.jpg"_s}));
    TwItem *x = tree.entry(u"1 FILE x/a.jpg"_s);
    TwItem *y = tree.entry(u"1 FILE y/a.jpg"_s);
    TwItem *b = tree.entry(u"1 FILE b.jpg"_s);
    TwItem *upper = tree.entry(u"1 FILE A.jpg"_s);
    const auto found = [&tree](const QString &name, const QList<TwItem *> &list) {
        return tree.gedcom.getObjeFileFromFileName(name, list);
    };
    QCOMPARE(found(u"a.jpg"_s, {x, y, b, upper}), x);
    QCOMPARE(found(u"a.jpg"_s, {b, y, x}), y); // the order of the list, not of the file
    QCOMPARE(found(u"A.jpg"_s, {x, y, b, upper}), upper);
    QCOMPARE(found(u"b.jpg"_s, {x, y, b, upper}), b);
    QCOMPARE(found(u"a.jpg"_s, {b, upper}), nullptr);
    QCOMPARE(found(u"a.jpg"_s, {}), nullptr);
    QCOMPARE(found(u"x/a.jpg"_s, {x, y}), nullptr);
    QCOMPARE(found(u"1"_s, {y, x}), y); // which is the level of both
    QCOMPARE(found(u"FILE"_s, {b, x}), b);
    x->setDelete(true);
    x->setTwiHidden(true);
    QCOMPARE(found(u"a.jpg"_s, {x, y}), x);
    QCOMPARE(tree.newJournal(), QStringList());
}

void TstCorrespondence::cleanedLines_data()
{
    using Outcomes = QList<QStringList>;
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("splitStr");
    // {name, address} if added, {line} if refused, {"?", name, address} if not in the tree.
    QTest::addColumn<Outcomes>("outcomes");

    const auto row = [](const char *title, const QByteArray &bytes, const QString &splitStr,
                        const Outcomes &outcomes) {
        QTest::newRow(title) << bytes << splitStr << outcomes;
    };
    const QString comma = u","_s;
    const QString semicolon = u";"_s;
    const QString url = u"http://a.fr/1"_s;
    const Outcomes one{{u"a.jpg"_s, url}};
    row("bare line", "a.jpg,http://a.fr/1\n", comma, one);
    row("no line end behind the last line", "a.jpg,http://a.fr/1", comma, one);
    row("several lines", "b.jpg,http://a.fr/2\na.jpg,http://a.fr/1\n", comma,
        {{u"b.jpg"_s, u"http://a.fr/2"_s}, {u"a.jpg"_s, url}});
    row("line ends of the other system", "a.jpg,http://a.fr/1\r\nb.jpg,x\r\n", comma,
        {{u"a.jpg"_s, url}, {u"b.jpg"_s, u"x"_s}});
    row("the same without the last", "b.jpg,x\r\na.jpg,http://a.fr/1", comma,
        {{u"b.jpg"_s, u"x"_s}, {u"a.jpg"_s, url}});
    row("commas and quotes before such a line end", "\"a.jpg\",\"http://a.fr/1\",,\r\n", comma,
        one);
    row("carriage returns in a line", "a\r.jpg,x\ry\n", comma, {{u"a.jpg"_s, u"xy"_s}});
    row("UTF-8 mark", Utf8Mark + "a.jpg,http://a.fr/1\n", comma, one);
    row("UTF-8 mark before an accent", Utf8Mark + "\xC3\xA9t\xC3\xA9.jpg,x\n", comma,
        {{u"été.jpg"_s, u"x"_s}});
    row("UTF-8 mark in the middle", "b.jpg,x\n" + Utf8Mark + "a.jpg,x\n", comma,
        {{u"b.jpg"_s, u"x"_s}, {u"?"_s, u"\uFEFFa.jpg"_s, u"x"_s}});
    QStringEncoder utf16(QStringConverter::Utf16LE, QStringConverter::Flag::WriteBom);
    const QByteArray wide = utf16.encode(u"été.jpg,http://a.fr/é\r\n"_s);
    row("UTF-16 with its mark", wide, comma, {{u"été.jpg"_s, u"http://a.fr/é"_s}});
    row("accents", "\xC3\xA9t\xC3\xA9.jpg,http://a.fr/\xC3\xA9\n", comma,
        {{u"été.jpg"_s, u"http://a.fr/é"_s}});
    row("accents in another encoding", "\xE9t\xE9.jpg,x\n", comma,
        {{u"?"_s, u"\uFFFDt\uFFFD.jpg"_s, u"x"_s}});
    row("zero bytes", QByteArrayLiteral("a.jpg,x\0y\nb\0.jpg,\0\n"), comma,
        {{u"a.jpg"_s, u"x\0y"_s}, {u"?"_s, u"b\0.jpg"_s, u"\0"_s}});
    row("empty file", "", comma, {});

    row("quotes, and a comma at the end", "\"a.jpg\",\"http://a.fr/1\",\n", comma, one);
    row("commas at the end", "a.jpg,http://a.fr/1,,,\n", comma, one);
    row("quotes inside", "a\".\"jpg,ht\"\"tp://a.fr/1\"\n", comma, one);
    row("one quote", "a.jpg,http://a.fr/1\"\n", comma, one);
    row("quote behind the commas", "a.jpg,x,,\"\n", comma, {{u"a.jpg"_s, u"x,,"_s}});
    row("comma inside the last quotes", "\"a.jpg\",\"x,\"\n", comma, {{u"a.jpg"_s, u"x,"_s}});
    row("comma and blank at the end", "a.jpg,x, \n", comma, {{u"a.jpg"_s, u"x, "_s}});
    row("semicolons at the end", "a.jpg;x;;\n", semicolon, {{u"a.jpg"_s, u"x;;"_s}});
    row("other quotes", "a.jpg,'x'\n", comma, {{u"a.jpg"_s, u"'x'"_s}});

    row("separator of one character", "a.jpg;b\n", semicolon, {{u"a.jpg"_s, u"b"_s}});
    row("separator of two", "a.jpg;;b\n", u";;"_s, {{u"a.jpg"_s, u";b"_s}});
    row("separator of two at the end", "a.jpg;;\n", u";;"_s, {{u"a.jpg"_s, u";"_s}});
    row("three where the separator has two", "a.jpg;;;b\n", u";;"_s, {{u"a.jpg"_s, u";;b"_s}});
    row("separator with the beginning of the address", "a.jpg,http://a.fr/1\n", u",http://a.fr/"_s,
        one);
    row("separator without the comma", "a.jpg http://a.fr/1\n", u" http"_s, one);
    row("separator of letters", "a.jpgXYZb\n", u"XYZ"_s, {{u"a.jpg"_s, u"YZb"_s}});
    row("separator of letters in another case in front", "b.jpgxX\nb.jpgXb\n", u"X"_s,
        {{u"b.jpgxX"_s}, {u"b.jpg"_s, u"b"_s}});
    row("separator twice", "a.jpg,http://a.fr/1,2\n", comma, {{u"a.jpg"_s, u"http://a.fr/1,2"_s}});
    row("long separator twice", "a.jpg,http,http://a.fr\n", u",http"_s,
        {{u"a.jpg"_s, u"http,http://a.fr"_s}});
    row("separator in the name", "f;g.jpg;x\n", semicolon, {{u"?"_s, u"f"_s, u"g.jpg;x"_s}});
    row("tabulator", "a.jpg\tx\n", u"\t"_s, {{u"a.jpg"_s, u"x"_s}});
    row("blank", "a.jpg x y\n", u" "_s, {{u"a.jpg"_s, u"x y"_s}});
    row("dot", "a.jpg\n", u"."_s, {{u"?"_s, u"a"_s, u"jpg"_s}});
    row("separator with an accent", "a.jpg\xC3\xA9x\n", u"é"_s, {{u"a.jpg"_s, u"x"_s}});

    row("blank in front of the address", "a.jpg, x\n", comma, {{u"a.jpg"_s, u" x"_s}});
    row("blank behind the address", "a.jpg,x \n", comma, {{u"a.jpg"_s, u"x "_s}});
    row("address of a blank", "a.jpg, \n", comma, {{u"a.jpg"_s, u" "_s}});
    row("blank behind the name", "a.jpg ,x\nh.jpg ,x\n", comma,
        {{u"?"_s, u"a.jpg "_s, u"x"_s}, {u"h.jpg "_s, u"x"_s}});
    row("blank in front of the name", " a.jpg,x\n c.jpg,x\nc.jpg,x\n", comma,
        {{u"?"_s, u" a.jpg"_s, u"x"_s}, {u" c.jpg"_s, u"x"_s}, {u"?"_s, u"c.jpg"_s, u"x"_s}});
    row("blank in the name", "d e.jpg,x\n", comma, {{u"d e.jpg"_s, u"x"_s}});
    row("name of a blank", " ,x\n", comma, {{u"?"_s, u" "_s, u"x"_s}});
    row("placeholders", "%1.jpg,http://a.fr/%2%1\n%2%3.jpg,%1\n%4,%3%2%1\n", comma,
        {{u"%1.jpg"_s, u"http://a.fr/%2%1"_s},
         {u"%2%3.jpg"_s, u"%1"_s},
         {u"?"_s, u"%4"_s, u"%3%2%1"_s}});
    row("separator of a placeholder", "a.jpg%1x%2\n", u"%1"_s, {{u"a.jpg"_s, u"1x%2"_s}});
    row("what an expression would match", "a.jpg.*x\n", u".*"_s, {{u"a.jpg"_s, u"*x"_s}});

    row("no name", ";http://a.fr/1\n", semicolon, {{u";http://a.fr/1"_s}});
    row("no address", "a.jpg;\n", semicolon, {{u"a.jpg;"_s}});
    row("neither", ";\n", semicolon, {{u";"_s}});
    row("no address behind a comma that quotes kept", "a.jpg,\"\n", comma, {{u"a.jpg,"_s}});
    row("no name with a long separator", ",http://a.fr/1\n", u",http"_s, {{u",http://a.fr/1"_s}});
    row("refused lines among others", ";%1\na.jpg;x\n%1;\"\nb.jpg;y\n", semicolon,
        {{u";%1"_s}, {u"a.jpg"_s, u"x"_s}, {u"%1;"_s}, {u"b.jpg"_s, u"y"_s}});
    // The form only warns about an empty separator. It matches at the start of every line.
    row("no separator", "a.jpg,http://a.fr/1\n\n\"\",\n", QString(),
        {{u"a.jpg,http://a.fr/1"_s}, {QString()}, {QString()}});
}

void TstCorrespondence::cleanedLines()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QString, splitStr);
    QFETCH(const QList<QStringList>, outcomes);

    const QStringList names{u"a.jpg"_s,   u"b.jpg"_s,  u"été.jpg"_s,  u" c.jpg"_s, u"d e.jpg"_s,
                            u"f;g.jpg"_s, u"%1.jpg"_s, u"%2%3.jpg"_s, u"h.jpg "_s};
    Tree tree(
        library(QStringList(names).replaceInStrings(QRegularExpression(u"^"_s), u"media/"_s)));
    QStringList lines = tree.lines();
    QStringList changes;
    int links = 0;
    for (const QStringList &outcome : outcomes) {
        if (outcome.size() == 1) {
            changes += "ERROR : Erreur dans la ligne "_L1 + outcome.constFirst();
        } else if (outcome.size() == 3) {
            changes += notFound(outcome.at(1), outcome.at(2), tree.path());
        } else {
            const qsizetype index = names.indexOf(outcome.constFirst());
            QVERIFY(index >= 0);
            changes += linked(outcome.constFirst(), outcome.constLast(), fileLine(index));
            addLink(&lines, index, outcome.constLast());
            ++links;
        }
    }

    const QString csv = tree.write(u"liens.csv"_s, bytes);
    QCOMPARE(tree.import({csv}, splitStr), links);
    QCOMPARE(tree.newJournal(), tree.journalOf(outcomes.size(), changes + linkSum(links)));
    QCOMPARE(tree.lines(), lines);
    QCOMPARE(tree.status(), linkStatus(links));
    QCOMPARE(readBytes(csv), bytes);
}

void TstCorrespondence::longLines()
{
    const QString url = "http://a.fr/"_L1 + QString(1024 * 1024, u'x');
    const QString name = QString(1024 * 1024, u'y');
    Tree tree(library({u"media/a.jpg"_s, "media/"_L1 + name}));
    QStringList lines = tree.lines();
    addLink(&lines, 0, url);
    addLink(&lines, 1, u"z"_s);
    QCOMPARE(tree.importLines({"a.jpg,"_L1 + url, u'y' + name + ",z"_L1, name + ",z"_L1}), 2);
    QCOMPARE(tree.newJournal(),
             tree.journalOf(3, QStringList{linked(u"a.jpg"_s, url, u"2"_s),
                                           notFound(u'y' + name, u"z"_s, tree.path()),
                                           linked(name, u"z"_s, u"4"_s)}
                                   + linkSum(2)));
    QCOMPARE(tree.lines(), lines);
}

void TstCorrespondence::severalFiles_data()
{
    QTest::addColumn<QList<QByteArray>>("files");
    QTest::addColumn<QStringList>("urls"); // of a.jpg

    QTest::newRow("no file") << QList<QByteArray>() << QStringList();
    QTest::newRow("an empty file") << QList<QByteArray>{""} << QStringList();
    QTest::newRow("two files") << QList<QByteArray>{"a.jpg,x\na.jpg,y\n", "a.jpg,z\n"}
                               << QStringList{u"x"_s, u"y"_s, u"z"_s};
    QTest::newRow("no line end between two files")
        << QList<QByteArray>{"a.jpg,x", "a.jpg,y"} << QStringList{u"x"_s, u"y"_s};
    QTest::newRow("an empty file among others")
        << QList<QByteArray>{"a.jpg,x\n", "", "a.jpg,y\n"} << QStringList{u"x"_s, u"y"_s};
    QTest::newRow("each with its mark")
        << QList<QByteArray>{Utf8Mark + "a.jpg,x\n", Utf8Mark + "a.jpg,y\n"}
        << QStringList{u"x"_s, u"y"_s};
}

void TstCorrespondence::severalFiles()
{
    QFETCH(const QList<QByteArray>, files);
    QFETCH(const QStringList, urls);

    Tree tree(library({u"media/a.jpg"_s}));
    QStringList lines = tree.lines();
    QStringList paths;
    QStringList expected;
    for (const QByteArray &bytes : files) {
        // In another order than that of their names.
        paths += tree.write(u"%1 liens.csv"_s.arg(9 - paths.size()), bytes);
        expected += loading(paths.constLast());
    }
    expected += counted(urls.size());
    for (const QString &url : urls) {
        expected += linked(u"a.jpg"_s, url, u"2"_s);
        addLink(&lines, 0, url);
    }
    tree.progress.setRange(-5, -1);
    QCOMPARE(tree.import(paths, u","_s), int(urls.size()));
    QCOMPARE(tree.newJournal(), expected + linkSum(urls.size()));
    QCOMPARE(tree.lines(), lines);
    QCOMPARE(tree.status(), linkStatus(urls.size()));
    QCOMPARE(tree.progress.minimum(), 0);
    QCOMPARE(tree.progress.maximum(), int(urls.size()));
}

void TstCorrespondence::sameFileTwice()
{
    Tree tree(library({u"media/a.jpg"_s}));
    QStringList lines = tree.lines();
    const QString csv = tree.write(u"liens.csv"_s, "a.jpg,x\nb.jpg,y\n");
    const QStringList changes{linked(u"a.jpg"_s, u"x"_s, u"2"_s),
                              notFound(u"b.jpg"_s, u"y"_s, tree.path())};
    QCOMPARE(tree.import({csv, csv}, u","_s), 2);
    QCOMPARE(tree.newJournal(), QStringList({loading(csv), loading(csv), counted(4)}) + changes
                                    + changes + linkSum(2));
    addLink(&lines, 0, u"x"_s);
    addLink(&lines, 0, u"x"_s);
    QCOMPARE(tree.lines(), lines);
}

void TstCorrespondence::unopened_data()
{
    using Prepare = std::function<void(const QString &path)>;
    QTest::addColumn<QString>("name");
    QTest::addColumn<Prepare>("prepare");

    const auto row = [](const char *title, const QString &name, const Prepare &prepare) {
        QTest::newRow(title) << name << prepare;
    };
    row("missing", u"rien %1.csv"_s, [](const QString &) {});
    row("in a missing folder", u"rien/liens.csv"_s, [](const QString &) {});
    row("below a file", u"arbre.ged/liens.csv"_s, [](const QString &) {});
    row("a folder", u"dossier.csv"_s, [](const QString &path) { QDir().mkdir(path); });
    row("not to be read", u"clos.csv"_s, [](const QString &path) {
        writeBytes(path, "a.jpg,x\n");
        QFile::setPermissions(path, {});
    });
    row("no name", QString(), [](const QString &) {
        QTest::ignoreMessage(QtWarningMsg, "QFSFileEngine::open: No file name specified");
    });
}

void TstCorrespondence::unopened()
{
    using Prepare = std::function<void(const QString &path)>;
    QFETCH(const QString, name);
    QFETCH(const Prepare, prepare);
    if (name == "clos.csv"_L1)
        SKIP_ON_WINDOWS(NoRights);

    Tree tree(library({u"media/a.jpg"_s}));
    const QStringList before = tree.lines();
    // The names are relative, so the folders above do not matter.
    const CurrentFolder current(tree.folder());
    const QStringList files{u"bons.csv"_s, name, u"autres.csv"_s};
    for (const QString &good : {files.first(), files.last()}) {
        tree.write(good, "a.jpg,x\n");
        QFile::setPermissions(tree.path(good), ForReading);
    }
    prepare(tree.path(name));
    QFile::setPermissions(tree.folder(), ForReading | ForEntering);
    tree.progress.setRange(0, 7);
    tree.progress.setValue(3);
    const QString error = u"ERROR : Chargement du fichier impossible."_s;
    QString last;
    m_boxes->setInspector([&](QMessageBox *) { last = tree.journal().constLast(); });
    QStringList debug;
    int result = -1;
    {
        const DebugListener listener([&debug](const QString &text) { debug += text; });
        const Unprivileged unprivileged;
        result = tree.import(files, u","_s, {true, true, true});
    }
    QFile::setPermissions(tree.folder(), ForReading | ForEntering | QFile::WriteOwner);

    QCOMPARE(result, 0);
    compareBoxes({"Impossible d'ouvrir le fichier "_L1 + name});
    QCOMPARE(last, error); // the journal line comes before the box
    QCOMPARE(tree.newJournal(), QStringList({loading(files.at(0)), loading(name), error}));
    QCOMPARE(tree.lines(), before);
    QCOMPARE(tree.status(), Running);
    QCOMPARE(tree.progress.maximum(), 7);
    QCOMPARE(tree.progress.value(), 3);
    QCOMPARE(debug, QStringList{u"ON setMediaFileURL"_s});

    // The failure leaves nothing behind.
    QCOMPARE(tree.import({files.at(2)}, u","_s), 1);
    QCOMPARE(tree.status(), linkStatus(1));
}

void TstCorrespondence::refusedLines_data()
{
    QTest::addColumn<QList<QByteArray>>("files");
    QTest::addColumn<QString>("splitStr");
    QTest::addColumn<QString>("line");
    QTest::addColumn<int>("opened");

    const auto row = [](const char *title, const QList<QByteArray> &files, const QString &splitStr,
                        const QString &line, int opened = 1) {
        QTest::newRow(title) << files << splitStr << line << opened;
    };
    const QString comma = u","_s;
    row("no separator", {"a.jpg\n"}, comma, u"a.jpg"_s);
    row("behind a good line", {"a.jpg,x\na.jpg;y\na.jpg,z\n"}, comma, u"a.jpg;y"_s);
    row("at the end of a file, no line end", {"a.jpg,x\na.jpg"}, comma, u"a.jpg"_s);
    row("blank line", {"a.jpg,x\n\na.jpg,y\n"}, comma, QString());
    row("blank line at the end", {"a.jpg,x\n\n"}, comma, QString());
    row("blank line at the end, other system", {"a.jpg,x\r\n\r\n"}, comma, QString());
    row("line of blanks", {"a.jpg,x\n  \n"}, comma, u"  "_s);
    row("line of commas", {"a.jpg,x\n,,\n"}, comma, QString());
    row("line of quotes and a comma", {"\"\",\n"}, comma, QString());
    row("mark alone", {Utf8Mark + "\n"}, comma, QString());
    row("header line with a long separator", {"fichier,url\na.jpg,http://a.fr/1\n"},
        u",http://a.fr/"_s, u"fichier,url"_s);
    row("name without an address", {"\"a.jpg\",,\n"}, comma, u"a.jpg"_s);
    row("the end of the separator is lacking", {"a.jpg,http:/a.fr\n"}, u",http://"_s,
        u"a.jpg,http:/a.fr"_s);
    row("separator in another case", {"a.jpgXa\n"}, u"x"_s, u"a.jpgXa"_s);
    row("separator with an accent in another case", {"a.jpg\xC3\x89x\n"}, u"é"_s, u"a.jpgÉx"_s);
    row("separator with quotes", {"\"a.jpg\",\"x\"\n"}, u"\",\""_s, u"a.jpg,x"_s);
    row("separator of quotes", {"a.jpg\"x\n"}, u"\""_s, u"a.jpgx"_s);
    row("separator that the end takes away", {"a.jpg,,x\na.jpg,,\n"}, u",,"_s, u"a.jpg"_s);
    row("separator over two lines", {"a.jpg,\nhttp://a.fr\n"}, u",http"_s, u"a.jpg"_s);
    row("expression as a separator", {"a.jpg,x\n"}, u".*"_s, u"a.jpg,x"_s);
    row("zero byte as a separator in the file", {QByteArrayLiteral("a.jpg\0x\n")}, comma,
        u"a.jpg\0x"_s);
    row("placeholders", {"%1%2%3.jpg;%1\n"}, comma, u"%1%2%3.jpg;%1"_s);
    row("in the second file", {"a.jpg,x\na.jpg,y\n", "a.jpg,z\nmauvaise\n", "a.jpg,t\n"}, comma,
        u"mauvaise"_s, 2);
    row("in the last of three files", {"a.jpg,x\n", "", "a.jpg,z\nmauvaise"}, comma, u"mauvaise"_s,
        3);
    row("in two files", {"a.jpg,x\nune\ndeux\n", "trois\n"}, comma, u"une"_s);
}

void TstCorrespondence::refusedLines()
{
    QFETCH(const QList<QByteArray>, files);
    QFETCH(const QString, splitStr);
    QFETCH(const QString, line);
    QFETCH(const int, opened);

    Tree tree(library({u"media/a.jpg"_s}));
    const QStringList before = tree.lines();
    QStringList paths;
    for (const QByteArray &bytes : files)
        paths +=
            tree.write(u"liens %1 %2.csv"_s.replace(u"%2"_s, QString::number(paths.size())), bytes);
    tree.progress.setRange(0, 7);
    tree.progress.setValue(3);
    const QString error = u"Correspondance non détectée dans la ligne "_s + line;
    QString last;
    m_boxes->setInspector([&](QMessageBox *) { last = tree.journal().constLast(); });
    QStringList debug;
    {
        const DebugListener listener([&debug](const QString &text) { debug += text; });
        QCOMPARE(tree.import(paths, splitStr, {true, true, true}), 0);
    }
    compareBoxes({error + " du fichier "_L1 + paths.at(opened - 1)});
    QCOMPARE(last, "ERROR : "_L1 + error); // the journal line comes before the box
    QStringList expected;
    for (const QString &path : paths.first(opened))
        expected += loading(path);
    QCOMPARE(tree.newJournal(), expected + QStringList{"ERROR : "_L1 + error});
    QCOMPARE(tree.lines(), before);
    QCOMPARE(tree.status(), Running);
    QCOMPARE(tree.progress.maximum(), 7);
    QCOMPARE(tree.progress.value(), 3);
    QCOMPARE(debug, QStringList{u"ON setMediaFileURL"_s});
}

void TstCorrespondence::textsAreTranslated()
{
    Tree tree(library({u"media/a.jpg"_s}));
    const QString missing = tree.path(u"rien"_s);
    QStringList status;
    const auto connection = connect(&tree.statusBar, &QStatusBar::messageChanged, this,
                                    [&status](const QString &text) { status += text; });
    {
        const MarkingTranslator translator;
        tree.importLines({u"a.jpg,x"_s}, u","_s, {true, false, false, true, missing, missing});
        tree.importLines({u"a.jpg"_s});
        tree.import({missing}, u","_s);
    }
    disconnect(connection);
    // A text that does not change sends no signal.
    const QString running = "[Gedcom]"_L1 + Running;
    QCOMPARE(status, QStringList({running, u"[Gedcom]1 URL médias ajoutées."_s, running}));
    QCOMPARE(m_boxes->titles(), QStringList(3, u"[Gedcom]Erreur"_s));
    const QStringList starts{u"[Gedcom]Vérifiez l'accès aux dossiers "_s,
                             u"[Gedcom]Correspondance non détectée dans la ligne "_s,
                             u"[Gedcom]Impossible d'ouvrir le fichier "_s};
    for (qsizetype i = 0; i < starts.size(); ++i)
        QCOMPARE(m_boxes->texts().at(i).left(starts.at(i).size()), starts.at(i));
    m_boxesSeen = 3;
}

void TstCorrespondence::matching_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("index"); // of the file; -1 for none

    const auto row = [](const char *title, const QStringList &files, const QString &name,
                        int index) { QTest::newRow(title) << files << name << index; };
    const QString a = u"a.jpg"_s;
    row("at the end of a path", {u"media/a.jpg"_s}, a, 0);
    row("no path", {u"a.jpg"_s}, a, 0);
    row("path with backslashes", {uR"(C:\media\a.jpg)"_s}, a, 0);
    row("path with both", {uR"(C:/m\n/o\a.jpg)"_s}, a, 0);
    row("path from the root", {u"/a.jpg"_s}, a, 0);
    row("web address", {u"https://a.fr/m/a.jpg"_s}, a, 0);
    row("blank in the path", {u"mes photos/a.jpg"_s}, a, 0);
    row("name in capitals", {u"media/a.jpg"_s}, u"A.JPG"_s, -1);
    row("file in capitals", {u"media/A.JPG"_s}, a, -1);
    row("file in capitals before the other", {u"media/A.JPG"_s, u"media/a.jpg"_s}, a, 1);
    row("accent in another case", {u"media/é.jpg"_s}, u"É.jpg"_s, -1);
    row("accent written otherwise", {u"media/e\u0301.jpg"_s}, u"é.jpg"_s, -1);
    row("end of a longer name", {u"media/xa.jpg"_s}, a, -1);
    row("end of a longer name before the other", {u"media/xa.jpg"_s, u"media/a.jpg"_s}, a, 1);
    row("beginning of a longer name", {u"media/a.jpgx"_s}, a, -1);
    row("part of the name", {u"media/a.jpg"_s}, u"a"_s, -1);
    row("blank behind the file", {u"media/a.jpg "_s}, a, -1);
    row("blank in front of the file", {u"media/ a.jpg"_s}, a, -1);
    row("name as a folder", {u"a.jpg/b.jpg"_s}, a, -1);
    row("name as a folder and as the file", {u"a.jpg/a.jpg"_s}, a, 0);
    row("name as the last folder", {u"media/a.jpg/"_s}, a, -1);
    row("name as the last folder, backslash", {uR"(media\a.jpg\)"_s}, a, -1);
    row("name with its path", {u"media/a.jpg"_s}, u"media/a.jpg"_s, -1);
    row("name with its path, backslash", {uR"(media\a.jpg)"_s}, uR"(media\a.jpg)"_s, -1);
    row("name with a slash in front", {u"/a.jpg"_s}, u"/a.jpg"_s, -1);
    row("the first of the same name", {u"x/a.jpg"_s, u"y/a.jpg"_s, u"a.jpg"_s}, a, 0);
    row("the first of the same name behind others", {u"b.jpg"_s, u"y/a.jpg"_s, u"x/a.jpg"_s}, a, 1);
    row("elsewhere", {u"media/b.jpg"_s, u"media/c.jpg"_s}, a, -1);
    row("placeholder", {u"%2/%1.jpg"_s}, u"%1.jpg"_s, 0);
    row("what an expression would match", {u"media/axjpg"_s}, a, -1);
    row("signs of an expression", {u"media/(a)+[1]*.jpg"_s}, u"(a)+[1]*.jpg"_s, 0);

    row("1, the level of all", {u"media/a.jpg"_s, u"media/1"_s}, u"1"_s, 0);
    row("1 in a longer name", {u"media/11"_s}, u"11"_s, 0);
    row("another digit", {u"media/a.jpg"_s, u"media/2"_s}, u"2"_s, 1);
    row("0", {u"media/0"_s}, u"0"_s, 0);
    row("FILE, the tag of all", {u"media/a.jpg"_s, u"media/FILE"_s}, u"FILE"_s, 0);
    row("file", {u"media/file"_s}, u"file"_s, -1);
    row("E, in the tag", {u"media/E"_s}, u"E"_s, -1);
    row("e, in the tag", {u"media/e"_s}, u"e"_s, -1);
    row("il, in the tag", {u"media/il"_s}, u"il"_s, -1);
    row("a, not in the tag", {u"media/a"_s}, u"a"_s, 0);
    row("FILE and more", {u"media/FILE1"_s}, u"FILE1"_s, 0);
    row("media, a folder", {u"media/a.jpg"_s}, u"media"_s, -1);
    row("media, a file", {u"media/a.jpg"_s, u"media"_s}, u"media"_s, 1);
    row("media, both", {u"media/media"_s}, u"media"_s, 0);
    row("OBJE, the tag of the record", {u"media/a.jpg"_s}, u"OBJE"_s, -1);
}

void TstCorrespondence::matching()
{
    QFETCH(const QStringList, files);
    QFETCH(const QString, name);
    QFETCH(const int, index);

    Tree tree(library(files));
    QStringList lines = tree.lines();
    const PlainImport plain(&tree);
    QCOMPARE(plain.files().size(), files.size());
    QCOMPARE(tree.gedcom.getObjeFileFromFileName(name, plain.files()),
             index == -1 ? nullptr : plain.files().at(index));

    // Each line is handled like the first.
    const QStringList urls{u"http://a.fr/1"_s, u"http://a.fr/2"_s};
    QStringList changes;
    for (const QString &url : urls) {
        if (index == -1) {
            changes += notFound(name, url, tree.path());
            continue;
        }
        changes += linked(name, url, fileLine(index));
        addLink(&lines, index, url);
    }
    const int links = index == -1 ? 0 : 2;
    QCOMPARE(tree.importLines({name + u'|' + urls.at(0), name + u'|' + urls.at(1)}, u"|"_s), links);
    QCOMPARE(tree.newJournal(), tree.journalOf(2, changes + linkSum(links)));
    QCOMPARE(tree.lines(), lines);
}

void TstCorrespondence::shapes_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QStringList>("after");
    QTest::addColumn<QStringList>("journal"); // "~" is the path of the file

    const auto row = [](const char *title, const QStringList &lines, const QStringList &after,
                        const QStringList &journal) {
        QTest::newRow(title) << lines << after << journal;
    };
    const QStringList media{u"0 @O1@ OBJE"_s, u"1 FILE media/a.jpg"_s};
    const QStringList source{u"0 @S1@ SOUR"_s, u"1 OBJE @O1@"_s};
    const QString www = u"1 WWW u"_s;
    const QString note = u"2 NOTE Source : u"_s;
    const QString sum = u"INFO : Ajout de 1 balises SOUR.WWW"_s;
    const QString wwwLog = linked(u"a.jpg"_s, u"u"_s, u"2"_s);
    const auto unseen = [&row](const char *title, const QStringList &lines) {
        row(title, lines, lines, {});
    };
    const auto undetected = [&row](const char *title, const QStringList &lines) {
        row(title, lines, lines, {notFound(u"a.jpg"_s, u"u"_s, u"~"_s)});
    };
    const auto sourceOnly = [&](const char *title, const QStringList &citing) {
        row(title, media + source + citing, media + source + QStringList{www} + citing,
            {wwwLog, sum});
    };

    unseen("no source refers to the media", media + QStringList{u"0 @S1@ SOUR"_s, u"1 TITL x"_s});
    unseen("a person refers to the media", media + QStringList{u"0 @I1@ INDI"_s, u"1 OBJE @O1@"_s});
    unseen("references that only look like it",
           media
               + QStringList{u"0 @S1@ SOUR"_s, u"1 OBJE @O12@"_s, u"1 OBJE @O1@ x"_s,
                             u"1 OBJE @O1@ "_s, u"1 OBJE @O1"_s, u"1 OBJE @o1@"_s,
                             u"1 OBJE  @O1@"_s, u"1 OBJET @O1@"_s, u"1 _OBJE @O1@"_s, u"1 DATA"_s,
                             u"2 OBJE @O1@"_s, u"1 @O1@ OBJE"_s});
    unseen("source records that only look like it",
           media
               + QStringList{u"0 @S1A@ SOUR"_s, u"1 OBJE @O1@"_s, u"0 @S@ SOUR"_s, u"1 OBJE @O1@"_s,
                             u"0 @S1@ SOUR x"_s, u"1 OBJE @O1@"_s, u"0 SOUR"_s, u"1 OBJE @O1@"_s,
                             u"0 @s1@ SOUR"_s, u"1 OBJE @O1@"_s, u"0 @X1@ SOUR"_s, u"1 OBJE @O1@"_s,
                             u"0 @S1@ SOURCE"_s, u"1 OBJE @O1@"_s});
    sourceOnly("citation of the person itself", {u"0 @I1@ INDI"_s, u"1 SOUR @S1@"_s});
    sourceOnly("citation below a detail of the event",
               {u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"2 DATE 1900"_s, u"3 SOUR @S1@"_s});
    sourceOnly("citations in other records",
               {u"0 @N1@ NOTE"_s, u"1 BIRT"_s, u"2 SOUR @S1@"_s, u"0 @S2@ SOUR"_s, u"1 DATA"_s,
                u"2 SOUR @S1@"_s, u"0 @X1@ INDI"_s, u"1 BIRT"_s, u"2 SOUR @S1@"_s, u"0 @F1A@ FAM"_s,
                u"1 MARR"_s, u"2 SOUR @S1@"_s, u"0 @I1@ INDIV"_s, u"1 BIRT"_s, u"2 SOUR @S1@"_s,
                u"0 @F1@ FAM x"_s, u"1 MARR"_s, u"2 SOUR @S1@"_s});
    sourceOnly("citations of other sources",
               {u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"2 SOUR @S11@"_s, u"2 SOUR @S1@ x"_s,
                u"2 SOUR @S1"_s, u"2 SOUR Mairie"_s, u"2 _SOUR @S1@"_s, u"2 NOTE @S1@"_s});
    undetected("records that only look like it",
               {u"0 @M1@ OBJE"_s, u"1 FILE media/a.jpg"_s, u"0 OBJE"_s, u"1 FILE media/a.jpg"_s,
                u"0 @O1@ OBJE x"_s, u"1 FILE media/a.jpg"_s, u"0 @O1A@ OBJE"_s,
                u"1 FILE media/a.jpg"_s, u"0 @O1@ INDI"_s, u"1 FILE media/a.jpg"_s,
                u"0 @o1@ OBJE"_s, u"1 FILE media/a.jpg"_s, u"0 @S1@ SOUR"_s, u"1 OBJE @O1@"_s});
    undetected("files that only look like it",
               {u"0 @O1@ OBJE"_s, u"1 FILES media/a.jpg"_s, u"1 file media/a.jpg"_s,
                u"1 _FILE media/a.jpg"_s, u"1 TITL media/a.jpg"_s, u"2 FILE media/a.jpg"_s,
                u"1 FILE"_s, u"0 @S1@ SOUR"_s, u"1 OBJE @O1@"_s});
    undetected("file of a person and of a source",
               {u"0 @I1@ INDI"_s, u"1 FILE media/a.jpg"_s, u"1 OBJE"_s, u"2 FILE media/a.jpg"_s,
                u"0 @S1@ SOUR"_s, u"1 FILE media/a.jpg"_s});

    // The persons come before the families, wherever they are in the file.
    row("events of families and persons",
        media + source
            + QStringList{u"0 @F1@ FAM"_s, u"1 MARR"_s, u"2 SOUR @S1@"_s, u"0 @I2@ INDI"_s,
                          u"1 NAME x"_s, u"2 SOUR @S1@"_s, u"1 DEAT"_s, u"2 SOUR @S2@"_s,
                          u"2 SOUR @S1@"_s},
        media + source
            + QStringList{www, u"0 @F1@ FAM"_s, u"1 MARR"_s, u"2 SOUR @S1@"_s, note,
                          u"0 @I2@ INDI"_s, u"1 NAME x"_s, u"2 SOUR @S1@"_s, note, u"1 DEAT"_s,
                          u"2 SOUR @S2@"_s, u"2 SOUR @S1@"_s, note},
        {wwwLog, noted(u"INDI.NAME"_s, u"2 NOTE Source : u"_s, u"@S1@"_s, u"3"_s),
         noted(u"INDI.DEAT"_s, u"2 NOTE Source : u"_s, u"@S1@"_s, u"3"_s),
         noted(u"FAM.MARR"_s, u"2 NOTE Source : u"_s, u"@S1@"_s, u"3"_s), sum,
         u"INFO : Ajout de 1 balises FAM.MARR.NOTE"_s,
         u"INFO : Ajout de 1 balises INDI.DEAT.NOTE"_s,
         u"INFO : Ajout de 1 balises INDI.NAME.NOTE"_s});
    row("several sources, in file order",
        media
            + QStringList{u"0 @S7@ SOUR"_s, u"1 TITL x"_s, u"1 OBJE @O1@"_s, u"0 @S5@ SOUR"_s,
                          u"1 OBJE @O2@"_s, u"0 @S1@ SOUR"_s, u"1 OBJE @O1@"_s, u"1 AUTH y"_s,
                          u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"2 SOUR @S1@"_s, u"1 DEAT"_s,
                          u"2 SOUR @S7@"_s},
        media
            + QStringList{u"0 @S7@ SOUR"_s, u"1 TITL x"_s, u"1 OBJE @O1@"_s, www, u"0 @S5@ SOUR"_s,
                          u"1 OBJE @O2@"_s, u"0 @S1@ SOUR"_s, u"1 OBJE @O1@"_s, u"1 AUTH y"_s, www,
                          u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"2 SOUR @S1@"_s, note, u"1 DEAT"_s,
                          u"2 SOUR @S7@"_s, note},
        {wwwLog, noted(u"INDI.DEAT"_s, u"2 NOTE Source : u"_s, u"@S7@"_s, u"3"_s), wwwLog,
         noted(u"INDI.BIRT"_s, u"2 NOTE Source : u"_s, u"@S1@"_s, u"8"_s),
         u"INFO : Ajout de 2 balises SOUR.WWW"_s, u"INFO : Ajout de 1 balises INDI.BIRT.NOTE"_s,
         u"INFO : Ajout de 1 balises INDI.DEAT.NOTE"_s});
    row("second file of a record, behind other lines",
        {u"0 @I1@ INDI"_s, u"1 SEX M"_s, u"0 @O123@ OBJE"_s, u"1 TITL media/a.jpg"_s,
         u"1 FILE media/b.jpg"_s, u"2 FORM jpg"_s, u"1 FILE media/a.jpg"_s, u"0 @S9@ SOUR"_s,
         u"1 OBJE @O123@"_s, u"2 TITL x"_s},
        {u"0 @I1@ INDI"_s, u"1 SEX M"_s, u"0 @O123@ OBJE"_s, u"1 TITL media/a.jpg"_s,
         u"1 FILE media/b.jpg"_s, u"2 FORM jpg"_s, u"1 FILE media/a.jpg"_s, u"0 @S9@ SOUR"_s,
         u"1 OBJE @O123@"_s, www, u"2 TITL x"_s}, // there was one child: one line from the top
        {linked(u"a.jpg"_s, u"u"_s, u"7"_s), sum});
}

void TstCorrespondence::shapes()
{
    QFETCH(const QStringList, lines);
    QFETCH(const QStringList, after);
    QFETCH(QStringList, journal);

    Tree tree(lines);
    const int added = int(after.size() - lines.size());
    QCOMPARE(tree.importLines({u"a.jpg,u"_s}, u","_s, {true, true}), added);
    QCOMPARE(tree.newJournal(), tree.journalOf(1, journal.replaceInStrings(u"~"_s, tree.path())));
    QCOMPARE(tree.lines(), after);
}

void TstCorrespondence::deletedEntriesTakeNoPart()
{
    Tree tree({u"0 @O1@ OBJE"_s,        u"1 FILE media/a.jpg"_s,
               u"1 FILE media/b.jpg"_s, u"0 @O2@ OBJE"_s,
               u"1 FILE media/c.jpg"_s, u"0 @O3@ OBJE"_s,
               u"1 FILE media/a.jpg"_s, u"0 @S1@ SOUR"_s,
               u"1 OBJE @O1@"_s,        u"1 OBJE @O3@"_s,
               u"0 @S2@ SOUR"_s,        u"1 OBJE @O3@"_s,
               u"0 @S3@ SOUR"_s,        u"1 OBJE @O3@"_s,
               u"0 @I1@ INDI"_s,        u"1 BIRT"_s,
               u"2 SOUR @S3@"_s,        u"2 SOUR @S3@"_s,
               u"0 @I2@ INDI"_s,        u"1 BIRT"_s,
               u"2 SOUR @S3@"_s});
    const QList<TwItem *> all = tree.gedcom.getTabTotalTwItems();
    // The lines of the first file, of a record, of a reference, of a source, of a citation and of a
    // person.
    for (const int line : {2, 4, 10, 11, 17, 19})
        all.at(line - 1)->setDelete(true);
    QCOMPARE(tree.importLines({u"a.jpg,x"_s, u"b.jpg,y"_s, u"c.jpg,z"_s}, u","_s, {true, true}), 3);
    QCOMPARE(tree.newJournal(),
             tree.journalOf(3, {linked(u"a.jpg"_s, u"x"_s, u"7"_s),
                                noted(u"INDI.BIRT"_s, u"2 NOTE Source : x"_s, u"@S3@"_s, u"13"_s),
                                linked(u"b.jpg"_s, u"y"_s, u"3"_s),
                                notFound(u"c.jpg"_s, u"z"_s, tree.path()),
                                u"INFO : Ajout de 2 balises SOUR.WWW"_s,
                                u"INFO : Ajout de 1 balises INDI.BIRT.NOTE"_s}));
    QCOMPARE(tree.lines(),
             QStringList({u"0 @O1@ OBJE"_s, u"1 FILE media/b.jpg"_s, u"0 @O3@ OBJE"_s,
                          u"1 FILE media/a.jpg"_s, u"0 @S1@ SOUR"_s, u"1 OBJE @O1@"_s, u"1 WWW y"_s,
                          u"0 @S3@ SOUR"_s, u"1 OBJE @O3@"_s, u"1 WWW x"_s, u"0 @I1@ INDI"_s,
                          u"1 BIRT"_s, u"2 SOUR @S3@"_s, u"2 NOTE Source : x"_s}));
}

void TstCorrespondence::hiddenEntriesTakePart()
{
    Tree tree(library({u"media/a.jpg"_s}));
    const QList<TwItem *> all = tree.gedcom.getTabTotalTwItems();
    for (TwItem *twi : all)
        twi->setTwiHidden(true);
    QCOMPARE(tree.importLines({u"a.jpg,x"_s}), 1);
    QCOMPARE(tree.lines().constLast(), u"1 WWW x"_s);
    for (const TwItem *twi : all)
        QVERIFY(twi->isHidden());
}

void TstCorrespondence::placeholdersInPaths()
{
    Tree tree(library({u"media/a.jpg"_s}));
    Document doc;
    const QString ged = tree.write(u"arbre %1 %2 %3.ged"_s, readBytes(tree.path()));
    QVERIFY(doc.gedcom.genererVectorGed(ged, &doc.tree, &doc.progress, &doc.statusBar));
    doc.newJournal();
    const QString csv = tree.write(u"liens %1 %2.csv"_s, "b.jpg,x\n%3%1,%2\n");
    QCOMPARE(doc.gedcom.setMediaFileURL({csv}, u","_s, true, false, false, false, {}, {}), 0);
    QCOMPARE(doc.newJournal(),
             QStringList({loading(csv), counted(2), notFound(u"b.jpg"_s, u"x"_s, ged),
                          notFound(u"%3%1"_s, u"%2"_s, ged)}));
}

void TstCorrespondence::recordWithoutAnId()
{
    // A replacement has put the id into the tag column.
    Tree tree({u"0 _MEDIA"_s, u"1 TITL x"_s, u"1 FILE media/a.jpg"_s, u"0 @O2@ OBJE"_s,
               u"1 FILE media/b.jpg"_s, u"0 @S1@ SOUR"_s, u"1 OBJE @O1@"_s, u"1 OBJE @O2@"_s});
    tree.replace(u"_MEDIA"_s, u"@O1@ OBJE"_s, QString());
    const QStringList before = tree.lines();
    QCOMPARE(before.constFirst(), u"0 @O1@ OBJE"_s);
    tree.newJournal();
    QCOMPARE(tree.importLines({u"a.jpg,x"_s, u"b.jpg,y"_s}, u","_s, {true, true, true}), 1);
    QCOMPARE(tree.newJournal(),
             tree.journalOf(
                 2, {u"ERROR : Impossible de déterminer l'id de l'objet  0 @O1@ OBJE (l.3)"_s,
                     linked(u"b.jpg"_s, u"y"_s, u"5"_s),
                     u"INFO : Suppression de l'enregistrement : SOUR.OBJE 1 OBJE @O2@ (l.8)"_s,
                     u"INFO : Suppression de l'entrée : OBJE.FILE 1 FILE media/b.jpg (l.5)"_s,
                     u"INFO : Suppression de l'enregistrement : OBJE 0 @O2@ OBJE (l.4)"_s,
                     u"INFO : Ajout de 1 balises SOUR.WWW"_s,
                     u"INFO : Sppression de 1 enregistrements OBJE"_s}));
    QCOMPARE(tree.lines(), QStringList({u"0 @O1@ OBJE"_s, u"1 TITL x"_s, u"1 FILE media/a.jpg"_s,
                                        u"0 @S1@ SOUR"_s, u"1 OBJE @O1@"_s, u"1 WWW y"_s}));
}

void TstCorrespondence::idLostDuringTheRun_data()
{
    QTest::addColumn<QStringList>("replacement"); // text, its replacement, tags
    QTest::addColumn<QString>("error");

    const QString error = u"ERROR : Impossible de déterminer l'id de l'objet %1 (l.2)"_s;
    QTest::newRow("the id has another form")
        << QStringList{u"@O1@"_s, u"%1"_s, u"OBJE"_s}
        << QString(error).replace(u"%1"_s, u"OBJE 0 %1 OBJE"_s);
    QTest::newRow("the id goes") << QStringList{u"@O1@"_s, QString(), u"OBJE"_s}
                                 << error.arg(u"OBJE 0  OBJE"_s);
    // Then the way up to the root ends at the FILE entry itself.
    QTest::newRow("the file reads like a root")
        << QStringList{u"1"_s, u"0"_s, u"FILE"_s} << error.arg(u"OBJE.FILE 0 FILE media/a.jpg"_s);
}

void TstCorrespondence::idLostDuringTheRun()
{
    QFETCH(const QStringList, replacement);
    QFETCH(const QString, error);

    Tree tree(library({u"media/a.jpg"_s}));
    QStringList before;
    QStringList lines;
    const auto event = [&] {
        tree.replace(replacement.at(0), replacement.at(1), replacement.at(2));
        before = tree.newJournal();
        lines = tree.lines();
    };
    const AtProgress at(&tree.progress, {{100, event}});
    QCOMPARE(tree.importLines(QStringList(102, u"a.jpg,x"_s)), 100);
    QVERIFY(at.done());
    QCOMPARE(before.mid(0, 102),
             tree.journalOf(102, QStringList(100, linked(u"a.jpg"_s, u"x"_s, u"2"_s))));
    QCOMPARE(tree.newJournal(), QStringList({error, error}) + linkSum(100));
    QCOMPARE(tree.lines(), lines);
}

void TstCorrespondence::idsInAnotherColumn()
{
    Tree tree(Family);
    const auto event = [&] {
        TwItem *source = tree.entry(u"0 @S1@ SOUR"_s);
        source->setText(1, u"SOUR"_s);
        source->setText(2, u"@S1@"_s);
        TwItem *media = tree.entry(u"0 @O1@ OBJE"_s);
        media->setText(1, u"MEDIA"_s);
        media->setText(2, u"@O1@"_s);
        tree.newJournal();
    };
    const AtProgress at(&tree.progress, {{100, event}});
    QCOMPARE(tree.importLines(QStringList(101, u"a.jpg,http://a.fr/1"_s), u","_s, {true, true}),
             202);
    QVERIFY(at.done());
    QCOMPARE(tree.newJournal(),
             QStringList({linked(u"a.jpg"_s, u"http://a.fr/1"_s, u"9"_s, u"MEDIA.FILE"_s),
                          noted(u"INDI.BIRT.NOTE"_s, u"3 CONT http://a.fr/1"_s, u"@S1@"_s, u"6"_s),
                          u"INFO : Ajout de 101 balises SOUR.WWW"_s,
                          u"INFO : Ajout de 1 balises INDI.BIRT.NOTE"_s,
                          u"INFO : Ajout de 100 balises INDI.BIRT.NOTE.CONT"_s}));
}

void TstCorrespondence::rootThatReadsOtherwise()
{
    // The columns of the record are "0 @O1@" and "OBJE": its line is that of a media record.
    Tree tree({u"0 _MEDIA"_s, u"1 FILE media/a.jpg"_s, u"0 @O2@ OBJE"_s, u"1 FILE media/b.jpg"_s,
               u"0 @S1@ SOUR"_s, u"1 OBJE @O1@"_s, u"1 OBJE @O2@"_s});
    tree.replace(u"0"_s, u"0 @O1@"_s, u"_MEDIA"_s);
    tree.replace(u"_MEDIA"_s, u"OBJE"_s, u"_MEDIA"_s);
    QStringList lines = tree.lines();
    QCOMPARE(lines.constFirst(), u"0 @O1@ OBJE"_s);
    tree.newJournal();
    QCOMPARE(tree.importLines({u"a.jpg,x"_s, u"b.jpg,y"_s}, u","_s, {true, true}), 1);
    // The line is skipped: there is no record whose id could be read.
    QCOMPARE(tree.newJournal(),
             tree.journalOf(2, QStringList{linked(u"b.jpg"_s, u"y"_s, u"4"_s)} + linkSum(1)));
    QCOMPARE(tree.lines(), lines + QStringList{u"1 WWW y"_s});
}

void TstCorrespondence::rootThatReadsOtherwiseDuringTheRun_data()
{
    QTest::addColumn<QString>("tag");

    QTest::newRow("media record") << u"OBJE"_s;
    QTest::newRow("source record") << u"SOUR"_s;
}

void TstCorrespondence::rootThatReadsOtherwiseDuringTheRun()
{
    QFETCH(const QString, tag);

    Tree tree(library({u"media/a.jpg"_s}));
    QStringList lines;
    const auto event = [&] {
        tree.replace(u"0"_s, u"9"_s, tag);
        lines = tree.lines();
        tree.newJournal();
    };
    const AtProgress at(&tree.progress, {{100, event}});
    QCOMPARE(tree.importLines(QStringList(102, u"a.jpg,x"_s), u","_s, {true, true, false}), 100);
    QVERIFY(at.done());
    QCOMPARE(tree.newJournal(), linkSum(100));
    QCOMPARE(tree.lines(), lines);
}

void TstCorrespondence::missingFolders_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("dest");

    QTest::newRow("source missing") << u"rien"_s << u"garde"_s;
    QTest::newRow("destination missing") << u"medias"_s << u"rien"_s;
    QTest::newRow("both missing") << u"rien %1"_s << u"rien %2"_s;
    QTest::newRow("the same missing folder") << u"rien"_s << u"rien"_s;
    QTest::newRow("source is a file") << u"arbre.ged"_s << u"garde"_s;
    QTest::newRow("destination is a file") << u"medias"_s << u"medias/a.jpg"_s;
    QTest::newRow("source in a closed folder") << u"clos/medias"_s << u"garde"_s;
    QTest::newRow("destination in a closed folder") << u"medias"_s << u"clos/medias"_s;
}

void TstCorrespondence::missingFolders()
{
    QFETCH(const QString, source);
    QFETCH(const QString, dest);
    if (source.startsWith("clos/"_L1) || dest.startsWith("clos/"_L1))
        SKIP_ON_WINDOWS(NoRights);

    Tree tree(Family);
    const CurrentFolder current(tree.folder()); // the folders above do not matter
    for (const QString &folder : {u"medias"_s, u"garde"_s, u"clos/medias"_s})
        QDir().mkpath(folder);
    tree.write(u"medias/a.jpg"_s, "a");
    tree.write(u"medias/b.jpg"_s, "b");
    tree.write(u"liens.csv"_s, "a.jpg,http://a.fr/1\n");
    QFile::setPermissions(u"clos"_s, {});
    // The folders that exist are writable.
    constexpr QFile::Permissions All = ForReading | ForEntering | QFile::WriteOwner
                                     | QFile::WriteUser | QFile::WriteGroup | QFile::WriteOther;
    for (const QString &folder : {u"."_s, u"medias"_s, u"garde"_s})
        QFile::setPermissions(folder, All);
    QFile::setPermissions(u"liens.csv"_s, ForReading);

    QStringList journal;
    QString status;
    m_boxes->setInspector([&](QMessageBox *) {
        journal = tree.newJournal();
        status = tree.status();
    });
    int result = -1;
    {
        const Unprivileged unprivileged;
        result = tree.import({u"liens.csv"_s}, u","_s, {true, true, true, true, source, dest});
    }
    QFile::setPermissions(u"clos"_s, All);

    compareBoxes({u"Vérifiez l'accès aux dossiers "_s + source + " et "_L1 + dest});
    QCOMPARE(journal, QStringList());
    QCOMPARE(status, Running);
    QCOMPARE(result, 2);
    // Links and deletions as usual, and nothing about the folders.
    QCOMPARE(tree.newJournal(),
             QStringList({loading(u"liens.csv"_s), counted(1), FamilyWww, FamilyNote,
                          u"INFO : Suppression de l'enregistrement : SOUR.OBJE 1 OBJE @O1@ (l.7)"_s,
                          u"INFO : Suppression de l'entrée : OBJE.FILE 1 FILE media/a.jpg (l.9)"_s,
                          u"INFO : Suppression de l'enregistrement : OBJE 0 @O1@ OBJE (l.8)"_s,
                          u"INFO : Ajout de 1 balises SOUR.WWW"_s,
                          u"INFO : Ajout de 1 balises INDI.BIRT.NOTE"_s,
                          u"INFO : Sppression de 1 enregistrements OBJE"_s}));
    QCOMPARE(tree.status(), linkStatus(1));
    QCOMPARE(listing(u"."_s),
             QStringList({u"arbre.ged"_s, u"clos/"_s, u"garde/"_s, u"liens.csv"_s, u"medias/"_s}));
    QCOMPARE(listing(u"medias"_s), QStringList({u"a.jpg"_s, u"b.jpg"_s}));
    QCOMPARE(listing(u"garde"_s), QStringList());
    QCOMPARE(listing(u"clos/medias"_s), QStringList());
}

void TstCorrespondence::foldersAreLookedAtFirst()
{
    Tree tree(library({u"media/a.jpg"_s, u"media/b.jpg"_s}));
    const QString missing = tree.path(u"rien"_s);
    const Options options{true, false, false, true, missing, missing};
    const QString box = u"Vérifiez l'accès aux dossiers "_s + missing + " et "_L1 + missing;

    // A missing file is reported after the folders.
    QCOMPARE(tree.import({missing}, u","_s, options), 0);
    compareBoxes({box, "Impossible d'ouvrir le fichier "_L1 + missing});
    QCOMPARE(tree.newJournal(),
             QStringList({loading(missing), u"ERROR : Chargement du fichier impossible."_s}));

    // A file created while the box is open comes in time; a folder does not. An entry deleted by
    // then is in no list.
    m_boxes->setInspector([&](QMessageBox *) {
        tree.entry(u"1 FILE media/b.jpg"_s)->setDelete(true);
        writeBytes(tree.csv(), "a.jpg,x\nb.jpg,y\n");
        QDir().mkdir(missing);
        writeBytes(missing + "/a.jpg"_L1, "a");
    });
    QCOMPARE(tree.import({tree.csv()}, u","_s, options), 1);
    compareBoxes({box});
    QCOMPARE(tree.newJournal(),
             tree.journalOf(2, QStringList{linked(u"a.jpg"_s, u"x"_s, u"2"_s),
                                           notFound(u"b.jpg"_s, u"y"_s, tree.path())}
                                   + linkSum(1)));
}

void TstCorrespondence::foldersWithoutExtraction()
{
    Tree tree(library({u"media/a.jpg"_s}));
    const QString missing = tree.path(u"rien"_s);
    QCOMPARE(
        tree.importLines({u"a.jpg,x"_s}, u","_s, {true, false, false, false, missing, missing}), 1);
    QCOMPARE(tree.newJournal(),
             tree.journalOf(1, QStringList{linked(u"a.jpg"_s, u"x"_s, u"2"_s)} + linkSum(1)));

    // Existing folders are left alone as well.
    const QString medias = tree.path(u"medias"_s);
    const QString garde = tree.path(u"garde"_s);
    QDir().mkdir(medias);
    QDir().mkdir(garde);
    tree.write(u"medias/b.jpg"_s, "b");
    QCOMPARE(tree.importLines({u"a.jpg,x"_s}, u","_s, {true, false, false, false, medias, garde}),
             1);
    QCOMPARE(listing(garde), QStringList());
}

void TstCorrespondence::listedNames()
{
    SKIP_ON_WINDOWS(NoLinks);
    Tree tree(library({u"media/a.jpg"_s}));
    const QString medias = tree.path(u"medias"_s);
    const QString garde = tree.path(u"garde"_s);
    QDir().mkpath(medias + "/album"_L1);
    QDir().mkdir(garde);
    for (const QString &name : {u"medias/a.jpg"_s, u"medias/sans extension"_s, u"medias/.cache"_s,
                                u"medias/album/c.jpg"_s})
        tree.write(name, name.toUtf8());
    QFile::link(medias + "/a.jpg"_L1, medias + "/lien.jpg"_L1);
    QFile::link(medias + "/rien.jpg"_L1, medias + "/lien sans but.jpg"_L1);
    const Options options{true, false, false, true, medias, garde};
    const QString copied = u"INFO : Copie de %1 objets média dans le dossier "_s + garde;

    // Everything but the hidden file and the dangling link counts, even a folder, which cannot be
    // copied.
    QCOMPARE(tree.importLines({u"a.jpg,x"_s}, u","_s, options), 1);
    QCOMPARE(tree.newJournal(),
             tree.journalOf(1, QStringList{linked(u"a.jpg"_s, u"x"_s, u"2"_s),
                                           QString(copied).replace(u"%1"_s, u"4"_s)}
                                   + linkSum(1)));
    QCOMPARE(listing(garde), QStringList({u"a.jpg"_s, u"lien.jpg"_s, u"sans extension"_s}));
    QCOMPARE(readBytes(garde + "/a.jpg"_L1), QByteArray("medias/a.jpg"));

    // An empty folder counts as none.
    QDir(medias).removeRecursively();
    QDir().mkdir(medias);
    QCOMPARE(tree.importLines({u"b.jpg,x"_s}, u","_s, options), 0);
    QCOMPARE(tree.newJournal(), tree.journalOf(1, {notFound(u"b.jpg"_s, u"x"_s, tree.path())}));
}

void TstCorrespondence::listedOnce()
{
    Tree tree(library({u"media/a.jpg"_s}));
    const QString medias = tree.path(u"medias"_s);
    const QString garde = tree.path(u"garde"_s);
    QDir().mkdir(medias);
    QDir().mkdir(garde);
    tree.write(u"medias/b.jpg"_s, "b");
    tree.write(u"medias/c.jpg"_s, "c");
    const auto event = [&] {
        tree.write(u"medias/neuf.jpg"_s, "neuf");
        QFile::remove(medias + "/c.jpg"_L1);
    };
    const AtProgress at(&tree.progress, {{100, event}});
    QCOMPARE(tree.importLines(QStringList(100, u"z,x"_s), u","_s,
                              {true, false, false, true, medias, garde}),
             0);
    QVERIFY(at.done());
    QCOMPARE(tree.newJournal().constLast(),
             u"INFO : Copie de 2 objets média dans le dossier "_s + garde);
    QCOMPARE(listing(garde), QStringList{u"b.jpg"_s});
}

void TstCorrespondence::closedFolder()
{
    SKIP_ON_WINDOWS(NoRights);
    Tree tree(library({u"media/a.jpg"_s}));
    const CurrentFolder current(tree.folder());
    QDir().mkdir(u"medias"_s);
    QDir().mkdir(u"garde"_s);
    tree.write(u"medias/a.jpg"_s, "a");
    tree.write(u"liens.csv"_s, "a.jpg,x\n");
    QFile::setPermissions(u"liens.csv"_s, ForReading);
    QFile::setPermissions(u"."_s, ForReading | ForEntering);
    QFile::setPermissions(u"medias"_s, {});
    int result = -1;
    {
        const Unprivileged unprivileged;
        result = tree.import({u"liens.csv"_s}, u","_s,
                             {true, false, false, true, u"medias"_s, u"garde"_s});
    }
    for (const QString &folder : {u"."_s, u"medias"_s})
        QFile::setPermissions(folder, ForReading | ForEntering | QFile::WriteOwner);

    // It exists, but its content cannot be listed.
    QCOMPARE(result, 1);
    QCOMPARE(tree.newJournal(),
             QStringList({loading(u"liens.csv"_s), counted(1), linked(u"a.jpg"_s, u"x"_s, u"2"_s)})
                 + linkSum(1));
    QCOMPARE(listing(u"garde"_s), QStringList());
}

void TstCorrespondence::frame()
{
    Tree tree(library({u"media/a.jpg"_s}));
    Told told(&tree);
    told.inDetail();
    QCOMPARE(tree.importLines(QStringList(150, u"a.jpg,x"_s)), 150);

    const QStringList journal = QStringList{loading(tree.csv()), counted(150)}
                              + QStringList(150, linked(u"a.jpg"_s, u"x"_s, u"2"_s)) + linkSum(150);
    const QStringList start{u"debug: ON setMediaFileURL"_s,
                            u"bar at -1 of 5"_s, // the range is still that of the load
                            "status: "_L1 + Running, u"bar at -1 of 5"_s};
    const QStringList end{"status: "_L1 + linkStatus(150), u"bar at 100 of 150"_s,
                          u"debug: OFF setMediaFileURL"_s, u"bar at 100 of 150"_s};
    QCOMPARE(told.take(), start + withMoves(journal, {{102, u"100 of 150"_s}}) + end);
    QCOMPARE(tree.progress.value(), -1);
}

void TstCorrespondence::told()
{
    Tree tree(library({u"media/a.jpg"_s}));
    // A line that fails moves the bar as well.
    const QStringList lines =
        QStringList(98, u"z;y"_s) + QStringList{u";"_s, u"a.jpg;x"_s, u"z;"_s};
    Told told(&tree);
    QCOMPARE(tree.importLines(lines, u";"_s), 1);
    const QStringList all = told.take();
    QStringList expected{"status: "_L1 + Running, loading(tree.csv()), counted(101)};
    expected += QStringList(98, notFound(u"z"_s, u"y"_s, tree.path()));
    expected += {u"ERROR : Erreur dans la ligne ;"_s,
                 linked(u"a.jpg"_s, u"x"_s, u"2"_s),
                 u"bar: 100 of 101"_s,
                 u"events"_s,
                 u"ERROR : Erreur dans la ligne z;"_s,
                 u"INFO : Ajout de 1 balises SOUR.WWW"_s,
                 "status: "_L1 + linkStatus(1)};
    QCOMPARE(all, expected);
}

void TstCorrespondence::barKeepsItsVisibility()
{
    Tree tree(library({u"media/a.jpg"_s}));
    tree.importLines(QStringList(100, u"a.jpg,x"_s));
    QVERIFY(!tree.progress.isVisible());
    tree.progress.show();
    tree.importLines(QStringList(100, u"a.jpg,x"_s));
    QVERIFY(tree.progress.isVisible());
}

void TstCorrespondence::eventsDuringTheRun_data()
{
    QTest::addColumn<QStringList>("note");
    QTest::addColumn<bool>("urlEvt");

    const QStringList note{u"2 NOTE Source : http://a.fr/0"_s};
    QTest::newRow("links in the sources") << note << false;
    QTest::newRow("links in the events") << QStringList() << true;
    QTest::newRow("links in front of other rows of a note")
        << note + QStringList{u"3 CONT x"_s, u"3 DATE 1900"_s} << true;
}

void TstCorrespondence::eventsDuringTheRun()
{
    QFETCH(const QStringList, note);
    QFETCH(const bool, urlEvt);

    Tree tree(QStringList{u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"2 SOUR @S1@"_s} + note
              + QStringList{u"0 @S1@ SOUR"_s, u"1 OBJE @O1@"_s, u"0 @O1@ OBJE"_s,
                            u"1 FILE media/a.jpg"_s, u"0 @S2@ SOUR"_s, u"1 OBJE @O2@"_s,
                            u"0 @O2@ OBJE"_s, u"1 FILE media/c.jpg"_s}
              // The bar of the replacement must reach the values of this one.
              + QStringList{u"0 @N1@ NOTE"_s} + QStringList(300, u"1 CONT x"_s));
    const qsizetype before = tree.lines().size();
    // What a step leaves behind: the new lines of the tree, and the matches in the journal.
    QStringList states;
    const auto look = [&] {
        const QStringList journal = tree.newJournal();
        states += u"%1 lines more"_s.arg(tree.lines().size() - before);
        for (const QString &name : {u"a.jpg"_s, u"b.jpg"_s, u"c.jpg"_s}) {
            states += u"%1 linked %2 times, not found %3 times"_s.arg(name)
                          .arg(journal.filter(" OBJE.FILE "_L1 + name).size())
                          .arg(journal.filter("ERROR : "_L1 + name).size());
        }
    };
    const auto rename = [&] {
        look();
        tree.replace(u"a.jpg"_s, u"b.jpg"_s, u"FILE"_s);
        tree.newJournal();
    };
    const auto remove = [&] {
        look();
        // Entries that are marked as deleted now are still found.
        QCOMPARE(tree.gedcom.delListTag({u"FILE"_s, u"SOUR.OBJE"_s}, false, false, false, false,
                                        QString()),
                 4);
        tree.newJournal();
    };
    const AtProgress at(&tree.progress, {{100, rename}, {200, remove}});
    // Every hundred has 40, 30 and 30 of the three.
    QStringList lines;
    for (int i = 0; i < 300; ++i)
        lines += (i % 10 < 4 ? u"a.jpg,x"_s : i % 10 < 7 ? u"b.jpg,y"_s : u"c.jpg,z"_s);
    const int eachOfS1 = urlEvt ? 2 : 1;
    const int result = tree.importLines(lines, u","_s, {true, urlEvt});
    look();
    QVERIFY(at.done());
    QCOMPARE(states,
             QStringList({
                 u"%1 lines more"_s.arg(40 * eachOfS1 + 30),
                 u"a.jpg linked 40 times, not found 0 times"_s,
                 u"b.jpg linked 0 times, not found 30 times"_s,
                 u"c.jpg linked 30 times, not found 0 times"_s,
                 u"%1 lines more"_s.arg(70 * eachOfS1 + 60),
                 u"a.jpg linked 0 times, not found 40 times"_s,
                 u"b.jpg linked 30 times, not found 0 times"_s,
                 u"c.jpg linked 30 times, not found 0 times"_s,
                 u"%1 lines more"_s.arg(100 * eachOfS1 + 90 - 4), // without the deleted ones
                 u"a.jpg linked 0 times, not found 40 times"_s,
                 u"b.jpg linked 30 times, not found 0 times"_s,
                 u"c.jpg linked 30 times, not found 0 times"_s,
             }));
    QCOMPARE(result, 100 * eachOfS1 + 90);
    QCOMPARE(tree.status(), linkStatus(190));
}

void TstCorrespondence::generatedNames_data()
{
    QTest::addColumn<int>("seed");
    QTest::addColumn<bool>("delTagObjeFile");
    QTest::addColumn<bool>("renames");

    for (int seed = 1; seed <= 3; ++seed) {
        const auto row = [seed](const char *title, bool delTagObjeFile, bool renames) {
            QTest::addRow("%s, %d", title, seed) << seed << delTagObjeFile << renames;
        };
        row("links only", false, false);
        row("with deletions", true, false);
        row("with events that rename", false, true);
        row("with deletions and events that rename", true, true);
    }
}

void TstCorrespondence::generatedNames()
{
    QFETCH(const int, seed);
    QFETCH(const bool, delTagObjeFile);
    QFETCH(const bool, renames);

    const QStringList pieces{
        u"1"_s,      u"E"_s,       u"e"_s,       u"file"_s,     u"FILE"_s,       u"File"_s,
        u"I"_s,      u"0"_s,       u"11"_s,      u"media"_s,    u"MEDIA"_s,      u"a"_s,
        u"a.jpg"_s,  u"A.JPG"_s,   u"a.Jpg"_s,   u"xa.jpg"_s,   u"a.jpg2"_s,     u"o.jpg"_s,
        u"a.png"_s,  u"été.jpg"_s, u"Été.jpg"_s, u"FILE.jpg"_s, u"1.jpg"_s,      u"%1.jpg"_s,
        u" a.jpg"_s, u"a b.jpg"_s, u"OBJE"_s,    u"IMAGE"_s,    u"FILE a.jpg"_s, u"@O1@"_s,
    };
    const QStringList folders{QString(),     u"media/"_s, uR"(C:\media\)"_s, u"a.jpg/"_s,
                              uR"(FILE\)"_s, u"1/"_s,     uR"(e/1\)"_s,      u"/"_s};
    QRandomGenerator random(seed);
    const auto any = [&random](const QStringList &list) {
        return list.at(random.bounded(int(list.size())));
    };
    const auto anyName = [&]() -> QString {
        switch (random.bounded(4)) {
        case 0:
            return u"img%1.jpg"_s.arg(random.bounded(40));
        case 1:
            return u"IMG%1.jpg"_s.arg(random.bounded(40));
        default:
            return any(pieces);
        }
    };
    QStringList lines;
    for (int i = 1; i <= 80; ++i) {
        lines += {u"0 @O%1@ OBJE"_s.arg(i), "1 FILE "_L1 + any(folders) + anyName()};
        if (i % 7 == 0)
            lines += {u"1 TITL x"_s, "1 FILE "_L1 + any(folders) + anyName()};
        // Some media are shown by no source, and some by several.
        lines += {u"0 @S%1@ SOUR"_s.arg(i), u"1 OBJE @O%1@"_s.arg(1 + random.bounded(80)),
                  u"1 OBJE @O%1@"_s.arg(i)};
    }
    Tree tree(lines);
    // What replacements can do: the value or a part of it moves into another column.
    const PlainImport plain(&tree);
    const QList<TwItem *> files = plain.files();
    for (qsizetype i = 0; i < files.size(); i += 9) {
        files.at(i)->setText(1, "FILE "_L1 + any(folders) + anyName());
        files.at(i)->setText(2, i % 2 == 0 ? u"FILE"_s : anyName());
    }
    files.constLast()->setText(0, u"1 FILE media/img1.jpg"_s);

    QStringList correspondences;
    for (int i = 0; i < 420; ++i) {
        const QString folder = random.bounded(20) == 0 ? any(folders) : QString();
        correspondences += folder + anyName() + u"|http://a.fr/%1"_s.arg(i);
    }
    const auto compareSearches = [&] {
        for (const QString &line : std::as_const(correspondences)) {
            const QString name = line.section(u'|', 0, 0);
            QCOMPARE(tree.gedcom.getObjeFileFromFileName(name, files), plain.find(name));
        }
    };

    compareSearches();
    const QStringList withoutEvents = plain.logs(correspondences);
    QStringList expected = withoutEvents;
    QHash<int, std::function<void()>> events;
    if (renames) {
        expected = plain.logs(correspondences.mid(0, 100));
        const auto rename = [&](int line, int count, const QString &before, const QString &after) {
            events.insert(line, [&, line, count, before, after] {
                tree.replace(before, after, u"FILE"_s);
                compareSearches();
                expected += plain.logs(correspondences.mid(line, count));
            });
        };
        rename(100, 100, u"img"_s, u"IMG"_s);
        rename(200, 100, u"a.jpg"_s, u"o.jpg"_s);
        rename(300, -1, u"FILE"_s, u"IMAGE"_s); // in the tag column
    }
    const AtProgress at(&tree.progress, events);
    tree.importLines(correspondences, u"|"_s, {true, false, delTagObjeFile});
    QVERIFY(at.done());

    static const QRegularExpression rxOutcome(u"^(ERROR : |INFO : Ajout de la balise SOUR.WWW )"_s);
    QCOMPARE(tree.newJournal().filter(rxOutcome), expected);
    // The generated document contains all kinds.
    const qsizetype errors = expected.filter(u"ERROR : "_s).size();
    QVERIFY(errors > 100);
    QVERIFY(expected.size() - errors > 100);
    QCOMPARE(expected != withoutEvents, renames);
}

void TstCorrespondence::formArguments_data()
{
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<QStringList>("journal"); // after the count; "~" is the folder
    QTest::addColumn<QString>("status");
    QTest::addColumn<QStringList>("copied");

    const auto row = [](const char *title, const QStringList &settings, const QStringList &journal,
                        int links, const QStringList &copied = {}) {
        QTest::newRow(title) << settings << journal << linkStatus(links) << copied;
    };
    const QString wwwSum = u"INFO : Ajout de 1 balises SOUR.WWW"_s;
    const QString noteSum = u"INFO : Ajout de 1 balises INDI.BIRT.NOTE"_s;
    const QStringList deleted{
        u"INFO : Suppression de l'enregistrement : SOUR.OBJE 1 OBJE @O1@ (l.7)"_s,
        u"INFO : Suppression de l'entrée : OBJE.FILE 1 FILE media/a.jpg (l.9)"_s,
        u"INFO : Suppression de l'enregistrement : OBJE 0 @O1@ OBJE (l.8)"_s};
    const auto deletionSum = [](int count) {
        return u"INFO : Sppression de %1 enregistrements OBJE"_s.arg(count);
    };
    const auto copies = [](int count) {
        return u"INFO : Copie de %1 objets média dans le dossier ~/garde"_s.arg(count);
    };
    const QString sour = u"cbUrlInSour"_s;
    const QString evt = u"cbUrlInEvt"_s;
    const QString del = u"cbDelTagObjeFile"_s;
    const QString extract = u"gbExtractMediasToKeep"_s;
    const QStringList all{u"a.jpg"_s, u"b.jpg"_s};

    row("nothing checked", {}, {}, 0);
    row("link in the source", {sour}, {FamilyWww, wwwSum}, 1);
    row("note in the event", {evt}, {FamilyNote, noteSum}, 0);
    row("both", {sour, evt}, {FamilyWww, FamilyNote, wwwSum, noteSum}, 1);
    row("deletion without a link", {del}, {deletionSum(0)}, 0);
    row("deletion with a link", {sour, del},
        QStringList{FamilyWww} + deleted + QStringList{wwwSum, deletionSum(1)}, 1);
    row("deletion with a note", {evt, del},
        QStringList{FamilyNote} + deleted + QStringList{noteSum, deletionSum(1)}, 0);
    row("extraction", {sour, extract}, {FamilyWww, copies(2), wwwSum}, 1, all);
    row("extraction alone", {extract}, {copies(2)}, 0, all);
    row("everything", {sour, evt, del, extract},
        QStringList{FamilyWww, FamilyNote} + deleted
            + QStringList{copies(1), wwwSum, noteSum, deletionSum(1)},
        1, {u"b.jpg"_s});
}

void TstCorrespondence::formArguments()
{
    QFETCH(const QStringList, settings);
    QFETCH(QStringList, journal);
    QFETCH(const QString, status);
    QFETCH(const QStringList, copied);

    ImportSession form;
    for (const QString &folder : {u"medias"_s, u"garde"_s})
        QDir().mkdir(form.path(folder));
    for (const QString &name : {u"medias/a.jpg"_s, u"medias/b.jpg"_s})
        writeBytes(form.path(name), {});
    // The folder fields are filled whether or not their group is checked.
    form.set({u"gbSetURLLinks"_s, u"gbExtractMediasToKeep"_s, u"leStrPlitCsv=;"_s});
    form.pick(u"pbExtractMediasSource"_s, form.path(u"medias"_s));
    form.pick(u"pbExtractMediasToKeep"_s, form.path(u"garde"_s));
    form.set({u"!gbExtractMediasToKeep"_s});
    form.set(settings);
    form.pickCsv({u"a.jpg;http://a.fr/1"_s});
    form.apply();

    journal.replaceInStrings(u"~"_s, form.folder());
    QCOMPARE(form.runJournal(), QStringList({loading(form.csv()), counted(1)}) + journal);
    QCOMPARE(form.status(), status);
    QCOMPARE(listing(form.path(u"garde"_s)), copied);
    QStringList lines = Family;
    if (settings.contains(u"cbUrlInSour"_s))
        lines = insertedBehind(lines, u"1 OBJE @O1@"_s, u"1 WWW http://a.fr/1"_s);
    if (settings.contains(u"cbUrlInEvt"_s))
        lines = insertedBehind(lines, u"2 SOUR @S1@"_s, u"2 NOTE Source : http://a.fr/1"_s);
    if (journal.contains(u"INFO : Sppression de 1 enregistrements OBJE"_s)) {
        for (const QString &line : {u"1 OBJE @O1@"_s, u"0 @O1@ OBJE"_s, u"1 FILE media/a.jpg"_s})
            lines.removeOne(line);
    }
    QCOMPARE(form.saved(), lines + QStringList{u"0 TRLR"_s});
}

void TstCorrespondence::formSeparator_data()
{
    QTest::addColumn<QString>("separator"); // "default" leaves the field as it is
    QTest::addColumn<QString>("line"); // "^" is the separator
    QTest::addColumn<QString>("address"); // "^" is the separator less its first character

    QTest::newRow("one character") << u";"_s << u"a.jpg;http://a.fr/1"_s << u"http://a.fr/1"_s;
    QTest::newRow("two characters") << u";;"_s << u"a.jpg;;b"_s << u";b"_s;
    QTest::newRow("blanks are kept") << u" ; "_s << u"a.jpg ; b "_s << u"; b "_s;
    QTest::newRow("that of the start")
        << u"default"_s << u"\"a.jpg^s/1.jpg?dl=0\",,"_s << u"^s/1.jpg?dl=0"_s;
}

void TstCorrespondence::formSeparator()
{
    QFETCH(QString, separator);
    QFETCH(QString, line);
    QFETCH(QString, address);

    ImportSession form;
    form.set({u"gbSetURLLinks"_s, u"cbUrlInSour"_s});
    if (separator == "default"_L1) {
        separator = form.text(u"leStrPlitCsv"_s);
        QVERIFY2(QRegularExpression(u"^,https?://[^/,]+/$"_s).match(separator).hasMatch(),
                 qPrintable(separator));
    }
    form.set({"leStrPlitCsv="_L1 + separator});
    line.replace(u"^"_s, separator);
    address.replace(u"^"_s, separator.mid(1));
    form.pickCsv({line});
    form.apply();
    QCOMPARE(form.runJournal(),
             QStringList({loading(form.csv()), counted(1), linked(u"a.jpg"_s, address, u"9"_s)})
                 + linkSum(1));
    QCOMPARE(form.saved(), insertedBehind(Family, u"1 OBJE @O1@"_s, "1 WWW "_L1 + address)
                               + QStringList{u"0 TRLR"_s});
}

void TstCorrespondence::formFolders()
{
    ImportSession form;
    form.set({u"gbSetURLLinks"_s, u"cbUrlInSour"_s, u"leStrPlitCsv=;"_s, u"gbExtractMediasToKeep"_s,
              u"leExtractMediasSource=~/rien %2"_s, u"leExtractMediasToKeep=~/nulle %1 part"_s});
    form.pickCsv({u"a.jpg;http://a.fr/1"_s});
    form.apply();
    compareBoxes({u"Vérifiez l'accès aux dossiers "_s + form.path(u"rien %2"_s) + " et "_L1
                  + form.path(u"nulle %1 part"_s)});
    QCOMPARE(form.runJournal(),
             QStringList({loading(form.csv()), counted(1), FamilyWww}) + linkSum(1));
}

void TstCorrespondence::formPickedFiles()
{
    ImportSession form;
    form.set({u"gbSetURLLinks"_s, u"cbUrlInSour"_s, u"leStrPlitCsv=;"_s});
    const QStringList files{form.path(u"2 un.csv"_s), form.path(u"1 deux.csv"_s)};
    writeBytes(files.at(0), "a.jpg;http://a.fr/1\n");
    writeBytes(files.at(1), "a.jpg;http://a.fr/2\n");
    form.pickCsv({u"z;z"_s}); // has no effect: the next choice replaces it
    form.pick(u"pbImportCsvLinks"_s, u'"' + files.at(0) + u"\" \""_s + files.at(1) + u'"');
    form.apply();
    const QStringList expected{loading(files.at(0)),
                               loading(files.at(1)),
                               counted(2),
                               FamilyWww,
                               linked(u"a.jpg"_s, u"http://a.fr/2"_s, u"9"_s),
                               u"INFO : Ajout de 2 balises SOUR.WWW"_s};
    QCOMPARE(form.runJournal(), expected);

    // The choice survives the run and a cancelled dialog; the fields do not.
    QCOMPARE(form.text(u"leStrPlitCsv"_s), QString());
    form.set({u"gbSetURLLinks"_s, u"cbUrlInSour"_s, u"!cbUrlInEvt"_s, u"leStrPlitCsv=;"_s});
    form.pick(u"pbImportCsvLinks"_s, QString());
    form.apply();
    QCOMPARE(form.runJournal(), expected);

    // If the group is unchecked, nothing happens.
    form.apply({u"cbUrlInSour"_s, u"leStrPlitCsv=;"_s});
    QCOMPARE(form.runJournal(), QStringList());
}

void TstCorrespondence::formMessages_data()
{
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<bool>("picked");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QStringList>("journal"); // after the loading

    // The form only warns: the operation runs with what it has.
    QTest::newRow("no file")
        << QStringList{u"leStrPlitCsv=;"_s} << false
        << u"Veuillez sélectionner les fichiers de correspondance avant d'importer les liens "
           "médias."_s
        << QStringList{counted(0)};
    QTest::newRow("no separator")
        << QStringList{u"leStrPlitCsv="_s} << true
        << u"Indiquez la chaîne de séparation du fichier de correspondance."_s
        << QStringList{counted(1), u"ERROR : Erreur dans la ligne a.jpg;http://a.fr/1"_s};
    // An empty name means the current folder, whose content is not below "/".
    QTest::newRow("no folders")
        << QStringList{u"leStrPlitCsv=;"_s, u"gbExtractMediasToKeep"_s} << true
        << u"Veuillez sélectionner les dossiers source et destination des médias à extraire."_s
        << QStringList{counted(1), FamilyWww, u"INFO : Copie de 1 objets média dans le dossier "_s,
                       u"INFO : Ajout de 1 balises SOUR.WWW"_s};
}

void TstCorrespondence::formMessages()
{
    QFETCH(const QStringList, settings);
    QFETCH(const bool, picked);
    QFETCH(const QString, message);
    QFETCH(const QStringList, journal);

    ImportSession form;
    QDir().mkdir(form.path(u"ici"_s));
    writeBytes(form.path(u"ici/tst-correspondence-seul.jpg"_s), {});
    const CurrentFolder current(form.path(u"ici"_s));
    form.set(QStringList{u"gbSetURLLinks"_s, u"cbUrlInSour"_s} + settings);
    if (picked)
        form.pickCsv({u"a.jpg;http://a.fr/1"_s});
    form.apply();
    compareBoxes({message});
    QCOMPARE(form.runJournal(),
             (picked ? QStringList{loading(form.csv())} : QStringList()) + journal);
    QVERIFY(!QFile::exists(u"/tst-correspondence-seul.jpg"_s));
}

void TstCorrespondence::failureDoesNotEndTheRun()
{
    ImportSession form;
    form.set({u"gbSetURLLinks"_s, u"cbUrlInSour"_s, u"leStrPlitCsv=;"_s, u"gbReplaceMediaPath"_s,
              u"leNewMediaPath=photos"_s});
    form.pickCsv({u"a.jpg;http://a.fr/1"_s});
    QVERIFY(QFile::remove(form.csv()));
    form.apply();
    compareBoxes({"Impossible d'ouvrir le fichier "_L1 + form.csv()});
    QCOMPARE(form.runJournal(),
             QStringList({loading(form.csv()), u"ERROR : Chargement du fichier impossible."_s,
                          u"INFO : 2 entrées OBJE.FILE trouvées."_s,
                          u"INFO : Modification de OBJE.FILE media/a.jpg en photos/a.jpg (l.9)"_s,
                          u"INFO : Modification de OBJE.FILE media/b.jpg en photos/b.jpg (l.11)"_s,
                          u"INFO : 2 chemins modifiés."_s}));
    QCOMPARE(form.text(u"leStrPlitCsv"_s), QString());
    QVERIFY(!form.progress()->isVisible());
}

void TstCorrespondence::thirdInTheOrder()
{
    ImportSession form;
    form.set({u"gbDelTags"_s, u"leTagsToDel=FILE"_s, u"cbDelIfContent"_s, u"leValueToDel=b.jpg"_s,
              u"gbSetURLLinks"_s, u"leStrPlitCsv=;"_s, u"cbUrlInSour"_s, u"cbUrlInEvt"_s,
              u"gbClickablesLinks"_s, u"gbReplaceMediaPath"_s, u"leNewMediaPath=photos"_s,
              u"gbReplaceString"_s, u"leTextOri=a.jpg"_s, u"leTextDest=c.jpg"_s,
              u"leTagToApply=FILE"_s});
    form.pickCsv({u"a.jpg;http://a.fr/1"_s, u"a.jpg;http://a.fr/2"_s, u"b.jpg;http://a.fr/3"_s,
                  u"c.jpg;http://a.fr/4"_s});
    form.apply();
    const auto link = [](int page) { return u"[http://a.fr/%1](http://a.fr/%1)"_s.arg(page); };
    QCOMPARE(form.runJournal(),
             QStringList({
                 // A file that has been deleted is no longer found,
                 u"INFO : Suppression de l'entrée : OBJE.FILE 1 FILE media/b.jpg (l.11)"_s,
                 u"INFO : 1 suppressions effectuées."_s,
                 loading(form.csv()),
                 counted(4),
                 FamilyWww,
                 FamilyNote,
                 linked(u"a.jpg"_s, u"http://a.fr/2"_s, u"9"_s),
                 noted(u"INDI.BIRT.NOTE"_s, u"3 CONT http://a.fr/2"_s, u"@S1@"_s, u"6"_s),
                 notFound(u"b.jpg"_s, u"http://a.fr/3"_s, form.path()),
                 notFound(u"c.jpg"_s, u"http://a.fr/4"_s, form.path()),
                 u"INFO : Ajout de 2 balises SOUR.WWW"_s,
                 u"INFO : Ajout de 1 balises INDI.BIRT.NOTE"_s,
                 u"INFO : Ajout de 1 balises INDI.BIRT.NOTE.CONT"_s,
                 // all new lines become links,
                 u"INFO : Recherche dans 4 lignes de liens hypertexte."_s,
                 "INFO : Modification du lien INDI.BIRT.NOTE Source : "_L1 + link(1) + " (l.-1)"_L1,
                 "INFO : Modification du lien INDI.BIRT.NOTE.CONT "_L1 + link(2) + " (l.-1)"_L1,
                 "INFO : Modification du lien SOUR.WWW "_L1 + link(1) + " (l.-1)"_L1,
                 "INFO : Modification du lien SOUR.WWW "_L1 + link(2) + " (l.-1)"_L1,
                 u"INFO : Modification de 4 liens hypertexte terminée."_s,
                 // and the file gets its new name too late.
                 u"INFO : 1 entrées OBJE.FILE trouvées."_s,
                 u"INFO : Modification de OBJE.FILE media/a.jpg en photos/a.jpg (l.9)"_s,
                 u"INFO : 1 chemins modifiés."_s,
                 u"INFO : Remplacement de 'OBJE.FILE photos/a.jpg' par 'photos/c.jpg' (l.9)"_s,
                 u"INFO : 1 remplacements effectués."_s,
             }));
    QCOMPARE(form.saved(),
             QStringList({u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 @I1@ INDI"_s, u"1 BIRT"_s,
                          u"2 SOUR @S1@"_s, "2 NOTE Source : "_L1 + link(1), "3 CONT "_L1 + link(2),
                          u"0 @S1@ SOUR"_s, u"1 OBJE @O1@"_s, "1 WWW "_L1 + link(1),
                          "1 WWW "_L1 + link(2), u"0 @O1@ OBJE"_s, u"1 FILE photos/c.jpg"_s,
                          u"0 @O2@ OBJE"_s, u"0 TRLR"_s}));
}

void TstCorrespondence::laterImport_data()
{
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<QString>("note");
    QTest::addColumn<bool>("isLinkNote");

    const QString url = u"http://a.fr/1"_s;
    QTest::newRow("plain address") << QStringList() << url << true;
    QTest::newRow("clickable, Markdown") << QStringList{u"gbClickablesLinks"_s, u"rbMarkdown"_s}
                                         << u"[http://a.fr/1](http://a.fr/1)"_s << false;
    QTest::newRow("clickable, HTML")
        << QStringList{u"gbClickablesLinks"_s, u"rbHtml"_s}
        << u"<a href=\"http://a.fr/1\" target=\"_blank\">http://a.fr/1</a>"_s << false;
    QTest::newRow("other tags clickable")
        << QStringList{u"gbClickablesLinks"_s, u"leTagToClickable=WWW"_s} << url << true;
}

void TstCorrespondence::laterImport()
{
    QFETCH(const QStringList, settings);
    QFETCH(const QString, note);
    QFETCH(const bool, isLinkNote);

    ImportSession form;
    form.set(QStringList{u"gbSetURLLinks"_s, u"leStrPlitCsv=;"_s, u"cbUrlInEvt"_s} + settings);
    form.pickCsv({u"a.jpg;http://a.fr/1"_s});
    form.apply();
    form.runJournal();
    form.set({u"gbSetURLLinks"_s, u"leStrPlitCsv=;"_s, u"cbUrlInEvt"_s});
    writeBytes(form.csv(), "a.jpg;http://a.fr/2\n");
    form.apply();
    const QString added =
        isLinkNote ? u"3 CONT http://a.fr/2"_s : u"2 NOTE Source : http://a.fr/2"_s;
    QCOMPARE(form.runJournal(),
             QStringList({loading(form.csv()), counted(1),
                          (isLinkNote ? "INFO : Ajout de la balise INDI.BIRT.NOTE "_L1
                                      : "INFO : Ajout de la balise INDI.BIRT "_L1)
                              + added + u" référençant la source @S1@ (l.6)"_s,
                          (isLinkNote ? u"INFO : Ajout de 1 balises INDI.BIRT.NOTE.CONT"_s
                                      : u"INFO : Ajout de 1 balises INDI.BIRT.NOTE"_s)}));
    const QString first = "2 NOTE Source : "_L1 + note;
    const QStringList lines = insertedBehind(Family, u"2 SOUR @S1@"_s, first);
    QCOMPARE(form.saved(), insertedBehind(lines, first, added) + QStringList{u"0 TRLR"_s});
}

VARLUNE_TEST_MAIN(TstCorrespondence)
#include "tst_correspondence.moc"
