#include "boxes.h"
#include "document.h"
#include "fenjournal.h"
#include "filedialogs.h"
#include "testmain.h"
#include "window.h"

#include <QAbstractButton>
#include <QCursor>
#include <QFile>
#include <QHash>
#include <QHelpEvent>
#include <QLineEdit>
#include <QProgressBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <functional>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

// The operations, named by the status text while they run.
const QString Load = u"Chargement du fichier GED en cours..."_s;
const QString Fold = u"Reconcaténation des balises en cours..."_s;
const QString Delete = u"Suppression des balises en cours..."_s;
const QString Measure = u"Vérification de la taille des balises en cours..."_s;
const QString Cut = u"Déconcaténation de 25 balises > 255 caractères en cours..."_s;
const QString WriteFile = u"Sauvegarde du fichier "_s;
const QString WriteJournal = u"Sauvegarde du journal "_s;

constexpr int Persons = 200;

/// The lines of the large file, with the continuations as the file has them if \p asSaved, else
/// folded. The occupations and the notes, with the lines below them, can be left out.
QStringList family(bool asSaved, bool occupations = true, bool notes = true)
{
    QStringList lines{u"0 HEAD"_s, u"1 CHAR UTF-8"_s};
    for (int i = 1; i <= Persons; ++i) {
        const QString n = QString::number(i);
        lines += "0 @I"_L1 + n + "@ INDI"_L1;
        lines += u"1 NAME Zoé %1 /DUPRÉ/"_s.arg(n);
        lines += u"1 BIRT"_s;
        lines += "2 DATE "_L1 + QString::number(1700 + i);
        lines += u"2 PLAC Paris %1"_s.arg(n);
        if (occupations)
            lines += "1 OCCU "_L1 + n;
        if (notes) {
            lines += "1 NOTE "_L1 + n;
            lines += u"2 CONT suite de %1"_s.arg(n);
        }
        lines += "1 EVEN "_L1 + n;
        lines += u"2 TYPE civil %1"_s.arg(n);
        if (notes)
            lines += u"2 NOTE de l'évènement %1"_s.arg(n);
        if (i % 8 == 0)
            lines += u"1 TEXT acte %1 : "_s.arg(n) + u"un mot, "_s.repeated(90);
        // Only the last quarter has continuations; folding has passed it when interrupted half-way.
        const bool continued = i > Persons * 3 / 4;
        lines += "1 RESI "_L1 + n + (continued && !asSaved ? u" et suite %1"_s.arg(n) : QString());
        if (continued && asSaved)
            lines += u"2 CONC  et suite %1"_s.arg(n);
    }
    return lines;
}

/// The lines with each CONC folded into the previous line.
QStringList folded(const QStringList &lines)
{
    QStringList result;
    for (const QString &line : lines) {
        if (line.mid(1).startsWith(" CONC "_L1))
            result.last() += line.mid(int(qstrlen("2 CONC ")));
        else
            result += line;
    }
    return result;
}

QStringList withTrailer(const QStringList &lines)
{
    return lines + QStringList{u"0 TRLR"_s};
}

/// A header and \p persons of two lines each; those after \p noted have no note.
QStringList noted(int persons, int noted)
{
    QStringList lines{u"0 HEAD"_s, u"1 CHAR UTF-8"_s};
    for (int i = 1; i <= persons; ++i) {
        lines += u"0 @I%1@ INDI"_s.arg(i);
        if (i <= noted)
            lines += u"1 NOTE %1"_s.arg(i);
    }
    return lines;
}

/// The window with a file to open, and an action in the middle of an operation.
class Interruption : public Session
{
public:
    explicit Interruption(const QStringList &lines, const QByteArray &parameters = {})
        : Session(parameters)
    {
        writeLines(path(), withTrailer(lines));
        window->show();
    }

    /// Triggers the action and gives \p answer in its file dialog.
    void triggerDialog(const QString &action, const QString &answer)
    {
        m_dialogs.emplace(answer);
        trigger(action);
        endDialogs();
    }
    void openFile()
    {
        triggerDialog(u"actionOuvrir"_s, path());
    }
    void save() const
    {
        trigger(u"actionEnregistrerFichier"_s);
    }
    void apply(const QStringList &settings) const
    {
        set(settings);
        find<QAbstractButton>(u"pbApply"_s)->click();
    }

