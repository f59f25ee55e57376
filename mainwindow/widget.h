#pragma once

#include "dialogs/basewidget.h"

#include <QJsonObject>
#include <QTranslator>

namespace Ui {
class Widget;
}

// The main window: title bar, routing pages and the connection status line.
class Widget : public BaseWidget
{
    Q_OBJECT

public:
    explicit Widget(QWidget *parent = nullptr);
    ~Widget() override;

    QString statusText() const;

public slots:
    void on_usermanageBtn_clicked();
    void on_btn_RestoreOrMax_clicked();
    void on_refrenshBtn_clicked();
    void receiveNetWorkSuccessfulSlot();
    void receivenetWorkFailSlot();
    void receiveConnectingSlot();
    void disConnectedSlot();

private slots:
    void reloginSlot();

private:
    void runLoginDecision();
    void setStatus(const QString &text, int state);
    QString formatStatus(const char *source) const;

    void applyStartLanguage();

    Ui::Widget *ui;
    QTranslator m_translator;
    bool m_maximized = false;
};
