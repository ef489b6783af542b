#include "boxes.h"
#include "document.h"
#include "reviewing.h"
#include "testmain.h"
#include "twitem.h"

#include <QBrush>
#include <QProgressBar>
#include <QTest>
#include <QTreeWidget>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

// The lines of the family that each tool shows: the search for "martin", the births and the
// marriage in the husband's record, and the two persons born on one day.
const QString Found = u"3 4 15 20 36 38"_s;
const QString Unequal = u"3 4 6 7 8 9 14 15 16 17 18 19"_s;
const QString Twice = u"3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20"_s;
const QString Nothing;

// The lines that each filter paints red.
const QString UnequalRed = u"9 14 19"_s;
const QString TwiceRed = u"6 17"_s;
const QString BothRed = u"6 9 14 17 19"_s;

// The tool tips of the date filter.
const QString BirthTip = u"9: Date évènement : 12 MAR 1805\r\nDate source : 1840"_s;
const QString MarriageTip = u"14: Date évènement : 5 SEP 1830\r\nDate source : 1831"_s;
const QString OtherBirthTip = u"19: Date évènement : 12 MAR 1805\r\nDate source : 1840"_s;
const QStringList Tips{BirthTip, MarriageTip, OtherBirthTip};

const QString SixFound = u"6/38 entrées affichées."_s;
const QString AllFound = u"38/38 entrées affichées."_s;
const QString DateStart = u"Recherche des incohérences sources / évènements"_s;
const QString ThreeUnequal = u"3 incohérences sources / évènements détectées."_s;
const QString UseStart = u"Recherche des sources utilisées plusieurs fois"_s;
const QString OneTwice = u"Recherche terminée. 1 occurences dédoublées."_s;

/// \p numbers without those of \p out.
QString without(const QString &numbers, const QString &out)
{
    QStringList rest = numbers.split(u' ');
    const QStringList list = out.split(u' ', Qt::SkipEmptyParts);
    for (const QString &number : list)
        rest.removeOne(number);
    return rest.join(u' ');
}

/// The window, with what the filters do to its tree.
class ReviewForm : public ReviewSession
{
public:
    explicit ReviewForm(const QStringList &lines = Family) : ReviewSession(lines) { }

    /// The numbers of the lines that are red in the first column. Any other colour is given with
    /// its column.
    QString red() const
    {
        QStringList numbers;
        const QList<TwItem *> tabTwi = entries();
        for (const TwItem *twi : tabTwi) {
            for (int column = 0; column < tree()->columnCount(); ++column) {
                if (twi->background(column) == QBrush())
                    continue;
                numbers += twi->getNumLineGedFile();
                if (column != 0 || twi->background(0) != QBrush(Qt::red, Qt::SolidPattern))
                    numbers.last() += u" in column %1"_s.arg(column);
            }
        }
        return numbers.join(u' ');
    }
    /// The tool tips other than the line number, prefixed with it.
    QStringList tips() const
    {
        QStringList tips;
        const QList<TwItem *> tabTwi = entries();
        for (const TwItem *twi : tabTwi) {
            const QString number = twi->getNumLineGedFile();
            for (int column = 0; column < tree()->columnCount(); ++column) {
                const QString usual = column < 2 ? "ligne "_L1 + number : QString();
                if (twi->toolTip(column) != usual)
                    tips += number + ": "_L1 + (column == 0 ? QString() : u"beside "_s)
                          + twi->toolTip(column);
            }
        }
        return tips;
    }
    /// The section nodes that are visible.
    QStringList sections() const
    {
        QStringList sections;
        for (int i = 0; i < SectionNodes; ++i) {
            if (!tree()->topLevelItem(i)->isHidden())
                sections += tree()->topLevelItem(i)->text(0);
        }
        return sections;
    }
    /// The boxes of the review tools that are checked.
    QStringList checked() const
    {
        QStringList checked;
        for (const QString &box : {DateDiff, MultiUse, Sensitive, Regex}) {
            if (isChecked(box))
                checked += box;
        }
        return checked;
    }
};

/// What the user does, and what can be seen then.
struct Step
{
    QString action; // a box to click on, "type x", "search x", or "enter"
    QString shown;
    QStringList told;
    QString field;
};

const QStringList Sections{u"en-tête"_s, u"personnes"_s, u"familles"_s,
                           u"sources"_s, u"médias"_s,    u"dépots"_s};

} // namespace

/// The search and the two filters together, and with runs and saves between them.
class TstReview : public QObject
{
    Q_OBJECT

private slots:
    void oneAfterTheOther_data();
    void oneAfterTheOther();
    void aRunKeepsTheView_data();
    void aRunKeepsTheView();
    void afterARun_data();
    void afterARun();
    void severalRuns();
    void belowADeletedLine();
    void rowsOfACut();
    void savedUnderAFilter_data();
    void savedUnderAFilter();
    void inTheMidstOfAFilter_data();
    void inTheMidstOfAFilter();
    void searchAtTheHundredthCitation();
    void searchAtTheHundredthSource();
};