    /// Calls \p action once, from an event that \p operation processes about half-way through.
    void during(const QString &operation, const std::function<void()> &action)
    {
        QObject::connect(progress(), &QProgressBar::valueChanged, window.get(),
                         [this, operation, action](int value) {
                             if (m_posted || !status().startsWith(operation)
                                 || value < progress()->maximum() / 2) {
                                 return;
                             }
                             m_posted = true;
                             const auto deliver = [this, operation, action] {
                                 // The operation is still running.
                                 interrupted = status().startsWith(operation) && !m_operationEnded;
                                 endDialogs(); // those of the operation have been answered
                                 action();
                             };
                             QMetaObject::invokeMethod(window.get(), deliver, Qt::QueuedConnection);
                         });
    }
    /// Calls \p action once, at the event of the index \p event among those of \p operation;
    /// without one only counts them.
    void atEvent(const QString &operation, int event, const std::function<void()> &action)
    {
        QObject::connect(progress(), &QProgressBar::valueChanged, window.get(),
                         [this, operation, event, action] {
                             if (m_posted || !status().startsWith(operation) || events++ != event)
                                 return;
                             m_posted = true;
                             const auto deliver = [this, operation, action] {
                                 interrupted = status().startsWith(operation) && !m_operationEnded;
                                 endDialogs();
                                 action();
                             };
                             QMetaObject::invokeMethod(window.get(), deliver, Qt::QueuedConnection);
                         });
    }
    void run(const std::function<void()> &operation)
    {
        operation();
        m_operationEnded = true;
    }

    AnsweredBoxes boxes;
    int dialogCount = 0;
    int events = 0; // of the operation of atEvent()
    bool interrupted = false;

private:
    void endDialogs()
    {
        if (m_dialogs)
            dialogCount += m_dialogs->count();
        m_dialogs.reset();
    }

    std::optional<AnsweredFileDialogs> m_dialogs;
    bool m_posted = false;
    bool m_operationEnded = false;
};

/// Keeps the status text each time the mouse enters the watched widget.
class EnterWatcher : public QObject
{
public:
    explicit EnterWatcher(std::function<QString()> status) : m_status(std::move(status)) { }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Enter)
            seen += m_status();
        return false;
    }

    QStringList seen;

private:
    std::function<QString()> m_status;
};

/// One kind of work that processes events, on a file that is just large enough for three of them.
struct Phase
{
    const char *name;
    QString status;
    QStringList lines;
    QStringList settings; // of the run; without any the phase is no operation of the form
    QString filter = {};
};

/// The file of a phase: \p count times the lines \p repeated, "%1" in them being the number, in the
/// place of their kind, among records that give every operation something to do.
QStringList phaseFile(int count, const QStringList &persons, const QStringList &sources = {},
                      const QStringList &medias = {})
{
    const auto numbered = [count](const QStringList &lines) {
        QStringList all;
        for (int i = 3; i < count + 3; ++i) {
            for (QString line : lines)
                all += line.replace("%1"_L1, QString::number(i));
        }
        return all;
    };
    return QStringList{u"0 HEAD"_s,          u"1 CHAR UTF-8"_s,   u"0 @I1@ INDI"_s,
                       u"1 NAME Jean/UN/"_s, u"1 BIRT"_s,         u"2 DATE 1850"_s,
                       u"2 SOUR @S1@"_s,     u"1 OCCU meunier"_s, u"1 NOTE http://exemple.fr"_s,
                       u"2 CONC /page"_s,    u"1 DEAT"_s,         u"2 DATE 1850"_s,
                       u"2 SOUR @S1@"_s}
         + numbered(persons)
         + QStringList{u"0 @S1@ SOUR"_s, u"1 DATE 1860"_s, u"1 OBJE @O1@"_s, u"0 @S2@ SOUR"_s,
                       u"1 TITL b"_s}
         + numbered(sources) + QStringList{u"0 @O1@ OBJE"_s, u"1 FILE medias/a.jpg"_s}
         + numbered(medias);
}

