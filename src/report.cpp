#include "report.h"

#include "treerows.h"

#include <QCoreApplication>
#include <QLabel>
#include <QLayout>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QScreen>
#include <QTextOption>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype MaxLabelLength = 700; // characters; what is longer need not be measured

/// Puts a text that would make the box higher than the screen, the lines of a whole record or file,
/// into a pane that scrolls. The label is only hidden: it is still the text of the box.
void scrollLongText(QMessageBox *box)
{
    auto *label = box->findChild<QLabel *>(u"qt_msgbox_label"_s); // the framework's name for it
    if (!label)
        return;
    const QSize paneSize = QSize(600, 400).boundedTo(box->screen()->availableSize() * 2 / 5);
    label->setWordWrap(true);
    if (label->text().size() <= MaxLabelLength
        && label->heightForWidth(paneSize.width()) <= paneSize.height())
        return;

    auto *pane = new QPlainTextEdit(box);
    pane->setReadOnly(true);
    pane->setUndoRedoEnabled(false);
    // The search for the end of a word would take minutes in a megabyte without a blank.
    pane->setWordWrapMode(QTextOption::WrapAnywhere);
    pane->setPlainText(label->text());
    pane->setAccessibleName(box->windowTitle());
    pane->setMinimumSize(paneSize);
    delete box->layout()->replaceWidget(label, pane);
    label->hide();
}

} // namespace

bool showProgress(QProgressBar *bar, qsizetype done, qsizetype value, int period)
{
    if (done % period != 0)
        return false;
    bar->setValue(int(value));
    processEvents();
    return true;
}

bool showProgress(QProgressBar *bar, qsizetype done)
{
    return showProgress(bar, done, done);
}

void processEvents()
{
    QCoreApplication::processEvents();
    PausedLayout::putOffAgain();
}

void showCritical(const QString &title, const QString &text, QWidget *parent)
{
    QMessageBox box(parent);
    box.setIcon(QMessageBox::Critical);
    box.setWindowTitle(title);
    box.setStandardButtons(QMessageBox::Ok);
    box.setTextFormat(Qt::PlainText); // before the text, which may quote a file
    box.setText(text);
    scrollLongText(&box);
    box.exec();
    PausedLayout::putOffAgain();
}
