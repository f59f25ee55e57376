#include "app/appsettings.h"
#include "device/devicemodel.h"
#include "device/messagedistance.h"
#include "dialogs/msgdlg.h"
#include "mainwindow/listwidget.h"
#include "mainwindow/tableitemwidget.h"
#include "mainwindow/tablewidget.h"
#include "mainwindow/widget.h"
#include "resources/guiresources.h"
#include "simprocess.h"
#include "store/accountstore.h"
#include "store/database.h"
#include "store/portnames.h"
#include "store/portnamestore.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QFile>
#include <QGraphicsOpacityEffect>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMimeData>
#include <QPaintEvent>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

// The whole window against the bundled emulator: every function gets a fresh
// emulator, project.db, config.ini, link, model and window.
class tst_MainWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void autoLoginStart_showsConnectedAndTheDeviceState();
    void everyPage_isLaidOutWhenFirstShown_data();
    void everyPage_isLaidOutWhenFirstShown();
    void dropOnEachTable_switchesTheDevice_data();
    void dropOnEachTable_switchesTheDevice();
    void joinLayoutButtons_sendModeAndReshapeTheWall_data();
    void joinLayoutButtons_sendModeAndReshapeTheWall();
    void videoMapReply_setsTheLayoutWithoutSendingItBack();
    void deviceReplies_repaintOnlyWhatChanged();
    void portMenus_listTheirEntriesInOrder_data();
    void portMenus_listTheirEntriesInOrder();
    void clear_leavesTheCellAsTheDeviceReportsIt_data();
    void clear_leavesTheCellAsTheDeviceReportsIt();
    void f2OnTheSignalList_renamesTheInputEverywhere();
    void languageSwitch_translatesAndKeepsTheVersions();
    void statusLine_followsDeviceStopAndRestart();
    void eightOutputModel_showsEightCellsAndAFourByTwoFace();
    void restoreOrMaximise_twiceReturnsToNormal();
    void windowGeometry_isKeptBetweenStarts();
    void factoryReset_asksFirst();
    void networkSettingsRefused_areNamed();
    void offline_dropSendsNothingAndSaysSo();
    void undo_restoresThePreviousRouteOnTheDevice();
    void lostSwitch_showsTheDevicesRouteAndNamesTheOutput();

private:
    // A widget of a page not yet opened is reached as the operator reaches it: its page is opened.
    template<typename T>
    T *child(const char *name) const
    {
        T *widget = m_window->findChild<T *>(name);
        if (!widget) {
            m_window->findChild<QTabWidget *>("tabWidget")->setCurrentIndex(pageOf(name));
            widget = m_window->findChild<T *>(name);
        }
        if (!widget)
            qFatal("no child %s", name);
        return widget;
    }
    static int pageOf(const QByteArray &name)
    {
        const QList<QByteArrayList> pages = {
            {}, {"jointTable", "joinBtn"}, {"audioTable", "hdmiAudioTable"}, {"irTable"}, {"preset"}, {"historyList"},
            {"ipEdit", "gatewayEdit", "subnetEdit", "macEdit", "confirmBtn", "factoryResetBtn"},
            {"CaptionBtn", "languageComboBox", "buzzerSwitch", "noLoginCheckBox", "usermanageBtn", "reloginBtn"},
            {"fpgaVersionLabel", "mcuVersionLabel", "softwareVersionLabel"}};
        for (int page = 0; page < pages.size(); ++page) {
            for (const QByteArray &prefix : pages[page]) {
                if (name.startsWith(prefix))
                    return page;
            }
        }
        return -1;
    }
    QString status(const char *state) const;
    bool dropInput(int listRow, TableWidget *table, int outputKey);
    QString cellInput(TableWidget *table, int key) const { return table->widgetForKey(key)->inputText(); }

    QString iniPath() const { return m_dir->filePath("config.ini"); }
    // The emulator's address: CTest runs halves of this suite side by side, each on its own.
    static QString host() { return qEnvironmentVariable("ORVEX_TEST_HOST", "127.0.0.31"); }

    std::unique_ptr<QTemporaryDir> m_dir;
    SimProcess m_sim;
    std::unique_ptr<AppSettings> m_settings;
    std::unique_ptr<MessageDistance> m_link;
    std::unique_ptr<DeviceModel> m_model;
    std::unique_ptr<PortNames> m_names;
    std::unique_ptr<Widget> m_window;
    bool m_refusalExpected = false;
};

void tst_MainWindow::initTestCase()
{
    initGuiResources();
}