QList<Phase> phases()
{
    const QStringList person{u"0 @I%1@ INDI"_s, u"1 NAME Luc/N%1/"_s, u"1 NOTE a"_s, u"2 CONC b"_s};
    const QStringList spacing{u"cbEspacer"_s};
    return {
        {"load", Load, phaseFile(75, person), {}},
        {"folding", Fold, phaseFile(75, person), spacing},
        {"cutting",
         u"Déconcaténation de 31 balises > 255 caractères en cours..."_s,
         phaseFile(31, {u"0 @I%1@ INDI"_s, u"1 NOTE %1 "_s + u"un mot, "_s.repeated(40)}),
         {}},
        {"writing", WriteFile, phaseFile(205, {u"0 @I%1@ INDI"_s, u"1 NOTE %1"_s}), {}},
        {"journal file", WriteJournal, phaseFile(205, {u"0 @I%1@ INDI"_s, u"1 RESI %1"_s}), {}},
        {"spacing", u"Espacement des noms en cours..."_s, phaseFile(100, person), spacing},
        {"deletion",
         Delete,
         phaseFile(75, {u"0 @I%1@ INDI"_s, u"1 NAME Luc/N%1/"_s, u"1 NOTE a"_s, u"2 CONT b"_s}),
         {u"gbDelTags"_s, u"leTagsToDel=NOTE"_s}},
        {"links",
         u"Ajout des URL médias en cours..."_s,
         phaseFile(2, person),
         {u"gbSetURLLinks"_s, u"leStrPlitCsv=,http"_s, u"cbUrlInEvt"_s, u"cbUrlInSour"_s}},
        {"clickable links",
         u"Modification des URL en cours..."_s,
         phaseFile(31, {u"0 @I%1@ INDI"_s, u"1 NOTE http://exemple.fr/%1"_s}),
         {u"gbClickablesLinks"_s, u"rbHtml"_s}},
        {"media paths",
         u"Modification des chemins médias en cours..."_s,
         phaseFile(31, {}, {}, {u"0 @O%1@ OBJE"_s, u"1 FILE medias/%1.jpg"_s}),
         {u"gbReplaceMediaPath"_s, u"leNewMediaPath=photos"_s}},
        {"move",
         u"Déplacement des balises en cours..."_s,
         phaseFile(61, {u"0 @I%1@ INDI"_s, u"1 BIRT"_s, u"2 DATE %1"_s}),
         {u"gbMoveTagContent"_s, u"leTagSour=INDI.BIRT.DATE"_s, u"leTagDest=INDI.BIRT.PLAC"_s,
          u"cbCreateDestTag"_s, u"cbCpSourDestContent"_s}},
        {"replacement",
         u"Remplacement de texte en cours..."_s,
         phaseFile(31, {u"0 @I%1@ INDI"_s, u"1 NOTE ancien %1"_s}),
         {u"gbReplaceString"_s, u"leTextOri=ancien"_s, u"leTextDest=neuf"_s,
          u"leTagToApply=NOTE"_s}},
        {"filter of dates",
         u"Recherche des incohérences sources / évènements"_s,
         phaseFile(75, {u"0 @I%1@ INDI"_s, u"1 BIRT"_s, u"2 DATE 1850"_s, u"2 SOUR @S1@"_s,
                        u"2 SOUR @S1@"_s, u"2 SOUR @S1@"_s, u"2 SOUR @S1@"_s}),
         {},
         u"cbSourceDateDiff"_s},
        {"filter of sources",
         u"Recherche des sources utilisées plusieurs fois"_s,
         phaseFile(305, {}, {u"0 @S%1@ SOUR"_s, u"1 TITL %1"_s}),
         {},
         u"cbSourceMultiUse"_s},
    };
}

/// Does the work of the phase in a session that has come as far.
void startPhase(Interruption *session, const Phase &phase)
{
    if (phase.status == Load)
        session->openFile();
    else if (!phase.settings.isEmpty())
        session->find<QAbstractButton>(u"pbApply"_s)->click();
    else if (!phase.filter.isEmpty())
        session->find<QAbstractButton>(phase.filter)->click();
    else
        session->save();
}

/// What a user can do in the window, each by its name.
QList<std::pair<const char *, std::function<void(Interruption *)>>> userActions()
{
    const auto trigger = [](const QString &action) {
        return [action](Interruption *session) { session->trigger(action); };
    };
    const auto press = [](const QString &button) {
        return [button](Interruption *session) {
            auto *widget = session->find<QAbstractButton>(button);
            if (widget->isEnabled())
                widget->click();
        };
    };
    const auto firstRow = [](Interruption *session) {
        QTreeWidgetItem *persons = session->tree()->topLevelItem(1);
        QTreeWidgetItem *row = persons->childCount() > 0 ? persons->child(0) : persons;
        persons->setExpanded(true);
        row->setExpanded(true);
        session->tree()->scrollToItem(row);
        return session->tree()->visualRect(session->tree()->indexFromItem(row)).center();
    };
    return {
        {"open",
         [](Interruption *session) { session->triggerDialog(u"actionOuvrir"_s, session->path()); }},
        {"save", trigger(u"actionEnregistrerFichier"_s)},
        {"save as",
         [](Interruption *session) {
             session->triggerDialog(u"actionEnregistrerFichier_sous"_s,
                                    session->path(u"autre.ged"_s));
         }},
        {"journal", trigger(u"actionJournal"_s)},
        {"about box", trigger(u"action_propos"_s)},
        {"apply", press(u"pbApply"_s)},
        {"sequence", press(u"pbReadSequence"_s)},
        {"search",
         [](Interruption *session) {
             auto *field = session->find<QLineEdit>(u"leRecherche"_s);
             QTest::keyClicks(field, u"Jean"_s);
             QTest::keyClick(field, Qt::Key_Return);
         }},
        {"filter of dates", press(u"cbSourceDateDiff"_s)},
        {"filter of sources", press(u"cbSourceMultiUse"_s)},
        {"click",
         [firstRow](Interruption *session) {
             const QPoint place = firstRow(session);
             QTest::mouseClick(session->tree()->viewport(), Qt::LeftButton, {}, place);
         }},
        {"keys",
         [](Interruption *session) {
             session->tree()->setFocus();
             for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Asterisk, Qt::Key_Down,
                                       Qt::Key_Right, Qt::Key_End, Qt::Key_Left, Qt::Key_PageUp})
                 QTest::keyClick(session->tree(), key);
         }},
        {"tool tip",
         [firstRow](Interruption *session) {
             QWidget *viewport = session->tree()->viewport();
             const QPoint place = firstRow(session);
             QHelpEvent event(QEvent::ToolTip, place, viewport->mapToGlobal(place));
             QCoreApplication::sendEvent(viewport, &event);
         }},
        {"resize", [](Interruption *session) { session->window->resize(1200, 700); }},
        {"close", [](Interruption *session) { QVERIFY(session->window->close()); }},
    };
}

