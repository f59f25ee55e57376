#include "dialogs/graphicstestdialog.h"

#include "device/messagedistance.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QLabel>
#include <QRadioButton>

namespace {
// Object name and label of each pattern; the position is the number sent.
const struct { const char *name; const char *label; } Patterns[] = {
    {"radioButton_Through", QT_TRANSLATE_NOOP("GraphicsTestDialog", "By pass")},
    {"radioButton_RGB_bars", QT_TRANSLATE_NOOP("GraphicsTestDialog", "RGB stripe")},
    {"radioButton_16levelsofgray", QT_TRANSLATE_NOOP("GraphicsTestDialog", "16 Gray Scales")},
    {"radioButton_32levelsofgray", QT_TRANSLATE_NOOP("GraphicsTestDialog", "32 Gray Scales")},
    {"radioButton_64levelsofgray", QT_TRANSLATE_NOOP("GraphicsTestDialog", "64 Gray Scales")},
    {"radioButton_RedGrid", QT_TRANSLATE_NOOP("GraphicsTestDialog", "Red Grid")},
    {"radioButton_GreenGrid", QT_TRANSLATE_NOOP("GraphicsTestDialog", "Green Grid")},
    {"radioButton_BlueGrid", QT_TRANSLATE_NOOP("GraphicsTestDialog", "Blue Grid")},
    {"radioButton_WhiteGrid", QT_TRANSLATE_NOOP("GraphicsTestDialog", "White Grid")},
    {"radioButton_HorizontalScrollBar", QT_TRANSLATE_NOOP("GraphicsTestDialog", "Horizon Scroll")},
    {"radioButton_VerticalScrollBar", QT_TRANSLATE_NOOP("GraphicsTestDialog", "Vertical Scroll")},
    {"radioButton_SolidColor", QT_TRANSLATE_NOOP("GraphicsTestDialog", "Pure Color")},
};
} // namespace

GraphicsTestDialog::GraphicsTestDialog(int port, bool isInput, MessageDistance *link, QWidget *parent)
    : SettingDialog(Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint, parent)
    , m_port(port)
    , m_isInput(isInput)
    , m_link(link)
{
    setTitleText(isInput ? tr("Input Graphics test") : tr("OutPut Graphics test"));
    auto *portLabel = new QLabel(isInput ? tr("[InChannel%1]").arg(port) : tr("[OutChannel%1]").arg(port), this);
    portLabel->setObjectName("portLabel");
    body()->addWidget(portLabel);

    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(24);
    grid->setVerticalSpacing(10);
    auto *group = new QButtonGroup(this);
    for (int n = 0; n < int(std::size(Patterns)); ++n) {
        auto *button = new QRadioButton(tr(Patterns[n].label), this);
        button->setObjectName(Patterns[n].name);
        group->addButton(button, n);
        grid->addWidget(button, n / 3, n % 3);
    }
    body()->addLayout(grid);

    addApplyButton();

    QMetaObject::connectSlotsByName(this);
}

void GraphicsTestDialog::sendPattern(int pattern)
{
    if (m_isInput)
        m_link->sendInputPattern(m_port, pattern);
    else
        m_link->sendOutputPattern(m_port, pattern);
}

void GraphicsTestDialog::sendIfChecked(bool checked, int pattern)
{
    if (checked)
        sendPattern(pattern);
}

void GraphicsTestDialog::on_btnClose_clicked() { done(0); }
void GraphicsTestDialog::on_btnApply_clicked() { done(1); }
void GraphicsTestDialog::on_radioButton_Through_clicked(bool checked) { sendIfChecked(checked, 0); }
void GraphicsTestDialog::on_radioButton_RGB_bars_clicked(bool checked) { sendIfChecked(checked, 1); }
void GraphicsTestDialog::on_radioButton_16levelsofgray_clicked(bool checked) { sendIfChecked(checked, 2); }
void GraphicsTestDialog::on_radioButton_32levelsofgray_clicked(bool checked) { sendIfChecked(checked, 3); }
void GraphicsTestDialog::on_radioButton_64levelsofgray_clicked(bool checked) { sendIfChecked(checked, 4); }
void GraphicsTestDialog::on_radioButton_RedGrid_clicked(bool checked) { sendIfChecked(checked, 5); }
void GraphicsTestDialog::on_radioButton_GreenGrid_clicked(bool checked) { sendIfChecked(checked, 6); }
void GraphicsTestDialog::on_radioButton_BlueGrid_clicked(bool checked) { sendIfChecked(checked, 7); }
void GraphicsTestDialog::on_radioButton_WhiteGrid_clicked(bool checked) { sendIfChecked(checked, 8); }
void GraphicsTestDialog::on_radioButton_HorizontalScrollBar_clicked(bool checked) { sendIfChecked(checked, 9); }
void GraphicsTestDialog::on_radioButton_VerticalScrollBar_clicked(bool checked) { sendIfChecked(checked, 10); }
// Pure Color goes out on every click, checked or not.
void GraphicsTestDialog::on_radioButton_SolidColor_clicked() { sendPattern(11); }
