#ifndef UNPRIVILEGED_H
#define UNPRIVILEGED_H

#include <QtGlobal>

/// Gives up the rights of the superuser while it lives, so that file permissions count; does
/// nothing for anyone else.
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
