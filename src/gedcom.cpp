#include "gedcom.h"

#include "citations.h"
#include "files.h"
#include "journaltext.h"
#include "matching.h"
#include "medialinks.h"
#include "outdatedlists.h"
#include "oversized.h"
#include "recordlines.h"
#include "report.h"
#include "treerows.h"
#include "twitem.h"

#include <QBrush>
#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QIcon>
#include <QProgressBar>
#include <QSet>
#include <QStatusBar>
#include <QTextStream>
#include <QTime>
#include <QTreeWidget>

#include <algorithm>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int EditProgressPeriod = 10; // entries between two refreshes where each may be rewritten
constexpr int RecordProgressPeriod = 20; // records between two refreshes

} // namespace

Gedcom::Gedcom()
    : m_journal(new QString),
      twiHeader(new TwItem(-1)),
      twiIndi(new TwItem(-1)),
      twiFam(new TwItem(-1)),
      twiSour(new TwItem(-1)),
      twiObje(new TwItem(-1)),
      twiRepo(new TwItem(-1)),
      twiNote(new TwItem(-1)),
      twiSubm(new TwItem(-1)),
      m_rxEmpty(u""_s),
      m_rxName(uR"(^.*\/.*\/$)"_s),
      m_rxId(uR"(^0 @[A-Z]{1}[0-9]+@ [A-Z]+$)"_s),
      m_rxIdIndi(uR"(^0 @I[0-9]+@ INDI$)"_s),
      m_rxIdFam(uR"(^0 @F[0-9]+@ FAM$)"_s),
      m_rxIdSour(uR"(^0 @S[0-9]+@ SOUR$)"_s),
      m_rxIdObje(uR"(^0 @O[0-9]+@ OBJE$)"_s),
      m_rxIdRepo(uR"(^0 @R[0-9]+@ REPO$)"_s),
      m_rxColIdObje(uR"(^@O[0-9]+@$)"_s),
      m_rxColIdSour(uR"(^@S[0-9]+@$)"_s),
      m_rxColIdFam(uR"(^@F[0-9]+@$)"_s),
      m_rxWww(uR"(^1 WWW )"_s),
      m_rx2Note(uR"(^2 NOTE )"_s),
      m_rx1File(uR"(^1 FILE )"_s),
      m_rx1Obje(uR"(^1 OBJE @O)"_s),
      m_rx2Sour(uR"(^2 SOUR @S)"_s),
      m_rxDate(uR"(^[0-9] DATE)"_s),
      m_rxAnnee(uR"(1[0-9]{3}$)"_s),
      m_rxCatchAnnee(uR"( (1[0-9]{3})$)"_s),
      m_rxCatchAnnees(uR"(^FROM (1[0-9]{3}) TO (1[0-9]{3})$)"_s),
      m_rxURL(
          uR"(https?:\/\/(?:www\.)?[-a-zA-Z0-9@:%._\+~#=]{1,256}\.[a-zA-Z0-9()]{1,6}\b(?:[-a-zA-Z0-9()@:%_\+.~#?&\/=,]*))"_s)
{
}

void Gedcom::addToJournal(QString log, QString level)
{
    QString levelWord = u"INFO : "_s;
    if (level == "ERROR"_L1)
        levelWord = u"ERROR : "_s;
    else if (level == "NONE"_L1)
        levelWord.clear();
    // Hundreds of lines share a millisecond, and to write its time of day took as long as all else.
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    if (now != m_journalMsecs) {
        m_journalMsecs = now;
        m_journalTime = QTime::currentTime().toString(u"hh:mm:ss.zzz"_s) + " - "_L1;
    }
    *m_journal += m_journalTime + levelWord + log + "\r\n"_L1;
}

namespace {

/// Gives the section nodes, in their declared order, their labels and icons.
void labelSections(const QList<TwItem *> &sections)
{
    const struct
    {
        QString label;
        QString icon;
    } labels[] = {
        {Gedcom::tr("en-tête"), u"head"_s}, {Gedcom::tr("personnes"), u"indi"_s},
        {Gedcom::tr("familles"), u"fam"_s}, {Gedcom::tr("sources"), u"sour"_s},
        {Gedcom::tr("médias"), u"obje"_s},  {Gedcom::tr("dépots"), u"repo"_s},
        {Gedcom::tr("notes"), u"chan"_s},   {Gedcom::tr("infos"), u"chan"_s},
    };
    for (qsizetype i = 0; i < sections.size(); ++i) {
        sections.at(i)->setText(LevelColumn, labels[i].label);
        sections.at(i)->setIcon(LevelColumn, QIcon(":/icones/"_L1 + labels[i].icon + ".png"_L1));
    }
}

} // namespace

bool Gedcom::genererVectorGed(QString pathFileGed, QTreeWidget *tw, QProgressBar *pb,
                              QStatusBar *sb)
{
    qDebug() << "ON genererVectorGed";
    addToJournal(tr("Chargement du fichier %1").arg(pathFileGed), u"INFO"_s);
    // Read once: both passes see the same lines, whatever becomes of the file meanwhile.
    const std::optional<QByteArray> bytes = readFile(pathFileGed);
    if (!bytes) {
        addToJournal(tr("Chargement du fichier impossible."), u"ERROR"_s);
        showCritical(tr("Erreur"), tr("Impossible d'ouvrir le fichier %1").arg(pathFileGed));
        return false;
    }

    m_treeWidget = tw;
    m_progress = pb;
    m_status = sb;
    if (m_tabTwItemRoot.isEmpty())
        labelSections({twiHeader, twiIndi, twiFam, twiSour, twiObje, twiRepo, twiNote, twiSubm});
    // The tree is not cleared: after a refused load its old records stay on screen, and are no
    // longer written.
    m_tabTwItemRoot.clear();
    generateTwiHeaders(m_treeWidget);
    m_pathGedFile = pathFileGed;

    QTextStream in(*bytes, QIODevice::ReadOnly | QIODevice::Text);
    in.setEncoding(QStringConverter::System);
    const int count = countLines(&in);
    m_progress->setVisible(true);
    m_progress->setRange(0, count);
    int fileIndex = 0;
    QStringList entryValues;
    while (!in.atEnd()) {
        const QString stringTampon = in.readLine();
        if ((beginsRecord(stringTampon) || in.atEnd()) && !entryValues.isEmpty()) {
            if (!createNewTwiEntry(entryValues))
                return false;
            entryValues.clear();
        }
        entryValues.append(stringTampon);
        ++fileIndex;
        showProgress(m_progress, fileIndex);
    }
    // The last line, normally the trailer, stays in entryValues: the writer adds its own trailer.

    m_progress->reset();
    in.reset();
    for (TwItem *section : {twiHeader, twiIndi, twiFam, twiSour, twiObje, twiRepo, twiNote})
        section->setText(TagColumn, QString::number(section->childCount()));
    if (twiNote->childCount() == 0)
        twiNote->setHidden(true);
    addToJournal(tr("Chargement de %1 lignes terminé.").arg(fileIndex), u"INFO"_s);
    m_progress->setVisible(false);
    qDebug() << "OFF genererVectorGed";
    return true;
}

