#include "boxes.h"
#include "document.h"
#include "progresslog.h"
#include "testmain.h"
#include "told.h"
#include "window.h"

#include "gedcom.h"
#include "twitem.h"

#include <QLoggingCategory>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTest>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

enum Mode { Text, TextAnyCase, Regex, RegexAnyCase };

/// The arguments of a replacement.
struct Arguments
{
    QString search;
    QString replacement;
    QString tags = {};
    Mode mode = Text;
};

int replaceIn(Document &document, const Arguments &arguments)
{
    const Mode mode = arguments.mode;
    return document.gedcom.searchAndReplace(arguments.search, arguments.replacement, arguments.tags,
                                            mode == Text || mode == Regex,
                                            mode == Regex || mode == RegexAnyCase);
}

/// The journal of a run over entries that are quoted as "'INDI.NAME Jean' par 'Paul' (l.2)".
QStringList replacementJournal(QStringList changes)
{
    for (QString &change : changes)
        change.prepend(u"INFO : Remplacement de "_s);
    return changes + QStringList{u"INFO : %1 remplacements effectués."_s.arg(changes.size())};
}

QString summary(int count)
{
    return u"%1 textes remplacés."_s.arg(count);
}

/// The line numbers of the entries that the journal reports as changed, in order.
QStringList changedLines(const QStringList &journal)
{
    QStringList numbers;
    for (const QString &line : journal) {
        if (line.startsWith("INFO : Remplacement de '"_L1))
            numbers += line.section(" (l."_L1, -1).chopped(1);
    }
    return numbers;
}

/// The tag of an entry, by the expression.
QString plainTag(TwItem *twi)
{
    const QStringList columns = twi->getTwiValuesList();
    for (const QString &column : columns) {
        if (twi->m_rxTag.match(column).hasMatch())
            return column;
    }
    return u"ERREUR"_s;
}

/// The full tag joined with ".", by walking up to its end.
QString plainFullTag(TwItem *twi)
{
    QStringList tags;
    for (; twi && twi->text(0).toInt() >= 0 && plainTag(twi) != "ERREUR"_L1; twi = twi->getParent())
        tags.prepend(plainTag(twi));
    return tags.join(u'.');
}

/// Whether the field of the form selects the entry.
bool isSelected(TwItem *twi, const QString &tags)
{
    if (tags.isEmpty())
        return true;
    const QStringList tagList = tags.split(u';');
    return std::any_of(tagList.begin(), tagList.end(), [twi](const QString &tag) {
        return tag == plainFullTag(twi) || tag == plainTag(twi) || tag.isEmpty();
    });
}

/// The values of the entry and of all below it in the tree, joined.
QString valuesBelow(const QTreeWidgetItem *item)
{
    QString values = item->text(2);
    for (int i = 0; i < item->childCount(); ++i)
        values += valuesBelow(item->child(i));
    return values;
}

/// The added and removed lines, as "+[1 NAME Jean] -[1 NAME Paul]".
QString difference(QStringList before, const QStringList &after)
{
    QStringList parts;
    for (const QString &line : after) {
        if (!before.removeOne(line))
            parts += "+["_L1 + line + u']';
    }
    for (const QString &line : std::as_const(before))
        parts += "-["_L1 + line + u']';
    return parts.join(u' ');
}

} // namespace

Q_DECLARE_METATYPE(Arguments)

namespace {

void addReplacementColumns()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<Arguments>("arguments");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<QStringList>("changes");
}

/// A document before and after a replacement, and the changes as the journal has them.
void replacementRow(const char *name, const QStringList &lines, const Arguments &arguments,
                    const QStringList &expected, const QStringList &changes)
{
    QTest::newRow(name) << lines << arguments << expected << changes;
}

} // namespace

/// Replacing text, plain or by regular expression.
class TstReplacement : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void replaces_data();
    void replaces();
    void fillsEmptyValues_data();
    void fillsEmptyValues();
    void fillsAnEmptyThirdColumn();
    void selects_data();
    void selects();
    void selectsLikeThePlainComparison();
    void renamedRecordCountsBelowAtOnce();
    void invalidExpressions_data();
    void invalidExpressions();
    void endlessMatchIsGivenUp();
    void halvesOfCharacters();
    void deletedEntriesTakeNoPart();
    void secondRun();
    void entryKeepsItsPlace();
    void frame();
    void progress_data();
    void progress();
    void rangeIsThatOfTheLiveEntries();
    void entriesAreListedBeforeTheyAreChanged();
    void barKeepsItsVisibility();
    void unreadableEntries_data();
    void unreadableEntries();
    void unreadableEntriesAreCut_data();
    void unreadableEntriesAreCut();
    void throughTheForm_data();
    void throughTheForm();

private:
    AnsweredBoxes m_boxes; // an unanswered one would block the test for ever
};

void TstReplacement::cleanup()
{
    // The operation never asks anything.
    QCOMPARE(m_boxes.texts(), QStringList());
}

