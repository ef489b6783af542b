#ifndef REPORT_H
#define REPORT_H

// How a long operation reports to the user while it runs: the progress bar and error boxes.

#include <QString>

class QProgressBar;
class QWidget;

inline constexpr int ProgressPeriod = 100; // entries between two refreshes of the window

/// Every \p period entries, moves \p bar to \p value and processes events; returns whether it did.
/// \p done is the number of entries so far.
bool showProgress(QProgressBar *bar, qsizetype done, qsizetype value, int period = ProgressPeriod);

/// The same, with \p done as the value.
bool showProgress(QProgressBar *bar, qsizetype done);

/// Processes events once. Every long operation comes here for it, and not to Qt itself.
void processEvents();

/// Shows an error box with the text as it stands and waits for its only button, Ok. A text that
/// does not fit the screen is scrolled.
void showCritical(const QString &title, const QString &text, QWidget *parent = nullptr);

#endif // REPORT_H