QString Gedcom::getPathGedFile() const
{
    return m_pathGedFile;
}

QString Gedcom::getJournal() const
{
    return *m_journal;
}

bool Gedcom::writeGedFile(QString pathFileGed)
{
    // The parameter file can ask for a save before there is a document.
    if (!m_progress || !m_status)
        return false;

    qDebug() << "ON writeGedFile";
    SavedFile fileGed(pathFileGed);
    checkOversized();
    m_status->showMessage(tr("Sauvegarde du fichier %1").arg(pathFileGed), 0);

    // The copy is not checked: a new file has nothing to be archived.
    QString fileName = archiveName(pathFileGed);
    const QString archPath = makeArchiveDirectory(pathFileGed);
    if (isFile(pathFileGed))
        QFile::copy(pathFileGed, archPath + u'/' + fileName);
    addToJournal(tr("Fichier %1 copié sous %2/%3").arg(pathFileGed, archPath, fileName), u"INFO"_s);

    const auto open = [this](SavedFile *file, const QString &log, const QString &title) -> bool {
        if (file->open())
            return true;
        addToJournal(log, u"ERROR"_s);
        showCritical(title, tr("Modification non prise en compte, vérifier l'accès au fichier %1")
                                .arg(file->path()));
        return false;
    };
    if (!open(&fileGed, tr("Erreur d'écriture du fichier %1").arg(pathFileGed),
              tr("Erreur d'écriture")))
        return false;
    m_progress->setVisible(true);
    const QList<TwItem *> tabTwItemRoot = getTabTwItemsRoot();
    fileGed.write(
        tabTwItemRoot.size(), [&](qsizetype i) { return tabTwItemRoot.at(i)->getGedEntryList(); },
        "0 TRLR\n", m_progress);
    const QString saved = tr("Fichier %1 sauvegardé.").arg(pathFileGed);
    addToJournal(saved, u"INFO"_s);
    m_status->showMessage(saved, 0);

    fileName.prepend("journal."_L1);
    SavedFile fileJournal(archPath + u'/' + fileName);
    const QString journalPath = fileJournal.path();
    m_status->showMessage(tr("Sauvegarde du journal %1").arg(journalPath), 0);
    if (!open(&fileJournal, tr("Erreur d'écriture du fichier journal %1").arg(journalPath),
              tr("Erreur d'écriture du journal")))
        return false;
    const QStringList journal = m_journal->split("\r\n"_L1);
    fileJournal.write(
        journal.size(), [&](qsizetype i) { return QStringList{journal.at(i)}; }, "", m_progress);
    m_status->showMessage(tr("Fichier journal %1 sauvegardé.").arg(journalPath), 0);
    m_progress->setVisible(false);
    qDebug() << "OFF writeGedFile";
    return true;
}

int Gedcom::unConc()
{
    qDebug() << "ON unConc";
    m_status->showMessage(tr("Reconcaténation des balises en cours..."), 0);
    const QList<TwItem *> tabTotalTwItems = getTabTotalTwItems();
    const qsizetype size = tabTotalTwItems.size();
    m_progress->setRange(0, int(size) - 1);

    const auto foldInto = [this](TwItem *twiTarget, TwItem *twiConc) -> bool {
        // A run that an event has started in the middle of this one may have folded it already.
        if (twiConc->getTag() != "CONC"_L1 || twiConc->isToDelete())
            return false;
        twiTarget->setText(ValueColumn, twiTarget->text(ValueColumn) + twiConc->text(ValueColumn));
        addToJournal(foldLog(twiConc, twiTarget), u"INFO"_s);
        twiConc->setDelete(true);
        return true;
    };

    int count = 0;
    {
        const PausedLayout pausedLayout(m_treeWidget);
        // Last to first: of a chain of CONC lines the later ones are folded into the earlier first.
        for (qsizetype i = size - 1; i > 0; --i) {
            // Into the line before in the file, whatever it is, and not into the parent: the rest
            // of a CONT line belongs to that line.
            if (foldInto(tabTotalTwItems.at(i - 1), tabTotalTwItems.at(i)))
                ++count;
            showProgress(m_progress, i, size - i - 1);
        }
    }

    const QString summary = tr("%1 balises CONC reconcaténées.").arg(count);
    addToJournal(summary, u"INFO"_s);
    m_status->showMessage(summary, 0);
    m_progress->reset();
    processEvents();
    qDebug() << "OFF unConc";
    return count;
}

int Gedcom::checkOversized()
{
    qDebug() << "ON checkOversized";
    const PausedLayout pausedLayout(m_treeWidget);
    m_status->showMessage(tr("Vérification de la taille des balises en cours..."), 0);
    const QList<TwItem *> tabTotalTwItems = getTabTotalTwItems();
    m_progress->setRange(0, int(tabTotalTwItems.size()) - 1);

    QList<TwItem *> tabTotalTooBigs;
    int index = 0;
    for (TwItem *twi : tabTotalTwItems) {
        if (lineSize(twi) > MaxLineSize)
            tabTotalTooBigs.append(twi);
        showProgress(m_progress, ++index);
    }

    const qsizetype tooBigs = tabTotalTooBigs.size();
    int splited = 0;
    if (!tabTotalTooBigs.isEmpty()) {
        m_progress->setRange(0, int(tooBigs) - 1);
        m_status->showMessage(
            tr("Déconcaténation de %1 balises > 255 caractères en cours...").arg(tooBigs), 0);
        addToJournal(tr("%1 balises > 255 caractères détectées, déconcaténation...").arg(tooBigs),
                     u"INFO"_s);
        const bool atOnce = mustCutAtOnce(tabTotalTooBigs, tabTotalTwItems.size());
        QList<QStringList> splitLists;
        if (atOnce) {
            const DetachedRows detachedRows(m_treeWidget);
            splitLists = TwItem::splitAllOverSized(tabTotalTooBigs);
        }
        const auto split = [](TwItem *twi) -> QStringList {
            // An event may have deleted it since the scan; the rest would still be written.
            return twi->isToDelete() ? QStringList() : twi->splitTagOverSized(twi, {});
        };
        for (index = 0; index < int(tooBigs);) {
            const QStringList splitList =
                atOnce ? splitLists.at(index) : split(tabTotalTooBigs.at(index));
            for (const QString &log : splitList)
                addToJournal(log, u"INFO"_s);
            splited += int(splitList.size());
            ++index;
            showProgress(m_progress, index, index, EditProgressPeriod);
        }
    }

    m_progress->reset();
    addToJournal(tr("%1 balises > 255 caractères déconcaténées.").arg(tooBigs), u"INFO"_s);
    m_status->showMessage(tr("Vérification de la taille des balises terminée. %1 balises "
                             "déconcaténées. ")
                              .arg(splited),
                          0);
    qDebug() << "OFF checkOversized";
    return splited;
}

