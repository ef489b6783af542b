#ifndef FINDINGS_H
#define FINDINGS_H

// What a preparation can find in a file: faults that it repairs, and things that it only tells.

#include <QList>
#include <QString>
#include <QStringView>

#include <bitset>
#include <optional>

enum class Finding : quint8 {
    // repairs that are made unless they are switched off
    Encoding,
    Layout,
    NoLevel,
    SkippedLevel,
    LoneLine,
    EmptyNote,
    GluedNote,
    Trailer,
    Control,
    // repairs on request
    DeepLevelFolded,
    Identifier,
    // warnings
    Undecoded,
    DeepLevel,
    LongLine,
    CitationLevel,
    InlineMedia,
    IdentifierForm,
    UnknownRecord,
    SmallTag,
    GluedText,
    GluedPointer,
    MisreadLine,
    LostLine,
    DeclaredEncoding,
};
inline constexpr int FindingCount = int(Finding::DeclaredEncoding) + 1;

enum class FindingKind { Repair, RepairOnRequest, Warning };

/// What users read of a finding, in French.
struct FindingType
{
    Finding finding;
    FindingKind kind;
    QString name; // a short word, which --sans takes and the report in JSON has
    QString title; // of a line in a summary
    QString why; // one sentence on what would happen otherwise
};

/// All of them, in the order of the enumeration.
[[nodiscard]] const QList<FindingType> &findingTypes();
[[nodiscard]] const FindingType &findingType(Finding finding);

/// The repair of that name, in capitals or not.
[[nodiscard]] std::optional<Finding> repairFromName(QStringView name);

/// The repairs that are to be made.
class FindingSet
{
public:
    [[nodiscard]] bool contains(Finding finding) const
    {
        return m_findings.test(size_t(finding));
    }
    void set(Finding finding, bool on = true)
    {
        m_findings.set(size_t(finding), on);
    }

private:
    std::bitset<FindingCount> m_findings;
};
[[nodiscard]] FindingSet defaultRepairs();

/// One place where something was found. A million of them must fit in memory: the texts are made
/// when somebody asks for them.
struct Occurrence
{
    // Where its line begins: in the source, -1 for a line that was added; in the copy, -1 for one
    // that was taken away. Both are -1 where it is about the bytes of the whole file.
    qint64 before = -1;
    qint64 after = -1;
    qint32 line = 0; // of the file, counted from 1
    // Which undecoded place; for the whole file, whether a line ended in CR; for the encoding of a
    // line, whether it had a part of a character.
    qint32 detail = 0;
    Finding finding = Finding::Encoding;
    quint8 linesAfter = 1; // how many lines of the copy stand for it
};

struct Preparation;

/// An occurrence as users read it. What is very long is cut, and ends in an ellipsis.
struct OccurrenceText
{
    qint64 line = 0;
    QString before;
    QString after; // several lines are joined with a line feed
    QString why;
};
[[nodiscard]] OccurrenceText textOf(const Occurrence &occurrence, const Preparation &preparation);

#endif // FINDINGS_H
