#include "boxes.h"
#include "debuglistener.h"
#include "document.h"
#include "markingtranslator.h"
#include "progresslog.h"
#include "reviewing.h"
#include "testmain.h"
#include "twitem.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QFocusEvent>
#include <QLineEdit>
#include <QProgressBar>
#include <QRegularExpression>
#include <QStatusBar>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

// The family, and a source with a line on each level.
const QStringList Lines = Family
                        + QStringList{
                            u"0 @S12@ SOUR"_s, // 39
                            u"1 TITL Registre (1805)"_s,
                            u"1 DATA"_s, // 41
                            u"2 EVEN a.c"_s,
                            u"3 PLAC Saint-Étienne"_s,
                            u"4 MAP"_s, // 44
                            u"5 LATI"_s,
                            u"6 LONG"_s,
                            u"7 TEXT vu, abc"_s, // 47
                        };

/// The status text when a search shows \p count of the lines.
QString found(qsizetype count)
{
    return u"%1/47 entrées affichées."_s.arg(count);
}

/// The numbers from \p first to \p last, separated by blanks.
QString span(qsizetype first, qsizetype last)
{
    QStringList numbers;
    for (qsizetype i = first; i <= last; ++i)
        numbers += QString::number(i);
    return numbers.join(u' ');
}

/// A header and \p persons, each with a name that ends in its number.
QStringList crowd(int persons)
{
    QStringList lines{u"0 HEAD"_s, u"1 CHAR UTF-8"_s};
    for (int i = 1; i <= persons; ++i)
        lines += {u"0 @I%1@ INDI"_s.arg(i), u"1 NAME Jean %1"_s.arg(i)};
    return lines;
}

/// The window, with the visible part of its tree.
class SearchForm : public ReviewSession
{
public:
    explicit SearchForm(const QStringList &lines = Lines) : ReviewSession(lines) { }

    /// The visible rows of the whole tree, sections included, when everything is expanded.
    QStringList onScreen() const
    {
        tree()->expandAll();
        QStringList lines;
        for (QTreeWidgetItem *row = tree()->topLevelItem(0); row; row = tree()->itemBelow(row))
            lines += lineText(static_cast<TwItem *>(row));
        return lines;
    }
};

} // namespace

/// The search field and its two check boxes.
class TstSearch : public QObject
{
    Q_OBJECT

private slots:
    void usableWithAFileOnly();
    void everyEntryIsCounted();
    void search_data();
    void search();
    void eachSearchStartsFromTheFullTree();
    void enterOfTheKeypad();
    void typingLeavesTheTree();
    void togglesRunTheSearch();
    void slotsLookAtTheBoxes();
    void toggleTakesTheTextAsItStands_data();
    void toggleTakesTheTextAsItStands();
    void toggleWithoutTextShowsEverything_data();
    void toggleWithoutTextShowsEverything();
    void invalidExpression_data();
    void invalidExpression();
    void ancestorsAreOnScreen();
    void sectionNodesTakeNoPart();
    void submittersAreAlwaysCounted();
    void recordOfUnknownKind();
    void deletedEntriesStayHidden_data();
    void deletedEntriesStayHidden();
    void restOfADeletedRecord();
    void continuations();
    void rowsOfACut();
    void changedLevels_data();
    void changedLevels();
    void inTheMidstOfADeletion();
    void onlyHides();
    void savedWithHiddenRows_data();
    void savedWithHiddenRows();
    void noEventsAndNoProgress();
    void textsAreTranslated();
};

void TstSearch::usableWithAFileOnly()
{
    const QStringList controls{u"leRecherche"_s, Sensitive, Regex};
    const Session empty;
    const SearchForm form;
    for (const QString &control : controls) {
        QVERIFY2(!empty.isEnabled(control), qPrintable(control));
        QVERIFY2(form.isEnabled(control), qPrintable(control));
    }
    for (const QString &box : {Sensitive, Regex}) {
        empty.find<QAbstractButton>(box)->click();
        QVERIFY2(!empty.isChecked(box), qPrintable(box));
        QVERIFY2(!form.isChecked(box), qPrintable(box));
    }
    QCOMPARE(empty.status(), QString());
    QCOMPARE(form.text(u"leRecherche"_s), QString());
}

void TstSearch::everyEntryIsCounted()
{
    const QStringList lines = crowd(599);
    const SearchForm form(lines);
    form.enter();
    QCOMPARE(form.status(), u"1200/1200 entrées affichées."_s);
    QCOMPARE(form.rows(), marked(lines, Everything));

    form.search(u"Jean 59"_s); // 59, and 590 to 599
    QCOMPARE(form.status(), u"22/1200 entrées affichées."_s);
    form.search(u"zzz"_s);
    QCOMPARE(form.status(), u"0/1200 entrées affichées."_s);
    QCOMPARE(form.rows(), marked(lines, {}));
}