void TstReview::oneAfterTheOther_data()
{
    QTest::addColumn<QList<Step>>("steps");
    QTest::addColumn<QStringList>("checked");

    const QStringList dates{DateStart, ThreeUnequal};
    const QStringList uses{UseStart, OneTwice};
    const QStringList found{Hint, SixFound};
    const auto row = [](const char *name, const QList<Step> &steps,
                        const QStringList &checked = {}) {
        QTest::newRow(name) << steps << checked;
    };
    const QString martin = u"martin"_s;
    const QString searchMartin = u"search martin"_s;

    row("date filter, off and on again", {
                                             {DateDiff, Unequal, dates, {}},
                                             {DateDiff, Everything, {}, {}},
                                             {DateDiff, Unequal, dates, {}},
                                             {DateDiff, Everything, {}, {}},
                                         });
    row("use filter, off and on again", {
                                            {MultiUse, Twice, uses, {}},
                                            {MultiUse, Everything, {}, {}},
                                            {MultiUse, Twice, uses, {}},
                                            {MultiUse, Everything, {}, {}},
                                        });

    row("date filter, then a search in the full tree",
        {
            {DateDiff, Unequal, dates, {}},
            {u"type martin"_s, Unequal, {Hint}, martin},
            {u"enter"_s, Found, {SixFound}, martin},
            {DateDiff, Everything, {Hint}, {}},
            {u"enter"_s, Everything, {AllFound}, {}},
        });
    row("use filter, then a search in the full tree",
        {
            {MultiUse, Twice, uses, {}},
            {searchMartin, Found, found, martin},
            {MultiUse, Everything, {Hint}, {}},
            {MultiUse, Twice, uses, {}},
        },
        {MultiUse});
    row("date filter, then a search without a text", {
                                                         {DateDiff, Unequal, dates, {}},
                                                         {u"enter"_s, Everything, {AllFound}, {}},
                                                         {DateDiff, Everything, {}, {}},
                                                     });
    row("use filter, then a search that finds nothing",
        {
            {MultiUse, Twice, uses, {}},
            {u"search zzz"_s, Nothing, {Hint, u"0/38 entrées affichées."_s}, u"zzz"_s},
            {MultiUse, Everything, {Hint}, {}},
        });

    row("search, then the date filter", {
                                            {searchMartin, Found, found, martin},
                                            {DateDiff, Unequal, dates, martin},
                                            {DateDiff, Everything, {Hint}, {}},
                                            {DateDiff, Unequal, dates, {}},
                                            {DateDiff, Everything, {}, {}},
                                        });
    row("search, then the use filter", {
                                           {searchMartin, Found, found, martin},
                                           {MultiUse, Twice, uses, martin},
                                           {u"enter"_s, Found, {SixFound}, martin},
                                           {MultiUse, Everything, {Hint}, {}},
                                           {u"enter"_s, Everything, {AllFound}, {}},
                                       });
    row("text without Enter, then the filters", {
                                                    {u"type martin"_s, Everything, {Hint}, martin},
                                                    {DateDiff, Unequal, dates, martin},
                                                    {MultiUse, Twice, uses, martin},
                                                    {DateDiff, Everything, {Hint}, {}},
                                                    {MultiUse, Everything, {}, {}},
                                                });

    row("date filter, then the use filter",
        {
            {DateDiff, Unequal, dates, {}},
            {MultiUse, Twice, uses, {}},
            {MultiUse, Everything, {}, {}},
        },
        {DateDiff});
    row("use filter, then the date filter",
        {
            {MultiUse, Twice, uses, {}},
            {DateDiff, Unequal, dates, {}},
            {DateDiff, Everything, {}, {}},
        },
        {MultiUse});
    row("the earlier of two filters off",
        {
            {DateDiff, Unequal, dates, {}},
            {MultiUse, Twice, uses, {}},
            {DateDiff, Everything, {}, {}},
            {DateDiff, Unequal, dates, {}},
            {MultiUse, Everything, {}, {}},
            {MultiUse, Twice, uses, {}},
        },
        {DateDiff, MultiUse});
    row("both filters, then a search", {
                                           {DateDiff, Unequal, dates, {}},
                                           {MultiUse, Twice, uses, {}},
                                           {searchMartin, Found, found, martin},
                                           {MultiUse, Everything, {Hint}, {}},
                                           {searchMartin, Found, {SixFound}, martin},
                                           {DateDiff, Everything, {Hint}, {}},
                                       });
    row("search between the filters", {
                                          {MultiUse, Twice, uses, {}},
                                          {searchMartin, Found, found, martin},
                                          {DateDiff, Unequal, dates, martin},
                                          {MultiUse, Everything, {Hint}, {}},
                                          {DateDiff, Everything, {}, {}},
                                      });

    row("case, without a text, undoes a filter",
        {
            {DateDiff, Unequal, dates, {}},
            {Sensitive, Everything, {AllFound}, {}},
            {DateDiff, Everything, {}, {}},
        },
        {Sensitive});
    row("regex, without a text, undoes a filter",
        {
            {MultiUse, Twice, uses, {}},
            {Regex, Everything, {AllFound}, {}},
        },
        {MultiUse, Regex});
    row("case, with a text, searches under a filter",
        {
            {searchMartin, Found, found, martin},
            {DateDiff, Unequal, dates, martin},
            {Sensitive, Nothing, {u"0/38 entrées affichées."_s}, martin},
            {MultiUse, Twice, uses, martin},
            {Sensitive, Found, {SixFound}, martin},
        },
        {DateDiff, MultiUse});
    row("regex, with a text that waits for Enter",
        {
            {MultiUse, Twice, uses, {}},
            {u"type ^marr$"_s, Twice, {Hint}, u"^marr$"_s},
            {Regex, u"26 28"_s, {u"2/38 entrées affichées."_s}, u"^marr$"_s},
            {Regex, Nothing, {u"0/38 entrées affichées."_s}, u"^marr$"_s},
            {MultiUse, Everything, {Hint}, {}},
        });
    row("filters after an invalid expression",
        {
            {Regex, Everything, {AllFound}, {}},
            {u"search ("_s, Nothing, {Hint, u"0/38 entrées affichées."_s}, u"("_s},
            {DateDiff, Unequal, dates, u"("_s},
            {MultiUse, Twice, uses, u"("_s},
            {u"enter"_s, Nothing, {u"0/38 entrées affichées."_s}, u"("_s},
            {DateDiff, Everything, {Hint}, {}},
        },
        {MultiUse, Regex});
}

