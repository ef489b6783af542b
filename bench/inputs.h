#ifndef INPUTS_H
#define INPUTS_H

#include <QString>

/// What a generated file is like.
enum class Shape {
    Family, ///< persons, families, sources and media; of 100 lines one matches each operation
    People, ///< three lines a person, each of which an operation rewrites
    Media, ///< media records alone
    Linked, ///< a media record, its source and an event that cites it, eight lines in all
    LinkedNotes, ///< the same, each event with a folded note of links already
    OneRecord, ///< one record, all of its lines below it
    Events, ///< one person, all of whose events have a date
    LongLines, ///< one record, each of its lines to be cut
    Citations, ///< sources with ten citations each
};

/// The media of a file of the shape Linked or LinkedNotes.
int linkedMedia(int lines);

/// Writes a file of about \p lines lines to \p path, the same one for the same arguments.
void writeInput(const QString &path, Shape shape, int lines);

/// Writes a correspondence file with \p count names to \p path. In \p name, "%1" stands for the
/// number of a line; the media of the shape Linked are called "acte_%1".
void writeCorrespondences(const QString &path, int count, const QString &name);

#endif // INPUTS_H
