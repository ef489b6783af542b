#include "mainwindow.h"

#include "contrast.h"
#include "fenapropos.h"
#include "fenjournal.h"
#include "journaltext.h"
#include "matching.h"
#include "report.h"
#include "rowdelegate.h"
#include "treerows.h"
#include "twitem.h"
#include "ui_mainwindow.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QCursor>
#include <QFile>
#include <QFileDialog>
#include <QGroupBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QStandardPaths>
#include <QStatusBar>
#include <QStyle>
#include <QTextStream>
#include <QTreeWidget>

#include <algorithm>
#include <functional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// Shows the wait cursor while it lives; several may live at once, one inside the other.
class WaitCursor
{
public:
    WaitCursor()
    {
        QApplication::setOverrideCursor(Qt::WaitCursor);
    }
    ~WaitCursor()
    {
        QApplication::restoreOverrideCursor();
    }
    Q_DISABLE_COPY_MOVE(WaitCursor)
};

/// The file of that name beside the executable. It lives to the end of the process.
QFile *fileBesideExecutable(const QString &name)
{
    return new QFile(QCoreApplication::applicationDirPath() + u'/' + name);
}

QString documentsDirectory()
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

/// Adds the full tag of the current entry of \p tree to a tag field.
void pickTag(const QTreeWidget *tree, QLineEdit *field)
{
    auto *twi = static_cast<TwItem *>(tree->currentItem());
    // No row may be current yet. A section node has no tag; nor has a note whose text stands on the
    // line of its identifier.
    if (!twi || twi->getTag() == NoTag)
        return;
    const QString fullTag = fullTagText(twi);
    field->setText(field->text().isEmpty() ? fullTag : field->text() + u';' + fullTag);
}

/// Gives the titles of \p bar a colour that can be read on \p background where theirs, that of a
/// dark desktop, could not. Which of the two roles is drawn is up to the style.
void makeTitlesReadable(QMenuBar *bar, const QColor &background)
{
    QPalette palette = bar->palette();
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        for (const auto role : {QPalette::ButtonText, QPalette::WindowText})
            palette.setColor(group, role, readableOn(background, palette.color(group, role)));
    }
    bar->setPalette(palette);
}

} // namespace

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent),
      ui(new Ui_MainWindow),
      m_progress(new QProgressBar(this))
{
    ui->setupUi(this);
    setWindowTitle(FenAPropos::getAppName() + u' ' + FenAPropos::getVersion());
    ui->menubar->setPalette(QApplication::style()->standardPalette());
    const QColor menuBackground(u"#f0f0f0"_s);
    menuBar()->setStyleSheet(u"QMenuBar {background-color: %1;}"_s.arg(menuBackground.name()));
    ui->statusbar->addPermanentWidget(m_progress);
    m_progress->setStyleSheet(
        u"QProgressBar::chunk{background-color:green; width: 10px; margin: 0.5px;}"_s);
    m_progress->setTextVisible(false);
    m_progress->setHidden(true);
    m_progress->setAccessibleName(tr("Progression"));
    makeTitlesReadable(ui->menubar, menuBackground);
    ui->treeWidget->setItemDelegate(new RowDelegate(ui->treeWidget));
    ui->mainGroupBox->setEnabled(false);
    m_FichierParams = fileBesideExecutable(u"PARAM.INI"_s);
    extraireIni();
    m_FichierSequence = fileBesideExecutable(u"SEQUENCE.INI"_s);
}

MainWindow::~MainWindow()
{
    delete ui;
}

void MainWindow::on_actionOuvrir_triggered()
{
    ui->statusbar->show();
    ui->statusbar->showMessage(tr("Chargement du fichier GED en cours..."), 0);
    const QString path = QFileDialog::getOpenFileName(this, tr("Ouvrir un fichier Gedcom"),
                                                      documentsDirectory(), tr("ged (*.ged)"));
    if (!m_gedcom.genererVectorGed(path, ui->treeWidget, m_progress, ui->statusbar)) {
        m_gedcom.addToJournal(tr("Chargement du fichier GED interrompu."), u"ERROR"_s);
        return;
    }

    ui->treeWidget->resizeColumnToContents(3);
    ui->treeWidget->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    ui->statusbar->showMessage(tr("Chargement du fichier GED terminé"), 0);
    m_gedcom.addToJournal(tr("Chargement du fichier GED terminé."), u"INFO"_s);
    m_gedcom.addToJournal(tr("%1 entrées trouvées.").arg(m_gedcom.getTabTwItemsRoot().size()),
                          u"INFO"_s);
    ui->mainGroupBox->setEnabled(true);
    ui->leTagToClickable->setEnabled(true);
    ui->cbFiltreSensible->setEnabled(true);
    ui->cbSourceDateDiff->setEnabled(true);
    ui->cbSourceMultiUse->setEnabled(true);
    ui->cbFiltrerRegex->setEnabled(true);
    ui->leRecherche->setEnabled(true);
    ui->actionEnregistrerFichier_sous->setEnabled(true);
    ui->actionEnregistrerFichier->setEnabled(true);
    ui->actionOuvrir->setEnabled(false); // one document per run
}

