#pragma once

#include <QDialog>

namespace Ui {
class RenameDialog;
}

// Asks for a port's new name; emits it only when it is new and not empty.
class RenameDialog : public QDialog
{
    Q_OBJECT

public:
    explicit RenameDialog(const QString &currentName, QWidget *parent = nullptr);
    ~RenameDialog() override;

signals:
    void Sig_SetNewName(const QString &newName);

private slots:
    void on_btnClose_clicked();
    void confirmSlot();

private:
    Ui::RenameDialog *ui;
    QString m_currentName;
};
