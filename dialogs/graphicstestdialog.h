#pragma once

#include "dialogs/settingdialog.h"

class MessageDistance;

// Makes the device show a test pattern on one input or output. Each pattern
// goes out the moment its button is chosen.
class GraphicsTestDialog : public SettingDialog
{
    Q_OBJECT

public:
    GraphicsTestDialog(int port, bool isInput, MessageDistance *link, QWidget *parent = nullptr);

private slots:
    void on_btnClose_clicked();
    void on_btnApply_clicked();
    void on_radioButton_Through_clicked(bool checked);
    void on_radioButton_RGB_bars_clicked(bool checked);
    void on_radioButton_16levelsofgray_clicked(bool checked);
    void on_radioButton_32levelsofgray_clicked(bool checked);
    void on_radioButton_64levelsofgray_clicked(bool checked);
    void on_radioButton_RedGrid_clicked(bool checked);
    void on_radioButton_GreenGrid_clicked(bool checked);
    void on_radioButton_BlueGrid_clicked(bool checked);
    void on_radioButton_WhiteGrid_clicked(bool checked);
    void on_radioButton_HorizontalScrollBar_clicked(bool checked);
    void on_radioButton_VerticalScrollBar_clicked(bool checked);
    void on_radioButton_SolidColor_clicked();

private:
    void sendPattern(int pattern);
    void sendIfChecked(bool checked, int pattern);

    int m_port;
    bool m_isInput;
    MessageDistance *m_link;
};