void MainWindow::on_actionEnregistrerFichier_triggered()
{
    m_gedcom.writeGedFile(m_gedcom.getPathGedFile()); // reports its own failures
}

void MainWindow::on_actionEnregistrerFichier_sous_triggered()
{
    const QString path = QFileDialog::getSaveFileName(this, tr("Enregistrer sous"),
                                                      m_gedcom.getPathGedFile(), tr("Ged (*.ged)"));
    m_gedcom.writeGedFile(path); // reports its own failures, that of a cancelled dialog too
}

void MainWindow::on_actionJournal_triggered()
{
    auto *fenJournal = new FenJournal(this, m_gedcom.getJournal(), tr("Journal"));
    fenJournal->show();
}

void MainWindow::on_pbApply_clicked()
{
    m_progress->show();
    m_gedcom.unConc();
    start();
    on_actionJournal_triggered();
    eraseSettingsValues();
    m_progress->hide();
}

void MainWindow::on_pbReadSequence_clicked()
{
    eraseSettingsValues();
    if (!m_FichierSequence->open(QIODevice::ReadOnly | QIODevice::Text)) {
        showCritical(windowTitle(), tr("Fichier SEQUENCE.INI introuvable dans l'application."),
                     this);
        return;
    }
    QTextStream in(m_FichierSequence);
    const QString separator = u"separator="_s;
    QString separatorValue;
    m_progress->show();
    m_gedcom.unConc();
    while (!in.atEnd()) {
        QString stringTampon = in.readLine();
        if (stringTampon.isEmpty() || stringTampon.startsWith(u';')
            || stringTampon.startsWith(u'#'))
            continue;
        // Intentional: a line that defines a separator is a step as well. Split at itself it gives
        // two empty items, and a run of the empty form changes nothing.
        if (stringTampon.startsWith(separator)) {
            stringTampon.remove(0, separator.size());
            separatorValue = stringTampon;
        }
        if (separatorValue.isEmpty()) {
            showCritical(windowTitle(),
                         tr("chaine de séparation 'separator' non définie dans la séquence."),
                         this);
            continue;
        }
        const QStringList valuesList = stringTampon.split(separatorValue);
        for (const QString &value : valuesList)
            setFormValues(value);
        start();
        eraseSettingsValues();
    }
    eraseSettingsValues();
    m_progress->hide();
    on_actionJournal_triggered();
    in.reset();
    m_FichierSequence->close();
}

void MainWindow::on_action_propos_triggered()
{
    auto *fenAPropos = new FenAPropos(this);
    fenAPropos->show();
}

void MainWindow::on_leRecherche_returnPressed()
{
    const WaitCursor waitCursor;
    m_prevSearchText = ui->leRecherche->text();
    m_prevSearchTextSensitive = ui->cbFiltreSensible->isChecked();
    m_prevSearchTextRegex = ui->cbFiltrerRegex->isChecked();
    const qsizetype size = m_gedcom.getTabTotalTwItems().size();
    qsizetype count = size;
    // Both set every row, whatever an earlier search or filter has left.
    if (m_prevSearchText.isEmpty())
        twiUnhideAll();
    else
        count = reverseHide();
    ui->statusbar->showMessage(tr("%1/%2 entrées affichées.").arg(count).arg(size), 0);
}

void MainWindow::on_leRecherche_textChanged(const QString &)
{
    ui->statusbar->showMessage(tr("Valider la recherche par la touche entrée"), 0);
}

void MainWindow::on_cbFiltrerRegex_stateChanged(int)
{
    on_leRecherche_returnPressed();
}

void MainWindow::on_cbFiltreSensible_stateChanged(int)
{
    on_leRecherche_returnPressed();
}

void MainWindow::on_cbSourceDateDiff_stateChanged(int arg1)
{
    showFiltered(arg1, &Gedcom::filterSourceDateDiff);
}