void TstReplacement::replaces_data()
{
    addReplacementColumns();

    // A record of one line, and only this line changes.
    const auto lineRow = [](const char *name, const QString &line, const Arguments &arguments,
                            const QString &expected, const QString &change) {
        const QString root = u"0 @I@ INDI"_s;
        replacementRow(name, {root, line}, arguments, {root, expected}, {change + " (l.2)"_L1});
    };
    const auto nothingRow = [](const char *name, const QString &line, const Arguments &arguments) {
        replacementRow(name, {u"0 @I@ INDI"_s, line}, arguments, {u"0 @I@ INDI"_s, line}, {});
    };

    lineRow("tag before value", u"1 NAME NAME"_s, {u"NAME"_s, u"NOM"_s}, u"1 NOM NAME"_s,
            u"'INDI.NAME NAME' par 'NOM'"_s);
    lineRow("tag before value, the value being left alone", u"1 NAME Jean NAME"_s,
            {u"NAME"_s, u"NICK"_s}, u"1 NICK Jean NAME"_s, u"'INDI.NAME NAME' par 'NICK'"_s);
    lineRow("level before value", u"1 DATE 1901"_s, {u"1"_s, u"2"_s}, u"2 DATE 1901"_s,
            u"'INDI.DATE 1' par '2'"_s);
    lineRow("part of a tag", u"1 NAME Jean"_s, {u"AM"_s, u"ÂM"_s}, u"1 NÂME Jean"_s,
            u"'INDI.NAME NAME' par 'NÂME'"_s);
    lineRow("value", u"1 NAME Jean"_s, {u"Jean"_s, u"Paul"_s}, u"1 NAME Paul"_s,
            u"'INDI.NAME Jean' par 'Paul'"_s);
    lineRow("every occurrence, one line in the journal", u"1 NAME Jean-Jean MARTIN"_s,
            {u"Jean"_s, u"Paul"_s}, u"1 NAME Paul-Paul MARTIN"_s,
            u"'INDI.NAME Jean-Jean MARTIN' par 'Paul-Paul MARTIN'"_s);
    lineRow("all cases", u"1 NAME Jean JEAN"_s, {u"jean"_s, u"Paul"_s, {}, TextAnyCase},
            u"1 NAME Paul Paul"_s, u"'INDI.NAME Jean JEAN' par 'Paul Paul'"_s);
    lineRow("all cases, with an accent", u"1 PLAC ÉVREUX évreux"_s,
            {u"Év"_s, u"X"_s, {}, TextAnyCase}, u"1 PLAC XREUX Xreux"_s,
            u"'INDI.PLAC ÉVREUX évreux' par 'XREUX Xreux'"_s);
    lineRow("all cases, in the tag", u"1 NAME Jean name"_s, {u"name"_s, u"nom"_s, {}, TextAnyCase},
            u"1 nom Jean name"_s, u"'INDI.NAME NAME' par 'nom'"_s);
    lineRow("one case of two", u"1 NAME Jean JEAN"_s, {u"JEAN"_s, u"Paul"_s}, u"1 NAME Jean Paul"_s,
            u"'INDI.NAME Jean JEAN' par 'Jean Paul'"_s);
    nothingRow("another case", u"1 NAME Jean JEAN"_s, {u"jean"_s, u"Paul"_s});
    nothingRow("nothing found", u"1 NAME Jean"_s, {u"Paul"_s, u"Jean"_s});
    nothingRow("text across two columns", u"1 NAME Jean"_s, {u"NAME Jean"_s, u"x"_s});
    nothingRow("text with a blank too many", u"1 NAME Jean"_s, {u"Jean "_s, u"x"_s});
    lineRow("blanks are kept", u"1 NOTE  a  b "_s, {u"  "_s, u" "_s}, u"1 NOTE  a b "_s,
            u"'INDI.NOTE  a  b ' par ' a b '"_s);
    lineRow("occurrences that overlap", u"1 NOTE aaa"_s, {u"aa"_s, u"b"_s}, u"1 NOTE ba"_s,
            u"'INDI.NOTE aaa' par 'ba'"_s);
    lineRow("replacement that holds the text", u"1 NOTE a"_s, {u"a"_s, u"aa"_s}, u"1 NOTE aa"_s,
            u"'INDI.NOTE a' par 'aa'"_s);
    lineRow("replacement by itself counts", u"1 NAME Jean"_s, {u"Jean"_s, u"Jean"_s},
            u"1 NAME Jean"_s, u"'INDI.NAME Jean' par 'Jean'"_s);
    lineRow("replacement by nothing", u"1 NAME Jean Paul"_s, {u"Jean "_s, {}}, u"1 NAME Paul"_s,
            u"'INDI.NAME Jean Paul' par 'Paul'"_s);
    lineRow("emptied value stays a column", u"1 NAME Jean"_s, {u"Jean"_s, {}}, u"1 NAME "_s,
            u"'INDI.NAME Jean' par ''"_s);
    lineRow("emptied tag stays a column", u"1 NAME Jean"_s, {u"NAME"_s, {}}, u"1  Jean"_s,
            u"'INDI.NAME NAME' par ''"_s);
    lineRow("emptied level stays a column", u"1 NAME Jean"_s, {u"1"_s, {}}, u" NAME Jean"_s,
            u"'INDI.NAME 1' par ''"_s);
    lineRow("an entry without a tag is quoted without one", u"1 _FA1 Jean"_s,
            {u"Jean"_s, u"Paul"_s}, u"1 _FA1 Paul"_s, u"' Jean' par 'Paul'"_s);
    lineRow("placeholders are text", u"1 NOTE %1 %2 %L1 %n"_s, {u"%1"_s, u"%2%1%%3"_s},
            u"1 NOTE %2%1%%3 %2 %L1 %n"_s, u"'INDI.NOTE %1 %2 %L1 %n' par '%2%1%%3 %2 %L1 %n'"_s);
    lineRow("markup is text", u"1 NOTE <b>&amp; &</b>"_s, {u"&"_s, u"<i>&\"'</i>"_s},
            u"1 NOTE <b><i>&\"'</i>amp; <i>&\"'</i></b>"_s,
            u"'INDI.NOTE <b>&amp; &</b>' par '<b><i>&\"'</i>amp; <i>&\"'</i></b>'"_s);
    lineRow("right to left", u"1 NAME משה /כהן/"_s, {u"משה"_s, u"دانيال"_s},
            u"1 NAME دانيال /כהן/"_s, u"'INDI.NAME משה /כהן/' par 'دانيال /כהן/'"_s);
    lineRow("two characters for one", u"1 NOTE a😀b😀"_s, {u"😀"_s, u"𝄞"_s}, u"1 NOTE a𝄞b𝄞"_s,
            u"'INDI.NOTE a😀b😀' par 'a𝄞b𝄞'"_s);
    lineRow("characters of an expression are text", u"1 NOTE a.c (abc"_s, {u"a.c ("_s, u"\\1$"_s},
            u"1 NOTE \\1$abc"_s, u"'INDI.NOTE a.c (abc' par '\\1$abc'"_s);
    nothingRow("an expression is text", u"1 NAME Jean"_s, {u"J.an"_s, u"x"_s});
    nothingRow("the empty expression of a value is text", u"1 BIRT"_s, {u"^$"_s, u"x"_s});
    nothingRow("the same in any case", u"1 BIRT"_s, {u"^$"_s, u"x"_s, {}, TextAnyCase});
    lineRow("and is found as such", u"1 NOTE a^$b"_s, {u"^$"_s, u"x"_s}, u"1 NOTE axb"_s,
            u"'INDI.NOTE a^$b' par 'axb'"_s);
    for (const Mode mode : {Text, TextAnyCase}) {
        replacementRow(mode == Text ? "empty text, around every level" : "the same in any case",
                       {u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"2 VERS"_s}, {{}, u"D"_s, {}, mode},
                       {u"D0D HEAD"_s, u"D1D CHAR UTF-8"_s, u"D2D VERS"_s},
                       {u"'HEAD 0' par 'D0D' (l.1)"_s, u"'HEAD.CHAR 1' par 'D1D' (l.2)"_s,
                        u"'HEAD.CHAR.VERS 2' par 'D2D' (l.3)"_s});
    }

    const QStringList persons{u"0 @I1@ INDI"_s, u"1 FAMS @I1@"_s, u"0 @I12@ INDI"_s,
                              u"1 ASSO @I1@"_s};
    replacementRow("identifier", persons, {u"@I1@"_s, u"@I7@"_s},
                   {u"0 @I7@ INDI"_s, u"1 FAMS @I7@"_s, u"0 @I12@ INDI"_s, u"1 ASSO @I7@"_s},
                   {u"'INDI @I1@' par '@I7@' (l.1)"_s, u"'INDI.FAMS @I1@' par '@I7@' (l.2)"_s,
                    u"'INDI.ASSO @I1@' par '@I7@' (l.4)"_s});
    replacementRow("tag of a record behind its identifier", persons, {u"INDI"_s, u"PERS"_s},
                   {u"0 @I1@ PERS"_s, u"1 FAMS @I1@"_s, u"0 @I12@ PERS"_s, u"1 ASSO @I1@"_s},
                   {u"'INDI INDI' par 'PERS' (l.1)"_s, u"'INDI INDI' par 'PERS' (l.3)"_s});
    replacementRow("identifier before the tag of the record", {u"0 @INDI@ INDI"_s, u"1 SEX M"_s},
                   {u"INDI"_s, u"I"_s}, {u"0 @I@ INDI"_s, u"1 SEX M"_s},
                   {u"'INDI @INDI@' par '@I@' (l.1)"_s});
    replacementRow("level of a record", {u"0 HEAD"_s, u"1 CHAR 0"_s}, {u"0"_s, u"9"_s},
                   {u"9 HEAD"_s, u"1 CHAR 9"_s},
                   {u"'HEAD 0' par '9' (l.1)"_s, u"'HEAD.CHAR 0' par '9' (l.2)"_s});
    replacementRow("text of a note record", {u"0 @N1@ NOTE texte"_s, u"1 CONT texte"_s},
                   {u"texte"_s, u"mot"_s}, {u"0 @N1@ NOTE mot"_s, u"1 CONT mot"_s},
                   // The text after the tag hides it.
                   {u"' NOTE texte' par 'NOTE mot' (l.1)"_s, u"'CONT texte' par 'mot' (l.2)"_s});
    replacementRow("records of every kind in the order of the file",
                   {u"0 @S1@ SOUR"_s, u"1 TITL a"_s, u"0 @U1@ SUBM"_s, u"1 NAME a"_s,
                    u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"2 PLAC a"_s, u"1 NOTE a"_s},
                   {u"a"_s, u"b"_s},
                   {u"0 @S1@ SOUR"_s, u"1 TITL b"_s, u"0 @U1@ SUBM"_s, u"1 NAME b"_s,
                    u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"2 PLAC b"_s, u"1 NOTE b"_s},
                   {u"'SOUR.TITL a' par 'b' (l.2)"_s, u"'SUBM.NAME a' par 'b' (l.4)"_s,
                    u"'INDI.BIRT.PLAC a' par 'b' (l.7)"_s, u"'INDI.NOTE a' par 'b' (l.8)"_s});
    replacementRow("no record at all", {}, {u"a"_s, u"b"_s}, {}, {});

    lineRow("expression, the text that it found first", u"1 NAME Jean Joan"_s,
            {u"J.an"_s, u"Paul"_s, {}, Regex}, u"1 NAME Paul Joan"_s,
            u"'INDI.NAME Jean Joan' par 'Paul Joan'"_s);
    lineRow("expression, a copy that it would not match", u"1 NAME Jean, Jeanne, Jean"_s,
            {u"^Jean"_s, u"Paul"_s, {}, Regex}, u"1 NAME Paul, Paulne, Paul"_s,
            u"'INDI.NAME Jean, Jeanne, Jean' par 'Paul, Paulne, Paul'"_s);
    lineRow("expression, a copy in another case stays", u"1 NAME Jean JEAN Jean"_s,
            {u"J.an"_s, u"Paul"_s, {}, Regex}, u"1 NAME Paul JEAN Paul"_s,
            u"'INDI.NAME Jean JEAN Jean' par 'Paul JEAN Paul'"_s);
    lineRow("expression in any case, a copy in another case", u"1 NAME Jean JEAN Joan"_s,
            {u"j.an"_s, u"Paul"_s, {}, RegexAnyCase}, u"1 NAME Paul Paul Joan"_s,
            u"'INDI.NAME Jean JEAN Joan' par 'Paul Paul Joan'"_s);
    lineRow("expression that sets its case itself", u"1 NAME Jean JEAN"_s,
            {u"(?i)jean"_s, u"Paul"_s, {}, Regex}, u"1 NAME Paul JEAN"_s,
            u"'INDI.NAME Jean JEAN' par 'Paul JEAN'"_s);
    nothingRow("expression in another case", u"1 NAME Jean"_s, {u"j.an"_s, u"x"_s, {}, Regex});
    nothingRow("expression across two columns", u"1 NAME Jean"_s,
               {u"^1 NAME"_s, u"x"_s, {}, Regex});
    lineRow("expression over a whole column", u"1 NAME Jean"_s, {u"^Jean$"_s, u"x"_s, {}, Regex},
            u"1 NAME x"_s, u"'INDI.NAME Jean' par 'x'"_s);
    lineRow("expression, tag before value", u"1 NAME Jean"_s, {u"Jean|NAME"_s, u"x"_s, {}, Regex},
            u"1 x Jean"_s, u"'INDI.NAME NAME' par 'x'"_s);
    lineRow("expression, level before value", u"1 DATE 1901"_s,
            {uR"((\d+))"_s, uR"(\1X)"_s, u"DATE"_s, Regex}, uR"(\1X DATE 1901)"_s,
            uR"('INDI.DATE 1' par '\1X')"_s);
    lineRow("groups are not expanded", u"1 DATE ABT 1901"_s,
            {uR"((\d\d)(\d\d))"_s, uR"(\1X$1\0&)"_s, {}, Regex}, uR"(1 DATE ABT \1X$1\0&)"_s,
            uR"('INDI.DATE ABT 1901' par 'ABT \1X$1\0&')"_s);
    lineRow("expression with default options, no letter with an accent", u"1 PLAC à Orléans"_s,
            {uR"(Or\w+)"_s, u"X"_s, {}, Regex}, u"1 PLAC à Xéans"_s,
            u"'INDI.PLAC à Orléans' par 'à Xéans'"_s);
    lineRow("expression, a character of two", u"1 NOTE 😀"_s, {u"^[^0-9]$"_s, u"x"_s, {}, Regex},
            u"1 NOTE x"_s, u"'INDI.NOTE 😀' par 'x'"_s);
    lineRow("expression, right to left", u"1 NAME משה /כהן/"_s, {u"/.*/$"_s, u"/לוי/"_s, {}, Regex},
            u"1 NAME משה /לוי/"_s, u"'INDI.NAME משה /כהן/' par 'משה /לוי/'"_s);
    lineRow("expression, placeholders are text", u"1 NOTE %1 %2"_s,
            {u"%[0-9]"_s, u"%3%1"_s, {}, Regex}, u"1 NOTE %3%1 %2"_s,
            u"'INDI.NOTE %1 %2' par '%3%1 %2'"_s);
    lineRow("look behind is no part of what is found", u"1 NOTE ab b"_s,
            {u"(?<=a)b"_s, u"x"_s, {}, Regex}, u"1 NOTE ax x"_s, u"'INDI.NOTE ab b' par 'ax x'"_s);
    lineRow("empty match in a value, around every character", u"1 NAME Jo"_s,
            {u"(?=o)"_s, u"-"_s, {}, Regex}, u"1 NAME -J-o-"_s, u"'INDI.NAME Jo' par '-J-o-'"_s);
    for (const QString &pattern : {u""_s, u"x*"_s, u"^"_s, u"()"_s}) {
        replacementRow(qPrintable(u"empty match, around every level: \"%1\""_s.arg(pattern)),
                       {u"0 HEAD"_s, u"1 CHAR UTF-8"_s}, {pattern, u"D"_s, {}, Regex},
                       {u"D0D HEAD"_s, u"D1D CHAR UTF-8"_s},
                       {u"'HEAD 0' par 'D0D' (l.1)"_s, u"'HEAD.CHAR 1' par 'D1D' (l.2)"_s});
    }
}

