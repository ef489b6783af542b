#include "boxes.h"
#include "document.h"
#include "fenapropos.h"
#include "fenjournal.h"
#include "filedialogs.h"
#include "mainwindow.h"
#include "markingtranslator.h"
#include "testmain.h"
#include "ui_mainwindow.h"
#include "window.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPointer>
#include <QProgressBar>
#include <QScopeGuard>
#include <QScrollBar>
#include <QStatusBar>
#include <QStyle>
#include <QTimer>
#include <QTranslator>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <chrono>
#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

// An explicit instantiation may name private members, which gives access to them.
using FileMember = QFile *MainWindow::*;
FileMember paramsMember();
FileMember sequenceMember();

template <FileMember params, FileMember sequence>
struct Expose
{
    friend FileMember paramsMember()
    {
        return params;
    }
    friend FileMember sequenceMember()
    {
        return sequence;
    }
};
template struct Expose<&MainWindow::m_FichierParams, &MainWindow::m_FichierSequence>;

const QStringList Person{u"0 HEAD"_s,
                         u"1 CHAR UTF-8"_s,
                         u"0 @I1@ INDI"_s,
                         u"1 BIRT"_s,
                         u"2 DATE 1 JAN 1900"_s,
                         u"1 NAME Jean /DUPONT/"_s,
                         u"1 SEX M"_s,
                         u"1 NAME Jeannot /DUPONT/"_s,
                         u"0 TRLR"_s};

/// The journal after the load of \p path with those lines.
QStringList journalOfPerson(const QString &path)
{
    return {u"INFO : Chargement du fichier "_s + path, u"INFO : Chargement de 9 lignes terminé."_s,
            u"INFO : Chargement du fichier GED terminé."_s, u"INFO : 2 entrées trouvées."_s};
}

const QString Loading = u"Chargement du fichier GED en cours..."_s;
const QString Loaded = u"Chargement du fichier GED terminé"_s; // without a full stop

/// Calls a function at each change of the enabled state of the watched widgets.
class EnabledWatcher : public QObject
{
public:
    explicit EnabledWatcher(std::function<void(QObject *)> changed) : m_changed(std::move(changed))
    {
    }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::EnabledChange)
            m_changed(watched);
        return false;
    }

private:
    std::function<void(QObject *)> m_changed;
};

/// Gives access to the number of receivers of a signal.
struct Receivers : QObject
{
    using QObject::receivers;
};

/// The number of receivers of an object's \p signal, given in the form of SIGNAL().
int receiverCount(const QObject *sender, const QByteArray &signal)
{
    return (sender->*(&Receivers::receivers))(signal.constData());
}

/// Whether the status text stays until the next one: a time-out would need a timer.
bool statusStays(const Session &session)
{
    return !session.window->statusBar()->findChild<QTimer *>();
}

/// The flags of a plain tool window.
Qt::WindowFlags toolFlags()
{
    QWidget widget;
    widget.setWindowFlags(Qt::Tool);
    return widget.windowFlags();
}

void processDeferredDeletes()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

} // namespace

/// The window around the form: menus, status bar, tree, journal and About windows, opening a file,
/// and how actions and slots are connected.
class TstMainWindow : public QObject
{
    Q_OBJECT

private slots:
    void nameAndVersion();
    void formAlone();
    void frame();
    void menus();
    void actionsAreBare();
    void menuBarColours();
    void treeSettings();
    void progressBar();
    void progressBarStaysBesideMessages();
    void filesBesideTheExecutable();

    void slotNamesMeetSignals();
    void slotsInOrder();
    void slotIsBound_data();
    void slotIsBound();

    void controlState_data();
    void controlState();
    void onlyThreeActionsRespondBeforeLoad();

    void openDialog();
    void openShowsStatusBar();
    void openTextsAreTranslated();
    void load_data();
    void load();
    void loadFitsColumns();
    void loadShowsProgress();
    void enablingOrder();
    void actionDuringLoad();
    void cancelledOpen();
    void refusedFileThenGoodOne();
    void oneDocumentARun();
    void closingAsksNothing();

    void journalWindow();
    void journalWindowOfTheAction();
    void journalBeforeLoad();
    void journalIsReadOnly();
    void journalStaysAsItWas();
    void journalOfEachRun();
    void longJournalIsNotScrolled();
    void closedWindowIsOnlyHidden_data();
    void closedWindowIsOnlyHidden();
    void secondaryWindowsGoWithTheWindow();

    void aboutWindow();
    void aboutWindowOfTheAction();
    void aboutWindowHasAFixedSize();
    void aboutTextIsTranslated();

    void catalogue();
    void applicationIcon();
    void picture_data();
    void picture();
};

void TstMainWindow::nameAndVersion()
{
    QCOMPARE(FenAPropos::getAppName(), u"Varlune"_s);
    QCOMPARE(FenAPropos::getVersion(), u"v1.9.0"_s);
    QCOMPARE(makeWindow()->windowTitle(), u"Varlune v1.9.0"_s);
}

void TstMainWindow::formAlone()
{
    QMainWindow window;
    Ui_MainWindow ui;
    ui.setupUi(&window);
    QCOMPARE(window.windowTitle(), u"MainWindow"_s);
    QCOMPARE(window.objectName(), u"MainWindow"_s);
    QVERIFY(window.findChildren<QProgressBar *>().isEmpty());
    // It is the window that closes the panel.
    QVERIFY(ui.mainGroupBox->isEnabled());

    window.setWindowTitle(u"autre"_s);
    ui.actionOuvrir->setText(u"autre"_s);
    ui.cbEspacer->setToolTip(u"autre"_s);
    ui.gbDelTags->setTitle(u"autre"_s);
    ui.retranslateUi(&window);
    QCOMPARE(window.windowTitle(), u"MainWindow"_s);
    QCOMPARE(ui.actionOuvrir->text(), u"Ouvrir"_s);
    QCOMPARE(ui.cbEspacer->toolTip(),
             u"<html><head/><body><p>JeanMARTIN -&gt; Jean MARTIN</p></body></html>"_s);
    QCOMPARE(ui.gbDelTags->title(), u"Supprimer les balises"_s);
}

