#include "device/devicerecord.h"
#include "device/devicestate.h"

#include <QJsonDocument>
#include <QTest>

namespace {

QJsonObject json(const QString &text)
{
    return QJsonDocument::fromJson(text.toUtf8()).object();
}

// Port -> value with the ports as keys, so that rows can state maps as JSON text.
template<typename T>
QJsonObject portsAsJson(const QMap<int, T> &map)
{
    QJsonObject object;
    for (auto it = map.begin(); it != map.end(); ++it)
        object.insert(QString::number(it.key()), QJsonValue::fromVariant(QVariant::fromValue(it.value())));
    return object;
}

QJsonObject fields(const OverlayRecord &overlay)
{
    return {{"enabled", overlay.enabled},
            {"speed", overlay.speed},
            {"textColor", overlay.textColor},
            {"x", overlay.positionX},
            {"y", overlay.positionY},
            {"backgroundEnabled", overlay.backgroundEnabled},
            {"backgroundColor", overlay.backgroundColor},
            {"direction", overlay.direction}};
}

} // namespace

class tst_DeviceState : public QObject
{
    Q_OBJECT

private slots:
    void mapReplies_putEachValueUnderItsPort_data();
    void mapReplies_putEachValueUnderItsPort();
    void storeVersion_setsTheModelOnlyForKnownTypes_data();
    void storeVersion_setsTheModelOnlyForKnownTypes();
    void storeVideoMap_replacesTheMapWholeAndTakesTheMode_data();
    void storeVideoMap_replacesTheMapWholeAndTakesTheMode();
    void overlayFromReply_changesOnlyWhatTheReplyNames_data();
    void overlayFromReply_changesOnlyWhatTheReplyNames();
    void jointOutputs_followsModeAndModel_data();
    void jointOutputs_followsModeAndModel();
    void toJson_ofAFreshRecord_reportsTheLargerModelInMode6();
};

void tst_DeviceState::mapReplies_putEachValueUnderItsPort_data()
{
    QTest::addColumn<QString>("reader");
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const char *reader, const char *prefix, const char *reply,
                        const char *expected) { QTest::newRow(name) << reader << prefix << reply << expected; };

    row("numbered keys", "int", "audio", R"({"audio1":3,"audio2":5})", R"({"1":3,"2":5})");
    row("ports beyond nine", "int", "IR", R"({"IR10":2,"IR101":3})", R"({"10":2,"101":3})");
    row("key without number lands on port 0", "int", "video", R"({"mode":6})", R"({"0":6})");
    row("key that is only the prefix lands on port 0", "int", "audio", R"({"audio":4})", R"({"0":4})");
    row("numbers given as strings", "int", "Volume", R"({"Volume1":"40","Volume2":"7"})", R"({"1":40,"2":7})");
    row("text that is no number counts as 0", "int", "IR", R"({"IR1":"x"})", R"({"1":0})");
    row("input resolutions", "text", "in", R"({"in1":"1920x1080x60Hz","in4":"noinput"})",
        R"({"1":"1920x1080x60Hz","4":"noinput"})");
    row("input-3 has no number right after in", "text", "in", R"({"input-3":"true"})", R"({"0":"true"})");
    row("numbers become text", "text", "out", R"({"out1":1080})", R"({"1":"1080"})");
    row("signal given as text true", "signal", "", R"({"input-3":"true"})", R"({"3":true})");
    row("signal given as text false", "signal", "", R"({"input-3":"false"})", R"({"3":false})");
    row("signal given as upper case TRUE", "signal", "", R"({"input-3":"TRUE"})", R"({"3":false})");
    row("signal given as JSON true", "signal", "", R"({"input-3":true})", R"({"3":false})");
    row("signal given as text 1", "signal", "", R"({"input-3":"1"})", R"({"3":false})");
    row("signal key without dash lands on port 0", "signal", "", R"({"in1":"true","input-12":"true"})",
        R"({"0":true,"12":true})");
}