void TstReplacement::replaces()
{
    QFETCH(QStringList, lines);
    QFETCH(Arguments, arguments);
    QFETCH(QStringList, expected);
    QFETCH(QStringList, changes);

    QTest::failOnWarning(QRegularExpression(u".*"_s));
    Document document;
    QVERIFY(document.load(lines));
    document.newJournal();
    const int count = int(changes.size());
    QCOMPARE(replaceIn(document, arguments), count);
    QCOMPARE(document.newJournal(), replacementJournal(changes));
    QCOMPARE(document.lines(), expected);
    QCOMPARE(document.status(), summary(count));
}

void TstReplacement::fillsEmptyValues_data()
{
    addReplacementColumns();

    const QStringList births{u"0 HEAD"_s, u"1 DATE"_s, u"0 @I1@ INDI"_s,
                             u"1 BIRT"_s, u"2 DATE"_s, u"2 DATE 1901"_s};
    const QStringList dated{u"0 HEAD"_s, u"1 DATE 1900"_s, u"0 @I1@ INDI"_s,
                            u"1 BIRT"_s, u"2 DATE 1900"_s, u"2 DATE 1901"_s};
    const QStringList datedChanges{u"'HEAD.DATE ' par '1900' (l.2)"_s,
                                   u"'INDI.BIRT.DATE ' par '1900' (l.5)"_s};
    replacementRow("entries of a tag", births, {u"^$"_s, u"1900"_s, u"DATE"_s, Regex}, dated,
                   datedChanges);
    replacementRow("in any case", births, {u"^$"_s, u"1900"_s, u"DATE"_s, RegexAnyCase}, dated,
                   datedChanges);
    replacementRow("entries of a full tag", births,
                   {u"^$"_s, u"1900"_s, u"INDI.BIRT.DATE"_s, Regex},
                   {u"0 HEAD"_s, u"1 DATE"_s, u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"2 DATE 1900"_s,
                    u"2 DATE 1901"_s},
                   {datedChanges.at(1)});
    replacementRow("all entries, a record without identifier too", births,
                   {u"^$"_s, u"x"_s, {}, Regex},
                   {u"0 HEAD x"_s, u"1 DATE x"_s, u"0 @I1@ INDI"_s, u"1 BIRT x"_s, u"2 DATE x"_s,
                    u"2 DATE 1901"_s},
                   {u"'HEAD ' par 'x' (l.1)"_s, u"'HEAD.DATE ' par 'x' (l.2)"_s,
                    u"'INDI.BIRT ' par 'x' (l.4)"_s, u"'INDI.BIRT.DATE ' par 'x' (l.5)"_s});
    replacementRow(
        "by nothing, which makes an empty column", births, {u"^$"_s, {}, u"BIRT"_s, Regex},
        {u"0 HEAD"_s, u"1 DATE"_s, u"0 @I1@ INDI"_s, u"1 BIRT "_s, u"2 DATE"_s, u"2 DATE 1901"_s},
        {u"'INDI.BIRT ' par '' (l.4)"_s});
    replacementRow("by text that is no expression", births,
                   {u"^$"_s, u"\\1 %1 <b>"_s, u"BIRT"_s, Regex},
                   {u"0 HEAD"_s, u"1 DATE"_s, u"0 @I1@ INDI"_s, u"1 BIRT \\1 %1 <b>"_s, u"2 DATE"_s,
                    u"2 DATE 1901"_s},
                   {u"'INDI.BIRT ' par '\\1 %1 <b>' (l.4)"_s});
    replacementRow("a tag that is not there", births, {u"^$"_s, u"x"_s, u"DEAT"_s, Regex}, births,
                   {});
    replacementRow("a value of one blank is one", {u"0 @I1@ INDI"_s, u"1 NOTE  "_s},
                   {u"^$"_s, u"x"_s, {}, Regex}, {u"0 @I1@ INDI"_s, u"1 NOTE  "_s}, {});
    replacementRow("a blank behind the tag is none", {u"0 @I1@ INDI"_s, u"1 NOTE "_s},
                   {u"^$"_s, u"x"_s, {}, Regex}, {u"0 @I1@ INDI"_s, u"1 NOTE x"_s},
                   {u"'INDI.NOTE ' par 'x' (l.2)"_s});
    // The empty tag of such a line is a column of its own and comes first.
    replacementRow("an empty tag", {u"0 @I1@ INDI"_s, u"12 NOTE texte"_s},
                   {u"^$"_s, u"x"_s, {}, Regex}, {u"0 @I1@ INDI"_s, u"1 x NOTE texte"_s},
                   {u"' ' par 'x' (l.2)"_s});
    for (const QString &pattern : {u"^()$"_s, u"^$|^$"_s, u"(?:^$)"_s, u"^ *$"_s, u"^\\z"_s}) {
        replacementRow(qPrintable(u"only that expression does it, not \"%1\""_s.arg(pattern)),
                       births, {pattern, u"x"_s, {}, Regex}, births, {});
    }
}

