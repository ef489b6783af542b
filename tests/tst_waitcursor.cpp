#include "reviewing.h"
#include "testmain.h"
#include "twitem.h"

#include <QApplication>
#include <QCursor>
#include <QProgressBar>
#include <QStatusBar>
#include <QTest>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

bool isWaiting()
{
    return QApplication::overrideCursor()
        && QApplication::overrideCursor()->shape() == Qt::WaitCursor;
}

/// So many persons, of whose birth dates every second one is not that of its source.
QStringList crowd(int persons)
{
    QStringList lines{u"0 HEAD"_s, u"1 CHAR UTF-8"_s};
    for (int i = 1; i <= persons; ++i) {
        lines += {u"0 @I%1@ INDI"_s.arg(i), u"1 BIRT"_s,
                  u"2 DATE 12 MAR %1"_s.arg(i % 2 == 0 ? 1805 : 1806), u"2 SOUR @S1@"_s};
    }
    return lines + QStringList{u"0 @S1@ SOUR"_s, u"1 DATE 1805"_s, u"0 @S2@ SOUR"_s, u"1 PAGE 1"_s};
}

/// The window with a file, which notes each status text with a sign in front that tells whether the
/// wait cursor is on at that moment.
class CursorSession : public ReviewSession
{
public:
    explicit CursorSession(int persons = 4) : ReviewSession(crowd(persons))
    {
        QObject::connect(statusBar(), &QStatusBar::messageChanged, window.get(),
                         [this](const QString &text) {
                             m_texts += (isWaiting() ? "waiting: "_L1 : "free: "_L1) + text;
                         });
    }

    /// The texts since the last call of this, without doubles in a row.
    QStringList takeTexts()
    {
        QStringList texts = std::exchange(m_texts, {});
        texts.erase(std::unique(texts.begin(), texts.end()), texts.end());
        return texts;
    }

private:
    QStringList m_texts;
};

/// An entry that notes whenever its line is read. It lies in a closed record, so no view reads it.
class WatchedEntry : public TwItem
{
public:
    WatchedEntry() : TwItem(-1)
    {
        setTwiValuesFromStr(u"1 OCCU 12 MAR 1805"_s, this);
    }
    [[nodiscard]] QVariant data(int column, int role) const override
    {
        if (role == Qt::DisplayRole)
            m_reads += isWaiting() ? u"waiting"_s : u"free"_s;
        return TwItem::data(column, role);
    }

    /// The reads since the last call of this, without doubles.
    QStringList takeReads()
    {
        QStringList reads = std::exchange(m_reads, {});
        reads.removeDuplicates();
        return reads;
    }

private:
    mutable QStringList m_reads; // reading does not change the entry
};

const QString FreeHint = u"free: "_s + Hint;
const QString WaitingHint = u"waiting: "_s + Hint;
const QStringList DatesTold{u"waiting: Recherche des incohérences sources / évènements"_s,
                            u"waiting: 2 incohérences sources / évènements détectées."_s};
const QStringList UsesTold{u"waiting: Recherche des sources utilisées plusieurs fois"_s,
                           u"waiting: Recherche terminée. 1 occurences dédoublées."_s};

} // namespace

/// The review tools show that they are at work, and that they have done.
class TstWaitCursor : public QObject
{
    Q_OBJECT

private slots:
    void search();
    void filters_data();
    void filters();
    void noReadWithoutIt();
    void insideAFilter_data();
    void insideAFilter();
    void noCursorForAnythingElse();
};