QList<TwItem *> Gedcom::getTabTwItemsRootMatch(const QRegularExpression &rx, bool usePatern,
                                               bool withChilds) const
{
    QList<TwItem *> matches;
    const LineMatcher matcher(rx);
    const auto appendMatch = [&](TwItem *twi) {
        if (!usePatern || matcher.matches(twi))
            matches.append(twi);
    };
    for (TwItem *root : m_tabTwItemRoot) {
        if (root->isToDelete())
            continue;
        appendMatch(root);
        if (!withChilds)
            continue;
        const QList<TwItem *> tabTwi = root->getTabTwiChilds(true);
        for (TwItem *twi : tabTwi)
            appendMatch(twi);
    }
    return matches;
}

QList<TwItem *> Gedcom::getTabTwItemsRoot() const
{
    return getTabTwItemsRootMatch(m_rxEmpty, false, false);
}

QList<TwItem *> Gedcom::getTabTotalTwItems()
{
    return getTabTwItemsRootMatch(m_rxEmpty, false, true);
}

QList<TwItem *> Gedcom::getTabTotalTwItemsMatch(const QRegularExpression &rx)
{
    return getTabTwItemsRootMatch(rx, true, true);
}

QList<TwItem *> Gedcom::getTabTwItemsMatch(QString strToSearch, QList<TwItem *> &liste) const
{
    return entriesWithColumn(strToSearch, liste);
}

QStringList Gedcom::getCommonTag(QStringList tagOneList, QStringList tagTwoList)
{
    QStringList common;
    if (tagOneList.size() <= 1 && tagTwoList.size() <= 1)
        return common;
    // Intentional: a difference does not end the scan. The result is no common prefix, and may be
    // the full tag of no entry at all.
    const qsizetype size = std::min(tagOneList.size(), tagTwoList.size());
    for (qsizetype i = 0; i < size; ++i) {
        if (tagTwoList.at(i) == "*"_L1 || tagTwoList.at(i) == tagOneList.at(i))
            common.append(tagOneList.at(i));
    }
    return common;
}

namespace {

/// The column of a level 1 name whose first slash has no blank before it, or -1. The kind of record
/// does not matter: a repository's name is spaced like a person's.
int unspacedColumn(const TwItem *twi)
{
    if (!lineBeginsWith(twi, u"1 NAME "))
        return -1;
    const int col = twi->getColumnIndexContainsString(u"/"_s, true);
    const QString text = col == -1 ? QString() : twi->text(col);
    const qsizetype slashIndex = text.indexOf(u'/');
    return slashIndex > 0 && text.at(slashIndex - 1) != u' ' ? col : -1;
}

} // namespace

int Gedcom::setSpaceNames()
{
    qDebug() << "ON setSpaceNames";
    m_status->showMessage(tr("Espacement des noms en cours..."), 0);
    const QList<TwItem *> tabTotalTwItems = getTabTotalTwItems();
    m_progress->setRange(0, int(tabTotalTwItems.size()));

    const auto spaceName = [this](TwItem *twi) -> bool {
        const int col = unspacedColumn(twi);
        if (col == -1)
            return false;
        const QString twiTextCol = twi->text(col);
        if (!m_rxName.match(twiTextCol).hasMatch()) {
            const QString line = lineText(twi);
            addToJournal(tr("Pas de correspondance pour \"/\" pour l'entrée %1%2")
                             .arg(line, lineReference(twi)),
                         u"ERROR"_s);
            showCritical(tr("Erreur"), tr("Erreur dans le nom pour l'entrée %1").arg(line));
            return false;
        }
        if (!twi->insertStrAtIndex(u" "_s, u"/"_s, col, true))
            return false;
        addToJournal(editLog(twi, twiTextCol, twi->text(col)), u"INFO"_s);
        return true;
    };

    int edited = 0;
    int countProgress = 0;
    {
        const PausedLayout pausedLayout(m_treeWidget);
        for (TwItem *twi : tabTotalTwItems) {
            if (spaceName(twi))
                ++edited;
            showProgress(m_progress, ++countProgress);
        }
    }

    // Intentional: the two blanks, and INDI.NAME whatever kind of record was edited.
    addToJournal(tr("%1 entrées INDI.NAME  modifiées.").arg(edited), u"INFO"_s);
    m_status->showMessage(tr("%1 noms espacés.").arg(edited), 0);
    m_progress->reset();
    processEvents();
    qDebug() << "OFF setSpaceNames";
    return edited;
}

namespace {

/// Whether the entry or one of its \p children holds a value. With \p rx, any column that matches
/// will do; without it, the entry must contain \p text, but a column of a child must equal it.
bool holdsValue(const TwItem *twi, const QList<TwItem *> &children, const QString &text,
                const QRegularExpression *rx)
{
    if ((rx ? twi->getColumnIndexMatchRx(*rx) : twi->getColumnIndexContainsString(text, true)) >= 0)
        return true;
    return std::any_of(children.begin(), children.end(), [&](const TwItem *child) {
        return (rx ? child->getColumnIndexMatchRx(*rx)
                   : child->getColumnIndexEqualString(text, true))
            >= 0;
    });
}

} // namespace

int Gedcom::delListTag(QStringList tagsToDel, bool emptyOnly, bool noChilds, bool contains, bool rx,
                       QString containValue)
{
    qDebug() << "ON delListTag";
    const PausedLayout pausedLayout(m_treeWidget);
    m_status->showMessage(tr("Suppression des balises en cours..."), 0);
    const QList<TwItem *> tabTotalTwItems = getTabTotalTwItems();
    m_progress->setRange(0, int(tabTotalTwItems.size()));
    const QRegularExpression rxContains(rx ? containValue : QString());

    int count = 0;
    const auto deleteEntry = [&](TwItem *twi) {
        if (!twi->isTagMatch(tagsToDel))
            return;
        if (emptyOnly && !twi->text(ValueColumn).trimmed().isEmpty())
            return;
        const QList<TwItem *> children = twi->getTabTwiChilds(true);
        if (noChilds && !children.isEmpty())
            return;
        if (contains && !holdsValue(twi, children, containValue, rx ? &rxContains : nullptr))
            return;

        if (!children.isEmpty()) {
            const QStringList childLogs = twi->delChilds();
            for (const QString &log : childLogs)
                addToJournal(log, u"INFO"_s);
            count += int(childLogs.size());
        }
        if (twi->setDelete(true)) {
            addToJournal(deletionLog(twi), u"INFO"_s);
            ++count;
        }
    };

    int progressCount = 0;
    // Last to first: a parent is judged after its children, and is childless once all of them are
    // deleted.
    for (auto it = tabTotalTwItems.crbegin(); it != tabTotalTwItems.crend(); ++it) {
        deleteEntry(*it);
        showProgress(m_progress, ++progressCount);
    }

    addToJournal(tr("%1 suppressions effectuées.").arg(count), u"INFO"_s);
    m_status->showMessage(tr("%1 balises supprimées.").arg(count), 0);
    qDebug() << "OFF delListTag";
    m_progress->reset();
    return count;
}

