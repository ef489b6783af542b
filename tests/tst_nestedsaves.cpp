#include "boxes.h"
#include "document.h"
#include "filedialogs.h"
#include "nofiles.h"
#include "testmain.h"
#include "told.h"
#include "unprivileged.h"
#include "window.h"

#include <QDate>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

#include <filesystem>
#include <functional>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

// The phases of a save, told by what the status bar says, and the values that the bar then takes.
const QString Measure = u"Vérification de la taille des balises en cours..."_s;
const QString WriteFile = u"Sauvegarde du fichier "_s;
const QString WriteJournal = u"Sauvegarde du journal "_s;

constexpr int Persons = 350;

/// A header, and persons of four lines each.
QStringList family()
{
    QStringList lines{u"0 HEAD"_s, u"1 CHAR UTF-8"_s};
    for (int i = 1; i <= Persons; ++i) {
        lines += {u"0 @I%1@ INDI"_s.arg(i), u"1 NAME Zoé %1 /DUPRÉ/"_s.arg(i),
                  u"1 NOTE une note sur la personne %1"_s.arg(i), u"1 OCCU métier %1"_s.arg(i)};
    }
    return lines;
}

/// Marks the entries of a tag as deleted, which makes the document shorter.
void shorten(const Gedcom &gedcom, const QString &tag)
{
    const QList<TwItem *> roots = gedcom.getTabTwItemsRoot();
    for (TwItem *root : roots) {
        const QList<TwItem *> tabTwi = root->getTabTwiChilds(true);
        for (TwItem *twi : tabTwi) {
            if (twi->getTag() == tag)
                twi->setDelete(true);
        }
    }
}

QStringList withTrailer(const QStringList &lines)
{
    return lines + QStringList{u"0 TRLR"_s};
}

/// An action that comes while a save processes events.
struct Step
{
    QString phase;
    int value; // the least one of the bar
    std::function<void()> action;
};

/// Delivers actions in the midst of saves, one after the other: each by an event that comes when
/// the bar is so far, in the save that runs by then.
class Steps : public QObject
{
public:
    Steps(QProgressBar *bar, std::function<QString()> status, const QList<Step> &steps)
        : m_steps(steps)
    {
        connect(bar, &QProgressBar::valueChanged, this, [this, status](int value) {
            if (m_steps.isEmpty() || !status().startsWith(m_steps.constFirst().phase)
                || value < m_steps.constFirst().value)
                return;
            QMetaObject::invokeMethod(this, m_steps.takeFirst().action, Qt::QueuedConnection);
        });
    }
    [[nodiscard]] bool allDone() const
    {
        return m_steps.isEmpty();
    }

private:
    QList<Step> m_steps;
};

/// The document of family() and the names under which it is saved.
class Saving : public Document
{
public:
    Saving()
    {
        if (!load(family()))
            qFatal("the family is refused");
        // So that the journal is written in several steps too.
        for (int i = 0; i < 250; ++i)
            gedcom.addToJournal(u"une ligne"_s, u"INFO"_s);
    }

    [[nodiscard]] QString file(const QString &name) const
    {
        return folder() + u'/' + name;
    }
    /// Saves, and keeps the lines that the document has by now.
    bool save(const QString &name)
    {
        atLastSave = withTrailer(lines());
        return gedcom.writeGedFile(file(name));
    }
    /// Saves while \p steps come to pass.
    bool save(const QString &name, const QList<Step> &steps)
    {
        const Steps delivered(
            &progress, [this] { return status(); }, steps);
        const bool result = save(name);
        if (!delivered.allDone())
            QTest::qFail("no event has come so late", __FILE__, __LINE__);
        return result;
    }
    /// Fails the test unless each journal file of \p count saves that have written one is the
    /// journal up to some line, behind that of its own save.
    void compareJournalFiles(int count) const
    {
        static const QRegularExpression rx(uR"(INFO : Fichier (.*) copié sous (.*)/([^/]*)$)"_s);
        const QString journal = gedcom.getJournal().replace("\r\n"_L1, "\n"_L1);
        const QStringList journalLines = journal.split(u'\n');
        int found = 0;
        for (const QString &line : journalLines) {
            const QRegularExpressionMatch match = rx.match(line);
            if (!match.hasMatch())
                continue;
            const QString path = match.captured(2) + "/journal."_L1 + match.captured(3);
            QVERIFY2(QFile::exists(path), qPrintable(path));
            const QString text = QString::fromUtf8(readText(path));
            QVERIFY2(text.endsWith("\n\n"_L1), qPrintable(text.right(200)));
            QCOMPARE(text.chopped(1), journal.left(text.size() - 1));
            QVERIFY2(text.contains(line), qPrintable(text.right(200)));
            QVERIFY(text.mid(text.indexOf(line))
                        .contains(u"Fichier %1 sauvegardé."_s.arg(match.captured(1))));
            ++found;
        }
        QCOMPARE(found, count);
    }

