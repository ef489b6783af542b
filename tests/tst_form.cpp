#include "markingtranslator.h"
#include "testmain.h"
#include "ui_mainwindow.h"
#include "window.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QSet>
#include <QStyleOptionGroupBox>
#include <QTreeWidget>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

const QString TagsToolTip =
    u"liste des balises séparées par ; Il est possible de spécifier les balises parentes séparées "
    "par des . en cas de balises homographes (INDI.OCCU.EVEN par exemple)"_s;
const QString FullTagToolTip = u"tag complet de la ou des balises séparées par ;"_s;

/// The place in a grid.
QString cell(int row, int column, int columns = 1)
{
    return u"row %1, column %2, %3 wide"_s.arg(row).arg(column).arg(columns);
}

/// The place in a box layout, counted from 1.
QString rank(int number)
{
    return u"item %1"_s.arg(number);
}

/// The place of an item in its layout, in the form of the two above.
QString placeOf(const QLayout *layout, int index)
{
    const auto *grid = qobject_cast<const QGridLayout *>(layout);
    if (!grid)
        return rank(index + 1);
    int row = 0;
    int column = 0;
    int rows = 0;
    int columns = 0;
    grid->getItemPosition(index, &row, &column, &rows, &columns);
    if (rows != 1)
        return u"%1 rows"_s.arg(rows);
    return cell(row, column, columns);
}

QString rich(const QString &text)
{
    return u"<html><head/><body><p>"_s + text + u"</p></body></html>"_s;
}

/// The expected properties of one widget.
struct Row
{
    const char *name;
    const char *className;
    const char *parent;
    const char *layout;
    QString place;
    QString text; // or title
    QString toolTip;
    QString state; // in the form of stateOf()
};

const QString Box = u"checkable"_s;