void TstReplacement::fillsEmptyValues()
{
    replaces();
}

void TstReplacement::fillsAnEmptyThirdColumn()
{
    Document document;
    QVERIFY(document.load({u"0 @I1@ INDI"_s, u"1 NOTE a"_s, u"1 NOTE b"_s}));
    QCOMPARE(replaceIn(document, {u"a"_s, {}}), 1);
    QCOMPARE(document.lines(), QStringList({u"0 @I1@ INDI"_s, u"1 NOTE "_s, u"1 NOTE b"_s}));
    document.newJournal();

    QCOMPARE(replaceIn(document, {u"^$"_s, u"c"_s, {}, Regex}), 1);
    QCOMPARE(document.newJournal(), replacementJournal({u"'INDI.NOTE ' par 'c' (l.2)"_s}));
    QCOMPARE(document.lines(), QStringList({u"0 @I1@ INDI"_s, u"1 NOTE c"_s, u"1 NOTE b"_s}));
}

void TstReplacement::selects_data()
{
    QTest::addColumn<QString>("tags");
    QTest::addColumn<QString>("selected"); // the numbers of the lines

    const QString all = u"1 2 3 4 5 6 7 8 9 10 11 12 13"_s;
    const auto row = [](const char *name, const QString &tags, const QString &selected) {
        QTest::newRow(name) << tags << selected;
    };
    row("no tag is no restriction", {}, all);
    row("bare tag at any depth", u"NAME"_s, u"2 5 10"_s);
    row("full tag", u"INDI.NAME"_s, u"2"_s);
    row("full tag with more above it", u"INDI.ASSO.NAME"_s, u"5"_s);
    row("several tags", u"DATE;INDI.NAME"_s, u"2 7 13"_s);
    row("an entry that two tags name, once", u"NAME;INDI.NAME;NAME"_s, u"2 5 10"_s);
    row("tag of a record", u"INDI"_s, u"1"_s);
    row("a tag behind an underscore is another", u"_NAME"_s, u"3"_s);
    row("full tag of that one", u"INDI._NAME"_s, u"3"_s);
    row("final semicolon selects everything", u"NOTE;"_s, all);
    row("first semicolon", u";NOTE"_s, all);
    row("two semicolons in a row", u"NOTE;;DATE"_s, all);
    row("semicolon alone", u";"_s, all);
    row("star means nothing", u"*"_s, {});
    row("star above", u"*.NAME"_s, {});
    row("star below", u"INDI.*"_s, {});
    row("star between", u"INDI.*.NAME"_s, {});
    row("tail of a full tag", u"ASSO.NAME"_s, {});
    row("head of a full tag", u"INDI.ASS"_s, {});
    row("full tag with a dot in front", u".INDI.NAME"_s, {});
    row("full tag with a dot behind", u"INDI.NAME."_s, {});
    row("a dot in front of a tag", u".NAME"_s, {});
    row("lower case", u"name"_s, {});
    row("blank in front", u" NAME"_s, {});
    row("blank behind", u"NAME "_s, {});
    row("blank alone", u" "_s, {});
    row("dot alone", u"."_s, {});
    row("comma is no separator", u"NAME,DATE"_s, {});
    row("entry without a tag, by the word for it", u"ERREUR"_s, u"8 11"_s);
    row("full tag with that word", u"INDI.ERREUR"_s, {});
    row("below an entry without a tag, the tags from there", u"CONT.DATE"_s, u"13"_s);
    row("the tag that stands there is none", u"_FA1"_s, {});
    row("an identifier is no tag", u"@I1@"_s, {});
}

void TstReplacement::selects()
{
    QFETCH(QString, tags);
    QFETCH(QString, selected);

    // Each line has one hash in its last column.
    const QStringList lines{u"0 @I1@ INDI"_s, u"1 NAME #"_s, u"1 _NAME #"_s,     u"1 ASSO #"_s,
                            u"2 NAME #"_s,    u"1 BIRT #"_s, u"2 DATE #"_s,      u"1 _FA1 #"_s,
                            u"0 @R1@ REPO"_s, u"1 NAME #"_s, u"0 @N1@ NOTE #"_s, u"1 CONT #"_s,
                            u"2 DATE #"_s};
    Document document;
    QVERIFY(document.load(lines));
    // A mark that both records without text contain as well.
    for (const int i : {0, 8})
        document.entry(lines.at(i))->setText(1, document.entry(lines.at(i))->text(1) + u'#');
    document.newJournal();

    const QStringList numbers = selected.split(u' ', Qt::SkipEmptyParts);
    const Mode modes[] = {Text, TextAnyCase, Regex, RegexAnyCase};
    for (const Mode mode : modes) {
        QCOMPARE(replaceIn(document, {u"#"_s, u"#"_s, tags, mode}), int(numbers.size()));
        QCOMPARE(changedLines(document.newJournal()), numbers);
    }
}

