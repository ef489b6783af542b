#include "refusal.h"

#include "files.h"
#include "preparation.h"

#include <QFileInfo>
#include <QLocale>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 MaxFileSize = 1'000'000'000; // bytes; Varlune's tree would take 25 times as much
constexpr qsizetype SampleSize = 65536; // bytes of a text that are looked at
constexpr qsizetype MinTextPerControl = 20; // bytes in a text, for each control character

QString archive(const QString &kind)
{
    return Preparation::tr("Ce fichier est une archive %1 et non un texte GEDCOM. Extrayez-en le "
                           "fichier .ged et préparez celui-ci.")
        .arg(kind);
}

QString document(const QString &kind)
{
    return Preparation::tr("Ce fichier est %1 et non un texte GEDCOM. Exportez votre arbre au "
                           "format GEDCOM depuis votre logiciel de généalogie.")
        .arg(kind);
}

QString encrypted()
{
    return Preparation::tr(
        "Ce fichier est chiffré. Déchiffrez-le, puis préparez le fichier obtenu.");
}

} // namespace

QString readForPreparation(const QString &path, QByteArray *bytes)
{
    const QFileInfo info(path);
    if (info.isDir())
        return Preparation::tr("« %1 » est un dossier. Choisissez un fichier .ged.").arg(path);
    if (!info.exists())
        return Preparation::tr("« %1 » n'existe pas. Vérifiez le nom et le dossier.").arg(path);
    if (!isFile(path))
        return Preparation::tr("« %1 » n'est pas un fichier ordinaire. Choisissez un fichier .ged.")
            .arg(path);
    if (info.size() > MaxFileSize)
        return Preparation::tr("« %1 » fait %2, trop pour que Varlune l'ouvre. Exportez l'arbre en "
                               "plusieurs fichiers, par branche, de 1 Go au plus.")
            .arg(path, QLocale(QLocale::French)
                           .formattedDataSize(info.size(), 1, QLocale::DataSizeSIFormat));
    std::optional<QByteArray> content = readFile(path);
    if (!content)
        return Preparation::tr("« %1 » ne peut pas être lu. Vérifiez vos droits sur le fichier et "
                               "que le disque répond.")
            .arg(path);
    *bytes = std::move(*content);
    return {};
}

QString refusalOfBytes(QByteArrayView bytes)
{
    if (bytes.isEmpty())
        return Preparation::tr("Ce fichier est vide. Refaites l'export depuis votre logiciel de "
                               "généalogie.");
    const auto begins = [bytes](const char *prefix) { return bytes.startsWith(prefix); };
    if (begins("PK\x03\x04"))
        return archive(u"ZIP (GEDZIP)"_s);
    if (begins("\x1F\x8B"))
        return archive(u"gzip"_s);
    if (begins("7z\xBC\xAF\x27\x1C"))
        return archive(u"7-Zip"_s);
    if (begins("Rar!"))
        return archive(u"RAR"_s);
    if (begins("BZh"))
        return archive(u"bzip2"_s);
    if (begins("\xFD"
               "7zXZ"))
        return archive(u"xz"_s);
    if (begins("%PDF"))
        return document(Preparation::tr("un document PDF"));
    if (begins("{\\rtf"))
        return document(Preparation::tr("un document RTF"));
    if (begins("\xD0\xCF\x11\xE0"))
        return document(Preparation::tr("un document bureautique"));
    if (begins("\x89PNG") || begins("\xFF\xD8\xFF") || begins("GIF8"))
        return document(Preparation::tr("une image"));
    if (begins("SQLite format 3"))
        return document(Preparation::tr("une base de données"));
    if (begins("-----BEGIN PGP") || begins("Salted__") || begins("U2FsdGVkX1")
        || begins("age-encryption.org"))
        return encrypted();
    return {};
}

QString refusalOfText(QByteArrayView text)
{
    const QByteArrayView sample = text.first(std::min(text.size(), SampleSize));
    const qsizetype controls = std::count_if(sample.begin(), sample.end(), [](char c) {
        return (c > 0 && c < ' ' && c != '\t' && c != '\n' && c != '\r') || c == '\x7F';
    });
    if (controls * MinTextPerControl > sample.size())
        return Preparation::tr("Ce fichier est binaire ou chiffré, et non un texte GEDCOM. "
                               "Déchiffrez-le ou exportez votre arbre au format GEDCOM.");
    return {};
}

QString refusalWithoutRecords(QByteArrayView text, bool isForced)
{
    if (isForced)
        return Preparation::tr("Aucune ligne ne commence une fiche dans le codage imposé. Laissez "
                               "choisir le codage, ou imposez-en un autre.");
    const QByteArrayView begin = text.trimmed();
    if (begin.isEmpty())
        return refusalOfBytes(begin);
    if (begin.startsWith('<'))
        return document(Preparation::tr("une page HTML ou un document XML"));
    return Preparation::tr("Ce fichier n'est pas un texte GEDCOM : aucune ligne n'y commence une "
                           "fiche, comme « 0 HEAD » ou « 0 @I1@ INDI ». Exportez votre arbre au "
                           "format GEDCOM depuis votre logiciel de généalogie.");
}
