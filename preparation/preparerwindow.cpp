#include "preparerwindow.h"

#include "occurrencemodel.h"
#include "output.h"
#include "preparationreport.h"
#include "report.h"
#include "ui_preparerwindow.h"

#include <QComboBox>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMessageBox>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QStandardPaths>
#include <QStatusBar>
#include <QStyle>
#include <QTableView>
#include <QThread>
#include <QTreeWidget>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int IconSize = 24; // pixels

QString number(qint64 value)
{
    return QLocale(QLocale::French).toString(value);
}

/// The text around the first character beyond ASCII, no more than its line: a reader sees by it
/// whether the encoding is the right one. Empty if there is none.
QString tellingText(const QByteArray &utf8)
{
    constexpr qsizetype room = 40; // characters on either side
    const auto *const found =
        std::find_if(utf8.begin(), utf8.end(), [](char c) { return uchar(c) > 127; });
    if (found == utf8.end())
        return {};
    const qsizetype begin = std::max(qsizetype(0), qsizetype(found - utf8.begin()) - room);
    const qsizetype at = found - utf8.begin() - begin;
    QString text = QString::fromUtf8(utf8.mid(begin, at + 4 * room)).left(at + room);
    text.replace(u'\r', u'\n');
    return text.mid(text.lastIndexOf(u'\n', at) + 1).section(u'\n', 0, 0).trimmed();
}

/// What is said of the encoding, also of a file that is refused: in another one it may be fine.
QString encodingText(const Preparation &preparation)
{
    const auto &[encoding, reason] = preparation.encoding;
    if (reason.isEmpty())
        return {};
    const QString sample = tellingText(preparation.source);
    return sample.isEmpty() ? PreparerWindow::tr("%1 : %2").arg(encodingName(encoding), reason)
                            : PreparerWindow::tr("%1 : %2. Exemple : %3")
                                  .arg(encodingName(encoding), reason, sample);
}

/// The one file that is dragged, or nothing.
QString draggedFile(const QMimeData *data)
{
    const QList<QUrl> urls = data->urls();
    return urls.size() == 1 ? urls.constFirst().toLocalFile() : QString();
}

/// Adds the findings that a row of the summary stands for, or those of the rows below it.
void addFindings(const QTreeWidgetItem *item, FindingSet *findings)
{
    const QVariant finding =
        item->data(Ui_PreparerWindow::TitleColumn, Ui_PreparerWindow::FindingRole);
    if (finding.isValid())
        findings->set(Finding(finding.toInt()));
    for (int i = 0; i < item->childCount(); ++i)
        addFindings(item->child(i), findings);
}

} // namespace

PreparerWindow::PreparerWindow(QWidget *parent)
    : QMainWindow(parent),
      ui(new Ui_PreparerWindow),
      m_model(new OccurrenceModel(this))
{
    ui->setupUi(this);
    setAcceptDrops(true);
    ui->tvList->setModel(m_model);
    ui->tvList->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    ui->tvList->horizontalHeader()->setSectionResizeMode(OccurrenceModel::Line, QHeaderView::Fixed);
    ui->tvList->horizontalHeader()->resizeSection(
        OccurrenceModel::Line, ui->tvList->fontMetrics().horizontalAdvance(u"0000000000"_s));

    connect(m_model, &OccurrenceModel::filtered, this, &PreparerWindow::showShown);
    connect(m_model, &OccurrenceModel::modelReset, this, &PreparerWindow::showShown);
    connect(m_model, &OccurrenceModel::rowsInserted, this, &PreparerWindow::showShown);
    connect(ui->tvList->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &PreparerWindow::showDetail);
    connect(m_model, &OccurrenceModel::modelReset, this, &PreparerWindow::showDetail);

    applyFilter();
    showOutcome();
}

PreparerWindow::~PreparerWindow()
{
    m_stopping = true;
    if (m_thread)
        m_thread->wait();
    delete m_thread;
    delete ui;
}

void PreparerWindow::open(const QString &path)
{
    m_path = path;
    ui->leFile->setText(QDir::toNativeSeparators(path));
    ui->cbEncoding->setCurrentIndex(0); // what holds for one file is wrong for the next
    m_options.encoding.reset();
    prepareAnew();
    // What the former one had would be taken for this one's.
    ui->lbReason->clear();
    showCount(ui->twSummary->topLevelItem(0));
}

void PreparerWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (!draggedFile(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void PreparerWindow::dropEvent(QDropEvent *event)
{
    event->acceptProposedAction();
    open(draggedFile(event->mimeData()));
}

void PreparerWindow::on_pbChoose_clicked()
{
    const QString folder = m_path.isEmpty()
                             ? QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)
                             : QFileInfo(m_path).path();
    const QString path = QFileDialog::getOpenFileName(this, tr("Choisir un fichier GEDCOM"), folder,
                                                      tr("Fichiers GEDCOM (*.ged *.GED)") + ";;"_L1
                                                          + tr("Tous les fichiers (*)"));
    if (!path.isEmpty())
        open(path);
}

void PreparerWindow::on_cbEncoding_activated(int index)
{
    const QVariant encoding = ui->cbEncoding->itemData(index);
    m_options.encoding.reset();
    if (encoding.isValid())
        m_options.encoding = Encoding(encoding.toInt());
    prepareAnew();
}

void PreparerWindow::on_twSummary_itemChanged(QTreeWidgetItem *item, int column)
{
    const QVariant finding =
        item->data(Ui_PreparerWindow::TitleColumn, Ui_PreparerWindow::FindingRole);
    if (column != Ui_PreparerWindow::TitleColumn || !finding.isValid())
        return;
    m_options.repairs.set(Finding(finding.toInt()),
                          item->checkState(Ui_PreparerWindow::TitleColumn) == Qt::Checked);
    prepareAnew();
}

void PreparerWindow::on_twSummary_currentItemChanged()
{
    applyFilter();
}

void PreparerWindow::on_leFilter_textChanged()
{
    applyFilter();
}

void PreparerWindow::on_pbCancel_clicked()
{
    m_stopping = true;
    m_isWantedAnew = false;
}

void PreparerWindow::on_pbSaveCopy_clicked()
{
    const QString path = QFileDialog::getSaveFileName(
        this, tr("Enregistrer la copie"), copyPath(m_path), tr("Fichiers GEDCOM (*.ged *.GED)"),
        nullptr, QFileDialog::DontConfirmOverwrite);
    if (path.isEmpty() || !mayWrite(writtenFiles(m_model->preparation(), path)))
        return;
    save(
        path,
        [preparation = m_model->preparation(), input = m_path, path] {
            return saveCopy(preparation, input, path);
        },
        [this, path] { m_copy = path; });
}

void PreparerWindow::on_pbSaveReport_clicked()
{
    const QFileInfo copy(copyPath(m_path));
    const QString suggested = copy.path() + u'/' + copy.completeBaseName() + ".rapport.txt"_L1;
    const QString path =
        QFileDialog::getSaveFileName(this, tr("Enregistrer le rapport"), suggested,
                                     tr("Texte (*.txt)") + ";;"_L1 + tr("JSON (*.json)"), nullptr,
                                     QFileDialog::DontConfirmOverwrite);
    if (path.isEmpty() || !mayWrite({path}))
        return;
    const auto format =
        path.endsWith(".json"_L1, Qt::CaseInsensitive) ? ReportFormat::Json : ReportFormat::Text;
    save(path, [preparation = m_model->preparation(), input = m_path, copy = m_copy, path, format] {
        return saveReport(path, format, {input, copy, {}, &preparation});
    });
}

void PreparerWindow::prepareAnew()
{
    if (m_path.isEmpty())
        return;
    // A long file fills much of the memory, and the next outcome needs as much.
    m_model->setPreparation({});
    m_copy.clear();
    ui->pbSaveCopy->setEnabled(false);
    ui->pbSaveReport->setEnabled(false);
    statusBar()->clearMessage();
    ui->lbVerdict->setText(tr("Préparation en cours : %1").arg(QFileInfo(m_path).fileName()));

    m_isWantedAnew = true;
    m_stopping = true;
    if (!m_thread)
        startPreparing();
}

void PreparerWindow::startPreparing()
{
    m_isWantedAnew = false;
    m_stopping = false;
    ui->pbCancel->setEnabled(true);
    const auto tell = [this](qint64 done, qint64 total) {
        const int percent = total > 0 ? int(done * 100 / total) : 0;
        QMetaObject::invokeMethod(ui->progress, "setValue", Qt::QueuedConnection,
                                  Q_ARG(int, percent));
        return !m_stopping;
    };
    run([this, tell, path = m_path,
         options = m_options] { m_outcome = prepareFile(path, options, tell); },
        [this] {
            if (!m_isWantedAnew)
                showOutcome();
        });
}

void PreparerWindow::run(const std::function<void()> &work, const std::function<void()> &then)
{
    m_thread = QThread::create(work);
    connect(m_thread, &QThread::finished, this, [this, then] {
        m_thread->wait(); // it says so just before it ends
        delete std::exchange(m_thread, nullptr);
        ui->progress->setRange(0, 100);
        ui->progress->reset();
        ui->pbCancel->setEnabled(false);
        then();
        if (m_isWantedAnew)
            startPreparing();
    });
    m_thread->start();
}

void PreparerWindow::showOutcome()
{
    m_model->setPreparation(std::exchange(m_outcome, {}));
    const Preparation &preparation = m_model->preparation();
    const bool hasCopy = !m_path.isEmpty() && preparation.isDone();
    ui->pbSaveCopy->setEnabled(hasCopy);
    ui->pbSaveReport->setEnabled(hasCopy);
    ui->lbReason->setText(encodingText(preparation));
    showVerdict();
    showCount(ui->twSummary->topLevelItem(0));
}

void PreparerWindow::showVerdict()
{
    const Preparation &preparation = m_model->preparation();
    auto icon = QStyle::SP_MessageBoxInformation;
    QString text;
    if (m_path.isEmpty()) {
        text = tr("Choisissez un fichier GEDCOM, ou déposez-le ici.");
    } else if (preparation.cancelled) {
        text = tr("La préparation a été annulée. Choisissez le fichier pour la recommencer.");
    } else if (!preparation.isDone()) {
        icon = QStyle::SP_MessageBoxCritical;
        text = preparation.refusal;
    } else {
        if (preparation.hasWarnings())
            icon = QStyle::SP_MessageBoxWarning;
        text = preparation.verdict();
    }
    ui->lbIcon->setPixmap(style()->standardIcon(icon).pixmap(IconSize));
    ui->lbVerdict->setText(text);
}

qint64 PreparerWindow::showCount(QTreeWidgetItem *item)
{
    qint64 count = 0;
    const QVariant value =
        item->data(Ui_PreparerWindow::TitleColumn, Ui_PreparerWindow::FindingRole);
    if (value.isValid()) {
        const auto finding = Finding(value.toInt());
        count = m_model->preparation().count(finding);
        // The repairs can be chosen; of what is only told, nothing need be told.
        item->setHidden(count == 0 && findingType(finding).kind == FindingKind::Warning);
    }
    for (int i = 0; i < item->childCount(); ++i)
        count += showCount(item->child(i));
    item->setText(Ui_PreparerWindow::CountColumn, number(count));
    item->setTextAlignment(Ui_PreparerWindow::CountColumn, Qt::AlignRight | Qt::AlignVCenter);
    return count;
}

void PreparerWindow::showShown()
{
    const QString text = m_model->isFiltering() ? tr("&Liste : %1…") : tr("&Liste : %1");
    ui->lbShown->setText(text.arg(number(m_model->rowCount())));
}

void PreparerWindow::showDetail()
{
    const QModelIndex current = ui->tvList->currentIndex();
    if (!current.isValid()) {
        ui->pteDetail->clear();
        return;
    }
    const OccurrenceText text = m_model->textAt(current.row());
    const QStringList lines{tr("Avant : %1").arg(text.before), tr("Après : %1").arg(text.after),
                            tr("Pourquoi : %1").arg(text.why)};
    ui->pteDetail->setPlainText(lines.join(u'\n'));
}

void PreparerWindow::applyFilter()
{
    FindingSet findings = {};
    addFindings(ui->twSummary->currentItem(), &findings);
    m_model->setFilter(findings, ui->leFilter->text());
}

void PreparerWindow::save(const QString &path, const std::function<QString()> &write,
                          const std::function<void()> &then)
{
    if (m_thread)
        return; // the former save
    ui->progress->setRange(0, 0);
    run([this, write] { m_problem = write(); },
        [this, path, then] {
            if (!m_problem.isEmpty()) {
                showCritical(windowTitle(), m_problem, this);
                return;
            }
            then();
            statusBar()->showMessage(tr("Enregistré : %1").arg(QDir::toNativeSeparators(path)));
        });
}

bool PreparerWindow::mayWrite(const QStringList &paths)
{
    QStringList existing;
    for (const QString &path : paths) {
        // The original is never overwritten, whatever the answer.
        if (QFileInfo::exists(path) && !isSameFile(path, m_path))
            existing += QDir::toNativeSeparators(path);
    }
    if (existing.isEmpty())
        return true;
    QMessageBox box(QMessageBox::Question, windowTitle(), {}, QMessageBox::Yes | QMessageBox::No,
                    this);
    box.setTextFormat(Qt::PlainText);
    box.setText(
        existing.size() == 1
            ? tr("Le fichier %1 existe déjà. Voulez-vous le remplacer ?").arg(existing.constFirst())
            : tr("Ces fichiers existent déjà :\n%1\nVoulez-vous les remplacer ?")
                  .arg(existing.join(u'\n')));
    box.setDefaultButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}