void TstReplacement::selectsLikeThePlainComparison()
{
    // Thousands of lines of no interest.
    QLoggingCategory::setFilterRules(u"default.debug=false"_s);
    const auto rules = qScopeGuard([] { QLoggingCategory::setFilterRules({}); });

    QRandomGenerator random(20240229);
    const auto oneOf = [&random](const QStringList &list) {
        return list.at(random.bounded(list.size()));
    };
    const QStringList tags{u"NAME"_s,  u"_NAME"_s, u"XNAME"_s, u"AME"_s,    u"INDI"_s,
                           u"NINDI"_s, u"NOTE"_s,  u"NOTES"_s, u"ERREUR"_s, u"TROPLONG"_s,
                           u"XY"_s,    u"name"_s,  u"_FA1"_s,  u"REUR"_s};
    const QStringList roots{u"0 @I1@ INDI"_s,   u"0 HEAD"_s,      u"0 @N1@ NOTE"_s,
                            u"0 @E1@ ERREUR"_s, u"0 @X@ NAME"_s,  u"0 @N2@ NOTE texte"_s,
                            u"0 NAME"_s,        u"0 @U1@ SUBM"_s, u"0 @X1@ AME"_s};

    for (int turn = 0; turn < 4; ++turn) {
        QStringList lines;
        for (int record = 0; record < 8; ++record) {
            lines += oneOf(roots);
            int level = 0;
            for (int i = 0; i < 12; ++i) {
                level = random.bounded(1, level + 2);
                lines +=
                    u"%1 %2%3"_s.arg(level).arg(oneOf(tags), oneOf({u""_s, u" a"_s, u" NOM"_s}));
            }
        }
        Document document;
        QVERIFY(document.load(lines));
        const QList<TwItem *> entries = document.gedcom.getTabTotalTwItems();
        QCOMPARE(entries.size(), lines.size());
        // What a replacement can do to a level or a tag.
        for (int i = 0; i < 6; ++i) {
            entries.at(random.bounded(entries.size()))
                ->setText(random.bounded(2), oneOf({u""_s, u"X"_s, u"-1"_s, u"7"_s, u"AB CD"_s}));
        }

        QStringList patterns{u""_s, u";"_s, u"*"_s, u"."_s, u"ERREUR"_s, u".ERREUR"_s};
        for (int i = 0; i < 100; ++i) {
            TwItem *twi = entries.at(random.bounded(entries.size()));
            const QString fullTag = plainFullTag(twi);
            const QString cut = fullTag.mid(random.bounded(1, 6));
            QString other = fullTag;
            other.replace(oneOf(tags), oneOf(tags));
            patterns += oneOf({fullTag, fullTag, plainTag(twi), cut, other,
                               fullTag.chopped(random.bounded(int(qMin(3, fullTag.size() + 1)))),
                               fullTag.section(u'.', 1), u'.' + fullTag, fullTag + u'.',
                               fullTag + u'.' + oneOf(tags), oneOf(tags) + u'.' + fullTag,
                               oneOf(tags) + fullTag, u"*."_s + plainTag(twi), fullTag.toLower(),
                               u' ' + fullTag, oneOf(tags)});
        }
        while (patterns.size() < 140)
            patterns += oneOf(patterns) + u';' + oneOf(patterns);
        document.newJournal();

        for (const QString &pattern : std::as_const(patterns)) {
            // Found in every entry, and changes nothing.
            QStringList expected;
            for (TwItem *twi : entries) {
                if (isSelected(twi, pattern))
                    expected += twi->getNumLineGedFile();
            }
            const int count = replaceIn(document, {{}, {}, pattern});
            QVERIFY2(changedLines(document.newJournal()) == expected, qPrintable(pattern));
            QCOMPARE(count, int(expected.size()));
        }
    }
}

void TstReplacement::renamedRecordCountsBelowAtOnce()
{
    Document document;
    QVERIFY(
        document.load({u"0 @I1@ INDI"_s, u"1 NOTE INDI"_s, u"0 @I2@ INDI"_s, u"1 NOTE INDI"_s}));
    document.newJournal();
    // The second record keeps its tag: its identifier is changed instead.
    document.entry(u"0 @I2@ INDI"_s)->setText(1, u"@INDI@"_s);

    QCOMPARE(replaceIn(document, {u"INDI"_s, u"PERS"_s, u"INDI;INDI.NOTE"_s}), 3);
    QCOMPARE(document.lines(), QStringList({u"0 @I1@ PERS"_s, u"1 NOTE INDI"_s, u"0 @PERS@ INDI"_s,
                                            u"1 NOTE PERS"_s}));
    QCOMPARE(document.newJournal(), replacementJournal({u"'INDI INDI' par 'PERS' (l.1)"_s,
                                                        u"'INDI @INDI@' par '@PERS@' (l.3)"_s,
                                                        u"'INDI.NOTE INDI' par 'PERS' (l.4)"_s}));
}

void TstReplacement::invalidExpressions_data()
{
    QTest::addColumn<QString>("pattern");

    const auto row = [](const char *name, const QString &pattern) {
        QTest::newRow(name) << pattern;
    };
    row("open group", u"("_s);
    row("closed group", u")"_s);
    row("open class", u"["_s);
    row("nothing to repeat", u"*"_s);
    row("lone backslash", u"\\"_s);
    row("unknown group", u"(?<a"_s);
    row("reference to no group", u"\\1"_s);
    row("range in the wrong order", u"[z-a]"_s);
    row("counts in the wrong order", u"a{2,1}"_s);
    row("half of a character", u"\xD83D"_s);
}

void TstReplacement::invalidExpressions()
{
    QFETCH(QString, pattern);

    QTest::failOnWarning(QRegularExpression(u".*"_s));
    // The value contains the text of the pattern, which is not taken as plain text.
    const QStringList lines{u"0 @I1@ INDI"_s, u"1 NOTE (a)[z-a]*a{2,1}\\1(?<a"_s, u"1 BIRT"_s};
    Document document;
    QVERIFY(document.load(lines));
    document.newJournal();
    for (const Mode mode : {Regex, RegexAnyCase}) {
        for (const QString &tags : {u""_s, u"NOTE"_s}) {
            QCOMPARE(replaceIn(document, {pattern, u"x"_s, tags, mode}), 0);
            QCOMPARE(document.newJournal(), replacementJournal({}));
            QCOMPARE(document.status(), summary(0));
            QCOMPARE(document.lines(), lines);
        }
    }
    // The other mode never compiles it.
    QCOMPARE(replaceIn(document, {pattern, pattern, u"BIRT"_s}), 0);
    QCOMPARE(document.newJournal(), replacementJournal({}));
}

void TstReplacement::endlessMatchIsGivenUp()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    const QStringList lines{u"0 @I1@ INDI"_s, "1 NOTE "_L1 + QString(5000, u'a') + u'b',
                            u"1 NOTE aaa"_s};
    Document document;
    QVERIFY(document.load(lines));
    document.newJournal();
    QCOMPARE(replaceIn(document, {u"^(a+)+$"_s, u"x"_s, {}, Regex}), 1);
    QCOMPARE(document.newJournal(), replacementJournal({u"'INDI.NOTE aaa' par 'x' (l.3)"_s}));
    QCOMPARE(document.lines(), QStringList({lines.at(0), lines.at(1), u"1 NOTE x"_s}));
    QCOMPARE(document.status(), summary(1));
}

void TstReplacement::halvesOfCharacters()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    const QString half = u"\xDE00"_s;
    Document document;
    QVERIFY(document.load({u"0 @I1@ INDI"_s, u"1 NOTE a😀b"_s, u"1 NAME ab"_s}));
    TwItem *note = document.entry(u"1 NOTE a😀b"_s);
    document.newJournal();

    QCOMPARE(replaceIn(document, {u"\xD83D"_s, {}}), 1);
    QCOMPARE(note->text(2), u'a' + half + u'b');
    const QString journal = document.gedcom.getJournal();
    QVERIFY(journal.contains(u" - INFO : Remplacement de 'INDI.NOTE a😀b' par 'a"_s + half
                             + u"b' (l.2)\r\n"_s));
    // No expression matches such a text; other columns and entries are matched as usual.
    QCOMPARE(replaceIn(document, {u"a"_s, u"A"_s, {}, Regex}), 1);
    QCOMPARE(document.lines(),
             QStringList({u"0 @I1@ INDI"_s, u"1 NOTE a"_s + half + u'b', u"1 NAME Ab"_s}));
    QCOMPARE(replaceIn(document, {u"T"_s, u"t"_s, {}, Regex}), 1);
    QCOMPARE(note->text(1), u"NOtE"_s);
    // Plain text next to it is found.
    QCOMPARE(replaceIn(document, {u"b"_s, half}), 2);
    QCOMPARE(note->text(2), u'a' + half + half);
    QCOMPARE(replaceIn(document, {half, u"c"_s}), 2);
    QCOMPARE(document.lines(), QStringList({u"0 @I1@ INDI"_s, u"1 NOtE acc"_s, u"1 NAME Ac"_s}));
}

