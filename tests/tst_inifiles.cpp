#include "boxes.h"
#include "currentfolder.h"
#include "document.h"
#include "fenjournal.h"
#include "form.h"
#include "mainwindow.h"
#include "markingtranslator.h"
#include "testmain.h"
#include "unprivileged.h"
#include "window.h"

#include <QAbstractButton>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProgressBar>
#include <QScopeGuard>
#include <QStatusBar>
#include <QStringEncoder>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// A key that fills the form, and what it fills.
struct Key
{
    enum Kind { Flag, Text, List };

    const char *key;
    QString widget;

    [[nodiscard]] Kind kind() const
    {
        if (widget == "m_filesImport"_L1)
            return List;
        return widget.startsWith("le"_L1) ? Text : Flag;
    }
};

/// In the order in which the program tries them.
const QList<Key> Keys{
    {"EspacerPrenomNom", u"cbEspacer"_s},
    {"delTags", u"gbDelTags"_s},
    {"delTagsList", u"leTagsToDel"_s},
    {"delIfEmptyTags", u"cbDelEmptyTags"_s},
    {"delIfNoChildsTags", u"cbDelEmptyClilds"_s},
    {"delIfContainsValue", u"cbDelIfContent"_s},
    {"delIfContainsRx", u"cbDelIfContentRX"_s},
    {"delTagContainsValue", u"leValueToDel"_s},
    {"setUrlLinks", u"gbSetURLLinks"_s},
    {"urlFilesIndex", u"m_filesImport"_s},
    {"stringSplitFilenameUrl", u"leStrPlitCsv"_s},
    {"createEvenNote", u"cbUrlInEvt"_s},
    {"createSourWww", u"cbUrlInSour"_s},
    {"delTagObjeFile", u"cbDelTagObjeFile"_s},
    {"extractMediasToKeep", u"gbExtractMediasToKeep"_s},
    {"dirMediasSource", u"leExtractMediasSource"_s},
    {"dirMediasDest", u"leExtractMediasToKeep"_s},
    {"clickablesLinks", u"gbClickablesLinks"_s},
    {"toMarkdown", u"rbMarkdown"_s},
    {"toHtml", u"rbHtml"_s},
    {"clickableTagsList", u"leTagToClickable"_s},
    {"changeMediasPath", u"gbReplaceMediaPath"_s},
    {"newMediasPath", u"leNewMediaPath"_s},
    {"delMediaPath", u"cbDelMediaPath"_s},
    {"delDuplicated", u"gbMoveTagContent"_s},
    {"duplicatedSourTag", u"leTagSour"_s},
    {"duplicatedDestTag", u"leTagDest"_s},
    {"delDuplicatedSourTag", u"cbDelTagSour"_s},
    {"moveDuplicatedContent", u"cbCpSourDestContent"_s},
    {"createDuplicatedDestTag", u"cbCreateDestTag"_s},
    {"replaceString", u"gbReplaceString"_s},
    {"replaceSourString", u"leTextOri"_s},
    {"replaceDestString", u"leTextDest"_s},
    {"replaceStringTags", u"leTagToApply"_s},
    {"replaceRegex", u"cbRegex"_s},
    {"replaceSensible", u"cbSensible"_s},
};

const QString Title = u"Varlune v1.9.0"_s;
const QString NoParameters = u"Fichier PARAM.INI introuvable dans l'application."_s;
const QString NoSequence = u"Fichier SEQUENCE.INI introuvable dans l'application."_s;
const QString NoSeparator = u"chaine de séparation 'separator' non définie dans la séquence."_s;

/// The formState() of a new window.
const QString DefaultSeparator = u"leStrPlitCsv=,https://www.dropbox.com/"_s;
const QStringList Defaults{DefaultSeparator, u"rbMarkdown"_s};

/// A person with each tag once, and a note in two pieces.
const QStringList Person{
    u"0 HEAD"_s,          u"1 CHAR UTF-8"_s,    u"0 @I1@ INDI"_s, u"1 NAME Jean/DUPONT/"_s,
    u"1 NOTE un texte"_s, u"2 CONC  long"_s,    u"1 SEX M"_s,     u"1 OCCU notaire"_s,
    u"1 RESI Paris"_s,    u"2 DATE MAR 1900"_s, u"0 @F1@ FAM"_s,  u"1 HUSB @I1@"_s,
};
const QString Folded =
    u"INFO : Balise 'INDI.NOTE.CONC  long (l.6) concaténée dans la balise INDI.NOTE un texte "
    u"long (l.5)"_s;
const QString OneFolded = u"INFO : 1 balises CONC reconcaténées."_s;

QByteArray fileOf(const QStringList &lines)
{
    return (lines.join(u'\n') + u'\n').toUtf8();
}

/// The form with the person, and sequences to play on it.
class PersonForm : public Form
{
public:
    explicit PersonForm(const QStringList &lines = Person, const QByteArray &parameters = {})
        : Form(lines, parameters)
    {
    }

    /// Plays a sequence of these lines. "~" stands for the folder of the document.
    void playLines(QStringList lines) const
    {
        play(fileOf(lines.replaceInStrings(u"~"_s, folder())));
    }
};

/// Makes sure that the file of this name beside the executable cannot be read while this object
/// lives.
class Unreadable
{
public:
    Unreadable(const QString &name, const QString &what) : m_path(besideExecutable(name))
    {
        QFile::remove(m_path);
        if (what == "directory"_L1) {
            QDir().mkdir(m_path);
        } else if (what == "closed file"_L1) {
            writeBytes(m_path, "delTags=true\n");
            QFile::setPermissions(m_path, {});
            m_unprivileged = std::make_unique<Unprivileged>();
        }
    }
    ~Unreadable()
    {
        m_unprivileged.reset();
        if (!QFile::remove(m_path))
            QDir().rmdir(m_path);
    }
    Q_DISABLE_COPY_MOVE(Unreadable)

    static void rows()
    {
        QTest::addColumn<QString>("what");
        QTest::newRow("there is none") << u"nothing"_s;
        QTest::newRow("a directory has its place") << u"directory"_s;
        QTest::newRow("a file that may not be read") << u"closed file"_s;
    }

private:
    QString m_path;
    std::unique_ptr<Unprivileged> m_unprivileged;
};

/// The encoded text with a byte-order mark.
QByteArray marked(QStringConverter::Encoding encoding, const QString &text)
{
    QStringEncoder encode(encoding, QStringConverter::Flag::WriteBom);
    return encode(text);
}

} // namespace

/// PARAM.INI, which presets the form, and SEQUENCE.INI, which fills and runs it step by step.
class TstInifiles : public QObject
{
    Q_OBJECT

private slots:
    void flags_data();
    void flags();
    void texts_data();
    void texts();
    void orderOfTheKeys_data();
    void orderOfTheKeys();
    void parameters_data();
    void parameters();
    void listOfFiles_data();
    void listOfFiles();
    void correspondenceFiles_data();
    void correspondenceFiles();
    void answersOfTheForm();
    void presetsWaitForAFile();
    void presetsEndWithTheFirstRun_data();
    void presetsEndWithTheFirstRun();
    void missingParameters_data();
    void missingParameters();
    void saveBeforeALoad_data();
    void saveBeforeALoad();
    void sequenceNeedsADocument();
    void missingSequence_data();
    void missingSequence();
    void everyKeyInAStep();
    void steps_data();
    void steps();
    void orderOfASequence();
    void nothingIsSeenOfASeparatorLine_data();
    void nothingIsSeenOfASeparatorLine();
    void formBetweenSteps_data();
    void formBetweenSteps();
    void linkFormatOutlivesTheSequence();
    void correspondenceFilesOutliveTheSequence();
    void foldsOnce();
    void journalOfASequence();
    void messageOfAStep();
    void messagesAreTranslated();
    void editsDuringAStep();
    void saves_data();
    void saves();
    void barAfterASave_data();
    void barAfterASave();
    void playedAgain();
    void filesAreReadAndLeftAlone();
    void arguments_data();
    void arguments();
    void orderOfTheOperations();
    void groupsAreReadWhenTheirTurnComes();
};

void TstInifiles::flags_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("state");

    // "KEY" is replaced by the key.
    const struct
    {
        const char *name;
        const char *lines;
        bool on;
    } files[] = {
        {"true", "KEY=true", true},
        {"truex", "KEY=truex", true},
        {"True", "KEY=True", false},
        {"false", "KEY=false", false},
        {"no value", "KEY=", false},
        {"a blank before true", "KEY= true", false},
        {"false and later true", "KEY=false\nKEY=true", true},
        {"true and later all else", "KEY=true\nKEY=false\nKEY=True\nKEY=", true},
    };
    for (const Key &key : Keys) {
        if (key.kind() != Key::Flag)
            continue;
        const bool radio = key.widget.startsWith("rb"_L1);
        // The button that is on by default makes a difference only once the other one is on.
        const bool fromStart = key.widget == "rbMarkdown"_L1;
        const QStringList off = fromStart ? QStringList{DefaultSeparator, u"rbHtml"_s} : Defaults;
        QStringList on{DefaultSeparator, key.widget};
        if (!radio)
            on += u"rbMarkdown"_s;
        on.sort();
        for (const auto &file : files) {
            const QByteArray lines = QByteArray(file.lines).replace("KEY", key.key);
            QTest::addRow("%s: %s", key.key, file.name)
                << (fromStart ? "toHtml=true\n" + lines : lines) << (file.on ? on : off);
        }
    }
}

void TstInifiles::flags()
{
    QFETCH(QByteArray, file);
    QFETCH(QStringList, state);

    const auto window = makeWindow(file);
    QCOMPARE(formState(window.get()), state);
}

void TstInifiles::texts_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("text");

    const QString kept = u"what the form has"_s;
    const struct
    {
        const char *name;
        const char *lines;
        QString text;
    } files[] = {
        {"a value", "KEY=NOTE", u"NOTE"_s},
        {"blanks at both ends", "KEY= NOTE ", u" NOTE "_s},
        {"an equals sign", "KEY==a=b", u"=a=b"_s},
        {"no value", "KEY=", kept},
        {"the last value wins", "KEY=NOTE\nKEY=DATE", u"DATE"_s},
        {"no value after one", "KEY=NOTE\nKEY=", u"NOTE"_s},
    };
    for (const Key &key : Keys) {
        if (key.kind() != Key::Text)
            continue;
        for (const auto &file : files) {
            QTest::addRow("%s: %s", key.key, file.name)
                << QByteArray(file.lines).replace("KEY", key.key) << key.widget
                << (file.text == kept ? QString() : file.text);
        }
    }
}

