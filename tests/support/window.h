#ifndef WINDOW_H
#define WINDOW_H

#include "invariant.h"
#include "mainwindow.h"

#include <QByteArray>
#include <QList>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

class FenJournal;
class QAbstractButton;
class QProgressBar;
class QTreeWidget;
class TwItem;

/// The path of a file beside the executable.
QString besideExecutable(const QString &name);

/// The window as the program builds it, not shown yet. While it is built, a parameter file with the
/// content \p parameters lies beside the executable.
std::unique_ptr<MainWindow> makeWindow(const QByteArray &parameters = {});

/// The user's documents folder, where dialogs open. A session creates it.
QString documentsFolder();

/// The text of a journal window without the times.
QStringList journalIn(const FenJournal *fenJournal);

/// Clicks on the indicator of a check box or radio button: the rest of the widget may not react.
void clickIndicator(QAbstractButton *button);

/// The real window, with its own temporary folder for the files to open. Asking for an unknown
/// control aborts the test. After each action of the user, and at the end of the session, the
/// records on screen must be whole.
class Session
{
public:
    explicit Session(const QByteArray &parameters = {});
    ~Session();
    Q_DISABLE_COPY_MOVE(Session)

    template <typename T>
    [[nodiscard]] T *find(const QString &name) const
    {
        T *found = window->findChild<T *>(name);
        if (!found)
            qFatal("the window has no %s", qPrintable(name));
        return found;
    }
    [[nodiscard]] QProgressBar *progress() const;
    [[nodiscard]] QTreeWidget *tree() const;
    /// The first row of the tree with the text \p line, which must exist.
    [[nodiscard]] TwItem *row(const QString &line) const;
    [[nodiscard]] QString status() const;
    /// Whether the user can reach the widget or the action.
    [[nodiscard]] bool isEnabled(const QString &control) const;
    [[nodiscard]] bool isChecked(const QString &control) const;
    /// The text of the field.
    [[nodiscard]] QString text(const QString &field) const;

    [[nodiscard]] QString path(const QString &name = QStringLiteral("arbre.ged")) const
    {
        return m_folder.filePath(name);
    }
    [[nodiscard]] QString folder() const
    {
        return m_folder.path();
    }

    void trigger(const QString &action) const;
    /// Clicks on a button, which must be enabled.
    void click(const QString &button) const;
    /// "gbDelTags" checks a control, "!gbDelTags" unchecks it, "leTagsToDel=NOTE" fills one; "~"
    /// stands for the folder of the document.
    void set(const QStringList &settings) const;
    /// Makes the settings, then presses the button that applies the form.
    void apply(const QStringList &settings = {}) const;
    /// Presses a button that opens a file dialog, and answers the dialog; an empty answer cancels
    /// it.
    void pick(const QString &button, const QString &answer) const;

    /// Opens \p file through the file dialog; an empty path cancels it.
    void open(const QString &file) const;
    /// Writes \p lines to path() and opens it.
    void load(const QStringList &lines) const;
    /// Plays \p sequence, which lies beside the executable meanwhile.
    void play(const QByteArray &sequence) const;

    /// The journal windows, oldest first.
    [[nodiscard]] QList<FenJournal *> journalWindows() const;
    /// Opens a journal window.
    [[nodiscard]] FenJournal *openJournal() const;
    /// The whole journal without the times, read from a journal window opened for that.
    [[nodiscard]] QStringList journal() const;

    /// What is broken in the records on screen, as faultsOf() has it.
    [[nodiscard]] QStringList faults() const;

    std::unique_ptr<MainWindow> window;

private:
    QTemporaryDir m_folder;
};

#endif // WINDOW_H
