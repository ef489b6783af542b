#include "smalldisk.h"

#ifdef Q_OS_UNIX
#include <csignal>
#endif
#ifdef Q_OS_LINUX
#include <cerrno>
#include <sched.h>
#include <sys/mount.h>
#endif

#ifdef Q_OS_UNIX

FileSizeLimit::FileSizeLimit(qsizetype size) : m_handler(std::signal(SIGXFSZ, SIG_IGN))
{
    if (getrlimit(RLIMIT_FSIZE, &m_former) != 0)
        qFatal("no limit of file sizes");
    rlimit limit = m_former;
    limit.rlim_cur = rlim_t(size);
    if (setrlimit(RLIMIT_FSIZE, &limit) != 0)
        qFatal("cannot limit the size of files");
}

FileSizeLimit::~FileSizeLimit()
{
    setrlimit(RLIMIT_FSIZE, &m_former);
    std::signal(SIGXFSZ, m_handler);
}

#else

FileSizeLimit::FileSizeLimit(qsizetype)
{
    qFatal("there is no limit of file sizes here");
}

FileSizeLimit::~FileSizeLimit() { }

#endif

#ifdef Q_OS_LINUX

SmallDisk::SmallDisk(const QString &folder, int size) : m_folder(folder.toLocal8Bit())
{
    const QByteArray options = "size=" + QByteArray::number(size);
    m_mounted = unshare(CLONE_NEWNS) == 0
             && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0
             && mount("small", m_folder.constData(), "tmpfs", 0, options.constData()) == 0;
    if (!m_mounted)
        m_reason = qt_error_string(errno);
}

SmallDisk::~SmallDisk()
{
    if (m_mounted)
        umount(m_folder.constData());
}

#else

SmallDisk::SmallDisk(const QString &folder, int)
    : m_folder(folder.toLocal8Bit()),
      m_reason(QStringLiteral("disks are mounted on Linux only"))
{
}

SmallDisk::~SmallDisk() { }

#endif

bool SmallDisk::isMounted() const
{
    return m_mounted;
}

QString SmallDisk::reason() const
{
    return m_reason;
}