void TstReview::oneAfterTheOther()
{
    QFETCH(QList<Step>, steps);
    QFETCH(QStringList, checked);

    ReviewForm form;
    const QStringList journal = form.journal();
    const AnsweredBoxes boxes;
    form.set({u"gbDelTags"_s, u"leTagsToDel=PLAC"_s}); // which is not applied
    bool dates = false;
    bool uses = false;
    for (const Step &step : std::as_const(steps)) {
        if (step.action == "enter"_L1)
            form.enter();
        else if (step.action.startsWith("type "_L1))
            form.type(step.action.mid(5));
        else if (step.action.startsWith("search "_L1))
            form.search(step.action.mid(7));
        else
            form.toggle(step.action);

        // With the action, so that a failure shows it.
        QCOMPARE(step.action + u": "_s + form.takeTold().join(u'|'),
                 step.action + u": "_s + step.told.join(u'|'));
        QCOMPARE(form.rows(), marked(Family, step.shown));
        QCOMPARE(form.sections(), Sections);
        QCOMPARE(form.text(u"leRecherche"_s), step.field);
        QVERIFY(!form.progress()->isVisible());

        // Red rows stay red, and the other filter adds its own.
        dates = dates || step.told.contains(DateStart);
        uses = uses || step.told.contains(UseStart);
        QCOMPARE(form.red(), dates && uses ? BothRed
                             : dates       ? UnequalRed
                             : uses        ? TwiceRed
                                           : QString());
        QCOMPARE(form.tips(), dates ? Tips : QStringList());
    }
    QCOMPARE(form.checked(), checked);
    QVERIFY(form.isChecked(u"gbDelTags"_s));
    QCOMPARE(form.text(u"leTagsToDel"_s), u"PLAC"_s);
    QCOMPARE(form.journalWindows().size(), 0);
    QCOMPARE(form.journal(), journal);
    QCOMPARE(boxes.texts(), QStringList());
}

void TstReview::aRunKeepsTheView_data()
{
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");

    QTest::newRow("of a search") << QString() << u"martin"_s << Found;
    QTest::newRow("of the date filter") << DateDiff << QString() << Unequal;
    QTest::newRow("of the use filter") << MultiUse << QString() << Twice;
    QTest::newRow("of a filter after a search") << DateDiff << u"martin"_s << Unequal;
    QTest::newRow("of everything") << QString() << QString() << Everything;
}

void TstReview::aRunKeepsTheView()
{
    QFETCH(QString, box);
    QFETCH(QString, text);
    QFETCH(QString, shown);

    const ReviewForm form;
    form.search(text);
    if (!box.isEmpty())
        form.toggle(box);
    const QString red = form.red();
    const QStringList tips = form.tips();

    const QString deleted = u"8 38"_s; // each of them shown by some views only
    form.apply({u"gbDelTags"_s, u"leTagsToDel=PLAC;NOTE"_s, u"gbReplaceString"_s,
                u"leTextOri=1840"_s, u"leTextDest=1805"_s});
    const QStringList lines = replaced(Family, u"1 DATE 1840"_s, u"1 DATE 1805"_s);
    if (shown != Everything)
        shown = without(shown, deleted);
    QCOMPARE(form.rows(), marked(lines, shown, deleted));
    QCOMPARE(form.status(), u"1 textes remplacés."_s);
    QCOMPARE(form.sections(), Sections);
    QCOMPARE(form.text(u"leRecherche"_s), text);
    QCOMPARE(form.checked(), box.isEmpty() ? QStringList() : QStringList{box});
    QCOMPARE(form.red(), red);
    QCOMPARE(form.tips(), tips);

    form.search({});
    QCOMPARE(form.rows(), marked(lines, Everything, deleted));
    QCOMPARE(form.status(), u"36/36 entrées affichées."_s);
}

