#include "gedreading.h"

#include <QList>
#include <QRegularExpression>
#include <QStringDecoder>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

struct Entry
{
    int level = 0;
    QString identifier;
    QString tag;
    QString value;
    int readLevel = 0; // in the text
};

bool isTag(const Entry &entry, const QString &tag)
{
    return entry.tag.compare(tag, Qt::CaseInsensitive) == 0;
}

/// The lines of a text without control characters and blank lines.
QStringList linesOf(const QByteArray &utf8)
{
    static const QRegularExpression control(u"[\\x01-\\x08\\x0B\\x0C\\x0E-\\x1F\\x7F]"_s);
    static const QRegularExpression blank(u"^[ \\t\\x{FEFF}]*$"_s);
    // A mark in front is text here: that of the file is gone.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    QString text = decoder.decode(utf8);
    text.remove(QChar(0)).remove(control);
    text.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
    QStringList lines = text.split(u'\n');
    lines.erase(std::remove_if(lines.begin(), lines.end(),
                               [](const QString &line) { return blank.match(line).hasMatch(); }),
                lines.end());
    return lines;
}

/// Whether a line that skips a level behind a text begins with a tag of the standard or of a
/// program. MARS is not among them: there it is a month.
bool isTagBehindText(const QString &tag)
{
    static const QStringList tags = uR"(
        ABBR ADDR ADR1 ADR2 ADR3 ADOP AFN AGE AGNC ALIA ANCE ANCI ANUL ASSO AUTH BAPL BAPM BARM
        BASM BIRT BLES BLOB BURI CALN CAST CAUS CENS CHAN CHAR CHIL CHR CHRA CITY CONC CONF CONL
        CONT COPR CORP CREM CTRY DATA DATE DEAT DESC DESI DEST DIV DIVF DSCR EDUC EMAIL EMIG
        ENDL ENGA EVEN FACT FAM FAMC FAMF FAMS FAX FCOM FILE FONE FORM GEDC GIVN GRAD HEAD HUSB
        IDNO IMMI INDI LANG LATI LEGA LONG MAP MARB MARC MARL MARR MEDI NAME NATI NATU NCHI NICK
        NMR NOTE NPFX NSFX OBJE OCCU ORDI ORDN PAGE PEDI PHON PLAC POST PROB PROP PUBL QUAY REFN
        RELA RELI REPO RESI RESN RETI RFN RIN ROLE ROMN SEX SLGC SLGS SOUR SPFX SSN STAE STAT
        SUBM SUBN SURN TEMP TEXT TIME TITL TRLR TYPE VERS WIFE WILL WWW
        CREA CROP EXID HEIGHT INIL LEFT MIME NO PHRASE SCHMA SDATE SNOTE TAG TOP TRAN UID WIDTH
        )"_s.split(QRegularExpression(u"\\s+"_s), Qt::SkipEmptyParts);
    return tag.startsWith(u'_') || tags.contains(tag);
}

/// Reads a line with a level behind one that had \p previous, and a text if \p isBehindText; false
/// for a mere text.
bool readEntry(const QString &line, int previous, bool isBehindText, Entry *entry)
{
    static const QRegularExpression rx(
        u"^[ \\t\\x{FEFF}]*([0-9]{1,9})[ \\t]+(?:(@[^@]+@)(?:[ \\t]+|$))?(?:([^ \\t]+)(?:[ \\t](.*))?)?$"_s);
    static const QRegularExpression glued(
        u"^[ \\t\\x{FEFF}]*(0+)[ \\t]+(@[^@ \\t]+@)([^ \\t]+)(?:[ \\t](.*))?$"_s);
    static const QRegularExpression capitals(u"^[A-Z_][A-Z0-9_]*$"_s);
    QRegularExpressionMatch match = glued.match(line);
    if (!match.hasMatch())
        match = rx.match(line);
    if (!match.hasMatch())
        return false;
    entry->level = entry->readLevel = match.captured(1).toInt();
    entry->identifier = match.captured(2);
    entry->tag = match.captured(3);
    entry->value = match.captured(4);
    if (entry->tag.isEmpty() && entry->identifier.isEmpty())
        return false;
    if (entry->level == 0 && !entry->identifier.isEmpty() && entry->tag.size() > 4
        && entry->tag.startsWith("NOTE"_L1)) {
        entry->tag = u"NOTE"_s;
        entry->value = line.mid(match.capturedStart(3) + 4);
    }
    const bool isCapital = capitals.match(entry->tag).hasMatch();
    if (entry->level == 0)
        return !entry->identifier.isEmpty() || isCapital || entry->tag.startsWith(u'_')
            || entry->tag.startsWith(u'@') || entry->tag.endsWith(u'@') || isTag(*entry, u"HEAD"_s)
            || isTag(*entry, u"TRLR"_s);
    return entry->level <= previous + 1
        || (entry->level <= 99 && isCapital && (!isBehindText || isTagBehindText(entry->tag)));
}

/// Whether the entry is the trailer and nothing more.
bool isTrailer(const Entry &entry)
{
    return entry.level == 0 && isTag(entry, u"TRLR"_s) && entry.identifier.isEmpty()
        && entry.value.trimmed().isEmpty();
}

/// Puts the header in front where only lines that belong to no record stand before it.
void advanceHeader(QStringList *lines)
{
    for (qsizetype i = 0; i < lines->size(); ++i) {
        Entry entry;
        if (!readEntry(lines->at(i), -1, false, &entry) || entry.level != 0 || isTrailer(entry))
            continue;
        if (isTag(entry, u"HEAD"_s))
            lines->move(i, 0);
        return;
    }
}