/// The widgets in the order of their creation.
const QList<Row> &rows()
{
    static const QList<Row> list = [] {
        QList<Row> made;
        Row row{};
        const auto in = [&row](const char *parent, const char *layout) {
            row.parent = parent;
            row.layout = layout;
        };
        const auto add = [&](const char *name, const char *className, const QString &place,
                             const QString &text = {}, const QString &toolTip = {},
                             const QString &state = {}) {
            made += {name, className, row.parent, row.layout, place, text, toolTip, state};
        };

        in("centralwidget", "gridLayout_6");
        add("cbSourceMultiUse", "QCheckBox", cell(2, 2), u"Sources utilisées plusieurs fois"_s, {},
            u"checkable, disabled"_s);
        add("cbFiltreSensible", "QCheckBox", cell(1, 2), u"a != A"_s, {}, u"checkable, disabled"_s);
        add("cbFiltrerRegex", "QCheckBox", cell(1, 1), u"regex"_s, {}, u"checkable, disabled"_s);
        add("cbSourceDateDiff", "QCheckBox", cell(2, 1), u"Sources!=date"_s,
            rich(u"liste les sources dont la date d'évènement diffère"_s),
            u"checkable, disabled"_s);
        add("leRecherche", "QLineEdit", cell(0, 1, 2), {}, {}, u"disabled, placeholder filtrer"_s);
        in("centralwidget", "horizontalLayout_2");
        add("mainGroupBox", "QGroupBox", rank(2));
        in("mainGroupBox", "verticalLayout");
        add("cbEspacer", "QCheckBox", rank(1), u"Espacer les Prénoms/NOMS/"_s,
            rich(u"JeanMARTIN -&gt; Jean MARTIN"_s), Box);
        add("gbDelTags", "QGroupBox", rank(2), u"Supprimer les balises"_s, {}, Box);
        in("gbDelTags", "horizontalLayout_6");
        add("leTagsToDel", "QLineEdit", rank(1), {}, TagsToolTip);
        add("pbPickTagToDel", "QPushButton", rank(2), {}, {}, u"icon"_s);
        in("gbDelTags", "gridLayout_4");
        add("leValueToDel", "QLineEdit", cell(2, 2));
        add("cbDelIfContent", "QCheckBox", cell(2, 1), u"si une valeur ou sous-valeur est :"_s,
            rich(u"Recherche le texte dans la balise cible et ses sous balises"_s), Box);
        add("cbDelEmptyClilds", "QCheckBox", cell(1, 1), u"si sans enfants"_s, {}, Box);
        add("label_8", "QLabel", cell(0, 0), u"uniquement : "_s);
        add("cbDelEmptyTags", "QCheckBox", cell(0, 1), u"si vides"_s, {}, Box);
        add("cbDelIfContentRX", "QCheckBox", cell(2, 3), u"regex"_s, {}, Box);
        in("mainGroupBox", "verticalLayout");
        add("gbSetURLLinks", "QGroupBox", rank(3), u"Générer les URL des médias sources"_s, {},
            Box);
        in("gbSetURLLinks", "horizontalLayout_7");
        add("pbImportCsvLinks", "QPushButton", rank(1), u"Fichier de correspondance"_s);
        add("label_3", "QLabel", rank(2), u"Chaîne de séparation"_s);
        add("leStrPlitCsv", "QLineEdit", rank(3), u",https://www.dropbox.com/"_s,
            rich(u"chaîne de caractères unique au sein de la ligne&quot;fichier/url&quot; "
                 "permettant de séparer le nom de fichier et son url"_s));
        in("gbSetURLLinks", "horizontalLayout_8");
        add("cbUrlInEvt", "QCheckBox", rank(1), u"Générer une note dans l'évènement"_s,
            rich(u"Ajoute une balise NOTE référençant l'url de la source à une balise évènement"_s),
            Box);
        add("cbUrlInSour", "QCheckBox", rank(2), u"Générer un lien dans la source"_s,
            rich(u"Ajoute une balise WWW référençant l'url de la source à une balise source"_s),
            Box);
        in("gbSetURLLinks", "verticalLayout_2");
        add("cbDelTagObjeFile", "QCheckBox", rank(3),
            u"Ssupprimer l'entrée OBJE correspondant au fichier"_s, {}, Box);
        add("gbExtractMediasToKeep", "QGroupBox", rank(4), u"Extraire les médias non linkés"_s,
            rich(u"copie les médias à afficher directement sans avoir à cliquer sur un lien"_s),
            Box);
        in("gbExtractMediasToKeep", "gridLayout_2");
        add("pbExtractMediasToKeep", "QPushButton", cell(1, 1), u"Dossier d'extraction"_s);
        add("leExtractMediasToKeep", "QLineEdit", cell(1, 0));
        add("pbExtractMediasSource", "QPushButton", cell(0, 1), u"Dossier source"_s);
        add("leExtractMediasSource", "QLineEdit", cell(0, 0));
        in("mainGroupBox", "verticalLayout");
        add("gbClickablesLinks", "QGroupBox", rank(4), u"Rendre les liens cliquable"_s,
            rich(u"transforme une url en balise markdown ou html cliquable"_s), Box);
        in("gbClickablesLinks", "horizontalLayout_4");
        add("rbMarkdown", "QRadioButton", rank(1), u"Markdown"_s, {}, u"checkable, checked"_s);
        add("rbHtml", "QRadioButton", rank(2), u"Html"_s, {}, Box);
        in("gbClickablesLinks", "horizontalLayout_11");
        add("label_7", "QLabel", rank(1), u"Appliquer uniquement aux balises : "_s,
            u"Seul les liens aynt pour balise les balieses mentionnées seront modifiés."_s);
        add("leTagToClickable", "QLineEdit", rank(2), {}, TagsToolTip, u"disabled"_s);
        add("pickDestClickableTag", "QPushButton", rank(3), {}, {}, u"icon"_s);
        in("mainGroupBox", "verticalLayout");
        add("gbReplaceMediaPath", "QGroupBox", rank(5), u"Changer le chemin des médias"_s, {}, Box);
        in("gbReplaceMediaPath", "hlMediaPath");
        add("leNewMediaPath", "QLineEdit", rank(1));
        add("pbOpenNewMediaPath", "QPushButton", rank(2), u"Choix du dossier"_s);
        add("cbDelMediaPath", "QCheckBox", rank(3), u"Supprimer"_s,
            rich(u"supprime le chemin absolu d'un fichier et ne conserve que le nom du fichier"_s),
            Box);
        in("mainGroupBox", "verticalLayout");
        add("gbMoveTagContent", "QGroupBox", rank(6), u"Copier / Déplacer des balises"_s,
            rich(u"déplace le contenu d'une balise dans une autre"_s), Box);
        in("gbMoveTagContent", "gridLayout");
        add("label", "QLabel", cell(1, 0), u"Balise 1"_s);
        add("pickDestTag", "QPushButton", cell(2, 4), {}, {}, u"icon"_s);
        add("leTagDest", "QLineEdit", cell(2, 1), {}, FullTagToolTip);
        add("cbCpSourDestContent", "QCheckBox", cell(2, 6), u"Contenu de 1 dans 2"_s, {}, Box);
        add("label_2", "QLabel", cell(2, 0), u"Balise 2"_s);
        add("leTagSour", "QLineEdit", cell(1, 1), {}, FullTagToolTip);
        add("pickSrcTag", "QPushButton", cell(1, 4), {}, {}, u"icon"_s);
        add("cbCreateDestTag", "QCheckBox", cell(2, 5), u"Créer 2"_s, {}, Box);
        add("cbDelTagSour", "QCheckBox", cell(1, 5, 2), u"Supprimer la balise 1"_s,
            rich(u"la balise n'est supprimée que si elle n'a pas de sous balise"_s), Box);
        in("mainGroupBox", "verticalLayout");
        add("gbReplaceString", "QGroupBox", rank(7), u"Remplacer du texte"_s, {}, Box);
        in("gbReplaceString", "gridLayout_3");
        add("label_6", "QLabel", cell(1, 0), u"Remplacer par "_s);
        add("label_5", "QLabel", cell(0, 0), u"Recherche"_s);
        add("pbSelectTagReplace", "QPushButton", cell(2, 3), {}, {}, u"icon"_s);
        add("leTextDest", "QLineEdit", cell(1, 1, 3));
        add("leTagToApply", "QLineEdit", cell(2, 1, 2), {},
            rich(u"Laisser vide  pour modifier n'importe où"_s));
        add("cbSensible", "QCheckBox", cell(0, 2), u"a != A"_s,
            rich(u"Différencer MAJUSCULES et minuscules"_s), Box);
        add("leTextOri", "QLineEdit", cell(0, 1));
        add("cbRegex", "QCheckBox", cell(0, 3), u"regex"_s,
            rich(u"Utiliser une expression régulière"_s), Box);
        add("label_4", "QLabel", cell(2, 0), u"Balises cibles"_s);
        in("mainGroupBox", "horizontalLayout_5");
        add("pbApply", "QPushButton", rank(1), u"Appliquer les modifications"_s);
        add("pbReadSequence", "QPushButton", rank(2), u"Jouer la séquence"_s);
        return made;
    }();
    return list;
}

