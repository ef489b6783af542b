#include "preparerwindow.h"

#include "compactstyle.h"
#include "document.h"
#include "filedialogs.h"
#include "nofiles.h"
#include "occurrencemodel.h"
#include "testmain.h"

#include <QAbstractItemModelTester>
#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QDate>
#include <QDir>
#include <QDropEvent>
#include <QHeaderView>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMessageBox>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QStatusBar>
#include <QStyleFactory>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <algorithm>
#include <memory>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

constexpr int Patience = 60'000; // milliseconds, for a long file on a busy machine

const QString Nothing = u"Choisissez un fichier GEDCOM, ou déposez-le ici."_s;
const QString Cancelled =
    u"La préparation a été annulée. Choisissez le fichier pour la recommencer."_s;

// Three of its lines are repaired or told.
const QStringList Tree{u"0 HEAD"_s,      u"1 CHAR UTF-8"_s, u"0 @I1@ INDI"_s,  u"1 BIRT"_s,
                       u"3 DATE 1800"_s, u"0 @X7@ INDI"_s,  u"  1 NAME Zoé"_s, u"0 TRLR"_s};
const QStringList PreparedTree{u"0 HEAD"_s,      u"1 CHAR UTF-8"_s, u"0 @I1@ INDI"_s, u"1 BIRT"_s,
                               u"2 DATE 1800"_s, u"0 @X7@ INDI"_s,  u"1 NAME Zoé"_s,  u"0 TRLR"_s};
const QString TreeOpens = u"Varlune ouvrira ce fichier : 3 enregistrements"_s;

/// The path as the window shows it.
QString shown(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

/// What the status bar says once the file is written.
QString savedTo(const QString &path)
{
    return u"Enregistré : "_s + shown(path);
}

/// Answers each question whether a file may be overwritten, and keeps its text.
class AnsweredQuestions
{
public:
    explicit AnsweredQuestions(QMessageBox::StandardButton answer)
    {
        m_timer.callOnTimeout([this, answer] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (!box)
                return;
            m_texts += box->text();
            m_isSafe = m_isSafe
                    && (box->buttons().size() == 1 || !box->defaultButton()
                        || box->button(QMessageBox::No) == box->defaultButton());
            auto *button = box->button(answer);
            (button ? button : box->buttons().constFirst())->click();
        });
        m_timer.start(0);
    }
    [[nodiscard]] QStringList texts() const
    {
        return m_texts;
    }
    /// Whether Return overwrites nothing.
    [[nodiscard]] bool isSafe() const
    {
        return m_isSafe;
    }

private:
    QTimer m_timer;
    QStringList m_texts;
    bool m_isSafe = true;
};

/// The window on screen, with a folder for its files.
class Preparer
{
public:
    Preparer()
    {
        window->show();
    }

    template <typename T>
    [[nodiscard]] T *find(const char *name) const
    {
        T *found = window->findChild<T *>(QString::fromLatin1(name));
        if (!found)
            qFatal("the window has no %s", name);
        return found;
    }
    [[nodiscard]] QString path(const QString &name = u"arbre.ged"_s) const
    {
        return m_folder.filePath(name);
    }

    [[nodiscard]] QString verdict() const
    {
        return find<QLabel>("lbVerdict")->text();
    }
    [[nodiscard]] bool isRunning() const
    {
        return verdict().startsWith(u"Préparation en cours"_s);
    }
    void waitForOutcome() const
    {
        QTRY_VERIFY_WITH_TIMEOUT(!isRunning(), Patience);
    }
    /// Opens a file of these lines and waits for the outcome.
    void open(const QStringList &lines) const
    {
        writeLines(path(), lines);
        window->open(path());
        waitForOutcome();
    }

    void click(const char *button) const
    {
        auto *widget = find<QPushButton>(button);
        QVERIFY2(widget->isEnabled(), button);
        QTest::mouseClick(widget, Qt::LeftButton);
    }
    void chooseEncoding(const QString &name) const
    {
        auto *box = find<QComboBox>("cbEncoding");
        box->setFocus();
        box->showPopup();
        box->view()->setCurrentIndex(box->model()->index(box->findText(name), 0));
        QTest::keyClick(box->view(), Qt::Key_Return);
        QCOMPARE(box->currentText(), name);
        waitForOutcome();
    }

    /// The row of the summary with that title, or else the first one that begins so.
    [[nodiscard]] QTreeWidgetItem *row(const QString &title) const
    {
        const auto *tree = find<QTreeWidget>("twSummary");
        QList<QTreeWidgetItem *> rows = tree->findItems(title, Qt::MatchRecursive);
        rows += tree->findItems(title, Qt::MatchStartsWith | Qt::MatchRecursive);
        if (rows.isEmpty())
            qFatal("the summary has no row %s", qPrintable(title));
        return rows.constFirst();
    }
    /// Clicks on the box of a row of the summary and waits for the outcome.
    void toggle(const QString &title) const
    {
        auto *tree = find<QTreeWidget>("twSummary");
        const QRect rect = tree->visualItemRect(row(title));
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {},
                          QPoint(rect.left() + 8, rect.center().y()));
        waitForOutcome();
    }
    /// Chooses a row of the summary by a click on its count.
    void choose(const QString &title) const
    {
        auto *tree = find<QTreeWidget>("twSummary");
        const QRect rect = tree->visualItemRect(row(title));
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, rect.center());
        QCOMPARE(tree->currentItem(), row(title));
    }
    /// The rows of the summary on screen that count something: "Tout 3".
    [[nodiscard]] QStringList counts() const
    {
        QStringList texts;
        for (QTreeWidgetItemIterator it(find<QTreeWidget>("twSummary"),
                                        QTreeWidgetItemIterator::NotHidden);
             *it; ++it) {
            if ((*it)->text(1) != u"0"_s)
                texts += (*it)->text(0) + u' ' + (*it)->text(1);
        }
        return texts;
    }
    [[nodiscard]] OccurrenceModel *model() const
    {
        return static_cast<OccurrenceModel *>(find<QTableView>("tvList")->model());
    }
    /// The first columns of the rows in the list: "5|3 DATE 1800|2 DATE 1800".
    [[nodiscard]] QStringList list() const
    {
        QStringList rows;
        for (int row = 0; row < model()->rowCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < OccurrenceModel::Why; ++column)
                cells += model()->index(row, column).data().toString();
            rows += cells.join(u'|');
        }
        return rows;
    }
    [[nodiscard]] QString shown() const
    {
        return find<QLabel>("lbShown")->text();
    }
    /// Presses a button that saves, and types \p name into its dialog.
    void save(const char *button, const QString &name) const
    {
        const AnsweredFileDialogs dialogs(path(name));
        click(button);
        QCOMPARE(dialogs.count(), 1);
    }
    [[nodiscard]] QString status() const
    {
        return find<QStatusBar>("statusbar")->currentMessage();
    }

    std::unique_ptr<PreparerWindow> window = std::make_unique<PreparerWindow>();

