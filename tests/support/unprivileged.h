#ifndef UNPRIVILEGED_H
#define UNPRIVILEGED_H

#include <QtGlobal>

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