namespace {

/// The path of a destination, with each "*" replaced by the origin's component at that position.
QStringList resolved(QStringList tagDestList, const QStringList &tagOneList)
{
    for (qsizetype i = 0; i < std::min(tagOneList.size(), tagDestList.size()); ++i) {
        if (tagDestList.at(i) == "*"_L1)
            tagDestList[i] = tagOneList.at(i);
    }
    return tagDestList;
}

/// The entry below \p twiCommunOri that takes the value of \p twiOriMatch: the first at that path
/// or, for \p duplicates of one tag, the second. Null if there is none.
TwItem *existingDestination(TwItem *twiOriMatch, const QStringList &tagTwoList,
                            TwItem *twiCommunOri, bool duplicates)
{
    QList<TwItem *> listTwiDestMatch;
    twiCommunOri->getChildsListFromFullTag(tagTwoList, &listTwiDestMatch, twiCommunOri);
    if (duplicates)
        return listTwiDestMatch.value(1);
    TwItem *twiDestMatch = listTwiDestMatch.value(0);
    if (!twiDestMatch || twiDestMatch == twiOriMatch)
        return nullptr;
    qDebug() << "twi dest existant : " << twiDestMatch->getFullTag();
    return twiDestMatch;
}

/// Creates and logs the entry at the path below \p twiCommunOri. Only the last component is ever
/// created: null if the tags above it are missing.
TwItem *createDestination(Gedcom *gedcom, QStringList tagDestToCreate, TwItem *twiCommunOri,
                          OutdatedLists *lists)
{
    const QString tagDest = tagDestToCreate.takeLast();
    QList<TwItem *> tabTwItemParentDest;
    twiCommunOri->getChildsListFromFullTag(tagDestToCreate, &tabTwItemParentDest, twiCommunOri);
    if (tabTwItemParentDest.isEmpty())
        return nullptr;

    TwItem *twiParent = tabTwItemParentDest.constFirst();
    TwItem *twiDestMatch = insertEntry(twiParent, u' ' + tagDest, -1, lists);
    gedcom->addToJournal(
        Gedcom::tr("Création de l'entrée : %1 fille de la balise %2%3")
            .arg(entryText(twiDestMatch), entryText(twiParent), lineReference(twiParent)),
        u"INFO"_s);
    return twiDestMatch;
}

} // namespace

int Gedcom::moveTagContent(QString strListTagsOri, QString strListTagDest, bool deleteTagOri,
                           bool mvOriContent, bool createDestTag)
{
    qDebug() << "ON moveTagContent";
    const PausedLayout pausedLayout(m_treeWidget);
    m_status->showMessage(tr("Déplacement des balises en cours..."), 0);
    const QList<TwItem *> tabTwItemsRoot = getTabTwItemsRoot();
    const QStringList listFullTagOri = strListTagsOri.split(u';');
    const QStringList listFullTagsDest = strListTagDest.split(u';');
    QList<std::pair<QStringList, QStringList>> paths; // of an origin and of its destination
    // An origin without a destination at the same position is ignored.
    for (qsizetype i = 0; i < std::min(listFullTagOri.size(), listFullTagsDest.size()); ++i)
        paths.append({listFullTagOri.at(i).split(u'.'), listFullTagsDest.at(i).split(u'.')});
    m_progress->setRange(0, int(tabTwItemsRoot.size()));
    int mvCount = 0;
    int delCount = 0;
    int createCount = 0;
    OutdatedLists lists;

    const auto findDestination = [&](TwItem *twiOriMatch,
                                     const QStringList &tagDestList) -> TwItem * {
        const QStringList tagOneList = twiOriMatch->getFullTag();
        const QStringList tagTwoList = resolved(tagDestList, tagOneList);
        // We search only below the ancestor that both paths share, so that a value stays in its own
        // event. There may be none: getCommonTag() goes by position and makes INDI.DATE of
        // INDI.BIRT.DATE and INDI.DEAT.DATE, which is the full tag of no entry.
        const QStringList tagCommonList = getCommonTag(tagOneList, tagDestList);
        TwItem *twiCommunOri = twiOriMatch->getItemParentFromFullTag(tagCommonList, twiOriMatch);
        const bool duplicates = tagOneList == tagTwoList;
        if (twiCommunOri && duplicates)
            twiCommunOri = twiCommunOri->getParent(); // the destination is a sibling of the origin
        if (!twiCommunOri)
            return nullptr;

        lists.renew(twiCommunOri);
        if (TwItem *twi = existingDestination(twiOriMatch, tagTwoList, twiCommunOri, duplicates))
            return twi;
        TwItem *created =
            createDestTag ? createDestination(this, tagTwoList, twiCommunOri, &lists) : nullptr;
        if (created)
            ++createCount;
        return created;
    };

    const QString log = tr("Modification de l'entrée : %1 %2%3 en %4%5");
    const auto movePair = [&](TwItem *twiOriMatch, const QStringList &tagDestList) {
        TwItem *twiDestMatch = findDestination(twiOriMatch, tagDestList);
        if (!twiDestMatch)
            return;

        const QString value = twiOriMatch->text(ValueColumn);
        if (mvOriContent && !value.isEmpty()) {
            const QString valInit = lineText(twiDestMatch);
            twiDestMatch->setText(ValueColumn, value);
            addToJournal(log.arg(fullTagText(twiDestMatch), valInit, lineReference(twiDestMatch),
                                 value.trimmed(), lineReference(twiOriMatch)),
                         u"INFO"_s);
            ++mvCount;
        }
        // Intentional: only the origin. Its children stay, and are written unless it is a record.
        if (deleteTagOri && twiOriMatch->setDelete(true)) {
            addToJournal(deletionLog(twiOriMatch), u"INFO"_s);
            ++delCount;
        }
    };

    int progressCount = 0;
    for (TwItem *twItemRoot : tabTwItemsRoot) {
        for (const auto &[tagOriList, tagDestList] : std::as_const(paths)) {
            lists.renew(twItemRoot);
            // Listed once, before the pairs below create and delete entries.
            QList<TwItem *> listTwiOriMatch;
            twItemRoot->getChildsListFromFullTag(tagOriList, &listTwiOriMatch, twItemRoot);
            for (TwItem *twiOriMatch : std::as_const(listTwiOriMatch))
                movePair(twiOriMatch, tagDestList);
        }
        lists.renewAll();
        ++progressCount;
        showProgress(m_progress, progressCount, progressCount, RecordProgressPeriod);
    }

    addToJournal(tr("Création de %1 balises terminée.").arg(createCount), u"INFO"_s);
    addToJournal(tr("Edition de %1 balises terminée.").arg(mvCount), u"INFO"_s);
    addToJournal(tr("Suppression de %1 balises terminée.").arg(delCount), u"INFO"_s);
    m_status->showMessage(tr("%1 balises traitées.").arg(delCount), 0);
    qDebug() << "OFF moveTagContent";
    m_progress->reset();
    return delCount;
}

