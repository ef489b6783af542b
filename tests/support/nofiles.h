#ifndef NOFILES_H
#define NOFILES_H

#include <QByteArray>
#include <QString>

/// Why a test of these does not run on Windows.
constexpr char NoSuchFiles[] = "folders of Windows hold no pipes, devices and sockets";
constexpr char NoLinks[] =
    "a link of the framework is a shortcut on Windows, which nothing follows";

/// Makes a named pipe: whoever opens it waits for its other end. Fails the test if it cannot.
void makePipe(const QString &path);

/// Makes a socket that nobody listens to. Fails the test if it cannot.
void makeSocket(const QString &path);

/// The other end of a named pipe while it lives: whoever opens the pipe need not wait, and finds
/// \p bytes to read.
class PipeEnd
{
public:
    PipeEnd(const QString &path, const QByteArray &bytes);
    ~PipeEnd();
    Q_DISABLE_COPY_MOVE(PipeEnd)

    /// How many of the bytes nobody has read.
    [[nodiscard]] qsizetype unread() const;

private:
    int m_descriptor;
};

#endif // NOFILES_H
