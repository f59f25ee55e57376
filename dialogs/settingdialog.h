#pragma once

#include <QDialog>

class QLabel;
class QVBoxLayout;

// The frame shared by the small per-port setting dialogs: a translucent margin,
// a white frame with the common shadow, a green title strip with the close
// button ("btnClose") and a body that each dialog fills.
class SettingDialog : public QDialog
{
    Q_OBJECT

public:
    SettingDialog(Qt::WindowFlags flags, QWidget *parent);

    QString titleText() const;

protected:
    void setTitleText(const QString &text);
    QVBoxLayout *body() const { return m_body; }
    // The closing row: "OK" at the right, named "btnApply" for the dialog's slot.
    void addApplyButton();

private:
    QLabel *m_title;
    QVBoxLayout *m_body;
};
