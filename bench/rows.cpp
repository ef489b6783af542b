#include "rows.h"

#include "fenjournal.h"
#include "floor.h"
#include "gedcom.h"
#include "mainwindow.h"
#include "output.h"
#include "preparation.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QGroupBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTimer>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

void showTree(QTreeWidget *tree)
{
    tree->setColumnCount(4);
    tree->setHeaderHidden(true);
    tree->resize(600, 900);
    tree->show();
    QCoreApplication::processEvents();
}

/// A loaded document with a tree on the screen.
class Document
{
public:
    explicit Document(const QString &input) : m_input(input)
    {
        showTree(&tree);
    }
    void load()
    {
        if (!gedcom.genererVectorGed(m_input, &tree, &m_progress, &m_status))
            qFatal("cannot load");
        tree.header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    }
    /// Copies the input to where it is saved, so that the archive copy is of its size.
    void prepareSave()
    {
        QDir().mkpath(QFileInfo(target()).path());
        QFile::remove(target());
        if (!QFile::copy(m_input, target()))
            qFatal("cannot copy");
    }
    void save()
    {
        if (!gedcom.writeGedFile(target()))
            qFatal("cannot save");
    }
    [[nodiscard]] QString target() const
    {
        return besides("sortie/"_L1 + QFileInfo(m_input).fileName());
    }
    [[nodiscard]] QString besides(const QString &name) const
    {
        return QFileInfo(m_input).path() + u'/' + name;
    }

    QTreeWidget tree;
    Gedcom gedcom;

private:
    QString m_input;
    QProgressBar m_progress;
    QStatusBar m_status;
};

void writeBesideExecutable(const QString &name, const QByteArray &content)
{
    QFile file(QCoreApplication::applicationDirPath() + u'/' + name);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(name));
    if (file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(name));
}

/// The real window with the file open.
class Window
{
public:
    explicit Window(const QString &input)
    {
        writeBesideExecutable(u"PARAM.INI"_s, {});
        m_window = new MainWindow(nullptr);
        m_window->show();
        QTimer answer;
        QObject::connect(&answer, &QTimer::timeout, [&input] {
            if (auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget())) {
                dialog->findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(input);
                QMetaObject::invokeMethod(dialog, "accept");
            }
        });
        answer.start(20);
        QMetaObject::invokeMethod(m_window, "on_actionOuvrir_triggered");
        QCoreApplication::processEvents();
        if (!find<QGroupBox>(u"mainGroupBox"_s)->isEnabled())
            qFatal("the window has not opened %s", qPrintable(input));
    }
    ~Window()
    {
        delete m_window;
    }
    Q_DISABLE_COPY_MOVE(Window)

    template <typename T>
    T *find(const QString &name) const
    {
        T *found = m_window->findChild<T *>(name);
        if (!found)
            qFatal("the window has no %s", qPrintable(name));
        return found;
    }
    void search(const QString &text, bool regex) const
    {
        find<QLineEdit>(u"leRecherche"_s)->setText(text);
        if (regex)
            find<QCheckBox>(u"cbFiltrerRegex"_s)->setChecked(true); // which searches
        else
            QMetaObject::invokeMethod(m_window, "on_leRecherche_returnPressed");
    }
    void apply() const
    {
        find<QPushButton>(u"pbApply"_s)->click();
        QCoreApplication::processEvents();
    }

private:
    MainWindow *m_window = nullptr;
};

using Operation = std::function<qint64(Document &)>;
using Look = std::function<void(const Window &)>;

const Operation Nothing = [](Document &) { return 0; };

/// A row that runs \p operation on a loaded document, after \p before.
Row operationRow(const QString &name, Shape shape, int lines, double target,
                 const Operation &operation, const Operation &before = Nothing)
{
    Row row{name, shape, lines, target, [=](const QString &input, const Timed &timed) {
                Document document(input);
                document.load();
                before(document);
                QCoreApplication::processEvents();
                timed([&] { return operation(document); });
            }};
    row.counts = true;
    return row;
}

/// A row that looks at an open window, after \p before.
Row windowRow(
    const QString &name, Shape shape, int lines, double target, const Look &look,
    const Look &before = [](const Window &) {})
{
    return {name, shape, lines, target, [=](const QString &input, const Timed &timed) {
                const Window window(input);
                before(window);
                QCoreApplication::processEvents();
                timed([&] {
                    look(window);
                    return 0;
                });
            }};
}

QList<QTreeWidgetItem *> allRows(QTreeWidget *tree)
{
    QList<QTreeWidgetItem *> rows;
    for (QTreeWidgetItemIterator it(tree); *it; ++it)
        rows.append(*it);
    return rows;
}

