#include "refusal.h"

#include "bytes.h"
#include "files.h"
#include "preparation.h"

#include <QFileInfo>
#include <QLocale>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 MaxFileSize = 1'000'000'000; // bytes; Varlune's tree would take 25 times as much
constexpr qsizetype SampleSize = 65536; // bytes of a file that are looked at
constexpr qsizetype MinTextPerControl = 20; // bytes in a text, for each one that is none

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

QByteArrayView withoutMark(QByteArrayView bytes)
{
    for (const QByteArrayView mark : {"\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF"}) {
        if (bytes.startsWith(mark))
            return bytes.sliced(mark.size());
    }
    return bytes;
}

bool isControl(char c)
{
    return (c > 0 && c < ' ' && c != '\t' && !isLineEnd(c)) || c == '\x7F';
}

/// Whether the first character is the "<" of a markup. In the decoded text it might be that of the
/// digits which a byte has there.
bool beginsMarkup(QByteArrayView bytes)
{
    bytes = withoutMark(bytes);
    const auto *const first = std::find_if(bytes.begin(), bytes.end(), [](char c) {
        return c != '\0' && c != ' ' && c != '\t' && !isLineEnd(c); // a zero byte: UTF-16
    });
    return first != bytes.end() && *first == '<';
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
    const QByteArrayView text = withoutMark(bytes).trimmed();
    if (text.isEmpty())
        return Preparation::tr("Ce fichier est vide. Refaites l'export depuis votre logiciel de "
                               "généalogie.");
    const auto begins = [text](const char *prefix) { return text.startsWith(prefix); };
    if (begins("PK\x03\x04") || begins("PK\x05\x06"))
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
    if (begins("-----BEGIN PGP") || begins("-----BEGIN AGE") || begins("Salted__")
        || begins("U2FsdGVkX1") || begins("age-encryption.org"))
        return encrypted();
    return {};
}

QString refusalOfText(QByteArrayView bytes, Encoding encoding, bool isForced)
{
    const Decoded decoded = decode(bytes.first(std::min(bytes.size(), SampleSize)), encoding);
    qsizetype size = decoded.utf8.size();
    for (const Undecoded &piece : decoded.undecoded)
        size -= 2 * piece.bytes.size() + 1; // its digits stand for one character
    qsizetype strange = std::count_if(decoded.utf8.begin(), decoded.utf8.end(), isControl);
    if (!isForced)
        strange += decoded.undecoded.size();
    if (strange * MinTextPerControl > size)
        return Preparation::tr("Ce fichier est binaire ou chiffré, et non un texte GEDCOM. "
                               "Déchiffrez-le ou exportez votre arbre au format GEDCOM.");
    return {};
}

QString refusalWithoutRecords(QByteArrayView text, QByteArrayView begin, bool isForced)
{
    if (isForced)
        return Preparation::tr("Aucune ligne ne commence une fiche dans le codage imposé. Laissez "
                               "choisir le codage, ou imposez-en un autre.");
    if (text.trimmed().isEmpty())
        return refusalOfBytes({});
    if (beginsMarkup(begin))
        return document(Preparation::tr("une page HTML ou un document XML"));
    return Preparation::tr("Ce fichier n'est pas un texte GEDCOM : aucune ligne n'y commence une "
                           "fiche, comme « 0 HEAD » ou « 0 @I1@ INDI ». Exportez votre arbre au "
                           "format GEDCOM depuis votre logiciel de généalogie.");
}
