#include "document.h"
#include "fenjournal.h"
#include "filedialogs.h"
#include "form.h"
#include "markingtranslator.h"
#include "testmain.h"
#include "window.h"

#include <QAbstractButton>
#include <QDir>
#include <QGroupBox>
#include <QProgressBar>
#include <QStatusBar>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString NoFolders =
    u"Veuillez sélectionner les dossiers source et destination des médias à extraire."_s;
const QString NoTags =
    u"Veuillez sélectionner les balises source et destination des balises doublons."_s;
const QString UnequalCount =
    u"Le nombre de balises source et destination en doublon doivent correspondre."_s;
const QString UnequalBase =
    u"Les balises source et destination des doublons doivent être de même type de base."_s;
const QString NoValueToDelete =
    u"Indiquer la valeur à rechercher dans la balise et sous balises."_s;

/// A document with a note in two pieces, and a record without a tag.
const QStringList Family{
    u"0 HEAD"_s,          u"1 CHAR UTF-8"_s, u"0 @I1@ INDI"_s,       u"1 NAME Jean /DUPONT/"_s,
    u"1 NOTE un texte"_s, u"2 CONC  long"_s, u"0 @N1@ NOTE texte"_s, u"1 CONT suite"_s,
};

const QString Folded =
    u"INFO : Balise 'INDI.NOTE.CONC  long (l.6) concaténée dans la balise INDI.NOTE un texte "
    u"long (l.5)"_s;

/// The form, with a correspondence file that can be picked.
class FamilyForm : public Form
{
public:
    explicit FamilyForm(const QStringList &lines = Family) : Form(lines) { }

    /// The settings of Form; "csv" picks the file.
    void set(QStringList settings) const
    {
        const bool picks = settings.removeAll(u"csv"_s) > 0;
        Form::set(settings);
        if (!picks)
            return;
        const QString csv = path(u"liens.csv"_s);
        writeLines(csv, {u"photo.jpg,https://www.dropbox.com/une photo"_s});
        const AnsweredFileDialogs dialogs(csv);
        find<QAbstractButton>(u"pbImportCsvLinks"_s)->click(); // even if it is disabled
        QCOMPARE(dialogs.count(), 1);
    }
};

} // namespace

/// Applying the form: what it asks for first, the order of its groups, and how it is reset. For the
/// form itself see tst_form.
class TstApply : public QObject
{
    Q_OBJECT

private slots:
    void outOfReachBeforeALoad();
    void orderOfARun();
    void stateWhileTheBoxIsOpen();
    void everySelectorOff();
    void everyRunOpensAJournalWindow();
    void usableAfterAMessage();
    void requirements_data();
    void requirements();
    void messagesAreTranslated();
    void cancelledCorrespondenceFile();
    void deletionArguments_data();
    void deletionArguments();
    void groupIsReadWhenItsTurnComes_data();
    void groupIsReadWhenItsTurnComes();
    void orderOfTheReset();
    void keptByTheReset();
    void linkKindsAfterTheReset_data();
    void linkKindsAfterTheReset();
    void mediaPathAfterTheReset_data();
    void mediaPathAfterTheReset();
    void valueFieldAfterTheReset_data();
    void valueFieldAfterTheReset();
};

void TstApply::outOfReachBeforeALoad()
{
    const Session session;
    session.window->show();
    auto *pbApply = session.find<QAbstractButton>(u"pbApply"_s);
    QVERIFY(!session.isEnabled(u"mainGroupBox"_s));
    QVERIFY(!pbApply->isEnabled());
    pbApply->click();
    QCOMPARE(session.journalWindows().size(), 0);

    const FamilyForm form;
    QVERIFY(form.isEnabled(u"pbApply"_s));
}

