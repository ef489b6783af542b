#include "contrast.h"
#include "reviewing.h"
#include "testmain.h"
#include "twitem.h"
#include "window.h"

#include <QApplication>
#include <QImage>
#include <QMenuBar>
#include <QProxyStyle>
#include <QScopeGuard>
#include <QStyledItemDelegate>
#include <QStyleFactory>
#include <QTreeWidget>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QColor MenuBarBackground(u"#f0f0f0"_s);

/// The colours of a dark desktop, with \p text on everything.
QPalette darkPalette(const QColor &text = QColor(240, 240, 240))
{
    QPalette palette(QColor(50, 50, 50));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, text);
    palette.setColor(QPalette::Base, QColor(30, 30, 30));
    return palette;
}

/// A style with standard colours of its own.
class ColouredStyle : public QProxyStyle
{
public:
    explicit ColouredStyle(const QPalette &palette) : QProxyStyle(u"fusion"_s), m_palette(palette)
    {
    }
    [[nodiscard]] QPalette standardPalette() const override
    {
        return m_palette;
    }

private:
    QPalette m_palette;
};

/// Sets style and colours of the desktop while it lives.
class Desktop
{
public:
    explicit Desktop(const QPalette &palette)
    {
        QApplication::setStyle(new ColouredStyle(palette));
        QApplication::setPalette(palette);
    }
    ~Desktop()
    {
        QApplication::setStyle(QStyleFactory::create(u"fusion"_s));
        QApplication::setPalette(QPalette());
    }
    Q_DISABLE_COPY_MOVE(Desktop)
};

/// The highest contrast to \p background that a pixel of the picture has.
double strongest(const QImage &picture, const QColor &background)
{
    double found = 1;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            found = std::max(found, contrast(picture.pixelColor(x, y), background));
    }
    return found;
}

/// The birth of 1805 has a source of 1840, whose citation the date filter makes red.
const QStringList Flagged{u"0 HEAD"_s,          u"1 CHAR UTF-8"_s, u"0 @I1@ INDI"_s,
                          u"1 NAME Jean /N/"_s, u"1 BIRT"_s,       u"2 DATE 12 MAR 1805"_s,
                          u"2 SOUR @S1@"_s,     u"0 @S1@ SOUR"_s,  u"1 TITL Registre"_s,
                          u"1 DATE 1840"_s,     u"0 @S2@ SOUR"_s,  u"1 TITL Autre"_s,
                          u"1 DATE 1805"_s};

/// A window with the filter on, and the tree all open.
class FilteredSession : public ReviewSession
{
public:
    FilteredSession() : ReviewSession(Flagged)
    {
        toggle(DateDiff);
        tree()->expandAll();
        tree()->clearSelection();
    }

    /// The one red row.
    [[nodiscard]] TwItem *redRow() const
    {
        const QList<TwItem *> all = entries();
        const auto red = std::find_if(all.begin(), all.end(), [](const TwItem *twi) {
            return twi->background(0) == QBrush(Qt::red);
        });
        if (red == all.end())
            qFatal("no row is red");
        return *red;
    }
    /// The cell of the first column, without the lines of the tree on its left.
    [[nodiscard]] QImage redCell() const
    {
        const QTreeWidget *treeWidget = tree();
        return treeWidget->viewport()
            ->grab(treeWidget->visualItemRect(redRow()) & firstColumn())
            .toImage();
    }
    [[nodiscard]] QImage wholeTree() const
    {
        return tree()->viewport()->grab().toImage();
    }

private:
    [[nodiscard]] QRect firstColumn() const
    {
        return {tree()->columnViewportPosition(0), 0, tree()->columnWidth(0),
                tree()->viewport()->height()};
    }
};

} // namespace

class TstContrast : public QObject
{
    Q_OBJECT

private slots:
    void formula_data();
    void formula();
    void readable_data();
    void readable();

    void menuTitles_data();
    void menuTitles();
    void readableTitlesStay();
    void redRow_data();
    void redRow();
    void selectedRedRowStays();
    void lightTreeStays();
};

void TstContrast::formula_data()
{
    QTest::addColumn<QColor>("a");
    QTest::addColumn<QColor>("b");
    QTest::addColumn<double>("expected");

    QTest::newRow("black and white") << QColor(Qt::black) << QColor(Qt::white) << 21.0;
    QTest::newRow("equal") << QColor(Qt::red) << QColor(Qt::red) << 1.0;
    QTest::newRow("white on red") << QColor(Qt::white) << QColor(Qt::red) << 4.0;
    QTest::newRow("black on red") << QColor(Qt::black) << QColor(Qt::red) << 5.25;
    QTest::newRow("lightest grey that is readable on white")
        << QColor(0x76, 0x76, 0x76) << QColor(Qt::white) << 4.54;
    QTest::newRow("nearly black") << QColor(10, 10, 10) << QColor(Qt::black) << 1.06;
}

