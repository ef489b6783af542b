#ifndef UNPRIVILEGED_H
#define UNPRIVILEGED_H

#include <QtGlobal>

/// Why a test does not run on Windows.
constexpr char NoRights[] =
    "of the rights to a file the framework sets on Windows that to write alone";

/// Drops the superuser's rights while this object lives, so that file permissions apply. Does
/// nothing for other users.
class Unprivileged
{
public:
    Unprivileged();
    ~Unprivileged();
    Q_DISABLE_COPY_MOVE(Unprivileged)

private:
    bool m_wasRoot;
};

#endif // UNPRIVILEGED_H
