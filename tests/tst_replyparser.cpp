#include "device/replyparser.h"
#include "referenceparser.h"
#include "logcapture.h"

#include <QJsonDocument>
#include <QRandomGenerator>
#include <QTest>

namespace {
struct Cut
{
    QByteArray frame; // with " (bad)" appended when it does not decode
    QStringList signalNames;
    QJsonObject object;
};

QVector<Cut> parseChunks(const QList<QByteArray> &chunks, ReplyParser &&parser = ReplyParser())
{
    QVector<Cut> cuts;
    ParsedReply reply;
    for (const QByteArray &chunk : chunks) {
        parser.append(chunk);
        while (parser.next(&reply)) {
            QStringList names;
            for (ReplySignal s : reply.signals_)
                names << replySignalName(s);
            cuts.append({reply.frame + (reply.ok ? "" : " (bad)"), names, reply.object});
        }
    }
    return cuts;
}

QList<QByteArray> framesOf(const QVector<Cut> &cuts)
{
    QList<QByteArray> frames;
    for (const Cut &c : cuts)
        frames << c.frame + " " + c.signalNames.join(',').toLatin1();
    return frames;
}

const QByteArray Ver = R"({"type":"ORXM200","FPGA":"V1.0.5","MCU":"V2.0.3"})";
const QByteArray Vid = R"({"video1":1,"video2":2,"video3":3,"mode":6})";
const QByteArray Aud = R"({"audio1":1,"audio2":2})";
const QByteArray Irm = R"({"IR1":1,"IR2":2})";
const QByteArray Inp = R"({"input-1":true,"input-2":false,"in1":1920x1080x60Hz,"in2":noinput})";
const QByteArray Out = R"({"out1":"1920x1080x60Hz","out2":"1280x720x60Hz"})";
const QByteArray Net = R"({"ip":"192.168.1.188","gateway":"192.168.1.1","subnet":"255.255.255.0","mac":"00:1a:2b:3c:4d:5e"})";
const QByteArray Vol = R"({"Volume1":50,"Volume2":0})";
const QByteArray Cap = R"({"Switch":true,"Speed":5,"Color":255,255,255,"Position_x":0,"Position_y":0,"Bg_switch":false,"Bg_Color":0,0,0,"Move_dir":left})";
const QByteArray InpQuoted = R"({"input-1":"true","input-2":"false","in1":"1920x1080x60Hz","in2":"noinput"})";
const QByteArray CapQuoted = R"({"Switch":"true","Speed":5,"Color":"255,255,255","Position_x":0,)"
                             R"("Position_y":0,"Bg_switch":"false","Bg_Color":"0,0,0","Move_dir":"left"})";
} // namespace

class tst_ReplyParser : public QObject
{
    Q_OBJECT

private slots:
    void init() { capturedLog().clear(); qInstallMessageHandler(captureLog); }
    void cleanup() { qInstallMessageHandler(nullptr); }

    void catalogueFrames_raiseTheirSignals_data();
    void catalogueFrames_raiseTheirSignals();
    void stream_isCutAndRepaired_data();
    void stream_isCutAndRepaired();
    void randomStreams_matchTheStraightforwardLoop();
    void junkWithoutBrace_isNotKept();
    void runawayPartialFrame_isDroppedWithOneLogLine();
};

void tst_ReplyParser::catalogueFrames_raiseTheirSignals_data()
{
    QTest::addColumn<QByteArray>("frame");
    QTest::addColumn<QStringList>("signalNames");

    QTest::newRow("input info raises state and resolution")
            << Inp << QStringList{"receiveInputChannelStateSig", "receiveInChannelResolutionMapSig"};
    QTest::newRow("every trigger, in table order")
            << QByteArray(R"({"switch":IR,"a":out,"b":audio,"c":input,"d":video,"e":type,"f":Volume,"g":ip})")
            << QStringList{"receiveNetWorkImforamtionSig", "receiveVolumnImformationSig", "receiveVersionSig",
                           "receiveVideoMapSig", "receiveInputChannelStateSig", "receiveAudioMapSig",
                           "receiveIrMapSig", "receiveInChannelResolutionMapSig",
                           "receiveOutChannelResolutionMapSig", "receiveTitleImfSig"};
    QTest::newRow("triggers are case-sensitive") << QByteArray(R"({"VIDEO":1,"Ip":2,"ir":3})") << QStringList{};
    QTest::newRow("empty object") << QByteArray("{}") << QStringList{};
}

