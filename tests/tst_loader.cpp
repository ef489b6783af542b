#include "boxes.h"
#include "document.h"
#include "nofiles.h"
#include "progresslog.h"
#include "testmain.h"
#include "told.h"
#include "unprivileged.h"

#include "gedcom.h"
#include "twitem.h"

#include <QCursor>
#include <QDir>
#include <QFile>
#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QRegularExpression>
#include <QSet>
#include <QStringEncoder>
#include <QTest>
#include <QTime>
#include <QTreeWidgetItemIterator>

#include <functional>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int SectionCount = 7;

/// The bytes of a file in a Unicode encoding, with its byte-order mark.
QByteArray marked(QStringConverter::Encoding encoding, const QString &text)
{
    return QStringEncoder(encoding, QStringConverter::Flag::WriteBom)(text);
}

QByteArray unmarked(QStringConverter::Encoding encoding, const QString &text)
{
    return QStringEncoder(encoding)(text);
}

TwItem *asTwItem(QTreeWidgetItem *item)
{
    return static_cast<TwItem *>(item);
}

void addOutline(QTreeWidgetItem *item, int depth, QStringList *lines)
{
    const QStringList columns{item->text(0), item->text(1), item->text(2)};
    *lines += QString(2 * depth, u' ') + columns.join(u'|') + " l."_L1
            + asTwItem(item)->getNumLineGedFile();
    for (int i = 0; i < item->childCount(); ++i)
        addOutline(item->child(i), depth + 1, lines);
}

/// The rows of the tree: three columns joined with "|", indented by depth, with line numbers. A
/// section is only its label, and left out if it has no rows.
QStringList outline(const QTreeWidget &tree)
{
    QStringList lines;
    for (int i = 0; i < tree.topLevelItemCount(); ++i) {
        QTreeWidgetItem *item = tree.topLevelItem(i);
        if (asTwItem(item)->getNumLineGedFile() != "-1"_L1) {
            addOutline(item, 0, &lines);
            continue;
        }
        if (item->childCount() > 0)
            lines += item->text(0);
        for (int j = 0; j < item->childCount(); ++j)
            addOutline(item->child(j), 1, &lines);
    }
    return lines;
}

/// A column of the top-level rows.
QStringList topLevelTexts(const QTreeWidget &tree, int column)
{
    QStringList texts;
    for (int i = 0; i < tree.topLevelItemCount(); ++i)
        texts += tree.topLevelItem(i)->text(column);
    return texts;
}

QStringList hiddenTopLevelLabels(const QTreeWidget &tree)
{
    QStringList labels;
    for (int i = 0; i < tree.topLevelItemCount(); ++i) {
        if (tree.topLevelItem(i)->isHidden())
            labels += tree.topLevelItem(i)->text(0);
    }
    return labels;
}

QStringList lineNumbers(const QList<TwItem *> &tabTwi)
{
    QStringList numbers;
    for (const TwItem *twi : tabTwi)
        numbers += twi->getNumLineGedFile();
    return numbers;
}

/// The number of journal lines that begin with a time; those of a quoted record do not.
qsizetype timedLineCount(const Gedcom &gedcom)
{
    static const QRegularExpression time(uR"((?:\A|\r\n)\d\d:\d\d:\d\d\.\d\d\d - )"_s);
    return gedcom.getJournal().count(time);
}

QStringList sectionLabels()
{
    return {u"en-tête"_s, u"personnes"_s, u"familles"_s, u"sources"_s,
            u"médias"_s,  u"dépots"_s,    u"notes"_s};
}

/// Calls a function at each event of one type.
class Notice : public QObject
{
public:
    Notice(QEvent::Type type, std::function<void()> callback)
        : m_type(type),
          m_callback(std::move(callback))
    {
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == m_type)
            m_callback();
        return false;
    }

private:
    QEvent::Type m_type;
    std::function<void()> m_callback;
};

QString startOfLoad(const Document &doc)
{
    return "INFO : Chargement du fichier "_L1 + doc.path();
}

QString endOfLoad(int lineCount)
{
    return u"INFO : Chargement de %1 lignes terminé."_s.arg(lineCount);
}

} // namespace

/// Reading a file: encodings, the place of lines and records in the tree, and refused files.
class TstLoader : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void newDocument();
    void journalLine_data();
    void journalLine();
    void journalOnlyGrows();
    void loads_data();
    void loads();
    void linesArePlaced_data();
    void linesArePlaced();
    void twoDigitLevels();
    void firstLine_data();
    void firstLine();
    void recordKinds_data();
    void recordKinds();
    void unknownRecordsKeepTheirOrder();
    void sectionNodes();
    void onlySectionNodesHaveIcons();
    void notesAreHiddenWithoutRecord_data();
    void notesAreHiddenWithoutRecord();
    void hugeLine();
    void manyLinesOfOneLevel();
    void pathWithPercentSign();
    void openFails_data();
    void openFails();
    void recordIsRefused_data();
    void recordIsRefused();
    void binaryIsReadTheSameEachTime();
    void loadAfterRefusal();
    void loadAfterRefusalOfFirstRecord();
    void openFailsAfterRefusal();
    void progress_data();
    void progress();
    void progressStaysAfterRefusal();
    void toldInOrder();
    void inputIsDelivered();
    void eventsSeeTheRecordsReadSoFar();
    void fileChangesDuringTheLoad_data();
    void fileChangesDuringTheLoad();
    void loadsInsideALoad();
    void readFails();
    void whatIsNoFile_data();
    void whatIsNoFile();
    void statusBarIsLeftAlone();
    void treeOutlivesTheDocument();

private:
    // In every function: an unanswered box would block the test for ever.
    std::optional<AnsweredBoxes> m_boxes;
};

void TstLoader::init()
{
    m_boxes.emplace();
}

void TstLoader::cleanup()
{
    m_boxes.reset();
}

void TstLoader::newDocument()
{
    Gedcom gedcom;
    QCOMPARE(gedcom.getPathGedFile(), QString());
    QCOMPARE(gedcom.getJournal(), QString());
    QVERIFY(gedcom.getTabTwItemsRoot().isEmpty());
    QVERIFY(gedcom.getTabTotalTwItems().isEmpty());
}

void TstLoader::journalLine_data()
{
    QTest::addColumn<QString>("level");
    QTest::addColumn<QString>("log");
    QTest::addColumn<QString>("expected");

    const QString log = u"3 balises effacées."_s;
    QTest::newRow("information") << u"INFO"_s << log << u"INFO : 3 balises effacées.\r\n"_s;
    QTest::newRow("error") << u"ERROR"_s << log << u"ERROR : 3 balises effacées.\r\n"_s;
    QTest::newRow("no level word") << u"NONE"_s << log << u"3 balises effacées.\r\n"_s;
    QTest::newRow("any other level") << u"WARNING"_s << log << u"INFO : 3 balises effacées.\r\n"_s;
    QTest::newRow("error in lower case")
        << u"error"_s << log << u"INFO : 3 balises effacées.\r\n"_s;
    QTest::newRow("none in lower case") << u"none"_s << log << u"INFO : 3 balises effacées.\r\n"_s;
    QTest::newRow("longer word") << u"NONE "_s << log << u"INFO : 3 balises effacées.\r\n"_s;
    QTest::newRow("empty level") << QString() << log << u"INFO : 3 balises effacées.\r\n"_s;
    QTest::newRow("empty text") << u"INFO"_s << QString() << u"INFO : \r\n"_s;
    QTest::newRow("empty text without level word") << u"NONE"_s << QString() << u"\r\n"_s;
    QTest::newRow("text of several lines")
        << u"NONE"_s << u"0 @I1@ INDI\r\n1 NAME a\r\n"_s << u"0 @I1@ INDI\r\n1 NAME a\r\n\r\n"_s;
    QTest::newRow("placeholder in the text")
        << u"INFO"_s << u"100%1 %2 %L1"_s << u"INFO : 100%1 %2 %L1\r\n"_s;
}