private:
    QTemporaryDir m_folder;
};

/// A file of \p count indented lines, and some more.
QStringList indentedLines(int count)
{
    QStringList lines{u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 @I1@ INDI"_s};
    for (int i = 0; i < count; ++i)
        lines += u"  1 NOTE texte %1"_s.arg(i);
    return lines += u"0 TRLR"_s;
}

/// A file that takes long enough for the user to do something meanwhile.
void writeLongFile(const QString &path)
{
    writeBytes(path, "0 HEAD\n1 CHAR UTF-8\n0 @I1@ INDI\n"
                         + QByteArray("  1 NOTE texte\n").repeated(300'000) + "0 TRLR\n");
}

/// Drops what \p data holds on a widget of the window. Returns whether it is taken.
bool drop(QWidget *target, const QMimeData *data)
{
    const QPoint at = target->rect().center();
    QDragEnterEvent enter(at, Qt::CopyAction, data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QCoreApplication::sendEvent(target, &enter);
    if (!enter.isAccepted())
        return false;
    QDropEvent event(at, Qt::CopyAction, data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(target->window(), &event);
    return true;
}

} // namespace

class TstPreparerWindow : public QObject
{
    Q_OBJECT

private slots:
    void startsWithoutAFile();
    void nothingIsWarnedOf();

    void chosenFile();
    void cancelledChoice();
    void droppedFile();
    void otherDropsAreRefused_data();
    void otherDropsAreRefused();
    void nextFileTakesThePlaceOfTheFormer();

    void encoding();
    void encodingIsThatOfOneFile();
    void defaultSwitches();
    void switchedOff();
    void onRequest();
    void summary();
    void filter();
    void filterByFinding();
    void manyRows();
    void detail();

    void copyIsSaved();
    void overwriting_data();
    void overwriting();
    void tableIsAskedForToo();
    void inputIsNeverOverwritten_data();
    void inputIsNeverOverwritten();
    void failedSave();
    void cancelledSave();
    void report();
    void reportInJson();

    void refusal_data();
    void refusal();
    void stoppedFile();

    void progress();
    void cancel();
    void anewWhileRunning();
    void anotherFileWhileRunning();
    void closedWhileRunning();
    void closedWhileSaving();

    void everyControlIsReachedByTab();
    void mnemonics();
    void keyboardAlone();
    void accessibleNames();
    void smallScreens_data();
    void smallScreens();
};

void TstPreparerWindow::startsWithoutAFile()
{
    const Preparer preparer;
    QCOMPARE(preparer.verdict(), Nothing);
    QCOMPARE(preparer.counts(), QStringList());
    QCOMPARE(preparer.list(), QStringList());
    for (const char *button : {"pbSaveCopy", "pbSaveReport", "pbCancel"})
        QVERIFY2(!preparer.find<QPushButton>(button)->isEnabled(), button);
    // What can be chosen before there is a file holds for it.
    preparer.toggle(u"Niveaux sautés"_s);
    QCOMPARE(preparer.verdict(), Nothing);
    preparer.open(Tree);
    QCOMPARE(preparer.row(u"Niveaux sautés"_s)->text(1), u"0"_s);
}

void TstPreparerWindow::nothingIsWarnedOf()
{
    // A misnamed slot, above all; what the platform of the tests lacks is not ours.
    QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s));
    const Preparer preparer;
    const QAbstractItemModelTester tester(preparer.model());
    preparer.open(Tree);
    QTest::keyClicks(preparer.find<QLineEdit>("leFilter"), u"date"_s);
    QCOMPARE(preparer.list().size(), 1);
}

void TstPreparerWindow::chosenFile()
{
    const Preparer preparer;
    writeLines(preparer.path(), Tree);
    AnsweredFileDialogs dialogs(preparer.path());
    preparer.click("pbChoose");
    QCOMPARE(dialogs.count(), 1);
    QCOMPARE(dialogs.title(), u"Choisir un fichier GEDCOM"_s);
    QCOMPARE(dialogs.nameFilters(),
             (QStringList{u"Fichiers GEDCOM (*.ged *.GED)"_s, u"Tous les fichiers (*)"_s}));
    preparer.waitForOutcome();
    QCOMPARE(preparer.verdict(), TreeOpens);
    QCOMPARE(preparer.find<QLineEdit>("leFile")->text(), shown(preparer.path()));
    QVERIFY(preparer.find<QPushButton>("pbSaveCopy")->isEnabled());
    QVERIFY(preparer.find<QPushButton>("pbSaveReport")->isEnabled());
    // The next choice begins in the folder of this file.
    preparer.click("pbChoose");
    QCOMPARE(dialogs.directory(), QFileInfo(preparer.path()).absolutePath());
    preparer.waitForOutcome();
}

void TstPreparerWindow::cancelledChoice()
{
    const Preparer preparer;
    preparer.open(Tree);
    const AnsweredFileDialogs dialogs{QString()};
    preparer.click("pbChoose");
    QCOMPARE(dialogs.count(), 1);
    QCOMPARE(preparer.verdict(), TreeOpens);
    QCOMPARE(preparer.list().size(), 3);
}

void TstPreparerWindow::droppedFile()
{
    // Over a field and over a list, which would take texts themselves.
    for (const char *target : {"centralwidget", "leFilter", "tvList", "pteDetail", "leFile"}) {
        const Preparer preparer;
        writeLines(preparer.path(), Tree);
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(preparer.path())});
        data.setText(preparer.path());
        QVERIFY2(drop(preparer.find<QWidget>(target), &data), target);
        preparer.waitForOutcome();
        QCOMPARE(preparer.verdict(), TreeOpens);
        QCOMPARE(preparer.find<QLineEdit>("leFilter")->text(), QString());
    }
}

