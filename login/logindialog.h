#pragma once

#include <QDialog>
#include <QTimer>

#include <memory>

class AccountStore;

namespace Ui {
class LoginDialog;
}

// Checks the operator against the local accounts, remembers the password on
// request, stores address and user, and starts the device connection.
class LoginDialog : public QDialog
{
    Q_OBJECT

public:
    explicit LoginDialog(QWidget *parent = nullptr);
    ~LoginDialog() override;

    QString tipText() const;

private slots:
    void on_btnLogin_clicked();
    void on_btnClose_clicked();
    void on_mini_clicked();
    void on_settingBtn_clicked();
    void connectSuccessSlot();
    void connectFailureSlot();
    void togglePasswordShownSlot();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void showTip(const QString &text);

    Ui::LoginDialog *ui;
    // Never assigned: account operations need no state. Its emptiness decides
    // what the connection-success message says.
    std::unique_ptr<AccountStore> m_accountHandle;
    QTimer m_tipTimer;
};