void tst_MainWindow::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    // No-login mode stored: the window starts straight away and connects by itself.
    setDatabasePath(m_dir->filePath("project.db"));
    AccountStore::createTables();
    QCOMPARE(AccountStore::loginModel(), 0);  // a new file gets its row here
    QVERIFY(AccountStore::setLoginModel(1));

    QVERIFY(m_sim.start(host(), {"--verbose"}));
    QFile file(iniPath());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QString("[NetWork]\nIp=%1\nPort=%2\n[Language]\nlanguage=1\n").arg(host()).arg(m_sim.port()).toUtf8());
    file.close();

    m_settings = std::make_unique<AppSettings>(iniPath());
    m_link = std::make_unique<MessageDistance>();
    m_link->setReconnectInterval(200);
    m_model = std::make_unique<DeviceModel>();
    m_names = std::make_unique<PortNames>();
    m_window = std::make_unique<Widget>(WindowContext{m_settings.get(), m_model.get(), m_link.get(), m_names.get()});

    // Every function starts from a connected window that has the device's state.
    QTRY_COMPARE(m_settings->connectionState(), int(AppSettings::Connected));
    QTRY_VERIFY(!m_model->record().fpgaVersion().isEmpty() && !m_model->record().netIp().isEmpty());
}

void tst_MainWindow::cleanup()
{
    const QByteArray commands = m_sim.commandLog();
    m_window.reset();
    m_link.reset();
    m_model.reset();
    m_names.reset();
    m_settings.reset();
    m_sim.stop();
    m_dir.reset();
    // Everything the window sent, the device understood (but where a test sends what it refuses).
    QVERIFY2(!commands.contains("(not understood)") || m_refusalExpected, commands.constData());
    m_refusalExpected = false;
}

QString tst_MainWindow::status(const char *state) const
{
    const QString port = QString::number(m_sim.port());
    if (qstrcmp(state, "connected") == 0)
        return "OrvexMatrixControl  User:ADMIN   Ip:" + host() + "  Port:" + port + "  connected";
    return QString("OrvexMatrixControl  User:ADMIN  Ip:%1  Port:%2 %3").arg(host(), port, state);
}