void TstLoader::journalLine()
{
    QFETCH(QString, level);
    QFETCH(QString, log);
    QFETCH(QString, expected);

    Gedcom gedcom;
    const QTime before = QTime::currentTime();
    gedcom.addToJournal(log, level);
    const QTime after = QTime::currentTime();

    static const QRegularExpression form(uR"(\A(\d\d:\d\d:\d\d\.\d\d\d) - (.*)\z)"_s,
                                         QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = form.match(gedcom.getJournal());
    QVERIFY2(match.hasMatch(), qPrintable(gedcom.getJournal()));
    QCOMPARE(match.captured(2), expected);

    const QTime time = QTime::fromString(match.captured(1), u"hh:mm:ss.zzz"_s);
    QVERIFY(time.isValid());
    // At midnight the clock jumps back.
    QVERIFY(before > after || (before <= time && time <= after));
}

void TstLoader::journalOnlyGrows()
{
    Gedcom gedcom;
    gedcom.addToJournal(u"un"_s, u"INFO"_s);
    const QString first = gedcom.getJournal();
    gedcom.addToJournal(u"deux\r\ntrois"_s, u"NONE"_s);
    gedcom.addToJournal(u"quatre"_s, u"ERROR"_s);

    QVERIFY(gedcom.getJournal().startsWith(first));
    QCOMPARE(journalWithoutTimes(gedcom.getJournal()),
             QStringList({u"INFO : un"_s, u"deux"_s, u"trois"_s, u"ERROR : quatre"_s}));
    QCOMPARE(timedLineCount(gedcom), 3);
    QVERIFY(gedcom.getJournal().contains(u"deux\r\ntrois\r\n"_s));
}

void TstLoader::loads_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<int>("lineCount");

    const QString text = u"0 HEAD\n1 NOTE é€𝄞\n0 TRLR\n"_s;
    const QString textCrLf = u"0 HEAD\r\n1 NOTE é€𝄞\r\n0 TRLR\r\n"_s;
    const QStringList lines{u"0 HEAD"_s, u"1 NOTE é€𝄞"_s};

    QTest::newRow("UTF-8") << text.toUtf8() << lines << 3;
    const struct
    {
        const char *name;
        QStringConverter::Encoding encoding;
    } encodings[] = {
        {"UTF-8 with mark", QStringConverter::Utf8},
        {"UTF-16 LE with mark", QStringConverter::Utf16LE},
        {"UTF-16 BE with mark", QStringConverter::Utf16BE},
        {"UTF-32 LE with mark", QStringConverter::Utf32LE},
        {"UTF-32 BE with mark", QStringConverter::Utf32BE},
    };
    for (const auto &[name, encoding] : encodings) {
        QTest::newRow(name) << marked(encoding, text) << lines << 3;
        QTest::addRow("%s and CR LF", name) << marked(encoding, textCrLf) << lines << 3;
    }
    QTest::newRow("CP1252 bytes are no characters")
        << "0 HEAD\n1 NOTE \xe9t\xe9 \x80\n0 TRLR\n"_ba
        << QStringList{u"0 HEAD"_s, u"1 NOTE \uFFFDt\uFFFD \uFFFD"_s} << 3;
    QTest::newRow("ANSEL accent before its letter")
        << "0 HEAD\n1 NOTE \xe2"
           "et\xe2"
           "e\n0 TRLR\n"_ba
        << QStringList{u"0 HEAD"_s, u"1 NOTE \uFFFDet\uFFFDe"_s} << 3;
    QTest::newRow("character cut by the end of the line")
        << "0 HEAD\n1 NOTE a\xc3\n1 LANG b\n0 TRLR\n"_ba
        << QStringList{u"0 HEAD"_s, u"1 NOTE a\uFFFD"_s, u"1 LANG b"_s} << 4;
    QTest::newRow("character set line is not read")
        << "0 HEAD\n1 CHAR ANSEL\n1 NOTE é\n0 TRLR\n"_ba
        << QStringList{u"0 HEAD"_s, u"1 CHAR ANSEL"_s, u"1 NOTE é"_s} << 4;

    QTest::newRow("CR LF") << textCrLf.toUtf8() << lines << 3;
    QTest::newRow("CR only is one line") << "0 HEAD\r1 NOTE a\r0 TRLR\r"_ba << QStringList() << 1;
    QTest::newRow("mixed ends, every CR dropped")
        << "0 HEAD\r\n1 NOTE a\n1 LANG b\r\r\n1 DEST c\rd\n0 TRLR\r"_ba
        << QStringList{u"0 HEAD"_s, u"1 NOTE a"_s, u"1 LANG b"_s, u"1 DEST cd"_s} << 5;
    QTest::newRow("no other character ends a line")
        << "0 HEAD\n1 NOTE a\x0b"
           "b\x0c"
           "c\u0085d\u2028e\u2029f\n0 TRLR\n"_ba
        << QStringList{u"0 HEAD"_s, u"1 NOTE a\x0b"
                                    "b\x0c"
                                    "c\u0085d\u2028e\u2029f"_s}
        << 3;
    QTest::newRow("NUL inside a value") << "0 HEAD\n1 NOTE a\0b\0\n0 TRLR\n"_ba
                                        << QStringList{u"0 HEAD"_s, u"1 NOTE a\0b\0"_s} << 3;
    QTest::newRow("tab behind the level")
        << "0 HEAD\n1\tNAME\tJean\n0 TRLR\n"_ba << QStringList{u"0 HEAD"_s, u"1 NAME\tJean"_s} << 3;
    QTest::newRow("blanks of a value") << "0 HEAD\n1 NOTE   a  b  \n0 TRLR\n"_ba
                                       << QStringList{u"0 HEAD"_s, u"1 NOTE   a  b  "_s} << 3;
    QTest::newRow("blank behind a tag is lost")
        << "0 HEAD\n1 NOTE \n0 TRLR\n"_ba << QStringList{u"0 HEAD"_s, u"1 NOTE"_s} << 3;
    QTest::newRow("wrapped text that begins with a digit")
        << "0 HEAD\n1 NOTE né en\n1939 à Lyon\n0 TRLR\n"_ba
        << QStringList{u"0 HEAD"_s, u"1 NOTE né en"_s, u"1 39 à Lyon"_s} << 4;

    QTest::newRow("empty file") << ""_ba << QStringList() << 0;
    QTest::newRow("byte-order mark alone") << "\xef\xbb\xbf"_ba << QStringList() << 1;
    QTest::newRow("one line") << "0 HEAD\n"_ba << QStringList() << 1;
    QTest::newRow("one line without an end") << "0 HEAD"_ba << QStringList() << 1;
    QTest::newRow("one empty line") << "\n"_ba << QStringList() << 1;
    QTest::newRow("one line of a record of an unknown kind")
        << "0 @U1@ SUBN\n"_ba << QStringList() << 1;
    QTest::newRow("bytes without a line end")
        << "\x00\x01\x7f\x80\xff\xfe\r\x1a"_ba << QStringList() << 1;
    QTest::newRow("trailer without an end")
        << "0 HEAD\n1 CHAR UTF-8\n0 TRLR"_ba << QStringList{u"0 HEAD"_s, u"1 CHAR UTF-8"_s} << 3;
    QTest::newRow("no trailer, last line lost")
        << "0 HEAD\n1 CHAR UTF-8\n0 @N1@ NOTE a\n1 CONC b\n2 CONT x\n"_ba
        << QStringList{u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 @N1@ NOTE a"_s, u"1 CONC b"_s} << 5;
    QTest::newRow("no trailer, last line begins a record")
        << "0 HEAD\n1 CHAR UTF-8\n0 @I1@ INDI"_ba << QStringList{u"0 HEAD"_s, u"1 CHAR UTF-8"_s}
        << 3;
    QTest::newRow("no trailer, last line malformed")
        << "0 HEAD\n1 CHAR UTF-8\n\n"_ba << QStringList{u"0 HEAD"_s, u"1 CHAR UTF-8"_s} << 3;
}

void TstLoader::loads()
{
    QFETCH(QByteArray, file);
    QFETCH(QStringList, expected);
    QFETCH(int, lineCount);

    Document doc;
    writeBytes(doc.path(), file);
    QVERIFY(doc.loadFile());

    QCOMPARE(m_boxes->texts(), QStringList());
    QCOMPARE(doc.journal(), QStringList({startOfLoad(doc), endOfLoad(lineCount)}));
    QCOMPARE(doc.lines(), expected);
    QCOMPARE(doc.gedcom.getPathGedFile(), doc.path());
    QCOMPARE(topLevelTexts(doc.tree, 0), sectionLabels());
    QCOMPARE(doc.progress.maximum(), lineCount);
    QCOMPARE(doc.progress.value(), -1);
    QVERIFY(!doc.progress.isVisible());
    QCOMPARE(readBytes(doc.path()), file);
}

void TstLoader::linesArePlaced_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("each below the level above")
        << QStringList{u"0 @I1@ INDI"_s, u"1 NAME a"_s, u"2 GIVN b"_s, u"2 SURN c"_s,
                       u"3 NOTE d"_s,    u"1 BIRT"_s,   u"2 DATE e"_s}
        << QStringList{u"personnes"_s,          u"  0|@I1@|INDI l.1"_s,  u"    1|NAME|a l.2"_s,
                       u"      2|GIVN|b l.3"_s, u"      2|SURN|c l.4"_s, u"        3|NOTE|d l.5"_s,
                       u"    1|BIRT| l.6"_s,    u"      2|DATE|e l.7"_s};
    QTest::newRow("parent behind a lower level")
        << QStringList{u"0 HEAD"_s, u"1 AAA"_s, u"2 BBB"_s, u"1 CCC"_s, u"3 DDD"_s}
        << QStringList{u"en-tête"_s,          u"  0|HEAD| l.1"_s,      u"    1|AAA| l.2"_s,
                       u"      2|BBB| l.3"_s, u"        3|DDD| l.5"_s, u"    1|CCC| l.4"_s};
    QTest::newRow("parent behind lines of its own and of lower levels")
        << QStringList{u"0 HEAD"_s, u"1 AAA"_s, u"2 BBB"_s, u"3 CCC"_s,
                       u"4 DDD"_s,  u"1 EEE"_s, u"1 FFF"_s, u"4 GGG"_s}
        << QStringList{u"en-tête"_s,
                       u"  0|HEAD| l.1"_s,
                       u"    1|AAA| l.2"_s,
                       u"      2|BBB| l.3"_s,
                       u"        3|CCC| l.4"_s,
                       u"          4|DDD| l.5"_s,
                       u"          4|GGG| l.8"_s,
                       u"    1|EEE| l.6"_s,
                       u"    1|FFF| l.7"_s};
    QTest::newRow("nearest of several")
        << QStringList{u"0 HEAD"_s, u"1 AAA"_s, u"2 BBB"_s, u"2 CCC"_s, u"3 DDD"_s}
        << QStringList{u"en-tête"_s,          u"  0|HEAD| l.1"_s,    u"    1|AAA| l.2"_s,
                       u"      2|BBB| l.3"_s, u"      2|CCC| l.4"_s, u"        3|DDD| l.5"_s};
    QTest::newRow("level of two digits is its first digit")
        << QStringList{u"0 HEAD"_s, u"1 AAA"_s, u"29 BBB x"_s, u"30 CCC y"_s}
        << QStringList{u"en-tête"_s, u"  0|HEAD| l.1"_s, u"    1|AAA| l.2"_s,
                       u"      2||BBB x l.3"_s, u"        3||CCC y l.4"_s};
    QTest::newRow("level alone") << QStringList{u"0 HEAD"_s, u"1"_s, u"2"_s}
                                 << QStringList{u"en-tête"_s, u"  0|HEAD| l.1"_s, u"    1|| l.2"_s,
                                                u"      2|| l.3"_s};
    QTest::newRow("numbers go on from record to record")
        << QStringList{u"0 @F1@ FAM"_s, u"1 HUSB @I1@"_s, u"0 @I1@ INDI"_s,
                       u"1 SEX M"_s,    u"0 @F2@ FAM"_s,  u"1 WIFE @I2@"_s}
        << QStringList{u"personnes"_s,        u"  0|@I1@|INDI l.3"_s,  u"    1|SEX|M l.4"_s,
                       u"familles"_s,         u"  0|@F1@|FAM l.1"_s,   u"    1|HUSB|@I1@ l.2"_s,
                       u"  0|@F2@|FAM l.5"_s, u"    1|WIFE|@I2@ l.6"_s};
}

