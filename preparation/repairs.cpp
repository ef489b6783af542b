#include "repairs.h"

#include "copywriter.h"
#include "identifiers.h"
#include "lines.h"
#include "standardtags.h"

#include <QHash>
#include <QLocale>
#include <QVarLengthArray>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int MaxLevel = 9; // that Varlune keeps
constexpr int MaxStandardLevel = 99;
constexpr int ProgressSteps = 200;

/// Levels without gaps: a line stands one below its parent, the nearest earlier line of a lower
/// level, so that lines of one parent stay lines of one parent.
class Levels
{
public:
    /// The level for a line that has \p level in the source.
    int place(int level)
    {
        while (!m_open.isEmpty() && m_open.last().read >= level)
            m_open.removeLast();
        const int placed = m_open.isEmpty() ? level : m_open.last().placed + 1;
        m_open.append({level, placed});
        return placed;
    }
    /// Takes the line before back: it has become part of another.
    void takeBack()
    {
        m_open.removeLast();
    }
    /// What the line before had in the source, or -1.
    [[nodiscard]] int previous() const
    {
        return m_open.isEmpty() ? -1 : m_open.last().read;
    }

private:
    struct Open
    {
        int read;
        int placed;
    };
    QVarLengthArray<Open, 16> m_open; // the line before and those that it stands below
};

/// Whether a tag looks like one: capitals, digits and underscores, not a digit first.
bool isCapitalTag(QByteArrayView tag)
{
    return !tag.isEmpty() && (tag.front() < '0' || tag.front() > '9')
        && std::all_of(tag.begin(), tag.end(), [](char c) {
               return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
           });
}

/// Whether a line that skips a level behind a text has a tag, and not the first word of more text.
/// MARS, a marriage settlement, is more often the month: "3 MARS 1850".
bool isTagBehindText(QByteArrayView tag)
{
    return tag.startsWith('_') || (isStandardTag(tag) && tag != "MARS");
}

/// Whether the value of the line is a text, which a broken line below it may go on with. That of a
/// note may be glued to the tag.
bool endsInText(const GedLine &line)
{
    return isContinuation(line.tag) || line.tag.startsWith("NOTE") || line.tag == "SNOTE"
        || line.tag == "TEXT";
}

bool hasSmallLetter(QByteArrayView tag)
{
    return std::any_of(tag.begin(), tag.end(), [](char c) { return c >= 'a' && c <= 'z'; });
}

bool isBlank(QByteArrayView text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return c == ' ' || c == '\t'; });
}

/// Whether Varlune knows records of that tag only where nothing follows the tag.
bool isKnownRecord(QByteArrayView tag)
{
    return tag == "INDI" || tag == "FAM" || tag == "SOUR" || tag == "OBJE" || tag == "REPO";
}

/// Whether records of that tag need no identifier to be known for what they are.
bool isUsualRecord(QByteArrayView tag)
{
    return isKnownRecord(tag) || tag.startsWith('_') || isTag(tag, "HEAD") || isTag(tag, "TRLR")
        || isTag(tag, "NOTE") || isTag(tag, "SNOTE") || isTag(tag, "SUBM") || isTag(tag, "SUBN");
}

/// Whether blanks behind the tag would make the line a record of unknown kind.
bool endsInBlank(const GedLine &line)
{
    return line.level == 0 && line.hasBlank && isKnownRecord(line.tag) && isBlank(line.value);
}

/// Whether the tag of a record is what is left of a damaged identifier.
bool isHalfIdentifier(QByteArrayView tag)
{
    return tag.startsWith('@') || tag.endsWith('@');
}

/// Whether the line is a trailer and nothing more.
bool isBareTrailer(const GedLine &line)
{
    return line.level == 0 && line.identifier.isEmpty() && isTag(line.tag, "TRLR")
        && isBlank(line.value);
}

GedLine makeLine(int level, QByteArrayView tag, QByteArrayView value = {})
{
    GedLine line;
    line.level = level;
    line.tag = tag;
    line.value = value;
    line.hasBlank = !value.isEmpty();
    return line;
}

class Repairer
{
public:
    Repairer(Preparation *preparation, const Options &options)
        : m_preparation(preparation),
          m_options(options),
          m_writer(preparation)
    {
    }

