#include "ui_mainwindow.h"

#include <QAction>
#include <QCheckBox>
#include <QCoreApplication>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QRect>
#include <QSizePolicy>
#include <QSpacerItem>
#include <QStatusBar>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

/// The icon that all five pick buttons share.
QIcon makePickIcon()
{
    QIcon icon;
    icon.addFile(u":/icones/pipt.png"_s, QSize(), QIcon::Normal, QIcon::Off);
    return icon;
}

} // namespace

void Ui_MainWindow::setupUi(QMainWindow *MainWindow)
{
    MainWindow->setObjectName(u"MainWindow"_s);
    MainWindow->resize(837, 967);

    actionOuvrir = new QAction(MainWindow);
    actionOuvrir->setObjectName(u"actionOuvrir"_s);
    actionEnregistrerFichier = new QAction(MainWindow);
    actionEnregistrerFichier->setObjectName(u"actionEnregistrerFichier"_s);
    actionEnregistrerFichier->setEnabled(false);
    actionEnregistrerFichier_sous = new QAction(MainWindow);
    actionEnregistrerFichier_sous->setObjectName(u"actionEnregistrerFichier_sous"_s);
    actionEnregistrerFichier_sous->setEnabled(false);
    actionJournal = new QAction(MainWindow);
    actionJournal->setObjectName(u"actionJournal"_s);
    action_propos = new QAction(MainWindow);
    action_propos->setObjectName(u"action_propos"_s);

    centralwidget = new QWidget(MainWindow);
    centralwidget->setObjectName(u"centralwidget"_s);
    centralwidget->setAutoFillBackground(true);
    horizontalLayout_2 = new QHBoxLayout(centralwidget);
    horizontalLayout_2->setObjectName(u"horizontalLayout_2"_s);

    verticalLayout_3 = new QVBoxLayout;
    verticalLayout_3->setObjectName(u"verticalLayout_3"_s);
    treeWidget = new QTreeWidget(centralwidget);
    treeWidget->setObjectName(u"treeWidget"_s);
    treeWidget->setColumnCount(4);
    treeWidget->header()->setVisible(false);
    treeWidget->header()->setStretchLastSection(false);
    treeWidget->setFrameShape(QFrame::Box);
    treeWidget->setLineWidth(1);
    verticalLayout_3->addWidget(treeWidget);
    gridLayout_6 = new QGridLayout;
    gridLayout_6->setObjectName(u"gridLayout_6"_s);
    cbSourceMultiUse = new QCheckBox(centralwidget);
    cbSourceMultiUse->setObjectName(u"cbSourceMultiUse"_s);
    cbSourceMultiUse->setEnabled(false);
    gridLayout_6->addWidget(cbSourceMultiUse, 2, 2);
    cbFiltreSensible = new QCheckBox(centralwidget);
    cbFiltreSensible->setObjectName(u"cbFiltreSensible"_s);
    cbFiltreSensible->setEnabled(false);
    gridLayout_6->addWidget(cbFiltreSensible, 1, 2);
    cbFiltrerRegex = new QCheckBox(centralwidget);
    cbFiltrerRegex->setObjectName(u"cbFiltrerRegex"_s);
    cbFiltrerRegex->setEnabled(false);
    gridLayout_6->addWidget(cbFiltrerRegex, 1, 1);
    cbSourceDateDiff = new QCheckBox(centralwidget);
    cbSourceDateDiff->setObjectName(u"cbSourceDateDiff"_s);
    cbSourceDateDiff->setEnabled(false);
    gridLayout_6->addWidget(cbSourceDateDiff, 2, 1);
    leRecherche = new QLineEdit(centralwidget);
    leRecherche->setObjectName(u"leRecherche"_s);
    leRecherche->setEnabled(false);
    gridLayout_6->addWidget(leRecherche, 0, 1, 1, 2);
    verticalLayout_3->addLayout(gridLayout_6);
    horizontalLayout_2->addLayout(verticalLayout_3);

    mainGroupBox = new QGroupBox(centralwidget);
    mainGroupBox->setObjectName(u"mainGroupBox"_s);
    verticalLayout = new QVBoxLayout(mainGroupBox);
    verticalLayout->setObjectName(u"verticalLayout"_s);
    cbEspacer = new QCheckBox(mainGroupBox);
    cbEspacer->setObjectName(u"cbEspacer"_s);
    verticalLayout->addWidget(cbEspacer);

    gbDelTags = new QGroupBox(mainGroupBox);
    gbDelTags->setObjectName(u"gbDelTags"_s);
    gbDelTags->setCheckable(true);
    gbDelTags->setChecked(false);
    verticalLayout_7 = new QVBoxLayout(gbDelTags);
    verticalLayout_7->setObjectName(u"verticalLayout_7"_s);
    horizontalLayout_6 = new QHBoxLayout;
    horizontalLayout_6->setObjectName(u"horizontalLayout_6"_s);
    leTagsToDel = new QLineEdit(gbDelTags);
    leTagsToDel->setObjectName(u"leTagsToDel"_s);
    horizontalLayout_6->addWidget(leTagsToDel);
    const QIcon pickIcon = makePickIcon();
    pbPickTagToDel = new QPushButton(gbDelTags);
    pbPickTagToDel->setObjectName(u"pbPickTagToDel"_s);
    pbPickTagToDel->setIcon(pickIcon);
    horizontalLayout_6->addWidget(pbPickTagToDel);
    verticalLayout_7->addLayout(horizontalLayout_6);
    gridLayout_4 = new QGridLayout;
    gridLayout_4->setObjectName(u"gridLayout_4"_s);
    leValueToDel = new QLineEdit(gbDelTags);
    leValueToDel->setObjectName(u"leValueToDel"_s);
    gridLayout_4->addWidget(leValueToDel, 2, 2);
    cbDelIfContent = new QCheckBox(gbDelTags);
    cbDelIfContent->setObjectName(u"cbDelIfContent"_s);
    gridLayout_4->addWidget(cbDelIfContent, 2, 1);
    cbDelEmptyClilds = new QCheckBox(gbDelTags);
    cbDelEmptyClilds->setObjectName(u"cbDelEmptyClilds"_s);
    gridLayout_4->addWidget(cbDelEmptyClilds, 1, 1);
    label_8 = new QLabel(gbDelTags);
    label_8->setObjectName(u"label_8"_s);
    gridLayout_4->addWidget(label_8, 0, 0);
    cbDelEmptyTags = new QCheckBox(gbDelTags);
    cbDelEmptyTags->setObjectName(u"cbDelEmptyTags"_s);
    gridLayout_4->addWidget(cbDelEmptyTags, 0, 1);
    cbDelIfContentRX = new QCheckBox(gbDelTags);
    cbDelIfContentRX->setObjectName(u"cbDelIfContentRX"_s);
    gridLayout_4->addWidget(cbDelIfContentRX, 2, 3);
    verticalLayout_7->addLayout(gridLayout_4);
    verticalLayout->addWidget(gbDelTags);

    gbSetURLLinks = new QGroupBox(mainGroupBox);
    gbSetURLLinks->setObjectName(u"gbSetURLLinks"_s);
    gbSetURLLinks->setCheckable(true);
    gbSetURLLinks->setChecked(false);
    horizontalLayout = new QHBoxLayout(gbSetURLLinks);
    horizontalLayout->setObjectName(u"horizontalLayout"_s);
    verticalLayout_2 = new QVBoxLayout;
    verticalLayout_2->setObjectName(u"verticalLayout_2"_s);
    horizontalLayout_7 = new QHBoxLayout;
    horizontalLayout_7->setObjectName(u"horizontalLayout_7"_s);
    pbImportCsvLinks = new QPushButton(gbSetURLLinks);
    pbImportCsvLinks->setObjectName(u"pbImportCsvLinks"_s);
    horizontalLayout_7->addWidget(pbImportCsvLinks);
    label_3 = new QLabel(gbSetURLLinks);
    label_3->setObjectName(u"label_3"_s);
    horizontalLayout_7->addWidget(label_3);
    leStrPlitCsv = new QLineEdit(gbSetURLLinks);
    leStrPlitCsv->setObjectName(u"leStrPlitCsv"_s);
    horizontalLayout_7->addWidget(leStrPlitCsv);
    verticalLayout_2->addLayout(horizontalLayout_7);
    horizontalLayout_8 = new QHBoxLayout;
    horizontalLayout_8->setObjectName(u"horizontalLayout_8"_s);
    cbUrlInEvt = new QCheckBox(gbSetURLLinks);
    cbUrlInEvt->setObjectName(u"cbUrlInEvt"_s);
    horizontalLayout_8->addWidget(cbUrlInEvt);
    cbUrlInSour = new QCheckBox(gbSetURLLinks);
    cbUrlInSour->setObjectName(u"cbUrlInSour"_s);
    horizontalLayout_8->addWidget(cbUrlInSour);
    verticalLayout_2->addLayout(horizontalLayout_8);
    cbDelTagObjeFile = new QCheckBox(gbSetURLLinks);
    cbDelTagObjeFile->setObjectName(u"cbDelTagObjeFile"_s);
    verticalLayout_2->addWidget(cbDelTagObjeFile);
    gbExtractMediasToKeep = new QGroupBox(gbSetURLLinks);
    gbExtractMediasToKeep->setObjectName(u"gbExtractMediasToKeep"_s);
    gbExtractMediasToKeep->setCheckable(true);
    gbExtractMediasToKeep->setChecked(false);
    gridLayout_2 = new QGridLayout(gbExtractMediasToKeep);
    gridLayout_2->setObjectName(u"gridLayout_2"_s);
    pbExtractMediasToKeep = new QPushButton(gbExtractMediasToKeep);
    pbExtractMediasToKeep->setObjectName(u"pbExtractMediasToKeep"_s);
    gridLayout_2->addWidget(pbExtractMediasToKeep, 1, 1);
    leExtractMediasToKeep = new QLineEdit(gbExtractMediasToKeep);
    leExtractMediasToKeep->setObjectName(u"leExtractMediasToKeep"_s);
    gridLayout_2->addWidget(leExtractMediasToKeep, 1, 0);
    pbExtractMediasSource = new QPushButton(gbExtractMediasToKeep);
    pbExtractMediasSource->setObjectName(u"pbExtractMediasSource"_s);
    gridLayout_2->addWidget(pbExtractMediasSource, 0, 1);
    leExtractMediasSource = new QLineEdit(gbExtractMediasToKeep);
    leExtractMediasSource->setObjectName(u"leExtractMediasSource"_s);
    gridLayout_2->addWidget(leExtractMediasSource, 0, 0);
    verticalLayout_2->addWidget(gbExtractMediasToKeep);
    horizontalLayout->addLayout(verticalLayout_2);
    verticalLayout->addWidget(gbSetURLLinks);

    gbClickablesLinks = new QGroupBox(mainGroupBox);
    gbClickablesLinks->setObjectName(u"gbClickablesLinks"_s);
    gbClickablesLinks->setCheckable(true);
    gbClickablesLinks->setChecked(false);
    verticalLayout_4 = new QVBoxLayout(gbClickablesLinks);
    verticalLayout_4->setObjectName(u"verticalLayout_4"_s);
    horizontalLayout_4 = new QHBoxLayout;
    horizontalLayout_4->setObjectName(u"horizontalLayout_4"_s);
    rbMarkdown = new QRadioButton(gbClickablesLinks);
    rbMarkdown->setObjectName(u"rbMarkdown"_s);
    rbMarkdown->setChecked(true);
    horizontalLayout_4->addWidget(rbMarkdown);
    rbHtml = new QRadioButton(gbClickablesLinks);
    rbHtml->setObjectName(u"rbHtml"_s);
    horizontalLayout_4->addWidget(rbHtml);
    verticalLayout_4->addLayout(horizontalLayout_4);
    horizontalLayout_11 = new QHBoxLayout;
    horizontalLayout_11->setObjectName(u"horizontalLayout_11"_s);
    label_7 = new QLabel(gbClickablesLinks);
    label_7->setObjectName(u"label_7"_s);
    horizontalLayout_11->addWidget(label_7);
    leTagToClickable = new QLineEdit(gbClickablesLinks);
    leTagToClickable->setObjectName(u"leTagToClickable"_s);
    leTagToClickable->setEnabled(false);
    horizontalLayout_11->addWidget(leTagToClickable);
    pickDestClickableTag = new QPushButton(gbClickablesLinks);
    pickDestClickableTag->setObjectName(u"pickDestClickableTag"_s);
    pickDestClickableTag->setIcon(pickIcon);
    horizontalLayout_11->addWidget(pickDestClickableTag);
    verticalLayout_4->addLayout(horizontalLayout_11);
    verticalLayout->addWidget(gbClickablesLinks);

    gbReplaceMediaPath = new QGroupBox(mainGroupBox);
    gbReplaceMediaPath->setObjectName(u"gbReplaceMediaPath"_s);
    gbReplaceMediaPath->setCheckable(true);
    gbReplaceMediaPath->setChecked(false);
    verticalLayout_6 = new QVBoxLayout(gbReplaceMediaPath);
    verticalLayout_6->setObjectName(u"verticalLayout_6"_s);
    hlMediaPath = new QHBoxLayout;
    hlMediaPath->setObjectName(u"hlMediaPath"_s);
    leNewMediaPath = new QLineEdit(gbReplaceMediaPath);
    leNewMediaPath->setObjectName(u"leNewMediaPath"_s);
    hlMediaPath->addWidget(leNewMediaPath);
    pbOpenNewMediaPath = new QPushButton(gbReplaceMediaPath);
    pbOpenNewMediaPath->setObjectName(u"pbOpenNewMediaPath"_s);
    hlMediaPath->addWidget(pbOpenNewMediaPath);
    cbDelMediaPath = new QCheckBox(gbReplaceMediaPath);
    cbDelMediaPath->setObjectName(u"cbDelMediaPath"_s);
    hlMediaPath->addWidget(cbDelMediaPath);
    verticalLayout_6->addLayout(hlMediaPath);
    verticalLayout->addWidget(gbReplaceMediaPath);

    gbMoveTagContent = new QGroupBox(mainGroupBox);
    gbMoveTagContent->setObjectName(u"gbMoveTagContent"_s);
    gbMoveTagContent->setCheckable(true);
    gbMoveTagContent->setChecked(false);
    gridLayout = new QGridLayout(gbMoveTagContent);
    gridLayout->setObjectName(u"gridLayout"_s);
    label = new QLabel(gbMoveTagContent);
    label->setObjectName(u"label"_s);
    gridLayout->addWidget(label, 1, 0);
    pickDestTag = new QPushButton(gbMoveTagContent);
    pickDestTag->setObjectName(u"pickDestTag"_s);
    pickDestTag->setIcon(pickIcon);
    gridLayout->addWidget(pickDestTag, 2, 4);
    leTagDest = new QLineEdit(gbMoveTagContent);
    leTagDest->setObjectName(u"leTagDest"_s);
    gridLayout->addWidget(leTagDest, 2, 1);
    cbCpSourDestContent = new QCheckBox(gbMoveTagContent);
    cbCpSourDestContent->setObjectName(u"cbCpSourDestContent"_s);
    gridLayout->addWidget(cbCpSourDestContent, 2, 6);
    label_2 = new QLabel(gbMoveTagContent);
    label_2->setObjectName(u"label_2"_s);
    gridLayout->addWidget(label_2, 2, 0);
    leTagSour = new QLineEdit(gbMoveTagContent);
    leTagSour->setObjectName(u"leTagSour"_s);
    gridLayout->addWidget(leTagSour, 1, 1);
    pickSrcTag = new QPushButton(gbMoveTagContent);
    pickSrcTag->setObjectName(u"pickSrcTag"_s);
    pickSrcTag->setIcon(pickIcon);
    gridLayout->addWidget(pickSrcTag, 1, 4);
    cbCreateDestTag = new QCheckBox(gbMoveTagContent);
    cbCreateDestTag->setObjectName(u"cbCreateDestTag"_s);
    gridLayout->addWidget(cbCreateDestTag, 2, 5);
    cbDelTagSour = new QCheckBox(gbMoveTagContent);
    cbDelTagSour->setObjectName(u"cbDelTagSour"_s);
    gridLayout->addWidget(cbDelTagSour, 1, 5, 1, 2);
    verticalLayout->addWidget(gbMoveTagContent);

    gbReplaceString = new QGroupBox(mainGroupBox);
    gbReplaceString->setObjectName(u"gbReplaceString"_s);
    gbReplaceString->setCheckable(true);
    gbReplaceString->setChecked(false);
    verticalLayout_5 = new QVBoxLayout(gbReplaceString);
    verticalLayout_5->setObjectName(u"verticalLayout_5"_s);
    gridLayout_3 = new QGridLayout;
    gridLayout_3->setObjectName(u"gridLayout_3"_s);
    label_6 = new QLabel(gbReplaceString);
    label_6->setObjectName(u"label_6"_s);
    gridLayout_3->addWidget(label_6, 1, 0);
    label_5 = new QLabel(gbReplaceString);
    label_5->setObjectName(u"label_5"_s);
    gridLayout_3->addWidget(label_5, 0, 0);
    pbSelectTagReplace = new QPushButton(gbReplaceString);
    pbSelectTagReplace->setObjectName(u"pbSelectTagReplace"_s);
    pbSelectTagReplace->setIcon(pickIcon);
    gridLayout_3->addWidget(pbSelectTagReplace, 2, 3);
    leTextDest = new QLineEdit(gbReplaceString);
    leTextDest->setObjectName(u"leTextDest"_s);
    gridLayout_3->addWidget(leTextDest, 1, 1, 1, 3);
    leTagToApply = new QLineEdit(gbReplaceString);
    leTagToApply->setObjectName(u"leTagToApply"_s);
    gridLayout_3->addWidget(leTagToApply, 2, 1, 1, 2);
    cbSensible = new QCheckBox(gbReplaceString);
    cbSensible->setObjectName(u"cbSensible"_s);
    gridLayout_3->addWidget(cbSensible, 0, 2);
    leTextOri = new QLineEdit(gbReplaceString);
    leTextOri->setObjectName(u"leTextOri"_s);
    gridLayout_3->addWidget(leTextOri, 0, 1);
    cbRegex = new QCheckBox(gbReplaceString);
    cbRegex->setObjectName(u"cbRegex"_s);
    gridLayout_3->addWidget(cbRegex, 0, 3);
    label_4 = new QLabel(gbReplaceString);
    label_4->setObjectName(u"label_4"_s);
    gridLayout_3->addWidget(label_4, 2, 0);
    verticalLayout_5->addLayout(gridLayout_3);
    verticalLayout->addWidget(gbReplaceString);

    verticalSpacer = new QSpacerItem(20, 40, QSizePolicy::Minimum, QSizePolicy::Expanding);
    verticalLayout->addItem(verticalSpacer);
    horizontalLayout_5 = new QHBoxLayout;
    horizontalLayout_5->setObjectName(u"horizontalLayout_5"_s);
    pbApply = new QPushButton(mainGroupBox);
    pbApply->setObjectName(u"pbApply"_s);
    horizontalLayout_5->addWidget(pbApply);
    pbReadSequence = new QPushButton(mainGroupBox);
    pbReadSequence->setObjectName(u"pbReadSequence"_s);
    horizontalLayout_5->addWidget(pbReadSequence);
    verticalLayout->addLayout(horizontalLayout_5);
    horizontalLayout_2->addWidget(mainGroupBox);
    MainWindow->setCentralWidget(centralwidget);

    menubar = new QMenuBar(MainWindow);
    menubar->setObjectName(u"menubar"_s);
    menubar->setGeometry(QRect(0, 0, 837, 21));
    menuFichier = new QMenu(menubar);
    menuFichier->setObjectName(u"menuFichier"_s);
    menuOutils = new QMenu(menubar);
    menuOutils->setObjectName(u"menuOutils"_s);
    menuAide = new QMenu(menubar);
    menuAide->setObjectName(u"menuAide"_s);
    MainWindow->setMenuBar(menubar);
    menubar->addAction(menuFichier->menuAction());
    menubar->addAction(menuOutils->menuAction());
    menubar->addAction(menuAide->menuAction());
    menuFichier->addAction(actionOuvrir);
    menuFichier->addAction(actionEnregistrerFichier);
    menuFichier->addAction(actionEnregistrerFichier_sous);
    menuOutils->addAction(actionJournal);
    menuAide->addAction(action_propos);
    statusbar = new QStatusBar(MainWindow);
    statusbar->setObjectName(u"statusbar"_s);
    MainWindow->setStatusBar(statusbar);

    retranslateUi(MainWindow);
    QMetaObject::connectSlotsByName(MainWindow);
}

