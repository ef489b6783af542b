#include "files.h"

#include "report.h"

#include <QDate>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProgressBar>
#include <QTextStream>
#include <QTime>

using namespace Qt::StringLiterals;

bool isFile(const QString &path)
{
    return QFileInfo(path).isFile();
}

std::optional<QByteArray> readFile(const QString &path)
{
    QFile file(path);
    if (!isFile(path) || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QByteArray bytes = file.readAll();
    // A read that breaks off looks like one that has come to the end; only the next one tells.
    char more = 0;
    if (file.read(&more, 1) < 0)
        return std::nullopt;
    return bytes;
}

int countLines(QTextStream *in)
{
    int count = 0;
    for (QString line; !in->atEnd(); ++count)
        in->readLineInto(&line);
    in->seek(0);
    return count;
}

QString archiveName(const QString &pathFileGed)
{
    QString fileName = pathFileGed.mid(pathFileGed.lastIndexOf(u'/') + 1);
    fileName.prepend(QTime::currentTime().toString(Qt::TextDate) + u'.');
    return fileName.replace(u':', u'.');
}

QString makeArchiveDirectory(const QString &pathFileGed)
{
    const qsizetype lastSlash = pathFileGed.lastIndexOf(u'/');
    QString archPath = pathFileGed;
    // Of a path without a slash the last character goes, since -1 counts from the end.
    archPath.remove(lastSlash, archPath.size() - lastSlash);
    for (const QString &folder : {u"ARCH"_s, QDate::currentDate().toString(u"yyyy.MM.dd"_s)}) {
        archPath += u'/' + folder;
        if (!QDir(archPath).exists())
            QDir().mkdir(archPath);
    }
    return archPath;
}

bool openToWrite(QFile *file)
{
    const QFileInfo target(file->fileName());
    return (target.isFile() || !target.exists())
        && file->open(QIODevice::WriteOnly | QIODevice::Text);
}

void writeLines(QFile *file, qsizetype count, const std::function<QStringList(qsizetype)> &linesOf,
                const char *end, QProgressBar *bar)
{
    QTextStream out(file);
    out.setEncoding(QStringConverter::System);
    bar->setRange(0, int(count));
    for (qsizetype i = 0; i < count; ++i) {
        const QStringList lines = linesOf(i);
        for (const QString &line : lines)
            out << line << Qt::endl;
        showProgress(bar, i);
    }
    out << end;
    out.reset(); // the stream is flushed as its file closes
    file->close();
}