void TstReview::afterARun_data()
{
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<QString>("deleted");
    QTest::addColumn<QStringList>("changed");
    QTest::addColumn<QString>("unequal");
    QTest::addColumn<int>("unequalCount");
    QTest::addColumn<QString>("twice");
    QTest::addColumn<int>("twiceCount");
    QTest::addColumn<QString>("found");
    QTest::addColumn<QString>("foundStatus");
    QTest::addColumn<QString>("red");
    QTest::addColumn<QStringList>("tips");

    struct View
    {
        QString shown;
        int count;
    };
    const auto row = [](const char *name, const QStringList &settings, const QString &deleted,
                        const QStringList &changed, const View &unequal, const View &twice,
                        const QString &found, const QString &foundStatus, const QString &red,
                        const QStringList &tips = Tips) {
        QTest::newRow(name) << settings << deleted << changed << unequal.shown << unequal.count
                            << twice.shown << twice.count << found << foundStatus << red << tips;
    };
    const auto deletion = [&row](const char *name, const QString &tags, const QString &deleted,
                                 const View &unequal, const View &twice, const QString &found,
                                 const QString &foundStatus, const QString &red = BothRed,
                                 const QStringList &tips = Tips) {
        row(name,
            QStringList{u"gbDelTags"_s, "leTagsToDel="_L1 + tags.section(u'=', 0, 0)}
                + (tags.contains(u'=') ? QStringList{u"cbDelIfContent"_s, u"cbDelIfContentRX"_s,
                                                     "leValueToDel="_L1 + tags.section(u'=', 1)}
                                       : QStringList()),
            deleted, {}, unequal, twice, found, foundStatus, red, tips);
    };
    const View noTwice{Nothing, 0};

    deletion("a line of an event deleted", u"PLAC"_s, u"8"_s, {without(Unequal, u"8"_s), 3},
             {without(Twice, u"8"_s), 1}, Found, u"6/37 entrées affichées."_s);
    deletion("a line below a citation deleted", u"PAGE"_s, u"10"_s, {Unequal, 3},
             {without(Twice, u"10"_s), 1}, Found, u"6/37 entrées affichées."_s);
    deletion("the names deleted", u"INDI.NAME"_s, u"4 16 22"_s, {without(Unequal, u"4 16"_s), 3},
             {without(Twice, u"4 16"_s), 1}, u"15 20 36 38"_s, u"4/35 entrées affichées."_s);
    deletion("the dates of the sources deleted", u"SOUR.DATE"_s, u"33 35 37"_s, {Nothing, 0},
             {Twice, 1}, Found, u"6/35 entrées affichées."_s);
    deletion("the dates of the births deleted", u"INDI.BIRT.DATE"_s, u"7 18 24"_s, {u"3 4 14"_s, 1},
             noTwice, Found, u"6/35 entrées affichées."_s, UnequalRed);
    deletion("red citations deleted", u"INDI.BIRT.SOUR"_s, u"9 10 19 25"_s, {u"3 4 14"_s, 1},
             noTwice, Found, u"6/34 entrées affichées."_s, UnequalRed);
    deletion("events deleted", u"BIRT"_s, u"6 7 8 9 10 17 18 19 23 24 25"_s, {u"3 4 14"_s, 1},
             noTwice, Found, u"6/27 entrées affichées."_s, UnequalRed);
    deletion("a family deleted", u"FAM"_s, u"26 27 28 29 30"_s, {without(Unequal, u"14"_s), 2},
             {Twice, 1}, Found, u"6/33 entrées affichées."_s);
    // Then the citation is shown at the family itself.
    const QString withFamily =
        without(Unequal, u"14"_s) + u" 26 28 29 30"_s; // no name is in a family
    const QStringList withFamilyTips =
        Tips + QStringList{u"30: Date évènement : 5 SEP 1830\r\nDate source : 1831"_s};
    deletion("the husband's link deleted", u"FAMS"_s, u"14"_s, {withFamily, 3},
             {without(Twice, u"14"_s), 1}, Found, u"6/37 entrées affichées."_s, BothRed + u" 30"_s,
             withFamilyTips);
    deletion("the link to the husband deleted", u"HUSB"_s, u"27"_s, {withFamily, 3}, {Twice, 1},
             Found, u"6/37 entrées affichées."_s, BothRed + u" 30"_s, withFamilyTips);
    deletion("one of the two persons deleted", u"INDI=@I2@"_s, u"15 16 17 18 19 20"_s,
             {u"3 4 6 7 8 9 14"_s, 2}, noTwice, u"3 4 36 38"_s, u"4/32 entrées affichées."_s,
             UnequalRed);
    deletion("a source deleted with its citation", u"SOUR=@S3@"_s, u"30 36 37 38"_s,
             {without(Unequal, u"14"_s), 2}, {Twice, 1}, u"3 4 15 20"_s,
             u"4/34 entrées affichées."_s);
    deletion("all sources but the first deleted", u"SOUR=@S[23]@"_s, u"13 25 30 34 35 36 37 38"_s,
             {without(Unequal, u"14"_s), 2}, noTwice, u"3 4 15 20"_s, u"4/30 entrées affichées."_s,
             UnequalRed);
    deletion("all sources deleted, their citations left", u"SOUR=^DATE$"_s,
             u"31 32 33 34 35 36 37 38"_s, {Nothing, 0}, noTwice, u"3 4 15 20"_s,
             u"4/30 entrées affichées."_s, UnequalRed);
    deletion("everything deleted", u"HEAD;INDI;FAM;SOUR"_s,
             u"1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24 25 26 27 28 29 30 "
             "31 32 33 34 35 36 37 38"_s,
             {Nothing, 0}, noTwice, Nothing, u"0/0 entrées affichées."_s, UnequalRed);

    const auto replacement = [&row](const char *name, const QString &texts, const QString &tag,
                                    const QStringList &changed, const View &unequal,
                                    const View &twice, const QString &found,
                                    const QString &foundStatus, const QString &red = BothRed,
                                    const QStringList &tips = Tips) {
        row(name,
            {u"gbReplaceString"_s, "leTextOri="_L1 + texts.section(u'=', 0, 0),
             "leTextDest="_L1 + texts.section(u'=', 1), "leTagToApply="_L1 + tag},
            {}, changed, unequal, twice, found, foundStatus, red, tips);
    };
    replacement("date of a source put right", u"1840=1805"_s, u"SOUR.DATE"_s, {u"33 1 DATE 1805"_s},
                {u"3 4 14"_s, 1}, {Twice, 1}, Found, SixFound);
    replacement("date of a source still wrong", u"1840=1850"_s, u"SOUR.DATE"_s,
                {u"33 1 DATE 1850"_s}, {Unequal, 3}, {Twice, 1}, Found, SixFound, BothRed,
                {u"9: Date évènement : 12 MAR 1805\r\nDate source : 1850"_s, MarriageTip,
                 u"19: Date évènement : 12 MAR 1805\r\nDate source : 1850"_s});
    replacement("date of a source no longer a year", u"1870=JAN 1870"_s, u"SOUR.DATE"_s,
                {u"35 1 DATE JAN 1870"_s},
                {u"3 4 6 7 8 9 11 12 13 14 15 16 17 18 19 21 22 23 24 25"_s, 5}, {Twice, 1}, Found,
                SixFound, u"6 9 13 14 17 19 25"_s,
                {BirthTip, u"13: Date évènement : 3 JUN 1870\r\nDate source : 0"_s, MarriageTip,
                 OtherBirthTip, u"25: Date évènement : 4 MAY 1870\r\nDate source : 0"_s});
    replacement("date of two births put right", u"MAR 1805=MAR 1840"_s, u"INDI.BIRT.DATE"_s,
                {u"7 2 DATE 12 MAR 1840"_s, u"18 2 DATE 12 MAR 1840"_s}, {u"3 4 14"_s, 1},
                {Twice, 1}, Found, SixFound);
    replacement("dates of a birth and a death made equal", u"3 JUN=4 MAY"_s, u"DATE"_s,
                {u"12 2 DATE 4 MAY 1870"_s}, {Unequal, 3}, {Twice + u" 21 22 23 24 25"_s, 2}, Found,
                SixFound, u"6 9 11 14 17 19 23"_s);
    replacement("birth cited from another source", u"@S1@=@S2@"_s, u"INDI.BIRT.SOUR"_s,
                {u"9 2 SOUR @S2@"_s, u"19 2 SOUR @S2@"_s}, {Unequal, 3}, {Twice, 1}, Found,
                SixFound, BothRed,
                {u"9: Date évènement : 12 MAR 1805\r\nDate source : 1870"_s, MarriageTip,
                 u"19: Date évènement : 12 MAR 1805\r\nDate source : 1870"_s});
    replacement("more to be found", u"Lyon=Martinville"_s, {}, {u"8 2 PLAC Martinville"_s},
                {Unequal, 3}, {Twice, 1}, u"3 4 6 8 15 20 36 38"_s, u"8/38 entrées affichées."_s);
    // Then there are no persons, and no husband either.
    replacement("persons of another level", u"0=5"_s, u"INDI"_s,
                {u"3 5 @I1@ INDI"_s, u"15 5 @I2@ INDI"_s, u"21 5 @I3@ INDI"_s},
                {u"26 28 29 30"_s, 1}, noTwice, Found, SixFound, UnequalRed + u" 30"_s,
                withFamilyTips);
    replacement("sources of another level", u"0=5"_s, u"SOUR"_s,
                {u"31 5 @S1@ SOUR"_s, u"34 5 @S2@ SOUR"_s, u"36 5 @S3@ SOUR"_s}, {Nothing, 0},
                noTwice, Found, SixFound, UnequalRed);
    replacement("births of level 0", u"1=0"_s, u"BIRT"_s,
                {u"6 0 BIRT"_s, u"17 0 BIRT"_s, u"23 0 BIRT"_s},
                // The way up from a citation ends at its birth.
                {u"3 4 6 9 14 17 19"_s, 3}, {Twice, 1}, Found, SixFound);

    row("a line deleted and a date put right",
        {u"gbDelTags"_s, u"leTagsToDel=PLAC"_s, u"gbReplaceString"_s, u"leTextOri=1831"_s,
         u"leTextDest=1830"_s},
        u"8"_s, {u"37 1 DATE 1830"_s}, {without(Unequal, u"8 14"_s), 2},
        {without(Twice, u"8"_s), 1}, Found, u"6/37 entrées affichées."_s, BothRed);
}