void TstInifiles::texts()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, field);
    QFETCH(QString, text);

    const auto window = makeWindow(file);
    QStringList state = Defaults;
    if (!text.isEmpty()) {
        state.removeIf([&field](const QString &entry) { return entry.startsWith(field + u'='); });
        state += field + u'=' + text;
        state.sort();
    }
    QCOMPARE(formState(window.get()), state);
}

void TstInifiles::orderOfTheKeys_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("state");

    // The outer key takes the inner one as its value: a text or list shows it, for a flag it is not
    // "true". The inner key gets its own value only if it is tried later.
    const auto row = [](const Key &outer, const Key &inner, bool reached) {
        const QByteArray item =
            inner.key + QByteArray(inner.kind() == Key::Flag ? "=true" : "=texte");
        QByteArray file = outer.key + QByteArray("=") + item;
        QString separator = DefaultSeparator;
        QString radio = u"rbMarkdown"_s;
        // The button that is on by default makes a difference only once the other one is on.
        if (inner.widget == radio) {
            file.prepend("toHtml=true\n");
            radio = u"rbHtml"_s;
        }
        QStringList state;
        const auto fill = [&](const Key &key, const QString &value) {
            const QString entry = key.widget + u'=' + value;
            if (key.widget.startsWith("rb"_L1))
                radio = key.widget;
            else if (key.widget == "leStrPlitCsv"_L1)
                separator = entry;
            else
                state += key.kind() == Key::Flag ? key.widget : entry;
        };
        if (outer.kind() != Key::Flag)
            fill(outer, QString::fromLatin1(item));
        if (reached)
            fill(inner, u"texte"_s);
        state += {separator, radio};
        state.sort();
        QTest::addRow("%s=%s", outer.key, item.constData()) << file << state;
    };
    for (qsizetype i = 1; i < Keys.size(); ++i) {
        row(Keys.at(i - 1), Keys.at(i), true);
        row(Keys.at(i), Keys.at(i - 1), false);
    }
}

void TstInifiles::orderOfTheKeys()
{
    QFETCH(QByteArray, file);
    QFETCH(QStringList, state);

    const PersonForm form(Person, file);
    QStringList filled = form.state();
    const QStringList files = form.filesImport();
    if (!files.isEmpty())
        filled += u"m_filesImport="_s + files.join(u';');
    filled.sort();
    QCOMPARE(filled, state);
}

void TstInifiles::parameters_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("added"); // to the defaults

    const auto row = [](const char *name, const QByteArray &file, const QStringList &added) {
        QTest::newRow(name) << file << added;
    };
    row("empty file", {}, {});
    row("line ends alone", "\n\n\n", {});
    row("comments, headers and other words",
        "; delTags=true\n#delTags=true\n// delTags=true\n[delTags=true]\nseparator=|\nbonjour\n",
        {});
    row("keys that are not quite right",
        " delTags=true\ndelTags =true\ndelTags\ndeltags=true\nDELTAGS=true\nxdelTags=true\n"
        " delTagsList=NOTE\ndelTagsList =NOTE\ndelTagsList\n\tdelTagsList=NOTE\n",
        {});
    row("values as they stand", "delTagsList=true\nnewMediasPath=C:\\a;b\nreplaceDestString= \n",
        {u"leNewMediaPath=C:\\a;b"_s, u"leTagsToDel=true"_s, u"leTextDest= "_s});
    row("lines around a comment", "delTagsList=NOTE\n;\n\ndelTags=true\n",
        {u"gbDelTags"_s, u"leTagsToDel=NOTE"_s});
    row("no line end at the end", "delTags=true\ndelTagsList=NOTE",
        {u"gbDelTags"_s, u"leTagsToDel=NOTE"_s});
    row("line ends of Windows", "delTagsList=NOTE\r\nreplaceSourString= \r\ndelTags=true\r\n",
        {u"gbDelTags"_s, u"leTagsToDel=NOTE"_s, u"leTextOri= "_s});
    row("a line is one item", "delTagsList=NOTE|delTags=true\ndelIfEmptyTags=true|toHtml=true",
        {u"cbDelEmptyTags"_s, u"leTagsToDel=NOTE|delTags=true"_s});
    row("a megabyte on one line",
        "delTagsList=NOTE\nx" + QByteArray(1'000'000, '=') + "\ndelTags=true\n",
        {u"gbDelTags"_s, u"leTagsToDel=NOTE"_s});

    const QString accents = u"replaceSourString=Ploudalmézeau\nreplaceString=true\n"_s;
    const QStringList read{u"gbReplaceString"_s, u"leTextOri=Ploudalmézeau"_s};
    row("UTF-8 without a mark", accents.toUtf8(), read);
    row("UTF-8 with a mark", marked(QStringConverter::Utf8, accents), read);
    row("UTF-16, the low byte first", marked(QStringConverter::Utf16LE, accents), read);
    row("UTF-16, the high byte first", marked(QStringConverter::Utf16BE, accents), read);

    // A value that begins with a later key of the list is also taken for that key.
    row("a value that is an item", "replaceSourString=replaceDestString=x",
        {u"leTextDest=x"_s, u"leTextOri=replaceDestString=x"_s});
    row("a value that is an item with an item",
        "delTagsList=delTagContainsValue=replaceDestString=x",
        {u"leTagsToDel=delTagContainsValue=replaceDestString=x"_s, u"leTextDest=x"_s,
         u"leValueToDel=replaceDestString=x"_s});
    row("a flag that is an item", "delTags=delTagsList=NOTE", {u"leTagsToDel=NOTE"_s});
    row("a flag that is a flag", "EspacerPrenomNom=replaceSensible=true", {u"cbSensible"_s});
    row("a list of files that is an item", "urlFilesIndex=delMediaPath=true",
        {u"cbDelMediaPath"_s});
    row("an earlier key in a value is text", "replaceDestString=replaceSourString=x",
        {u"leTextDest=replaceSourString=x"_s});
    row("the key itself in its value is text", "delTagsList=delTagsList=x",
        {u"leTagsToDel=delTagsList=x"_s});
    row("a key further on in a value is text", "replaceSourString=xreplaceDestString=y",
        {u"leTextOri=xreplaceDestString=y"_s});
    row("a key behind true is text", "delTags=truedelTagsList=NOTE", {u"gbDelTags"_s});

    row("keys in any order",
        "delTags=true\nEspacerPrenomNom=true\nreplaceSensible=true\ndelTagsList=NOTE\n",
        {u"cbEspacer"_s, u"cbSensible"_s, u"gbDelTags"_s, u"leTagsToDel=NOTE"_s});
}

void TstInifiles::parameters()
{
    QFETCH(QByteArray, file);
    QFETCH(QStringList, added);

    const AnsweredBoxes boxes;
    const auto window = makeWindow(file);
    QStringList state = Defaults + added;
    state.sort();
    QCOMPARE(formState(window.get()), state);
    QCOMPARE(boxes.texts(), QStringList());
    QCOMPARE(window->windowTitle(), Title);
}

void TstInifiles::listOfFiles_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("files");

    QTest::newRow("no key") << QByteArray("delTags=true") << QStringList{};
    QTest::newRow("no value") << QByteArray("urlFilesIndex=") << QStringList{};
    QTest::newRow("backslashes") << QByteArray("urlFilesIndex=a\\b\\c.csv;C:\\d.csv")
                                 << QStringList{u"a/b/c.csv"_s, u"C:/d.csv"_s};
    QTest::newRow("an empty part at the end stays")
        << QByteArray("urlFilesIndex=a;b;") << QStringList{u"a"_s, u"b"_s, {}};
    QTest::newRow("an empty part in the middle stays, and is as far as a run gets")
        << QByteArray("urlFilesIndex=a;;b") << QStringList{u"a"_s, {}};
    QTest::newRow("parts are not trimmed")
        << QByteArray("urlFilesIndex= a ; b") << QStringList{u" a "_s, u" b"_s};
    QTest::newRow("a list takes the place of the one before")
        << QByteArray("urlFilesIndex=a;b\nurlFilesIndex=c") << QStringList{u"c"_s};
    QTest::newRow("no value after a list")
        << QByteArray("urlFilesIndex=a;b\nurlFilesIndex=") << QStringList{u"a"_s, u"b"_s};
}

void TstInifiles::listOfFiles()
{
    QFETCH(QByteArray, file);
    QFETCH(QStringList, files);

    const PersonForm form(Person, file);
    const CurrentFolder current(form.folder());
    const QStringList present = files.mid(0, files.size() - 1);
    for (const QString &path : present) {
        QDir().mkpath(QFileInfo(path).path());
        writeBytes(path, {});
    }
    QCOMPARE(form.filesImport(), files);
}

void TstInifiles::correspondenceFiles_data()
{
    QTest::addColumn<QStringList>("file");
    QTest::addColumn<QString>("message");

    QTest::newRow("none") << QStringList{} << NoFiles;
    QTest::newRow("no value") << QStringList{u"urlFilesIndex="_s} << NoFiles;
    QTest::newRow("a file") << QStringList{u"urlFilesIndex=~/a.csv"_s} << NoCsvSeparator;
    QTest::newRow("backslashes") << QStringList{u"urlFilesIndex=~\\a.csv"_s} << NoCsvSeparator;
    QTest::newRow("two files") << QStringList{u"urlFilesIndex=~\\a.csv;~/b.csv"_s}
                               << NoCsvSeparator;
    QTest::newRow("no value after a file")
        << QStringList{u"urlFilesIndex=~/a.csv"_s, u"urlFilesIndex="_s} << NoCsvSeparator;
    QTest::newRow("a list takes the place of the one before")
        << QStringList{u"urlFilesIndex=~/missing.csv"_s, u"urlFilesIndex=~/a.csv"_s}
        << NoCsvSeparator;
}

void TstInifiles::correspondenceFiles()
{
    QFETCH(QStringList, file);
    QFETCH(QString, message);

    const QTemporaryDir files;
    writeLines(files.filePath(u"a.csv"_s), {u"a.jpg,https://a.test/a"_s});
    writeLines(files.filePath(u"b.csv"_s), {u"b.jpg,https://a.test/b"_s});
    const PersonForm form(Person, fileOf(file.replaceInStrings(u"~"_s, files.path())));
    form.apply({u"gbSetURLLinks"_s, u"leStrPlitCsv="_s});
    QCOMPARE(form.messages(), QStringList{message});
}

