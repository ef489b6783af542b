#include "document.h"
#include "preparerwindow.h"
#include "testmain.h"

#include <QApplication>
#include <QIcon>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPixmap>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <array>

using namespace Qt::StringLiterals;

/// The main function of the program.
int programMain(int argc, char **argv);

namespace {

QStringList testArguments; // those of the test; the program is given a file

} // namespace

/// The program as it has started with a file, before the first event: what its main function has
/// made of the application, the window and the file.
class TstPreparerStart : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void windowIsShown();
    void fileIsPrepared();
    void icon();
    void desktopFile();
    void textsAreFrench();

private:
    PreparerWindow *m_window = nullptr;
};

void TstPreparerStart::initTestCase()
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget *widget : widgets) {
        if (auto *window = qobject_cast<PreparerWindow *>(widget))
            m_window = window;
    }
    QVERIFY(m_window);
}

void TstPreparerStart::windowIsShown()
{
    QVERIFY(m_window->isVisible());
}

void TstPreparerStart::fileIsPrepared()
{
    const auto *verdict = m_window->findChild<QLabel *>(u"lbVerdict"_s);
    QVERIFY(verdict);
    QTRY_COMPARE_WITH_TIMEOUT(verdict->text(), u"Varlune ouvrira ce fichier : 2 enregistrements"_s,
                              60'000);
    QVERIFY(m_window->findChild<QLineEdit *>(u"leFile"_s)->text().endsWith(u"arbre.ged"_s));
}

void TstPreparerStart::icon()
{
    const QImage logo = QIcon(u":/icones/ico/logo_varlune-preparer.ico"_s).pixmap(32, 32).toImage();
    QVERIFY(!logo.isNull());
    QCOMPARE(QApplication::windowIcon().pixmap(32, 32).toImage(), logo);
    QCOMPARE(m_window->windowIcon().pixmap(32, 32).toImage(), logo);
}

void TstPreparerStart::desktopFile()
{
    QCOMPARE(QGuiApplication::desktopFileName(), u"varlune-preparer"_s);
}

void TstPreparerStart::textsAreFrench()
{
    QMessageBox box;
    box.setStandardButtons(QMessageBox::Yes);
    QCOMPARE(box.button(QMessageBox::Yes)->text(), u"&Oui"_s);
}

namespace {

/// Runs the test as the first event of the program, which then ends with the outcome.
void testOnceStarted()
{
    QTimer::singleShot(0, qApp, [] {
        TstPreparerStart test;
        QCoreApplication::exit(QTest::qExec(&test, testArguments));
    });
}
Q_COREAPP_STARTUP_FUNCTION(testOnceStarted)

} // namespace

int main(int argc, char **argv)
{
    const QTemporaryDir home;
    isolate(home);
    testArguments = QStringList(argv, argv + argc);
    const QString path = home.filePath(u"arbre.ged"_s);
    writeLines(path, {u" 0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 @I1@ INDI"_s, u"1 SEX M"_s});
    QByteArray name = path.toLocal8Bit();
    std::array<char *, 3> arguments{argv[0], name.data(), nullptr};
    return programMain(2, arguments.data());
}

#include "tst_preparerstart.moc"