/// A row that loads.
Row loadRow(const QString &name, Shape shape, int lines, double target)
{
    return {name, shape, lines, target, [](const QString &input, const Timed &timed) {
                Document document(input);
                timed([&] {
                    document.load();
                    return 0;
                });
            }};
}

/// A row that saves, after \p before.
Row saveRow(const QString &name, Shape shape, int lines, double target,
            const Operation &before = Nothing)
{
    const Operation save = [](Document &document) {
        document.save();
        return 1;
    };
    const Operation prepare = [=](Document &document) {
        before(document);
        document.prepareSave();
        return 0;
    };
    Row row = operationRow(name, shape, lines, target, save, prepare);
    row.base = Base::Save;
    return row;
}

/// A row that prepares a file and saves the copy, after \p change of the file.
Row preparationRow(const QString &name, int lines, const std::function<void(QByteArray *)> &change)
{
    Row row{name, Shape::Family, lines, 1.0, [=](const QString &input, const Timed &timed) {
                const QString path = input + ".a_preparer"_L1;
                QFile file(input);
                if (!file.open(QIODevice::ReadOnly))
                    qFatal("cannot read %s", qPrintable(input));
                QByteArray text = file.readAll();
                change(&text);
                QFile changed(path);
                if (!changed.open(QIODevice::WriteOnly) || changed.write(text) != text.size())
                    qFatal("cannot write %s", qPrintable(path));
                changed.close();
                text.clear();
                timed([&path]() -> qint64 {
                    const Preparation preparation = prepareFile(path, {});
                    if (!preparation.proof.opens()
                        || !saveCopy(preparation, path, copyPath(path)).isEmpty())
                        qFatal("cannot prepare");
                    return preparation.count(Finding::Layout);
                });
            }};
    row.counts = true;
    return row;
}

Operation fold()
{
    return [](Document &document) { return document.gedcom.unConc(); };
}

Operation space()
{
    return [](Document &document) { return document.gedcom.setSpaceNames(); };
}

Operation remove(const QStringList &tags)
{
    return [=](Document &document) {
        return document.gedcom.delListTag(tags, false, false, false, false, {});
    };
}

QString correspondences(const Document &document)
{
    return document.besides(u"correspondances.csv"_s);
}

const QString Each = u"acte_%1"_s; // of the media of the shape Linked

/// Writes the list that link() reads.
Operation listLinks(int count, const QString &name)
{
    return [=](Document &document) {
        writeCorrespondences(correspondences(document), count, name);
        return 0;
    };
}

Operation link()
{
    return [](Document &document) {
        return document.gedcom.setMediaFileURL({correspondences(document)},
                                               u",https://partage.test/"_s, true, true, true, false,
                                               {}, {});
    };
}

Operation makeClickable(const QStringList &tags)
{
    return [=](Document &document) { return document.gedcom.setURLClickable(true, tags); };
}

Operation setPath()
{
    return [](Document &document) { return document.gedcom.setMediaFilePath(u"images/"_s); };
}

Operation move(const QString &from, const QString &to)
{
    return [=](Document &document) {
        return document.gedcom.moveTagContent(from, to, true, true, true);
    };
}

Operation replace(const QString &from, const QString &to, bool regex)
{
    return [=](Document &document) {
        return document.gedcom.searchAndReplace(from, to, {}, true, regex);
    };
}

Look search(const QString &text, bool regex)
{
    return [=](const Window &window) { window.search(text, regex); };
}

Look check(const QString &box, bool checked)
{
    return [=](const Window &window) { window.find<QCheckBox>(box)->setChecked(checked); };
}

Look deletePlaces()
{
    return [](const Window &window) {
        window.find<QGroupBox>(u"gbDelTags"_s)->setChecked(true);
        window.find<QLineEdit>(u"leTagsToDel"_s)->setText(u"PLAC"_s);
        window.apply();
    };
}

Look writeSequence()
{
    return [](const Window &) {
        writeBesideExecutable(
            u"SEQUENCE.INI"_s,
            "separator=|\n"
            "EspacerPrenomNom=true\n"
            "delTags=true|delTagsList=_UID\n"
            "delTags=true|delTagsList=NOTE|delIfEmptyTags=true\n"
            "delTags=true|delTagsList=PAGE|delIfContainsValue=true|"
            "delTagContainsValue=vue 77\n"
            "clickablesLinks=true|clickableTagsList=NOTE\n"
            "changeMediasPath=true|newMediasPath=images\n"
            "replaceString=true|replaceSourString=Hanvec|replaceDestString=Plouha\n"
            "replaceString=true|replaceSourString=oncle|replaceDestString=tonton|"
            "replaceStringTags=NOTE\n"
            "delDuplicated=true|duplicatedSourTag=INDI.TITL|"
            "duplicatedDestTag=INDI.OCCU|moveDuplicatedContent=true\n"
            "replaceString=true|replaceSourString=^Meunier|replaceDestString=Minoter|"
            "replaceRegex=true\n");
    };
}

