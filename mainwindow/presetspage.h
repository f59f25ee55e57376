#pragma once

#include <QWidget>

class MessageDistance;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;

// The "Presets" tab: the device's preset slots with the names this computer
// gave them. Save stores the device's current routing in the selected slot,
// Recall brings it back and asks the device for its whole state again; the
// names live in project.db only.
class PresetsPage : public QWidget
{
    Q_OBJECT

public:
    explicit PresetsPage(MessageDistance *link, QWidget *parent = nullptr);

    // The selected slot, 1-based; 0 when none is selected.
    int currentSlot() const;

protected:
    void changeEvent(QEvent *event) override;

private:
    void saveSlot();
    void recallSlot();
    void renameSlot();
    void deleteSlot();
    void showNames();
    void showSelection();
    void updateButtons();
    void retranslate();
    void report(const QString &text, const QString &title);

    MessageDistance *m_link;
    QLabel *m_hint;
    QTableWidget *m_table;
    QLabel *m_nameLabel;
    QLineEdit *m_nameEdit;
    QPushButton *m_save;
    QPushButton *m_recall;
    QPushButton *m_rename;
    QPushButton *m_delete;
};