void tst_ReplyParser::catalogueFrames_raiseTheirSignals()
{
    QFETCH(QByteArray, frame);
    QFETCH(QStringList, signalNames);

    const QVector<Cut> cuts = parseChunks({frame});
    QCOMPARE(cuts.size(), 1);
    QVERIFY2(!cuts[0].frame.endsWith("(bad)"), cuts[0].frame.constData());
    QCOMPARE(cuts[0].signalNames, signalNames);
}

void tst_ReplyParser::stream_isCutAndRepaired_data()
{
    QTest::addColumn<QByteArray>("stream");
    QTest::addColumn<QList<QByteArray>>("frames");
    QTest::addColumn<QString>("loggedOnce"); // empty: no decode error may be logged

    QTest::newRow("junk before and between") << "\r\x01garbage" + Ver + "zz\r\n" + Out << QList<QByteArray>{Ver, Out} << "";
    QTest::newRow("blanks and line feeds vanish, inside strings too")
            << QByteArray("{ \"out1\" : \"Port Name\" }\n") << QList<QByteArray>{R"({"out1":"PortName"})"} << "";
    QTest::newRow("carriage returns stay") << QByteArray("{\"mode\":\r6}") << QList<QByteArray>{"{\"mode\":\r6}"} << "";
    QTest::newRow("brace inside a value cuts the frame")
            << R"({"out1":"a}b"})" + Vol << QList<QByteArray>{R"({"out1":"a} (bad))", Vol} << "json format parse error";
    QTest::newRow("closing brace without opening one waits for a frame") << "x}y" + Ver << QList<QByteArray>{Ver} << "";
    QTest::newRow("second opening brace belongs to the frame")
            << QByteArray(R"({"a":{"b":1}})") << QList<QByteArray>{R"({"a":{"b":1} (bad))"} << "json format parse error";
    QTest::newRow("partial frame waits") << Vid + "{\"audio1\":" << QList<QByteArray>{Vid} << "";
    QTest::newRow("input info: bare values quoted") << Inp << QList<QByteArray>{InpQuoted} << "";
    QTest::newRow("input info: a number arrives as text")
            << QByteArray(R"({"in3":7})") << QList<QByteArray>{R"({"in3":"7"})"} << "";
    QTest::newRow("input info: a quoted value is quoted twice and logged")
            << R"({"in1":"x"})" + Ver << QList<QByteArray>{R"({"in1":""x""} (bad))", Ver}
            << R"(json format parse error!raw data: "{\"in1\":\"\"x\"\"}" error:)";
    QTest::newRow("caption: its five bare values") << Cap << QList<QByteArray>{CapQuoted} << "add char osdortitle imf:";
    QTest::newRow("caption: direction not last")
            << QByteArray(R"({"Switch":false,"Speed":1,"Color":1,2,3,"Position_x":4,"Position_y":5,"Bg_switch":true,)"
                          R"("Bg_Color":6,7,8,"Move_dir":right,"x":1})")
            << QList<QByteArray>{R"({"Switch":"false","Speed":1,"Color":"1,2,3","Position_x":4,"Position_y":5,)"
                                 R"("Bg_switch":"true","Bg_Color":"6,7,8","Move_dir":"right","x":1})"}
            << "add char osdortitle imf:";
    QTest::newRow("every kind of frame") << "junk" + Ver + " \n" + Vid + Aud + "\r" + Irm + Inp + "}" + Out + Net + Vol + Cap
            << QList<QByteArray>{Ver, Vid, Aud, Irm, InpQuoted, Out, Net, Vol, CapQuoted} << "add char osdortitle imf:";
}

