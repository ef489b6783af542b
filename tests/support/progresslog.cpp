#include "progresslog.h"

#include <QAbstractEventDispatcher>
#include <QEvent>
#include <QProgressBar>

using namespace Qt::StringLiterals;

ProgressLog::ProgressLog(QProgressBar *bar)
{
    bar->installEventFilter(this);
    connect(bar, &QProgressBar::valueChanged, this,
            [this, bar](int value) { m_entries += u"%1 of %2"_s.arg(value).arg(bar->maximum()); });
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, this,
            [this, bar] { m_entries += u"events at %1"_s.arg(bar->value()); });
}

bool ProgressLog::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::Show)
        m_entries += u"show"_s;
    else if (event->type() == QEvent::Hide)
        m_entries += u"hide"_s;
    return false;
}
