#include "boxes.h"
#include "desktop.h"
#include "fenjournal.h"
#include "filedialogs.h"
#include "testmain.h"
#include "window.h"

#include <QAction>
#include <QApplication>
#include <QDialogButtonBox>
#include <QFile>
#include <QFileDialog>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeView>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// The entries of a menu without their keys; separators are left out. The menu goes away.
QStringList takeEntries(QMenu *menu)
{
    const std::unique_ptr<QMenu> owner(menu);
    QStringList entries;
    const QList<QAction *> actions = menu->actions();
    for (const QAction *action : actions) {
        if (!action->isSeparator())
            entries += action->text().section(u'\t', 0, 0);
    }
    return entries;
}

QStringList buttonTexts(const QList<QAbstractButton *> &buttons)
{
    QStringList texts;
    for (const QAbstractButton *button : buttons)
        texts += button->text();
    texts.sort();
    return texts;
}

/// All that the framework writes into a file dialog, labels first.
QStringList dialogTexts(const QFileDialog *dialog)
{
    QStringList texts;
    for (const char *name : {"lookInLabel", "fileNameLabel", "fileTypeLabel"})
        texts += dialog->findChild<QLabel *>(QString::fromLatin1(name))->text();
    texts += buttonTexts(dialog->findChild<QDialogButtonBox *>()->buttons());
    texts += dialog->findChild<QWidget *>(u"newFolderButton"_s)->toolTip();
    const QAbstractItemModel *model = dialog->findChild<QTreeView *>()->model();
    for (int column = 0; column < model->columnCount(); ++column)
        texts += model->headerData(column, Qt::Horizontal).toString();
    return texts;
}

} // namespace

class TstDesktop : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void boxWithoutParentHasTheIcon();
    void desktopFile();

    void fileDialogIsFrench();
    void folderDialogIsFrench();
    void fileTypesAreFrench();
    void overwriteQuestionIsFrench();
    void fieldMenuIsFrench();
    void journalMenuIsFrench();
    void buttonsAreFrench();
    void ownTextsStay();
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

void TstDesktop::fileDialogIsFrench()
{
    // The one that the program opens.
    const Session session;
    QStringList texts;
    AnsweredFileDialogs dialogs{QString()};
    dialogs.setInspector([&texts](const QFileDialog *dialog) { texts = dialogTexts(dialog); });
    const AnsweredBoxes boxes; // the cancelled dialog is told as a failure
    session.trigger(u"actionOuvrir"_s);
    const QStringList expected{u"Voir dans :"_s,
                               u"&Nom de fichier :"_s,
                               u"Fichiers de type :"_s,
                               u"&Ouvrir"_s,
                               u"Annuler"_s,
                               u"Créer un nouveau dossier"_s,
                               u"Nom"_s,
                               u"Taille"_s,
                               u"Type"_s,
                               u"Dernière modification"_s};
    QCOMPARE(texts, expected);
}

void TstDesktop::folderDialogIsFrench()
{
    const Session session;
    session.load({u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 TRLR"_s});
    session.set({u"gbReplaceMediaPath"_s});
    QStringList texts;
    AnsweredFileDialogs dialogs{QString()};
    dialogs.setInspector([&texts](const QFileDialog *dialog) { texts = dialogTexts(dialog); });
    session.click(u"pbOpenNewMediaPath"_s);
    const QStringList expected{u"Voir dans :"_s,
                               u"Dossier :"_s,
                               u"Fichiers de type :"_s,
                               u"&Choisir"_s,
                               u"Annuler"_s,
                               u"Créer un nouveau dossier"_s,
                               u"Nom"_s,
                               u"Taille"_s,
                               u"Type"_s,
                               u"Dernière modification"_s};
    QCOMPARE(texts, expected);
}

void TstDesktop::fileTypesAreFrench()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(u"registres"_s));
    const QFileDialog dialog(nullptr, QString(), folder.path());
    const auto *view = dialog.findChild<QTreeView *>();
    const auto type = [view] {
        return view->model()->index(0, 2, view->rootIndex()).data().toString();
    };
    QTRY_COMPARE(type(), u"Dossier"_s);
}

void TstDesktop::overwriteQuestionIsFrench()
{
    const Session session;
    session.load({u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 TRLR"_s});

    QStringList texts;
    QTimer user;
    user.callOnTimeout([&texts] {
        auto *question = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!question)
            return;
        texts += question->text();
        texts += buttonTexts(question->buttons());
        question->button(QMessageBox::Yes)->click();
    });
    user.start(0);
    const AnsweredFileDialogs dialogs(session.path());
    session.trigger(u"actionEnregistrerFichier_sous"_s);
    const QStringList expected{u"Le fichier arbre.ged existe déjà\nVoulez-vous l'écraser ?"_s,
                               u"&Non"_s, u"&Oui"_s};
    QCOMPARE(texts, expected);
}

void TstDesktop::fieldMenuIsFrench()
{
    const Session session;
    const QStringList expected{u"&Annuler"_s, u"&Rétablir"_s, u"Co&uper"_s,          u"Cop&ier"_s,
                               u"Co&ller"_s,  u"Supprimer"_s, u"Tout sélectionner"_s};
    QCOMPARE(takeEntries(session.find<QLineEdit>(u"leTagsToDel"_s)->createStandardContextMenu()),
             expected);
}

void TstDesktop::journalMenuIsFrench()
{
    const Session session;
    auto *text = session.openJournal()->findChild<QPlainTextEdit *>();
    const QStringList expected{u"Cop&ier"_s, u"Tout sélectionner"_s};
    QCOMPARE(takeEntries(text->createStandardContextMenu()), expected);
}

void TstDesktop::buttonsAreFrench()
{
    QMessageBox box;
    box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel | QMessageBox::Close
                           | QMessageBox::Yes | QMessageBox::No);
    const QStringList expected{u"&Non"_s, u"&Oui"_s, u"Annuler"_s, u"Fermer"_s, u"OK"_s};
    QCOMPARE(buttonTexts(box.buttons()), expected);
}

void TstDesktop::ownTextsStay()
{
    const Session session;
    QCOMPARE(session.find<QAction>(u"actionOuvrir"_s)->text(), u"Ouvrir"_s);
    QCOMPARE(session.find<QPushButton>(u"pbReadSequence"_s)->text(), u"Jouer la séquence"_s);
    // The framework's texts are in none of the places where the program looks for its own.
    QCOMPARE(QDir(u":/i18n"_s).entryList(), QStringList{u"Varlune_fr_FR.qm"_s});
    QVERIFY(QFile::exists(u":/qt/qtbase_fr.qm"_s));
}

VARLUNE_TEST_MAIN(TstDesktop)
#include "tst_desktop.moc"
