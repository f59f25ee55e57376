#include "mainwindow/settingspage.h"

#include "device/devicemodel.h"
#include "device/devicerecord.h"
#include "device/messagedistance.h"
#include "dialogs/msgdlg.h"
#include "dialogs/switchcontrol.h"
#include "store/accountstore.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegExpValidator>

SettingsPage::SettingsPage(const Views &views, DeviceModel *model, MessageDistance *link,
                           const QString &softwareVersion, QObject *parent)
    : QObject(parent)
    , m_views(views)
    , m_model(model)
    , m_link(link)
    , m_softwareVersion(softwareVersion)
{
    const QRegExp ipPattern("((25[0-5]|2[0-4][0-9]|1[0-9][0-9]|[1-9][0-9]|[0-9])[\\.]){3}"
                            "(25[0-5]|2[0-4][0-9]|1[0-9][0-9]|[1-9][0-9]|[0-9])");
    auto *ipValidator = new QRegExpValidator(ipPattern, this);
    for (QLineEdit *edit : {views.ip, views.gateway, views.subnet})
        edit->setValidator(ipValidator);
    views.mac->setValidator(new QRegExpValidator(QRegExp("^([0-9a-fA-F]{2}(:|-)){5}[0-9a-fA-F]{2}$"), this));

    views.buzzer->setCheckedColor(QColor("#338c56"));
    // Dark enough that the white thumb stands out when the switch is off.
    views.buzzer->setBackgroundColor(QColor("#4a5a51"));

    connect(views.confirm, &QPushButton::clicked, this, [this] {
        m_sentNetwork = QStringList{m_views.ip->text(), m_views.gateway->text(), m_views.subnet->text(), m_views.mac->text()};
        m_link->sendNetworkSetting(m_sentNetwork[0], m_sentNetwork[1], m_sentNetwork[2], m_sentNetwork[3]);
        m_link->sendNetInfoQuery();
    });
    // One click would wipe a device in use: ask first, naming the device.
    connect(views.factoryReset, &QPushButton::clicked, this, [this] {
        const QString text = tr("Reset the device at %1 to its factory settings? Its routes and settings are lost.")
                                 .arg(m_link->host());
        if (MsgDlg::showMessage(text, tr("Factory reset"), m_views.factoryReset->window()) == 1)
            m_link->sendFactoryDefault();
    });
    connect(views.buzzer, &SwitchControl::toggled, link, &MessageDistance::sendBell);
    {
        const QSignalBlocker blocker(views.noLogin);
        views.noLogin->setChecked(AccountStore::loginModel() != 0);
    }
    connect(views.noLogin, &QCheckBox::toggled, this, [](bool checked) { AccountStore::setLoginModel(checked ? 1 : 0); });

    connect(model, &DeviceModel::versionsChanged, this, &SettingsPage::showVersions);
    connect(model, &DeviceModel::networkChanged, this, &SettingsPage::showNetwork);
}

void SettingsPage::showNetwork()
{
    const DeviceRecord &record = m_model->record();
    if (!m_sentNetwork.isEmpty()) {
        // The fields are about to show the device's values: say when it did not take ours.
        const QStringList reported{record.netIp(), record.netGateway(), record.netSubnet(), record.netMac()};
        // A MAC may come back in another case or with the other separator.
        auto same = [](QStringList values) {
            values[3] = values[3].toLower().replace('-', ':');
            return values;
        };
        if (same(reported) != same(m_sentNetwork))
            emit notice(tr("The device did not take the network settings; it reports %1.").arg(reported.join(", ")));
        m_sentNetwork.clear();
    }
    m_views.ip->setText(record.netIp());
    m_views.gateway->setText(record.netGateway());
    m_views.subnet->setText(record.netSubnet());
    m_views.mac->setText(record.netMac());
}

void SettingsPage::showVersions()
{
    m_views.fpgaVersion->setText(m_model->record().fpgaVersion());
    m_views.mcuVersion->setText(m_model->record().mcuVersion());
    m_views.softwareVersion->setText(m_softwareVersion);
}