void TstSearch::search_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("boxes");
    QTest::addColumn<QString>("shown");

    const auto row = [](const char *name, const QString &text, const QString &shown,
                        const QStringList &boxes = {}) {
        QTest::newRow(name) << text << boxes << shown;
    };
    const QString everything = span(1, 47);

    row("no text", {}, everything);
    row("no text, case", {}, everything, {Sensitive});
    row("no text, regex", {}, everything, {Regex});

    row("any case", u"MARTIN"_s, u"3 4 15 20 36 38"_s);
    row("any case, typed in another one", u"martin"_s, u"3 4 15 20 36 38"_s);
    row("case, capitals", u"MARTIN"_s, u"3 4"_s, {Sensitive});
    row("case, one capital", u"Martin"_s, u"15 20 36 38"_s, {Sensitive});
    row("case, no capital", u"martin"_s, {}, {Sensitive});
    row("any case of an accented letter", u"SAINT-éT"_s, u"39 41 42 43"_s);
    row("case of an accented letter", u"Saint-é"_s, {}, {Sensitive});
    row("an accent is no letter without it", u"Saint-E"_s, {});

    row("level of most lines", u"1"_s,
        u"1 2 3 4 5 6 7 9 10 11 12 14 15 16 17 18 19 20 21 22 23 24 26 27 28 29 31 32 33 34 35 36 37 38 39 40 41"_s);
    row("level alone", u"6"_s, u"39 41 42 43 44 45 46"_s);
    row("level of the deepest line", u"7"_s, u"3 11 12 21 23 24 34 35 39 41 42 43 44 45 46 47"_s);
    row("level of the records", u"0"_s,
        u"1 3 6 7 11 12 15 17 18 21 23 24 26 28 29 31 33 34 35 36 39 40"_s);
    row("identifier and a link to it", u"@I1@"_s, u"3 26 27"_s);
    row("identifier that another one begins with", u"@S1"_s, u"3 6 9 15 17 19 31 39"_s);
    row("identifier in several records", u"@S1@"_s, u"3 6 9 15 17 19 31"_s);
    row("tag of lines", u"NAME"_s, u"3 4 15 16 21 22"_s);
    row("tag in lower case", u"name"_s, u"3 4 15 16 21 22"_s);
    row("tag in lower case, case", u"name"_s, {}, {Sensitive});
    row("part of a tag", u"ITL"_s, u"31 32 39 40"_s);
    row("tag behind an identifier, without what is below", u"INDI"_s, u"3 15 21"_s);
    row("tag of a record without identifier", u"HEAD"_s, u"1"_s);
    row("event without its lines", u"BIRT"_s, u"3 6 15 17 21 23"_s);
    row("line of an event, without its sisters", u"Lyon"_s, u"3 6 8"_s);
    row("deepest line", u"abc"_s, u"39 41 42 43 44 45 46 47"_s);
    row("line with others below and beside it", u"SOUR"_s,
        u"3 6 9 11 13 15 17 19 21 23 25 26 28 30 31 34 36 39"_s);
    row("lines of different depth", u"1805"_s, u"3 6 7 15 17 18 39 40"_s);

    row("level and tag", u"1 NAME"_s, {});
    row("tag and value", u"NAME Jean"_s, {});
    row("level and identifier", u"0 @I1@"_s, {});
    row("whole line", u"1 SEX M"_s, {});
    row("words of one value", u"12 mar 1805"_s, u"3 6 7 15 17 18"_s);
    row("blank", u" "_s,
        u"3 4 6 7 11 12 15 16 17 18 20 21 22 23 24 26 28 29 36 38 39 40 41 42 43 44 45 46 47"_s);
    row("blank behind", u"Jean "_s, u"3 4"_s);
    row("blank in front", u" Jean"_s, {});

    row("point as it stands", u"a.c"_s, u"39 41 42"_s);
    row("star as it stands", u"a*"_s, {});
    row("class as it stands", uR"(\d)"_s, {});
    row("parenthesis as it stands", u"(1805"_s, u"39 40"_s);
    row("no match", u"zzz"_s, {});

    row("regex, point", u"a.c"_s, u"39 41 42 43 44 45 46 47"_s, {Regex});
    row("regex, any case", u"A.C"_s, u"39 41 42 43 44 45 46 47"_s, {Regex});
    row("regex, case", u"A.C"_s, {}, {Regex, Sensitive});
    row("regex, case, as written", u"a.c"_s, u"39 41 42 43 44 45 46 47"_s, {Sensitive, Regex});
    row("regex, any case of an accented letter", u"^SAINT-é"_s, u"39 41 42 43"_s, {Regex});
    row("regex, an accented letter is no word", uR"(^Saint-\w)"_s, {}, {Regex});
    row("regex, level of every line", uR"(^\d$)"_s, everything, {Regex});
    row("regex, level alone", u"^3$"_s, u"3 6 9 10 39 41 42 43"_s, {Regex});
    row("regex, tag", u"^NAME$"_s, u"3 4 15 16 21 22"_s, {Regex});
    row("regex, tag in lower case", u"^name$"_s, u"3 4 15 16 21 22"_s, {Regex});
    row("regex, tag in lower case, case", u"^name$"_s, {}, {Regex, Sensitive});
    row("regex, identifiers", uR"(^@I\d+@$)"_s, u"3 15 21 26 27"_s, {Regex});
    row("regex, end of a value", u"M$"_s, u"3 5 26"_s, {Regex});
    row("regex, blank in a value", u"12 mar"_s, u"3 6 7 15 17 18"_s, {Regex});
    row("regex, alternatives", u"^SEX$|^TITL$"_s, u"3 5 31 32 39 40"_s, {Regex});
    row("regex, inside of a value", u"r.*5"_s, u"3 6 7 15 17 18 39 40"_s, {Regex});
    row("regex, level and tag", u"^1 NAME"_s, {}, {Regex});
    row("regex, tag and value", u"NAME.*Jean"_s, {}, {Regex});
    row("regex, two columns", uR"(^\d\W+[A-Z]{4}$)"_s, {}, {Regex});
    row("regex, anything empty", u"x*"_s, everything, {Regex});
    row("regex, empty group", u"()"_s, everything, {Regex});
    row("regex, empty alternative", u"zzz|"_s, everything, {Regex});
    row("regex, start", u"^"_s, everything, {Regex});
    row("regex, end, case", u"$"_s, everything, {Regex, Sensitive});
    row("regex, empty column", u"^$"_s, {}, {Regex});
    row("regex, no match", u"zz+"_s, {}, {Regex});
}

