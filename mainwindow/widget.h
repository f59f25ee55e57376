#pragma once

#include "dialogs/basewidget.h"

#include <QJsonObject>
#include <QTranslator>

class AppSettings;
class DeviceModel;
class MessageDistance;
class PortMenus;
class PortNames;
class RoutingPages;
class SettingsPage;
class StatusLine;
class QMenu;

// What the main window works on, handed in by whoever builds it.
struct WindowContext
{
    AppSettings *settings;
    DeviceModel *model;
    MessageDistance *link;
    PortNames *names;
};

namespace Ui {
class Widget;
}

// The main window: routing pages, the signal list, settings pages and the
// connection status line. Every device reply arrives here as a link signal.
class Widget : public BaseWidget
{
    Q_OBJECT

public:
    static constexpr const char *SoftwareVersion = "V1.0.2(20231215)";
    // How long the routing grids wait for the connection before they are built anyway.
    static constexpr int GridGraceMs = 50;

    explicit Widget(const WindowContext &context, QWidget *parent = nullptr);
    ~Widget() override;

    QString statusText() const;
    // The short notice beside the status: a refused or failed action.
    QString noticeText() const;
    // The context menu of a port view, built as it is shown (for the view's current port).
    QMenu *createPortMenu(QWidget *view);
    // Face of join-layout button `id` as last drawn: (columns, rows).
    QSize joinFace(int id) const;

public slots:
    // Declared in this order on purpose: tools and connections rely on it.
    void refrenshSignalSlot();
    void receiveVersionSlot(QJsonObject obj);
    void receiveCheckStateSlot(QJsonObject obj);
    void receiveInputChannelStateSlot(QJsonObject obj);
    void receiveNetWorkImforamtionSlot(QJsonObject obj);
    void receiveVideoMapSlot(QJsonObject obj);
    void receiveAudioMapSlot(QJsonObject obj);
    void receiveIrMapSlot(QJsonObject obj);
    void receiveInChannelResolutionSlot(QJsonObject obj);
    void receiveOutChannelResolutionSlot(QJsonObject obj);
    void receiveOsdImfSlot(int port, QJsonObject obj);
    void receiveTitleImfSlot(QJsonObject obj);
    void receiveVolumeValueSlot(QJsonObject obj);
    void JoinLayoutButtonChangeSlot(int id);
    void on_usermanageBtn_clicked();
    void on_CaptionBtn_clicked();
    void on_btn_RestoreOrMax_clicked();
    void on_refrenshBtn_clicked();
    void receiveNetWorkSuccessfulSlot();
    void receivenetWorkFailSlot();
    void receiveConnectingSlot();
    void on_languageComboBox_currentIndexChanged(int index);
    void disConnectedSlot();

protected:
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void applyStartLanguage();
    void installLanguage(int index);
    void runLoginDecision();
    void relogin();
    void setStatus(int state);

    void tabChanged(int index);
    void setUpNotices();
    void showNotice(const QString &text);

    Ui::Widget *ui;
    AppSettings *m_settings;
    DeviceModel *m_model;
    MessageDistance *m_link;
    RoutingPages *m_pages = nullptr;
    PortMenus *m_portMenus = nullptr;
    SettingsPage *m_settingsPage = nullptr;
    StatusLine *m_status = nullptr;
    QList<QWidget *> m_settingsTabs;
    bool m_tabBarIndented = false;
    QWidget *m_presetsPage = nullptr;
    QWidget *m_historyPage = nullptr;
    QTranslator m_translator;
};