bool tst_MainWindow::dropInput(int listRow, TableWidget *table, int outputKey)
{
    auto *list = child<ListWidget>("listWidget");
    list->setCurrentRow(listRow);
    std::unique_ptr<QMimeData> data(list->mimeData({list->currentItem()}));
    QTableWidgetItem *cell = table->itemForKey(outputKey);
    if (!cell)
        return false;
    const QPoint at = table->visualItemRect(cell).center();
    QDragEnterEvent enter(at, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(table->viewport(), &enter);
    QDropEvent drop(at, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(table->viewport(), &drop);
    return enter.isAccepted();
}

void tst_MainWindow::autoLoginStart_showsConnectedAndTheDeviceState()
{
    QVERIFY(QApplication::activeModalWidget() == nullptr);
    QCOMPARE(m_window->windowTitle(), QString("ORVEXMATRIX CONTORL"));
    QTRY_COMPARE(m_window->statusText(), status("connected"));
    for (const char *query : {"{param=version}", "{param=status}", "{param=inputinfo}", "{param=netInfo}",
                              "{param=resolution}"})
        QVERIFY2(m_sim.waitForCommand(query), query);
    // Pages are built when first shown (see everyPage_isLaidOutWhenFirstShown), and then show the device's state.
    for (const char *unopened : {"jointTable", "audioTable", "irTable", "presetTable", "ipEdit", "languageComboBox",
                                 "fpgaVersionLabel"})
        QVERIFY2(!m_window->findChild<QWidget *>(unopened), unopened);

    QTRY_COMPARE(child<QLabel>("fpgaVersionLabel")->text(), QString("FPGA: V1.0.5"));
    QCOMPARE(child<QLabel>("mcuVersionLabel")->text(), QString("MCU : V2.0.3"));
    QCOMPARE(child<QLabel>("softwareVersionLabel")->text(), QString("V1.0.2(20231215)"));
    QTRY_COMPARE(child<QLineEdit>("ipEdit")->text(), QString("192.168.1.188"));

    // The emulator starts with input n routed to output n.
    auto *video = child<TableWidget>("videoTable");
    QTRY_COMPARE(cellInput(video, 4), QString("[4] Input 4"));
    QCOMPARE(video->widgetForKey(9)->outputText(), QString("[9] Output 9"));

    auto *list = child<ListWidget>("listWidget");
    QCOMPARE(list->count(), 18);
    QCOMPARE(list->item(0)->text(), QString("[1] Input 1"));
    QVERIFY(!list->item(0)->isHidden());
    QVERIFY(list->item(9)->isHidden()); // audio entries only on the audio page
    const QMap<int, bool> signalMap = m_model->record().inputSignalMap();
    QVERIFY(signalMap.values().contains(true) && signalMap.values().contains(false));
    for (int port = 1; port <= 9; ++port) {
        QCOMPARE(list->item(port - 1)->foreground().color(),
                 QColor(signalMap.value(port) ? "#338c56" : "#2c3e50"));
    }

    QCOMPARE(m_window->joinFace(6), QSize(3, 3));
    auto *joint = child<TableWidget>("jointTable");
    QCOMPARE(joint->columnCount(), 3);
    QCOMPARE(joint->rowCount(), 3);
    QVERIFY(child<QPushButton>("joinBtn6")->isChecked());
    QCOMPARE(cellInput(child<TableWidget>("irTable"), 2), QString("[2] Input 2"));
    QCOMPARE(cellInput(child<TableWidget>("audioTable"), 3), QString("[3] Audio 3"));
}

void tst_MainWindow::everyPage_isLaidOutWhenFirstShown_data()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("widget");
    QTest::newRow("joint") << 1 << "Joint" << "joinBtn0";
    QTest::newRow("audio") << 2 << "Audio" << "audioTable";
    QTest::newRow("ir") << 3 << "Infared" << "irTable";
    QTest::newRow("presets") << 4 << "Presets" << "presetTable";
    QTest::newRow("history") << 5 << "History" << "historyList";
    QTest::newRow("network") << 6 << "NetWork Setting" << "ipEdit";
    QTest::newRow("other") << 7 << "OtherSetting" << "languageComboBox";
    QTest::newRow("about") << 8 << "About" << "fpgaVersionLabel";
}

// Pages not on show at the start are built or laid out when first opened.
void tst_MainWindow::everyPage_isLaidOutWhenFirstShown()
{
    QFETCH(int, tab);
    QFETCH(QString, title);
    QFETCH(QString, widget);
    auto *tabs = child<QTabWidget>("tabWidget");
    QCOMPARE(tabs->tabText(tab), title);
    tabs->setCurrentIndex(tab);
    auto *shown = m_window->findChild<QWidget *>(widget);
    QVERIFY(shown);
    QTRY_VERIFY(shown->isVisible());
    // Laid out: inside its page, away from the corner an unmanaged widget sits in.
    const QRect onPage(shown->mapTo(tabs->currentWidget(), QPoint(0, 0)), shown->size());
    QVERIFY2(tabs->currentWidget()->rect().contains(onPage), qPrintable(widget));
    QVERIFY(onPage.topLeft() != QPoint(0, 0) || onPage.width() > 200);
    QVERIFY(!shown->visibleRegion().isEmpty());
}

void tst_MainWindow::dropOnEachTable_switchesTheDevice_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<int>("tab");
    QTest::addColumn<int>("listRow");
    QTest::addColumn<int>("output");
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QString>("label");

    QTest::newRow("video") << "videoTable" << 0 << 1 << 5 << QByteArray("{param=2VIDEO5}") << "[2] Input 2";
    QTest::newRow("audio from the audio entries") << "audioTable" << 2 << 11 << 6 << QByteArray("{param=3AUDIO6}") << "[3] Audio 3";
    QTest::newRow("ir") << "irTable" << 3 << 6 << 1 << QByteArray("{param=7IR1}") << "[7] Input 7";
    QTest::newRow("HDMI audio, numbered from 101") << "hdmiAudioTable" << 2 << 11 << 105 << QByteArray("{param=3AUDIO105}") << "[3] Audio 3";
}

void tst_MainWindow::dropOnEachTable_switchesTheDevice()
{
    QFETCH(QString, table);
    QFETCH(int, tab);
    QFETCH(int, listRow);
    QFETCH(int, output);
    QFETCH(QByteArray, command);
    QFETCH(QString, label);

    child<QTabWidget>("tabWidget")->setCurrentIndex(tab);
    auto *grid = child<TableWidget>(table.toLatin1());
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QVERIFY(dropInput(listRow, grid, output));
    QVERIFY(m_sim.waitForCommand(command));
    // The device's answer is what the grid shows in the end.
    QTRY_COMPARE(cellInput(grid, output), label);
}

void tst_MainWindow::joinLayoutButtons_sendModeAndReshapeTheWall_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QSize>("layout");
    QTest::newRow("0") << 0 << QSize(1, 1);
    QTest::newRow("2") << 2 << QSize(1, 2);
    QTest::newRow("4") << 4 << QSize(3, 2);
    QTest::newRow("6 on the nine-output model") << 6 << QSize(3, 3);
    QTest::newRow("7 sends but keeps the layout") << 7 << QSize(3, 3);
}

