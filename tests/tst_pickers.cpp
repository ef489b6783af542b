#include "document.h"
#include "fenjournal.h"
#include "filedialogs.h"
#include "form.h"
#include "markingtranslator.h"
#include "testmain.h"
#include "window.h"

#include <QCheckBox>
#include <QDir>
#include <QGroupBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

using namespace Qt::StringLiterals;

namespace {

/// A tag picker, the field it fills, and their group.
struct Picker
{
    QString button;
    QString field;
    QString group;
};

const QList<Picker> Pickers{
    {u"pbPickTagToDel"_s, u"leTagsToDel"_s, u"gbDelTags"_s},
    {u"pickSrcTag"_s, u"leTagSour"_s, u"gbMoveTagContent"_s},
    {u"pickDestTag"_s, u"leTagDest"_s, u"gbMoveTagContent"_s},
    {u"pickDestClickableTag"_s, u"leTagToClickable"_s, u"gbClickablesLinks"_s},
    {u"pbSelectTagReplace"_s, u"leTagToApply"_s, u"gbReplaceString"_s},
};

const QStringList Lines{
    u"0 HEAD"_s,
    u"1 CHAR UTF-8"_s,
    u"0 @I1@ INDI"_s,
    u"1 NAME Jean /DUPONT/"_s,
    u"1 BIRT"_s,
    u"2 DATE 1 JAN 1900"_s,
    u"1 _UID 12"_s,
    u"1 EV un"_s,
    u"1 EV TITL"_s,
    u"1 MARRIED"_s,
    u"2 PLAC Brest"_s,
    u"0 @N1@ NOTE texte libre"_s,
    u"1 CONT suite"_s,
    u"0 @N2@ NOTE"_s,
    u"1 CONT suite et fin"_s,
};

/// The form, with what the user does to it and to the tree.
class PickerForm : public Form
{
public:
    PickerForm() : Form(Lines) { }

    /// The path of a new folder of that name.
    [[nodiscard]] QString makeFolder(const QString &name) const
    {
        QDir().mkpath(path(name));
        return path(name);
    }
    /// Clicks on the row with that line text, or on the section with that label.
    void select(const QString &line) const
    {
        QTreeWidgetItem *twi = line.contains(u' ') ? row(line) : sectionNode(*tree(), line);
        tree()->scrollToItem(twi);
        QTest::mouseClick(tree()->viewport(), Qt::LeftButton, {},
                          tree()->visualItemRect(twi).center());
        QCOMPARE(tree()->currentItem(), twi);
    }
    void clickBox(const QString &checkBox) const
    {
        auto *widget = find<QCheckBox>(checkBox);
        QVERIFY2(widget->isEnabled(), qPrintable(checkBox));
        clickIndicator(widget);
    }
    /// Switches a group from the keyboard, which clicks it.
    void clickGroup(const QString &group) const
    {
        QTest::keyClick(find<QGroupBox>(group), Qt::Key_Space);
    }
    /// The texts of the five tag fields.
    [[nodiscard]] QStringList tagFields() const
    {
        QStringList texts;
        for (const Picker &picker : Pickers)
            texts += text(picker.field);
        return texts;
    }
    /// The document as the user sees it: journal, status bar and rows.
    [[nodiscard]] QStringList documentState() const
    {
        QStringList state{
            openJournal()->findChild<QPlainTextEdit *>()->toPlainText(),
            status(),
        };
        for (QTreeWidgetItemIterator it(tree()); *it; ++it)
            state += lineText(static_cast<TwItem *>(*it)) + ((*it)->isHidden() ? u" -"_s : u" +"_s);
        return state;
    }
};

void addPickers()
{
    QTest::addColumn<int>("index");

    for (int i = 0; i < Pickers.size(); ++i)
        QTest::newRow(qPrintable(Pickers.at(i).button)) << i;
}

} // namespace

