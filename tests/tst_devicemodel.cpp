#include "device/devicemodel.h"

#include <QJsonDocument>
#include <QMetaMethod>
#include <QSignalSpy>
#include <QtTest>

Q_DECLARE_METATYPE(ReplySignal)

namespace {
QJsonObject json(const char *text)
{
    return QJsonDocument::fromJson(text).object();
}

// Counts every change signal of `model` by name.
class ChangeLog : public QObject
{
public:
    explicit ChangeLog(DeviceModel *model)
    {
        const QMetaObject *meta = model->metaObject();
        for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
            const QMetaMethod method = meta->method(i);
            if (method.methodType() == QMetaMethod::Signal)
                m_spies.append(new QSignalSpy(model, ("2" + method.methodSignature()).constData()));
        }
    }
    ~ChangeLog() override { qDeleteAll(m_spies); }
    QStringList fired() const
    {
        QStringList names;
        for (QSignalSpy *spy : m_spies)
            if (!spy->isEmpty())
                names << QString::fromLatin1(spy->signal()).section('(', 0, 0);
        return names;
    }
    void clear() { for (QSignalSpy *spy : m_spies) spy->clear(); }

private:
    QList<QSignalSpy *> m_spies;
};
} // namespace

class tst_DeviceModel : public QObject
{
    Q_OBJECT

private slots:
    void reply_signalsItsChangeOnceAndNotWhenRepeated_data();
    void reply_signalsItsChangeOnceAndNotWhenRepeated();
    void wallSwitch_routesEveryOutputOfTheLayout();
};

void tst_DeviceModel::reply_signalsItsChangeOnceAndNotWhenRepeated_data()
{
    QTest::addColumn<ReplySignal>("kind");
    QTest::addColumn<QJsonObject>("reply");
    QTest::addColumn<QStringList>("changes");
    QTest::addColumn<QString>("state");  // one value read back from the record

    QTest::newRow("smaller model") << ReplySignal::Version << json(R"({"type":"ORXM100","FPGA":"V1","MCU":"V2"})")
                                   << QStringList{"modelChanged", "versionsChanged"} << "0 MCU : V2";
    QTest::newRow("unknown model keeps the larger one") << ReplySignal::Version << json(R"({"type":"X","FPGA":"1"})")
                                                        << QStringList{"versionsChanged"} << "1 FPGA: 1";
    QTest::newRow("lower-case type is unknown") << ReplySignal::Version << json(R"({"type":"orxm100","FPGA":1.5})")
                                                << QStringList{"versionsChanged"} << "1 FPGA: 1.5";
    QTest::newRow("video map with a wall") << ReplySignal::VideoMap << json(R"({"video1":3,"video2":4,"mode":2})")
                                           << QStringList{"videoMapChanged", "joinModeChanged"} << "3 2";
    QTest::newRow("video map, numbers as strings") << ReplySignal::VideoMap << json(R"({"video1":"4","mode":"5"})")
                                                   << QStringList{"videoMapChanged", "joinModeChanged"} << "4 5";
    QTest::newRow("audio map") << ReplySignal::AudioMap << json(R"({"audio101":5})") << QStringList{"audioMapChanged"} << "5";
    QTest::newRow("IR map") << ReplySignal::IrMap << json(R"({"IR2":7})") << QStringList{"irMapChanged"} << "7";
    QTest::newRow("input signals") << ReplySignal::InputState << json(R"({"input-3":"true","input-4":"false"})")
                                   << QStringList{"inputSignalsChanged"} << "1";
    QTest::newRow("input resolution") << ReplySignal::InResolution << json(R"({"in1":"noinput"})")
                                      << QStringList{"inputResolutionsChanged"} << "noinput";
    QTest::newRow("output resolution") << ReplySignal::OutResolution << json(R"({"out2":"1920x1080@60"})")
                                       << QStringList{"outputResolutionsChanged"} << "1920x1080@60";
    QTest::newRow("network") << ReplySignal::NetWork << json(R"({"ip":"10.0.0.5","mac":"aa"})")
                             << QStringList{"networkChanged"} << "10.0.0.5";
    QTest::newRow("volumes") << ReplySignal::Volume << json(R"({"Volume1":40})") << QStringList{"volumesChanged"} << "40";
    QTest::newRow("caption") << ReplySignal::Title << json(R"({"switch":"on","Speed":3,"Move_dir":"right"})")
                             << QStringList{"captionChanged"} << "3 right";
}

void tst_DeviceModel::reply_signalsItsChangeOnceAndNotWhenRepeated()
{
    QFETCH(ReplySignal, kind);
    QFETCH(QJsonObject, reply);
    QFETCH(QStringList, changes);
    QFETCH(QString, state);

    DeviceModel model;
    ChangeLog log(&model);
    model.apply(kind, reply);
    QCOMPARE(log.fired(), changes);

    const DeviceRecord &r = model.record();
    const QMap<QString, QString> readBack{
        {"modelChanged", QString("%1 %2").arg(r.modelFlag()).arg(r.mcuVersion())},
        {"versionsChanged", QString("%1 %2").arg(r.modelFlag()).arg(r.fpgaVersion())},
        {"videoMapChanged", QString("%1 %2").arg(r.videoMap().value(1)).arg(r.joinMode())},
        {"audioMapChanged", QString::number(r.audioMap().value(101))},
        {"irMapChanged", QString::number(r.irMap().value(2))},
        {"inputSignalsChanged", QString::number(r.inputSignalMap().values().count(true))},
        {"inputResolutionsChanged", r.inputResolutionMap().value(1)},
        {"outputResolutionsChanged", r.outputResolutionMap().value(2)},
        {"networkChanged", r.netIp()},
        {"volumesChanged", QString::number(r.volumeMap().value(1))},
        {"captionChanged", QString("%1 %2").arg(r.captionRecord().speed).arg(r.captionRecord().direction)},
    };
    QCOMPARE(readBack.value(changes.first()), state);

    log.clear();
    model.apply(kind, reply);
    QCOMPARE(log.fired(), QStringList());
}

void tst_DeviceModel::wallSwitch_routesEveryOutputOfTheLayout()
{
    DeviceModel model;
    model.apply(ReplySignal::Version, json(R"({"type":"ORXM100"})"));
    model.recordJoinMode(6);  // the whole 4x2 wall of the eight-output model
    QSignalSpy video(&model, &DeviceModel::videoMapChanged);
    model.recordSwitch(5, 1, DeviceModel::Wall);
    QCOMPARE(video.count(), 1);
    QCOMPARE(model.record().videoMap().keys(), (QList<int>{1, 2, 3, 4, 5, 6, 7, 8}));
    QCOMPARE(model.record().videoMap().values().count(5), 8);

    model.recordSwitch(2, 9, DeviceModel::Audio);  // audio waits for the device's map
    model.recordSwitch(5, 3, DeviceModel::Video);  // already so
    QCOMPARE(video.count(), 1);
}

QTEST_GUILESS_MAIN(tst_DeviceModel)
#include "tst_devicemodel.moc"