void TstLoader::linesArePlaced()
{
    QFETCH(QStringList, lines);
    QFETCH(QStringList, expected);

    Document doc;
    QVERIFY(doc.load(lines));
    QCOMPARE(outline(doc.tree), expected);

    // The flat list of a record keeps the order of the file; other lists follow the tree.
    QStringList numbers;
    const QList<TwItem *> roots = doc.gedcom.getTabTwItemsRoot();
    for (TwItem *root : roots) {
        numbers += root->getNumLineGedFile();
        const QList<TwItem *> tabTwi = root->getTabTwiChilds(false);
        numbers += lineNumbers(tabTwi);
        for (TwItem *twi : tabTwi) {
            QList<TwItem *> childs;
            for (int i = 0; i < twi->childCount(); ++i)
                childs += asTwItem(twi->child(i));
            QCOMPARE(twi->getTabTwiChilds(false), childs);
        }
    }
    QStringList expectedNumbers;
    for (qsizetype i = 1; i <= lines.size(); ++i)
        expectedNumbers += QString::number(i);
    QCOMPARE(numbers, expectedNumbers);
}

void TstLoader::twoDigitLevels()
{
    QStringList lines{u"0 HEAD"_s};
    QStringList expectedLines = lines;
    QStringList expectedParents;
    for (int level = 1; level <= 99; ++level) {
        lines += u"%1 NOTE x"_s.arg(level);
        expectedLines += level < 10 ? lines.constLast() : u"%1  NOTE x"_s.arg(level / 10);
        // Level n is on line n + 1. Levels 10 to 19 read as level 1 and hang below the root, levels
        // 20 to 29 read as level 2 and hang below level 19, and so on.
        const int digit = level / 10;
        expectedParents += QString::number(digit == 0 ? level : digit == 1 ? 1 : 10 * digit);
    }

    Document doc;
    QVERIFY(doc.load(lines));
    QStringList parents;
    const QList<TwItem *> tabTwi = doc.entry(lines.constFirst())->getTabTwiChilds(false);
    for (TwItem *twi : tabTwi)
        parents += twi->getParent()->getNumLineGedFile();
    QCOMPARE(parents, expectedParents);
    QCOMPARE(doc.lines(), expectedLines);
}

void TstLoader::firstLine_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("expected");

    // The line, then "1 CHAR x" below it.
    QTest::newRow("header") << u"0 HEAD"_s
                            << QStringList{u"en-tête"_s, u"  0|HEAD| l.1"_s, u"    1|CHAR|x l.2"_s};
    QTest::newRow("second character is not looked at")
        << u"0XHEAD"_s << QStringList{u"en-tête"_s, u"  0|HEAD| l.1"_s, u"    1|CHAR|x l.2"_s};
    QTest::newRow("two zeros") << u"00 HEAD"_s
                               << QStringList{u"en-tête"_s, u"  0||HEAD l.1"_s,
                                              u"    1|CHAR|x l.2"_s};
    QTest::newRow("lone zero") << u"0"_s << QStringList{u"0|| l.1"_s, u"  1|CHAR|x l.2"_s};
    QTest::newRow("level 1") << u"1 HEAD"_s << QStringList{u"1|HEAD| l.1"_s, u"  1|CHAR|x l.2"_s};
    QTest::newRow("lone level 1") << u"1"_s << QStringList{u"1|| l.1"_s, u"  1|CHAR|x l.2"_s};
    QTest::newRow("level 9") << u"9 INDI"_s << QStringList{u"9|INDI| l.1"_s, u"  1|CHAR|x l.2"_s};
    QTest::newRow("indented header")
        << u" 0 HEAD"_s << QStringList{u" ||HEAD l.1"_s, u"  1|CHAR|x l.2"_s};
    QTest::newRow("text") << u"HEAD"_s << QStringList{u"H|AD| l.1"_s, u"  1|CHAR|x l.2"_s};
    QTest::newRow("empty line") << QString() << QStringList{u"|| l.1"_s, u"  1|CHAR|x l.2"_s};
}

void TstLoader::firstLine()
{
    QFETCH(QString, line);
    QFETCH(QStringList, expected);

    Document doc;
    QVERIFY(doc.load({line, u"1 CHAR x"_s}));
    QCOMPARE(outline(doc.tree), expected);
    QCOMPARE(lineNumbers(doc.gedcom.getTabTwItemsRoot()), QStringList{u"1"_s});
    const bool known = expected.constFirst() == u"en-tête"_s;
    QStringList journal{startOfLoad(doc), u"INFO : Entrée non reconnue :"_s, line, u"1 CHAR x"_s,
                        endOfLoad(3)};
    if (known)
        journal.remove(1, 3);
    QCOMPARE(doc.journal(), journal);
}

