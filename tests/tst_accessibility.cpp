#include "document.h"
#include "fenapropos.h"
#include "markingtranslator.h"
#include "testmain.h"
#include "ui_mainwindow.h"
#include "window.h"

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QMainWindow>
#include <QMap>
#include <QMenu>
#include <QProgressBar>
#include <QRegularExpression>
#include <QTest>
#include <QTextDocument>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

const QString TagsToolTip =
    u"liste des balises séparées par ; Il est possible de spécifier les balises parentes séparées "
    "par des . en cas de balises homographes (INDI.OCCU.EVEN par exemple)"_s;
const QString FullTagToolTip = u"tag complet de la ou des balises séparées par ;"_s;

/// The window on screen with a file, so that every control of it can be used.
class LoadedSession : public Session
{
public:
    LoadedSession()
    {
        window->show();
        load({u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 @I1@ INDI"_s, u"1 SEX M"_s, u"0 TRLR"_s});
    }
};

/// Calls \p visit with the interface and all below it.
void walk(QAccessibleInterface *iface, const std::function<void(QAccessibleInterface *)> &visit)
{
    visit(iface);
    for (int i = 0; i < iface->childCount(); ++i)
        walk(iface->child(i), visit);
}

/// The windows that are open.
QList<QAccessibleInterface *> openWindows()
{
    QList<QAccessibleInterface *> windows;
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget *widget : widgets) {
        if (widget->isVisible())
            windows += QAccessible::queryAccessibleInterface(widget);
    }
    return windows;
}

/// Whether it is something that a user handles, or whose state is read out. The cells of the tree
/// are the file's.
bool isControl(QAccessibleInterface *iface)
{
    static const QList<QAccessible::Role> roles{QAccessible::Window,      QAccessible::Grouping,
                                                QAccessible::ProgressBar, QAccessible::MenuBar,
                                                QAccessible::MenuItem,    QAccessible::PopupMenu,
                                                QAccessible::ButtonMenu};
    return iface->object() && (iface->state().focusable || roles.contains(iface->role()));
}

/// How a fault is told: the name of the object, or its class.
QString label(QAccessibleInterface *iface)
{
    const QString name = iface->object()->objectName();
    return name.isEmpty() ? QString::fromLatin1(iface->object()->metaObject()->className()) : name;
}

/// The group boxes around the interface, innermost first.
QList<const QGroupBox *> groupsAround(QAccessibleInterface *iface)
{
    QList<const QGroupBox *> groups;
    for (iface = iface->parent(); iface; iface = iface->parent()) {
        if (const auto *group = qobject_cast<const QGroupBox *>(iface->object()))
            groups += group;
    }
    return groups;
}

/// Whether a text has tags, entities or the blanks between them.
bool hasMarkup(const QString &text)
{
    static const QRegularExpression markup(uR"(</?[a-z]|&([a-z]+|#x?[0-9a-f]+);|^\s|\s$|\s\s)"_s,
                                           QRegularExpression::CaseInsensitiveOption);
    return Qt::mightBeRichText(text) || text.contains(markup);
}

/// What the form says of each widget: its name, and its description.
struct Spoken
{
    const char *widget;
    QString name;
    QString description = {};
};

const QList<Spoken> &spoken()
{
    static const QList<Spoken> list{
        {"treeWidget", u"Lignes du fichier GEDCOM"_s},
        {"cbSourceMultiUse", u"Sources utilisées plusieurs fois"_s},
        {"cbFiltreSensible", u"Différencier majuscules et minuscules dans le filtre (a != A)"_s},
        {"cbFiltrerRegex", u"Filtrer par expression régulière (regex)"_s},
        {"cbSourceDateDiff",
         u"Sources dont la date diffère de celle de l'évènement (Sources!=date)"_s,
         u"liste les sources dont la date d'évènement diffère"_s},
        {"leRecherche", u"Filtrer l'arbre"_s, u"filtrer"_s},
        {"mainGroupBox", u"Opérations sur le fichier"_s},
        {"cbEspacer", u"Espacer les Prénoms/NOMS/"_s, u"JeanMARTIN -> Jean MARTIN"_s},

        {"gbDelTags", u"Supprimer les balises"_s},
        {"leTagsToDel", u"Balises à supprimer"_s, TagsToolTip},
        {"pbPickTagToDel", u"Choisir dans l'arbre la balise à supprimer"_s},
        {"leValueToDel", u"Valeur ou sous-valeur recherchée"_s},
        {"cbDelIfContent", u"Uniquement si une valeur ou sous-valeur est :"_s,
         u"Recherche le texte dans la balise cible et ses sous balises"_s},
        {"cbDelEmptyClilds", u"Uniquement si sans enfants"_s},
        {"cbDelEmptyTags", u"Uniquement si vides"_s},
        {"cbDelIfContentRX", u"Valeur recherchée par expression régulière (regex)"_s},

        {"gbSetURLLinks", u"Générer les URL des médias sources"_s},
        {"pbImportCsvLinks", u"Fichier de correspondance"_s},
        {"leStrPlitCsv", u"Chaîne de séparation entre fichier et url"_s,
         u"chaîne de caractères unique au sein de la ligne \"fichier/url\" permettant de séparer "
         "le nom de fichier et son url"_s},
        {"cbUrlInEvt", u"Générer une note dans l'évènement"_s,
         u"Ajoute une balise NOTE référençant l'url de la source à une balise évènement"_s},
        {"cbUrlInSour", u"Générer un lien dans la source"_s,
         u"Ajoute une balise WWW référençant l'url de la source à une balise source"_s},
        {"cbDelTagObjeFile", u"Supprimer l'entrée OBJE correspondant au fichier"_s},
        {"gbExtractMediasToKeep", u"Extraire les médias non linkés"_s,
         u"copie les médias à afficher directement sans avoir à cliquer sur un lien"_s},
        {"pbExtractMediasToKeep", u"Choisir le dossier d'extraction"_s},
        {"leExtractMediasToKeep", u"Chemin du dossier d'extraction"_s},
        {"pbExtractMediasSource", u"Choisir le dossier source"_s},
        {"leExtractMediasSource", u"Chemin du dossier source"_s},

        {"gbClickablesLinks", u"Rendre les liens cliquable"_s,
         u"transforme une url en balise markdown ou html cliquable"_s},
        {"rbMarkdown", u"Markdown"_s},
        {"rbHtml", u"Html"_s},
        {"leTagToClickable", u"Balises dont les liens deviennent cliquables"_s, TagsToolTip},
        {"pickDestClickableTag",
         u"Choisir dans l'arbre la balise dont les liens deviennent cliquables"_s},

        {"gbReplaceMediaPath", u"Changer le chemin des médias"_s},
        {"leNewMediaPath", u"Nouveau chemin des médias"_s},
        {"pbOpenNewMediaPath", u"Choix du dossier des médias"_s},
        {"cbDelMediaPath", u"Supprimer le chemin des médias"_s,
         u"supprime le chemin absolu d'un fichier et ne conserve que le nom du fichier"_s},

        {"gbMoveTagContent", u"Copier / Déplacer des balises"_s,
         u"déplace le contenu d'une balise dans une autre"_s},
        {"pickDestTag", u"Choisir dans l'arbre la balise 2"_s},
        {"leTagDest", u"Balise 2, qui reçoit le contenu"_s, FullTagToolTip},
        {"cbCpSourDestContent", u"Contenu de la balise 1 dans la balise 2"_s},
        {"leTagSour", u"Balise 1, d'où vient le contenu"_s, FullTagToolTip},
        {"pickSrcTag", u"Choisir dans l'arbre la balise 1"_s},
        {"cbCreateDestTag", u"Créer la balise 2 si elle manque"_s},
        {"cbDelTagSour", u"Supprimer la balise 1"_s,
         u"la balise n'est supprimée que si elle n'a pas de sous balise"_s},

        {"gbReplaceString", u"Remplacer du texte"_s},
        {"pbSelectTagReplace", u"Choisir dans l'arbre la balise cible"_s},
        {"leTextDest", u"Texte de remplacement"_s},
        {"leTagToApply", u"Balises cibles du remplacement"_s,
         u"Laisser vide pour modifier n'importe où"_s},
        {"cbSensible", u"Différencier majuscules et minuscules (a != A)"_s,
         u"Différencier majuscules et minuscules"_s},
        {"leTextOri", u"Texte recherché"_s},
        {"cbRegex", u"Utiliser une expression régulière (regex)"_s,
         u"Utiliser une expression régulière"_s},

        {"pbApply", u"Appliquer les modifications"_s},
        {"pbReadSequence", u"Jouer la séquence"_s},
        {"menubar", u"Barre de menus"_s},
        {"menuFichier", u"Fichier"_s},
        {"menuOutils", u"Outils"_s},
        {"menuAide", u"Aide"_s},
    };
    return list;
}

/// Moves the focus through the window until it is back, and checks on the way what can be checked,
/// since an unchecked group is passed over. Returns the names of what had the focus.
QStringList walkByTab(Qt::KeyboardModifiers modifiers)
{
    const QWidget *first = QApplication::focusWidget();
    QStringList names;
    do {
        QWidget *widget = QApplication::focusWidget();
        names += widget->objectName();
        if (widget->property("checkable").toBool() && !widget->property("checked").toBool())
            QTest::keyClick(widget, Qt::Key_Space);
        QTest::keyClick(widget, Qt::Key_Tab, modifiers);
    } while (QApplication::focusWidget() != first && names.size() < spoken().size());
    return names;
}

} // namespace

