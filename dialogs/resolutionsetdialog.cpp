#include "dialogs/resolutionsetdialog.h"

#include "device/commandtext.h"
#include "device/devicemodel.h"
#include "device/messagedistance.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>

ResolutionSetDialog::ResolutionSetDialog(int port, int input, const DeviceModel *model, MessageDistance *link,
                                         QWidget *parent)
    : SettingDialog(Qt::WindowSystemMenuHint, parent)
    , m_port(port)
    , m_link(link)
    , m_combo(new QComboBox(this))
{
    m_combo->setObjectName("comboBox");
    m_combo->addItems(CommandText::resolutions());
    m_combo->setMinimumWidth(260);
    auto *row = new QHBoxLayout;
    row->addWidget(new QLabel(tr("Resolution"), this));
    row->addWidget(m_combo, 1);
    body()->addLayout(row);

    const DeviceRecord &record = model->record();
    if (port != -1) {
        setTitleText(tr("[OutChannel%1]").arg(port));
        m_combo->setCurrentText(record.outputResolutionMap().value(port));
        connect(m_combo, QOverload<int>::of(&QComboBox::activated), this, &ResolutionSetDialog::sendResolution);
    } else {
        // An input's resolution is what its source sends: shown as reported
        // ("noinput" too), and not a choice, so nothing can be sent from here.
        setTitleText(tr("[InChannel%1]").arg(input));
        m_combo->setEditable(true);
        m_combo->setCurrentText(record.inputResolutionMap().value(input));
        m_combo->setEnabled(false);
    }

    addApplyButton();

    QMetaObject::connectSlotsByName(this);
}

void ResolutionSetDialog::sendResolution(int index)
{
    // Sent at the moment of choosing, also when the choice is the current one.
    m_link->sendPortResolution(m_port, m_combo->itemText(index));
}

void ResolutionSetDialog::on_btnClose_clicked() { done(0); }
void ResolutionSetDialog::on_btnApply_clicked() { done(1); }
