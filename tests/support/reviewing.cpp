#include "reviewing.h"

#include "debuglistener.h"
#include "markingtranslator.h"
#include "progresslog.h"
#include "told.h"

#include <QAbstractButton>
#include <QBrush>
#include <QLineEdit>
#include <QProgressBar>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTest>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <utility>

using namespace Qt::StringLiterals;

QStringList marked(const QStringList &lines, const QString &shown, const QString &hidden)
{
    const bool everything = shown == Everything;
    QStringList numbers = (everything ? hidden : shown).split(u' ', Qt::SkipEmptyParts);
    QStringList rows;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const bool named = numbers.removeAll(QString::number(i + 1)) > 0;
        rows += (named != everything ? "visible: "_L1 : "hidden: "_L1) + lines.at(i);
    }
    return rows + numbers; // a number without a line is a difference
}

ReviewSession::ReviewSession(const QStringList &lines)
{
    window->show();
    load(lines + QStringList{u"0 TRLR"_s});
    QObject::connect(statusBar(), &QStatusBar::messageChanged, window.get(),
                     [this](const QString &text) { m_told += text; });
}

QLineEdit *ReviewSession::field() const
{
    return find<QLineEdit>(u"leRecherche"_s);
}

QStatusBar *ReviewSession::statusBar() const
{
    return find<QStatusBar>(u"statusbar"_s);
}

void ReviewSession::type(const QString &text) const
{
    field()->selectAll();
    if (text.isEmpty())
        QTest::keyClick(field(), Qt::Key_Delete);
    for (const QChar letter : text) // which may lie outside ASCII
        QTest::sendKeyEvent(QTest::Click, field(), Qt::Key_unknown, letter, Qt::NoModifier);
    QCOMPARE(field()->text(), text);
}

void ReviewSession::enter() const
{
    QTest::keyClick(field(), Qt::Key_Return);
}

void ReviewSession::search(const QString &text) const
{
    type(text);
    enter();
}

void ReviewSession::toggle(const QString &box) const
{
    auto *button = find<QAbstractButton>(box);
    const QSignalSpy toggled(button, &QAbstractButton::toggled);
    clickIndicator(button);
    QVERIFY2(!toggled.isEmpty(), qPrintable(box));
}

QStringList ReviewSession::takeTold()
{
    return std::exchange(m_told, {});
}

QList<TwItem *> ReviewSession::entries() const
{
    QList<TwItem *> entries;
    for (QTreeWidgetItemIterator it(tree()); *it; ++it) {
        if ((*it)->parent() || tree()->indexOfTopLevelItem(*it) >= SectionNodes)
            entries += static_cast<TwItem *>(*it);
    }
    return entries;
}

QStringList ReviewSession::rows() const
{
    QStringList rows;
    const QList<TwItem *> tabTwi = entries();
    for (const TwItem *twi : tabTwi)
        rows += (twi->isHidden() ? "hidden: "_L1 : "visible: "_L1) + lineText(twi);
    return rows;
}

QStringList ReviewSession::pictures() const
{
    QStringList pictures;
    const QList<TwItem *> tabTwi = entries();
    for (TwItem *twi : tabTwi)
        pictures += picture(twi);
    return pictures;
}

QString picture(TwItem *twi, bool shown, bool red, const QString &toolTip)
{
    QChar sign = shown ? (red ? u'*' : u'+') : (red ? u'#' : u' ');
    if (twi->isToDelete())
        sign = shown ? u'!' : red ? u'=' : u'-';
    return sign + lineText(twi) + (toolTip.isEmpty() ? QString() : " | "_L1 + toolTip);
}