/// The buttons of the form that fill its fields: from the current row of the tree, or from a file
/// dialog.
class TstPickers : public QObject
{
    Q_OBJECT

private slots:
    void pickTag_data();
    void pickTag();
    void pickNothing_data();
    void pickNothing();
    void pickedTag_data();
    void pickedTag();

    void importFiles();
    void importFilesCancelled();

    void directory_data();
    void directory();
    void newMediaPathChecksItsGroup();
    void dialogTextsAreTranslated();

    void mediaPathOrDeletion();
    void deletionByContent();
    void deletionGroupClickedOn();
    void deletionSetByTheProgram();

    void oneKindOfLinkStaysOn_data();
    void oneKindOfLinkStaysOn();
    void linksWithoutTheirGroup();

    void documentIsLeftAlone();
};

void TstPickers::pickTag_data()
{
    addPickers();
}

void TstPickers::pickTag()
{
    QFETCH(const int, index);
    const Picker &picker = Pickers.at(index);

    const PickerForm session;
    session.clickGroup(picker.group);
    const auto expect = [&](const QString &text) {
        QStringList expected(Pickers.size());
        expected[index] = text;
        QCOMPARE(session.tagFields(), expected);
    };
    session.select(u"1 NAME Jean /DUPONT/"_s);
    session.click(picker.button);
    expect(u"INDI.NAME"_s);
    session.select(u"2 DATE 1 JAN 1900"_s);
    session.click(picker.button);
    expect(u"INDI.NAME;INDI.BIRT.DATE"_s);
    session.click(picker.button);
    expect(u"INDI.NAME;INDI.BIRT.DATE;INDI.BIRT.DATE"_s);

    // What the user has typed stays as it is.
    auto *field = session.find<QLineEdit>(picker.field);
    for (const QString &typed : {u"NOTE;"_s, u" "_s, u"*.DATE; "_s}) {
        field->clear();
        QTest::keyClicks(field, typed);
        session.select(u"1 NAME Jean /DUPONT/"_s);
        session.click(picker.button);
        expect(typed + u";INDI.NAME"_s);
    }
}

void TstPickers::pickNothing_data()
{
    addPickers();
}

void TstPickers::pickNothing()
{
    QFETCH(const int, index);
    const Picker &picker = Pickers.at(index);

    const PickerForm session;
    session.clickGroup(picker.group);
    for (const QString &before : {QString(), u"NOTE"_s}) {
        session.find<QLineEdit>(picker.field)->setText(before);
        QStringList expected(Pickers.size());
        expected[index] = before;

        session.tree()->setCurrentItem(nullptr);
        session.click(picker.button);
        QCOMPARE(session.tree()->currentItem(), nullptr);
        QCOMPARE(session.tagFields(), expected);
        // Section nodes, with records and without, and entries without a tag.
        for (const QString &line :
             {u"en-tête"_s, u"personnes"_s, u"familles"_s, u"sources"_s, u"médias"_s, u"dépots"_s,
              u"notes"_s, u"1 EV un"_s, u"1 MARRIED"_s, u"0 @N1@ NOTE texte libre"_s}) {
            session.select(line);
            session.click(picker.button);
            QVERIFY2(session.tagFields() == expected, qPrintable(line));
        }
    }
    QCOMPARE(session.messages(), QStringList());
}

void TstPickers::pickedTag_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("tag");

    QTest::newRow("record") << u"0 @I1@ INDI"_s << u"INDI"_s;
    QTest::newRow("record without an identifier") << u"0 HEAD"_s << u"HEAD"_s;
    QTest::newRow("line of a record") << u"1 CHAR UTF-8"_s << u"HEAD.CHAR"_s;
    QTest::newRow("line without a value") << u"1 BIRT"_s << u"INDI.BIRT"_s;
    QTest::newRow("line of the second level") << u"2 DATE 1 JAN 1900"_s << u"INDI.BIRT.DATE"_s;
    QTest::newRow("private tag") << u"1 _UID 12"_s << u"INDI._UID"_s;
    QTest::newRow("value in the form of a tag") << u"1 EV TITL"_s << u"INDI.TITL"_s;
    QTest::newRow("below an entry without a tag") << u"2 PLAC Brest"_s << u"PLAC"_s;
    QTest::newRow("below a note with its text") << u"1 CONT suite"_s << u"CONT"_s;
    QTest::newRow("below a note without text") << u"1 CONT suite et fin"_s << u"NOTE.CONT"_s;
}