Look playSequence()
{
    return [](const Window &window) { window.find<QPushButton>(u"pbReadSequence"_s)->click(); };
}

} // namespace

QList<Row> floorRows(int lines)
{
    const auto load = [](const QString &input, const Timed &timed) {
        QTreeWidget tree;
        showTree(&tree);
        timed([&] { return floorLoad(input, &tree); });
    };
    const auto save = [](const QString &input, const Timed &timed) {
        QTreeWidget tree;
        showTree(&tree);
        floorLoad(input, &tree);
        timed([&] { return floorSave(input + ".sortie"_L1, &tree); });
    };
    // What the framework alone takes for a search that finds nothing, and to end it.
    const auto hideOrShow = [](bool hide) {
        return [hide](const QString &input, const Timed &timed) {
            QTreeWidget tree;
            showTree(&tree);
            floorLoad(input, &tree);
            const QList<QTreeWidgetItem *> rows = allRows(&tree);
            const auto hideAll = [&rows] {
                for (QTreeWidgetItem *row : rows)
                    row->setHidden(true);
                return rows.size();
            };
            const auto showAll = [&rows] {
                for (auto it = rows.crbegin(); it != rows.crend(); ++it)
                    (*it)->setHidden(false); // which is faster from the last to the first
                return rows.size();
            };
            if (!hide)
                hideAll();
            QCoreApplication::processEvents();
            if (hide)
                timed(hideAll);
            else
                timed(showAll);
        };
    };
    return {{u"floor: load"_s, Shape::Family, lines, 0, load},
            {u"floor: save"_s, Shape::Family, lines, 0, save, Base::Save},
            {u"floor: hide every row"_s, Shape::Family, lines, 0, hideOrShow(true)},
            {u"floor: show every row again"_s, Shape::Family, lines, 0, hideOrShow(false)}};
}

QList<Row> programRows(int lines)
{
    const auto openJournal = [lines](const QString &input, const Timed &timed) {
        Q_UNUSED(input)
        Gedcom gedcom;
        for (int i = 0; i < lines / 10; ++i)
            gedcom.addToJournal(u"Suppression de l'entrée : INDI._UID 1 _UID 5D3A (l.12)"_s,
                                u"INFO"_s);
        QWidget window;
        window.show();
        QCoreApplication::processEvents();
        timed([&] {
            auto *fenJournal = new FenJournal(&window, gedcom.getJournal(), u"Journal"_s);
            fenJournal->show();
            return 0;
        });
    };
    const auto family = [lines](const QString &name, double target, const Operation &operation,
                                const Operation &before = Nothing) {
        return operationRow(name, Shape::Family, lines, target, operation, before);
    };
    const auto look = [lines](
                          const QString &name, const Look &action,
                          const Look &before = [](const Window &) {}) {
        return windowRow(name, Shape::Family, lines, 1.0, action, before);
    };

    QList<Row> rows{
        loadRow(u"load"_s, Shape::Family, lines, 1.15),
        family(u"CONC folding, none"_s, 0.5, fold(), fold()),
        family(u"CONC folding, 5.5 % of the lines"_s, 0, fold()),
        saveRow(u"save, nothing to cut"_s, Shape::Family, lines, 1.1),
        saveRow(u"save, 1 % of the lines to cut, 5.5 % hidden"_s, Shape::Family, lines, 1.1,
                fold()),
        family(u"names, none"_s, 0.5, space(), space()),
        family(u"names, 1 %"_s, 0.7, space()),
        operationRow(u"names, every one"_s, Shape::People, lines, 0, space()),
        family(u"deletion, none"_s, 0.5, remove({u"_RIEN"_s})),
        family(u"deletion, 1 %"_s, 0.7, remove({u"_UID"_s})),
        family(u"deletion, every line"_s, 0, remove({u"*"_s})),
        family(u"links, none"_s, 0.5, link(), listLinks(lines / 1000, u"absent_%1"_s)),
        family(u"links, 1 %"_s, 0.7, link(),
               listLinks(lines / 1000, Each)), // each source has ten citations
        operationRow(u"links, every media"_s, Shape::Linked, lines, 0, link(),
                     listLinks(linkedMedia(lines), Each)),
        family(u"clickable links, none"_s, 0.5, makeClickable({u"SEX"_s})),
        family(u"clickable links, 1 %"_s, 0.7, makeClickable({})),
        operationRow(u"clickable links, every note"_s, Shape::People, lines, 0, makeClickable({})),
        family(u"media paths, none"_s, 0.5, setPath(), remove({u"FILE"_s})),
        family(u"media paths, 1 %"_s, 0.7, setPath()),
        operationRow(u"media paths, every media"_s, Shape::Media, lines, 0, setPath()),
        family(u"move, none"_s, 0.5, move(u"INDI._RIEN"_s, u"INDI.NOTE"_s)),
        family(u"move, 1 %"_s, 0.7, move(u"INDI._UID"_s, u"INDI._REF"_s)),
        operationRow(u"move, every person"_s, Shape::People, lines, 0,
                     move(u"INDI.NAME"_s, u"INDI.TEXT"_s)),
        family(u"replacement, none"_s, 0.5, replace(u"Hanveg"_s, u"Plouha"_s, false)),
        family(u"replacement, none, expression"_s, 0.5, replace(u"^Hanvec$"_s, u"Plouha"_s, true)),
        family(u"replacement, 1 %"_s, 0.7, replace(u"Hanvec"_s, u"Plouha"_s, false)),
        family(u"replacement, every line"_s, 0, replace(u"^[0-9]$"_s, u"1"_s, true)),
        look(u"search, none"_s, search(u"Hanveg"_s, false)),
        look(u"search, three lines in five"_s, search(u"a"_s, false)),
        look(u"search, none, expression"_s, search(u"^Hanvec$"_s, true)),
        look(u"search, every line, expression"_s, search(u"^[0-9]$"_s, true)),
        look(u"date filter, on"_s, check(u"cbSourceDateDiff"_s, true)),
        look(u"date filter, off"_s, check(u"cbSourceDateDiff"_s, false),
             check(u"cbSourceDateDiff"_s, true)),
        look(u"multi-use filter, on"_s, check(u"cbSourceMultiUse"_s, true)),
        look(u"multi-use filter, off"_s, check(u"cbSourceMultiUse"_s, false),
             check(u"cbSourceMultiUse"_s, true)),
        windowRow(u"a sequence of ten steps"_s, Shape::Family, lines, 0, playSequence(),
                  writeSequence()),
        {u"journal window"_s, Shape::Family, lines / 10, 0, openJournal},
        preparationRow(u"preparation, none"_s, lines, [](QByteArray *) {}),
        preparationRow(u"preparation, every line"_s, lines,
                       [](QByteArray *text) { text->replace("\n", "\r\n "); }),
    };
    return rows;
}