namespace {

/// Works out what a replacement makes of an entry: the first column that holds the text sought, and
/// no other, is edited.
class Replacer
{
public:
    struct Edit
    {
        int column = -1; // -1: nothing found
        QString before;
        QString after;
    };

    Replacer(QString strOri, QString strDest, bool sensitive, bool regex)
        : m_strOri(std::move(strOri)),
          m_strDest(std::move(strDest)),
          m_regex(regex),
          m_cs(sensitive ? Qt::CaseSensitive : Qt::CaseInsensitive),
          m_matcher(QRegularExpression(m_strOri, sensitive
                                                     ? QRegularExpression::NoPatternOption
                                                     : QRegularExpression::CaseInsensitiveOption))
    {
    }

    [[nodiscard]] Edit edit(const TwItem *twi)
    {
        const int column =
            m_regex ? m_matcher.firstColumn(twi)
                    : twi->getColumnIndexContainsString(m_strOri, m_cs == Qt::CaseSensitive);
        if (column != -1) {
            const QString before = twi->text(column);
            // Intentional: the expression only finds a text, which is then replaced throughout.
            const QString found = m_regex ? m_matcher.match(before).captured(0) : m_strOri;
            return {column, before, QString(before).replace(found, m_strDest, m_cs)};
        }
        if (m_regex && m_strOri == "^$"_L1 && twi->columnCount() <= ValueColumn)
            return {ValueColumn, {}, m_strDest}; // "^$" fills in a missing value
        return {};
    }

private:
    QString m_strOri;
    QString m_strDest;
    bool m_regex;
    Qt::CaseSensitivity m_cs;
    ColumnMatcher m_matcher;
};

} // namespace

int Gedcom::searchAndReplace(QString strOri, QString strDest, QString tags, const bool sensitive,
                             const bool regex)
{
    qDebug() << "ON searchAndReplace";
    const PausedLayout pausedLayout(m_treeWidget);
    m_status->showMessage(tr("Remplacement de texte en cours..."), 0);
    const QStringList tagList = tags.split(u';');
    const QList<TwItem *> tabTotalTwItems = getTabTotalTwItems();
    m_progress->setRange(0, int(tabTotalTwItems.size()));

    // An empty element, such as a trailing ";" leaves, selects every entry.
    const bool everyEntry = tagList.contains(QString());
    const auto isSelected = [&](TwItem *twi) -> bool {
        return everyEntry || std::any_of(tagList.begin(), tagList.end(), [twi](const QString &tag) {
                   return hasTag(twi, tag);
               });
    };
    Replacer replacer(strOri, strDest, sensitive, regex);
    const QString log = tr("Remplacement de '%1 %2' par '%3'%4");
    int count = 0;
    const auto replaceIn = [&](TwItem *twi) {
        if (!isSelected(twi))
            return;
        const Replacer::Edit edit = replacer.edit(twi);
        if (edit.column == -1)
            return;
        addToJournal(log.arg(fullTagText(twi), edit.before, edit.after, lineReference(twi)),
                     u"INFO"_s);
        twi->setText(edit.column, edit.after);
        ++count;
    };

    int progressCount = 0;
    for (TwItem *twi : tabTotalTwItems) {
        replaceIn(twi);
        ++progressCount;
        showProgress(m_progress, progressCount, progressCount, EditProgressPeriod);
    }

    addToJournal(tr("%1 remplacements effectués.").arg(count), u"INFO"_s);
    m_status->showMessage(tr("%1 textes remplacés.").arg(count), 0);
    qDebug() << "OF searchAndReplace";
    m_progress->reset();
    return count;
}

int Gedcom::setMediaFilePath(QString newPath)
{
    qDebug() << "ON setMediaFilePath";
    const PausedLayout pausedLayout(m_treeWidget);
    m_status->showMessage(tr("Modification des chemins médias en cours..."), 0);
    const QList<TwItem *> tabTwItemsObjeFile =
        recordChildsMatching(getTabTwItemsRootMatch(m_rxIdObje, true, false), m_rx1File);
    addToJournal(tr("%1 entrées OBJE.FILE trouvées.").arg(tabTwItemsObjeFile.size()), u"INFO"_s);
    m_progress->setRange(0, int(tabTwItemsObjeFile.size()));

    int edited = 0;
    for (TwItem *twiObjeFile : tabTwItemsObjeFile) {
        int col = twiObjeFile->getColumnIndexContainsString(u"."_s, true);
        if (col == -1)
            col = ValueColumn; // a file name without an extension
        const QString twiTextCol = twiObjeFile->text(col);
        // Intentional: only "/" separates directories here, whereas bareFileName() accepts a
        // backslash, too. A path with backslashes only is treated as a file name.
        const qsizetype slashIndex = twiTextCol.lastIndexOf(u'/');
        const QString path = newPath + twiTextCol.mid(slashIndex + 1);
        twiObjeFile->setText(col, path.trimmed());
        addToJournal(editLog(twiObjeFile, twiTextCol, twiObjeFile->text(col)), u"INFO"_s);
        ++edited;
        showProgress(m_progress, edited, edited, EditProgressPeriod);
    }

    // Cannot happen: no entry is skipped. This is where one would show.
    if (tabTwItemsObjeFile.size() > edited) {
        addToJournal(tr("%1 chemins non modifiés.").arg(tabTwItemsObjeFile.size() - edited),
                     u"INFO"_s);
    }
    const QString summary = tr("%1 chemins modifiés.").arg(edited);
    addToJournal(summary, u"INFO"_s);
    m_status->showMessage(summary, 0);
    qDebug() << "OFF setMediaFilePath";
    m_progress->reset();
    return edited;
}

