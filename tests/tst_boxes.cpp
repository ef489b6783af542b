#include "document.h"
#include "testmain.h"
#include "window.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QScreen>
#include <QScrollBar>
#include <QTest>
#include <QTimer>

#include <functional>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// Looks at each message box that opens while it lives, once it is on screen, and presses Escape
/// if the look has not answered it.
class SeenBoxes
{
public:
    explicit SeenBoxes(std::function<void(QMessageBox *)> look) : m_look(std::move(look))
    {
        m_timer.callOnTimeout([this] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (!box || !QTest::qWaitForWindowActive(box))
                return;
            ++count;
            m_look(box);
            if (box->isVisible())
                QTest::keyClick(box, Qt::Key_Escape);
        });
        m_timer.start(0);
    }
    Q_DISABLE_COPY_MOVE(SeenBoxes)

    int count = 0;

private:
    QTimer m_timer;
    std::function<void(QMessageBox *)> m_look;
};

/// The text that the user can read in the box, all of it or by scrolling.
QString shownText(const QMessageBox *box)
{
    if (const auto *pane = box->findChild<QPlainTextEdit *>()) {
        if (pane->isVisible() && box->rect().contains(pane->geometry()))
            return pane->toPlainText();
    }
    const QList<QLabel *> labels = box->findChildren<QLabel *>();
    for (const QLabel *label : labels) {
        if (label->isVisible() && !label->text().isEmpty()
            && box->rect().contains(label->geometry()))
            return label->text();
    }
    return QString();
}

/// Fails the test unless the whole box is on the screen, with its button in it.
void compareWithScreen(const QMessageBox *box)
{
    const QRect screen = box->screen()->availableGeometry();
    const QString sizes = u"%1 x %2 on %3 x %4"_s.arg(box->width())
                              .arg(box->height())
                              .arg(screen.width())
                              .arg(screen.height());
    QVERIFY2(box->width() <= screen.width() && box->height() <= screen.height(), qPrintable(sizes));
    const QAbstractButton *ok = box->button(QMessageBox::Ok);
    QVERIFY(ok->isVisible());
    QVERIFY(box->rect().contains(QRect(ok->mapTo(box, QPoint()), ok->size())));
}

/// The box of a record that is refused.
QString refused(const QStringList &lines)
{
    return u"Entrée non reconnue :\r\n"_s + lines.join("\r\n"_L1);
}

} // namespace

class TstBoxes : public QObject
{
    Q_OBJECT

private slots:
    void longTexts_data();
    void longTexts();
    void shortTexts_data();
    void shortTexts();
    void keysAnswer_data();
    void keysAnswer();
    void textIsScrolled();
    void correspondenceLine();
    void boxesOfTheWindow();
};

