#ifndef BOXES_H
#define BOXES_H

#include <QMessageBox>
#include <QPointer>
#include <QStringList>
#include <QTimer>

#include <functional>

/// Presses Ok on each message box that opens while this object lives, and keeps what they said.
class AnsweredBoxes
{
public:
    AnsweredBoxes();
    Q_DISABLE_COPY_MOVE(AnsweredBoxes)

    /// The texts of the boxes, in the order in which they opened.
    [[nodiscard]] QStringList texts() const
    {
        return m_texts;
    }
    /// Their window titles.
    [[nodiscard]] QStringList titles() const
    {
        return m_titles;
    }
    /// Whether every box was a critical one with the single button Ok, no default button set by
    /// the program, and the parent \p parent.
    [[nodiscard]] bool allCritical(const QWidget *parent) const;
    /// The inspector is called with each box before its button is pressed.
    void setInspector(std::function<void(QMessageBox *)> inspector);

private:
    void answer();

    struct Shape
    {
        QMessageBox::Icon icon;
        QMessageBox::StandardButtons buttons;
        QWidget *parent;
    };

    QTimer m_timer;
    QPointer<QMessageBox> m_last;
    QStringList m_texts;
    QStringList m_titles;
    QList<Shape> m_shapes;
    std::function<void(QMessageBox *)> m_inspector;
};

#endif // BOXES_H
