#include "unprivileged.h"

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
