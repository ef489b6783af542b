#include "boxes.h"
#include "document.h"
#include "testmain.h"

#include <QHelpEvent>
#include <QMetaObject>
#include <QPointer>
#include <QProgressBar>
#include <QStyledItemDelegate>
#include <QTest>
#include <QTreeWidget>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

constexpr int Persons = 400; // all expanded

using Lines = std::function<QStringList(int person, bool changes)>;
using Touch = std::function<void(QTreeWidget *)>;
using Operation = std::function<void(Document &)>;

/// Counts how often the size of a row is asked for, which is what a layout costs.
class CountingDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option,
                                 const QModelIndex &index) const override
    {
        ++m_count;
        return QStyledItemDelegate::sizeHint(option, index);
    }

    [[nodiscard]] int count() const
    {
        return m_count;
    }

private:
    mutable int m_count = 0;
};

void hover(QTreeWidget *tree)
{
    const QPoint place = tree->viewport()->rect().center();
    QCoreApplication::postEvent(
        tree->viewport(),
        new QHelpEvent(QEvent::ToolTip, place, tree->viewport()->mapToGlobal(place)));
}

void press(QTreeWidget *tree, Qt::Key key, const QString &text)
{
    QCoreApplication::postEvent(tree, new QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier, text));
}

void click(QTreeWidget *tree)
{
    const QPointF place(20, 60);
    const QPointF onScreen = tree->viewport()->mapToGlobal(place);
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QCoreApplication::postEvent(
            tree->viewport(),
            new QMouseEvent(type, place, onScreen, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier));
    }
}

/// Runs \p operation on a document of Persons, \p changed of which it changes, while the user
/// touches the tree at the first event. Returns how often the size of a row was asked for.
int sizesAsked(const Lines &lines, const Operation &operation, const Touch &touch, int changed)
{
    Document document;
    QStringList file{u"0 HEAD"_s, u"1 CHAR UTF-8"_s};
    for (int person = 1; person <= Persons; ++person)
        file += lines(person, person <= changed);
    document.load(file);
    CountingDelegate delegate;
    document.tree.setItemDelegate(&delegate);
    document.tree.resize(500, 400);
    document.tree.show();
    document.tree.expandAll();
    QCoreApplication::processEvents();

    QPointer<QObject> once(new QObject);
    QObject::connect(&document.progress, &QProgressBar::valueChanged, once, [&](int value) {
        if (value <= 0)
            return; // the range has been set
        delete once;
        touch(&document.tree);
    });
    const int before = delegate.count();
    operation(document);
    const int asked = delegate.count() - before;
    delete once;
    return asked;
}

} // namespace

/// A user who touches the tree during a run, or a box that interrupts it, must not make each
/// further change lay out all rows again.
class TstLayout : public QObject
{
    Q_OBJECT

private slots:
    void changesAreLaidOutTogether_data();
    void changesAreLaidOutTogether();
    void boxesLetChangesBeLaidOutTogether();
};

