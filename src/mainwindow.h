#ifndef MAINWINDOW_H
#define MAINWINDOW_H

#include "gedcom.h"

#include <QMainWindow>
#include <QStringList>

class QFile;
class QProgressBar;
class Ui_MainWindow;

/// The window over the one document: it gathers arguments from the form, calls the document's
/// operations, and shows their outcome. Slots are bound to the widgets of the form by name.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget *parent);
    ~MainWindow() override;

private slots:
    void on_actionOuvrir_triggered();
    void on_actionEnregistrerFichier_triggered();
    void on_actionEnregistrerFichier_sous_triggered();
    void on_actionJournal_triggered();
    void on_pbApply_clicked();
    void on_pbReadSequence_clicked();
    void on_action_propos_triggered();
    void on_leRecherche_returnPressed();
    void on_leRecherche_textChanged(const QString &arg1);
    void on_cbFiltrerRegex_stateChanged(int arg1);
    void on_cbFiltreSensible_stateChanged(int arg1);
    void on_cbSourceDateDiff_stateChanged(int arg1);
    void on_cbSourceMultiUse_stateChanged(int arg1);
    void on_pickSrcTag_clicked();
    void on_pickDestTag_clicked();
    void on_pickDestClickableTag_clicked();
    void on_pbPickTagToDel_clicked();
    void on_pbSelectTagReplace_clicked();
    void on_pbImportCsvLinks_clicked();
    void on_pbExtractMediasSource_clicked();
    void on_pbExtractMediasToKeep_clicked();
    void on_cbDelMediaPath_stateChanged(int arg1);
    void on_pbOpenNewMediaPath_clicked();
    void on_cbUrlInEvt_stateChanged(int arg1);
    void on_cbUrlInSour_stateChanged(int arg1);
    void on_cbDelIfContent_clicked();
    void on_gbDelTags_clicked();

private:
    /// Warns of the first incomplete group of the form, and stops nothing.
    void checkRequirements();
    /// Runs the checked operations, in the order of the form from top to bottom.
    void start();
    /// Empties the settings panel; not the list of correspondence files, nor the link format.
    /// Leaves cbUrlInEvt checked if one of the two links was while their group was in use.
    void eraseSettingsValues();
    /// Shows all entries that are not marked as deleted.
    void twiUnhideAll();
    /// Shows the live entries that hold the text of leRecherche in one of their columns, with their
    /// ancestors, and hides the others. Returns how many are not hidden, which entries outside the
    /// tree never are: asking each row afterwards would take half as long again as the search.
    qsizetype reverseHide();
    /// What the boxes of both filters do. Checked: hides all live entries and calls the filter,
    /// which shows what it finds. Unchecked: shows all and empties leRecherche.
    void showFiltered(int state, void (Gedcom::*filter)());
    /// Presets the form from the parameter file, one item a line.
    void extraireIni();
    /// Applies one "key=value" item to the form. A text that begins with no key has no effect.
    void setFormValues(QString stringTampon);

    Ui_MainWindow *ui;
    QProgressBar *m_progress; // lent to the document
    Gedcom m_gedcom;
    QStringList m_filesImport; // paths of the correspondence files; no widget shows them
    QString m_prevSearchText;
    bool m_prevSearchTextSensitive = false;
    bool m_prevSearchTextRegex = false;
    QFile *m_FichierParams = nullptr; // both live to the end of the process
    QFile *m_FichierSequence = nullptr;
};

#endif // MAINWINDOW_H