void tst_MainWindow::joinLayoutButtons_sendModeAndReshapeTheWall()
{
    QFETCH(int, id);
    QFETCH(QSize, layout);
    m_refusalExpected = id > 6;

    child<QTabWidget>("tabWidget")->setCurrentIndex(1);
    m_window->JoinLayoutButtonChangeSlot(id);
    auto *joint = child<TableWidget>("jointTable");
    QCOMPARE(QSize(joint->columnCount(), joint->rowCount()), layout);
    QVERIFY(m_sim.waitForCommand(QString("{param=mode%1}").arg(id).toLatin1()));
    // The device's answer (none for an unknown mode) must leave the layout as it is;
    // replies come in order, so once a later query is answered that one is in.
    QSignalSpy volumes(m_link.get(), &MessageDistance::receiveVolumnImformationSig);
    m_link->sendVolumeQuery();
    QVERIFY(volumes.wait());
    QCOMPARE(QSize(joint->columnCount(), joint->rowCount()), layout);
}

void tst_MainWindow::videoMapReply_setsTheLayoutWithoutSendingItBack()
{
    const int modeCommandsBefore = m_sim.commandLog().count("{param=mode");
    m_link->sendMode(3); // straight to the device, as another client would
    QVERIFY(m_sim.waitForCommand("{param=mode3}"));
    // The Joint page, built only now, shows the layout the device reported before.
    QTRY_COMPARE(m_model->record().joinMode(), 3);
    QVERIFY(!m_window->findChild<TableWidget *>("jointTable"));
    auto *joint = child<TableWidget>("jointTable");
    QTRY_COMPARE(QSize(joint->columnCount(), joint->rowCount()), QSize(2, 2));
    QVERIFY(child<QPushButton>("joinBtn3")->isChecked());
    // Commands go out in order: once a later query is answered, nothing more was sent before it.
    QSignalSpy volumes(m_link.get(), &MessageDistance::receiveVolumnImformationSig);
    m_link->sendVolumeQuery();
    QVERIFY(volumes.wait());
    QCOMPARE(m_sim.commandLog().count("{param=mode"), modeCommandsBefore + 1);

    // A joint drop in mode 3 routes the four wall outputs, video and audio.
    QVERIFY(dropInput(4, joint, 1));
    QVERIFY(m_sim.waitForCommand("{param=5VIDEO101}"));
    QVERIFY(m_sim.waitForCommand("{param=5AUDIO1}"));
    auto *video = child<TableWidget>("videoTable");
    for (int output = 1; output <= 4; ++output)
        QTRY_COMPARE(cellInput(video, output), QString("[5] Input 5"));
    QCOMPARE(cellInput(video, 6), QString("[6] Input 6"));
}

namespace {
// Everything painted in a window, in the window's coordinates.
class PaintedArea : public QObject
{
public:
    explicit PaintedArea(QWidget *window) : m_window(window) { qApp->installEventFilter(this); }
    ~PaintedArea() override { qApp->removeEventFilter(this); }
    QRegion area() const { return m_area; }
    void clear() { m_area = QRegion(); }
    // The replies already received handled, and the updates they asked for painted
    // (each pass handles what the one before posted).
    static void flush()
    {
        for (int pass = 0; pass < 3; ++pass) {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
        }
    }

protected:
    bool eventFilter(QObject *object, QEvent *event) override
    {
        auto *widget = qobject_cast<QWidget *>(object);
        if (event->type() == QEvent::Paint && widget && widget->window() == m_window)
            m_area += static_cast<QPaintEvent *>(event)->region().translated(widget->mapTo(m_window, QPoint()));
        return false;
    }

private:
    QWidget *m_window;
    QRegion m_area;
};
} // namespace

void tst_MainWindow::deviceReplies_repaintOnlyWhatChanged()
{
    auto *video = child<TableWidget>("videoTable");
    QVERIFY(m_window->isVisible());
    QTRY_COMPARE(cellInput(video, 5), QString("[5] Input 5"));
    PaintedArea painted(m_window.get());
    PaintedArea::flush();

    // The device's whole state again, unchanged: nothing is painted. The input
    // resolutions are the last signal of the last reply: every reply before them
    // has been handed to the window once they are raised.
    painted.clear();
    QSignalSpy last(m_link.get(), &MessageDistance::receiveInChannelResolutionMapSig);
    m_link->sendStatusQuery();
    m_link->sendInputInfoQuery();
    QTRY_VERIFY(!last.isEmpty());
    PaintedArea::flush();
    QVERIFY2(painted.area().isEmpty(), qPrintable(QString("painted %1").arg(painted.area().boundingRect().width())));

    // One output switched past the window, as another client would: that cell, and nothing outside it.
    painted.clear();
    m_link->sendSwitch(3, 5, DeviceModel::Video);
    QTRY_COMPARE(cellInput(video, 5), QString("[3] Input 3"));
    PaintedArea::flush();
    QWidget *cell = video->widgetForKey(5);
    const QRect cellArea(cell->mapTo(m_window.get(), QPoint()), cell->size());
    QVERIFY(!painted.area().isEmpty());
    QVERIFY2(cellArea.contains(painted.area().boundingRect()),
             qPrintable(QString("painted %1,%2 %3x%4 outside the cell")
                                .arg(painted.area().boundingRect().x()).arg(painted.area().boundingRect().y())
                                .arg(painted.area().boundingRect().width()).arg(painted.area().boundingRect().height())));
}