    /// False if \p progress has stopped it.
    [[nodiscard]] bool run(const Progress &progress);
    [[nodiscard]] qint64 records() const
    {
        return m_records;
    }

private:
    [[nodiscard]] bool isOn(Finding finding) const
    {
        return m_options.repairs.contains(finding);
    }
    [[nodiscard]] QByteArrayView cleaned(QByteArrayView text);
    [[nodiscard]] bool isGedLine(const GedLine &line) const;
    [[nodiscard]] bool goesToEnd(const GedLine &line) const
    {
        return isOn(Finding::Trailer) && isBareTrailer(line);
    }

    // The way of a line.
    void takeLine(const LineReader &reader, QByteArrayView text);
    void takeGedLine(QByteArrayView text, GedLine line);
    void takeText(QByteArrayView text);
    void noteDecoding();

    // Lines that become no line of the copy: true for one of them.
    [[nodiscard]] bool isTrailer(QByteArrayView text, const GedLine &line);
    [[nodiscard]] bool isOfCharacterSet(const GedLine &line);
    [[nodiscard]] bool joinToEmptyNote(const GedLine &line);
    [[nodiscard]] bool foldDeepLevel(const GedLine &line);

    // Repairs of a line: true if they change it.
    [[nodiscard]] bool lowerLevel(GedLine *line);
    [[nodiscard]] bool setCharacterSet(GedLine *line);
    [[nodiscard]] bool separateNote(QByteArrayView text, GedLine *line);
    [[nodiscard]] bool rename(GedLine *line);
    [[nodiscard]] bool layOut(GedLine *line);

    // Repairs of more than a line.
    void prepareRenames();
    void takeLateHeader();
    void ensureHeader(const GedLine &line);
    void beginRecord(const GedLine &line);
    void endRecord();
    void addSecondLine();
    void moveTrailer();
    void endText();
    void noteEncoding(bool hasReturns);

    void warnOf(const GedLine &line);
    void warnOfRecord(const GedLine &line);

    struct Record
    {
        qint64 firstLine = 0; // of the lines written
        bool isOpen = false;
        bool isHeader = false;
        bool hasEvents = false; // a person or a family
        bool takesText = false; // on its own line
        bool isSubmission = false;
        bool isTrailer = false;
        bool isEmpty = false; // an identifier and a tag, without a value
    };
    // Where the line before stands: outside of HEAD.CHAR, in its name, in what goes with the name
    // that it had, in the rest.
    enum class CharacterSetPart { None, Name, Removed, Kept };
    struct Trailer
    {
        SourceLine source;
        bool isLast = false; // so far
        bool isPlain = false;
        qsizetype moved = -1; // the last occurrence of one that was not the last line
    };

    Preparation *m_preparation;
    const Options &m_options;
    CopyWriter m_writer;
    Levels m_levels;
    Record m_record;
    Trailer m_trailer;
    qint64 m_records = 0;
    qint64 m_lateHeader = 0; // the number of its line
    bool m_inText = false; // the line before ends a text
    bool m_hasCharacterSet = false;
    CharacterSetPart m_characterSet = CharacterSetPart::None;
    QHash<QByteArray, QByteArray> m_renames;
    bool m_isPointer = false; // the value of the line written last
    // Parts of the present line that are not in the source:
    QByteArray m_clean; // the line, if it had control characters
    QByteArray m_pointer; // the value, if it is a renamed pointer
};

bool Repairer::run(const Progress &progress)
{
    const QByteArrayView source = m_preparation->source;
    m_preparation->occurrences.append(Occurrence()); // for noteEncoding()
    prepareRenames();
    takeLateHeader();
    LineReader reader(source);
    qint64 nextReport = 0;
    while (!reader.atEnd()) {
        const QByteArrayView text = reader.readLine();
        if (progress && reader.begin() >= nextReport) {
            if (!progress(reader.begin(), source.size()))
                return false;
            nextReport += source.size() / ProgressSteps;
        }
        if (reader.number() != m_lateHeader)
            takeLine(reader, text);
    }
    endText();
    noteEncoding(reader.hasReturns());
    return true;
}