void TstLoader::recordKinds_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("section");

    const QString unknown;
    QTest::newRow("header") << u"0 HEAD"_s << u"en-tête"_s;
    QTest::newRow("person") << u"0 @I1@ INDI"_s << u"personnes"_s;
    QTest::newRow("family") << u"0 @F1@ FAM"_s << u"familles"_s;
    QTest::newRow("source") << u"0 @S1@ SOUR"_s << u"sources"_s;
    QTest::newRow("media") << u"0 @O1@ OBJE"_s << u"médias"_s;
    QTest::newRow("repository") << u"0 @R1@ REPO"_s << u"dépots"_s;
    QTest::newRow("note") << u"0 @N1@ NOTE"_s << u"notes"_s;
    QTest::newRow("submitter") << u"0 @U1@ SUBM"_s << u"infos"_s;
    QTest::newRow("note with text") << u"0 @N3@ NOTE texte libre"_s << u"notes"_s;
    QTest::newRow("note without identifier") << u"0 NOTE texte"_s << u"notes"_s;
    QTest::newRow("begins as a note") << u"0 @N1@ NOTES"_s << u"notes"_s;
    QTest::newRow("begins as a submitter") << u"0 @U1@ SUBMITTER x"_s << u"infos"_s;
    QTest::newRow("submitter without identifier") << u"0 SUBM"_s << u"infos"_s;
    QTest::newRow("person without identifier") << u"0 INDI"_s << u"personnes"_s;
    QTest::newRow("header with identifier") << u"0 @H1@ HEAD"_s << u"en-tête"_s;
    QTest::newRow("identifier of another kind") << u"0 @I1@ SOUR"_s << u"sources"_s;
    QTest::newRow("identifier that begins as a note") << u"0 NOTE1 INDI"_s << u"notes"_s;
    QTest::newRow("first column decides") << u"0 FAM INDI"_s << u"familles"_s;
    QTest::newRow("first column decides before a note") << u"0 REPO NOTE"_s << u"dépots"_s;
    QTest::newRow("first column decides for a note") << u"0 NOTE INDI"_s << u"notes"_s;
    QTest::newRow("first column decides for a submitter") << u"0 SUBM INDI"_s << u"infos"_s;
    QTest::newRow("second column decides behind an unknown word") << u"0 XXX OBJE"_s << u"médias"_s;
    QTest::newRow("two blanks before a known word") << u"0  INDI"_s << u"personnes"_s;
    QTest::newRow("two blanks before an unknown word") << u"0  _PUBLISH"_s << unknown;
    QTest::newRow("submission") << u"0 @U1@ SUBN"_s << unknown;
    QTest::newRow("private record") << u"0 _EVENT_DEFN x"_s << unknown;
    QTest::newRow("trailer in mid-file") << u"0 TRLR"_s << unknown;
    QTest::newRow("person with more text") << u"0 @I1@ INDI x"_s << unknown;
    QTest::newRow("person with a blank at the end") << u"0 @I1@ INDI "_s << unknown;
    QTest::newRow("longer word") << u"0 @F1@ FAMS"_s << unknown;
    QTest::newRow("note in lower case") << u"0 @N1@ note"_s << unknown;
    QTest::newRow("person in lower case") << u"0 @I1@ Indi"_s << unknown;
    QTest::newRow("word that ends as a note") << u"0 @N1@ ENOTE"_s << unknown;
    QTest::newRow("identifier alone") << u"0 @I1@"_s << unknown;
    QTest::newRow("level and blank alone") << u"0 "_s << unknown;
}

void TstLoader::recordKinds()
{
    QFETCH(QString, line);
    QFETCH(QString, section);

    Document doc;
    QVERIFY(doc.load({u"0 @F9@ FAM"_s, u"1 MARR"_s, line, u"1 PAGE x"_s}));
    QCOMPARE(m_boxes->texts(), QStringList());

    const bool unknown = section.isEmpty();
    const bool offScreen = section == "infos"_L1;
    QStringList journal{startOfLoad(doc), u"INFO : Entrée non reconnue :"_s, line, u"1 PAGE x"_s,
                        endOfLoad(5)};
    if (!unknown)
        journal.remove(1, 3);
    QCOMPARE(doc.journal(), journal);

    QCOMPARE(lineNumbers(doc.gedcom.getTabTwItemsRoot()), QStringList({u"1"_s, u"3"_s}));
    TwItem *root = doc.gedcom.getTabTwItemsRoot().constLast();
    QCOMPARE(root->parent() ? root->parent()->text(0) : QString(), section);
    QCOMPARE(doc.tree.indexOfTopLevelItem(root), unknown ? SectionCount : -1);
    QCOMPARE(root->treeWidget(), offScreen ? nullptr : &doc.tree);
    QCOMPARE(doc.tree.topLevelItemCount(), unknown ? SectionCount + 1 : SectionCount);
    QCOMPARE(root->getGedEntryList(), QStringList({line, u"1 PAGE x"_s}));

    QStringList counts;
    const QStringList labels = sectionLabels();
    for (const QString &label : labels)
        counts += QString::number((label == u"familles"_s ? 1 : 0) + (label == section ? 1 : 0));
    QCOMPARE(topLevelTexts(doc.tree, 1).first(SectionCount), counts);
    if (offScreen)
        QCOMPARE(root->parent()->text(1), QString());
}

void TstLoader::unknownRecordsKeepTheirOrder()
{
    const QStringList lines{u"0 @U1@ SUBN"_s, u"1 FAMF x"_s, u"0 @I1@ INDI"_s, u"1 SEX M"_s,
                            u"0 @A1@ SUBM"_s, u"1 NAME a"_s, u"0 _PLAC y"_s,   u"1 MAP"_s,
                            u"2 LATI 1"_s,    u"0 HEAD"_s,   u"1 CHAR z"_s};
    Document doc;
    QVERIFY(doc.load(lines));
    QCOMPARE(doc.lines(), lines);
    QCOMPARE(lineNumbers(doc.gedcom.getTabTwItemsRoot()),
             QStringList({u"1"_s, u"3"_s, u"5"_s, u"7"_s, u"10"_s}));
    QCOMPARE(outline(doc.tree),
             QStringList({u"en-tête"_s, u"  0|HEAD| l.10"_s, u"    1|CHAR|z l.11"_s, u"personnes"_s,
                          u"  0|@I1@|INDI l.3"_s, u"    1|SEX|M l.4"_s, u"0|@U1@|SUBN l.1"_s,
                          u"  1|FAMF|x l.2"_s, u"0|_PLAC|y l.7"_s, u"  1|MAP| l.8"_s,
                          u"    2|LATI|1 l.9"_s}));
    QCOMPARE(doc.journal(),
             QStringList({startOfLoad(doc), u"INFO : Entrée non reconnue :"_s, u"0 @U1@ SUBN"_s,
                          u"1 FAMF x"_s, u"INFO : Entrée non reconnue :"_s, u"0 _PLAC y"_s,
                          u"1 MAP"_s, u"2 LATI 1"_s, endOfLoad(12)}));
    QCOMPARE(timedLineCount(doc.gedcom), 6);
}

void TstLoader::sectionNodes()
{
    Document doc;
    QVERIFY(doc.load({u"0 HEAD"_s,      u"1 CHAR x"_s, u"0 @I1@ INDI"_s, u"1 SEX M"_s,
                      u"0 @I2@ INDI"_s, u"1 SEX F"_s,  u"0 @F1@ FAM"_s,  u"1 MARR"_s,
                      u"0 @F2@ FAM"_s,  u"1 MARR"_s,   u"0 @F3@ FAM"_s,  u"1 MARR"_s,
                      u"0 @O1@ OBJE"_s, u"1 FILE a"_s, u"0 @N1@ NOTE"_s, u"1 CONT b"_s,
                      u"0 @U1@ SUBM"_s, u"1 NAME c"_s, u"0 @N2@ NOTE"_s, u"1 CONT d"_s}));

    QCOMPARE(topLevelTexts(doc.tree, 0), sectionLabels());
    QCOMPARE(topLevelTexts(doc.tree, 1),
             QStringList({u"1"_s, u"2"_s, u"3"_s, u"0"_s, u"1"_s, u"0"_s, u"2"_s}));
    QCOMPARE(hiddenTopLevelLabels(doc.tree), QStringList());

    QTreeWidgetItem *infos = doc.entry(u"0 @U1@ SUBM"_s)->parent();
    QCOMPARE(infos->text(0), u"infos"_s);
    QCOMPARE(infos->text(1), QString());
    QCOMPARE(doc.tree.indexOfTopLevelItem(infos), -1);

    QList<QTreeWidgetItem *> sections;
    for (int i = 0; i < SectionCount; ++i)
        sections += doc.tree.topLevelItem(i);
    sections += infos;
    const QStringList names{u"head"_s, u"indi"_s, u"fam"_s,  u"sour"_s,
                            u"obje"_s, u"repo"_s, u"chan"_s, u"chan"_s};
    QSet<QByteArray> pictures;
    for (qsizetype i = 0; i < names.size(); ++i) {
        const QPixmap picture(":/icones/"_L1 + names.at(i) + ".png"_L1);
        QCOMPARE(picture.size(), QSize(32, 32));
        QVERIFY2(sections.at(i)->icon(0).pixmap(32, 32).toImage() == picture.toImage(),
                 qPrintable(names.at(i)));
        const QImage bits = picture.toImage();
        pictures +=
            QByteArray(reinterpret_cast<const char *>(bits.constBits()), bits.sizeInBytes());
        QCOMPARE(asTwItem(sections.at(i))->getNumLineGedFile(), u"-1"_s);
    }
    // With equal pictures the comparison above would prove nothing.
    QCOMPARE(pictures.size(), 7);
}