void TstInifiles::answersOfTheForm()
{
    const PersonForm form(Person, fileOf({u"delTags=true"_s, u"changeMediasPath=true"_s,
                                          u"delMediaPath=true"_s, u"newMediasPath=photos"_s}));
    // The path's check box reacts to the program, those of the deletion only to clicks.
    QCOMPARE(form.isEnabled(u"leNewMediaPath"_s), false);
    QCOMPARE(form.isEnabled(u"pbOpenNewMediaPath"_s), false);
    QCOMPARE(form.text(u"leNewMediaPath"_s), u"photos"_s);
    QCOMPARE(form.isEnabled(u"leValueToDel"_s), true);
    QCOMPARE(form.isEnabled(u"cbDelIfContentRX"_s), true);
}

void TstInifiles::presetsWaitForAFile()
{
    const Session session("delTags=true\ndelTagsList=NOTE\n");
    QStringList state = Defaults + QStringList{u"gbDelTags"_s, u"leTagsToDel=NOTE"_s};
    state.sort();
    QVERIFY(!session.isEnabled(u"gbDelTags"_s));
    QCOMPARE(formState(session.window.get()), state);

    session.load(Person + QStringList{u"0 TRLR"_s});
    QVERIFY(session.isEnabled(u"gbDelTags"_s));
    QVERIFY(session.isEnabled(u"leTagsToDel"_s));
    QCOMPARE(formState(session.window.get()), state);
}

void TstInifiles::presetsEndWithTheFirstRun_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("deleted");

    QTest::newRow("which they fill") << u"pbApply"_s << u"NOTE"_s;
    QTest::newRow("of a sequence, which has none of them") << u"pbReadSequence"_s << QString();
}

void TstInifiles::presetsEndWithTheFirstRun()
{
    QFETCH(QString, button);
    QFETCH(QString, deleted);

    const PersonForm form(Person, "delTags=true\ndelTagsList=NOTE\n");
    writeLines(besideExecutable(u"PARAM.INI"_s), {u"delTagsList=SEX"_s});
    writeLines(besideExecutable(u"SEQUENCE.INI"_s),
               {u"separator=|"_s, u"replaceString=true|replaceSourString=zzz"_s});
    const auto cleanUp = qScopeGuard([] {
        QFile::remove(besideExecutable(u"PARAM.INI"_s));
        QFile::remove(besideExecutable(u"SEQUENCE.INI"_s));
    });
    form.click(button);

    QCOMPARE(form.deletedTags(), deleted);
    QCOMPARE(form.state(), QStringList{u"rbMarkdown"_s});
    form.apply();
    QCOMPARE(form.deletedTags(), deleted);
    QCOMPARE(form.state(), QStringList{u"rbMarkdown"_s});
}

void TstInifiles::missingParameters_data()
{
    Unreadable::rows();
}

void TstInifiles::missingParameters()
{
    QFETCH(QString, what);
    if (what == "closed file"_L1)
        SKIP_ON_WINDOWS(NoRights);

    AnsweredBoxes boxes;
    QList<bool> visible;
    boxes.setInspector(
        [&visible](const QMessageBox *box) { visible += box->parentWidget()->isVisible(); });
    std::unique_ptr<MainWindow> window;
    {
        const Unreadable unreadable(u"PARAM.INI"_s, what);
        window = std::make_unique<MainWindow>(nullptr);
    }
    QCOMPARE(boxes.texts(), QStringList{NoParameters});
    QCOMPARE(boxes.titles(), QStringList{Title});
    QVERIFY(boxes.allCritical(window.get()));
    QCOMPARE(visible, QList<bool>{false});

    QCOMPARE(formState(window.get()), Defaults);
    window->show();
    QVERIFY(window->isVisible());
}

void TstInifiles::saveBeforeALoad_data()
{
    QTest::addColumn<QString>("line");

    QTest::newRow("to the open file") << u"saveGedFile=true"_s;
    QTest::newRow("to a path") << u"saveGedFile=~/x.ged"_s;
    QTest::newRow("to a name") << u"saveGedFile=false"_s;
    QTest::newRow("of no name") << u"saveGedFile="_s;
    QTest::newRow("as the value of another key") << u"replaceDestString=saveGedFile=~/x.ged"_s;
}

