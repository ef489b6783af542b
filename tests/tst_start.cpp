#include "document.h"
#include "testmain.h"
#include "window.h"

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QIcon>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <memory>

using namespace Qt::StringLiterals;

/// The main function of the program.
int programMain(int argc, char **argv);

/// The program as it has started, before the first event: what its main function has made of the
/// application and the window.
class TstStart : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void windowIsShown();
    void windowIsFittedIntoTheScreen();
    void icons();
    void desktopFile();
    void textsAreFrench();

private:
    MainWindow *m_window = nullptr;
};

void TstStart::initTestCase()
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget *widget : widgets) {
        if (auto *window = qobject_cast<MainWindow *>(widget))
            m_window = window;
    }
    QVERIFY(m_window);
}

void TstStart::windowIsShown()
{
    QVERIFY(m_window->isVisible());
}

void TstStart::windowIsFittedIntoTheScreen()
{
    const QRect available = m_window->screen()->availableGeometry();
    QVERIFY(available.height() < 902); // else the form would fit as it is
    QVERIFY2(m_window->height() <= available.height(),
             qPrintable(QString::number(m_window->height())));
    QVERIFY(m_window->minimumSizeHint().height() <= available.height());
    QCOMPARE(m_window->y(), available.y());
}

void TstStart::icons()
{
    const QImage logo = QIcon(u":/icones/ico/logo_varlune.ico"_s).pixmap(32, 32).toImage();
    QVERIFY(!logo.isNull());
    QCOMPARE(QApplication::windowIcon().pixmap(32, 32).toImage(), logo);
    QVERIFY(m_window->testAttribute(Qt::WA_SetWindowIcon)); // not only that of the application
    QCOMPARE(m_window->windowIcon().pixmap(32, 32).toImage(), logo);
}

void TstStart::desktopFile()
{
    QCOMPARE(QGuiApplication::desktopFileName(), u"varlune"_s);
}

void TstStart::textsAreFrench()
{
    QMessageBox box;
    box.setStandardButtons(QMessageBox::Yes);
    QCOMPARE(box.button(QMessageBox::Yes)->text(), u"&Oui"_s);

    QLineEdit field;
    const std::unique_ptr<QMenu> menu(field.createStandardContextMenu());
    QCOMPARE(menu->actions().constFirst()->text().section(u'\t', 0, 0), u"&Annuler"_s);

    QCOMPARE(m_window->findChild<QAction *>(u"actionOuvrir"_s)->text(), u"Ouvrir"_s);
}

namespace {

/// Runs the test as the first event of the program, which then ends with the outcome.
void testOnceStarted()
{
    writeBytes(besideExecutable(u"PARAM.INI"_s), {}); // without it a box would wait for an answer
    QTimer::singleShot(0, qApp, [] {
        QFile::remove(besideExecutable(u"PARAM.INI"_s));
        TstStart test;
        QCoreApplication::exit(QTest::qExec(&test, QCoreApplication::arguments()));
    });
}
Q_COREAPP_STARTUP_FUNCTION(testOnceStarted)

} // namespace

int main(int argc, char **argv)
{
    const QTemporaryDir home;
    isolate(home);
    return programMain(argc, argv);
}

#include "tst_start.moc"
