#pragma once

#include "dialogs/settingdialog.h"

class DeviceModel;
class MessageDistance;
class QLabel;
class QSlider;

// One port's volume. The level goes out when the slider is released; while
// open, the dialog follows the device's volumes without sending them back.
class VolumnSettingDialog : public SettingDialog
{
    Q_OBJECT

public:
    VolumnSettingDialog(int port, const DeviceModel *model, MessageDistance *link, QWidget *parent = nullptr);

private slots:
    void on_volumnSplider_sliderReleased();
    void on_btnApply_clicked();
    void on_btnClose_clicked();

private:
    void refresh();

    int m_port;
    const DeviceModel *m_model;
    MessageDistance *m_link;
    QSlider *m_slider;
    QLabel *m_value;
};
