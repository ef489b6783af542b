#include "unprivileged.h"

#ifdef Q_OS_UNIX

#include <unistd.h>

namespace {
constexpr uid_t Nobody = 65534;
}

Unprivileged::Unprivileged() : m_wasRoot(geteuid() == 0)
{
    if (m_wasRoot && seteuid(Nobody) != 0)
        qFatal("cannot give up the rights of the superuser");
}

Unprivileged::~Unprivileged()
{
    if (m_wasRoot && seteuid(0) != 0)
        qFatal("cannot take back the rights of the superuser");
}

#else

// A file that is marked as read-only is so for everyone.
Unprivileged::Unprivileged() : m_wasRoot(false) { }

Unprivileged::~Unprivileged()
{
    Q_UNUSED(m_wasRoot)
}

#endif