/// What a screen reader says of the window, and that the keys alone reach all of it.
class TstAccessibility : public QObject
{
    Q_OBJECT

private slots:
    void everyControlHasANameOfItsOwn();
    void noMarkup();
    void richToolTipsAreDescribed();
    void widget_data();
    void widget();
    void everyWidgetIsListed();
    void otherWidgets();
    void textsAreTranslated();
    void translationSetsTextsOnly();
    void everyControlIsReachedByTab();
    void menusAreReachedByKeys();
};

void TstAccessibility::everyControlHasANameOfItsOwn()
{
    const LoadedSession session;
    session.trigger(u"actionJournal"_s);
    session.trigger(u"action_propos"_s);
    QStringList faults;
    int controls = 0;
    const QList<QAccessibleInterface *> windows = openWindows();
    QCOMPARE(windows.size(), 3);
    for (QAccessibleInterface *window : windows) {
        QMap<const QGroupBox *, QStringList> known; // the names in each group, or in none
        walk(window, [&](QAccessibleInterface *iface) {
            if (!isControl(iface))
                return;
            ++controls;
            const QString name = iface->text(QAccessible::Name);
            const QList<const QGroupBox *> groups = groupsAround(iface);
            const QGroupBox *group = groups.value(0);
            if (name.trimmed().isEmpty())
                faults += label(iface) + u" has no name"_s;
            for (const QGroupBox *around : groups) {
                if (name == around->title())
                    faults += label(iface) + u" is called like a group around it"_s;
            }
            // A menu is called like the entry that opens it.
            if (iface->role() == QAccessible::PopupMenu)
                return;
            if (known[group].contains(name))
                faults += label(iface) + u" is not the only one called "_s + name;
            known[group] += name;
        });
    }
    QCOMPARE(faults.join(u'\n'), QString());
    QVERIFY2(controls > spoken().size(), qPrintable(QString::number(controls)));
}

