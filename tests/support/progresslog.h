#ifndef PROGRESSLOG_H
#define PROGRESSLOG_H

#include <QObject>
#include <QStringList>

class QProgressBar;

/// What the progress bar goes through, in order: "show", "100 of 250" for each new value, "hide",
/// and "events at 100" for each time that events are processed.
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