void TstMainWindow::frame()
{
    const Session session;
    const MainWindow *window = session.window.get();
    QCOMPARE(window->parent(), nullptr);
    QCOMPARE(window->objectName(), u"MainWindow"_s);
    QCOMPARE(window->size(), QSize(837, 967));

    auto *central = session.find<QWidget>(u"centralwidget"_s);
    QCOMPARE(window->centralWidget(), central);
    QCOMPARE(central->metaObject()->className(), "QWidget");
    QVERIFY(central->autoFillBackground());

    auto *top = session.find<QHBoxLayout>(u"horizontalLayout_2"_s);
    auto *left = session.find<QVBoxLayout>(u"verticalLayout_3"_s);
    QCOMPARE(central->layout(), top);
    QCOMPARE(top->count(), 2);
    QCOMPARE(top->itemAt(0)->layout(), left);
    QCOMPARE(top->itemAt(1)->widget(), session.find<QGroupBox>(u"mainGroupBox"_s));
    QCOMPARE(left->count(), 2);
    QCOMPARE(left->itemAt(0)->widget(), session.tree());
    QCOMPARE(left->itemAt(1)->layout(), session.find<QGridLayout>(u"gridLayout_6"_s));

    QCOMPARE(session.window->menuBar(), session.find<QMenuBar>(u"menubar"_s));
    QCOMPARE(session.window->statusBar(), session.find<QStatusBar>(u"statusbar"_s));

    // An active layout moves the menu bar.
    QMainWindow plain;
    Ui_MainWindow ui;
    ui.setupUi(&plain);
    QCOMPARE(ui.menubar->geometry(), QRect(0, 0, 837, 21));
}

void TstMainWindow::menus()
{
    const Session session;
    QStringList entries;
    const QList<QAction *> menuActions = session.window->menuBar()->actions();
    for (const QAction *menuAction : menuActions) {
        const QMenu *menu = menuAction->menu<QMenu *>();
        QVERIFY(menu);
        entries += menu->objectName() + u" is "_s + menu->title();
        const QList<QAction *> actions = menu->actions();
        for (const QAction *action : actions) {
            entries += action->objectName() + u" is "_s + action->text()
                     + (action->isEnabled() ? u", enabled"_s : u", disabled"_s);
        }
    }
    const QStringList expected{
        u"menuFichier is Fichier"_s,
        u"actionOuvrir is Ouvrir, enabled"_s,
        u"actionEnregistrerFichier is Enregistrer, disabled"_s,
        u"actionEnregistrerFichier_sous is Enregistrer sous, disabled"_s,
        u"menuOutils is Outils"_s,
        u"actionJournal is Journal, enabled"_s,
        u"menuAide is Aide"_s,
        u"action_propos is À propos, enabled"_s,
    };
    QCOMPARE(entries, expected);
}

void TstMainWindow::actionsAreBare()
{
    const Session session;
    QStringList names;
    const auto actions =
        session.window->findChildren<QAction *>(QString(), Qt::FindDirectChildrenOnly);
    for (const QAction *action : actions) {
        names += action->objectName();
        QVERIFY2(action->icon().isNull(), qPrintable(action->objectName()));
        QVERIFY2(action->shortcuts().isEmpty(), qPrintable(action->objectName()));
    }
    const QStringList expected{u"actionOuvrir"_s, u"actionEnregistrerFichier"_s,
                               u"actionEnregistrerFichier_sous"_s, u"actionJournal"_s,
                               u"action_propos"_s};
    QCOMPARE(names, expected);
}

void TstMainWindow::menuBarColours()
{
    // An application palette that the bar must not adopt.
    const auto restore = qScopeGuard([] { QApplication::setPalette(QPalette()); });
    QPalette palette;
    palette.setColor(QPalette::ButtonText, Qt::red);
    palette.setColor(QPalette::WindowText, Qt::red);
    QApplication::setPalette(palette);

    const Session session;
    const QMenuBar *menuBar = session.window->menuBar();
    QCOMPARE(menuBar->styleSheet(), u"QMenuBar {background-color: #f0f0f0;}"_s);
    const QPalette standard = QApplication::style()->standardPalette();
    for (const QPalette::ColorRole role : {QPalette::ButtonText, QPalette::WindowText})
        QCOMPARE(menuBar->palette().color(role), standard.color(role));
}

void TstMainWindow::treeSettings()
{
    const Session session;
    const QTreeWidget *tree = session.tree();
    QCOMPARE(tree->metaObject()->className(), "QTreeWidget");
    QCOMPARE(tree->parentWidget(), session.find<QWidget>(u"centralwidget"_s));
    QCOMPARE(tree->columnCount(), 4);
    for (int column = 0; column < 4; ++column)
        QCOMPARE(tree->headerItem()->text(column), QString());
    QVERIFY(tree->header()->isHidden());
    QVERIFY(!tree->header()->stretchLastSection());
    QCOMPARE(tree->frameShape(), QFrame::Box);
    QCOMPARE(tree->lineWidth(), 1);
    QCOMPARE(tree->topLevelItemCount(), 0);
    QCOMPARE(session.find<QVBoxLayout>(u"verticalLayout_3"_s)->indexOf(tree), 0);
}

void TstMainWindow::progressBar()
{
    const Session session;
    QCOMPARE(session.window->findChildren<QProgressBar *>().size(), 1);
    const QProgressBar *progress = session.progress();
    QCOMPARE(progress->parentWidget(), session.find<QStatusBar>(u"statusbar"_s));
    QCOMPARE(progress->styleSheet(),
             u"QProgressBar::chunk{background-color:green; width: 10px; margin: 0.5px;}"_s);
    QVERIFY(!progress->isTextVisible());
    QVERIFY(progress->isHidden());
}

