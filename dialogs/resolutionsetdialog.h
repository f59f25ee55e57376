#pragma once

#include "dialogs/settingdialog.h"

#include <QStringList>

class DeviceModel;
class MessageDistance;
class QComboBox;

// Shows an output's resolution and sets it from the fixed list; for an input
// it shows the detected resolution only.
class ResolutionSetDialog : public SettingDialog
{
    Q_OBJECT

public:
    // `port` is the output, or -1 for input `input`.
    ResolutionSetDialog(int port, int input, const DeviceModel *model, MessageDistance *link,
                        QWidget *parent = nullptr);

    QComboBox *comboBox() const { return m_combo; }

private slots:
    void on_btnClose_clicked();
    void on_btnApply_clicked();

private:
    void sendResolution(int index);

    int m_port = -1;
    MessageDistance *m_link;
    QComboBox *m_combo;
};
