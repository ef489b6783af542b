#include "boxes.h"

#include <QAbstractButton>
#include <QApplication>

#include <algorithm>

AnsweredBoxes::AnsweredBoxes()
{
    m_timer.callOnTimeout([this] { answer(); });
    m_timer.start(0);
}

bool AnsweredBoxes::allCritical(const QWidget *parent) const
{
    return std::all_of(m_shapes.begin(), m_shapes.end(), [parent](const Shape &shape) {
        return shape.icon == QMessageBox::Critical && shape.buttons == QMessageBox::Ok
            && shape.parent == parent;
    });
}

void AnsweredBoxes::setInspector(std::function<void(QMessageBox *)> inspector)
{
    m_inspector = std::move(inspector);
}

void AnsweredBoxes::answer()
{
    auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    if (!box || box == m_last)
        return;
    m_last = box;
    m_texts += box->text();
    m_titles += box->windowTitle();
    m_shapes += {box->icon(), box->standardButtons(), box->parentWidget()};
    if (m_inspector)
        m_inspector(box);
    box->button(QMessageBox::Ok)->click();
}
