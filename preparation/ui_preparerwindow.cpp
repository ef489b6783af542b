#include "ui_preparerwindow.h"

#include "encoding.h"
#include "findings.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSplitter>
#include <QStatusBar>
#include <QTableView>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// A widget that can be found by its name, and that a screen reader can name.
template <typename Widget>
Widget *named(Widget *widget, const char *objectName, const QString &accessibleName = {})
{
    widget->setObjectName(QString::fromLatin1(objectName));
    widget->setAccessibleName(accessibleName);
    return widget;
}

QLabel *makeLabel(const char *objectName, const QString &text, QWidget *buddy)
{
    auto *label = named(new QLabel(text), objectName);
    label->setBuddy(buddy);
    return label;
}

/// A label for texts of any length, which are taken as they stand and never make the window wider.
QLabel *makeTextLabel(const char *objectName)
{
    auto *label = named(new QLabel, objectName);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setMinimumWidth(1); // the length of the longest word would be the default
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return label;
}

QPushButton *makeButton(const char *objectName, const QString &text, const QString &description)
{
    auto *button = named(new QPushButton(text), objectName);
    button->setAccessibleDescription(description);
    button->setToolTip(description);
    return button;
}

} // namespace

void Ui_PreparerWindow::setupUi(QMainWindow *window)
{
    window->setObjectName(u"PreparerWindow"_s);
    window->setWindowTitle(tr("Préparer pour Varlune"));
    window->resize(1100, 720);

    auto *central = named(new QWidget, "centralwidget");
    auto *splitter = named(new QSplitter, "splitter");
    auto *rows = new QVBoxLayout(central);
    rows->addWidget(makeFileRows());
    rows->addWidget(splitter, 1);
    splitter->addWidget(makeSummary());
    splitter->addWidget(makeList());
    splitter->setChildrenCollapsible(false);
    splitter->setStretchFactor(0, 2);
    splitter->setStretchFactor(1, 3);
    window->setCentralWidget(central);
    makeStatusBar(window);
    setTabOrder();
    QMetaObject::connectSlotsByName(window);
}

QWidget *Ui_PreparerWindow::makeFileRows()
{
    pbChoose = makeButton("pbChoose", tr("&Choisir un fichier…"),
                          tr("Le fichier est examiné, et jamais modifié."));
    leFile = named(new QLineEdit, "leFile", tr("Fichier choisi"));
    leFile->setReadOnly(true);
    leFile->setAcceptDrops(false); // the window takes them
    cbEncoding = named(new QComboBox, "cbEncoding", tr("Codage du fichier"));
    cbEncoding->addItem(tr("Automatique"));
    const QList<Encoding> encodings = allEncodings();
    for (const Encoding encoding : encodings)
        cbEncoding->addItem(encodingName(encoding), int(encoding));
    lbReason = makeTextLabel("lbReason");
    lbIcon = named(new QLabel, "lbIcon");
    lbVerdict = makeTextLabel("lbVerdict");
    QFont font = lbVerdict->font();
    font.setBold(true);
    lbVerdict->setFont(font);
    pbSaveCopy = makeButton("pbSaveCopy", tr("&Enregistrer la copie…"),
                            tr("La copie réparée, que Varlune ouvrira"));
    pbSaveReport = makeButton("pbSaveReport", tr("Enregistrer le rap&port…"),
                              tr("La liste entière, en texte ou en JSON"));

    auto *widget = named(new QWidget, "fileRows");
    auto *rows = new QVBoxLayout(widget);
    rows->setContentsMargins(0, 0, 0, 0);
    auto *fileRow = new QHBoxLayout;
    fileRow->addWidget(pbChoose);
    fileRow->addWidget(leFile);
    auto *encodingRow = new QHBoxLayout;
    encodingRow->addWidget(makeLabel("lbEncoding", tr("Co&dage :"), cbEncoding));
    encodingRow->addWidget(cbEncoding);
    encodingRow->addWidget(lbReason, 1);
    auto *verdictRow = new QHBoxLayout;
    verdictRow->addWidget(lbIcon);
    verdictRow->addWidget(lbVerdict, 1);
    verdictRow->addWidget(pbSaveCopy);
    verdictRow->addWidget(pbSaveReport);
    for (QLayout *row : {fileRow, encodingRow, verdictRow})
        rows->addLayout(row);
    return widget;
}