void TstMainWindow::progressBarStaysBesideMessages()
{
    const Session session;
    session.window->show();
    session.progress()->show();
    session.window->statusBar()->showMessage(u"message"_s);
    QVERIFY(session.progress()->isVisible());
}

void TstMainWindow::filesBesideTheExecutable()
{
    std::unique_ptr<MainWindow> window = makeWindow();
    const QString folder = QCoreApplication::applicationDirPath();
    const QPointer<QFile> params = window.get()->*paramsMember();
    const QPointer<QFile> sequence = window.get()->*sequenceMember();
    QCOMPARE(params->fileName(), folder + u"/PARAM.INI"_s);
    QCOMPARE(sequence->fileName(), folder + u"/SEQUENCE.INI"_s);
    for (const QPointer<QFile> &file : {params, sequence}) {
        QVERIFY(!file->isOpen());
        QCOMPARE(file->parent(), nullptr);
    }
    // They outlive the window.
    window.reset();
    QVERIFY(params);
    QVERIFY(sequence);
}

void TstMainWindow::slotNamesMeetSignals()
{
    QTest::failOnWarning(QRegularExpression(u"connectSlotsByName"_s));
    const std::unique_ptr<MainWindow> window = makeWindow();
    QVERIFY(window->findChild<QAction *>(u"actionOuvrir"_s));
}

void TstMainWindow::slotsInOrder()
{
    QStringList names;
    const QMetaObject &meta = MainWindow::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        names += QString::fromLatin1(meta.method(i).methodSignature());
        QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
        QCOMPARE(meta.method(i).typeName(), "void");
    }
    const QStringList expected{
        u"on_actionOuvrir_triggered()"_s,
        u"on_actionEnregistrerFichier_triggered()"_s,
        u"on_actionEnregistrerFichier_sous_triggered()"_s,
        u"on_actionJournal_triggered()"_s,
        u"on_pbApply_clicked()"_s,
        u"on_pbReadSequence_clicked()"_s,
        u"on_action_propos_triggered()"_s,
        u"on_leRecherche_returnPressed()"_s,
        u"on_leRecherche_textChanged(QString)"_s,
        u"on_cbFiltrerRegex_stateChanged(int)"_s,
        u"on_cbFiltreSensible_stateChanged(int)"_s,
        u"on_cbSourceDateDiff_stateChanged(int)"_s,
        u"on_cbSourceMultiUse_stateChanged(int)"_s,
        u"on_pickSrcTag_clicked()"_s,
        u"on_pickDestTag_clicked()"_s,
        u"on_pickDestClickableTag_clicked()"_s,
        u"on_pbPickTagToDel_clicked()"_s,
        u"on_pbSelectTagReplace_clicked()"_s,
        u"on_pbImportCsvLinks_clicked()"_s,
        u"on_pbExtractMediasSource_clicked()"_s,
        u"on_pbExtractMediasToKeep_clicked()"_s,
        u"on_cbDelMediaPath_stateChanged(int)"_s,
        u"on_pbOpenNewMediaPath_clicked()"_s,
        u"on_cbUrlInEvt_stateChanged(int)"_s,
        u"on_cbUrlInSour_stateChanged(int)"_s,
        u"on_cbDelIfContent_clicked()"_s,
        u"on_gbDelTags_clicked()"_s,
    };
    QCOMPARE(names, expected);
    QCOMPARE(meta.propertyCount(), QMainWindow::staticMetaObject.propertyCount());
}

void TstMainWindow::slotIsBound_data()
{
    QTest::addColumn<QString>("sender");
    QTest::addColumn<QByteArray>("signal");

    const auto bound = [](const char *signal, const QStringList &senders) {
        for (const QString &sender : senders)
            QTest::addRow("%s, %s", qPrintable(sender), signal) << sender << QByteArray(signal);
    };
    bound("triggered(bool)",
          {u"actionOuvrir"_s, u"actionEnregistrerFichier"_s, u"actionEnregistrerFichier_sous"_s,
           u"actionJournal"_s, u"action_propos"_s});
    bound("clicked(bool)",
          {u"pbApply"_s, u"pbReadSequence"_s, u"pickSrcTag"_s, u"pickDestTag"_s,
           u"pickDestClickableTag"_s, u"pbPickTagToDel"_s, u"pbSelectTagReplace"_s,
           u"pbImportCsvLinks"_s, u"pbExtractMediasSource"_s, u"pbExtractMediasToKeep"_s,
           u"pbOpenNewMediaPath"_s, u"cbDelIfContent"_s, u"gbDelTags"_s});
    bound("stateChanged(int)",
          {u"cbFiltrerRegex"_s, u"cbFiltreSensible"_s, u"cbSourceDateDiff"_s, u"cbSourceMultiUse"_s,
           u"cbDelMediaPath"_s, u"cbUrlInEvt"_s, u"cbUrlInSour"_s});
    bound("returnPressed()", {u"leRecherche"_s});
    bound("textChanged(QString)", {u"leRecherche"_s});
}

void TstMainWindow::slotIsBound()
{
    QFETCH(const QString, sender);
    QFETCH(const QByteArray, signal);

    const Session session;
    const auto *object = session.find<QObject>(sender);
    // A slot takes the argument of stateChanged and textChanged, but not the checked state.
    const QByteArray slot =
        "1on_" + sender.toLatin1() + '_' + QByteArray(signal).replace("(bool)", "()");
    const int before = receiverCount(object, '2' + signal);
    QVERIFY(QObject::disconnect(object, ('2' + signal).constData(), session.window.get(),
                                slot.constData()));
    // Connected once: a slot connected twice would work twice.
    QCOMPARE(before - receiverCount(object, '2' + signal), 1);
}

