#include "dialogs/titleorosddialog.h"

#include "device/commandtext.h"
#include "device/devicemodel.h"
#include "device/devicestate.h"
#include "device/messagedistance.h"
#include "dialogs/bitmapconversion.h"
#include "dialogs/msgdlg.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDebug>
#include <QFile>
#include <QFileDialog>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QToolButton>

namespace {
template<typename T>
T *named(QWidget *parent, const char *name, T *widget)
{
    widget->setParent(parent);
    widget->setObjectName(name);
    return widget;
}
} // namespace

TitleOrOsdDialog::TitleOrOsdDialog(int target, const DeviceModel *model, MessageDistance *link, QWidget *parent)
    : SettingDialog(Qt::Tool, parent)
    , m_target(target)
    , m_logoMode(target != -1)
    , m_link(link)
{
    setTitleText(m_logoMode ? tr("OSD Setting") : tr("Caption Setting"));
    buildForm();

    m_fontFamily->setCurrentText("Microsoft YaHei UI");
    m_fontFamily->lineEdit()->setCursorPosition(0);
    const bool caption = target < 1;
    for (int size = caption ? 100 : 1; size <= (caption ? 500 : 100); ++size)
        m_fontSize->addItem(QString::number(size));
    m_fontSize->setCurrentText(caption ? "200" : "35");
    for (QToolButton *button : {m_bold, m_italic, m_underline})
        button->setCheckable(true);
    m_outputs->clear();
    const int outputs = DeviceState::modelPorts(model->record().modelFlag());
    for (int n = 1; n <= outputs; ++n)
        m_outputs->addItem(tr("Out%1").arg(n), n);

    connect(m_x, &QLineEdit::editingFinished, this, &TitleOrOsdDialog::sendPosition);
    connect(m_y, &QLineEdit::editingFinished, this, &TitleOrOsdDialog::sendPosition);
    connect(m_direction, &QButtonGroup::idToggled, this, &TitleOrOsdDialog::directionButtonClicked);
    connect(link, &MessageDistance::receiveOsdImfSig, this, &TitleOrOsdDialog::receiveOsdImfSlot);
    connect(link, &MessageDistance::receiveTitleImfSig, this, &TitleOrOsdDialog::receiveTitleImfSlot);
    QMetaObject::connectSlotsByName(this);
}