void MainWindow::on_cbSourceMultiUse_stateChanged(int arg1)
{
    showFiltered(arg1, &Gedcom::filterSourceMultiUse);
}

void MainWindow::on_pickSrcTag_clicked()
{
    pickTag(ui->treeWidget, ui->leTagSour);
}

void MainWindow::on_pickDestTag_clicked()
{
    pickTag(ui->treeWidget, ui->leTagDest);
}

void MainWindow::on_pickDestClickableTag_clicked()
{
    pickTag(ui->treeWidget, ui->leTagToClickable);
}

void MainWindow::on_pbPickTagToDel_clicked()
{
    pickTag(ui->treeWidget, ui->leTagsToDel);
}

void MainWindow::on_pbSelectTagReplace_clicked()
{
    pickTag(ui->treeWidget, ui->leTagToApply);
}

void MainWindow::on_pbImportCsvLinks_clicked()
{
    const QStringList files = QFileDialog::getOpenFileNames(
        this, tr("Ouvrir les fichiers de correspondance"), documentsDirectory(), tr("csv (*.csv)"));
    if (!files.isEmpty())
        m_filesImport = files;
}

void MainWindow::on_pbExtractMediasSource_clicked()
{
    // A cancelled dialog clears the field, here and below.
    ui->leExtractMediasSource->setText(QFileDialog::getExistingDirectory(
        this, tr("Dossier des médias"), documentsDirectory(),
        QFileDialog::ShowDirsOnly | QFileDialog::DontResolveSymlinks));
}

void MainWindow::on_pbExtractMediasToKeep_clicked()
{
    ui->leExtractMediasToKeep->setText(QFileDialog::getExistingDirectory(
        this, tr("Dossier des médias"), documentsDirectory(),
        QFileDialog::ShowDirsOnly | QFileDialog::DontResolveSymlinks));
}

void MainWindow::on_cbDelMediaPath_stateChanged(int)
{
    const bool keepPath = !ui->cbDelMediaPath->isChecked();
    ui->leNewMediaPath->setEnabled(keepPath);
    ui->pbOpenNewMediaPath->setEnabled(keepPath);
}

void MainWindow::on_pbOpenNewMediaPath_clicked()
{
    ui->cbDelMediaPath->setChecked(false);
    ui->gbReplaceMediaPath->setChecked(true);
    ui->leNewMediaPath->setText(QFileDialog::getExistingDirectory(
        this, tr("Ouvrir le dossier des médias"), QString(), QFileDialog::ShowDirsOnly));
}

void MainWindow::on_cbUrlInEvt_stateChanged(int)
{
    if (!ui->cbUrlInEvt->isChecked() && ui->gbSetURLLinks->isChecked())
        ui->cbUrlInSour->setChecked(true);
}

void MainWindow::on_cbUrlInSour_stateChanged(int)
{
    if (!ui->cbUrlInSour->isChecked() && ui->gbSetURLLinks->isChecked())
        ui->cbUrlInEvt->setChecked(true);
}

void MainWindow::on_cbDelIfContent_clicked()
{
    const bool byContent = ui->cbDelIfContent->isChecked();
    ui->cbDelIfContentRX->setEnabled(byContent);
    ui->leValueToDel->setEnabled(byContent);
}

void MainWindow::on_gbDelTags_clicked()
{
    on_cbDelIfContent_clicked();
}