void TstPickers::pickedTag()
{
    QFETCH(const QString, line);
    QFETCH(const QString, tag);

    const PickerForm session;
    session.clickGroup(u"gbDelTags"_s);
    session.select(line);
    session.click(u"pbPickTagToDel"_s);
    QCOMPARE(session.text(u"leTagsToDel"_s), tag);
}

void TstPickers::importFiles()
{
    const PickerForm session;
    session.clickGroup(u"gbSetURLLinks"_s);
    const QStringList files{session.path(u"un.csv"_s), session.path(u"deux et demi.csv"_s),
                            session.path(u"trois.csv"_s)};
    for (const QString &file : files)
        writeBytes(file, {});
    // The folder of an earlier dialog must not be used.
    const QFileDialog elsewhere(nullptr, QString(), session.path(QString()));

    {
        AnsweredFileDialogs dialogs(u'"' + files.at(0) + u"\" \""_s + files.at(1) + u'"');
        auto acceptMode = QFileDialog::AcceptSave;
        dialogs.setInspector([&](const QFileDialog *dialog) { acceptMode = dialog->acceptMode(); });
        session.click(u"pbImportCsvLinks"_s);
        QCOMPARE(dialogs.count(), 1);
        QCOMPARE(dialogs.title(), u"Ouvrir les fichiers de correspondance"_s);
        QCOMPARE(dialogs.directory(), documentsFolder());
        QCOMPARE(dialogs.nameFilters(), QStringList{u"csv (*.csv)"_s});
        QCOMPARE(dialogs.fileMode(), QFileDialog::ExistingFiles);
        QCOMPARE(dialogs.options(), QFileDialog::Options());
        QCOMPARE(dialogs.parentWidget(), session.window.get());
        QCOMPARE(acceptMode, QFileDialog::AcceptOpen);
    }
    QCOMPARE(session.filesImport(), files.mid(0, 2));

    // The next choice replaces the whole list.
    const AnsweredFileDialogs dialogs(files.at(2));
    session.click(u"pbImportCsvLinks"_s);
    QCOMPARE(session.filesImport(), files.mid(2));
}

void TstPickers::importFilesCancelled()
{
    const PickerForm session;
    session.clickGroup(u"gbSetURLLinks"_s);
    session.pick(u"pbImportCsvLinks"_s, QString());
    QCOMPARE(session.filesImport(), QStringList());

    const QString file = session.path(u"un.csv"_s);
    writeBytes(file, {});
    session.pick(u"pbImportCsvLinks"_s, file);
    session.pick(u"pbImportCsvLinks"_s, QString());
    QCOMPARE(session.filesImport(), QStringList{file});
}

void TstPickers::directory_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QStringList>("groups");
    QTest::addColumn<QString>("title");
    QTest::addColumn<bool>("inDocuments");
    QTest::addColumn<QFileDialog::Options>("options");

    const QStringList extraction{u"gbSetURLLinks"_s, u"gbExtractMediasToKeep"_s};
    const QFileDialog::Options unresolved =
        QFileDialog::ShowDirsOnly | QFileDialog::DontResolveSymlinks;
    QTest::newRow("pbExtractMediasSource") << u"leExtractMediasSource"_s << extraction
                                           << u"Dossier des médias"_s << true << unresolved;
    QTest::newRow("pbExtractMediasToKeep") << u"leExtractMediasToKeep"_s << extraction
                                           << u"Dossier des médias"_s << true << unresolved;
    QTest::newRow("pbOpenNewMediaPath")
        << u"leNewMediaPath"_s << QStringList{u"gbReplaceMediaPath"_s}
        << u"Ouvrir le dossier des médias"_s << false
        << QFileDialog::Options(QFileDialog::ShowDirsOnly);
}