void tst_ReplyParser::stream_isCutAndRepaired()
{
    QFETCH(QByteArray, stream);
    QFETCH(QList<QByteArray>, frames);
    QFETCH(QString, loggedOnce);

    const QVector<Cut> whole = parseChunks({stream});
    QList<QByteArray> got;
    for (const Cut &cut : whole) {
        got << cut.frame;
        if (!cut.frame.endsWith("(bad)"))
            QCOMPARE(cut.object, QJsonDocument::fromJson(cut.frame).object());
    }
    QCOMPARE(got, frames);
    QCOMPARE(capturedLog().filter(loggedOnce.isEmpty() ? "json format parse error" : loggedOnce).size(),
             loggedOnce.isEmpty() ? 0 : 1);
    // Fed a byte at a time, or in odd pieces, the stream gives the same frames and signals.
    QList<QByteArray> bytes, odd;
    for (int i = 0; i < stream.size(); ++i)
        bytes << stream.mid(i, 1);
    for (int i = 0; i < stream.size(); i += 7)
        odd << stream.mid(i, 7);
    QCOMPARE(framesOf(parseChunks(bytes)), framesOf(whole));
    QCOMPARE(framesOf(parseChunks(odd)), framesOf(whole));
}

void tst_ReplyParser::randomStreams_matchTheStraightforwardLoop()
{
    // Streams built from the bytes that matter to the cutting and repairs.
    const QByteArray alphabet = "{}{}\" :,\n\r inoutIRipx0123Color";
    const QList<QByteArray> pieces{Ver, Vid, Aud, Irm, Inp, Out, Net, Vol, Cap};
    QRandomGenerator rng(20261122);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    for (int round = 0; round < 300; ++round) {
        QByteArray stream;
        while (stream.size() < 600) {
            if (rng.bounded(3) == 0)
                stream += pieces[rng.bounded(pieces.size())];
            else
                stream += alphabet[rng.bounded(alphabet.size())];
        }
        ReplyParser ours;
        ReferenceParser reference;
        int at = 0;
        while (at < stream.size()) {
            const int n = 1 + rng.bounded(40);
            ours.append(stream.mid(at, n));
            reference.append(stream.mid(at, n));
            at += n;
            ParsedReply a, b;
            while (ours.next(&a)) {
                QVERIFY(reference.next(&b));
                QCOMPARE(a.frame, b.frame);
                QCOMPARE(a.ok, b.ok);
                QCOMPARE(a.object, b.object);
                QCOMPARE(a.signals_, b.signals_);
            }
            QVERIFY(!reference.next(&b));
        }
    }
}

void tst_ReplyParser::junkWithoutBrace_isNotKept()
{
    ReplyParser parser;
    const QByteArray junk(64 * 1024, 'x');
    for (int i = 0; i < 64; ++i)
        parser.append(junk + "}");
    QCOMPARE(parser.bufferedBytes(), 0);
    QCOMPARE(parseChunks({Ver}, std::move(parser)).size(), 1);
}

void tst_ReplyParser::runawayPartialFrame_isDroppedWithOneLogLine()
{
    ReplyParser parser;
    parser.append("{\"a\":\"");
    const QByteArray chunk(256 * 1024, 'y');
    for (int i = 0; i < 20 * 4; ++i) { // 20 MiB without a closing brace
        parser.append(chunk);
        QVERIFY(parser.bufferedBytes() <= ReplyParser::MaxPartialFrame + 1);
    }
    QCOMPARE(capturedLog().filter("receive buffer: dropped").size(), 1);
    const QVector<Cut> cuts = parseChunks({"}" + Vol}, std::move(parser));
    QCOMPARE(cuts.size(), 1);
    QCOMPARE(cuts[0].frame, Vol);
}

QTEST_GUILESS_MAIN(tst_ReplyParser)
#include "tst_replyparser.moc"
