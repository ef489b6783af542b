#include "compactstyle.h"
#include "desktop.h"
#include "testmain.h"
#include "window.h"

#include <QAbstractButton>
#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QStatusBar>
#include <QStyleFactory>
#include <QStyleOptionFrame>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int Panel = 40;
constexpr int TitleBar = 40;

/// Sets style and font of the desktop while it lives, whatever a compact style does to the first.
class Desktop
{
public:
    explicit Desktop(const QString &style = u"fusion"_s, int points = 9)
        : m_font(QApplication::font())
    {
        QApplication::setStyle(QStyleFactory::create(style));
        QFont font = m_font;
        font.setPointSize(points);
        QApplication::setFont(font);
    }
    ~Desktop()
    {
        QApplication::setStyle(QStyleFactory::create(u"fusion"_s));
        QApplication::setFont(m_font);
    }
    Q_DISABLE_COPY_MOVE(Desktop)

private:
    QFont m_font;
};

bool isCompact()
{
    return qobject_cast<CompactStyle *>(QApplication::style());
}

/// The window with everything of the form in use, as after a load.
std::unique_ptr<MainWindow> makeFullWindow()
{
    std::unique_ptr<MainWindow> window = makeWindow();
    window->findChild<QGroupBox *>(u"mainGroupBox"_s)->setEnabled(true);
    const QList<QGroupBox *> groups = window->findChildren<QGroupBox *>();
    for (QGroupBox *group : groups)
        group->setChecked(true);
    return window;
}

/// What is wrong with the place or the size of the form's widgets, in words.
QStringList faults(const MainWindow *window)
{
    QStringList found;
    const QList<QWidget *> widgets =
        window->findChild<QWidget *>(u"centralwidget"_s)->findChildren<QWidget *>()
        + QList<QWidget *>{window->menuBar(), window->statusBar()};
    for (const QWidget *widget : widgets) {
        const QString name = widget->objectName();
        if (name.isEmpty() || name.startsWith("qt_"_L1)) // inside the tree
            continue;
        const QRect onWindow(widget->mapTo(window, QPoint()), widget->size());
        if (!widget->isVisible() || !window->rect().contains(onWindow)
            || !widget->parentWidget()->rect().contains(widget->geometry()))
            found += name + u" is out of sight"_s;
        const QList<QWidget *> siblings =
            widget->parentWidget()->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
        for (const QWidget *sibling : siblings) {
            if (sibling != widget && sibling->isVisible()
                && sibling->geometry().intersects(widget->geometry()))
                found += name + u" and "_s + sibling->objectName() + u" overlap"_s;
        }

        int room = widget->height();
        if (const auto *field = qobject_cast<const QLineEdit *>(widget)) {
            QStyleOptionFrame option;
            option.initFrom(field);
            option.lineWidth = 1;
            room = field->style()
                       ->subElementRect(QStyle::SE_LineEditContents, &option, field)
                       .height();
        } else if (qobject_cast<const QAbstractButton *>(widget)
                   || qobject_cast<const QLabel *>(widget)) {
            if (widget->width() < widget->sizeHint().width())
                found += name + u" is cut at its side"_s;
        }
        const auto *button = qobject_cast<const QPushButton *>(widget);
        const int content = button && button->text().isEmpty() ? button->iconSize().height()
                                                               : widget->fontMetrics().height();
        if (button)
            room -= 2; // its frame
        if (room < content)
            found += name + u" is too low for its content"_s;
    }
    return found;
}

/// Margins and spacings of all layouts of the form.
QStringList measures(const MainWindow *window)
{
    QStringList all;
    const QList<QLayout *> layouts = window->findChildren<QLayout *>();
    for (const QLayout *layout : layouts) {
        const QMargins margins = layout->contentsMargins();
        all += u"%1: %2 %3 %4 %5, %6"_s.arg(layout->objectName())
                   .arg(margins.left())
                   .arg(margins.top())
                   .arg(margins.right())
                   .arg(margins.bottom())
                   .arg(layout->spacing());
    }
    return all;
}

/// The distance of two widgets that stand side by side.
int gap(const MainWindow *window, const QString &left, const QString &right)
{
    return window->findChild<QWidget *>(right)->geometry().left()
         - window->findChild<QWidget *>(left)->geometry().right() - 1;
}

} // namespace

class TstFitting : public QObject
{
    Q_OBJECT

private slots:
    void highScreenChangesNothing();
    void lastPixelDecides();
    void screen_data();
    void screen();
    void everyHeight();
    void spacingGoesBeforeMarginsBeforeFont();
    void widthsStay();
    void narrowScreen();
    void tooSmallScreen();
    void otherWindowsStay();
    void progressBarNeedsNoHeight();
    void onScreen();
};

