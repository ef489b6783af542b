#ifndef TOLD_H
#define TOLD_H

#include <QObject>
#include <QStringList>

class Document;

/// What a document tells while it lives, in order: journal lines, status texts, the bar, and the
/// events that are processed behind a move of the bar.
class Told : public QObject
{
public:
    explicit Told(Document *doc);

    /// What has been told since the last call of this.
    QStringList take();

    bool eventFilter(QObject *, QEvent *event) override;

private:
    void note(const QString &what);

    Document *m_doc;
    QStringList m_told;
};

#endif // TOLD_H
