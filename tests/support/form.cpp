#include "form.h"

#include "fenjournal.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEvent>
#include <QGroupBox>
#include <QLineEdit>
#include <QProgressBar>
#include <QRegularExpression>
#include <QStatusBar>

using namespace Qt::StringLiterals;

namespace {

/// What \p group captures in the journal line of each deletion, separated by blanks.
QString deletions(const QStringList &journal, const QString &group)
{
    static const QRegularExpression rx(
        uR"(^INFO : Suppression de l'entrée : (\S*?(?<tag>\w*)) \d .* \(l\.(?<line>\d+)\)$)"_s);
    QStringList captured;
    for (const QString &line : journal) {
        const QRegularExpressionMatch match = rx.match(line);
        if (match.hasMatch())
            captured += match.captured(group);
    }
    return captured.join(u' ');
}

} // namespace

QStringList formState(const QWidget *window)
{
    QStringList state;
    const auto widgets = window->findChild<QWidget *>(u"mainGroupBox"_s)->findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        const auto *field = qobject_cast<const QLineEdit *>(widget);
        if (field && !field->text().isEmpty())
            state += field->objectName() + u'=' + field->text();
        else if (!field && widget->property("checked").toBool())
            state += widget->objectName();
    }
    state.sort();
    return state;
}

Form::Form(const QStringList &lines, const QByteArray &parameters) : Session(parameters)
{
    window->show();
    load(lines + QStringList{u"0 TRLR"_s});
    m_journalSeen = journal().size();
}

QStringList Form::runJournal() const
{
    return journal().mid(m_journalSeen);
}

QString Form::deletedTags() const
{
    return deletions(journal(), u"tag"_s);
}

QString Form::deletedLines() const
{
    return deletions(journal(), u"line"_s);
}

QStringList Form::filesImport() const
{
    const qsizetype before = journal().size();
    apply({u"gbSetURLLinks"_s, u"leStrPlitCsv=,"_s});
    set({u"gbSetURLLinks"_s}); // the run has unchecked it
    const QString loading = u"INFO : Chargement du fichier de correspondance "_s;
    QStringList files = journal().mid(before).filter(loading);
    return files.replaceInStrings(loading, QString());
}

Order::Order(Form &form) : m_bar(form.progress())
{
    qApp->installEventFilter(this);
    connect(form.find<QStatusBar>(u"statusbar"_s), &QStatusBar::messageChanged, this,
            [this](const QString &text) { events += "status: "_L1 + text; });
    const auto fields = form.window->findChildren<QLineEdit *>();
    for (const QLineEdit *field : fields) {
        connect(field, &QLineEdit::textChanged, this, [this, field](const QString &text) {
            events += field->objectName() + u'=' + text;
        });
    }
    const auto noteSwitch = [this](const QWidget *widget, bool on) {
        events += widget->objectName() + (on ? " on"_L1 : " off"_L1);
    };
    const auto buttons = form.window->findChildren<QAbstractButton *>();
    for (const QAbstractButton *button : buttons)
        connect(button, &QAbstractButton::toggled, this,
                [noteSwitch, button](bool on) { noteSwitch(button, on); });
    const auto groups = form.window->findChildren<QGroupBox *>();
    for (const QGroupBox *group : groups)
        connect(group, &QGroupBox::toggled, this,
                [noteSwitch, group](bool on) { noteSwitch(group, on); });
    form.boxes().setInspector(
        [this](const QMessageBox *box) { events += "box: "_L1 + box->text(); });
}

bool Order::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show && qobject_cast<FenJournal *>(watched))
        events += u"journal window"_s;
    if (watched == m_bar && event->type() == QEvent::Show)
        events += u"bar shown"_s;
    if (watched == m_bar && event->type() == QEvent::Hide)
        events += u"bar hidden"_s;
    return false;
}