void TstContrast::formula()
{
    QFETCH(const QColor, a);
    QFETCH(const QColor, b);
    QFETCH(const double, expected);

    QVERIFY2(std::abs(contrast(a, b) - expected) < 0.005,
             qPrintable(QString::number(contrast(a, b))));
    QCOMPARE(contrast(b, a), contrast(a, b));
}

void TstContrast::readable_data()
{
    QTest::addColumn<QColor>("background");
    QTest::addColumn<QColor>("text");
    QTest::addColumn<QColor>("expected");

    const QColor black = Qt::black;
    const QColor white = Qt::white;
    const QColor red = Qt::red;
    QTest::newRow("white on red") << red << white << black;
    QTest::newRow("black on red") << red << black << black;
    QTest::newRow("dark grey on red") << red << QColor(50, 50, 50) << black;
    QTest::newRow("yellow on red") << red << QColor(Qt::yellow) << black;
    QTest::newRow("grey on white") << white << QColor(0x77, 0x77, 0x77) << black;
    QTest::newRow("darker grey on white")
        << white << QColor(0x76, 0x76, 0x76) << QColor(0x76, 0x76, 0x76);
    QTest::newRow("black on dark blue") << QColor(Qt::darkBlue) << black << white;
}

void TstContrast::readable()
{
    QFETCH(const QColor, background);
    QFETCH(const QColor, text);

    QTEST(readableOn(background, text), "expected");
}

void TstContrast::menuTitles_data()
{
    QTest::addColumn<QColor>("text");

    QTest::newRow("black") << QColor(Qt::black);
    QTest::newRow("white") << QColor(Qt::white);
    QTest::newRow("as the bar") << MenuBarBackground;
    QTest::newRow("grey") << QColor(150, 150, 150);
}

void TstContrast::menuTitles()
{
    QFETCH(const QColor, text);

    const Desktop desktop(darkPalette(text));
    const Session session;
    session.window->show();
    QMenuBar *menuBar = session.window->menuBar();
    const QImage picture = menuBar->grab().toImage();
    QCOMPARE(picture.pixelColor(picture.width() - 2, picture.height() / 2), MenuBarBackground);
    const QList<QAction *> actions = menuBar->actions();
    for (const QAction *action : actions) {
        const QImage title = picture.copy(menuBar->actionGeometry(const_cast<QAction *>(action)));
        QVERIFY2(strongest(title, MenuBarBackground) >= ReadableContrast,
                 qPrintable(action->text()));
    }
    QCOMPARE(menuBar->styleSheet(), u"QMenuBar {background-color: #f0f0f0;}"_s);

    // Whichever of them a style draws, in front and behind another window.
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        for (const auto role : {QPalette::WindowText, QPalette::ButtonText})
            QVERIFY(contrast(menuBar->palette().color(group, role), MenuBarBackground)
                    >= ReadableContrast);
    }

    // The pictures do tell: with the colours of the desktop they are as unreadable as these.
    menuBar->setPalette(QApplication::style()->standardPalette());
    QCOMPARE(strongest(menuBar->grab().toImage(), MenuBarBackground) >= ReadableContrast,
             contrast(text, MenuBarBackground) >= ReadableContrast);
}

void TstContrast::readableTitlesStay()
{
    const QColor green(0, 90, 0);
    const Desktop desktop(darkPalette(green));
    const Session session;
    const QPalette palette = session.window->menuBar()->palette();
    for (const auto role : {QPalette::WindowText, QPalette::ButtonText})
        QCOMPARE(palette.color(role), green);
}

void TstContrast::redRow_data()
{
    QTest::addColumn<QColor>("text");

    QTest::newRow("black") << QColor(Qt::black);
    QTest::newRow("white") << QColor(Qt::white);
    QTest::newRow("light grey") << QColor(240, 240, 240);
    QTest::newRow("red") << QColor(Qt::red);
}

void TstContrast::redRow()
{
    QFETCH(const QColor, text);

    const Desktop desktop(darkPalette(text));
    const FilteredSession session;
    const QImage cell = session.redCell();
    QVERIFY(strongest(cell, Qt::red) >= ReadableContrast);
    for (int x = 0; x < cell.width(); ++x) {
        for (int y = 0; y < cell.height(); ++y)
            QVERIFY(cell.pixelColor(x, y) != QColor(Qt::white));
    }
    // The row itself is as the filter made it.
    QCOMPARE(session.redRow()->foreground(0), QBrush());
}

void TstContrast::selectedRedRowStays()
{
    const Desktop desktop(darkPalette());
    const FilteredSession session;
    session.redRow()->setSelected(true);
    const QImage shown = session.redCell();
    QStyledItemDelegate plain;
    session.tree()->setItemDelegate(&plain);
    QCOMPARE(session.redCell(), shown);
}

void TstContrast::lightTreeStays()
{
    const FilteredSession session;
    const QImage shown = session.wholeTree();
    QStyledItemDelegate plain;
    session.tree()->setItemDelegate(&plain);
    QCOMPARE(session.wholeTree(), shown);
}

VARLUNE_TEST_MAIN(TstContrast)
#include "tst_contrast.moc"