void TstReplacement::deletedEntriesTakeNoPart()
{
    Document document;
    QVERIFY(document.load({u"0 @I1@ INDI"_s, u"1 NOTE a"_s, u"2 CONT a"_s, u"1 NOTE aa"_s,
                           u"0 @I2@ INDI"_s, u"1 NAME a"_s}));
    TwItem *note = document.entry(u"1 NOTE a"_s);
    TwItem *name = document.entry(u"1 NAME a"_s);
    note->setDelete(true);
    document.entry(u"0 @I2@ INDI"_s)->setDelete(true);
    document.newJournal();

    // A live entry below a deleted one, other than a record, is still written and changed.
    QCOMPARE(replaceIn(document, {u"a"_s, u"b"_s}), 2);
    QCOMPARE(document.newJournal(), replacementJournal({u"'INDI.NOTE.CONT a' par 'b' (l.3)"_s,
                                                        u"'INDI.NOTE aa' par 'bb' (l.4)"_s}));
    QCOMPARE(document.lines(), QStringList({u"0 @I1@ INDI"_s, u"2 CONT b"_s, u"1 NOTE bb"_s}));
    QCOMPARE(note->text(2), u"a"_s);
    QCOMPARE(name->text(2), u"a"_s);
}

void TstReplacement::secondRun()
{
    Document document;
    QVERIFY(document.load({u"0 @I1@ INDI"_s, u"1 NOTE aa"_s}));
    QCOMPARE(replaceIn(document, {u"a"_s, u"b"_s}), 1);
    document.newJournal();
    QCOMPARE(replaceIn(document, {u"a"_s, u"b"_s}), 0);
    QCOMPARE(document.newJournal(), replacementJournal({}));
    QCOMPARE(document.status(), summary(0));
    QCOMPARE(document.lines(), QStringList({u"0 @I1@ INDI"_s, u"1 NOTE bb"_s}));
}

void TstReplacement::entryKeepsItsPlace()
{
    Document document;
    QVERIFY(document.load({u"0 @I1@ INDI"_s, u"1 NOTE a"_s, u"2 CONT b"_s}));
    TwItem *root = document.entry(u"0 @I1@ INDI"_s);
    TwItem *note = document.entry(u"1 NOTE a"_s);
    TwItem *cont = document.entry(u"2 CONT b"_s);
    root->setExpanded(true);
    // The level changes; the tree does not.
    QCOMPARE(replaceIn(document, {u"1"_s, u"2"_s, u"NOTE"_s}), 1);
    QCOMPARE(replaceIn(document, {u"2"_s, u"1"_s, u"CONT"_s}), 1);
    QCOMPARE(document.lines(), QStringList({u"0 @I1@ INDI"_s, u"2 NOTE a"_s, u"1 CONT b"_s}));
    QCOMPARE(note->getParent(), root);
    QCOMPARE(cont->getParent(), note);
    QCOMPARE(root->getTabTwiChilds(false), QList<TwItem *>({note, cont}));
    QCOMPARE(note->getNumLineGedFile(), u"2"_s);
    QCOMPARE(note->toolTip(0), u"ligne 2"_s);
    for (TwItem *twi : {root, note, cont}) {
        QVERIFY(!twi->isHidden());
        QVERIFY(!twi->isToDelete());
    }
    QVERIFY(root->isExpanded());
}

void TstReplacement::frame()
{
    Document document;
    QStringList lines{u"0 HEAD"_s};
    while (lines.size() < 25)
        lines += u"1 NOTE a"_s;
    QVERIFY(document.load(lines));
    Told told(&document);
    told.inDetail();
    QCOMPARE(replaceIn(document, {u"a"_s, u"b"_s}), 24);

    QStringList changes;
    for (int line = 2; line <= 25; ++line)
        changes += u"'HEAD.NOTE a' par 'b' (l.%1)"_s.arg(line);
    const QStringList journal = replacementJournal(changes);
    const QStringList start{u"debug: ON searchAndReplace"_s,
                            u"bar at -1 of 26"_s, // the range is still that of the load
                            u"status: Remplacement de texte en cours..."_s, u"bar at -1 of 26"_s};
    const QStringList end{"status: "_L1 + summary(24), u"bar at 20 of 25"_s,
                          u"debug: OF searchAndReplace"_s, u"bar at 20 of 25"_s};
    QCOMPARE(told.take(),
             start + withMoves(journal, {{9, u"10 of 25"_s}, {19, u"20 of 25"_s}}) + end);
    QCOMPARE(document.progress.minimum(), 0);
    QCOMPARE(document.progress.value(), -1);
}

void TstReplacement::progress_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<QString>("tags");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("empty document") << 0 << u""_s << QStringList();
    QTest::newRow("nine entries") << 9 << u""_s << QStringList();
    QTest::newRow("ten entries") << 10 << u""_s << QStringList{u"10 of 10"_s, u"events at 10"_s};
    const QStringList twice{u"10 of 29"_s, u"events at 10"_s, u"20 of 29"_s, u"events at 20"_s};
    QTest::newRow("two periods") << 29 << u""_s << twice;
    QTest::newRow("two periods, entries that are not selected count") << 29 << u"DATE"_s << twice;
    QTest::newRow("three periods")
        << 30 << u""_s << QStringList{u"10 of 30"_s,     u"events at 10"_s, u"20 of 30"_s,
                                      u"events at 20"_s, u"30 of 30"_s,     u"events at 30"_s};
}

void TstReplacement::progress()
{
    QFETCH(int, size);
    QFETCH(QString, tags);
    QFETCH(QStringList, expected);

    // Every third entry is changed; all count for the bar.
    QStringList lines;
    while (lines.size() < size)
        lines += lines.isEmpty() ? u"0 HEAD"_s : lines.size() % 3 == 2 ? u"1 NOTE a"_s : u"1 SEX"_s;
    Document document;
    QVERIFY(document.load(lines));
    const ProgressLog log(&document.progress);
    QCOMPARE(replaceIn(document, {u"a"_s, u"b"_s, tags}), tags.isEmpty() ? size / 3 : 0);
    QCOMPARE(log.entries(), expected);
    QCOMPARE(document.progress.minimum(), 0);
    QCOMPARE(document.progress.maximum(), size);
    QCOMPARE(document.progress.value(), -1);
}

void TstReplacement::rangeIsThatOfTheLiveEntries()
{
    Document document;
    QVERIFY(document.load(
        {u"0 @I1@ INDI"_s, u"1 NOTE a"_s, u"1 NOTE b"_s, u"0 @I2@ INDI"_s, u"1 NOTE c"_s}));
    replaceIn(document, {u"a"_s, u"b"_s});
    QCOMPARE(document.progress.maximum(), 5);
    document.entry(u"1 NOTE b"_s)->setDelete(true);
    document.entry(u"0 @I2@ INDI"_s)->setDelete(true);
    replaceIn(document, {u"a"_s, u"b"_s});
    QCOMPARE(document.progress.maximum(), 2);
}

