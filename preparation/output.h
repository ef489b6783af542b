#ifndef OUTPUT_H
#define OUTPUT_H

// What a preparation leaves on disk: the copy, the table of the identifiers, the report. Nothing
// here asks: whether a file may be overwritten is the face's business.

#include <QString>
#include <QStringList>

#include <functional>

class QIODevice;
struct Preparation;

/// "arbre.prepare.ged" beside "arbre.ged".
[[nodiscard]] QString copyPath(const QString &input);

/// "arbre.prepare.identifiants.csv" beside the copy "arbre.prepare.ged".
[[nodiscard]] QString identifiersPath(const QString &copy);

/// The files that saveCopy() writes.
[[nodiscard]] QStringList writtenFiles(const Preparation &preparation, const QString &copy);

/// Whether both are names of one file that exists: a link is another name, too.
[[nodiscard]] bool isSameFile(const QString &path, const QString &other);

/// Writes a file, whole or not at all; what was there before stays until then. \p write returns
/// false if the device does not take it. Returns what is wrong and what to do, or nothing.
[[nodiscard]] QString writeWhole(const QString &path,
                                 const std::function<bool(QIODevice *)> &write);

/// Writes the copy and, if there are renamed identifiers, their table beside it. There is
/// no copy without its table. Never writes to \p input, whatever name \p copy gives it. Returns
/// what is wrong and what to do, or nothing.
[[nodiscard]] QString saveCopy(const Preparation &preparation, const QString &input,
                               const QString &copy);

#endif // OUTPUT_H