void TstInifiles::saveBeforeALoad()
{
    QFETCH(QString, line);

    const QTemporaryDir folder;
    const CurrentFolder current(folder.path());
    const AnsweredBoxes boxes;
    const Session session(
        fileOf({u"delTagsList=NOTE"_s, line.replace(u"~"_s, folder.path()), u"delTags=true"_s}));

    QCOMPARE(boxes.texts(), QStringList());
    QCOMPARE(QDir(folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
    QVERIFY(session.isChecked(u"gbDelTags"_s));
    QCOMPARE(session.text(u"leTagsToDel"_s), u"NOTE"_s);
    QCOMPARE(session.status(), QString());
    QCOMPARE(session.journal(), QStringList());
}

void TstInifiles::sequenceNeedsADocument()
{
    const AnsweredBoxes boxes;
    const Session session("delTagsList=NOTE\n");
    session.window->show();
    auto *button = session.find<QAbstractButton>(u"pbReadSequence"_s);
    QVERIFY(!button->isEnabled());
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(boxes.texts(), QStringList());
    QCOMPARE(session.journalWindows().size(), 0);
    QCOMPARE(session.text(u"leTagsToDel"_s), u"NOTE"_s);

    session.load(Person + QStringList{u"0 TRLR"_s});
    QVERIFY(button->isEnabled());
}

void TstInifiles::missingSequence_data()
{
    Unreadable::rows();
}

void TstInifiles::missingSequence()
{
    QFETCH(QString, what);
    if (what == "closed file"_L1)
        SKIP_ON_WINDOWS(NoRights);

    PersonForm form(Person, "delTags=true\ndelTagsList=NOTE\n");
    const Order order(form);
    {
        const Unreadable unreadable(u"SEQUENCE.INI"_s, what);
        form.click(u"pbReadSequence"_s);
    }
    // No bar, no folding, no journal window.
    QCOMPARE(order.events, (QStringList{
                               u"gbDelTags off"_s,
                               u"leTagsToDel="_s,
                               u"leStrPlitCsv="_s,
                               "box: "_L1 + NoSequence,
                           }));
    QCOMPARE(form.boxes().titles(), QStringList{Title});
    QVERIFY(form.boxes().allCritical(form.window.get()));
    QCOMPARE(form.runJournal(), QStringList());
    QCOMPARE(form.journalWindows().size(), 0);

    form.playLines({u"separator=|"_s, u"delTags=true|delTagsList=SEX"_s});
    QCOMPARE(form.deletedTags(), u"SEX"_s);
    QCOMPARE(form.messages(), QStringList{NoSequence});
}

void TstInifiles::everyKeyInAStep()
{
    PersonForm form;
    QVERIFY(QDir(form.folder()).mkdir(u"medias"_s) && QDir(form.folder()).mkdir(u"choix"_s));
    QStringList state;
    form.boxes().setInspector([&form, &state](const QMessageBox *) { state = form.state(); });
    form.playLines({
        u"separator=|"_s,
        u"EspacerPrenomNom=true|delTags=true|delTagsList=ZZZ|delIfEmptyTags=true"
        "|delIfNoChildsTags=true|delIfContainsValue=true|delIfContainsRx=true"
        "|delTagContainsValue=valeur|setUrlLinks=true|stringSplitFilenameUrl=,"
        "|createEvenNote=true|createSourWww=true|delTagObjeFile=true|extractMediasToKeep=true"
        "|dirMediasSource=~/medias|dirMediasDest=~/choix|clickablesLinks=true|toMarkdown=true"
        "|toHtml=true|clickableTagsList=WWW|changeMediasPath=true|newMediasPath=photos"
        "|delMediaPath=true|delDuplicated=true|duplicatedSourTag=INDI.A|duplicatedDestTag=INDI.B"
        "|delDuplicatedSourTag=true|moveDuplicatedContent=true|createDuplicatedDestTag=true"
        "|replaceString=true|replaceSourString=zzz|replaceDestString=yyy|replaceStringTags=XXX"
        "|replaceRegex=true|replaceSensible=true"_s,
    });
    QCOMPARE(form.messages(), QStringList{NoFiles});
    QCOMPARE(state, (QStringList{
                        u"cbCpSourDestContent"_s,
                        u"cbCreateDestTag"_s,
                        u"cbDelEmptyClilds"_s,
                        u"cbDelEmptyTags"_s,
                        u"cbDelIfContent"_s,
                        u"cbDelIfContentRX"_s,
                        u"cbDelMediaPath"_s,
                        u"cbDelTagObjeFile"_s,
                        u"cbDelTagSour"_s,
                        u"cbEspacer"_s,
                        u"cbRegex"_s,
                        u"cbSensible"_s,
                        u"cbUrlInEvt"_s,
                        u"cbUrlInSour"_s,
                        u"gbClickablesLinks"_s,
                        u"gbDelTags"_s,
                        u"gbExtractMediasToKeep"_s,
                        u"gbMoveTagContent"_s,
                        u"gbReplaceMediaPath"_s,
                        u"gbReplaceString"_s,
                        u"gbSetURLLinks"_s,
                        "leExtractMediasSource="_L1 + form.path(u"medias"_s),
                        "leExtractMediasToKeep="_L1 + form.path(u"choix"_s),
                        u"leNewMediaPath=photos"_s,
                        u"leStrPlitCsv=,"_s,
                        u"leTagDest=INDI.B"_s,
                        u"leTagSour=INDI.A"_s,
                        u"leTagToApply=XXX"_s,
                        u"leTagToClickable=WWW"_s,
                        u"leTagsToDel=ZZZ"_s,
                        u"leTextDest=yyy"_s,
                        u"leTextOri=zzz"_s,
                        u"leValueToDel=valeur"_s,
                        u"rbHtml"_s,
                    }));
    QCOMPARE(form.state(), QStringList{u"rbHtml"_s});
}

void TstInifiles::steps_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("messages"); // about a missing separator
    QTest::addColumn<QString>("deleted");

    const auto row = [](const char *name, const QByteArray &file, int messages,
                        const QString &deleted) {
        QTest::newRow(name) << file << messages << deleted;
    };
    const QByteArray head = "separator=|\n";
    const QByteArray note = "delTags=true|delTagsList=NOTE\n";
    const QByteArray sex = "delTags=true|delTagsList=SEX\n";
    row("empty file", {}, 0, {});
    row("comments and empty lines", "\n; separator=|\n#delTags=true\n\n;\n#\n", 0, {});
    row("one step", head + note, 0, u"NOTE"_s);
    row("two steps, in the order of the lines", head + sex + note, 0, u"SEX NOTE"_s);
    row("comments and empty lines between steps",
        head + "\n" + sex + "; " + note + ";" + note + "#" + note + "\n\n", 0, u"SEX"_s);
    row("no line end at the end", head + note.chopped(1), 0, u"NOTE"_s);
    row("a line that names no key", head + "bonjour\n" + note, 0, u"NOTE"_s);
    row("a line of a blank", head + " \n" + note, 0, u"NOTE"_s);

    row("a step without a separator", note, 1, {});
    row("each step without a separator has its message", note + "bonjour\n" + sex, 3, {});
    row("a blank makes a step", " \n ; \n #\n", 3, {});
    row("a separator after a step", note + head + sex, 1, u"SEX"_s);
    row("comments before the separator", ";\n#\n\n" + head + note, 0, u"NOTE"_s);
    row("separator in capitals", "SEPARATOR=|\n" + note, 2, {});
    row("a blank before the separator", " separator=|\n" + note, 2, {});
    row("a blank behind the word", "separator =|\n" + note, 2, {});

    row("two characters", "separator=||\ndelTags=true||delTagsList=NOTE\n", 0, u"NOTE"_s);
    row("one of the two characters does not cut", "separator=||\ndelTagsList=NOTE|delTags=true\n",
        0, {});
    row("a blank as separator", "separator= \ndelTags=true delTagsList=NOTE\n", 0, u"NOTE"_s);
    row("blanks belong to the separator",
        "separator= | \ndelTags=true | delTagsList=NOTE\ndelTagsList=SEX|delTags=true\n", 0,
        u"NOTE"_s);
    row("letters, in their case",
        "separator=x\ndelTags=truexdelTagsList=NOTE\ndelTagsList=OCCUXdelTags=true\n", 0,
        u"NOTE"_s);
    row("a letter beyond ASCII", "separator=§\ndelTags=true§delTagsList=NOTE\n", 0, u"NOTE"_s);
    row("a dot is a character", "separator=.\ndelTags=true.delTagsList=NOTE\n", 0, u"NOTE"_s);
    row("the word itself", "separator=separator=\ndelTags=trueseparator=delTagsList=NOTE\n", 0,
        u"NOTE"_s);
    row("changed on the way",
        head + note + "separator=,\ndelTags=true,delTagsList=SEX\ndelTagsList=OCCU|delTags=true\n",
        0, u"NOTE SEX"_s);
    row("emptied on the way", head + note + "separator=\n" + sex, 2, u"NOTE"_s);
    row("emptied and defined again", head + "separator=\n" + sex + "separator=|\n" + note, 2,
        u"NOTE"_s);
    row("emptied first", "separator=\n", 1, {});

    row("separator at the end", head + "delTags=true|delTagsList=NOTE|\n", 0, u"NOTE"_s);
    row("separator at the start", head + "|delTags=true|delTagsList=NOTE\n", 0, u"NOTE"_s);
    row("separator twice", head + "delTags=true||delTagsList=NOTE\n", 0, u"NOTE"_s);
    row("a blank before the step", head + " delTagsList=SEX|delTags=true|delTagsList=NOTE\n", 0,
        u"NOTE"_s);
    row("a blank before an item", head + "delTagsList=NOTE| delTags=true\n", 0, {});
    row("a comment sign before an item", head + "delTagsList=NOTE|;delTags=true\n", 0, {});
    row("a comment sign in a value", head + "delTags=true|delTagsList=#;NOTE;x\n", 0, u"NOTE"_s);
    row("a flag that is false", head + "delTags=false|delTagsList=NOTE\n", 0, {});
    row("a flag that is false after true", head + "delTags=true|delTags=false|delTagsList=NOTE\n",
        0, u"NOTE"_s);
    row("the last value of a text wins",
        head + "delTagsList=SEX|delTags=true|delTagsList=NOTE|delTagsList=\n", 0, u"NOTE"_s);
    row("nothing is left for the next step", head + "delTagsList=NOTE\ndelIfEmptyTags=true\n" + sex,
        0, u"SEX"_s);
    row("a value that is an item",
        head + "delTags=true|delIfContainsValue=true|delTagsList=delTagContainsValue=x\n"
            + "delTags=delTagsList=NOTE|delTags=true\n",
        0, u"NOTE"_s);

    row("UTF-8 with a mark",
        marked(QStringConverter::Utf8, u"separator=§\n"_s) + "delTags=true§delTagsList=NOTE\n", 0,
        u"NOTE"_s);
    const QString wide = u"separator=§\ndelTags=true§delTagsList=NOTE\n"_s;
    row("UTF-16, the low byte first", marked(QStringConverter::Utf16LE, wide), 0, u"NOTE"_s);
    row("UTF-16, the high byte first", marked(QStringConverter::Utf16BE, wide), 0, u"NOTE"_s);
    row("line ends of Windows", "separator=|\r\n\r\n#\r\ndelTags=true|delTagsList=NOTE\r\n", 0,
        u"NOTE"_s);
    row("a megabyte on one line",
        head + "delTags=true|" + QByteArray(1'000'000, '=') + "|delTagsList=NOTE\n" + sex, 0,
        u"NOTE SEX"_s);
}

void TstInifiles::steps()
{
    QFETCH(QByteArray, file);
    QFETCH(int, messages);
    QFETCH(QString, deleted);

    PersonForm form;
    form.play(file);
    QCOMPARE(form.messages(), QStringList(messages, NoSeparator));
    QCOMPARE(form.boxes().titles(), QStringList(messages, Title));
    QVERIFY(form.boxes().allCritical(form.window.get()));
    QCOMPARE(form.deletedTags(), deleted);

    // Every sequence does this, with or without steps.
    QCOMPARE(form.runJournal().mid(0, 2), (QStringList{Folded, OneFolded}));
    QCOMPARE(form.state(), QStringList{u"rbMarkdown"_s});
    QVERIFY(!form.progress()->isVisible());
    QCOMPARE(form.journalWindows().size(), 1);
    QVERIFY(form.journalWindows().constFirst()->isVisible());
    QCOMPARE(form.journalWindows().constFirst()->windowTitle(), u"Journal"_s);
    QCOMPARE(journalIn(form.journalWindows().constFirst()), form.journal());
}

void TstInifiles::orderOfASequence()
{
    PersonForm form;
    form.set({u"gbDelTags"_s, u"leTagsToDel=NAME"_s});
    const Order order(form);
    form.playLines({
        u"bonjour"_s,
        u"separator=|"_s,
        u"delTagsList=NOTE|delTags=true"_s,
        u"; delTags=true"_s,
        u"replaceString=true|replaceDestString=x|replaceStringTags=ZZZ"_s,
    });
    QCOMPARE(order.events, (QStringList{
                               u"gbDelTags off"_s,
                               u"leTagsToDel="_s,
                               u"leStrPlitCsv="_s,
                               u"bar shown"_s,
                               u"status: Reconcaténation des balises en cours..."_s,
                               u"status: 1 balises CONC reconcaténées."_s,
                               "box: "_L1 + NoSeparator,
                               u"leTagsToDel=NOTE"_s,
                               u"gbDelTags on"_s,
                               u"status: Suppression des balises en cours..."_s,
                               u"status: 1 balises supprimées."_s,
                               u"gbDelTags off"_s,
                               u"leTagsToDel="_s,
                               u"gbReplaceString on"_s,
                               u"leTextDest=x"_s,
                               u"leTagToApply=ZZZ"_s,
                               "box: "_L1 + NoText,
                               u"status: Remplacement de texte en cours..."_s,
                               u"status: 0 textes remplacés."_s,
                               u"gbReplaceString off"_s,
                               u"leTextDest="_s,
                               u"leTagToApply="_s,
                               u"bar hidden"_s,
                               u"journal window"_s,
                           }));
}

void TstInifiles::nothingIsSeenOfASeparatorLine_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("no line") << QStringList{};
    QTest::newRow("comments") << QStringList{u"; rien"_s, QString(), u"# rien"_s};
    QTest::newRow("a separator") << QStringList{u"separator=|"_s};
    QTest::newRow("a separator that holds a key") << QStringList{u"separator=delTags=true"_s};
    QTest::newRow("three separators")
        << QStringList{u"separator=|"_s, u"separator=||"_s, u"separator= "_s};
}

void TstInifiles::nothingIsSeenOfASeparatorLine()
{
    QFETCH(QStringList, lines);

    PersonForm form;
    const Order order(form);
    form.playLines(lines);
    QCOMPARE(order.events, (QStringList{
                               u"leStrPlitCsv="_s,
                               u"bar shown"_s,
                               u"status: Reconcaténation des balises en cours..."_s,
                               u"status: 1 balises CONC reconcaténées."_s,
                               u"bar hidden"_s,
                               u"journal window"_s,
                           }));
    QCOMPARE(form.runJournal(), (QStringList{Folded, OneFolded}));
}