void TitleOrOsdDialog::buildForm()
{
    auto *target = new QHBoxLayout;
    if (m_logoMode) {
        target->addWidget(named(this, "portLabel", new QLabel(tr("[Input%1]").arg(m_target))));
    } else {
        target->addWidget(new QLabel(tr("Output"), this));
    }
    m_outputs = named(this, "outputComboBox", new QComboBox);
    m_outputs->setVisible(!m_logoMode);
    target->addWidget(m_outputs);
    target->addStretch();
    body()->addLayout(target);

    auto *display = new QGroupBox(tr("Display"), this);
    auto *displayGrid = new QGridLayout(display);
    m_show = named(this, "IsShowCheck", new QCheckBox(tr("Show")));
    displayGrid->setColumnMinimumWidth(0, 90);
    displayGrid->addWidget(m_show, 0, 0, Qt::AlignTop);
    displayGrid->addWidget(new QLabel(tr("Speed"), this), 0, 1);
    m_speed = named(this, "speedSplider", new QSlider(Qt::Horizontal));
    m_speed->setRange(0, 10);
    m_speed->setPageStep(1);
    displayGrid->addWidget(m_speed, 0, 2);
    m_speedValue = named(this, "speedValueLabel", new QLabel("0"));
    displayGrid->addWidget(m_speedValue, 0, 3);
    displayGrid->addWidget(new QLabel(tr("Direction"), this), 1, 1);
    m_direction = new QButtonGroup(this);
    auto *directions = new QHBoxLayout;
    for (int id = 0; id < 2; ++id) {
        auto *button = named(this, id == 0 ? "leftBtn" : "rightBtn", new QPushButton(id == 0 ? tr("Left") : tr("Right")));
        button->setCheckable(true);
        m_direction->addButton(button, id);
        directions->addWidget(button);
    }
    m_direction->button(0)->setChecked(true);
    displayGrid->addLayout(directions, 1, 2, 1, 2);
    displayGrid->addWidget(new QLabel(tr("Position"), this), 2, 1);
    auto *position = new QHBoxLayout;
    m_x = named(this, "xEdit", new QLineEdit("0"));
    m_y = named(this, "yEdit", new QLineEdit("0"));
    for (QLineEdit *edit : {m_x, m_y}) {
        edit->setValidator(new QIntValidator(edit));  // the whole int range
        position->addWidget(new QLabel(edit == m_x ? "X" : "Y", this));
        position->addWidget(edit);
    }
    displayGrid->addLayout(position, 2, 2, 1, 2);
    body()->addWidget(display);

    auto *colours = new QGroupBox(tr("Colours"), this);
    auto *colourRow = new QHBoxLayout(colours);
    colourRow->addWidget(new QLabel(tr("Text colour"), this));
    m_colour = named(this, "ColorSetting", new QToolButton);
    colourRow->addWidget(m_colour);
    colourRow->addSpacing(24);
    m_backgroundSwitch = named(this, "BgColorSwitch", new QCheckBox(tr("Background")));
    colourRow->addWidget(m_backgroundSwitch);
    m_backgroundColour = named(this, "BgColorSetting", new QToolButton);
    colourRow->addWidget(m_backgroundColour);
    colourRow->addStretch();
    for (QToolButton *button : {m_colour, m_backgroundColour}) {
        button->setFixedSize(40, 24);
        button->setStyleSheet("QToolButton{background-color:rgb(255,255,255)}");
    }
    body()->addWidget(colours);

    auto *content = new QGroupBox(tr("Content"), this);
    auto *contentGrid = new QGridLayout(content);
    contentGrid->addWidget(new QLabel(tr("Text"), this), 0, 0);
    m_text = named(this, "textEdit", new QLineEdit);
    contentGrid->addWidget(m_text, 0, 1);
    auto *uploadText = named(this, "uploadCharBtn", new QPushButton(tr("Upload text")));
    contentGrid->addWidget(uploadText, 0, 2);
    auto *font = new QHBoxLayout;
    m_fontFamily = named(this, "fontComboBox", new QComboBox);
    m_fontFamily->setEditable(true);  // the chosen family need not be installed
    m_fontFamily->addItems(QFontDatabase().families());
    m_fontFamily->setMinimumContentsLength(20);
    m_fontFamily->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_fontSize = named(this, "fontSizeComboBox", new QComboBox);
    m_fontSize->setFixedWidth(80);
    font->addWidget(m_fontFamily);
    font->addWidget(m_fontSize);
    const struct { QToolButton **button; const char *name; const char *face; } styles[] = {
        {&m_bold, "boldBtn", "B"}, {&m_italic, "italicBtn", "I"}, {&m_underline, "underlineBtn", "U"}};
    for (const auto &style : styles) {
        *style.button = named(this, style.name, new QToolButton);
        (*style.button)->setText(style.face);
        (*style.button)->setFixedSize(32, 30);
        font->addWidget(*style.button);
    }
    contentGrid->addWidget(new QLabel(tr("Font"), this), 1, 0);
    font->addStretch();
    contentGrid->addLayout(font, 1, 1, 1, 2);
    contentGrid->addWidget(new QLabel(tr("Picture"), this), 2, 0);
    auto *picture = new QHBoxLayout;
    m_imagePath = named(this, "imagePathEdit", new QLineEdit);
    picture->addWidget(m_imagePath, 1);
    picture->addWidget(named(this, "BrowserBtn", new QPushButton(tr("Browse"))));
    contentGrid->addLayout(picture, 2, 1);
    contentGrid->addWidget(named(this, "uploadImgBtn", new QPushButton(tr("Upload picture"))), 2, 2);
    body()->addWidget(content);

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(named(this, "EraseBtn", new QPushButton(tr("Erase"))));
    buttons->addStretch();
    buttons->addWidget(named(this, "OkBtn", new QPushButton(tr("OK"))));
    body()->addLayout(buttons);
    setMinimumWidth(620);
}

void TitleOrOsdDialog::on_btnClose_clicked() { done(0); }
// Every setting has gone out already.
void TitleOrOsdDialog::on_OkBtn_clicked() { done(1); }

QColor TitleOrOsdDialog::pickColour(QToolButton *button)
{
    // A cancelled dialog gives an invalid colour, sent as it is.
    const QColor colour = QColorDialog::getColor(Qt::white, this);
    const QString rgb = QString("%1,%2,%3").arg(colour.red()).arg(colour.green()).arg(colour.blue());
    button->setStyleSheet("QToolButton{background-color:rgb(" + rgb + ")}");
    return colour;
}

void TitleOrOsdDialog::on_ColorSetting_clicked()
{
    const QColor colour = pickColour(m_colour);
    m_link->sendFontColor(colour.red(), colour.green(), colour.blue());
}

void TitleOrOsdDialog::on_BgColorSetting_clicked()
{
    const QColor colour = pickColour(m_backgroundColour);
    m_link->sendBackgroundColor(colour.red(), colour.green(), colour.blue());
}

void TitleOrOsdDialog::on_BrowserBtn_clicked()
{
    const QString path = QFileDialog::getOpenFileName(
        this, tr("请选择图片路径"), "/", tr("支持图片文件 (*.bmp *.png *.jpg *.jpeg *.tga *.tiff);; 所有文件(*.*);;"));
    if (!path.isEmpty())
        m_imagePath->setText(path);
}

void TitleOrOsdDialog::on_uploadCharBtn_clicked()
{
    if (m_text->text().isEmpty())
        return;
    QFont font(m_fontFamily->currentText());
    font.setPointSize(m_fontSize->currentText().toInt(nullptr, 10));
    font.setWeight(m_bold->isChecked() ? 75 : 50);
    font.setItalic(m_italic->isChecked());
    font.setUnderline(m_underline->isChecked());
    upload(BitmapConversion::textToBitmap(m_text->text(), font), true);
}