void TstMainWindow::controlState_data()
{
    QTest::addColumn<bool>("before");
    QTest::addColumn<bool>("after");

    QTest::newRow("actionOuvrir") << true << false;
    QTest::newRow("actionEnregistrerFichier") << false << true;
    QTest::newRow("actionEnregistrerFichier_sous") << false << true;
    QTest::newRow("mainGroupBox") << false << true;
    QTest::newRow("leTagToClickable") << false << true;
    QTest::newRow("cbFiltreSensible") << false << true;
    QTest::newRow("cbFiltrerRegex") << false << true;
    QTest::newRow("cbSourceDateDiff") << false << true;
    QTest::newRow("cbSourceMultiUse") << false << true;
    QTest::newRow("leRecherche") << false << true;
    QTest::newRow("actionJournal") << true << true;
    QTest::newRow("action_propos") << true << true;
}

void TstMainWindow::controlState()
{
    QFETCH(const bool, before);
    QFETCH(const bool, after);
    const QString control = QString::fromLatin1(QTest::currentDataTag());

    const Session session;
    session.window->show();
    QCOMPARE(session.isEnabled(control), before);
    session.load(Person);
    QCOMPARE(session.isEnabled(control), after);
    session.apply();
    session.trigger(u"actionEnregistrerFichier"_s);
    QCOMPARE(session.isEnabled(control), after);
}

void TstMainWindow::onlyThreeActionsRespondBeforeLoad()
{
    const Session session;
    session.window->show();
    QCOMPARE(session.tree()->topLevelItemCount(), 0);
    const AnsweredBoxes boxes;
    const AnsweredFileDialogs dialogs{QString()};

    session.trigger(u"actionEnregistrerFichier"_s);
    session.trigger(u"actionEnregistrerFichier_sous"_s);
    QCOMPARE(dialogs.count(), 0);
    QCOMPARE(session.status(), QString());
    QCOMPARE(session.journal(), QStringList());
    QCOMPARE(boxes.texts(), QStringList());

    session.trigger(u"action_propos"_s);
    QCOMPARE(session.window->findChildren<FenAPropos *>().size(), 1);
    session.trigger(u"actionOuvrir"_s);
    QCOMPARE(dialogs.count(), 1);
    QCOMPARE(dialogs.title(), u"Ouvrir un fichier Gedcom"_s);
}

void TstMainWindow::openDialog()
{
    const Session session;
    session.window->show();
    // The folder of an earlier dialog must not be used.
    const QFileDialog elsewhere(nullptr, QString(), session.folder());

    const AnsweredBoxes boxes;
    AnsweredFileDialogs dialogs{QString()};
    QString statusMeanwhile;
    bool stays = false;
    QFileDialog::AcceptMode acceptMode = QFileDialog::AcceptSave;
    dialogs.setInspector([&](const QFileDialog *dialog) {
        statusMeanwhile = session.status();
        stays = statusStays(session);
        acceptMode = dialog->acceptMode();
    });
    session.trigger(u"actionOuvrir"_s);
    QCOMPARE(dialogs.count(), 1);
    QCOMPARE(dialogs.title(), u"Ouvrir un fichier Gedcom"_s);
    QCOMPARE(dialogs.directory(), documentsFolder());
    QCOMPARE(dialogs.nameFilters(), QStringList{u"ged (*.ged)"_s});
    QCOMPARE(dialogs.fileMode(), QFileDialog::ExistingFile);
    QCOMPARE(dialogs.options(), QFileDialog::Options());
    QCOMPARE(dialogs.parentWidget(), session.window.get());
    QCOMPARE(acceptMode, QFileDialog::AcceptOpen);
    QCOMPARE(statusMeanwhile, Loading);
    QVERIFY(stays);
}

void TstMainWindow::openShowsStatusBar()
{
    const Session session;
    session.window->show();
    session.window->statusBar()->hide();
    const AnsweredBoxes boxes;
    session.open(QString());
    QVERIFY(session.window->statusBar()->isVisible());
}

void TstMainWindow::openTextsAreTranslated()
{
    const Session session;
    session.window->show();
    const AnsweredBoxes boxes;
    const MarkingTranslator translator;
    const auto marked = [](const QString &text) { return u"[MainWindow]"_s + text; };
    {
        const AnsweredFileDialogs dialogs{QString()};
        session.trigger(u"actionOuvrir"_s);
        QCOMPARE(dialogs.title(), marked(u"Ouvrir un fichier Gedcom"_s));
        QCOMPARE(dialogs.nameFilters(), QStringList{marked(u"ged (*.ged)"_s)});
    }
    QCOMPARE(session.status(), marked(Loading));
    QCOMPARE(session.journal().constLast(),
             u"ERROR : "_s + marked(u"Chargement du fichier GED interrompu."_s));

    session.load(Person);
    QCOMPARE(session.status(), marked(Loaded));
    const FenJournal *fenJournal = session.openJournal();
    QCOMPARE(fenJournal->windowTitle(), marked(u"Journal"_s));
    const QStringList journal = journalIn(fenJournal);
    QCOMPARE(journal.at(journal.size() - 2),
             u"INFO : "_s + marked(u"Chargement du fichier GED terminé."_s));
    QVERIFY(journal.constLast().contains(u"[MainWindow]"_s));
}

void TstMainWindow::load_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QStringList>("journal");

    QTest::newRow("an empty file") << QStringList()
                                   << QStringList{u"INFO : Chargement de 0 lignes terminé."_s,
                                                  u"INFO : Chargement du fichier GED terminé."_s,
                                                  u"INFO : 0 entrées trouvées."_s};
    QTest::newRow("a trailer alone") << QStringList{u"0 TRLR"_s}
                                     << QStringList{u"INFO : Chargement de 1 lignes terminé."_s,
                                                    u"INFO : Chargement du fichier GED terminé."_s,
                                                    u"INFO : 0 entrées trouvées."_s};
    QTest::newRow("records are counted, not lines")
        << Person
        << QStringList{u"INFO : Chargement de 9 lignes terminé."_s,
                       u"INFO : Chargement du fichier GED terminé."_s,
                       u"INFO : 2 entrées trouvées."_s};
    QTest::newRow("records that are not on screen or of no known kind count too")
        << QStringList{u"0 HEAD"_s,      u"1 CHAR UTF-8"_s,  u"0 @U1@ SUBM"_s, u"1 NAME Léa"_s,
                       u"0 @U2@ SUBN"_s, u"1 LANG French"_s, u"0 TRLR"_s}
        << QStringList{u"INFO : Entrée non reconnue :"_s,
                       u"0 @U2@ SUBN"_s,
                       u"1 LANG French"_s,
                       u"INFO : Chargement de 7 lignes terminé."_s,
                       u"INFO : Chargement du fichier GED terminé."_s,
                       u"INFO : 3 entrées trouvées."_s};
}

