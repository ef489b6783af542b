#include "fenjournal.h"

#include <QHBoxLayout>
#include <QIcon>
#include <QPlainTextEdit>

using namespace Qt::StringLiterals;

FenJournal::FenJournal(QWidget *parent, QString texteAAfficher, QString titre) : QWidget(parent)
{
    resize(1000, 800);
    auto *layout = new QHBoxLayout;
    auto *ptEdit = new QPlainTextEdit;
    ptEdit->appendPlainText(texteAAfficher);
    ptEdit->setReadOnly(true);
    setWindowFlags(Qt::Tool);
    setWindowTitle(titre);
    layout->addWidget(ptEdit);
    setLayout(layout);
    setWindowIcon(QIcon(u":/icones/repo.png"_s));
    ptEdit->setAccessibleName(titre);
}