/// The lines of the live entries in the order of the tree, which is that of the file of a phase.
QStringList liveLines(const Session &session)
{
    QStringList lines;
    const QList<TwItem *> records = recordsIn(*session.tree());
    for (TwItem *record : records)
        lines += record->getGedEntryList();
    return withTrailer(lines);
}

int deletionCount(const QStringList &journal)
{
    return int(journal.filter(u"INFO : Suppression de l'entrée : "_s).size());
}

/// Adds the column "operation" with those that process events while the file is read, reworked and
/// written.
void addOperations()
{
    QTest::addColumn<QString>("operation");

    QTest::newRow("load") << Load;
    QTest::newRow("folding") << Fold;
    QTest::newRow("deletion") << Delete;
    QTest::newRow("measuring") << Measure;
    QTest::newRow("cutting") << Cut;
    QTest::newRow("writing") << WriteFile;
}

} // namespace

/// The window while an operation processes events: what the user can do in the middle of it.
class TstEvents : public QObject
{
    Q_OBJECT

private slots:
    void actionDuringAnOperation_data();
    void actionDuringAnOperation();
    void everyActionAtAnyEvent_data();
    void everyActionAtAnyEvent();
    void inputIsDelivered_data();
    void inputIsDelivered();
    void openDuringALoad_data();
    void openDuringALoad();
    void applyDuringADeletion();
    void saveAsDuringADeletion();
    void editOfTheForm_data();
    void editOfTheForm();
    void closingTheWindow_data();
    void closingTheWindow();

private:
    /// How many events a phase processes when it is left alone, and what the file is afterwards.
    struct Undisturbed
    {
        int events = 0;
        QStringList saved;
    };
    /// Runs the phase with \p action at its event of the index \p event.
    void disturb(const Phase &phase, int event, const std::function<void(Interruption *)> &action,
                 const std::function<void(Interruption *)> &look);
    const Undisturbed &undisturbed(const Phase &phase);

    QHash<QString, Undisturbed> m_undisturbed;
};

void TstEvents::actionDuringAnOperation_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("action");

    const struct
    {
        const char *name;
        QString status;
    } operations[] = {
        {"load", Load},
        {"folding", Fold},
        {"deletion", Delete},
        {"measuring", Measure},
        {"cutting", Cut},
        {"writing", WriteFile},
        {"journal file", WriteJournal},
    };
    for (const auto &operation : operations) {
        for (const char *action :
             {"open", "save", "save as", "apply", "journal", "close", "click", "expand"}) {
            if (operation.status == Load && qstrcmp(action, "open") == 0)
                continue; // has rows of its own
            QTest::addRow("%s during %s", action, operation.name)
                << operation.status << QString::fromLatin1(action);
        }
    }
}