void tst_MainWindow::portMenus_listTheirEntriesInOrder_data()
{
    // Entry text, then what it does: a command on the wire, or the dialog it
    // opens ("class title"). Submenu entries follow their submenu as "menu/entry".
    QTest::addColumn<QString>("view");
    QTest::addColumn<int>("port");
    QTest::addColumn<QStringList>("entries");
    const QString rename = "RenameDialog ";
    QTest::newRow("signal list") << "listWidget" << 3 << QStringList{
        "Rename(F2)", rename, "OSD Setting", "{param=Get_OSD3}",
        "GraphicsTest", "GraphicsTestDialog Input Graphics test",
        "Volume Setting", "VolumnSettingDialog Volume Setting [InChannel3]",
        "Edid", "EdidSettingDilog EDID Setting [InChannel3]",
        "Resolution", "ResolutionSetDialog [InChannel3]"};
    QTest::newRow("video") << "videoTable" << 5 << QStringList{
        "Rename(F2)", rename, "Resolution", "ResolutionSetDialog [OutChannel5]",
        "Graphics Test", "GraphicsTestDialog OutPut Graphics test"};
    QTest::newRow("first audio") << "audioTable" << 5 << QStringList{
        "Clear", "{param=0AUDIO5}", "Rename(F2)", rename,
        "Audio Mode/Digital Audio", "{param=Analog_sel5/0}", "Audio Mode/Analog Audio", "{param=Analog_sel5/1}"};
    QTest::newRow("second audio") << "hdmiAudioTable" << 105 << QStringList{
        "Clear", "{param=0AUDIO105}", "Rename(F2)", rename,
        "Resolution", "ResolutionSetDialog [OutChannel5]", "Graphics Test", "GraphicsTestDialog OutPut Graphics test",
        "Audio Mode/Digital Audio", "{param=Analog_sel5/0}", "Audio Mode/Analog Audio", "{param=Analog_sel5/1}"};
    QTest::newRow("ir") << "irTable" << 5 << QStringList{"Rename(F2)", rename, "Clear", "{param=0IR5}"};
    QTest::newRow("joint") << "jointTable" << 1 << QStringList{
        "Rename(F2)", rename, "Clear", "{param=0VIDEO101}",
        "Resolution", "ResolutionSetDialog [OutChannel1]", "Graphics Test", "GraphicsTestDialog OutPut Graphics test"};
}

void tst_MainWindow::portMenus_listTheirEntriesInOrder()
{
    QFETCH(QString, view);
    QFETCH(int, port);
    QFETCH(QStringList, entries);

    auto *widget = child<QWidget>(view.toLatin1());
    if (auto *list = qobject_cast<ListWidget *>(widget))
        list->setCurrentRow(port - 1);
    else
        qobject_cast<TableWidget *>(widget)->setCurrentItem(qobject_cast<TableWidget *>(widget)->itemForKey(port));

    std::unique_ptr<QMenu> menu(m_window->createPortMenu(widget));
    QList<QAction *> actions;
    QStringList texts;
    for (QAction *action : menu->actions()) {
        if (QMenu *sub = action->menu()) {
            for (QAction *entry : sub->actions()) {
                actions << entry;
                texts << action->text() + "/" + entry->text();
            }
        } else {
            actions << action;
            texts << action->text();
        }
    }
    QStringList expectedTexts;
    for (int i = 0; i < entries.size(); i += 2)
        expectedTexts << entries[i];
    QCOMPARE(texts, expectedTexts);

    for (int i = 0; i < actions.size(); ++i) {
        const QString effect = entries[2 * i + 1];
        QString opened;
        QTimer::singleShot(0, this, [&opened] {
            if (auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget())) {
                opened = QString(dialog->metaObject()->className()) + " " + dialog->windowTitle();
                dialog->done(0);
            }
        });
        actions[i]->trigger();
        if (effect.startsWith("{param="))
            QVERIFY2(m_sim.waitForCommand(effect.toLatin1()), qPrintable(effect));
        else
            QCOMPARE(opened.left(effect.size()), effect);
    }
}

void tst_MainWindow::clear_leavesTheCellAsTheDeviceReportsIt_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("routed");
    QTest::newRow("audio") << "audioTable" << 5 << "[5] Audio 5";
    QTest::newRow("HDMI audio") << "hdmiAudioTable" << 105 << "[5] Audio 5";
    QTest::newRow("ir") << "irTable" << 5 << "[5] Input 5";
    QTest::newRow("joined wall") << "jointTable" << 1 << "[9] Input 9";
}

