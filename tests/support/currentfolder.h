#ifndef CURRENTFOLDER_H
#define CURRENTFOLDER_H

#include <QDir>
#include <QString>

/// Makes a folder the current one while this object lives: relative paths start there, and a user
/// without access to the folders above can still work in it.
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
