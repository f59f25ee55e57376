#pragma once

#include "device/devicerecord.h"
#include "dialogs/settingdialog.h"

#include <QJsonObject>

class DeviceModel;
class MessageDistance;
class QButtonGroup;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QSlider;
class QToolButton;

// The device's overlays: in logo mode the OSD logo of one port, in caption
// mode the moving caption on a chosen output. Every setting goes out at once;
// the content is uploaded as a 1-bit bitmap made from a text or a picture.
class TitleOrOsdDialog : public SettingDialog
{
    Q_OBJECT

public:
    // `target` -1: caption mode; otherwise the port of the logo.
    TitleOrOsdDialog(int target, const DeviceModel *model, MessageDistance *link, QWidget *parent = nullptr);

    bool logoMode() const { return m_logoMode; }

private slots:
    void on_btnClose_clicked();
    void on_OkBtn_clicked();
    void on_ColorSetting_clicked();
    void on_BgColorSetting_clicked();
    void on_BrowserBtn_clicked();
    void on_uploadCharBtn_clicked();
    void on_speedSplider_sliderReleased();
    void on_IsShowCheck_toggled(bool checked);
    void on_BgColorSwitch_toggled(bool checked);
    void directionButtonClicked(int id, bool bSet);
    void on_uploadImgBtn_clicked();
    void on_EraseBtn_clicked();

    // The device's overlay state, each report with its own key spellings.
    void receiveOsdImfSlot(int port, const QJsonObject &obj);
    void receiveTitleImfSlot(const QJsonObject &obj);

private:
    // This reader keeps its own rules (JSON numbers and strings as they come);
    // the record is the model's, defaults included.
    static OverlayRecord readState(const QJsonObject &obj, const char *switchKey, const char *speedKey,
                                  const char *backgroundKey);
    void showState(const OverlayRecord &state);
    void buildForm();
    void sendPosition();
    QColor pickColour(QToolButton *button);
    void upload(const QString &bitmapPath, bool renderedText);

    int m_target;
    bool m_logoMode;
    MessageDistance *m_link;
    QButtonGroup *m_direction = nullptr;
    QCheckBox *m_show = nullptr;
    QSlider *m_speed = nullptr;
    QLabel *m_speedValue = nullptr;
    QToolButton *m_colour = nullptr;
    QCheckBox *m_backgroundSwitch = nullptr;
    QToolButton *m_backgroundColour = nullptr;
    QLineEdit *m_x = nullptr;
    QLineEdit *m_y = nullptr;
    QLineEdit *m_text = nullptr;
    QComboBox *m_fontFamily = nullptr;
    QComboBox *m_fontSize = nullptr;
    QToolButton *m_bold = nullptr;
    QToolButton *m_italic = nullptr;
    QToolButton *m_underline = nullptr;
    QLineEdit *m_imagePath = nullptr;
    QComboBox *m_outputs = nullptr;
};
