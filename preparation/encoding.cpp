#include "encoding.h"

#include "bytes.h"
#include "encodingfit.h"
#include "lines.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype HeadSize = 65536; // bytes at the beginning that HEAD.CHAR is looked for in
constexpr qsizetype MaxCharset = 40; // characters of its value that matter
constexpr qsizetype SampleSize = 65536; // bytes of the lines that encodings are tried on
constexpr qsizetype MaxBefore = 32; // bytes in front of the first one of interest in a line

/// Why an encoding was chosen, as users read it.
struct Reason
{
    Q_DECLARE_TR_FUNCTIONS(EncodingChoice)
};

struct EncodingNames
{
    Encoding encoding;
    QString name;
    QStringList others; // plain ones, which files and programs have for it
};

const QList<EncodingNames> &encodingNames()
{
    static const QList<EncodingNames> names{
        {Encoding::Utf8, u"UTF-8"_s, {}},
        {Encoding::Utf16LE, u"UTF-16LE"_s, {}},
        {Encoding::Utf16BE, u"UTF-16BE"_s, {}},
        {Encoding::Ansel, u"ANSEL"_s, {}},
        {Encoding::Windows1252,
         u"Windows-1252"_s,
         {u"ANSI"_s, u"CP1252"_s, u"1252"_s, u"ANSI1252"_s, u"WINDOWS"_s, u"MSWINDOWS"_s,
          u"IBMWINDOWS"_s}},
        {Encoding::Cp437,
         u"CP437"_s,
         {u"IBMPC"_s, u"IBM"_s, u"OEM"_s, u"IBMOEM"_s, u"MSDOS"_s, u"IBMDOS"_s, u"DOS"_s,
          u"IBM437"_s, u"437"_s}},
        {Encoding::Cp850, u"CP850"_s, {u"IBM850"_s, u"850"_s}},
        {Encoding::MacRoman, u"MacRoman"_s, {u"MACINTOSH"_s, u"MAC"_s}},
        {Encoding::Latin1, u"ISO-8859-1"_s, {u"LATIN1"_s, u"88591"_s, u"ISO8859"_s}},
        {Encoding::Latin9, u"ISO-8859-15"_s, {u"LATIN9"_s, u"885915"_s}}};
    return names;
}

/// A name without case, blanks and punctuation: "ISO88591".
QString plainName(QStringView name)
{
    QString plain;
    for (const QChar c : name) {
        if (c.isLetterOrNumber())
            plain += c.toUpper();
    }
    return plain;
}

/// The index behind the line that begins at \p at, with neither of its line ends.
qsizetype endOfLine(QByteArrayView bytes, qsizetype at)
{
    return std::find_if(bytes.begin() + at, bytes.end(), isLineEnd) - bytes.begin();
}

/// The value of HEAD.CHAR, empty if there is none.
QString declaredCharset(QByteArrayView bytes)
{
    LineReader reader(bytes.first(std::min(bytes.size(), HeadSize)));
    int records = 0;
    while (!reader.atEnd()) {
        const GedLine line = readGedLine(reader.readLine());
        if (line.level == 1 && isTag(line.tag, "CHAR"))
            return QString::fromLatin1(line.value.toByteArray().simplified().left(MaxCharset));
        if (line.level == 0 && ++records > 1)
            break;
    }
    return {};
}

/// UTF-16 without a mark: of each of the first characters one byte is zero, since GEDCOM begins in
/// ASCII.
std::optional<Encoding> unmarkedUtf16(QByteArrayView bytes)
{
    const qsizetype size = std::min<qsizetype>(bytes.size(), 8) / 2 * 2;
    const auto isEven = [&](qsizetype textByte) {
        for (qsizetype i = 0; i < size; i += 2) {
            const char c = bytes.at(i + textByte);
            const bool isText = (c >= ' ' && c < 0x7F) || c == '\t' || isLineEnd(c);
            if (!isText || bytes.at(i + 1 - textByte) != 0)
                return false;
        }
        return size >= 4;
    };
    if (isEven(0))
        return Encoding::Utf16LE;
    if (isEven(1))
        return Encoding::Utf16BE;
    return std::nullopt;
}

std::optional<EncodingChoice> markedEncoding(QByteArrayView bytes)
{
    if (bytes.startsWith("\xEF\xBB\xBF"))
        return EncodingChoice{Encoding::Utf8, Reason::tr("marque UTF-8 en tête")};
    if (bytes.startsWith("\xFF\xFE"))
        return EncodingChoice{Encoding::Utf16LE, Reason::tr("marque UTF-16LE en tête")};
    if (bytes.startsWith("\xFE\xFF"))
        return EncodingChoice{Encoding::Utf16BE, Reason::tr("marque UTF-16BE en tête")};
    return std::nullopt;
}

