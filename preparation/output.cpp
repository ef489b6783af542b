#include "output.h"

#include "preparation.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QStorageInfo>

#include <filesystem>
#include <system_error>

using namespace Qt::StringLiterals;

namespace {

/// The path with \p word in front of its suffix, or of \p suffix if it has none.
QString withWord(const QString &path, const QString &word, const QString &suffix)
{
    const QFileInfo info(path);
    const bool hasSuffix = !info.suffix().isEmpty() && !info.completeBaseName().isEmpty();
    const QString name = hasSuffix ? info.completeBaseName() + word + info.suffix()
                                   : info.fileName() + word + suffix;
    return QDir(info.path()).filePath(name);
}

/// The sentence for a folder without room for \p size bytes, or nothing.
QString refusalOfSize(const QString &path, qint64 size)
{
    const QStorageInfo storage(QFileInfo(path).path());
    if (!storage.isValid() || storage.bytesAvailable() >= size)
        return {};
    return Preparation::tr(
               "Il n'y a pas assez de place pour « %1 » : il faut %2 octets, il en reste "
               "%3. Faites de la place ou choisissez un autre disque.")
        .arg(path, QString::number(size), QString::number(storage.bytesAvailable()));
}

/// A field of a table whose fields a semicolon parts, in quotes where it must be (RFC 4180).
QByteArray field(QByteArray text)
{
    if (!text.contains(';') && !text.contains('"'))
        return text;
    return '"' + text.replace('"', "\"\"") + '"';
}

bool writeTable(QIODevice *out, const Preparation &preparation)
{
    QByteArray table = Preparation::tr("ancien;nouveau\n").toUtf8();
    for (const RenamedIdentifier &renamed : preparation.identifiers)
        table += field(renamed.before) + ';' + field(renamed.after) + '\n';
    return out->write(table) == table.size();
}

} // namespace

QString copyPath(const QString &input)
{
    return withWord(input, u".prepare."_s, u"ged"_s);
}

QString identifiersPath(const QString &copy)
{
    const QFileInfo info(copy);
    return QDir(info.path()).filePath(info.completeBaseName() + ".identifiants.csv"_L1);
}

QStringList writtenFiles(const Preparation &preparation, const QString &copy)
{
    QStringList paths{copy};
    if (!preparation.identifiers.isEmpty())
        paths += identifiersPath(copy);
    return paths;
}

bool isSameFile(const QString &path, const QString &other)
{
    std::error_code error; // a file that is not there is no other name of one
    return std::filesystem::equivalent(QFileInfo(path).filesystemFilePath(),
                                       QFileInfo(other).filesystemFilePath(), error);
}

QString writeWhole(const QString &path, const std::function<bool(QIODevice *)> &write)
{
    const QFileInfo info(path);
    if (info.exists() && !info.isFile())
        return Preparation::tr("« %1 » n'est pas un fichier. Donnez un autre nom.").arg(path);
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && write(&file) && file.commit())
        return {};
    return Preparation::tr(
               "« %1 » n'a pas pu être écrit (%2). Vérifiez vos droits sur le dossier et "
               "la place sur le disque.")
        .arg(path, file.errorString());
}

QString saveCopy(const Preparation &preparation, const QString &input, const QString &copy)
{
    const QStringList paths = writtenFiles(preparation, copy);
    for (const QString &path : paths) {
        if (isSameFile(path, input))
            return Preparation::tr(
                       "« %1 » est le fichier d'origine, qui n'est jamais modifié. Donnez "
                       "un autre nom à la copie.")
                .arg(path);
    }
    QString refusal = refusalOfSize(copy, preparation.copy.size());
    if (!refusal.isEmpty())
        return refusal;
    // The table before the copy takes its name: a copy without it would be of no use.
    QString tableProblem;
    const QString problem = writeWhole(copy, [&](QIODevice *out) {
        if (out->write(preparation.copy) != preparation.copy.size())
            return false;
        if (!preparation.identifiers.isEmpty())
            tableProblem = writeWhole(identifiersPath(copy), [&](QIODevice *table) {
                return writeTable(table, preparation);
            });
        return tableProblem.isEmpty();
    });
    return tableProblem.isEmpty() ? problem : tableProblem;
}
