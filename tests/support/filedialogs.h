#ifndef FILEDIALOGS_H
#define FILEDIALOGS_H

#include <QFileDialog>
#include <QStringList>
#include <QTimer>

#include <functional>

/// Answers each file dialog that opens while this object lives: types \p answer into the name field
/// and accepts, or cancels if the answer is empty. Keeps the last dialog's properties.
class AnsweredFileDialogs
{
public:
    /// Several files are quoted and separated by blanks, as a user would type them.
    explicit AnsweredFileDialogs(const QString &answer);
    Q_DISABLE_COPY_MOVE(AnsweredFileDialogs)

    [[nodiscard]] int count() const
    {
        return m_count;
    }
    [[nodiscard]] QString title() const
    {
        return m_title;
    }
    [[nodiscard]] QString directory() const
    {
        return m_directory;
    }
    [[nodiscard]] QStringList nameFilters() const
    {
        return m_nameFilters;
    }
    [[nodiscard]] QFileDialog::Options options() const
    {
        return m_options;
    }
    [[nodiscard]] QFileDialog::FileMode fileMode() const
    {
        return m_fileMode;
    }
    [[nodiscard]] QWidget *parentWidget() const
    {
        return m_parentWidget;
    }
    /// The inspector is called with each dialog before it is answered.
    void setInspector(std::function<void(QFileDialog *)> inspector);

private:
    void answer();

    QString m_answer;
    QTimer m_timer;
    int m_count = 0;
    QString m_title;
    QString m_directory;
    QStringList m_nameFilters;
    QFileDialog::Options m_options;
    QFileDialog::FileMode m_fileMode = QFileDialog::AnyFile;
    QWidget *m_parentWidget = nullptr;
    std::function<void(QFileDialog *)> m_inspector;
};

#endif // FILEDIALOGS_H