void TstEvents::actionDuringAnOperation()
{
    QFETCH(QString, operation);
    QFETCH(QString, action);

    Interruption session(family(true));
    const bool loading = operation == Load;
    const bool applying = operation == Fold || operation == Delete;
    const QStringList deleteNotes{u"gbDelTags"_s, u"leTagsToDel=NOTE"_s};
    if (!loading) {
        session.openFile();
        if (!applying) {
            // This gives many journal lines and some hidden entries.
            session.apply({u"gbDelTags"_s, u"leTagsToDel=OCCU"_s});
            qDeleteAll(session.journalWindows());
        }
    }
    const int dialogsBefore = session.dialogCount;
    QTreeWidgetItem *clicked = nullptr;

    session.during(operation, [&] {
        if (action == "open"_L1) {
            session.triggerDialog(u"actionOuvrir"_s, session.path());
        } else if (action == "save"_L1) {
            session.save();
        } else if (action == "save as"_L1) {
            session.triggerDialog(u"actionEnregistrerFichier_sous"_s, session.path(u"autre.ged"_s));
        } else if (action == "apply"_L1) {
            session.apply(deleteNotes);
        } else if (action == "journal"_L1) {
            session.trigger(u"actionJournal"_s);
        } else if (action == "close"_L1) {
            QVERIFY(session.window->close());
        } else if (action == "expand"_L1) {
            session.tree()->expandAll();
        } else if (action == "click"_L1) {
            QTreeWidget *tree = session.tree();
            sectionNode(*tree, u"personnes"_s)->setExpanded(true);
            clicked = session.row(u"0 @I4@ INDI"_s);
            clicked->setExpanded(true);
            tree->scrollToItem(clicked);
            QTest::mouseClick(tree->viewport(), Qt::LeftButton, {},
                              tree->visualRect(tree->indexFromItem(clicked)).center());
            QCOMPARE(tree->currentItem(), clicked);
        }
    });
    session.run([&] {
        if (loading)
            session.openFile();
        else if (applying)
            session.apply(deleteNotes);
        else
            session.save();
    });

    QVERIFY(session.interrupted);
    QCOMPARE(session.boxes.texts(), QStringList());
    QVERIFY(!session.progress()->isVisible());
    QCOMPARE(session.window->isVisible(), action != "close"_L1);
    QVERIFY(!session.isEnabled(u"actionOuvrir"_s));
    QVERIFY(session.isEnabled(u"actionEnregistrerFichier"_s));
    // A second load is never offered, and before the first one there is nothing to save or rework.
    const bool saved = !loading && (action == "save"_L1 || action == "save as"_L1);
    const bool applied = !loading && action == "apply"_L1;
    QCOMPARE(session.dialogCount - dialogsBefore,
             (loading ? 1 : 0) + (saved && action == "save as"_L1 ? 1 : 0));
    QCOMPARE(session.journalWindows().size(),
             (applying ? 1 : 0) + (applied ? 1 : 0) + (action == "journal"_L1 ? 1 : 0));
    if (applying || applied) {
        QVERIFY(!session.isChecked(u"gbDelTags"_s));
        QCOMPARE(session.text(u"leTagsToDel"_s), QString());
    }
    if (action == "click"_L1)
        QCOMPARE(session.tree()->currentItem(), clicked);
    if (action == "expand"_L1)
        QVERIFY(sectionNode(*session.tree(), u"personnes"_s)->isExpanded());

    // Each entry has been deleted once, by one run or the other.
    const QStringList journal = session.journal();
    const bool occupations = loading || applying;
    const bool notes = !applying && !applied;
    QCOMPARE(deletionCount(journal), (occupations ? 0 : Persons) + (notes ? 0 : 3 * Persons));
    QCOMPARE(journal.count(u"INFO : Chargement du fichier GED terminé."_s), 1);
    QCOMPARE(journal.filter("INFO : Fichier "_L1 + session.path() + u" sauvegardé."_s).size(),
             (loading || applying ? 0 : 1) + (saved && action == "save"_L1 ? 1 : 0));
    if (saved && action == "save as"_L1)
        QVERIFY(QFile::exists(session.path(u"autre.ged"_s)));

    // Nothing is lost or doubled: the document can be saved and contains each live line.
    const QStringList expected = withTrailer(family(false, occupations, notes));
    if (!loading && !applying && !applied)
        QCOMPARE(folded(readLines(session.path())), expected);
    session.save();
    QCOMPARE(session.boxes.texts(), QStringList());
    const QStringList lines = readLines(session.path());
    QCOMPARE(folded(lines), expected);
    for (const QString &line : lines)
        QVERIFY2(line.size() <= 255, qPrintable(line));
}

void TstEvents::disturb(const Phase &phase, int event,
                        const std::function<void(Interruption *)> &action,
                        const std::function<void(Interruption *)> &look)
{
    const QTemporaryDir folder;
    const QString csv = folder.filePath(u"liens.csv"_s);
    writeLines(csv, QStringList(305, u"a.jpg,http://exemple.fr/a.jpg"_s));
    const QString sequence = besideExecutable(u"SEQUENCE.INI"_s);
    writeBytes(sequence, "separator=|\ndelTags=true|delTagsList=OCCU\nEspacerPrenomNom=true\n");

    Interruption session(phase.lines, "urlFilesIndex=" + csv.toUtf8() + '\n');
    if (phase.status != Load)
        session.openFile();
    if (phase.status == WriteJournal)
        session.apply({u"gbDelTags"_s, u"leTagsToDel=RESI"_s}); // makes a long journal
    session.set(phase.settings);
    session.atEvent(phase.status, event, [&] { action(&session); });
    session.run([&] { startPhase(&session, phase); });
    QCOMPARE(session.boxes.texts(), QStringList());
    QCOMPARE(session.faults(), QStringList());
    look(&session);
    QFile::remove(sequence);
}

const TstEvents::Undisturbed &TstEvents::undisturbed(const Phase &phase)
{
    Undisturbed &known = m_undisturbed[phase.status];
    if (known.saved.isEmpty()) {
        disturb(phase, -1, {}, [&known](Interruption *session) {
            known.events = session->events;
            session->save();
            known.saved = readLines(session->path());
        });
    }
    return known;
}