    QStringList atLastSave;
    AnsweredBoxes boxes;
};

} // namespace

class TstNestedSaves : public QObject
{
    Q_OBJECT

private slots:
    void sameFile_data();
    void sameFile();
    void newFile_data();
    void newFile();
    void theLaterOneStays();
    void threeDeep_data();
    void threeDeep();
    void oneAfterTheOther();
    void inTheJournal_data();
    void inTheJournal();
    void otherFile_data();
    void otherFile();
    void otherFileBetween();
    void innerTargetFails();
    void innerJournalFails();
    void toldAsTwoSaves();
    void saveAsDuringASave();
    void sequenceDuringASave_data();
    void sequenceDuringASave();
    void saveDuringALoad();
};

void TstNestedSaves::sameFile_data()
{
    QTest::addColumn<QString>("outer");
    QTest::addColumn<QString>("inner");
    QTest::addColumn<int>("value");

    const struct
    {
        const char *name;
        QString outer;
        QString inner;
    } names[] = {
        {"the same name", u"arbre.ged"_s, u"arbre.ged"_s},
        {"a roundabout path", u"arbre.ged"_s, u"gen/.././arbre.ged"_s},
        {"a symbolic link", u"arbre.ged"_s, u"lien.ged"_s},
        {"through a symbolic link", u"lien.ged"_s, u"arbre.ged"_s},
        {"a link in another folder", u"arbre.ged"_s, u"gen/lien.ged"_s},
        {"a link to a link", u"lien.ged"_s, u"gen/lien.ged"_s},
        {"a folder that is a link", u"arbre.ged"_s, u"ici/arbre.ged"_s},
        {"a hard link", u"arbre.ged"_s, u"dur.ged"_s},
        {"a link to a hard link", u"gen/lien.ged"_s, u"gen/dur.ged"_s},
    };
    for (const auto &name : names)
        QTest::addRow("%s, half-way", name.name) << name.outer << name.inner << 200;
    QTest::newRow("at the first event") << u"arbre.ged"_s << u"arbre.ged"_s << 0;
    QTest::newRow("at the last event") << u"arbre.ged"_s << u"arbre.ged"_s << 300;
}

void TstNestedSaves::sameFile()
{
    QFETCH(QString, outer);
    QFETCH(QString, inner);
    QFETCH(int, value);
    if ((outer + inner).contains("lien"_L1) || inner.startsWith("ici/"_L1))
        SKIP_ON_WINDOWS(NoLinks);

    Saving doc;
    const QDir folder(doc.folder());
    QVERIFY(folder.mkdir(u"gen"_s));
    QVERIFY(QFile::link(u"arbre.ged"_s, doc.file(u"lien.ged"_s)));
    QVERIFY(QFile::link(u"../lien.ged"_s, doc.file(u"gen/lien.ged"_s)));
    QVERIFY(QFile::link(u"."_s, doc.file(u"ici"_s)));
    for (const QString &name : {u"dur.ged"_s, u"gen/dur.ged"_s})
        std::filesystem::create_hard_link(doc.path().toStdString(), doc.file(name).toStdString());

    bool innerResult = false;
    QVERIFY(doc.save(outer, {{WriteFile, value, [&] {
                                  shorten(doc.gedcom, u"NOTE"_s);
                                  innerResult = doc.save(inner);
                              }}}));
    QVERIFY(innerResult);
    QCOMPARE(doc.boxes.texts(), QStringList());
    QCOMPARE(readLines(doc.path()), doc.atLastSave);
    doc.compareJournalFiles(2);
}

void TstNestedSaves::newFile_data()
{
    QTest::addColumn<QString>("outer");
    QTest::addColumn<QString>("inner");

    QTest::newRow("the same name") << u"neuf.ged"_s << u"neuf.ged"_s;
    QTest::newRow("a link that led nowhere") << u"lien.ged"_s << u"neuf.ged"_s;
    QTest::newRow("behind a link that led nowhere") << u"neuf.ged"_s << u"lien.ged"_s;
}