void tst_MainWindow::clear_leavesTheCellAsTheDeviceReportsIt()
{
    QFETCH(QString, table);
    QFETCH(int, key);
    QFETCH(QString, routed);

    auto *grid = child<TableWidget>(table.toLatin1());
    if (table == "jointTable")
        m_link->sendSwitch(9, 1, DeviceModel::Wall);
    QTRY_COMPARE(cellInput(grid, key), routed);
    grid->setCurrentItem(grid->itemForKey(key));
    std::unique_ptr<QMenu> menu(m_window->createPortMenu(grid));
    const QList<QAction *> actions = menu->actions();
    const auto clear = std::find_if(actions.begin(), actions.end(), [](QAction *a) { return a->text() == "Clear"; });
    QVERIFY(clear != actions.end());
    (*clear)->trigger();
    // Blank only once the device's map says so; the device agrees after a refresh.
    QTRY_COMPARE(cellInput(grid, key), QString());
    QSignalSpy resolutions(m_link.get(), &MessageDistance::receiveOutChannelResolutionMapSig);
    m_window->on_refrenshBtn_clicked();
    QVERIFY(resolutions.wait());
    QCOMPARE(cellInput(grid, key), QString());
    if (table == "jointTable") {
        for (int output = 1; output <= 9; ++output)
            QCOMPARE(cellInput(child<TableWidget>("videoTable"), output), QString());
    }
}

void tst_MainWindow::f2OnTheSignalList_renamesTheInputEverywhere()
{
    child<QTabWidget>("tabWidget")->setCurrentIndex(0);
    auto *list = child<ListWidget>("listWidget");
    m_link->sendSwitch(2, 5, 0);
    QTRY_COMPARE(cellInput(child<TableWidget>("videoTable"), 5), QString("[2] Input 2"));
    list->setCurrentRow(1);
    QTimer::singleShot(0, this, [] {
        QWidget *dialog = QApplication::activeModalWidget();
        QVERIFY(dialog);
        auto *edit = dialog->findChild<QLineEdit *>();
        QCOMPARE(edit->text(), QString("Input 2"));
        edit->setText("Lectern");
        QTest::mouseClick(dialog->findChild<QPushButton *>("btnOk"), Qt::LeftButton);
    });
    QTest::keyClick(list, Qt::Key_F2);
    QCOMPARE(PortNameStore::loadPortNames(PortNameStore::VideoInput).value(2), QString("Lectern"));
    QCOMPARE(list->item(1)->text(), QString("[2] Lectern"));
    QTRY_COMPARE(cellInput(child<TableWidget>("videoTable"), 5), QString("[2] Lectern"));
}

void tst_MainWindow::languageSwitch_translatesAndKeepsTheVersions()
{
    child<QLabel>("fpgaVersionLabel");  // built before the switch, so that it is re-translated
    auto *audioTabs = child<TableWidget>("audioTable")->parentWidget()->parentWidget()->parentWidget();
    auto *audioTitles = qobject_cast<QTabWidget *>(audioTabs);
    QVERIFY(audioTitles);
    auto *combo = child<QComboBox>("languageComboBox");
    auto *heading = child<QLabel>("labelSignalList");
    QCOMPARE(heading->text(), QString("Signal list"));
    QCOMPARE(audioTitles->tabText(1), QString("HDMI Audio"));

    combo->setCurrentIndex(0);
    QCOMPARE(heading->text(), QString::fromUtf8("信号列表"));
    QCOMPARE(m_settings->language(), 0);
    QCOMPARE(child<QLabel>("fpgaVersionLabel")->text(), QString("FPGA: V1.0.5"));
    QCOMPARE(child<QLabel>("softwareVersionLabel")->text(), QString("V1.0.2(20231215)"));
    // The window re-reads its status line and the titles of the tabs added in code
    // when the language-change event reaches it.
    QTRY_VERIFY(m_window->statusText().contains(QString::fromUtf8("已连接")));
    QCOMPARE(child<QTabWidget>("tabWidget")->tabText(4), QString::fromUtf8("预设"));
    QCOMPARE(child<QTabWidget>("tabWidget")->tabText(5), QString::fromUtf8("历史记录"));
    QCOMPARE(audioTitles->tabText(1), QString::fromUtf8("HDMI音频"));  // a page built after the start

    // The same language again: nothing stored, nothing changes.
    m_settings->setLanguage(5);
    combo->setCurrentIndex(0);
    QCOMPARE(m_settings->language(), 5);

    combo->setCurrentIndex(1);
    QCOMPARE(heading->text(), QString("Signal list"));
    QCOMPARE(child<QLabel>("mcuVersionLabel")->text(), QString("MCU : V2.0.3"));
    // After a language change the evenly spaced "connected" text is shown.
    QTRY_COMPARE(m_window->statusText(), QString("OrvexMatrixControl  User:ADMIN  Ip:%1  Port:%2 connected").arg(host()).arg(m_sim.port()));
}