void TstPreparerWindow::otherDropsAreRefused_data()
{
    QTest::addColumn<QStringList>("urls");
    QTest::addColumn<QString>("text");

    QTest::newRow("two files") << QStringList{u"file:///a.ged"_s, u"file:///b.ged"_s} << QString();
    QTest::newRow("web address") << QStringList{u"https://example.org/a.ged"_s} << QString();
    QTest::newRow("text") << QStringList() << u"0 HEAD"_s;
}

void TstPreparerWindow::otherDropsAreRefused()
{
    QFETCH(const QStringList, urls);
    QFETCH(const QString, text);

    const Preparer preparer;
    QMimeData data;
    if (!urls.isEmpty())
        data.setUrls(QUrl::fromStringList(urls));
    if (!text.isEmpty())
        data.setText(text);
    for (const char *target : {"centralwidget", "leFilter"})
        QVERIFY(!drop(preparer.find<QWidget>(target), &data));
    QCOMPARE(preparer.verdict(), Nothing);
}

void TstPreparerWindow::nextFileTakesThePlaceOfTheFormer()
{
    const Preparer preparer;
    preparer.open(Tree);
    preparer.find<QLineEdit>("leFilter")->setText(u"DATE"_s);
    const QString next = preparer.path(u"autre.ged"_s);
    writeLines(next, {u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 TRLR"_s});
    preparer.window->open(next);
    preparer.waitForOutcome();
    QCOMPARE(preparer.verdict(), u"Varlune ouvrira ce fichier : 1 enregistrement"_s);
    QCOMPARE(preparer.counts(), QStringList());
    QCOMPARE(preparer.list(), QStringList());
    QCOMPARE(preparer.find<QLineEdit>("leFile")->text(), shown(next));
}

void TstPreparerWindow::encoding()
{
    const Preparer preparer;
    writeBytes(preparer.path(),
               "0 HEAD\n1 CHAR ANSI\n0 @I1@ INDI\n1 NAME Zo\xE9 /No\xEBl/\n0 TRLR\n");
    preparer.window->open(preparer.path());
    preparer.waitForOutcome();
    const auto *reason = preparer.find<QLabel>("lbReason");
    QCOMPARE(preparer.find<QComboBox>("cbEncoding")->currentText(), u"Automatique"_s);
    QCOMPARE(reason->text(),
             u"Windows-1252 : HEAD.CHAR dit « ANSI ». Exemple : 1 NAME Zoé /Noël/"_s);

    preparer.chooseEncoding(u"CP437"_s);
    QCOMPARE(reason->text(), u"CP437 : imposé. Exemple : 1 NAME ZoΘ /Noδl/"_s);
    QCOMPARE(preparer.list(), (QStringList{u"1|CP437|UTF-8"_s, u"2|1 CHAR ANSI|1 CHAR UTF-8"_s}));

    preparer.chooseEncoding(u"Automatique"_s);
    QCOMPARE(preparer.list(),
             (QStringList{u"1|Windows-1252|UTF-8"_s, u"2|1 CHAR ANSI|1 CHAR UTF-8"_s}));
}

void TstPreparerWindow::encodingIsThatOfOneFile()
{
    const Preparer preparer;
    preparer.open(Tree);
    preparer.chooseEncoding(u"CP437"_s);
    preparer.open(Tree);
    QCOMPARE(preparer.find<QComboBox>("cbEncoding")->currentText(), u"Automatique"_s);
    QCOMPARE(preparer.find<QLabel>("lbReason")->text(),
             u"UTF-8 : UTF-8 valide. Exemple : 1 NAME Zoé"_s);
}

void TstPreparerWindow::defaultSwitches()
{
    const Preparer preparer;
    for (const FindingType &type : findingTypes()) {
        const QVariant box = preparer.row(type.title)->data(0, Qt::CheckStateRole);
        switch (type.kind) {
        case FindingKind::Repair:
            QCOMPARE(box, QVariant(Qt::Checked));
            break;
        case FindingKind::RepairOnRequest:
            QCOMPARE(box, QVariant(Qt::Unchecked));
            break;
        case FindingKind::Warning:
            QCOMPARE(box, QVariant());
            break;
        }
    }
}

void TstPreparerWindow::switchedOff()
{
    const Preparer preparer;
    preparer.open(Tree);
    preparer.toggle(u"Niveaux sautés"_s);
    QCOMPARE(preparer.row(u"Niveaux sautés"_s)->checkState(0), Qt::Unchecked);
    QVERIFY2(preparer.verdict().startsWith(u"Varlune n'ouvrira pas ce fichier"_s),
             qPrintable(preparer.verdict()));
    QCOMPARE(preparer.list(),
             (QStringList{u"6|0 @X7@ INDI|0 @X7@ INDI"_s, u"7|  1 NAME Zoé|1 NAME Zoé"_s}));
    preparer.toggle(u"Niveaux sautés"_s);
    QCOMPARE(preparer.verdict(), TreeOpens);
    QCOMPARE(preparer.list().size(), 3);
}

void TstPreparerWindow::onRequest()
{
    const Preparer preparer;
    preparer.open(Tree);
    QVERIFY(preparer.counts().contains(u"À savoir 1"_s));
    preparer.toggle(u"Identifiants mis"_s);
    QCOMPARE(preparer.counts(),
             (QStringList{u"Tout 3"_s, u"Réparations 2"_s,
                          u"Lignes vides, retraits, tabulations, zéros de tête du niveau 1"_s,
                          u"Niveaux sautés 1"_s, u"Réparations sur demande 1"_s,
                          u"Identifiants mis sous la forme @I1@, @F1@, @S1@, @O1@, @R1@ 1"_s}));
    QVERIFY(preparer.list().contains(u"6|0 @X7@ INDI|0 @I7@ INDI"_s));
}

void TstPreparerWindow::summary()
{
    const Preparer preparer;
    preparer.open(Tree);
    QCOMPARE(preparer.counts(),
             (QStringList{u"Tout 3"_s, u"Réparations 2"_s,
                          u"Lignes vides, retraits, tabulations, zéros de tête du niveau 1"_s,
                          u"Niveaux sautés 1"_s, u"À savoir 1"_s,
                          u"Identifiants d'une autre forme que @I1@, @F1@, @S1@, @O1@, @R1@ 1"_s}));
    QCOMPARE(preparer.list(),
             (QStringList{u"5|3 DATE 1800|2 DATE 1800"_s, u"6|0 @X7@ INDI|0 @X7@ INDI"_s,
                          u"7|  1 NAME Zoé|1 NAME Zoé"_s}));
    QCOMPARE(preparer.shown(), u"&Liste : 3"_s);
    QCOMPARE(preparer.model()->index(0, OccurrenceModel::Why).data().toString(),
             u"Une ligne sans ligne du niveau au-dessus arrête la lecture."_s);
    // What is only told is not there before it is found.
    QVERIFY(preparer.row(u"Lignes de plus de 255 caractères"_s)->isHidden());
    QVERIFY(!preparer.row(u"Fiches d'une seule ligne"_s)->isHidden());
}

void TstPreparerWindow::filter()
{
    const Preparer preparer;
    preparer.open(Tree);
    auto *field = preparer.find<QLineEdit>("leFilter");
    const auto filtered = [&](const QString &text) {
        field->setText(text);
        QStringList lines;
        const QStringList rows = preparer.list();
        for (const QString &row : rows)
            lines += row.section(u'|', 0, 0);
        return lines.join(u' ');
    };
    QCOMPARE(filtered(u"date"_s), u"5"_s); // before and after
    QCOMPARE(filtered(u"2 d"_s), u"5"_s); // after
    QCOMPARE(filtered(u"  1"_s), u"7"_s); // before
    QCOMPARE(filtered(u"ZOÉ"_s), u"7"_s);
    QCOMPARE(filtered(u"arrête"_s), u"5"_s); // why
    QCOMPARE(filtered(u"6"_s), u"6"_s); // the line
    QCOMPARE(filtered(u"introuvable"_s), QString());
    QCOMPARE(preparer.shown(), u"&Liste : 0"_s);
    QCOMPARE(filtered(QString()), u"5 6 7"_s);
}

void TstPreparerWindow::filterByFinding()
{
    const Preparer preparer;
    preparer.open(Tree);
    preparer.choose(u"Réparations"_s);
    QCOMPARE(preparer.list().size(), 2);
    preparer.choose(u"Niveaux sautés"_s);
    QCOMPARE(preparer.list(), QStringList{u"5|3 DATE 1800|2 DATE 1800"_s});
    QTest::keyClicks(preparer.find<QLineEdit>("leFilter"), u"name"_s);
    QCOMPARE(preparer.list(), QStringList());
    preparer.choose(u"Lignes vides"_s);
    QCOMPARE(preparer.list(), QStringList{u"7|  1 NAME Zoé|1 NAME Zoé"_s});
    // Choosing is not switching.
    QCOMPARE(preparer.row(u"Lignes vides"_s)->checkState(0), Qt::Checked);
    preparer.find<QLineEdit>("leFilter")->clear();
    preparer.choose(u"Tout"_s);
    QCOMPARE(preparer.list().size(), 3);
}

void TstPreparerWindow::manyRows()
{
    const Preparer preparer;
    preparer.open(indentedLines(30'000));
    const OccurrenceModel *model = preparer.model();
    QCOMPARE(model->rowCount(), 30'000);
    QCOMPARE(preparer.shown(), u"&Liste : 30\u202f000"_s);

    // The rows come little by little, while the window lives.
    auto *field = preparer.find<QLineEdit>("leFilter");
    field->setText(u"texte 2"_s);
    QVERIFY(model->isFiltering());
    QVERIFY(model->rowCount() < 11'111);
    QVERIFY(preparer.shown().endsWith(u'…'));
    QTRY_VERIFY_WITH_TIMEOUT(!model->isFiltering(), Patience);
    QCOMPARE(model->rowCount(), 11'111);
    QCOMPARE(preparer.shown(), u"&Liste : 11\u202f111"_s);
    QCOMPARE(preparer.list().constLast(), u"30003|  1 NOTE texte 29999|1 NOTE texte 29999"_s);

    // Another filter, and another file, take the place of one that is not done.
    field->setText(u"texte 1"_s);
    field->setText(u"texte 29999"_s);
    QTRY_VERIFY_WITH_TIMEOUT(!model->isFiltering(), Patience);
    QCOMPARE(preparer.list(), QStringList{u"30003|  1 NOTE texte 29999|1 NOTE texte 29999"_s});
    field->setText(u"texte 1"_s);
    QVERIFY(model->isFiltering());
    preparer.open(Tree);
    QCOMPARE(preparer.list(), QStringList());
}

void TstPreparerWindow::detail()
{
    const Preparer preparer;
    preparer.open({u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 @I1@ INDI"_s, u"0 TRLR"_s});
    auto *list = preparer.find<QTableView>("tvList");
    const auto *detail = preparer.find<QPlainTextEdit>("pteDetail");
    QCOMPARE(detail->toPlainText(), QString());
    const QModelIndex after = preparer.model()->index(0, OccurrenceModel::After);
    const QString today =
        QLocale(QLocale::English).toString(QDate::currentDate(), u"d MMM yyyy"_s).toUpper();
    // On one line in the list, as it is below.
    QCOMPARE(after.data().toString(), u"0 @I1@ INDI \u21b5 1 CHAN \u21b5 2 DATE "_s + today);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(after).center());
    QCOMPARE(detail->toPlainText(),
             u"Avant : 0 @I1@ INDI\nAprès : 0 @I1@ INDI\n1 CHAN\n2 DATE %1\n"
             "Pourquoi : Une fiche d'une seule ligne arrête la lecture."_s.arg(today));
    preparer.find<QLineEdit>("leFilter")->setText(u"introuvable"_s);
    QCOMPARE(detail->toPlainText(), QString());
}

void TstPreparerWindow::copyIsSaved()
{
    const Preparer preparer;
    preparer.open(Tree);
    QString suggested;
    AnsweredFileDialogs dialogs(preparer.path(u"arbre.prepare.ged"_s));
    dialogs.setInspector(
        [&suggested](const QFileDialog *dialog) { suggested = dialog->selectedFiles().value(0); });
    preparer.click("pbSaveCopy");
    QCOMPARE(suggested, preparer.path(u"arbre.prepare.ged"_s));
    QTRY_COMPARE(preparer.status(), savedTo(preparer.path(u"arbre.prepare.ged"_s)));
    QCOMPARE(readLines(preparer.path(u"arbre.prepare.ged"_s)), PreparedTree);
    QCOMPARE(readLines(preparer.path()), Tree);
}

void TstPreparerWindow::overwriting_data()
{
    QTest::addColumn<QMessageBox::StandardButton>("answer");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("yes") << QMessageBox::Yes << PreparedTree;
    QTest::newRow("no") << QMessageBox::No << QStringList{u"ancien"_s};
}

void TstPreparerWindow::overwriting()
{
    QFETCH(const QMessageBox::StandardButton, answer);
    QFETCH(const QStringList, expected);

    const Preparer preparer;
    preparer.open(Tree);
    const QString copy = preparer.path(u"copie.ged"_s);
    writeLines(copy, {u"ancien"_s});
    const AnsweredQuestions questions(answer);
    preparer.save("pbSaveCopy", u"copie.ged"_s);
    QCOMPARE(questions.texts(), QStringList{u"Le fichier %1 existe déjà. Voulez-vous le "
                                            "remplacer ?"_s.arg(shown(copy))});
    QVERIFY(questions.isSafe());
    if (answer == QMessageBox::Yes)
        QTRY_COMPARE(preparer.status(), savedTo(copy));
    QCOMPARE(readLines(copy), expected);

    // The report likewise.
    const QString report = preparer.path(u"rapport.txt"_s);
    writeLines(report, {u"ancien"_s});
    preparer.save("pbSaveReport", u"rapport.txt"_s);
    QCOMPARE(questions.texts().size(), 2);
    if (answer == QMessageBox::Yes)
        QTRY_COMPARE(preparer.status(), savedTo(report));
    QCOMPARE(readLines(report) == QStringList{u"ancien"_s}, answer == QMessageBox::No);
}

void TstPreparerWindow::tableIsAskedForToo()
{
    const Preparer preparer;
    preparer.open(Tree);
    preparer.toggle(u"Identifiants mis"_s);
    const QString copy = preparer.path(u"copie.ged"_s);
    const QString table = preparer.path(u"copie.identifiants.csv"_s);
    writeLines(copy, {u"ancien"_s});
    writeLines(table, {u"ancien"_s});
    {
        const AnsweredQuestions questions(QMessageBox::No);
        preparer.save("pbSaveCopy", u"copie.ged"_s);
        const QString question = u"Ces fichiers existent déjà :\n%1\n%2\n"
                                 "Voulez-vous les remplacer ?"_s.arg(shown(copy), shown(table));
        QCOMPARE(questions.texts(), QStringList{question});
    }
    QCOMPARE(readLines(table), QStringList{u"ancien"_s});
    const AnsweredQuestions questions(QMessageBox::Yes);
    preparer.save("pbSaveCopy", u"copie.ged"_s);
    QTRY_COMPARE(preparer.status(), savedTo(copy));
    QCOMPARE(readLines(table), (QStringList{u"ancien;nouveau"_s, u"@X7@;@I7@"_s}));
}

void TstPreparerWindow::inputIsNeverOverwritten_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("itself") << u"arbre.ged"_s;
    QTest::newRow("link") << u"lien.ged"_s;
}

void TstPreparerWindow::inputIsNeverOverwritten()
{
    QFETCH(QString, name);

    const Preparer preparer;
    preparer.open(Tree);
    if (name == "lien.ged"_L1) {
        SKIP_ON_WINDOWS(NoLinks);
        QVERIFY(QFile::link(preparer.path(), preparer.path(name)));
    }
    const AnsweredQuestions questions(QMessageBox::Yes);
    preparer.save("pbSaveCopy", name);
    preparer.save("pbSaveReport", name);
    // No question, which would promise something, but what is wrong.
    QTRY_COMPARE(questions.texts().size(), 2);
    for (const QString &text : questions.texts())
        QVERIFY2(!text.contains(u"existe déjà"_s), qPrintable(text));
    QCOMPARE(readLines(preparer.path()), Tree);
    QCOMPARE(preparer.status(), QString());
}

void TstPreparerWindow::failedSave()
{
    const Preparer preparer;
    preparer.open(Tree);
    const AnsweredQuestions questions(QMessageBox::Ok);
    preparer.save("pbSaveCopy", u"absent/copie.ged"_s);
    QTRY_COMPARE(questions.texts().size(), 1);
    QVERIFY2(questions.texts().constFirst().contains(u"absent/copie.ged"_s),
             qPrintable(questions.texts().constFirst()));
    QCOMPARE(preparer.status(), QString());
    // It can be tried again.
    preparer.save("pbSaveCopy", u"copie.ged"_s);
    QTRY_COMPARE(preparer.status(), savedTo(preparer.path(u"copie.ged"_s)));
}

void TstPreparerWindow::cancelledSave()
{
    const Preparer preparer;
    preparer.open(Tree);
    const AnsweredFileDialogs dialogs{QString()};
    preparer.click("pbSaveCopy");
    preparer.click("pbSaveReport");
    QCOMPARE(dialogs.count(), 2);
    QCOMPARE(QDir(QFileInfo(preparer.path()).path()).entryList(QDir::Files),
             QStringList{u"arbre.ged"_s});
}

void TstPreparerWindow::report()
{
    const Preparer preparer;
    preparer.open(Tree);
    preparer.save("pbSaveCopy", u"copie.ged"_s);
    QTRY_VERIFY(!preparer.status().isEmpty());
    QString suggested;
    AnsweredFileDialogs dialogs(preparer.path(u"arbre.prepare.rapport.txt"_s));
    dialogs.setInspector(
        [&suggested](const QFileDialog *dialog) { suggested = dialog->selectedFiles().value(0); });
    preparer.click("pbSaveReport");
    const QString path = preparer.path(u"arbre.prepare.rapport.txt"_s);
    QCOMPARE(suggested, path);
    QTRY_COMPARE(preparer.status(), savedTo(path));
    const QStringList lines = readLines(path);
    for (const QString &line : {"Fichier : "_L1 + preparer.path(), TreeOpens,
                                "Copie : "_L1 + preparer.path(u"copie.ged"_s)})
        QVERIFY2(lines.contains(line), qPrintable(line));
    QVERIFY(lines.join(u'\n').contains(u"2 DATE 1800"_s));
}

void TstPreparerWindow::reportInJson()
{
    const Preparer preparer;
    preparer.open(Tree);
    preparer.save("pbSaveReport", u"rapport.json"_s);
    QTRY_VERIFY(!preparer.status().isEmpty());
    const QJsonDocument document =
        QJsonDocument::fromJson(readBytes(preparer.path(u"rapport.json"_s)));
    const QJsonObject file = document[u"fichiers"_s][0].toObject();
    QCOMPARE(file[u"verdict"_s].toString(), TreeOpens);
    QCOMPARE(file[u"occurrences"_s][2][u"ligne"_s].toInt(), 7);
}

void TstPreparerWindow::refusal_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("expected");

    QTest::newRow("empty") << QByteArray()
                           << u"Ce fichier est vide. Refaites l'export depuis votre logiciel de "
                              "généalogie."_s;
    QTest::newRow("archive") << QByteArray("PK\x03\x04 arbre")
                             << u"Ce fichier est une archive ZIP (GEDZIP) et non un texte GEDCOM. "
                                "Extrayez-en le fichier .ged et préparez celui-ci."_s;
}

void TstPreparerWindow::refusal()
{
    QFETCH(const QByteArray, content);
    QFETCH(const QString, expected);

    const Preparer preparer;
    preparer.open(Tree);
    writeBytes(preparer.path(u"autre.ged"_s), content);
    preparer.window->open(preparer.path(u"autre.ged"_s));
    preparer.waitForOutcome();
    QCOMPARE(preparer.verdict(), expected);
    QCOMPARE(preparer.counts(), QStringList());
    for (const char *button : {"pbSaveCopy", "pbSaveReport", "pbCancel"})
        QVERIFY2(!preparer.find<QPushButton>(button)->isEnabled(), button);
    // The next file is prepared as if there had been nothing.
    preparer.open(Tree);
    QCOMPARE(preparer.verdict(), TreeOpens);
    QCOMPARE(preparer.list().size(), 3);
}

void TstPreparerWindow::stoppedFile()
{
    // A copy that Varlune will not open is still the user's to save.
    const Preparer preparer;
    preparer.open(Tree);
    preparer.toggle(u"Niveaux sautés"_s);
    preparer.save("pbSaveCopy", u"copie.ged"_s);
    QTRY_VERIFY(!preparer.status().isEmpty());
    QCOMPARE(readLines(preparer.path(u"copie.ged"_s)),
             replaced(PreparedTree, u"2 DATE 1800"_s, u"3 DATE 1800"_s));
}

void TstPreparerWindow::progress()
{
    const Preparer preparer;
    auto *bar = preparer.find<QProgressBar>("progress");
    const QSignalSpy moves(bar, &QProgressBar::valueChanged);
    writeLongFile(preparer.path());
    preparer.window->open(preparer.path());
    preparer.waitForOutcome();
    QCOMPARE(preparer.verdict(), u"Varlune ouvrira ce fichier : 2 enregistrements"_s);
    QVERIFY2(moves.size() > 20, qPrintable(QString::number(moves.size())));
    int last = 0;
    for (qsizetype i = 0; i + 1 < moves.size(); ++i) { // the last one is the reset
        const int value = moves.at(i).at(0).toInt();
        QVERIFY(value >= last && value <= 100);
        last = value;
    }
    QVERIFY(!preparer.find<QPushButton>("pbCancel")->isEnabled());
    QCOMPARE(bar->text(), QString()); // at rest
}

void TstPreparerWindow::cancel()
{
    const Preparer preparer;
    writeLongFile(preparer.path());
    preparer.window->open(preparer.path());
    QVERIFY(preparer.isRunning());
    QVERIFY(!preparer.find<QPushButton>("pbSaveCopy")->isEnabled());
    preparer.click("pbCancel");
    preparer.waitForOutcome();
    QCOMPARE(preparer.verdict(), Cancelled);
    QCOMPARE(preparer.counts(), QStringList());
    for (const char *button : {"pbSaveCopy", "pbSaveReport", "pbCancel"})
        QVERIFY2(!preparer.find<QPushButton>(button)->isEnabled(), button);
    preparer.open(Tree);
    QCOMPARE(preparer.verdict(), TreeOpens);
}

void TstPreparerWindow::anewWhileRunning()
{
    const Preparer preparer;
    writeLongFile(preparer.path());
    preparer.window->open(preparer.path());
    auto *tree = preparer.find<QTreeWidget>("twSummary");
    for (int i = 0; i < 3; ++i) // off, on, off
        preparer.row(u"Lignes vides"_s)->setCheckState(0, i == 1 ? Qt::Checked : Qt::Unchecked);
    QVERIFY(tree->isEnabled());
    QVERIFY(preparer.isRunning());
    preparer.waitForOutcome();
    QCOMPARE(preparer.row(u"Lignes vides"_s)->text(1), u"0"_s);
    QVERIFY(preparer.verdict() != Cancelled);
    QVERIFY(preparer.find<QPushButton>("pbSaveCopy")->isEnabled());
}

void TstPreparerWindow::anotherFileWhileRunning()
{
    const Preparer preparer;
    writeLongFile(preparer.path(u"long.ged"_s));
    preparer.window->open(preparer.path(u"long.ged"_s));
    preparer.open(Tree);
    QCOMPARE(preparer.verdict(), TreeOpens);
    QCOMPARE(preparer.list().size(), 3);
    QCOMPARE(preparer.find<QLineEdit>("leFile")->text(), shown(preparer.path()));
}

void TstPreparerWindow::closedWhileRunning()
{
    Preparer preparer;
    writeLongFile(preparer.path());
    preparer.window->open(preparer.path());
    QVERIFY(preparer.isRunning());
    preparer.window->close();
    QVERIFY(!preparer.window->isVisible());
    preparer.window.reset();
    QCoreApplication::processEvents();
}

void TstPreparerWindow::closedWhileSaving()
{
    Preparer preparer;
    preparer.open(Tree);
    preparer.save("pbSaveCopy", u"copie.ged"_s);
    preparer.window.reset(); // whole or not at all, and here there is time
    QCoreApplication::processEvents();
    QCOMPARE(readLines(preparer.path(u"copie.ged"_s)), PreparedTree);
}

void TstPreparerWindow::everyControlIsReachedByTab()
{
    const Preparer preparer;
    preparer.open(Tree);
    preparer.window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(preparer.window.get()));
    preparer.find<QWidget>("pbChoose")->setFocus();
    const auto walk = [](Qt::KeyboardModifiers modifiers) {
        const QWidget *first = QApplication::focusWidget();
        QStringList names;
        do {
            names += QApplication::focusWidget()->objectName();
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab, modifiers);
        } while (QApplication::focusWidget() != first && names.size() < 20);
        return names;
    };
    QStringList expected{u"pbChoose"_s,   u"leFile"_s,       u"cbEncoding"_s,
                         u"pbSaveCopy"_s, u"pbSaveReport"_s, u"twSummary"_s,
                         u"leFilter"_s,   u"tvList"_s,       u"pteDetail"_s};
    QCOMPARE(walk(Qt::NoModifier), expected);
    std::reverse(expected.begin() + 1, expected.end());
    QCOMPARE(walk(Qt::ShiftModifier), expected);
}

void TstPreparerWindow::mnemonics()
{
    const Preparer preparer;
    QStringList keys;
    const QList<QWidget *> widgets = preparer.window->findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        const auto *label = qobject_cast<const QLabel *>(widget);
        if (label && !label->buddy())
            continue;
        const QKeySequence key = QKeySequence::mnemonic(widget->property("text").toString());
        if (!key.isEmpty())
            keys += key.toString();
    }
    keys.sort();
    QCOMPARE(keys, (QStringList{u"Alt+A"_s, u"Alt+C"_s, u"Alt+D"_s, u"Alt+E"_s, u"Alt+F"_s,
                                u"Alt+L"_s, u"Alt+P"_s, u"Alt+T"_s}));
}

void TstPreparerWindow::keyboardAlone()
{
    const Preparer preparer;
    writeLines(preparer.path(), Tree);
    preparer.find<QWidget>("pbChoose")->setFocus();
    const auto press = [&](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        // A dialog that closes leaves no window active on this platform.
        preparer.window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(preparer.window.get()));
        QTest::keyClick(preparer.window->focusWidget(), key, modifiers);
    };
    const auto focused = [&] { return preparer.window->focusWidget()->objectName(); };
    {
        const AnsweredFileDialogs dialogs(preparer.path());
        press(Qt::Key_C, Qt::AltModifier);
        QTRY_COMPARE(dialogs.count(), 1);
    }
    preparer.waitForOutcome();

    // The encoding: the first one behind the automatic choice, and back.
    press(Qt::Key_D, Qt::AltModifier);
    QCOMPARE(focused(), u"cbEncoding"_s);
    press(Qt::Key_Down);
    preparer.waitForOutcome();
    QCOMPARE(preparer.find<QComboBox>("cbEncoding")->currentText(), u"UTF-8"_s);
    press(Qt::Key_Up);
    preparer.waitForOutcome();

    // A switch, in the row that is now chosen.
    press(Qt::Key_T, Qt::AltModifier);
    QCOMPARE(focused(), u"twSummary"_s);
    QTest::keyClicks(preparer.window->focusWidget(), u"niv"_s); // to the row that begins so
    QCOMPARE(preparer.list(), QStringList{u"5|3 DATE 1800|2 DATE 1800"_s});
    press(Qt::Key_Space);
    preparer.waitForOutcome();
    QCOMPARE(preparer.list(), QStringList());
    press(Qt::Key_Space);
    preparer.waitForOutcome();

    press(Qt::Key_F, Qt::AltModifier);
    QCOMPARE(focused(), u"leFilter"_s);
    QTest::keyClicks(preparer.window->focusWidget(), u"1800"_s);
    press(Qt::Key_L, Qt::AltModifier);
    QCOMPARE(focused(), u"tvList"_s);
    press(Qt::Key_Down);
    QVERIFY(preparer.find<QPlainTextEdit>("pteDetail")
                ->toPlainText()
                .contains(u"Après : 2 DATE 1800"_s));

    const AnsweredFileDialogs dialogs(preparer.path(u"copie.ged"_s));
    press(Qt::Key_E, Qt::AltModifier);
    QTRY_COMPARE(preparer.status(), savedTo(preparer.path(u"copie.ged"_s)));
    QCOMPARE(readLines(preparer.path(u"copie.ged"_s)), PreparedTree);
}

void TstPreparerWindow::accessibleNames()
{
    const Preparer preparer;
    const QList<std::tuple<const char *, QString, QString>> expected{
        {"pbChoose", u"Choisir un fichier…"_s, u"Le fichier est examiné, et jamais modifié."_s},
        {"leFile", u"Fichier choisi"_s, {}},
#ifdef Q_OS_WIN
        {"cbEncoding", u"Codage du fichier"_s, {}},
#else
        {"cbEncoding", u"Automatique"_s, {}}, // its name is that of its label
#endif
        {"lbVerdict", Nothing, {}},
        {"pbSaveCopy", u"Enregistrer la copie…"_s, u"La copie réparée, que Varlune ouvrira"_s},
        {"pbSaveReport", u"Enregistrer le rapport…"_s, u"La liste entière, en texte ou en JSON"_s},
        {"twSummary", u"Réparations et avertissements"_s,
         u"Une case cochée est une réparation à faire ; la ligne choisie filtre la liste."_s},
        {"leFilter", u"Filtrer la liste"_s, u"texte cherché"_s},
        {"tvList", u"Lignes réparées ou signalées"_s, {}},
        {"pteDetail", u"Ligne choisie dans la liste"_s, {}},
        {"progress", u"Progression"_s, {}},
        {"pbCancel", u"Annuler"_s, u"Arrête la préparation en cours"_s},
    };
    QStringList named;
    for (const auto &[name, text, description] : expected) {
        QAccessibleInterface *iface =
            QAccessible::queryAccessibleInterface(preparer.find<QWidget>(name));
        QCOMPARE(iface->text(QAccessible::Name), text);
        QCOMPARE(iface->text(QAccessible::Description), description);
        named += QString::fromLatin1(name);
    }
    const auto labels = QAccessible::queryAccessibleInterface(preparer.find<QWidget>("cbEncoding"))
                            ->relations(QAccessible::Label);
    QCOMPARE(labels.size(), 1);
    QCOMPARE(labels.constFirst().first->object(), preparer.find<QObject>("lbEncoding"));
    // Whatever takes the focus by Tab is among them.
    const QList<QWidget *> widgets = preparer.window->findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        if ((widget->focusPolicy() & Qt::TabFocus) && !widget->focusProxy()
            && !widget->objectName().isEmpty() && !widget->objectName().startsWith("qt_"_L1))
            QVERIFY2(named.contains(widget->objectName()), qPrintable(widget->objectName()));
    }
}

void TstPreparerWindow::smallScreens_data()
{
    QTest::addColumn<QString>("style");
    QTest::addColumn<int>("points");
    QTest::addColumn<QSize>("screen");

    // The last two are the first two at 125 %.
    for (const char *style : {"fusion", "windows"}) {
        for (const int points : {9, 12}) {
            for (const QSize screen :
                 {QSize(1024, 600), QSize(1366, 768), QSize(819, 480), QSize(1092, 614)})
                QTest::addRow("%s, %d points, %dx%d", style, points, screen.width(),
                              screen.height())
                    << QString::fromLatin1(style) << points << screen;
        }
    }
}

void TstPreparerWindow::smallScreens()
{
    QFETCH(const QString, style);
    QFETCH(const int, points);
    QFETCH(const QSize, screen);

    const QFont font = QApplication::font();
    const auto restored = qScopeGuard([font] {
        QApplication::setFont(font);
        QApplication::setStyle(QStyleFactory::create(u"fusion"_s));
    });
    QApplication::setStyle(QStyleFactory::create(style));
    QApplication::setFont(QFont(u"DejaVu Sans"_s, points));
    const Preparer preparer;
    preparer.window->hide();
    const QSize room = screen - QSize(0, 80); // a panel and a title bar
    QVERIFY(fitInto(preparer.window.get(), room));
    preparer.window->show();
    // Long texts change nothing.
    preparer.open({u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 @I1@ INDI"_s, u"1 NAME x"_s,
                   u"1 NOTE é"_s + QString(300, u'x'), u"0 TRLR"_s});
    QCoreApplication::processEvents();
    QVERIFY2(
        preparer.window->width() <= room.width() && preparer.window->height() <= room.height(),
        qPrintable(u"%1 by %2"_s.arg(preparer.window->width()).arg(preparer.window->height())));
    const QList<QWidget *> widgets = preparer.window->findChildren<QWidget *>(
        QRegularExpression(u"^(pb|le|cb|tw|tv|pte|lb|progress|fileRows|splitter|summary|list)"_s));
    QVERIFY(widgets.size() >= 15);
    for (const QWidget *widget : widgets) {
        const QByteArray name = widget->objectName().toLatin1();
        const QRect rect(widget->mapTo(preparer.window.get(), QPoint()), widget->size());
        QVERIFY2(preparer.window->rect().contains(rect), name.constData());
        QVERIFY2(widget->parentWidget()->rect().contains(widget->geometry()), name.constData());
        if (qobject_cast<const QPushButton *>(widget))
            QVERIFY2(widget->width() >= widget->sizeHint().width(), name.constData());
    }
    // Room for some rows at least, on the lowest screen with the largest font, too.
    const auto *list = preparer.find<QTableView>("tvList");
    QVERIFY2(list->viewport()->height() >= 3 * list->verticalHeader()->defaultSectionSize(),
             qPrintable(QString::number(list->viewport()->height())));
}

VARLUNE_TEST_MAIN(TstPreparerWindow)
#include "tst_preparerwindow.moc"