void TstReview::afterARun()
{
    QFETCH(QStringList, settings);
    QFETCH(QString, deleted);
    QFETCH(QStringList, changed);
    QFETCH(QString, unequal);
    QFETCH(int, unequalCount);
    QFETCH(QString, twice);
    QFETCH(int, twiceCount);
    QFETCH(QString, found);
    QFETCH(QString, foundStatus);
    QFETCH(QString, red);
    QFETCH(QStringList, tips);

    ReviewForm form;
    form.toggle(DateDiff);
    QCOMPARE(form.rows(), marked(Family, Unequal));
    form.apply(settings);
    QStringList lines = Family;
    for (const QString &line : std::as_const(changed))
        lines.replace(line.section(u' ', 0, 0).toInt() - 1, line.section(u' ', 1));
    QCOMPARE(form.rows(), marked(lines, without(Unequal, deleted)));
    QCOMPARE(form.red(), UnequalRed);
    QCOMPARE(form.tips(), Tips);

    form.takeTold();
    form.toggle(DateDiff);
    QCOMPARE(form.takeTold(), QStringList());
    QCOMPARE(form.rows(), marked(lines, Everything, deleted));

    form.toggle(DateDiff);
    QCOMPARE(form.takeTold(),
             (QStringList{DateStart,
                          u"%1 incohérences sources / évènements détectées."_s.arg(unequalCount)}));
    QCOMPARE(form.rows(), marked(lines, unequal));
    QCOMPARE(form.tips(), tips);

    form.toggle(MultiUse);
    QCOMPARE(form.takeTold(),
             (QStringList{UseStart,
                          u"Recherche terminée. %1 occurences dédoublées."_s.arg(twiceCount)}));
    QCOMPARE(form.rows(), marked(lines, twice));
    QCOMPARE(form.red(), red);

    form.search(u"martin"_s);
    QCOMPARE(form.takeTold(), (QStringList{Hint, foundStatus}));
    QCOMPARE(form.rows(), marked(lines, found));

    form.toggle(MultiUse);
    QCOMPARE(form.takeTold(), QStringList{Hint});
    QCOMPARE(form.rows(), marked(lines, Everything, deleted));
    form.toggle(MultiUse);
    form.toggle(DateDiff);
    QCOMPARE(form.rows(), marked(lines, Everything, deleted));
    form.toggle(Regex);
    QCOMPARE(form.rows(), marked(lines, Everything, deleted));
    QCOMPARE(form.red(), red);
    QCOMPARE(form.tips(), tips);
    QCOMPARE(form.sections(), Sections);
}