namespace {
QByteArray fileBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}
} // namespace

void tst_MainWindow::statusLine_followsDeviceStopAndRestart()
{
    // A device that goes away must never cost the operator local data.
    const QByteArray iniBefore = fileBytes(iniPath());
    const QByteArray dbBefore = fileBytes(databasePath());
    m_link->sendSwitch(7, 1, 2);
    QTRY_COMPARE(cellInput(child<TableWidget>("irTable"), 1), QString("[7] Input 7"));

    // Each reconnect round shows "connecting" until its refusal shows "disconnected":
    // sample the line right after the window's own slot has run.
    QStringList shownOnRound;
    const QMetaObject::Connection sampler = connect(m_link.get(), &MessageDistance::connectingSig,
                                                    this, [&] { shownOnRound << m_window->statusText(); });
    m_sim.stop();
    QTRY_COMPARE(m_window->statusText(), status("disconnected"));
    QTRY_VERIFY_WITH_TIMEOUT(!shownOnRound.isEmpty(), 5000);
    disconnect(sampler);
    QCOMPARE(shownOnRound.first(), status("connecting"));
    // Nothing is cleared while the device is away.
    QCOMPARE(cellInput(child<TableWidget>("irTable"), 1), QString("[7] Input 7"));

    QVERIFY(m_sim.start(host(), {"--verbose"}));
    QTRY_COMPARE_WITH_TIMEOUT(m_window->statusText(), status("connected"), 6000);
    QCOMPARE(fileBytes(iniPath()), iniBefore);
    QCOMPARE(fileBytes(databasePath()), dbBefore);
}

void tst_MainWindow::eightOutputModel_showsEightCellsAndAFourByTwoFace()
{
    m_sim.stop();
    QVERIFY(m_sim.start(host(), {"--verbose", "--model", "ORXM100"}));
    QTRY_COMPARE_WITH_TIMEOUT(m_model->record().modelFlag(), 0, 6000);
    QCOMPARE(m_window->joinFace(6), QSize(4, 2));
    auto *video = child<TableWidget>("videoTable");
    QVERIFY(!video->cellWidget(2, 2));
    QVERIFY(video->widgetForKey(8));
    QCOMPARE(child<ListWidget>("listWidget")->count(), 16);

    child<QTabWidget>("tabWidget")->setCurrentIndex(1);
    m_window->JoinLayoutButtonChangeSlot(6);
    QVERIFY(m_sim.waitForCommand("{param=mode6}"));
    auto *joint = child<TableWidget>("jointTable");
    QTRY_COMPARE(QSize(joint->columnCount(), joint->rowCount()), QSize(4, 2));
}

void tst_MainWindow::restoreOrMaximise_twiceReturnsToNormal()
{
    auto *button = child<QPushButton>("btn_RestoreOrMax");
    QTest::mouseClick(button, Qt::LeftButton);
    QTRY_VERIFY(m_window->isMaximized());
    QVERIFY(button->styleSheet().contains(":/Images/window/restore.png"));
    QTest::mouseClick(button, Qt::LeftButton);
    QTRY_VERIFY(!m_window->isMaximized());
    QVERIFY(button->styleSheet().contains(":/Images/window/fullscreen.png"));
}

void tst_MainWindow::windowGeometry_isKeptBetweenStarts()
{
    // This window started from a config.ini without the key; the next start finds it.
    QVERIFY(m_settings->windowGeometry().isEmpty());
    m_window->setGeometry(40, 30, 1100, 700);
    const QRect placed = m_window->geometry();
    m_window->close();
    m_window = std::make_unique<Widget>(WindowContext{m_settings.get(), m_model.get(), m_link.get(), m_names.get()});
    QCOMPARE(m_window->geometry().size(), placed.size());
    QCOMPARE(QSettings(iniPath(), QSettings::IniFormat).value("NetWork/Port").toInt(), int(m_sim.port()));
}

void tst_MainWindow::factoryReset_asksFirst()
{
    auto *reset = child<QPushButton>("factoryResetBtn");
    for (int answer : {0, 1}) {
        QString asked;
        QTimer::singleShot(0, this, [&asked, answer] {
            auto *box = qobject_cast<MsgDlg *>(QApplication::activeModalWidget());
            QVERIFY(box);
            asked = box->text();
            box->done(answer);
        });
        reset->click();
        QVERIFY2(asked.contains(host()), qPrintable(asked));
    }
    // Only the confirmed click reached the device.
    QVERIFY(m_sim.waitForCommand("{param=Default}"));
    QCOMPARE(m_sim.commandLog().count("cmd: {param=Default}"), 1);
}

