#ifndef REPORT_H
#define REPORT_H

// How a long operation reports to the user while it runs: the progress bar and error boxes.

#include <QString>

class QProgressBar;

inline constexpr int ProgressPeriod = 100; // entries between two refreshes of the window

/// Every \p period entries, moves \p bar to \p value and processes events; returns whether it did.
/// \p done is the number of entries so far.
bool showProgress(QProgressBar *bar, qsizetype done, qsizetype value, int period = ProgressPeriod);

/// The same, with \p done as the value.
bool showProgress(QProgressBar *bar, qsizetype done);

/// Processes events once. Every long operation comes here for it, and not to Qt itself.
void processEvents();

/// Shows an error box without a parent and waits for its only button, Ok.
void showCritical(const QString &title, const QString &text);

#endif // REPORT_H