QByteArrayView Repairer::cleaned(QByteArrayView text)
{
    if (!isOn(Finding::Control) || !hasControls(text))
        return text;
    m_clean = withoutControls(text);
    return m_clean;
}

/// Tells a line of GEDCOM from a text that happens to begin with a number.
bool Repairer::isGedLine(const GedLine &line) const
{
    if (line.level == GedLine::NoLevel)
        return false;
    if (line.level == 0)
        return !line.identifier.isEmpty() || isCapitalTag(line.tag) || line.tag.startsWith('_')
            || isTag(line.tag, "HEAD") || isTag(line.tag, "TRLR") || isHalfIdentifier(line.tag);
    // Where the level fits, Varlune takes the line as it is, whatever its tag.
    if (line.level <= m_levels.previous() + 1)
        return true;
    return line.level <= MaxStandardLevel && isCapitalTag(line.tag)
        && (!m_inText || isTagBehindText(line.tag));
}

void Repairer::takeLine(const LineReader &reader, QByteArrayView text)
{
    const QByteArrayView clean = cleaned(text);
    const bool isCleaned = clean.size() != text.size();
    m_writer.setSource({reader.number(), reader.begin()});
    if (isBlankLine(clean) && isOn(Finding::Layout)) {
        m_writer.noteRemoved(isCleaned ? Finding::Control : Finding::Layout);
        return;
    }
    moveTrailer();
    noteDecoding();
    if (isCleaned)
        m_writer.note(Finding::Control);
    const GedLine line = readGedLine(clean);
    ensureHeader(line);
    const bool isText = !isGedLine(line);
    if (isText)
        takeText(clean);
    else
        takeGedLine(clean, line);
    m_inText = isText || endsInText(line);
}

void Repairer::takeGedLine(QByteArrayView text, GedLine line)
{
    if (isTrailer(text, line))
        return;
    if (line.level == 0) {
        endRecord();
        ++m_records;
    }
    const bool isLowered = lowerLevel(&line);
    if (isOfCharacterSet(line) || joinToEmptyNote(line) || foldDeepLevel(line))
        return;

    if (isLowered)
        m_writer.note(Finding::SkippedLevel);
    bool isChanged = setCharacterSet(&line) || isLowered;
    isChanged = separateNote(text, &line) || isChanged;
    isChanged = rename(&line) || isChanged;
    isChanged = layOut(&line) || isChanged;
    if (line.level == 0)
        beginRecord(line);
    if (isChanged)
        m_writer.write(line);
    else
        m_writer.write(text, line);
    if (endsInBlank(line) || (!isChanged && !line.isPlain))
        m_writer.noteLast(Finding::MisreadLine);
    warnOf(line);
}

/// A text without a level goes on where the line before ends, and goes with it if that is removed.
void Repairer::takeText(QByteArrayView text)
{
    if (m_characterSet == CharacterSetPart::Name || m_characterSet == CharacterSetPart::Removed) {
        m_writer.noteRemoved(Finding::Encoding);
        return;
    }
    if (!isOn(Finding::NoLevel) || m_writer.lastLevel() == GedLine::NoLevel) {
        m_writer.write(text, {});
        if (!text.isEmpty() && text.front() >= '0' && text.front() <= '9')
            m_writer.noteLast(Finding::MisreadLine);
        return;
    }
    GedLine line =
        makeLine(m_writer.lastLevel() + (m_writer.lastIsContinuation() ? 0 : 1), "CONT", text);
    if (foldDeepLevel(line))
        return;
    m_writer.note(Finding::NoLevel);
    m_writer.write(line);
    warnOf(line);
}

/// Notes what the decoder has found in the present line. The lines do not always come in their
/// order: a late header comes first.
void Repairer::noteDecoding()
{
    const qint64 number = m_writer.source().number;
    const QList<Undecoded> &undecoded = m_preparation->undecoded;
    auto place = std::lower_bound(undecoded.begin(), undecoded.end(), number,
                                  [](const Undecoded &u, qint64 line) { return u.line < line; });
    for (; place != undecoded.end() && place->line == number; ++place)
        m_writer.note(Finding::Undecoded, place - undecoded.begin());
    const QList<qint64> &cut = m_preparation->cutLines;
    if (std::binary_search(cut.begin(), cut.end(), number))
        m_writer.note(Finding::Encoding, 1);
}