void TstPickers::directory()
{
    QFETCH(const QString, field);
    QFETCH(const QStringList, groups);
    QFETCH(const QString, title);
    QFETCH(const bool, inDocuments);
    QFETCH(const QFileDialog::Options, options);
    const QString button = QString::fromLatin1(QTest::currentDataTag());

    const PickerForm session;
    for (const QString &group : groups)
        session.clickGroup(group);
    const QString folder = session.makeFolder(u"médias de famille"_s);
    // Without a starting folder a dialog opens in that of the previous one.
    const QString elsewhere = session.makeFolder(u"ailleurs"_s);
    const QFileDialog before(nullptr, QString(), elsewhere);
    {
        const AnsweredFileDialogs dialogs(folder);
        session.click(button);
        QCOMPARE(dialogs.count(), 1);
        QCOMPARE(dialogs.title(), title);
        QCOMPARE(dialogs.directory(), inDocuments ? documentsFolder() : elsewhere);
        QCOMPARE(dialogs.options(), options);
        QCOMPARE(dialogs.fileMode(), QFileDialog::Directory);
        QCOMPARE(dialogs.parentWidget(), session.window.get());
    }
    const QStringList fields{u"leExtractMediasSource"_s, u"leExtractMediasToKeep"_s,
                             u"leNewMediaPath"_s};
    for (const QString &other : fields)
        QCOMPARE(session.text(other), other == field ? folder : QString());

    // A cancelled dialog clears the field.
    const AnsweredFileDialogs dialogs{QString()};
    session.click(button);
    QCOMPARE(dialogs.count(), 1);
    QCOMPARE(session.text(field), QString());
}

void TstPickers::newMediaPathChecksItsGroup()
{
    const PickerForm session;
    session.clickGroup(u"gbReplaceMediaPath"_s);
    session.find<QLineEdit>(u"leNewMediaPath"_s)->setText(u"/ancien"_s);
    session.find<QCheckBox>(u"cbDelMediaPath"_s)->setChecked(true);
    session.find<QGroupBox>(u"gbReplaceMediaPath"_s)->setChecked(false);

    // The user cannot reach the button now, but the window reacts to its click.
    AnsweredFileDialogs dialogs{QString()};
    QStringList meanwhile;
    dialogs.setInspector([&](QFileDialog *) {
        meanwhile += session.isChecked(u"cbDelMediaPath"_s) ? u"deletion"_s : u"no deletion"_s;
        meanwhile += session.isChecked(u"gbReplaceMediaPath"_s) ? u"group"_s : u"no group"_s;
        meanwhile += session.text(u"leNewMediaPath"_s);
    });
    emit session.find<QPushButton>(u"pbOpenNewMediaPath"_s)->clicked();
    QCOMPARE(dialogs.count(), 1);
    const QStringList expected{u"no deletion"_s, u"group"_s, u"/ancien"_s};
    QCOMPARE(meanwhile, expected);
    QCOMPARE(session.text(u"leNewMediaPath"_s), QString());
    QVERIFY(!session.isChecked(u"cbDelMediaPath"_s));
    QVERIFY(session.isChecked(u"gbReplaceMediaPath"_s));
    QVERIFY(session.isEnabled(u"leNewMediaPath"_s));
    QVERIFY(session.isEnabled(u"pbOpenNewMediaPath"_s));
}

