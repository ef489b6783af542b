#include "nofiles.h"

#include <QFile>
#include <QTest>

#ifdef Q_OS_UNIX

#include <cstring>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

void makePipe(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    // No lack of rights may end what would wait.
    if (mkfifo(name.constData(), 0600) != 0 || chmod(name.constData(), 0666) != 0)
        QTest::qFail("cannot make a pipe", __FILE__, __LINE__);
}

void makeSocket(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    if (size_t(name.size()) < sizeof(address.sun_path))
        std::memcpy(address.sun_path, name.constData(), size_t(name.size()));
    if (bind(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof(address)) != 0)
        QTest::qFail("cannot make a socket", __FILE__, __LINE__);
    close(descriptor);
}

PipeEnd::PipeEnd(const QString &path, const QByteArray &bytes)
    : m_descriptor(open(QFile::encodeName(path).constData(), O_RDWR | O_NONBLOCK))
{
    if (write(m_descriptor, bytes.constData(), size_t(bytes.size())) != bytes.size())
        QTest::qFail("cannot fill the pipe", __FILE__, __LINE__);
}

PipeEnd::~PipeEnd()
{
    close(m_descriptor);
}

qsizetype PipeEnd::unread() const
{
    int count = -1;
    ioctl(m_descriptor, FIONREAD, &count);
    return count;
}

#else

// Folders hold nothing but files and folders.
void makePipe(const QString &)
{
    QTest::qFail("there are no pipes in folders here", __FILE__, __LINE__);
}

void makeSocket(const QString &)
{
    QTest::qFail("there are no sockets in folders here", __FILE__, __LINE__);
}

PipeEnd::PipeEnd(const QString &, const QByteArray &) : m_descriptor(-1) { }

PipeEnd::~PipeEnd() { }

qsizetype PipeEnd::unread() const
{
    return m_descriptor;
}

#endif