QString picture(TwItem *twi)
{
    const QString number = "ligne "_L1 + twi->getNumLineGedFile();
    const QString toolTip = twi->toolTip(0);
    const bool red = twi->background(0) == QBrush(Qt::red, Qt::SolidPattern);
    QString result = picture(twi, !twi->isHidden(), red, toolTip == number ? QString() : toolTip);
    if (toolTip.isEmpty())
        result += u" (no tool tip)"_s;
    if (!red && twi->background(0) != QBrush())
        result += u" (another colour)"_s;
    for (int column = 1; column < 4; ++column) {
        if (twi->background(column) != QBrush())
            result += u" (colour in column %1)"_s.arg(column);
        if (twi->toolTip(column) != (column == 1 ? number : QString()))
            result += u" (tool tip in column %1)"_s.arg(column);
    }
    for (int column = 0; column < 4; ++column) {
        for (const int role : {Qt::ForegroundRole, Qt::FontRole}) {
            if (twi->data(column, role).isValid())
                result += u" (role %1 in column %2)"_s.arg(role).arg(column);
        }
    }
    if (twi->isExpanded())
        result += u" (expanded)"_s;
    return result;
}

QStringList allShown(QStringList pictures)
{
    for (QString &line : pictures)
        line.replace(0, 1, line.startsWith(u' ') ? u'+' : line.at(0));
    return pictures;
}

ReviewedDocument::ReviewedDocument(const QStringList &pictures)
{
    QStringList lines;
    for (const QString &line : pictures)
        lines += line.mid(1).split(u" | "_s).constFirst();
    if (!load(lines))
        qFatal("the lines cannot be loaded");
    const QList<TwItem *> roots = gedcom.getTabTwItemsRoot();
    for (TwItem *root : roots)
        m_entries += QList<TwItem *>{root} + root->getTabTwiChilds(false);
    for (qsizetype i = 0; i < m_entries.size(); ++i) {
        if (pictures.at(i).startsWith(u'-') || pictures.at(i).startsWith(u'='))
            m_entries.at(i)->setDelete(true);
    }
    newJournal();
}

QStringList ReviewedDocument::pictures() const
{
    QStringList pictures;
    for (TwItem *twi : m_entries)
        pictures += picture(twi);
    return pictures;
}

QList<QStringList> ReviewedDocument::columns() const
{
    QList<QStringList> columns;
    for (const TwItem *twi : m_entries)
        columns += columnTexts(twi);
    return columns;
}

QStringList ReviewedDocument::statusAndBar() const
{
    return {status(), u"%1 of %2"_s.arg(progress.value()).arg(progress.maximum()),
            progress.isVisible() ? u"bar shown"_s : u"bar hidden"_s};
}

void ReviewedDocument::hideAll()
{
    const QList<TwItem *> live = gedcom.getTabTotalTwItems();
    for (TwItem *twi : live)
        twi->setTwiHidden(true);
}

void compareFrame(ReviewedDocument *review, const QString &announced, const QString &concluded)
{
    QStringList debug;
    Told told(review);
    {
        const DebugListener listener([&debug](const QString &text) { debug += text; });
        review->filter();
    }
    QCOMPARE(told.take(), QStringList({"status: "_L1 + announced, u"bar shown"_s,
                                       u"bar: 100 of 250"_s, u"events"_s, u"bar: 200 of 250"_s,
                                       u"events"_s, u"bar hidden"_s, "status: "_L1 + concluded}));
    QCOMPARE(debug, QStringList());
    QCOMPARE(review->newJournal(), QStringList());
}

void addProgressColumns()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<QStringList>("expected"); // between the first events and the end
    QTest::addColumn<int>("value"); // at the end
    QTest::addColumn<QStringList>("again"); // the same for a second run, with the events before it
}

void compareProgress(ReviewedDocument *review)
{
    QFETCH(int, size);
    QFETCH(QStringList, expected);
    QFETCH(int, value);
    QFETCH(QStringList, again);

    const ProgressLog log(&review->progress);
    review->filter();
    const QStringList whole =
        QStringList{u"show"_s, u"events at -1"_s} + expected + QStringList{u"hide"_s};
    QCOMPARE(log.entries(), whole);
    QCOMPARE(review->progress.minimum(), 0);
    QCOMPARE(review->progress.maximum(), size);
    QCOMPARE(review->progress.value(), value); // it is hidden, not reset
    QVERIFY(review->progress.isHidden());

    review->filter();
    QCOMPARE(log.entries(), whole + QStringList{u"show"_s} + again + QStringList{u"hide"_s});
}