void tst_MainWindow::networkSettingsRefused_areNamed()
{
    // Mixed separators pass the field's check; the device refuses them.
    m_refusalExpected = true;
    child<QLineEdit>("macEdit")->setText("AA:bb-CC:dd:EE:ff");
    QTest::mouseClick(child<QPushButton>("confirmBtn"), Qt::LeftButton);
    QVERIFY(m_sim.waitForCommand("{param=&ip,ip=192.168.1.188,gateway=192.168.1.1,subnet=255.255.255.0,mac=AA:bb-CC:dd:EE:ff}"));
    QTRY_VERIFY(m_window->noticeText().contains("did not take the network settings"));
    QCOMPARE(child<QLineEdit>("macEdit")->text(), QString("00:1a:2b:3c:4d:5e"));
}

void tst_MainWindow::offline_dropSendsNothingAndSaysSo()
{
    auto *video = child<TableWidget>("videoTable");
    QTRY_COMPARE(cellInput(video, 5), QString("[5] Input 5"));
    m_sim.stop();
    QTRY_COMPARE(m_window->statusText(), status("disconnected"));
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    // Grids look inactive offline, also one whose page is opened for the first time now.
    auto *ir = child<TableWidget>("irTable");
    for (TableWidget *grid : {video, ir}) {
        auto *faded = qobject_cast<QGraphicsOpacityEffect *>(grid->graphicsEffect());
        QVERIFY2(faded && faded->opacity() < 1, qPrintable(grid->objectName()));
    }
    child<QTabWidget>("tabWidget")->setCurrentIndex(0);
    dropInput(1, video, 5);
    QCOMPARE(cellInput(video, 5), QString("[5] Input 5"));
    QVERIFY(m_window->noticeText().contains("Not connected"));
    QVERIFY(m_sim.start(host(), {"--verbose"}));
    QTRY_COMPARE_WITH_TIMEOUT(m_window->statusText(), status("connected"), 6000);
    QVERIFY(!m_sim.commandLog().contains("VIDEO"));  // nothing was queued for later
    QVERIFY(!ir->graphicsEffect());
}

void tst_MainWindow::undo_restoresThePreviousRouteOnTheDevice()
{
    auto *video = child<TableWidget>("videoTable");
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QVERIFY(dropInput(1, video, 5));
    QVERIFY(m_sim.waitForCommand("{param=2VIDEO5}"));
    // Confirmed by the device's map: no longer drawn as pending.
    QTRY_VERIFY(!video->widgetForKey(5)->isPending());
    QCOMPARE(cellInput(video, 5), QString("[2] Input 2"));

    QTest::keySequence(m_window.get(), QKeySequence::Undo);
    QVERIFY(m_sim.waitForCommand("{param=5VIDEO5}"));
    QTRY_COMPARE(cellInput(video, 5), QString("[5] Input 5"));
    QTRY_VERIFY(!video->widgetForKey(5)->isPending());
    // Both changes are in the history, newest first; the undo itself is not undone again.
    auto *history = child<QListWidget>("historyList");
    QTRY_COMPARE(history->count(), 2);
    QVERIFY(history->item(0)->text().contains("output 5: input 2 -> 5"));
    QTest::keySequence(m_window.get(), QKeySequence::Undo);
    QCOMPARE(m_window->noticeText(), QString("Nothing to undo."));
}

void tst_MainWindow::lostSwitch_showsTheDevicesRouteAndNamesTheOutput()
{
    // A device that silently drops every second switch.
    m_sim.stop();
    QTRY_COMPARE(m_window->statusText(), status("disconnected"));
    QVERIFY(m_sim.start(host(), {"--verbose", "--lose-every", "2"}));
    QTRY_COMPARE_WITH_TIMEOUT(m_window->statusText(), status("connected"), 6000);
    auto *video = child<TableWidget>("videoTable");
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QVERIFY(dropInput(1, video, 5));
    QVERIFY(dropInput(2, video, 6));
    QVERIFY(m_sim.waitForCommand("{param=3VIDEO6}"));
    QTRY_VERIFY(!video->widgetForKey(6)->isPending());
    QCOMPARE(cellInput(video, 5), QString("[2] Input 2"));
    QCOMPARE(cellInput(video, 6), QString("[6] Input 6"));
    QTRY_VERIFY2(m_window->noticeText().contains("Output 6 did not switch"), qPrintable(m_window->noticeText()));
}

QTEST_MAIN(tst_MainWindow)
#include "tst_mainwindow.moc"