void TstMainWindow::load()
{
    QFETCH(const QStringList, lines);
    QFETCH(const QStringList, journal);

    const Session session;
    session.window->show();
    const AnsweredBoxes boxes;
    writeBytes(session.path(), lines.isEmpty() ? QByteArray() : lines.join(u'\n').toUtf8() + '\n');
    session.open(session.path());
    QCOMPARE(boxes.texts(), QStringList());
    QCOMPARE(session.status(), Loaded);
    QVERIFY(statusStays(session));
    QCOMPARE(session.journal(),
             QStringList{u"INFO : Chargement du fichier "_s + session.path()} + journal);
    QVERIFY(session.isEnabled(u"mainGroupBox"_s));
    QVERIFY(!session.isEnabled(u"actionOuvrir"_s));
}

void TstMainWindow::loadFitsColumns()
{
    const Session session;
    session.window->show();
    const QHeaderView *header = session.tree()->header();
    const AnsweredBoxes boxes;
    session.open(QString());
    for (int column = 0; column < 4; ++column)
        QCOMPARE(header->sectionResizeMode(column), QHeaderView::Interactive);

    // The last column is fitted once before all are.
    QList<int> fittedAlone;
    connect(header, &QHeaderView::sectionResized, this, [&](int column) {
        if (header->sectionResizeMode(column) == QHeaderView::Interactive)
            fittedAlone += column;
    });
    session.load(Person);
    QCOMPARE(fittedAlone, QList<int>{3});
    for (int column = 0; column < 4; ++column)
        QCOMPARE(header->sectionResizeMode(column), QHeaderView::ResizeToContents);
    QVERIFY(header->isHidden());
    QVERIFY(!header->stretchLastSection());
}

void TstMainWindow::loadShowsProgress()
{
    const Session session;
    session.window->show();
    QStringList steps;
    connect(session.progress(), &QProgressBar::valueChanged, this, [&](int value) {
        steps +=
            u"%1 of %2%3, %4"_s.arg(value)
                .arg(session.progress()->maximum())
                .arg(session.progress()->isVisible() ? u""_s : u", hidden"_s, session.status());
    });
    QStringList lines = Person;
    while (lines.size() < 250)
        lines.insert(lines.size() - 1, u"1 NOTE x"_s);
    session.load(lines);
    const QStringList expected{u"100 of 250, "_s + Loading, u"200 of 250, "_s + Loading};
    QCOMPARE(steps, expected);
    QVERIFY(session.progress()->isHidden());
}

void TstMainWindow::enablingOrder()
{
    const Session session;
    session.window->show();
    QStringList events;
    QStringList journalAtFirst;
    const auto note = [&](QObject *control) {
        if (events.isEmpty()) {
            events += session.status();
            journalAtFirst = session.journal();
        }
        events += control->objectName();
    };
    EnabledWatcher watcher(note);
    for (const QString &control :
         {u"mainGroupBox"_s, u"leTagToClickable"_s, u"cbFiltreSensible"_s, u"cbSourceDateDiff"_s,
          u"cbSourceMultiUse"_s, u"cbFiltrerRegex"_s, u"leRecherche"_s})
        session.find<QWidget>(control)->installEventFilter(&watcher);
    for (const QString &control :
         {u"actionEnregistrerFichier_sous"_s, u"actionEnregistrerFichier"_s, u"actionOuvrir"_s}) {
        auto *action = session.find<QAction>(control);
        connect(action, &QAction::enabledChanged, this, [&note, action] { note(action); });
    }

    session.load(Person);
    const QStringList expected{Loaded,
                               u"mainGroupBox"_s,
                               u"leTagToClickable"_s,
                               u"cbFiltreSensible"_s,
                               u"cbSourceDateDiff"_s,
                               u"cbSourceMultiUse"_s,
                               u"cbFiltrerRegex"_s,
                               u"leRecherche"_s,
                               u"actionEnregistrerFichier_sous"_s,
                               u"actionEnregistrerFichier"_s,
                               u"actionOuvrir"_s};
    QCOMPARE(events, expected);
    QCOMPARE(journalAtFirst, journalOfPerson(session.path()));
}

void TstMainWindow::actionDuringLoad()
{
    const Session session;
    session.window->show();
    QStringList journalMeanwhile;
    bool openIsEnabled = false;
    connect(session.progress(), &QProgressBar::valueChanged, this, [&](int value) {
        QCOMPARE(value, 100);
        QTimer::singleShot(0, session.window.get(), [&] {
            openIsEnabled = session.isEnabled(u"actionOuvrir"_s);
            journalMeanwhile = session.journal();
        });
    });
    QStringList lines = Person;
    while (lines.size() < 150)
        lines.insert(lines.size() - 1, u"1 NOTE x"_s);
    session.load(lines);
    QVERIFY(openIsEnabled);
    QCOMPARE(journalMeanwhile, QStringList{u"INFO : Chargement du fichier "_s + session.path()});
    QCOMPARE(session.status(), Loaded);
}