void compareTranslation(ReviewedDocument *review)
{
    const MarkingTranslator translator;
    const QSignalSpy texts(&review->statusBar, &QStatusBar::messageChanged);
    review->filter();
    QCOMPARE(texts.size(), 2);
    for (const QList<QVariant> &arguments : texts) {
        const QString text = arguments.constFirst().toString();
        QVERIFY2(text.contains(u"[Gedcom]"_s), qPrintable(text));
    }
}

void compareCheckBox(const ReviewSession &session, const QString &box, const QStringList &filtered,
                     const QString &concluded)
{
    // After a search, whose text stays.
    const QString text = session.text(u"leRecherche"_s);
    session.toggle(box);
    QVERIFY(session.isChecked(box));
    QCOMPARE(session.pictures(), filtered);
    QCOMPARE(session.status(), concluded);
    QCOMPARE(session.text(u"leRecherche"_s), text);
    QVERIFY(session.progress()->isHidden());
    for (int i = 0; i < SectionNodes - 1; ++i) // except the notes, of which there are none
        QVERIFY(!session.tree()->topLevelItem(i)->isHidden());

    // Unchecked, it shows all but the deleted row and clears the field, which counts as an edit.
    session.toggle(box);
    QVERIFY(!session.isChecked(box));
    const QStringList all = allShown(filtered);
    QCOMPARE(session.pictures(), all);
    QCOMPARE(session.text(u"leRecherche"_s), QString());
    QCOMPARE(session.status(), Hint);

    session.toggle(box);
    QCOMPARE(session.pictures(), filtered);
    session.toggle(box);
    QCOMPARE(session.pictures(), all);
    QCOMPARE(session.status(), concluded);
}

void compareBoxStates(const char *slot)
{
    const ReviewSession session({u"0 @I1@ INDI"_s, u"1 SEX M"_s});
    for (const int state : {int(Qt::Checked), int(Qt::PartiallyChecked)}) {
        QVERIFY(QMetaObject::invokeMethod(session.window.get(), slot, Q_ARG(int, state)));
        QCOMPARE(session.pictures(), QStringList({u" 0 @I1@ INDI"_s, u" 1 SEX M"_s}));
        QVERIFY(
            QMetaObject::invokeMethod(session.window.get(), slot, Q_ARG(int, int(Qt::Unchecked))));
        QCOMPARE(session.pictures(), QStringList({u"+0 @I1@ INDI"_s, u"+1 SEX M"_s}));
    }
}

void compareSave(ReviewedDocument *review)
{
    const QByteArray before = readText(review->path());
    review->filter();
    QCOMPARE(readText(review->path()), before);
    QVERIFY(review->gedcom.writeGedFile(review->path()));
    QCOMPARE(readText(review->path()), before);
}

void addSeeds()
{
    QTest::addColumn<uint>("seed");

    for (uint seed = 1; seed <= 6; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

QStringList allHidden(QStringList lines)
{
    for (QString &line : lines)
        line.prepend(u' ');
    return lines;
}

QStringList topRows(const QTreeWidget &tree)
{
    QStringList rows;
    for (int i = 0; i < tree.topLevelItemCount(); ++i) {
        const QTreeWidgetItem *row = tree.topLevelItem(i);
        rows += (row->isHidden() ? u"hidden: "_s : QString()) + row->text(0) + u' ' + row->text(1);
    }
    return rows;
}

QStringList columnTexts(const QTreeWidgetItem *row)
{
    QStringList texts;
    for (int column = 0; column < row->columnCount(); ++column)
        texts += row->text(column);
    return texts;
}

void atNextMove(QProgressBar *bar, const std::function<void()> &what)
{
    QObject::connect(
        bar, &QProgressBar::valueChanged, bar,
        [bar, what] { QMetaObject::invokeMethod(bar, what, Qt::QueuedConnection); },
        Qt::SingleShotConnection);
}

void change(Gedcom *gedcom, const QStringList &arguments)
{
    if (arguments.size() == 3)
        gedcom->searchAndReplace(arguments.at(0), arguments.at(1), arguments.at(2), true, false);
    else
        gedcom->delListTag({arguments.at(0)}, false, false, arguments.size() == 2, false,
                           arguments.value(1));
}