/// Whether the line is a trailer, which is written at the end.
bool Repairer::isTrailer(QByteArrayView text, const GedLine &line)
{
    if (!goesToEnd(line))
        return false;
    m_trailer.source = m_writer.source();
    m_trailer.isLast = true;
    m_trailer.isPlain = text == "0 TRLR";
    return true;
}

/// The version of the former character set, and what goes on with either, is no longer true.
bool Repairer::isOfCharacterSet(const GedLine &line)
{
    using Part = CharacterSetPart;
    if (line.level <= 1)
        m_characterSet = Part::None;
    const bool isVersion = line.level == 2 && isTag(line.tag, "VERS");
    const bool goesOn = isContinuation(line.tag);
    if (m_characterSet == Part::Name)
        m_characterSet = isVersion || goesOn ? Part::Removed : Part::Kept;
    else if (m_characterSet != Part::None && line.level == 2 && !goesOn)
        m_characterSet = isVersion ? Part::Removed : Part::Kept;
    if (m_characterSet != Part::Removed)
        return false;
    m_writer.noteRemoved(Finding::Encoding);
    return true;
}

/// The text of a shared note that begins in its first CONC line comes to the note's own line.
bool Repairer::joinToEmptyNote(const GedLine &line)
{
    if (!isOn(Finding::EmptyNote) || !m_record.takesText || !m_record.isEmpty || line.level != 1
        || line.tag != "CONC" || m_writer.lineCount() != m_record.firstLine + 1)
        return false;
    if (!line.value.isEmpty())
        m_writer.appendToValue(line.value);
    m_record.isEmpty = line.value.isEmpty();
    m_levels.takeBack();
    m_writer.noteJoined(Finding::EmptyNote);
    return true;
}

bool Repairer::foldDeepLevel(const GedLine &line)
{
    if (!isOn(Finding::DeepLevelFolded) || line.level <= MaxLevel)
        return false;
    QByteArray text;
    if (line.tag != "CONC" && m_writer.lastHasValue())
        text += ' ';
    if (!isContinuation(line.tag)) {
        for (const QByteArrayView word : {line.identifier, line.tag}) {
            if (!word.isEmpty())
                text.append(word).append(' ');
        }
        if (!line.hasBlank)
            text.chop(1);
    }
    m_writer.appendToValue(text.append(line.value));
    m_writer.noteJoined(Finding::DeepLevelFolded);
    return true;
}

bool Repairer::lowerLevel(GedLine *line)
{
    const int placed = m_levels.place(line->level);
    if (!isOn(Finding::SkippedLevel) || placed == line->level)
        return false;
    line->level = placed;
    return true;
}

bool Repairer::setCharacterSet(GedLine *line)
{
    if (!m_record.isHeader || line->level != 1 || !isTag(line->tag, "CHAR"))
        return false;
    m_hasCharacterSet = true;
    if (!isOn(Finding::Encoding))
        return false;
    m_characterSet = CharacterSetPart::Name;
    if (line->value == "UTF-8")
        return false;
    m_writer.note(Finding::Encoding);
    line->value = "UTF-8";
    line->hasBlank = true;
    return true;
}

/// "0 @N1@ NOTEtext" is what is left of an empty note once its CONC line was folded into it.
bool Repairer::separateNote(QByteArrayView text, GedLine *line)
{
    constexpr qsizetype TagSize = 4;
    if (!isOn(Finding::GluedNote) || line->level != 0 || line->identifier.isEmpty()
        || !line->tag.startsWith("NOTE") || line->tag.size() == TagSize)
        return false;
    m_writer.note(Finding::GluedNote);
    line->value = text.sliced(line->tag.data() + TagSize - text.data());
    line->tag = line->tag.first(TagSize);
    line->hasBlank = true;
    return true;
}

