#include "files.h"

#include "report.h"

#include <QDate>
#include <QDir>
#include <QFileInfo>
#include <QList>
#include <QProgressBar>
#include <QTextStream>
#include <QTime>

#include <filesystem>
#include <system_error>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

// The files of the saves that run, those of the outermost one first.
QList<SavedFile *> savedFiles;

} // namespace

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

SavedFile::SavedFile(const QString &path) : m_path(path), m_file(path)
{
    savedFiles.append(this);
}

SavedFile::~SavedFile()
{
    savedFiles.removeLast(); // a save ends before the one that it came into
}

QString SavedFile::path() const
{
    return m_path;
}

bool SavedFile::open()
{
    if (m_isLost)
        return true; // left as it is: opening would empty it
    const QFileInfo target(m_file.fileName());
    if (target.exists() && !target.isFile())
        return false;
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Text))
        return false;
    for (SavedFile *file : std::as_const(savedFiles)) {
        std::error_code error; // a file that is not there is no other name of this one
        if (file != this
            && std::filesystem::equivalent(file->m_file.filesystemFileName(),
                                           m_file.filesystemFileName(), error))
            file->m_isLost = true;
    }
    return true;
}

void SavedFile::write(qsizetype count, const std::function<QStringList(qsizetype)> &linesOf,
                      const char *end, QProgressBar *bar)
{
    QTextStream out(&m_file);
    out.setEncoding(QStringConverter::System);
    bar->setRange(0, int(count));
    for (qsizetype i = 0; i < count; ++i) {
        const QStringList lines = m_isLost ? QStringList() : linesOf(i);
        for (const QString &line : lines)
            out << line << Qt::endl; // each is flushed: nothing waits here while events come
        showProgress(bar, i);
    }
    if (!m_isLost)
        out << end;
    out.reset(); // the stream is flushed as its file closes
    m_file.close();
}
