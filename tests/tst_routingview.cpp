#include "app/appsettings.h"
#include "device/devicerecord.h"
#include "mainwindow/listwidget.h"
#include "mainwindow/portnaming.h"
#include "mainwindow/renamedialog.h"
#include "mainwindow/sigmanager.h"
#include "mainwindow/tableitemwidget.h"
#include "mainwindow/tablewidget.h"
#include "resources/guiresources.h"
#include "store/database.h"
#include "store/portnamestore.h"

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

QStringList outputLines(TableWidget &table)
{
    QStringList lines;
    for (int r = 0; r < table.rowCount(); ++r) {
        for (int c = 0; c < table.columnCount(); ++c) {
            auto *cell = qobject_cast<TableItemWidget *>(table.cellWidget(r, c));
            lines << (cell ? cell->outputText() : QString("-"));
        }
    }
    return lines;
}

} // namespace

class tst_RoutingView : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void grid_numbersOutputsRowByRow_data();
    void grid_numbersOutputsRowByRow();
    void eightOutputModel_leavesLinearCellEightEmpty_data();
    void eightOutputModel_leavesLinearCellEightEmpty();
    void drop_emitsInputAndOutputAndLabelsTheCell_data();
    void drop_emitsInputAndOutputAndLabelsTheCell();
    void dropOutsideAnyCell_isIgnored();
    void doubleClick_routesInputZeroAndEmptiesTheInputLine();
    void inputRename_relabelsOnlyGridsThatListen();

    void renameDialog_confirmRules_data();
    void renameDialog_confirmRules();

private:
    QTemporaryDir m_dir;
};

void tst_RoutingView::initTestCase()
{
    initGuiResources();
    setDatabasePath(m_dir.filePath("project.db"));
    PortNameStore::createPortNameTables();
    AppSettings::instance()->setInputNames({{3, "Camera"}, {7, "PC"}});
    AppSettings::instance()->setAudioInputNames({{0, "Mic"}, {3, "Mixer"}, {7, "Line"}});
}

void tst_RoutingView::init()
{
    deviceRecord()->setModelFlag(1);
}

void tst_RoutingView::grid_numbersOutputsRowByRow_data()
{
    QTest::addColumn<int>("offset");
    QTest::newRow("offset 0") << 0;
    QTest::newRow("offset 100") << 100;
}

void tst_RoutingView::grid_numbersOutputsRowByRow()
{
    QFETCH(int, offset);
    TableWidget table;
    table.setIndexOffset(offset);
    table.setOutputName(offset + 2, "Projector");
    QSignalSpy layoutChanged(&table, &TableWidget::layoutChangedSig);
    table.buildGrid(4, 3);
    QCOMPARE(layoutChanged.count(), 1);

    QStringList expected;
    for (int n = 1; n <= 12; ++n)
        expected << QString("[%1] %2").arg(n).arg(n == 2 ? "Projector" : "");
    QCOMPARE(outputLines(table), expected);
    QCOMPARE(table.item(2, 3)->data(TableWidget::OutputKeyRole).toInt(), 12 + offset);
    QCOMPARE(table.item(1, 0)->textAlignment(), int(Qt::AlignCenter));

    table.setOutputName(offset + 12, "Wall");
    QCOMPARE(outputLines(table).last(), QString("[12] Wall"));
    QCOMPARE(table.outputName(offset + 5), QString());
}

void tst_RoutingView::eightOutputModel_leavesLinearCellEightEmpty_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("emptyRow");
    QTest::addColumn<int>("emptyColumn");
    QTest::newRow("3 columns") << 3 << 3 << 2 << 2;
    QTest::newRow("4 columns") << 4 << 3 << 2 << 0;
}