void TstMainWindow::cancelledOpen()
{
    const Session session;
    session.window->show();
    const AnsweredBoxes boxes;
    session.open(QString());
    QCOMPARE(boxes.texts(), QStringList{u"Impossible d'ouvrir le fichier "_s});
    QCOMPARE(boxes.titles(), QStringList{u"Erreur"_s});
    QVERIFY(boxes.allCritical(nullptr));
    const QStringList journal{u"INFO : Chargement du fichier "_s,
                              u"ERROR : Chargement du fichier impossible."_s,
                              u"ERROR : Chargement du fichier GED interrompu."_s};
    QCOMPARE(session.journal(), journal);
    QCOMPARE(session.status(), Loading);
    QCOMPARE(session.tree()->topLevelItemCount(), 0);
    QVERIFY(session.progress()->isHidden());
    for (const QString &control :
         {u"mainGroupBox"_s, u"leTagToClickable"_s, u"cbFiltreSensible"_s, u"cbFiltrerRegex"_s,
          u"cbSourceDateDiff"_s, u"cbSourceMultiUse"_s, u"leRecherche"_s,
          u"actionEnregistrerFichier"_s, u"actionEnregistrerFichier_sous"_s})
        QVERIFY2(!session.isEnabled(control), qPrintable(control));
    QVERIFY(session.isEnabled(u"actionOuvrir"_s));

    // The user may try again.
    session.load(Person);
    QCOMPARE(session.journal(), journal + journalOfPerson(session.path()));
    QCOMPARE(session.status(), Loaded);
    QVERIFY(session.isEnabled(u"mainGroupBox"_s));
    QCOMPARE(boxes.texts().size(), 1);
}

void TstMainWindow::refusedFileThenGoodOne()
{
    const Session session;
    session.window->show();
    const AnsweredBoxes boxes;
    const QString bad = session.path(u"refus.ged"_s);
    writeLines(bad, {u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 @I9@ INDI"_s, u"2 DATE 1900"_s,
                     u"0 @I8@ INDI"_s, u"1 SEX F"_s, u"0 TRLR"_s});
    session.open(bad);
    QCOMPARE(boxes.texts(), QStringList{u"Entrée non reconnue :\r\n0 @I9@ INDI\r\n2 DATE 1900"_s});
    QCOMPARE(boxes.titles(), QStringList{u"Erreur"_s});
    QVERIFY(boxes.allCritical(nullptr));
    const QStringList journal{u"INFO : Chargement du fichier "_s + bad,
                              u"ERROR : Entrée non reconnue :"_s, u"0 @I9@ INDI"_s,
                              u"2 DATE 1900"_s, u"ERROR : Chargement du fichier GED interrompu."_s};
    QCOMPARE(session.journal(), journal);
    QCOMPARE(session.status(), Loading);
    QVERIFY(session.progress()->isVisible());
    QVERIFY(!session.isEnabled(u"mainGroupBox"_s));
    QVERIFY(!session.isEnabled(u"actionEnregistrerFichier"_s));
    QVERIFY(session.isEnabled(u"actionOuvrir"_s));
    // The record before the refused one is kept.
    QCOMPARE(sectionNode(*session.tree(), u"en-tête"_s)->childCount(), 1);

    session.load(Person);
    QCOMPARE(session.journal(), journal + journalOfPerson(session.path()));
    QCOMPARE(session.status(), Loaded);
    QVERIFY(session.progress()->isHidden());
    QVERIFY(session.isEnabled(u"mainGroupBox"_s));
    QVERIFY(session.isEnabled(u"actionEnregistrerFichier"_s));
    QVERIFY(!session.isEnabled(u"actionOuvrir"_s));
    QCOMPARE(session.tree()->topLevelItemCount(), 7);
    QCOMPARE(sectionNode(*session.tree(), u"en-tête"_s)->childCount(), 2);
    QCOMPARE(boxes.texts().size(), 1);
}

void TstMainWindow::oneDocumentARun()
{
    const Session session;
    session.window->show();
    session.load(Person);
    const QStringList journal = session.journal();

    const AnsweredFileDialogs dialogs(session.path());
    session.trigger(u"actionOuvrir"_s);
    QCOMPARE(dialogs.count(), 0);
    QCOMPARE(session.journal(), journal);
    QCOMPARE(session.status(), Loaded);
}

void TstMainWindow::closingAsksNothing()
{
    const Session session;
    session.window->show();
    session.load(Person);
    const QByteArray saved = readBytes(session.path());
    session.apply({u"gbDelTags"_s, u"leTagsToDel=NAME"_s});
    QVERIFY(session.journal().contains(u"INFO : 2 suppressions effectuées."_s));
    session.trigger(u"action_propos"_s);
    QCOMPARE(session.journalWindows().size(), 1);
    QVERIFY(session.journalWindows().constFirst()->isVisible());
    QVERIFY(session.window->findChild<FenAPropos *>()->isVisible());

    const AnsweredBoxes boxes;
    QTimer::singleShot(0, session.window.get(), [&session] { session.window->close(); });
    QTimer::singleShot(std::chrono::minutes(1), session.window.get(),
                       [] { QCoreApplication::exit(1); });
    QCOMPARE(QApplication::exec(), 0);
    QVERIFY(!session.window->isVisible());
    QVERIFY(!session.journalWindows().constFirst()->isVisible());
    QVERIFY(!session.window->findChild<FenAPropos *>()->isVisible());
    QCOMPARE(boxes.texts(), QStringList());
    // Unsaved changes are lost.
    QCOMPARE(readBytes(session.path()), saved);
    QCOMPARE(QDir(session.folder()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{u"arbre.ged"_s});
}

void TstMainWindow::journalWindow()
{
    const FenJournal journal(nullptr, u"un\r\ndeux\r\n"_s, u"Un titre"_s);
    QVERIFY(!journal.isVisible());
    QCOMPARE(journal.size(), QSize(1000, 800));
    QCOMPARE(journal.windowFlags(), toolFlags());
    QVERIFY(journal.isWindow());
    QCOMPARE(journal.windowModality(), Qt::NonModal);
    QVERIFY(!journal.testAttribute(Qt::WA_DeleteOnClose));
    QCOMPARE(journal.windowTitle(), u"Un titre"_s);
    QCOMPARE(journal.windowIcon().availableSizes(), QList<QSize>{QSize(32, 32)});
    QCOMPARE(journal.windowIcon().pixmap(32, 32).toImage(),
             QPixmap(u":/icones/repo.png"_s).toImage());

    const auto *layout = qobject_cast<QHBoxLayout *>(journal.layout());
    QVERIFY(layout);
    QCOMPARE(layout->count(), 1);
    QCOMPARE(layout->stretch(0), 0);
    QCOMPARE(layout->itemAt(0)->alignment(), Qt::Alignment());
    const auto *edit = qobject_cast<QPlainTextEdit *>(layout->itemAt(0)->widget());
    QVERIFY(edit);
    QCOMPARE(journal.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly).size(), 1);
    QCOMPARE(edit->toPlainText(), u"un\ndeux\n"_s);
    QVERIFY(edit->isReadOnly());

    const QMetaObject &meta = FenJournal::staticMetaObject;
    QCOMPARE(meta.className(), "FenJournal");
    QCOMPARE(meta.methodCount(), QWidget::staticMetaObject.methodCount());
    QCOMPARE(meta.propertyCount(), QWidget::staticMetaObject.propertyCount());
}