bool Repairer::rename(GedLine *line)
{
    if (m_renames.isEmpty())
        return false;
    const QByteArrayView before = line->level == 0 ? line->identifier : pointerOf(*line);
    const auto found = m_renames.constFind(QByteArray::fromRawData(before.data(), before.size()));
    if (found == m_renames.constEnd())
        return false;
    if (line->level == 0) {
        line->identifier = *found;
    } else {
        const qsizetype begin = before.data() - line->value.data();
        m_pointer = line->value.toByteArray().replace(begin, before.size(), *found);
        line->value = m_pointer;
    }
    m_writer.note(Finding::Identifier);
    return true;
}

bool Repairer::layOut(GedLine *line)
{
    if (!isOn(Finding::Layout))
        return false;
    const bool isOpenEnded = endsInBlank(*line);
    if (line->isPlain && !isOpenEnded)
        return false;
    if (isOpenEnded) {
        line->hasBlank = false;
        line->value = {};
    }
    m_writer.note(Finding::Layout);
    return true;
}

void Repairer::prepareRenames()
{
    if (!isOn(Finding::Identifier))
        return;
    m_preparation->identifiers = renameIdentifiers(m_preparation->source, isOn(Finding::Control));
    for (const RenamedIdentifier &renamed : std::as_const(m_preparation->identifiers))
        m_renames.insert(renamed.before, renamed.after);
}

/// Takes the header first where other lines stand in front of it. They then belong to it.
void Repairer::takeLateHeader()
{
    LineReader reader(m_preparation->source);
    bool isLate = false;
    while (!reader.atEnd()) {
        const QByteArrayView text = reader.readLine();
        const GedLine line = readGedLine(cleaned(text));
        if (goesToEnd(line))
            continue;
        if (line.level == 0 && isGedLine(line)) {
            if (!isLate || !isTag(line.tag, "HEAD") || !isOn(Finding::Layout))
                return;
            m_lateHeader = reader.number();
            m_writer.setSource({reader.number(), reader.begin()});
            m_writer.note(Finding::Layout);
            takeLine(reader, text);
            return;
        }
        isLate = isLate || !isBlankLine(text);
    }
}

/// Makes a header in front of the first line if that is none.
void Repairer::ensureHeader(const GedLine &line)
{
    if (m_writer.lineCount() > 0 || !isOn(Finding::Encoding) || goesToEnd(line)
        || (line.level == 0 && isTag(line.tag, "HEAD")))
        return;
    const GedLine header = makeLine(m_levels.place(0), "HEAD");
    beginRecord(header);
    m_writer.insert(header);
    m_writer.noteLast(Finding::Encoding);
}

void Repairer::beginRecord(const GedLine &line)
{
    m_record.firstLine = m_writer.lineCount();
    m_record.isOpen = true;
    m_record.isHeader = isTag(line.tag, "HEAD");
    m_record.hasEvents = line.tag == "INDI" || line.tag == "FAM";
    m_record.takesText = line.tag == "NOTE" || line.tag == "SNOTE" || line.tag.startsWith('_');
    m_record.isSubmission = isTag(line.tag, "SUBN");
    m_record.isTrailer = isBareTrailer(line);
    m_record.isEmpty = !line.identifier.isEmpty() && line.value.isEmpty();
}

void Repairer::endRecord()
{
    if (m_record.isHeader && !m_hasCharacterSet && isOn(Finding::Encoding)) {
        m_writer.insert(makeLine(1, "CHAR", "UTF-8"));
        m_writer.noteLast(Finding::Encoding);
        m_hasCharacterSet = true;
    }
    if (m_record.isOpen && !m_record.isTrailer && isOn(Finding::LoneLine)
        && m_writer.lineCount() == m_record.firstLine + 1)
        addSecondLine();
    m_record = {};
}

/// Gives a record of one line a harmless second one that the standard allows there.
void Repairer::addSecondLine()
{
    const QByteArray today =
        QLocale::c().toString(m_options.today, u"d MMM yyyy"_s).toUpper().toLatin1();
    if (m_record.isSubmission || m_record.isHeader) {
        m_writer.noteLast(Finding::LoneLine, 2);
        m_writer.insert(m_record.isHeader ? makeLine(1, "DATE", today) : makeLine(1, "RIN", "1"));
        return;
    }
    m_writer.noteLast(Finding::LoneLine, 3);
    m_writer.insert(makeLine(1, "CHAN"));
    m_writer.insert(makeLine(2, "DATE", today));
}