void TstReplacement::entriesAreListedBeforeTheyAreChanged()
{
    Document document;
    QStringList lines{u"0 HEAD"_s};
    while (lines.size() < 11)
        lines += u"1 NOTE a"_s;
    QVERIFY(document.load(lines + QStringList{u"1 NOTE fin a"_s}));
    TwItem *last = document.entry(u"1 NOTE fin a"_s);
    document.newJournal();
    connect(&document.progress, &QProgressBar::valueChanged, this, [this, last] {
        QMetaObject::invokeMethod(
            this, [last] { last->setDelete(true); }, Qt::QueuedConnection);
    });
    QCOMPARE(replaceIn(document, {u"a"_s, u"b"_s}), 11);
    QVERIFY(last->isToDelete());
    QCOMPARE(last->text(2), u"fin b"_s);
    QCOMPARE(document.newJournal().at(10),
             u"INFO : Remplacement de 'HEAD.NOTE fin a' par 'fin b' (l.12)"_s);
}

void TstReplacement::barKeepsItsVisibility()
{
    Document document;
    QVERIFY(document.load({u"0 @I1@ INDI"_s, u"1 NOTE a"_s}));
    replaceIn(document, {u"a"_s, u"b"_s});
    QVERIFY(!document.progress.isVisible());
    document.progress.show();
    replaceIn(document, {u"b"_s, u"a"_s});
    QVERIFY(document.progress.isVisible());
}

void TstReplacement::unreadableEntries_data()
{
    QTest::addColumn<QList<Arguments>>("replacements");
    QTest::addColumn<QStringList>("outcomes");

    const auto row = [](const char *name, const QList<Arguments> &replacements,
                        const QStringList &outcomes) {
        QTest::newRow(name) << replacements << outcomes;
    };
    const QString everyLevel = u"^\\d$"_s;
    row("nothing made unreadable", {},
        {
            u"spaced 1 +[1 NAME Jean /MARTIN/] -[1 NAME Jean/MARTIN/]"_s,
            u"folded 1 +[1 NOTE http://a.fr/bc] -[1 NOTE http://a.fr/b] -[2 CONC c]"_s,
            u"deleted 2 -[1 NOTE http://a.fr/b] -[2 CONC c]"_s,
            u"moved 1 +[2 SOUR Jean/MARTIN/] -[1 NAME Jean/MARTIN/]"_s,
            u"media 1 +[1 FILE p/a.jpg] -[1 FILE m/a.jpg]"_s,
            u"linked 1 +[1 NOTE [http://a.fr/b](http://a.fr/b)] -[1 NOTE http://a.fr/b]"_s,
            u"filled 1 +[1 BIRT x] -[1 BIRT]"_s,
        });
    row("levels that are letters", {{everyLevel, u"X"_s, {}, Regex}},
        {
            u"spaced 0 "_s,
            u"folded 1 +[X NOTE http://a.fr/bc] -[X NOTE http://a.fr/b] -[X CONC c]"_s,
            u"deleted 2 -[X NOTE http://a.fr/b] -[X CONC c]"_s,
            u"moved 0 "_s,
            u"media 0 "_s,
            u"linked 1 +[X NOTE [http://a.fr/b](http://a.fr/b)] -[X NOTE http://a.fr/b]"_s,
            u"filled 1 +[X BIRT x] -[X BIRT]"_s,
        });
    row("empty levels", {{everyLevel, {}, {}, Regex}},
        {
            u"spaced 0 "_s,
            u"folded 1 +[ NOTE http://a.fr/bc] -[ NOTE http://a.fr/b] -[ CONC c]"_s,
            u"deleted 2 -[ NOTE http://a.fr/b] -[ CONC c]"_s,
            u"moved 0 "_s,
            u"media 0 "_s,
            u"linked 1 +[ NOTE [http://a.fr/b](http://a.fr/b)] -[ NOTE http://a.fr/b]"_s,
            // The empty level comes before the missing value.
            u"filled 8 +[x @I@ INDI] +[x NAME Jean/MARTIN/] +[x NOTE http://a.fr/b] +[x CONC c] "
            u"+[x TEXT long] +[x BIRT] +[x @O1@ OBJE] +[x FILE m/a.jpg] -[ @I@ INDI] "
            u"-[ NAME Jean/MARTIN/] -[ NOTE http://a.fr/b] -[ CONC c] -[ TEXT long] -[ BIRT] "
            u"-[ @O1@ OBJE] -[ FILE m/a.jpg]"_s,
        });
    for (const QString &level : {u"-1"_s, u"-2147483648"_s}) {
        row(qPrintable("levels that read "_L1 + level), {{everyLevel, level, {}, Regex}},
            {
                u"spaced 0 "_s,
                u"folded 1 +[%1 NOTE http://a.fr/bc] -[%1 NOTE http://a.fr/b] -[%1 CONC c]"_s.arg(
                    level),
                u"deleted 0 "_s, // full tags end below a negative level
                u"moved 0 "_s,
                u"media 0 "_s,
                u"linked 1 +[%1 NOTE [http://a.fr/b](http://a.fr/b)] -[%1 NOTE http://a.fr/b]"_s
                    .arg(level),
                u"filled 1 +[%1 BIRT x] -[%1 BIRT]"_s.arg(level),
            });
    }
    for (const QString &level : {u"2147483647"_s, u"99999999999"_s}) {
        row(qPrintable("levels that read "_L1 + level), {{everyLevel, level, {}, Regex}},
            {
                u"spaced 0 "_s,
                u"folded 1 +[%1 NOTE http://a.fr/bc] -[%1 NOTE http://a.fr/b] -[%1 CONC c]"_s.arg(
                    level),
                u"deleted 2 -[%1 NOTE http://a.fr/b] -[%1 CONC c]"_s.arg(level),
                u"moved 0 "_s,
                u"media 0 "_s,
                u"linked 1 +[%1 NOTE [http://a.fr/b](http://a.fr/b)] -[%1 NOTE http://a.fr/b]"_s
                    .arg(level),
                u"filled 1 +[%1 BIRT x] -[%1 BIRT]"_s.arg(level),
            });
    }
    row("records at a level below their lines", {{u"0"_s, u"7"_s, u"INDI;OBJE"_s}},
        {
            u"spaced 1 +[1 NAME Jean /MARTIN/] -[1 NAME Jean/MARTIN/]"_s,
            u"folded 1 +[1 NOTE http://a.fr/bc] -[1 NOTE http://a.fr/b] -[2 CONC c]"_s,
            u"deleted 2 -[1 NOTE http://a.fr/b] -[2 CONC c]"_s,
            u"moved 0 "_s,
            u"media 0 "_s,
            u"linked 1 +[1 NOTE [http://a.fr/b](http://a.fr/b)] -[1 NOTE http://a.fr/b]"_s,
            u"filled 1 +[1 BIRT x] -[1 BIRT]"_s,
        });
    row("lines at the level of records", {{u"^[12]$"_s, u"0"_s, {}, Regex}},
        {
            u"spaced 0 "_s,
            u"folded 1 +[0 NOTE http://a.fr/bc] -[0 NOTE http://a.fr/b] -[0 CONC c]"_s,
            u"deleted 2 -[0 NOTE http://a.fr/b] -[0 CONC c]"_s,
            u"moved 0 "_s,
            u"media 0 "_s,
            u"linked 1 +[0 NOTE [http://a.fr/b](http://a.fr/b)] -[0 NOTE http://a.fr/b]"_s,
            u"filled 1 +[0 BIRT x] -[0 BIRT]"_s,
        });
    row("a level that is text", {{u"1"_s, u"1 NAME a/b.c/http://a.fr/"_s, u"NAME;FILE"_s}},
        {
            // The first slash, dot and address are in the level.
            u"spaced 2 +[1 NAME a /b.c/http://a.fr/ NAME Jean/MARTIN/] "
            u"+[1 NAME a /b.c/http://a.fr/ FILE m/a.jpg] "
            u"-[1 NAME a/b.c/http://a.fr/ NAME Jean/MARTIN/] "
            u"-[1 NAME a/b.c/http://a.fr/ FILE m/a.jpg]"_s,
            u"folded 1 +[1 NOTE http://a.fr/bc] -[1 NOTE http://a.fr/b] -[2 CONC c]"_s,
            u"deleted 2 -[1 NOTE http://a.fr/b] -[2 CONC c]"_s,
            u"moved 0 "_s,
            u"media 0 "_s,
            u"linked 3 +[1 NAME a/b.c/[http://a.fr/](http://a.fr/) NAME Jean/MARTIN/] "
            u"+[1 NOTE [http://a.fr/b](http://a.fr/b)] "
            u"+[1 NAME a/b.c/[http://a.fr/](http://a.fr/) FILE m/a.jpg] "
            u"-[1 NAME a/b.c/http://a.fr/ NAME Jean/MARTIN/] -[1 NOTE http://a.fr/b] "
            u"-[1 NAME a/b.c/http://a.fr/ FILE m/a.jpg]"_s,
            u"filled 1 +[1 BIRT x] -[1 BIRT]"_s,
        });
    row("empty tags", {{u"^[A-Z]{4}$"_s, {}, {}, Regex}},
        {
            u"spaced 0 "_s,
            u"folded 0 "_s,
            u"deleted 0 "_s,
            u"moved 0 "_s,
            u"media 0 "_s,
            u"linked 1 +[1  [http://a.fr/b](http://a.fr/b)] -[1  http://a.fr/b]"_s,
            u"filled 8 +[0 @I@ x] +[1 x Jean/MARTIN/] +[1 x http://a.fr/b] +[2 x c] +[1 x long] "
            u"+[1 x] +[0 @O1@ x] +[1 x m/a.jpg] -[0 @I@ ] -[1  Jean/MARTIN/] -[1  http://a.fr/b] "
            u"-[2  c] -[1  long] -[1 ] -[0 @O1@ ] -[1  m/a.jpg]"_s,
        });
    const Arguments emptyColumn{u"^.+$"_s, {}, {}, Regex};
    row("everything empty", {emptyColumn, emptyColumn, emptyColumn},
        {
            u"spaced 0 "_s,
            u"folded 0 "_s,
            u"deleted 0 "_s,
            u"moved 0 "_s,
            u"media 0 "_s,
            u"linked 0 "_s,
            u"filled 8 +[x  ] +[x  ] +[x  ] +[x  ] +[x  ] +[x ] +[x  ] +[x  ] "
            u"-[  ] -[  ] -[  ] -[  ] -[  ] -[ ] -[  ] -[  ]"_s,
        });
}