void TstMainWindow::journalWindowOfTheAction()
{
    const Session session;
    session.window->show();
    session.load(Person);
    const FenJournal *journal = session.openJournal();
    QVERIFY(journal->isVisible());
    QCOMPARE(journal->parentWidget(), session.window.get());
    QVERIFY(journal->isWindow());
    QCOMPARE(journal->windowTitle(), u"Journal"_s);
    QCOMPARE(journal->windowModality(), Qt::NonModal);
    QCOMPARE(journal->size(), QSize(1000, 800));
    QCOMPARE(journalIn(journal), journalOfPerson(session.path()));

    // An open window is neither reused nor raised.
    const FenJournal *second = session.openJournal();
    QVERIFY(second != journal);
    QCOMPARE(session.journalWindows().size(), 2);
    QVERIFY(journal->isVisible());
    QVERIFY(second->isVisible());
}

void TstMainWindow::journalBeforeLoad()
{
    const Session session;
    session.window->show();
    const FenJournal *empty = session.openJournal();
    QVERIFY(empty->isVisible());
    QCOMPARE(empty->windowTitle(), u"Journal"_s);
    QCOMPARE(empty->findChild<QPlainTextEdit *>()->toPlainText(), QString());

    const AnsweredBoxes boxes;
    session.open(QString());
    const QStringList partly{u"INFO : Chargement du fichier "_s,
                             u"ERROR : Chargement du fichier impossible."_s,
                             u"ERROR : Chargement du fichier GED interrompu."_s};
    QCOMPARE(session.journal(), partly);
}

void TstMainWindow::journalIsReadOnly()
{
    FenJournal journal(nullptr, u"une ligne"_s, u"Journal"_s);
    journal.show();
    auto *edit = journal.findChild<QPlainTextEdit *>();
    QTest::keyClicks(edit, u"abc"_s);
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClick(edit, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(edit, Qt::Key_X, Qt::ControlModifier);
    QTest::keyClick(edit, Qt::Key_Backspace);
    QCOMPARE(edit->toPlainText(), u"une ligne"_s);

    QApplication::clipboard()->clear();
    QTest::keyClick(edit, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), u"une ligne"_s);
}

void TstMainWindow::journalStaysAsItWas()
{
    const Session session;
    session.window->show();
    const FenJournal *older = session.openJournal();
    session.load(Person);
    const FenJournal *newer = session.openJournal();
    QCOMPARE(journalIn(older), QStringList());
    QCOMPARE(journalIn(newer), journalOfPerson(session.path()));
}

void TstMainWindow::journalOfEachRun()
{
    const Session session;
    session.window->show();
    session.load(Person);
    for (int run = 0; run < 2; ++run)
        session.apply();
    const auto journals = session.journalWindows();
    QCOMPARE(journals.size(), 2);

    const QStringList runLines{u"INFO : 0 balises CONC reconcaténées."_s};
    QStringList expected = journalOfPerson(session.path());
    for (const FenJournal *journal : journals) {
        QVERIFY(journal->isVisible());
        QCOMPARE(journal->windowTitle(), u"Journal"_s);
        expected += runLines;
        QCOMPARE(journalIn(journal), expected);
    }
}

void TstMainWindow::longJournalIsNotScrolled()
{
    QString text;
    for (int i = 0; i < 500; ++i)
        text += u"ligne %1\r\n"_s.arg(i);
    FenJournal journal(nullptr, text, u"Journal"_s);
    auto *edit = journal.findChild<QPlainTextEdit *>();

    // A text edit of the same size with just the text.
    QWidget window;
    window.resize(1000, 800);
    auto *reference = new QPlainTextEdit;
    reference->appendPlainText(text);
    (new QHBoxLayout(&window))->addWidget(reference);

    journal.show();
    window.show();
    QCoreApplication::processEvents();
    QCOMPARE(edit->size(), reference->size());
    QVERIFY(edit->verticalScrollBar()->maximum() > 0);
    QCOMPARE(edit->verticalScrollBar()->value(), reference->verticalScrollBar()->value());
    QCOMPARE(edit->textCursor().position(), reference->textCursor().position());
}

void TstMainWindow::closedWindowIsOnlyHidden_data()
{
    QTest::addColumn<QByteArray>("className");

    QTest::newRow("actionJournal") << QByteArray("FenJournal");
    QTest::newRow("action_propos") << QByteArray("FenAPropos");
}

void TstMainWindow::closedWindowIsOnlyHidden()
{
    QFETCH(const QByteArray, className);
    const QString action = QString::fromLatin1(QTest::currentDataTag());

    Session session;
    session.window->show();
    const auto windows = [&session, &className] {
        QWidgetList found = session.window->findChildren<QWidget *>();
        found.removeIf([&](const QWidget *w) { return w->metaObject()->className() != className; });
        return found;
    };
    session.trigger(action);
    QCOMPARE(windows().size(), 1);
    const QPointer<QWidget> first = windows().constFirst();
    QVERIFY(first->isVisible());
    QVERIFY(first->close());
    processDeferredDeletes();
    QVERIFY(first);
    QVERIFY(!first->isVisible());

    session.trigger(action);
    QCOMPARE(windows().size(), 2);
    QVERIFY(!first->isVisible());
    QVERIFY(windows().constLast()->isVisible());

    session.window.reset();
    QVERIFY(!first);
}