void Ui_MainWindow::retranslateUi(QMainWindow *MainWindow)
{
    MainWindow->setWindowTitle(QCoreApplication::translate("MainWindow", "MainWindow"));
    actionOuvrir->setText(QCoreApplication::translate("MainWindow", "Ouvrir"));
    actionEnregistrerFichier->setText(QCoreApplication::translate("MainWindow", "Enregistrer"));
    actionEnregistrerFichier_sous->setText(
        QCoreApplication::translate("MainWindow", "Enregistrer sous"));
    actionJournal->setText(QCoreApplication::translate("MainWindow", "Journal"));
    action_propos->setText(QCoreApplication::translate("MainWindow", "À propos"));

    for (int column = 0; column < treeWidget->columnCount(); ++column)
        treeWidget->headerItem()->setText(column, QString());
    treeWidget->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Lignes du fichier GEDCOM"));
    cbSourceMultiUse->setText(
        QCoreApplication::translate("MainWindow", "Sources utilisées plusieurs fois"));
    cbFiltreSensible->setText(QCoreApplication::translate("MainWindow", "a != A"));
    cbFiltreSensible->setAccessibleName(QCoreApplication::translate(
        "MainWindow", "Différencier majuscules et minuscules dans le filtre (a != A)"));
    cbFiltrerRegex->setText(QCoreApplication::translate("MainWindow", "regex"));
    cbFiltrerRegex->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Filtrer par expression régulière (regex)"));
    cbSourceDateDiff->setText(QCoreApplication::translate("MainWindow", "Sources!=date"));
    cbSourceDateDiff->setToolTip(QCoreApplication::translate(
        "MainWindow", "<html><head/><body><p>liste les sources dont la date "
                      "d'évènement diffère</p></body></html>"));
    cbSourceDateDiff->setAccessibleName(QCoreApplication::translate(
        "MainWindow", "Sources dont la date diffère de celle de l'évènement (Sources!=date)"));
    cbSourceDateDiff->setAccessibleDescription(QCoreApplication::translate(
        "MainWindow", "liste les sources dont la date d'évènement diffère"));
    leRecherche->setPlaceholderText(QCoreApplication::translate("MainWindow", "filtrer"));
    leRecherche->setAccessibleName(QCoreApplication::translate("MainWindow", "Filtrer l'arbre"));
    mainGroupBox->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Opérations sur le fichier"));

    cbEspacer->setText(QCoreApplication::translate("MainWindow", "Espacer les Prénoms/NOMS/"));
    cbEspacer->setToolTip(QCoreApplication::translate(
        "MainWindow", "<html><head/><body><p>JeanMARTIN -&gt; Jean MARTIN</p></body></html>"));
    cbEspacer->setAccessibleDescription(
        QCoreApplication::translate("MainWindow", "JeanMARTIN -> Jean MARTIN"));

    gbDelTags->setTitle(QCoreApplication::translate("MainWindow", "Supprimer les balises"));
    leTagsToDel->setToolTip(QCoreApplication::translate(
        "MainWindow",
        "liste des balises séparées par ; Il est possible de spécifier les balises parentes "
        "séparées par des . en cas de balises homographes (INDI.OCCU.EVEN par exemple)"));
    leTagsToDel->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Balises à supprimer"));
    pbPickTagToDel->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Choisir dans l'arbre la balise à supprimer"));
    leValueToDel->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Valeur ou sous-valeur recherchée"));
    cbDelIfContent->setText(
        QCoreApplication::translate("MainWindow", "si une valeur ou sous-valeur est :"));
    cbDelIfContent->setToolTip(QCoreApplication::translate(
        "MainWindow", "<html><head/><body><p>Recherche le texte dans la balise "
                      "cible et ses sous balises</p></body></html>"));
    cbDelIfContent->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Uniquement si une valeur ou sous-valeur est :"));
    cbDelIfContent->setAccessibleDescription(QCoreApplication::translate(
        "MainWindow", "Recherche le texte dans la balise cible et ses sous balises"));
    cbDelEmptyClilds->setText(QCoreApplication::translate("MainWindow", "si sans enfants"));
    cbDelEmptyClilds->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Uniquement si sans enfants"));
    label_8->setText(QCoreApplication::translate("MainWindow", "uniquement : "));
    cbDelEmptyTags->setText(QCoreApplication::translate("MainWindow", "si vides"));
    cbDelEmptyTags->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Uniquement si vides"));
    cbDelIfContentRX->setText(QCoreApplication::translate("MainWindow", "regex"));
    cbDelIfContentRX->setAccessibleName(QCoreApplication::translate(
        "MainWindow", "Valeur recherchée par expression régulière (regex)"));

    gbSetURLLinks->setTitle(
        QCoreApplication::translate("MainWindow", "Générer les URL des médias sources"));
    pbImportCsvLinks->setText(
        QCoreApplication::translate("MainWindow", "Fichier de correspondance"));
    label_3->setText(QCoreApplication::translate("MainWindow", "Chaîne de séparation"));
    leStrPlitCsv->setText(QCoreApplication::translate("MainWindow", ",https://www.dropbox.com/"));
    leStrPlitCsv->setToolTip(QCoreApplication::translate(
        "MainWindow", "<html><head/><body><p>chaîne de caractères unique au sein "
                      "de la ligne&quot;fichier/url&quot; permettant de séparer "
                      "le nom de fichier et son url</p></body></html>"));
    leStrPlitCsv->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Chaîne de séparation entre fichier et url"));
    leStrPlitCsv->setAccessibleDescription(QCoreApplication::translate(
        "MainWindow", "chaîne de caractères unique au sein de la ligne \"fichier/url\" permettant "
                      "de séparer le nom de fichier et son url"));
    cbUrlInEvt->setText(
        QCoreApplication::translate("MainWindow", "Générer une note dans l'évènement"));
    cbUrlInEvt->setToolTip(QCoreApplication::translate(
        "MainWindow",
        "<html><head/><body><p>Ajoute une balise NOTE référençant l'url de la source à "
        "une balise évènement</p></body></html>"));
    cbUrlInEvt->setAccessibleDescription(QCoreApplication::translate(
        "MainWindow",
        "Ajoute une balise NOTE référençant l'url de la source à une balise évènement"));
    cbUrlInSour->setText(
        QCoreApplication::translate("MainWindow", "Générer un lien dans la source"));
    cbUrlInSour->setToolTip(QCoreApplication::translate(
        "MainWindow", "<html><head/><body><p>Ajoute une balise WWW référençant "
                      "l'url de la source à une balise source</p></body></html>"));
    cbUrlInSour->setAccessibleDescription(QCoreApplication::translate(
        "MainWindow", "Ajoute une balise WWW référençant l'url de la source à une balise source"));
    cbDelTagObjeFile->setText(QCoreApplication::translate(
        "MainWindow", "Ssupprimer l'entrée OBJE correspondant au fichier"));
    cbDelTagObjeFile->setAccessibleName(QCoreApplication::translate(
        "MainWindow", "Supprimer l'entrée OBJE correspondant au fichier"));
    gbExtractMediasToKeep->setTitle(
        QCoreApplication::translate("MainWindow", "Extraire les médias non linkés"));
    gbExtractMediasToKeep->setToolTip(QCoreApplication::translate(
        "MainWindow", "<html><head/><body><p>copie les médias à afficher directement sans avoir à "
                      "cliquer sur un lien</p></body></html>"));
    // A group inside another one would be called by the title of that one.
    gbExtractMediasToKeep->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Extraire les médias non linkés"));
    gbExtractMediasToKeep->setAccessibleDescription(QCoreApplication::translate(
        "MainWindow", "copie les médias à afficher directement sans avoir à cliquer sur un lien"));
    pbExtractMediasToKeep->setText(
        QCoreApplication::translate("MainWindow", "Dossier d'extraction"));
    pbExtractMediasToKeep->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Choisir le dossier d'extraction"));
    leExtractMediasToKeep->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Chemin du dossier d'extraction"));
    pbExtractMediasSource->setText(QCoreApplication::translate("MainWindow", "Dossier source"));
    pbExtractMediasSource->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Choisir le dossier source"));
    leExtractMediasSource->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Chemin du dossier source"));

    gbClickablesLinks->setTitle(
        QCoreApplication::translate("MainWindow", "Rendre les liens cliquable"));
    gbClickablesLinks->setToolTip(QCoreApplication::translate(
        "MainWindow", "<html><head/><body><p>transforme une url en balise "
                      "markdown ou html cliquable</p></body></html>"));
    gbClickablesLinks->setAccessibleDescription(QCoreApplication::translate(
        "MainWindow", "transforme une url en balise markdown ou html cliquable"));
    rbMarkdown->setText(QCoreApplication::translate("MainWindow", "Markdown"));
    rbHtml->setText(QCoreApplication::translate("MainWindow", "Html"));
    label_7->setText(
        QCoreApplication::translate("MainWindow", "Appliquer uniquement aux balises : "));
    label_7->setToolTip(QCoreApplication::translate(
        "MainWindow", "Seul les liens aynt pour balise les balieses mentionnées seront modifiés."));
    leTagToClickable->setToolTip(QCoreApplication::translate(
        "MainWindow",
        "liste des balises séparées par ; Il est possible de spécifier les balises parentes "
        "séparées par des . en cas de balises homographes (INDI.OCCU.EVEN par exemple)"));
    leTagToClickable->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Balises dont les liens deviennent cliquables"));
    pickDestClickableTag->setAccessibleName(QCoreApplication::translate(
        "MainWindow", "Choisir dans l'arbre la balise dont les liens deviennent cliquables"));

    gbReplaceMediaPath->setTitle(
        QCoreApplication::translate("MainWindow", "Changer le chemin des médias"));
    leNewMediaPath->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Nouveau chemin des médias"));
    pbOpenNewMediaPath->setText(QCoreApplication::translate("MainWindow", "Choix du dossier"));
    pbOpenNewMediaPath->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Choix du dossier des médias"));
    cbDelMediaPath->setText(QCoreApplication::translate("MainWindow", "Supprimer"));
    cbDelMediaPath->setToolTip(QCoreApplication::translate(
        "MainWindow",
        "<html><head/><body><p>supprime le chemin absolu d'un fichier et ne conserve que "
        "le nom du fichier</p></body></html>"));
    cbDelMediaPath->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Supprimer le chemin des médias"));
    cbDelMediaPath->setAccessibleDescription(QCoreApplication::translate(
        "MainWindow",
        "supprime le chemin absolu d'un fichier et ne conserve que le nom du fichier"));

    gbMoveTagContent->setTitle(
        QCoreApplication::translate("MainWindow", "Copier / Déplacer des balises"));
    gbMoveTagContent->setToolTip(QCoreApplication::translate(
        "MainWindow",
        "<html><head/><body><p>déplace le contenu d'une balise dans une autre</p></body></html>"));
    gbMoveTagContent->setAccessibleDescription(QCoreApplication::translate(
        "MainWindow", "déplace le contenu d'une balise dans une autre"));
    label->setText(QCoreApplication::translate("MainWindow", "Balise 1"));
    pickDestTag->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Choisir dans l'arbre la balise 2"));
    leTagDest->setToolTip(QCoreApplication::translate(
        "MainWindow", "tag complet de la ou des balises séparées par ;"));
    leTagDest->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Balise 2, qui reçoit le contenu"));
    cbCpSourDestContent->setText(QCoreApplication::translate("MainWindow", "Contenu de 1 dans 2"));
    cbCpSourDestContent->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Contenu de la balise 1 dans la balise 2"));
    label_2->setText(QCoreApplication::translate("MainWindow", "Balise 2"));
    leTagSour->setToolTip(QCoreApplication::translate(
        "MainWindow", "tag complet de la ou des balises séparées par ;"));
    leTagSour->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Balise 1, d'où vient le contenu"));
    pickSrcTag->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Choisir dans l'arbre la balise 1"));
    cbCreateDestTag->setText(QCoreApplication::translate("MainWindow", "Créer 2"));
    cbCreateDestTag->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Créer la balise 2 si elle manque"));
    cbDelTagSour->setText(QCoreApplication::translate("MainWindow", "Supprimer la balise 1"));
    cbDelTagSour->setToolTip(QCoreApplication::translate(
        "MainWindow", "<html><head/><body><p>la balise n'est supprimée que si "
                      "elle n'a pas de sous balise</p></body></html>"));
    cbDelTagSour->setAccessibleDescription(QCoreApplication::translate(
        "MainWindow", "la balise n'est supprimée que si elle n'a pas de sous balise"));

    gbReplaceString->setTitle(QCoreApplication::translate("MainWindow", "Remplacer du texte"));
    label_6->setText(QCoreApplication::translate("MainWindow", "Remplacer par "));
    label_5->setText(QCoreApplication::translate("MainWindow", "Recherche"));
    pbSelectTagReplace->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Choisir dans l'arbre la balise cible"));
    leTextDest->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Texte de remplacement"));
    leTagToApply->setToolTip(QCoreApplication::translate(
        "MainWindow",
        "<html><head/><body><p>Laisser vide  pour modifier n'importe où</p></body></html>"));
    leTagToApply->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Balises cibles du remplacement"));
    leTagToApply->setAccessibleDescription(
        QCoreApplication::translate("MainWindow", "Laisser vide pour modifier n'importe où"));
    cbSensible->setText(QCoreApplication::translate("MainWindow", "a != A"));
    cbSensible->setToolTip(QCoreApplication::translate(
        "MainWindow",
        "<html><head/><body><p>Différencer MAJUSCULES et minuscules</p></body></html>"));
    cbSensible->setAccessibleName(QCoreApplication::translate(
        "MainWindow", "Différencier majuscules et minuscules (a != A)"));
    cbSensible->setAccessibleDescription(
        QCoreApplication::translate("MainWindow", "Différencier majuscules et minuscules"));
    leTextOri->setAccessibleName(QCoreApplication::translate("MainWindow", "Texte recherché"));
    cbRegex->setText(QCoreApplication::translate("MainWindow", "regex"));
    cbRegex->setToolTip(QCoreApplication::translate(
        "MainWindow", "<html><head/><body><p>Utiliser une expression régulière</p></body></html>"));
    cbRegex->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Utiliser une expression régulière (regex)"));
    cbRegex->setAccessibleDescription(
        QCoreApplication::translate("MainWindow", "Utiliser une expression régulière"));
    label_4->setText(QCoreApplication::translate("MainWindow", "Balises cibles"));

    pbApply->setText(QCoreApplication::translate("MainWindow", "Appliquer les modifications"));
    pbReadSequence->setText(QCoreApplication::translate("MainWindow", "Jouer la séquence"));
    menubar->setAccessibleName(QCoreApplication::translate("MainWindow", "Barre de menus"));

    // A menu that is open would be called by its window title, and it has none.
    menuFichier->setTitle(QCoreApplication::translate("MainWindow", "Fichier"));
    menuFichier->setAccessibleName(QCoreApplication::translate("MainWindow", "Fichier"));
    menuOutils->setTitle(QCoreApplication::translate("MainWindow", "Outils"));
    menuOutils->setAccessibleName(QCoreApplication::translate("MainWindow", "Outils"));
    menuAide->setTitle(QCoreApplication::translate("MainWindow", "Aide"));
    menuAide->setAccessibleName(QCoreApplication::translate("MainWindow", "Aide"));
}