void TstInifiles::formBetweenSteps_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QStringList>("states"); // during the message of each step
    QTest::addColumn<QString>("after");

    const auto row = [](const char *name, const QStringList &lines, const QStringList &states,
                        const QString &after = u"rbMarkdown"_s) {
        QTest::newRow(name) << QStringList{u"separator=|"_s} + lines << states << after;
    };
    row("nothing is left of a step",
        {u"replaceString=true|replaceDestString=x|replaceRegex=true|delTagsList=NOTE"_s,
         u"replaceString=true"_s},
        {u"cbRegex gbReplaceString leTagsToDel=NOTE leTextDest=x rbMarkdown"_s,
         u"gbReplaceString rbMarkdown"_s});

    row("a link in the source leaves a note in the event",
        {u"setUrlLinks=true|createSourWww=true"_s, u"setUrlLinks=true"_s},
        {u"cbUrlInSour gbSetURLLinks rbMarkdown"_s, u"cbUrlInEvt gbSetURLLinks rbMarkdown"_s});
    row("a note in the event leaves itself",
        {u"createEvenNote=true|setUrlLinks=true"_s, u"setUrlLinks=true"_s, u"setUrlLinks=true"_s},
        {u"cbUrlInEvt gbSetURLLinks rbMarkdown"_s, u"cbUrlInEvt gbSetURLLinks rbMarkdown"_s,
         u"cbUrlInEvt gbSetURLLinks rbMarkdown"_s});
    row("neither link leaves nothing", {u"setUrlLinks=true"_s, u"setUrlLinks=true"_s},
        {u"gbSetURLLinks rbMarkdown"_s, u"gbSetURLLinks rbMarkdown"_s});
    row("links without their group leave nothing",
        {u"createEvenNote=true|createSourWww=true|replaceString=true"_s, u"setUrlLinks=true"_s},
        {u"cbUrlInEvt cbUrlInSour gbReplaceString rbMarkdown"_s, u"gbSetURLLinks rbMarkdown"_s});
    row("a step without the group ends the note",
        {u"setUrlLinks=true|createSourWww=true"_s, u"replaceString=true"_s, u"setUrlLinks=true"_s},
        {u"cbUrlInSour gbSetURLLinks rbMarkdown"_s, u"cbUrlInEvt gbReplaceString rbMarkdown"_s,
         u"gbSetURLLinks rbMarkdown"_s});

    row("a line that defines the separator is such a step",
        {u"setUrlLinks=true|createSourWww=true"_s, u"separator=|"_s, u"setUrlLinks=true"_s},
        {u"cbUrlInSour gbSetURLLinks rbMarkdown"_s, u"gbSetURLLinks rbMarkdown"_s});

    row("the format of links stays until the other comes",
        {u"toHtml=true|replaceString=true"_s, u"replaceString=true"_s,
         u"toMarkdown=true|replaceString=true"_s, u"replaceString=true"_s},
        {u"gbReplaceString rbHtml"_s, u"gbReplaceString rbHtml"_s, u"gbReplaceString rbMarkdown"_s,
         u"gbReplaceString rbMarkdown"_s});
    row("of two formats on a line the later wins",
        {u"toHtml=true|toMarkdown=true|replaceString=true"_s,
         u"toMarkdown=true|toHtml=true|replaceString=true"_s},
        {u"gbReplaceString rbMarkdown"_s, u"gbReplaceString rbHtml"_s}, u"rbHtml"_s);
}

void TstInifiles::formBetweenSteps()
{
    QFETCH(QStringList, lines);
    QFETCH(QStringList, states);
    QFETCH(QString, after);

    PersonForm form;
    QStringList seen;
    form.boxes().setInspector(
        [&form, &seen](const QMessageBox *) { seen += form.state().join(u' '); });
    form.playLines(lines);
    QCOMPARE(seen, states);
    QCOMPARE(form.state().join(u' '), after);
}

void TstInifiles::linkFormatOutlivesTheSequence()
{
    const PersonForm form({u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 @I1@ INDI"_s,
                           u"1 NOTE https://a.test/n"_s, u"1 WWW https://a.test/w"_s});
    form.playLines({u"separator=|"_s, u"toHtml=true"_s});
    form.playLines({u"separator=|"_s, u"clickablesLinks=true|clickableTagsList=NOTE"_s,
                    u"clickablesLinks=true|toMarkdown=true"_s});
    QCOMPARE(form.runJournal().mid(2),
             (QStringList{
                 u"INFO : Recherche dans 1 lignes de liens hypertexte."_s,
                 uR"(INFO : Modification du lien INDI.NOTE <a href="https://a.test/n" )"
                 R"(target="_blank">https://a.test/n</a> (l.4))"_s,
                 u"INFO : Modification de 1 liens hypertexte terminée."_s,
                 u"INFO : Recherche dans 1 lignes de liens hypertexte."_s,
                 u"INFO : Modification du lien INDI.WWW "
                 "[https://a.test/w](https://a.test/w) (l.5)"_s,
                 u"INFO : Modification de 1 liens hypertexte terminée."_s,
             }));
}

void TstInifiles::correspondenceFilesOutliveTheSequence()
{
    const QString links = u"setUrlLinks=true"_s;
    const QTemporaryDir folder;
    const QString csv = folder.filePath(u"a.csv"_s);
    writeLines(csv, {u"a.jpg,https://a.test/a"_s});
    {
        const PersonForm form(Person, fileOf({u"urlFilesIndex="_s + csv}));
        form.playLines({u"separator=|"_s, links});
        QCOMPARE(form.messages(), QStringList{NoCsvSeparator});
    }

    const PersonForm form;
    form.playLines(
        {u"separator=|"_s, links, u"urlFilesIndex="_s + csv, links, u"urlFilesIndex="_s, links});
    QCOMPARE(form.messages(), (QStringList{NoFiles, NoCsvSeparator, NoCsvSeparator}));

    form.playLines({u"separator=|"_s, links, links + u"|stringSplitFilenameUrl=,"_s});
    QCOMPARE(form.messages().mid(3), QStringList{NoCsvSeparator});
}

void TstInifiles::foldsOnce()
{
    // A save cuts the long line, and the steps after it find the new CONC line.
    const QString text(300, u'a');
    const PersonForm form({u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 @I1@ INDI"_s, u"1 NOTE "_s + text});
    form.playLines({u"separator=|"_s, u"saveGedFile=true"_s, u"delTags=true|delTagsList=CONC"_s});

    QStringList journal = form.runJournal();
    QCOMPARE(journal.filter(u"reconcaténées"_s),
             QStringList{u"INFO : 0 balises CONC reconcaténées."_s});
    QCOMPARE(journal.mid(journal.size() - 2),
             (QStringList{
                 u"INFO : Suppression de l'entrée : INDI.NOTE.CONC 2 CONC %1 (l.-1)"_s.arg(
                     text.left(300 - (255 - 7))),
                 u"INFO : 1 suppressions effectuées."_s,
             }));
}

void TstInifiles::journalOfASequence()
{
    const PersonForm form;
    form.playLines({
        u"delTags=true|delTagsList=NAME"_s, // there is no separator yet
        u"separator=|"_s,
        u"rien=true|bonjour"_s,
        u"EspacerPrenomNom=true"_s,
        u"replaceString=true|replaceStringTags=ZZZ"_s, // there is no text
        u"delTags=true|delTagsList=OCCU|EspacerPrenomNom=true"_s,
    });
    QCOMPARE(form.messages(), (QStringList{NoSeparator, NoText}));
    QCOMPARE(form.runJournal(),
             (QStringList{
                 Folded,
                 OneFolded,
                 u"INFO : Modification de INDI.NAME Jean/DUPONT/ en Jean /DUPONT/ (l.4)"_s,
                 u"INFO : 1 entrées INDI.NAME  modifiées."_s,
                 u"INFO : 0 remplacements effectués."_s,
                 u"INFO : 0 entrées INDI.NAME  modifiées."_s,
                 u"INFO : Suppression de l'entrée : INDI.OCCU 1 OCCU notaire (l.8)"_s,
                 u"INFO : 1 suppressions effectuées."_s,
             }));
    QCOMPARE(form.status(), u"1 balises supprimées."_s);
}

void TstInifiles::messageOfAStep()
{
    PersonForm form;
    form.playLines({
        u"separator=|"_s,
        u"delTags=true|replaceString=true|replaceSourString=notaire|replaceDestString=juge"_s,
        u"changeMediasPath=true|delTags=true|delTagsList=SEX"_s,
        u"delTags=true|delTagsList=RESI"_s,
    });
    QCOMPARE(form.messages(), (QStringList{NoTagToDelete, NoPath}));
    QCOMPARE(form.boxes().titles(), (QStringList{u"Erreur"_s, u"Erreur"_s}));
    QVERIFY(form.boxes().allCritical(nullptr));
    QCOMPARE(form.runJournal().mid(2),
             (QStringList{
                 u"INFO : 0 suppressions effectuées."_s,
                 u"INFO : Remplacement de 'INDI.OCCU notaire' par 'juge' (l.8)"_s,
                 u"INFO : 1 remplacements effectués."_s,
                 u"INFO : Suppression de l'entrée : INDI.SEX 1 SEX M (l.7)"_s,
                 u"INFO : 1 suppressions effectuées."_s,
                 u"INFO : 0 entrées OBJE.FILE trouvées."_s,
                 u"INFO : 0 chemins modifiés."_s,
                 u"INFO : Suppression de l'entrée : INDI.RESI.DATE 2 DATE MAR 1900 (l.10)"_s,
                 u"INFO : Suppression de l'entrée : INDI.RESI 1 RESI Paris (l.9)"_s,
                 u"INFO : 2 suppressions effectuées."_s,
             }));
}

void TstInifiles::messagesAreTranslated()
{
    const MarkingTranslator translator;
    const QString mark = u"[MainWindow]"_s;
    {
        const AnsweredBoxes boxes;
        const MainWindow window(nullptr);
        QCOMPARE(boxes.texts(), QStringList{mark + NoParameters});
        QCOMPARE(boxes.titles(), QStringList{Title});
    }
    PersonForm form;
    form.click(u"pbReadSequence"_s);
    form.playLines({u"bonjour"_s});
    QCOMPARE(form.messages(), (QStringList{mark + NoSequence, mark + NoSeparator}));
    QCOMPARE(form.boxes().titles(), (QStringList{Title, Title}));
}

void TstInifiles::editsDuringAStep()
{
    PersonForm form;
    form.boxes().setInspector([&form](const QMessageBox *) {
        QVERIFY(form.isEnabled(u"gbDelTags"_s));
        QVERIFY(form.isEnabled(u"pbReadSequence"_s));
        form.set({u"leTagsToDel=NOTE"_s, u"cbEspacer"_s});
    });
    form.playLines({u"separator=|"_s, u"delTags=true"_s, u"delTags=true|delTagsList=SEX"_s});

    // Edits last for the step in which they are made.
    QCOMPARE(form.messages(), QStringList{NoTagToDelete});
    QCOMPARE(form.deletedTags(), u"NOTE SEX"_s);
    QCOMPARE(form.runJournal().filter(u"INDI.NAME  modifiées"_s),
             QStringList{u"INFO : 1 entrées INDI.NAME  modifiées."_s});
}

void TstInifiles::saves_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QStringList>("files"); // with the tags that they contain
    QTest::addColumn<QStringList>("titles"); // of the messages

    // The opened file still has its CONC line.
    const QString opened = u"arbre.ged: NAME NOTE CONC SEX OCCU"_s;
    const QString whole = u": NAME NOTE SEX OCCU"_s;
    const QString note = u"delTags=true|delTagsList=NOTE"_s;
    const QString sex = u"delTags=true|delTagsList=SEX"_s;
    const QStringList noJournal{u"Erreur d'écriture du journal"_s};
    const auto row = [](const char *name, const QStringList &lines, const QStringList &files,
                        const QStringList &titles = {}) {
        QTest::newRow(name) << QStringList{u"separator=|"_s} + lines << files << titles;
    };
    row("no save", {note}, {opened});
    row("no value", {note, u"saveGedFile="_s}, {opened});
    row("after a step", {note, u"saveGedFile=true"_s}, {u"arbre.ged: NAME SEX OCCU"_s});
    row("between two steps", {note, u"saveGedFile=true"_s, sex}, {u"arbre.ged: NAME SEX OCCU"_s});
    row("at the end of a line, before its operations", {note + u"|saveGedFile=true"_s},
        {"arbre.ged"_L1 + whole});
    row("at the start of a line", {note, u"saveGedFile=true|"_s + sex},
        {u"arbre.ged: NAME SEX OCCU"_s});
    row("true and more", {note, u"saveGedFile=truex"_s}, {u"arbre.ged: NAME SEX OCCU"_s});
    row("to a path", {note, u"saveGedFile=~/copie.ged"_s}, {opened, u"copie.ged: NAME SEX OCCU"_s});
    row("to the open file and to a path",
        {u"saveGedFile=true"_s, note, u"saveGedFile=~/copie.ged"_s},
        {"arbre.ged"_L1 + whole, u"copie.ged: NAME SEX OCCU"_s});
    row("to a path and to the file that was opened",
        {u"saveGedFile=~/copie.ged"_s, note, u"saveGedFile=true"_s},
        {u"arbre.ged: NAME SEX OCCU"_s, "copie.ged"_L1 + whole});
    row("twice on one line", {note, u"saveGedFile=~/a.ged|saveGedFile=~/b.ged|"_s + sex},
        {u"a.ged: NAME SEX OCCU"_s, opened, u"b.ged: NAME SEX OCCU"_s});
    row("as the value of another key", {u"newMediasPath=saveGedFile=~/copie.ged"_s, note},
        {opened, "copie.ged"_L1 + whole});
    row("false is a name", {note, u"saveGedFile=false"_s, sex, u"saveGedFile=true"_s},
        {u"arbre.ged: NAME OCCU"_s, u"false: NAME SEX OCCU"_s}, noJournal);
    row("True is a name", {u"saveGedFile=True"_s}, {"True"_L1 + whole, opened}, noJournal);
    row("a blank is part of the name", {u"saveGedFile= true"_s}, {" true"_L1 + whole, opened},
        noJournal);
    row("in a folder that is not there",
        {u"saveGedFile=~/rien/x.ged"_s, note, u"saveGedFile=true"_s},
        {u"arbre.ged: NAME SEX OCCU"_s}, {u"Erreur d'écriture"_s});
}

void TstInifiles::saves()
{
    QFETCH(QStringList, lines);
    QFETCH(QStringList, files);
    QFETCH(QStringList, titles);

    PersonForm form(Person.mid(0, 8));
    const CurrentFolder current(form.folder());
    form.playLines(lines);

    QStringList found;
    const QStringList names = QDir(form.folder()).entryList(QDir::Files, QDir::Name);
    for (const QString &name : names) {
        QStringList tags;
        QStringList entries = readLines(form.path(name)).mid(3);
        entries.removeLast(); // the trailer
        for (const QString &entry : std::as_const(entries))
            tags += entry.section(u' ', 1, 1);
        found += name + ": "_L1 + tags.join(u' ');
    }
    QCOMPARE(found, files);
    QCOMPARE(form.boxes().titles(), titles);
    QVERIFY(form.boxes().allCritical(nullptr));
    QVERIFY(!form.progress()->isVisible());
}

void TstInifiles::barAfterASave_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QList<bool>>("visible"); // during each message

    const QString step = u"replaceString=true|replaceStringTags=ZZZ"_s;
    const auto row = [](const char *name, const QStringList &lines, const QList<bool> &visible) {
        QTest::newRow(name) << QStringList{u"separator=|"_s} + lines << visible;
    };
    row("no save", {step, step}, {true, true});
    row("a save", {step, u"saveGedFile=true"_s, step, step}, {true, false, false});
    row("a save on the line of the step", {u"saveGedFile=true|"_s + step}, {false});
    row("a save to a path", {u"saveGedFile=~/copie.ged"_s, step}, {false});
    row("a file that cannot be written", {u"saveGedFile=~/rien/x.ged"_s, step}, {true, true});
    row("a journal that cannot be written", {u"saveGedFile=~/x/a"_s, step}, {true, true});
    row("a journal that cannot be written, after a save",
        {u"saveGedFile=true"_s, step, u"saveGedFile=~/x/a"_s, step}, {false, true, true});
}