void TitleOrOsdDialog::on_uploadImgBtn_clicked()
{
    if (m_imagePath->text().isEmpty())
        return;
    upload(BitmapConversion::pictureToBitmap(m_imagePath->text()), false);
}

void TitleOrOsdDialog::upload(const QString &bitmapPath, bool renderedText)
{
    const qint64 size = QFile(bitmapPath).size();
    if (size == 0) {
        MsgDlg::showMessage(tr("File is empty"), tr("error"), this);
        return;
    }
    if (m_logoMode) {
        // The limit holds for rendered text only; a picture goes as it is.
        if (renderedText && size > 4096) {
            MsgDlg::showMessage(tr("台标字幕文件大小不能超过4K!"), tr("错误"), this);
            return;
        }
        m_link->sendFile(CommandText::uploadOsd(m_target), BitmapConversion::encodedBmp(bitmapPath), CommandText::done());
        return;
    }
    if (!m_link->isUploadConnected()) {
        MsgDlg::showMessage(tr("传输文件端口连接发生错误！"), tr("NetWork Error"), this);
        return;
    }
    m_link->sendFile(CommandText::uploadSubtitle(m_outputs->currentData().toInt()), BitmapConversion::encodedBmp(bitmapPath),
                     CommandText::done());
}

void TitleOrOsdDialog::on_speedSplider_sliderReleased()
{
    m_speedValue->setText(QString("%1").arg(m_speed->value()));
    m_link->sendOsdSpeed(m_speed->value());
}

void TitleOrOsdDialog::on_IsShowCheck_toggled(bool checked)
{
    m_link->sendOsdSwitch(checked);
}

void TitleOrOsdDialog::on_BgColorSwitch_toggled(bool checked)
{
    m_link->sendBackgroundSwitch(checked);
}

void TitleOrOsdDialog::directionButtonClicked(int id, bool bSet)
{
    if (bSet)
        m_link->sendOsdDirection(id);
}

void TitleOrOsdDialog::sendPosition()
{
    // An empty Y edit reads as 0.
    m_link->sendOsdPosition(m_x->text().toInt(nullptr, 10), m_y->text().toInt(nullptr, 10));
}

void TitleOrOsdDialog::on_EraseBtn_clicked()
{
    if (m_logoMode)
        m_link->sendEraseOsd();
    else
        m_link->sendEraseSubtitle();
}

OverlayRecord TitleOrOsdDialog::readState(const QJsonObject &obj, const char *switchKey,
                                         const char *speedKey, const char *backgroundKey)
{
    OverlayRecord state;
    auto flag = [&obj](const char *key, bool fallback) {
        return obj.contains(key) ? obj.value(key).toString() == QLatin1String("true") : fallback;
    };
    state.enabled = flag(switchKey, state.enabled);
    state.speed = obj.value(speedKey).toInt(state.speed);
    state.textColor = obj.value("Color").toString(state.textColor);
    state.positionX = obj.value("Position_x").toInt(state.positionX);
    state.positionY = obj.value("Position_y").toInt(state.positionY);
    state.backgroundEnabled = flag(backgroundKey, state.backgroundEnabled);
    state.backgroundColor = obj.value("Bg_Color").toString(state.backgroundColor);
    state.direction = obj.value("Move_dir").toString(state.direction);
    return state;
}

void TitleOrOsdDialog::receiveOsdImfSlot(int port, const QJsonObject &obj)
{
    Q_UNUSED(port)
    showState(readState(obj, "switch", "speed", "bg_switch"));
}

void TitleOrOsdDialog::receiveTitleImfSlot(const QJsonObject &obj)
{
    qDebug() << obj.value("Switch");
    showState(readState(obj, "Switch", "Speed", "Bg_switch"));
}

void TitleOrOsdDialog::showState(const OverlayRecord &state)
{
    // Showing the device's state must not send it back.
    const QSignalBlocker blockShow(m_show), blockSpeed(m_speed), blockX(m_x), blockY(m_y),
        blockBackground(m_backgroundSwitch), blockDirection(m_direction);
    m_show->setChecked(state.enabled);
    m_speed->setValue(state.speed);
    m_speedValue->setText(QString("%1").arg(state.speed));
    m_colour->setStyleSheet(QString("background:rgb(%1)").arg(state.textColor));
    m_x->setText(QString::number(state.positionX));
    m_y->setText(QString::number(state.positionY));
    m_backgroundSwitch->setChecked(state.backgroundEnabled);
    m_backgroundColour->setStyleSheet(QString("background:rgb(%1)").arg(state.backgroundColor));
    if (state.direction == QLatin1String("left"))
        m_direction->button(0)->setChecked(true);
    else if (state.direction == QLatin1String("right"))
        m_direction->button(1)->setChecked(true);
}