void TstReplacement::unreadableEntries()
{
    QFETCH(QList<Arguments>, replacements);
    QFETCH(QStringList, outcomes);

    const auto delNotes = [](Document &document) {
        return document.gedcom.delListTag({u"INDI.NOTE"_s}, false, false, false, false, {});
    };
    const auto moveNames = [](Document &document) {
        return document.gedcom.moveTagContent(u"INDI.NAME"_s, u"INDI.NOTE.SOUR"_s, true, true,
                                              true);
    };
    const QList<std::pair<QString, std::function<int(Document &)>>> operations{
        {u"spaced"_s, [](Document &document) { return document.gedcom.setSpaceNames(); }},
        {u"folded"_s, [](Document &document) { return document.gedcom.unConc(); }},
        {u"deleted"_s, delNotes},
        {u"moved"_s, moveNames},
        {u"media"_s, [](Document &document) { return document.gedcom.setMediaFilePath(u"p/"_s); }},
        {u"linked"_s, [](Document &document) { return document.gedcom.setURLClickable(true, {}); }},
        {u"filled"_s,
         [](Document &document) {
             return replaceIn(document, {u"^$"_s, u"x"_s, {}, Regex});
         }},
    };
    const QStringList lines{
        u"0 @I@ INDI"_s,  u"1 NAME Jean/MARTIN/"_s, u"1 NOTE http://a.fr/b"_s,
        u"2 CONC c"_s,    u"1 TEXT long"_s,         u"1 BIRT"_s,
        u"0 @O1@ OBJE"_s, u"1 FILE m/a.jpg"_s,
    };
    QTest::failOnWarning(QRegularExpression(u".*"_s));

    QStringList actual;
    for (const auto &[name, operation] : operations) {
        Document document;
        QVERIFY(document.load(lines));
        for (const Arguments &arguments : std::as_const(replacements))
            replaceIn(document, arguments);
        const QStringList before = document.lines();
        const int count = operation(document);
        const QStringList after = document.lines();
        actual += u"%1 %2 "_s.arg(name).arg(count) + difference(before, after);

        // Whatever the lines look like, they are saved unchanged.
        QVERIFY(document.gedcom.writeGedFile(document.path()));
        QCOMPARE(readLines(document.path()), after + QStringList{u"0 TRLR"_s});
    }
    QCOMPARE(actual, outcomes);
}

void TstReplacement::unreadableEntriesAreCut_data()
{
    unreadableEntries_data();
}

void TstReplacement::unreadableEntriesAreCut()
{
    QFETCH(QList<Arguments>, replacements);

    QTest::failOnWarning(QRegularExpression(u".*"_s));
    const QString tail(700, u'z');
    Document document;
    QVERIFY(document.load({u"0 @I@ INDI"_s, u"1 NAME Jean"_s, u"1 NOTE "_s + tail,
                           u"2 CONT "_s + tail, u"0 @N1@ NOTE "_s + tail, u"1 CONT "_s + tail}));
    const QList<TwItem *> roots = document.gedcom.getTabTwItemsRoot();
    for (const Arguments &arguments : std::as_const(replacements))
        replaceIn(document, arguments);
    const auto tails = [&roots] {
        qsizetype count = 0;
        for (const TwItem *root : roots)
            count += valuesBelow(root).count(u'z');
        return count;
    };
    const auto before = tails();

    // No text is lost, wherever it ends up.
    document.gedcom.checkOversized();
    QCOMPARE(tails(), before);
    QVERIFY(document.gedcom.writeGedFile(document.path()));
    QCOMPARE(tails(), before);
    QCOMPARE(readLines(document.path()), document.lines() + QStringList{u"0 TRLR"_s});
}

void TstReplacement::throughTheForm_data()
{
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<QStringList>("expected");

    const auto row = [](const char *name, const QStringList &settings, const QString &note,
                        const QString &text) {
        QTest::newRow(name) << settings << QStringList{"1 NOTE "_L1 + note, "1 TEXT "_L1 + text};
    };
    const QString value = u"Jean J.AN jean j.an"_s;
    row("text in any case", {}, u"Jean x;\\1 jean x;\\1"_s, u"Jean x;\\1 jean x;\\1"_s);
    row("text", {u"cbSensible"_s}, u"Jean J.AN jean x;\\1"_s, u"Jean J.AN jean x;\\1"_s);
    row("expression in any case", {u"cbRegex"_s}, u"x;\\1 J.AN x;\\1 j.an"_s,
        u"x;\\1 J.AN x;\\1 j.an"_s);
    row("expression", {u"cbRegex"_s, u"cbSensible"_s}, u"Jean J.AN x;\\1 j.an"_s,
        u"Jean J.AN x;\\1 j.an"_s);
    row("one tag", {u"cbSensible"_s, u"leTagToApply=HEAD.TEXT"_s}, value,
        u"Jean J.AN jean x;\\1"_s);
}

void TstReplacement::throughTheForm()
{
    QFETCH(QStringList, settings);
    QFETCH(QStringList, expected);

    const Session session;
    session.window->show();
    session.load({u"0 HEAD"_s, u"1 NOTE Jean J.AN jean j.an"_s, u"1 TEXT Jean J.AN jean j.an"_s,
                  u"0 TRLR"_s});
    session.apply(QStringList{u"gbReplaceString"_s, u"!cbSensible"_s, u"!cbRegex"_s,
                              u"leTextOri=j.an"_s, u"leTextDest=x;\\1"_s, u"leTagToApply="_s}
                  + settings);
    session.trigger(u"actionEnregistrerFichier"_s);
    QCOMPARE(readLines(session.path()),
             QStringList{u"0 HEAD"_s} + expected + QStringList{u"0 TRLR"_s});
}

VARLUNE_TEST_MAIN(TstReplacement)
#include "tst_replacement.moc"
