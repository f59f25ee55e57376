#include "mainwindow/settingspage.h"

#include "app/appsettings.h"
#include "device/devicemodel.h"
#include "device/devicerecord.h"
#include "device/messagedistance.h"
#include "dialogs/msgdlg.h"
#include "dialogs/switchcontrol.h"
#include "mainwindow/lazypage.h"
#include "store/accountstore.h"
#include "ui_aboutpage.h"
#include "ui_networkpage.h"
#include "ui_otherpage.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegExpValidator>

SettingsPage::SettingsPage(const Pages &pages, const AppSettings *settings, DeviceModel *model, MessageDistance *link,
                           const QString &softwareVersion, QObject *parent)
    : QObject(parent)
    , m_pages(pages)
    , m_settings(settings)
    , m_model(model)
    , m_link(link)
    , m_softwareVersion(softwareVersion)
{
    FirstShow::call(pages.network, [this] { buildNetworkPage(); });
    FirstShow::call(pages.other, [this] { buildOtherPage(); });
    FirstShow::call(pages.about, [this] { buildAboutPage(); });
    connect(model, &DeviceModel::versionsChanged, this, &SettingsPage::showVersions);
    connect(model, &DeviceModel::networkChanged, this, &SettingsPage::showNetwork);
}

SettingsPage::~SettingsPage() = default;

void SettingsPage::buildNetworkPage()
{
    m_network = std::make_unique<Ui::NetworkPage>();
    Ui::NetworkPage &form = *m_network;
    form.setupUi(m_pages.network);
    const QRegExp ipPattern("((25[0-5]|2[0-4][0-9]|1[0-9][0-9]|[1-9][0-9]|[0-9])[\\.]){3}"
                            "(25[0-5]|2[0-4][0-9]|1[0-9][0-9]|[1-9][0-9]|[0-9])");
    auto *ipValidator = new QRegExpValidator(ipPattern, this);
    for (QLineEdit *edit : {form.ipEdit, form.gatewayEdit, form.subnetEdit})
        edit->setValidator(ipValidator);
    form.macEdit->setValidator(new QRegExpValidator(QRegExp("^([0-9a-fA-F]{2}(:|-)){5}[0-9a-fA-F]{2}$"), this));

    connect(form.confirmBtn, &QPushButton::clicked, this, [this] {
        const Ui::NetworkPage &form = *m_network;
        m_sentNetwork = QStringList{form.ipEdit->text(), form.gatewayEdit->text(), form.subnetEdit->text(), form.macEdit->text()};
        m_link->sendNetworkSetting(m_sentNetwork[0], m_sentNetwork[1], m_sentNetwork[2], m_sentNetwork[3]);
        m_link->sendNetInfoQuery();
    });
    // One click would wipe a device in use: ask first, naming the device.
    connect(form.factoryResetBtn, &QPushButton::clicked, this, [this] {
        const QString text = tr("Reset the device at %1 to its factory settings? Its routes and settings are lost.")
                                 .arg(m_link->host());
        if (MsgDlg::showMessage(text, tr("Factory reset"), m_pages.network->window()) == 1)
            m_link->sendFactoryDefault();
    });
    showNetwork();
}

void SettingsPage::buildOtherPage()
{
    m_other = std::make_unique<Ui::OtherPage>();
    Ui::OtherPage &form = *m_other;
    form.setupUi(m_pages.other);
    connect(form.CaptionBtn, &QPushButton::clicked, this, &SettingsPage::captionClicked);
    connect(form.usermanageBtn, &QPushButton::clicked, this, &SettingsPage::userManagementClicked);
    connect(form.reloginBtn, &QPushButton::clicked, this, &SettingsPage::reloginClicked);

    form.languageComboBox->addItem(QString::fromUtf8("简体中文"));
    form.languageComboBox->addItem("English");
    form.languageComboBox->setCurrentIndex(m_settings->language());
    // Connected after the start selection, which must send nothing.
    connect(form.languageComboBox, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &SettingsPage::languageChosen);

    form.buzzerSwitch->setCheckedColor(QColor("#338c56"));
    // Dark enough that the white thumb stands out when the switch is off.
    form.buzzerSwitch->setBackgroundColor(QColor("#4a5a51"));
    connect(form.buzzerSwitch, &SwitchControl::toggled, m_link, &MessageDistance::sendBell);
    {
        const QSignalBlocker blocker(form.noLoginCheckBox);
        form.noLoginCheckBox->setChecked(AccountStore::loginModel() != 0);
    }
    connect(form.noLoginCheckBox, &QCheckBox::toggled, this, [](bool checked) { AccountStore::setLoginModel(checked ? 1 : 0); });
    if (m_settings->adminFlag() == 0)
        form.userGroup->hide();
}

void SettingsPage::buildAboutPage()
{
    m_about = std::make_unique<Ui::AboutPage>();
    m_about->setupUi(m_pages.about);
    m_about->labelAboutLogo->setStyleSheet("background-image: url(:/Images/logo.png); background-position:center;"
                                           "background-repeat:no-repeat;");
    // Until the device has told its versions the form's own texts stand, as at the start.
    if (!m_model->record().fpgaVersion().isEmpty() || !m_model->record().mcuVersion().isEmpty())
        showVersions();
}

void SettingsPage::retranslate()
{
    if (m_network)
        m_network->retranslateUi(m_pages.network);
    if (m_other)
        m_other->retranslateUi(m_pages.other);
    if (m_about) {
        m_about->retranslateUi(m_pages.about);
        showVersions();  // the form put its own texts back
    }
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
    if (!m_network)
        return;  // the page shows the record when it is built
    m_network->ipEdit->setText(record.netIp());
    m_network->gatewayEdit->setText(record.netGateway());
    m_network->subnetEdit->setText(record.netSubnet());
    m_network->macEdit->setText(record.netMac());
}

void SettingsPage::showVersions()
{
    if (!m_about)
        return;
    m_about->fpgaVersionLabel->setText(m_model->record().fpgaVersion());
    m_about->mcuVersionLabel->setText(m_model->record().mcuVersion());
    m_about->softwareVersionLabel->setText(m_softwareVersion);
}
