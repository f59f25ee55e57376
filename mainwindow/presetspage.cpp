#include "mainwindow/presetspage.h"

#include "device/commandtext.h"
#include "device/devicemodel.h"
#include "device/messagedistance.h"
#include "dialogs/msgdlg.h"
#include "store/database.h"
#include "store/presetnames.h"

#include <QDir>
#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {

// The window's green buttons; the window's sheet makes every table cell's
// selection transparent, which a list of slots cannot do without.
const char PageStyle[] =
        "QPushButton { color: #ffffff; background: #338c56; border: 0; border-radius: 4px; padding: 6px 16px;"
        " min-width: 64px; }"
        "QPushButton:hover { background: #2b7648; }"
        "QPushButton:pressed { background: #136a67; }"
        "QPushButton:disabled { background: #9aa8a0; }"
        "#presetTable { border: 1px solid #d3ddd6; gridline-color: #eef2ef; selection-background-color: #d7e6dc;"
        " selection-color: #2f3b35; }"
        "#presetTable::item { padding-left: 6px; }"
        "#presetTable QHeaderView::section { background: #e9efeb; color: #2f3b35; border: 0;"
        " border-bottom: 1px solid #d3ddd6; padding: 6px; }"
        "#presetHint { color: #4a5a51; }";

QPushButton *makeButton(const char *name, QWidget *parent)
{
    auto *button = new QPushButton(parent);
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false);
    return button;
}

QString shownPath()
{
    return QDir::toNativeSeparators(databasePath());
}

} // namespace

PresetsPage::PresetsPage(MessageDistance *link, QWidget *parent)
    : QWidget(parent)
    , m_link(link)
    , m_hint(new QLabel(this))
    , m_table(new QTableWidget(PresetNames::SlotCount, 2, this))
    , m_nameLabel(new QLabel(this))
    , m_nameEdit(new QLineEdit(this))
    , m_save(makeButton("presetSaveBtn", this))
    , m_recall(makeButton("presetRecallBtn", this))
    , m_rename(makeButton("presetRenameBtn", this))
    , m_delete(makeButton("presetDeleteBtn", this))
{
    setObjectName(QStringLiteral("presetsPage"));
    setStyleSheet(QLatin1String(PageStyle));
    PresetNames::createTable();

    m_hint->setObjectName(QStringLiteral("presetHint"));
    m_hint->setWordWrap(true);
    m_table->setObjectName(QStringLiteral("presetTable"));
    m_table->verticalHeader()->hide();
    m_table->horizontalHeader()->setHighlightSections(false);
    m_table->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    m_table->horizontalHeader()->setStretchLastSection(true);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    for (int row = 0; row < PresetNames::SlotCount; ++row) {
        auto *slot = new QTableWidgetItem(QString::number(row + 1));
        slot->setTextAlignment(Qt::AlignCenter);
        m_table->setItem(row, 0, slot);
        m_table->setItem(row, 1, new QTableWidgetItem);
    }
    m_nameEdit->setObjectName(QStringLiteral("presetNameEdit"));
    m_nameEdit->setMaxLength(32);

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_nameLabel);
    buttons->addWidget(m_nameEdit, 1);
    for (QPushButton *button : {m_save, m_recall, m_rename, m_delete})
        buttons->addWidget(button);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 16, 16, 16);
    layout->setSpacing(10);
    layout->addWidget(m_hint);
    layout->addWidget(m_table, 1);
    layout->addLayout(buttons);

    connect(m_table, &QTableWidget::itemSelectionChanged, this, &PresetsPage::showSelection);
    connect(m_nameEdit, &QLineEdit::textChanged, this, &PresetsPage::updateButtons);
    connect(m_save, &QPushButton::clicked, this, &PresetsPage::saveSlot);
    connect(m_recall, &QPushButton::clicked, this, &PresetsPage::recallSlot);
    connect(m_rename, &QPushButton::clicked, this, &PresetsPage::renameSlot);
    connect(m_delete, &QPushButton::clicked, this, &PresetsPage::deleteSlot);

    retranslate();
    showNames();
    updateButtons();
}