void TstPickers::dialogTextsAreTranslated()
{
    const PickerForm session;
    for (const QString &group :
         {u"gbSetURLLinks"_s, u"gbExtractMediasToKeep"_s, u"gbReplaceMediaPath"_s})
        session.clickGroup(group);
    const MarkingTranslator translator;
    const AnsweredFileDialogs dialogs{QString()};
    QStringList titles;
    for (const QString &button : {u"pbImportCsvLinks"_s, u"pbExtractMediasSource"_s,
                                  u"pbExtractMediasToKeep"_s, u"pbOpenNewMediaPath"_s}) {
        session.click(button);
        titles += dialogs.title();
        if (titles.size() == 1)
            QCOMPARE(dialogs.nameFilters(), QStringList{u"[MainWindow]csv (*.csv)"_s});
    }
    const QStringList expected{
        u"[MainWindow]Ouvrir les fichiers de correspondance"_s,
        u"[MainWindow]Dossier des médias"_s,
        u"[MainWindow]Dossier des médias"_s,
        u"[MainWindow]Ouvrir le dossier des médias"_s,
    };
    QCOMPARE(titles, expected);
}

void TstPickers::mediaPathOrDeletion()
{
    const PickerForm session;
    session.clickGroup(u"gbReplaceMediaPath"_s);
    const auto expect = [&session](bool enabled) {
        QCOMPARE(session.isEnabled(u"leNewMediaPath"_s), enabled);
        QCOMPARE(session.isEnabled(u"pbOpenNewMediaPath"_s), enabled);
    };
    expect(true);
    session.clickBox(u"cbDelMediaPath"_s);
    expect(false);
    session.clickBox(u"cbDelMediaPath"_s);
    expect(true);
    // A change by the program counts as well.
    session.find<QCheckBox>(u"cbDelMediaPath"_s)->setChecked(true);
    expect(false);
    session.find<QCheckBox>(u"cbDelMediaPath"_s)->setChecked(false);
    expect(true);
}

void TstPickers::deletionByContent()
{
    const PickerForm session;
    session.clickGroup(u"gbDelTags"_s);
    const auto expect = [&session](bool enabled) {
        QCOMPARE(session.isEnabled(u"cbDelIfContentRX"_s), enabled);
        QCOMPARE(session.isEnabled(u"leValueToDel"_s), enabled);
    };
    expect(false);
    session.clickBox(u"cbDelIfContent"_s);
    expect(true);
    session.clickBox(u"cbDelIfContent"_s);
    expect(false);
    session.clickBox(u"cbDelIfContent"_s);
    expect(true);

    // The group is unchecked and checked again.
    session.clickGroup(u"gbDelTags"_s);
    session.clickGroup(u"gbDelTags"_s);
    expect(true);
    session.clickBox(u"cbDelIfContent"_s);
    session.clickGroup(u"gbDelTags"_s);
    expect(false);
    session.clickGroup(u"gbDelTags"_s);
    expect(false);
}

void TstPickers::deletionGroupClickedOn()
{
    const PickerForm session;
    session.clickGroup(u"gbDelTags"_s);
    QVERIFY(session.isChecked(u"gbDelTags"_s));
    QStringList disabled;
    const auto widgets = session.find<QGroupBox>(u"gbDelTags"_s)
                             ->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (const QWidget *widget : widgets) {
        if (!widget->isEnabled())
            disabled += widget->objectName();
    }
    const QStringList expected{u"leValueToDel"_s, u"cbDelIfContentRX"_s};
    QCOMPARE(disabled, expected);
}

void TstPickers::deletionSetByTheProgram()
{
    const PickerForm session;
    const auto expect = [&session](bool enabled) {
        QCOMPARE(session.isEnabled(u"cbDelIfContentRX"_s), enabled);
        QCOMPARE(session.isEnabled(u"leValueToDel"_s), enabled);
    };
    auto *byContent = session.find<QCheckBox>(u"cbDelIfContent"_s);
    session.find<QGroupBox>(u"gbDelTags"_s)->setChecked(true);
    expect(true);
    byContent->setChecked(true);
    byContent->setChecked(false);
    expect(true);

    session.clickBox(u"cbDelIfContent"_s);
    session.clickBox(u"cbDelIfContent"_s);
    expect(false);
    byContent->setChecked(true);
    expect(false);
}