void TstFitting::highScreenChangesNothing()
{
    const Desktop desktop;
    const QStyle *style = QApplication::style();
    const std::unique_ptr<MainWindow> plain = makeFullWindow();
    const std::unique_ptr<MainWindow> fitted = makeFullWindow();
    QVERIFY(fitInto(fitted.get(), {1920, 1000}));
    QCOMPARE(fitted->size(), QSize(837, 967));
    QCOMPARE(QApplication::style(), style);
    QCOMPARE(fitted->font(), plain->font());
    QCOMPARE(fitted->palette(), plain->palette());
    plain->show();
    fitted->show();
    QCOMPARE(fitted->grab().toImage(), plain->grab().toImage());
}

void TstFitting::lastPixelDecides()
{
    const Desktop desktop;
    const std::unique_ptr<MainWindow> window = makeFullWindow();
    const QSize needed = window->minimumSizeHint();
    QVERIFY(fitInto(window.get(), needed));
    QVERIFY(!isCompact());
    QCOMPARE(window->minimumSizeHint(), needed);
    QVERIFY(fitInto(window.get(), needed - QSize(0, 1)));
    QVERIFY(isCompact());
    QVERIFY(window->minimumSizeHint().height() < needed.height());
}

void TstFitting::screen_data()
{
    QTest::addColumn<QString>("style");
    QTest::addColumn<int>("points");
    QTest::addColumn<QSize>("screen");

    for (const char *style : {"fusion", "windows"}) {
        for (const int points : {9, 10, 12}) {
            for (const QSize screen :
                 {QSize(1366, 768), QSize(1280, 800), QSize(1536, 864), QSize(1280, 720)})
                QTest::addRow("%s, %d points, %dx%d", style, points, screen.width(),
                              screen.height())
                    << QString::fromLatin1(style) << points << screen;
        }
    }
}

void TstFitting::screen()
{
    QFETCH(const QString, style);
    QFETCH(const int, points);
    QFETCH(const QSize, screen);

    const Desktop desktop(style, points);
    const QSize room = screen - QSize(0, Panel + TitleBar);
    const std::unique_ptr<MainWindow> window = makeFullWindow();
    QVERIFY(fitInto(window.get(), room));
    window->show();
    QVERIFY2(window->width() <= room.width() && window->height() <= room.height(),
             qPrintable(u"%1 by %2"_s.arg(window->width()).arg(window->height())));
    QCOMPARE(faults(window.get()), QStringList());
    QVERIFY(window->font().pointSize() >= points - 2);
    // With a usual font no text gets smaller.
    if (points <= 10)
        QCOMPARE(window->font().pointSize(), points);
}

void TstFitting::everyHeight()
{
    const Desktop desktop;
    const std::unique_ptr<MainWindow> plain = makeFullWindow();
    const int needed = plain->minimumSizeHint().height();
    int former = needed;
    for (int height = needed + 10; height >= 500; height -= 15) {
        QApplication::setStyle(QStyleFactory::create(u"fusion"_s));
        const std::unique_ptr<MainWindow> window = makeFullWindow();
        QVERIFY2(fitInto(window.get(), {1280, height}), qPrintable(QString::number(height)));
        const int least = window->minimumSizeHint().height();
        QVERIFY(least <= height);
        QVERIFY(least <= former); // a step further never takes more
        former = least;
        window->show();
        QVERIFY(window->height() <= height);
        QCOMPARE(faults(window.get()), QStringList());
    }
    QVERIFY(former < needed - 300);
}

void TstFitting::spacingGoesBeforeMarginsBeforeFont()
{
    const Desktop desktop;
    const std::unique_ptr<MainWindow> plain = makeFullWindow();
    const QStringList before = measures(plain.get());
    const int margin = plain->findChild<QLayout *>(u"verticalLayout_7"_s)->contentsMargins().top();
    const int needed = plain->minimumSizeHint().height();
    enum Reached { Nothing, Spacing, Margins, Font };
    int reached = Nothing;
    for (int height = needed; height >= 480; height -= 5) {
        QApplication::setStyle(QStyleFactory::create(u"fusion"_s));
        const std::unique_ptr<MainWindow> window = makeFullWindow();
        fitInto(window.get(), {1280, height});
        const QLayout *rows = window->findChild<QLayout *>(u"verticalLayout_7"_s);
        int now = Nothing;
        if (isCompact())
            now = Spacing;
        if (rows->contentsMargins().top() < margin)
            now = Margins;
        if (window->font().pointSizeF() < plain->font().pointSizeF()) {
            QCOMPARE(now, int(Margins));
            now = Font;
        }
        if (now == Nothing)
            QCOMPARE(measures(window.get()), before);
        QVERIFY2(now == reached || now == reached + 1, qPrintable(QString::number(height)));
        reached = now;
    }
    QCOMPARE(reached, int(Font));
}

