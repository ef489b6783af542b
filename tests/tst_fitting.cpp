#include "compactstyle.h"
#include "desktop.h"
#include "testmain.h"
#include "window.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QFontInfo>
#include <QGroupBox>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScopeGuard>
#include <QScreen>
#include <QStatusBar>
#include <QStyle>
#include <QStyleFactory>
#include <QStyleOption>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int Panel = 40;
constexpr int TitleBar = 40;

const QString Family = u"DejaVu Sans"_s; // what fits depends on the font

/// Sets style and font of the desktop while it lives, whatever a compact style does to the first.
class Desktop
{
public:
    explicit Desktop(const QString &style = u"fusion"_s, int points = 9)
        : m_font(QApplication::font())
    {
        QApplication::setStyle(QStyleFactory::create(style));
        QApplication::setFont(QFont(Family, points));
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

/// The width of what a label or button has to show beside its frame.
int contentWidth(const QWidget *widget)
{
    const QStyle *style = widget->style();
    const QString text = widget->property("text").toString();
    const int width = widget->fontMetrics().size(Qt::TextShowMnemonic, text).width();
    if (qobject_cast<const QCheckBox *>(widget))
        return width + style->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, widget);
    if (qobject_cast<const QRadioButton *>(widget))
        return width + style->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth, nullptr, widget);
    if (const auto *button = qobject_cast<const QPushButton *>(widget))
        return 2 + std::max(width, button->icon().isNull() ? 0 : button->iconSize().width());
    return width;
}

/// What is wrong with the title of the group, which stands above the widgets in it.
QStringList titleFaults(const QGroupBox *group)
{
    if (group->title().isEmpty())
        return {};
    QStyleOptionGroupBox option;
    option.initFrom(group);
    option.text = group->title();
    option.textAlignment = group->alignment();
    option.lineWidth = 1;
    option.subControls =
        QStyle::SC_GroupBoxFrame | QStyle::SC_GroupBoxCheckBox | QStyle::SC_GroupBoxLabel;
    const auto part = [&](QStyle::SubControl control) {
        return group->style()->subControlRect(QStyle::CC_GroupBox, &option, control, group);
    };
    const QRect title = part(QStyle::SC_GroupBoxLabel);
    const QRect whole = title | part(QStyle::SC_GroupBoxCheckBox);

    QStringList found;
    if (title.width() < group->fontMetrics().horizontalAdvance(group->title())
        || title.height() < group->fontMetrics().height() || !group->rect().contains(whole))
        found += group->title() + u" is cut"_s;
    const QList<QWidget *> children =
        group->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (const QWidget *child : children) {
        if (child->geometry().intersects(whole))
            found += child->objectName() + u" is on the title "_s + group->title();
    }
    return found;
}

QStringList titleFaults(const QMenuBar *bar)
{
    QStringList found;
    QRect former;
    const QList<QAction *> actions = bar->actions();
    for (QAction *action : actions) {
        const QRect title = bar->actionGeometry(action);
        if (!bar->rect().contains(title) || title.intersects(former)
            || title.width() < bar->fontMetrics().horizontalAdvance(action->text())
            || title.height() < bar->fontMetrics().height())
            found += action->text() + u" is cut"_s;
        former = title;
    }
    return found;
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
            if (widget->width() < std::max(widget->sizeHint().width(), contentWidth(widget)))
                found += name + u" is cut at its side"_s;
        }
        const auto *button = qobject_cast<const QPushButton *>(widget);
        const int content = button && button->text().isEmpty() ? button->iconSize().height()
                                                               : widget->fontMetrics().height();
        if (button)
            room -= 2; // its frame
        if (room < content)
            found += name + u" is too low for its content"_s;
        if (const auto *group = qobject_cast<const QGroupBox *>(widget))
            found += titleFaults(group);
    }
    return found + titleFaults(window->menuBar());
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
    void initTestCase();

    void highScreenChangesNothing();
    void lastPixelDecides();
    void screen_data();
    void screen();
    void everyHeight();
    void firstStepTakesSpacingOnly();
    void spacingGoesBeforeMarginsBeforeFont();
    void widthsStay();
    void narrowScreen();
    void tooSmallScreen();
    void otherWindowsStay();
    void coloursStay();
    void progressBarNeedsNoHeight();
    void onScreen();
    void smallWindowStays();
};

