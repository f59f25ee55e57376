#include "mainwindow/listwidget.h"
#include "mainwindow/portmenus.h"
#include "mainwindow/renamedialog.h"
#include "mainwindow/tableitemwidget.h"
#include "mainwindow/tablewidget.h"
#include "resources/guiresources.h"
#include "store/database.h"
#include "store/portnames.h"

#include <QApplication>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

namespace {
// Drags the list's current item onto `target` through the list's own drag data
// (under offscreen a real QDrag returns at once); true when the table takes it.
bool dropOn(ListWidget &list, TableWidget &table, const QPoint &target)
{
    std::unique_ptr<QMimeData> data(list.mimeData({list.currentItem()}));
    const Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction;
    QDragEnterEvent enter(target, actions, data.get(), Qt::LeftButton, Qt::NoModifier);
    QDragMoveEvent move(target, actions, data.get(), Qt::LeftButton, Qt::NoModifier);
    QDropEvent drop(target, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    for (QEvent *event : std::initializer_list<QEvent *>{&enter, &move, &drop})
        QCoreApplication::sendEvent(table.viewport(), event);
    return move.isAccepted();
}
} // namespace

class tst_RoutingView : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        initGuiResources();
        setDatabasePath(m_dir.filePath("project.db"));
        m_names = std::make_unique<PortNames>();
        m_names->createTables();
        m_names->rename(PortNames::VideoInput, 3, "Camera");
        m_names->rename(PortNames::AudioInput, 0, "Mic");
        m_names->rename(PortNames::AudioInput, 3, "Mixer");
        m_names->rename(PortNames::AudioInput, 7, "Line");
    }

    void drop_emitsInputAndOutputAndLabelsTheCell_data()
    {
        QTest::addColumn<int>("port");
        QTest::addColumn<int>("type"); // 1: the list's second kind, dragged as port + 100
        QTest::addColumn<bool>("fold");
        QTest::addColumn<QPoint>("cell"); // column, row; (-1, -1) is off the grid
        QTest::addColumn<int>("emittedInput"); // -1: the drop is refused
        QTest::addColumn<QString>("label");
        QTest::addColumn<int>("payload");

        QTest::newRow("type 0 uses the first names") << 3 << 0 << true << QPoint(1, 1) << 3 << "[3] Camera" << 3;
        QTest::newRow("type 1 folds and uses the second names") << 3 << 1 << true << QPoint(1, 1) << 3 << "[3] Mixer" << 103;
        QTest::newRow("payload exactly 100 labels 0, emits 100") << 0 << 1 << true << QPoint(1, 1) << 100 << "[0] Mic" << 100;
        QTest::newRow("no folding keeps the shifted number") << 7 << 1 << false << QPoint(1, 1) << 107 << "[7] Line" << 107;
        QTest::newRow("missing ninth cell of the eight-output model") << 3 << 0 << true << QPoint(2, 2) << -1 << "" << 0;
        QTest::newRow("off the grid") << 3 << 0 << true << QPoint(-1, -1) << -1 << "" << 0;
    }

    // A double-click on the filled cell then routes input 0 and empties its label.
    void drop_emitsInputAndOutputAndLabelsTheCell()
    {
        QFETCH(int, port); QFETCH(int, type); QFETCH(bool, fold); QFETCH(QPoint, cell);
        QFETCH(int, emittedInput); QFETCH(QString, label); QFETCH(int, payload);
        ListWidget list;
        auto *item = new QListWidgetItem("input", &list);
        item->setData(ListWidget::PortRole, QString::number(port));
        item->setData(ListWidget::TypeRole, type);
        list.setCurrentItem(item);
        TableWidget table;
        table.setPortNames(m_names.get());
        table.resize(400, 300);
        table.setIndexOffset(100);
        table.setFoldAudioOffset(fold);
        table.setEightOutputs(true);
        table.buildGrid(3, 3);
        table.show();
        QVERIFY(QTest::qWaitForWindowExposed(&table));
        const QPoint at = cell.x() < 0 ? QPoint(-5, -5) : table.visualRect(table.model()->index(cell.y(), cell.x())).center();

        QSignalSpy dropped(&table, &TableWidget::dropPortToItemSig);
        QCOMPARE(dropOn(list, table, at), emittedInput >= 0);
        QCOMPARE(dropped.count(), int(emittedInput >= 0));
        if (emittedInput < 0)
            return;
        QCOMPARE(dropped.at(0), (QVariantList{emittedInput, 105}));
        QCOMPARE(table.widgetForKey(105)->inputText(), label);
        QCOMPARE(table.itemForKey(105)->data(TableWidget::PayloadRole).toInt(), payload);
        QCOMPARE(table.widgetForKey(104)->inputText(), QString());

        QTest::mouseDClick(table.viewport(), Qt::LeftButton, Qt::NoModifier, at);
        QCOMPARE(dropped.count(), 2);
        QCOMPARE(dropped.at(1), (QVariantList{0, 105}));
        QCOMPARE(table.widgetForKey(105)->inputText(), QString());
    }

    void renameDialog_emitsOnlyANewNonEmptyNameOnOk_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("button");
        QTest::addColumn<bool>("emitted");
        QTest::newRow("new name") << "Podium" << "btnOk" << true;
        QTest::newRow("unchanged") << "Camera" << "btnOk" << false;
        QTest::newRow("empty") << "" << "btnOk" << false;
        QTest::newRow("case counts") << "camera" << "btnOk" << true;
        QTest::newRow("cancel") << "Podium" << "btnCancel" << false;
        QTest::newRow("close") << "Podium" << "btnClose" << false;
    }

    void renameDialog_emitsOnlyANewNonEmptyNameOnOk()
    {
        QFETCH(QString, typed); QFETCH(QString, button); QFETCH(bool, emitted);
        RenameDialog dialog("Camera");
        QSignalSpy newName(&dialog, &RenameDialog::Sig_SetNewName);
        dialog.open();
        auto *edit = dialog.findChild<QLineEdit *>();
        QCOMPARE(edit->text(), QString("Camera"));
        edit->setText(typed);
        QTest::mouseClick(dialog.findChild<QPushButton *>(button), Qt::LeftButton);
        // Ok closes as accepted even when nothing is emitted.
        QCOMPARE(dialog.result(), int(button == "btnOk"));
        QCOMPARE(newName, emitted ? QList<QVariantList>{{typed}} : QList<QVariantList>{});
    }

    // Keys go where the keyboard sends them: to the rename dialog's focus widget.
    void f2ThenTyping_renamesTheCell()
    {
        ListWidget list;
        TableWidget grid;
        grid.setPortNames(m_names.get());
        grid.buildGrid(3, 3);
        PortMenus menus(nullptr, nullptr, m_names.get(), &grid);
        menus.watch({&list, &grid, nullptr, nullptr, nullptr, nullptr}); // the other pages not yet opened
        grid.show();
        grid.setCurrentItem(grid.itemForKey(2));
        QTimer::singleShot(0, this, [] {
            QVERIFY(QTest::qWaitFor([] { return QApplication::focusWidget()
                                                && QApplication::focusWidget()->window() == QApplication::activeModalWidget(); }));
            QTest::keyClicks(QApplication::focusWidget(), "Stage Projector");
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        });
        QTest::keyClick(&grid, Qt::Key_F2);
        QCOMPARE(grid.outputName(2), QString("Stage Projector"));
    }

private:
    QTemporaryDir m_dir;
    std::unique_ptr<PortNames> m_names;
};

QTEST_MAIN(tst_RoutingView)
#include "tst_routingview.moc"