void TstApply::orderOfARun()
{
    FamilyForm form;
    form.set({u"gbDelTags"_s, u"leTagsToDel="_s, u"leValueToDel=x"_s});
    QVERIFY(!form.progress()->isVisible());

    const Order order(form);
    form.apply();

    QCOMPARE(order.events, (QStringList{
                               u"bar shown"_s,
                               u"status: Reconcaténation des balises en cours..."_s,
                               u"status: 1 balises CONC reconcaténées."_s,
                               "box: "_L1 + NoTagToDelete,
                               u"status: Suppression des balises en cours..."_s,
                               u"status: 2 balises supprimées."_s,
                               u"journal window"_s,
                               u"gbDelTags off"_s,
                               u"leValueToDel="_s,
                               u"leStrPlitCsv="_s,
                               u"bar hidden"_s,
                           }));
    QCOMPARE(form.runJournal(), (QStringList{
                                    Folded,
                                    u"INFO : 1 balises CONC reconcaténées."_s,
                                    u"INFO : Suppression de l'entrée : CONT 1 CONT suite (l.8)"_s,
                                    u"INFO : Suppression de l'entrée :  0 @N1@ NOTE texte (l.7)"_s,
                                    u"INFO : 2 suppressions effectuées."_s,
                                }));
    QVERIFY(!form.progress()->isVisible());
}

void TstApply::stateWhileTheBoxIsOpen()
{
    FamilyForm form;
    form.set({u"gbDelTags"_s, u"cbDelEmptyTags"_s, u"gbReplaceString"_s});
    const QStringList state = form.state();

    form.boxes().setInspector([&form, &state](const QMessageBox *) {
        QVERIFY(form.progress()->isVisible());
        QCOMPARE(form.journalWindows().size(), 0);
        // The folding is done, and the box leaves no trace in the journal.
        QCOMPARE(form.runJournal(),
                 (QStringList{Folded, u"INFO : 1 balises CONC reconcaténées."_s}));
        QCOMPARE(form.state(), state);
    });
    // The box is closed by now, and its operation runs with what the form still contains.
    const auto connection = connect(form.window->statusBar(), &QStatusBar::messageChanged, this,
                                    [&form, &state](const QString &text) {
                                        if (text != "Suppression des balises en cours..."_L1)
                                            return;
                                        QCOMPARE(form.runJournal().size(), 2);
                                        QCOMPARE(form.state(), state);
                                        QVERIFY(form.isEnabled(u"gbDelTags"_s));
                                        QVERIFY(form.isEnabled(u"leTagsToDel"_s));
                                        QVERIFY(form.isEnabled(u"pbApply"_s));
                                    });
    form.apply();
    disconnect(connection);

    QCOMPARE(form.messages(), QStringList{NoTagToDelete});
    QCOMPARE(form.boxes().titles(), QStringList{u"Erreur"_s});
    QVERIFY(form.boxes().allCritical(nullptr));
}