void TstNestedSaves::newFile()
{
    QFETCH(QString, outer);
    QFETCH(QString, inner);
    SKIP_ON_WINDOWS(NoLinks);

    for (const QString &phase : {Measure, WriteFile}) {
        Saving doc;
        QVERIFY(QFile::link(u"neuf.ged"_s, doc.file(u"lien.ged"_s)));
        QVERIFY(doc.save(outer, {{phase, 100, [&] {
                                      shorten(doc.gedcom, u"NOTE"_s);
                                      QVERIFY(doc.save(inner));
                                      shorten(doc.gedcom, u"OCCU"_s);
                                  }}}));
        QCOMPARE(doc.boxes.texts(), QStringList());
        QCOMPARE(readLines(doc.file(u"neuf.ged"_s)), doc.atLastSave);
        QVERIFY(QFileInfo(doc.file(u"lien.ged"_s)).isSymLink());
        doc.compareJournalFiles(2);
    }
}

void TstNestedSaves::theLaterOneStays()
{
    // The outer save has not yet opened its target, and the document has changed again when it
    // does: it is still the other one that began last.
    Saving doc;
    QVERIFY(doc.save(u"arbre.ged"_s, {{Measure, 500, [&] {
                                           shorten(doc.gedcom, u"NOTE"_s);
                                           QVERIFY(doc.save(u"arbre.ged"_s));
                                           shorten(doc.gedcom, u"OCCU"_s);
                                       }}}));
    QCOMPARE(readLines(doc.path()), doc.atLastSave);
    QVERIFY(doc.atLastSave != withTrailer(doc.lines()));
    doc.compareJournalFiles(2);
    // It is over with the save: the next one writes what there is.
    QVERIFY(doc.save(u"arbre.ged"_s));
    QCOMPARE(readLines(doc.path()), withTrailer(doc.lines()));
}

void TstNestedSaves::threeDeep_data()
{
    QTest::addColumn<QString>("firstPhase");
    QTest::addColumn<QString>("secondPhase");

    const struct
    {
        const char *name;
        QString phase;
    } phases[] = {{"measuring", Measure}, {"writing", WriteFile}, {"journal file", WriteJournal}};
    for (const auto &first : phases) {
        for (const auto &second : phases)
            QTest::addRow("%s, %s", first.name, second.name) << first.phase << second.phase;
    }
}

void TstNestedSaves::threeDeep()
{
    QFETCH(QString, firstPhase);
    QFETCH(QString, secondPhase);

    Saving doc;
    std::filesystem::create_hard_link(doc.path().toStdString(),
                                      doc.file(u"dur.ged"_s).toStdString());
    const auto saveShorter = [&](const QString &tag, const QString &name) {
        shorten(doc.gedcom, tag);
        QVERIFY(doc.save(name));
    };
    QVERIFY(doc.save(u"arbre.ged"_s,
                     {{firstPhase, 100, [&] { saveShorter(u"NOTE"_s, u"dur.ged"_s); }},
                      {secondPhase, 100, [&] { saveShorter(u"OCCU"_s, u"arbre.ged"_s); }}}));
    QCOMPARE(doc.boxes.texts(), QStringList());
    QCOMPARE(readLines(doc.path()), doc.atLastSave);
    QCOMPARE(doc.atLastSave, withTrailer(doc.lines()));
    doc.compareJournalFiles(3);
}

void TstNestedSaves::oneAfterTheOther()
{
    Saving doc;
    const auto saveShorter = [&](const QString &tag) {
        shorten(doc.gedcom, tag);
        QVERIFY(doc.save(u"arbre.ged"_s));
    };
    QVERIFY(doc.save(u"arbre.ged"_s, {{WriteFile, 100, [&] { saveShorter(u"NOTE"_s); }},
                                      {WriteFile, 200, [&] { saveShorter(u"OCCU"_s); }}}));
    QCOMPARE(readLines(doc.path()), doc.atLastSave);
    QCOMPARE(doc.atLastSave, withTrailer(doc.lines()));
    doc.compareJournalFiles(3);
}

void TstNestedSaves::inTheJournal_data()
{
    QTest::addColumn<int>("value");

    QTest::newRow("at the first event") << 0;
    QTest::newRow("half-way") << 100;
    QTest::newRow("at the last event") << 200;
}

void TstNestedSaves::inTheJournal()
{
    QFETCH(int, value);

    // In one second both have the same journal file.
    Saving doc;
    QVERIFY(doc.save(u"arbre.ged"_s, {{WriteJournal, value, [&] {
                                           shorten(doc.gedcom, u"NOTE"_s);
                                           QVERIFY(doc.save(u"arbre.ged"_s));
                                       }}}));
    QCOMPARE(doc.boxes.texts(), QStringList());
    QCOMPARE(readLines(doc.path()), doc.atLastSave);
    doc.compareJournalFiles(2);
}

