#include "boxes.h"
#include "currentfolder.h"
#include "document.h"
#include "testmain.h"
#include "window.h"

#include <QDir>
#include <QGroupBox>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString Fresh = QStringLiteral(PACKAGING "/");
const QString Parameters = Fresh + "PARAM.INI"_L1;
const QString Sequence = Fresh + "SEQUENCE.INI"_L1;

const QStringList Family{u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 @I1@ INDI"_s, u"1 NAME Jean/ROUX/"_s,
                         u"1 NOTE"_s, u"1 OCCU"_s,       u"1 RESI"_s,      u"2 PLAC St-Thégonnec"_s,
                         u"0 TRLR"_s};

/// The lines that hold a key when their semicolon is taken away, without it.
QStringList examples(const QString &path)
{
    static const QRegularExpression example(uR"(^;\w+=)"_s);
    QStringList lines = readLines(path).filter(example);
    lines.replaceInStrings(QRegularExpression(u"^;"_s), QString());
    return lines;
}

/// All that can be set on the form.
QStringList formState(const Session &session)
{
    QStringList state;
    const QWidgetList widgets = session.find<QWidget>(u"mainGroupBox"_s)->findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        if (const auto *field = qobject_cast<const QLineEdit *>(widget))
            state += field->objectName() + u'=' + field->text();
        else if (widget->property("checked").toBool())
            state += widget->objectName();
    }
    return state;
}

/// The form that these parameters preset, and what the user reads when that is applied.
QStringList outcome(const QString &parameters)
{
    const AnsweredBoxes boxes;
    const Session session(parameters.toUtf8());
    const QStringList state = formState(session);
    session.load(Family);
    session.click(u"pbApply"_s);
    return state + boxes.texts();
}

} // namespace

/// The files that lie beside a program that has just been built or installed.
class TstFirstStart : public QObject
{
    Q_OBJECT

private slots:
    void nothingButComments();
    void parametersPresetNothing();
    void everyParameterHasAnEffect_data();
    void everyParameterHasAnEffect();
    void parametersTellEveryKey();
    void sequenceHasNoStep();
    void sequenceWithoutItsComments();
};

void TstFirstStart::nothingButComments()
{
    static const QRegularExpression comment(u"^(;|$)"_s);
    for (const QString &path : {Parameters, Sequence}) {
        const QStringList lines = readLines(path);
        QVERIFY(lines.size() > 20);
        QCOMPARE(lines.filter(comment), lines);
    }
}

void TstFirstStart::parametersPresetNothing()
{
    const AnsweredBoxes boxes;
    const Session session(readBytes(Parameters));
    QCOMPARE(formState(session), formState(Session()));
    QCOMPARE(boxes.texts(), QStringList());

    session.load(Family);
    session.click(u"pbApply"_s);
    QCOMPARE(session.journal().constLast(), u"INFO : 0 balises CONC reconcaténées."_s);
    QCOMPARE(boxes.texts(), QStringList());
}

void TstFirstStart::everyParameterHasAnEffect_data()
{
    QTest::addColumn<QString>("line");

    const QStringList lines = examples(Parameters);
    for (const QString &line : lines)
        QTest::newRow(qPrintable(line.section(u'=', 0, 0))) << line;
}

void TstFirstStart::everyParameterHasAnEffect()
{
    QFETCH(const QString, line);

    // The relative paths of the examples lead to nothing, wherever the test is started.
    const QTemporaryDir empty;
    const CurrentFolder current(empty.path());
    // What the form begins with, and what no widget shows, needs another line before it.
    QString before;
    if (line.startsWith("toMarkdown="_L1))
        before = u"toHtml=true\n"_s;
    else if (line.startsWith("urlFilesIndex="_L1))
        before = u"setUrlLinks=true\n"_s;
    QVERIFY(outcome(before + line) != outcome(before));
}

void TstFirstStart::parametersTellEveryKey()
{
    QStringList keys = examples(Parameters);
    keys.replaceInStrings(QRegularExpression(u"=.*"_s), QString());
    QCOMPARE(keys.removeDuplicates(), 0);
    QCOMPARE(keys.size(), 36); // all but the one that saves, for which there is no document yet
}

void TstFirstStart::sequenceHasNoStep()
{
    const AnsweredBoxes boxes;
    const Session session;
    QStringList emptied = formState(session);
    emptied.replaceInStrings(QRegularExpression(u"=.*"_s), u"="_s);
    session.load(Family);
    const QByteArray saved = readBytes(session.path());
    session.set({u"cbEspacer"_s, u"gbDelTags"_s, u"leTagsToDel=OCCU"_s});
    session.play(readBytes(Sequence));

    QCOMPARE(boxes.texts(), QStringList());
    QCOMPARE(formState(session), emptied);
    QCOMPARE(session.journalWindows().size(), 1);
    QCOMPARE(session.journal().constLast(), u"INFO : 0 balises CONC reconcaténées."_s);
    QCOMPARE(readBytes(session.path()), saved);
    QCOMPARE(QDir(session.folder()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{u"arbre.ged"_s});
}

void TstFirstStart::sequenceWithoutItsComments()
{
    const AnsweredBoxes boxes;
    const Session session;
    session.load(Family);
    session.play(examples(Sequence).join(u'\n').toUtf8());

    QCOMPARE(boxes.texts(), QStringList());
    QCOMPARE(readLines(session.path()),
             (QStringList{u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 @I1@ INDI"_s, u"1 NAME Jean /ROUX/"_s,
                          u"1 RESI"_s, u"2 PLAC Saint-Thégonnec"_s, u"0 TRLR"_s}));
}

VARLUNE_TEST_MAIN(TstFirstStart)
#include "tst_firststart.moc"