int PresetsPage::currentSlot() const
{
    const QList<QTableWidgetItem *> selected = m_table->selectedItems();
    return selected.isEmpty() ? 0 : selected.first()->row() + 1;
}

void PresetsPage::saveSlot()
{
    const int slot = currentSlot();
    if (slot == 0)
        return;
    const QString stored = m_table->item(slot - 1, 1)->text();
    // The device keeps one routing per slot: saving over a named one loses it.
    if (!stored.isEmpty()
        && MsgDlg::showMessage(tr("Slot %1 holds \"%2\". Replace it with the current routing?").arg(slot).arg(stored),
                               tr("Save preset"), window()) != 1)
        return;
    if (!m_link->sendCommand(CommandText::savePreset(slot))) {
        report(tr("The device is not connected; slot %1 was not saved.").arg(slot), tr("Save preset"));
        return;
    }
    const QString typed = m_nameEdit->text().trimmed();
    const QString name = typed.isEmpty() ? tr("Preset %1").arg(slot) : typed;
    if (!PresetNames::save(slot, name))
        report(tr("The routing was saved in slot %1 on the device, but its name could not be saved in %2.")
                       .arg(slot)
                       .arg(shownPath()),
               tr("Database Error"));
    showNames();
}

void PresetsPage::recallSlot()
{
    const int slot = currentSlot();
    if (slot == 0)
        return;
    if (!m_link->sendCommand(CommandText::recallPreset(slot))) {
        report(tr("The device is not connected; slot %1 was not recalled.").arg(slot), tr("Recall preset"));
        return;
    }
    // A recall changes more than the maps it answers with; read everything back.
    DeviceModel::requestState(m_link);
}

void PresetsPage::renameSlot()
{
    const int slot = currentSlot();
    const QString name = m_nameEdit->text().trimmed();
    if (slot == 0 || name.isEmpty())
        return;
    if (!PresetNames::save(slot, name))
        report(tr("The new name could not be saved in %1; the old name is kept.").arg(shownPath()),
               tr("Database Error"));
    showNames();
}

void PresetsPage::deleteSlot()
{
    const int slot = currentSlot();
    if (slot == 0)
        return;
    if (!PresetNames::remove(slot))
        report(tr("The name could not be removed from %1.").arg(shownPath()), tr("Database Error"));
    showNames();
}

void PresetsPage::showNames()
{
    const QMap<int, QString> names = PresetNames::load();
    for (int row = 0; row < PresetNames::SlotCount; ++row)
        m_table->item(row, 1)->setText(names.value(row + 1));
    showSelection();
}

void PresetsPage::showSelection()
{
    const int slot = currentSlot();
    m_nameEdit->setText(slot == 0 ? QString() : m_table->item(slot - 1, 1)->text());
    updateButtons();
}

void PresetsPage::updateButtons()
{
    const int slot = currentSlot();
    const QString stored = slot == 0 ? QString() : m_table->item(slot - 1, 1)->text();
    const QString typed = m_nameEdit->text().trimmed();
    m_save->setEnabled(slot != 0);
    m_recall->setEnabled(slot != 0);
    m_rename->setEnabled(slot != 0 && !typed.isEmpty() && typed != stored);
    m_delete->setEnabled(!stored.isEmpty());
}

void PresetsPage::retranslate()
{
    m_hint->setText(tr("The device keeps the routing of each slot; the names are kept on this computer."));
    m_table->setHorizontalHeaderLabels({tr("Slot"), tr("Name")});
    m_nameLabel->setText(tr("Name:"));
    m_nameEdit->setPlaceholderText(tr("Preset name"));
    m_save->setText(tr("Save"));
    m_recall->setText(tr("Recall"));
    m_rename->setText(tr("Rename"));
    m_delete->setText(tr("Delete"));
}

void PresetsPage::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void PresetsPage::report(const QString &text, const QString &title)
{
    MsgDlg::showMessage(text, title, window());
}
