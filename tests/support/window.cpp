#include "window.h"

#include "document.h"
#include "fenjournal.h"
#include "filedialogs.h"

#include <QAbstractButton>
#include <QAction>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QStandardPaths>
#include <QStatusBar>
#include <QTest>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

using namespace Qt::StringLiterals;

QString besideExecutable(const QString &name)
{
    return QCoreApplication::applicationDirPath() + u'/' + name;
}

std::unique_ptr<MainWindow> makeWindow(const QByteArray &parameters)
{
    const QString path = besideExecutable(u"PARAM.INI"_s);
    writeBytes(path, parameters);
    auto window = std::make_unique<MainWindow>(nullptr);
    QFile::remove(path);
    return window;
}

QString documentsFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

QStringList journalIn(const FenJournal *fenJournal)
{
    QString text = fenJournal->findChild<QPlainTextEdit *>()->toPlainText();
    return journalWithoutTimes(text.replace(u'\n', "\r\n"_L1));
}

void clickIndicator(QAbstractButton *button)
{
    QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
}

Session::Session(const QByteArray &parameters) : window(makeWindow(parameters))
{
    QDir().mkpath(documentsFolder());
}

Session::~Session()
{
    failOn(faults());
}

QProgressBar *Session::progress() const
{
    return window->findChild<QProgressBar *>();
}

QTreeWidget *Session::tree() const
{
    return find<QTreeWidget>(u"treeWidget"_s);
}

TwItem *Session::row(const QString &line) const
{
    for (QTreeWidgetItemIterator it(tree()); *it; ++it) {
        auto *twi = static_cast<TwItem *>(*it);
        if (lineText(twi) == line)
            return twi;
    }
    qFatal("no row %s", qPrintable(line));
}

QString Session::status() const
{
    return find<QStatusBar>(u"statusbar"_s)->currentMessage();
}

bool Session::isEnabled(const QString &control) const
{
    return find<QObject>(control)->property("enabled").toBool();
}

bool Session::isChecked(const QString &control) const
{
    return find<QWidget>(control)->property("checked").toBool();
}

QString Session::text(const QString &field) const
{
    return find<QLineEdit>(field)->text();
}

void Session::trigger(const QString &action) const
{
    find<QAction>(action)->trigger();
    failOn(faults());
}

void Session::click(const QString &button) const
{
    auto *widget = find<QPushButton>(button);
    QVERIFY2(widget->isEnabled(), qPrintable(button));
    QTest::mouseClick(widget, Qt::LeftButton);
    failOn(faults());
}

void Session::set(const QStringList &settings) const
{
    for (const QString &setting : settings) {
        const bool off = setting.startsWith(u'!');
        auto *widget = find<QWidget>(setting.section(u'=', 0, 0).mid(off ? 1 : 0));
        const QString value = setting.section(u'=', 1).replace(u'~', folder());
        const bool known = setting.contains(u'=') ? widget->setProperty("text", value)
                                                  : widget->setProperty("checked", !off);
        QVERIFY2(known, qPrintable("no such setting: " + setting));
    }
}

void Session::apply(const QStringList &settings) const
{
    set(settings);
    click(u"pbApply"_s);
}

void Session::pick(const QString &button, const QString &answer) const
{
    const AnsweredFileDialogs dialogs(answer);
    click(button);
    QCOMPARE(dialogs.count(), 1);
}

void Session::open(const QString &file) const
{
    const AnsweredFileDialogs dialogs(file);
    trigger(u"actionOuvrir"_s);
    QCOMPARE(dialogs.count(), 1);
}

void Session::load(const QStringList &lines) const
{
    writeLines(path(), lines);
    open(path());
}

void Session::play(const QByteArray &sequence) const
{
    const QString path = besideExecutable(u"SEQUENCE.INI"_s);
    writeBytes(path, sequence);
    click(u"pbReadSequence"_s);
    QFile::remove(path);
}

QList<FenJournal *> Session::journalWindows() const
{
    return window->findChildren<FenJournal *>();
}

FenJournal *Session::openJournal() const
{
    const qsizetype before = journalWindows().size();
    trigger(u"actionJournal"_s);
    const QList<FenJournal *> windows = journalWindows();
    if (windows.size() != before + 1)
        qFatal("the action has opened no journal window");
    return windows.constLast();
}

QStringList Session::journal() const
{
    const std::unique_ptr<FenJournal> fenJournal(openJournal());
    return journalIn(fenJournal.get());
}

QStringList Session::faults() const
{
    return window ? faultsOf(recordsIn(*tree())) : QStringList();
}