QStringList rowNames()
{
    QStringList names;
    for (const Row &row : rows())
        names += QString::fromLatin1(row.name);
    return names;
}

const QStringList Groups{
    u"gbDelTags"_s,         u"gbSetURLLinks"_s,      u"gbExtractMediasToKeep"_s,
    u"gbClickablesLinks"_s, u"gbReplaceMediaPath"_s, u"gbMoveTagContent"_s,
    u"gbReplaceString"_s};

const QStringList PickButtons{u"pbPickTagToDel"_s, u"pickDestClickableTag"_s, u"pickDestTag"_s,
                              u"pickSrcTag"_s, u"pbSelectTagReplace"_s};

/// The form in a bare window that handles none of its signals.
class BareForm
{
public:
    BareForm()
    {
        ui.setupUi(&window);
    }
    Q_DISABLE_COPY_MOVE(BareForm)

    template <typename T = QWidget>
    [[nodiscard]] T *find(const QString &name) const
    {
        T *found = window.findChild<T *>(name);
        if (!found)
            qFatal("the form has no %s", qPrintable(name));
        return found;
    }
    void checkGroups() const
    {
        for (const QString &name : Groups)
            find<QGroupBox>(name)->setChecked(true);
    }

    QMainWindow window;
    Ui_MainWindow ui;
};

/// The text of a widget, or its title.
QString textOf(const QWidget *widget)
{
    const bool isGroup = qobject_cast<const QGroupBox *>(widget);
    return widget->property(isGroup ? "title" : "text").toString();
}