void TstLoader::onlySectionNodesHaveIcons()
{
    Document doc;
    QVERIFY(doc.load(
        {u"0 @I1@ INDI"_s, u"1 NAME a"_s, u"2 SURN b"_s, u"0 @U1@ SUBN"_s, u"1 FAMF x"_s}));
    QList<bool> withIcon;
    for (QTreeWidgetItemIterator it(&doc.tree); *it; ++it)
        withIcon += !(*it)->icon(0).isNull();
    QCOMPARE(withIcon, QList<bool>({true, true, false, false, false, true, true, true, true, true,
                                    false, false}));
}

void TstLoader::notesAreHiddenWithoutRecord_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QStringList>("hidden");

    QTest::newRow("no record at all") << QStringList() << QStringList{u"notes"_s};
    QTest::newRow("a person with a note")
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE x"_s} << QStringList{u"notes"_s};
    QTest::newRow("a note record")
        << QStringList{u"0 @N1@ NOTE x"_s, u"1 CONT y"_s} << QStringList();
    QTest::newRow("a submitter") << QStringList{u"0 @U1@ SUBM"_s, u"1 NAME x"_s}
                                 << QStringList{u"notes"_s};
}

void TstLoader::notesAreHiddenWithoutRecord()
{
    QFETCH(QStringList, lines);
    QFETCH(QStringList, hidden);

    Document doc;
    QVERIFY(doc.load(lines));
    QCOMPARE(hiddenTopLevelLabels(doc.tree), hidden);
}

void TstLoader::hugeLine()
{
    // Two-byte characters at odd offsets: the file is decoded piece by piece.
    const QString line = "1 NOTE x"_L1 + QString(1024 * 1024, u'é');
    Document doc;
    QVERIFY(doc.load({u"0 HEAD"_s, line, u"1 LANG y"_s}));
    QVERIFY(doc.lines() == QStringList({u"0 HEAD"_s, line, u"1 LANG y"_s}));
    QCOMPARE(doc.journal(), QStringList({startOfLoad(doc), endOfLoad(4)}));
}

void TstLoader::manyLinesOfOneLevel()
{
    constexpr int Count = 200'000;
    QStringList lines{u"0 @I1@ INDI"_s, u"1 NOTE a"_s};
    for (int i = 0; i < Count; ++i)
        lines += u"2 CONT b"_s;
    lines += {u"1 SEX M"_s, u"2 SOUR c"_s};

    Document doc;
    QVERIFY(doc.load(lines));
    TwItem *root = doc.entry(u"0 @I1@ INDI"_s);
    TwItem *note = doc.entry(u"1 NOTE a"_s);
    TwItem *sex = doc.entry(u"1 SEX M"_s);
    TwItem *source = doc.entry(u"2 SOUR c"_s);
    QCOMPARE(root->childCount(), 2);
    QCOMPARE(root->child(0), note);
    QCOMPARE(root->child(1), sex);
    QCOMPARE(note->childCount(), Count);
    QCOMPARE(sex->childCount(), 1);
    QCOMPARE(root->getTabTwiChilds(false).size(), Count + 3);
    QCOMPARE(source->parent(), sex);
    QCOMPARE(source->getNumLineGedFile(), u"200004"_s);
    QVERIFY(doc.lines() == lines);
}

void TstLoader::pathWithPercentSign()
{
    Document doc;
    const QString path = doc.folder() + u"/à 100%1 %2.ged"_s;
    const auto load = [&]() -> bool {
        return doc.gedcom.genererVectorGed(path, &doc.tree, &doc.progress, &doc.statusBar);
    };
    QVERIFY(!load());
    QCOMPARE(m_boxes->texts(), QStringList{"Impossible d'ouvrir le fichier "_L1 + path});

    writeLines(path, {u"0 HEAD"_s, u"1 CHAR %1"_s, u"0 TRLR"_s});
    QVERIFY(load());
    QCOMPARE(doc.gedcom.getPathGedFile(), path);
    QCOMPARE(doc.lines(), QStringList({u"0 HEAD"_s, u"1 CHAR %1"_s}));
    QCOMPARE(doc.journal(), QStringList({"INFO : Chargement du fichier "_L1 + path,
                                         u"ERROR : Chargement du fichier impossible."_s,
                                         "INFO : Chargement du fichier "_L1 + path, endOfLoad(3)}));
}

void TstLoader::openFails_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("empty path, from a cancelled dialog") << QString();
    QTest::newRow("no such file") << u"/absent.ged"_s;
    QTest::newRow("no such folder") << u"/absent/arbre.ged"_s;
    QTest::newRow("folder") << u"/dossier.ged"_s;
    QTest::newRow("no right to read") << u"/secret.ged"_s;
}

