#pragma once

#include "dialogs/settingdialog.h"

class DeviceModel;
class MessageDistance;
class QComboBox;
class QLineEdit;

// Sets one input's EDID: a copy of an output's, or a ".bin" file uploaded
// over the file connection.
class EdidSettingDilog : public SettingDialog
{
    Q_OBJECT

public:
    EdidSettingDilog(int port, const DeviceModel *model, MessageDistance *link, QWidget *parent = nullptr);

private slots:
    void on_btnBrowse_clicked();
    void on_btnCopy_clicked();
    void on_UploadBtn_clicked();
    void on_btnClose_clicked();

private:
    int m_port;
    MessageDistance *m_link;
    QComboBox *m_outputs;
    QLineEdit *m_path;
};