/// The properties that differ between widgets, in a form with all groups checked.
QString stateOf(const QWidget *widget)
{
    QStringList state;
    if (widget->property("checkable").toBool())
        state += u"checkable"_s;
    // Not for groups, which the test has checked itself.
    if (widget->property("checked").toBool() && !qobject_cast<const QGroupBox *>(widget))
        state += u"checked"_s;
    if (!widget->isEnabled())
        state += u"disabled"_s;
    if (const QString text = widget->property("placeholderText").toString(); !text.isEmpty())
        state += u"placeholder "_s + text;
    if (!widget->property("icon").value<QIcon>().isNull())
        state += u"icon"_s;
    return state.join(u", "_s);
}

/// A widget of that class with the framework's defaults.
std::unique_ptr<QWidget> makeFresh(const QByteArray &className)
{
    if (className == "QCheckBox")
        return std::make_unique<QCheckBox>();
    if (className == "QRadioButton")
        return std::make_unique<QRadioButton>();
    if (className == "QPushButton")
        return std::make_unique<QPushButton>();
    if (className == "QGroupBox")
        return std::make_unique<QGroupBox>();
    if (className == "QLabel")
        return std::make_unique<QLabel>();
    return std::make_unique<QLineEdit>();
}

void clickTitle(QGroupBox *group)
{
    QStyleOptionGroupBox option;
    option.initFrom(group);
    option.text = group->title();
    option.lineWidth = 1;
    option.textAlignment = Qt::Alignment(group->alignment());
    option.subControls =
        QStyle::SC_GroupBoxFrame | QStyle::SC_GroupBoxLabel | QStyle::SC_GroupBoxCheckBox;
    const QRect rect = group->style()->subControlRect(QStyle::CC_GroupBox, &option,
                                                      QStyle::SC_GroupBoxCheckBox, group);
    QTest::mouseClick(group, Qt::LeftButton, {}, rect.center());
}

} // namespace

/// The form by itself, without a window that handles it: its widgets, their layout and texts, and
/// how they enable each other. For applying it see tst_apply, for its pickers tst_pickers.
class TstForm : public QObject
{
    Q_OBJECT

private slots:
    void widget_data();
    void widget();
    void nothingElseIsSet_data();
    void nothingElseIsSet();
    void layoutContents_data();
    void layoutContents();
    void creationOrder();
    void texts();
    void textsOfTheWindow();

    void groupsStartUnchecked();
    void groupRulesItsWidgets_data();
    void groupRulesItsWidgets();
    void extractionNeedsBothGroups();
    void radioButtonsExcludeEachOther();
    void pickIcon();
    void spacer();
    void spacerTakesFreeHeight();
    void nothingIsReachedBeforeLoad();
};

void TstForm::widget_data()
{
    QTest::addColumn<Row>("row");

    for (const Row &row : rows())
        QTest::newRow(row.name) << row;
}

void TstForm::widget()
{
    QFETCH(const Row, row);

    const BareForm form;
    const auto *widget = form.find(QString::fromLatin1(row.name));
    QCOMPARE(widget->metaObject()->className(), row.className);
    QCOMPARE(widget->parentWidget()->objectName(), QString::fromLatin1(row.parent));
    const auto *layout = form.find<QLayout>(QString::fromLatin1(row.layout));
    const int index = layout->indexOf(widget);
    QVERIFY(index >= 0);
    QCOMPARE(placeOf(layout, index), row.place);
    QCOMPARE(textOf(widget), row.text);
    QCOMPARE(widget->toolTip(), row.toolTip);
    form.checkGroups();
    QCOMPARE(stateOf(widget), row.state);
}

void TstForm::nothingElseIsSet_data()
{
    widget_data();
}

