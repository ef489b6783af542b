#ifndef SMALLDISK_H
#define SMALLDISK_H

#include <QByteArray>
#include <QString>

#ifdef Q_OS_UNIX
#include <sys/resource.h>
#endif

/// Lets no file grow over \p size bytes while it lives, as on a disk that has no more room. Not on
/// Windows, which knows no such limit.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(qsizetype size);
    ~FileSizeLimit();
    Q_DISABLE_COPY_MOVE(FileSizeLimit)

#ifdef Q_OS_UNIX
private:
    rlimit m_former{};
    void (*m_handler)(int);
#endif
};

/// A disk of \p size bytes in a folder while it lives, where the user may mount one: nobody else
/// sees it, and it goes with the process at the latest.
class SmallDisk
{
public:
    SmallDisk(const QString &folder, int size);
    ~SmallDisk();
    Q_DISABLE_COPY_MOVE(SmallDisk)

    [[nodiscard]] bool isMounted() const;
    [[nodiscard]] QString reason() const;

private:
    QByteArray m_folder;
    bool m_mounted = false;
    QString m_reason;
};

#endif // SMALLDISK_H