void TstReview::severalRuns()
{
    ReviewForm form;
    form.toggle(MultiUse);
    form.apply({u"gbDelTags"_s, u"leTagsToDel=INDI.BIRT.SOUR.PAGE"_s});
    QCOMPARE(form.rows(), marked(Family, without(Twice, u"10"_s)));
    form.toggle(DateDiff);
    form.apply({u"gbReplaceString"_s, u"leTextOri=1840"_s, u"leTextDest=1805"_s});
    const QStringList lines = replaced(Family, u"1 DATE 1840"_s, u"1 DATE 1805"_s);
    QCOMPARE(form.rows(), marked(lines, Unequal));

    form.toggle(DateDiff);
    QCOMPARE(form.rows(), marked(lines, Everything, u"10"_s));
    form.toggle(DateDiff);
    QCOMPARE(form.rows(), marked(lines, u"3 4 14"_s));
    QCOMPARE(form.status(), u"1 incohérences sources / évènements détectées."_s);
    form.search(u"1805"_s);
    QCOMPARE(form.rows(), marked(lines, u"3 6 7 15 17 18 31 33"_s));
    QCOMPARE(form.status(), u"8/37 entrées affichées."_s);

    form.apply({u"gbDelTags"_s, u"leTagsToDel=INDI.BIRT.DATE"_s});
    QCOMPARE(form.rows(), marked(lines, u"3 6 15 17 31 33"_s));
    form.enter();
    QCOMPARE(form.rows(), marked(lines, u"31 33"_s));
    QCOMPARE(form.status(), u"2/34 entrées affichées."_s);
    form.toggle(MultiUse);
    QCOMPARE(form.rows(), marked(lines, Everything, u"7 10 18 24"_s));
    QCOMPARE(form.status(), Hint);
    form.toggle(MultiUse);
    QCOMPARE(form.rows(), marked(lines, Nothing));
    QCOMPARE(form.status(), u"Recherche terminée. 0 occurences dédoublées."_s);
    QCOMPARE(form.red(), BothRed);
    QCOMPARE(form.tips(), Tips);
}

void TstReview::belowADeletedLine()
{
    QStringList lines{u"0 HEAD"_s,      u"1 CHAR UTF-8"_s, u"0 @I1@ INDI"_s, u"1 NOTE un texte c"_s,
                      u"2 CONC oupé"_s, u"3 DATE 1900"_s};
    const ReviewForm form(lines);
    form.apply({}); // this folds the continuation, which deletes it
    lines = replaced(lines, u"1 NOTE un texte c"_s, u"1 NOTE un texte coupé"_s);
    for (const QString &box : {DateDiff, MultiUse}) {
        form.toggle(box);
        QCOMPARE(form.rows(), marked(lines, Nothing));
        form.toggle(box);
        QCOMPARE(form.rows(), marked(lines, Everything, u"5"_s));
    }
}

