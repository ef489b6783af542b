#include "boxes.h"
#include "desktop.h"
#include "document.h"
#include "testmain.h"

#include <QApplication>
#include <QFile>
#include <QIcon>

using namespace Qt::StringLiterals;

class TstDesktop : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void boxWithoutParentHasTheIcon();
    void desktopFile();
};

void TstDesktop::initTestCase()
{
    QVERIFY(QApplication::windowIcon().isNull());
    prepareApplication();
}

void TstDesktop::boxWithoutParentHasTheIcon()
{
    const QIcon logo(u":/icones/ico/logo_varlune.ico"_s);
    AnsweredBoxes boxes;
    QImage icon;
    boxes.setInspector(
        [&icon](const QMessageBox *box) { icon = box->windowIcon().pixmap(32, 32).toImage(); });
    QMessageBox::critical(nullptr, u"Erreur"_s, u"texte"_s);
    QCOMPARE(boxes.texts(), QStringList{u"texte"_s});
    QVERIFY(!icon.isNull());
    QCOMPARE(icon, logo.pixmap(32, 32).toImage());
}

void TstDesktop::desktopFile()
{
    QCOMPARE(QGuiApplication::desktopFileName(), u"varlune"_s);
    QVERIFY(QFile::exists(QStringLiteral(PACKAGING "/varlune.desktop")));
}

VARLUNE_TEST_MAIN(TstDesktop)
#include "tst_desktop.moc"