void TstPickers::oneKindOfLinkStaysOn_data()
{
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("other");

    QTest::newRow("note in the event") << u"cbUrlInEvt"_s << u"cbUrlInSour"_s;
    QTest::newRow("link in the source") << u"cbUrlInSour"_s << u"cbUrlInEvt"_s;
}

void TstPickers::oneKindOfLinkStaysOn()
{
    QFETCH(const QString, box);
    QFETCH(const QString, other);

    const PickerForm session;
    session.clickGroup(u"gbSetURLLinks"_s);
    const auto expect = [&](bool boxChecked, bool otherChecked) {
        QCOMPARE(session.isChecked(box), boxChecked);
        QCOMPARE(session.isChecked(other), otherChecked);
    };
    // The group does not check them by itself, nor does a group that is checked already.
    expect(false, false);
    session.clickBox(box);
    expect(true, false);
    session.clickBox(box);
    expect(false, true);
    session.clickBox(box);
    expect(true, true);
    session.clickBox(box);
    expect(false, true);
    session.clickBox(other);
    expect(true, false);

    // A change by the program counts as well.
    session.find<QCheckBox>(box)->setChecked(false);
    expect(false, true);
}

void TstPickers::linksWithoutTheirGroup()
{
    const PickerForm session;
    session.clickGroup(u"gbSetURLLinks"_s);
    session.clickBox(u"cbUrlInEvt"_s);
    session.clickBox(u"cbUrlInSour"_s);
    session.clickGroup(u"gbSetURLLinks"_s);
    QVERIFY(session.isChecked(u"cbUrlInEvt"_s));
    QVERIFY(session.isChecked(u"cbUrlInSour"_s));

    session.find<QCheckBox>(u"cbUrlInEvt"_s)->setChecked(false);
    QVERIFY(session.isChecked(u"cbUrlInSour"_s));
    session.find<QCheckBox>(u"cbUrlInSour"_s)->setChecked(false);
    QVERIFY(!session.isChecked(u"cbUrlInEvt"_s));
    QVERIFY(!session.isChecked(u"cbUrlInSour"_s));
    session.find<QCheckBox>(u"cbUrlInSour"_s)->setChecked(true);
    session.find<QCheckBox>(u"cbUrlInSour"_s)->setChecked(false);
    QVERIFY(!session.isChecked(u"cbUrlInEvt"_s));
}

void TstPickers::documentIsLeftAlone()
{
    const PickerForm session;
    const QStringList before = session.documentState();
    const QStringList groups{
        u"gbDelTags"_s,         u"gbSetURLLinks"_s,      u"gbExtractMediasToKeep"_s,
        u"gbClickablesLinks"_s, u"gbReplaceMediaPath"_s, u"gbMoveTagContent"_s,
        u"gbReplaceString"_s};
    for (const QString &group : groups)
        session.clickGroup(group);
    session.select(u"1 BIRT"_s);
    for (const Picker &picker : Pickers)
        session.click(picker.button);
    {
        const AnsweredFileDialogs dialogs(session.makeFolder(u"médias"_s));
        for (const QString &button :
             {u"pbExtractMediasSource"_s, u"pbExtractMediasToKeep"_s, u"pbOpenNewMediaPath"_s})
            session.click(button);
        QCOMPARE(dialogs.count(), 3);
    }
    {
        const AnsweredFileDialogs dialogs(session.path(u"arbre.csv"_s));
        writeBytes(session.path(u"arbre.csv"_s), {});
        session.click(u"pbImportCsvLinks"_s);
        QCOMPARE(dialogs.count(), 1);
    }
    for (const QString &box :
         {u"cbDelIfContent"_s, u"cbDelMediaPath"_s, u"cbUrlInEvt"_s, u"cbUrlInSour"_s})
        session.clickBox(box);
    QCOMPARE(session.documentState(), before);
}

VARLUNE_TEST_MAIN(TstPickers)
#include "tst_pickers.moc"
