#include "told.h"

#include "document.h"

#include <QEvent>
#include <QTimer>

#include <utility>

using namespace Qt::StringLiterals;

Told::Told(Document *doc) : m_doc(doc)
{
    doc->newJournal();
    connect(&doc->statusBar, &QStatusBar::messageChanged, this, [this](const QString &text) {
        // A status text with a time-out owns a timer until the next text.
        const bool timed = m_doc->statusBar.findChild<QTimer *>();
        noteText((timed ? "status for a while: "_L1 : "status: "_L1) + text);
    });
    connect(&doc->progress, &QProgressBar::valueChanged, this, [this](int value) {
        note(u"bar: %1 of %2"_s.arg(value).arg(m_doc->progress.maximum()));
        QMetaObject::invokeMethod(
            this, [this] { note(u"events"_s); }, Qt::QueuedConnection);
    });
    doc->progress.installEventFilter(this);
}

void Told::inDetail()
{
    m_debug.emplace([this](const QString &text) { noteText("debug: "_L1 + text); });
}

QStringList Told::take()
{
    m_told += m_doc->newJournal();
    return std::exchange(m_told, {});
}

bool Told::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::Show)
        note(u"bar shown"_s);
    else if (event->type() == QEvent::Hide)
        note(u"bar hidden"_s);
    return false;
}

void Told::note(const QString &entry)
{
    m_told += m_doc->newJournal();
    m_told += entry;
}

void Told::noteText(const QString &text)
{
    note(text);
    if (m_debug)
        m_told += u"bar at %1 of %2"_s.arg(m_doc->progress.value()).arg(m_doc->progress.maximum());
}

QStringList withMoves(const QStringList &journal, const QMap<int, QString> &moves)
{
    QStringList all;
    int done = 0;
    for (auto move = moves.cbegin(); move != moves.cend(); ++move) {
        all += journal.mid(done, move.key() - done);
        all += {"bar: "_L1 + move.value(), u"events"_s};
        done = move.key();
    }
    return all + journal.mid(done);
}