void TstSearch::search()
{
    QFETCH(QString, text);
    QFETCH(QStringList, boxes);
    QFETCH(QString, shown);

    const SearchForm form;
    for (const QString &box : std::as_const(boxes))
        form.toggle(box);
    form.search(text);
    QCOMPARE(form.rows(), marked(Lines, shown));
    QCOMPARE(form.status(), found(shown.split(u' ', Qt::SkipEmptyParts).size()));
    QVERIFY(!form.statusBar()->findChild<QTimer *>()); // it has no time-out
    QCOMPARE(form.text(u"leRecherche"_s), text);
    for (const QString &box : {Sensitive, Regex})
        QCOMPARE(form.isChecked(box), boxes.contains(box));
}

void TstSearch::eachSearchStartsFromTheFullTree()
{
    SearchForm form;
    form.search(u"MARTIN"_s);
    form.takeTold();
    form.search(u"1805"_s);
    QCOMPARE(form.takeTold(), (QStringList{Hint, found(8)}));
    QCOMPARE(form.rows(), marked(Lines, u"3 6 7 15 17 18 39 40"_s));

    form.search(u"zzz"_s);
    form.search(u"UTF"_s);
    QCOMPARE(form.rows(), marked(Lines, u"1 2"_s));

    // Rows hidden by a search for the same text, or by something else.
    const QList<TwItem *> tabTwi = form.entries();
    for (TwItem *twi : tabTwi)
        twi->setTwiHidden(!twi->isHidden());
    form.enter();
    QCOMPARE(form.rows(), marked(Lines, u"1 2"_s));
    QCOMPARE(form.status(), found(2));

    form.search({});
    QCOMPARE(form.rows(), marked(Lines, Everything));
    QCOMPARE(form.status(), found(47));
}

void TstSearch::enterOfTheKeypad()
{
    const SearchForm form;
    form.type(u"UTF"_s);
    QTest::keyClick(form.field(), Qt::Key_Enter);
    QCOMPARE(form.rows(), marked(Lines, u"1 2"_s));
    QCOMPARE(form.status(), found(2));
}

void TstSearch::typingLeavesTheTree()
{
    const SearchForm form;
    form.search(u"MARTIN"_s);
    QCOMPARE(form.status(), found(6));
    const QStringList rows = marked(Lines, u"3 4 15 20 36 38"_s);

    const struct
    {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        QString text;
    } keys[] = {
        {Qt::Key_X, {}, u"MARTINx"_s},
        {Qt::Key_Backspace, {}, u"MARTIN"_s},
        {Qt::Key_Backspace, {}, u"MARTI"_s},
        {Qt::Key_Home, Qt::ShiftModifier, u"MARTI"_s},
        {Qt::Key_T, {}, u"t"_s},
        {Qt::Key_Left, {}, u"t"_s},
        {Qt::Key_Delete, {}, {}},
        {Qt::Key_Delete, {}, {}},
        {Qt::Key_Space, {}, u" "_s},
        {Qt::Key_Backspace, {}, {}},
    };
    QString before = u"MARTIN"_s;
    for (const auto &[key, modifiers, text] : keys) {
        form.statusBar()->clearMessage();
        QTest::keyClick(form.field(), key, modifiers);
        QCOMPARE(form.text(u"leRecherche"_s), text);
        QCOMPARE(form.status(), text == before ? QString() : Hint);
        QVERIFY(!form.statusBar()->findChild<QTimer *>());
        QCOMPARE(form.rows(), rows);
        before = text;
    }

    // Leaving the field does not search either.
    QFocusEvent leave(QEvent::FocusOut, Qt::TabFocusReason);
    QCoreApplication::sendEvent(form.field(), &leave);
    QCOMPARE(form.status(), Hint);
    QCOMPARE(form.rows(), rows);

    form.enter();
    QCOMPARE(form.status(), found(47));
    QCOMPARE(form.rows(), marked(Lines, Everything));
}

void TstSearch::togglesRunTheSearch()
{
    SearchForm form;
    form.search(u"a.c"_s);
    QCOMPARE(form.rows(), marked(Lines, u"39 41 42"_s));
    form.takeTold();

    const QStringList plain{found(3)};
    const QStringList regex{found(8)};
    const QStringList nothing{found(0)};
    form.toggle(Regex);
    QCOMPARE(form.rows(), marked(Lines, u"39 41 42 43 44 45 46 47"_s));
    QCOMPARE(form.takeTold(), regex);
    form.toggle(Regex);
    QCOMPARE(form.rows(), marked(Lines, u"39 41 42"_s));
    QCOMPARE(form.takeTold(), plain);

    form.search(u"A.C"_s);
    form.takeTold();
    form.toggle(Sensitive);
    QCOMPARE(form.rows(), marked(Lines, {}));
    QCOMPARE(form.takeTold(), nothing);
    form.toggle(Sensitive);
    QCOMPARE(form.rows(), marked(Lines, u"39 41 42"_s));
    QCOMPARE(form.takeTold(), plain);

    form.toggle(Regex);
    form.toggle(Sensitive);
    QCOMPARE(form.rows(), marked(Lines, {}));
    QCOMPARE(form.takeTold(), regex + nothing);
    form.toggle(Sensitive);
    QCOMPARE(form.rows(), marked(Lines, u"39 41 42 43 44 45 46 47"_s));
    QCOMPARE(form.takeTold(), regex);

    // From the keyboard as well.
    QTest::keyClick(form.find<QWidget>(Regex), Qt::Key_Space);
    QVERIFY(!form.isChecked(Regex));
    QCOMPARE(form.rows(), marked(Lines, u"39 41 42"_s));
    QCOMPARE(form.takeTold(), plain);
}

