// The Presets page against the emulator in this process, and its table in project.db.
#include "device/devicemodel.h"
#include "device/messagedistance.h"
#include "linkup.h"
#include "mainwindow/presetspage.h"
#include "simserver.h"
#include "store/database.h"
#include "store/portnamestore.h"
#include "store/presetnames.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QtTest>

class tst_Presets : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_dir.reset(new QTemporaryDir);
        setDatabasePath(m_dir->filePath("project.db"));
    }
    void cleanup() { setDatabasePath(QString()); }

    void savedRouting_comesBackOnRecallWithItsName()
    {
        SimOptions options;
        options.host = QHostAddress("127.0.0.67");
        options.port = 0;
        SimServer device(options);
        QVERIFY2(device.listen(), qPrintable(device.errorString()));
        // What the emulator itself holds: its answer to a status query, asked of a copy.
        auto emulatorRouting = [&] { return SimDevice(device.device()).handle("{param=status}").frames.mid(0, 3); };
        MessageDistance link;
        DeviceModel model;
        model.attach(&link);
        QVERIFY(connectLink(link, "127.0.0.67", device.commandPort(), false));
        link.sendSwitch(3, 1, DeviceModel::Video);
        QTRY_COMPARE(model.record().videoMap().value(1), 3);
        const QMap<int, int> savedMap = model.record().videoMap();
        const QList<QByteArray> saved = emulatorRouting();
        PresetsPage page(&link);
        auto *table = page.findChild<QTableWidget *>("presetTable");
        table->selectRow(1);
        page.findChild<QLineEdit *>("presetNameEdit")->setText("Lecture");
        QTest::mouseClick(page.findChild<QPushButton *>("presetSaveBtn"), Qt::LeftButton);
        link.sendSwitch(5, 1, DeviceModel::Video);
        QTRY_COMPARE(model.record().videoMap().value(1), 5);
        QByteArray log;
        connect(&device, &SimServer::logged, this, [&log](const QByteArray &lines) { log += lines; });
        QTest::mouseClick(page.findChild<QPushButton *>("presetRecallBtn"), Qt::LeftButton);
        // The recall, then the refresh of the whole state.
        QTRY_COMPARE(log, QByteArray("cmd: {param=Recall2}\ncmd: {param=version}\ncmd: {param=status}\n"
                                     "cmd: {param=inputinfo}\ncmd: {param=netInfo}\ncmd: {param=resolution}\n"));
        QCOMPARE(emulatorRouting(), saved);
        QTRY_COMPARE(model.record().videoMap(), savedMap);
        QCOMPARE(PresetNames::load(), (QMap<int, QString>{{2, "Lecture"}}));
        QCOMPARE(table->item(1, 1)->text(), QString("Lecture"));
    }

    void oldDatabase_gainsTheTableAndKeepsItsRows()
    {
        const QString path = databasePath();
        QVERIFY(executeSql("create table InPortName(Port integer primary key,PortName text)", path));
        QVERIFY(executeSql("insert into InPortName(Port,PortName) values(?,?)", {4, "Camera"}, path));
        MessageDistance link;
        PresetsPage page(&link);
        const RowList tables = selectRows("select name from sqlite_master where type='table' order by name", {}, 1, path);
        QCOMPARE(tables, (RowList{{"InPortName"}, {"PresetName"}}));
        QCOMPARE(PortNameStore::loadPortNames(PortNameStore::VideoInput), (QMap<int, QString>{{4, "Camera"}}));
    }

private:
    QScopedPointer<QTemporaryDir> m_dir;
};

QTEST_MAIN(tst_Presets)
#include "tst_presets.moc"