void MainWindow::checkRequirements()
{
    const QStringList listOri = ui->leTagSour->text().split(u';');
    const QStringList listDest = ui->leTagDest->text().split(u';');
    const auto sameBaseTag = [](const QString &ori, const QString &dest) {
        return ori.section(u'.', 0, 0) == dest.section(u'.', 0, 0);
    };
    const bool sameBaseTags =
        std::equal(listOri.begin(), listOri.end(), listDest.begin(), listDest.end(), sameBaseTag);

    const bool setLinks = ui->gbSetURLLinks->isChecked();
    const bool extractMedias = setLinks && ui->gbExtractMediasToKeep->isChecked();
    const bool moveTags = ui->gbMoveTagContent->isChecked();
    const bool replacePath = ui->gbReplaceMediaPath->isChecked();
    const bool deleteTags = ui->gbDelTags->isChecked();
    const bool replaceText = ui->gbReplaceString->isChecked();
    // Only the first failure is reported. The order matters: lists of unequal size are reported
    // before their base tags are.
    const struct
    {
        bool failed;
        QString message;
    } requirements[] = {
        {setLinks && m_filesImport.isEmpty(),
         tr("Veuillez sélectionner les fichiers de correspondance avant d'importer les liens "
            "médias.")},
        {extractMedias
             && (ui->leExtractMediasSource->text().isEmpty()
                 || ui->leExtractMediasToKeep->text().isEmpty()),
         tr("Veuillez sélectionner les dossiers source et destination des médias à extraire.")},
        {setLinks && ui->leStrPlitCsv->text().isEmpty(),
         tr("Indiquez la chaîne de séparation du fichier de correspondance.")},
        {moveTags && (ui->leTagDest->text().isEmpty() || ui->leTagSour->text().isEmpty()),
         tr("Veuillez sélectionner les balises source et destination des balises doublons.")},
        {moveTags && listOri.size() != listDest.size(),
         tr("Le nombre de balises source et destination en doublon doivent correspondre.")},
        {moveTags && !sameBaseTags,
         tr("Les balises source et destination des doublons doivent être de même type de base.")},
        {replacePath && !ui->cbDelMediaPath->isChecked() && ui->leNewMediaPath->text().isEmpty(),
         tr("Indiquer le nouveau chemin des médias ou choisissez de supprimer celui-ci.")},
        {deleteTags && ui->leTagsToDel->text().isEmpty(),
         tr("Indiquer la ou les balises à supprimer.")},
        {deleteTags && ui->cbDelIfContent->isChecked() && ui->leValueToDel->text().isEmpty(),
         tr("Indiquer la valeur à rechercher dans la balise et sous balises.")},
        // Intentional: the message names both texts, but an empty replacement is allowed.
        {replaceText && ui->leTextOri->text().isEmpty(),
         tr("Veuillez entrer le texte à rechercher et le texte par lequel le remplacer.")},
    };
    for (const auto &requirement : requirements) {
        if (requirement.failed) {
            showCritical(tr("Erreur"), requirement.message);
            return;
        }
    }
}

void MainWindow::start()
{
    checkRequirements(); // only warns: an incomplete operation runs all the same

    // Each group is read only when its turn comes: operations process events, and the user may edit
    // the form meanwhile.
    if (ui->cbEspacer->isChecked())
        m_gedcom.setSpaceNames();
    if (ui->gbDelTags->isChecked()) {
        const QStringList tagList = ui->leTagsToDel->text().split(u';');
        const QString contentValue = ui->leValueToDel->text();
        m_gedcom.delListTag(tagList, ui->cbDelEmptyTags->isChecked(),
                            ui->cbDelEmptyClilds->isChecked(), ui->cbDelIfContent->isChecked(),
                            ui->cbDelIfContentRX->isChecked(), contentValue);
    }
    if (ui->gbSetURLLinks->isChecked()) {
        m_gedcom.setMediaFileURL(
            m_filesImport, ui->leStrPlitCsv->text(), ui->cbUrlInSour->isChecked(),
            ui->cbUrlInEvt->isChecked(), ui->cbDelTagObjeFile->isChecked(),
            ui->gbExtractMediasToKeep->isChecked(), ui->leExtractMediasSource->text(),
            ui->leExtractMediasToKeep->text());
    }
    if (ui->gbClickablesLinks->isChecked()) {
        // The split of an empty field would be one empty tag, which names nothing here; an empty
        // list restricts nothing.
        QStringList tagsToApply;
        if (!ui->leTagToClickable->text().isEmpty())
            tagsToApply = ui->leTagToClickable->text().split(u';');
        m_gedcom.setURLClickable(ui->rbMarkdown->isChecked(), tagsToApply);
    }
    if (ui->gbReplaceMediaPath->isChecked()) {
        QString newPath;
        if (!ui->cbDelMediaPath->isChecked()) {
            newPath = ui->leNewMediaPath->text().replace(u'\\', u'/');
            if (!newPath.isEmpty() && !newPath.endsWith(u'/'))
                newPath += u'/';
        }
        m_gedcom.setMediaFilePath(newPath);
    }
    if (ui->gbMoveTagContent->isChecked()) {
        m_gedcom.moveTagContent(ui->leTagSour->text(), ui->leTagDest->text(),
                                ui->cbDelTagSour->isChecked(), ui->cbCpSourDestContent->isChecked(),
                                ui->cbCreateDestTag->isChecked());
    }
    if (ui->gbReplaceString->isChecked()) {
        m_gedcom.searchAndReplace(ui->leTextOri->text(), ui->leTextDest->text(),
                                  ui->leTagToApply->text(), ui->cbSensible->isChecked(),
                                  ui->cbRegex->isChecked());
    }
}