void TstAccessibility::noMarkup()
{
    const LoadedSession session;
    session.trigger(u"actionJournal"_s);
    session.trigger(u"action_propos"_s);
    QStringList faults;
    int texts = 0;
    const QList<QAccessibleInterface *> windows = openWindows();
    QCOMPARE(windows.size(), 3);
    for (QAccessibleInterface *window : windows) {
        walk(window, [&](QAccessibleInterface *iface) {
            if (!iface->object())
                return;
            for (const QAccessible::Text kind : {QAccessible::Name, QAccessible::Description}) {
                if (kind == QAccessible::Name && !isControl(iface))
                    continue;
                const QString text = iface->text(kind);
                if (hasMarkup(text))
                    faults += label(iface) + u": "_s + text;
                texts += text.isEmpty() ? 0 : 1;
            }
        });
    }
    QCOMPARE(faults.join(u'\n'), QString());
    QVERIFY(texts > spoken().size());
}

void TstAccessibility::richToolTipsAreDescribed()
{
    const Session session;
    QStringList missing;
    int rich = 0;
    const QWidgetList widgets = session.window->findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        if (!Qt::mightBeRichText(widget->toolTip()))
            continue;
        ++rich;
        if (widget->accessibleDescription().isEmpty())
            missing += widget->objectName();
    }
    QCOMPARE(missing.join(u'\n'), QString());
    QVERIFY(rich > 10);
}