void TstInifiles::barAfterASave()
{
    QFETCH(QStringList, lines);
    QFETCH(QList<bool>, visible);

    PersonForm form;
    // The archive cannot be made in the folder x.
    QVERIFY(QDir(form.folder()).mkdir(u"x"_s));
    writeBytes(form.path(u"x/ARCH"_s), {});
    QList<bool> seen;
    form.boxes().setInspector(
        [&form, &seen](const QMessageBox *) { seen += form.progress()->isVisible(); });
    form.playLines(lines);
    QCOMPARE(seen, visible);
    QVERIFY(!form.progress()->isVisible());
}

void TstInifiles::playedAgain()
{
    const PersonForm form;
    form.playLines({u"separator=|"_s, u"delTags=true|delTagsList=NOTE"_s});
    const QStringList first = form.journal();
    QCOMPARE(form.deletedTags(), u"NOTE"_s);

    // The file is read again, and the first separator is forgotten.
    form.playLines({u"delTags=true|delTagsList=SEX"_s});
    const QStringList second = form.journal();
    QCOMPARE(form.messages(), QStringList{NoSeparator});
    QCOMPARE(form.deletedTags(), u"NOTE"_s);

    form.playLines({u"separator=,"_s, u"delTags=true,delTagsList=SEX"_s});
    QCOMPARE(form.messages(), QStringList{NoSeparator});
    QCOMPARE(form.deletedTags(), u"NOTE SEX"_s);

    QCOMPARE(second, first + QStringList{u"INFO : 0 balises CONC reconcaténées."_s});
    QList<QStringList> shown;
    const QList<FenJournal *> windows = form.journalWindows();
    for (const FenJournal *fenJournal : windows)
        shown += journalIn(fenJournal);
    QCOMPARE(shown, (QList<QStringList>{first, second, form.journal()}));
}

void TstInifiles::filesAreReadAndLeftAlone()
{
    SKIP_ON_WINDOWS("Windows has no folder that lists the open files");
    const QByteArray parameters = "delTags=true\r\n; fin";
    const QByteArray sequence = "delTags=true\r\nseparator=|\r\ndelTags=true|delTagsList=NOTE";
    PersonForm form;
    writeBytes(besideExecutable(u"PARAM.INI"_s), parameters);
    writeBytes(besideExecutable(u"SEQUENCE.INI"_s), sequence);
    const auto cleanUp = qScopeGuard([] {
        QFile::remove(besideExecutable(u"PARAM.INI"_s));
        QFile::remove(besideExecutable(u"SEQUENCE.INI"_s));
    });
    const auto openFiles = [] {
        QStringList names;
        const auto files = QDir(u"/proc/self/fd"_s).entryInfoList(QDir::AllEntries | QDir::System);
        for (const QFileInfo &file : files) {
            if (file.symLinkTarget().endsWith(".INI"_L1))
                names += QFileInfo(file.symLinkTarget()).fileName();
        }
        return names;
    };

    // The first window had its own parameter file.
    form.window = std::make_unique<MainWindow>(nullptr);
    form.window->show();
    QCOMPARE(openFiles(), QStringList());
    form.open(form.path());
    QStringList open;
    form.boxes().setInspector([&open, &openFiles](const QMessageBox *) { open = openFiles(); });
    form.click(u"pbReadSequence"_s);

    QCOMPARE(form.messages(), QStringList{NoSeparator});
    QCOMPARE(open, QStringList{u"SEQUENCE.INI"_s});
    QCOMPARE(openFiles(), QStringList());
    QCOMPARE(form.deletedTags(), u"NOTE"_s);
    QCOMPARE(readBytes(besideExecutable(u"PARAM.INI"_s)), parameters);
    QCOMPARE(readBytes(besideExecutable(u"SEQUENCE.INI"_s)), sequence);
}

