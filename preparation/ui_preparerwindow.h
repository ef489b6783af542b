#ifndef UI_PREPARERWINDOW_H
#define UI_PREPARERWINDOW_H

#include <QCoreApplication>

class QComboBox;
class QLabel;
class QLineEdit;
class QMainWindow;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;
class QTableView;
class QTreeWidget;
class QWidget;

/// The form of the preparer's window: plain pointers to what it is made of, in the tab order. Kept
/// by hand; the slots of PreparerWindow bind to the object names.
class Ui_PreparerWindow
{
    Q_DECLARE_TR_FUNCTIONS(PreparerWindow)

public:
    // The summary: a row for all that has been found, below it one for each kind of finding, below
    // that one for each finding, which has a box if it can be chosen.
    enum SummaryColumn { TitleColumn, CountColumn };
    static constexpr int FindingRole = 0x0100; // Qt::UserRole: the Finding of a row

    QPushButton *pbChoose;
    QLineEdit *leFile;
    QComboBox *cbEncoding; // the data of an entry is the Encoding, or nothing for the found one
    QLabel *lbReason;
    QLabel *lbIcon;
    QLabel *lbVerdict;
    QPushButton *pbSaveCopy;
    QPushButton *pbSaveReport;
    QTreeWidget *twSummary;
    QLabel *lbShown;
    QLineEdit *leFilter;
    QTableView *tvList;
    QPlainTextEdit *pteDetail;
    QProgressBar *progress;
    QPushButton *pbCancel;

    void setupUi(QMainWindow *window);

private:
    QWidget *makeFileRows();
    QWidget *makeSummary();
    void fillSummary();
    QWidget *makeList();
    void makeTable();
    void makeStatusBar(QMainWindow *window);
    void setTabOrder();
};

#endif // UI_PREPARERWINDOW_H
