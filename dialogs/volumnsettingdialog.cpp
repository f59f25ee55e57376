#include "dialogs/volumnsettingdialog.h"

#include "device/devicemodel.h"
#include "device/messagedistance.h"
#include "mainwindow/sigmanager.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>

VolumnSettingDialog::VolumnSettingDialog(int port, const DeviceModel *model, MessageDistance *link, QWidget *parent)
    : SettingDialog(Qt::Tool, parent)
    , m_port(port)
    , m_model(model)
    , m_link(link)
    , m_slider(new QSlider(Qt::Horizontal, this))
    , m_value(new QLabel(this))
{
    setTitleText(tr("Volume Setting [InChannel%1]").arg(port));
    m_slider->setObjectName("volumnSplider");
    m_slider->setRange(0, 100);
    m_slider->setPageStep(1);
    m_slider->setMinimumWidth(260);
    m_value->setObjectName("valueLabel");
    m_value->setMinimumWidth(32);
    auto *row = new QHBoxLayout;
    row->addWidget(new QLabel(tr("Volume"), this));
    row->addWidget(m_slider, 1);
    row->addWidget(m_value);
    body()->addLayout(row);

    addApplyButton();
    QMetaObject::connectSlotsByName(this);

    connect(SigManager::instance(), &SigManager::Sig_UpdateVolumes, this, &VolumnSettingDialog::refresh);
    refresh();  // what is known now, until the device answers
    m_link->sendVolumeQuery();
}

void VolumnSettingDialog::refresh()
{
    const int volume = m_model->record().volumeMap().value(m_port);
    const QSignalBlocker blocker(m_slider);
    m_slider->setValue(volume);
    m_value->setText(QString("%1").arg(volume));
}

void VolumnSettingDialog::on_volumnSplider_sliderReleased()
{
    m_value->setText(QString::number(m_slider->value()));
    m_link->sendVolume(m_port, m_slider->value());
}

void VolumnSettingDialog::on_btnApply_clicked() { done(1); }
void VolumnSettingDialog::on_btnClose_clicked() { done(0); }