void TstAccessibility::widget_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("description");

    for (const Spoken &row : spoken())
        QTest::newRow(row.widget) << row.name << row.description;
}

void TstAccessibility::widget()
{
    QFETCH(const QString, name);
    QFETCH(const QString, description);

    const Session session;
    auto *widget = session.find<QWidget>(QString::fromLatin1(QTest::currentDataTag()));
    QAccessibleInterface *iface = QAccessible::queryAccessibleInterface(widget);
    QCOMPARE(iface->text(QAccessible::Name), name);
    QCOMPARE(iface->text(QAccessible::Description), description);
}

void TstAccessibility::everyWidgetIsListed()
{
    const LoadedSession session;
    QStringList listed;
    for (const Spoken &row : spoken())
        listed += QString::fromLatin1(row.widget);
    QStringList missing;
    walk(QAccessible::queryAccessibleInterface(session.window.get()),
         [&](QAccessibleInterface *iface) {
             if (isControl(iface) && iface->object()->isWidgetType()
                 && iface->object() != session.window.get() && iface->object() != session.progress()
                 && !listed.contains(label(iface)))
                 missing += label(iface);
         });
    QCOMPARE(missing.join(u'\n'), QString());
}

void TstAccessibility::otherWidgets()
{
    const LoadedSession session;
    const auto nameOf = [](QObject *object) {
        return QAccessible::queryAccessibleInterface(object)->text(QAccessible::Name);
    };
    QCOMPARE(nameOf(session.progress()), u"Progression"_s);
    // A name would stand in front of what it has to tell.
    QCOMPARE(nameOf(session.find<QObject>(u"statusbar"_s)), session.status());
    QVERIFY(!session.status().isEmpty());

    session.trigger(u"action_propos"_s);
    QStringList pictures;
    const QList<QLabel *> labels =
        session.window->findChild<FenAPropos *>()->findChildren<QLabel *>();
    for (QLabel *label : labels) {
        if (!label->pixmap().isNull())
            pictures += nameOf(label);
    }
    QCOMPARE(pictures, QStringList{u"Logo de Varlune"_s});
}

void TstAccessibility::textsAreTranslated()
{
    QMainWindow window;
    Ui_MainWindow ui;
    ui.setupUi(&window);
    const QWidgetList widgets = window.findChildren<QWidget *>();
    const auto texts = [&widgets] {
        QStringList list;
        for (const QWidget *widget : widgets) {
            for (const QString &text :
                 {widget->accessibleName(), widget->accessibleDescription()}) {
                if (!text.isEmpty())
                    list += text;
            }
        }
        return list;
    };
    QStringList expected = texts();
    QVERIFY(expected.size() > 40);
    expected.replaceInStrings(QRegularExpression(u"^"_s), u"[MainWindow]"_s);
    const MarkingTranslator translator;
    ui.retranslateUi(&window);
    QCOMPARE(texts(), expected);
}