namespace {

/// The names of the files and folders directly in \p mediasSource. Empty, with a box shown, if one
/// of the two folders is missing.
QStringList listMedia(const QString &mediasSource, const QString &mediasDest)
{
    if (QDir(mediasSource).exists() && QDir(mediasDest).exists())
        return QDir(mediasSource).entryList(QDir::NoDotAndDotDot | QDir::AllEntries, QDir::NoSort);
    showCritical(
        Gedcom::tr("Erreur"),
        Gedcom::tr("Vérifiez l'accès aux dossiers %1 et %2").arg(mediasSource, mediasDest));
    return {};
}

/// Copies the media. A copy may fail silently: that of a folder, or onto a file that exists.
void copyMedia(const QStringList &names, const QString &mediasSource, const QString &mediasDest)
{
    for (const QString &name : names)
        QFile::copy(mediasSource + u'/' + name, mediasDest + u'/' + name);
}

/// A line of a correspondence file without what a spreadsheet adds: empty cells at the end of the
/// row, and quotes.
QString cleanLine(QString line)
{
    while (line.endsWith(u','))
        line.chop(1);
    return line.remove(u'"');
}

/// Appends the clean lines of the files to \p linesFileUrl. False, with a box shown, if one cannot
/// be opened or a line lacks the separator.
bool readCorrespondences(Gedcom *gedcom, const QStringList &csvFiles, const QString &splitStr,
                         QStringList *linesFileUrl)
{
    for (const QString &csvFile : csvFiles) {
        gedcom->addToJournal(Gedcom::tr("Chargement du fichier de correspondance %1").arg(csvFile),
                             u"INFO"_s);
        QFile fileCsv(csvFile);
        if (!fileCsv.open(QIODevice::ReadOnly | QIODevice::Text)) {
            gedcom->addToJournal(Gedcom::tr("Chargement du fichier impossible."), u"ERROR"_s);
            showCritical(Gedcom::tr("Erreur"),
                         Gedcom::tr("Impossible d'ouvrir le fichier %1").arg(fileCsv.fileName()));
            return false;
        }
        QTextStream in(&fileCsv);
        in.setEncoding(QStringConverter::System);
        while (!in.atEnd()) {
            const QString line = cleanLine(in.readLine());
            if (!line.contains(splitStr)) {
                gedcom->addToJournal(
                    Gedcom::tr("Correspondance non détectée dans la ligne %1").arg(line),
                    u"ERROR"_s);
                showCritical(
                    Gedcom::tr("Erreur"),
                    Gedcom::tr("Correspondance non détectée dans la ligne %1 du fichier %2")
                        .arg(line, fileCsv.fileName()));
                return false;
            }
            linesFileUrl->append(line);
        }
        in.reset();
        fileCsv.close();
    }
    return true;
}

} // namespace

int Gedcom::setMediaFileURL(const QStringList csvFiles, const QString splitStr, bool urlSour,
                            bool urlEvt, bool delTagObjeFile, bool extractMedias,
                            QString mediasSource, QString mediasDest)
{
    qDebug() << "ON setMediaFileURL";
    m_status->showMessage(tr("Ajout des URL médias en cours..."), 0);
    QStringList listMediaFiles;
    if (extractMedias)
        listMediaFiles = listMedia(mediasSource, mediasDest);

    // Listed once: a later line still finds what an earlier one has marked as deleted.
    const QList<TwItem *> listTwiRootObje = getTabTwItemsRootMatch(m_rxIdObje, true, false);
    const QList<TwItem *> listTwiRootSour = getTabTwItemsRootMatch(m_rxIdSour, true, false);
    const QList<TwItem *> listTwiRootIndi = getTabTwItemsRootMatch(m_rxIdIndi, true, false);
    const QList<TwItem *> listTwiRootFam = getTabTwItemsRootMatch(m_rxIdFam, true, false);
    const QList<TwItem *> listTwiObjeFile = recordChildsMatching(listTwiRootObje, m_rx1File);
    const QList<TwItem *> listTwiSourObje = recordChildsMatching(listTwiRootSour, m_rx1Obje);
    const QList<TwItem *> listTwiIndiAndFam =
        recordChildsMatching(listTwiRootIndi + listTwiRootFam, m_rx2Sour);

    QStringList linesFileUrl;
    if (!readCorrespondences(this, csvFiles, splitStr, &linesFileUrl))
        return 0;
    addToJournal(tr("%1 correspondances à ajouter.").arg(linesFileUrl.size()), u"INFO"_s);
    m_progress->setRange(0, int(linesFileUrl.size()));

    MediaIndex index(listTwiObjeFile, listTwiSourObje, listTwiIndiAndFam);
    ColumnMatcher colIdObje(m_rxColIdObje);
    ColumnMatcher colIdSour(m_rxColIdSour);
    LinkWriter writer(this);
    LinkCount count;
    int countProgress = 0;
    bool lienAjoute = false; // by the current line; nothing is deleted unless a link replaces it
    QSet<QString> linkedMediaFiles; // replaced by a link, and therefore not copied

    const auto linkEvents = [&](TwItem *twiRootSour, const QString &urlFichier) {
        // An event can have changed the identifier; without one this is empty.
        const QString idSour = twiRootSour->text(colIdSour.firstColumn(twiRootSour));
        const QList<TwItem *> twiIndiAndFamList = index.citations.find(idSour);
        for (TwItem *twiIndiAndFam : twiIndiAndFamList) {
            TwItem *link = writer.linkEvent(twiIndiAndFam, urlFichier, idSour, twiRootSour);
            count.listFullTagsEdited[fullTagText(link)].append(countProgress);
            ++count.evt;
            lienAjoute = true;
        }
    };
    const auto linkReference = [&](TwItem *twiSourObje, const MediaMatch &media) {
        TwItem *twiRootSour = rootOf(twiSourObje);
        if (!twiRootSour)
            return;
        if (urlSour) {
            writer.linkSource(twiRootSour, media);
            ++count.sour;
            lienAjoute = true;
        }
        // Cannot happen: this column is that of the media record, which matchLine() has found. A
        // source without an identifier is not reported.
        if (urlEvt && media.indexColObje == -1) {
            addToJournal(tr("Impossible de déterminer l'id de la source %1%2")
                             .arg(entryText(twiRootSour), lineReference(twiRootSour)),
                         u"ERROR"_s);
        } else if (urlEvt) {
            linkEvents(twiRootSour, media.urlFichier);
        }
        // A link that this line has added to an earlier source counts too.
        if (delTagObjeFile && lienAjoute)
            deleteWithChilds(this, twiSourObje);
    };
    const auto linkMedia = [&](const QString &line) {
        lienAjoute = false;
        const MediaMatch media = matchLine(this, line, splitStr, &colIdObje, &index);
        if (!media.twiRootObje)
            return;
        const QString idObje = media.twiRootObje->text(media.indexColObje);
        const QList<TwItem *> twiSourObjeList = index.sourObjes.find(idObje);
        for (TwItem *twiSourObje : twiSourObjeList)
            linkReference(twiSourObje, media);
        if (delTagObjeFile && lienAjoute) {
            if (deleteWithChilds(this, media.twiRootObje))
                ++count.delObj;
            linkedMediaFiles.insert(media.nomFichierCsv);
        }
    };

    const PausedLayout pausedLayout(m_treeWidget);
    for (const QString &line : std::as_const(linesFileUrl)) {
        linkMedia(line);
        ++countProgress;
        if (countProgress % ProgressPeriod == 0 || countProgress == linesFileUrl.size())
            writer.renewLists();
        // If the journal grows while events are processed, another run has changed entries.
        const qsizetype journalSize = m_journal->size();
        if (showProgress(m_progress, countProgress) && m_journal->size() != journalSize) {
            index = MediaIndex(listTwiObjeFile, listTwiSourObje, listTwiIndiAndFam);
            writer.forgetNotes();
        }
    }

    listMediaFiles.removeIf([&](const QString &name) { return linkedMediaFiles.contains(name); });
    if (!listMediaFiles.isEmpty()) {
        copyMedia(listMediaFiles, mediasSource, mediasDest);
        addToJournal(tr("Copie de %1 objets média dans le dossier %2")
                         .arg(QString::number(listMediaFiles.size()), mediasDest),
                     u"INFO"_s);
    }
    logLinks(this, count, delTagObjeFile);
    m_status->showMessage(tr("%1 URL médias ajoutées.").arg(count.sour), 0);
    qDebug() << "OFF setMediaFileURL";
    m_progress->reset();
    return count.sour + count.evt;
}