void TstFitting::initTestCase()
{
    QCOMPARE(QFontInfo(QFont(Family)).family(), Family);
}

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

void TstFitting::firstStepTakesSpacingOnly()
{
    const Desktop desktop;
    const int spacing = QApplication::style()->pixelMetric(QStyle::PM_LayoutVerticalSpacing);
    const std::unique_ptr<MainWindow> window = makeFullWindow();
    const auto *field = window->findChild<QLineEdit *>(u"leTagsToDel"_s);
    const auto others = [&] {
        QStringList sizes;
        for (const char *name : {"leTagsToDel", "pbApply", "cbRegex", "rbHtml"}) {
            const auto *widget = window->findChild<QWidget *>(QString::fromLatin1(name));
            sizes += QString::number(widget->sizeHint().height());
        }
        const QList<QLayout *> layouts = window->findChildren<QLayout *>();
        for (const QLayout *layout : layouts) {
            const QMargins margins = layout->contentsMargins();
            sizes += u"%1 %2"_s.arg(margins.top()).arg(margins.bottom());
        }
        return sizes += window->font().toString();
    };
    const QStringList before = others();
    QVERIFY(fitInto(window.get(), window->minimumSizeHint() - QSize(0, 1)));
    QVERIFY(QApplication::style()->layoutSpacing(QSizePolicy::LineEdit, QSizePolicy::LineEdit,
                                                 Qt::Vertical, nullptr, field)
            < spacing);
    QCOMPARE(others(), before);
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
    const auto *button = plain->findChild<QWidget *>(u"pbApply"_s);
    const int buttonHeight = button->sizeHint().height();
    QList<int> points;
    QList<int> paddings; // taken off a button while the font stays
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
        points += window->font().pointSize();
        if (now != Font)
            paddings +=
                buttonHeight - window->findChild<QWidget *>(u"pbApply"_s)->sizeHint().height();
    }
    QCOMPARE(reached, int(Font));
    points.erase(std::unique(points.begin(), points.end()), points.end());
    QCOMPARE(points, (QList<int>{9, 8, 7}));
    paddings.erase(std::unique(paddings.begin(), paddings.end()), paddings.end());
    QCOMPARE(paddings, (QList<int>{0, 2, 4}));
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
    // The tightest step is taken all the same.
    const QStyle *style = QApplication::style();
    for (const QStyle::PixelMetric mark : {QStyle::PM_IndicatorWidth, QStyle::PM_ButtonIconSize})
        QCOMPARE(style->pixelMetric(mark, nullptr, window.get()), 12);
    QCOMPARE(style->pixelMetric(QStyle::PM_LayoutTopMargin, nullptr, window.get()), 0);
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

void TstFitting::coloursStay()
{
    const Desktop desktop;
    QPalette dark(QColor(50, 50, 50));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        dark.setColor(role, QColor(240, 240, 240));
    dark.setColor(QPalette::Base, QColor(30, 30, 30));
    QApplication::setPalette(dark);
    const auto restored = qScopeGuard([] { QApplication::setPalette(QPalette()); });
    const std::unique_ptr<MainWindow> window = makeFullWindow();
    window->menuBar()->ensurePolished(); // its style sheet colours it then
    const auto palettes = [&window] {
        return QList<QPalette>{QApplication::palette(), window->palette(),
                               window->menuBar()->palette(),
                               window->findChild<QLineEdit *>(u"leTagsToDel"_s)->palette()};
    };
    const QList<QPalette> before = palettes();
    QCOMPARE(before.constFirst().color(QPalette::Window), QColor(50, 50, 50));
    QVERIFY(fitInto(window.get(), {1280, 640}));
    QVERIFY(isCompact());
    QVERIFY(palettes() == before);
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

void TstFitting::smallWindowStays()
{
    const Desktop desktop;
    const QStyle *style = QApplication::style();
    QWidget window;
    window.resize(300, 200);
    const QFont font = window.font();
    fitOnScreen(&window);
    QVERIFY(!window.testAttribute(Qt::WA_Moved));
    QCOMPARE(window.size(), QSize(300, 200));
    QCOMPARE(window.font(), font);
    QCOMPARE(QApplication::style(), style);
}

VARLUNE_TEST_MAIN(TstFitting)
#include "tst_fitting.moc"
