#include "scenario.h"

#include "boxes.h"
#include "document.h"
#include "treerows.h"

#include <QDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype MaxSteps = 12;
constexpr qsizetype MaxArgument = 100;
constexpr qsizetype MaxFile = 200'000; // bytes, which a replacement could otherwise multiply

/// The bytes of the file: the lines, in which "*20" repeats those of the record so far.
QByteArray fileOf(const QByteArrayList &lines)
{
    QByteArray file;
    qsizetype record = 0;
    for (const QByteArray &line : lines) {
        if (line.startsWith("0 "))
            record = file.size();
        if (!line.startsWith('*')) {
            file += line + '\n';
            continue;
        }
        const QByteArray repeated = file.mid(record);
        const qsizetype times = std::clamp(line.mid(1).toInt(), 0, 250);
        if (file.size() + times * repeated.size() <= MaxFile)
            file += repeated.repeated(times);
    }
    return file;
}

/// A line that the loader takes apart as the columns stand, so that it comes back as it was.
bool isPlain(const QString &line, const QStringList &columns)
{
    return !line.contains(u'\r') && !line.startsWith(u'\ufeff')
        && TwItem(-1).getValuesListFromLine(line) == columns;
}

/// One line behind the file: a letter, its options as a hexadecimal digit, and texts behind "|".
/// In front of it ">2" stands for an operation that waits for the second event of a later one.
class Step
{
public:
    explicit Step(QString line)
    {
        if (line.startsWith(u'>')) {
            events = line.mid(1, 1).toInt();
            line.remove(0, 2);
        }
        m_arguments = line.split(u'|');
        letter = line.isEmpty() ? QChar() : line.at(0);
        m_options = m_arguments.takeFirst().mid(1, 1).toInt(nullptr, 16);
    }
    [[nodiscard]] bool option(int bit) const
    {
        return m_options & (1 << bit);
    }
    [[nodiscard]] QString text(qsizetype index) const
    {
        return m_arguments.value(index).left(MaxArgument);
    }
    [[nodiscard]] QStringList textsFrom(qsizetype index) const
    {
        return m_arguments.mid(index);
    }

    QChar letter;
    int events = -1; // to wait for

private:
    QStringList m_arguments;
    int m_options = 0;
};

class Player : public QObject
{
public:
    explicit Player(Document *doc) : m_doc(doc)
    {
        connect(&doc->progress, &QProgressBar::valueChanged, this, [this] { countEvent(); });
    }

    void play(const QStringList &lines)
    {
        for (const QString &line : lines.mid(0, MaxSteps)) {
            const Step step(line);
            if (step.events >= 0)
                m_waiting.append(step);
            else
                run(step);
            if (!faults.isEmpty())
                return;
        }
        m_waiting.clear();
        QCoreApplication::processEvents(); // what has been posted in vain
    }

    QStringList faults;

private:
    void countEvent()
    {
        for (qsizetype i = m_waiting.size() - 1; i >= 0; --i) {
            if (--m_waiting[i].events > 0)
                continue;
            const Step step = m_waiting.takeAt(i);
            QMetaObject::invokeMethod(
                this, [this, step] { run(step); }, Qt::QueuedConnection);
        }
    }

    void run(const Step &step)
    {
        qsizetype size = 0;
        const QList<TwItem *> roots = m_doc->gedcom.getTabTwItemsRoot();
        for (TwItem *root : roots)
            size += root->getGedEntryList().join(u'\n').size();
        if (size > MaxFile)
            return;
        operate(step);
        faults += m_doc->faults();
    }