void TstLayout::changesAreLaidOutTogether_data()
{
    QTest::addColumn<Lines>("lines");
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<Touch>("touch");

    const auto person = [](const QStringList &lines) -> Lines {
        return [lines](int number, bool changes) {
            QStringList record{u"0 @I%1@ INDI"_s.arg(number)};
            for (QString line : lines)
                record += line.replace(u"%1"_s, changes ? u"avant"_s : u"rien"_s);
            return record;
        };
    };
    const Lines noted = person({u"1 NAME Jean /MARTIN/"_s, u"1 NOTE %1"_s, u"2 CONT a"_s});
    const Operation replace = [](Document &document) {
        document.gedcom.searchAndReplace(u"avant"_s, u"apres"_s, {}, true, false);
    };
    const std::pair<const char *, Touch> touches[] = {
        {"a tool tip", hover},
        {"an arrow key", [](QTreeWidget *tree) { press(tree, Qt::Key_Down, {}); }},
        {"the key that expands all",
         [](QTreeWidget *tree) { press(tree, Qt::Key_Asterisk, u"*"_s); }},
        {"a click", click},
    };
    for (const auto &[name, touch] : touches)
        QTest::addRow("replacement, %s", name) << noted << replace << touch;

    const std::tuple<const char *, Lines, Operation> operations[] = {
        {"fold",
         [](int number, bool changes) {
             return QStringList{u"0 @I%1@ INDI"_s.arg(number), u"1 NOTE a"_s,
                                changes ? u"2 CONC b"_s : u"2 CONT b"_s, u"2 CONT c"_s};
         },
         [](Document &document) { document.gedcom.unConc(); }},
        {"cut",
         [](int number, bool changes) {
             return QStringList{u"0 @I%1@ INDI"_s.arg(number),
                                "1 NOTE "_L1 + u"a"_s.repeated(changes ? 300 : 30), u"2 CONT c"_s};
         },
         [](Document &document) { document.gedcom.checkOversized(); }},
        {"spacing",
         [](int number, bool changes) {
             return QStringList{u"0 @I%1@ INDI"_s.arg(number),
                                changes ? u"1 NAME Jean/MARTIN/"_s : u"1 NAME Jean /MARTIN/"_s,
                                u"2 SURN MARTIN"_s};
         },
         [](Document &document) { document.gedcom.setSpaceNames(); }},
        {"deletion", noted,
         [](Document &document) {
             document.gedcom.delListTag({u"NOTE"_s}, false, false, true, false, u"avant"_s);
         }},
        {"move", person({u"1 NOTE %1"_s, u"1 TEXT a"_s}),
         [](Document &document) {
             const QList<TwItem *> all = document.gedcom.getTabTotalTwItems();
             for (TwItem *twi : all) { // a value to be moved stands only where one changes
                 if (lineText(twi) == "1 NOTE rien"_L1)
                     twi->setText(ValueColumn, {});
             }
             document.gedcom.moveTagContent(u"INDI.NOTE"_s, u"INDI.TEXT"_s, false, true, false);
         }},
        {"clickable links",
         [](int number, bool changes) {
             return QStringList{u"0 @I%1@ INDI"_s.arg(number),
                                changes ? u"1 NOTE https://a.test/x"_s : u"1 NOTE rien"_s,
                                u"2 CONT c"_s};
         },
         [](Document &document) { document.gedcom.setURLClickable(true, {}); }},
        {"media paths",
         [](int number, bool changes) {
             return QStringList{u"0 @O%1@ OBJE"_s.arg(number),
                                changes ? u"1 FILE a/b.jpg"_s : u"1 TITL b"_s, u"2 FORM jpg"_s};
         },
         [](Document &document) { document.gedcom.setMediaFilePath(u"c/"_s); }},
    };
    for (const auto &[name, lines, operation] : operations)
        QTest::addRow("%s, a tool tip", name) << lines << operation << Touch(hover);
}

void TstLayout::changesAreLaidOutTogether()
{
    QFETCH(Lines, lines);
    QFETCH(Operation, operation);
    QFETCH(Touch, touch);

    const int many = sizesAsked(lines, operation, touch, Persons);
    const int few = sizesAsked(lines, operation, touch, Persons / 4);
    // The same number of layouts for four times as many changes; rows that are hidden meanwhile, or
    // come in, account for less than one more.
    QVERIFY2(many <= few + 4 * Persons, qPrintable(u"%1 and %2"_s.arg(many).arg(few)));
}

void TstLayout::boxesLetChangesBeLaidOutTogether()
{
    const auto lines = [](int malformed) -> Lines {
        return [malformed](int number, bool changes) {
            QString name = changes ? u"1 NAME Jean/MARTIN/"_s : u"1 NAME Jean /MARTIN/"_s;
            if (number == malformed)
                name.chop(1);
            return QStringList{u"0 @I%1@ INDI"_s.arg(number), name, u"2 SURN MARTIN"_s};
        };
    };
    const Operation space = [](Document &document) { document.gedcom.setSpaceNames(); };
    AnsweredBoxes boxes;
    // While the box is open the view is free to lay its rows out.
    boxes.setInspector([](QMessageBox *) { QCoreApplication::processEvents(); });
    const auto untouched = [](QTreeWidget *) {};
    const int many = sizesAsked(lines(2), space, untouched, Persons);
    const int few = sizesAsked(lines(2), space, untouched, Persons / 4);
    QCOMPARE(boxes.texts(),
             QStringList(2, u"Erreur dans le nom pour l'entrée 1 NAME Jean/MARTIN"_s));
    QVERIFY2(many <= few + 4 * Persons, qPrintable(u"%1 and %2"_s.arg(many).arg(few)));
}

VARLUNE_TEST_MAIN(TstLayout)
#include "tst_layout.moc"
