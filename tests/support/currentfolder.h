#ifndef CURRENTFOLDER_H
#define CURRENTFOLDER_H

#include <QDir>
#include <QString>

/// Makes a folder the current one of the process while it lives, so that relative paths start from
/// it, and a user who may not enter the folders above can still work in it.
class CurrentFolder
{
public:
    explicit CurrentFolder(const QString &folder) : m_former(QDir::currentPath())
    {
        QDir::setCurrent(folder);
    }
    ~CurrentFolder()
    {
        QDir::setCurrent(m_former);
    }
    Q_DISABLE_COPY_MOVE(CurrentFolder)

private:
    QString m_former;
};

#endif // CURRENTFOLDER_H
