#include "report.h"

#include "treerows.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QProgressBar>

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

void showCritical(const QString &title, const QString &text)
{
    QMessageBox::critical(nullptr, title, text, QMessageBox::Ok);
    PausedLayout::putOffAgain();
}
