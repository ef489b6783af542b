#ifndef PROGRESSLOG_H
#define PROGRESSLOG_H

#include <QObject>
#include <QStringList>

class QProgressBar;

/// Records what happens to the progress bar, in order: "show", "hide", "100 of 250" for each new
/// value, and "events at 100" each time events are processed.
class ProgressLog : public QObject
{
public:
    explicit ProgressLog(QProgressBar *bar);

    [[nodiscard]] QStringList entries() const
    {
        return m_entries;
    }

    bool eventFilter(QObject *, QEvent *event) override;

private:
    QStringList m_entries;
};

#endif // PROGRESSLOG_H