void TstWaitCursor::search()
{
    CursorSession session;
    session.search(u"12 MAR 1805"_s);
    QCOMPARE(session.takeTexts(), (QStringList{FreeHint, u"waiting: 6/22 entrées affichées."_s}));
    QVERIFY(!QApplication::overrideCursor());
    for (const QString &box : {Sensitive, Regex}) {
        session.type(u"12"_s);
        session.takeTexts();
        session.toggle(box);
        QCOMPARE(session.takeTexts(), QStringList{u"waiting: 12/22 entrées affichées."_s});
        QVERIFY(!QApplication::overrideCursor());
    }

    session.search(u"(12"_s); // no valid expression
    QCOMPARE(session.takeTexts(), (QStringList{FreeHint, u"waiting: 0/22 entrées affichées."_s}));
    QVERIFY(!QApplication::overrideCursor());
    session.search({});
    QCOMPARE(session.takeTexts(), (QStringList{FreeHint, u"waiting: 22/22 entrées affichées."_s}));
    QVERIFY(!QApplication::overrideCursor());
}

void TstWaitCursor::filters_data()
{
    QTest::addColumn<QStringList>("told");

    QTest::newRow(qPrintable(DateDiff)) << DatesTold;
    QTest::newRow(qPrintable(MultiUse)) << UsesTold;
}

void TstWaitCursor::filters()
{
    QFETCH(const QStringList, told);

    const QString box = QString::fromLatin1(QTest::currentDataTag());
    CursorSession session;
    session.toggle(box);
    QCOMPARE(session.takeTexts(), told);
    QVERIFY(!QApplication::overrideCursor());

    // Switching off empties the search field, which is told.
    session.search(u"x"_s);
    session.takeTexts();
    session.toggle(box);
    QCOMPARE(session.takeTexts(), QStringList{WaitingHint});
    QVERIFY(!QApplication::overrideCursor());
}

void TstWaitCursor::noReadWithoutIt()
{
    CursorSession session;
    auto *entry = new WatchedEntry;
    session.row(u"0 @I1@ INDI"_s)->insertTabChild(0, entry);
    entry->takeReads();
    const QStringList waiting{u"waiting"_s};
    for (const QString &text : {u"12 MAR"_s, u"no such text"_s}) {
        session.search(text);
        QCOMPARE(entry->takeReads(), waiting);
        QCOMPARE(entry->isHidden(), text != "12 MAR"_L1);
    }
    for (const QString &box : {Sensitive, Regex, DateDiff, MultiUse}) {
        session.toggle(box);
        QCOMPARE(entry->takeReads(), waiting);
    }
}

void TstWaitCursor::insideAFilter_data()
{
    QTest::addColumn<QString>("other");

    // An event in the midst of the filter of the dates brings one of these.
    QTest::newRow("search") << QString();
    QTest::newRow("search by expression") << Regex;
    QTest::newRow("same filter switched off") << DateDiff;
    QTest::newRow("other filter") << MultiUse;
}

void TstWaitCursor::insideAFilter()
{
    QFETCH(const QString, other);

    CursorSession session(250);
    QStringList inside;
    atNextMove(session.progress(), [&] {
        inside += isWaiting() ? u"waiting"_s : u"free"_s;
        if (other.isEmpty())
            session.enter();
        else
            session.toggle(other);
        inside += isWaiting() ? u"waiting"_s : u"free"_s;
    });
    session.toggle(DateDiff);
    QCOMPARE(inside, (QStringList{u"waiting"_s, u"waiting"_s}));
    QCOMPARE(session.takeTexts().constLast(),
             u"waiting: 125 incohérences sources / évènements détectées."_s);
    QVERIFY(!QApplication::overrideCursor());
}

void TstWaitCursor::noCursorForAnythingElse()
{
    // A run tells its progress by the bar, and may stop at a box.
    CursorSession session;
    session.apply({u"gbDelTags"_s, u"leTagsToDel=PAGE"_s});
    session.trigger(u"actionEnregistrerFichier"_s);
    const QStringList texts = session.takeTexts();
    QVERIFY(texts.size() > 4);
    QCOMPARE(texts.filter(u"waiting: "_s), QStringList());
    QVERIFY(!QApplication::overrideCursor());
}

VARLUNE_TEST_MAIN(TstWaitCursor)
#include "tst_waitcursor.moc"