    void operate(const Step &step)
    {
        Gedcom &gedcom = m_doc->gedcom;
        switch (step.letter.unicode()) {
        case u'U':
            gedcom.unConc();
            break;
        case u'O':
            gedcom.checkOversized();
            break;
        case u'N':
            gedcom.setSpaceNames();
            break;
        case u'D':
            gedcom.delListTag(step.text(0).split(u';'), step.option(0), step.option(1),
                              step.option(2), step.option(3), step.text(1));
            break;
        case u'M':
            gedcom.moveTagContent(step.text(0), step.text(1), step.option(0), step.option(1),
                                  step.option(2));
            break;
        case u'R':
            gedcom.searchAndReplace(step.text(0), step.text(1), step.text(2), step.option(0),
                                    step.option(1));
            break;
        case u'P':
            gedcom.setMediaFilePath(step.text(0));
            break;
        case u'L':
            link(step);
            break;
        case u'C':
            gedcom.setURLClickable(
                step.option(0), step.text(0).isEmpty() ? QStringList() : step.text(0).split(u';'));
            break;
        case u'F':
            setRecordsHidden(gedcom.getTabTwItemsRoot(), true);
            gedcom.filterSourceDateDiff();
            break;
        case u'G':
            setRecordsHidden(gedcom.getTabTwItemsRoot(), true);
            gedcom.filterSourceMultiUse();
            break;
        case u'H':
            setRecordsHidden(gedcom.getTabTwItemsRoot(), step.option(0));
            break;
        case u'E':
            m_doc->tree.expandAll();
            break;
        case u'S':
            gedcom.writeGedFile(step.option(0) ? m_doc->folder() + "/autre.ged"_L1 : m_doc->path());
            break;
        default:
            break;
        }
    }

    void link(const Step &step)
    {
        const QString csv = m_doc->folder() + "/liens.csv"_L1;
        const QString source = m_doc->folder() + "/medias"_L1;
        const QString dest = m_doc->folder() + "/choix"_L1;
        if (step.option(3)) {
            QDir().mkpath(source);
            QDir().mkpath(dest);
            writeBytes(source + "/a.jpg"_L1, "image");
        }
        writeLines(csv, step.textsFrom(1));
        m_doc->gedcom.setMediaFileURL({csv}, step.text(0), step.option(0), step.option(1),
                                      step.option(2), step.option(3), source, dest);
    }

    Document *m_doc;
    QList<Step> m_waiting;
};

/// What is wrong with the file that \p doc has been saved to, read back.
QStringList faultsOfFile(Document *doc)
{
    const QStringList lines = doc->lines();
    const QByteArray bytes = (lines + QStringList{u"0 TRLR\n"_s}).join(u'\n').toUtf8();
    if (readText(doc->path()) != bytes)
        return {u"the file is not the document"_s};

    Document reloaded;
    writeBytes(reloaded.path(), bytes);
    if (!reloaded.loadFile())
        return {}; // a record of one line is enough for that
    QStringList faults = reloaded.faults();
    bool plain = true;
    const QList<TwItem *> roots = doc->gedcom.getTabTwItemsRoot();
    for (TwItem *root : roots) {
        plain = plain && isPlain(lineText(root), root->getTwiValuesList());
        const QList<TwItem *> live = root->getTabTwiChilds(true);
        plain = plain && std::all_of(live.begin(), live.end(), [](const TwItem *twi) {
                    return isPlain(lineText(twi), twi->getTwiValuesList());
                });
    }
    const QString written = QString::fromUtf8(lines.join(u'\n').toUtf8());
    if (plain && reloaded.lines().join(u'\n') != written)
        faults += u"the file does not come back as it was saved"_s;
    return faults;
}

} // namespace

QStringList playScenario(const QByteArray &input)
{
    const QByteArrayList lines = input.left(MaxFile).split('\n');
    const qsizetype end = lines.indexOf("=");

    const AnsweredBoxes boxes;
    QWidget neverShown; // so that the bar does not come up as a window, which takes its time
    Document doc;
    doc.progress.setParent(&neverShown);
    writeBytes(doc.path(), fileOf(lines.mid(0, end)));
    if (!doc.loadFile())
        return doc.faults();

    Player player(&doc);
    player.faults = doc.faults();
    if (end >= 0)
        player.play(QString::fromUtf8(lines.mid(end + 1).join('\n')).split(u'\n'));
    if (!player.faults.isEmpty())
        return player.faults;

    doc.gedcom.writeGedFile(doc.path());
    return doc.faults() + faultsOfFile(&doc);
}