void TstMainWindow::secondaryWindowsGoWithTheWindow()
{
    Session session;
    session.window->show();
    session.trigger(u"actionJournal"_s);
    session.trigger(u"actionJournal"_s);
    session.trigger(u"action_propos"_s);
    QList<QPointer<QWidget>> windows;
    const auto journals = session.journalWindows();
    for (FenJournal *journal : journals)
        windows += journal;
    windows += session.window->findChild<FenAPropos *>();
    QCOMPARE(windows.size(), 3);

    session.window.reset();
    for (const QPointer<QWidget> &window : std::as_const(windows))
        QVERIFY(!window);
}

void TstMainWindow::aboutWindow()
{
    const FenAPropos about(nullptr);
    QVERIFY(!about.isVisible());
    QCOMPARE(about.windowFlags(), toolFlags());
    QVERIFY(about.isWindow());
    QCOMPARE(about.windowModality(), Qt::WindowModal);
    QVERIFY(!about.testAttribute(Qt::WA_DeleteOnClose));
    QCOMPARE(about.windowTitle(), u"À propos de Varlune"_s);

    const auto *layout = qobject_cast<QVBoxLayout *>(about.layout());
    QVERIFY(layout);
    QCOMPARE(layout->count(), 2);
    QCOMPARE(layout->sizeConstraint(), QLayout::SetFixedSize);
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(layout->stretch(i), 0);
        QCOMPARE(layout->itemAt(i)->alignment(), Qt::Alignment());
    }
    const auto *image = qobject_cast<QLabel *>(layout->itemAt(0)->widget());
    const auto *text = qobject_cast<QLabel *>(layout->itemAt(1)->widget());
    QVERIFY(image);
    QVERIFY(text);
    QCOMPARE(image->pixmap().size(), QSize(256, 256));
    QCOMPARE(image->pixmap().toImage(), QPixmap(u":/icones/logo_varlune.png"_s).toImage());
    QCOMPARE(text->text(), u"<strong>Varlune</strong><br><br>Version v1.9.0 du 23 août 2024<br><br>"
                           "Contact : contact@varlune.example"_s);
    QCOMPARE(about.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly).size(), 2);

    const QMetaObject &meta = FenAPropos::staticMetaObject;
    QCOMPARE(meta.className(), "FenAPropos");
    QCOMPARE(meta.methodCount(), QWidget::staticMetaObject.methodCount());
    QCOMPARE(meta.propertyCount(), QWidget::staticMetaObject.propertyCount());
}

void TstMainWindow::aboutWindowOfTheAction()
{
    const Session session;
    session.window->show();
    session.trigger(u"action_propos"_s);
    session.trigger(u"action_propos"_s);
    const auto windows = session.window->findChildren<FenAPropos *>();
    QCOMPARE(windows.size(), 2);
    for (const FenAPropos *about : windows) {
        QVERIFY(about->isVisible());
        QCOMPARE(about->parentWidget(), session.window.get());
        QVERIFY(about->isWindow());
        QCOMPARE(about->windowModality(), Qt::WindowModal);
    }
    // It is no part of the journal.
    QCOMPARE(session.journal(), QStringList());
}

void TstMainWindow::aboutWindowHasAFixedSize()
{
    FenAPropos about(nullptr);
    about.show();
    const QSize size = about.size();
    QCOMPARE(size, about.sizeHint());
    QCOMPARE(about.minimumSize(), size);
    QCOMPARE(about.maximumSize(), size);
    about.resize(size * 2);
    QCOMPARE(about.size(), size);
}

void TstMainWindow::aboutTextIsTranslated()
{
    const MarkingTranslator translator;
    const FenAPropos about(nullptr);
    QCOMPARE(about.windowTitle(), u"[QObject]À propos de Varlune"_s);
    const QString text = qobject_cast<QLabel *>(about.layout()->itemAt(1)->widget())->text();
    QCOMPARE(
        text.section(u"<br>"_s, 0, 3),
        u"<strong>Varlune</strong><br><br>[QObject]Version v1.9.0[QObject] du 23 août 2024<br>"_s);
}

void TstMainWindow::catalogue()
{
    QCOMPARE(QDir(u":/i18n"_s).entryList(), QStringList{u"Varlune_fr_FR.qm"_s});
    QTranslator translator;
    QVERIFY(translator.load(u":/i18n/Varlune_fr_FR"_s));
    // It changes no word.
    QVERIFY(translator.isEmpty());
    QCOMPARE(translator.translate("MainWindow", "Ouvrir"), QString());
}

void TstMainWindow::applicationIcon()
{
    const QIcon icon(u":/icones/ico/logo_varlune.ico"_s);
    QVERIFY(!icon.isNull());
    for (const int side : {16, 32, 256})
        QVERIFY2(icon.availableSizes().contains(QSize(side, side)),
                 qPrintable(QString::number(side)));
}

void TstMainWindow::picture_data()
{
    QTest::addColumn<QSize>("size");

    for (const char *name : {"head", "indi", "fam",  "sour", "obje", "repo", "chan", "adop", "birt",
                             "buri", "chil", "chr",  "copr", "date", "deat", "feml", "hrds", "male",
                             "map",  "marr", "name", "occu", "pipt", "plac", "resi", "time"})
        QTest::newRow(name) << QSize(32, 32);
    QTest::newRow("logo_varlune") << QSize(256, 256);
}

void TstMainWindow::picture()
{
    QFETCH(const QSize, size);

    const QImage image(u":/icones/%1.png"_s.arg(QString::fromLatin1(QTest::currentDataTag())));
    QCOMPARE(image.size(), size);
}

VARLUNE_TEST_MAIN(TstMainWindow)
#include "tst_mainwindow.moc"