void TstInifiles::arguments_data()
{
    QTest::addColumn<QStringList>("items");
    QTest::addColumn<QStringList>("journal"); // after the folding
    QTest::addColumn<QString>("message");

    const auto row = [](const char *name, const QStringList &items, const QStringList &journal,
                        const QString &message = {}) {
        QTest::newRow(name) << items << journal << message;
    };
    row("nothing", {}, {});
    row("fields without their group",
        {u"delTagsList=NOTE"_s, u"clickableTagsList=NOTE"_s, u"newMediasPath=photos"_s,
         u"duplicatedSourTag=INDI.NOTE"_s, u"replaceSourString=Paris"_s, u"delIfEmptyTags=true"_s,
         u"delMediaPath=true"_s, u"moveDuplicatedContent=true"_s, u"replaceRegex=true"_s},
        {});

    row("names", {u"EspacerPrenomNom=true"_s},
        {u"INFO : Modification de INDI.NAME Jean/DUPONT/ en Jean /DUPONT/ (l.4)"_s,
         u"INFO : 1 entrées INDI.NAME  modifiées."_s});

    const auto deletion = [&row](const char *name, const QStringList &items,
                                 const QStringList &entries, const QString &message = {}) {
        QStringList journal;
        for (const QString &entry : entries)
            journal += u"INFO : Suppression de l'entrée : "_s + entry;
        journal += u"INFO : %1 suppressions effectuées."_s.arg(entries.size());
        row(name, QStringList{u"delTags=true"_s} + items, journal, message);
    };
    const QString emptyNote = u"INDI.NOTE 1 NOTE (l.5)"_s;
    const QString note = u"INDI.NOTE 1 NOTE vers Paris (l.6)"_s;
    const QString noteDate = u"INDI.NOTE.DATE 2 DATE 1900 (l.7)"_s;
    const QString home = u"INDI.RESI 1 RESI paris (l.8)"_s;
    const QStringList untagged{u"CONT 1 CONT suite (l.15)"_s, u" 0 @N1@ NOTE commune (l.14)"_s};
    deletion("deletion", {u"delTagsList=NOTE"_s}, {noteDate, note, emptyNote});
    deletion("deletion of two tags", {u"delTagsList=INDI.NOTE;RESI"_s},
             {home, noteDate, note, emptyNote});
    deletion("deletion, parts are not trimmed", {u"delTagsList=RESI; NOTE"_s}, {home});
    deletion("deletion, an empty part is a pattern", {u"delTagsList=RESI;"_s},
             untagged + QStringList{home});
    deletion("deletion, an empty field is one empty pattern", {}, untagged, NoTagToDelete);
    deletion("deletion of empty ones", {u"delTagsList=NOTE"_s, u"delIfEmptyTags=true"_s},
             {emptyNote});
    deletion("deletion of childless ones",
             {u"delTagsList=NOTE;DATE"_s, u"delIfNoChildsTags=true"_s},
             {noteDate, note, emptyNote});
    deletion("deletion of childless ones only",
             {u"delTagsList=NOTE"_s, u"delIfNoChildsTags=true"_s}, {emptyNote});
    deletion(
        "deletion by a value",
        {u"delTagsList=NOTE;RESI"_s, u"delIfContainsValue=true"_s, u"delTagContainsValue=Paris"_s},
        {noteDate, note});
    deletion("deletion by a value, which is no regex",
             {u"delTagsList=NOTE;RESI"_s, u"delIfContainsValue=true"_s,
              u"delTagContainsValue=[Pp]aris"_s},
             {});
    deletion("deletion by a regex",
             {u"delTagsList=NOTE;RESI"_s, u"delIfContainsValue=true"_s, u"delIfContainsRx=true"_s,
              u"delTagContainsValue=[Pp]aris"_s},
             {home, noteDate, note});

    const auto links = [&row](const char *name, const QStringList &items,
                              const QStringList &entries) {
        QStringList journal{
            u"INFO : Recherche dans %1 lignes de liens hypertexte."_s.arg(entries.size())};
        for (const QString &entry : entries)
            journal += u"INFO : Modification du lien "_s + entry;
        journal += u"INFO : Modification de %1 liens hypertexte terminée."_s.arg(entries.size());
        row(name, QStringList{u"clickablesLinks=true"_s} + items, journal);
    };
    const QString www = u"INDI.WWW [https://a.test/x](https://a.test/x) (l.9)"_s;
    const QString title = u"INDI.TITL [https://b.test/y](https://b.test/y) (l.10)"_s;
    links("links", {}, {www, title});
    links("links in Markdown", {u"toHtml=true"_s, u"toMarkdown=true"_s}, {www, title});
    links("links in HTML", {u"toHtml=true"_s, u"clickableTagsList=WWW"_s},
          {uR"(INDI.WWW <a href="https://a.test/x" target="_blank">https://a.test/x</a> )"
           "(l.9)"_s});
    links("links of a tag", {u"clickableTagsList=INDI.TITL"_s}, {title});
    links("links of two tags", {u"clickableTagsList=TITL;WWW"_s}, {title, www});
    links("links, parts are not trimmed", {u"clickableTagsList=TITL; WWW"_s}, {title});
    links("links, an empty part selects nothing", {u"clickableTagsList=WWW;"_s}, {www});
    links("links, two empty parts are not an empty field", {u"clickableTagsList=;"_s}, {});

    const auto paths = [&row](const char *name, const QStringList &items, const QString &prefix,
                              const QString &message = {}) {
        row(name, QStringList{u"changeMediasPath=true"_s} + items,
            {u"INFO : 2 entrées OBJE.FILE trouvées."_s,
             u"INFO : Modification de OBJE.FILE media/photo.jpg en %1photo.jpg (l.12)"_s.arg(
                 prefix),
             u"INFO : Modification de OBJE.FILE acte.png en %1acte.png (l.13)"_s.arg(prefix),
             u"INFO : 2 chemins modifiés."_s},
            message);
    };
    paths("path", {u"newMediasPath=photos"_s}, u"photos/"_s);
    paths("path with a slash at the end", {u"newMediasPath=photos/"_s}, u"photos/"_s);
    paths("path with backslashes", {u"newMediasPath=C:\\images"_s}, u"C:/images/"_s);
    paths("path with a backslash at the end", {u"newMediasPath=C:\\mes images\\"_s},
          u"C:/mes images/"_s);
    paths("path with slashes", {u"newMediasPath=C:/images/"_s}, u"C:/images/"_s);
    paths("path with both", {u"newMediasPath=\\\\nas/a\\b"_s}, u"//nas/a/b/"_s);
    paths("path of two slashes", {u"newMediasPath=a//"_s}, u"a//"_s);
    paths("slash alone", {u"newMediasPath=/"_s}, u"/"_s);
    paths("backslash alone", {u"newMediasPath=\\"_s}, u"/"_s);
    paths("a blank behind the path", {u"newMediasPath=a "_s}, u"a /"_s);
    paths("no path", {}, {}, NoPath);
    paths("path deleted", {u"delMediaPath=true"_s}, {});
    paths("path deleted and filled", {u"delMediaPath=true"_s, u"newMediasPath=C:\\images"_s}, {});

    const auto move = [&row](const char *name, const QStringList &items, const QStringList &entries,
                             int created, int edited, int deleted) {
        row(name, QStringList{u"delDuplicated=true"_s} + items,
            entries
                + QStringList{
                    u"INFO : Création de %1 balises terminée."_s.arg(created),
                    u"INFO : Edition de %1 balises terminée."_s.arg(edited),
                    u"INFO : Suppression de %1 balises terminée."_s.arg(deleted),
                });
    };
    const QStringList homeToTitle{u"duplicatedSourTag=INDI.RESI"_s,
                                  u"duplicatedDestTag=INDI.TITL"_s};
    const QStringList homeToPlace{u"duplicatedSourTag=INDI.RESI"_s,
                                  u"duplicatedDestTag=INDI.PLAC"_s};
    const QString titleIsHome =
        u"INFO : Modification de l'entrée : INDI.TITL 1 TITL https://b.test/y (l.10) en paris "
        "(l.8)"_s;
    const QString noHome = u"INFO : Suppression de l'entrée : INDI.RESI 1 RESI paris (l.8)"_s;
    const QString newPlace =
        u"INFO : Création de l'entrée : INDI.PLAC 1 PLAC fille de la balise INDI 0 @I1@ INDI "
        "(l.3)"_s;
    move("move, nothing asked", homeToTitle, {}, 0, 0, 0);
    move("move of the value", homeToTitle + QStringList{u"moveDuplicatedContent=true"_s},
         {titleIsHome}, 0, 1, 0);
    move("move, source deleted", homeToTitle + QStringList{u"delDuplicatedSourTag=true"_s},
         {noHome}, 0, 0, 1);
    move("move, both",
         homeToTitle + QStringList{u"moveDuplicatedContent=true"_s, u"delDuplicatedSourTag=true"_s},
         {titleIsHome, noHome}, 0, 1, 1);
    move("move, no destination",
         homeToPlace + QStringList{u"moveDuplicatedContent=true"_s, u"delDuplicatedSourTag=true"_s},
         {}, 0, 0, 0);
    move("move, destination created", homeToPlace + QStringList{u"createDuplicatedDestTag=true"_s},
         {newPlace}, 1, 0, 0);
    move("move of two pairs",
         {u"duplicatedSourTag=INDI.NOTE.DATE;INDI.RESI"_s,
          u"duplicatedDestTag=INDI.NOTE;INDI.TITL"_s, u"moveDuplicatedContent=true"_s},
         {u"INFO : Modification de l'entrée : INDI.NOTE 1 NOTE vers Paris (l.6) en 1900 (l.7)"_s,
          titleIsHome},
         0, 2, 0);

    const auto replacement = [&row](const char *name, const QStringList &items,
                                    const QStringList &entries) {
        QStringList journal;
        for (const QString &entry : entries)
            journal += u"INFO : Remplacement de "_s + entry;
        journal += u"INFO : %1 remplacements effectués."_s.arg(entries.size());
        row(name, QStringList{u"replaceString=true"_s} + items, journal);
    };
    const QStringList parisToLyon{u"replaceSourString=paris"_s, u"replaceDestString=Lyon"_s};
    const QString noteOfLyon = u"'INDI.NOTE vers Paris' par 'vers Lyon' (l.6)"_s;
    const QString homeOfLyon = u"'INDI.RESI paris' par 'Lyon' (l.8)"_s;
    replacement("replacement", parisToLyon, {noteOfLyon, homeOfLyon});
    replacement("replacement, case counts", parisToLyon + QStringList{u"replaceSensible=true"_s},
                {homeOfLyon});
    replacement("replacement in a tag", parisToLyon + QStringList{u"replaceStringTags=NOTE"_s},
                {noteOfLyon});
    replacement("replacement in two tags",
                parisToLyon + QStringList{u"replaceStringTags=INDI.NOTE;RESI"_s},
                {noteOfLyon, homeOfLyon});
    replacement("replacement, an empty part is every tag",
                parisToLyon + QStringList{u"replaceStringTags=WWW;"_s}, {noteOfLyon, homeOfLyon});
    replacement("replacement by nothing", {u"replaceSourString=vers "_s},
                {u"'INDI.NOTE vers Paris' par 'Paris' (l.6)"_s});
    replacement("replacement, a text is no regex", {u"replaceSourString=p.ris"_s}, {});
    replacement(
        "replacement of a regex",
        {u"replaceSourString=p.ris"_s, u"replaceDestString=\\1 %1"_s, u"replaceRegex=true"_s},
        {u"'INDI.NOTE vers Paris' par 'vers \\1 %1' (l.6)"_s,
         u"'INDI.RESI paris' par '\\1 %1' (l.8)"_s});
    replacement("replacement of a regex, case counts",
                {u"replaceSourString=p.ris"_s, u"replaceDestString=Lyon"_s, u"replaceRegex=true"_s,
                 u"replaceSensible=true"_s},
                {homeOfLyon});
}