TwItem *Gedcom::getObjeFileFromFileName(QString nomFichier, QList<TwItem *> listTwiObjeFile)
{
    const auto holdsName = [&nomFichier](const TwItem *twi) {
        return twi->getAbsolutFileName(nomFichier) == nomFichier;
    };
    const auto found = std::find_if(listTwiObjeFile.cbegin(), listTwiObjeFile.cend(), holdsName);
    return found == listTwiObjeFile.cend() ? nullptr : *found;
}

namespace {

/// Whether the entry holds a web address in a column without a link. A column that has one is left
/// alone as a whole, which makes it safe to run the operation twice.
bool hasUntreatedUrl(const TwItem *twi, ColumnMatcher *url)
{
    const int colMatch = urlColumn(twi, url);
    if (colMatch == -1)
        return false;
    const QString text = twi->text(colMatch);
    return !text.contains("](http"_L1) && !text.contains(R"(<a href="http)"_L1);
}

} // namespace

int Gedcom::setURLClickable(bool markdown, QStringList tagsToApply)
{
    qDebug() << "ON setURLClickable";
    const PausedLayout pausedLayout(m_treeWidget);
    m_status->showMessage(tr("Modification des URL en cours..."), 0);

    ColumnMatcher url(m_rxURL);
    QList<TwItem *> tabUrlTwItems = getTabTotalTwItems();
    tabUrlTwItems.removeIf([&url](const TwItem *twi) { return !hasUntreatedUrl(twi, &url); });
    // Intentional: an entry that two tags name is listed and rewritten twice, a link inside a link.
    const QList<TwItem *> tabUrlMatchTwItems =
        tagsToApply.isEmpty() ? tabUrlTwItems : entriesByTag(tabUrlTwItems, tagsToApply);
    const qsizetype tabSize = tabUrlMatchTwItems.size();
    m_progress->setRange(0, int(tabSize));
    addToJournal(tr("Recherche dans %1 lignes de liens hypertexte.").arg(tabSize), u"INFO"_s);

    const QString linkForm =
        markdown ? u"[%1](%1)"_s : u"<a href=\"%1\" target=\"_blank\">%1</a>"_s;
    const QString log = tr("Modification du lien %1 %2%3");
    int count = 0;
    for (TwItem *twi : tabUrlMatchTwItems) {
        const int col = url.firstColumn(twi);
        QString text = twi->text(col);
        const QString match = url.match(text).captured(0);
        twi->setText(col, text.replace(match, linkForm.arg(match)).trimmed());
        addToJournal(log.arg(fullTagText(twi), twi->text(col), lineReference(twi)), u"INFO"_s);
        ++count;
        showProgress(m_progress, count, count, EditProgressPeriod);
    }

    addToJournal(tr("Modification de %1 liens hypertexte terminée.").arg(count), u"INFO"_s);
    m_status->showMessage(tr("%1 URL modifiés.").arg(count), 0);
    qDebug() << "OFF setURLClickable";
    m_progress->reset();
    return count;
}

namespace {

/// Shows the row of \p twi in its context: the lines of its event, everything above up to the
/// record, and the name of the person. Skips what is in \p shown, and adds what it shows.
void showInContext(TwItem *twi, const LineMatcher &nameLine, QSet<TwItem *> *shown)
{
    twi->setTwiHidden(false);
    TwItem *ancestor = twi->getParent();
    for (; ancestor && !ancestor->isRoot(); ancestor = ancestor->getParent()) {
        if (shown->contains(ancestor))
            continue;
        shown->insert(ancestor);
        showRows(ancestor->getTabTwiChilds(true));
        ancestor->setTwiHidden(false);
    }
    if (!ancestor || shown->contains(ancestor))
        return;
    shown->insert(ancestor);
    ancestor->setTwiHidden(false); // the root
    if (TwItem *name = firstChildMatching(ancestor, nameLine))
        name->setTwiHidden(false);
}

} // namespace

void Gedcom::filterSourceDateDiff()
{
    m_status->showMessage(tr("Recherche des incohérences sources / évènements"), 0);
    const QList<TwItem *> listTwiRootSour = getTabTwItemsRootMatch(m_rxIdSour, true, false);
    const QList<TwItem *> listTwiRootIndi = getTabTwItemsRootMatch(m_rxIdIndi, true, false);
    const QList<TwItem *> listTwiRootFam = getTabTwItemsRootMatch(m_rxIdFam, true, false);

    const DateComparer::Patterns patterns{m_rxDate, m_rxAnnee, m_rxCatchAnnee, m_rxCatchAnnees,
                                          m_rxColIdSour};
    DateComparer dates(patterns, listTwiRootSour);
    HusbandLinks husbandLinks(m_rxColIdFam, listTwiRootIndi);
    // Compared record by record, while the entries are still in the processor's caches.
    QList<DatedCitation> listTwiIndiAndFam;
    const LineMatcher citationLine(m_rx2Sour);
    const QList<TwItem *> records = listTwiRootIndi + listTwiRootFam;
    for (TwItem *record : records) {
        const QList<TwItem *> citations = childsMatching(record, citationLine);
        for (TwItem *citation : citations)
            listTwiIndiAndFam.append(dates.compare(citation));
    }

    QSet<TwItem *> shown; // emptied when events have been processed, as these can hide rows again
    qsizetype journalSize = m_journal->size();
    const auto lookAfresh = [&] {
        shown.clear();
        if (m_journal->size() == journalSize)
            return;
        journalSize = m_journal->size();
        dates = DateComparer(patterns, listTwiRootSour);
        husbandLinks = HusbandLinks(m_rxColIdFam, listTwiRootIndi);
        for (DatedCitation &citation : listTwiIndiAndFam)
            citation = dates.compare(citation.twi);
    };

    const LineMatcher nameLine(m_rxName);
    const QBrush red(Qt::red, Qt::SolidPattern);
    const auto flag = [&](const DatedCitation &citation) {
        TwItem *root = rootOf(citation.twi);
        TwItem *link = root ? husbandLinks.find(root) : nullptr;
        TwItem *twiEvtSour = link ? link : citation.twi;
        twiEvtSour->setBackground(LevelColumn, red);
        twiEvtSour->setToolTip(LevelColumn,
                               tr("Date évènement : %1\r\nDate source : %2")
                                   .arg(citation.evtDate, QString::number(citation.sourDate)));
        showInContext(twiEvtSour, nameLine, &shown);
    };

    const PausedLayout pausedLayout(m_treeWidget);
    m_progress->setVisible(true);
    m_progress->setRange(0, int(listTwiIndiAndFam.size()));
    processEvents(); // shows the bar, and can start another run like any event
    lookAfresh();
    int count = 0;
    for (qsizetype i = 0; i < listTwiIndiAndFam.size(); ++i) {
        if (showProgress(m_progress, i + 1))
            lookAfresh();
        if (!listTwiIndiAndFam.at(i).disagrees)
            continue;
        ++count;
        flag(listTwiIndiAndFam.at(i));
    }

    m_progress->setVisible(false);
    m_status->showMessage(tr("%1 incohérences sources / évènements détectées.").arg(count), 0);
}