void TstEvents::everyActionAtAnyEvent_data()
{
    QTest::addColumn<int>("phase");
    QTest::addColumn<int>("action");
    QTest::addColumn<int>("when");

    const QList<Phase> allPhases = phases();
    const auto allActions = userActions();
    for (int phase = 0; phase < int(allPhases.size()); ++phase) {
        for (int action = 0; action < int(allActions.size()); ++action) {
            int when = 0;
            for (const char *name : {"first", "middle", "last"}) {
                QTest::addRow("%s at the %s event of %s", allActions.at(action).first, name,
                              allPhases.at(phase).name)
                    << phase << action << when++;
            }
        }
    }
}

void TstEvents::everyActionAtAnyEvent()
{
    QFETCH(int, phase);
    QFETCH(int, action);
    QFETCH(int, when);

    const Phase busy = phases().at(phase);
    const auto [name, act] = userActions().at(action);
    const Undisturbed &alone = undisturbed(busy);
    QVERIFY2(alone.events >= 3, qPrintable(QString::number(alone.events)));
    const int event = when * (alone.events - 1) / 2;
    const bool reopened = busy.status == Load && qstrcmp(name, "open") == 0;
    const bool reworked = qstrcmp(name, "apply") == 0 || qstrcmp(name, "sequence") == 0;

    disturb(busy, event, act, [&](Interruption *session) {
        QVERIFY(session->interrupted);
        // Whatever has come in between, a save writes what is live.
        session->save();
        QCOMPARE(session->boxes.texts(), QStringList());
        const QStringList saved = readLines(session->path());
        if (reopened)
            return; // the records come in twice, and those of before leave the document
        QCOMPARE(saved, liveLines(*session));
        if (!reworked)
            QCOMPARE(folded(saved), folded(alone.saved));
    });
}

void TstEvents::inputIsDelivered_data()
{
    addOperations();
    QTest::newRow("journal file") << WriteJournal;
}

void TstEvents::inputIsDelivered()
{
    QFETCH(QString, operation);

    Interruption session(family(true));
    if (operation != Load) {
        session.openFile();
        if (operation != Fold && operation != Delete)
            session.apply({u"gbDelTags"_s, u"leTagsToDel=OCCU"_s});
    }
    qDeleteAll(session.journalWindows());

    // The mouse enters the window while it is busy. User input waits until the window processes it,
    // before the operation goes on.
    const QRect place = session.window->frameGeometry();
    QCursor::setPos(place.bottomRight() + QPoint(50, 50));
    QCoreApplication::processEvents();
    EnterWatcher watcher([&session] { return session.status(); });
    session.window->installEventFilter(&watcher);
    bool moved = false;
    connect(session.progress(), &QProgressBar::valueChanged, this, [&] {
        if (moved || !session.status().startsWith(operation))
            return;
        moved = true;
        QCursor::setPos(place.center());
        QCOMPARE(watcher.seen, QStringList());
    });
    if (operation == Load)
        session.openFile();
    else if (operation == Fold || operation == Delete)
        session.apply({u"gbDelTags"_s, u"leTagsToDel=NOTE"_s});
    else
        session.save();

    QVERIFY(moved);
    QCOMPARE(watcher.seen.size(), 1);
    QVERIFY2(watcher.seen.constFirst().startsWith(operation),
             qPrintable(watcher.seen.constFirst()));
}

void TstEvents::openDuringALoad_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QStringList>("nestedJournal");
    QTest::addColumn<QString>("found");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QStringList>("saved");
    QTest::addColumn<QStringList>("boxes");

    // The load is interrupted after line 200, the last one of person 99. The persons read so far
    // leave the document but stay on screen.
    const QStringList all = noted(124, 124);
    const QStringList rest = all.mid(all.indexOf(u"0 @I99@ INDI"_s));
    QTest::newRow("the same file") << u"arbre.ged"_s
                                   << QStringList{u"INFO : Chargement de 251 lignes terminé."_s,
                                                  u"INFO : Chargement du fichier GED terminé."_s,
                                                  u"INFO : 125 entrées trouvées."_s}
                                   << u"151"_s << u"248"_s << all + rest << QStringList{};
    QTest::newRow("another file") << u"autre.ged"_s
                                  << QStringList{u"INFO : Chargement de 5 lignes terminé."_s,
                                                 u"INFO : Chargement du fichier GED terminé."_s,
                                                 u"INFO : 2 entrées trouvées."_s}
                                  << u"28"_s << u"125"_s << noted(1, 1) + rest << QStringList{};
    QTest::newRow("cancelled") << QString()
                               << QStringList{u"ERROR : Chargement du fichier impossible."_s,
                                              u"ERROR : Chargement du fichier GED interrompu."_s}
                               << u"125"_s << u"124"_s << all
                               << QStringList{u"Impossible d'ouvrir le fichier "_s};
}

