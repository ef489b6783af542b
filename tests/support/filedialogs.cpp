#include "filedialogs.h"

#include <QApplication>
#include <QLineEdit>

AnsweredFileDialogs::AnsweredFileDialogs(const QString &answer) : m_answer(answer)
{
    m_timer.callOnTimeout([this] { this->answer(); });
    m_timer.start(0);
}

void AnsweredFileDialogs::setInspector(std::function<void(QFileDialog *)> inspector)
{
    m_inspector = std::move(inspector);
}

void AnsweredFileDialogs::answer()
{
    auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
    if (!dialog)
        return;
    ++m_count;
    m_title = dialog->windowTitle();
    m_directory = dialog->directory().absolutePath();
    m_nameFilters = dialog->nameFilters();
    m_options = dialog->options();
    m_fileMode = dialog->fileMode();
    m_parentWidget = dialog->parentWidget();
    if (m_inspector)
        m_inspector(dialog);
    if (m_answer.isEmpty()) {
        dialog->reject();
        return;
    }
    auto *nameEdit = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    nameEdit->setText(m_answer);
    QMetaObject::invokeMethod(dialog, "accept");
}