void MainWindow::eraseSettingsValues()
{
    ui->cbEspacer->setChecked(false);

    ui->gbDelTags->setChecked(false);
    ui->leTagsToDel->clear();
    ui->cbDelEmptyTags->setChecked(false);
    ui->cbDelEmptyClilds->setChecked(false);
    ui->leValueToDel->clear();
    ui->cbDelIfContentRX->setChecked(false);
    ui->cbDelIfContent->setChecked(false);

    // Intentional: the group is unchecked last. Until then, unchecking one kind of link checks the
    // other, so cbUrlInEvt ends up checked if either was, and the next use of the group starts
    // from there.
    ui->leStrPlitCsv->clear();
    ui->cbUrlInEvt->setChecked(false);
    ui->cbUrlInSour->setChecked(false);
    ui->cbDelTagObjeFile->setChecked(false);
    ui->gbExtractMediasToKeep->setChecked(false);
    ui->leExtractMediasSource->clear();
    ui->leExtractMediasToKeep->clear();
    ui->gbSetURLLinks->setChecked(false);

    ui->gbClickablesLinks->setChecked(false);
    ui->leTagToClickable->clear();

    ui->gbReplaceMediaPath->setChecked(false);
    ui->leNewMediaPath->clear();
    ui->cbDelMediaPath->setChecked(false);

    ui->leTagSour->clear();
    ui->leTagDest->clear();
    ui->cbCpSourDestContent->setChecked(false);
    ui->cbDelTagSour->setChecked(false);
    ui->cbCreateDestTag->setChecked(false);
    ui->gbMoveTagContent->setChecked(false);

    ui->gbReplaceString->setChecked(false);
    ui->leTextOri->clear();
    ui->leTextDest->clear();
    ui->leTagToApply->clear();
    ui->cbRegex->setChecked(false);
    ui->cbSensible->setChecked(false);
}

void MainWindow::twiUnhideAll()
{
    setRecordsHidden(m_gedcom.getTabTwItemsRoot(), false);
}

qsizetype MainWindow::reverseHide()
{
    const QString filtre = ui->leRecherche->text();
    const bool regex = ui->cbFiltrerRegex->isChecked();
    const bool sensitive = ui->cbFiltreSensible->isChecked();
    const QRegularExpression re(filtre, sensitive ? QRegularExpression::NoPatternOption
                                                  : QRegularExpression::CaseInsensitiveOption);
    // Column by column, never the whole line, and each entry for itself: what stands below a match
    // is hidden unless it matches too.
    ColumnMatcher matcher(re);
    const auto isMatch = [&](const TwItem *twi) -> bool {
        return (regex ? matcher.firstColumn(twi)
                      : twi->getColumnIndexContainsString(filtre, sensitive))
            != -1;
    };

    const QList<TwItem *> tabTotalTwItems = m_gedcom.getTabTotalTwItems();
    QList<TwItem *> matches;
    qsizetype count = 0;
    for (TwItem *twi : tabTotalTwItems) {
        const bool match = isMatch(twi);
        twi->setTwiHidden(!match);
        if (match)
            matches.append(twi);
        if (match || !twi->treeWidget()) // an entry outside the tree cannot be hidden
            ++count;
    }
    // A hidden row hides everything below it. Above the first visible one, all are visible.
    for (TwItem *match : std::as_const(matches)) {
        for (TwItem *twi = match; !twi->isRoot();) {
            twi = twi->getParent();
            if (!twi || !twi->isHidden())
                break;
            twi->setTwiHidden(false);
            if (!twi->isToDelete())
                ++count;
        }
    }
    return count;
}

void MainWindow::showFiltered(int state, void (Gedcom::*filter)())
{
    const WaitCursor waitCursor;
    if (state == Qt::Unchecked) {
        ui->leRecherche->clear();
        twiUnhideAll();
        return;
    }
    setRecordsHidden(m_gedcom.getTabTwItemsRoot(), true);
    (m_gedcom.*filter)();
}

void MainWindow::extraireIni()
{
    if (!m_FichierParams->open(QIODevice::ReadOnly | QIODevice::Text)) {
        showCritical(windowTitle(), tr("Fichier PARAM.INI introuvable dans l'application."), this);
        return;
    }
    QTextStream in(m_FichierParams);
    while (!in.atEnd())
        setFormValues(in.readLine());
    in.reset();
    m_FichierParams->close();
}