void TstBoxes::longTexts_data()
{
    QTest::addColumn<QStringList>("record");

    const QString root = u"0 @I1@ INDI"_s;
    const auto row = [&](const char *name, const QStringList &lines) {
        QTest::newRow(name) << QStringList{root} + lines;
    };
    row("1,000 lines", QStringList(999, u"3 NOTE x"_s));
    row("30 lines", QStringList(29, u"3 NOTE x"_s));
    row("100,000 lines", QStringList(99'999, u"3 NOTE x"_s));
    row("a line of words", {u"x "_s + u"un mot, "_s.repeated(2'000)});
    row("a line without a blank", {QString(5'000, u'x')});
    row("a line of a megabyte", {QString(1'000'000, u'x')});
    row("another kind of line end", {QString(300, QChar(QChar::LineSeparator))});
    row("what looks like HTML", QStringList(999, u"3 NOTE <b>x</b><br>"_s));
}

void TstBoxes::longTexts()
{
    QFETCH(QStringList, record);

    Document doc;
    QString text;
    QString shown;
    SeenBoxes boxes([&](const QMessageBox *box) {
        compareWithScreen(box);
        text = box->text();
        shown = shownText(box);
        QCOMPARE(box->textFormat(), Qt::PlainText);
        QCOMPARE(box->focusWidget(), box->button(QMessageBox::Ok));
    });
    QVERIFY(!doc.load(record + QStringList{u"0 @I2@ INDI"_s}));
    QCOMPARE(boxes.count, 1);
    QVERIFY(text == refused(record));
    QString expected = refused(record);
    expected.replace("\r\n"_L1, "\n"_L1).replace(QChar::LineSeparator, u'\n');
    QVERIFY2(shown == expected, qPrintable(shown.left(200)));
    QCOMPARE(doc.newJournal(), QStringList({"INFO : Chargement du fichier "_L1 + doc.path(),
                                            u"ERROR : Entrée non reconnue :"_s})
                                   + record);
}

void TstBoxes::shortTexts_data()
{
    QTest::addColumn<QStringList>("record");

    QTest::newRow("one line") << QStringList{u"0 @N1@ NOTE court"_s};
    QTest::newRow("several lines") << QStringList{u"0 @I1@ INDI"_s, u"1 SEX M"_s, u"3 NOTE x"_s};
    QTest::newRow("HTML") << QStringList{u"0 @I1@ INDI"_s, u"<b>gras</b> &amp; <i>autres</i>"_s};
    QTest::newRow("HTML first, and ampersands")
        << QStringList{u"0 @I1@ <html><h1>INDI</h1>&a &b"_s};
    QTest::newRow("a line as long as a file may have")
        << QStringList{u"0 @N1@ NOTE "_s + u"un mot, "_s.repeated(30)};
    QTest::newRow("such a line without a blank")
        << QStringList{u"0 @N1@ NOTE "_s + QString(243, u'x')};
}

void TstBoxes::shortTexts()
{
    QFETCH(QStringList, record);

    Document doc;
    SeenBoxes boxes([&](const QMessageBox *box) {
        compareWithScreen(box);
        QCOMPARE(box->text(), refused(record));
        QCOMPARE(shownText(box), refused(record));
        QCOMPARE(box->textFormat(), Qt::PlainText);
        QVERIFY(!box->findChild<QAbstractScrollArea *>());
    });
    QVERIFY(!doc.load(record + QStringList{u"0 @I2@ INDI"_s}));
    QCOMPARE(boxes.count, 1);
}

void TstBoxes::keysAnswer_data()
{
    QTest::addColumn<int>("lineCount");
    QTest::addColumn<bool>("inText");
    QTest::addColumn<Qt::Key>("key");

    const struct
    {
        const char *name;
        Qt::Key key;
    } keys[] = {{"Escape", Qt::Key_Escape}, {"Return", Qt::Key_Return}, {"Enter", Qt::Key_Enter}};
    for (const auto &key : keys) {
        QTest::addRow("%s, short text", key.name) << 2 << false << key.key;
        QTest::addRow("%s, long text", key.name) << 1'000 << false << key.key;
        QTest::addRow("%s in the long text", key.name) << 1'000 << true << key.key;
    }
}

void TstBoxes::keysAnswer()
{
    QFETCH(int, lineCount);
    QFETCH(bool, inText);
    QFETCH(Qt::Key, key);

    Document doc;
    SeenBoxes boxes([&](QMessageBox *box) {
        if (inText) {
            // The text can be reached by the keyboard.
            QTest::keyClick(box->focusWidget(), Qt::Key_Tab);
            QCOMPARE(box->focusWidget(), box->findChild<QPlainTextEdit *>());
            QVERIFY(box->focusWidget());
        }
        compareWithScreen(box);
        QTest::keyClick(box->focusWidget(), key);
        QVERIFY(!box->isVisible());
    });
    QVERIFY(!doc.load(QStringList{u"0 @I1@ INDI"_s} + QStringList(lineCount - 1, u"3 NOTE x"_s)
                      + QStringList{u"0 @I2@ INDI"_s}));
    QCOMPARE(boxes.count, 1);
}

void TstBoxes::textIsScrolled()
{
    Document doc;
    SeenBoxes boxes([&](QMessageBox *box) {
        auto *pane = box->findChild<QPlainTextEdit *>();
        QVERIFY(pane);
        QVERIFY(pane->isReadOnly());
        QCOMPARE(pane->verticalScrollBar()->value(), 0);
        QTest::keyClick(box->focusWidget(), Qt::Key_Tab);
        QTest::keyClick(box->focusWidget(), Qt::Key_End, Qt::ControlModifier);
        QTest::keyClick(box->focusWidget(), Qt::Key_End);
        QVERIFY(pane->verticalScrollBar()->value() > 900);
        QTest::keyClick(box->focusWidget(), Qt::Key_X);
        QCOMPARE(pane->document()->blockCount(), 1 + 1'000);
    });
    QVERIFY(!doc.load(QStringList{u"0 @I1@ INDI"_s} + QStringList(999, u"3 NOTE x"_s)
                      + QStringList{u"0 @I2@ INDI"_s}));
    QCOMPARE(boxes.count, 1);
}

void TstBoxes::correspondenceLine()
{
    Document doc;
    QVERIFY(doc.load({u"0 HEAD"_s, u"1 CHAR UTF-8"_s}));
    const QString csv = doc.folder() + "/liens.csv"_L1;
    const QString line = u"<b>a.jpg</b> "_s.repeated(1'000);
    writeLines(csv, {line});
    const QString expected =
        u"Correspondance non détectée dans la ligne %1 du fichier %2"_s.arg(line, csv);
    SeenBoxes boxes([&](const QMessageBox *box) {
        compareWithScreen(box);
        QVERIFY(box->text() == expected);
        QVERIFY(shownText(box) == expected);
        QCOMPARE(box->textFormat(), Qt::PlainText);
    });
    QCOMPARE(doc.gedcom.setMediaFileURL({csv}, u";"_s, true, false, false, false, {}, {}), 0);
    QCOMPARE(boxes.count, 1);
}

void TstBoxes::boxesOfTheWindow()
{
    QWidget *parent = nullptr;
    SeenBoxes boxes([&](const QMessageBox *box) {
        compareWithScreen(box);
        parent = box->parentWidget();
        QCOMPARE(box->textFormat(), Qt::PlainText);
        QVERIFY(!shownText(box).isEmpty());
        QCOMPARE(shownText(box), box->text());
    });
    Session session;
    session.window->show();
    session.load({u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 TRLR"_s});
    session.click(u"pbReadSequence"_s); // there is no sequence
    QCOMPARE(boxes.count, 1);
    QCOMPARE(parent, session.window.get());
    session.play("saveGedFile=true\n"); // there is no separator
    QCOMPARE(boxes.count, 2);
    QCOMPARE(parent, session.window.get());
    session.set({u"gbDelTags"_s});
    session.click(u"pbApply"_s); // there is no tag
    QCOMPARE(boxes.count, 3);
    QCOMPARE(parent, nullptr);
    MainWindow withoutParameters(nullptr);
    QCOMPARE(boxes.count, 4);
    QCOMPARE(parent, &withoutParameters);
}

VARLUNE_TEST_MAIN(TstBoxes)
#include "tst_boxes.moc"