void TstForm::nothingElseIsSet()
{
    QFETCH(const Row, row);

    const BareForm form;
    const auto *widget = form.find(QString::fromLatin1(row.name));
    const std::unique_ptr<QWidget> fresh = makeFresh(row.className);
    for (const char *property : {"minimumSize",
                                 "maximumSize",
                                 "sizeIncrement",
                                 "baseSize",
                                 "sizePolicy",
                                 "alignment",
                                 "maxLength",
                                 "inputMask",
                                 "echoMode",
                                 "readOnly",
                                 "clearButtonEnabled",
                                 "frame",
                                 "shortcut",
                                 "autoRepeat",
                                 "autoExclusive",
                                 "tristate",
                                 "flat",
                                 "default",
                                 "iconSize",
                                 "wordWrap",
                                 "textFormat",
                                 "indent",
                                 "margin",
                                 "font",
                                 "styleSheet",
                                 "statusTip",
                                 "whatsThis",
                                 "contextMenuPolicy",
                                 "acceptDrops",
                                 "layoutDirection"})
        QVERIFY2(widget->property(property) == fresh->property(property), property);
    if (const auto *lineEdit = qobject_cast<const QLineEdit *>(widget))
        QCOMPARE(lineEdit->validator(), nullptr);
    if (const auto *label = qobject_cast<const QLabel *>(widget))
        QCOMPARE(label->buddy(), nullptr);
}

void TstForm::layoutContents_data()
{
    QTest::addColumn<QByteArray>("className");
    QTest::addColumn<QString>("owner"); // the widget it is set on, or the layout that contains it
    QTest::addColumn<QStringList>("contents");

    const auto vertical = [](const char *name) -> QTestData & {
        return QTest::newRow(name) << QByteArray("QVBoxLayout");
    };
    const auto horizontal = [](const char *name) -> QTestData & {
        return QTest::newRow(name) << QByteArray("QHBoxLayout");
    };
    const auto grid = [](const char *name) -> QTestData & {
        return QTest::newRow(name) << QByteArray("QGridLayout");
    };
    horizontal("horizontalLayout_2")
        << u"centralwidget"_s << QStringList{u"verticalLayout_3"_s, u"mainGroupBox"_s};
    vertical("verticalLayout_3") << u"horizontalLayout_2"_s
                                 << QStringList{u"treeWidget"_s, u"gridLayout_6"_s};
    grid("gridLayout_6") << u"verticalLayout_3"_s
                         << QStringList{u"cbSourceMultiUse"_s, u"cbFiltreSensible"_s,
                                        u"cbFiltrerRegex"_s, u"cbSourceDateDiff"_s,
                                        u"leRecherche"_s};
    vertical("verticalLayout") << u"mainGroupBox"_s
                               << QStringList{u"cbEspacer"_s,          u"gbDelTags"_s,
                                              u"gbSetURLLinks"_s,      u"gbClickablesLinks"_s,
                                              u"gbReplaceMediaPath"_s, u"gbMoveTagContent"_s,
                                              u"gbReplaceString"_s,    u"a spacer"_s,
                                              u"horizontalLayout_5"_s};
    vertical("verticalLayout_7") << u"gbDelTags"_s
                                 << QStringList{u"horizontalLayout_6"_s, u"gridLayout_4"_s};
    horizontal("horizontalLayout_6")
        << u"verticalLayout_7"_s << QStringList{u"leTagsToDel"_s, u"pbPickTagToDel"_s};
    grid("gridLayout_4") << u"verticalLayout_7"_s
                         << QStringList{u"leValueToDel"_s,     u"cbDelIfContent"_s,
                                        u"cbDelEmptyClilds"_s, u"label_8"_s,
                                        u"cbDelEmptyTags"_s,   u"cbDelIfContentRX"_s};
    horizontal("horizontalLayout") << u"gbSetURLLinks"_s << QStringList{u"verticalLayout_2"_s};
    vertical("verticalLayout_2") << u"horizontalLayout"_s
                                 << QStringList{u"horizontalLayout_7"_s, u"horizontalLayout_8"_s,
                                                u"cbDelTagObjeFile"_s, u"gbExtractMediasToKeep"_s};
    horizontal("horizontalLayout_7")
        << u"verticalLayout_2"_s
        << QStringList{u"pbImportCsvLinks"_s, u"label_3"_s, u"leStrPlitCsv"_s};
    horizontal("horizontalLayout_8")
        << u"verticalLayout_2"_s << QStringList{u"cbUrlInEvt"_s, u"cbUrlInSour"_s};
    grid("gridLayout_2") << u"gbExtractMediasToKeep"_s
                         << QStringList{u"pbExtractMediasToKeep"_s, u"leExtractMediasToKeep"_s,
                                        u"pbExtractMediasSource"_s, u"leExtractMediasSource"_s};
    vertical("verticalLayout_4") << u"gbClickablesLinks"_s
                                 << QStringList{u"horizontalLayout_4"_s, u"horizontalLayout_11"_s};
    horizontal("horizontalLayout_4")
        << u"verticalLayout_4"_s << QStringList{u"rbMarkdown"_s, u"rbHtml"_s};
    horizontal("horizontalLayout_11")
        << u"verticalLayout_4"_s
        << QStringList{u"label_7"_s, u"leTagToClickable"_s, u"pickDestClickableTag"_s};
    vertical("verticalLayout_6") << u"gbReplaceMediaPath"_s << QStringList{u"hlMediaPath"_s};
    horizontal("hlMediaPath") << u"verticalLayout_6"_s
                              << QStringList{u"leNewMediaPath"_s, u"pbOpenNewMediaPath"_s,
                                             u"cbDelMediaPath"_s};
    grid("gridLayout") << u"gbMoveTagContent"_s
                       << QStringList{u"label"_s,       u"pickDestTag"_s,
                                      u"leTagDest"_s,   u"cbCpSourDestContent"_s,
                                      u"label_2"_s,     u"leTagSour"_s,
                                      u"pickSrcTag"_s,  u"cbCreateDestTag"_s,
                                      u"cbDelTagSour"_s};
    vertical("verticalLayout_5") << u"gbReplaceString"_s << QStringList{u"gridLayout_3"_s};
    grid("gridLayout_3") << u"verticalLayout_5"_s
                         << QStringList{u"label_6"_s,    u"label_5"_s,      u"pbSelectTagReplace"_s,
                                        u"leTextDest"_s, u"leTagToApply"_s, u"cbSensible"_s,
                                        u"leTextOri"_s,  u"cbRegex"_s,      u"label_4"_s};
    horizontal("horizontalLayout_5")
        << u"verticalLayout"_s << QStringList{u"pbApply"_s, u"pbReadSequence"_s};
}