void MainWindow::setFormValues(QString stringTampon)
{
    using Apply = std::function<void(const QString &)>;
    // Intentional: a box can only be checked, and a text cannot be cleared.
    const auto checks = [](auto *widget) -> Apply {
        return [widget](const QString &value) {
            if (value.startsWith("true"_L1))
                widget->setChecked(true);
        };
    };
    const auto fills = [](QLineEdit *field) -> Apply {
        return [field](const QString &value) {
            if (!value.isEmpty())
                field->setText(value);
        };
    };
    const Apply importFiles = [this](const QString &value) {
        if (!value.isEmpty())
            m_filesImport = QString(value).replace(u'\\', u'/').split(u';');
    };
    // Acts at once, before the operations of its line. Anything but "true" is a path, even "false".
    const Apply save = [this](const QString &value) {
        if (value.startsWith("true"_L1))
            on_actionEnregistrerFichier_triggered();
        else if (!value.isEmpty())
            m_gedcom.writeGedFile(value);
    };
    const struct
    {
        QLatin1StringView key;
        Apply apply;
    } keys[] = {
        {"EspacerPrenomNom="_L1, checks(ui->cbEspacer)},
        {"delTags="_L1, checks(ui->gbDelTags)},
        {"delTagsList="_L1, fills(ui->leTagsToDel)},
        {"delIfEmptyTags="_L1, checks(ui->cbDelEmptyTags)},
        {"delIfNoChildsTags="_L1, checks(ui->cbDelEmptyClilds)},
        {"delIfContainsValue="_L1, checks(ui->cbDelIfContent)},
        {"delIfContainsRx="_L1, checks(ui->cbDelIfContentRX)},
        {"delTagContainsValue="_L1, fills(ui->leValueToDel)},
        {"setUrlLinks="_L1, checks(ui->gbSetURLLinks)},
        {"urlFilesIndex="_L1, importFiles},
        {"stringSplitFilenameUrl="_L1, fills(ui->leStrPlitCsv)},
        {"createEvenNote="_L1, checks(ui->cbUrlInEvt)},
        {"createSourWww="_L1, checks(ui->cbUrlInSour)},
        {"delTagObjeFile="_L1, checks(ui->cbDelTagObjeFile)},
        {"extractMediasToKeep="_L1, checks(ui->gbExtractMediasToKeep)},
        {"dirMediasSource="_L1, fills(ui->leExtractMediasSource)},
        {"dirMediasDest="_L1, fills(ui->leExtractMediasToKeep)},
        {"clickablesLinks="_L1, checks(ui->gbClickablesLinks)},
        {"toMarkdown="_L1, checks(ui->rbMarkdown)},
        {"toHtml="_L1, checks(ui->rbHtml)},
        {"clickableTagsList="_L1, fills(ui->leTagToClickable)},
        {"changeMediasPath="_L1, checks(ui->gbReplaceMediaPath)},
        {"newMediasPath="_L1, fills(ui->leNewMediaPath)},
        {"delMediaPath="_L1, checks(ui->cbDelMediaPath)},
        {"delDuplicated="_L1, checks(ui->gbMoveTagContent)},
        {"duplicatedSourTag="_L1, fills(ui->leTagSour)},
        {"duplicatedDestTag="_L1, fills(ui->leTagDest)},
        {"delDuplicatedSourTag="_L1, checks(ui->cbDelTagSour)},
        {"moveDuplicatedContent="_L1, checks(ui->cbCpSourDestContent)},
        {"createDuplicatedDestTag="_L1, checks(ui->cbCreateDestTag)},
        {"replaceString="_L1, checks(ui->gbReplaceString)},
        {"replaceSourString="_L1, fills(ui->leTextOri)},
        {"replaceDestString="_L1, fills(ui->leTextDest)},
        {"replaceStringTags="_L1, fills(ui->leTagToApply)},
        {"replaceRegex="_L1, checks(ui->cbRegex)},
        {"replaceSensible="_L1, checks(ui->cbSensible)},
        {"saveGedFile="_L1, save},
    };
    // Intentional: a match does not end the loop. A value that begins with a later key sets that
    // one too.
    for (const auto &[currentVal, apply] : keys) {
        if (!stringTampon.startsWith(currentVal))
            continue;
        stringTampon.remove(0, currentVal.size());
        apply(stringTampon);
    }
}