void TstAccessibility::translationSetsTextsOnly()
{
    // A change of the language must not undo what the user has done to the form.
    const QString source =
        QString::fromUtf8(readBytes(QStringLiteral(SOURCES "/ui_mainwindow.cpp")));
    const qsizetype start = source.indexOf("void Ui_MainWindow::retranslateUi("_L1);
    QVERIFY(start > 0);
    static const QRegularExpression call(uR"((?:->|\.)(\w+)\()"_s);
    QStringList called;
    for (auto it = call.globalMatch(source, start); it.hasNext();)
        called += it.next().captured(1);
    called.removeDuplicates();
    called.sort();
    const QStringList expected{
        u"columnCount"_s,       u"headerItem"_s,         u"setAccessibleDescription"_s,
        u"setAccessibleName"_s, u"setPlaceholderText"_s, u"setText"_s,
        u"setTitle"_s,          u"setToolTip"_s,         u"setWindowTitle"_s};
    QCOMPARE(called, expected);
}

void TstAccessibility::everyControlIsReachedByTab()
{
    const LoadedSession session;
    session.window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(session.window.get()));
    QStringList controls;
    for (const Spoken &row : spoken()) {
        const auto *widget = session.find<QWidget>(QString::fromLatin1(row.widget));
        if (widget->focusPolicy() & Qt::TabFocus)
            controls += QString::fromLatin1(row.widget);
    }
    // Of buttons that exclude each other the arrow keys reach the others.
    controls.removeOne(u"rbHtml"_s);
    // Two boxes on the way change what can be reached: the first time round one field is passed
    // before the box behind it opens it; later a box has closed the two controls before it.
    const auto but = [&controls](const QStringList &closed) {
        QStringList rest = controls;
        for (const QString &name : closed)
            rest.removeOne(name);
        return rest;
    };
    session.find<QWidget>(u"treeWidget"_s)->setFocus();
    QCOMPARE(walkByTab(Qt::NoModifier), but({u"leValueToDel"_s}));
    QStringList again = but({u"leNewMediaPath"_s, u"pbOpenNewMediaPath"_s});
    QCOMPARE(walkByTab(Qt::NoModifier), again);
    std::reverse(again.begin() + 1, again.end());
    QCOMPARE(walkByTab(Qt::ShiftModifier), again);

    session.find<QWidget>(u"rbMarkdown"_s)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    QCOMPARE(QApplication::focusWidget()->objectName(), u"rbHtml"_s);
    QVERIFY(session.isChecked(u"rbHtml"_s));
}

void TstAccessibility::menusAreReachedByKeys()
{
    const LoadedSession session;
    session.window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(session.window.get()));
    QStringList actions;
    QTest::keyClick(session.window.get(), Qt::Key_Alt);
    QCOMPARE(QApplication::focusWidget()->objectName(), u"menubar"_s);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    for (const QString &name : {u"menuFichier"_s, u"menuOutils"_s, u"menuAide"_s}) {
        const auto *menu = session.find<QMenu>(name);
        QCOMPARE(QApplication::activePopupWidget(), menu);
        for (const QAction *first = menu->activeAction(); first;) {
            actions += menu->activeAction()->objectName();
            QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Down);
            if (menu->activeAction() == first)
                break;
        }
        QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Right);
    }
    QCOMPARE(actions,
             (QStringList{u"actionEnregistrerFichier"_s, u"actionEnregistrerFichier_sous"_s,
                          u"actionJournal"_s, u"action_propos"_s}));
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
}

VARLUNE_TEST_MAIN(TstAccessibility)
#include "tst_accessibility.moc"