void tst_DeviceState::mapReplies_putEachValueUnderItsPort()
{
    QFETCH(QString, reader);
    QFETCH(QString, prefix);
    QFETCH(QString, reply);
    QFETCH(QString, expected);

    QJsonObject ports;
    if (reader == "int")
        ports = portsAsJson(DeviceState::intMap(json(reply), prefix));
    else if (reader == "text")
        ports = portsAsJson(DeviceState::textMap(json(reply), prefix));
    else
        ports = portsAsJson(DeviceState::signalMap(json(reply)));
    QCOMPARE(ports, json(expected));
}

void tst_DeviceState::storeVersion_setsTheModelOnlyForKnownTypes_data()
{
    QTest::addColumn<QString>("previousType"); // empty: a fresh record
    QTest::addColumn<QString>("reply");
    QTest::addColumn<int>("returned");
    QTest::addColumn<int>("flag");
    QTest::addColumn<QString>("model");
    QTest::addColumn<QString>("fpga");
    QTest::addColumn<QString>("mcu");
    const auto row = [](const char *name, const char *previous, const char *reply, int returned, int flag,
                        const char *model, const char *fpga, const char *mcu) {
        QTest::newRow(name) << previous << reply << returned << flag << model << fpga << mcu;
    };

    row("ORXM200 on a fresh record", "", R"({"type":"ORXM200","FPGA":"V1.0.5","MCU":"V2.0.3"})", 1, 1, "ORXM200",
        "FPGA: V1.0.5", "MCU : V2.0.3");
    row("ORXM100 after ORXM200", "ORXM200", R"({"type":"ORXM100","FPGA":"A","MCU":"B"})", 0, 0, "ORXM100", "FPGA: A",
        "MCU : B");
    row("ORXM200 after ORXM100", "ORXM100", R"({"type":"ORXM200","FPGA":"A","MCU":"B"})", 1, 1, "ORXM200", "FPGA: A",
        "MCU : B");
    row("unknown type keeps the model", "ORXM100", R"({"type":"ORXM300","FPGA":"V9","MCU":"V8"})", -1, 0, "ORXM100",
        "FPGA: V9", "MCU : V8");
    row("lower case type is unknown", "", R"({"type":"orxm100","FPGA":"V9","MCU":"V8"})", -1, 1, "", "FPGA: V9",
        "MCU : V8");
    row("versions given as numbers", "", R"({"type":"ORXM200","FPGA":1.5,"MCU":2})", 1, 1, "ORXM200", "FPGA: 1.5",
        "MCU : 2");
    row("versions missing", "ORXM200", R"({"type":"ORXM200"})", 1, 1, "ORXM200", "FPGA: ", "MCU : ");
}

void tst_DeviceState::storeVersion_setsTheModelOnlyForKnownTypes()
{
    QFETCH(QString, previousType);
    QFETCH(QString, reply);
    QFETCH(int, returned);
    QFETCH(int, flag);
    QFETCH(QString, model);
    QFETCH(QString, fpga);
    QFETCH(QString, mcu);

    DeviceRecord record;
    if (!previousType.isEmpty())
        DeviceState::storeVersion(&record, QJsonObject{{"type", previousType}, {"FPGA", "old"}, {"MCU", "old"}});
    QCOMPARE(DeviceState::storeVersion(&record, json(reply)), returned);
    QCOMPARE(record.modelFlag(), flag);
    QCOMPARE(record.modelType(), model);
    QCOMPARE(record.fpgaVersion(), fpga);
    QCOMPARE(record.mcuVersion(), mcu);
}

void tst_DeviceState::storeVideoMap_replacesTheMapWholeAndTakesTheMode_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QString>("map");
    QTest::addColumn<int>("mode");

    // "mode" carries no port number, so it also lands on port 0 of the map.
    QTest::newRow("two outputs in mode 3") << R"({"video1":3,"video2":1,"mode":3})" << R"({"0":3,"1":3,"2":1})" << 3;
    QTest::newRow("mode above 6 is kept") << R"({"video1":2,"mode":9})" << R"({"0":9,"1":2})" << 9;
    QTest::newRow("numbers given as strings") << R"({"video7":"4","mode":"0"})" << R"({"0":0,"7":4})" << 0;
}