void TstReview::rowsOfACut()
{
    const QString x = u"x"_s;
    QStringList lines = replaced(Family, u"2 PLAC Lyon"_s, "2 PLAC "_L1 + x.repeated(300));
    ReviewForm form(lines);
    form.toggle(DateDiff);
    form.toggle(MultiUse);
    form.toggle(DateDiff);
    form.toggle(DateDiff);
    form.trigger(u"actionEnregistrerFichier"_s);

    // The save has taken all rows out of the tree to add its new one, which is the ninth line now.
    const QString cut = "2 PLAC "_L1 + x.repeated(248);
    lines = replaced(lines, "2 PLAC "_L1 + x.repeated(300), cut);
    lines = insertedBehind(lines, cut, "3 CONC "_L1 + x.repeated(52));
    const QString unequal = u"3 4 6 7 8 10 15 16 17 18 19 20"_s;
    QCOMPARE(form.rows(), marked(lines, u"3 4 6 7 8 9 10 15 16 17 18 19 20"_s));
    QCOMPARE(form.red(), BothRed);
    // The new line is in no file, and its tool tip says so.
    QCOMPARE(form.tips(), Tips);

    form.toggle(DateDiff);
    QCOMPARE(form.rows(), marked(lines, Everything));
    form.toggle(DateDiff);
    QCOMPARE(form.rows(), marked(lines, unequal));
    form.toggle(MultiUse);
    form.toggle(MultiUse);
    QCOMPARE(form.rows(), marked(lines, u"3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21"_s));
    form.search(u"xx"_s);
    QCOMPARE(form.rows(), marked(lines, u"3 6 8 9"_s));
    QCOMPARE(form.status(), u"4/39 entrées affichées."_s);
    QCOMPARE(form.red(), BothRed);
    QCOMPARE(form.tips(), Tips);
}

void TstReview::savedUnderAFilter_data()
{
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("shown");

    QTest::newRow("date filter") << DateDiff << Unequal;
    QTest::newRow("use filter") << MultiUse << Twice;
}

void TstReview::savedUnderAFilter()
{
    QFETCH(QString, box);
    QFETCH(QString, shown);

    const ReviewForm form;
    const QByteArray before = readText(form.path());
    form.toggle(box);
    form.trigger(u"actionEnregistrerFichier"_s);
    QCOMPARE(readText(form.path()), before);
    QCOMPARE(form.rows(), marked(Family, shown));

    form.apply({u"gbDelTags"_s, u"leTagsToDel=PLAC"_s});
    form.toggle(box);
    form.toggle(box);
    form.trigger(u"actionEnregistrerFichier"_s);
    QCOMPARE(readText(form.path()), QByteArray(before).replace("2 PLAC Lyon\n", ""));
    QCOMPARE(form.rows(), marked(Family, without(shown, u"8"_s)));
}

void TstReview::inTheMidstOfAFilter_data()
{
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QStringList>("told");
    QTest::addColumn<QStringList>("checked");
    QTest::addColumn<QString>("red");

    const auto row = [](const char *name, const QString &box, const QString &action,
                        const QString &shown, const QStringList &told, const QStringList &checked,
                        const QString &red) {
        QTest::newRow(name) << box << action << shown << told << checked << red;
    };
    // What happens in between happens when everything has just been hidden; then the filter adds
    // what it has to show.
    const QString enter = u"enter"_s;
    row("a search within the date filter", DateDiff, enter, Unequal + u" 20 36 38"_s,
        {DateStart, SixFound, ThreeUnequal}, {DateDiff}, UnequalRed);
    row("a search within the use filter", MultiUse, enter, Twice + u" 36 38"_s,
        {UseStart, SixFound, OneTwice}, {MultiUse}, TwiceRed);
    row("the use filter within the date filter", DateDiff, MultiUse, Twice,
        {DateStart, UseStart, OneTwice, ThreeUnequal}, {DateDiff, MultiUse}, BothRed);
    row("the date filter within the use filter", MultiUse, DateDiff, Twice,
        {UseStart, DateStart, ThreeUnequal, OneTwice}, {DateDiff, MultiUse}, BothRed);
    row("the date filter off within itself", DateDiff, DateDiff, Everything,
        {DateStart, Hint, ThreeUnequal}, {}, UnequalRed);
    row("the use filter off within itself", MultiUse, MultiUse, Everything,
        {UseStart, Hint, OneTwice}, {}, TwiceRed);

    const auto deletion = [&row](const char *name, const QString &box, const QString &tags,
                                 const QString &shown, const QString &count, const QString &start,
                                 const QString &end, const QString &red) {
        row(name, box, tags, shown,
            {start, u"Reconcaténation des balises en cours..."_s,
             u"0 balises CONC reconcaténées."_s, u"Suppression des balises en cours..."_s,
             count + u" balises supprimées."_s, end},
            {box}, red);
    };
    deletion("a deletion of places within the date filter", DateDiff, u"PLAC"_s,
             without(Unequal, u"8"_s), u"1"_s, DateStart, ThreeUnequal, UnequalRed);
    deletion("a deletion of places within the use filter", MultiUse, u"PLAC"_s,
             without(Twice, u"8"_s), u"1"_s, UseStart, OneTwice, TwiceRed);
    deletion("a deletion of dates within the date filter", DateDiff, u"INDI.BIRT.DATE"_s,
             u"3 4 14"_s, u"3"_s, DateStart, u"1 incohérences sources / évènements détectées."_s,
             u"14"_s);
    deletion("a deletion of dates within the use filter", MultiUse, u"INDI.BIRT.DATE"_s, Nothing,
             u"3"_s, UseStart, u"Recherche terminée. 0 occurences dédoublées."_s, {});
    // The lists exist already.
    deletion("a deletion of citations within the date filter", DateDiff, u"INDI.BIRT.SOUR"_s,
             without(Unequal, u"9 19"_s), u"4"_s, DateStart, ThreeUnequal, UnequalRed);
    deletion("a deletion of citations within the use filter", MultiUse, u"INDI.BIRT.SOUR"_s,
             without(Twice, u"9 10 19"_s), u"4"_s, UseStart, OneTwice, TwiceRed);
    deletion("a deletion of all sources within the date filter", DateDiff, u"SOUR"_s, Nothing,
             u"14"_s, DateStart, u"0 incohérences sources / évènements détectées."_s, {});
    deletion("a deletion of all sources within the use filter", MultiUse, u"SOUR"_s,
             without(Twice, u"9 10 13 19"_s), u"14"_s, UseStart, OneTwice, TwiceRed);
}

