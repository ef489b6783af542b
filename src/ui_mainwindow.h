#ifndef UI_MAINWINDOW_H
#define UI_MAINWINDOW_H

class QAction;
class QCheckBox;
class QGridLayout;
class QGroupBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QMainWindow;
class QMenu;
class QMenuBar;
class QPushButton;
class QRadioButton;
class QSpacerItem;
class QStatusBar;
class QTreeWidget;
class QVBoxLayout;
class QWidget;

/// The form of the main window: plain pointers to what it is made of, in the order of creation,
/// which is the tab order too. Kept by hand; the slots of MainWindow bind to the object names.
class Ui_MainWindow
{
public:
    QAction *actionOuvrir;
    QAction *actionEnregistrerFichier;
    QAction *actionEnregistrerFichier_sous;
    QAction *actionJournal;
    QAction *action_propos;
    QWidget *centralwidget;
    QHBoxLayout *horizontalLayout_2;
    QVBoxLayout *verticalLayout_3;
    QTreeWidget *treeWidget;
    QGridLayout *gridLayout_6;
    QCheckBox *cbSourceMultiUse;
    QCheckBox *cbFiltreSensible;
    QCheckBox *cbFiltrerRegex;
    QCheckBox *cbSourceDateDiff;
    QLineEdit *leRecherche;
    QGroupBox *mainGroupBox;
    QVBoxLayout *verticalLayout;
    QCheckBox *cbEspacer;
    QGroupBox *gbDelTags;
    QVBoxLayout *verticalLayout_7;
    QHBoxLayout *horizontalLayout_6;
    QLineEdit *leTagsToDel;
    QPushButton *pbPickTagToDel;
    QGridLayout *gridLayout_4;
    QLineEdit *leValueToDel;
    QCheckBox *cbDelIfContent;
    QCheckBox *cbDelEmptyClilds;
    QLabel *label_8;
    QCheckBox *cbDelEmptyTags;
    QCheckBox *cbDelIfContentRX;
    QGroupBox *gbSetURLLinks;
    QHBoxLayout *horizontalLayout;
    QVBoxLayout *verticalLayout_2;
    QHBoxLayout *horizontalLayout_7;
    QPushButton *pbImportCsvLinks;
    QLabel *label_3;
    QLineEdit *leStrPlitCsv;
    QHBoxLayout *horizontalLayout_8;
    QCheckBox *cbUrlInEvt;
    QCheckBox *cbUrlInSour;
    QCheckBox *cbDelTagObjeFile;
    QGroupBox *gbExtractMediasToKeep;
    QGridLayout *gridLayout_2;
    QPushButton *pbExtractMediasToKeep;
    QLineEdit *leExtractMediasToKeep;
    QPushButton *pbExtractMediasSource;
    QLineEdit *leExtractMediasSource;
    QGroupBox *gbClickablesLinks;
    QVBoxLayout *verticalLayout_4;
    QHBoxLayout *horizontalLayout_4;
    QRadioButton *rbMarkdown;
    QRadioButton *rbHtml;
    QHBoxLayout *horizontalLayout_11;
    QLabel *label_7;
    QLineEdit *leTagToClickable;
    QPushButton *pickDestClickableTag;
    QGroupBox *gbReplaceMediaPath;
    QVBoxLayout *verticalLayout_6;
    QHBoxLayout *hlMediaPath;
    QLineEdit *leNewMediaPath;
    QPushButton *pbOpenNewMediaPath;
    QCheckBox *cbDelMediaPath;
    QGroupBox *gbMoveTagContent;
    QGridLayout *gridLayout;
    QLabel *label;
    QPushButton *pickDestTag;
    QLineEdit *leTagDest;
    QCheckBox *cbCpSourDestContent;
    QLabel *label_2;
    QLineEdit *leTagSour;
    QPushButton *pickSrcTag;
    QCheckBox *cbCreateDestTag;
    QCheckBox *cbDelTagSour;
    QGroupBox *gbReplaceString;
    QVBoxLayout *verticalLayout_5;
    QGridLayout *gridLayout_3;
    QLabel *label_6;
    QLabel *label_5;
    QPushButton *pbSelectTagReplace;
    QLineEdit *leTextDest;
    QLineEdit *leTagToApply;
    QCheckBox *cbSensible;
    QLineEdit *leTextOri;
    QCheckBox *cbRegex;
    QLabel *label_4;
    QSpacerItem *verticalSpacer;
    QHBoxLayout *horizontalLayout_5;
    QPushButton *pbApply;
    QPushButton *pbReadSequence;
    QMenuBar *menubar;
    QMenu *menuFichier;
    QMenu *menuOutils;
    QMenu *menuAide;
    QStatusBar *statusbar;

    /// Builds the form into \p MainWindow, which owns all of it, and binds the slots by name.
    void setupUi(QMainWindow *MainWindow);

    /// Sets every text, title and tool tip, and what a screen reader says where the text of the
    /// widget does not tell it: a name, and the tool tip without its markup. No name for the status
    /// bar: its message is its name.
    void retranslateUi(QMainWindow *MainWindow);
};

#endif // UI_MAINWINDOW_H