void TstSearch::slotsLookAtTheBoxes()
{
    const SearchForm form;
    const auto compareSlots = [&form](const QString &status) {
        for (const char *slot :
             {"on_cbFiltreSensible_stateChanged", "on_cbFiltrerRegex_stateChanged"}) {
            for (const int state : {0, 1, 2}) {
                form.statusBar()->clearMessage();
                QVERIFY(QMetaObject::invokeMethod(form.window.get(), slot, Q_ARG(int, state)));
                QCOMPARE(form.status(), status);
            }
        }
    };
    form.type(u"A.C"_s);
    compareSlots(found(3));
    form.toggle(Regex);
    compareSlots(found(8));
    form.toggle(Sensitive);
    compareSlots(found(0));
}

void TstSearch::toggleTakesTheTextAsItStands_data()
{
    QTest::addColumn<QString>("box");
    QTest::newRow("case") << Sensitive;
    QTest::newRow("regex") << Regex;
}

void TstSearch::toggleTakesTheTextAsItStands()
{
    QFETCH(QString, box);

    SearchForm form;
    form.search(u"Jean"_s);
    form.type(u"TITL"_s);
    QCOMPARE(form.rows(), marked(Lines, u"3 4"_s));
    form.takeTold();
    form.toggle(box);
    QCOMPARE(form.rows(), marked(Lines, u"31 32 39 40"_s));
    QCOMPARE(form.takeTold(), QStringList{found(4)});
}

void TstSearch::toggleWithoutTextShowsEverything_data()
{
    toggleTakesTheTextAsItStands_data();
}

void TstSearch::toggleWithoutTextShowsEverything()
{
    QFETCH(QString, box);

    SearchForm form;
    for (int times = 0; times < 2; ++times) { // on, and off again
        form.search(u"zzz"_s);
        form.type({});
        QCOMPARE(form.rows(), marked(Lines, {}));
        form.takeTold();
        form.toggle(box);
        QCOMPARE(form.rows(), marked(Lines, Everything));
        QCOMPARE(form.takeTold(), QStringList{found(47)});
    }
}

void TstSearch::invalidExpression_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("plain");

    QTest::newRow("open group") << u"("_s << u"39 40"_s;
    QTest::newRow("closed group") << u")"_s << u"39 40"_s;
    QTest::newRow("open class") << u"[a"_s << QString();
    QTest::newRow("nothing to repeat") << u"*"_s << QString();
    QTest::newRow("backslash at the end") << uR"(1\)"_s << QString();
    QTest::newRow("unknown group") << u"(?z)"_s << QString();
}

void TstSearch::invalidExpression()
{
    QFETCH(QString, text);
    QFETCH(QString, plain);
    QVERIFY(!QRegularExpression(text).isValid());

    SearchForm form;
    const QStringList journal = form.journal();
    QStringList debugLines;
    {
        const AnsweredBoxes boxes;
        const DebugListener listener([&debugLines](const QString &line) { debugLines += line; });
        // Except the platform's warnings when a window is shown.
        QTest::failOnWarning(QRegularExpression(u"^(?!This plugin )"_s));
        form.toggle(Regex);
        form.takeTold();
        form.search(text);
        QCOMPARE(form.rows(), marked(Lines, {}));
        QCOMPARE(form.takeTold(), (QStringList{Hint, found(0)}));
        form.toggle(Sensitive);
        QCOMPARE(form.rows(), marked(Lines, {}));
        QCOMPARE(form.status(), found(0));
        QCoreApplication::processEvents(); // this would answer a box
        QCOMPARE(boxes.texts(), QStringList());
    }
    QCOMPARE(debugLines, QStringList());
    QCOMPARE(form.journal(), journal);
    QCOMPARE(form.onScreen(), (QStringList{u"en-tête 1"_s, u"personnes 3"_s, u"familles 1"_s,
                                           u"sources 4"_s, u"médias 0"_s, u"dépots 0"_s}));

    form.toggle(Regex);
    QCOMPARE(form.rows(), marked(Lines, plain));
}

void TstSearch::ancestorsAreOnScreen()
{
    const SearchForm form;
    form.search(u"abc"_s);
    QCOMPARE(form.onScreen(), (QStringList{
                                  u"en-tête 1"_s,
                                  u"personnes 3"_s,
                                  u"familles 1"_s,
                                  u"sources 4"_s,
                                  u"0 @S12@ SOUR"_s,
                                  u"1 DATA"_s,
                                  u"2 EVEN a.c"_s,
                                  u"3 PLAC Saint-Étienne"_s,
                                  u"4 MAP"_s,
                                  u"5 LATI"_s,
                                  u"6 LONG"_s,
                                  u"7 TEXT vu, abc"_s,
                                  u"médias 0"_s,
                                  u"dépots 0"_s,
                              }));

    // A match on the way up does not end it: here LONG and EVEN match as well.
    form.toggle(Regex);
    form.search(u"abc|^6$|^EVEN$"_s);
    QCOMPARE(form.rows(), marked(Lines, u"39 41 42 43 44 45 46 47"_s));
    QCOMPARE(form.status(), found(8));
    form.search(uR"(abc|\(1805)"_s); // the title has shown the source already
    QCOMPARE(form.rows(), marked(Lines, u"39 40 41 42 43 44 45 46 47"_s));
    QCOMPARE(form.status(), found(9));
}