void Gedcom::filterSourceMultiUse()
{
    m_status->showMessage(tr("Recherche des sources utilisées plusieurs fois"), 0);
    const QList<TwItem *> listTwiRootSour = getTabTwItemsRootMatch(m_rxIdSour, true, false);
    const QList<TwItem *> listTwiRootIndi = getTabTwItemsRootMatch(m_rxIdIndi, true, false);

    // Read record by record, while the entries are still in the processor's caches.
    QList<TwItem *> listTwiSourIndi;
    CitedEvents events(m_rxDate);
    const LineMatcher citationLine(m_rx2Sour);
    for (TwItem *record : listTwiRootIndi) {
        const QList<TwItem *> citations = childsMatching(record, citationLine);
        events.append(citations);
        listTwiSourIndi += citations;
    }

    QSet<TwItem *>
        shown; // records; emptied when events have been processed, as these can hide rows again
    qsizetype journalSize = m_journal->size();
    const auto lookAfresh = [&] {
        shown.clear();
        if (m_journal->size() == journalSize)
            return;
        journalSize = m_journal->size();
        events = CitedEvents(m_rxDate);
        events.append(listTwiSourIndi);
    };

    const QBrush red(Qt::red, Qt::SolidPattern);
    const auto flag = [&](TwItem *event) {
        event->setBackground(LevelColumn, red);
        event->setTwiHidden(false);
        TwItem *root = rootOf(event->getParent());
        if (!root || shown.contains(root))
            return;
        shown.insert(root);
        root->setTwiHidden(false);
        showRows(root->getTabTwiChilds(false)); // the whole record
    };
    int occuCount = 0;
    // Intentional: the first event is compared with each of the others, and these not with each
    // other.
    const auto flagPairs = [&](const QList<TwItem *> &citing) {
        TwItem *indiSourA = citing.value(0);
        const QStringList indiSourADate = events.date(indiSourA);
        for (qsizetype i = 1; i < citing.size() && !indiSourADate.isEmpty(); ++i) {
            TwItem *indiSourB = citing.at(i);
            if (events.date(indiSourB) != indiSourADate)
                continue;
            ++occuCount;
            flag(indiSourA);
            flag(indiSourB);
        }
    };

    const PausedLayout pausedLayout(m_treeWidget);
    m_progress->setVisible(true);
    m_progress->setRange(0, int(listTwiRootSour.size()));
    processEvents(); // shows the bar, and can start another run like any event
    lookAfresh();
    // Intentional: the last source of the file is not examined.
    for (qsizetype iSour = 0; iSour < listTwiRootSour.size() - 1; ++iSour) {
        if (showProgress(m_progress, iSour + 1))
            lookAfresh();
        flagPairs(events.citing(listTwiRootSour.at(iSour)->text(TagColumn)));
    }

    m_progress->setVisible(false);
    m_status->showMessage(tr("Recherche terminée. %1 occurences dédoublées.").arg(occuCount), 0);
}

bool Gedcom::createNewTwiEntry(QStringList listEntryValues)
{
    ++m_currentLineGedFile;
    auto *twiRoot = new TwItem(m_currentLineGedFile);
    const int tempCountLine = twiRoot->setEntryTwItems(listEntryValues, m_currentLineGedFile);
    if (tempCountLine < m_currentLineGedFile + MinRecordSize - 1) {
        const QString record = listEntryValues.join("\r\n"_L1);
        addToJournal(tr("Entrée non reconnue :"), u"ERROR"_s);
        addToJournal(record, u"NONE"_s);
        // The refused entries are left to themselves, in no list and in no tree.
        showCritical(tr("Erreur"), tr("Entrée non reconnue") + " :\r\n"_L1 + record);
        return false;
    }
    m_currentLineGedFile = tempCountLine;
    m_tabTwItemRoot.append(twiRoot);

    if (TwItem *section = sectionOf(twiRoot)) {
        section->addChild(twiRoot);
        return true;
    }
    addToJournal(tr("Entrée non reconnue :"), u"INFO"_s);
    addToJournal(listEntryValues.join("\r\n"_L1), u"NONE"_s);
    m_treeWidget->addTopLevelItem(twiRoot);
    return true;
}

TwItem *Gedcom::sectionOf(TwItem *twiRoot) const
{
    const std::pair<QLatin1StringView, TwItem *> kinds[] = {
        {"HEAD"_L1, twiHeader}, {"INDI"_L1, twiIndi}, {"FAM"_L1, twiFam},
        {"SOUR"_L1, twiSour},   {"OBJE"_L1, twiObje}, {"REPO"_L1, twiRepo},
    };
    for (int column = TagColumn; twiRoot->isRoot() && column < twiRoot->columnCount(); ++column) {
        const QString text = twiRoot->text(column);
        for (const auto &[kind, section] : kinds) {
            if (text == kind)
                return section;
        }
        // These may have text on the same line, which then stands in the same column.
        if (text.startsWith("NOTE"_L1))
            return twiNote;
        if (text.startsWith("SUBM"_L1))
            return twiSubm;
    }
    return nullptr;
}

void Gedcom::generateTwiHeaders(QTreeWidget *tw)
{
    // Not the node of the submitters: their records are kept and written, but never on screen.
    for (TwItem *section : {twiHeader, twiIndi, twiFam, twiSour, twiObje, twiRepo, twiNote})
        tw->addTopLevelItem(section);
}
