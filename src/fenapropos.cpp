#include "fenapropos.h"

#include <QLabel>
#include <QPixmap>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

FenAPropos::FenAPropos(QWidget *parent) : QWidget(parent)
{
    auto *layout = new QVBoxLayout;
    auto *labelTexte = new QLabel;
    auto *labelImage = new QLabel;
    setWindowFlags(Qt::Tool);
    setWindowModality(Qt::WindowModal);
    setWindowTitle(QObject::tr("À propos de ") + getAppName());
    labelImage->setPixmap(QPixmap(u":/icones/logo_varlune.png"_s));
    labelTexte->setText("<strong>"_L1 + getAppName() + "</strong><br><br>"_L1
                        + QObject::tr("Version ") + getVersion() + QObject::tr(" du 23 août 2024")
                        + "<br><br>"_L1 + QObject::tr("Contact : contact@varlune.example"));
    layout->addWidget(labelImage);
    layout->addWidget(labelTexte);
    setLayout(layout);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    labelImage->setAccessibleName(QObject::tr("Logo de ") + getAppName());
}

QString FenAPropos::getVersion()
{
    return u"v1.9.0"_s;
}

QString FenAPropos::getAppName()
{
    return u"Varlune"_s;
}