void TstSearch::sectionNodesTakeNoPart()
{
    const QStringList sections{u"en-tête 1"_s, u"personnes 3"_s, u"familles 1"_s,
                               u"sources 4"_s, u"médias 0"_s,    u"dépots 0"_s};
    const SearchForm form;
    for (const QString &text : {u"personnes"_s, u"notes"_s, u"dépots"_s}) {
        form.search(text);
        QCOMPARE(form.rows(), marked(Lines, {}));
        QCOMPARE(form.status(), found(0));
        QCOMPARE(form.onScreen(), sections);
    }
    // The section of the notes is empty and stays hidden, whatever is shown.
    form.search({});
    QCOMPARE(form.status(), found(47));
    QCOMPARE(form.onScreen().filter(u"notes"_s), QStringList());
    QCOMPARE(form.onScreen().size(), sections.size() + Lines.size());
    for (int i = 0; i < SectionNodes; ++i)
        QCOMPARE(form.tree()->topLevelItem(i)->isHidden(), i == SectionNodes - 1);

    const QStringList lines = Lines + QStringList{u"0 @N1@ NOTE un texte"_s, u"1 CONT suite"_s};
    const SearchForm noted(lines);
    noted.search(u"suite"_s);
    QCOMPARE(noted.rows(), marked(lines, u"48 49"_s));
    QCOMPARE(noted.status(), u"2/49 entrées affichées."_s);
    noted.search(u"zzz"_s);
    QCOMPARE(noted.onScreen(), sections + QStringList{u"notes 1"_s});
    QCOMPARE(noted.status(), u"0/49 entrées affichées."_s);
}