void TstForm::layoutContents()
{
    QFETCH(const QByteArray, className);
    QFETCH(const QString, owner);
    QFETCH(const QStringList, contents);

    const BareForm form;
    const auto *layout = form.find<QLayout>(QString::fromLatin1(QTest::currentDataTag()));
    QCOMPARE(QByteArray(layout->metaObject()->className()), className);
    QCOMPARE(layout->parent()->objectName(), owner);
    if (layout->parent()->isWidgetType())
        QCOMPARE(form.find(owner)->layout(), layout);
    else
        QVERIFY(form.find<QLayout>(owner)->indexOf(layout) >= 0);

    const auto *box = qobject_cast<const QBoxLayout *>(layout);
    const auto *grid = qobject_cast<const QGridLayout *>(layout);
    QStringList names;
    for (int i = 0; i < layout->count(); ++i) {
        QLayoutItem *item = layout->itemAt(i);
        if (item->spacerItem())
            names += u"a spacer"_s;
        else if (item->layout())
            names += item->layout()->objectName();
        else
            names += item->widget()->objectName();
        QCOMPARE(item->alignment(), Qt::Alignment());
        if (box)
            QCOMPARE(box->stretch(i), 0);
    }
    QCOMPARE(names, contents);
    for (int row = 0; grid && row < grid->rowCount(); ++row)
        QCOMPARE(grid->rowStretch(row), 0);
    for (int column = 0; grid && column < grid->columnCount(); ++column)
        QCOMPARE(grid->columnStretch(column), 0);

    // No size is set by hand.
    QWidget outer;
    const auto *fresh = new QVBoxLayout(new QGroupBox(&outer));
    QCOMPARE(layout->contentsMargins(),
             layout->parent()->isWidgetType() ? fresh->contentsMargins() : QMargins());
    QCOMPARE(layout->spacing(), fresh->spacing());
    QCOMPARE(layout->sizeConstraint(), fresh->sizeConstraint());
    for (int row = 0; grid && row < grid->rowCount(); ++row)
        QCOMPARE(grid->rowMinimumHeight(row), 0);
    for (int column = 0; grid && column < grid->columnCount(); ++column)
        QCOMPARE(grid->columnMinimumWidth(column), 0);
}