void TstEvents::openDuringALoad()
{
    QFETCH(QString, answer);
    QFETCH(QStringList, nestedJournal);
    QFETCH(QString, found);
    QFETCH(QString, shown);
    QFETCH(QStringList, saved);
    QFETCH(QStringList, boxes);

    Interruption session(noted(124, 124));
    writeLines(session.path(u"autre.ged"_s), withTrailer(noted(1, 1)));
    const QString path = answer.isEmpty() ? QString() : session.path(answer);
    session.during(Load, [&] { session.triggerDialog(u"actionOuvrir"_s, path); });
    session.run([&] { session.openFile(); });

    QVERIFY(session.interrupted);
    QCOMPARE(session.dialogCount, 2);
    QCOMPARE(session.boxes.texts(), boxes);
    QCOMPARE(session.status(), u"Chargement du fichier GED terminé"_s);
    QVERIFY(!session.isEnabled(u"actionOuvrir"_s));
    QVERIFY(!session.progress()->isVisible());
    QCOMPARE(session.tree()->topLevelItemCount(), 7);
    TwItem *persons = sectionNode(*session.tree(), u"personnes"_s);
    QCOMPARE(session.tree()->indexOfTopLevelItem(persons), 1);
    QCOMPARE(persons->text(1), shown);
    const QStringList begun{
        "INFO : Chargement du fichier "_L1 + session.path(),
        "INFO : Chargement du fichier "_L1 + path,
    };
    const QStringList ended{
        u"INFO : Chargement de 251 lignes terminé."_s,
        u"INFO : Chargement du fichier GED terminé."_s,
        "INFO : "_L1 + found + u" entrées trouvées."_s,
    };
    QCOMPARE(session.journal(), begun + nestedJournal + ended);

    // The document is saved to the file that the last load has read.
    session.save();
    const bool elsewhere = answer == "autre.ged"_L1;
    QCOMPARE(readLines(elsewhere ? path : session.path()), withTrailer(saved));
    if (elsewhere)
        QCOMPARE(readLines(session.path()), withTrailer(noted(124, 124)));
}

void TstEvents::applyDuringADeletion()
{
    Interruption session(noted(149, 149));
    session.openFile();
    QStringList expected =
        session.journal() + QStringList{u"INFO : 0 balises CONC reconcaténées."_s};
    const auto expectDeletions = [&expected](int last, int first) {
        for (int i = last; i >= first; --i) {
            expected += u"INFO : Suppression de l'entrée : INDI.NOTE 1 NOTE %1 (l.%2)"_s.arg(i).arg(
                2 + 2 * i);
        }
    };
    // 200 of the 300 entries have been checked, from the last one backwards.
    expectDeletions(149, 50);
    expected += u"INFO : 0 balises CONC reconcaténées."_s;
    expectDeletions(49, 1);
    expected += u"INFO : 49 suppressions effectuées."_s;
    const QStringList nested = expected;
    expected += u"INFO : 100 suppressions effectuées."_s;

    const QStringList settings{u"gbDelTags"_s, u"leTagsToDel=NOTE"_s};
    session.during(Delete, [&] { session.apply({}); });
    session.run([&] { session.apply(settings); });

    QVERIFY(session.interrupted);
    QCOMPARE(session.journalWindows().size(), 2);
    QCOMPARE(journalIn(session.journalWindows().at(0)), nested);
    QCOMPARE(journalIn(session.journalWindows().at(1)), expected);
    QCOMPARE(session.status(), u"100 balises supprimées."_s);
    session.save();
    QCOMPARE(readLines(session.path()), withTrailer(noted(149, 0)));
}

void TstEvents::saveAsDuringADeletion()
{
    Interruption session(noted(149, 149));
    session.openFile();
    session.during(Delete, [&] {
        session.triggerDialog(u"actionEnregistrerFichier_sous"_s, session.path(u"autre.ged"_s));
    });
    session.run([&] { session.apply({u"gbDelTags"_s, u"leTagsToDel=NOTE"_s}); });

    QVERIFY(session.interrupted);
    QCOMPARE(session.boxes.texts(), QStringList());
    // The other file has the document as it was at that moment; its own file gets all of it later.
    QCOMPARE(readLines(session.path(u"autre.ged"_s)), withTrailer(noted(149, 49)));
    QCOMPARE(readLines(session.path()), withTrailer(noted(149, 149)));
    session.save();
    QCOMPARE(readLines(session.path(u"autre.ged"_s)), withTrailer(noted(149, 49)));
    QCOMPARE(readLines(session.path()), withTrailer(noted(149, 0)));
}