void TstSearch::submittersAreAlwaysCounted()
{
    const QStringList family{u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 @I1@ INDI"_s, u"1 NAME Jean"_s};
    const SearchForm form(family + QStringList{u"0 @U1@ SUBM"_s, u"1 NAME Paul"_s});

    // Their rows are in no tree and therefore never hidden.
    form.enter();
    QCOMPARE(form.status(), u"6/6 entrées affichées."_s);
    QCOMPARE(form.rows(), marked(family, Everything));
    form.search(u"Jean"_s);
    QCOMPARE(form.status(), u"4/6 entrées affichées."_s);
    QCOMPARE(form.rows(), marked(family, u"3 4"_s));
    for (const QString &text : {u"Paul"_s, u"zzz"_s}) {
        form.search(text);
        QCOMPARE(form.status(), u"2/6 entrées affichées."_s);
        QCOMPARE(form.rows(), marked(family, {}));
    }
    form.toggle(Regex);
    form.search(u"("_s);
    QCOMPARE(form.status(), u"2/6 entrées affichées."_s);

    form.apply({u"gbDelTags"_s, u"leTagsToDel=SUBM.NAME"_s});
    form.enter();
    QCOMPARE(form.status(), u"1/5 entrées affichées."_s);
    form.apply({u"gbDelTags"_s, u"leTagsToDel=SUBM"_s});
    form.enter();
    QCOMPARE(form.status(), u"0/4 entrées affichées."_s);
    form.search({});
    QCOMPARE(form.status(), u"4/4 entrées affichées."_s);
}

void TstSearch::recordOfUnknownKind()
{
    const QStringList lines =
        Lines + QStringList{u"0 @U1@ SUBN"_s, u"1 FAMF foyer"_s, u"2 TEMP Jean"_s};
    const SearchForm form(lines);
    QCOMPARE(form.tree()->topLevelItemCount(), SectionNodes + 1);

    form.search(u"Jean"_s);
    QCOMPARE(form.rows(), marked(lines, u"3 4 48 49 50"_s));
    QCOMPARE(form.status(), u"5/50 entrées affichées."_s);
    form.search(u"@U1@"_s);
    QCOMPARE(form.rows(), marked(lines, u"48"_s));
    QCOMPARE(form.status(), u"1/50 entrées affichées."_s);
    form.search(u"zzz"_s);
    QCOMPARE(form.rows(), marked(lines, {}));
    QCOMPARE(form.status(), u"0/50 entrées affichées."_s);
    form.search({});
    QCOMPARE(form.rows(), marked(lines, Everything));
    QCOMPARE(form.status(), u"50/50 entrées affichées."_s);
}

void TstSearch::deletedEntriesStayHidden_data()
{
    QTest::addColumn<QString>("tags");
    QTest::addColumn<QString>("deleted");
    QTest::addColumn<QString>("live");
    QTest::addColumn<QString>("shown"); // of a search for "1805"
    QTest::addColumn<QString>("found");

    const auto row = [](const char *name, const QString &tags, const QString &deleted,
                        const QString &live, const QString &shown, const QString &found) {
        QTest::newRow(name) << tags << deleted << live << shown << found;
    };
    const QString later = u"39 40"_s;
    const QString all = u"3 6 7 15 17 18 39 40"_s;
    row("lines that would match", u"INDI.BIRT.DATE"_s, u"7 18 24"_s, u"44/44 entrées affichées."_s,
        later, u"2/44 entrées affichées."_s);
    row("a line that would not", u"SEX"_s, u"5"_s, u"46/46 entrées affichées."_s, all,
        u"8/46 entrées affichées."_s);
    row("branches", u"BIRT"_s, u"6 7 8 9 10 17 18 19 23 24 25"_s, u"36/36 entrées affichées."_s,
        later, u"2/36 entrées affichées."_s);
    row("records that would match", u"INDI"_s, span(3, 25), u"24/24 entrées affichées."_s, later,
        u"2/24 entrées affichées."_s);
    row("a record that would not", u"FAM"_s, span(26, 30), u"42/42 entrées affichées."_s, all,
        u"8/42 entrées affichées."_s);
    row("the first record", u"HEAD"_s, u"1 2"_s, u"45/45 entrées affichées."_s, all,
        u"8/45 entrées affichées."_s);
    row("everything", u"HEAD;INDI;FAM;SOUR"_s, span(1, 47), u"0/0 entrées affichées."_s, {},
        u"0/0 entrées affichées."_s);
}

void TstSearch::deletedEntriesStayHidden()
{
    QFETCH(QString, tags);
    QFETCH(QString, deleted);
    QFETCH(QString, live);
    QFETCH(QString, shown);
    QFETCH(QString, found);

    const SearchForm form;
    form.search(u"Anne"_s); // hidden rows come back unless they are deleted
    form.apply({u"gbDelTags"_s, "leTagsToDel="_L1 + tags});
    form.search({});
    QCOMPARE(form.rows(), marked(Lines, Everything, deleted));
    QCOMPARE(form.status(), live);

    form.search(u"1805"_s);
    QCOMPARE(form.rows(), marked(Lines, shown));
    QCOMPARE(form.status(), found);
    form.toggle(Regex);
    QCOMPARE(form.rows(), marked(Lines, shown));
    QCOMPARE(form.status(), found);

    form.type({});
    form.toggle(Sensitive);
    QCOMPARE(form.rows(), marked(Lines, Everything, deleted));
    QCOMPARE(form.status(), live);
    form.toggle(Regex);
    form.search(u"zzz"_s);
    QCOMPARE(form.rows(), marked(Lines, {}));
    form.search({});
    QCOMPARE(form.rows(), marked(Lines, Everything, deleted));
}

void TstSearch::restOfADeletedRecord()
{
    const SearchForm form;
    QVERIFY(form.row(u"0 @I1@ INDI"_s)->setDelete(true)); // only the root
    form.row(u"1 SEX M"_s)->setTwiHidden(true);
    form.search(u"1805"_s);
    // The rest of the record stays as it was.
    QCOMPARE(form.rows(), marked(Lines, "4 "_L1 + span(6, 14) + " 15 17 18 39 40"_L1));
    QCOMPARE(form.status(), u"5/35 entrées affichées."_s);
    form.search({});
    QCOMPARE(form.rows(), marked(Lines, Everything, u"3 5"_s));
    QCOMPARE(form.status(), u"35/35 entrées affichées."_s);
}

void TstSearch::continuations()
{
    QStringList lines{
        u"0 HEAD"_s,
        u"1 CHAR UTF-8"_s,
        u"0 @I1@ INDI"_s,
        u"1 NOTE un texte cou"_s,
        u"2 CONC pé en deux"_s,
        u"3 DATE 1900"_s,
        u"1 NAME Jean"_s,
    };
    const SearchForm form(lines);
    const auto compareSearch = [&form, &lines](const QString &text, const QString &shown,
                                               const QString &status) {
        form.search(text);
        QCOMPARE(form.rows(), marked(lines, shown));
        QCOMPARE(form.status(), status);
    };
    // As in the file, each line by itself.
    compareSearch(u"coupé"_s, {}, u"0/7 entrées affichées."_s);
    compareSearch(u"cou"_s, u"3 4"_s, u"2/7 entrées affichées."_s);
    compareSearch(u"pé en"_s, u"3 4 5"_s, u"3/7 entrées affichées."_s);
    compareSearch(u"CONC"_s, u"3 4 5"_s, u"3/7 entrées affichées."_s);
    compareSearch(u"1900"_s, u"3 4 5 6"_s, u"4/7 entrées affichées."_s);

    // Once folded, in the previous line.
    form.apply({});
    lines = replaced(lines, u"1 NOTE un texte cou"_s, u"1 NOTE un texte coupé en deux"_s);
    compareSearch(u"coupé"_s, u"3 4"_s, u"2/6 entrées affichées."_s);
    compareSearch(u"CONC"_s, {}, u"0/6 entrées affichées."_s);
    // The way up passes the folded line, which stays hidden along with everything below it; the
    // count goes by each row's own state.
    compareSearch(u"1900"_s, u"3 4 6"_s, u"3/6 entrées affichées."_s);
    QVERIFY(!form.onScreen().contains("3 DATE 1900"_L1));
    compareSearch({}, u"1 2 3 4 6 7"_s, u"6/6 entrées affichées."_s);
}

void TstSearch::rowsOfACut()
{
    const QString x = u"x"_s;
    QStringList lines{u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 @I1@ INDI"_s,
                      "1 NOTE "_L1 + x.repeated(300), u"1 NAME Jean"_s};
    const SearchForm form(lines);
    form.search(u"Jean"_s);
    QCOMPARE(form.status(), u"2/5 entrées affichées."_s);

    // The save adds a row, for which it takes all rows out of the tree.
    form.trigger(u"actionEnregistrerFichier"_s);
    const QString cut = "1 NOTE "_L1 + x.repeated(248);
    lines = replaced(lines, "1 NOTE "_L1 + x.repeated(300), cut);
    lines = insertedBehind(lines, cut, "2 CONC "_L1 + x.repeated(52));
    QCOMPARE(form.rows(), marked(lines, u"3 5 6"_s));
    form.enter();
    QCOMPARE(form.rows(), marked(lines, u"3 6"_s));
    QCOMPARE(form.status(), u"2/6 entrées affichées."_s);
    form.search(u"CONC"_s);
    QCOMPARE(form.rows(), marked(lines, u"3 4 5"_s));
    QCOMPARE(form.status(), u"3/6 entrées affichées."_s);
    form.search({});
    QCOMPARE(form.rows(), marked(lines, Everything));
    QCOMPARE(form.status(), u"6/6 entrées affichées."_s);
}

void TstSearch::changedLevels_data()
{
    QTest::addColumn<QString>("replacement");
    QTest::addColumn<QString>("tag");
    QTest::addColumn<QStringList>("changed");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("status");

    const auto row = [](const char *name, const QString &replacement, const QString &tag,
                        const QStringList &changed, const QString &text, const QString &shown,
                        const QString &status) {
        QTest::newRow(name) << replacement << tag << changed << text << shown << status;
    };
    const QStringList persons{u"3 5 @I1@ INDI"_s, u"15 5 @I2@ INDI"_s, u"21 5 @I3@ INDI"_s};
    row("record of another level, a line", u"0 5"_s, u"INDI"_s, persons, u"MARTIN"_s,
        u"3 4 15 20 36 38"_s, u"6/50 entrées affichées."_s);
    row("record of another level, a deep line", u"0 5"_s, u"INDI"_s, persons, u"PAGE"_s,
        u"3 6 9 10"_s, u"4/50 entrées affichées."_s);
    row("record of another level, itself", u"0 5"_s, u"INDI"_s, persons, u"@I1@"_s, u"3 26 27"_s,
        u"3/50 entrées affichées."_s);
    row("record of another level, nothing", u"0 5"_s, u"INDI"_s, persons, u"zzz"_s, {},
        u"0/50 entrées affichées."_s);
    row("record of a level that is no number", u"0 x"_s, u"INDI"_s,
        {u"3 x @I1@ INDI"_s, u"15 x @I2@ INDI"_s, u"21 x @I3@ INDI"_s}, u"PAGE"_s, u"3 6 9 10"_s,
        u"4/50 entrées affichées."_s);
    row("record without a level", u"0 "_s, u"INDI"_s,
        {u"3  @I1@ INDI"_s, u"15  @I2@ INDI"_s, u"21  @I3@ INDI"_s}, u"PAGE"_s, u"3 6 9 10"_s,
        u"4/50 entrées affichées."_s);
    // Nothing is above it, not even a section.
    row("record at the top of the tree", u"0 5"_s, u"SUBN"_s, {u"48 5 @U1@ SUBN"_s}, u"foyer"_s,
        u"48 49 50"_s, u"3/50 entrées affichées."_s);
    // A root ends the way up, wherever its row is.
    row("line of level 0 that matches", u"1 0"_s, u"INDI.NAME"_s,
        {u"4 0 NAME Jean /MARTIN/"_s, u"16 0 NAME Anne /DUPONT/"_s, u"22 0 NAME Luc /PETIT/"_s},
        u"MARTIN"_s, u"4 15 20 36 38"_s, u"5/50 entrées affichées."_s);
    const QStringList births{u"6 0 BIRT"_s, u"17 0 BIRT"_s, u"23 0 BIRT"_s};
    row("line of level 0 above a match", u"1 0"_s, u"BIRT"_s, births, u"PAGE"_s, u"6 9 10"_s,
        u"3/50 entrées affichées."_s);
    row("line of level 0 beside a match", u"1 0"_s, u"BIRT"_s, births, u"Jean"_s, u"3 4"_s,
        u"2/50 entrées affichées."_s);
    row("line of a deeper level", u"1 7"_s, u"BIRT"_s,
        {u"6 7 BIRT"_s, u"17 7 BIRT"_s, u"23 7 BIRT"_s}, u"PAGE"_s, u"3 6 9 10"_s,
        u"4/50 entrées affichées."_s);
}

void TstSearch::changedLevels()
{
    QFETCH(QString, replacement);
    QFETCH(QString, tag);
    QFETCH(QStringList, changed);
    QFETCH(QString, text);
    QFETCH(QString, shown);
    QFETCH(QString, status);

    QStringList lines = Lines + QStringList{u"0 @U1@ SUBN"_s, u"1 FAMF"_s, u"2 TEMP foyer"_s};
    const SearchForm form(lines);
    form.search(u"Anne"_s);
    form.apply({u"gbReplaceString"_s, "leTextOri="_L1 + replacement.section(u' ', 0, 0),
                "leTextDest="_L1 + replacement.section(u' ', 1), "leTagToApply="_L1 + tag});
    for (const QString &line : std::as_const(changed))
        lines.replace(line.section(u' ', 0, 0).toInt() - 1, line.section(u' ', 1));

    form.search(text);
    QCOMPARE(form.rows(), marked(lines, shown));
    QCOMPARE(form.status(), status);
    form.search({});
    QCOMPARE(form.rows(), marked(lines, Everything));
    QCOMPARE(form.status(), u"50/50 entrées affichées."_s);
}

void TstSearch::inTheMidstOfADeletion()
{
    const QStringList lines = crowd(599);
    const SearchForm form(lines);
    form.type(u"Jean 59"_s);
    QStringList told;
    connect(form.progress(), &QProgressBar::valueChanged, this, [&form, &told](int value) {
        if (value != 100 || form.status() != "Suppression des balises en cours..."_L1)
            return;
        const auto enter = [&form, &told] {
            form.enter();
            told += form.status();
        };
        QMetaObject::invokeMethod(form.window.get(), enter, Qt::QueuedConnection);
    });
    form.apply({u"gbDelTags"_s, u"leTagsToDel=NAME"_s});

    // The names of the last 50 persons had been deleted by then.
    QCOMPARE(told, QStringList{u"2/1150 entrées affichées."_s});
    QCOMPARE(form.status(), u"599 balises supprimées."_s);
    QCOMPARE(form.rows(), marked(lines, QString::number(lines.indexOf("0 @I59@ INDI"_L1) + 1)));
    form.enter();
    QCOMPARE(form.status(), u"0/601 entrées affichées."_s);
    form.search({});
    QCOMPARE(form.status(), u"601/601 entrées affichées."_s);
}

void TstSearch::onlyHides()
{
    const SearchForm form;
    form.apply({u"gbDelTags"_s, u"leTagsToDel=PLAC"_s});
    sectionNode(*form.tree(), u"personnes"_s)->setExpanded(true);
    form.tree()->setCurrentItem(form.row(u"1 NAME Jean /MARTIN/"_s));

    const auto rowDetails = [&form]() -> QStringList {
        QStringList details;
        for (QTreeWidgetItemIterator it(form.tree()); *it; ++it) {
            auto *twi = static_cast<TwItem *>(*it);
            QStringList row{lineText(twi), twi->getNumLineGedFile()};
            if (twi->isToDelete())
                row += u"deleted"_s;
            if (twi->isExpanded())
                row += u"expanded"_s;
            if (twi == form.tree()->currentItem())
                row += u"current"_s;
            for (int column = 0; column < form.tree()->columnCount(); ++column) {
                row += twi->toolTip(column);
                for (const int role : {Qt::BackgroundRole, Qt::ForegroundRole, Qt::FontRole}) {
                    if (twi->data(column, role).isValid())
                        row += u"role %1 in column %2"_s.arg(role).arg(column);
                }
            }
            details += row.join(u'|');
        }
        return details;
    };
    const QStringList before = rowDetails();
    const QStringList journal = form.journal();
    form.search(u"Anne"_s);
    QCOMPARE(rowDetails(), before);
    form.toggle(Regex);
    form.search(u"("_s);
    QCOMPARE(rowDetails(), before);
    form.toggle(Sensitive);
    form.search({});
    QCOMPARE(rowDetails(), before);
    QCOMPARE(form.journal(), journal);
}

void TstSearch::savedWithHiddenRows_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");

    QTest::newRow("some are hidden") << u"abc"_s << u"39 41 42 43 44 45 46 47"_s;
    QTest::newRow("all are hidden") << u"zzz"_s << QString();
    QTest::newRow("none is hidden") << QString() << span(1, 47);
}

