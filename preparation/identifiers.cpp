#include "identifiers.h"

#include "lines.h"

#include <QSet>

#include <algorithm>

namespace {

constexpr qsizetype MaxDigits = 9; // of a number that is kept

/// The letter of a record's identifier.
char letterOf(QByteArrayView tag)
{
    const struct
    {
        const char *tag;
        char letter;
    } letters[] = {{"INDI", 'I'}, {"FAM", 'F'},   {"SOUR", 'S'}, {"OBJE", 'O'}, {"REPO", 'R'},
                   {"NOTE", 'N'}, {"SNOTE", 'N'}, {"SUBM", 'U'}, {"SUBN", 'B'}};
    for (const auto &row : letters) {
        if (isTag(tag, row.tag))
            return row.letter;
    }
    return tag.startsWith("NOTE") ? 'N' : 'X'; // its text may be glued to the tag
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// Whether \p identifier is at-sign, \p letter, number, at-sign.
bool hasForm(QByteArrayView identifier, char letter)
{
    return identifier.size() > 3 && identifier[1] == letter
        && std::all_of(identifier.begin() + 2, identifier.end() - 1, isDigit);
}

/// The digits of an identifier that has some in one place, without zeros in front; else nothing.
QByteArray numberOf(QByteArrayView identifier)
{
    const char *const begin = std::find_if(identifier.begin(), identifier.end(), isDigit);
    const char *const end = std::find_if_not(begin, identifier.end(), isDigit);
    if (std::any_of(end, identifier.end(), isDigit))
        return {};
    QByteArrayView number = identifier.sliced(begin - identifier.begin(), end - begin);
    while (number.startsWith('0'))
        number = number.sliced(1);
    return number.size() > MaxDigits ? QByteArray() : number.toByteArray();
}

struct Record
{
    QByteArrayView identifier;
    char letter;
};

/// What a text has of identifiers.
struct Inventory
{
    QList<QByteArray> cleaned; // lines that had control characters
    QList<Record> records; // each identifier once
    QSet<QByteArrayView> taken; // what no record may be called: others are, or a pointer says so
};

Inventory takeInventory(QByteArrayView source, bool hasCleanLines)
{
    Inventory inventory;
    const auto cleaned = [&](QByteArrayView text) -> QByteArrayView {
        if (!hasCleanLines || !hasControls(text))
            return text;
        return inventory.cleaned.emplaceBack(withoutControls(text));
    };
    QSet<QByteArrayView> known;
    LineReader reader(source);
    while (!reader.atEnd()) {
        const GedLine line = readGedLine(cleaned(reader.readLine()));
        if (line.level == 0 && !line.identifier.isEmpty()) {
            const char letter = letterOf(line.tag);
            if (hasForm(line.identifier, letter))
                inventory.taken.insert(line.identifier);
            else if (!known.contains(line.identifier))
                inventory.records.append({line.identifier, letter});
            known.insert(line.identifier);
        } else if (const QByteArrayView pointer = pointerOf(line); !pointer.isEmpty()) {
            inventory.taken.insert(pointer);
        }
    }
    return inventory;
}

} // namespace

bool hasSeenForm(QByteArrayView tag, QByteArrayView identifier)
{
    const char letter = letterOf(tag);
    return QByteArrayView("IFSOR").indexOf(letter) < 0 || hasForm(identifier, letter);
}

QList<RenamedIdentifier> renameIdentifiers(QByteArrayView source, bool hasCleanLines)
{
    const Inventory inventory = takeInventory(source, hasCleanLines);
    QSet<QByteArray> given;
    const auto isFree = [&](const QByteArray &identifier) {
        return !inventory.taken.contains(identifier) && !given.contains(identifier);
    };
    const auto named = [](char letter, const QByteArray &number) {
        return QByteArray("@") + letter + number + '@';
    };
    QHash<char, int> last; // number given by letter

    QList<RenamedIdentifier> renamed;
    renamed.reserve(inventory.records.size());
    for (const Record &record : inventory.records) {
        const QByteArray number = numberOf(record.identifier);
        QByteArray name = named(record.letter, number);
        while (name.size() == 3 || !isFree(name))
            name = named(record.letter, QByteArray::number(++last[record.letter]));
        given.insert(name);
        renamed.append({record.identifier.toByteArray(), name});
    }
    return renamed;
}