/// The trailer was not the last line: another one follows.
void Repairer::moveTrailer()
{
    if (!m_trailer.isLast)
        return;
    const SourceLine present = m_writer.source();
    m_writer.setSource(m_trailer.source);
    m_writer.noteRemoved(Finding::Trailer);
    m_writer.setSource(present);
    m_trailer.isLast = false;
    m_trailer.moved = m_preparation->occurrences.size() - 1;
}

void Repairer::endText()
{
    const bool endsInTrailer = m_record.isTrailer && m_writer.lineCount() == m_record.firstLine + 1;
    endRecord();
    if (!isOn(Finding::Trailer)) {
        if (!endsInTrailer && m_writer.lineCount() > 0)
            m_writer.noteLast(Finding::LostLine);
        return;
    }
    if (m_trailer.isLast) {
        m_writer.setSource(m_trailer.source);
        if (!m_trailer.isPlain)
            m_writer.note(Finding::Trailer);
        m_writer.write(makeLine(0, "TRLR"));
        return;
    }
    QList<Occurrence> &occurrences = m_preparation->occurrences;
    for (qsizetype i = m_trailer.moved; // with what else was found in its line
         i >= 0 && occurrences.at(i).before == m_trailer.source.begin; --i)
        occurrences[i].after = m_preparation->copy.size();
    m_writer.insert(makeLine(0, "TRLR"));
    if (m_trailer.moved < 0)
        m_writer.noteLast(Finding::Trailer);
}

/// The first occurrence is that the bytes of the whole text are new, or there is no such one. It
/// has had its place from the beginning: to make room for it in front of a million others takes as
/// much memory as they have.
void Repairer::noteEncoding(bool hasReturns)
{
    QList<Occurrence> &occurrences = m_preparation->occurrences;
    if (m_preparation->encoding.encoding == Encoding::Utf8 && !m_preparation->hasMark
        && !hasReturns) {
        occurrences.removeFirst();
        return;
    }
    occurrences.first().line = 1;
    occurrences.first().detail = hasReturns;
    ++m_preparation->counts.at(size_t(Finding::Encoding));
}

/// Tells what Varlune would not see or not keep of the line written last.
void Repairer::warnOf(const GedLine &line)
{
    if (line.level == 0)
        warnOfRecord(line);
    if (line.level > MaxLevel)
        m_writer.noteLast(Finding::DeepLevel);
    if (hasSmallLetter(line.tag))
        m_writer.noteLast(Finding::SmallTag);
    if (line.tag == "OBJE" && line.level > 0 && isBlank(line.value))
        m_writer.noteLast(Finding::InlineMedia);
    if (line.tag == "SOUR" && line.level != 2 && m_record.hasEvents && !pointerOf(line).isEmpty())
        m_writer.noteLast(Finding::CitationLevel);
    if (line.tag == "CONC" && m_record.isEmpty && m_writer.lineCount() == m_record.firstLine + 2)
        m_writer.noteLast(Finding::GluedText);
    if (line.tag == "CONC" && m_isPointer)
        m_writer.noteLast(Finding::GluedPointer);
    m_isPointer = line.level > 0 && !pointerOf(line).isEmpty();
    if (line.level == 1 && m_record.isHeader && isTag(line.tag, "CHAR") && line.value != "UTF-8")
        m_writer.noteLast(Finding::DeclaredEncoding);
}

void Repairer::warnOfRecord(const GedLine &line)
{
    if ((!line.identifier.isEmpty() && !hasSeenForm(line.tag, line.identifier))
        || isHalfIdentifier(line.tag))
        m_writer.noteLast(Finding::IdentifierForm);
    else if ((line.identifier.isEmpty() && !isUsualRecord(line.tag))
             || (isKnownRecord(line.tag) && !isBlank(line.value)))
        m_writer.noteLast(Finding::UnknownRecord);
}

} // namespace

std::optional<qint64> repair(Preparation *preparation, const Options &options,
                             const Progress &progress)
{
    Repairer repairer(preparation, options);
    if (!repairer.run(progress))
        return std::nullopt;
    return repairer.records();
}