void TstSearch::savedWithHiddenRows()
{
    QFETCH(QString, text);
    QFETCH(QString, shown);

    const SearchForm form;
    const QByteArray before = readText(form.path());
    form.search(text);
    form.trigger(u"actionEnregistrerFichier"_s);
    QCOMPARE(readText(form.path()), before);
    QVERIFY(before.endsWith("7 TEXT vu, abc\n0 TRLR\n"));
    // The save does not change the rows.
    QCOMPARE(form.rows(), marked(Lines, shown));
}

void TstSearch::noEventsAndNoProgress()
{
    const SearchForm form(crowd(599));
    QCoreApplication::processEvents();
    const ProgressLog log(form.progress());
    bool delivered = false;
    QMetaObject::invokeMethod(
        form.window.get(), [&delivered] { delivered = true; }, Qt::QueuedConnection);
    const int value = form.progress()->value();
    const int maximum = form.progress()->maximum();

    form.search(u"Jean"_s);
    QCOMPARE(form.status(), u"1198/1200 entrées affichées."_s);
    form.toggle(Regex);
    form.toggle(Sensitive);
    form.search(u"^jean"_s);
    QCOMPARE(form.status(), u"0/1200 entrées affichées."_s);
    form.search({});
    QCOMPARE(form.status(), u"1200/1200 entrées affichées."_s);

    QCOMPARE(log.entries(), QStringList());
    QVERIFY(!delivered);
    QCOMPARE(form.progress()->value(), value);
    QCOMPARE(form.progress()->maximum(), maximum);
    QVERIFY(form.progress()->isHidden());
    QCoreApplication::processEvents();
    QVERIFY(delivered);
}

void TstSearch::textsAreTranslated()
{
    const SearchForm form;
    const MarkingTranslator translator;
    form.type(u"MARTIN"_s);
    QCOMPARE(form.status(), "[MainWindow]"_L1 + Hint);
    form.enter();
    QString status = form.status();
    QVERIFY(status.contains("[MainWindow]"_L1));
    QCOMPARE(status.remove("[MainWindow]"_L1), found(6));
}

VARLUNE_TEST_MAIN(TstSearch)
#include "tst_search.moc"