/// Whether the text of a record that takes some on its line begins only in \p entry behind it.
bool beginsText(const Entry &record, const Entry &entry)
{
    static const QRegularExpression takesText(u"^(NOTE|SNOTE|_.*)$"_s);
    return record.level == 0 && !record.identifier.isEmpty() && record.value.isEmpty()
        && takesText.match(record.tag).hasMatch() && entry.level > 0 && entry.tag == "CONC"_L1;
}

/// The entries, with the texts that have no level joined to the entry before.
QList<Entry> entriesOf(const QByteArray &utf8)
{
    QList<Entry> entries;
    static const QRegularExpression text(u"^(NOTE.*|SNOTE|TEXT|CONT|CONC)$"_s);
    int previous = 0;
    bool isBehindText = false;
    QStringList lines = linesOf(utf8);
    advanceHeader(&lines);
    for (const QString &line : std::as_const(lines)) {
        Entry entry;
        const bool isEntry = readEntry(line, previous, isBehindText, &entry);
        isBehindText = !isEntry || text.match(entry.tag).hasMatch();
        if (entries.isEmpty() && !(isEntry && entry.level == 0 && isTag(entry, u"HEAD"_s)))
            entries.append({0, {}, u"HEAD"_s, {}, 0});
        if (!isEntry) {
            entries.last().value += u'\n' + line;
        } else if (isTrailer(entry)) {
            continue;
        } else if (!entries.isEmpty() && beginsText(entries.last(), entry)) {
            entries.last().value += entry.value;
            previous = 0;
        } else {
            entries.append(entry);
            previous = entry.level;
        }
    }
    return entries;
}

/// Closes the gaps between the levels: an entry stands one below the nearest lower one before it.
void closeGaps(QList<Entry> *entries)
{
    QList<const Entry *> open;
    for (Entry &entry : *entries) {
        while (!open.isEmpty() && open.last()->readLevel >= entry.readLevel)
            open.removeLast();
        entry.level = open.isEmpty() ? 0 : open.last()->level + 1;
        open.append(&entry);
    }
}

/// The entries with those of CONC and CONT joined to the one before.
QList<Entry> joined(const QList<Entry> &entries)
{
    QList<Entry> whole;
    for (const Entry &entry : entries) {
        if (entry.level == 0)
            whole.append(entry);
        else if (entry.tag == "CONC"_L1)
            whole.last().value += entry.value;
        else if (entry.tag == "CONT"_L1)
            whole.last().value += u'\n' + entry.value;
        else
            whole.append(entry);
    }
    return whole;
}

/// What a preparation may change in the line of a record: the blanks behind its tag.
void neutralise(Entry *entry)
{
    static const QStringList known{u"INDI"_s, u"FAM"_s, u"SOUR"_s, u"OBJE"_s, u"REPO"_s};
    static const QRegularExpression blanks(u"^[ \\t]+(?=\n|$)"_s);
    if (entry->level == 0 && known.contains(entry->tag))
        entry->value.remove(blanks);
}

/// The entries of a header without its character set: the name, what stands below a continuation of
/// that, and the version.
QList<Entry> withoutCharacterSet(const QList<Entry> &record)
{
    QList<Entry> rest;
    bool isKept = true;
    bool inCharacterSet = false;
    for (const Entry &entry : record) {
        if (entry.level <= 1) {
            inCharacterSet = entry.level == 1 && isTag(entry, u"CHAR"_s);
            isKept = !inCharacterSet;
        } else if (entry.level == 2 && inCharacterSet) {
            isKept = !isTag(entry, u"VERS"_s);
        }
        if (isKept)
            rest.append(entry);
    }
    return rest;
}

/// The record less what one of a single line is given.
QList<Entry> withoutSecondLine(const QList<Entry> &record)
{
    static const QRegularExpression date(u"^[0-9]{1,2} [A-Z]{3} [0-9]{4}$"_s);
    if (record.size() == 3 && record.at(1).tag == "CHAN"_L1 && record.at(2).tag == "DATE"_L1
        && record.at(2).level == 2 && date.match(record.at(2).value).hasMatch())
        return record.first(1);
    if (record.size() == 2 && record.at(1).tag == "RIN"_L1 && isTag(record.at(0), u"SUBN"_s))
        return record.first(1);
    if (record.size() == 2 && record.at(1).tag == "DATE"_L1 && isTag(record.at(0), u"HEAD"_s)
        && date.match(record.at(1).value).hasMatch())
        return record.first(1);
    return record;
}

} // namespace

QStringList valuesOf(const QByteArray &utf8)
{
    QList<Entry> entries = entriesOf(utf8);
    closeGaps(&entries);
    for (Entry &entry : entries)
        neutralise(&entry);
    entries = joined(entries);
    QStringList values;
    for (qsizetype begin = 0; begin < entries.size();) {
        qsizetype end = begin + 1;
        while (end < entries.size() && entries.at(end).level > 0)
            ++end;
        QList<Entry> record = entries.mid(begin, end - begin);
        if (isTag(record.first(), u"HEAD"_s))
            record = withoutCharacterSet(record);
        record = withoutSecondLine(record);
        for (const Entry &entry : std::as_const(record))
            values += u"%1|%2|%3|%4"_s.arg(QString::number(entry.level), entry.identifier,
                                           entry.tag, entry.value);
        begin = end;
    }
    return values;
}
