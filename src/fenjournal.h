#ifndef FENJOURNAL_H
#define FENJOURNAL_H

#include <QWidget>

/// A tool window that shows a text read-only. It does not follow later changes of the text.
class FenJournal : public QWidget
{
    Q_OBJECT

public:
    /// The window, not yet shown, of \p texteAAfficher under the title \p titre.
    FenJournal(QWidget *parent, QString texteAAfficher, QString titre);
};

#endif // FENJOURNAL_H