void tst_RoutingView::eightOutputModel_leavesLinearCellEightEmpty()
{
    QFETCH(int, columns);
    QFETCH(int, rows);
    QFETCH(int, emptyRow);
    QFETCH(int, emptyColumn);

    TableWidget table;
    table.buildGrid(columns, rows);
    QVERIFY(table.cellWidget(emptyRow, emptyColumn));

    deviceRecord()->setModelFlag(0);
    table.buildGrid(columns, rows);
    QVERIFY(!table.cellWidget(emptyRow, emptyColumn));
    QVERIFY(!table.item(emptyRow, emptyColumn));
    int cells = 0;
    for (const QString &line : outputLines(table))
        cells += line != "-";
    QCOMPARE(cells, columns * rows - 1);
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
    table.setIndexOffset(100);
    table.setFoldAudioOffset(fold);
    table.resize(400, 300);
    table.buildGrid(3, 3);
    table.show();
    QVERIFY(QTest::qWaitForWindowExposed(&table));

    QSignalSpy dropped(&table, &TableWidget::dropPortToItemSig);
    QVERIFY(dropOn(list, table, centreOf(table, 1, 1)));
    QCOMPARE(dropped.count(), 1);
    QCOMPARE(dropped.at(0), (QVariantList{emittedInput, 105}));
    QCOMPARE(table.widgetForKey(105)->inputText(), label);
    QCOMPARE(table.itemForKey(105)->data(TableWidget::PayloadRole).toInt(), payload);
    QCOMPARE(table.widgetForKey(104)->inputText(), QString());
}

void tst_RoutingView::dropOutsideAnyCell_isIgnored()
{
    deviceRecord()->setModelFlag(0);
    ListWidget list;
    fillList(list);
    list.setCurrentRow(0);
    TableWidget table;
    table.resize(400, 300);
    table.buildGrid(3, 3);
    table.show();
    QVERIFY(QTest::qWaitForWindowExposed(&table));

    QSignalSpy dropped(&table, &TableWidget::dropPortToItemSig);
    QVERIFY(!dropOn(list, table, centreOf(table, 2, 2)));     // the missing ninth cell
    QVERIFY(!dropOn(list, table, QPoint(-5, -5)));           // off the grid
    QCOMPARE(dropped.count(), 0);
}

void tst_RoutingView::doubleClick_routesInputZeroAndEmptiesTheInputLine()
{
    ListWidget list;
    fillList(list);
    list.setCurrentRow(0);
    TableWidget table;
    table.resize(400, 300);
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

void tst_RoutingView::inputRename_relabelsOnlyGridsThatListen()
{
    ListWidget list;
    fillList(list);
    list.setCurrentRow(0);
    TableWidget listening;
    listening.setIgnoreInputRenames(false);
    TableWidget deaf;
    for (TableWidget *table : {&listening, &deaf}) {
        table->resize(300, 200);
        table->buildGrid(2, 1);
        table->show();
        QVERIFY(QTest::qWaitForWindowExposed(table));
        QVERIFY(dropOn(list, *table, centreOf(*table, 0, 0)));
    }
    AppSettings::instance()->setAudioInputNames({{0, "Mic"}, {3, "Stage"}, {7, "Line"}});
    emit SigManager::instance()->Sig_RenameInputSignals(3);
    QCOMPARE(listening.widgetForKey(1)->inputText(), QString("[3] Stage"));
    QCOMPARE(deaf.widgetForKey(1)->inputText(), QString("[3] Camera"));
    QCOMPARE(listening.widgetForKey(2)->inputText(), QString());

    AppSettings::instance()->setInputNames({{3, "Lectern"}, {7, "PC"}});
    emit SigManager::instance()->Sig_RenameInputAudioSignals(3);
    QCOMPARE(listening.widgetForKey(1)->inputText(), QString("[3] Lectern"));
    AppSettings::instance()->setInputNames({{3, "Camera"}, {7, "PC"}});
    AppSettings::instance()->setAudioInputNames({{0, "Mic"}, {3, "Mixer"}, {7, "Line"}});
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
