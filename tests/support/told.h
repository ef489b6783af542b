#ifndef TOLD_H
#define TOLD_H

#include "debuglistener.h"

#include <QMap>
#include <QObject>
#include <QStringList>

#include <optional>

class Document;

/// Records what a document reports while this object lives, in order: journal lines, status texts,
/// moves of the bar ("bar: 100 of 250"), and "events" where events are processed after a move.
class Told : public QObject
{
public:
    explicit Told(Document *doc);

    /// From now on records the debug lines as well, and where the bar stands at each of them and
    /// at each status text: "debug: ON unConc", "bar at -1 of 250".
    void inDetail();

    /// What has been recorded since the last call.
    QStringList take();

    bool eventFilter(QObject *, QEvent *event) override;

private:
    void note(const QString &entry);
    void noteText(const QString &text);

    Document *m_doc;
    std::optional<DebugListener> m_debug;
    QStringList m_told;
};

/// \p journal with the moves of the bar inserted: {10, "20 of 25"} means that after the tenth line
/// the bar moved and events were processed.
QStringList withMoves(const QStringList &journal, const QMap<int, QString> &moves);

#endif // TOLD_H