void TstReview::inTheMidstOfAFilter()
{
    QFETCH(QString, box);
    QFETCH(QString, action);
    QFETCH(QString, shown);
    QFETCH(QStringList, told);
    QFETCH(QStringList, checked);
    QFETCH(QString, red);

    ReviewForm form;
    form.type(u"martin"_s);
    form.takeTold();
    QStringList rowsBefore;
    const auto act = [&form, &rowsBefore, &action] {
        rowsBefore = form.rows();
        if (action == "enter"_L1)
            form.enter();
        else if (action.startsWith("cb"_L1))
            form.toggle(action);
        else
            form.apply({u"gbDelTags"_s, "leTagsToDel="_L1 + action});
    };
    QMetaObject::invokeMethod(form.window.get(), act, Qt::QueuedConnection);
    form.toggle(box);
    QCOMPARE(rowsBefore, marked(Family, Nothing));
    QCOMPARE(form.rows(), marked(Family, shown));
    QCOMPARE(form.takeTold(), told);
    QCOMPARE(form.checked(), checked);
    QCOMPARE(form.red(), red);
    QVERIFY(!form.progress()->isVisible());
}

void TstReview::searchAtTheHundredthCitation()
{
    QStringList lines{
        u"0 HEAD"_s,  u"1 CHAR UTF-8"_s, u"0 @I1@ INDI"_s,       u"1 NAME Jean /MARTIN/"_s,
        u"1 SEX M"_s, u"1 BIRT"_s,       u"2 DATE 12 MAR 1805"_s};
    QString shown = u"3 4 6 7"_s;
    QString red;
    for (int number = 8; number < 8 + 102; ++number) {
        lines += u"2 SOUR @S1@"_s;
        red += u" %1"_s.arg(number);
    }
    shown += red;
    lines += {u"0 @S1@ SOUR"_s, u"1 DATE 1840"_s};

    ReviewForm form(lines);
    form.type(u"zzz"_s);
    form.takeTold();
    atNextMove(form.progress(), [&form] { form.enter(); });
    form.toggle(DateDiff);
    QCOMPARE(form.takeTold(), (QStringList{DateStart, u"0/111 entrées affichées."_s,
                                           u"102 incohérences sources / évènements détectées."_s}));
    // The last three citations have shown the hidden rows again.
    QCOMPARE(form.rows(), marked(lines, shown));
    QCOMPARE(form.red(), red.mid(1));
    form.enter();
    QCOMPARE(form.rows(), marked(lines, Nothing));
}

void TstReview::searchAtTheHundredthSource()
{
    QStringList lines{u"0 HEAD"_s, u"1 CHAR UTF-8"_s};
    QStringList shown;
    QStringList red;
    for (int person = 1; person <= 2; ++person) {
        const qsizetype first = lines.size() + 1;
        lines += {u"0 @I%1@ INDI"_s.arg(person), u"1 SEX M"_s, u"1 BIRT"_s, u"2 DATE 1805"_s};
        red += QString::number(first + 2);
        for (int source = 1; source <= 101; ++source)
            lines += u"2 SOUR @S%1@"_s.arg(source);
        for (qsizetype number = first; number <= lines.size(); ++number)
            shown += QString::number(number);
    }
    for (int source = 1; source <= 102; ++source)
        lines += {u"0 @S%1@ SOUR"_s.arg(source), u"1 TITL Registre"_s};

    ReviewForm form(lines);
    form.type(u"zzz"_s);
    form.takeTold();
    atNextMove(form.progress(), [&form] { form.enter(); });
    form.toggle(MultiUse);
    QCOMPARE(form.takeTold(), (QStringList{UseStart, u"0/416 entrées affichées."_s,
                                           u"Recherche terminée. 101 occurences dédoublées."_s}));
    QCOMPARE(form.rows(), marked(lines, shown.join(u' ')));
    QCOMPARE(form.red(), red.join(u' '));
    form.toggle(MultiUse);
    QCOMPARE(form.status(), Hint);
    QCOMPARE(form.rows(), marked(lines, Everything));
}

VARLUNE_TEST_MAIN(TstReview)
#include "tst_review.moc"