void TstNestedSaves::otherFile_data()
{
    QTest::addColumn<QString>("inner");
    QTest::addColumn<QString>("phase");

    for (const QString &phase : {Measure, WriteFile, WriteJournal}) {
        const QByteArray at = phase.section(u' ', 0, -2).toUtf8();
        QTest::addRow("a new file, %s", at.constData()) << u"autre.ged"_s << phase;
        QTest::addRow("same name elsewhere, %s", at.constData()) << u"gen/arbre.ged"_s << phase;
        QTest::addRow("a copy, %s", at.constData()) << u"copie.ged"_s << phase;
    }
}

void TstNestedSaves::otherFile()
{
    QFETCH(QString, inner);
    QFETCH(QString, phase);

    Saving doc;
    QVERIFY(QDir(doc.folder()).mkdir(u"gen"_s));
    QVERIFY(QFile::copy(doc.path(), doc.file(u"copie.ged"_s)));
    writeBytes(doc.path(), "avant\n");
    QVERIFY(doc.save(u"arbre.ged"_s, {{phase, 100, [&] { QVERIFY(doc.save(inner)); }}}));
    // Neither stops the other.
    QCOMPARE(readLines(doc.path()), withTrailer(family()));
    QCOMPARE(readLines(doc.file(inner)), withTrailer(family()));
    doc.compareJournalFiles(2);
}

void TstNestedSaves::otherFileBetween()
{
    Saving doc;
    const auto saveShorter = [&] {
        shorten(doc.gedcom, u"NOTE"_s);
        QVERIFY(doc.save(u"arbre.ged"_s));
    };
    QVERIFY(doc.save(u"arbre.ged"_s, {{WriteFile, 100, [&] { QVERIFY(doc.save(u"autre.ged"_s)); }},
                                      {WriteFile, 100, saveShorter}}));
    // The innermost save takes the file from the outermost one. The one between them has its own,
    // which goes on with what the document has become.
    QCOMPARE(readLines(doc.path()), doc.atLastSave);
    const QRegularExpression noNote(u"^(?!1 NOTE)"_s);
    QCOMPARE(readLines(doc.file(u"autre.ged"_s)).filter(noNote),
             withTrailer(family()).filter(noNote));
    doc.compareJournalFiles(3);
}

void TstNestedSaves::innerTargetFails()
{
    Saving doc;
    writeBytes(doc.path(), "avant\n");
    bool innerResult = true;
    QVERIFY(doc.save(u"arbre.ged"_s, {{WriteFile, 200, [&] {
                                           QVERIFY(
                                               QFile::setPermissions(doc.path(), QFile::ReadOther));
                                           const Unprivileged unprivileged;
                                           innerResult = doc.save(u"arbre.ged"_s);
                                       }}}));
    // The target is still that of the outer save.
    QVERIFY(!innerResult);
    QCOMPARE(doc.boxes.titles(), QStringList{u"Erreur d'écriture"_s});
    QVERIFY(QFile::setPermissions(doc.path(), QFile::ReadOwner | QFile::WriteOwner));
    QCOMPARE(readLines(doc.path()), withTrailer(family()));
}

void TstNestedSaves::innerJournalFails()
{
    Saving doc;
    bool innerResult = true;
    const auto block = [&] {
        shorten(doc.gedcom, u"NOTE"_s);
        QVERIFY(QDir(doc.folder()).rename(u"ARCH"_s, u"ARCH.avant"_s));
        writeBytes(doc.file(u"ARCH"_s), "x");
        innerResult = doc.save(u"arbre.ged"_s);
        QVERIFY(QFile::remove(doc.file(u"ARCH"_s)));
        QVERIFY(QDir(doc.folder()).rename(u"ARCH.avant"_s, u"ARCH"_s));
    };
    QVERIFY(doc.save(u"arbre.ged"_s, {{WriteFile, 200, block}}));
    // It had written its target before.
    QVERIFY(!innerResult);
    QCOMPARE(doc.boxes.titles(), QStringList{u"Erreur d'écriture du journal"_s});
    QCOMPARE(readLines(doc.path()), doc.atLastSave);
    QCOMPARE(doc.archive().filter(u"journal."_s).size(), 1);
    const QByteArray journal = doc.gedcom.getJournal().replace("\r\n"_L1, "\n"_L1).toUtf8();
    QCOMPARE(readText(doc.folder() + "/ARCH/"_L1 + QDate::currentDate().toString(u"yyyy.MM.dd"_s)
                      + u'/' + doc.archive().filter(u"journal."_s).constFirst()),
             journal + '\n');
}

