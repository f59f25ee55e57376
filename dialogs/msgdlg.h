#pragma once

#include <QDialog>

namespace Ui {
class MsgDlg;
}

// The modal message box every error shown to the user goes through.
class MsgDlg : public QDialog
{
    Q_OBJECT

public:
    explicit MsgDlg(QWidget *parent = nullptr);
    ~MsgDlg() override;

    void setTitle(const QString &title);
    void setText(const QString &text);
    QString text() const;

    // Runs the dialog modally: 1 for OK, 0 when closed.
    static int showMessage(const QString &text, const QString &title, QWidget *parent = nullptr);

private slots:
    void on_btnOk_clicked();
    void on_btnClose_clicked();

private:
    Ui::MsgDlg *ui;
};
