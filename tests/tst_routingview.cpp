#include "mainwindow/listwidget.h"
#include "mainwindow/renamedialog.h"
#include "mainwindow/tableitemwidget.h"
#include "mainwindow/tablewidget.h"
#include "resources/guiresources.h"
#include "store/database.h"
#include "store/portnames.h"

#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace {

// A list with one input of each shape the main window builds.
void fillList(ListWidget &list)
{
    const struct { int port; int type; } entries[] = {{3, 0}, {3, 1}, {0, 1}, {7, 1}};
    for (const auto &entry : entries) {
        auto *item = new QListWidgetItem(QString("input %1").arg(entry.port), &list);
        item->setData(ListWidget::PortRole, QString::number(entry.port));
        item->setData(ListWidget::TypeRole, entry.type);
    }
}

// Drags the list's current item onto `target` through the list's own drag data.
bool dropOn(ListWidget &list, TableWidget &table, const QPoint &target)
{
    std::unique_ptr<QMimeData> data(list.mimeData({list.currentItem()}));
    QWidget *viewport = table.viewport();
    QDragEnterEvent enter(target, Qt::CopyAction | Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(viewport, &enter);
    QDragMoveEvent move(target, Qt::CopyAction | Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(viewport, &move);
    QDropEvent drop(target, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(viewport, &drop);
    return move.isAccepted();
}

QPoint centreOf(TableWidget &table, int row, int column)
{
    return table.visualRect(table.model()->index(row, column)).center();
}

} // namespace

class tst_RoutingView : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void drop_emitsInputAndOutputAndLabelsTheCell_data();
    void drop_emitsInputAndOutputAndLabelsTheCell();
    void doubleClick_routesInputZeroAndEmptiesTheInputLine();

    void renameDialog_confirmRules_data();
    void renameDialog_confirmRules();

private:
    // A fresh table that shows the names below.
    void setUpTable(TableWidget &table);

    QTemporaryDir m_dir;
    std::unique_ptr<PortNames> m_names;
};

void tst_RoutingView::initTestCase()
{
    initGuiResources();
    setDatabasePath(m_dir.filePath("project.db"));
    m_names = std::make_unique<PortNames>();
    m_names->rename(PortNames::VideoInput, 3, "Camera");
    m_names->rename(PortNames::VideoInput, 7, "PC");
    m_names->rename(PortNames::AudioInput, 0, "Mic");
    m_names->rename(PortNames::AudioInput, 3, "Mixer");
    m_names->rename(PortNames::AudioInput, 7, "Line");
}

void tst_RoutingView::setUpTable(TableWidget &table)
{
    table.setPortNames(m_names.get());
    table.resize(400, 300);
}

void tst_RoutingView::drop_emitsInputAndOutputAndLabelsTheCell_data()
{
    QTest::addColumn<int>("listRow");
    QTest::addColumn<bool>("fold");
    QTest::addColumn<int>("emittedInput");
    QTest::addColumn<QString>("label");
    QTest::addColumn<int>("payload");

    QTest::newRow("type 0 uses the first names") << 0 << true << 3 << "[3] Camera" << 3;
    QTest::newRow("type 1 folds and uses the second names") << 1 << true << 3 << "[3] Mixer" << 103;
    QTest::newRow("payload exactly 100 labels 0, emits 100") << 2 << true << 100 << "[0] Mic" << 100;
    QTest::newRow("no folding keeps the shifted number") << 3 << false << 107 << "[7] Line" << 107;
    // -1: dropped on the missing ninth cell of the eight-output model, or off the grid.
    QTest::newRow("missing ninth cell") << 0 << true << -1 << "" << 0;
    QTest::newRow("off the grid") << 0 << true << -2 << "" << 0;
}

void tst_RoutingView::drop_emitsInputAndOutputAndLabelsTheCell()
{
    QFETCH(int, listRow);
    QFETCH(bool, fold);
    QFETCH(int, emittedInput);
    QFETCH(QString, label);
    QFETCH(int, payload);

    ListWidget list;
    fillList(list);
    list.setCurrentRow(listRow);
    TableWidget table;
    setUpTable(table);
    table.setIndexOffset(100);
    table.setFoldAudioOffset(fold);
    table.setEightOutputs(true);
    table.buildGrid(3, 3);
    table.show();
    QVERIFY(QTest::qWaitForWindowExposed(&table));

    QSignalSpy dropped(&table, &TableWidget::dropPortToItemSig);
    if (emittedInput < 0) {
        QVERIFY(!dropOn(list, table, emittedInput == -1 ? centreOf(table, 2, 2) : QPoint(-5, -5)));
        QCOMPARE(dropped.count(), 0);
        return;
    }
    QVERIFY(dropOn(list, table, centreOf(table, 1, 1)));
    QCOMPARE(dropped.count(), 1);
    QCOMPARE(dropped.at(0), (QVariantList{emittedInput, 105}));
    QCOMPARE(table.widgetForKey(105)->inputText(), label);
    QCOMPARE(table.itemForKey(105)->data(TableWidget::PayloadRole).toInt(), payload);
    QCOMPARE(table.widgetForKey(104)->inputText(), QString());
}

void tst_RoutingView::doubleClick_routesInputZeroAndEmptiesTheInputLine()
{
    ListWidget list;
    fillList(list);
    list.setCurrentRow(0);
    TableWidget table;
    setUpTable(table);
    table.buildGrid(2, 2);
    table.show();
    QVERIFY(QTest::qWaitForWindowExposed(&table));
    QVERIFY(dropOn(list, table, centreOf(table, 0, 1)));
    QCOMPARE(table.widgetForKey(2)->inputText(), QString("[3] Camera"));

    QSignalSpy dropped(&table, &TableWidget::dropPortToItemSig);
    QTest::mouseDClick(table.viewport(), Qt::LeftButton, Qt::NoModifier, centreOf(table, 0, 1));
    QCOMPARE(dropped.count(), 1);
    QCOMPARE(dropped.at(0), (QVariantList{0, 2}));
    QCOMPARE(table.widgetForKey(2)->inputText(), QString());
}

void tst_RoutingView::renameDialog_confirmRules_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("emitted");
    QTest::newRow("new name") << "Podium" << true;
    QTest::newRow("unchanged") << "Camera" << false;
    QTest::newRow("empty") << "" << false;
    QTest::newRow("case counts") << "camera" << true;
    QTest::newRow("quote") << "O'Neil's cam" << true;
}

void tst_RoutingView::renameDialog_confirmRules()
{
    QFETCH(QString, typed);
    QFETCH(bool, emitted);

    RenameDialog dialog("Camera");
    QSignalSpy newName(&dialog, &RenameDialog::Sig_SetNewName);
    dialog.open();
    auto *edit = dialog.findChild<QLineEdit *>();
    QCOMPARE(edit->text(), QString("Camera"));
    edit->setText(typed);
    QTest::mouseClick(dialog.findChild<QPushButton *>("btnOk"), Qt::LeftButton);
    QCOMPARE(dialog.result(), 1);
    QCOMPARE(newName.count(), emitted ? 1 : 0);
    if (emitted)
        QCOMPARE(newName.at(0).at(0).toString(), typed);

    RenameDialog cancelled("Camera");
    cancelled.open();
    QTest::mouseClick(cancelled.findChild<QPushButton *>("btnCancel"), Qt::LeftButton);
    QCOMPARE(cancelled.result(), 0);
}

QTEST_MAIN(tst_RoutingView)
#include "tst_routingview.moc"