void TstInifiles::arguments()
{
    QFETCH(QStringList, items);
    QFETCH(QStringList, journal);
    QFETCH(QString, message);

    const QStringList lines{
        u"0 HEAD"_s,
        u"1 CHAR UTF-8"_s,
        u"0 @I1@ INDI"_s,
        u"1 NAME Jean/DUPONT/"_s,
        u"1 NOTE"_s,
        u"1 NOTE vers Paris"_s,
        u"2 DATE 1900"_s,
        u"1 RESI paris"_s,
        u"1 WWW https://a.test/x"_s,
        u"1 TITL https://b.test/y"_s,
        u"0 @O1@ OBJE"_s,
        u"1 FILE media/photo.jpg"_s,
        u"1 FILE acte.png"_s,
        u"0 @N1@ NOTE commune"_s,
        u"1 CONT suite"_s,
    };
    const QStringList whole = QStringList{u"INFO : 0 balises CONC reconcaténées."_s} + journal;
    const QStringList messages = message.isEmpty() ? QStringList() : QStringList{message};

    {
        const PersonForm form(lines, fileOf(items));
        form.apply();
        QCOMPARE(form.runJournal(), whole);
        QCOMPARE(form.messages(), messages);
    }
    // A step of a sequence does the same.
    const PersonForm form(lines);
    form.play("separator=§\n" + items.join(u"§"_s).toUtf8());
    QCOMPARE(form.runJournal(), whole);
    QCOMPARE(form.messages(), messages);
}

void TstInifiles::orderOfTheOperations()
{
    PersonForm form({u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 @I1@ INDI"_s, u"1 NAME Jean/DUPONT/"_s,
                     u"1 NOTE https://a.test/n"_s, u"1 TITL maire"_s, u"1 BIRT"_s, u"2 SOUR @S1@"_s,
                     u"0 @S1@ SOUR"_s, u"1 OBJE @O1@"_s, u"0 @O1@ OBJE"_s,
                     u"1 FILE https://b.test/a.jpg"_s},
                    "urlFilesIndex=liste.csv\n");
    const CurrentFolder current(form.folder());
    writeLines(form.path(u"liste.csv"_s), {u"a.jpg,https://c.test/a"_s});
    form.set({u"gbSetURLLinks"_s, u"leStrPlitCsv=,"_s, u"cbUrlInEvt"_s, u"cbUrlInSour"_s,
              u"gbReplaceString"_s, u"leTextOri=Jean /"_s, u"leTextDest=Paul /"_s,
              u"gbMoveTagContent"_s, u"leTagSour=INDI.NAME"_s, u"leTagDest=INDI.TITL"_s,
              u"cbCpSourDestContent"_s, u"gbReplaceMediaPath"_s, u"leNewMediaPath=photos"_s,
              u"gbClickablesLinks"_s, u"gbDelTags"_s, u"leTagsToDel=NOTE"_s, u"cbEspacer"_s});
    QStringList statusTexts;
    const auto connection = connect(form.window->statusBar(), &QStatusBar::messageChanged, this,
                                    [&statusTexts](const QString &text) { statusTexts += text; });
    form.apply();
    disconnect(connection);

    // Each operation works on the results of the previous ones.
    QCOMPARE(statusTexts, (QStringList{
                              u"Reconcaténation des balises en cours..."_s,
                              u"0 balises CONC reconcaténées."_s,
                              u"Espacement des noms en cours..."_s,
                              u"1 noms espacés."_s,
                              u"Suppression des balises en cours..."_s,
                              u"1 balises supprimées."_s,
                              u"Ajout des URL médias en cours..."_s,
                              u"1 URL médias ajoutées."_s,
                              u"Modification des URL en cours..."_s,
                              u"3 URL modifiés."_s,
                              u"Modification des chemins médias en cours..."_s,
                              u"1 chemins modifiés."_s,
                              u"Déplacement des balises en cours..."_s,
                              u"0 balises traitées."_s,
                              u"Remplacement de texte en cours..."_s,
                              u"2 textes remplacés."_s,
                          }));
    QCOMPARE(form.runJournal().mid(1),
             (QStringList{
                 u"INFO : Modification de INDI.NAME Jean/DUPONT/ en Jean /DUPONT/ (l.4)"_s,
                 u"INFO : 1 entrées INDI.NAME  modifiées."_s,
                 u"INFO : Suppression de l'entrée : INDI.NOTE 1 NOTE https://a.test/n (l.5)"_s,
                 u"INFO : 1 suppressions effectuées."_s,
                 u"INFO : Chargement du fichier de correspondance liste.csv"_s,
                 u"INFO : 1 correspondances à ajouter."_s,
                 u"INFO : Ajout de la balise SOUR.WWW https://c.test/a référençant la balise "
                 "OBJE.FILE a.jpg (l.12)"_s,
                 u"INFO : Ajout de la balise INDI.BIRT 2 NOTE Source : https://c.test/a "
                 "référençant la source @S1@ (l.9)"_s,
                 u"INFO : Ajout de 1 balises SOUR.WWW"_s,
                 u"INFO : Ajout de 1 balises INDI.BIRT.NOTE"_s,
                 u"INFO : Recherche dans 3 lignes de liens hypertexte."_s,
                 u"INFO : Modification du lien INDI.BIRT.NOTE Source : "
                 "[https://c.test/a](https://c.test/a) (l.-1)"_s,
                 u"INFO : Modification du lien SOUR.WWW [https://c.test/a](https://c.test/a) "
                 "(l.-1)"_s,
                 u"INFO : Modification du lien OBJE.FILE "
                 "[https://b.test/a.jpg](https://b.test/a.jpg) (l.12)"_s,
                 u"INFO : Modification de 3 liens hypertexte terminée."_s,
                 u"INFO : 1 entrées OBJE.FILE trouvées."_s,
                 u"INFO : Modification de OBJE.FILE "
                 "[https://b.test/a.jpg](https://b.test/a.jpg) en photos/a.jpg) (l.12)"_s,
                 u"INFO : 1 chemins modifiés."_s,
                 u"INFO : Modification de l'entrée : INDI.TITL 1 TITL maire (l.6) en Jean "
                 "/DUPONT/ (l.4)"_s,
                 u"INFO : Création de 0 balises terminée."_s,
                 u"INFO : Edition de 1 balises terminée."_s,
                 u"INFO : Suppression de 0 balises terminée."_s,
                 u"INFO : Remplacement de 'INDI.NAME Jean /DUPONT/' par 'Paul /DUPONT/' (l.4)"_s,
                 u"INFO : Remplacement de 'INDI.TITL Jean /DUPONT/' par 'Paul /DUPONT/' (l.6)"_s,
                 u"INFO : 2 remplacements effectués."_s,
             }));
}

void TstInifiles::groupsAreReadWhenTheirTurnComes()
{
    PersonForm form({u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 @I1@ INDI"_s, u"1 NAME Jean/DUPONT/"_s,
                     u"1 NOTE court"_s, u"1 TITL maire"_s, u"1 WWW https://a.test/w"_s,
                     u"0 @O1@ OBJE"_s, u"1 FILE media/a.jpg"_s, u"0 @S1@ SOUR"_s, u"1 OBJE @O1@"_s},
                    "urlFilesIndex=liste.csv\n");
    const CurrentFolder current(form.folder());
    writeLines(form.path(u"liste.csv"_s), {u"a.jpg;https://c.test/a"_s});
    // What the user does while the status bar shows a text.
    const QMap<QString, QStringList> edits{
        {u"0 balises CONC reconcaténées."_s, {u"cbEspacer"_s, u"gbClickablesLinks"_s}},
        {u"1 noms espacés."_s, {u"gbDelTags"_s, u"leTagsToDel=NOTE"_s, u"cbDelEmptyTags"_s}},
        {u"0 balises supprimées."_s, {u"gbSetURLLinks"_s, u"leStrPlitCsv=;"_s, u"cbUrlInSour"_s}},
        {u"1 URL médias ajoutées."_s, {u"rbHtml"_s, u"leTagToClickable=TITL"_s}},
        {u"0 URL modifiés."_s, {u"gbReplaceMediaPath"_s, u"cbDelMediaPath"_s}},
        {u"1 chemins modifiés."_s,
         {u"gbMoveTagContent"_s, u"leTagSour=INDI.NAME"_s, u"leTagDest=INDI.TITL"_s,
          u"cbDelTagSour"_s}},
        {u"1 balises traitées."_s, {u"leTextOri=maire"_s, u"leTextDest=curé"_s}},
        // These come too late, or their group is unchecked by then.
        {u"Remplacement de texte en cours..."_s, {u"gbMoveTagContent"_s, u"leTagSour=INDI.TITL"_s}},
        {u"Espacement des noms en cours..."_s, {u"gbDelTags"_s, u"leTagsToDel=TITL"_s}},
        {u"Déplacement des balises en cours..."_s, {u"gbReplaceString"_s}},
        {u"Modification des URL en cours..."_s, {u"!gbDelTags"_s, u"leTagToClickable=WWW"_s}},
    };
    const auto connection =
        connect(form.window->statusBar(), &QStatusBar::messageChanged, this,
                [&form, &edits](const QString &text) { form.set(edits.value(text)); });
    form.apply();
    disconnect(connection);

    QCOMPARE(form.messages(), QStringList());
    QCOMPARE(form.runJournal().mid(1),
             (QStringList{
                 u"INFO : Modification de INDI.NAME Jean/DUPONT/ en Jean /DUPONT/ (l.4)"_s,
                 u"INFO : 1 entrées INDI.NAME  modifiées."_s,
                 u"INFO : 0 suppressions effectuées."_s,
                 u"INFO : Chargement du fichier de correspondance liste.csv"_s,
                 u"INFO : 1 correspondances à ajouter."_s,
                 u"INFO : Ajout de la balise SOUR.WWW https://c.test/a référençant la balise "
                 "OBJE.FILE a.jpg (l.9)"_s,
                 u"INFO : Ajout de 1 balises SOUR.WWW"_s,
                 u"INFO : Recherche dans 0 lignes de liens hypertexte."_s,
                 u"INFO : Modification de 0 liens hypertexte terminée."_s,
                 u"INFO : 1 entrées OBJE.FILE trouvées."_s,
                 u"INFO : Modification de OBJE.FILE media/a.jpg en a.jpg (l.9)"_s,
                 u"INFO : 1 chemins modifiés."_s,
                 u"INFO : Suppression de l'entrée : INDI.NAME 1 NAME Jean /DUPONT/ (l.4)"_s,
                 u"INFO : Création de 0 balises terminée."_s,
                 u"INFO : Edition de 0 balises terminée."_s,
                 u"INFO : Suppression de 1 balises terminée."_s,
                 u"INFO : Remplacement de 'INDI.TITL maire' par 'curé' (l.6)"_s,
                 u"INFO : 1 remplacements effectués."_s,
             }));
    QCOMPARE(form.state(), (QStringList{u"cbUrlInEvt"_s, u"rbHtml"_s}));
}

VARLUNE_TEST_MAIN(TstInifiles)
#include "tst_inifiles.moc"
