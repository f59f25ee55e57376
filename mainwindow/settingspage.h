#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

class DeviceModel;
class MessageDistance;
class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class SwitchControl;

// The device page of the settings: network parameters, buzzer, factory reset,
// the log-in choice and the versions. Shows the device model; the buttons talk
// to the device.
class SettingsPage : public QObject
{
    Q_OBJECT

public:
    struct Views
    {
        QLineEdit *ip;
        QLineEdit *gateway;
        QLineEdit *subnet;
        QLineEdit *mac;
        QPushButton *confirm;
        QPushButton *factoryReset;
        SwitchControl *buzzer;
        QCheckBox *noLogin;
        QLabel *fpgaVersion;
        QLabel *mcuVersion;
        QLabel *softwareVersion;
    };

    SettingsPage(const Views &views, DeviceModel *model, MessageDistance *link, const QString &softwareVersion,
                 QObject *parent = nullptr);

    // Writes the device's network values into the fields, over any unsent edits.
    void showNetwork();
    // Writes the versions again (a re-translated form has put its defaults back).
    void showVersions();

signals:
    // The device's network report differs from the settings just sent.
    void notice(const QString &text);

private:
    Views m_views;
    DeviceModel *m_model;
    MessageDistance *m_link;
    QString m_softwareVersion;
    QStringList m_sentNetwork;  // what the last confirm sent, until the device reports
};