void TstForm::creationOrder()
{
    const BareForm form;
    QStringList expected = QStringList{u"treeWidget"_s} + rowNames();
    QStringList chain;
    for (const QWidget *widget = form.window.nextInFocusChain(); widget != &form.window;
         widget = widget->nextInFocusChain()) {
        if (expected.contains(widget->objectName()))
            chain += widget->objectName();
    }
    QCOMPARE(chain, expected);

    // There is nothing else on the form.
    QStringList all;
    const auto widgets = form.ui.centralwidget->findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        if (!form.ui.treeWidget->isAncestorOf(widget))
            all += widget->objectName();
    }
    expected.removeFirst();
    expected.sort();
    all.sort();
    QCOMPARE(all, expected);
}

void TstForm::texts()
{
    // The texts are set anew each time; none remains from the first time.
    BareForm form;
    const MarkingTranslator translator;
    form.ui.treeWidget->setHeaderLabels({u"a"_s, u"b"_s, u"c"_s, u"d"_s});
    form.ui.retranslateUi(&form.window);
    for (int column = 0; column < 4; ++column)
        QCOMPARE(form.ui.treeWidget->headerItem()->text(column), QString());
    const auto marked = [](const QString &text) {
        return text.isEmpty() ? text : u"[MainWindow]"_s + text;
    };
    for (const Row &row : rows()) {
        const auto *widget = form.find(QString::fromLatin1(row.name));
        QCOMPARE(textOf(widget), marked(row.text));
        QCOMPARE(widget->toolTip(), marked(row.toolTip));
    }
    QCOMPARE(form.window.windowTitle(), marked(u"MainWindow"_s));
    QCOMPARE(form.ui.leRecherche->placeholderText(), marked(u"filtrer"_s));
    QCOMPARE(form.ui.actionOuvrir->text(), marked(u"Ouvrir"_s));
    QCOMPARE(form.ui.actionEnregistrerFichier->text(), marked(u"Enregistrer"_s));
    QCOMPARE(form.ui.actionEnregistrerFichier_sous->text(), marked(u"Enregistrer sous"_s));
    QCOMPARE(form.ui.actionJournal->text(), marked(u"Journal"_s));
    QCOMPARE(form.ui.action_propos->text(), marked(u"À propos"_s));
    QCOMPARE(form.ui.menuFichier->title(), marked(u"Fichier"_s));
    QCOMPARE(form.ui.menuOutils->title(), marked(u"Outils"_s));
    QCOMPARE(form.ui.menuAide->title(), marked(u"Aide"_s));
}

void TstForm::textsOfTheWindow()
{
    const Session session;
    for (const Row &row : rows()) {
        const auto *widget = session.find<QWidget>(QString::fromLatin1(row.name));
        QCOMPARE(textOf(widget), row.text);
        QCOMPARE(widget->toolTip(), row.toolTip);
    }
}

void TstForm::groupsStartUnchecked()
{
    const BareForm form;
    for (const QString &name : Groups)
        QVERIFY2(!form.find<QGroupBox>(name)->isChecked(), qPrintable(name));
    QVERIFY(!form.ui.mainGroupBox->isCheckable());
    QVERIFY(form.ui.mainGroupBox->isEnabled());
}

void TstForm::groupRulesItsWidgets_data()
{
    QTest::addColumn<QString>("name");

    for (const QString &name : Groups)
        QTest::newRow(qPrintable(name)) << name;
}

void TstForm::groupRulesItsWidgets()
{
    QFETCH(const QString, name);

    const BareForm form;
    form.ui.centralwidget->window()->show();
    form.ui.gbSetURLLinks->setChecked(true); // one group lies inside this one
    auto *group = form.find<QGroupBox>(name);
    group->setChecked(false);
    const auto widgets = group->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    QVERIFY(!widgets.isEmpty());
    for (const bool checked : {false, true, false}) {
        if (group->isChecked() != checked)
            clickTitle(group);
        QCOMPARE(group->isChecked(), checked);
        for (const QWidget *widget : widgets) {
            const bool own = widget->objectName() != u"leTagToClickable"_s;
            QVERIFY2(widget->isEnabled() == (checked && own), qPrintable(widget->objectName()));
        }
    }
}