void TstFitting::widthsStay()
{
    const Desktop desktop;
    const std::unique_ptr<MainWindow> plain = makeFullWindow();
    plain->show();
    const auto gaps = [](const MainWindow *window) {
        return QList<int>{gap(window, u"leTagsToDel"_s, u"pbPickTagToDel"_s),
                          gap(window, u"pbImportCsvLinks"_s, u"label_3"_s),
                          gap(window, u"label_3"_s, u"leStrPlitCsv"_s),
                          gap(window, u"leTagSour"_s, u"pickSrcTag"_s),
                          gap(window, u"pbApply"_s, u"pbReadSequence"_s)};
    };
    const QList<int> before = gaps(plain.get());
    const int neededWidth = plain->minimumSizeHint().width();

    const std::unique_ptr<MainWindow> window = makeFullWindow();
    QVERIFY(fitInto(window.get(), {1280, 640}));
    QCOMPARE(window->minimumSizeHint().width(), neededWidth);
    window->show();
    QCOMPARE(gaps(window.get()), before);
    const auto *groups = window->findChild<QLayout *>(u"verticalLayout"_s);
    const auto *groupsBefore = plain->findChild<QLayout *>(u"verticalLayout"_s);
    QCOMPARE(groups->contentsMargins().left(), groupsBefore->contentsMargins().left());
    QCOMPARE(groups->contentsMargins().right(), groupsBefore->contentsMargins().right());
}

void TstFitting::narrowScreen()
{
    const Desktop desktop;
    const std::unique_ptr<MainWindow> window = makeFullWindow();
    const int needed = window->minimumSizeHint().width();
    QVERIFY(needed <= 1280);
    QVERIFY(fitInto(window.get(), {needed - 100, 1200}));
    window->show();
    QVERIFY(window->width() <= needed - 100);
    QCOMPARE(faults(window.get()), QStringList());
}

void TstFitting::tooSmallScreen()
{
    const Desktop desktop(u"fusion"_s, 12);
    const std::unique_ptr<MainWindow> window = makeFullWindow();
    QVERIFY(!fitInto(window.get(), {640, 400}));
    // As small as it gets, and every text whole.
    QCOMPARE(window->font().pointSize(), 10);
    window->show();
    QCOMPARE(faults(window.get()), QStringList());
}

void TstFitting::otherWindowsStay()
{
    const Desktop desktop;
    const auto look = [](MainWindow *parent) {
        QMessageBox box(QMessageBox::Critical, u"Erreur"_s, u"texte"_s, QMessageBox::Ok, parent);
        box.ensurePolished();
        const QLayout *layout = box.layout();
        return QString(u"%1 %2 %3 %4 %5"_s)
            .arg(layout->contentsMargins().top())
            .arg(layout->contentsMargins().bottom())
            .arg(layout->spacing())
            .arg(box.button(QMessageBox::Ok)->sizeHint().height())
            .arg(box.font().pointSizeF());
    };
    const std::unique_ptr<MainWindow> window = makeFullWindow();
    const QString before = look(window.get());
    QVERIFY(!fitInto(window.get(), {640, 400}));
    QVERIFY(isCompact());
    QCOMPARE(look(window.get()), before);
}

void TstFitting::progressBarNeedsNoHeight()
{
    const Desktop desktop;
    const std::unique_ptr<MainWindow> window = makeFullWindow();
    QVERIFY(fitInto(window.get(), {1280, 640}));
    window->show();
    const QSize least = window->minimumSizeHint();
    window->findChild<QProgressBar *>()->show();
    QCoreApplication::processEvents();
    QVERIFY(window->minimumSizeHint().height() <= least.height());
    QVERIFY(window->height() <= 640);
}

void TstFitting::onScreen()
{
    const Desktop desktop;
    const std::unique_ptr<MainWindow> window = makeFullWindow();
    const QRect available = window->screen()->availableGeometry();
    QVERIFY(available.height() < 967); // the one of the platform that the tests run on
    fitOnScreen(window.get());
    window->show();
    QVERIFY(window->height() <= available.height() - TitleBar);
    QVERIFY(window->width() <= available.width());
    QCOMPARE(window->frameGeometry().top(), available.top());
    QCOMPARE(faults(window.get()), QStringList());
}

VARLUNE_TEST_MAIN(TstFitting)
#include "tst_fitting.moc"