void tst_DeviceState::storeVideoMap_replacesTheMapWholeAndTakesTheMode()
{
    QFETCH(QString, reply);
    QFETCH(QString, map);
    QFETCH(int, mode);

    DeviceRecord record;
    DeviceState::storeVideoMap(&record, json(R"({"video1":1,"video2":2,"video8":8,"video9":9,"mode":6})"));
    DeviceState::storeVideoMap(&record, json(reply));
    QCOMPARE(portsAsJson(record.videoMap()), json(map));
    QCOMPARE(record.joinMode(), mode);
}

void tst_DeviceState::overlayFromReply_changesOnlyWhatTheReplyNames_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QString>("changed"); // fields that differ from the defaults

    QTest::newRow("empty reply gives the defaults") << "{}" << "{}";
    // As the parser hands it over after quoting the bare switches, colours and direction.
    QTest::newRow("full caption reply")
        << R"({"Switch":"true","Speed":5,"Color":"255,0,0","Position_x":100,"Position_y":20,)"
           R"("Bg_switch":"true","Bg_Color":"0,0,0","Move_dir":"right"})"
        << R"({"enabled":true,"speed":5,"textColor":"255,0,0","x":100,"y":20,"backgroundEnabled":true,)"
           R"("backgroundColor":"0,0,0","direction":"right"})";
    QTest::newRow("switches other than the text true are off") << R"({"Switch":"TRUE","Bg_switch":true})" << "{}";
    QTest::newRow("numbers given as strings") << R"({"Speed":"7","Position_x":"12","Position_y":"3"})"
                                              << R"({"speed":7,"x":12,"y":3})";
}

void tst_DeviceState::overlayFromReply_changesOnlyWhatTheReplyNames()
{
    QFETCH(QString, reply);
    QFETCH(QString, changed);

    QJsonObject expected = json(R"({"enabled":false,"speed":0,"textColor":"255,255,255","x":0,"y":0,)"
                                R"("backgroundEnabled":false,"backgroundColor":"255,255,255","direction":"left"})");
    const QJsonObject changes = json(changed);
    for (auto it = changes.begin(); it != changes.end(); ++it)
        expected.insert(it.key(), it.value());
    QCOMPARE(fields(DeviceState::overlayFromReply(json(reply))), expected);
}

void tst_DeviceState::jointOutputs_followsModeAndModel_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("modelFlag");
    QTest::addColumn<int>("outputs");

    // Modes -1 and 7 are no join layouts: nothing is joined.
    const QMap<int, QPair<int, int>> table{{-1, {0, 0}}, {0, {1, 1}}, {1, {2, 2}}, {2, {2, 2}}, {3, {4, 4}},
                                           {4, {6, 6}},  {5, {6, 6}}, {6, {9, 8}}, {7, {0, 0}}};
    for (auto it = table.begin(); it != table.end(); ++it) {
        QTest::addRow("mode %d on ORXM200", it.key()) << it.key() << 1 << it.value().first;
        QTest::addRow("mode %d on ORXM100", it.key()) << it.key() << 0 << it.value().second;
    }
}

void tst_DeviceState::jointOutputs_followsModeAndModel()
{
    QFETCH(int, mode);
    QFETCH(int, modelFlag);
    QFETCH(int, outputs);

    QCOMPARE(DeviceState::jointOutputs(mode, modelFlag), outputs);
}

void tst_DeviceState::toJson_ofAFreshRecord_reportsTheLargerModelInMode6()
{
    DeviceRecord record;
    QJsonObject state = DeviceState::toJson(record);
    QCOMPARE(state.value("modelFlag").toInt(), 1);
    QCOMPARE(state.value("joinMode").toInt(), 6);
    QCOMPARE(state.value("video").toObject(), QJsonObject());

    record.setInputSignalMap({{2, true}});
    record.setVideoMap({{3, 7}});
    state = DeviceState::toJson(record);
    QCOMPARE(state.value("inputSignal").toObject(), json(R"({"2":true})"));
    QCOMPARE(state.value("video").toObject(), json(R"({"3":7})"));
}

QTEST_GUILESS_MAIN(tst_DeviceState)
#include "tst_devicestate.moc"