void TstApply::everySelectorOff()
{
    FamilyForm form;
    // Fields of an unchecked group are ignored.
    form.set({u"leTagsToDel=NOTE"_s, u"leTextOri=texte"_s, u"leNewMediaPath=C:\\images"_s});
    const QByteArray before = readBytes(form.path());
    form.apply();

    QCOMPARE(form.messages(), QStringList());
    QCOMPARE(form.runJournal(), (QStringList{Folded, u"INFO : 1 balises CONC reconcaténées."_s}));
    QCOMPARE(form.status(), u"1 balises CONC reconcaténées."_s);
    QCOMPARE(form.journalWindows().size(), 1);
    QVERIFY(form.journalWindows().constFirst()->isVisible());
    QCOMPARE(form.journalWindows().constFirst()->windowTitle(), u"Journal"_s);
    QCOMPARE(journalIn(form.journalWindows().constFirst()), form.journal());
    QVERIFY(!form.progress()->isVisible());
    QCOMPARE(form.state(), QStringList{u"rbMarkdown"_s});

    // A run changes only the tree in memory.
    QCOMPARE(readBytes(form.path()), before);
    QCOMPARE(QDir(form.folder()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{u"arbre.ged"_s});
}

void TstApply::everyRunOpensAJournalWindow()
{
    FamilyForm form;
    form.apply();
    const QStringList afterFirst = form.journal();
    form.set({u"gbDelTags"_s, u"leTagsToDel=NAME"_s});
    form.apply();

    const QList<FenJournal *> windows = form.journalWindows();
    QCOMPARE(windows.size(), 2);
    QCOMPARE(journalIn(windows.at(0)), afterFirst);
    const QStringList secondRun{
        u"INFO : 0 balises CONC reconcaténées."_s,
        u"INFO : Suppression de l'entrée : INDI.NAME 1 NAME Jean /DUPONT/ (l.4)"_s,
        u"INFO : 1 suppressions effectuées."_s,
    };
    QCOMPARE(journalIn(windows.at(1)), afterFirst + secondRun);
}

void TstApply::usableAfterAMessage()
{
    FamilyForm form;
    form.set({u"gbDelTags"_s});
    form.apply();
    QCOMPARE(form.messages(), QStringList{NoTagToDelete});
    QCOMPARE(form.deletedLines(), u"8 7"_s);
    QVERIFY(form.isEnabled(u"pbApply"_s));

    form.set({u"gbDelTags"_s, u"leTagsToDel=NOTE"_s});
    form.apply();
    QCOMPARE(form.messages(), QStringList{NoTagToDelete});
    QCOMPARE(form.deletedLines(), u"8 7 5"_s);
    QVERIFY(form.isEnabled(u"pbApply"_s));
}

void TstApply::requirements_data()
{
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("deleted");

    const auto row = [](const char *name, const QStringList &settings, const QString &message = {},
                        const QString &deleted = u"5"_s) {
        QTest::newRow(name) << settings << message << deleted;
    };
    row("links, no file", {u"gbSetURLLinks"_s}, NoFiles);
    row("links, with a file", {u"gbSetURLLinks"_s, u"csv"_s});
    row("links without a file, deletion without a tag", {u"gbSetURLLinks"_s, u"leTagsToDel="_s},
        NoFiles, u"8 7"_s);
    const QStringList extract{u"gbSetURLLinks"_s, u"csv"_s, u"gbExtractMediasToKeep"_s};
    row("extraction, no folder", extract, NoFolders);
    row("extraction, source only", extract + QStringList{u"leExtractMediasSource=~/medias"_s},
        NoFolders);
    row("extraction, destination only", extract + QStringList{u"leExtractMediasToKeep=~/medias"_s},
        NoFolders);
    row("extraction, both folders", extract
                                        + QStringList{u"leExtractMediasSource=~/medias"_s,
                                                      u"leExtractMediasToKeep=~/medias"_s});
    row("extraction, links off", {u"gbExtractMediasToKeep"_s});
    row("links, no separator", {u"gbSetURLLinks"_s, u"csv"_s, u"leStrPlitCsv="_s}, NoCsvSeparator);
    row("links, a blank as separator", {u"gbSetURLLinks"_s, u"csv"_s, u"leStrPlitCsv= "_s});
    row("no separator, links off", {u"leStrPlitCsv="_s});

    const auto move = [&row](const char *name, const QString &sour, const QString &dest,
                             const QString &message = {}) {
        row(name, {u"gbMoveTagContent"_s, "leTagSour="_L1 + sour, "leTagDest="_L1 + dest}, message);
    };
    move("move, no tag", {}, {}, NoTags);
    move("move, source only", u"INDI.NOTE"_s, {}, NoTags);
    move("move, destination only", {}, u"INDI.NOTE"_s, NoTags);
    move("move, two to one", u"INDI.NOTE;FAM.NOTE"_s, u"INDI.TEXT"_s, UnequalCount);
    move("move, one to two", u"INDI.TEXT"_s, u"INDI.NOTE;FAM.NOTE"_s, UnequalCount);
    move("move, an empty part counts", u"INDI.NOTE;"_s, u"INDI.TEXT"_s, UnequalCount);
    move("move, another base", u"INDI.NOTE"_s, u"FAM.NOTE"_s, UnequalBase);
    move("move, another base in the second pair", u"INDI.NOTE;FAM.NOTE"_s, u"INDI.TEXT;INDI.TEXT"_s,
         UnequalBase);
    move("move, base in lower case", u"indi.NOTE"_s, u"INDI.NOTE"_s, UnequalBase);
    move("move, base behind a blank", u" INDI.NOTE"_s, u"INDI.NOTE"_s, UnequalBase);
    move("move, same bases in pairs", u"INDI.NOTE;FAM.NOTE"_s, u"INDI.TEXT;FAM.TEXT"_s);
    move("move, a blank is a tag", u"INDI.NOTE"_s, u" "_s, UnequalBase);
    move("move, two empty parts are a pair", u"INDI.NOTE;"_s, u"INDI.TEXT;"_s);
    move("move, a base alone", u"INDI"_s, u"INDI.NOTE"_s);
    row("unequal tags, move off", {u"leTagSour=INDI.NOTE"_s, u"leTagDest=FAM.NOTE;X"_s});

    row("media path, none", {u"gbReplaceMediaPath"_s}, NoPath);
    row("media path", {u"gbReplaceMediaPath"_s, u"leNewMediaPath=C:\\images"_s});
    row("media path, a blank", {u"gbReplaceMediaPath"_s, u"leNewMediaPath= "_s});
    row("media path deleted", {u"gbReplaceMediaPath"_s, u"cbDelMediaPath"_s});
    row("media path filled and deleted",
        {u"gbReplaceMediaPath"_s, u"cbDelMediaPath"_s, u"leNewMediaPath=C:/images/"_s});

    row("deletion, no tag", {u"leTagsToDel="_s}, NoTagToDelete, u"8 7"_s);
    row("deletion, a final semicolon", {u"leTagsToDel=NOTE;"_s}, {}, u"8 7 5"_s);
    row("deletion, semicolon alone", {u"leTagsToDel=;"_s}, {}, u"8 7"_s);
    row("deletion, a blank is a tag", {u"leTagsToDel= "_s}, {}, {});
    row("deletion off, nothing filled",
        {u"!gbDelTags"_s, u"leTagsToDel="_s, u"cbDelIfContent"_s, u"leValueToDel="_s}, {}, {});
    row("deletion by content, a blank", {u"cbDelIfContent"_s, u"leValueToDel= "_s});
    row("deletion by content, no value", {u"cbDelIfContent"_s}, NoValueToDelete);
    row("deletion by content", {u"cbDelIfContent"_s, u"leValueToDel=texte"_s});
    row("deletion, regex without content", {u"cbDelIfContentRX"_s});

    row("replacement, no text", {u"gbReplaceString"_s}, NoText);
    row("replacement, new text only", {u"gbReplaceString"_s, u"leTextDest=b"_s}, NoText);
    row("replacement of a blank", {u"gbReplaceString"_s, u"leTextOri= "_s, u"leTextDest= "_s});
    row("replacement by nothing", {u"gbReplaceString"_s, u"leTextOri=zzz"_s});

    row("spacing and links to click have no condition",
        {u"cbEspacer"_s, u"gbClickablesLinks"_s, u"leTagToClickable="_s});

    // At first everything is missing; then it is filled in, in the order of the messages.
    QStringList settings{
        u"gbSetURLLinks"_s,
        u"gbExtractMediasToKeep"_s,
        u"leStrPlitCsv="_s,
        u"gbMoveTagContent"_s,
        u"leTagSour=INDI.NAME;FAM.X"_s,
        u"leTagDest="_s,
        u"gbReplaceMediaPath"_s,
        u"leTagsToDel="_s,
        u"cbDelIfContent"_s,
        u"leValueToDel="_s,
        u"gbReplaceString"_s,
    };
    const struct
    {
        QString message;
        QStringList remedy;
    } steps[] = {
        {NoFiles, {u"csv"_s}},
        {NoFolders, {u"leExtractMediasSource=~/medias"_s, u"leExtractMediasToKeep=~/medias"_s}},
        {NoCsvSeparator, {u"leStrPlitCsv=,"_s}},
        {NoTags, {u"leTagDest=FAM.X"_s}},
        {UnequalCount, {u"leTagDest=FAM.X;INDI.NAME"_s}},
        {UnequalBase, {u"leTagDest=INDI.NICK;FAM.Y"_s}},
        {NoPath, {u"leNewMediaPath=images"_s}},
        {NoTagToDelete, {u"leTagsToDel=NOTE"_s}},
        {NoValueToDelete, {u"leValueToDel=texte"_s}},
        {NoText, {u"leTextOri=zzz"_s}},
        {{}, {}},
    };
    for (const auto &step : steps) {
        const bool notes = settings.contains("leTagsToDel=NOTE"_L1);
        row(qPrintable("missing to the end: " + step.message), settings, step.message,
            notes ? u"5"_s : u"8 7"_s);
        settings += step.remedy;
    }
}

void TstApply::requirements()
{
    QFETCH(QStringList, settings);
    QFETCH(QString, message);
    QFETCH(QString, deleted);

    FamilyForm form;
    QVERIFY(QDir(form.folder()).mkdir(u"medias"_s));
    form.set(QStringList{u"gbDelTags"_s, u"leTagsToDel=NOTE"_s} + settings);
    form.apply();

    QCOMPARE(form.messages(), message.isEmpty() ? QStringList() : QStringList{message});
    QCOMPARE(form.boxes().titles(), message.isEmpty() ? QStringList() : QStringList{u"Erreur"_s});
    QVERIFY(form.boxes().allCritical(nullptr));
    // Whatever the message, the run went on to the end.
    QCOMPARE(form.deletedLines(), deleted);
    QCOMPARE(form.journalWindows().size(), 1);
    QCOMPARE(form.state(), QStringList{u"rbMarkdown"_s});
    QVERIFY(!form.progress()->isVisible());
}

void TstApply::messagesAreTranslated()
{
    FamilyForm form;
    QVERIFY(QDir(form.folder()).mkdir(u"medias"_s));
    form.set({u"gbSetURLLinks"_s, u"gbExtractMediasToKeep"_s, u"gbMoveTagContent"_s,
              u"gbReplaceMediaPath"_s, u"gbDelTags"_s, u"cbDelIfContent"_s, u"gbReplaceString"_s,
              u"leStrPlitCsv="_s, u"cbEspacer"_s});
    // Each remedy leads to the next message. The form is filled again as before the run.
    const QStringList before = form.state();
    const struct
    {
        QString message;
        QStringList remedy;
    } steps[] = {
        {NoFiles, {u"csv"_s}},
        {NoFolders, {u"leExtractMediasSource=~/medias"_s, u"leExtractMediasToKeep=~/medias"_s}},
        {NoCsvSeparator, {u"leStrPlitCsv=,"_s}},
        {NoTags, {u"leTagSour=INDI.X"_s, u"leTagDest=FAM.X;FAM.Y"_s}},
        {UnequalCount, {u"leTagDest=FAM.X"_s}},
        {UnequalBase, {u"leTagDest=INDI.Y"_s}},
        {NoPath, {u"leNewMediaPath=x"_s}},
        {NoTagToDelete, {u"leTagsToDel=ZZZ"_s}},
        {NoValueToDelete, {u"leValueToDel=zzz"_s}},
        {NoText, {}},
    };
    QStringList settings = before;
    settings.removeAll(u"rbMarkdown"_s);
    QStringList expected;
    for (const auto &step : steps) {
        form.set(settings);
        {
            const MarkingTranslator translator;
            form.apply();
        }
        expected += u"[MainWindow]"_s + step.message;
        settings += step.remedy;
    }
    QCOMPARE(form.messages(), expected);
    QCOMPARE(form.boxes().titles().count(u"[MainWindow]Erreur"_s), expected.size());
}

void TstApply::cancelledCorrespondenceFile()
{
    FamilyForm form;
    form.set({u"gbSetURLLinks"_s});
    {
        const AnsweredFileDialogs dialogs{QString()};
        form.find<QAbstractButton>(u"pbImportCsvLinks"_s)->click();
        QCOMPARE(dialogs.count(), 1);
    }
    form.apply();
    QCOMPARE(form.messages(), QStringList{NoFiles});
}

void TstApply::deletionArguments_data()
{
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<QString>("deleted");

    const QString notes = u"7 6 5 4"_s;
    const auto row = [](const char *name, const QStringList &settings, const QString &deleted) {
        QTest::newRow(name) << settings << deleted;
    };
    row("one tag", {}, notes);
    row("two tags", {u"leTagsToDel=NOTE;CHAR"_s}, notes + " 2"_L1);
    row("an empty part is a pattern", {u"leTagsToDel=NOTE;"_s}, "10 9 "_L1 + notes);
    row("parts are not trimmed", {u"leTagsToDel=NOTE; CHAR"_s}, notes);
    row("full tag", {u"leTagsToDel=INDI.NOTE.DATE"_s}, u"6"_s);
    row("empty ones", {u"cbDelEmptyTags"_s}, u"4"_s);
    row("childless ones", {u"cbDelEmptyClilds"_s}, u"7 4"_s);
    row("by content", {u"cbDelIfContent"_s, u"leValueToDel=Paris"_s}, u"7 6 5"_s);
    row("by content, a pattern is a text", {u"cbDelIfContent"_s, u"leValueToDel=P.ris"_s}, {});
    row("by content, regex", {u"cbDelIfContent"_s, u"cbDelIfContentRX"_s, u"leValueToDel=P.ris"_s},
        u"7 6 5"_s);
    row("by content, the value is not trimmed", {u"cbDelIfContent"_s, u"leValueToDel= France"_s},
        u"7"_s);
    row("a value alone", {u"leValueToDel=Paris"_s}, notes);
    row("regex alone", {u"cbDelIfContentRX"_s, u"leValueToDel=Paris"_s}, notes);
    row("all conditions",
        {u"cbDelEmptyTags"_s, u"cbDelEmptyClilds"_s, u"cbDelIfContent"_s, u"leValueToDel=OT"_s},
        u"4"_s);
}

void TstApply::deletionArguments()
{
    QFETCH(QStringList, settings);
    QFETCH(QString, deleted);

    FamilyForm form({
        u"0 HEAD"_s,
        u"1 CHAR UTF-8"_s,
        u"0 @I1@ INDI"_s,
        u"1 NOTE"_s,
        u"1 NOTE texte"_s,
        u"2 DATE Paris"_s,
        u"1 NOTE Paris, France"_s,
        u"1 TEXT P.ris"_s,
        u"0 @N1@ NOTE court"_s,
        u"1 CONT suite"_s,
    });
    form.set(QStringList{u"gbDelTags"_s, u"leTagsToDel=NOTE"_s} + settings);
    form.apply();

    QCOMPARE(form.deletedLines(), deleted);
    QCOMPARE(form.messages(), QStringList());
    QCOMPARE(form.runJournal().constFirst(), u"INFO : 0 balises CONC reconcaténées."_s);
    const qsizetype count = deleted.isEmpty() ? 0 : deleted.count(u' ') + 1;
    QCOMPARE(form.runJournal().constLast(), u"INFO : %1 suppressions effectuées."_s.arg(count));
}

void TstApply::groupIsReadWhenItsTurnComes_data()
{
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<QStringList>("later");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("deleted");

    QTest::newRow("the field that the box asks for")
        << QStringList{u"gbDelTags"_s} << QStringList{u"leTagsToDel=NOTE"_s} << NoTagToDelete
        << u"5"_s;
    QTest::newRow("the group itself")
        << QStringList{u"gbReplaceString"_s} << QStringList{u"gbDelTags"_s, u"leTagsToDel=NAME"_s}
        << NoText << u"4"_s;
    QTest::newRow("a condition") << QStringList{u"gbDelTags"_s, u"leTagsToDel=NOTE;NAME"_s,
                                                u"cbDelIfContent"_s}
                                 << QStringList{u"leValueToDel=DUPONT"_s} << NoValueToDelete
                                 << u"4"_s;
}

void TstApply::groupIsReadWhenItsTurnComes()
{
    QFETCH(QStringList, settings);
    QFETCH(QStringList, later);
    QFETCH(QString, message);
    QFETCH(QString, deleted);

    FamilyForm form;
    form.set(settings);
    form.boxes().setInspector([&form, &later](QMessageBox *) { form.set(later); });
    form.apply();
    QCOMPARE(form.messages(), QStringList{message});
    QCOMPARE(form.deletedLines(), deleted);
}

void TstApply::orderOfTheReset()
{
    FamilyForm form;
    form.set({u"cbEspacer"_s,
              u"leTagsToDel=ZZZ"_s,
              u"cbDelEmptyTags"_s,
              u"cbDelEmptyClilds"_s,
              u"leValueToDel=x"_s,
              u"cbDelIfContentRX"_s,
              u"cbDelIfContent"_s,
              u"gbDelTags"_s,
              u"leStrPlitCsv=x"_s,
              u"cbUrlInEvt"_s,
              u"cbUrlInSour"_s,
              u"cbDelTagObjeFile"_s,
              u"gbExtractMediasToKeep"_s,
              u"leExtractMediasSource=~/x"_s,
              u"leExtractMediasToKeep=~/x"_s,
              u"gbSetURLLinks"_s,
              u"leTagToClickable=ZZZ"_s,
              u"gbClickablesLinks"_s,
              u"leNewMediaPath=x"_s,
              u"cbDelMediaPath"_s,
              u"gbReplaceMediaPath"_s,
              u"leTagSour=ZZZ"_s,
              u"leTagDest=ZZZ"_s,
              u"cbCpSourDestContent"_s,
              u"cbDelTagSour"_s,
              u"cbCreateDestTag"_s,
              u"gbMoveTagContent"_s,
              u"leTextOri=zzz"_s,
              u"leTextDest=zzz"_s,
              u"leTagToApply=ZZZ"_s,
              u"cbRegex"_s,
              u"cbSensible"_s,
              u"gbReplaceString"_s});
    const Order order(form);
    form.apply();

    const QStringList reset{
        u"journal window"_s,
        u"cbEspacer off"_s,
        u"gbDelTags off"_s,
        u"leTagsToDel="_s,
        u"cbDelEmptyTags off"_s,
        u"cbDelEmptyClilds off"_s,
        u"leValueToDel="_s,
        u"cbDelIfContentRX off"_s,
        u"cbDelIfContent off"_s,
        u"leStrPlitCsv="_s,
        u"cbUrlInEvt off"_s,
        // Unchecking the other kind of link checks this one again: the group is still checked.
        u"cbUrlInEvt on"_s,
        u"cbUrlInSour off"_s,
        u"cbDelTagObjeFile off"_s,
        u"gbExtractMediasToKeep off"_s,
        u"leExtractMediasSource="_s,
        u"leExtractMediasToKeep="_s,
        u"gbSetURLLinks off"_s,
        u"gbClickablesLinks off"_s,
        u"leTagToClickable="_s,
        u"gbReplaceMediaPath off"_s,
        u"leNewMediaPath="_s,
        u"cbDelMediaPath off"_s,
        u"leTagSour="_s,
        u"leTagDest="_s,
        u"cbCpSourDestContent off"_s,
        u"cbDelTagSour off"_s,
        u"cbCreateDestTag off"_s,
        u"gbMoveTagContent off"_s,
        u"gbReplaceString off"_s,
        u"leTextOri="_s,
        u"leTextDest="_s,
        u"leTagToApply="_s,
        u"cbRegex off"_s,
        u"cbSensible off"_s,
        u"bar hidden"_s,
    };
    QCOMPARE(order.events.mid(order.events.indexOf(u"journal window"_s)), reset);
    QCOMPARE(form.state(), (QStringList{u"cbUrlInEvt"_s, u"rbMarkdown"_s}));
}

void TstApply::keptByTheReset()
{
    FamilyForm form;
    form.set({u"gbSetURLLinks"_s, u"csv"_s, u"rbHtml"_s, u"cbSourceMultiUse"_s,
              u"cbFiltreSensible"_s, u"cbFiltrerRegex"_s, u"leRecherche=Jean"_s});
    form.apply();

    QCOMPARE(form.messages(), QStringList());
    QCOMPARE(form.state(), QStringList{u"rbHtml"_s});
    QCOMPARE(form.text(u"leRecherche"_s), u"Jean"_s);
    QVERIFY(form.isChecked(u"cbSourceMultiUse"_s));
    QVERIFY(form.isChecked(u"cbFiltreSensible"_s));
    QVERIFY(form.isChecked(u"cbFiltrerRegex"_s));
    QVERIFY(!form.isChecked(u"cbSourceDateDiff"_s));

    form.set({u"!cbSourceMultiUse"_s, u"cbSourceDateDiff"_s});
    form.apply();
    QVERIFY(!form.isChecked(u"cbSourceMultiUse"_s));
    QVERIFY(form.isChecked(u"cbSourceDateDiff"_s));

    // The picked files are still there; the default separator is not.
    form.set({u"gbSetURLLinks"_s});
    form.apply();
    QCOMPARE(form.messages(), QStringList{NoCsvSeparator});
}

void TstApply::linkKindsAfterTheReset_data()
{
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<QStringList>("left");

    const QStringList none{u"rbMarkdown"_s};
    const QStringList event{u"cbUrlInEvt"_s, u"rbMarkdown"_s};
    QTest::newRow("group on, note") << QStringList{u"cbUrlInEvt"_s, u"gbSetURLLinks"_s} << event;
    QTest::newRow("group on, source") << QStringList{u"cbUrlInSour"_s, u"gbSetURLLinks"_s} << event;
    QTest::newRow("group on, both")
        << QStringList{u"cbUrlInEvt"_s, u"cbUrlInSour"_s, u"gbSetURLLinks"_s} << event;
    QTest::newRow("group on, neither") << QStringList{u"gbSetURLLinks"_s} << none;
    QTest::newRow("group off, note") << QStringList{u"cbUrlInEvt"_s} << none;
    QTest::newRow("group off, source") << QStringList{u"cbUrlInSour"_s} << none;
    QTest::newRow("group off, both") << QStringList{u"cbUrlInEvt"_s, u"cbUrlInSour"_s} << none;
}

void TstApply::linkKindsAfterTheReset()
{
    QFETCH(QStringList, settings);
    QFETCH(QStringList, left);

    FamilyForm form;
    form.set(settings);
    form.apply();
    QCOMPARE(form.state(), left);

    // The group starts from there the next time.
    form.set({u"gbSetURLLinks"_s});
    QStringList state = left + QStringList{u"gbSetURLLinks"_s};
    state.sort();
    QCOMPARE(form.state(), state);
}

void TstApply::mediaPathAfterTheReset_data()
{
    QTest::addColumn<QStringList>("settings");
    QTest::newRow("deletion of the path") << QStringList{u"cbDelMediaPath"_s};
    QTest::newRow("deletion of the path, group on")
        << QStringList{u"gbReplaceMediaPath"_s, u"cbDelMediaPath"_s};
}

void TstApply::mediaPathAfterTheReset()
{
    QFETCH(QStringList, settings);

    FamilyForm form;
    const auto *field = form.find<QWidget>(u"leNewMediaPath"_s);
    const auto *picker = form.find<QWidget>(u"pbOpenNewMediaPath"_s);
    form.set(settings);
    QVERIFY(!field->isEnabled());
    QVERIFY(!picker->isEnabled());
    form.apply();

    form.set({u"gbReplaceMediaPath"_s});
    QVERIFY(field->isEnabled());
    QVERIFY(picker->isEnabled());
}

void TstApply::valueFieldAfterTheReset_data()
{
    QTest::addColumn<QStringList>("clicks");
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<bool>("enabled");

    QTest::newRow("never clicked") << QStringList{} << QStringList{} << true;
    QTest::newRow("checked by the program")
        << QStringList{} << QStringList{u"gbDelTags"_s, u"cbDelIfContent"_s} << true;
    QTest::newRow("group clicked on") << QStringList{u"gbDelTags"_s} << QStringList{} << false;
    QTest::newRow("content clicked on")
        << QStringList{u"gbDelTags"_s, u"cbDelIfContent"_s} << QStringList{} << true;
    QTest::newRow("content clicked on and off")
        << QStringList{u"gbDelTags"_s, u"cbDelIfContent"_s, u"cbDelIfContent"_s} << QStringList{}
        << false;
    QTest::newRow("group clicked on, content checked by the program")
        << QStringList{u"gbDelTags"_s} << QStringList{u"cbDelIfContent"_s} << false;
}

void TstApply::valueFieldAfterTheReset()
{
    QFETCH(QStringList, clicks);
    QFETCH(QStringList, settings);
    QFETCH(bool, enabled);

    FamilyForm form;
    for (const QString &name : std::as_const(clicks)) {
        if (auto *button = form.window->findChild<QAbstractButton *>(name))
            button->click();
        else
            QTest::keyClick(form.find<QGroupBox>(name), Qt::Key_Space);
        QVERIFY2(!form.state().isEmpty(), qPrintable(name));
    }
    form.set(settings);
    form.apply();
    QCOMPARE(form.state(), QStringList{u"rbMarkdown"_s});

    form.set({u"gbDelTags"_s});
    QCOMPARE(form.isEnabled(u"leValueToDel"_s), enabled);
    QCOMPARE(form.isEnabled(u"cbDelIfContentRX"_s), enabled);
    // A click of the user follows the check box again.
    QTest::keyClick(form.find<QGroupBox>(u"gbDelTags"_s), Qt::Key_Space);
    QTest::keyClick(form.find<QGroupBox>(u"gbDelTags"_s), Qt::Key_Space);
    QCOMPARE(form.state(), (QStringList{u"gbDelTags"_s, u"rbMarkdown"_s}));
    QVERIFY(!form.isEnabled(u"leValueToDel"_s));
    QVERIFY(!form.isEnabled(u"cbDelIfContentRX"_s));
}

VARLUNE_TEST_MAIN(TstApply)
#include "tst_apply.moc"