QList<Row> awkwardRows(int lines)
{
    const Operation expand = [](Document &document) {
        document.tree.expandAll();
        QCoreApplication::processEvents();
        return 0;
    };
    const auto afterDeletions = [lines](const QString &name, const Look &action) {
        return windowRow(name, Shape::Family, lines, 0, action, deletePlaces());
    };
    const int media = lines / 50;
    const Operation listAndFold = [=](Document &document) {
        listLinks(media, Each)(document);
        return document.gedcom.unConc();
    };
    return {
        loadRow(u"one record of 20 %: load"_s, Shape::OneRecord, lines / 5, 0),
        saveRow(u"one record of 20 %: save"_s, Shape::OneRecord, lines / 5, 0),
        saveRow(u"one record with 5 % long lines: save"_s, Shape::LongLines, lines / 20, 0),
        operationRow(u"2 % correspondences, as many media"_s, Shape::Linked, 8 * media, 0, link(),
                     listLinks(media, Each)),
        operationRow(u"the same, into folded notes"_s, Shape::LinkedNotes, 8 * media, 0, link(),
                     listAndFold),
        operationRow(u"one name in all correspondences"_s, Shape::Linked, 8 * media, 0, link(),
                     listLinks(media, u"acte_1"_s)),
        operationRow(u"one record of 4 %: move, each created"_s, Shape::Events, lines / 25, 0,
                     move(u"INDI.EVEN.DATE"_s, u"INDI.EVEN.NOTE"_s)),
        windowRow(u"ten citations a source: date filter"_s, Shape::Citations, lines, 0,
                  check(u"cbSourceDateDiff"_s, true)),
        windowRow(u"ten citations a source: multi-use filter"_s, Shape::Citations, lines, 0,
                  check(u"cbSourceMultiUse"_s, true)),
        afterDeletions(u"10 % deleted: search"_s, search(u"Hanvec"_s, false)),
        afterDeletions(u"10 % deleted: date filter"_s, check(u"cbSourceDateDiff"_s, true)),
        saveRow(u"10 % deleted: save"_s, Shape::Family, lines, 0, remove({u"PLAC"_s})),
        operationRow(u"all expanded: replacement in 10 %"_s, Shape::Family, lines, 0,
                     replace(u"Saint-Thégonnec"_s, u"Plouha"_s, false), expand),
    };
}