/// Lines that are not all ASCII, as far as they go into the sample.
QByteArray sampleOf(QByteArrayView bytes)
{
    QByteArray sample;
    for (qsizetype i = 0; sample.size() < SampleSize;) {
        const qsizetype at =
            std::find_if_not(bytes.begin() + i, bytes.end(), isAscii) - bytes.begin();
        if (at == bytes.size())
            break;
        qsizetype begin = at;
        while (begin > i && at - begin < MaxBefore && !isLineEnd(bytes.at(begin - 1)))
            --begin;
        const qsizetype end = std::min(endOfLine(bytes, at), at + SampleSize);
        sample += bytes.sliced(begin, end - begin);
        sample += '\n';
        i = end;
    }
    return sample;
}

/// More sequences of UTF-8 than bytes that are not.
bool isMostlyUtf8(QByteArrayView sample)
{
    const Decoded decoded = decode(sample, Encoding::Utf8);
    const auto sequences = std::count_if(decoded.utf8.begin(), decoded.utf8.end(),
                                         [](char c) { return uchar(c) >= 0xC0; });
    return sequences > decoded.undecoded.size();
}

/// The encoding that HEAD.CHAR means. "IBMPC" says which computer, not which of its code pages.
std::optional<Encoding> declaredEncoding(const QString &declared, QByteArrayView sample)
{
    const std::optional<Encoding> encoding = encodingFromName(declared);
    if (encoding == Encoding::Cp437 && !declared.contains(u"437"_s))
        return bestFit(sample, {Encoding::Cp437, Encoding::Cp850});
    // What would be that has been found before.
    if (encoding == Encoding::Utf8 || encoding == Encoding::Utf16LE
        || encoding == Encoding::Utf16BE)
        return std::nullopt;
    // Programs of Windows say ISO 8859-1, and write characters that it does not have.
    if (encoding == Encoding::Latin1 && !decode(sample, Encoding::Latin1).undecoded.isEmpty()
        && decode(sample, Encoding::Windows1252).undecoded.isEmpty())
        return std::nullopt;
    return encoding;
}

/// The choice for bytes that are neither UTF-8 nor UTF-16.
EncodingChoice chooseByLetters(const QString &declared, QByteArrayView sample)
{
    const Encoding fitting =
        bestFit(sample, {Encoding::Ansel, Encoding::Windows1252, Encoding::Cp437, Encoding::Cp850,
                         Encoding::MacRoman, Encoding::Latin9});
    const bool fits = fitOf(sample, fitting) > 0;
    const std::optional<Encoding> meant = declaredEncoding(declared, sample);
    if (meant && (!fits || fitOf(sample, *meant) >= 0))
        return {*meant, Reason::tr("HEAD.CHAR dit « %1 »").arg(declared)};

    const Encoding encoding = fits ? fitting : Encoding::Windows1252;
    const QString why = fits ? Reason::tr("les lettres accentuées sont celles de %1")
                             : Reason::tr("rien ne désigne un encodage, %1 est le plus courant");
    const QString letters = why.arg(encodingName(encoding));
    if (declared.isEmpty())
        return {encoding, Reason::tr("HEAD.CHAR manque, %1").arg(letters)};
    return {encoding, Reason::tr("HEAD.CHAR dit « %1 », mais %2").arg(declared, letters)};
}

/// The choice for a file that is valid UTF-8.
EncodingChoice chooseUtf8(const QString &declared, bool isAscii)
{
    const QString why = isAscii ? Reason::tr("texte en ASCII pur") : Reason::tr("UTF-8 valide");
    if (isAscii || declared.isEmpty() || encodingFromName(declared) == Encoding::Utf8)
        return {Encoding::Utf8, why};
    return {Encoding::Utf8, Reason::tr("%1, bien que HEAD.CHAR dise « %2 »").arg(why, declared)};
}

} // namespace

QString encodingName(Encoding encoding)
{
    for (const EncodingNames &names : encodingNames()) {
        if (names.encoding == encoding)
            return names.name;
    }
    return {};
}

std::optional<Encoding> encodingFromName(QStringView name)
{
    const QString plain = plainName(name);
    for (const EncodingNames &names : encodingNames()) {
        if (plain == plainName(names.name) || names.others.contains(plain))
            return names.encoding;
    }
    return std::nullopt;
}

QList<Encoding> allEncodings()
{
    QList<Encoding> encodings;
    for (const EncodingNames &names : encodingNames())
        encodings += names.encoding;
    return encodings;
}

EncodingChoice chooseEncoding(QByteArrayView bytes)
{
    if (const auto marked = markedEncoding(bytes))
        return *marked;
    if (const auto utf16 = unmarkedUtf16(bytes))
        return {*utf16, Reason::tr("un octet sur deux est nul, comme en UTF-16")};

    const QString declared = declaredCharset(bytes);
    const QByteArray sample = sampleOf(bytes);
    if (bytes.isValidUtf8())
        return chooseUtf8(declared, sample.isEmpty());
    if (isMostlyUtf8(sample))
        return {Encoding::Utf8, Reason::tr("UTF-8 valide, à quelques octets près")};
    return chooseByLetters(declared, sample);
}
