#ifndef FORM_H
#define FORM_H

#include "boxes.h"
#include "window.h"

#include <QObject>
#include <QString>
#include <QStringList>

class QWidget;

// The messages of a run about what the form lacks.
inline const QString NoFiles = QStringLiteral(
    "Veuillez sélectionner les fichiers de correspondance avant d'importer les liens médias.");
inline const QString NoCsvSeparator =
    QStringLiteral("Indiquez la chaîne de séparation du fichier de correspondance.");
inline const QString NoPath =
    QStringLiteral("Indiquer le nouveau chemin des médias ou choisissez de supprimer celui-ci.");
inline const QString NoTagToDelete = QStringLiteral("Indiquer la ou les balises à supprimer.");
inline const QString NoText =
    QStringLiteral("Veuillez entrer le texte à rechercher et le texte par lequel le remplacer.");

/// What is checked and filled in the panel of \p window, sorted: "gbDelTags", "leTagsToDel=NOTE".
QStringList formState(const QWidget *window);

/// The window on screen with an open file, and its form as a user fills it. Message boxes are
/// answered.
class Form : public Session
{
public:
    /// \p lines are the file's lines without the trailer.
    explicit Form(const QStringList &lines, const QByteArray &parameters = {});

    [[nodiscard]] QStringList state() const
    {
        return formState(window.get());
    }
    [[nodiscard]] AnsweredBoxes &boxes()
    {
        return m_boxes;
    }
    /// The texts of the boxes.
    [[nodiscard]] QStringList messages() const
    {
        return m_boxes.texts();
    }

    /// The journal since the file was opened.
    [[nodiscard]] QStringList runJournal() const;
    /// The tags of the deleted entries, in the order of the journal: "NOTE SEX".
    [[nodiscard]] QString deletedTags() const;
    /// Their lines in the file.
    [[nodiscard]] QString deletedLines() const;
    /// The chosen correspondence files. No widget shows them, but a run logs each one it loads, up
    /// to the first that is missing. The run empties the form; the link group is checked again.
    [[nodiscard]] QStringList filesImport() const;

private:
    AnsweredBoxes m_boxes;
    qsizetype m_journalSeen = 0;
};

/// Records what changes in the form and what the window shows, in the order in which it happens:
/// "gbDelTags on", "leTagsToDel=NOTE", "bar shown", "status: ...", "box: ...", "journal window".
class Order : public QObject
{
public:
    explicit Order(Form &form);

    QStringList events;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    const QObject *m_bar;
};

#endif // FORM_H