void TstNestedSaves::toldAsTwoSaves()
{
    // The texts of a save, with another one inside or none.
    const auto texts = [](bool nested) -> QStringList {
        Saving doc;
        Told told(&doc);
        QList<Step> steps;
        if (nested)
            steps += {WriteFile, 200, [&] { doc.save(u"arbre.ged"_s); }};
        doc.save(u"arbre.ged"_s, steps);
        static const QRegularExpression text(u"^(INFO|ERROR|status)"_s);
        static const QRegularExpression time(uR"(\d\d\.\d\d\.\d\d\.arbre)"_s);
        return told.take()
            .filter(text)
            .replaceInStrings(doc.folder(), u"."_s)
            .replaceInStrings(time, u"TIME.arbre"_s);
    };
    const QStringList alone = texts(false);
    const qsizetype begun = alone.indexOf("status: "_L1 + WriteFile + "./arbre.ged"_L1) + 2;
    QCOMPARE(alone.value(begun), u"INFO : Fichier ./arbre.ged sauvegardé."_s);
    QCOMPARE(texts(true), alone.first(begun) + alone + alone.mid(begun));
}

void TstNestedSaves::saveAsDuringASave()
{
    Session session;
    session.window->show();
    session.load(withTrailer(family()));
    std::filesystem::create_hard_link(session.path().toStdString(),
                                      session.path(u"dur.ged"_s).toStdString());
    const AnsweredBoxes boxes;
    const auto nested = [&] {
        session.set({u"gbDelTags"_s, u"leTagsToDel=NOTE"_s});
        session.click(u"pbApply"_s);
        AnsweredFileDialogs dialogs(session.path(u"dur.ged"_s));
        dialogs.setInspector(
            [](QFileDialog *dialog) { dialog->setOption(QFileDialog::DontConfirmOverwrite); });
        session.trigger(u"actionEnregistrerFichier_sous"_s);
        QCOMPARE(dialogs.count(), 1);
    };
    const Steps steps(session.progress(), [&] { return session.status(); },
                      {{WriteFile, 200, nested}});
    session.trigger(u"actionEnregistrerFichier"_s);

    QVERIFY(steps.allDone());
    QCOMPARE(boxes.texts(), QStringList());
    QVERIFY(!session.progress()->isVisible());
    const QStringList expected = withTrailer(family()).filter(QRegularExpression(u"^(?!1 NOTE)"_s));
    QCOMPARE(readLines(session.path()), expected);
    session.trigger(u"actionEnregistrerFichier"_s);
    QCOMPARE(readLines(session.path()), expected);
}

void TstNestedSaves::sequenceDuringASave_data()
{
    QTest::addColumn<QByteArray>("target");

    QTest::newRow("the file that is open") << "true"_ba;
    QTest::newRow("another name of it") << "%1/dur.ged"_ba;
}

void TstNestedSaves::sequenceDuringASave()
{
    QFETCH(QByteArray, target);

    Session session;
    session.window->show();
    session.load(withTrailer(family()));
    std::filesystem::create_hard_link(session.path().toStdString(),
                                      session.path(u"dur.ged"_s).toStdString());
    const AnsweredBoxes boxes;
    const auto nested = [&] {
        session.play("separator=|\ndelTags=true|delTagsList=NOTE\nsaveGedFile="
                     + target.replace("%1", session.folder().toUtf8()) + "\n");
    };
    const Steps steps(session.progress(), [&] { return session.status(); },
                      {{WriteFile, 200, nested}});
    session.trigger(u"actionEnregistrerFichier"_s);

    QVERIFY(steps.allDone());
    QCOMPARE(boxes.texts(), QStringList());
    QCOMPARE(readLines(session.path()),
             withTrailer(family()).filter(QRegularExpression(u"^(?!1 NOTE)"_s)));
}

void TstNestedSaves::saveDuringALoad()
{
    // What the load has read so far is saved over the file that it reads.
    Document doc;
    writeLines(doc.path(), withTrailer(family()));
    const Steps steps(&doc.progress, [] { return QString(); },
                      {{QString(), 500, [&] { QVERIFY(doc.gedcom.writeGedFile(doc.path())); }}});
    QVERIFY(doc.loadFile());
    QVERIFY(steps.allDone());
    QCOMPARE(doc.lines(), family());
}

VARLUNE_TEST_MAIN(TstNestedSaves)
#include "tst_nestedsaves.moc"
