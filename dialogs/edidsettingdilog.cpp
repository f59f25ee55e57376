#include "dialogs/edidsettingdilog.h"

#include "device/commandtext.h"
#include "device/devicemodel.h"
#include "device/devicestate.h"
#include "device/messagedistance.h"
#include "dialogs/msgdlg.h"

#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

EdidSettingDilog::EdidSettingDilog(int port, const DeviceModel *model, MessageDistance *link, QWidget *parent)
    : SettingDialog(Qt::Tool, parent)
    , m_port(port)
    , m_link(link)
    , m_outputs(new QComboBox(this))
    , m_path(new QLineEdit(this))
{
    setTitleText(tr("EDID Setting [InChannel%1]").arg(port));
    m_outputs->setObjectName("comboBox");
    const int outputs = DeviceState::modelPorts(model->record().modelFlag());
    for (int n = 1; n <= outputs; ++n)
        m_outputs->addItem(tr("OutPut Port %1").arg(n));
    m_path->setObjectName("lineEdit");
    m_path->setMinimumWidth(260);

    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(10);
    grid->setVerticalSpacing(12);
    grid->addWidget(new QLabel(tr("Copy from"), this), 0, 0);
    grid->addWidget(m_outputs, 0, 1);
    auto *copy = new QPushButton(tr("Copy"), this);
    copy->setObjectName("btnCopy");
    grid->addWidget(copy, 0, 2);
    grid->addWidget(new QLabel(tr("EDID file"), this), 1, 0);
    grid->addWidget(m_path, 1, 1);
    auto *browse = new QPushButton(tr("Browse"), this);
    browse->setObjectName("btnBrowse");
    grid->addWidget(browse, 1, 2);
    auto *upload = new QPushButton(tr("Upload"), this);
    upload->setObjectName("UploadBtn");
    grid->addWidget(upload, 2, 2);
    body()->addLayout(grid);

    QMetaObject::connectSlotsByName(this);
}

void EdidSettingDilog::on_btnBrowse_clicked()
{
    const QString path = QFileDialog::getOpenFileName(this, tr("请选择更新文件"), "/", tr("支持文件 (*.bin);; 所有文件(*.*);;"));
    if (!path.isEmpty())
        m_path->setText(path);
}

void EdidSettingDilog::on_btnCopy_clicked()
{
    m_link->sendCopyEdid(m_port, m_outputs->currentIndex() + 1);
}

void EdidSettingDilog::on_UploadBtn_clicked()
{
    if (m_path->text().isEmpty())
        return;
    QFile file(m_path->text());
    if (!file.open(QIODevice::ReadOnly))
        return;
    if (file.size() == 0) {
        MsgDlg::showMessage(tr("File is empty"), tr("error"), this);
        return;
    }
    // Sent as it is: the device judges the content.
    m_link->sendFile(CommandText::updateEdid(m_port), file.readAll(), CommandText::done());
}

void EdidSettingDilog::on_btnClose_clicked() { done(0); }