void TstForm::extractionNeedsBothGroups()
{
    const BareForm form;
    for (const bool links : {false, true}) {
        for (const bool extract : {false, true}) {
            form.ui.gbSetURLLinks->setChecked(links);
            form.ui.gbExtractMediasToKeep->setChecked(extract);
            QCOMPARE(form.ui.leExtractMediasSource->isEnabled(), links && extract);
            QCOMPARE(form.ui.pbExtractMediasToKeep->isEnabled(), links && extract);
        }
    }
}

void TstForm::radioButtonsExcludeEachOther()
{
    const BareForm form;
    form.ui.centralwidget->window()->show();
    form.ui.gbClickablesLinks->setChecked(true);
    const auto states = [&form] {
        return QList<bool>{form.ui.rbMarkdown->isChecked(), form.ui.rbHtml->isChecked()};
    };
    const QList<bool> markdown{true, false};
    const QList<bool> html{false, true};
    QCOMPARE(states(), markdown);
    clickIndicator(form.ui.rbHtml);
    QCOMPARE(states(), html);
    clickIndicator(form.ui.rbHtml);
    QCOMPARE(states(), html);
    clickIndicator(form.ui.rbMarkdown);
    QCOMPARE(states(), markdown);

    QCOMPARE(form.ui.rbMarkdown->group(), nullptr);
    QCOMPARE(form.ui.rbHtml->group(), nullptr);
    QVERIFY(form.window.findChildren<QButtonGroup *>().isEmpty());
}

void TstForm::pickIcon()
{
    const BareForm form;
    const QPixmap picture(u":/icones/pipt.png"_s);
    QCOMPARE(picture.size(), QSize(32, 32));
    QSet<qint64> keys;
    for (const QString &name : PickButtons) {
        const QIcon icon = form.find<QPushButton>(name)->icon();
        keys += icon.cacheKey();
        QCOMPARE(icon.availableSizes(QIcon::Normal, QIcon::Off), QList<QSize>{picture.size()});
        QCOMPARE(icon.availableSizes(QIcon::Normal, QIcon::On), QList<QSize>());
        QCOMPARE(icon.availableSizes(QIcon::Disabled, QIcon::Off), QList<QSize>());
        QCOMPARE(icon.pixmap(picture.size()).toImage(), picture.toImage());
    }
    QCOMPARE(keys.size(), 1); // one icon for all
}

void TstForm::spacer()
{
    const BareForm form;
    const QSpacerItem *item = form.ui.verticalLayout->itemAt(7)->spacerItem();
    QVERIFY(item);
    QCOMPARE(item, form.ui.verticalSpacer);
    QCOMPARE(item->sizeHint(), QSize(20, 40));
    QCOMPARE(item->sizePolicy(), QSizePolicy(QSizePolicy::Minimum, QSizePolicy::Expanding));
}

void TstForm::spacerTakesFreeHeight()
{
    const Session session;
    session.window->show();
    const auto heights = [&session] {
        QList<int> list;
        for (const QString &name : Groups)
            list += session.find<QGroupBox>(name)->height();
        return list;
    };
    const auto *apply = session.find<QPushButton>(u"pbApply"_s);
    const auto *panel = session.find<QGroupBox>(u"mainGroupBox"_s);
    session.window->resize(1200, 1200);
    const QList<int> before = heights();
    const int panelBefore = panel->height();
    const int applyBefore = apply->y();
    session.window->resize(1200, 1500);
    QCOMPARE(panel->height() - panelBefore, 300);
    QCOMPARE(apply->y() - applyBefore, 300);
    QCOMPARE(heights(), before);
}

void TstForm::nothingIsReachedBeforeLoad()
{
    const Session session;
    session.window->show();
    for (const Row &row : rows())
        QVERIFY2(!session.isEnabled(QString::fromLatin1(row.name)), row.name);
    for (const QString &name : Groups) {
        auto *group = session.find<QGroupBox>(name);
        clickTitle(group);
        QVERIFY2(!group->isChecked(), qPrintable(name));
    }
    clickIndicator(session.find<QCheckBox>(u"cbEspacer"_s));
    QVERIFY(!session.isChecked(u"cbEspacer"_s));
    QTest::mouseClick(session.find<QPushButton>(u"pbApply"_s), Qt::LeftButton);
    QVERIFY(session.journalWindows().isEmpty());
}

VARLUNE_TEST_MAIN(TstForm)
#include "tst_form.moc"