void TstEvents::editOfTheForm_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<QStringList>("edits");
    QTest::addColumn<QStringList>("messages");
    QTest::addColumn<QStringList>("summary");
    QTest::addColumn<int>("deleted");

    const QStringList none{u"INFO : 0 suppressions effectuées."_s};
    const QStringList all{u"INFO : 149 suppressions effectuées."_s};
    const QStringList notes{u"gbDelTags"_s, u"leTagsToDel=NOTE"_s};
    QTest::newRow("a tag is put right")
        << Fold << QStringList{u"gbDelTags"_s, u"leTagsToDel=ZZZ"_s}
        << QStringList{u"leTagsToDel=NOTE"_s} << QStringList{} << all << 149;
    QTest::newRow("a tag is put wrong")
        << Fold << notes << QStringList{u"leTagsToDel=ZZZ"_s} << QStringList{} << none << 0;
    QTest::newRow("a tag is taken away")
        << Fold << notes << QStringList{u"leTagsToDel="_s}
        << QStringList{u"Indiquer la ou les balises à supprimer."_s} << none << 0;
    QTest::newRow("a group is added") << Fold << QStringList{u"leTagsToDel=NOTE"_s}
                                      << QStringList{u"gbDelTags"_s} << QStringList{} << all << 149;
    QTest::newRow("a group is taken away")
        << Fold << notes << QStringList{u"!gbDelTags"_s} << QStringList{} << QStringList{} << 0;
    QTest::newRow("a condition is added")
        << Fold << notes << QStringList{u"cbDelEmptyTags"_s} << QStringList{} << none << 0;
    QTest::newRow("a condition is taken away")
        << Fold << notes + QStringList{u"cbDelEmptyTags"_s} << QStringList{u"!cbDelEmptyTags"_s}
        << QStringList{} << all << 149;
    QTest::newRow("a value is filled in")
        << Fold << notes + QStringList{u"cbDelIfContent"_s} << QStringList{u"leValueToDel=99"_s}
        << QStringList{} << QStringList{u"INFO : 1 suppressions effectuées."_s} << 1;
    QTest::newRow("too late for the step that runs")
        << Delete << notes
        << QStringList{u"leTagsToDel=ZZZ"_s, u"cbDelEmptyTags"_s, u"!gbDelTags"_s} << QStringList{}
        << all << 149;
}

void TstEvents::editOfTheForm()
{
    QFETCH(QString, operation);
    QFETCH(QStringList, settings);
    QFETCH(QStringList, edits);
    QFETCH(QStringList, messages);
    QFETCH(QStringList, summary);
    QFETCH(int, deleted);

    Interruption session(noted(149, 149));
    session.openFile();
    session.during(operation, [&] {
        QVERIFY(session.isEnabled(u"mainGroupBox"_s));
        QVERIFY(session.isEnabled(u"pbApply"_s));
        session.set(edits);
    });
    session.run([&] { session.apply(settings); });

    QVERIFY(session.interrupted);
    QCOMPARE(session.boxes.texts(), messages);
    QCOMPARE(session.journal().filter(u" suppressions effectuées."_s), summary);
    QCOMPARE(deletionCount(session.journal()), deleted);
    // The form is still emptied at the end.
    QVERIFY(!session.isChecked(u"gbDelTags"_s));
    QVERIFY(!session.isChecked(u"cbDelEmptyTags"_s));
    QCOMPARE(session.text(u"leTagsToDel"_s), QString());
    QCOMPARE(session.text(u"leValueToDel"_s), QString());
}

void TstEvents::closingTheWindow_data()
{
    addOperations();
}

void TstEvents::closingTheWindow()
{
    QFETCH(QString, operation);

    Interruption session(family(true));
    const bool loading = operation == Load;
    const bool applying = operation == Fold || operation == Delete;
    if (!loading)
        session.openFile();
    if (!loading && !applying)
        session.apply({}); // folds lines that can then be cut

    // The program's event loop ends when its window is closed, but only after the operation.
    bool ended = false;
    session.during(operation, [&] { QVERIFY(session.window->close()); });
    QTimer::singleShot(0, session.window.get(), [&] {
        session.run([&] {
            if (loading)
                session.openFile();
            else if (applying)
                session.apply({u"gbDelTags"_s, u"leTagsToDel=NOTE"_s});
            else
                session.save();
        });
        ended = true;
    });
    QCOMPARE(QCoreApplication::exec(), 0);

    QVERIFY(session.interrupted);
    QVERIFY(ended);
    QVERIFY(!session.window->isVisible());
    QCOMPARE(session.boxes.texts(), QStringList());
    if (loading || applying) {
        // Closing saves nothing.
        QCOMPARE(readLines(session.path()), withTrailer(family(true)));
    } else {
        QCOMPARE(folded(readLines(session.path())), withTrailer(family(false)));
    }
    if (loading) {
        QCOMPARE(session.journal().constLast(), u"INFO : %1 entrées trouvées."_s.arg(Persons + 1));
    }
    if (applying) {
        QCOMPARE(session.journal().constLast(),
                 u"INFO : %1 suppressions effectuées."_s.arg(3 * Persons));
    }
}

VARLUNE_TEST_MAIN(TstEvents)
#include "tst_events.moc"
