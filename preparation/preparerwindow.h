#ifndef PREPARERWINDOW_H
#define PREPARERWINDOW_H

#include "preparation.h"

#include <QMainWindow>

#include <atomic>
#include <functional>

class OccurrenceModel;
class QThread;
class QTreeWidgetItem;
class Ui_PreparerWindow;

/// The window over one file to be prepared: shows what has been found in it, lets the encoding and
/// the repairs be chosen, and saves the copy and the report. Whatever takes long is done in a
/// second thread, one thing at a time. Slots are bound to the widgets by name.
class PreparerWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit PreparerWindow(QWidget *parent = nullptr);
    ~PreparerWindow() override;

    /// Prepares the file of that name in place of the former one.
    void open(const QString &path);

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private slots:
    void on_pbChoose_clicked();
    void on_cbEncoding_activated(int index);
    void on_twSummary_itemChanged(QTreeWidgetItem *item, int column);
    void on_twSummary_currentItemChanged();
    void on_leFilter_textChanged();
    void on_pbCancel_clicked();
    void on_pbSaveCopy_clicked();
    void on_pbSaveReport_clicked();

private:
    /// Prepares the file with the present settings, as soon as what is running has ended.
    void prepareAnew();
    void startPreparing();
    /// Runs \p work in a thread of its own and then \p then in this one. Nothing else may be
    /// running.
    void run(const std::function<void()> &work, const std::function<void()> &then);

    void showOutcome();
    void showVerdict();
    /// Writes into each row of the summary from \p item on how much it stands for: its own finding,
    /// or the rows below it. Returns the count of the item.
    qint64 showCount(QTreeWidgetItem *item);
    void showShown();
    void showDetail();
    void applyFilter();

    /// Runs \p write, which returns what is wrong, and tells the outcome; if all is well, runs
    /// \p then.
    void save(
        const QString &path, const std::function<QString()> &write,
        const std::function<void()> &then = [] {});
    /// Asks before files are overwritten that exist.
    [[nodiscard]] bool mayWrite(const QStringList &paths);

    Ui_PreparerWindow *ui;
    QString m_path; // empty as long as there is no file
    Options m_options;
    OccurrenceModel *m_model; // has the outcome
    QString m_copy; // where the copy of this outcome has been saved, or empty

    QThread *m_thread = nullptr; // while something is running
    std::atomic_bool m_stopping = false; // asks the running preparation to end
    bool m_isWantedAnew = false;
    Preparation m_outcome; // the thread's while it is preparing
    QString m_problem; // the thread's while it is saving
};

#endif // PREPARERWINDOW_H