QWidget *Ui_PreparerWindow::makeSummary()
{
    twSummary = named(new QTreeWidget, "twSummary", tr("Réparations et avertissements"));
    twSummary->setAccessibleDescription(
        tr("Une case cochée est une réparation à faire ; la ligne choisie filtre la liste."));
    twSummary->setColumnCount(2);
    twSummary->setHeaderHidden(true);
    twSummary->header()->setStretchLastSection(false);
    twSummary->header()->setSectionResizeMode(TitleColumn, QHeaderView::Stretch);
    twSummary->header()->setSectionResizeMode(CountColumn, QHeaderView::ResizeToContents);
    // On the background of the window a box stands out in dark colours, too.
    twSummary->viewport()->setAutoFillBackground(false);
    twSummary->setRootIsDecorated(false);
    twSummary->setIndentation(twSummary->indentation() / 2);

    fillSummary();

    auto *widget = named(new QWidget, "summary");
    auto *rows = new QVBoxLayout(widget);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->addWidget(
        makeLabel("lbSummary", tr("&Trouvé dans le fichier, nombre de cas :"), twSummary));
    rows->addWidget(twSummary);
    return widget;
}

void Ui_PreparerWindow::fillSummary()
{
    const FindingSet repairs = defaultRepairs();
    auto *all = new QTreeWidgetItem(twSummary, {tr("Tout")});
    const std::pair<FindingKind, QString> groups[] = {
        {FindingKind::Repair, tr("Réparations")},
        {FindingKind::RepairOnRequest, tr("Réparations sur demande")},
        {FindingKind::Warning, tr("À savoir")},
    };
    for (const auto &[kind, title] : groups) {
        auto *group = new QTreeWidgetItem(all, {title});
        for (const FindingType &type : findingTypes()) {
            if (type.kind != kind)
                continue;
            auto *item = new QTreeWidgetItem(group, {type.title});
            item->setToolTip(TitleColumn, type.title + u'\n' + type.why);
            item->setData(TitleColumn, FindingRole, int(type.finding));
            if (kind != FindingKind::Warning)
                item->setCheckState(TitleColumn,
                                    repairs.contains(type.finding) ? Qt::Checked : Qt::Unchecked);
        }
    }
    twSummary->expandAll();
    twSummary->setCurrentItem(all);
}

QWidget *Ui_PreparerWindow::makeList()
{
    leFilter = named(new QLineEdit, "leFilter", tr("Filtrer la liste"));
    leFilter->setPlaceholderText(tr("texte cherché"));
    leFilter->setClearButtonEnabled(true);
    leFilter->setAcceptDrops(false);
    makeTable();
    lbShown = makeLabel("lbShown", {}, tvList);
    pteDetail = named(new QPlainTextEdit, "pteDetail", tr("Ligne choisie dans la liste"));
    pteDetail->setPlaceholderText(tr("Choisissez une ligne de la liste pour la lire en entier."));
    pteDetail->setReadOnly(true);
    pteDetail->setTabChangesFocus(true);
    pteDetail->setAcceptDrops(false);
    pteDetail->setFixedHeight(4 * pteDetail->fontMetrics().lineSpacing());

    auto *widget = named(new QWidget, "list");
    auto *rows = new QVBoxLayout(widget);
    rows->setContentsMargins(0, 0, 0, 0);
    auto *filterRow = new QHBoxLayout;
    filterRow->addWidget(lbShown);
    filterRow->addStretch();
    filterRow->addWidget(makeLabel("lbFilter", tr("&Filtrer :"), leFilter));
    filterRow->addWidget(leFilter);
    rows->addLayout(filterRow);
    rows->addWidget(tvList, 1);
    rows->addWidget(pteDetail);
    return widget;
}

void Ui_PreparerWindow::makeTable()
{
    tvList = named(new QTableView, "tvList", tr("Lignes réparées ou signalées"));
    tvList->setSelectionBehavior(QTableView::SelectRows);
    tvList->setSelectionMode(QTableView::SingleSelection);
    tvList->setTabKeyNavigation(false); // Tab leads out of it
    tvList->setWordWrap(false);
    tvList->setHorizontalScrollMode(QTableView::ScrollPerPixel);
    tvList->verticalHeader()->hide();
    tvList->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    tvList->verticalHeader()->setDefaultSectionSize(tvList->fontMetrics().height() + 6);
}

void Ui_PreparerWindow::makeStatusBar(QMainWindow *window)
{
    auto *bar = named(new QStatusBar, "statusbar");
    progress = named(new QProgressBar, "progress", tr("Progression"));
    progress->setMaximumWidth(200);
    pbCancel = makeButton("pbCancel", tr("&Annuler"), tr("Arrête la préparation en cours"));
    pbCancel->setEnabled(false);
    bar->addPermanentWidget(progress);
    bar->addPermanentWidget(pbCancel);
    window->setStatusBar(bar);
}

void Ui_PreparerWindow::setTabOrder()
{
    const QList<QWidget *> order{pbChoose,  leFile,   cbEncoding, pbSaveCopy, pbSaveReport,
                                 twSummary, leFilter, tvList,     pteDetail,  pbCancel};
    for (qsizetype i = 1; i < order.size(); ++i)
        QWidget::setTabOrder(order.at(i - 1), order.at(i));
}
