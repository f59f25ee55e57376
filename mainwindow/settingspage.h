#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

class AppSettings;
class DeviceModel;
class MessageDistance;
class QWidget;

namespace Ui {
class AboutPage;
class NetworkPage;
class OtherPage;
}

// The settings pages: network parameters and factory reset, caption, language,
// buzzer, log-in choice, user management and re-login, and the versions. Each
// page gets its form when first shown; it then shows the device model, and its
// buttons talk to the device or are handed on to the window.
class SettingsPage : public QObject
{
    Q_OBJECT

public:
    struct Pages
    {
        QWidget *network;
        QWidget *other;
        QWidget *about;
    };

    SettingsPage(const Pages &pages, const AppSettings *settings, DeviceModel *model, MessageDistance *link,
                 const QString &softwareVersion, QObject *parent = nullptr);
    ~SettingsPage() override;

    // Writes the device's network values into the fields, over any unsent edits.
    void showNetwork();
    // Writes the versions again (a re-translated form has put its defaults back).
    void showVersions();
    // The built pages in the language just installed; the versions are kept.
    void retranslate();

signals:
    // The device's network report differs from the settings just sent.
    void notice(const QString &text);
    // The buttons and the language box of the other settings page.
    void captionClicked();
    void userManagementClicked();
    void reloginClicked();
    void languageChosen(int index);

private:
    void buildNetworkPage();
    void buildOtherPage();
    void buildAboutPage();

    Pages m_pages;
    const AppSettings *m_settings;
    DeviceModel *m_model;
    MessageDistance *m_link;
    QString m_softwareVersion;
    QStringList m_sentNetwork;  // what the last confirm sent, until the device reports
    std::unique_ptr<Ui::NetworkPage> m_network;
    std::unique_ptr<Ui::OtherPage> m_other;
    std::unique_ptr<Ui::AboutPage> m_about;
};