void TstLoader::openFails()
{
    QFETCH(QString, name);

    Document doc;
    QVERIFY(QDir(doc.folder()).mkdir(u"dossier.ged"_s));
    const QString secret = doc.folder() + u"/secret.ged"_s;
    writeLines(secret, {u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 TRLR"_s});
    if (secret.endsWith(name) && !name.isEmpty())
        SKIP_ON_WINDOWS(NoRights);
    QFile::setPermissions(secret, QFile::Permissions());
    QVERIFY(QFile::setPermissions(doc.folder(), QFile::ReadOwner | QFile::WriteOwner
                                                    | QFile::ExeOwner | QFile::ReadOther
                                                    | QFile::ExeOther));
    const QString path = name.isEmpty() ? QString() : doc.folder() + name;
    const auto load = [&]() -> bool {
        const Unprivileged unprivileged;
        return doc.gedcom.genererVectorGed(path, &doc.tree, &doc.progress, &doc.statusBar);
    };
    const QStringList journal{"INFO : Chargement du fichier "_L1 + path,
                              u"ERROR : Chargement du fichier impossible."_s};

    QStringList journalAtBox;
    m_boxes->setInspector([&](QMessageBox *) { journalAtBox = doc.journal(); });
    QVERIFY(!load());
    QCOMPARE(m_boxes->texts(), QStringList{"Impossible d'ouvrir le fichier "_L1 + path});
    QCOMPARE(m_boxes->titles(), QStringList{u"Erreur"_s});
    QVERIFY(m_boxes->allCritical(nullptr));
    QCOMPARE(journalAtBox, journal);
    QCOMPARE(doc.newJournal(), journal);
    QCOMPARE(doc.gedcom.getPathGedFile(), QString());
    QCOMPARE(doc.tree.topLevelItemCount(), 0);
    QCOMPARE(doc.progress.maximum(), 100);
    QVERIFY(!doc.progress.isVisible());

    // The document stays as it is.
    QVERIFY(doc.load({u"0 @I1@ INDI"_s, u"1 SEX M"_s}));
    const QStringList rows = outline(doc.tree);
    QCOMPARE(rows, QStringList({u"personnes"_s, u"  0|@I1@|INDI l.1"_s, u"    1|SEX|M l.2"_s}));
    doc.newJournal();
    QVERIFY(!load());
    QCOMPARE(doc.newJournal(), journal);
    QCOMPARE(m_boxes->texts().size(), 2);
    QCOMPARE(doc.gedcom.getPathGedFile(), doc.path());
    QCOMPARE(outline(doc.tree), rows);
    QCOMPARE(doc.lines(), QStringList({u"0 @I1@ INDI"_s, u"1 SEX M"_s}));
    QCOMPARE(doc.progress.maximum(), 3);
    QVERIFY(!doc.progress.isVisible());
}

void TstLoader::recordIsRefused_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("kept");
    QTest::addColumn<QStringList>("record");

    const QStringList head{u"0 HEAD"_s, u"1 CHAR UTF-8"_s};
    const QByteArray headBytes = "0 HEAD\n1 CHAR UTF-8\n"_ba;
    const QByteArray tailBytes = "0 @I9@ INDI\n1 NAME z\n0 TRLR\n"_ba;
    const auto newRow = [&](const char *name, const QStringList &record) {
        QTest::newRow(name) << headBytes + (record.join(u'\n') + u'\n').toUtf8() + tailBytes << head
                            << record;
    };

    QTest::newRow("one-line record at the start")
        << "0 HEAD\n"_ba + tailBytes << QStringList() << QStringList{u"0 HEAD"_s};
    newRow("one-line record in the middle", {u"0 @N1@ NOTE court"_s});
    newRow("one-line record of an unknown kind", {u"0 @U1@ SUBN"_s});
    newRow("trailer in the middle", {u"0 TRLR"_s});
    QTest::newRow("one-line record at the end") << headBytes + "0 @N1@ NOTE court\n0 TRLR\n"_ba
                                                << head << QStringList{u"0 @N1@ NOTE court"_s};
    QTest::newRow("empty line behind the trailer")
        << headBytes + "0 TRLR\n\n"_ba << head << QStringList{u"0 TRLR"_s};
    QTest::newRow("lone level 1 before the header")
        << "1\n"_ba + headBytes + tailBytes << QStringList() << QStringList{u"1"_s};
    QTest::newRow("two empty lines") << "\n\n"_ba << QStringList() << QStringList{QString()};

    // The whole record is refused, not only the line.
    const auto newLine = [&](const char *name, const QString &line) {
        newRow(name, {u"0 @I1@ INDI"_s, u"1 NAME a"_s, line, u"1 SEX M"_s});
    };
    newLine("empty line", QString());
    newLine("indented line", u"  2 SURN b"_s);
    newLine("tab in front", u"\t2 SURN b"_s);
    newLine("wrapped text", u"et la suite"_s);
    newLine("lone zero", u"0"_s);
    newLine("two zeros", u"00 x"_s);
    newLine("zero without a blank", u"0NOTE x"_s);
    newLine("zero and a tab", u"0\t@I2@ INDI"_s);
    newLine("indented record", u" 0 @I2@ INDI"_s);
    newLine("letter O", u"O @I2@ INDI"_s);
    newLine("sign", u"+1 SURN b"_s);
    newLine("minus sign", u"-1 SURN b"_s);
    newLine("digit of another script", u"٢ SURN b"_s);
    newLine("byte-order mark in mid-file", u"\uFEFF1 SEX M"_s);
    newLine("level skipped", u"3 NOTE b"_s);
    newLine("level 9 without the levels between", u"9 NOTE b"_s);
    newLine("level of two digits skipped", u"30 NOTE b"_s);
    newRow("level 2 below the root", {u"0 @I1@ INDI"_s, u"2 DATE b"_s});
    newRow("level 2 before the first level 1",
           {u"0 @I1@ INDI"_s, u"2 DATE b"_s, u"1 BIRT"_s, u"2 DATE c"_s});
    newRow("last line of the record", {u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"x"_s});
    newRow("unknown kind", {u"0 @U1@ SUBN"_s, u"1 FAMF a"_s, u"x"_s});

    QTest::newRow("UTF-16 LE without a mark")
        << unmarked(QStringConverter::Utf16LE, u"0 HEAD\n1 CHAR x\n0 TRLR\n"_s) << QStringList()
        << QStringList{u"0\0 \0H\0E\0A\0D\0"_s, u"\0001\0 \0C\0H\0A\0R\0 \0x\0"_s,
                       u"\0000\0 \0T\0R\0L\0R\0"_s};
    QTest::newRow("UTF-16 BE without a mark")
        << unmarked(QStringConverter::Utf16BE, u"0 HEAD\n1 CHAR x\n0 TRLR\n"_s) << QStringList()
        << QStringList{u"\0000\0 \0H\0E\0A\0D\0"_s, u"\0001\0 \0C\0H\0A\0R\0 \0x\0"_s};
    QTest::newRow("picture") << "\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\0\x20"_ba << QStringList()
                             << QStringList{u"\uFFFDPNG"_s, u"\x1a"_s};
}

void TstLoader::recordIsRefused()
{
    QFETCH(QByteArray, file);
    QFETCH(QStringList, kept);
    QFETCH(QStringList, record);

    Document doc;
    writeBytes(doc.path(), file);
    QStringList journalAtBox;
    m_boxes->setInspector([&](QMessageBox *) { journalAtBox = doc.journal(); });
    QVERIFY(!doc.loadFile());

    QCOMPARE(m_boxes->texts(),
             QStringList{u"Entrée non reconnue :\r\n"_s + record.join(u"\r\n"_s)});
    QCOMPARE(m_boxes->titles(), QStringList{u"Erreur"_s});
    QVERIFY(m_boxes->allCritical(nullptr));
    QCOMPARE(doc.journal(),
             QStringList({startOfLoad(doc), u"ERROR : Entrée non reconnue :"_s}) + record);
    QCOMPARE(timedLineCount(doc.gedcom), 3);
    QCOMPARE(journalAtBox, doc.journal());

    // Everything before the record stays; the record itself is nowhere.
    QCOMPARE(doc.lines(), kept);
    QStringList rows;
    if (!kept.isEmpty())
        rows = {u"en-tête"_s, u"  0|HEAD| l.1"_s, u"    1|CHAR|UTF-8 l.2"_s};
    QCOMPARE(outline(doc.tree), rows);
    QCOMPARE(doc.gedcom.getPathGedFile(), doc.path());
    QCOMPARE(topLevelTexts(doc.tree, 0), sectionLabels());
    QCOMPARE(topLevelTexts(doc.tree, 1), QStringList(SectionCount, QString()));
    QCOMPARE(hiddenTopLevelLabels(doc.tree), QStringList());
    QVERIFY(doc.progress.isVisible());
}

void TstLoader::binaryIsReadTheSameEachTime()
{
    QByteArray file;
    for (quint32 i = 0, number = 1; i < 5'000; ++i) {
        number = number * 1664525u + 1013904223u;
        file += char(number >> 24);
    }
    for (int i = 0; i < 2; ++i) {
        Document doc;
        writeBytes(doc.path(), file);
        // Several lines, the second without a level.
        QVERIFY(!doc.loadFile());
        QCOMPARE(doc.journal().value(1), u"ERROR : Entrée non reconnue :"_s);
        QCOMPARE(doc.lines(), QStringList());
    }
    const QStringList texts = m_boxes->texts();
    QCOMPARE(texts.size(), 2);
    QVERIFY(texts.at(0) == texts.at(1));
    // There is one record, and all its lines are quoted.
    QCOMPARE(texts.at(0).count("\r\n"_L1), QString::fromUtf8(file).count(u'\n'));
}

void TstLoader::loadAfterRefusal()
{
    Document doc;
    QVERIFY(!doc.load({u"0 HEAD"_s, u"1 CHAR a"_s, u"0 @N1@ NOTE b"_s, u"1 CONT c"_s,
                       u"0 @A1@ SUBN"_s, u"1 FAMF d"_s, u"0 @U1@ SUBM"_s, u"1 NAME e"_s,
                       u"0 @I1@ INDI"_s, u"x"_s, u"y"_s}));
    QCOMPARE(doc.lines().size(), 8);
    doc.newJournal();

    // While there is a record, labels and icons are not set again.
    sectionNode(doc.tree, u"en-tête"_s)->setText(0, u"autre"_s);
    sectionNode(doc.tree, u"personnes"_s)->setIcon(0, QIcon());
    QVERIFY(doc.load({u"0 HEAD"_s, u"1 CHAR f"_s, u"0 @F1@ FAM"_s, u"1 MARR"_s}));
    QCOMPARE(m_boxes->texts(), QStringList{u"Entrée non reconnue :\r\n0 @I1@ INDI\r\nx\r\ny"_s});
    QCOMPARE(doc.newJournal(), QStringList({startOfLoad(doc), endOfLoad(5)}));
    QCOMPARE(doc.lines(), QStringList({u"0 HEAD"_s, u"1 CHAR f"_s, u"0 @F1@ FAM"_s, u"1 MARR"_s}));
    // The root of the refused record took line 9.
    QCOMPARE(
        outline(doc.tree),
        QStringList({u"autre"_s, u"  0|HEAD| l.1"_s, u"    1|CHAR|a l.2"_s, u"  0|HEAD| l.10"_s,
                     u"    1|CHAR|f l.11"_s, u"familles"_s, u"  0|@F1@|FAM l.12"_s,
                     u"    1|MARR| l.13"_s, u"notes"_s, u"  0|@N1@|NOTE b l.3"_s,
                     u"    1|CONT|c l.4"_s, u"0|@A1@|SUBN l.5"_s, u"  1|FAMF|d l.6"_s}));
    QVERIFY(sectionNode(doc.tree, u"personnes"_s)->icon(0).isNull());
    QCOMPARE(topLevelTexts(doc.tree, 1),
             QStringList({u"2"_s, u"0"_s, u"1"_s, u"0"_s, u"0"_s, u"0"_s, u"1"_s, u"@A1@"_s}));
    QCOMPARE(hiddenTopLevelLabels(doc.tree), QStringList());
    QVERIFY(!doc.progress.isVisible());
}

void TstLoader::loadAfterRefusalOfFirstRecord()
{
    Document doc;
    QVERIFY(!doc.load({u"0 HEAD"_s, u"x"_s, u"0 @I1@ INDI"_s, u"1 SEX M"_s}));
    sectionNode(doc.tree, u"en-tête"_s)->setText(0, u"autre"_s);
    sectionNode(doc.tree, u"personnes"_s)->setIcon(0, QIcon());

    QVERIFY(doc.load({u"0 HEAD"_s, u"1 CHAR a"_s}));
    QCOMPARE(topLevelTexts(doc.tree, 0), sectionLabels());
    QVERIFY(!sectionNode(doc.tree, u"personnes"_s)->icon(0).isNull());
    QCOMPARE(outline(doc.tree),
             QStringList({u"en-tête"_s, u"  0|HEAD| l.2"_s, u"    1|CHAR|a l.3"_s}));
    QCOMPARE(hiddenTopLevelLabels(doc.tree), QStringList{u"notes"_s});
    QCOMPARE(doc.journal(), QStringList({startOfLoad(doc), u"ERROR : Entrée non reconnue :"_s,
                                         u"0 HEAD"_s, u"x"_s, startOfLoad(doc), endOfLoad(3)}));
}

void TstLoader::openFailsAfterRefusal()
{
    Document doc;
    QVERIFY(!doc.load({u"0 HEAD"_s, u"1 CHAR a"_s, u"0 TRLR"_s}));
    QVERIFY(!doc.gedcom.genererVectorGed(QString(), &doc.tree, &doc.progress, &doc.statusBar));
    QCOMPARE(m_boxes->texts(), QStringList({u"Entrée non reconnue :\r\n0 TRLR"_s,
                                            u"Impossible d'ouvrir le fichier "_s}));
    QCOMPARE(doc.lines(), QStringList({u"0 HEAD"_s, u"1 CHAR a"_s}));
    QCOMPARE(doc.gedcom.getPathGedFile(), doc.path());
    QCOMPARE(outline(doc.tree),
             QStringList({u"en-tête"_s, u"  0|HEAD| l.1"_s, u"    1|CHAR|a l.2"_s}));
    QVERIFY(doc.progress.isVisible());
}

void TstLoader::progress_data()
{
    QTest::addColumn<int>("lineCount");
    QTest::addColumn<QStringList>("expected");

    const QString show = u"show"_s;
    const QString hide = u"hide"_s;
    QTest::newRow("empty file") << 0 << QStringList{show, hide};
    QTest::newRow("below the period") << 99 << QStringList{show, hide};
    QTest::newRow("the trailer is the hundredth line")
        << 100 << QStringList{show, u"100 of 100"_s, u"events at 100"_s, hide};
    QTest::newRow("one line more")
        << 101 << QStringList{show, u"100 of 101"_s, u"events at 100"_s, hide};
    QTest::newRow("several periods") << 350
                                     << QStringList{show,
                                                    u"100 of 350"_s,
                                                    u"events at 100"_s,
                                                    u"200 of 350"_s,
                                                    u"events at 200"_s,
                                                    u"300 of 350"_s,
                                                    u"events at 300"_s,
                                                    hide};
}

void TstLoader::progress()
{
    QFETCH(int, lineCount);
    QFETCH(QStringList, expected);

    QStringList lines;
    if (lineCount > 0)
        lines = QStringList{u"0 HEAD"_s} + QStringList(lineCount - 2, u"1 NOTE x"_s);
    Document doc;
    if (lineCount > 0)
        writeLines(doc.path(), lines + QStringList{u"0 TRLR"_s});
    else
        writeBytes(doc.path(), QByteArray());

    const ProgressLog log(&doc.progress);
    QVERIFY(doc.loadFile());
    QCOMPARE(log.entries(), expected);
    QCOMPARE(doc.progress.minimum(), 0);
    QCOMPARE(doc.progress.maximum(), lineCount);
    QCOMPARE(doc.progress.value(), -1);
    QVERIFY(!doc.progress.isVisible());
    QCOMPARE(doc.lines(), lines);
}

void TstLoader::progressStaysAfterRefusal()
{
    const QStringList lines = QStringList{u"0 HEAD"_s} + QStringList(248, u"1 NOTE x"_s);
    Document doc;
    QVERIFY(!doc.load(lines + QStringList{u"0 @N1@ NOTE court"_s}));
    QVERIFY(doc.progress.isVisible());
    QCOMPARE(doc.progress.value(), 200);
    QCOMPARE(doc.progress.maximum(), 251);

    // The next load starts afresh while the bar is still visible.
    const ProgressLog log(&doc.progress);
    QVERIFY(doc.load(lines));
    QCOMPARE(log.entries(), QStringList({u"100 of 250"_s, u"events at 100"_s, u"200 of 250"_s,
                                         u"events at 200"_s, u"hide"_s}));
}

void TstLoader::toldInOrder()
{
    const QStringList unknown{u"0 @U1@ SUBN"_s, u"1 FAMF x"_s};
    const QStringList lines = unknown + QStringList{u"0 HEAD"_s} + QStringList(147, u"1 NOTE x"_s)
                            + unknown + QStringList{u"0 @I1@ INDI"_s}
                            + QStringList(96, u"1 NOTE y"_s);
    Document doc;
    writeLines(doc.path(), lines + QStringList{u"0 TRLR"_s});
    Told told(&doc);
    QTest::ignoreMessage(QtDebugMsg, "ON genererVectorGed");
    QTest::ignoreMessage(QtDebugMsg, "OFF genererVectorGed");
    QVERIFY(doc.loadFile());

    // A record is classified when the next one begins.
    const QStringList unrecognised = QStringList{u"INFO : Entrée non reconnue :"_s} + unknown;
    QCOMPARE(told.take(), QStringList({startOfLoad(doc), u"bar shown"_s}) + unrecognised
                              + QStringList({u"bar: 100 of 250"_s, u"events"_s}) + unrecognised
                              + QStringList({u"bar: 200 of 250"_s, u"events"_s, endOfLoad(250),
                                             u"bar hidden"_s}));
}

void TstLoader::inputIsDelivered()
{
    Document doc;
    QStringList told;
    Notice notice(QEvent::MouseMove, [&] {
        told += u"mouse at %1 of %2"_s.arg(doc.progress.value()).arg(doc.progress.maximum());
    });
    doc.tree.viewport()->installEventFilter(&notice);
    doc.tree.viewport()->setMouseTracking(true);
    doc.tree.show();
    QVERIFY(QTest::qWaitForWindowExposed(&doc.tree));
    // Like the user's mouse: the event waits until input is processed.
    connect(&doc.progress, &QProgressBar::valueChanged, this, [&] {
        QCursor::setPos(doc.tree.viewport()->mapToGlobal(QPoint(20, 20)));
        told += u"moved"_s;
    });
    QVERIFY(doc.load(QStringList{u"0 HEAD"_s} + QStringList(150, u"1 NOTE x"_s)));
    QCOMPARE(told, QStringList({u"moved"_s, u"mouse at 100 of 152"_s}));
}

void TstLoader::eventsSeeTheRecordsReadSoFar()
{
    QStringList lines;
    for (int i = 0; i < 60; ++i)
        lines += {u"0 @I1@ INDI"_s, u"1 SEX M"_s, u"1 NOTE x"_s};
    Document doc;
    QStringList seen;
    const auto look = [&] {
        QCOMPARE(doc.gedcom.getPathGedFile(), doc.path());
        const TwItem *persons = sectionNode(doc.tree, u"personnes"_s);
        seen += u"%1 roots, %2 rows, %3"_s.arg(doc.gedcom.getTabTwItemsRoot().size())
                    .arg(persons->childCount())
                    .arg(persons->text(1).isEmpty() ? u"no count"_s : u"count"_s);
    };
    // The hundredth line begins the thirty-fourth record.
    connect(&doc.progress, &QProgressBar::valueChanged, this,
            [&] { QMetaObject::invokeMethod(this, look, Qt::QueuedConnection); });
    QVERIFY(doc.load(lines));
    QCOMPARE(seen, QStringList({u"33 roots, 33 rows, no count"_s}));
}

void TstLoader::fileChangesDuringTheLoad_data()
{
    using Change = void (*)(const QString &path);
    QTest::addColumn<Change>("change");

    QTest::newRow("it shrinks") << Change(
        [](const QString &path) { QVERIFY(QFile::resize(path, 70'000)); });
    QTest::newRow("it is emptied") << Change([](const QString &path) { writeBytes(path, {}); });
    QTest::newRow("it grows") << Change([](const QString &path) {
        writeBytes(path, readBytes(path) + "0 @X1@ INDI\n1 SEX F\n0 TRLR\n");
    });
    QTest::newRow("other bytes come in place") << Change(
        [](const QString &path) { writeBytes(path, QByteArray(readBytes(path).size(), 'x')); });
}

void TstLoader::fileChangesDuringTheLoad()
{
    using Change = void (*)(const QString &path);
    QFETCH(Change, change);

    // More than a reader keeps ahead of the lines that it gives.
    QStringList lines;
    for (int i = 1; i <= 8'000; ++i)
        lines += {u"0 @I%1@ INDI"_s.arg(i), u"1 NAME Zoé %1 /DUPRÉ/"_s.arg(i)};
    Document doc;
    bool changed = false;
    connect(&doc.progress, &QProgressBar::valueChanged, this, [&](int value) {
        if (value == 300)
            change(doc.path());
        changed = changed || value == 300;
    });
    // What is loaded is the file as it stood when the load began.
    QVERIFY(doc.load(lines));
    QVERIFY(changed);
    QCOMPARE(m_boxes->texts(), QStringList());
    QCOMPARE(doc.journal(), QStringList({startOfLoad(doc), endOfLoad(16'001)}));
    QCOMPARE(doc.progress.maximum(), 16'001);
    QCOMPARE(doc.lines(), lines);
}

void TstLoader::loadsInsideALoad()
{
    // Half-way through the file it is loaded again, half-way through that it is replaced by one
    // that is refused, and loaded a third time.
    QStringList lines;
    for (int i = 1; i <= 200; ++i)
        lines += {u"0 @I%1@ INDI"_s.arg(i), u"1 NAME Zoé %1 /DUPRÉ/"_s.arg(i)};
    Document doc;
    QList<bool> results;
    int depth = 1;
    const auto loadAgain = [&] {
        if (depth == 3)
            return;
        if (++depth == 3)
            writeLines(doc.path(),
                       {u"0 HEAD"_s, u"1 CHAR x"_s, u"0 @N1@ NOTE court"_s, u"0 TRLR"_s});
        results += doc.loadFile();
    };
    connect(&doc.progress, &QProgressBar::valueChanged, this, [&](int value) {
        if (value == 200)
            QMetaObject::invokeMethod(this, loadAgain, Qt::QueuedConnection);
    });
    QVERIFY(doc.load(lines));
    QCOMPARE(results, QList<bool>({false, true}));
    QCOMPARE(m_boxes->texts(), QStringList{u"Entrée non reconnue :\r\n0 @N1@ NOTE court"_s});
    // Each load begins a new list, and those around it go on behind what it has put there.
    const QStringList rest = lines.mid(198);
    QCOMPARE(doc.lines(), QStringList({u"0 HEAD"_s, u"1 CHAR x"_s}) + rest + rest);
    QCOMPARE(topLevelTexts(doc.tree, 0), sectionLabels());
    QVERIFY(doc.gedcom.writeGedFile(doc.path()));
    QCOMPARE(readLines(doc.path()), doc.lines() + QStringList{u"0 TRLR"_s});
}

void TstLoader::readFails()
{
    SKIP_ON_WINDOWS("only Linux has a file that opens and cannot be read");
    // A file that opens, and gives no byte: nothing of a process is mapped at its first address.
    const QString path = u"/proc/self/mem"_s;
    QVERIFY(QFileInfo(path).isFile());
    Document doc;
    QVERIFY(!doc.gedcom.genererVectorGed(path, &doc.tree, &doc.progress, &doc.statusBar));
    QCOMPARE(m_boxes->texts(), QStringList{"Impossible d'ouvrir le fichier "_L1 + path});
    QCOMPARE(m_boxes->titles(), QStringList{u"Erreur"_s});
    QVERIFY(m_boxes->allCritical(nullptr));
    QCOMPARE(doc.journal(), QStringList({"INFO : Chargement du fichier "_L1 + path,
                                         u"ERROR : Chargement du fichier impossible."_s}));
    QCOMPARE(doc.gedcom.getPathGedFile(), QString());
    QCOMPARE(doc.tree.topLevelItemCount(), 0);
    QVERIFY(!doc.progress.isVisible());
}

void TstLoader::whatIsNoFile_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("pipe without a writer") << u"tube.ged"_s;
    QTest::newRow("link to a pipe") << u"lien.ged"_s;
    QTest::newRow("pipe with a writer") << u"plein.ged"_s;
    QTest::newRow("device") << u"/dev/null"_s;
    QTest::newRow("link to a device") << u"rien.ged"_s;
    QTest::newRow("socket") << u"prise.ged"_s;
}

void TstLoader::whatIsNoFile()
{
    SKIP_ON_WINDOWS(NoSuchFiles);
    QFETCH(QString, name);

    Document doc;
    const QDir folder(doc.folder());
    makePipe(folder.filePath(u"tube.ged"_s));
    makePipe(folder.filePath(u"plein.ged"_s));
    makeSocket(folder.filePath(u"prise.ged"_s));
    QVERIFY(QFile::link(u"tube.ged"_s, folder.filePath(u"lien.ged"_s)));
    QVERIFY(QFile::link(u"/dev/null"_s, folder.filePath(u"rien.ged"_s)));
    const QByteArray bytes = "0 HEAD\n1 CHAR x\n0 TRLR\n"_ba;
    const PipeEnd otherEnd(folder.filePath(u"plein.ged"_s), bytes);
    const QString path = folder.filePath(name); // an absolute one stays

    QVERIFY(!doc.gedcom.genererVectorGed(path, &doc.tree, &doc.progress, &doc.statusBar));
    QCOMPARE(m_boxes->texts(), QStringList{"Impossible d'ouvrir le fichier "_L1 + path});
    QCOMPARE(m_boxes->titles(), QStringList{u"Erreur"_s});
    QVERIFY(m_boxes->allCritical(nullptr));
    QCOMPARE(doc.journal(), QStringList({"INFO : Chargement du fichier "_L1 + path,
                                         u"ERROR : Chargement du fichier impossible."_s}));
    QCOMPARE(doc.gedcom.getPathGedFile(), QString());
    QCOMPARE(doc.tree.topLevelItemCount(), 0);
    QVERIFY(!doc.progress.isVisible());
    QCOMPARE(otherEnd.unread(), bytes.size());
}

void TstLoader::statusBarIsLeftAlone()
{
    Document doc;
    doc.statusBar.showMessage(u"Prêt"_s);
    QStringList messages;
    connect(&doc.statusBar, &QStatusBar::messageChanged, this,
            [&](const QString &message) { messages += message; });
    QVERIFY(!doc.load({u"0 HEAD"_s}));
    QVERIFY(doc.load({u"0 HEAD"_s, u"1 CHAR x"_s}));
    QCOMPARE(messages, QStringList());
    QCOMPARE(doc.status(), u"Prêt"_s);
}

void TstLoader::treeOutlivesTheDocument()
{
    const Document files;
    writeLines(files.path(), {u"0 HEAD"_s, u"1 CHAR x"_s, u"0 TRLR"_s});
    QTreeWidget tree;
    QProgressBar bar;
    QStatusBar statusBar;
    {
        Gedcom gedcom;
        QVERIFY(gedcom.genererVectorGed(files.path(), &tree, &bar, &statusBar));
    }
    QCOMPARE(outline(tree), QStringList({u"en-tête"_s, u"  0|HEAD| l.1"_s, u"    1|CHAR|x l.2"_s}));
}

VARLUNE_TEST_MAIN(TstLoader)
#include "tst_loader.moc"
